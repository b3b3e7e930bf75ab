#include "transport/stc_conductivity.h"

#include "engine/codes.h"
#include "transport/composition.h"
#include "transport/stc_liquid.h"
#include "transport/stc_vapour.h"
#include "transport/svi_vapour.h"

namespace talix {

namespace {

bool wants_value(I4 MODE) { return MODE == transport_request::value || MODE == transport_request::both; }
bool wants_derivative(I4 MODE) {
  return MODE == transport_request::derivative || MODE == transport_request::both;
}

}  // namespace

// STCLM1: thermal conductivity of a liquid mixture.
//
// In       T, P     R8      [K], [Pa]
//          X        R8(50)  composition, need not be normalised
//          NC       I4      number of components
//          IC       I4(50)  component index list, passed on
//          MODE     I4      transport_request::*: value, derivative, both
//          METHOD   I4      method::livithec, mixture
// Out      LAMBDA   R8      [W/(m K)]; set when MODE asks for the value, 0 when the method fails
//          DLAMBDA  R8      0 when MODE asks for the derivative, which does not exist
//          STATUS   I4      status
// Status   ok; input (T or P not above 0, no composition); not_available (derivative asked for, the value
//          then stands; no such method or MODE); as the method
void STCLM1(const R8& T, const R8& P, const CompVec& X, const I4& NC, const Vec<I4, kMaxComponents>& IC,
            const I4& MODE, const I4& METHOD, R8& LAMBDA, R8& DLAMBDA, I4& STATUS) {
  STATUS = status::input;
  CompVec x;
  if (!(T > 0.0 && P > 0.0) || !normalise_composition(X, NC, x)) return;

  STATUS = status::not_available;
  if (wants_value(MODE)) {
    if (METHOD == method::livithec) STCLI0(x, P, T, NC, LAMBDA, STATUS);
    if (METHOD == method::mixture) STCCM0(x, P, T, IC, NC, LAMBDA, STATUS);
    if (STATUS != status::ok) {
      LAMBDA = 0.0;
      return;
    }
  }
  if (wants_derivative(MODE)) {
    DLAMBDA = 0.0;
    STATUS = status::not_available;
  }
}

// STCVM1: thermal conductivity of a vapour mixture.
//
// In       T, P     R8      [K], [Pa]
//          X        R8(50)  composition, need not be normalised
//          NC       I4      number of components
//          IC       I4(50)  component index list, passed on
//          MODE     I4      transport_request::*: value, derivative, both
//          METHOD   I4      method::mixture, thodos_wilke_dean
// Out      LAMBDA   R8      [W/(m K)]; set when MODE asks for the value and the method exists
//          DLAMBDA  R8      left alone: no derivative exists
//          STATUS   I4      status
// Status   ok; input (T or P not above 0, no composition); not_available (derivative asked for, the value
//          then stands; no such method or MODE); as the method
void STCVM1(const R8& T, const R8& P, const CompVec& X, const I4& NC, const Vec<I4, kMaxComponents>& IC,
            const I4& MODE, const I4& METHOD, R8& LAMBDA, [[maybe_unused]] R8& DLAMBDA, I4& STATUS) {
  STATUS = status::input;
  CompVec x;
  if (!(T > 0.0 && P > 0.0) || !normalise_composition(X, NC, x)) return;

  STATUS = status::not_available;
  if (wants_value(MODE)) {
    if (METHOD == method::mixture) STCTR0(x, P, T, IC, NC, LAMBDA, STATUS);
    if (METHOD == method::thodos_wilke_dean) STCLI1(x, P, T, IC, NC, LAMBDA, STATUS);
    if (STATUS != status::ok) return;
  }
  if (wants_derivative(MODE)) STATUS = status::not_available;
}

}  // namespace talix
