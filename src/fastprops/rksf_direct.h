// Fugacity coefficients by the cubic of the fast layer itself.
#pragma once

#include "base/real.h"
#include "fastprops/flash_record.h"

namespace talix {

// The arguments of RKSF; SOLVER takes the roots from RKSCRT2 instead of RKSCRT and RKS.
void direct_fugacities(bool SOLVER, const I4& NC, const I4& PH, const R4& T, const FlashVec& XX,
                       FlashVec& PHI, R4& Z, const R4& P, I4& IPH);

}  // namespace talix
