// Thermal properties by the cubic of the fast layer itself.
#pragma once

#include "base/real.h"
#include "fastprops/flash_record.h"

namespace talix {

// Mode 0 of ENTHAL; the arguments are those that this route reads or sets.
void direct_properties(const I4& NC, const R4& R, R4& RHO, const R4& T, const R4& P, const R4& Z,
                       const FlashVec& FRAC, R4& MW, R4& HID, R4& SID, R4& CPID, R4& H, R4& S, R4& CV, R4& CP,
                       R4& SONIC, R4& JT, R4& KAPPA);

}  // namespace talix
