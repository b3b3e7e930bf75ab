#include "numerics/s0cbrt.h"

#include <cmath>

namespace talix {

// S0CBRT: cube root of X with its sign.
//
// In       X       R4
// Returns  R4, by the single-precision power function with the exponent nearest to one third
R4 S0CBRT(const R4& X) {
  constexpr R4 third = 1.0F / 3.0F;
  return X < 0.0F ? -std::pow(-X, third) : std::pow(X, third);
}

}  // namespace talix
