#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "engine/codes.h"
#include "fastprops/flash_record.h"
#include "fastprops/small_arrays.h"
#include "flash/phase_check.h"
#include "flash/robust_line.h"
#include "support/flash_case.h"
#include "support/random_mixtures.h"

namespace talix {
namespace {

RobustMixture mixture{};
LineTrace line{};

// The flash alone, and the check behind it.
struct Checked {
  std::string before, after;
};

Checked run(test::FlashCase c) {
  Checked texts;
  test::verify(0);
  texts.before = c.run();
  Message STR{};
  STR = texts.before;
  grant_engine_calls();
  check_saturation(STR);
  texts.after = std::string{trimmed(STR)};
  return texts;
}

test::FlashCase gas(int code, R4 T_K, R4 P, R4 FRV = 0.5F) {
  test::FlashCase c;
  c.numbers = {15, 4, 20, 21, 22, 24, 23, 25, 28};
  c.feed = {0.020F, 0.015F, 0.842F, 0.061F, 0.031F, 0.007F, 0.010F, 0.006F, 0.008F};
  c.T = T_K - 273.15F;
  c.P = P;
  c.FRV = FRV;
  c.IFLASH = code;
  return c;
}

// The dew line of the gas, with the limits of both lines.
void follow_line() {
  gather_mixture(mixture);
  set_engine_budget(10000);
  trace_line(mixture, 1.0, SaturationGiven::temperature, 230.0, true, line);
}

R8 highest_T() { return std::max(line.normal.T, line.exchanged.T); }
R8 highest_P() { return std::max(line.normal.P, line.exchanged.P); }

void expect_equilibrium(R8 fraction) {
  static RobustPhase y{}, x{};
  gather_mixture(mixture);
  set_engine_budget(100);
  CompVec Y{}, X{};
  for (int i = 1; i <= mixture.n; ++i) {
    Y(i) = static_cast<R8>(fl.Y(mixture.at(i)));
    X(i) = static_cast<R8>(fl.X1(mixture.at(i)));
  }
  const R8 T = static_cast<R8>(fl.T), P = static_cast<R8>(fl.P);
  evaluate_phase(mixture, T, P, Y, phase::vapour, PhaseDerivatives::none, y);
  evaluate_phase(mixture, T, P, X, phase::liquid, PhaseDerivatives::none, x);
  for (int i = 1; i <= mixture.n; ++i) {
    const int k = mixture.at(i);
    EXPECT_NEAR(std::log(Y(i) / X(i)) + y.lnphi(i) - x.lnphi(i), 0.0, 2.0E-5) << i;
    EXPECT_NEAR(fl.FV(k) + fl.FL(k), fl.F(k), 1.0E-6F * fl.F(k)) << i;
    EXPECT_EQ(fl.FLS(k), 0.0F);
  }
  const R8 FTV = static_cast<R8>(TELOP(fl.NC, fl.FV)), FTL = static_cast<R8>(TELOP(fl.NC, fl.FL));
  EXPECT_NEAR(FTV / (FTV + FTL), fraction, 1.0E-6);
}

class SaturationCheck : public testing::Test {
 protected:
  void SetUp() override { test::fresh_library(); }
};

TEST_F(SaturationCheck, PolishesWhatTheFlashFound) {
  for (const int code : {1, 2, 3, 4, 6, 7}) {
    const Checked texts = run(gas(code, 180.0F, 5.0F));
    ASSERT_EQ(texts.after, "") << code;
    expect_equilibrium(code <= 2 ? 0.0 : code <= 4 ? 1.0 : 0.5);
  }
}

TEST_F(SaturationCheck, PhaseAboutToFormKeepsItsFloor) {
  ASSERT_EQ(run(gas(1, 180.0F, 5.0F)).after, "");
  EXPECT_NEAR(TELOP(fl.NC, fl.FV), kFlowFloor, 1.0E-3F * kFlowFloor);
  ASSERT_EQ(run(gas(4, 180.0F, 5.0F)).after, "");
  EXPECT_NEAR(TELOP(fl.NC, fl.FL), kFlowFloor, 1.0E-3F * kFlowFloor);
}

TEST_F(SaturationCheck, MendsTrivialSolutions) {
  // Between the critical temperature and the cricondentherm there are dew points only.
  ASSERT_EQ(run(gas(3, 180.0F, 5.0F)).after, "");
  follow_line();
  const R4 T = static_cast<R4>(0.5 * (line.critical_T + highest_T()));
  for (const R4 start : {0.1F, 20.0F, 60.0F, 120.0F, 300.0F}) {
    ASSERT_EQ(run(gas(3, T, start)).after, "") << start;
    expect_equilibrium(1.0);
    R8 apart = 0.0;
    for (int i = 1; i <= fl.NC; ++i) apart = std::max(apart, static_cast<R8>(std::fabs(fl.Y(i) - fl.X1(i))));
    EXPECT_GT(apart, 0.01);
  }
}

TEST_F(SaturationCheck, NearestToTheCallersStartCounts) {
  ASSERT_EQ(run(gas(3, 180.0F, 5.0F)).after, "");
  follow_line();
  const R4 T = static_cast<R4>(0.5 * (line.critical_T + highest_T()));
  ASSERT_EQ(run(gas(3, T, 0.01F)).after, "");
  const R4 lower = fl.P;
  ASSERT_EQ(run(gas(3, T, 800.0F)).after, "");
  const R4 upper = fl.P;
  EXPECT_GT(upper, 1.5F * lower);
  const R4 middle = std::sqrt(lower * upper);
  ASSERT_EQ(run(gas(3, T, 0.98F * middle)).after, "");
  EXPECT_EQ(fl.P, lower);
  ASSERT_EQ(run(gas(3, T, 1.02F * middle)).after, "");
  EXPECT_EQ(fl.P, upper);
  const R4 P = static_cast<R4>(0.5 * (line.critical_P + highest_P()));
  ASSERT_EQ(run(gas(4, 400.0F, P)).after, "");
  const R4 warmer = fl.T;
  ASSERT_EQ(run(gas(4, 100.0F, P)).after, "");
  const R4 colder = fl.T;
  EXPECT_GT(warmer, colder + 5.0F);
  ASSERT_EQ(run(gas(4, 0.5F * (warmer + colder) + 1.0F, P)).after, "");
  EXPECT_EQ(fl.T, warmer);
  ASSERT_EQ(run(gas(4, 0.5F * (warmer + colder) - 1.0F, P)).after, "");
  EXPECT_EQ(fl.T, colder);
}

TEST_F(SaturationCheck, StartPressureOfZeroCountsAsTwoBar) {
  ASSERT_EQ(run(gas(3, 180.0F, 5.0F)).after, "");
  follow_line();
  const R4 T = static_cast<R4>(0.5 * (line.critical_T + highest_T()));
  ASSERT_EQ(run(gas(3, T, 2.0F)).after, "");
  const R4 P = fl.P;
  ASSERT_EQ(run(gas(3, T, 0.0F)).after, "");
  EXPECT_EQ(fl.P, P);
}

std::string number(R8 value, int decimals) {
  char text[40];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return text;
}

void expect_limit(const std::string& text, const std::string& begin, R8 limit, R8 tolerance,
                  const std::string& end) {
  ASSERT_EQ(text.substr(0, begin.size()), begin);
  ASSERT_GE(text.size(), begin.size() + end.size());
  EXPECT_EQ(text.substr(text.size() - end.size()), end);
  EXPECT_NEAR(std::stod(text.substr(begin.size())), limit, tolerance) << text;
}

TEST_F(SaturationCheck, TextsNameTheLimitThatWasPassed) {
  ASSERT_EQ(run(gas(3, 180.0F, 5.0F)).after, "");
  follow_line();
  const R4 hot = static_cast<R4>(highest_T() + 5.0);
  const R4 retrograde = static_cast<R4>(0.5 * (line.critical_T + highest_T()));
  const R4 high = static_cast<R4>(highest_P() + 5.0);
  const std::string at_hot = number(static_cast<R8>(hot), 2) + " K: above the cricondentherm of ";
  const std::string at_high = number(static_cast<R8>(high), 1) + " bar: above the cricondenbar of ";
  expect_limit(run(gas(1, hot, 10.0F)).after, " No bubble point at " + at_hot, highest_T(), 0.02,
               " K (TALIX)");
  expect_limit(run(gas(3, hot, 10.0F)).after, " No dew point at " + at_hot, highest_T(), 0.02, " K (TALIX)");
  expect_limit(run(gas(2, 200.0F, high)).after, " No bubble point at " + at_high, highest_P(), 0.1,
               " bar (TALIX)");
  expect_limit(run(gas(4, 250.0F, high)).after, " No dew point at " + at_high, highest_P(), 0.1,
               " bar (TALIX)");
  expect_limit(run(gas(6, hot, 10.0F)).after, " No state with vapour fraction 0.5000 at " + at_hot,
               line.critical_T, 0.02, " K (TALIX)");
  expect_limit(run(gas(7, 250.0F, high)).after, " No state with vapour fraction 0.5000 at " + at_high,
               line.critical_P, 0.1, " bar (TALIX)");
  expect_limit(run(gas(1, retrograde, 10.0F)).after,
               " No bubble point at " + number(static_cast<R8>(retrograde), 2) +
                   " K: above the critical temperature of ",
               line.critical_T, 0.02, " K (TALIX)");
  const R4 between = static_cast<R4>(0.5 * (line.critical_P + highest_P()));
  expect_limit(
      run(gas(2, 200.0F, between)).after,
      " No bubble point at " + number(static_cast<R8>(between), 1) + " bar: above the critical pressure of ",
      line.critical_P, 0.1, " bar (TALIX)");
}

test::FlashCase binary(int first, int second, R4 share, int code, R4 T_K, R4 P) {
  test::FlashCase c;
  c.numbers = {first, second};
  c.feed = {share, 1.0F - share};
  c.T = T_K - 273.15F;
  c.P = P;
  c.IFLASH = code;
  return c;
}

TEST_F(SaturationCheck, LinesThatLeaveTheRangeHaveATextOfTheirOwn) {
  EXPECT_EQ(run(binary(8, 134, 0.5F, 1, 300.0F, 10.0F)).after,
            " No bubble point at 300.00 K: above 900 bar (TALIX)");
  EXPECT_EQ(run(binary(20, 116, 0.9342F, 1, 398.15F, 10.0F)).after,
            " No bubble point at 398.15 K: none up to 900 bar (TALIX)");
  EXPECT_EQ(run(binary(8, 28, 0.5F, 2, 300.0F, 1.5F)).after,
            " No bubble point at 1.5 bar: none from 50 to 1200 K (TALIX)");
}

TEST_F(SaturationCheck, SecondLiquidBesideTheBubblePointIsTold) {
  test::FlashCase c;
  c.numbers = {22, 25, 9};
  c.feed = {0.4F, 0.4F, 0.2F};
  c.T = 26.85F;
  c.P = 5.0F;
  for (const int code : {1, 2}) {
    c.IFLASH = code;
    EXPECT_EQ(run(c).after, ". A third phase, liquid, would lower the Gibbs energy further (TALIX)") << code;
    expect_equilibrium(0.0);
  }
  c.IFLASH = 4;
  EXPECT_EQ(run(c).after, "");
  expect_equilibrium(1.0);
  EXPECT_GT(fl.X1(3), 0.99F);
}

TEST_F(SaturationCheck, PureComponent) {
  test::FlashCase c;
  c.numbers = {22};
  c.feed = {1.0F};
  c.T = 26.85F;
  c.P = 3.0F;
  c.FRV = 0.25F;
  c.IFLASH = 6;
  ASSERT_EQ(run(c).after, "");
  expect_equilibrium(0.25);
  const R4 P = fl.P;
  for (const int code : {1, 3}) {
    c.IFLASH = code;
    ASSERT_EQ(run(c).after, "") << code;
    EXPECT_EQ(fl.P, P) << code;
  }
  c.P = P;
  for (const int code : {2, 4, 7}) {
    c.IFLASH = code;
    ASSERT_EQ(run(c).after, "") << code;
    EXPECT_NEAR(fl.T, 300.0F, 1.0E-3F) << code;
  }
  c.IFLASH = 1;
  c.T = 110.0F;
  const std::string critical = number(static_cast<R8>(fl.TC(1)), 2);
  EXPECT_EQ(run(c).after,
            " No bubble point at 383.15 K: above the critical temperature of " + critical + " K (TALIX)");
  c.IFLASH = 4;
  c.P = 60.0F;
  EXPECT_EQ(run(c).after, " No dew point at 60.0 bar: above the critical pressure of " +
                              number(static_cast<R8>(fl.PC(1)), 1) + " bar (TALIX)");
}

TEST_F(SaturationCheck, ComponentsWithoutFeedChangeNothing) {
  ASSERT_EQ(run(binary(22, 25, 0.4F, 4, 300.0F, 8.0F)).after, "");
  const R4 T = fl.T;
  test::FlashCase c;
  c.numbers = {116, 22, 9, 25, 20};
  c.feed = {0.0F, 0.4F, 0.0F, 0.6F, 0.0F};
  c.T = 26.85F;
  c.P = 8.0F;
  c.IFLASH = 4;
  ASSERT_EQ(run(c).after, "");
  EXPECT_EQ(fl.T, T);
  EXPECT_EQ(fl.Y(1), 0.0F);
  EXPECT_EQ(fl.FL(3), 0.0F);
}

TEST_F(SaturationCheck, RefusalsOfTheFlashStand) {
  test::FlashCase c = gas(1, 180.0F, 5.0F);
  for (R4& f : c.feed) f *= 2.0E+9F;
  const std::string too_big = " Feed flow not between 1.0E-9 and 1.0E+9, no flash calculation (FLVT)";
  const Checked texts = run(c);
  EXPECT_EQ(texts.before, too_big);
  EXPECT_EQ(texts.after, too_big);
  EXPECT_EQ(run(gas(2, 180.0F, 0.0F)).after,
            " Pressure not between 0 and  900 bar, no flash calculation (FLVP)");
}

TEST_F(SaturationCheck, WithoutEngineCallsItTellsThatItCouldNotSettle) {
  const test::FlashCase ready = gas(3, 180.0F, 5.0F);
  ASSERT_EQ(run(ready).after, "");
  Message STR{};
  STR.blank();
  set_engine_budget(0);
  check_saturation(STR);
  EXPECT_EQ(std::string{trimmed(STR)}, " Saturation point could not be settled at 180.00 K (TALIX)");
  fl.IFLASH = flash_type::dew_temperature;
  set_engine_budget(0);
  check_saturation(STR);
  EXPECT_EQ(std::string{trimmed(STR)}, " Saturation point could not be settled at 5 bar (TALIX)");
}

TEST_F(SaturationCheck, NoTextIsLongerThanAllowed) {
  for (const int code : {1, 2, 3, 4, 6, 7}) {
    const std::string text = run(gas(code, 700.0F, 899.0F, 0.123456F)).after;
    EXPECT_FALSE(text.empty()) << code;
    EXPECT_LE(text.size(), 110U) << text;
    EXPECT_EQ(text.substr(text.size() - 8), " (TALIX)");
  }
}

// Every answer is an equilibrium of two different phases at the asked fraction, whatever the flash had.
TEST_F(SaturationCheck, RandomStates) {
  test::MixtureSource source(2024);
  int answered = 0;
  for (int k = 0; k < 120; ++k) {
    test::FlashCase c = source.next();
    const int codes[] = {1, 2, 3, 4, 6, 7};
    c.IFLASH = codes[k % 6];
    c.T = static_cast<R4>(source.uniform(-120.0, 300.0));
    c.P = static_cast<R4>(std::exp(source.uniform(std::log(0.05), std::log(200.0))));
    c.FRV = 0.3F;
    const Checked texts = run(c);
    ASSERT_EQ(texts.after.find("settled"), std::string::npos) << k;
    if (!texts.after.empty()) continue;
    ++answered;
    expect_equilibrium(c.IFLASH <= 2 ? 0.0 : c.IFLASH <= 4 ? 1.0 : static_cast<R8>(0.3F));
    R8 apart = std::fabs(std::log(static_cast<R8>(fl.ZV) / static_cast<R8>(fl.ZL)));
    for (int i = 1; i <= fl.NC; ++i) apart = std::max(apart, static_cast<R8>(std::fabs(fl.Y(i) - fl.X1(i))));
    EXPECT_GT(apart, 1.0E-4) << k;
  }
  EXPECT_GT(answered, 70);
}

}  // namespace
}  // namespace talix
