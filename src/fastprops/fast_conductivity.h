// Thermal conductivity of a phase for the property tables, through the engine.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "fastprops/flash_record.h"

namespace talix {

// Liquid: LAMBDA [W/(m K)].
void KLIQ(const I4& NC, const R4& T, const Mat<R4, 6, kMaxComponents>& CKLIQ, const FlashVec& DEN,
          const FlashVec& XX, const R4& RESERVED, R4& LAMBDA);
// Vapour: LAMBDA [W/(m K)] at P [bar].
void KLO(const I4& NC, const R4& T, const R4& P, const R4& RESERVED1, const FlashVec& Y, const FlashVec& VC,
         const FlashVec& PC, const FlashVec& TC, const FlashVec& ZC, const Mat<R4, 4, kMaxComponents>& CGAS,
         const Mat<R4, 8, kMaxComponents>& COFHT, const FlashVec& AMW, const R4& RESERVED2,
         const R4& RESERVED3, R4& LAMBDA, const R4& RESERVED4);

}  // namespace talix
