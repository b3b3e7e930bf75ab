#include "database/component_record.h"
#include "engine/codes.h"
#include "engine/shmix_driver.h"
#include "transport/sps_vapour_pressure.h"

namespace talix {

namespace {

// IPSA of a component whose set the default method passes over.
constexpr I4 kPassedOver = 7;

// The set behind IPSA is of the Antoine form when its third coefficient is given.
I4 form_of_psat(I4 ICOMP) { return comp.PSAT(ICOMP, 3) != 0.0 ? method::antoine : method::frost_kalkwarf; }

I4 bramm_choice(I4 ICOMP) {
  if (comp.IPWA(ICOMP) != 0) return method::wagner;
  if (comp.IPSA(ICOMP) != 0 && comp.IPSA(ICOMP) != kPassedOver) return form_of_psat(ICOMP);
  if (comp.IPAN(ICOMP) != 0) return method::antoine;
  if (comp.IPANO(ICOMP) != 0) return method::antoine_extended;
  return 0;
}

I4 tolk_choice(I4 ICOMP) {
  if (comp.IPSA(ICOMP) != 0) return form_of_psat(ICOMP);
  if (comp.IPAN(ICOMP) != 0) return method::antoine;
  return 0;
}

// The set of SET, when the flag of the component says that it is there.
I4 single_choice(I4 flag, I4 set) { return flag != 0 ? set : 0; }

bool is_method(I4 METHOD) {
  switch (METHOD) {
    case method::bramm_default:
    case method::tolk_default:
    case method::frost_kalkwarf:
    case method::wagner:
    case method::antoine:
    case method::antoine_extended:
      return true;
    default:
      return false;
  }
}

}  // namespace

// vapour_pressure_set: which set of a component a method takes.
//
// In       METHOD  I4  method::*
//          ICOMP   I4  component
// Out      the set, method::wagner, frost_kalkwarf, antoine or antoine_extended; 0 for none
// Shared   reads the flags of the sets in comp, and PSAT
I4 vapour_pressure_set(const I4& METHOD, const I4& ICOMP) {
  switch (METHOD) {
    case method::bramm_default:
      return bramm_choice(ICOMP);
    case method::tolk_default:
      return tolk_choice(ICOMP);
    case method::frost_kalkwarf:
      return single_choice(comp.IPSA(ICOMP), METHOD);
    case method::wagner:
      return single_choice(comp.IPWA(ICOMP), METHOD);
    case method::antoine:
      return single_choice(comp.IPAN(ICOMP), METHOD);
    case method::antoine_extended:
      return single_choice(comp.IPANO(ICOMP), METHOD);
    default:
      return 0;
  }
}

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
  if (METHOD == method::ideal_gas) {
    if (VALUE) PS = PSGIVEN;
    if (DERIV) DPS = 0.0;
    return;
  }
  switch (vapour_pressure_set(METHOD, ICOMP)) {
    case method::wagner:
      return SPSWG0(T, ICOMP, VALUE, DERIV, PS, DPS, NFAIL);
    case method::frost_kalkwarf:
      return SPSFK0(T, ICOMP, VALUE, DERIV, PS, DPS, NFAIL);
    case method::antoine:
      return SPSAN1(T, ICOMP, VALUE, DERIV, PS, DPS, NFAIL);
    case method::antoine_extended:
      return SPSAN2(T, ICOMP, VALUE, DERIV, PS, DPS, NFAIL);
    default:
      NFAIL = is_method(METHOD) ? status::model_error : status::not_available;
  }
}

}  // namespace talix
