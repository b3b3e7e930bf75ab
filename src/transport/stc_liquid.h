// Methods of the liquid conductivity.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "eos/ses_dispatcher.h"

namespace talix {

// LAMBDA [W/(m K)] by the corresponding-states model of liquids.
void STCLI0(const CompVec& X, const R8& P, const R8& T, const I4& NC, R8& LAMBDA, I4& STATUS);
// LAMBDA [W/(m K)] by the combined method; P is set to 1 Pa when it is not above 0.
void STCCM0(const CompVec& X, const R8& P, const R8& T, const Vec<I4, kMaxComponents>& IC, const I4& NC,
            R8& LAMBDA, I4& STATUS);
// LAMBDA [W/(m K)] of pure liquid I.
void STCCM1(const R8& T, const R8& P, const I4& I, R8& LAMBDA, I4& STATUS);

}  // namespace talix
