// Thermal conductivity of a liquid and of a vapour mixture by a chosen method.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "eos/ses_dispatcher.h"

namespace talix {

// LAMBDA [W/(m K)] at T [K], P [Pa]; MODE 1 value, 2 derivative, 3 both.
// Liquid: METHOD is method::livithec or mixture.
void STCLM1(const R8& T, const R8& P, const CompVec& X, const I4& NC, const Vec<I4, kMaxComponents>& IC,
            const I4& MODE, const I4& METHOD, R8& LAMBDA, R8& DLAMBDA, I4& STATUS);
// Vapour: METHOD is method::mixture or thodos_wilke_dean.
void STCVM1(const R8& T, const R8& P, const CompVec& X, const I4& NC, const Vec<I4, kMaxComponents>& IC,
            const I4& MODE, const I4& METHOD, R8& LAMBDA, R8& DLAMBDA, I4& STATUS);

}  // namespace talix
