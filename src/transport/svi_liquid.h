// SLVIM1: viscosity of a liquid mixture by a chosen method.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "eos/ses_dispatcher.h"

namespace talix {

// ETA [mPa s] at T [K], P [Pa]; MODE 1 value, 2 derivative, 3 both; METHOD is method::livithec, mixture,
// sternling_samish or old_sternling_samish.
void SLVIM1(const R8& T, const R8& P, const CompVec& X, const I4& NC, const Vec<I4, kMaxComponents>& IC,
            const I4& MODE, const I4& METHOD, R8& ETA, R8& DETA, I4& STATUS);

}  // namespace talix
