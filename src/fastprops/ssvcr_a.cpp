#include "fastprops/ssvcr_a.h"

#include "engine/codes.h"

namespace talix {

// SSVCR0_A: SSVCR0 with the statuses of this layer.
//
// Status   ICODE 0 success, 1 zero polynomial
void SSVCR0_A(const R8& CA, const R8& CB, const R8& CC, const R8& CD, I4& NROOT, RootTable& ROOTS,
              I4& ICODE) {
  I4 engine_status = status::ok;
  SSVCR0(CA, CB, CC, CD, NROOT, ROOTS, engine_status);
  ICODE = engine_status == status::ok ? 0 : 1;
}

// SSVCR1_A: SSVCR1, unchanged.
void SSVCR1_A(R8& Y, const R8& CA, const R8& CB, const R8& CC, const R8& CD, const R8& TOL, const I4& MAXIT) {
  SSVCR1(Y, CA, CB, CC, CD, TOL, MAXIT);
}

// SSVCR2_A: SSVCR2, unchanged.
void SSVCR2_A(R8& A, R8& B) { SSVCR2(A, B); }

}  // namespace talix
