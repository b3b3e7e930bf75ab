// Mixing rules from an excess Gibbs energy and the consistent local-composition rule: SSMMR3 to SSMMR6, SICBI0,
// SICMR0, SICMR1, and the two-dimensional rule.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "database/component_record.h"
#include "database/pair_record.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/model_record.h"
#include "engine/setup_record.h"
#include "eos/consistency_record.h"
#include "eos/cubic_record.h"
#include "eos/eos_caches.h"
#include "eos/ses_pure_parameters.h"
#include "eos/ssm_mixing.h"
#include "eos/ssm_mixing_consistent_pairs.h"
#include "eos/ssm_mixing_g_excess.h"
#include "eos/two_dimensional_record.h"
#include "liquid/snl_nrtl.h"
#include "support/cubic_family.h"
#include "support/eos_difference.h"
#include "support/eos_fixture.h"
#include "support/test_support.h"

namespace talix::test {
namespace {

using namespace q_index;

constexpr R8 kMostDeviation = 1E-6;

Vec<bool, 6> all_options() {
  Vec<bool, 6> options{};
  options.fill(true);
  return options;
}

MixtureVector mix(I4 slot, R8 T, const CompVec& x, int n, const Vec<bool, 6>& options = all_options()) {
  MixtureVector m{};
  I4 code = 0;
  use_constants(slot);
  SESPC0(T, slot, options, 1, n, code);
  EXPECT_EQ(code, status::ok);
  SSMMIX(T, x, m, 1, n, options, slot);
  return m;
}

struct State {
  R8 T;
  int n;
  CompVec x;
};

std::vector<State> seeded_states(int count) {
  std::vector<State> states;
  std::mt19937_64 random(200);
  std::uniform_real_distribution<R8> uniform(0.0, 1.0);
  for (int s = 0; s < count; ++s) {
    State state{.T = 200.0 + 300.0 * uniform(random), .n = 2 + s % 7, .x = {}};
    R8 sum = 0.0;
    for (int i = 1; i <= state.n; ++i) sum += state.x(i) = 0.05 + uniform(random);
    for (int i = 1; i <= state.n; ++i) state.x(i) /= sum;
    states.push_back(state);
  }
  return states;
}

// A slot of the rule whose pure parameters have derivatives that are slopes at every temperature.
I4 smooth_slot(I4 code) {
  const I4 slot = load_model(code);
  if (code == model::vd2d1) {
    // b constant, a in proportion to 1/T.
    for (int i = 1; i <= 10; ++i) {
      planar.AOB(i) = 400.0 + 37.0 * i;
      planar.B2D(i) = 1E-5 * (2.0 + 0.3 * i);
    }
    ++setup.generation;
    return slot;
  }
  models.MODPUR(slot) = pure::soave;
  models.M1PAR(slot) = widen(1.75256F);
  models.M2PAR(slot) = widen(0.08128F);
  models.M3PAR(slot) = widen(0.1729F);
  return slot;
}

// --- derivatives of every rule ------------------------------------------------------------------------------------

struct Rule {
  const char* name;
  I4 code;
};

class ExcessRuleDerivatives : public ::testing::TestWithParam<Rule> {
 protected:
  void SetUp() override { reset_cubic_family(); }

  // Entry k of the parameter vector of the amounts n, and of its derivatives.
  static R8 whole(I4 slot, R8 T, const CompVec& amounts, int n, int k) {
    CompVec x = amounts;
    R8 N = 0.0;
    for (int i = 1; i <= n; ++i) N += x(i);
    for (int i = 1; i <= n; ++i) x(i) /= N;
    const MixtureVector m = mix(slot, T, x, n);
    return (k == IA ? N * N : N) * m.Q(k);
  }
};

TEST_P(ExcessRuleDerivatives, TemperatureDerivativesAreSlopes) {
  const I4 slot = smooth_slot(GetParam().code);
  for (const State& s : seeded_states(200)) {
    const MixtureVector m = mix(slot, s.T, s.x, s.n);
    const R8 h = 2E-3 * s.T;
    for (const int k : {IA, IB}) {
      const auto value = [&](R8 t) { return mix(slot, t, s.x, s.n).Q(k); };
      const R8 size = std::fabs(m.Q(k)) + std::fabs(m.QT(k));
      EXPECT_NEAR(m.QT(k), s.T * slope(value, s.T, h), kMostDeviation * size) << k << " " << s.T;
      EXPECT_NEAR(m.QTT(k), s.T * s.T * curvature(value, s.T, 3.0 * h),
                  kMostDeviation * (size + std::fabs(m.QTT(k))))
          << k << " " << s.T;
      for (int i = 1; i <= s.n; ++i) {
        const auto partial = [&](R8 t) { return mix(slot, t, s.x, s.n).QN(k)(i); };
        EXPECT_NEAR(m.QNT(k)(i), s.T * slope(partial, s.T, h),
                    kMostDeviation * (std::fabs(m.QN(k)(i)) + std::fabs(m.QNT(k)(i))))
            << k << " " << i;
      }
    }
    if (HasFailure()) return;
  }
}

TEST_P(ExcessRuleDerivatives, CompositionDerivativesAreThoseOfTheWholeAmount) {
  const I4 slot = smooth_slot(GetParam().code);
  for (const State& s : seeded_states(200)) {
    const MixtureVector m = mix(slot, s.T, s.x, s.n);
    for (const int k : {IA, IB}) {
      R8 size = std::fabs(m.Q(k));
      for (int i = 1; i <= s.n; ++i) size = std::max(size, std::fabs(m.QN(k)(i)));
      for (int i = 1; i <= s.n; ++i) {
        const auto along = [&](R8 amount) {
          CompVec n = s.x;
          n(i) = amount;
          return whole(slot, s.T, n, s.n, k);
        };
        EXPECT_NEAR(m.QN(k)(i), slope(along, s.x(i), 2E-3 * s.x(i)), kMostDeviation * size) << k << " " << i;
        for (int j = 1; j <= s.n; ++j) {
          // First derivatives of the whole amount: those of one mole times the amount to the degree less one.
          const auto partial = [&](R8 amount) {
            CompVec n = s.x;
            n(i) = amount;
            R8 N = 0.0;
            for (int l = 1; l <= s.n; ++l) N += n(l);
            for (int l = 1; l <= s.n; ++l) n(l) /= N;
            return (k == IA ? N : 1.0) * mix(slot, s.T, n, s.n).QN(k)(j);
          };
          EXPECT_NEAR(m.QNN(k)(i, j), slope(partial, s.x(i), 2E-3 * s.x(i)),
                      kMostDeviation * (size + std::fabs(m.QNN(k)(i, j))))
              << k << " " << i << " " << j;
        }
      }
    }
    if (HasFailure()) return;
  }
}

TEST_P(ExcessRuleDerivatives, HomogeneityHolds) {
  const I4 slot = smooth_slot(GetParam().code);
  for (const State& s : seeded_states(40)) {
    const MixtureVector m = mix(slot, s.T, s.x, s.n);
    for (const int k : {IA, IB}) {
      const R8 degree = k == IA ? 2.0 : 1.0;
      R8 first = 0.0;
      for (int i = 1; i <= s.n; ++i) {
        first += s.x(i) * m.QN(k)(i);
        R8 second = 0.0;
        for (int j = 1; j <= s.n; ++j) {
          second += s.x(j) * m.QNN(k)(i, j);
          EXPECT_NEAR(m.QNN(k)(i, j), m.QNN(k)(j, i), 1E-10 * (std::fabs(m.QNN(k)(i, j)) + m.Q(k)));
        }
        EXPECT_NEAR(second, (degree - 1.0) * m.QN(k)(i), 1E-7 * (std::fabs(m.QN(k)(i)) + std::fabs(m.Q(k))));
      }
      EXPECT_NEAR(first, degree * m.Q(k), 1E-10 * std::fabs(m.Q(k)));
    }
  }
}

TEST_P(ExcessRuleDerivatives, EntriesAskedForAloneAreThoseOfTheWholeSet) {
  const I4 slot = smooth_slot(GetParam().code);
  const State s = seeded_states(1).front();
  const MixtureVector full = mix(slot, s.T, s.x, s.n);
  for (int flag = 1; flag <= 6; ++flag) {
    Vec<bool, 6> options{};
    options(1) = true;
    options(flag) = true;
    reset_eos_caches();
    reset_nrtl_cache();
    const MixtureVector m = mix(slot, s.T, s.x, s.n, options);
    EXPECT_EQ(m.Q(IA), full.Q(IA));
    if (flag == 4) {
      EXPECT_EQ(m.QT(IA), full.QT(IA));
    }
    if (flag == 5) {
      EXPECT_EQ(m.QTT(IA), full.QTT(IA));
    }
    for (int i = 1; i <= s.n; ++i) {
      if (flag == 2) {
        EXPECT_EQ(m.QN(IA)(i), full.QN(IA)(i));
      }
      if (flag == 6) {
        EXPECT_EQ(m.QNT(IA)(i), full.QNT(IA)(i));
      }
      if (flag == 3) {
        EXPECT_EQ(m.QNN(IA)(i, 1), full.QNN(IA)(i, 1));
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Rules, ExcessRuleDerivatives,
                         ::testing::Values(Rule{"Quadratic", model::srk},
                                           Rule{"TwoDimensional", model::vd2d1},
                                           Rule{"GExcess", model::vardo2}, Rule{"AExcess", model::vardo3},
                                           Rule{"Consistent", model::vardo4}),
                         [](const auto& rule) { return std::string(rule.param.name); });

// --- the excess energy that a rule was built for ------------------------------------------------------------------

class ExcessRules : public ::testing::Test {
 protected:
  void SetUp() override { reset_cubic_family(); }
  static R8 chi(R8 T, const CompVec& x, int n) {
    ActivityOptions value{};
    value(1) = true;
    ExcessGibbs excess{};
    SNLAC0(T, x, excess, 1, n, value);
    return excess.GE;
  }
};

TEST_F(ExcessRules, ZeroPressureRuleHoldsTheExcessEnergyInItsQuadratic) {
  const I4 slot = load_model(model::vardo2);
  for (const State& s : seeded_states(50)) {
    const MixtureVector m = mix(slot, s.T, s.x, s.n);
    const auto q = [](R8 alpha) { return -0.47832 * alpha - 0.00469 * alpha * alpha; };
    const R8 alpha = m.Q(IA) / m.Q(IB);
    R8 excess = q(alpha);
    for (int i = 1; i <= s.n; ++i)
      excess -= s.x(i) * (q(pures.ARK(i) / pures.BRK(i)) + std::log(m.Q(IB) / pures.BRK(i)));
    EXPECT_NEAR(excess, chi(s.T, s.x, s.n), 1E-12 * std::fabs(q(alpha)));
  }
}

TEST_F(ExcessRules, InfinitePressureRuleHasTheExcessEnergyAtClosePacking) {
  // At close packing the residual Helmholtz energy over RT is a term of the packing less ln 2 a/(b RT).
  const I4 slot = load_model(model::vardo3);
  for (const State& s : seeded_states(50)) {
    const MixtureVector m = mix(slot, s.T, s.x, s.n);
    R8 excess = -std::log(2.0) * m.Q(IA) / m.Q(IB);
    R8 virial = 0.0;
    for (int i = 1; i <= s.n; ++i) {
      excess += s.x(i) * std::log(2.0) * pures.ARK(i) / pures.BRK(i);
      for (int j = 1; j <= s.n; ++j)
        virial += s.x(i) * s.x(j) * (1.0 - pairs.BICWS(i, j)) *
                  (pures.BRK(i) - pures.ARK(i) + pures.BRK(j) - pures.ARK(j)) / 2.0;
    }
    EXPECT_NEAR(excess, chi(s.T, s.x, s.n), 1E-7 * m.Q(IA) / m.Q(IB));
    // And the second virial coefficient is quadratic in composition.
    EXPECT_NEAR(m.Q(IB) - m.Q(IA), virial, 1E-7 * m.Q(IA));
  }
}

TEST_F(ExcessRules, OneComponentGetsItsOwnParameters) {
  for (const I4 code : {model::vardo2, model::vardo3, model::vardo4}) {
    const I4 slot = load_model(code);
    for (int i = 1; i <= 5; ++i) {
      pairs.BICWS(i, i) = 0.0;
      CompVec x{};
      x(i) = 1.0;
      MixtureVector m{};
      I4 status_code = 0;
      use_constants(slot);
      SESPC0(260.0, slot, all_options(), i, i, status_code);
      SSMMIX(260.0, x, m, i, i, all_options(), slot);
      EXPECT_NEAR(m.Q(IA), pures.ARK(i), 1E-6 * pures.ARK(i)) << code;
      EXPECT_NEAR(m.Q(IB), pures.BRK(i), 1E-12 * pures.BRK(i)) << code;
    }
  }
}

TEST_F(ExcessRules, WithoutASolutionTheLastRatioStaysAndNothingFails) {
  const I4 slot = load_model(model::vardo2);
  CompVec x{};
  x(1) = x(2) = 0.5;
  const MixtureVector good = mix(slot, 250.0, x, 2);
  const R8 H = g_excess.H;
  EXPECT_EQ(good.Q(IA), H * good.Q(IB));
  // The quadratic ends where its slope does: a large negative excess energy lies beyond.
  pairs.TAUT0(1, 2) = pairs.TAUT0(2, 1) = -200.0;
  pairs.TAUT1(1, 2) = pairs.TAUT1(2, 1) = pairs.TAUT2(1, 2) = pairs.TAUT2(2, 1) = 0.0;
  pairs.ALFA(1, 2) = pairs.ALFA(2, 1) = 0.0;
  update_pairs();
  reset_error_ring();
  const R8 energy = chi(250.0, x, 2);
  ASSERT_LT(energy, 0.0);
  pairs.TAUT0(1, 2) = pairs.TAUT0(2, 1) = 200.0;
  update_pairs();
  reset_error_ring();
  const MixtureVector beyond = mix(slot, 250.0, x, 2);
  EXPECT_EQ(ring_texts(), std::vector<std::string>{"No solution (negative determinant) in  gE mixing rule"});
  EXPECT_EQ(ring.SEVER0(1), severity::error);
  EXPECT_EQ(g_excess.H, H);
  EXPECT_EQ(beyond.Q(IA), H * beyond.Q(IB));
}

TEST_F(ExcessRules, WithoutAPositiveRootTheLargerGoesOnWithAWarning) {
  const I4 slot = load_model(model::vardo2);
  CompVec x{};
  x(1) = x(2) = 0.5;
  pairs.ALFA(1, 2) = pairs.ALFA(2, 1) = 0.0;
  pairs.TAUT1(1, 2) = pairs.TAUT1(2, 1) = pairs.TAUT2(1, 2) = pairs.TAUT2(2, 1) = 0.0;
  bool seen = false;
  for (R8 tau = 0.0; tau < 60.0 && !seen; tau += 1.0) {
    pairs.TAUT0(1, 2) = pairs.TAUT0(2, 1) = tau;
    update_pairs();
    reset_error_ring();
    const MixtureVector m = mix(slot, 250.0, x, 2);
    if (g_excess.H >= 0.0) continue;
    seen = true;
    EXPECT_EQ(ring_texts(), std::vector<std::string>{"No positive root in gE mixing rule"});
    EXPECT_EQ(ring.SEVER0(1), severity::warning);
    EXPECT_LT(m.Q(IA), 0.0);
  }
  EXPECT_TRUE(seen);
}

TEST_F(ExcessRules, UnifacIsToldOnTheStandardOutputAndCountsAsNoExcessEnergy) {
  const I4 slot = load_model(model::vardo3);
  models.MODLIQ(slot) = model::unifac;
  CompVec x{};
  x(1) = 0.4;
  x(2) = 0.6;
  ::testing::internal::CaptureStdout();
  const MixtureVector m = mix(slot, 250.0, x, 2);
  EXPECT_EQ(::testing::internal::GetCapturedStdout(),
            "Unifac mixing rule not implemented\n SSMMR6 (QX) Unifac mixing rule not implemented \n");
  R8 alpha = 0.0;
  for (int i = 1; i <= 2; ++i) alpha += x(i) * pures.ARK(i) / pures.BRK(i);
  EXPECT_NEAR(m.Q(IA) / m.Q(IB), alpha, 1E-12 * alpha);
}

TEST_F(ExcessRules, AnyOtherLiquidModelIsToldAndLeavesNoNumber) {
  const I4 slot = load_model(model::vardo3);
  models.MODLIQ(slot) = 0;
  CompVec x{};
  x(1) = x(2) = 0.5;
  reset_error_ring();
  ::testing::internal::CaptureStdout();
  const MixtureVector m = mix(slot, 250.0, x, 2);
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "No liquid model for excess mixing rule, STOP\n");
  EXPECT_TRUE(std::isnan(m.Q(IA)));
  EXPECT_TRUE(std::isnan(m.Q(IB)));
  EXPECT_TRUE(ring_texts().empty());
}

// --- two-dimensional rule -----------------------------------------------------------------------------------------

TEST_F(ExcessRules, TwoDimensionalRuleIsTheQuadraticRuleOnItsOwnParameters) {
  const I4 slot = load_model(model::vd2d1);
  CompVec x{};
  for (int i = 1; i <= 5; ++i) x(i) = 0.2;
  pairs.TETA1.fill(0.0);
  pairs.TETA1T.fill(0.0);
  update_pairs();
  const MixtureVector m = mix(slot, 260.0, x, 5);
  R8 a = 0.0, b = 0.0;
  for (int i = 1; i <= 5; ++i) {
    b += x(i) * planar.B2D(i);
    for (int j = 1; j <= 5; ++j) {
      const R8 theta = i == j ? 0.0 : pairs.TETA0(i, j) + 260.0 * pairs.TETA0T(i, j);
      a += x(i) * x(j) * std::sqrt(planar.A2D(i) * planar.A2D(j)) * (1.0 - theta);
    }
  }
  EXPECT_NEAR(m.Q(IA), a, 1E-13 * a);
  EXPECT_NEAR(m.Q(IB), b, 1E-13 * b);
}

TEST_F(ExcessRules, TwoDimensionalRuleSeesPairDataThatChange) {
  const I4 slot = load_model(model::vd2d1);
  CompVec x{};
  x(1) = x(5) = 0.5;
  const R8 before = mix(slot, 260.0, x, 5).Q(IA);
  pairs.TETA0(1, 5) = pairs.TETA0(5, 1) = 0.4;
  update_pairs();
  EXPECT_LT(mix(slot, 260.0, x, 5).Q(IA), 0.95 * before);
}

// --- the consistent rule ------------------------------------------------------------------------------------------

class ConsistentPairs : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_cubic_family();
    consistency = {};
    for (int i = 1; i <= 10; ++i) {
      comp.NOTRY(i) = 0;
      comp.ICSTD(i) = 900 + i;
    }
  }
  static void pair(I4 first, I4 second, I4 I = 1, I4 J = 2) {
    comp.ICSTD(I) = first;
    comp.ICSTD(J) = second;
    if (first < 900) comp.NOTRY(I) = 1;
    if (second < 900) comp.NOTRY(J) = 1;
    I4 code = 0;
    SICBI0(I, J, code);
    EXPECT_EQ(code, status::ok);
  }
};

TEST_F(ConsistentPairs, BuiltInRowsSetBothDirections) {
  const struct {
    I4 I, J;
    R8 alfa, t0ij, t0ji, t1ij, t1ji;
  } rows[] = {{328, 9, 0.028197, 0.219979, 0.296615, 0.00437244, 0.028197},
              {20, 9, 0.0155946, 1.7046, -1.85009, 0, 0},
              {328, 20, 0.0111006, -0.633853, 1.20332, 0, 0},
              {328, 4, 0.00837428, -0.501413, 1.08614, 0, 0},
              {9, 11, 0.0137792, -0.795447, 0.802731, 0, 0},
              {328, 11, 0, 0.08588, 0.08588, 0, 0},
              {9, 15, 0.055412, 0.400329, 2.47228, 0, 0},
              {328, 15, 0.0210646, 0.189796, -0.622384, 0, 0},
              {9, 4, 0.0769874, 0.264708, 0.453692, 0.000172757, -0.00240108}};
  for (const auto& row : rows) {
    for (const bool reverse_first : {false, true}) {
      consistency = {};
      const ConsistencyRecord& c = consistency;
      if (reverse_first) {
        pair(row.J, row.I, 2, 1);
        EXPECT_EQ(c.TAUT0(1, 2), 0.0);
      }
      pair(row.I, row.J);
      I4 code = 0;
      SICBI0(2, 1, code);  // the reverse order changes nothing
      EXPECT_EQ(c.ALFA(1, 2), row.alfa);
      EXPECT_EQ(c.ALFA(2, 1), row.alfa);
      EXPECT_EQ(c.TAUT0(1, 2), row.t0ij);
      EXPECT_EQ(c.TAUT0(2, 1), row.t0ji);
      EXPECT_EQ(c.TAUT1(1, 2), row.t1ij);
      EXPECT_EQ(c.TAUT1(2, 1), row.t1ji);
    }
  }
}

TEST_F(ConsistentPairs, WaterWithAHydrocarbonFollowsItsAcentricFactorUpToFour) {
  for (const R8 omega : {0.3, 4.0, 5.0}) {
    comp.OMEGA(2) = omega;
    pair(9, 902);
    const R8 W = std::min(omega, 4.0);
    EXPECT_DOUBLE_EQ(consistency.ALFA(1, 2), 0.0599661 + W * (0.0448648 + 0.0319449 * W));
    EXPECT_DOUBLE_EQ(consistency.TAUT0(1, 2), 0.710276 - W * (5.00883 + 4.11244 * W));
    EXPECT_DOUBLE_EQ(consistency.TAUT0(2, 1), 1.06208 - W * (1.61424 + 1.27413 * W));
    EXPECT_EQ(consistency.TAUT1(1, 2), 0.0);
    I4 code = 0;
    const R8 before = consistency.TAUT0(2, 1);
    SICBI0(2, 1, code);
    EXPECT_EQ(consistency.TAUT0(2, 1), before);
  }
}

TEST_F(ConsistentPairs, MethanolWithAHydrocarbonHasTwoRangesAndWInsideBothProducts) {
  comp.OMEGA(2) = 0.2;
  pair(328, 902);
  EXPECT_DOUBLE_EQ(consistency.ALFA(1, 2), 0.398609 + 0.2 * (-1.29199 + 3.25274 * 0.2));
  EXPECT_DOUBLE_EQ(consistency.TAUT0(1, 2), 0.94878 - 0.2 * (-3.77673 + 5.41626 * 0.2));
  EXPECT_DOUBLE_EQ(consistency.TAUT0(2, 1), -0.159706 + 0.2 * (2.2467 - 1.29119 * 0.2));
  for (const R8 W : {0.275, 0.6}) {
    comp.OMEGA(2) = W;
    pair(328, 902);
    EXPECT_DOUBLE_EQ(consistency.ALFA(1, 2), 0.184852 + W * (0.577901 - 1.09106 * W));
    EXPECT_DOUBLE_EQ(consistency.TAUT0(1, 2), -2.5489 + W * (21.1037 * W - 38.3256 * W));
    EXPECT_DOUBLE_EQ(consistency.TAUT0(2, 1), 0.184852 + W * (0.577901 * W - 1.09106 * W));
    EXPECT_EQ(consistency.TAUT1(2, 1), 0.0);
  }
}

TEST_F(ConsistentPairs, MethaneIsNoHydrocarbonOfTheRulesWhateverItsFlag) {
  comp.NOTRY(2) = 0;
  comp.ICSTD(1) = 9;
  comp.ICSTD(2) = 20;
  comp.NOTRY(1) = 1;
  I4 code = 0;
  SICBI0(1, 2, code);  // the reverse of a built-in row: nothing is set
  EXPECT_EQ(consistency.ALFA(1, 2), 0.0);
  SICBI0(2, 1, code);
  EXPECT_EQ(consistency.ALFA(1, 2), 0.0155946);
}

TEST_F(ConsistentPairs, AnyOtherPairTakesTheInteractionParameters) {
  pairs.TETA0(1, 2) = pairs.TETA0(2, 1) = 0.123;
  pairs.TETA0T(1, 2) = pairs.TETA0T(2, 1) = -4E-5;
  consistency.TAUT2(1, 2) = consistency.TAUT2(2, 1) = 9.0;
  pair(901, 902);
  EXPECT_EQ(consistency.ALFA(1, 2), 0.0);
  EXPECT_EQ(consistency.TAUT0(1, 2), 0.123);
  EXPECT_EQ(consistency.TAUT0(2, 1), 0.123);
  EXPECT_EQ(consistency.TAUT1(1, 2), -4E-5);
  EXPECT_EQ(consistency.TAUT2(1, 2), 0.0);
  EXPECT_EQ(consistency.TAUT2(2, 1), 0.0);
}

TEST_F(ConsistentPairs, WithSymmetricPairsAndNoRandomnessTheRuleIsTheQuadraticRule) {
  const I4 consistent = load_model(model::vardo4);
  const I4 quadratic = load_model(model::vardo1);
  pairs.TETA1.fill(0.0);
  pairs.TETA1T.fill(0.0);
  // The rule sums a over pair means of b; with one b for all both rules are the same.
  for (int i = 1; i <= 5; ++i) {
    comp.TC(i) = 300.0;
    comp.PC(i) = 45.0;
    for (int k = 6; k <= 11; ++k) comp.PARABF(i, k) = comp.PARABF(kPropane, k);
  }
  update_pairs();
  CompVec x{};
  for (int i = 1; i <= 5; ++i) x(i) = 0.1 + 0.04 * i;
  R8 sum = 0.0;
  for (int i = 1; i <= 5; ++i) sum += x(i);
  for (int i = 1; i <= 5; ++i) x(i) /= sum;
  const MixtureVector local = mix(consistent, 250.0, x, 5);
  const MixtureVector plain = mix(quadratic, 250.0, x, 5);
  EXPECT_NEAR(local.Q(IA), plain.Q(IA), 1E-13 * plain.Q(IA));
  EXPECT_NEAR(local.QT(IA), plain.QT(IA), 1E-12 * plain.Q(IA));
  EXPECT_NEAR(local.QTT(IA), plain.QTT(IA), 1E-11 * plain.Q(IA));
}

TEST_F(ConsistentPairs, WithUnequalSizesTheLimitIsTheQuadraticRuleToo) {
  // Sum over i of x_i AL_i/BL_i with weights b_j: sum of x_i x_j 2 sqrt(a_i a_j) (1 - k) b_j/(b_i + b_j) over b,
  // which the exchange of i and j makes the quadratic a over b.
  const I4 consistent = load_model(model::vardo4);
  const I4 quadratic = load_model(model::vardo1);
  pairs.TETA1.fill(0.0);
  pairs.TETA1T.fill(0.0);
  update_pairs();
  CompVec x{};
  x(1) = 0.5;
  x(4) = 0.3;
  x(3) = 0.2;
  const MixtureVector local = mix(consistent, 250.0, x, 4);
  const MixtureVector plain = mix(quadratic, 250.0, x, 4);
  EXPECT_NEAR(local.Q(IA), plain.Q(IA), 1E-13 * plain.Q(IA));
  for (int i = 1; i <= 4; ++i) EXPECT_NEAR(local.QN(IA)(i), plain.QN(IA)(i), 1E-12 * plain.Q(IA));
}

TEST_F(ConsistentPairs, ModelsWithNrtlDataDoNotSpoilEachOther) {
  const I4 consistent = load_model(model::vardo4);
  const I4 g_rule = load_model(model::vardo2);
  pair(9, 902, 6, 3);
  CompVec x{};
  for (int i = 1; i <= 6; ++i) x(i) = 1.0 / 6.0;
  const R8 alone = mix(g_rule, 260.0, x, 6).Q(IA);
  const R8 local = mix(consistent, 260.0, x, 6).Q(IA);
  EXPECT_EQ(mix(g_rule, 260.0, x, 6).Q(IA), alone);
  EXPECT_EQ(mix(consistent, 260.0, x, 6).Q(IA), local);
}

}  // namespace
}  // namespace talix::test
