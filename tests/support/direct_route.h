// The direct route of the fast layer on the components of the natural gas.
#pragma once

#include <cmath>

#include "database/pair_record.h"
#include "engine/setup_record.h"
#include "fastprops/flash_record.h"
#include "fastprops/routes.h"
#include "support/flash_case.h"

namespace talix::test {

// The ten components of the natural gas loaded, the gas constant in the units of the direct route.
inline void load_direct_gas() {
  fresh_library();
  natural_gas().run();
  fl.RGAS = kVolumeGasConstant;
}

// The engine without interaction of pairs, as the direct route has none.
inline void drop_pair_parameters() {
  pairs.TETA0.fill(0.0);
  pairs.TETA0T.fill(0.0);
  pairs.TETA1.fill(0.0);
  pairs.TETA1T.fill(0.0);
  pairs.NT0 = pairs.NT1 = 0;
  ++setup.generation;
}

// Composition of the feed.
inline FlashVec gas_feed() {
  const FlashCase gas = natural_gas();
  FlashVec z{};
  for (int i = 1; i <= gas.nc(); ++i) z(i) = gas.feed[static_cast<std::size_t>(i - 1)];
  return z;
}

// One component alone.
inline FlashVec pure_feed(int i) {
  FlashVec z{};
  z(i) = 1.0F;
  return z;
}

}  // namespace talix::test
