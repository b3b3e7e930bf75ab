// Viscosity of a phase for the property tables, through the engine.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "fastprops/flash_record.h"

namespace talix {

// Vapour: ETA [mPa s] at P [bar].
void MULO(const I4& NC, const R4& T, const R4& P, const R4& RESERVED1, const FlashVec& Y, const FlashVec& VC,
          const FlashVec& PC, const FlashVec& TC, const FlashVec& ZC, const Mat<R4, 4, kMaxComponents>& CGAS,
          const FlashVec& AMW, const R4& RESERVED2, const R4& RESERVED3, R4& ETA, const R4& RESERVED4);
// Liquid: ETA [mPa s] at P [bar].
void VISLIQ(const I4& NC, const R4& T, const R4& P, const Mat<R4, 6, kMaxComponents>& CVISL,
            const FlashVec& P0, const FlashVec& DEN, const FlashVec& XX, R4& ETA);

}  // namespace talix
