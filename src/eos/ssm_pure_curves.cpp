#include "eos/ssm_pure_curves.h"

#include <cmath>

namespace talix {

namespace {

constexpr R8 kSteep = 50.0;  // beyond this argument the blend has run out

}  // namespace

// SSMPC1: two slopes in Tc/T, blended over a width of 1/p3 at p4.
//
// In       PARABF  R8(50,15)  curve parameters
//          NMAX    I4         rows of PARABF
//          IC      I4         component
//          KOFF    I4         0 the a curve, 5 the b curve, whose result is scaled by 0.01
//          XI      R8         Tc/T [-]
//          ORDER   I4         1 value, 2 first, 3 second derivative with T/Tc
// Returns  the value [-]
R8 SSMPC1(const Mat<R8, kMaxComponents, 15>& PARABF, const I4& /*NMAX*/, const I4& IC, const I4& KOFF,
          const R8& XI, const I4& ORDER) {
  const R8 p1 = PARABF(IC, KOFF + 1);
  const R8 p2 = PARABF(IC, KOFF + 2);
  const R8 p3 = PARABF(IC, KOFF + 3);
  const R8 p4 = PARABF(IC, KOFF + 4);
  const R8 p5 = PARABF(IC, KOFF + 5);
  const R8 T = p3 * (XI - p4);
  R8 result = 0.0;
  if (ORDER == 1) {
    const R8 E = std::abs(T) > kSteep ? std::abs(T) / 2.0 : std::log(2.0 * std::cosh(T / 2.0));
    result = p1 + (p2 + p5) * T / 2.0 + (p2 - p5) * E;
  } else if (ORDER == 2) {
    result = -p3 * XI * XI * (p2 + p5 + (p2 - p5) * std::tanh(T / 2.0)) / 2.0;
  } else {
    const R8 XI3 = XI * XI * XI;
    if (T > kSteep) {
      result = 2.0 * p3 * XI3 * p2;
    } else if (T < -kSteep) {
      result = 2.0 * p3 * XI3 * p5;
    } else {
      const R8 E = std::exp(T);
      const R8 E1 = 1.0 + E;
      result = 2.0 * p3 * XI3 * (p2 * E + p5) / E1 + p3 * p3 * XI3 * XI * (p2 - p5) * E / (E1 * E1);
    }
  }
  return KOFF == 5 ? result * 0.01 : result;
}

// SSMPC2: b above the critical region, C1 + C2 (1 - XI) exp(C3/(C4 - XI)).
//
// In       C1..C4  R8  constants of the component [-]
//          XI      R8  Tc/T [-]
//          ORDER   I4  1 value, 2 first, 3 second derivative with T/Tc
// Returns  the value [-]
R8 SSMPC2(const R8& C1, const R8& C2, const R8& C3, const R8& C4, const R8& XI, const I4& ORDER) {
  const R8 ADUM = C4 - XI;
  const R8 FACT = std::exp(C3 / ADUM);
  if (ORDER == 1) return C1 + C2 * (1.0 - XI) * FACT;
  const R8 XI2 = XI * XI;
  const R8 W = -FACT * XI2 * C3 / (ADUM * ADUM);
  if (ORDER == 2) return C2 * (XI2 * FACT + W - XI * W);
  const R8 V = (W * (XI - 1.0) / ADUM) * XI * (2.0 * C4 + XI * C3 / ADUM);
  return C2 * (2.0 * XI2 * (W - FACT * XI) + V);
}

// SSMPC3: a above the critical region, rational in T/Tc, equal to parameter 11 at the critical point.
//
// In       PARABF  R8(50,15)  curve parameters, columns 11 to 15
//          NMAX    I4         rows of PARABF
//          IC      I4         component
//          XI      R8         Tc/T [-]
//          ORDER   I4         1 value, 2 first, 3 second derivative with T/Tc
// Returns  the value [-]
R8 SSMPC3(const Mat<R8, kMaxComponents, 15>& PARABF, const I4& /*NMAX*/, const I4& IC, const R8& XI,
          const I4& ORDER) {
  const R8 u = 1.0 / XI;
  const R8 P12 = PARABF(IC, 12);
  const R8 P14 = PARABF(IC, 14);
  const R8 N0 = PARABF(IC, 13);
  const R8 N1 = -P12 - 2.0 * N0;
  const R8 N2 = PARABF(IC, 11) + P12 + N0;
  const R8 D0 = PARABF(IC, 15);
  const R8 D1 = -P14 - 2.0 * D0;
  const R8 D2 = 1.0 + P14 + D0;
  const R8 DEN = (D2 * u + D1) * u + D0;
  const R8 TL = ((N2 * u + N1) * u + N0) / DEN;
  if (ORDER == 1) return TL;
  const R8 G = (2.0 * N2 * u + N1) / DEN;
  const R8 D1RN = (2.0 * D2 * u + D1) / DEN;
  if (ORDER == 2) return G - D1RN * TL;
  return 2.0 * ((N2 - D2 * TL) / DEN + D1RN * (TL * D1RN - G));
}

}  // namespace talix
