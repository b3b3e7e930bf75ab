// Real roots of a cubic with real coefficients.
#pragma once

#include "base/array.h"
#include "base/real.h"

namespace talix {

using RootTable = Vec<R8, 3>;

// All real roots of CA y^3 + CB y^2 + CC y + CD = 0, ascending.
void SSVCR0(const R8& CA, const R8& CB, const R8& CC, const R8& CD, I4& NROOT, RootTable& ROOTS, I4& ICODE);
// Newton polish of Y in place.
void SSVCR1(R8& Y, const R8& CA, const R8& CB, const R8& CC, const R8& CD, const R8& TOL, const I4& MAXIT);
// Orders a pair.
void SSVCR2(R8& A, R8& B);

}  // namespace talix
