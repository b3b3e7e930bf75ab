// Viscosity of a vapour.
#pragma once

#include "eos/ses_dispatcher.h"

namespace talix {

// Requests of the transport entries, argument MODE.
namespace transport_request {
inline constexpr I4 value = 1;
inline constexpr I4 derivative = 2;
inline constexpr I4 both = 3;
}  // namespace transport_request

// Viscosity ETA [mPa s] of a vapour at T [K] and P [Pa] by a method code; the derivative DETA is not available.
void SVVIM1(const R8& T, const R8& P, const CompVec& X, const I4& NC, const Vec<I4, kMaxComponents>& IC,
            const I4& MODE, const I4& METHOD, R8& ETA, R8& DETA, I4& STATUS);

// Viscosities ETAP0 [micro-Pa s] of the components at low pressure.
void SVITH0(const I4& NC, const R8& T, CompVec& ETAP0);
// Their mixture value ETAMIX [micro-Pa s].
void SVIWK0(const I4& NC, const CompVec& X, const CompVec& ETAP0, R8& ETAMIX);
// Critical volume VCMIX [m3/kmol] of the mixture and scale XI of the dense-gas correction.
void SVIDS0(const I4& NC, const CompVec& X, R8& VCMIX, R8& XI);
// Corresponding-states viscosity ETA [mPa s].
void SVITR0(const CompVec& X, const R8& P, const R8& T, const Vec<I4, kMaxComponents>& IC, const I4& NC,
            R8& ETA, I4& STATUS);

}  // namespace talix
