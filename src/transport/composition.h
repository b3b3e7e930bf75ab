// The composition that the transport entries hand to their methods.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "eos/ses_dispatcher.h"

namespace talix {

// Mole fractions x that sum to 1 from the first NC entries of X; false when there is no composition.
inline bool normalise_composition(const CompVec& X, I4 NC, CompVec& x) {
  if (NC < 1 || NC > kMaxComponents) return false;
  R8 sum = 0.0;
  for (int i = 1; i <= NC; ++i) sum += X(i);
  if (!(sum > 0.0)) return false;
  for (int i = 1; i <= NC; ++i) x(i) = X(i) / sum;
  return true;
}

}  // namespace talix
