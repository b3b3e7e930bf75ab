// Liquid viscosity by the combined method: pure components by their own correlations, the light ones and
// those without data as a group by corresponding states.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "eos/ses_dispatcher.h"

namespace talix {

// Mixture viscosity ETA [mPa s]; P is set to 1 Pa when it is not above 0.
void SVICM0(const CompVec& X, const R8& P, const R8& T, const Vec<I4, kMaxComponents>& IC, const I4& NC,
            R8& ETA, I4& STATUS);
// Viscosity ETA [mPa s] of pure component I.
void SVICM1(const R8& T, const R8& P, const I4& I, R8& ETA, I4& STATUS);

}  // namespace talix
