// Fit of the pair parameters of the A-excess mixing rule.
#pragma once

#include "base/real.h"

namespace talix {

// Matches BICWS of every pair at T [K] and P [Pa].
void SSMMR7(const I4& IFCOM, const I4& ILCOM, const R8& T, const R8& P, I4& ICODE);

}  // namespace talix
