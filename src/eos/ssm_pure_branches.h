// Pieces that the routines of the component curves share: limits, scaling, the constants of b above the critical
// region, and the derivatives that run on lines between the curves.
#pragma once

#include "database/component_record.h"
#include "eos/cubic_record.h"
#include "eos/ssm_pure_curves.h"
#include "eos/ssm_pure_scale.h"

namespace talix::pure_curves {

inline constexpr R8 kWarm = 0.9090909;  // Tc/T above which the curves above critical hold alone
inline constexpr R8 kWarmSpan = -0.0909091;
inline constexpr R8 kJoin = 1.04;  // Tc/T at which the two b curves meet
inline constexpr R8 kJoinSpan = -0.1309091;
inline constexpr R8 kJoinFactor = -0.1500838;  // (1 - 1.04) exp(0.08/(1.1005 - 1.04))

inline constexpr I4 kOffsetA = 0;  // columns of PARABF before the a curve
inline constexpr I4 kOffsetB = 5;  // and before the b curve

inline R8 cold_curve(int i, I4 offset, R8 TR1, I4 ORDER) {
  return SSMPC1(comp.PARABF, kMaxComponents, i, offset, TR1, ORDER);
}

inline R8 warm_a(int i, R8 TR1, I4 ORDER) { return SSMPC3(comp.PARABF, kMaxComponents, i, TR1, ORDER); }

// a, or a derivative of it, on the line between the critical temperature and the warm limit.
inline R8 line_a(int i, R8 TR1, I4 ORDER) {
  const R8 AAC = cold_curve(i, kOffsetA, 1.0, ORDER);
  const R8 AALIM = warm_a(i, kWarm, ORDER);
  return (AALIM - AAC) * (TR1 - 1.0) / kWarmSpan + AAC;
}

// a with the line.
inline R8 a_curve(int i, R8 TR1, I4 ORDER) {
  if (!(TR1 < 1.0)) return cold_curve(i, kOffsetA, TR1, ORDER);
  if (TR1 < kWarm) return warm_a(i, TR1, ORDER);
  return line_a(i, TR1, ORDER);
}

// Constants of the b curve above the critical region.
struct WarmB {
  R8 C1, C2, C3, C4;
};

inline WarmB warm_constants(int i) {
  const std::string_view tag = trimmed(comp.ICS(i));
  if (tag == "H2") return {.C1 = 0.084456, .C2 = 0.0058822, .C3 = 0.9636, .C4 = 2.0};
  if (tag == "HE") return {.C1 = 0.105, .C2 = -0.0284, .C3 = 1.0, .C4 = 2.0};
  if (tag == "N2") return {.C1 = 0.081516, .C2 = 0.092116, .C3 = -7.50201, .C4 = 5.48383};
  const R8 C1 = comp.PARABF(i, 11) / 4.934;
  const R8 B104 = cold_curve(i, kOffsetB, kJoin, 1);
  return {.C1 = C1, .C2 = (B104 - C1) / kJoinFactor, .C3 = 0.08, .C4 = 1.1005};
}

inline R8 warm_b(const WarmB& c, R8 TR1, I4 ORDER) { return SSMPC2(c.C1, c.C2, c.C3, c.C4, TR1, ORDER); }

// Derivative of b with a line between the join and the warm limit.
inline R8 b_derivative(int i, const WarmB& c, R8 TR1, I4 ORDER) {
  if (!(TR1 < kJoin)) return cold_curve(i, kOffsetB, TR1, ORDER);
  if (TR1 < kWarm) return warm_b(c, TR1, ORDER);
  const R8 cold = cold_curve(i, kOffsetB, kJoin, ORDER);
  const R8 warm = warm_b(c, kWarm, ORDER);
  return (warm - cold) * (TR1 - kJoin) / kJoinSpan + cold;
}

// Factors from the curves to the tables: value, first and second derivative [K/Pa].
struct CurveScale {
  R8 W1, W2, W3;
};

inline CurveScale curve_scale(int i, R8 T) {
  const R8 PCP = comp.PC(i) * pure_scale::kBarToPascal;
  const R8 W2 = T / PCP;
  return {.W1 = comp.TC(i) / PCP, .W2 = W2, .W3 = W2 / (comp.TC(i) / T)};
}

// The curves of a and b at one temperature, or their slopes with T/Tc.
struct CurvePair {
  R8 a, b;
};

inline void store_values(int i, const CurveScale& scale, const CurvePair& value) {
  pures.ARK(i) = pure_scale::floored(value.a) * scale.W1;
  pures.BRK(i) = value.b * scale.W1;
  pures.CRK(i) = 0.0;
}

inline void store_slopes(int i, const CurveScale& scale, const CurvePair& slope) {
  pures.D1ADT(i) = slope.a * scale.W2;
  pures.D1BDT(i) = slope.b * scale.W2;
  pures.D1CDT(i) = 0.0;
}

// The second derivatives are the same for every way to join the curves.
inline void store_curvatures(int i, const CurveScale& scale, const WarmB& c, R8 TR1) {
  pures.D2ADT(i) = a_curve(i, TR1, 3) * scale.W3;
  pures.D2BDT(i) = b_derivative(i, c, TR1, 3) * scale.W3;
  pures.D2CDT(i) = 0.0;
}

}  // namespace talix::pure_curves
