#include "flash/flvt.h"

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
#include "flash/flvt_state.h"
#include "support/flash_case.h"
#include "support/fraction_search.h"

namespace talix {
namespace {

constexpr R4 kNan = std::numeric_limits<R4>::quiet_NaN();

class PressureSearch : public test::FractionSearch<FLVT, flash_type::pressure_at_fraction> {
 protected:
  static void expect_equilibrium(R4 FRV) {
    FlashVec y{}, x{}, phi_y{}, phi_x{};
    R4 Z = 0.0F;
    I4 type = 0;
    const R4 FTV = TELOP(fl.NC, fl.FV), FTL = TELOP(fl.NC, fl.FL);
    EXPECT_NEAR(FTV / (FTV + FTL), FRV, 2.0E-5F);
    MOLFR(fl.NC, FTV, fl.FV, y);
    MOLFR(fl.NC, FTL, fl.FL, x);
    RKSF(fl.NC, flash_phase::vapour, fl.T, y, phi_y, Z, fl.P, type);
    RKSF(fl.NC, flash_phase::liquid, fl.T, x, phi_x, Z, fl.P, type);
    for (int i = 1; i <= fl.NC; ++i)
      EXPECT_NEAR(std::log(y(i) * phi_y(i) / (x(i) * phi_x(i))), 0.0F, 1.0E-3F) << i;
  }
};

TEST_F(PressureSearch, FindsThePressureOfEveryFraction) {
  R4 last = std::numeric_limits<R4>::infinity();
  for (const R4 FRV : {0.0F, 0.1F, 0.5F, 0.9F, 1.0F}) {
    start(300.0F, 5.0F, FRV);
    ASSERT_EQ(flash(), "") << FRV;
    EXPECT_EQ(fl.NCAL, flash_status::fresh);
    EXPECT_LT(fl.P, last);
    last = fl.P;
    expect_equilibrium(FRV);
    for (int i = 1; i <= fl.NC; ++i) EXPECT_NEAR(fl.FV(i) + fl.FL(i), fl.F(i), 5.0E-8F);
  }
}

TEST_F(PressureSearch, StartPressureDoesNotMatter) {
  ASSERT_EQ(flash(), "");
  const R4 P = fl.P;
  for (const R4 from : {0.001F, 0.5F, 30.0F, 200.0F}) {
    start(300.0F, from, 0.3F);
    ASSERT_EQ(flash(), "") << from;
    EXPECT_NEAR(fl.P, P, 1.0E-4F * P) << from;
  }
}

TEST_F(PressureSearch, UnusableStartPressureIsReplacedByTwoBar) {
  start(300.0F, 2.0F, 0.3F);
  ASSERT_EQ(flash(), "");
  const R4 P = fl.P;
  for (const R4 from : {950.0F, 900.01F, 0.0F, -3.0F, kNan}) {
    start(300.0F, from, 0.3F);
    ASSERT_EQ(flash(), "") << from;
    EXPECT_EQ(fl.P, P) << from;
  }
}

TEST_F(PressureSearch, TemperatureOutsideItsRangeIsRefused) {
  int count = 0;
  for (const R4 T : {0.99F, 0.0F, -5.0F, 1773.2F, kNan}) {
    start(T, 5.0F, 0.3F);
    EXPECT_EQ(flash(), " Temperature not between 0 and 1773 K, no flash calculation (FLVT)") << T;
    EXPECT_EQ(fl.NCAL, flash_status::failed);
    EXPECT_EQ(fl.T, 373.15F);
    EXPECT_EQ(errmat.ERRMAT(error_row::FLVT, 1), ++count);
  }
}

TEST_F(PressureSearch, FeedOutsideItsRangeIsRefused) {
  const char* text = " Feed flow not between 1.0E-9 and 1.0E+9, no flash calculation (FLVT)";
  int count = 0;
  for (const R4 feed : {0.0F, 1.0E-9F, 2.0E-8F, 1.1E+9F, kNan}) {
    start(300.0F, 5.0F, 0.3F);
    fl.F.fill(0.0F);
    fl.F(1) = feed;
    EXPECT_EQ(flash(), text) << feed;
    EXPECT_EQ(fl.NCAL, flash_status::failed);
    EXPECT_EQ(errmat.ERRMAT(error_row::FLVT, 2), ++count);
  }
  start(300.0F, 5.0F, 0.3F);
  fl.F(1) = 1.0E+9F;
  EXPECT_EQ(flash(), "");
}

TEST_F(PressureSearch, SearchWithoutConvergenceIsToldAndLeavesTheStatus) {
  // A mixture above the critical temperature of all its components.
  load({15}, {0.6F});
  start(363.15F, 3.0F, 1.0F);
  fl.IFLASH = flash_type::dew_pressure;
  EXPECT_EQ(flash(), " No convergence after MAXIT iterations, calculation suspended(FLVT)");
  EXPECT_EQ(fl.NCAL, flash_status::fresh);
  EXPECT_EQ(errmat.ERRMAT(error_row::FLVT, 3), 1);
  EXPECT_GT(fl.P, 0.0F);
  EXPECT_GT(TELOP(1, fl.FV), 0.0F) << "the flows stand";
}

TEST_F(PressureSearch, FractionThatIsNoNumberEndsTheSearch) {
  start(300.0F, 5.0F, kNan);
  EXPECT_EQ(flash(), " No convergence after MAXIT iterations, calculation suspended(FLVT)");
  EXPECT_EQ(fl.P, 5.0F);
}

TEST_F(PressureSearch, PressureNeverFallsToZero) {
  // From 5 bar down to millibars the limited step of 1.5 bar would pass zero.
  load({22, 28, 116}, {0.3F, 0.3F, 0.4F});
  for (const R4 T : {200.0F, 220.0F, 250.0F})
    for (const R4 FRV : {0.3F, 0.9F, 1.0F}) {
      start(T, 5.0F, FRV);
      EXPECT_EQ(flash(), "") << T;
      EXPECT_GT(fl.P, 0.0F);
      EXPECT_LT(fl.P, 1.0F);
      expect_equilibrium(FRV);
    }
}

TEST_F(PressureSearch, SearchThatReaches900BarStaysThereWithoutAText) {
  // Nitrogen over a cold heavy liquid.
  load({116, 15, 22}, {0.4F, 0.4F, 0.4F});
  start(205.15F, 30.0F, 0.0F);
  EXPECT_EQ(flash(), "");
  EXPECT_EQ(fl.P, 900.0F);
  EXPECT_EQ(fl.NCAL, flash_status::fresh);
}

TEST_F(PressureSearch, StartValuesOfTheRegionSearchServeTheFirstPass) {
  // K-values of 1 balance at once; above the critical temperatures the real ones of the second pass are 1 too, so
  // that the search ends where it began, while ideal K-values lead it away.
  load({20, 21}, {0.5F, 0.5F});
  start(450.0F, 40.0F, 0.5F);
  fl.VLK.fill(1.0F);
  fl.KSTART = true;
  EXPECT_EQ(flash(), "");
  EXPECT_EQ(fl.P, 40.0F);
  start(450.0F, 40.0F, 0.5F);
  fl.VLK.fill(1.0F);
  flash();
  EXPECT_GT(std::fabs(fl.P - 40.0F), 1.0F);
}

TEST_F(PressureSearch, HistoryDoesNotMatter) {
  ASSERT_EQ(flash(), "");
  const FlashRecord before = fl;
  fl.FV.fill(1.0E+5F);
  fl.FL.fill(-3.0F);
  fl.VLK.fill(1.0E+9F);
  fl.PLAST = 1.0F;
  fl.TLAST = 1000.0F;
  start(300.0F, 5.0F, 0.3F);
  ASSERT_EQ(flash(), "");
  EXPECT_EQ(fl.P, before.P);
  for (int i = 1; i <= fl.NC; ++i) EXPECT_EQ(fl.FV(i), before.FV(i));
}

// Three components, with a second liquid where the test asks for one.
FlvtState equations(bool key, R4 FRV) {
  FlvtState s{};
  s.key = key;
  s.equations.count = 3;
  const R4 zz[] = {0.5F, 0.3F, 0.2F}, ka[] = {3.0F, 0.4F, 0.2F}, kb[] = {5.0F, 2.0F, 0.05F};
  for (int i = 1; i <= 3; ++i) {
    s.equations.ZZ(i) = zz[i - 1];
    s.equations.KA(i) = ka[i - 1];
    s.equations.KB(i) = kb[i - 1];
  }
  fl.FRV = FRV;
  s.PSTAR = 10.0F;
  s.PCAL = 12.0F;
  s.FLL = 1.0F - FRV;
  s.FLA = key ? 0.6F * s.FLL : s.FLL;
  s.FLB = s.FLL - s.FLA;
  evaluate_pressure(s);
  return s;
}

TEST(PressureEquations, BubblePointIsOneMinusTheSumOfKValues) {
  const FlvtState s = equations(false, 0.0F);
  R4 sum = 0.0F;
  for (int i = 1; i <= 3; ++i) sum += s.equations.ZZ(i) * s.equations.KA(i) * 10.0F / 12.0F;
  EXPECT_NEAR(s.QA, 1.0F - sum, 1.0E-6F);
}

TEST(PressureEquations, SlopesAreThoseOfTheEquations) {
  for (const bool key : {false, true}) {
    FlvtState s = equations(key, 0.3F), up = s, down = s;
    up.PCAL = 12.06F;
    down.PCAL = 11.94F;
    evaluate_pressure(up);
    evaluate_pressure(down);
    EXPECT_GT(s.QAP, 0.0F);
    EXPECT_NEAR((up.QA - down.QA) / 0.12F, s.QAP, 1.0E-3F * s.QAP);
    if (!key) continue;
    EXPECT_NEAR((up.QB - down.QB) / 0.12F, s.QBP, 1.0E-3F * s.QBP);
    up = down = s;
    up.FLA += 0.005F;
    up.FLB -= 0.005F;
    down.FLA -= 0.005F;
    down.FLB += 0.005F;
    evaluate_pressure(up);
    evaluate_pressure(down);
    EXPECT_NEAR((up.QA - down.QA) / 0.01F, s.QAA, 2.0E-3F * std::fabs(s.QAA));
    EXPECT_NEAR((up.QB - down.QB) / 0.01F, s.QBB, 2.0E-3F * std::fabs(s.QBB));
  }
}

TEST(PressureEquations, KValuesAreCappedInTheEquationOnly) {
  FlvtState s = equations(false, 0.0F);
  s.equations.KA(1) = 1.0E+8F;
  evaluate_pressure(s);
  EXPECT_NEAR(s.QA, -0.5E+6F, 10.0F);
  EXPECT_NEAR(s.QAP, 0.5E+8F * 10.0F / 144.0F, 1.0E+2F);
}

TEST(PressureEquations, SecondLiquidStaysOutWhileThePressureRises) {
  FlvtState s{};
  s.key = true;
  s.NGO = PressureMode::liquid_a;
  s.QB = 1.0F;
  s.DELP = 0.5F;
  step_second_liquid(s);
  EXPECT_EQ(s.NGO, PressureMode::liquid_a);
  EXPECT_EQ(s.DELP, 0.5F);
  s.QB = -1.0F;
  s.DELP = -0.5F;
  step_second_liquid(s);
  EXPECT_EQ(s.NGO, PressureMode::liquid_a);
  EXPECT_EQ(s.DELP, -0.5F);
}

// Water in a gas that also drops a hydrocarbon liquid; the isothermal flash with the same key is the reference.
class PressureSearchSecondLiquid : public testing::Test {
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
    fl.NCAL = flash_status::fresh;
    STR.blank();
    FLTP(STR);
    ASSERT_EQ(trimmed(STR), "");
    V = fl.FRV;
    liquid = TELOP(4, fl.FL);
    second = TELOP(4, fl.FLS);
    fl.IFLASH = flash_type::pressure_at_fraction;
    fl.NCAL = flash_status::fresh;
  }
  Message STR{};
  R4 V = 0.0F, liquid = 0.0F, second = 0.0F;
};

TEST_F(PressureSearchSecondLiquid, FindsThePressureOfThreePhases) {
  for (const R4 from : {10.0F, 30.0F, 60.0F}) {
    fl.P = from;
    FLVT(STR);
    ASSERT_EQ(trimmed(STR), "") << from;
    EXPECT_NEAR(fl.P, 30.0F, 0.02F) << from;
    EXPECT_NEAR(TELOP(4, fl.FV), V, 1.0E-4F);
    EXPECT_NEAR(TELOP(4, fl.FL), liquid, 1.0E-3F);
    EXPECT_NEAR(TELOP(4, fl.FLS), second, 1.0E-3F);
  }
}

TEST_F(PressureSearchSecondLiquid, DryFeedHasThePressureOfTwoPhases) {
  fl.F(4) = 1.0E-6F;
  fl.P = 10.0F;
  fl.FRV = 0.5F;
  FLVT(STR);
  ASSERT_EQ(trimmed(STR), "");
  EXPECT_NEAR(TELOP(4, fl.FL) + TELOP(4, fl.FLS), 0.5F * TELOP(4, fl.F), 1.0E-4F)
      << "whichever of the liquids it is";
  const R4 P = fl.P;
  fl.NL2KEY = 0;
  fl.P = 10.0F;
  FLVT(STR);
  EXPECT_NEAR(fl.P, P, 1.0E-3F * P);
}

}  // namespace
}  // namespace talix
