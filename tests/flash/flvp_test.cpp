#include "flash/flvp.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "fastprops/error_matrix.h"
#include "fastprops/flash_record.h"
#include "fastprops/rksf.h"
#include "fastprops/small_arrays.h"
#include "flash/fltp.h"
#include "flash/flvp_state.h"
#include "support/flash_case.h"
#include "support/fraction_search.h"

namespace talix {
namespace {

constexpr R4 kNan = std::numeric_limits<R4>::quiet_NaN();

using TemperatureSearch = test::FractionSearch<FLVP, flash_type::temperature_at_fraction>;

TEST_F(TemperatureSearch, FindsTheTemperatureOfEveryFraction) {
  R4 last = 0.0F;
  for (const R4 FRV : {0.0F, 0.1F, 0.5F, 0.9F, 1.0F}) {
    start(300.0F, 5.0F, FRV);
    ASSERT_EQ(flash(), "") << FRV;
    EXPECT_EQ(fl.NCAL, flash_status::fresh);
    EXPECT_GT(fl.T, last);
    last = fl.T;
    const R4 FTV = TELOP(fl.NC, fl.FV), FTL = TELOP(fl.NC, fl.FL);
    EXPECT_NEAR(FTV / (FTV + FTL), FRV, 1.0E-5F);
    FlashVec y{}, x{}, phi_y{}, phi_x{};
    R4 Z = 0.0F;
    I4 type = 0;
    MOLFR(fl.NC, FTV, fl.FV, y);
    MOLFR(fl.NC, FTL, fl.FL, x);
    RKSF(fl.NC, flash_phase::vapour, fl.T, y, phi_y, Z, fl.P, type);
    RKSF(fl.NC, flash_phase::liquid, fl.T, x, phi_x, Z, fl.P, type);
    for (int i = 1; i <= fl.NC; ++i)
      EXPECT_NEAR(std::log(y(i) * phi_y(i) / (x(i) * phi_x(i))), 0.0F, 1.0E-3F) << FRV << " " << i;
  }
}

TEST_F(TemperatureSearch, StartTemperatureThatCannotBeUsedIsReplacedInSilence) {
  start(300.0F, 5.0F, 0.3F);
  ASSERT_EQ(flash(), "");
  const R4 from_300 = fl.T;
  start(0.0F, 5.0F, 0.3F);
  ASSERT_EQ(flash(), "");
  EXPECT_EQ(fl.T, from_300);
  start(373.15F, 5.0F, 0.3F);
  ASSERT_EQ(flash(), "");
  const R4 from_373 = fl.T;
  for (const R4 T : {0.5F, -10.0F, 1773.2F, kNan}) {
    start(T, 5.0F, 0.3F);
    ASSERT_EQ(flash(), "") << T;
    EXPECT_EQ(fl.T, from_373) << T;
  }
  EXPECT_EQ(errmat.NERRS, 0);
}

TEST_F(TemperatureSearch, PressureOutsideItsRangeIsRefused) {
  int count = 0;
  for (const R4 P : {0.0F, -1.0F, 900.1F, kNan}) {
    start(300.0F, P, 0.3F);
    EXPECT_EQ(flash(), " Pressure not between 0 and  900 bar, no flash calculation (FLVP)") << P;
    EXPECT_EQ(fl.P, 2.0F);
    EXPECT_EQ(fl.NCAL, flash_status::failed);
    EXPECT_EQ(errmat.ERRMAT(error_row::FLVP, 1), ++count);
  }
}

TEST_F(TemperatureSearch, FeedOutsideItsRangeIsRefusedWithoutACount) {
  for (const R4 feed : {0.0F, 2.0E-8F, 1.1E+9F, kNan}) {
    start(300.0F, 5.0F, 0.3F);
    fl.F.fill(0.0F);
    fl.F(1) = feed;
    EXPECT_EQ(flash(), " Feed flow not between 1.0E-9 and 1.0E+9, no flash calculation (FLVP)") << feed;
    EXPECT_EQ(fl.NCAL, flash_status::failed);
  }
  EXPECT_EQ(errmat.NERRS, 0);
}

TEST_F(TemperatureSearch, SearchWithoutConvergenceIsToldForBubbleAndDewPointsOnly) {
  // No bubble point at this pressure: the search wanders below the lowest temperatures in use.
  load({4, 15}, {0.1F, 0.6F});
  for (const I4 code : {flash_type::bubble_temperature, flash_type::dew_temperature, flash_type::adiabatic,
                        flash_type::temperature_at_fraction, flash_type::adiabatic_nested}) {
    start(430.15F, 28.0F, 0.6F);
    fl.IFLASH = code;
    const bool told = code == flash_type::bubble_temperature || code == flash_type::dew_temperature ||
                      code == flash_type::adiabatic;
    EXPECT_EQ(flash(), told ? " No convergence after 80 iterations, calculation suspended (FLVP)" : "")
        << code;
    EXPECT_EQ(fl.NCAL, flash_status::failed);
  }
  EXPECT_EQ(errmat.NERRS, 0);
}

TEST_F(TemperatureSearch, LooseSolutionsHaveTheStatusOfTheirLastStep) {
  // Found by trial: searches that still move by less than 0.01 and 0.1 K in their last pass.
  load({42, 15}, {0.5F, 0.5F});
  int loose = 0;
  for (R4 P = 60.0F; P < 120.0F; P += 0.5F) {
    start(457.15F, P, 0.5F);
    EXPECT_EQ(flash(), "");
    if (fl.NCAL < flash_status::fresh && fl.NCAL > flash_status::failed) ++loose;
    EXPECT_LE(fl.NCAL, flash_status::fresh);
    EXPECT_GE(fl.NCAL, flash_status::failed);
  }
  EXPECT_GT(loose, 0);
}

TEST_F(TemperatureSearch, NonCondensableFeedIsTold) {
  // Found by trial: around these pressures the search ends above every bubble point.
  int told = 0;
  for (R4 P = 40.0F; P < 80.0F; P += 0.5F) {
    test::FlashCase c;
    c.numbers = {20, 328, 6};
    c.feed = {0.777917445F, 0.942103386F, 0.119399145F};
    c.IFLASH = flash_type::bubble_temperature;
    c.T = 104.342209F;
    c.P = P;
    if (c.run() == " Fraction vapour insolvable, non-condensables present (FLVP)") {
      ++told;
      EXPECT_LT(fl.NCAL, flash_status::fresh);
      EXPECT_EQ(c.T, 104.342209F);
    }
  }
  EXPECT_GT(told, 0);
}

TEST_F(TemperatureSearch, SearchThatRunsIntoTheUpperLimitEndsWithoutAText) {
  load({26}, {0.2F});
  start(460.15F, 48.0F, 0.6F);
  EXPECT_EQ(flash(), "");
  EXPECT_EQ(fl.T, kMaxTemperature);
  EXPECT_EQ(fl.NCAL, flash_status::fresh);
}

TEST_F(TemperatureSearch, OnlyAWarmStartKeepsTheFlows) {
  ASSERT_EQ(flash(), "");
  const FlashRecord cold = fl;
  for (const I4 NCAL : {flash_status::fresh, flash_status::first_pass}) {
    fl.FV.fill(1.0E+5F);
    fl.FL.fill(-3.0F);
    fl.VLK.fill(1.0E+9F);
    fl.PLAST = 1.0F;
    fl.TLAST = 1000.0F;
    start(300.0F, 5.0F, 0.3F);
    fl.NCAL = NCAL;
    ASSERT_EQ(flash(), "");
    EXPECT_EQ(fl.T, cold.T);
    for (int i = 1; i <= fl.NC; ++i) EXPECT_EQ(fl.FV(i), cold.FV(i));
  }
  // Flows of another composition lead the real K-values of the second pass another way.
  for (const I4 NCAL : {flash_status::warm_start, flash_status::warm_last}) {
    for (int i = 1; i <= fl.NC; ++i) {
      fl.FV(i) = 0.1F * static_cast<R4>(i);
      fl.FL(i) = 0.2F;
    }
    start(cold.T, 5.0F, 0.3F);
    fl.NCAL = NCAL;
    ASSERT_EQ(flash(), "");
    EXPECT_NEAR(fl.T, cold.T, 0.01F);
    EXPECT_EQ(fl.NCAL, flash_status::fresh);
  }
}

TEST_F(TemperatureSearch, PureComponentIsFoundAtItsSaturation) {
  load({22}, {1.0F});
  for (const R4 FRV : {0.0F, 0.4F, 1.0F}) {
    start(300.0F, 9.0F, FRV);
    ASSERT_EQ(flash(), "") << FRV;
    EXPECT_NEAR(fl.VLK(1), 1.0F, 1.0E-4F) << FRV;
    EXPECT_NEAR(TELOP(1, fl.FV), FRV, 1.0E-5F) << FRV;
  }
}

FlvpState at_pass(I4 LOOP) {
  FlvpState s{};
  s.LOOP = LOOP;
  s.DTMAX = 50.0F;
  s.TOLQ = 1.0E-6F;
  return s;
}

TEST(TemperatureStep, FirstIsSixKelvinHoweverCloseTheStart) {
  for (const R4 Q : {0.3F, 1.0E-8F, -1.0E-8F, -2.0F}) {
    FlvpState s = at_pass(1);
    EXPECT_EQ(decide_step(s, Q, 0.0F), AfterDecision::next_pass);
    EXPECT_EQ(s.DELTAT, Q > 0.0F ? 6.0F : -6.0F);
  }
}

TEST(TemperatureStep, IsASecantStepAndEndsBelowTheTolerance) {
  FlvpState s = at_pass(5);
  EXPECT_EQ(decide_step(s, 0.2F, -0.01F), AfterDecision::next_pass);
  EXPECT_NEAR(s.DELTAT, 20.0F, 1.0E-4F);
  EXPECT_EQ(decide_step(s, 9.0E-7F, -0.01F), AfterDecision::finish);
  s.TOLQ = 1.0E-7F;
  EXPECT_EQ(decide_step(s, 9.0E-7F, -0.01F), AfterDecision::next_pass);
  s.LOOP = 3;
  EXPECT_EQ(decide_step(s, 0.2F, 0.0F), AfterDecision::next_pass);
  EXPECT_EQ(s.DELTAT, 6.0F) << "without a slope";
}

TEST(TemperatureStep, SlopeOfTheWrongSignIsFollowedUpwards) {
  for (const R4 slope : {0.0F, 0.01F, kNan}) {
    FlvpState s = at_pass(4);
    EXPECT_EQ(decide_step(s, 0.2F, slope), AfterDecision::next_pass);
    EXPECT_EQ(s.DELTAT, 50.0F);
  }
  FlvpState early = at_pass(3);
  EXPECT_EQ(decide_step(early, 0.2F, 0.01F), AfterDecision::next_pass);
  EXPECT_NEAR(early.DELTAT, -20.0F, 1.0E-4F) << "not before the fourth pass";
}

TEST(TemperatureStep, SixSignsOfNoSolutionEndTheSearch) {
  FlvpState s = at_pass(10);
  for (int sign = 1; sign <= 5; ++sign) {
    s.DTMAX = 0.5F;
    EXPECT_EQ(decide_step(s, -0.1F, -0.01F), AfterDecision::next_pass);
    EXPECT_EQ(s.DELTAT, -100.0F);
    EXPECT_EQ(s.DTMAX, 100.0F);
    EXPECT_EQ(s.NOSOL, sign);
  }
  s.DTMAX = 1.0F;
  EXPECT_EQ(decide_step(s, -0.1F, -0.01F), AfterDecision::insolvable);
  EXPECT_EQ(decide_step(s, -0.9E-5F, -0.01F), AfterDecision::next_pass) << "a small equation is no sign";
}

// Water in a gas that also drops a hydrocarbon liquid; the isothermal flash with the same key is the reference.
class TemperatureSearchSecondLiquid : public testing::Test {
 protected:
  void SetUp() override {
    test::fresh_flashes_alone();
    test::FlashCase wet;
    wet.numbers = {20, 22, 28, 9};
    wet.feed = {0.50F, 0.15F, 0.20F, 0.15F};
    wet.T = 20.0F;
    wet.P = 30.0F;
    ASSERT_EQ(wet.run(), "");
    fl.NL2KEY = 4;
    fl.FRV = 0.5F;
    flash(FLTP);
    V = fl.FRV;
    liquid = TELOP(4, fl.FL);
    second = TELOP(4, fl.FLS);
    fl.IFLASH = flash_type::temperature_at_fraction;
  }
  void flash(void (*routine)(Message&)) {
    fl.NCAL = flash_status::fresh;
    STR.blank();
    routine(STR);
    ASSERT_EQ(trimmed(STR), "");
  }
  Message STR{};
  R4 V = 0.0F, liquid = 0.0F, second = 0.0F;
};

TEST_F(TemperatureSearchSecondLiquid, FindsTheTemperatureOfThreePhases) {
  for (const R4 from : {280.0F, 293.15F, 310.0F}) {
    fl.T = from;
    flash(FLVP);
    EXPECT_EQ(fl.NCAL, flash_status::fresh);
    EXPECT_NEAR(fl.T, 293.15F, 0.02F) << from;
    EXPECT_NEAR(TELOP(4, fl.FV), V, 1.0E-3F);
    EXPECT_NEAR(TELOP(4, fl.FL), liquid, 1.0E-3F);
    EXPECT_NEAR(TELOP(4, fl.FLS), second, 1.0E-3F);
    EXPECT_NEAR(fl.FTLS_FLVP, TELOP(4, fl.FLS), 1.0E-6F) << "kept for the next call";
  }
}

TEST_F(TemperatureSearchSecondLiquid, DryFeedHasTheTemperatureOfTwoPhases) {
  fl.F(4) = 1.0E-6F;
  fl.FRV = 0.5F;
  flash(FLVP);
  const R4 T = fl.T;
  fl.NL2KEY = 0;
  flash(FLVP);
  EXPECT_NEAR(fl.T, T, 0.01F);
}

}  // namespace
}  // namespace talix
