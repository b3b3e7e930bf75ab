#include "eos/ssm_pure_smooth.h"

#include "engine/codes.h"
#include "eos/ssm_pure_branches.h"

namespace talix {

namespace {

using namespace pure_curves;

constexpr R8 kReducedWarm = 1.1;          // T/Tc at which the cubic ends
constexpr R8 kReducedJoin = 0.961538462;  // and begins, 1/1.04
constexpr R8 kSpan = kReducedWarm - kReducedJoin;

// Ends of the cubic: values and slopes over its length.
struct Nodes {
  R8 V, S;  // cold end
  R8 W, U;  // warm end
};

R8 hermite(const Nodes& n, R8 X) {
  const R8 Y = 1.0 - X;
  return n.V * Y * Y * (1.0 + 2.0 * X) + n.S * X * Y * Y + n.W * X * X * (3.0 - 2.0 * X) - n.U * X * X * Y;
}

// Slope with T/Tc.
R8 hermite_slope(const Nodes& n, R8 X) {
  const R8 Y = 1.0 - X;
  return (-6.0 * n.V * X * Y + n.S * (1.0 - 3.0 * X) * Y + 6.0 * n.W * X * Y + n.U * X * (3.0 * X - 2.0)) /
         kSpan;
}

Nodes nodes_of_a(int i) {
  return {.V = cold_curve(i, kOffsetA, kJoin, 1),
          .S = kSpan * cold_curve(i, kOffsetA, kJoin, 2),
          .W = warm_a(i, kWarm, 1),
          .U = kSpan * warm_a(i, kWarm, 2)};
}

Nodes nodes_of_b(int i, const WarmB& c) {
  return {.V = cold_curve(i, kOffsetB, kJoin, 1),
          .S = kSpan * cold_curve(i, kOffsetB, kJoin, 2),
          .W = warm_b(c, kWarm, 1),
          .U = kSpan * warm_b(c, kWarm, 2)};
}

// The curves with T/Tc: order 1 values, 2 slopes.
CurvePair curves(int i, const WarmB& c, R8 TR1, R8 X, I4 ORDER) {
  if (TR1 > kJoin)
    return {.a = cold_curve(i, kOffsetA, TR1, ORDER), .b = cold_curve(i, kOffsetB, TR1, ORDER)};
  if (TR1 < kWarm) return {.a = warm_a(i, TR1, ORDER), .b = warm_b(c, TR1, ORDER)};
  const Nodes a = nodes_of_a(i);
  const Nodes b = nodes_of_b(i, c);
  if (ORDER == 1) return {.a = hermite(a, X), .b = hermite(b, X)};
  return {.a = hermite_slope(a, X), .b = hermite_slope(b, X)};
}

void component_parameters(int i, const R8& T, const I4& IPARA) {
  const R8 TR1 = comp.TC(i) / T;
  const R8 X = (T / comp.TC(i) - kReducedJoin) / kSpan;
  const CurveScale scale = curve_scale(i, T);
  const WarmB c = TR1 > kJoin ? WarmB{} : warm_constants(i);

  store_values(i, scale, curves(i, c, TR1, X, 1));
  if (IPARA > 0) store_slopes(i, scale, curves(i, c, TR1, X, 2));
  if (IPARA == 2) store_curvatures(i, scale, c, TR1);
}

}  // namespace

// SSMPC5: a and b from the component's curves, with values and slopes that meet.
//
// From Tc/T 1.04 down to 0.9090909 a cubic in T/Tc joins the curves of either side in value and slope.
//
// In       T             R8  temperature [K]
//          IPARA         I4  0 values, 1 with first, 2 with second derivatives
//          IFCOM, ILCOM  I4  range of components
// Shared   reads comp.TC, PC, ICS, PARABF; writes pures
// Status   ok
// Oddity   the second derivatives are the lines of SSMPC0, not the curvature of the cubic; a floored at
//          0.001 keeps its derivatives
void SSMPC5(const R8& T, const I4& IPARA, const I4& IFCOM, const I4& ILCOM, I4& ICODE) {
  ICODE = status::ok;
  for (int i = IFCOM; i <= ILCOM; ++i) component_parameters(i, T, IPARA);
}

}  // namespace talix
