#include "fastprops/fast_viscosity.h"

#include "engine/codes.h"
#include "fastprops/transport_call.h"
#include "transport/svi_liquid.h"
#include "transport/svi_vapour.h"

namespace talix {

namespace {

constinit TransportCall call{};

}  // namespace

// MULO: viscosity of a vapour.
//
// In       NC   I4      number of components
//          T    R4      temperature [K]
//          P    R4      pressure [bar]
//          Y    R4(50)  mole fractions
// Out      ETA  R4      [mPa s]; 0 where the engine has no value
// Shared   counts a bad engine status in cell 1 of MULO
// Oddity   the constants and correlations among the arguments are not read: the engine has its own
void MULO(const I4& NC, const R4& T, const R4& P, const R4& /*RESERVED1*/, const FlashVec& Y,
          const FlashVec& /*VC*/, const FlashVec& /*PC*/, const FlashVec& /*TC*/, const FlashVec& /*ZC*/,
          const Mat<R4, 4, kMaxComponents>& /*CGAS*/, const FlashVec& /*AMW*/, const R4& /*RESERVED2*/,
          const R4& /*RESERVED3*/, R4& ETA, const R4& /*RESERVED4*/) {
  prepare_transport(call, NC, static_cast<R8>(T), static_cast<R8>(P) * kPascalPerBar, Y);
  SVVIM1(call.T, call.P, call.X, NC, call.IC, transport_request::value, method::mixture, call.VALUE,
         call.DERIVATIVE, call.STATUS);
  ETA = transport_value(call, error_row::MULO);
}

// VISLIQ: viscosity of a liquid.
//
// In       NC   I4      number of components
//          T    R4      temperature [K]
//          P    R4      pressure [bar]
//          XX   R4(50)  mole fractions
// Out      ETA  R4      [mPa s]; 0 where the engine has no value
// Shared   counts a bad engine status in cell 1 of VISLIQ
// Oddity   the correlations CVISL, vapour pressures P0 and densities DEN are not read: the engine has its own
void VISLIQ(const I4& NC, const R4& T, const R4& P, const Mat<R4, 6, kMaxComponents>& /*CVISL*/,
            const FlashVec& /*P0*/, const FlashVec& /*DEN*/, const FlashVec& XX, R4& ETA) {
  prepare_transport(call, NC, static_cast<R8>(T), static_cast<R8>(P) * kPascalPerBar, XX);
  SLVIM1(call.T, call.P, call.X, NC, call.IC, transport_request::value, method::mixture, call.VALUE,
         call.DERIVATIVE, call.STATUS);
  ETA = transport_value(call, error_row::VISLIQ);
}

}  // namespace talix
