#include "database/component_record.h"
#include "engine/codes.h"
#include "engine/shmix_driver.h"
#include "transport/sps_vapour_pressure.h"

namespace talix {

namespace {

using Correlation = void (*)(const R8& T, const I4& ICOMP, const L4& VALUE, const L4& DERIV, R8& PSAT,
                             R8& DPSAT, I4& NFAIL);

// The set behind IPSA is of the Antoine form when its third coefficient is given.
Correlation form_of_psat(I4 ICOMP) { return comp.PSAT(ICOMP, 3) != 0.0 ? SPSAN1 : SPSFK0; }

// IPSA of a component whose set the default method passes over.
constexpr I4 kPassedOver = 7;

Correlation bramm_choice(I4 ICOMP) {
  if (comp.IPWA(ICOMP) != 0) return SPSWG0;
  if (comp.IPSA(ICOMP) != 0 && comp.IPSA(ICOMP) != kPassedOver) return form_of_psat(ICOMP);
  if (comp.IPAN(ICOMP) != 0) return SPSAN1;
  if (comp.IPANO(ICOMP) != 0) return SPSAN2;
  return nullptr;
}

Correlation tolk_choice(I4 ICOMP) {
  if (comp.IPSA(ICOMP) != 0) return form_of_psat(ICOMP);
  if (comp.IPAN(ICOMP) != 0) return SPSAN1;
  return nullptr;
}

Correlation single_choice(I4 flag, Correlation correlation) { return flag != 0 ? correlation : nullptr; }

}  // namespace

// SPSAT0: vapour pressure of a pure component by a chosen method.
//
// In       T        R8    [K]
//          PSGIVEN  R8    result of method::ideal_gas [Pa]
//          ICOMP    I4    component
//          VALUE    L4    PS wanted
//          DERIV    L4    DPS wanted
//          METHOD   I4    method::*
// Out      PS       R8    vapour pressure [Pa]
//          DPS      R8    its derivative [Pa/K]
//          NFAIL    I4    status
// Shared   reads comp
// Status   ok; input (T not above 0); model_error (the component has no set for the method);
//          not_available (no such method); as the correlation
void SPSAT0(const R8& T, const R8& PSGIVEN, const I4& ICOMP, const L4& VALUE, const L4& DERIV,
            const I4& METHOD, R8& PS, R8& DPS, I4& NFAIL) {
  NFAIL = status::ok;
  if (!(T > 0.0)) {
    NFAIL = status::input;
    return;
  }
  Correlation correlation = nullptr;
  switch (METHOD) {
    case method::bramm_default:
      correlation = bramm_choice(ICOMP);
      break;
    case method::tolk_default:
      correlation = tolk_choice(ICOMP);
      break;
    case method::frost_kalkwarf:
      correlation = single_choice(comp.IPSA(ICOMP), SPSFK0);
      break;
    case method::wagner:
      correlation = single_choice(comp.IPWA(ICOMP), SPSWG0);
      break;
    case method::antoine:
      correlation = single_choice(comp.IPAN(ICOMP), SPSAN1);
      break;
    case method::antoine_extended:
      correlation = single_choice(comp.IPANO(ICOMP), SPSAN2);
      break;
    case method::ideal_gas:
      if (VALUE) PS = PSGIVEN;
      if (DERIV) DPS = 0.0;
      return;
    default:
      NFAIL = status::not_available;
      return;
  }
  if (correlation == nullptr) {
    NFAIL = status::model_error;
    return;
  }
  correlation(T, ICOMP, VALUE, DERIV, PS, DPS, NFAIL);
}

}  // namespace talix
