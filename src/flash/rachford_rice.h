// The phase-fraction equations of the isothermal flash for up to two liquids, and their sums.
#pragma once

#include "base/array.h"
#include "base/real.h"

namespace talix {

// K-value over the second liquid when no second liquid is sought: with FLB = 0 it cancels from the equations.
inline constexpr R4 kNoSecondLiquidFactor = 10.0F;

// Feed and K-values of the components that take part, gathered once per pass.
struct SplitEquations {
  I4 count;                    // components with a feed not below 1E-18
  bool second_liquid;          // the cross sums are wanted
  Vec<R4, kMaxComponents> ZZ;  // feed mole fraction
  Vec<R4, kMaxComponents> KA;  // vapour over liquid A
  Vec<R4, kMaxComponents> KB;  // vapour over liquid B
};

// Sums at a given split; SUMA and SUMB are the equations, the others their derivatives.
struct SplitSums {
  R4 SUMA, SUMB;    // sum of z (1-KA) KB/D, of z (1-KB) KA/D
  R4 SUMAA, SUMBB;  // minus d SUMA/d FLA, minus d SUMB/d FLB
  R4 SUMAB;         // minus the cross derivative
  R4 SUMLL;         // minus d (SUMA-SUMB)/d FLA at fixed FLA+FLB
};

// FLA, FLB: fraction of the feed in liquid A and in liquid B.
SplitSums split_sums(const SplitEquations& equations, R4 FLA, R4 FLB);

}  // namespace talix
