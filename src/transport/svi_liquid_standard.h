// Liquid viscosity of pure components by fitted correlations, and their mixture by a logarithmic rule.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "eos/ses_dispatcher.h"

namespace talix {

// Mixture viscosity ETA [mPa s] of NC components of composition X by the set SS.
void SVISS1(const CompVec& X, const R8& P, const R8& T, const I4& NC, R8& ETA, I4& STATUS);
// ln of the viscosity [mPa s] of component I by the set SS.
void SVISS2(const R8& T, const R8& P, const I4& I, R8& LNETA, I4& STATUS);
// Mixture viscosity ETA [mPa s] by the set VIL.
void SVISO1(const CompVec& X, const R8& P, const R8& T, const I4& NC, R8& ETA, I4& STATUS);
// ln of the viscosity [mPa s] of component I by the set VIL.
void SVISO0(const R8& T, const R8& P, const I4& I, R8& LNETA, I4& STATUS);

}  // namespace talix
