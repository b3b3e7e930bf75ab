#include "database/pair_record.h"

namespace talix {

constinit PairRecord pairs{};

void reset_pair_record() { pairs = PairRecord{}; }

}  // namespace talix
