#include "flash/robust_stability.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "engine/codes.h"
#include "fastprops/flash_record.h"
#include "flash/robust_symmetric.h"
#include "support/flash_case.h"
#include "support/random_mixtures.h"
#include "support/stability_check.h"

namespace talix {
namespace {

constexpr I4 kBudget = 2000;

class RobustStability : public testing::Test {
 protected:
  static void SetUpTestSuite() { test::fresh_library(); }

  static void load(const std::vector<int>& numbers, const std::vector<R8>& feed) {
    test::FlashCase c;
    c.numbers = numbers;
    for (const R8 f : feed) c.feed.push_back(static_cast<R4>(f));
    load(c);
  }
  static void load(const test::FlashCase& c) {
    test::load(c);
    ASSERT_EQ(fl.LOAD, load_result::complete);
    mixture.n = c.nc();
    R8 total = 0.0;
    for (const R4 f : c.feed) total += static_cast<R8>(f);
    for (int i = 1; i <= mixture.n; ++i) {
      mixture.at(i) = i;
      mixture.z(i) = static_cast<R8>(c.feed[static_cast<std::size_t>(i - 1)]) / total;
    }
  }
  static void feed(const std::vector<R8>& z) {
    for (int i = 1; i <= mixture.n; ++i) mixture.z(i) = z[static_cast<std::size_t>(i - 1)];
  }
  // Tests the feed; the engine calls of the test alone are counted.
  static Stability answer(R8 T, R8 P, StabilityEffort effort = StabilityEffort::first,
                          I4 root = phase::gibbs) {
    set_engine_budget(kBudget);
    evaluate_phase(mixture, T, P, mixture.z, root, PhaseDerivatives::composition, tested);
    EXPECT_EQ(tested.status, status::ok) << T << " K, " << P << " bar";
    const I4 before = engine_budget();
    test_stability(mixture, T, P, tested, effort, result);
    calls = before - engine_budget();
    return result.answer;
  }
  // Smallest eigenvalue of the second derivatives at the phase tested last: below 0 inside a spinodal.
  static R8 softest() {
    static CompMat B;
    CompVec u{};
    for (int i = 1; i <= mixture.n; ++i)
      for (int j = 1; j <= mixture.n; ++j)
        B(i, j) = (i == j ? 1.0 : 0.0) + std::sqrt(tested.x(i) * tested.x(j)) * tested.lnphi_n(i, j);
    return smallest_eigenvalue(mixture.n, B, u);
  }
  // The pressure between a stable and an unstable one where the answer changes.
  static R8 boundary(R8 T, R8 stable, R8 unstable) {
    for (int step = 0; step < 50; ++step) {
      const R8 middle = 0.5 * (stable + unstable);
      (answer(T, middle) == Stability::stable ? stable : unstable) = middle;
    }
    return 0.5 * (stable + unstable);
  }
  // Every trial kept is stationary, in order, with the fields that belong together.
  static void check_trials(R8 T, R8 P) {
    static RobustPhase at;
    for (int k = 1; k <= result.count; ++k) {
      const StabilityTrial& trial = result.trials(k);
      EXPECT_GE(trial.distance, result.trials(std::max(1, k - 1)).distance);
      evaluate_phase(mixture, T, P, trial.w, phase::gibbs, PhaseDerivatives::none, at);
      EXPECT_NEAR(at.Z, trial.Z, 1.0E-4 * trial.Z);
      R8 sum = 0.0;
      for (int i = 1; i <= mixture.n; ++i) {
        sum += trial.w(i);
        EXPECT_NEAR(trial.lnK(i), std::log(trial.w(i) / tested.x(i)), 1.0E-9);
        const R8 residual = std::log((1.0 - trial.distance) * trial.w(i)) + at.lnphi(i) -
                            std::log(tested.x(i)) - tested.lnphi(i);
        EXPECT_NEAR(residual * std::sqrt(trial.w(i)), 0.0, 1.0E-5) << T << " K, " << P << " bar, trial " << k;
      }
      EXPECT_NEAR(sum, 1.0, 1.0E-12);
    }
  }

  // Lowest tangent-plane distance of a binary over 2000 compositions between two logits, at the root of lowest
  // Gibbs energy.
  static R8 lowest_on_grid(R8 T, R8 P, R8 from, R8 to) {
    static RobustPhase at;
    R8 lowest = 0.0;
    for (int k = 0; k < 2000; ++k) {
      if (k % 500 == 0) set_engine_budget(kBudget);
      CompVec w{};
      w(1) = 1.0 / (1.0 + std::exp(-(from + (to - from) * k / 1999.0)));
      w(2) = 1.0 - w(1);
      evaluate_phase(mixture, T, P, w, phase::gibbs, PhaseDerivatives::none, at);
      R8 tpd = 0.0;
      for (int i = 1; i <= 2; ++i)
        tpd += w(i) * (std::log(w(i) / tested.x(i)) + at.lnphi(i) - tested.lnphi(i));
      lowest = std::min(lowest, tpd);
    }
    return lowest;
  }

  static RobustMixture mixture;
  static RobustPhase tested;
  static StabilityResult result;
  static I4 calls;
};

RobustMixture RobustStability::mixture{};
RobustPhase RobustStability::tested{};
StabilityResult RobustStability::result{};
I4 RobustStability::calls = 0;

TEST_F(RobustStability, PureComponentOnTheWrongRootIsUnstableTowardsTheOther) {
  load({22}, {1.0});
  // Propane boils at 9.98 bar at 300 K.
  EXPECT_EQ(answer(300.0, 12.0, StabilityEffort::first, phase::liquid), Stability::stable);
  EXPECT_EQ(answer(300.0, 12.0, StabilityEffort::first, phase::vapour), Stability::unstable);
  ASSERT_EQ(result.count, 1);
  EXPECT_EQ(result.trials(1).root, phase::liquid);
  EXPECT_EQ(result.trials(1).w(1), 1.0);
  EXPECT_NEAR(result.trials(1).lnK(1), 0.0, 1.0E-14);
  EXPECT_LE(calls, 1);
  EXPECT_EQ(answer(300.0, 9.0, StabilityEffort::first, phase::liquid), Stability::unstable);
  EXPECT_EQ(result.trials(1).root, phase::vapour);
  EXPECT_EQ(answer(300.0, 9.0), Stability::stable);
}

TEST_F(RobustStability, PureComponentWithOneRootIsStableWithoutTrials) {
  load({22}, {1.0});
  for (const auto& [T, P] : {std::pair{400.0, 100.0}, {500.0, 0.01}, {300.0, 800.0}}) {
    EXPECT_EQ(answer(T, P, StabilityEffort::full), Stability::stable);
    EXPECT_EQ(result.count, 0);
  }
}

TEST_F(RobustStability, PureComponentKeepsItsMetastableRootUnderFullEffort) {
  load({22}, {1.0});
  EXPECT_EQ(answer(300.0, 11.0, StabilityEffort::full), Stability::stable);
  ASSERT_EQ(result.count, 1);
  EXPECT_EQ(result.trials(1).root, phase::vapour);
  EXPECT_GT(result.trials(1).distance, 0.0);
}

TEST_F(RobustStability, TracesDecideWhereTheyAreInsoluble) {
  load({20, 116}, {1.0, 1.0E-6});
  feed({1.0 - 1.0E-6, 1.0E-6});
  EXPECT_EQ(answer(200.0, 10.0), Stability::unstable);
  EXPECT_EQ(result.trials(1).root, phase::liquid);
  EXPECT_GT(result.trials(1).w(2), 0.1);
  EXPECT_EQ(answer(300.0, 10.0), Stability::stable);
  feed({1.0E-6, 1.0 - 1.0E-6});
  EXPECT_EQ(answer(300.0, 10.0), Stability::stable);
  EXPECT_EQ(answer(300.0, 1.0E-5, StabilityEffort::first, phase::liquid), Stability::unstable);
  EXPECT_EQ(result.trials(1).root, phase::vapour);
  // Nothing of a component, as far as a real can tell.
  feed({1.0, 1.0E-300});
  EXPECT_EQ(answer(300.0, 10.0, StabilityEffort::full), Stability::stable);
  for (int k = 1; k <= result.count; ++k) EXPECT_TRUE(std::isfinite(result.trials(k).lnK(2)));
}

TEST_F(RobustStability, NearCriticalAnswersAgreeWithTheCurvature) {
  load({20, 21}, {0.5, 0.5});
  int spinodal = 0, stable_soft = 0, hidden = 0;
  for (const R8 z : {0.3, 0.5, 0.7, 0.88}) {
    feed({z, 1.0 - z});
    for (R8 T = 200.0; T < 300.0; T += 1.7) {
      for (R8 P = 50.0; P < 75.0; P += 0.9) {
        const Stability found = answer(T, P);
        ASSERT_NE(found, Stability::unsettled);
        const R8 curvature = softest();
        if (curvature < -1.0E-5) {
          ++spinodal;
          EXPECT_EQ(found, Stability::unstable) << z << " " << T << " K " << P << " bar " << curvature;
        }
        if (found == Stability::stable) {
          EXPECT_GT(curvature, -1.0E-6);
          if (curvature < 0.2) ++stable_soft;
        } else if (curvature > 0.0 && curvature < 0.05) {
          ++hidden;  // unstable behind a ridge
          EXPECT_LT(result.trials(1).distance, 0.0);
        }
      }
    }
  }
  EXPECT_GT(spinodal, 50);
  EXPECT_GT(stable_soft, 20);
  EXPECT_GT(hidden, 5);
}

// Where a second minimum lies so close to the feed that only trials along the softest direction find it.
TEST_F(RobustStability, MinimumBehindALowRidgeIsFoundNearCriticalPoints) {
  struct State {
    int first, second;
    R8 z, T, P;
  };
  int hidden = 0;
  for (const State& s : {State{20, 21, 0.88681154, 213.259295, 61.69553},
                         {20, 21, 0.71498249, 241.156011, 72.53112},
                         {20, 22, 0.75478239, 273.002666, 103.9431},
                         {20, 22, 0.92646467, 219.151349, 73.50403},
                         {20, 22, 0.92348661, 219.151349, 73.36544},
                         {4, 20, 0.10839891, 206.545382, 57.99664},
                         {4, 28, 0.64075487, 439.686425, 117.6862},
                         {4, 28, 0.55065584, 461.710217, 102.9512},
                         {11, 116, 0.64603256, 561.275771, 98.98012},
                         {15, 22, 0.82468174, 231.00767, 405.0},
                         {21, 116, 0.5754, 555.39973, 94.4671},
                         {17, 725, 0.687, 178.17584, 64.5129},
                         {4, 20, 0.66177357, 173.982233, 22.106}}) {
    load({s.first, s.second}, {s.z, 1.0 - s.z});
    feed({s.z, 1.0 - s.z});
    for (R8 off = -3.0E-3; off < 3.1E-3; off += 5.0E-4) {
      const R8 P = s.P * (1.0 + off);
      const Stability found = answer(s.T, P);
      const R8 logit = std::log(s.z / (1.0 - s.z));
      const R8 lowest = lowest_on_grid(s.T, P, logit - 2.0, logit + 2.0);
      if (lowest < -1.0E-9) {
        EXPECT_EQ(found, Stability::unstable) << s.first << "+" << s.second << " " << P << " bar " << lowest;
      }
      if (lowest < -1.0E-9 && softest() > 0.0) ++hidden;
      if (found == Stability::unstable) {
        EXPECT_LT(result.trials(1).distance, -1.0E-10);
      }
    }
  }
  EXPECT_GT(hidden, 20);
}

TEST_F(RobustStability, BinariesAgreeWithAGridCloseToTheirBoundaries) {
  int stable = 0, unstable = 0;
  for (const auto& [first, second] : {std::pair{20, 21}, {20, 116}, {4, 21}, {4, 116}, {15, 20}, {11, 20}}) {
    load({first, second}, {0.5, 0.5});
    for (const R8 z : {0.2, 0.6, 0.95}) {
      feed({z, 1.0 - z});
      for (const R8 T : {170.0, 210.0, 250.0, 290.0}) {
        R8 previous = 1.0;
        bool was = answer(T, previous) == Stability::unstable;
        for (R8 P = 1.6; P < 500.0; P *= 1.6) {
          const bool is = answer(T, P) == Stability::unstable;
          if (is != was) {
            const R8 edge = boundary(T, is ? previous : P, is ? P : previous);
            for (const R8 off : {-1.0E-2, -1.0E-4, 1.0E-4, 1.0E-2}) {
              const Stability found = answer(T, edge * (1.0 + off));
              const R8 lowest = lowest_on_grid(T, edge * (1.0 + off), -15.0, 15.0);
              if (found == Stability::stable) {
                ++stable;
                EXPECT_GT(lowest, -1.0E-9)
                    << first << "+" << second << " z " << z << " T " << T << " P " << edge;
              } else {
                ++unstable;
                EXPECT_LT(result.trials(1).distance, 0.0);
              }
            }
          }
          was = is;
          previous = P;
        }
      }
    }
  }
  EXPECT_GT(stable, 50);
  EXPECT_GT(unstable, 50);
}

TEST_F(RobustStability, TwoLiquidsAreFound) {
  struct Pair {
    int first, second;
    R8 z, T, P;
  };
  for (const Pair& p : {Pair{9, 28, 0.5, 300.0, 10.0},
                        {328, 28, 0.5, 290.0, 1.0},
                        {403, 278, 0.5, 300.0, 1.0},
                        {4, 116, 0.7, 235.0, 60.0},
                        {4, 130, 0.7, 270.0, 60.0},
                        {20, 42, 0.8, 190.0, 60.0},
                        {20, 116, 0.8, 195.0, 70.0},
                        {11, 20, 0.5, 180.0, 150.0},
                        {15, 22, 0.5, 115.0, 30.0},
                        {15, 21, 0.6, 120.0, 40.0},
                        {9, 11, 0.5, 300.0, 50.0},
                        {9, 4, 0.5, 290.0, 80.0},
                        {8, 22, 0.3, 200.0, 300.0}}) {
    load({p.first, p.second}, {p.z, 1.0 - p.z});
    EXPECT_EQ(answer(p.T, p.P), Stability::unstable) << p.first << "+" << p.second;
    EXPECT_LE(calls, 12) << p.first << "+" << p.second;
    EXPECT_EQ(answer(p.T, p.P, StabilityEffort::full), Stability::unstable);
    check_trials(p.T, p.P);
    // Dense phases both.
    EXPECT_LT(tested.Z, 1.1);
    EXPECT_LT(result.trials(1).Z, 1.3);
  }
}

TEST_F(RobustStability, NearPureStartsFindWaterAndMethanolWhereWilsonMisleads) {
  load({9, 28}, {0.512, 0.488});
  EXPECT_EQ(answer(484.36, 70.04), Stability::unstable);
  EXPECT_GT(result.trials(1).w(1), 0.99);
  load({11, 4, 20, 232, 9, 277}, {0.0676, 0.0715, 0.4354, 0.1523, 0.2253, 0.0479});
  EXPECT_EQ(answer(485.1, 294.0), Stability::unstable);
  EXPECT_GT(result.trials(1).w(5), 0.7);
  load({238, 328, 102, 42, 8, 278}, {0.54, 0.0571, 0.0898, 0.1714, 0.0003, 0.1414});
  EXPECT_EQ(answer(197.9, 196.9), Stability::unstable);
  EXPECT_GT(result.trials(1).w(2), 0.99);
}

TEST_F(RobustStability, LiquidLedByAComponentAboveItsBoilingPointIsFound) {
  load({415, 328, 134, 125}, {0.06141, 0.5847, 0.3333, 0.02064});
  EXPECT_EQ(answer(449.33, 24.98), Stability::unstable);
  load({408, 278}, {0.9868082, 0.0131918});
  EXPECT_EQ(answer(305.192415, 0.05396), Stability::unstable);
}

// The trials pass a ridge at a distance of 0.03 by small steps before they fall to -0.24.
TEST_F(RobustStability, TrialOnARidgeIsNotGivenUp) {
  load({415, 277}, {0.9544, 0.0456});
  for (const R8 T : {222.585, 222.5, 222.158, 222.0, 220.0, 215.0}) {
    for (const R8 P : {3.7, 60.1}) {
      EXPECT_EQ(answer(T, P), Stability::unstable);
      EXPECT_EQ(answer(T, P, StabilityEffort::full), Stability::unstable);
      EXPECT_LT(result.trials(1).distance, -0.2);
    }
  }
}

TEST_F(RobustStability, TraceOfWaterInAGasDropsOut) {
  load({20, 21, 22, 15, 4, 9}, {0.85, 0.06, 0.03, 0.02, 0.035, 0.005});
  EXPECT_EQ(answer(280.0, 80.0), Stability::unstable);
  EXPECT_GT(result.trials(1).w(6), 0.99);
  EXPECT_EQ(answer(360.0, 20.0), Stability::stable);
}

struct Gas {
  std::vector<int> numbers;
  std::vector<R8> feed;
};
const std::vector<Gas>& gases() {
  static const std::vector<Gas> all = {
      {{20, 21, 22, 15, 4}, {0.93, 0.03, 0.01, 0.02, 0.01}},
      {{15, 4, 20, 21, 22, 24, 23, 25, 28, 116},
       {0.02, 0.015, 0.84, 0.06, 0.03, 0.007, 0.01, 0.006, 0.007, 0.005}},
      {{20, 21, 22, 23, 24, 25, 26, 28, 33, 42},
       {0.75, 0.1, 0.06, 0.02, 0.02, 0.01, 0.01, 0.01, 0.01, 0.005}},
      {{4, 20, 21, 22, 15}, {0.4, 0.5, 0.05, 0.03, 0.02}},
      {{8, 20, 21, 22, 15, 4, 23}, {0.2, 0.7, 0.05, 0.02, 0.01, 0.015, 0.005}},
  };
  return all;
}

TEST_F(RobustStability, OnePhaseGasesTakeFewEngineCalls) {
  for (const Gas& gas : gases()) {
    load(gas.numbers, gas.feed);
    int states = 0, spent = 0, spent_unstable = 0, unstable = 0;
    for (R8 T = 250.0; T < 450.0; T += 9.0) {
      for (R8 P = 1.0; P < 300.0; P += 13.0) {
        if (answer(T, P) == Stability::stable) {
          ++states;
          spent += calls;
          EXPECT_LE(calls, softest() < 0.05 ? 160 : 100) << T << " " << P;
        } else {
          EXPECT_EQ(result.answer, Stability::unstable);
          ++unstable;
          spent_unstable += calls;
        }
      }
    }
    ASSERT_GT(states, 300);
    EXPECT_LT(spent, 20 * states);
    EXPECT_LE(spent_unstable, 4 * unstable);
  }
}

TEST_F(RobustStability, AgreesWithManyPlainTrialsOnRandomMixtures) {
  test::MixtureSource source(97);
  int stable = 0, unstable = 0, first_calls = 0;
  for (int k = 0; k < 120; ++k) {
    const test::FlashCase c = source.next();
    load(c);
    for (int state = 0; state < 4; ++state) {
      const R8 T = source.uniform(150.0, 600.0);
      const R8 P = 0.1 * std::pow(6000.0, source.uniform());
      const Stability found = answer(T, P);
      ASSERT_NE(found, Stability::unsettled) << source.kind() << " " << T << " K " << P << " bar";
      if (found == Stability::unstable) {
        ++unstable;
        first_calls += calls;
        continue;
      }
      ++stable;
      std::vector<R8> z;
      for (int i = 1; i <= mixture.n; ++i) z.push_back(mixture.z(i));
      EXPECT_GT(test::tangent_plane_distance(T, P, z), -1.0E-9)
          << source.kind() << " " << T << " K " << P << " bar";
      EXPECT_EQ(answer(T, P, StabilityEffort::full), Stability::stable);
      check_trials(T, P);
    }
  }
  EXPECT_GT(stable, 100);
  EXPECT_GT(unstable, 50);
  EXPECT_LE(first_calls, 4 * unstable);
}

TEST_F(RobustStability, ExtremeStatesEndWithAnAnswerAndFiniteNumbers) {
  test::MixtureSource source(5);
  for (int k = 0; k < 150; ++k) {
    const test::FlashCase c = source.next();
    load(c);
    for (const R8 T : {150.0, 1500.0, source.uniform(150.0, 1500.0)}) {
      for (const R8 P : {1.0E-6, 900.0, std::pow(10.0, source.uniform(-6.0, 2.95))}) {
        for (const StabilityEffort effort : {StabilityEffort::first, StabilityEffort::full}) {
          EXPECT_NE(answer(T, P, effort), Stability::unsettled)
              << source.kind() << " " << T << " K " << P << " bar";
          EXPECT_LT(calls, 400);
          for (int t = 1; t <= result.count; ++t) {
            EXPECT_TRUE(std::isfinite(result.trials(t).distance));
            for (int i = 1; i <= mixture.n; ++i) {
              EXPECT_TRUE(std::isfinite(result.trials(t).lnK(i)));
              EXPECT_TRUE(result.trials(t).w(i) >= 0.0 && result.trials(t).w(i) <= 1.0);
            }
          }
        }
      }
    }
  }
}

TEST_F(RobustStability, WithoutEngineCallsTheAnswerIsUnsettled) {
  load(gases()[1].numbers, gases()[1].feed);
  ASSERT_EQ(answer(400.0, 50.0), Stability::stable);
  const I4 needed = calls;
  for (I4 budget = 0; budget < needed; ++budget) {
    set_engine_budget(budget);
    test_stability(mixture, 400.0, 50.0, tested, StabilityEffort::first, result);
    EXPECT_EQ(result.answer, Stability::unsettled) << budget;
    EXPECT_EQ(result.count, 0);
    EXPECT_EQ(engine_budget(), 0);
  }
  set_engine_budget(needed);
  test_stability(mixture, 400.0, 50.0, tested, StabilityEffort::first, result);
  EXPECT_EQ(result.answer, Stability::stable);
}

TEST_F(RobustStability, OrderOfComponentsDoesNotMatter) {
  const Gas& gas = gases()[1];
  for (const auto& [T, P] : {std::pair{253.15, 40.0}, {300.0, 100.0}, {230.0, 90.0}, {210.0, 60.0}}) {
    load(gas.numbers, gas.feed);
    const Stability forwards = answer(T, P, StabilityEffort::full);
    const StabilityResult kept = result;
    std::vector<int> numbers(gas.numbers.rbegin(), gas.numbers.rend());
    std::vector<R8> z(gas.feed.rbegin(), gas.feed.rend());
    load(numbers, z);
    EXPECT_EQ(answer(T, P, StabilityEffort::full), forwards);
    ASSERT_EQ(result.count, kept.count);
    for (int k = 1; k <= result.count; ++k)
      EXPECT_NEAR(result.trials(k).distance, kept.trials(k).distance,
                  1.0E-6 * std::max(1.0, std::fabs(kept.trials(k).distance)));
  }
}

TEST_F(RobustStability, DuplicatesInTheListAreHarmless) {
  load({20, 22, 20, 22}, {0.3, 0.2, 0.3, 0.2});
  EXPECT_EQ(answer(250.0, 30.0), Stability::unstable);
  EXPECT_NEAR(result.trials(1).w(1), result.trials(1).w(3), 1.0E-9);
  EXPECT_EQ(answer(350.0, 30.0), Stability::stable);
  EXPECT_EQ(answer(350.0, 300.0, StabilityEffort::full), Stability::stable);
}

TEST_F(RobustStability, FiftyComponents) {
  test::FlashCase c;
  for (int number = 2; number <= 1246 && c.nc() < kMaxComponents; ++number) {
    if (number == 3 || number == 18) continue;
    test::FlashCase alone;
    alone.numbers = {number};
    alone.feed = {1.0F};
    test::load(alone);
    if (fl.LOAD != load_result::complete) continue;
    c.numbers.push_back(number);
    c.feed.push_back(number == 20 ? 1.0F : 0.01F);
  }
  ASSERT_EQ(c.nc(), kMaxComponents);
  load(c);
  EXPECT_EQ(answer(300.0, 10.0), Stability::unstable);
  EXPECT_LE(calls, 4);
  EXPECT_EQ(answer(700.0, 5.0), Stability::stable);
  EXPECT_LE(calls, 60);
  EXPECT_EQ(answer(250.0, 50.0, StabilityEffort::full), Stability::unstable);
  EXPECT_LE(calls, 400);
}

TEST_F(RobustStability, PhaseInEquilibriumIsNoThirdPhase) {
  static RobustPhase partner;
  // At its bubble point a feed coexists with the incipient vapour.
  load({20, 22, 116}, {0.3, 0.3, 0.4});
  const R8 edge = boundary(300.0, 300.0, 10.0);
  ASSERT_EQ(answer(300.0, edge * (1.0 - 1.0E-13), StabilityEffort::full), Stability::unstable);
  ASSERT_GE(result.count, 1);
  EXPECT_NEAR(result.trials(1).distance, 0.0, 1.0E-8);
  evaluate_phase(mixture, 300.0, edge, result.trials(1).w, phase::gibbs, PhaseDerivatives::none, partner);
  for (const StabilityEffort effort : {StabilityEffort::first, StabilityEffort::full}) {
    test_stability_beside(mixture, 300.0, edge, tested, partner, effort, result);
    EXPECT_EQ(result.answer, Stability::stable);
    EXPECT_EQ(result.count, 0);
  }
  // And the vapour beside the liquid.
  const RobustPhase liquid = tested;
  test_stability_beside(mixture, 300.0, edge, partner, liquid, StabilityEffort::first, result);
  EXPECT_EQ(result.answer, Stability::stable);
}

TEST_F(RobustStability, ThirdPhaseBesideTwoInEquilibriumIsFound) {
  static RobustPhase partner;
  // Methane and hexane at the bubble point, with more water than either dissolves.
  load({20, 28, 9}, {0.2, 0.75, 0.05});
  R8 stable = 400.0;
  R8 unstable = 5.0;
  // The hydrocarbon liquid's own bubble point, by the trial that is a vapour.
  for (int step = 0; step < 50; ++step) {
    const R8 middle = 0.5 * (stable + unstable);
    answer(320.0, middle, StabilityEffort::full);
    bool vapour_below = false;
    for (int k = 1; k <= result.count; ++k)
      if (result.trials(k).w(1) > 0.5 && result.trials(k).distance < 0.0) vapour_below = true;
    (vapour_below ? unstable : stable) = middle;
  }
  answer(320.0, unstable, StabilityEffort::full);
  int vapour = 0;
  for (int k = 1; k <= result.count; ++k)
    if (result.trials(k).w(1) > 0.5) vapour = k;
  ASSERT_GT(vapour, 0);
  evaluate_phase(mixture, 320.0, unstable, result.trials(vapour).w, phase::gibbs, PhaseDerivatives::none,
                 partner);
  test_stability_beside(mixture, 320.0, unstable, tested, partner, StabilityEffort::first, result);
  EXPECT_EQ(result.answer, Stability::unstable);
  EXPECT_GT(result.trials(1).w(3), 0.1);
  test_stability_beside(mixture, 320.0, unstable, tested, partner, StabilityEffort::full, result);
  EXPECT_EQ(result.answer, Stability::unstable);
  EXPECT_GT(result.trials(1).w(3), 0.99);
}

// A start that the model cannot describe is left out; where the component surely leaves the phase, nothing is said.
TEST_F(RobustStability, StartsWithoutARootAreLeftOutUnlessTheyDecide) {
  constexpr int kMdea = 904, kMercury = 1011, kTeg = 415;
  load({9, kMdea}, {0.9, 0.1});
  for (const R8 z : {0.05, 0.5, 0.9, 0.999}) {
    feed({z, 1.0 - z});
    EXPECT_NE(answer(173.0, 5.0), Stability::unsettled) << z;
    if (result.answer == Stability::stable) {
      EXPECT_GT(lowest_on_grid(173.0, 5.0, -15.0, 15.0), -1.0E-9) << z;
    }
  }
  // The engine has no root for nearly pure glycol here.
  load({kMercury, kTeg}, {0.9, 0.1});
  for (const R8 T : {1000.0, 1050.0, 1100.0}) {
    EXPECT_EQ(answer(T, 50.0), Stability::stable) << T << " K";
    EXPECT_GT(lowest_on_grid(T, 50.0, -1.0, 5.0), -1.0E-9) << T << " K";
  }
  // A trace of pentane in methane at 17.5 K.
  load({20, 25}, {1.0, 1.0E-6});
  feed({1.0 - 1.0E-6, 1.0E-6});
  EXPECT_EQ(answer(17.5, 50.0), Stability::unsettled);
}

// Pure water lies below the plane, but substitution from there runs to the tested phase.
TEST_F(RobustStability, ValleyThatSubstitutionLeavesIsKept) {
  load({4, 24, 232, 9, 134, 21, 289, 125, 25, 42, 11, 277, 719},
       {0.00295, 0.00327, 0.00122, 0.01059, 0.01936, 0.00146, 0.89595, 0.05034, 0.00145, 0.00361, 0.00935,
        0.00012, 0.00031});
  EXPECT_EQ(answer(176.46, 0.2054), Stability::unstable);
  EXPECT_EQ(answer(176.46, 0.2054, StabilityEffort::full), Stability::unstable);
  EXPECT_LT(result.trials(1).distance, -100.0);
  EXPECT_GT(result.trials(1).w(4), 0.9);
}

TEST_F(RobustStability, PairsThatAttractEachOtherAreFound) {
  // Cold water with some eicosane, water with ammonia.
  struct State {
    int first, second;
    R8 T0, T1;
  };
  for (const State& s : {State{9, 134, 150.0, 200.0}, {9, 62, 200.0, 300.0}}) {
    load({s.first, s.second}, {0.5, 0.5});
    for (const R8 z : {0.01, 0.3, 0.7, 0.9, 0.95, 0.99}) {
      feed({z, 1.0 - z});
      for (R8 T = s.T0; T < s.T1; T += 11.0) {
        for (const R8 P : {0.5, 50.0}) {
          if (answer(T, P) == Stability::unstable) continue;
          EXPECT_EQ(result.answer, Stability::stable);
          EXPECT_GT(lowest_on_grid(T, P, -15.0, 15.0), -1.0E-9) << z << " " << T << " K, " << P << " bar";
        }
      }
    }
  }
}

// Ordinary liquids, among them one near to a split into two liquids.
TEST_F(RobustStability, OnePhaseLiquidsTakeFewEngineCalls) {
  const std::vector<Gas> liquids = {
      {{22, 23, 24, 25}, {0.4, 0.3, 0.2, 0.1}},
      {{21, 22, 23, 24, 25, 28}, {0.1, 0.3, 0.3, 0.1, 0.1, 0.1}},
      {{25, 28, 33, 42, 116, 277, 278}, {0.1, 0.2, 0.2, 0.2, 0.1, 0.1, 0.1}},
      {{20, 28, 22, 21, 116, 23, 25, 4, 15, 33},
       {0.7, 0.08, 0.06, 0.08, 0.04, 0.03, 0.02, 0.025, 0.015, 0.02}},
  };
  for (const Gas& liquid : liquids) {
    load(liquid.numbers, liquid.feed);
    R8 total = 0.0;
    for (const R8 f : liquid.feed) total += f;
    std::vector<R8> z;
    for (const R8 f : liquid.feed) z.push_back(f / total);
    feed(z);
    int states = 0, spent = 0;
    for (R8 T = 150.0; T < 400.0; T += 15.0) {
      for (const R8 P : {5.0, 20.0, 60.0, 100.0, 200.0}) {
        if (answer(T, P) != Stability::stable || tested.root != phase::liquid || tested.single) continue;
        ++states;
        spent += calls;
      }
    }
    ASSERT_GT(states, 5);
    EXPECT_LT(spent, 36 * states);
  }
}

}  // namespace
}  // namespace talix
