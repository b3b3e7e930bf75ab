#include "flash/robust_saturation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>
#include <vector>

#include "engine/codes.h"
#include "fastprops/flash_record.h"
#include "flash/robust_line.h"
#include "support/flash_case.h"
#include "support/random_mixtures.h"

namespace talix {
namespace {

constexpr I4 kBudget = 50000;
constexpr auto kAtT = SaturationGiven::temperature;
constexpr auto kAtP = SaturationGiven::pressure;

RobustMixture mixture{};
SaturationResult result{};
RobustSplit isothermal{};

void load(std::vector<int> numbers, std::vector<R4> feed) {
  test::fresh_library();
  test::FlashCase c;
  c.numbers = std::move(numbers);
  c.feed = std::move(feed);
  test::load(c);
  for (int i = 1; i <= c.nc(); ++i) fl.F(i) = c.feed[static_cast<std::size_t>(i - 1)];
  gather_mixture(mixture);
  set_engine_budget(kBudget);
}

// A natural gas up to hexane, whose bubble and dew lines meet in a critical point.
const std::vector<int> kGas = {15, 4, 20, 21, 22, 24, 23, 25, 28};
const std::vector<R4> kGasFeed = {0.020F, 0.015F, 0.842F, 0.061F, 0.031F, 0.007F, 0.010F, 0.006F, 0.008F};

void load_natural_gas() { load(kGas, kGasFeed); }

Saturation find(SaturationGiven given, R8 value, R8 fraction, R8 start) {
  set_engine_budget(kBudget);
  robust_saturation(mixture, given, value, fraction, start, result);
  return result.answer;
}

// Equal fugacities, worked out anew from the two compositions, and the balance of the feed.
void expect_equilibrium(const RobustSplit& s) {
  static RobustPhase y{}, x{};
  evaluate_phase(mixture, s.T, s.P, s.vapour.x, phase::vapour, PhaseDerivatives::none, y);
  evaluate_phase(mixture, s.T, s.P, s.liquid.x, phase::liquid, PhaseDerivatives::none, x);
  ASSERT_EQ(y.status, status::ok);
  ASSERT_EQ(x.status, status::ok);
  R8 apart = std::fabs(std::log(y.Z / x.Z));
  for (int i = 1; i <= mixture.n; ++i) {
    EXPECT_NEAR(std::log(s.vapour.x(i) / s.liquid.x(i)) + y.lnphi(i) - x.lnphi(i), 0.0, 1.0E-8) << i;
    EXPECT_NEAR(s.fraction * s.vapour.x(i) + (1.0 - s.fraction) * s.liquid.x(i), mixture.z(i), 1.0E-9) << i;
    apart = std::max(apart, std::fabs(s.vapour.x(i) - s.liquid.x(i)));
  }
  EXPECT_GT(apart, 1.0E-4);
}

TEST(SaturationPoint, SolvesFromWilsonsEstimate) {
  load({22, 23, 25, 28}, {0.2F, 0.3F, 0.3F, 0.2F});
  for (const R8 fraction : {0.0, 0.3, 1.0})
    for (const auto given : {kAtT, kAtP}) {
      const R8 value = given == kAtT ? 300.0 : 4.0;
      LinePoint point{};
      wilson_at(mixture, fraction, given, value, point);
      const int held = given == kAtT ? temperature_unknown(mixture) : pressure_unknown(mixture);
      ASSERT_EQ(solve_point(mixture, held, std::log(value), 20, point), PointAnswer::solved);
      EXPECT_LT(point.iterations, 8);
      R8 sum = 0.0;
      CompVec x{}, y{};
      compositions_of(mixture, point, x, y);
      for (int i = 1; i <= mixture.n; ++i) sum += y(i) - x(i);
      EXPECT_NEAR(sum, 0.0, 1.0E-9);
      EXPECT_FALSE(is_exchanged(point));
    }
}

TEST(SaturationPoint, RefusesTwoPhasesThatAreAlike) {
  load({22, 23}, {0.5F, 0.5F});
  LinePoint point{};
  wilson_at(mixture, 0.0, kAtT, 300.0, point);
  for (int i = 1; i <= mixture.n; ++i) point.u(i) = 0.0;
  point.u(pressure_unknown(mixture)) = std::log(500.0);
  EXPECT_EQ(solve_point(mixture, temperature_unknown(mixture), std::log(300.0), 20, point),
            PointAnswer::trivial);
}

TEST(SaturationPoint, SlopesOfTheLineAreThoseOfItsPoints) {
  // Carbon dioxide and ethane stand in the zone whose tabulated temperature derivatives are no slopes.
  load({4, 21, 23}, {0.4F, 0.4F, 0.2F});
  LinePoint point{}, next{};
  wilson_at(mixture, 0.0, kAtP, 40.0, point);
  const int held = pressure_unknown(mixture);
  ASSERT_EQ(solve_point(mixture, held, std::log(40.0), 20, point), PointAnswer::solved);
  LineVec slopes{};
  ASSERT_TRUE(line_slopes(mixture, held, point, slopes));
  const R8 step = 1.0E-4;
  next = point;
  ASSERT_EQ(solve_point(mixture, held, std::log(40.0) + step, 20, next), PointAnswer::solved);
  for (int i = 1; i <= mixture.n + 1; ++i)
    EXPECT_NEAR((next.u(i) - point.u(i)) / step, slopes(i), 2.0E-3 * (1.0 + std::fabs(slopes(i)))) << i;
}

TEST(SaturationLine, SameLineFromBothEnds) {
  load_natural_gas();
  static LineTrace bubble{}, dew{};
  trace_line(mixture, 0.0, kAtT, 230.0, true, bubble);
  trace_line(mixture, 1.0, kAtT, 230.0, true, dew);
  ASSERT_GT(bubble.critical_T, 0.0);
  EXPECT_NEAR(bubble.critical_T, dew.critical_T, 0.01);
  EXPECT_NEAR(bubble.critical_P, dew.critical_P, 0.01);
  EXPECT_NEAR(std::max(bubble.normal.T, bubble.exchanged.T), std::max(dew.normal.T, dew.exchanged.T), 0.02);
  EXPECT_NEAR(std::max(bubble.normal.P, bubble.exchanged.P), std::max(dew.normal.P, dew.exchanged.P), 0.02);
  EXPECT_LT(bubble.points, 80);
  EXPECT_LT(dew.points, 80);
}

TEST(SaturationLine, LinesOfAFractionEndAtTheCriticalPoint) {
  load_natural_gas();
  static LineTrace dew{}, half{};
  trace_line(mixture, 1.0, kAtT, 230.0, true, dew);
  for (const R8 fraction : {0.2, 0.5, 0.8}) {
    trace_line(mixture, fraction, kAtT, 230.0, false, half);
    EXPECT_EQ(half.end, LineEnd::critical) << fraction;
    EXPECT_NEAR(half.critical_T, dew.critical_T, 0.05) << fraction;
    EXPECT_NEAR(half.critical_P, dew.critical_P, 0.05) << fraction;
  }
}

TEST(SaturationLine, OpenLineEndsAboveTheHighestPressure) {
  load({20, 116}, {0.9342F, 0.0658F});
  static LineTrace dew{};
  trace_line(mixture, 1.0, kAtT, 330.0, true, dew);
  EXPECT_EQ(dew.end, LineEnd::high_pressure);
}

TEST(SaturationLine, CrossingsStandAtTheGivenValue) {
  load_natural_gas();
  static LineTrace dew{};
  trace_line(mixture, 1.0, kAtP, 40.0, true, dew);
  ASSERT_GE(dew.count, 2);
  for (int k = 1; k <= dew.count; ++k) EXPECT_NEAR(pressure_of(mixture, dew.crossings(k)), 40.0, 1.0E-7) << k;
}

TEST(RobustSaturation, BubbleAndDewPointsOfANaturalGas) {
  load_natural_gas();
  ASSERT_EQ(find(kAtT, 180.0, 0.0, 10.0), Saturation::found);
  expect_equilibrium(result.split);
  const R8 bubble = result.split.P;
  EXPECT_EQ(result.split.fraction, 0.0);
  ASSERT_EQ(find(kAtT, 180.0, 1.0, 1.0E-3), Saturation::found);
  expect_equilibrium(result.split);
  EXPECT_EQ(result.split.fraction, 1.0);
  EXPECT_LT(result.split.P, bubble);
  ASSERT_EQ(find(kAtP, bubble, 0.0, 150.0), Saturation::found);
  EXPECT_NEAR(result.split.T, 180.0, 1.0E-6);
}

TEST(RobustSaturation, OfTwoDewPressuresTheNearerOne) {
  load_natural_gas();
  static LineTrace dew{};
  trace_line(mixture, 1.0, kAtT, 300.0, true, dew);
  const R8 T = 0.5 * (dew.critical_T + std::max(dew.normal.T, dew.exchanged.T));
  ASSERT_EQ(find(kAtT, T, 1.0, 0.1), Saturation::found);
  expect_equilibrium(result.split);
  const R8 lower = result.split.P;
  ASSERT_EQ(find(kAtT, T, 1.0, 500.0), Saturation::found);
  expect_equilibrium(result.split);
  const R8 upper = result.split.P;
  EXPECT_GT(upper, 1.5 * lower);
  // Nearest in the logarithm of the pressure.
  const R8 middle = std::sqrt(lower * upper);
  ASSERT_EQ(find(kAtT, T, 1.0, 0.97 * middle), Saturation::found);
  EXPECT_NEAR(result.split.P, lower, 1.0E-6 * lower);
  ASSERT_EQ(find(kAtT, T, 1.0, 1.03 * middle), Saturation::found);
  EXPECT_NEAR(result.split.P, upper, 1.0E-6 * upper);
}

TEST(RobustSaturation, OfTwoDewTemperaturesTheNearerOne) {
  load_natural_gas();
  static LineTrace dew{};
  trace_line(mixture, 1.0, kAtT, 300.0, true, dew);
  const R8 P = 0.5 * (dew.critical_P + std::max(dew.normal.P, dew.exchanged.P));
  ASSERT_EQ(find(kAtP, P, 1.0, 400.0), Saturation::found);
  const R8 upper = result.split.T;
  ASSERT_EQ(find(kAtP, P, 1.0, 150.0), Saturation::found);
  const R8 lower = result.split.T;
  EXPECT_LT(lower, upper - 5.0);
  ASSERT_EQ(find(kAtP, P, 1.0, 0.5 * (lower + upper) + 1.0), Saturation::found);
  EXPECT_NEAR(result.split.T, upper, 1.0E-6);
  ASSERT_EQ(find(kAtP, P, 1.0, 0.5 * (lower + upper) - 1.0), Saturation::found);
  EXPECT_NEAR(result.split.T, lower, 1.0E-6);
}

TEST(RobustSaturation, LimitsThatArePassedAreNamed) {
  load_natural_gas();
  static LineTrace dew{};
  trace_line(mixture, 1.0, kAtT, 300.0, true, dew);
  const R8 T_top = std::max(dew.normal.T, dew.exchanged.T);
  const R8 P_top = std::max(dew.normal.P, dew.exchanged.P);
  EXPECT_EQ(find(kAtT, T_top + 0.1, 1.0, 10.0), Saturation::above_cricondentherm);
  EXPECT_NEAR(result.limit, T_top, 0.05);
  EXPECT_EQ(find(kAtT, T_top - 0.1, 1.0, 10.0), Saturation::found);
  EXPECT_EQ(find(kAtP, P_top + 0.1, 1.0, 250.0), Saturation::above_cricondenbar);
  EXPECT_NEAR(result.limit, P_top, 0.05);
  EXPECT_EQ(find(kAtP, P_top - 0.1, 1.0, 250.0), Saturation::found);
  EXPECT_EQ(find(kAtT, 0.5 * (dew.critical_T + T_top), 0.0, 50.0), Saturation::above_critical);
  EXPECT_NEAR(result.limit, dew.critical_T, 0.05);
  EXPECT_EQ(find(kAtT, dew.critical_T - 0.5, 0.0, 50.0), Saturation::found);
  EXPECT_EQ(find(kAtT, T_top + 20.0, 0.0, 50.0), Saturation::above_cricondentherm);
}

TEST(RobustSaturation, FractionsAgreeWithTheIsothermalFlash) {
  load_natural_gas();
  for (const R8 fraction : {0.05, 0.5, 0.95}) {
    ASSERT_EQ(find(kAtT, 220.0, fraction, 10.0), Saturation::found) << fraction;
    expect_equilibrium(result.split);
    robust_isothermal(mixture, 220.0, result.split.P, nullptr, isothermal);
    EXPECT_NEAR(isothermal.fraction, fraction, 1.0E-6);
    ASSERT_EQ(find(kAtP, 30.0, fraction, 200.0), Saturation::found) << fraction;
    robust_isothermal(mixture, result.split.T, 30.0, nullptr, isothermal);
    EXPECT_NEAR(isothermal.fraction, fraction, 1.0E-6);
  }
}

TEST(RobustSaturation, PureComponentHasOnePressureForEveryFraction) {
  load({22}, {1.0F});
  ASSERT_EQ(find(kAtT, 300.0, 0.0, 1.0), Saturation::found);
  const R8 P = result.split.P;
  EXPECT_NEAR(P, 9.98, 0.15);
  for (const R8 fraction : {0.4, 1.0}) {
    ASSERT_EQ(find(kAtT, 300.0, fraction, 1.0), Saturation::found);
    EXPECT_EQ(result.split.P, P);
    EXPECT_EQ(result.split.fraction, fraction);
    EXPECT_LT(result.split.unequal, 1.0E-9);
    EXPECT_GT(result.split.vapour.Z, result.split.liquid.Z);
  }
  ASSERT_EQ(find(kAtP, P, 0.0, 400.0), Saturation::found);
  EXPECT_NEAR(result.split.T, 300.0, 1.0E-6);
}

TEST(RobustSaturation, PureComponentOverItsWholeCurve) {
  load({22}, {1.0F});
  R8 last = 0.0;
  for (R8 T = 100.0; T < 369.0; T += 7.0) {
    ASSERT_EQ(find(kAtT, T, 0.0, 1.0), Saturation::found) << T;
    EXPECT_GT(result.split.P, last);
    last = result.split.P;
    ASSERT_EQ(find(kAtP, last, 1.0, 300.0), Saturation::found) << T;
    EXPECT_NEAR(result.split.T, T, 1.0E-5 * T);
  }
  EXPECT_EQ(find(kAtT, 380.0, 0.0, 10.0), Saturation::above_critical);
  EXPECT_NEAR(result.limit, 369.83, 0.1);
  EXPECT_EQ(find(kAtP, 60.0, 0.0, 300.0), Saturation::above_critical);
  EXPECT_NEAR(result.limit, 42.48, 0.2);
}

TEST(RobustSaturation, TraceOfAnotherComponentMovesThePointByATrace) {
  load({22}, {1.0F});
  ASSERT_EQ(find(kAtT, 300.0, 0.0, 1.0), Saturation::found);
  const R8 pure_P = result.split.P;
  for (const int other : {20, 23, 116}) {
    load({22, other}, {1.0F, 1.0E-6F});
    ASSERT_EQ(find(kAtT, 300.0, 0.0, 1.0), Saturation::found) << other;
    EXPECT_FALSE(result.unstable) << other;
    const R8 bubble = result.split.P;
    EXPECT_NEAR(bubble, pure_P, 1.0E-3 * pure_P) << other;
    EXPECT_LT(result.split.unequal, 1.0E-9) << other;
    ASSERT_EQ(find(kAtT, 300.0, 1.0, bubble), Saturation::found) << other;
    EXPECT_LT(result.split.P, bubble) << other;
    EXPECT_NEAR(result.split.P, pure_P, 2.0E-2 * pure_P) << other;
  }
}

TEST(RobustSaturation, AzeotropeIsNoObstacle) {
  R8 least = 1.0;
  for (int k = 1; k < 20; ++k) {
    const R4 share = 0.05F * static_cast<R4>(k);
    load({4, 21}, {share, 1.0F - share});
    ASSERT_EQ(find(kAtT, 250.0, 0.0, 20.0), Saturation::found) << share;
    const R8 bubble = result.split.P;
    EXPECT_FALSE(result.unstable) << share;
    ASSERT_EQ(find(kAtT, 250.0, 1.0, 20.0), Saturation::found) << share;
    EXPECT_LE(result.split.P, bubble) << share;
    least = std::min(least, bubble / result.split.P - 1.0);
  }
  // Both lines touch at the azeotrope.
  EXPECT_LT(least, 2.0E-3);
}

TEST(RobustSaturation, WaterBesideHydrocarbonsIsTold) {
  load({22, 25, 9}, {0.4F, 0.4F, 0.2F});
  ASSERT_EQ(find(kAtT, 300.0, 0.0, 5.0), Saturation::found);
  EXPECT_TRUE(result.unstable);
  EXPECT_TRUE(result.split.third_phase);
  EXPECT_EQ(result.split.third_root, phase::liquid);
  // The dew point is that of the liquid that forms first.
  ASSERT_EQ(find(kAtP, 5.0, 1.0, 350.0), Saturation::found);
  EXPECT_FALSE(result.unstable);
  EXPECT_GT(result.split.liquid.x(3), 0.99);
  load({22, 25, 9}, {0.4F, 0.59F, 0.001F});
  ASSERT_EQ(find(kAtP, 5.0, 1.0, 350.0), Saturation::found);
  EXPECT_FALSE(result.unstable);
  EXPECT_LT(result.split.liquid.x(3), 0.01);
}

TEST(RobustSaturation, OrderOfTheComponentsDoesNotMatter) {
  load_natural_gas();
  ASSERT_EQ(find(kAtP, 50.0, 1.0, 300.0), Saturation::found);
  const R8 T = result.split.T;
  std::vector<int> numbers(kGas.rbegin(), kGas.rend());
  std::vector<R4> feed(kGasFeed.rbegin(), kGasFeed.rend());
  load(numbers, feed);
  ASSERT_EQ(find(kAtP, 50.0, 1.0, 300.0), Saturation::found);
  EXPECT_NEAR(result.split.T, T, 1.0E-7);
}

TEST(RobustSaturation, EndsWithTheBudget) {
  load_natural_gas();
  for (const I4 calls : {0, 1, 10, 60}) {
    set_engine_budget(calls);
    robust_saturation(mixture, kAtT, 300.0, 1.0, 50.0, result);
    EXPECT_NE(result.answer, Saturation::above_cricondentherm) << calls;
    EXPECT_GE(engine_budget(), 0);
  }
  set_engine_budget(0);
  robust_saturation(mixture, kAtT, 300.0, 1.0, 50.0, result);
  EXPECT_EQ(result.answer, Saturation::unsettled);
}

TEST(SaturationScan, FindsWhatTheLinesFind) {
  load_natural_gas();
  for (const R8 fraction : {0.0, 0.4, 1.0}) {
    ASSERT_EQ(find(kAtT, 200.0, fraction, 20.0), Saturation::found);
    const R8 P = result.split.P;
    set_engine_budget(kBudget);
    scan_saturation(mixture, kAtT, 200.0, fraction, 20.0, result);
    ASSERT_EQ(result.answer, Saturation::found) << fraction;
    EXPECT_NEAR(result.split.P, P, 1.0E-7 * P) << fraction;
    ASSERT_EQ(find(kAtP, 20.0, fraction, 200.0), Saturation::found);
    const R8 T = result.split.T;
    set_engine_budget(kBudget);
    scan_saturation(mixture, kAtP, 20.0, fraction, 200.0, result);
    ASSERT_EQ(result.answer, Saturation::found) << fraction;
    EXPECT_NEAR(result.split.T, T, 1.0E-7 * T) << fraction;
  }
}

TEST(SaturationScan, HasNoAnswerWhereThereIsOnlyGas) {
  load_natural_gas();
  scan_saturation(mixture, kAtT, 500.0, 1.0, 20.0, result);
  EXPECT_EQ(result.answer, Saturation::no_line);
}

// Next to a bubble or dew point the feed is stable on one side and splits on the other.
TEST(RobustSaturation, RandomPointsAreBoundariesOfTheTwoPhaseRegion) {
  test::fresh_library();
  test::MixtureSource source(4711);
  static StabilityResult trials{};
  static RobustPhase feed{};
  int found = 0;
  for (int k = 0; k < 48; ++k) {
    const test::FlashCase c = source.next();
    load(c.numbers, c.feed);
    const R8 P = std::exp(source.uniform(std::log(0.05), std::log(100.0)));
    const R8 fraction = k % 2 == 0 ? 0.0 : 1.0;
    if (find(kAtP, P, fraction, 300.0) != Saturation::found || result.unstable) continue;
    ++found;
    expect_equilibrium(result.split);
    int unstable = 0;
    for (const R8 shift : {-1.0E-4, 1.0E-4}) {
      const R8 T = result.split.T * (1.0 + shift);
      set_engine_budget(kBudget);
      evaluate_phase(mixture, T, P, mixture.z, phase::gibbs, PhaseDerivatives::none, feed);
      test_stability(mixture, T, P, feed, StabilityEffort::first, trials);
      if (trials.answer == Stability::unstable) ++unstable;
    }
    // A two-phase region narrower than the shift is passed by on both sides.
    EXPECT_LE(unstable, 1) << k;
  }
  EXPECT_GT(found, 30);
}

}  // namespace
}  // namespace talix
