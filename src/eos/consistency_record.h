// Tables of the consistent local-composition rule: pair constants, pair quantities at one temperature.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "eos/eos_caches.h"

namespace talix {

// Own copies of what the NRTL equation keeps under the same names in another arrangement.
struct ConsistencyRecord {
  CompMat ALFA;                 // non-randomness of a pair [-], symmetric
  CompMat TAUT0, TAUT1, TAUT2;  // interaction (i, j) [-] = TAUT0 + T TAUT1 + T^2 TAUT2
  // Pair quantities, neighbour before centre, with plain temperature derivatives [1/K], [1/K2] of each.
  CompMat ATBIN, ATBINT, ATBNTT;  // a/(R T) over b of the pair [-]
  CompMat GTBIN, GTBINT, GTBNTT;  // weight of the neighbour [K/Pa]
  I4 generation;                  // 1 + data-generation counter of the pair constants; 0 when there are none
  I4 IFCOM, ILCOM;                // range they were built for
  PureKey key;                    // of the pair quantities
  bool first, second;             // which derivatives they cover
};

extern constinit ConsistencyRecord consistency;

}  // namespace talix
