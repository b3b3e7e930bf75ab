// The small array routines that the flash layer shares.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "fastprops/flash_record.h"

namespace talix {

// The sum of A(1..N).
R4 TELOP(const I4& N, const FlashVec& A);
// X(1..N) = 0.
void ZERO(const I4& N, FlashVec& X);
void ZERO(const I4& N, PropertyColumn& X);
// Mass flows to mole flows.
void KGMOL(const I4& N, FlashVec& F, const FlashVec& AMW);
// Mean molar mass of a composition.
void MOL(const I4& N, const FlashVec& Y, R4& MW);
// Fractions X of the flows A with total FT.
void MOLFR(const I4& N, const R4& FT, FlashVec& A, FlashVec& X);
// Mass flows DUM, their total FTW and mass fractions X of the mole flows XMOL.
void WFR(const I4& N, const FlashVec& AMW, const FlashVec& XMOL, FlashVec& X, FlashVec& DUM, R4& FTW);

}  // namespace talix
