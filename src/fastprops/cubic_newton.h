// Newton polish of a root, shared by the closed forms of the direct route.
#pragma once

#include <cmath>

#include "fastprops/rkscrt.h"

namespace talix {

inline constexpr int kPolishSteps = 25;

// The cubic of a root finder at Z.
inline R8 cubic_value(const CubicVector& AN, R8 Z) { return ((Z + AN(1)) * Z + AN(2)) * Z + AN(3); }

// A root near Z: stops on a polynomial value of at most SMALL or on a relative step of at most STEP, and where
// the cubic has no slope.
inline R8 polished_root(const CubicVector& AN, R8 Z, R8 SMALL, R8 STEP) {
  for (int pass = 1; pass <= kPolishSteps; ++pass) {
    const R8 value = cubic_value(AN, Z);
    const R8 slope = (3.0 * Z + 2.0 * AN(1)) * Z + AN(2);
    if (!(std::fabs(value) > SMALL) || !(std::fabs(slope) > 0.0)) break;
    const R8 step = -value / slope;
    Z += step;
    if (!(std::fabs(step) > STEP * std::fabs(Z))) break;
  }
  return Z;
}

}  // namespace talix
