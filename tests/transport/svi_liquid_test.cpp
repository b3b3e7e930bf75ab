// The liquid viscosity entry, the corresponding-states model of liquids and the two fitted correlations.
#include "transport/svi_liquid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

#include "engine/codes.h"
#include "support/liquid_fixture.h"
#include "transport/svi_liquid_combined.h"
#include "transport/svi_liquid_corresponding.h"
#include "transport/svi_liquid_standard.h"
#include "transport/svi_vapour.h"

namespace talix {
namespace {

using test::composition;

struct Answer {
  R8 value = -7.0, derivative = -7.0;
  I4 status = 0;
};

Answer viscosity(R8 T, R8 P, const CompVec& x, I4 NC, I4 METHOD, I4 MODE = transport_request::value) {
  Answer a;
  const Vec<I4, kMaxComponents> IC{};
  SLVIM1(T, P, x, NC, IC, MODE, METHOD, a.value, a.derivative, a.status);
  return a;
}

// Component 1 is methane of the code " 1P ", 10 hexane; both with sets of round figures.
void set_livithec() {
  comp.ICS(1) = " 1P ";
  const auto set = [](int i, R8 ratio, R8 volume, R8 energy, R8 size, R8 fifth) {
    comp.ILVT(i) = 1;
    comp.PARL2(i, 1) = ratio;
    comp.PARL2(i, 2) = volume;
    comp.PARL2(i, 3) = energy;
    comp.PARL2(i, 4) = size;
    comp.PARL2(i, 5) = fifth;
  };
  set(1, 1.0, 60.0, 2.0, 1.0, 0.9);
  set(2, 1.1, 150.0, 4.0, 1.3, 1.5);
  set(3, 1.0, 60.0, 2.0, 1.0, 0.9);
  comp.RMOLW(2) = 86.175;
}

class LiquidViscosity : public ::testing::Test {
 protected:
  void SetUp() override { test::reset_liquid_fixture(); }
};

// ---- the entry

TEST_F(LiquidViscosity, TemperatureAndPressureMustBePositive) {
  set_livithec();
  const R8 nan = std::numeric_limits<R8>::quiet_NaN();
  const R8 states[][2] = {{0.0, 1e5}, {-1.0, 1e5}, {300.0, 0.0}, {300.0, -1e5}, {nan, 1e5}, {300.0, nan}};
  for (const auto& s : states) {
    const Answer a = viscosity(s[0], s[1], composition({1.0}), 1, method::livithec);
    EXPECT_EQ(a.status, status::input);
    EXPECT_EQ(a.value, -7.0);
  }
}

TEST_F(LiquidViscosity, ThereMustBeAComposition) {
  set_livithec();
  EXPECT_EQ(viscosity(300.0, 1e5, composition({0.0, 0.0}), 2, method::livithec).status, status::input);
  EXPECT_EQ(viscosity(300.0, 1e5, composition({1.0}), 0, method::livithec).status, status::input);
  EXPECT_EQ(viscosity(300.0, 1e5, composition({1.0}), kMaxComponents + 1, method::livithec).status,
            status::input);
}

TEST_F(LiquidViscosity, TheCompositionIsNormalised) {
  set_livithec();
  const R8 one = viscosity(300.0, 50e5, composition({0.3, 0.7}), 2, method::livithec).value;
  EXPECT_NEAR(viscosity(300.0, 50e5, composition({3.0, 7.0}), 2, method::livithec).value, one, 1e-15);
}

TEST_F(LiquidViscosity, TheDerivativeIsNotAvailableAndTheValueStands) {
  set_livithec();
  const CompVec x = composition({0.3, 0.7});
  const Answer both = viscosity(300.0, 50e5, x, 2, method::livithec, transport_request::both);
  EXPECT_EQ(both.status, status::not_available);
  EXPECT_EQ(both.value, viscosity(300.0, 50e5, x, 2, method::livithec).value);
  EXPECT_EQ(both.derivative, 0.0);
  const Answer derivative = viscosity(300.0, 50e5, x, 2, method::livithec, transport_request::derivative);
  EXPECT_EQ(derivative.status, status::not_available);
  EXPECT_EQ(derivative.value, -7.0);
}

TEST_F(LiquidViscosity, AFailedMethodKeepsItsStatusWhenTheDerivativeIsAskedForToo) {
  EXPECT_EQ(viscosity(300.0, 50e5, composition({1.0}), 1, method::livithec, transport_request::both).status,
            status::unknown);
}

TEST_F(LiquidViscosity, OtherMethodsAndModesAreNotAvailable) {
  set_livithec();
  const CompVec x = composition({1.0});
  EXPECT_EQ(viscosity(300.0, 1e5, x, 1, method::thodos_wilke_dean).status, status::not_available);
  EXPECT_EQ(viscosity(300.0, 1e5, x, 1, 0).status, status::not_available);
  EXPECT_EQ(viscosity(300.0, 1e5, x, 1, method::livithec, 0).status, status::not_available);
  EXPECT_EQ(viscosity(300.0, 1e5, x, 1, method::livithec, 0).value, -7.0);
}

// ---- corresponding states of liquids

TEST_F(LiquidViscosity, CorrespondingStatesOfAPureLiquid) {
  set_livithec();
  comp.PARL2(1, 3) = 3.0;
  comp.RMOLW(1) = 100.0;
  EXPECT_NEAR(viscosity(300.0, 1e5, composition({1.0}), 1, method::livithec).value, 0.18658201990722498,
              1e-13);
}

TEST_F(LiquidViscosity, CorrespondingStatesOfAMixtureWithMethaneInEitherOrder) {
  set_livithec();
  EXPECT_NEAR(viscosity(300.0, 50e5, composition({0.3, 0.7}), 2, method::livithec).value, 0.12738479886066326,
              1e-13);
  for (int k = 1; k <= 5; ++k) std::swap(comp.PARL2(1, k), comp.PARL2(2, k));
  std::swap(comp.RMOLW(1), comp.RMOLW(2));
  comp.ICS(1) = "6P  ";
  comp.ICS(2) = " 1P ";
  EXPECT_NEAR(viscosity(300.0, 50e5, composition({0.7, 0.3}), 2, method::livithec).value, 0.12738479886066326,
              1e-13);
}

TEST_F(LiquidViscosity, CorrespondingStatesOfAMixtureWithoutMethane) {
  set_livithec();
  comp.ICS(1) = " 3P ";
  comp.RMOLW(1) = 44.096;
  EXPECT_NEAR(viscosity(300.0, 50e5, composition({0.3, 0.7}), 2, method::livithec).value, 0.12645911412203256,
              1e-13);
}

TEST_F(LiquidViscosity, APairWithMethaneWithoutAFifthParameterIsAPlainPair) {
  set_livithec();
  const CompVec x = composition({0.3, 0.7});
  comp.PARL2(2, 5) = 0.0;
  const R8 guarded = viscosity(300.0, 50e5, x, 2, method::livithec).value;
  comp.ICS(1) = " 3P ";
  EXPECT_EQ(viscosity(300.0, 50e5, x, 2, method::livithec).value, guarded);
}

TEST_F(LiquidViscosity, CorrespondingStatesOfEqualComponentsIsThatOfOne) {
  set_livithec();
  comp.ICS(1) = comp.ICS(3) = " 3P ";
  comp.RMOLW(1) = comp.RMOLW(3);
  comp.PARL2(1, 3) = comp.PARL2(3, 3) = 3.0;
  const R8 pure = viscosity(300.0, 1e6, composition({1.0}), 1, method::livithec).value;
  ASSERT_GT(pure, 0.0);
  EXPECT_NEAR(viscosity(300.0, 1e6, composition({0.4, 0.0, 0.6}), 3, method::livithec).value, pure, 1e-14);
  EXPECT_NEAR(viscosity(300.0, 1e6, composition({1.0, 1e-12}), 2, method::livithec).value, pure, 1e-11);
}

TEST_F(LiquidViscosity, CorrespondingStatesNeedASetOfEveryComponent) {
  set_livithec();
  comp.ILVT(2) = 0;
  const Answer a = viscosity(300.0, 1e5, composition({1.0, 0.0}), 2, method::livithec);
  EXPECT_EQ(a.status, status::unknown);
  EXPECT_EQ(a.value, 0.0);
}

TEST_F(LiquidViscosity, CorrespondingStatesBeyondTheirRangeGiveNoNegativeViscosity) {
  set_livithec();
  const Answer hot = viscosity(2000.0, 1e5, composition({1.0}), 1, method::livithec);
  EXPECT_EQ(hot.status, status::range);
  EXPECT_EQ(hot.value, 0.0);
  comp.PARL2(1, 1) = 0.0;
  EXPECT_EQ(viscosity(300.0, 1e5, composition({1.0}), 1, method::livithec).status, status::range);
}

// ---- set SS

// A Frost-Kalkwarf line through 1 bar at 341.9 K, density of Riedel, and a set over 200 to 500 K and 0.5 to
// 200 bar.
void set_sternling_samish(int i) {
  comp.TC(i) = 507.6;
  comp.PC(i) = 30.25;
  comp.TBOIL(i) = 341.9;
  comp.IPSA(i) = 1;
  comp.PSAT(i, 1) = 4.0 - 1.0;
  comp.PSAT(i, 2) = -4.0 * 341.9;
  comp.IDLI(i) = 1;
  comp.DLIP(i, 1) = 234.0;
  comp.DLIP(i, 2) = 1.9;
  comp.DLIP(i, 3) = 0.8;
  const R8 set[8] = {-11.5, -0.3, 1e-3, -0.05, 200.0, 500.0, 0.5, 200.0};
  comp.IQISS(i) = 1;
  for (int k = 1; k <= 8; ++k) comp.SS(i, k) = set[k - 1];
}

TEST_F(LiquidViscosity, SetOfSternlingAndSamish) {
  set_sternling_samish(1);
  // 300 K: vapour pressure 10^(4 - 4 341.9/300) bar, its slope and that of the density by hand.
  const R8 ln_ten = widen(2.30258512F);
  const R8 ps = std::exp(ln_ten * (4.0 - 4.0 * 341.9 / 300.0)) * std::exp((std::log(10.0) - ln_ten));
  const R8 slope_ps = ln_ten * 4.0 * 341.9 / (300.0 * 300.0);
  const R8 q = 1.0 - 300.0 / 507.6;
  const R8 rho = 234.0 * (1.0 + 1.9 * std::cbrt(q) + 0.8 * q);
  const R8 slope_rho = -234.0 * (1.9 / 3.0 / std::cbrt(q * q) + 0.8) / 507.6 / rho;
  const R8 b = widen(1.51706F);
  const R8 at_saturation = -11.5 - 0.3 * std::log(ps) + b * std::log(rho);
  const R8 slope = -0.3 * slope_ps + b * slope_rho;
  for (const R8 bar : {1.0, 100.0}) {
    const R8 expected = std::exp(at_saturation + (1e-3 - 0.05 * slope) * (bar - 1.0));
    const Answer a = viscosity(300.0, bar * 1e5, composition({1.0}), 1, method::sternling_samish);
    EXPECT_EQ(a.status, status::ok);
    EXPECT_NEAR(a.value / expected, 1.0, 1e-6) << bar;
  }
  EXPECT_GT(viscosity(300.0, 1e7, composition({1.0}), 1, method::sternling_samish).value,
            viscosity(300.0, 1e5, composition({1.0}), 1, method::sternling_samish).value);
}

TEST_F(LiquidViscosity, TheSetOfSternlingAndSamishHoldsUpToItsLimits) {
  set_sternling_samish(1);
  const auto status_at = [](R8 T, R8 bar) {
    const Answer a = viscosity(T, bar * 1e5, composition({1.0}), 1, method::sternling_samish);
    EXPECT_EQ(a.value == 0.0, a.status != status::ok);
    return a.status;
  };
  EXPECT_EQ(status_at(200.0, 1.0), status::ok);
  EXPECT_EQ(status_at(500.0, 1.0), status::ok);
  EXPECT_EQ(status_at(300.0, 0.5), status::ok);
  EXPECT_EQ(status_at(300.0, 200.0), status::ok);
  EXPECT_EQ(status_at(199.9, 1.0), status::range);
  EXPECT_EQ(status_at(500.1, 1.0), status::range);
  EXPECT_EQ(status_at(300.0, 0.49), status::range);
  EXPECT_EQ(status_at(300.0, 200.1), status::range);
}

TEST_F(LiquidViscosity, AboveCriticalBothFittedMethodsAreSupercritical) {
  set_sternling_samish(1);
  comp.IVIL(1) = 7;
  for (const I4 m : {method::sternling_samish, method::old_sternling_samish}) {
    const Answer a = viscosity(507.7, 1e5, composition({1.0}), 1, m);
    EXPECT_EQ(a.status, status::supercritical);
    EXPECT_EQ(a.value, 0.0);
  }
  EXPECT_EQ(viscosity(507.6, 1e5, composition({1.0}), 1, method::old_sternling_samish).status, status::ok);
}

TEST_F(LiquidViscosity, WithoutVapourPressureTheSetOfSternlingAndSamishFailsAsTheDispatcherDoes) {
  set_sternling_samish(1);
  comp.IPSA(1) = 0;
  EXPECT_EQ(viscosity(300.0, 1e5, composition({1.0}), 1, method::sternling_samish).status,
            status::model_error);
}

TEST_F(LiquidViscosity, AComponentWithoutASetOfSternlingAndSamishIsOutOfRange) {
  set_sternling_samish(1);
  for (int k = 1; k <= 8; ++k) comp.SS(1, k) = 0.0;
  EXPECT_EQ(viscosity(300.0, 1e5, composition({1.0}), 1, method::sternling_samish).status, status::range);
}

TEST_F(LiquidViscosity, MixtureOfTheFittedMethodsIsLogarithmic) {
  set_sternling_samish(1);
  set_sternling_samish(2);
  comp.SS(2, 1) = -10.5;
  const auto value = [](const CompVec& x) {
    return viscosity(300.0, 1e5, x, 2, method::sternling_samish).value;
  };
  const R8 one = value(composition({1.0, 0.0}));
  const R8 two = value(composition({0.0, 1.0}));
  EXPECT_NEAR(two / one, std::exp(1.0), 1e-12);
  EXPECT_NEAR(value(composition({0.25, 0.75})), std::pow(one, 0.25) * std::pow(two, 0.75), 1e-13);
}

TEST_F(LiquidViscosity, OneFailingComponentFailsTheMixture) {
  set_sternling_samish(1);
  set_sternling_samish(2);
  comp.TC(2) = 290.0;
  const Answer a = viscosity(300.0, 1e5, composition({0.9, 0.1}), 2, method::sternling_samish);
  EXPECT_EQ(a.status, status::supercritical);
  EXPECT_EQ(a.value, 0.0);
}

// ---- set VIL

R8 log_viscosity(R8 T, I4 expected_status = status::ok) {
  R8 value = -7.0;
  I4 nfail = 0;
  SVISO0(T, 1e5, 1, value, nfail);
  EXPECT_EQ(nfail, expected_status);
  return value;
}

void set_vil(I4 flag, std::initializer_list<R8> coefficients) {
  comp.TC(1) = 507.6;
  comp.IVIL(1) = flag;
  int k = 0;
  for (const R8 c : coefficients) comp.VIL(1, ++k) = c;
  while (k < 7) comp.VIL(1, ++k) = 0.0;
}

TEST_F(LiquidViscosity, ExtendedAntoineForm) {
  set_vil(7, {-20.7, 1500.0, 2.0});
  EXPECT_NEAR(log_viscosity(300.0), 2.615325092592432, 1e-13);
  EXPECT_NEAR(viscosity(300.0, 1e5, composition({1.0}), 1, method::old_sternling_samish).value,
              std::exp(2.615325092592432), 1e-12);
}

TEST_F(LiquidViscosity, ExtendedAntoineReadsItsPowerTermOnlyWithBothCoefficientsPositive) {
  set_vil(7, {-20.7, 1500.0, 2.0, 1e-6, 2.0});
  EXPECT_NEAR(log_viscosity(300.0), 2.7053250925924317, 1e-13);
  set_vil(7, {-20.7, 1500.0, 2.0, -1e-6, 2.0});
  EXPECT_NEAR(log_viscosity(300.0), 2.615325092592432, 1e-13);
  set_vil(7, {-20.7, 1500.0, 2.0, 1e-6, -2.0});
  EXPECT_NEAR(log_viscosity(300.0), 2.615325092592432, 1e-13);
  set_vil(7, {-20.7, 1500.0, 2.0, 1e-6, 0.0});
  EXPECT_NEAR(log_viscosity(300.0), 2.615325092592432, 1e-13);
}

TEST_F(LiquidViscosity, WithoutThirdCoefficientItFollowsFromVapourPressureAndDensity) {
  set_sternling_samish(1);
  set_vil(1, {-9.0, -0.25});
  const R8 ps = 1e5 * std::pow(10.0, 4.0 - 4.0 * 341.9 / 300.0);
  const R8 q = 1.0 - 300.0 / 507.6;
  const R8 rho = 234.0 * (1.0 + 1.9 * std::cbrt(q) + 0.8 * q);
  EXPECT_NEAR(log_viscosity(300.0), widen(1.51706F) * std::log(rho) - 9.0 - 0.25 * std::log(ps), 1e-6);
  comp.IPSA(1) = 0;
  EXPECT_EQ(log_viscosity(300.0, status::model_error), 0.0);
}

TEST_F(LiquidViscosity, PolynomialInTheInverseTemperature) {
  set_vil(1, {-1.5, 2.0, 0.3, -0.02, 0.001, 0.0001});
  EXPECT_NEAR(log_viscosity(300.0), -0.8005761316872428, 1e-13);
}

TEST_F(LiquidViscosity, PolynomialWithoutItsFirstOrSecondCoefficientIsZero) {
  set_vil(1, {0.0, 2.0, 0.3});
  EXPECT_EQ(log_viscosity(300.0), 0.0);
  set_vil(1, {-1.5, 0.0, 0.3});
  EXPECT_EQ(log_viscosity(300.0), 0.0);
}

TEST_F(LiquidViscosity, NoFlagMeansNoData) {
  for (const I4 flag : {0, -1}) {
    set_vil(flag, {-20.7, 1500.0, 2.0});
    EXPECT_EQ(log_viscosity(300.0, status::not_available), 0.0);
  }
}

}  // namespace
}  // namespace talix
