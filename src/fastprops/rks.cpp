#include <algorithm>
#include <cmath>

#include "fastprops/cubic_newton.h"
#include "fastprops/dcbrt.h"
#include "fastprops/rkscrt.h"

namespace talix {

namespace {

constexpr R8 kThird = 0.333333333;
constexpr R8 kHalfRootOfThree = 0.866025404;
constexpr R8 kPi = 3.14159265;
constexpr R8 kTolerance = 1.0E-8;  // imaginary over real part, product of the roots, relative step
constexpr R8 kSmallValue = 1.0E-14;

// The reduced form of the cubic.
struct Reduced {
  R8 BTHD;    // shift of the roots
  R8 P, Q;    // a third of its slope at 0, half of its constant
  R8 P3, Q2;  // -P^3, Q^2
};

Reduced reduced(const CubicVector& AN) {
  const R8 BTHD = AN(1) * kThird;
  const R8 P = (AN(2) - AN(1) * BTHD) * kThird;
  const R8 Q = (AN(3) - AN(2) * BTHD + 0.0740740741 * AN(1) * AN(1) * AN(1)) / 2.0;
  return {.BTHD = BTHD, .P = P, .Q = Q, .P3 = -P * P * P, .Q2 = Q * Q};
}

// One real root and a complex pair; false when all three are the real one.
bool closed_form(const Reduced& r, CubicVector& ZZ) {
  const R8 R = std::sqrt(r.Q2 - r.P3);
  const R8 AA = DCBRT(-r.Q + R);
  const R8 BB = DCBRT(-r.Q - R);
  const R8 ALPHA = AA + BB;
  ZZ(1) = ALPHA - r.BTHD;
  ZZ(2) = ZZ(3) = -ALPHA / 2.0 - r.BTHD;
  const R8 DIMG = kHalfRootOfThree * (AA - BB);
  if (!(std::fabs(DIMG / ZZ(1)) > kTolerance)) return true;
  ZZ(2) = ZZ(3) = ZZ(1);
  return false;
}

void trigonometric(const Reduced& r, CubicVector& ZZ) {
  constexpr R8 CON3 = 2.0 * kPi / 3.0;
  // A triple root leaves 0/0 for the angle, which then does not matter.
  const R8 a = r.P3 > 0.0 ? r.Q2 / r.P3 : 1.0;
  const R8 THETA = std::atan(std::sqrt((1.0 - a) / a)) / 3.0;
  // The angle carries no sign; with Q above 0 the roots are the mirrored ones.
  const R8 R = std::sqrt(r.P3);
  const R8 CON = 2.0 * DCBRT(r.Q > 0.0 ? -R : R);
  ZZ(1) = CON * std::cos(THETA) - r.BTHD;
  ZZ(2) = CON * std::cos(THETA + 2.0 * CON3) - r.BTHD;
  ZZ(3) = CON * std::cos(THETA + CON3) - r.BTHD;
}

}  // namespace

// RKS: roots for the range below 1 bar.
//
// In       AN  R8(3)  coefficients of the second power, the first power and the constant
// Out      ZZ  R8(3)  smallest non-negative root, largest root, third root; or the only root three times
void RKS(const CubicVector& AN, CubicVector& ZZ) {
  const Reduced r = reduced(AN);
  if (r.Q2 - r.P3 > 0.0) {
    if (!closed_form(r, ZZ)) return;
  } else {
    trigonometric(r, ZZ);
  }

  R8 largest = std::max({ZZ(1), ZZ(2), ZZ(3)});
  R8 smallest = largest;
  for (int i = 1; i <= 3; ++i)
    if (ZZ(i) >= 0.0) smallest = std::min(smallest, ZZ(i));
  if (!(smallest < largest)) {
    ZZ(1) = ZZ(2) = ZZ(3) = largest;
    return;
  }

  // The product of the roots is the constant with its sign changed.
  const R8 product = ZZ(1) * ZZ(2) * ZZ(3);
  if (std::fabs(product + AN(3)) > kTolerance * std::fabs(AN(3))) {
    smallest = polished_root(AN, 0.8 * smallest, kSmallValue, kTolerance);
    largest = polished_root(AN, 1.25 * largest, kSmallValue, kTolerance);
  }
  ZZ(1) = smallest;
  ZZ(2) = largest;
  ZZ(3) = -AN(1) - smallest - largest;
}

}  // namespace talix
