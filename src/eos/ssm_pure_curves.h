// Value functions of the curves of the cubic.
#pragma once

#include "base/array.h"
#include "base/real.h"

namespace talix {

// Curve of a (KOFF 0) or b (KOFF 5) of component IC at XI = Tc/T: ORDER 1 value, 2 and 3 derivatives with
// T/Tc.
R8 SSMPC1(const Mat<R8, kMaxComponents, 15>& PARABF, const I4& NMAX, const I4& IC, const I4& KOFF,
          const R8& XI, const I4& ORDER);
// b above the critical region.
R8 SSMPC2(const R8& C1, const R8& C2, const R8& C3, const R8& C4, const R8& XI, const I4& ORDER);
// a above the critical region, rational in T/Tc.
R8 SSMPC3(const Mat<R8, kMaxComponents, 15>& PARABF, const I4& NMAX, const I4& IC, const R8& XI,
          const I4& ORDER);

}  // namespace talix
