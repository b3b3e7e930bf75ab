// Central differences of eighth order.
#pragma once

#include "base/real.h"

namespace talix::test {

// Slope of FUNCTION at X with the step H. REAL may be wider than R8.
template <class REAL, class FUNCTION>
REAL slope(FUNCTION&& function, REAL x, REAL h) {
  const auto pair = [&](int k) {
    const REAL step = h * static_cast<REAL>(k);
    return function(x + step) - function(x - step);
  };
  const REAL one = 1;
  return (one * 4 / 5 * pair(1) - one / 5 * pair(2) + one * 4 / 105 * pair(3) - one / 280 * pair(4)) / h;
}

// Second derivative.
template <class REAL, class FUNCTION>
REAL curvature(FUNCTION&& function, REAL x, REAL h) {
  const auto pair = [&](int k) {
    const REAL step = h * static_cast<REAL>(k);
    return function(x + step) + function(x - step);
  };
  const REAL one = 1;
  return (-one * 205 / 72 * function(x) + one * 8 / 5 * pair(1) - one / 5 * pair(2) +
          one * 8 / 315 * pair(3) - one / 560 * pair(4)) /
         (h * h);
}

}  // namespace talix::test
