#include "eos/vardo95_record.h"

namespace talix {

constinit Vardo95Record vardo95{};

}  // namespace talix
