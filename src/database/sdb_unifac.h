// Group tables of the UNIFAC variants, and the groups of the component list in them.
#pragma once

#include "base/real.h"

namespace talix {

// Loads the group table of UNIFAC model CODE.
void SDBUF0(const I4& CODE, I4& NFAIL);
// Position of main group MAIN in the list of those present, or -1.
I4 SUFAO2(const I4& MAIN);
// Finds the groups of N components in the table of model CODE.
void SUFAO3(const I4& N, const I4& CODE, I4& NFAIL);

}  // namespace talix
