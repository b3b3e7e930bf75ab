#include "flash/flpq.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "fastprops/error_matrix.h"
#include "fastprops/small_arrays.h"
#include "support/flash_case.h"
#include "support/random_mixtures.h"

namespace talix {
namespace {

class NestedFlash : public testing::Test {
 protected:
  void SetUp() override {
    test::fresh_flashes_alone();
    test::load(test::natural_gas());
  }
  static std::string flash(R4 T, R4 P, R4 QSPEC) {
    Message STR{};
    STR.blank();
    fl.T = T;
    fl.P = P;
    fl.QSPEC = QSPEC;
    fl.IFLASH = flash_type::adiabatic_nested;
    fl.NCAL = flash_status::fresh;
    FLPQ(STR);
    return std::string{trimmed(STR)};
  }
  static R4 enthalpy_of(test::FlashCase c, R4 T, R4 P) {
    c.T = T - 273.15F;
    c.P = P;
    c.FRV = 1.0F;
    c.IFLASH = flash_type::isothermal;
    EXPECT_EQ(c.run(), "");
    return c.SCAL(c.nc() + 2, 2) * 1000.0F;
  }
};

TEST_F(NestedFlash, FlowsOutOfRangeAreRefused) {
  const FlashVec F = fl.F;
  for (int i = 1; i <= fl.NC; ++i) fl.F(i) = F(i) * 2.0E-8F;
  EXPECT_EQ(flash(300.0F, 40.0F, 0.0F), " Flash flow not between 1.0E-9 and 1.0E+9, no calculation (FLPQ)");
  EXPECT_EQ(fl.NCAL, flash_status::failed);
  EXPECT_EQ(errmat.ERRMAT(error_row::FLPQ, 1), 1);
  for (int i = 1; i <= fl.NC; ++i) fl.F(i) = F(i) * 1.01E+9F;
  EXPECT_EQ(flash(300.0F, 40.0F, 0.0F), " Flash flow not between 1.0E-9 and 1.0E+9, no calculation (FLPQ)");
  EXPECT_EQ(errmat.ERRMAT(error_row::FLPQ, 1), 2);
}

TEST_F(NestedFlash, TemperaturesOutOfRangeAreRefused) {
  const std::string text = " Temperature not between 0 and 1773 K, no flash calculation (FLPQ)";
  EXPECT_EQ(flash(0.5F, 40.0F, 0.0F), text);
  EXPECT_EQ(flash(-3.0F, 40.0F, 0.0F), text);
  EXPECT_EQ(flash(1773.2F, 40.0F, 0.0F), text);
  EXPECT_EQ(flash(std::nanf(""), 40.0F, 0.0F), text);
  EXPECT_EQ(fl.NCAL, flash_status::failed);
  EXPECT_EQ(errmat.ERRMAT(error_row::FLPQ, 2), 4);
}

TEST_F(NestedFlash, PressuresOutOfRangeAreRefused) {
  const std::string text = " Pressure not between 0 and  900 bar, no flash calculation (FLPQ)";
  EXPECT_EQ(flash(300.0F, 0.0F, 0.0F), text);
  EXPECT_EQ(flash(300.0F, 900.1F, 0.0F), text);
  EXPECT_EQ(fl.NCAL, flash_status::failed);
  EXPECT_EQ(errmat.ERRMAT(error_row::FLPQ, 3), 2);
}

TEST_F(NestedFlash, FindsTheStateOfTheIsothermalFlash) {
  const test::FlashCase gas = test::natural_gas();
  for (const R4 T : {150.0F, 220.0F, 245.0F, 320.0F, 500.0F}) {
    const R4 Q = enthalpy_of(gas, T, 40.0F);
    const R4 vapour = TELOP(fl.NC, fl.FV);
    EXPECT_EQ(flash(300.0F, 40.0F, Q), "") << T;
    EXPECT_EQ(fl.NCAL, 0);
    EXPECT_NEAR(fl.T, T, 0.02F);
    EXPECT_NEAR(TELOP(fl.NC, fl.FV), vapour, 2.0E-4F) << T;
  }
}

TEST_F(NestedFlash, TemperatureOfZeroStartsAt300) {
  const R4 Q = enthalpy_of(test::natural_gas(), 245.0F, 40.0F);
  EXPECT_EQ(flash(300.0F, 40.0F, Q), "");
  const R4 T = fl.T;
  const FlashVec FV = fl.FV;
  EXPECT_EQ(flash(0.0F, 40.0F, Q), "");
  EXPECT_EQ(fl.T, T);
  for (int i = 1; i <= fl.NC; ++i) EXPECT_EQ(fl.FV(i), FV(i));
}

TEST_F(NestedFlash, PureComponentInItsJumpGetsItsFractionFromTheSecondSearch) {
  test::FlashCase propane;
  propane.numbers = {22};
  propane.feed = {1.0F};
  const R4 liquid = enthalpy_of(propane, 285.0F, 8.0F);
  const R4 vapour = enthalpy_of(propane, 300.0F, 8.0F);
  for (const R4 share : {0.3F, 0.5F, 0.7F}) {
    const R4 Q = liquid + share * (vapour - liquid);
    EXPECT_EQ(flash(300.0F, 8.0F, Q), "") << share;
    EXPECT_NEAR(fl.T, 291.4F, 0.5F);
    // The two ends lie a little outside the jump.
    EXPECT_NEAR(fl.FV(1), share, 0.05F);
    EXPECT_NEAR(fl.FV(1) + fl.FL(1), 1.0F, 1.0E-6F);
  }
}

TEST_F(NestedFlash, TargetAboveTheHottestVapourRunsToTheLimitAndGivesUp) {
  const R4 Q = enthalpy_of(test::natural_gas(), 1700.0F, 10.0F);
  EXPECT_EQ(flash(1600.0F, 10.0F, Q + 50000.0F), " Adiabatic flash did not converge in 80 iterations (FLPQ)");
  EXPECT_EQ(fl.T, kMaxTemperature);
  EXPECT_EQ(fl.NCAL, -3);
  EXPECT_GT(errmat.ERRMAT(error_row::FLPQ, 6), 0);
}

TEST_F(NestedFlash, TemperatureThatCrawlsGivesWayToTheFraction) {
  // Steps of at most 50 K against a distance of 5000 K: the fraction search takes over, and cannot end either.
  EXPECT_EQ(flash(300.0F, 10.0F, 1.0E+6F), " Adiabatic flash did not converge in 80 iterations (FLPQ)");
  EXPECT_LT(fl.T, 600.0F);
  EXPECT_EQ(fl.NCAL, -3);
}

TEST_F(NestedFlash, TargetThatIsNoNumberEnds) {
  EXPECT_EQ(flash(300.0F, 10.0F, std::nanf("")), " Adiabatic flash did not converge in 80 iterations (FLPQ)");
  EXPECT_EQ(fl.T, 1.0F);
}

TEST_F(NestedFlash, FailureOfTheInnerFlashStays) {
  fl.F(2) = -0.01F;
  EXPECT_EQ(flash(300.0F, 10.0F, 1000.0F),
            " One feed stream negative or too big, no flash calculation (FLTP)");
  EXPECT_EQ(fl.NCAL, flash_status::failed);
}

TEST_F(NestedFlash, LooseInnerFlashesAreTroubleThatIsWarnedOf) {
  // The search on the fraction through flashes that end loosely: about one in a hundred lean gases at high pressure.
  test::MixtureSource source(5);
  int warned = 0;
  for (int k = 0; k < 40000 && warned == 0; ++k) {
    if (k % 10 == 0) {
      test::FlashCase mixture = source.next();
      while (source.kind() != "lean gas") mixture = source.next();
      test::load(mixture);
    }
    const R4 P = static_cast<R4>(source.uniform(130.0, 300.0));
    const std::string text = flash(300.0F, P, static_cast<R4>(source.uniform(-30000.0, 40000.0)));
    if (text.empty() || text.front() != '.') continue;
    EXPECT_EQ(text, ".Adiabatic flash is having convergence trouble (FLPQ)");
    EXPECT_LT(fl.NCAL, 0);
    EXPECT_GE(fl.NCAL, flash_status::failed);
    EXPECT_GT(errmat.ERRMAT(error_row::FLPQ, 5), 0);
    ++warned;
  }
  EXPECT_EQ(warned, 1);
}

}  // namespace
}  // namespace talix
