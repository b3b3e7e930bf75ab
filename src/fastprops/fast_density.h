// Densities and vapour pressures of the components, by short correlations in single precision.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "base/text.h"
#include "fastprops/flash_message.h"
#include "fastprops/flash_record.h"

namespace talix {

// Liquid densities DEN [kg/m3].
void RHO(const I4& NC, const R4& T, const FlashVec& VC, const FlashVec& TC, const FlashVec& AMW,
         const Mat<R4, 4, kMaxComponents>& CDEN, FlashVec& DEN);
// Frost-Kalkwarf vapour pressures P0 [bar], extended above the critical temperature.
void FKW(const I4& NC, const R4& T, const FlashVec& PC, const FlashVec& TC,
         const Vec<Text<28>, kMaxComponents>& NAME, const Mat<R4, 5, kMaxComponents>& CP0, FlashVec& P0,
         Message& MSG);

}  // namespace talix
