#include "fastprops/vrdo.h"

#include <algorithm>
#include <cmath>

#include "base/array.h"

namespace talix {

namespace {

constexpr I4 kOffsetA = 0;  // columns before the a curve
constexpr I4 kOffsetB = 5;  // and before the b curve
constexpr R4 kMaxExponent = 25.0F;
constexpr R4 kHeaviest = 4.0F;      // acentric factor above which the parameters are extrapolated
constexpr R4 kLowerNode = 3.5F;     // from the values here and at kHeaviest
constexpr R4 kBand = 0.05F;         // half width of the transition between the two families of a curves
constexpr R4 kJoin = 1.04F;         // Tc/T at which the two b curves meet
constexpr R4 kHeavyCurves = 0.85F;  // acentric factor above which the heavy b curves hold
constexpr R4 kHeavyA = 0.9F;        // and the heavy a curves

// What the sigmoids of a row give at one argument.
struct CurvePoint {
  R4 A, B, DA1, DB1, DA2, DB2;
};

CurvePoint curve_point(const R4* GA, I4 N, I4 I, I4 MODE, R4 X) {
  CurvePoint p{};
  p.A = VRDOE1(GA, N, I, kOffsetA, X, 1);
  p.B = VRDOE1(GA, N, I, kOffsetB, X, 1);
  if (MODE == 0) return p;
  p.DA1 = VRDOE1(GA, N, I, kOffsetA, X, 2);
  p.DB1 = VRDOE1(GA, N, I, kOffsetB, X, 2);
  p.DA2 = VRDOE1(GA, N, I, kOffsetA, X, 3);
  p.DB2 = VRDOE1(GA, N, I, kOffsetB, X, 3);
  return p;
}

// The reciprocal is linear in the acentric factor.
R4 extrapolated(R4 at_lower, R4 at_upper, R4 OMEGA) {
  const R4 A1 = 2.0F / at_upper - 2.0F / at_lower;
  const R4 A0 = 1.0F / at_lower - kLowerNode * A1;
  return 1.0F / (A1 * OMEGA + A0);
}

// Columns 6 to 10, the b curve.
void fill_b(R4 W, const MatView<R4>& P, I4 I) {
  if (W > kHeavyCurves) {
    const R4 B0 = 1.70756F * (W - 1.2323F);
    P(I, 6) =
        1.78609F - 0.0941935F * std::log(1.0F + std::exp(B0)) + 3.21834F * std::log(1.0F + std::exp(-B0));
    P(I, 7) = -0.0254752F;
    P(I, 8) = 0.598876F * std::log(W - 0.65F) + 1.96935F;
    P(I, 9) = 1.51707F;
    P(I, 10) = 0.099481F * W * std::exp(17.1357F / (W + 4.61654F)) - 3.23266F;
  } else {
    P(I, 6) = -2.92067F * W + 8.82132F;
    P(I, 7) = -0.0346255F;
    P(I, 8) = (15.9905F * W + 1.63881F) * W + 4.44478F;
    P(I, 9) = 1.08955F;
    P(I, 10) = 1.2766F * std::exp(-2.20297F * W) - 0.221047F;
  }
}

// Columns 1 to 5, the a curve.
void fill_a(R4 W, bool heavy, const MatView<R4>& P, I4 I) {
  if (heavy) {
    const R4 C1 = 11.3468F * (W - 1.64721F);
    const R4 C2 = 2.5237F * (W - 2.322121F);
    P(I, 1) = 0.00112833F * std::log(1.0F + std::exp(C1)) + 0.105575F +
              0.00364675F * std::log(1.0F + std::exp(-C1));
    P(I, 2) =
        -0.00103717F * std::log(1.0F + std::exp(C2)) + 0.1939F + 0.043836F * std::log(1.0F + std::exp(-C2));
    P(I, 3) = 3.0F;
    P(I, 4) = 0.9F;
    P(I, 5) = 0.0467549F * W + 0.123598F;
  } else {
    P(I, 1) = -0.535953F * W + 0.290855F;
    P(I, 2) = 0.642252F * W + 0.559832F;
    P(I, 3) = (-0.371165F * W + 0.060934F) * W + 1.30707F;
    P(I, 4) = 0.903474F;
    P(I, 5) = 0.495519F;
  }
}

}  // namespace

// VRDOE1: two slopes in X = Tc/T, blended over a width of 1/G3 at G4.
//
// In       GA   R4(N,*)  curve constants, columns J0+1 to J0+5
//          J0   I4       0 the a curve; 5 the b curve, whose result is scaled by 0.01
//          X    R4       Tc/T [-]
//          ID   I4       1 value, 2 first, 3 second derivative with T/Tc
// Returns  the value [-]
// Oddity   the exponent stops at 25, so that the value is constant where G3 (X-G4) is above 25
R4 VRDOE1(const R4* GA, const I4& N, const I4& I, const I4& J0, const R4& X, const I4& ID) {
  const MatView<const R4> G{GA, N};
  const R4 G1 = G(I, J0 + 1);
  const R4 G2 = G(I, J0 + 2);
  const R4 G3 = G(I, J0 + 3);
  const R4 G4 = G(I, J0 + 4);
  const R4 G5 = G(I, J0 + 5);
  const R4 E0 = std::min(G3 * (X - G4), kMaxExponent);
  const R4 E = std::exp(E0);
  const R4 TMP = 1.0F + E;
  const R4 X2 = X * X;
  R4 result = 0.0F;
  if (ID == 1)
    result = G2 * std::log(TMP) + G1 - G5 * std::log(TMP / E);
  else if (ID == 2)
    result = -(G3 * X2 * (G2 * E + G5)) / TMP;
  else
    result = 2.0F * G3 * X * X2 * (G2 * E + G5) / TMP + G3 * G3 * X2 * X2 * (G2 - G5) * E / (TMP * TMP);
  return J0 == kOffsetB ? result * 0.01F : result;
}

// VRDOE2: B1 + B2 (1 - X) exp(B3/(B4 - X)).
//
// In       B1..B4  R4  constants [-]
//          X       R4  Tc/T [-]
//          ID      I4  1 value, 2 first, 3 second derivative with T/Tc
// Returns  the value [-]
R4 VRDOE2(const R4& B1, const R4& B2, const R4& B3, const R4& B4, const R4& X, const I4& ID) {
  const R4 D = B4 - X;
  const R4 E = std::exp(B3 / D);
  const R4 X2 = X * X;
  if (ID == 1) return B1 + B2 * (1.0F - X) * E;
  const R4 W = -(E * X2 * B3) / (D * D);
  if (ID == 2) return B2 * (X2 * E + W - X * W);
  return B2 * (2.0F * X2 * (W - E * X) + (W * (X - 1.0F) / D) * X * (2.0F * B4 + X * B3 / D));
}

// VRDOE3: rational in T/Tc, equal to column 11 at the critical point.
//
// In       GA  R4(N,*)  curve constants, columns 11 to 15
//          X   R4       Tc/T [-]
//          ID  I4       1 value, 2 first, 3 second derivative with T/Tc
// Returns  the value [-]
R4 VRDOE3(const R4* GA, const I4& N, const I4& I, const R4& X, const I4& ID) {
  const MatView<const R4> G{GA, N};
  const R4 G11 = G(I, 11);
  const R4 G12 = G(I, 12);
  const R4 G13 = G(I, 13);
  const R4 G14 = G(I, 14);
  const R4 G15 = G(I, 15);
  if (ID == 1) {
    const R4 U = 1.0F - X;
    return ((G13 * U + G12) * U + G11) / (1.0F + (G15 * U + G14) * U);
  }
  const R4 V = 1.0F / X;
  const R4 TR = G11 + G12 + G13;
  const R4 TD = 1.0F + G14 + G15;
  const R4 N1 = -G12 - 2.0F * G13;
  const R4 D1 = -G14 - 2.0F * G15;
  const R4 NUM = (TR * V + N1) * V + G13;
  const R4 DEN = (TD * V + D1) * V + G15;
  const R4 RN = 2.0F * TR * V + N1;
  const R4 RD = 2.0F * TD * V + D1;
  if (ID == 2) return (RN * DEN - RD * NUM) / (DEN * DEN);
  return 2.0F * (((TR * DEN - TD * NUM) * DEN + RD * (NUM * RD - RN * DEN)) / (DEN * DEN * DEN));
}

// VRDO11: parameters of a heavy pseudo-component, whose curves follow from its acentric factor.
//
// In       MODE   I4       0 values only, else with derivatives
//          X      R4       Tc/T [-]
//          OMEGA  R4       acentric factor [-]
// In, out  GA     R4(N,*)  row I is overwritten by VRDO12
// Out      A, B, DA1, DB1, DA2, DB2  R4  parameters and derivatives with T/Tc [-]; only with IER done
//          IER    I4       vrdo_result::*
// Oddity   above an acentric factor of 4 each derivative is extrapolated by itself and is no slope of the
//          value; in the transition band the row keeps the curves of its upper edge
void VRDO11(R4* GA, const I4& N, const I4& I, const I4& MODE, const R4& X, const R4& OMEGA, R4& A, R4& B,
            R4& DA1, R4& DB1, R4& DA2, R4& DB2, I4& IER) {
  if (OMEGA > kHeaviest) {
    IER = vrdo_result::done;
    VRDO12(kLowerNode, GA, N, I, 0);
    const CurvePoint lower = curve_point(GA, N, I, MODE, X);
    VRDO12(kHeaviest, GA, N, I, 0);
    const CurvePoint upper = curve_point(GA, N, I, MODE, X);
    A = extrapolated(lower.A, upper.A, OMEGA);
    B = extrapolated(lower.B, upper.B, OMEGA);
    if (MODE == 0) return;
    DA1 = extrapolated(lower.DA1, upper.DA1, OMEGA);
    DB1 = extrapolated(lower.DB1, upper.DB1, OMEGA);
    DA2 = extrapolated(lower.DA2, upper.DA2, OMEGA);
    DB2 = extrapolated(lower.DB2, upper.DB2, OMEGA);
    return;
  }

  IER = vrdo_result::general;
  const R4 WCUT = std::min(0.55993F + 0.70357F / X, 0.9F);
  VRDO12(OMEGA, GA, N, I, OMEGA > WCUT ? 1 : 0);
  if (!(std::fabs(OMEGA - WCUT) <= kBand)) return;
  if (X < kJoin) {
    IER = vrdo_result::refused;
    return;
  }

  // Between the two families of a curves: linear in the acentric factor.
  const CurvePoint own = curve_point(GA, N, I, MODE, X);
  VRDO12(WCUT - kBand, GA, N, I, 0);
  const CurvePoint lower = curve_point(GA, N, I, MODE, X);
  VRDO12(WCUT + kBand, GA, N, I, 1);
  const CurvePoint upper = curve_point(GA, N, I, MODE, X);
  const R4 share = (OMEGA - WCUT + kBand) * 10.0F;
  A = share * (upper.A - lower.A) + lower.A;
  B = own.B;
  if (MODE != 0) {
    DA1 = share * (upper.DA1 - lower.DA1) + lower.DA1;
    DA2 = share * (upper.DA2 - lower.DA2) + lower.DA2;
    DB1 = own.DB1;
    DB2 = own.DB2;
  }
  IER = vrdo_result::done;
}

// VRDO12: curve constants from the acentric factor.
//
// In       OMEGA  R4       acentric factor [-]
//          IFLAG  I4       1 asks for the heavy a curves below 0.9 too
// Out      PARAB  R4(N,*)  columns 1 to 15 of row I
void VRDO12(const R4& OMEGA, R4* PARAB, const I4& N, const I4& I, const I4& IFLAG) {
  const R4 W = OMEGA;
  const MatView<R4> P{PARAB, N};
  fill_b(W, P, I);
  fill_a(W, W > kHeavyA || IFLAG == 1, P, I);
  const R4 T1 = P(I, 3) * (1.0F - P(I, 4));
  P(I, 11) = P(I, 2) * std::log(1.0F + std::exp(T1)) + P(I, 1) - P(I, 5) * std::log(1.0F + std::exp(-T1));
  P(I, 12) = 19.696F * W + 0.18902F;
  P(I, 13) = -25.016F * W - 0.72032F;
  P(I, 14) = 45.547F * W + 1.2889F;
  P(I, 15) = 31.4571F * W + 1.1923F;
}

}  // namespace talix
