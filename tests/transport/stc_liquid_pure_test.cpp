// Conductivity of a pure liquid: which form serves it, and the effect of pressure.
#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>

#include "engine/codes.h"
#include "support/liquid_fixture.h"
#include "transport/stc_liquid.h"
#include "transport/svi_liquid_combined.h"

namespace talix {
namespace {

using test::kDecane;
using test::kHexane;
using test::kHydrogen;
using test::kPropane;

constexpr R8 kTc = 507.6;  // of hexane

struct Answer {
  R8 lambda = -7.0;
  I4 status = 0;
};

Answer pure(R8 T, R8 P, int I = kHexane) {
  Answer a;
  STCCM1(T, P, I, a.lambda, a.status);
  return a;
}

class PureConductivity : public ::testing::Test {
 protected:
  void SetUp() override { test::reset_liquid_fixture(); }
  static void set(I4 flag, std::initializer_list<R8> coefficients) {
    comp.ITCL(kHexane) = flag;
    int k = 0;
    for (const R8 c : coefficients) comp.TCL(kHexane, ++k) = c;
    while (k < 7) comp.TCL(kHexane, ++k) = 0.0;
  }
  static void set_hydrogen() {
    comp.TCV(kHydrogen, 1) = 1.77;
    comp.TCV(kHydrogen, 2) = 1.32;
  }
};

TEST_F(PureConductivity, OneStraightLineServesPseudoAndHeavyComponents) {
  set(7, {9.9, 0.0, 0.0, 0.0, 0.0, 100.0, 500.0});
  test::list_component(kHexane, false);
  EXPECT_NEAR(pure(350.0, 1e5).lambda, 0.12278729705345004, 1e-15);
  EXPECT_NEAR(pure(600.0, 1e5).lambda, widen(0.1337F) - widen(0.000142F) * (600.0 - widen(273.15F)), 1e-15);
  test::list_component(kHexane, true);
  EXPECT_NEAR(pure(350.0, 1e5).lambda, 9.9, 1e-12);
  comp.ELEM(kHexane, 1) = 21;
  EXPECT_NEAR(pure(350.0, 1e5).lambda, 0.12278729705345004, 1e-15);
}

TEST_F(PureConductivity, WhereTheStraightLineIsNegativeThereIsNoValue) {
  test::list_component(kHexane, false);
  EXPECT_EQ(pure(1214.0, 1e5).status, status::ok);
  const Answer a = pure(1216.0, 1e5);
  EXPECT_EQ(a.status, status::range);
  EXPECT_EQ(a.lambda, 0.0);
}

TEST_F(PureConductivity, HydrogenFollowsTheEuckenForm) {
  set_hydrogen();
  EXPECT_NEAR(pure(300.0, 1e5, kHydrogen).lambda, 0.18454836566787017, 1e-14);
  // Far above its critical temperature, and with the viscosity at pressure.
  const R8 ratio = pure(300.0, 100e5, kHydrogen).lambda / pure(300.0, 1e5, kHydrogen).lambda;
  EXPECT_NEAR(ratio, 0.009766405435567378 / 0.008885686133215772, 1e-12);
}

TEST_F(PureConductivity, HydrogenTakesNoLenoirFactor) {
  set_hydrogen();
  R8 eta[2];
  I4 nfail = 0;
  SVICM1(20.0, 1e5, kHydrogen, eta[0], nfail);
  SVICM1(20.0, 50e5, kHydrogen, eta[1], nfail);
  EXPECT_NEAR(pure(20.0, 50e5, kHydrogen).lambda / pure(20.0, 1e5, kHydrogen).lambda, eta[1] / eta[0], 1e-12);
}

TEST_F(PureConductivity, HydrogenWithTheHyperbolicFormOfTheHeatCapacity) {
  set_hydrogen();
  comp.ICPIG(kHydrogen) = 7;
  for (int k = 1; k <= 8; ++k) comp.COFHT(kHydrogen, k) = 0.0;
  comp.COFHT(kHydrogen, 1) = 28885.715;
  EXPECT_NEAR(pure(300.0, 1e5, kHydrogen).lambda, 0.18454836566787017, 1e-9);
}

TEST_F(PureConductivity, HydrogenFailsWhenItsViscosityDoes) {
  set_hydrogen();
  comp.RMOLW(kHydrogen) = 0.0;
  EXPECT_EQ(pure(300.0, 1e5, kHydrogen).status, status::range);
}

TEST_F(PureConductivity, LightComponentsHaveNoValueOfTheirOwn) {
  comp.ITCL(kPropane) = 7;
  comp.TCL(kPropane, 1) = 0.1;
  const Answer a = pure(200.0, 1e5, kPropane);
  EXPECT_EQ(a.status, status::not_available);
  EXPECT_EQ(a.lambda, 0.0);
}

TEST_F(PureConductivity, PolynomialInsideItsRange) {
  set(7, {0.24, -5e-4, 4e-7, -3e-10, 1e-13, 200.0, 450.0});
  const R8 expected = 0.24 - 0.15 + 4e-7 * 9e4 - 3e-10 * 2.7e7 + 1e-13 * 8.1e9;
  EXPECT_NEAR(pure(300.0, 1e5).lambda, expected, 1e-15);
}

TEST_F(PureConductivity, PolynomialRunsOnAlongTheTangentsOfItsEnds) {
  set(7, {0.24, -5e-4, 4e-7, -3e-10, 1e-13, 250.0, 450.0});
  for (const R8 limit : {250.0, 450.0}) {
    const R8 h = 1e-4;
    const R8 inside = limit < 300.0 ? h : -h;
    // The same value and slope on both sides, and a straight line beyond.
    EXPECT_NEAR(pure(limit + inside, 1e5).lambda, pure(limit - inside, 1e5).lambda, 1e-7);
    const R8 slope_in = (pure(limit + inside, 1e5).lambda - pure(limit, 1e5).lambda) / inside;
    const R8 slope_out = (pure(limit, 1e5).lambda - pure(limit - inside, 1e5).lambda) / inside;
    EXPECT_NEAR(slope_in, slope_out, 1e-9);
    const R8 direction = limit < 300.0 ? -1.0 : 1.0;
    EXPECT_NEAR(pure(limit + 40.0 * direction, 1e5).lambda,
                pure(limit, 1e5).lambda + 40.0 * direction * slope_out, 1e-7);
  }
  // By hand at 490 K: value and slope of 450 K.
  const R8 t = 450.0;
  const R8 value = 0.24 + t * (-5e-4 + t * (4e-7 + t * (-3e-10 + t * 1e-13)));
  const R8 slope = -5e-4 + t * (8e-7 + t * (-9e-10 + t * 4e-13));
  EXPECT_NEAR(pure(490.0, 1e5).lambda, value + 40.0 * slope, 1e-15);
}

TEST_F(PureConductivity, TheTangentGivesNoNegativeConductivity) {
  set(7, {0.24, -1e-3, 0.0, 0.0, 0.0, 100.0, 230.0});
  EXPECT_EQ(pure(239.0, 1e5).status, status::ok);
  const Answer a = pure(241.0, 1e5);
  EXPECT_EQ(a.status, status::range);
  EXPECT_EQ(a.lambda, 0.0);
}

TEST_F(PureConductivity, WithoutAFlagThereIsNoData) {
  for (const I4 flag : {0, -1}) {
    set(flag, {0.24, -5e-4, 4e-7});
    const Answer a = pure(300.0, 1e5);
    EXPECT_EQ(a.status, status::not_available);
    EXPECT_EQ(a.lambda, 0.0);
  }
}

TEST_F(PureConductivity, AboveCriticalEverySetIsSupercritical) {
  for (const I4 flag : {1, 7}) {
    for (const R8 second : {0.0, 1e-3}) {
      set(flag, {0.1, second, 0.0, 0.0, 0.0, 100.0, 800.0});
      const Answer a = pure(kTc + 0.1, 1e5);
      EXPECT_EQ(a.status, status::supercritical);
      EXPECT_EQ(a.lambda, 0.0);
    }
  }
}

TEST_F(PureConductivity, WithoutSecondCoefficientItFollowsFromHeatCapacityAndDensity) {
  set(1, {2.5e-3});
  comp.IDLI(kHexane) = 1;
  comp.DLIP(kHexane, 1) = 234.0;
  comp.DLIP(kHexane, 2) = 1.9;
  comp.DLIP(kHexane, 3) = 0.8;
  EXPECT_NEAR(pure(350.0, 1e5).lambda, 0.08987132865114489, 1e-13);
  // At the critical temperature the heat capacity of the liquid has no value.
  EXPECT_EQ(pure(kTc, 1e5).status, status::range);
}

TEST_F(PureConductivity, WithoutThirdCoefficientItIsInverseInTheTemperature) {
  set(1, {0.5, 80.0});
  EXPECT_NEAR(pure(320.0, 1e5).lambda, 0.5 * 80.0 / 320.0, 1e-15);
}

TEST_F(PureConductivity, ScaledPolynomial) {
  set(1, {0.2, -0.02, -0.0003, 2e-4, -5e-4, 1e-5});
  EXPECT_NEAR(pure(300.0, 1e5).lambda, 0.1386743, 1e-13);
}

TEST_F(PureConductivity, TheEffectOfPressureFollowsLenoir) {
  set(1, {0.5, 80.0});
  const R8 base = 0.5 * 80.0 / 350.0;
  EXPECT_NEAR(pure(350.0, 100e5).lambda / base, 1.2260897332070204, 1e-12);
}

TEST_F(PureConductivity, TheEffectOfPressureIsSwitched) {
  set(1, {0.5, 80.0});
  const auto factor = [](R8 T, R8 bar) { return pure(T, bar * 1e5).lambda / (0.5 * 80.0 / T); };
  EXPECT_NEAR(factor(350.0, 1.0), 1.0, 1e-14);
  EXPECT_NEAR(factor(350.0, 34.5), 1.0, 1e-14);
  EXPECT_GT(factor(350.0, 34.6), 1.02);
  EXPECT_NEAR(factor(0.3999 * kTc, 100.0), 1.0, 1e-14);
  EXPECT_GT(factor(0.4001 * kTc, 100.0), 1.02);
  EXPECT_GT(factor(0.7999 * kTc, 100.0), 1.02);
  EXPECT_NEAR(factor(0.8001 * kTc, 100.0), 1.0, 1e-14);
  // The straight line takes it as well.
  test::list_component(kHexane, false);
  EXPECT_NEAR(pure(350.0, 100e5).lambda, 0.12278729705345004 * 1.2260897332070204, 1e-12);
  set(7, {0.1, 0.0, 0.0, 0.0, 0.0, 100.0, 500.0});
  test::list_component(kHexane, true);
  EXPECT_NEAR(pure(350.0, 100e5).lambda, 0.12260897332070204, 1e-12);
}

}  // namespace
}  // namespace talix
