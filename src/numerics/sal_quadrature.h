// Quadrature over the positive half-axis.
#pragma once

#include "base/real.h"

namespace talix {

// An integrand.
struct Integrand {
  R8 (*call)(void* context, R8 argument);
  void* context;
};

// The integral of FUNC from 0 to infinity, with length scale A.
void SALNI0(const Integrand& FUNC, const R8& A, R8& RESULT, I4& STATUS);

}  // namespace talix
