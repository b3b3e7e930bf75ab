#include "fastprops/fast_conductivity.h"

#include "engine/codes.h"
#include "fastprops/transport_call.h"
#include "transport/stc_conductivity.h"
#include "transport/svi_vapour.h"

namespace talix {

namespace {

constinit TransportCall call{};

}  // namespace

// KLIQ: thermal conductivity of a liquid.
//
// In       NC      I4      number of components
//          T       R4      temperature [K]
//          XX      R4(50)  mole fractions
// Out      LAMBDA  R4      [W/(m K)]; 0 where the engine has no value
// Shared   counts a bad engine status in cell 1 of KLIQ
// Oddity   the pressure is 100000 Pa whatever that of the phase is: a liquid that the equation of state knows only
//          under pressure is given the density of the gas. The correlations CKLIQ and densities DEN are not read
void KLIQ(const I4& NC, const R4& T, const Mat<R4, 6, kMaxComponents>& /*CKLIQ*/, const FlashVec& /*DEN*/,
          const FlashVec& XX, const R4& /*RESERVED*/, R4& LAMBDA) {
  constexpr R8 kPressure = 100000.0;
  prepare_transport(call, NC, static_cast<R8>(T), kPressure, XX);
  STCLM1(call.T, call.P, call.X, NC, call.IC, transport_request::value, method::mixture, call.VALUE,
         call.DERIVATIVE, call.STATUS);
  LAMBDA = transport_value(call, error_row::KLIQ);
}

// KLO: thermal conductivity of a vapour.
//
// In       NC      I4      number of components
//          T       R4      temperature [K]
//          P       R4      pressure [bar]
//          Y       R4(50)  mole fractions
// Out      LAMBDA  R4      [W/(m K)]; 0 where the engine has no value
// Shared   counts a bad engine status in cell 1 of KLO
// Oddity   the constants and correlations among the arguments are not read: the engine has its own
void KLO(const I4& NC, const R4& T, const R4& P, const R4& /*RESERVED1*/, const FlashVec& Y,
         const FlashVec& /*VC*/, const FlashVec& /*PC*/, const FlashVec& /*TC*/, const FlashVec& /*ZC*/,
         const Mat<R4, 4, kMaxComponents>& /*CGAS*/, const Mat<R4, 8, kMaxComponents>& /*COFHT*/,
         const FlashVec& /*AMW*/, const R4& /*RESERVED2*/, const R4& /*RESERVED3*/, R4& LAMBDA,
         const R4& /*RESERVED4*/) {
  prepare_transport(call, NC, static_cast<R8>(T), static_cast<R8>(P) * kPascalPerBar, Y);
  STCVM1(call.T, call.P, call.X, NC, call.IC, transport_request::value, method::mixture, call.VALUE,
         call.DERIVATIVE, call.STATUS);
  LAMBDA = transport_value(call, error_row::KLO);
}

}  // namespace talix
