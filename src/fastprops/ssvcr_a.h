// Copies of the engine's cubic solver for the fast layer, whose statuses are 0 and 1.
#pragma once

#include "eos/ssv_cubic_solve.h"

namespace talix {

// All real roots of CA y^3 + CB y^2 + CC y + CD = 0, ascending; ICODE 0, or 1 for a zero polynomial.
void SSVCR0_A(const R8& CA, const R8& CB, const R8& CC, const R8& CD, I4& NROOT, RootTable& ROOTS, I4& ICODE);
// Newton polish of Y in place.
void SSVCR1_A(R8& Y, const R8& CA, const R8& CB, const R8& CC, const R8& CD, const R8& TOL, const I4& MAXIT);
// Orders a pair.
void SSVCR2_A(R8& A, R8& B);

}  // namespace talix
