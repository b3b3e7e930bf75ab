#include "eos/ssm_pure_vardo.h"

#include "database/component_record.h"
#include "engine/codes.h"
#include "eos/cubic_record.h"
#include "eos/ssm_pure_curves.h"

namespace talix {

namespace {

constexpr R8 kBarToPascal = 100000.0;
constexpr R8 kWarm = 0.9090909;  // Tc/T above which the curves above critical hold alone
constexpr R8 kWarmSpan = -0.0909091;
constexpr R8 kJoin = 1.04;  // Tc/T at which the two b curves meet
constexpr R8 kJoinSpan = -0.1309091;
constexpr R8 kJoinFactor = -0.1500838;  // (1 - 1.04) exp(0.08/(1.1005 - 1.04))
constexpr R8 kSmallestA = 0.001;

constexpr int kOffsetA = 0;  // columns of PARABF before the a curve
constexpr int kOffsetB = 5;  // and before the b curve

R8 cold_curve(int i, int offset, R8 TR1, int ORDER) {
  return SSMPC1(comp.PARABF, kMaxComponents, i, offset, TR1, ORDER);
}

R8 a_curve(int i, R8 TR1, int ORDER) {
  if (!(TR1 < 1.0)) return cold_curve(i, kOffsetA, TR1, ORDER);
  if (TR1 < kWarm) return SSMPC3(comp.PARABF, kMaxComponents, i, TR1, ORDER);
  const R8 AAC = cold_curve(i, kOffsetA, 1.0, ORDER);
  const R8 AALIM = SSMPC3(comp.PARABF, kMaxComponents, i, kWarm, ORDER);
  return (AALIM - AAC) * (TR1 - 1.0) / kWarmSpan + AAC;
}

// Constants of the b curve above the critical region.
struct WarmB {
  R8 C1, C2, C3, C4;
};

WarmB warm_constants(int i) {
  const std::string_view tag = trimmed(comp.ICS(i));
  if (tag == "H2") return {.C1 = 0.084456, .C2 = 0.0058822, .C3 = 0.9636, .C4 = 2.0};
  if (tag == "HE") return {.C1 = 0.105, .C2 = -0.0284, .C3 = 1.0, .C4 = 2.0};
  if (tag == "N2") return {.C1 = 0.081516, .C2 = 0.092116, .C3 = -7.50201, .C4 = 5.48383};
  const R8 C1 = comp.PARABF(i, 11) / 4.934;
  const R8 B104 = cold_curve(i, kOffsetB, kJoin, 1);
  return {.C1 = C1, .C2 = (B104 - C1) / kJoinFactor, .C3 = 0.08, .C4 = 1.1005};
}

R8 warm_b(const WarmB& c, R8 TR1, int ORDER) { return SSMPC2(c.C1, c.C2, c.C3, c.C4, TR1, ORDER); }

// Derivative of b; between the join and the warm limit a line, which the value itself does not follow.
R8 b_derivative(int i, const WarmB& c, R8 TR1, int ORDER) {
  if (!(TR1 < kJoin)) return cold_curve(i, kOffsetB, TR1, ORDER);
  if (TR1 < kWarm) return warm_b(c, TR1, ORDER);
  const R8 cold = cold_curve(i, kOffsetB, kJoin, ORDER);
  const R8 warm = warm_b(c, kWarm, ORDER);
  return (warm - cold) * (TR1 - kJoin) / kJoinSpan + cold;
}

void component_parameters(int i, const R8& T, const I4& IPARA) {
  const R8 PCP = comp.PC(i) * kBarToPascal;
  const R8 TR1 = comp.TC(i) / T;
  const R8 W1 = comp.TC(i) / PCP;
  const R8 W2 = T / PCP;
  const R8 W3 = W2 / TR1;
  const WarmB c = TR1 < kJoin ? warm_constants(i) : WarmB{};

  const R8 a = a_curve(i, TR1, 1);
  const R8 b = TR1 < kJoin ? warm_b(c, TR1, 1) : cold_curve(i, kOffsetB, TR1, 1);
  pures.ARK(i) = (a < kSmallestA ? kSmallestA : a) * W1;
  pures.BRK(i) = b * W1;
  pures.CRK(i) = 0.0;
  if (IPARA > 0) {
    pures.D1ADT(i) = a_curve(i, TR1, 2) * W2;
    pures.D1BDT(i) = b_derivative(i, c, TR1, 2) * W2;
    pures.D1CDT(i) = 0.0;
  }
  if (IPARA == 2) {
    pures.D2ADT(i) = a_curve(i, TR1, 3) * W3;
    pures.D2BDT(i) = b_derivative(i, c, TR1, 3) * W3;
    pures.D2CDT(i) = 0.0;
  }
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
