#include "eos/a_excess_record.h"

namespace talix {

constinit AExcessReference a_excess{};

}  // namespace talix
