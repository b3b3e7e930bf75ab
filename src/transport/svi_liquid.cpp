#include "transport/svi_liquid.h"

#include "engine/codes.h"
#include "transport/composition.h"
#include "transport/svi_liquid_combined.h"
#include "transport/svi_liquid_corresponding.h"
#include "transport/svi_liquid_standard.h"
#include "transport/svi_vapour.h"

namespace talix {

// SLVIM1: viscosity of a liquid mixture.
//
// In       T, P    R8      [K], [Pa]
//          X       R8(50)  composition, need not be normalised
//          NC      I4      number of components
//          IC      I4(50)  component index list, passed on
//          MODE    I4      transport_request::*: value, derivative, both
//          METHOD  I4      method::livithec, mixture, sternling_samish, old_sternling_samish
// Out      ETA     R8      [mPa s]; set when MODE asks for the value
//          DETA    R8      0 when MODE asks for the derivative, which does not exist
//          STATUS  I4      status
// Status   ok; input (T or P not above 0, no composition); not_available (derivative asked for, the value
//          then stands; no such method or MODE); as the method
void SLVIM1(const R8& T, const R8& P, const CompVec& X, const I4& NC, const Vec<I4, kMaxComponents>& IC,
            const I4& MODE, const I4& METHOD, R8& ETA, R8& DETA, I4& STATUS) {
  STATUS = status::input;
  CompVec x;
  if (!(T > 0.0 && P > 0.0) || !normalise_composition(X, NC, x)) return;

  STATUS = status::not_available;
  if (MODE == transport_request::value || MODE == transport_request::both) {
    switch (METHOD) {
      case method::livithec:
        SVILI0(x, P, T, NC, ETA, STATUS);
        break;
      case method::mixture:
        SVICM0(x, P, T, IC, NC, ETA, STATUS);
        break;
      case method::sternling_samish:
        SVISS1(x, P, T, NC, ETA, STATUS);
        break;
      case method::old_sternling_samish:
        SVISO1(x, P, T, NC, ETA, STATUS);
        break;
      default:
        return;
    }
    if (STATUS != status::ok) return;
  }
  if (MODE == transport_request::derivative || MODE == transport_request::both) {
    DETA = 0.0;
    STATUS = status::not_available;
  }
}

}  // namespace talix
