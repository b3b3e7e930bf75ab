#include "eos/consistency_record.h"

namespace talix {

constinit ConsistencyRecord consistency{};

}  // namespace talix
