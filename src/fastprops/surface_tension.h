// Surface tension of the interfaces of a flash [mN/m].
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "base/text.h"
#include "eos/ses_dispatcher.h"
#include "fastprops/flash_record.h"

namespace talix {

// One column for each phase.
using PhaseCompositions = Mat<R8, kMaxComponents, 3>;

// By the relation of each component alone.
void SURTEN(const I4& NC, const R4& T, const FlashVec& TC, const Mat<R4, 2, kMaxComponents>& SUR,
            const FlashVec& AMW, const R4& AMWV, const FlashVec& DEN, const R4& DENV, const FlashVec& XX,
            R4& SIGMA);
// Of a liquid X against a vapour Y by parachors; ZV not above 0: no vapour.
void SURTEN1(const I4& NC, const R4& T, const R4& P, const FlashVec& Y, const FlashVec& X, const R4& ZV,
             const R4& ZL, R4& SIGMA);
// SIG: vapour to first liquid, first to second liquid, vapour to second liquid.
void SSTPW0(const I4& NC, const R8& T, const PhaseCompositions& XX, const I4& KV, const I4& KL1,
            const I4& KL2, const Vec<R8, 3>& PHVOL, Vec<R8, 3>& SIG);
// Corrections of component I with all higher components.
void SSTPW1(const Vec<Text<4>, kMaxComponents>& ICS, const I4& I, CompVec& ASURT, CompVec& BSURT,
            const I4& NC);

}  // namespace talix
