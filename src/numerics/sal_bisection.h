// Search in an ascending table.
#pragma once

#include "base/real.h"

namespace talix {

// Position that means that the key is not in the table.
inline constexpr I4 kNotFound = -1000;

// Finds KEY among the entries 1 to LAST of IARRAY in NSTEP halvings.
void SALBS0(const I4& KEY, const I4* IARRAY, const I4& LAST, const I4& NSTEP, I4& POS);

}  // namespace talix
