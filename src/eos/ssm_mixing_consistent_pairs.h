// Pair constants of the consistent local-composition rule.
#pragma once

#include "base/real.h"

namespace talix {

// Constants of the pair I, J in both directions; nothing when J, I is the order of a built-in pair.
void SICBI0(const I4& I, const I4& J, I4& ICODE);

}  // namespace talix
