#include "fastprops/transport_call.h"

#include <cmath>

namespace talix {

void prepare_transport(TransportCall& call, const I4& NC, R8 T, R8 P, const FlashVec& X) {
  call.T = T;
  call.P = P;
  for (int i = 1; i <= NC; ++i) {
    call.X(i) = static_cast<R8>(X(i));
    call.IC(i) = 1;
  }
  call.VALUE = 0.0;
  call.DERIVATIVE = 0.0;
  call.STATUS = status::ok;
}

R4 transport_value(const TransportCall& call, int routine) {
  if (call.STATUS != status::ok) mark_error(routine, 1);
  const R4 value = static_cast<R4>(call.VALUE);
  return std::isfinite(value) ? value : 0.0F;
}

}  // namespace talix
