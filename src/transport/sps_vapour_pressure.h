// Vapour pressure correlations of a pure component: PSAT [Pa] when VALUE asks for it, DPSAT [Pa/K] when DERIV
// does.
#pragma once

#include "base/logical.h"
#include "base/real.h"

namespace talix {

// Wagner.
void SPSWG0(const R8& T, const I4& ICOMP, const L4& VALUE, const L4& DERIV, R8& PSAT, R8& DPSAT, I4& NFAIL);
// Antoine.
void SPSAN1(const R8& T, const I4& ICOMP, const L4& VALUE, const L4& DERIV, R8& PSAT, R8& DPSAT, I4& NFAIL);
// Frost-Kalkwarf.
void SPSFK0(const R8& T, const I4& ICOMP, const L4& VALUE, const L4& DERIV, R8& PSAT, R8& DPSAT, I4& NFAIL);
// Extended Antoine.
void SPSAN2(const R8& T, const I4& ICOMP, const L4& VALUE, const L4& DERIV, R8& PSAT, R8& DPSAT, I4& NFAIL);

}  // namespace talix
