// Thermal properties of one phase, as the flash layer sees them.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "fastprops/flash_record.h"

namespace talix {

// Fugacity derivatives that MODE 2 hands on to the caller, in the engine's precision.
using FugacityVector = Vec<R8, kMaxComponents>;
using FugacityMatrix = Mat<R8, kMaxComponents, kMaxComponents>;

// MODE 0: all properties; 1: enthalpy with DHDT and HN; 2: also FUGTL and FUGN. The other arguments are
// described above the definition.
void ENTHAL(const I4& MODE, const I4& PH, I4& PHOUT, const I4& NC, const R4& R, R4& RHO, const R4& T,
            const R4& P, R4& Z, const FlashVec& FRAC, R4& MW, R4& HID, R4& SID, R4& CPID, R4& H, R4& DHDT,
            R4& S, R4& CV, R4& CP, R4& SONIC, R4& JT, R4& KAPPA, FugacityVector& FUG, FugacityVector& FUGTL,
            FugacityVector& FUGPL, FugacityMatrix& FUGN, FlashVec& HN);
// The same through the property engine.
void ENTHAL1(const I4& MODE, const I4& PH, I4& PHOUT, const I4& NC, const R4& R, R4& RHO, const R4& T,
             const R4& P, R4& Z, const FlashVec& FRAC, R4& MW, R4& HID, R4& SID, R4& CPID, R4& H, R4& DHDT,
             R4& S, R4& CV, R4& CP, R4& SONIC, R4& JT, R4& KAPPA, FugacityVector& FUG, FugacityVector& FUGTL,
             FugacityVector& FUGPL, FugacityMatrix& FUGN, FlashVec& HN);

}  // namespace talix
