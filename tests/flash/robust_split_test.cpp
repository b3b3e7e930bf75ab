// The split solver and the whole isothermal flash of the check: equilibrium, mass balance, lowest Gibbs
// energy, labels that change continuously.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "engine/codes.h"
#include "fastprops/flash_record.h"
#include "flash/robust_fractions.h"
#include "flash/robust_split.h"
#include "flash/robust_third_phase.h"
#include "support/flash_case.h"
#include "support/random_mixtures.h"
#include "support/stability_check.h"

namespace talix {
namespace {

constexpr I4 kBudget = 20000;
constexpr int kMethane = 20, kEthane = 21, kPropane = 22, kDecane = 116, kCarbonDioxide = 4, kWater = 9;

constinit RobustMixture mixture{};
constinit RobustSplit split{};
constinit StabilityResult stability{};

class RobustSplitTest : public testing::Test {
 protected:
  void SetUp() override { test::fresh_library(); }

  static void take(const std::vector<int>& numbers, const std::vector<R4>& feed) {
    test::FlashCase c;
    c.numbers = numbers;
    c.feed = feed;
    test::load(c);
    for (int i = 1; i <= c.nc(); ++i) fl.F(i) = feed[static_cast<std::size_t>(i - 1)];
    gather_mixture(mixture);
  }
  static void natural_gas() {
    const test::FlashCase gas = test::natural_gas();
    take(gas.numbers, gas.feed);
  }
  static void flash(R8 T, R8 P) {
    set_engine_budget(kBudget);
    robust_isothermal(mixture, T, P, nullptr, split);
  }
  static R8 imbalance() {
    R8 largest = 0.0;
    for (int i = 1; i <= mixture.n; ++i)
      largest = std::max(largest, std::fabs(split.fraction * split.vapour.x(i) +
                                            (1.0 - split.fraction) * split.liquid.x(i) - mixture.z(i)));
    return largest;
  }
  // Difference of ln f between the phases by evaluations of their own.
  static R8 unequal() {
    static RobustPhase lighter, denser;
    evaluate_phase(mixture, split.T, split.P, split.vapour.x, phase::gibbs, PhaseDerivatives::none, lighter);
    evaluate_phase(mixture, split.T, split.P, split.liquid.x, phase::gibbs, PhaseDerivatives::none, denser);
    R8 largest = 0.0;
    for (int i = 1; i <= mixture.n; ++i)
      largest = std::max(
          largest, std::fabs(std::log(lighter.x(i) / denser.x(i)) + lighter.lnphi(i) - denser.lnphi(i)));
    return largest;
  }
  static void expect_equilibrium() {
    ASSERT_EQ(split.answer, Split::two_phases);
    EXPECT_LT(unequal(), 1.0E-9);
    EXPECT_LT(imbalance(), 1.0E-14);
    EXPECT_LT(split.gibbs, 1.0E-12);
    EXPECT_GT(split.fraction, 0.0);
    EXPECT_LT(split.fraction, 1.0);
  }
  // Lowest temperature at P above which the feed is one phase, to the last digit.
  static R8 dew_temperature(R8 P, R8 inside, R8 outside) {
    for (int step = 0; step < 60; ++step) {
      const R8 T = 0.5 * (inside + outside);
      flash(T, P);
      (split.answer == Split::two_phases ? inside : outside) = T;
    }
    return inside;
  }
};

// Highest pressure at T with two phases; they are left in SPLIT, at a bubble point below the critical
// temperature and at a dew point above it.
R8 highest_pressure(R8 T) {
  R8 inside = 20.0, outside = 160.0;
  const auto two_phases = [T](R8 P) {
    set_engine_budget(kBudget);
    robust_isothermal(mixture, T, P, nullptr, split);
    return split.answer == Split::two_phases;
  };
  for (int step = 0; step < 40; ++step) {
    const R8 P = 0.5 * (inside + outside);
    (two_phases(P) ? inside : outside) = P;
  }
  EXPECT_TRUE(two_phases(inside));
  return inside;
}

R8 critical_temperature() {
  R8 bubble = 300.0, dew = 331.0;
  for (int step = 0; step < 16; ++step) {
    const R8 T = 0.5 * (bubble + dew);
    highest_pressure(T);
    (split.fraction < 0.5 ? bubble : dew) = T;
  }
  return 0.5 * (bubble + dew);
}

// Feed whose split at the given fraction is known: x, K times x, and what they add up to.
struct KnownSplit {
  CompVec lnK, x;
  R8 fraction;
};

KnownSplit known_split(R8 fraction) {
  KnownSplit known{};
  const std::vector<R8> x = {0.1, 0.25, 0.35, 0.3};
  std::vector<R8> K = {4.0, 1.6, 0.5, 0.0};
  // The last K-value makes the lighter phase add up to 1.
  K[3] = (1.0 - x[0] * K[0] - x[1] * K[1] - x[2] * K[2]) / x[3];
  mixture.n = 4;
  for (int i = 1; i <= 4; ++i) {
    const std::size_t k = static_cast<std::size_t>(i - 1);
    known.x(i) = x[k];
    known.lnK(i) = std::log(K[k]);
    mixture.z(i) = x[k] * (1.0 + fraction * (K[k] - 1.0));
  }
  known.fraction = fraction;
  return known;
}

TEST(SplitFractions, SmallerFractionKeepsItsDigitsAtBothEnds) {
  SplitFractions out{};
  for (const R8 small : {1.0E-8, 1.0E-6, 1.0E-3, 0.2}) {
    KnownSplit known = known_split(small);
    ASSERT_EQ(split_fractions(mixture, known.lnK, out), FractionRange::inside);
    EXPECT_NEAR(out.vapour / small, 1.0, 2.0E-15 / small + 1.0E-12);
    for (int i = 1; i <= 4; ++i) EXPECT_NEAR(out.x(i), known.x(i), 1.0E-12);
    known = known_split(1.0 - small);
    ASSERT_EQ(split_fractions(mixture, known.lnK, out), FractionRange::inside);
    EXPECT_NEAR(out.liquid / small, 1.0, 2.0E-15 / small + 1.0E-12);
    for (int i = 1; i <= 4; ++i) EXPECT_NEAR(out.x(i), known.x(i), 1.0E-12);
  }
}

TEST(SplitFractions, OutsideTheIncipientPhaseIsGiven) {
  SplitFractions out{};
  const KnownSplit below = known_split(-0.1);
  EXPECT_EQ(split_fractions(mixture, below.lnK, out), FractionRange::below);
  EXPECT_EQ(out.vapour, 0.0);
  R8 sum = 0.0;
  for (int i = 1; i <= 4; ++i) {
    sum += out.y(i);
    EXPECT_NEAR(out.x(i), mixture.z(i), 1.0E-15);
  }
  EXPECT_NEAR(sum, 1.0, 1.0E-15);
  EXPECT_NEAR(out.y(1) / out.y(2), mixture.z(1) / mixture.z(2) * 2.5, 1.0E-12);
  const KnownSplit above = known_split(1.1);
  EXPECT_EQ(split_fractions(mixture, above.lnK, out), FractionRange::above);
  EXPECT_EQ(out.liquid, 0.0);
}

TEST(SplitFractions, KValuesOverManyDecadesBalance) {
  SplitFractions out{};
  mixture.n = 4;
  const std::vector<R8> z = {0.062, 0.074, 0.634, 0.23};
  const std::vector<R8> lnK = {10.1, 56.0, -10.0, 6.0};
  CompVec K{};
  for (int i = 1; i <= 4; ++i) {
    mixture.z(i) = z[static_cast<std::size_t>(i - 1)];
    K(i) = lnK[static_cast<std::size_t>(i - 1)];
  }
  ASSERT_EQ(split_fractions(mixture, K, out), FractionRange::inside);
  for (int i = 1; i <= 4; ++i)
    EXPECT_NEAR(out.vapour * out.y(i) + out.liquid * out.x(i), mixture.z(i), 1.0E-15);
}

TEST_F(RobustSplitTest, ConvergesFromWilsonToEqualFugacities) {
  natural_gas();
  CompVec lnK{};
  wilson_ln_k(mixture, 253.15, 40.0, lnK);
  set_engine_budget(kBudget);
  converge_split(mixture, 253.15, 40.0, lnK, split);
  expect_equilibrium();
  EXPECT_LT(split.unequal, 1.0E-10);
  EXPECT_LT(split.gibbs, -1.0E-6);
  EXPECT_LT(kBudget - engine_budget(), 25);
}

TEST_F(RobustSplitTest, PolishTakesTwoCallsWhereTheStartIsClose) {
  natural_gas();
  flash(253.15, 40.0);
  const R8 fraction = split.fraction;
  CompVec exact{}, lnK{};
  for (int i = 1; i <= mixture.n; ++i) exact(i) = std::log(split.vapour.x(i) / split.liquid.x(i));
  static RobustPhase feed;
  evaluate_phase(mixture, 253.15, 40.0, mixture.z, phase::gibbs, PhaseDerivatives::none, feed);
  for (const R8 away : {1.0E-7, 1.0E-4, 0.1}) {
    for (int i = 1; i <= mixture.n; ++i) lnK(i) = exact(i) + (i % 2 == 0 ? away : -away);
    const I4 before = engine_budget();
    polish_split(mixture, 253.15, 40.0, lnK, feed, split);
    const I4 calls = before - engine_budget();
    ASSERT_EQ(split.answer, Split::two_phases);
    EXPECT_LT(imbalance(), 1.0E-14);
    EXPECT_LT(unequal(), 1.0E-7);
    EXPECT_NEAR(split.fraction, fraction, 1.0E-7);
    if (away < 1.0E-6) {
      EXPECT_EQ(calls, 2);
    } else {
      expect_equilibrium();
    }
  }
}

TEST_F(RobustSplitTest, SupercriticalFeedIsTrivialOrNoSplit) {
  natural_gas();
  CompVec lnK{};
  for (const R8 size : {1.0E-4, 0.01, 1.0}) {
    wilson_ln_k(mixture, 350.0, 200.0, lnK);
    for (int i = 1; i <= mixture.n; ++i) lnK(i) *= size;
    set_engine_budget(kBudget);
    converge_split(mixture, 350.0, 200.0, lnK, split);
    EXPECT_TRUE(split.answer == Split::trivial || split.answer == Split::one_phase);
  }
}

TEST_F(RobustSplitTest, ExhaustedBudgetIsUnsettled) {
  natural_gas();
  for (const I4 calls : {0, 1, 2, 5, 9}) {
    set_engine_budget(calls);
    robust_isothermal(mixture, 253.15, 40.0, nullptr, split);
    EXPECT_EQ(split.answer, Split::unsettled) << calls;
    EXPECT_EQ(engine_budget(), 0);
  }
}

// Around the critical point of an equimolar mixture of methane and propane every answer is one phase without
// a lower tangent plane or two phases in equilibrium.
TEST_F(RobustSplitTest, EveryAnswerNearACriticalPointIsAnEquilibrium) {
  take({kMethane, kPropane}, {0.5F, 0.5F});
  const R8 TC = critical_temperature();
  const R8 PC = highest_pressure(TC);
  EXPECT_LT(std::fabs(std::log(split.vapour.x(2) / split.liquid.x(2))), 0.02);
  int two = 0, one = 0;
  R8 nearest = 1.0;
  for (int i = 0; i <= 40; ++i) {
    for (int j = 0; j <= 40; ++j) {
      const R8 T = TC * (1.0 + 1.0E-3 * (0.1 * i - 2.0));
      const R8 P = PC * (1.0 + 1.0E-3 * (0.5 * j - 10.0));
      flash(T, P);
      if (split.answer == Split::one_phase) {
        ++one;
        EXPECT_GT(test::tangent_plane_distance(T, P, {mixture.z(1), mixture.z(2)}), -1.0E-7) << T << " " << P;
        continue;
      }
      ++two;
      expect_equilibrium();
      nearest = std::min(nearest, std::fabs(std::log(split.vapour.x(2) / split.liquid.x(2))));
    }
  }
  EXPECT_GT(one, 300);
  EXPECT_GT(two, 300);
  EXPECT_LT(nearest, 0.02);
}

TEST_F(RobustSplitTest, FractionVanishesContinuouslyAtTheDewPoint) {
  natural_gas();
  const R8 dew = dew_temperature(40.0, 300.0, 450.0);
  flash(dew, 40.0);
  ASSERT_EQ(split.answer, Split::two_phases);
  EXPECT_LT(1.0 - split.fraction, 1.0E-9);
  R8 last = 1.0 - split.fraction;
  for (const R8 away : {1.0E-7, 1.0E-6, 1.0E-5, 1.0E-4, 1.0E-3}) {
    flash(dew - away, 40.0);
    expect_equilibrium();
    EXPECT_GT(1.0 - split.fraction, last);
    EXPECT_LT(1.0 - split.fraction, away);
    last = 1.0 - split.fraction;
  }
}

TEST_F(RobustSplitTest, PureFeedIsOnePhaseOnItsRoot) {
  take({kPropane}, {2.0F});
  flash(300.0, 9.0);
  EXPECT_EQ(split.answer, Split::one_phase);
  EXPECT_EQ(split.fraction, 1.0);
  flash(300.0, 11.0);
  EXPECT_EQ(split.answer, Split::one_phase);
  EXPECT_EQ(split.fraction, 0.0);
}

TEST_F(RobustSplitTest, StartValuesSpareTheStabilityTest) {
  natural_gas();
  flash(253.15, 40.0);
  const R8 fraction = split.fraction;
  const I4 without = kBudget - engine_budget();
  CompVec lnK{};
  for (int i = 1; i <= mixture.n; ++i) lnK(i) = std::log(split.vapour.x(i) / split.liquid.x(i));
  set_engine_budget(kBudget);
  robust_isothermal(mixture, 253.2, 40.0, &lnK, split);
  expect_equilibrium();
  EXPECT_LT(kBudget - engine_budget(), without);
  EXPECT_NEAR(split.fraction, fraction, 1.0E-3);
}

TEST_F(RobustSplitTest, OrderAndAbsentComponentsChangeNothing) {
  take({kMethane, kPropane, kDecane}, {0.7F, 0.2F, 0.1F});
  flash(300.0, 50.0);
  expect_equilibrium();
  const R8 fraction = split.fraction;
  const R8 methane = split.liquid.x(1);
  take({kDecane, kEthane, kMethane, kWater, kPropane}, {0.1F, 0.0F, 0.7F, 0.0F, 0.2F});
  flash(300.0, 50.0);
  expect_equilibrium();
  EXPECT_EQ(mixture.n, 3);
  EXPECT_NEAR(split.fraction, fraction, 1.0E-10);
  EXPECT_NEAR(split.liquid.x(2), methane, 1.0E-10);
}

TEST_F(RobustSplitTest, TwoLiquidsOfMethaneAndDecane) {
  take({kMethane, kDecane}, {0.9F, 0.1F});
  flash(185.0, 50.0);
  expect_equilibrium();
  EXPECT_TRUE(split.two_liquids);
  EXPECT_FALSE(split.third_phase);
  EXPECT_GT(split.vapour.x(1), split.liquid.x(1));
  test_stability(mixture, 185.0, 50.0, split.liquid, StabilityEffort::full, stability);
  EXPECT_EQ(stability.answer, Stability::stable);
}

TEST_F(RobustSplitTest, TwoLiquidsOfCarbonDioxideAndDecane) {
  take({kCarbonDioxide, kDecane}, {0.8F, 0.2F});
  flash(240.0, 60.0);
  expect_equilibrium();
  EXPECT_TRUE(split.two_liquids);
  EXPECT_GT(split.vapour.x(1), 0.9);
  flash(240.0, 10.0);
  expect_equilibrium();
  EXPECT_FALSE(split.two_liquids);
  EXPECT_EQ(split.vapour.root, phase::vapour);
}

TEST_F(RobustSplitTest, ThirdPhaseIsDetectedAndNamed) {
  take({kWater, kMethane, kDecane}, {0.3F, 0.4F, 0.3F});
  flash(300.0, 20.0);
  expect_equilibrium();
  EXPECT_TRUE(split.third_phase);
  const I4 missing = split.two_liquids ? phase::vapour : phase::liquid;
  EXPECT_EQ(split.third_root, missing);
}

// What the screen leaves untested has to be stable.
TEST_F(RobustSplitTest, ScreenOfThirdPhasesPassesOnlyStableSplits) {
  test::MixtureSource source(71);
  int passed = 0, tested = 0, unstable = 0;
  for (int k = 0; k < 200; ++k) {
    const test::FlashCase c = source.next();
    take(c.numbers, c.feed);
    const R8 P = 0.5 * std::exp(std::log(200.0) * source.uniform());
    flash(std::max(150.0, test::temperature_between(c, P, source.uniform())), P);
    if (split.answer != Split::two_phases) continue;
    if (third_phase_plausible(mixture, split)) {
      ++tested;
      continue;
    }
    ++passed;
    set_engine_budget(kBudget);
    test_stability(mixture, split.T, split.P, split.liquid, StabilityEffort::full, stability);
    if (stability.answer == Stability::unstable && stability.trials(1).distance < -1.0E-8) ++unstable;
  }
  EXPECT_EQ(unstable, 0);
  EXPECT_GT(passed, 100);
  EXPECT_LT(tested, passed / 3);
}

TEST_F(RobustSplitTest, RandomStatesAreEquilibria) {
  test::MixtureSource source(17);
  int two = 0, one = 0;
  for (int k = 0; k < 300; ++k) {
    const test::FlashCase c = source.next();
    take(c.numbers, c.feed);
    const R8 P = 0.1 * std::exp(std::log(6000.0) * source.uniform());
    const R8 T = k % 2 == 0 ? source.uniform(150.0, 600.0)
                            : std::max(150.0, test::temperature_between(c, P, source.uniform()));
    flash(T, P);
    if (split.answer == Split::two_phases) {
      ++two;
      expect_equilibrium();
    } else {
      ++one;
      EXPECT_EQ(split.answer, Split::one_phase);
    }
  }
  EXPECT_GT(two, 50);
  EXPECT_GT(one, 50);
}

// Along a path through the two-phase region the fraction changes by little from step to step: no phase
// changes its column.
struct Path {
  R8 T1, P1, T2, P2;
  int fewest;  // states of two phases on the way
};

class LabelsAlongPaths : public RobustSplitTest, public testing::WithParamInterface<Path> {};

TEST_P(LabelsAlongPaths, FractionIsContinuous) {
  natural_gas();
  constexpr int kSteps = 400;
  const Path& path = GetParam();
  R8 last = 0.0;
  I4 two = 0;
  bool before = false;
  for (int step = 0; step <= kSteps; ++step) {
    const R8 share = static_cast<R8>(step) / kSteps;
    const R8 T = path.T1 + share * (path.T2 - path.T1);
    const R8 P = path.P1 + share * (path.P2 - path.P1);
    flash(T, P);
    const bool now = split.answer == Split::two_phases;
    if (now) {
      ++two;
      EXPECT_GT(split.vapour.Z, split.liquid.Z);
      EXPECT_FALSE(split.two_liquids);
      if (before) {
        EXPECT_NEAR(split.fraction, last, 0.05) << T << " K " << P << " bar";
      }
    }
    before = now;
    last = split.fraction;
  }
  EXPECT_GE(two, path.fewest);
}

// An isotherm, an isobar, and two isotherms through retrograde states.
INSTANTIATE_TEST_SUITE_P(NaturalGas, LabelsAlongPaths,
                         testing::Values(Path{220.0, 5.0, 220.0, 80.0, 200},
                                         Path{190.0, 30.0, 300.0, 30.0, 100},
                                         Path{250.0, 5.0, 250.0, 140.0, 200},
                                         Path{270.0, 5.0, 270.0, 140.0, 150}));

}  // namespace
}  // namespace talix
