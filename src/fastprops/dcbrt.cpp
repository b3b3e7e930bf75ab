#include "fastprops/dcbrt.h"

#include <cmath>

namespace talix {

// DCBRT: signed cube root of X.
//
// Oddity   the exponent has nine digits and is no exact third; zero takes the positive branch
R8 DCBRT(const R8& X) {
  constexpr R8 kThird = 0.333333333;
  const R8 root = std::pow(std::fabs(X), kThird);
  return X < 0.0 ? -root : root;
}

}  // namespace talix
