// Fugacity coefficients and compressibility of one phase, as the flash layer sees them.
#pragma once

#include "base/real.h"
#include "fastprops/flash_record.h"

namespace talix {

// PH flash_phase::*; T [K]; P [bar]; PHI fugacity coefficients; Z compressibility; IPH root type.
void RKSF(const I4& NC, const I4& PH, const R4& T, const FlashVec& XX, FlashVec& PHI, R4& Z, const R4& P,
          I4& IPH);
// The same through the property engine.
void RKSF1(const I4& NC, const I4& PH, const R4& T, const FlashVec& XX, FlashVec& PHI, R4& Z, const R4& P,
           I4& IPH);

}  // namespace talix
