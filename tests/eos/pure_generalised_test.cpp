// Curves from the acentric factor: SSMPC4, SESGE0.
#include "eos/ssm_pure_generalised.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "database/component_record.h"
#include "engine/codes.h"
#include "engine/setup_record.h"
#include "eos/ssm_pure_curves.h"
#include "support/eos_fixture.h"

namespace talix::test {
namespace {

struct Curves {
  CurveSet set{};
  I4 code = 0;
};

Curves curves(R8 w) {
  Curves c;
  R8 reserved = 5.0;
  SSMPC4(w, c.set, c.code, reserved);
  EXPECT_EQ(reserved, 0.0);
  return c;
}

// The relation once more, in the form of its table, from the printed figures.
CurveSet printed(double w) {
  double q[5], p[5];
  const auto E = [](double rate, double wr) { return std::exp(rate * wr); };
  if (w > 1.9603) {
    const double r = w - 1.9603;
    q[0] = -0.765217 - 7.23916 * r - 1.6456 * r * r + 5.89471 * E(1.16095, r);
    q[1] = 0.0;
    q[2] = -26.3531 - 27.011 * r - 24.1673 * r * r + 33.6807 * E(1.09797, r);
    q[3] = -1.35813 + 0.092 * r;
    q[4] = 0.337022 * E(-2.24, r);
    p[0] = -6.09523 - 7.04448 * r + 13.0211 * r * r - 34.8313 * r * r * r;
    p[1] = 3.19863 + 3.3374 * r - 4.79384 * r * r + 15.2838 * r * r * r;
    p[2] = 7.84802 + 12.7236 * r - 27.3912 * r * r + 57.4649 * r * r * r;
    p[3] = -1.0 + 0.30123 * E(-1.0, r);
    p[4] = 0.0865 * E(-1.0, r);
  } else if (w > 0.8899) {
    const double r = w - 0.8899;
    q[0] = 6.84 - 2.30516 * r + 0.660642 * r * r;
    q[1] = -0.2298 + 0.214686 * r;
    q[2] = 0.71944 + 2.4884 * r + 3.44278 * r * r;
    q[3] = -1.56238 - 0.233476 * r + 0.396386 * r * r;
    q[4] = 1.26515 - 0.831265 * r - 0.033464 * r * r;
    p[0] = -5.48548 - 1.9473 * r + 1.28702 * r * r;
    p[1] = 2.03895 + 1.05456 * r + 0.0269543 * r * r;
    p[2] = 5.65695 + 2.35889 * r - 0.291408 * r * r;
    p[3] = -0.35932 - 0.170314 * r - 0.13716 * r * r;
    p[4] = 0.9 - 0.724991 * r - 0.0326716 * r * r;
  } else {
    const double r = w - 0.209;
    q[0] = 35.0305 * E(-0.0674, r) - 26.6192;
    q[1] = -0.22394 - 0.323813 * r + 0.462888 * r * r;
    q[2] = -0.609812 + 1.27768 * r + 0.990627 * r * r;
    q[3] = -1.28 - 11.4702 * E(-5.44021, r);
    q[4] = 1.05962 + 0.301848 * r;
    p[0] = -0.345306 * E(-0.674207, r) - 5.26729;
    p[1] = 1.51527 + 0.773867 * r - 0.007 * r * r;
    p[2] = 6.5856 - 1.50273 * r + 0.203965 * r * r;
    p[3] = -0.224051 - 0.198662 * r;
    p[4] = 0.9;
  }
  CurveSet s{};
  s(6) = q[1] * q[4] + q[0];
  s(7) = -q[1] / q[3];
  s(8) = -q[3];
  s(9) = q[4];
  s(10) = -q[2] - q[1] / q[3];
  s(1) = p[1] * p[4] + p[0];
  s(2) = -p[1] / p[3];
  s(3) = -p[3];
  s(4) = p[4];
  s(5) = -p[2] - p[1] / p[3];
  const double t = s(3) * (1.0 - s(4));
  s(11) = s(2) * std::log(1.0 + std::exp(t)) + s(1) - s(5) * std::log(1.0 + std::exp(-t));
  s(12) = 19.696 * w + 0.18902;
  s(13) = -25.016 * w - 0.72032;
  s(14) = 45.547 * w + 1.2889;
  s(15) = 31.4571 * w + 1.1923;
  return s;
}

TEST(PureGeneralised, EveryRangeGivesThePrintedRelation) {
  for (const R8 w : {0.1045, 0.2, 0.5, 0.8899, 0.89, 1.2, 1.9603, 1.97, 2.4}) {
    const Curves c = curves(w);
    ASSERT_EQ(c.code, status::ok) << w;
    const CurveSet expected = printed(w);
    // Single-precision constants differ from the printed ones by 6E-8 of each term.
    for (int k = 1; k <= 15; ++k)
      EXPECT_NEAR(c.set(k), expected(k), 2E-5 * (1.0 + std::abs(expected(k)))) << w << " " << k;
  }
}

TEST(PureGeneralised, ConstantsAreThoseOfSinglePrecision) {
  const Curves c = curves(0.5);
  EXPECT_EQ(c.set(12), widen(19.696F) * 0.5 + widen(0.18902F));
  EXPECT_EQ(c.set(4), widen(0.9F));
}

TEST(PureGeneralised, AcentricFactorBelowTheRangeFailsAndLeavesTheSetAlone) {
  for (const R8 w : {0.1044999, 0.0, -0.2, std::numeric_limits<R8>::quiet_NaN()}) {
    CurveSet set{};
    set(3) = 7.0;
    I4 code = 0;
    R8 reserved = 0.0;
    SSMPC4(w, set, code, reserved);
    EXPECT_EQ(code, status::range);
    EXPECT_EQ(set(3), 7.0);
  }
  EXPECT_EQ(curves(0.1045).code, status::ok);
  EXPECT_EQ(curves(widen(0.1045F)).code, status::ok);
}

TEST(PureGeneralised, ColumnElevenIsTheACurveAtTheCriticalPoint) {
  reset_fixture();
  for (const int i : {kPropane, kDecane, kWater})
    EXPECT_NEAR(comp.PARABF(i, 11), SSMPC1(comp.PARABF, kMaxComponents, i, 0, 1.0, 1), 1E-12);
}

TEST(PureGeneralised, PseudoComponentIsStoredWithItsCriticalData) {
  reset_fixture();
  const I4 generation = setup.generation;
  CurveSet set{};
  R8 reserved = 0.0;
  I4 code = 0;
  SESGE0(model::vardo1, 650.0, 18.0, 0.6, 7, set, reserved, code);
  EXPECT_EQ(code, status::ok);
  EXPECT_EQ(setup.generation, generation + 1);
  EXPECT_EQ(comp.TC(7), 650.0);
  EXPECT_EQ(comp.PC(7), 18.0);
  EXPECT_EQ(comp.OMEGA(7), 0.6);
  for (int k = 1; k <= 15; ++k) EXPECT_EQ(comp.PARABF(7, k), set(k));
}

TEST(PureGeneralised, PseudoComponentOutOfRangeKeepsItsCurves) {
  reset_fixture();
  const R8 before = comp.PARABF(7, 3);
  const I4 generation = setup.generation;
  CurveSet set{};
  R8 reserved = 0.0;
  I4 code = 0;
  SESGE0(model::vardo1, 650.0, 18.0, 0.1, 7, set, reserved, code);
  EXPECT_EQ(code, status::range);
  EXPECT_EQ(comp.PARABF(7, 3), before);
  EXPECT_EQ(comp.OMEGA(7), 0.1);
  EXPECT_EQ(setup.generation, generation + 1);
}

}  // namespace
}  // namespace talix::test
