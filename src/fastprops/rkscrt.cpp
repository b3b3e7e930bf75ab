#include "fastprops/rkscrt.h"

#include <algorithm>
#include <cmath>

#include "engine/codes.h"
#include "eos/ssv_cubic_solve.h"
#include "fastprops/cubic_newton.h"
#include "fastprops/dcbrt.h"

namespace talix {

namespace {

constexpr R8 kThird = 0.333333333;
constexpr R8 kHalfRootOfThree = 0.8660254;
constexpr R8 kSolverTolerance = 1.0E-12;
constexpr R8 kRealEnough = 1.2E-12;  // imaginary over real part
constexpr R8 kProductTolerance = 1.0E-6;
constexpr R8 kPolish = 1.0E-7;

// The reduced form of the cubic.
struct Reduced {
  R8 L;           // shift of the roots
  R8 Q;           // its constant
  R8 TMP1, TMP2;  // P^3/27 and Q^2/4
};

Reduced reduced(const CubicVector& AN) {
  const R8 B = AN(1);
  const R8 L = B * kThird;
  const R8 P = AN(2) - B * L;
  const R8 Q = AN(3) - AN(2) * L + 0.074074074 * B * B * B;
  return {.L = L, .Q = Q, .TMP1 = P * P * P / 27.0, .TMP2 = Q * Q / 4.0};
}

// Turning points of the cubic around its only root; both 0 when it has none.
void turning_points(const CubicVector& AN, R8 ROOT, R8& ZMAX, R8& ZMIN) {
  ZMAX = ZMIN = 0.0;
  const R8 R = AN(1) * AN(1) - 3.0 * AN(2);
  if (!(R >= 0.0)) return;
  ZMIN = (-AN(1) + std::sqrt(R)) / 3.0;
  ZMAX = (-AN(1) - std::sqrt(R)) / 3.0;
  if (!(ZMAX > 0.0)) ZMAX = ROOT / 2.0;
  if (!(ZMIN > 0.0)) ZMIN = ROOT * 2.0;
}

// One real root and a complex pair, of which the real part is kept; true when the pair counts as real.
bool one_root(const Reduced& r, CubicVector& ZZ) {
  const R8 R = std::sqrt(r.TMP1 + r.TMP2);
  const R8 AA = DCBRT(-r.Q / 2.0 + R);
  const R8 BB = DCBRT(-r.Q / 2.0 - R);
  const R8 ALPHA = AA + BB;
  ZZ(1) = ALPHA - r.L;
  ZZ(2) = ZZ(3) = -ALPHA / 2.0 - r.L;
  const R8 DIMG = kHalfRootOfThree * (AA - BB);
  if (std::fabs(DIMG / ZZ(1)) > kRealEnough) return false;
  if (ALPHA < 0.0) std::swap(ZZ(1), ZZ(3));
  return true;
}

// Three real roots, the largest first; false when only that is above 0.
bool three_roots(const Reduced& r, CubicVector& ZZ) {
  const R8 R = std::sqrt(-r.TMP1);
  // A triple root leaves 0/0 for the angle, which then does not matter.
  const R8 a = r.TMP1 < 0.0 ? std::fabs(r.TMP2 / r.TMP1) : 1.0;
  const R8 THETA = std::atan(std::sqrt((1.0 - a) / a)) / 3.0;
  // The angle carries no sign; with Q above 0 the roots are the mirrored ones.
  const R8 CON = 2.0 * DCBRT(r.Q > 0.0 ? -R : R);
  ZZ(1) = CON * std::cos(THETA) - r.L;
  ZZ(2) = CON * std::cos(THETA + 4.1887902) - r.L;
  ZZ(3) = CON * std::cos(THETA + 2.0943951) - r.L;
  if (CON < 0.0) std::swap(ZZ(1), ZZ(3));
  if (!(ZZ(2) > 0.0) && !(ZZ(3) > 0.0)) return false;
  if (ZZ(2) * ZZ(3) > 0.0 && ZZ(2) >= ZZ(3)) std::swap(ZZ(2), ZZ(3));
  return true;
}

// The product of the roots is the constant with its sign changed.
void mend_roots(const CubicVector& AN, CubicVector& ZZ) {
  const R8 product = ZZ(1) * ZZ(2) * ZZ(3);
  if (!(std::fabs(product + AN(3)) > kProductTolerance * std::fabs(AN(3)))) return;
  ZZ(1) = polished_root(AN, 1.25 * ZZ(1), kPolish, kPolish);
  ZZ(3) = polished_root(AN, 0.8 * ZZ(3), kPolish, kPolish);
  ZZ(2) = -AN(1) - ZZ(1) - ZZ(3);
}

}  // namespace

// RKSCRT2: roots by the engine's solver, each polished.
//
// In       AN    R8(3)  coefficients of the second power, the first power and the constant
// Out      ZZ    R8(3)  three roots, the largest first; or the only root three times
//          ZMAX, ZMIN  R8  0: this routine forms no turning points
//          NRT   I4     3 or 1
void RKSCRT2(const CubicVector& AN, CubicVector& ZZ, R8& ZMAX, R8& ZMIN, I4& NRT) {
  constexpr R8 kLeading = 1.0;
  RootTable roots{};
  I4 ICODE = status::ok;
  SSVCR0(kLeading, AN(1), AN(2), AN(3), NRT, roots, ICODE);
  for (int i = 1; i <= NRT; ++i)
    SSVCR1(roots(i), kLeading, AN(1), AN(2), AN(3), kSolverTolerance, kPolishSteps);
  ZMAX = ZMIN = 0.0;
  if (NRT == 3) {
    ZZ(1) = roots(3);
    ZZ(2) = roots(2);
    ZZ(3) = roots(1);
  } else {
    NRT = 1;
    ZZ(1) = ZZ(2) = ZZ(3) = roots(1);
  }
}

// RKSCRT: roots by the closed forms, polished where their product is off.
//
// In       AN    R8(3)  coefficients of the second power, the first power and the constant
// Out      ZZ    R8(3)  three roots, the largest first; or the only root and the real part of the pair
//          ZMAX, ZMIN  R8  with one root: where the cubic has its maximum and minimum, 0 when it has none
//          NRT   I4     3 or 1
// Oddity   two positive smaller roots come in ascending order; three real roots of which two are not above 0
//          count as one
void RKSCRT(const CubicVector& AN, CubicVector& ZZ, R8& ZMAX, R8& ZMIN, I4& NRT) {
  const Reduced r = reduced(AN);
  ZMAX = ZMIN = 0.0;
  const bool all_real = r.TMP1 + r.TMP2 > 0.0 ? one_root(r, ZZ) : three_roots(r, ZZ);
  if (!all_real) {
    NRT = 1;
    turning_points(AN, ZZ(1), ZMAX, ZMIN);
    return;
  }
  NRT = 3;
  mend_roots(AN, ZZ);
}

}  // namespace talix
