#include "eos/cubic_record.h"

namespace talix {

constinit CubicConstants cur{};
constinit PureTables pures{};

}  // namespace talix
