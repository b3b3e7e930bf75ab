// Methods of the vapour conductivity.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "eos/ses_dispatcher.h"

namespace talix {

// LAMBDA [W/(m K)] from the viscosity and the heat capacity.
void STCLI1(const CompVec& X, const R8& P, const R8& T, const Vec<I4, kMaxComponents>& IC, const I4& NC,
            R8& LAMBDA, I4& STATUS);
// LAMBDA [W/(m K)] by corresponding states with methane; P is set to 1 Pa when it is not above 0.
void STCTR0(const CompVec& X, const R8& P, const R8& T, const Vec<I4, kMaxComponents>& IC, const I4& NC,
            R8& LAMBDA, I4& STATUS);

}  // namespace talix
