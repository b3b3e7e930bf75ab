#include "eos/ssm_pure_vardo.h"

#include "engine/codes.h"
#include "eos/ssm_pure_branches.h"

namespace talix {

namespace {

using namespace pure_curves;

void component_parameters(int i, const R8& T, const I4& IPARA) {
  const R8 TR1 = comp.TC(i) / T;
  const CurveScale scale = curve_scale(i, T);
  const WarmB c = TR1 < kJoin ? warm_constants(i) : WarmB{};

  const R8 b = TR1 < kJoin ? warm_b(c, TR1, 1) : cold_curve(i, kOffsetB, TR1, 1);
  store_values(i, scale, {.a = a_curve(i, TR1, 1), .b = b});
  if (IPARA > 0) store_slopes(i, scale, {.a = a_curve(i, TR1, 2), .b = b_derivative(i, c, TR1, 2)});
  if (IPARA == 2) store_curvatures(i, scale, c, TR1);
}

}  // namespace

// SSMPC0: a and b from the component's curves in Tc/T.
//
// a follows its cold curve down to Tc/T 1, a line to 0.9090909 and the rational curve from there; b
// follows its cold curve down to 1.04 and the exponential curve from there.
//
// In       T             R8  temperature [K]
//          IPARA         I4  0 values, 1 with first, 2 with second derivatives
//          IFCOM, ILCOM  I4  range of components
// Shared   reads comp.TC, PC, ICS, PARABF; writes pures
// Status   ok
// Oddity   the derivatives are lines between 1 and 0.9090909 (a) and between 1.04 and 0.9090909 (b), so
//          that they are not the slopes of the values there; a floored at 0.001 keeps its derivatives
void SSMPC0(const R8& T, const I4& IPARA, const I4& IFCOM, const I4& ILCOM, I4& ICODE) {
  ICODE = status::ok;
  for (int i = IFCOM; i <= ILCOM; ++i) component_parameters(i, T, IPARA);
}

}  // namespace talix
