// Pressure and residual function with their derivatives: SSMMF0, SSMIDG.
#include "eos/ssm_model_function.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "engine/codes.h"
#include "engine/error_ring.h"
#include "eos/cubic_record.h"
#include "support/eos_difference.h"
#include "support/test_support.h"

namespace talix::test {
namespace {

using namespace q_index;

Vec<bool, 20> all_options() {
  Vec<bool, 20> options{};
  options.fill(true);
  return options;
}

struct State {
  R8 T, v;  // [K], volume over R
  R8 n, a, b;
};

// Pressure of the cubic with n moles; a and b are those of the whole amount.
R8 pressure(const State& s) {
  return s.T * (s.n / (s.v - s.b) - s.a / ((s.v + cur.C1PAR * s.b) * (s.v + cur.C2PAR * s.b)));
}

// Residual function of n moles at given T and v, by its own form.
R8 residual(const State& s) {
  const R8 c1 = cur.C1PAR;
  const R8 c2 = cur.C2PAR;
  const R8 repulsion = s.n * std::log(s.v / (s.v - s.b));
  const R8 attraction = c1 == c2 ? -s.a / (s.v + c1 * s.b)
                                 : s.a / ((c2 - c1) * s.b) * std::log((s.v + c1 * s.b) / (s.v + c2 * s.b));
  return repulsion + attraction;
}

class EveryCubic : public ::testing::TestWithParam<int> {
 protected:
  void SetUp() override {
    reset_error_ring();
    cur = {};
    const R8 constants[3][2] = {{0.0, 1.0}, {0.0, 0.0}, {-0.41421354, 2.4142137}};
    cur.C1PAR = constants[GetParam()][0];
    cur.C2PAR = constants[GetParam()][1];
    state = {.T = 300.0, .v = 2.5E-5, .n = 1.0, .a = 2.5E-5, .b = 6.0E-6};
    P = pressure(state);
    Q(IN) = 1.0;
    Q(IA) = state.a;
    Q(IB) = state.b;
    SSMMF0(P * state.v / state.T, state.T, MQ, Q, P, f, all_options(), ICODE);
  }
  // Pressure and residual function as functions of one entry of the state.
  template <class MEMBER>
  auto along(MEMBER member, R8 (*function)(const State&)) const {
    return [this, member, function](R8 value) {
      State s = state;
      s.*member = value;
      return function(s);
    };
  }
  static R8 State::*member(int k) { return k == IN ? &State::n : k == IA ? &State::a : &State::b; }

  State state{};
  R8 P = 0.0;
  QVec Q{};
  QDegrees MQ{};
  ModelFunction f{};
  I4 ICODE = 0;
};

TEST_P(EveryCubic, PressureDerivativesAreSlopesOfThePressure) {
  ASSERT_EQ(ICODE, status::ok);
  const R8 v = state.v;
  EXPECT_NEAR(f.PV, v / P * slope(along(&State::v, pressure), v, 1E-3 * v), 1E-10 * std::abs(f.PV));
  EXPECT_NEAR(f.PVV, v * v / P * curvature(along(&State::v, pressure), v, 5E-3 * v), 1E-8 * std::abs(f.PVV));
  EXPECT_NEAR(f.PT, 1.0, 1E-12);
  EXPECT_EQ(f.PTT, 0.0);
  EXPECT_EQ(f.PVT, f.PV);
  for (int k = IN; k <= IB; ++k) {
    const R8 q = Q(k);
    const R8 dq = slope(along(member(k), pressure), q, 1E-3 * q) / P;
    EXPECT_NEAR(f.PQ(k), dq, 1E-10 * std::abs(dq)) << k;
    const R8 cross = slope(
        [&](R8 volume) {
          State s = state;
          s.v = volume;
          return slope(
              [&](R8 value) {
                State t = s;
                t.*member(k) = value;
                return pressure(t);
              },
              q, 2E-3 * q);
        },
        v, 2E-3 * v);
    EXPECT_NEAR(f.PQV(k), v / P * cross, 1E-8 * std::abs(f.PQV(k))) << k;
  }
}

TEST_P(EveryCubic, SecondParameterDerivativesAreSlopesOfTheFirst) {
  for (int k = IN; k <= IB; ++k) {
    for (int l = IN; l <= IB; ++l) {
      const auto mixed = [&](R8 (*function)(const State&)) {
        return slope(
            [&](R8 outer) {
              State s = state;
              s.*member(k) = outer;
              return slope(
                  [&](R8 inner) {
                    State t = s;
                    t.*member(l) = inner;
                    return function(t);
                  },
                  s.*member(l), 2E-3 * Q(l));
            },
            Q(k), 2E-3 * Q(k));
      };
      const R8 PQQ = mixed(pressure) / P;
      const R8 FQQ = mixed(residual);
      const R8 scale = 1.0 / (Q(k) * Q(l));
      EXPECT_NEAR(f.PQQ(k)(l), PQQ, 1E-8 * (std::abs(PQQ) + scale)) << k << l;
      EXPECT_NEAR(f.FQQ(k)(l), FQQ, 1E-8 * (std::abs(FQQ) + scale)) << k << l;
      EXPECT_EQ(f.PQQ(k)(l), f.PQQ(l)(k));
      EXPECT_EQ(f.FQQ(k)(l), f.FQQ(l)(k));
    }
  }
}

TEST_P(EveryCubic, ResidualFunctionAndItsSlopes) {
  EXPECT_NEAR(f.F, residual(state), 1E-12);
  EXPECT_EQ(f.FT, 0.0);
  EXPECT_EQ(f.FTT, 0.0);
  for (int k = IN; k <= IB; ++k) {
    EXPECT_EQ(f.FQTCQ(k), 0.0);
    const R8 dq = slope(along(member(k), residual), Q(k), 1E-3 * Q(k));
    EXPECT_NEAR(f.FQ(k), dq, 1E-10 * std::abs(dq)) << k;
  }
  EXPECT_EQ(MQ(IN), 1);
  EXPECT_EQ(MQ(IA), 2);
  EXPECT_EQ(MQ(IB), 1);
  EXPECT_EQ(ring.count, 0);
}

TEST_P(EveryCubic, ResidualFunctionIsTheVolumeIntegralOfThePressure) {
  // dF/dv at constant T and Q is n/v - P/T.
  const R8 df = slope(along(&State::v, residual), state.v, 1E-3 * state.v);
  EXPECT_NEAR(df, 1.0 / state.v - P / state.T, 1E-9 / state.v);
}

INSTANTIATE_TEST_SUITE_P(Constants, EveryCubic, ::testing::Values(0, 1, 2));

class ModelFunctionEdge : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_error_ring();
    cur = {};
    cur.C2PAR = 1.0;
    Q(IN) = 1.0;
    Q(IA) = 0.3;
    Q(IB) = 0.1;
  }
  QVec Q{};
  QDegrees MQ{};
  ModelFunction f{};
  I4 ICODE = 0;
};

TEST_F(ModelFunctionEdge, VolumeAtOrBelowTheCoVolumeFails) {
  for (const R8 z : {0.1, 0.05, -1.0, std::numeric_limits<R8>::quiet_NaN()}) {
    reset_error_ring();
    SSMMF0(z, 1.0, MQ, Q, 1.0, f, all_options(), ICODE);
    EXPECT_EQ(ICODE, status::numerical);
    ASSERT_EQ(ring.count, 1);
    EXPECT_EQ(ring.SEVER0(1), severity::error);
    EXPECT_EQ(trimmed(ring.NAMER0(1)), "SSMMF0");
    EXPECT_EQ(ring_texts().at(0), "Volume below co-volume (v < b) in equation of state");
  }
}

TEST_F(ModelFunctionEdge, PressureMismatchOnlyWarns) {
  SSMMF0(0.9, 1.0, MQ, Q, 1.0, f, all_options(), ICODE);
  EXPECT_EQ(ICODE, status::ok);
  ASSERT_EQ(ring.count, 1);
  EXPECT_EQ(ring.SEVER0(1), severity::warning);
  EXPECT_EQ(ring_texts().at(0), "Backcalculated pressure not equal to input pressure");
  EXPECT_NE(f.F, 0.0);
}

TEST_F(ModelFunctionEdge, OnlyTheEntriesAskedForAreFormed) {
  f.PV = f.PVV = f.F = 77.0;
  f.FQ.fill(77.0);
  f.PQ.fill(77.0);
  Vec<bool, 20> options{};
  options(2) = true;
  SSMMF0(0.9, 1.0, MQ, Q, 1.0, f, options, ICODE);
  EXPECT_NE(f.PV, 77.0);
  EXPECT_EQ(f.PVV, 77.0);
  EXPECT_EQ(f.F, 77.0);
  EXPECT_EQ(f.FQ(IA), 77.0);
  EXPECT_EQ(f.PQ(IA), 77.0);
  EXPECT_EQ(ring.count, 0);
}

TEST_F(ModelFunctionEdge, IdealGasConstants) {
  SSMIDG(MQ, f, all_options(), ICODE);
  EXPECT_EQ(ICODE, status::ok);
  EXPECT_EQ(MQ(IN), 1);
  EXPECT_EQ(f.PV, -1.0);
  EXPECT_EQ(f.PT, 1.0);
  EXPECT_EQ(f.PQ(IN), 1.0);
  EXPECT_EQ(f.PVV, 2.0);
  EXPECT_EQ(f.PTT, 0.0);
  EXPECT_EQ(f.PQQ(IN)(IN), 0.0);
  EXPECT_EQ(f.PVT, -1.0);
  EXPECT_EQ(f.PQV(IN), -1.0);
  EXPECT_EQ(f.F, 0.0);
  EXPECT_EQ(f.FQ(IN), 0.0);
  EXPECT_EQ(f.FQQ(IN)(IN), 0.0);
  EXPECT_EQ(f.FT, 0.0);
  EXPECT_EQ(f.FTT, 0.0);
  EXPECT_EQ(f.FQTCQ(IN), 0.0);
}

TEST_F(ModelFunctionEdge, EqualConstantsAreTheLimitOfCloseOnes) {
  cur.C1PAR = 0.3;
  cur.C2PAR = 0.3;
  ModelFunction equal{};
  SSMMF0(0.9, 1.0, MQ, Q, 1.0, equal, all_options(), ICODE);
  cur.C2PAR = 0.3 + 1E-6;
  SSMMF0(0.9, 1.0, MQ, Q, 1.0, f, all_options(), ICODE);
  EXPECT_NEAR(equal.F, f.F, 1E-6);
  EXPECT_NEAR(equal.FQ(IB), f.FQ(IB), 1E-5);
}

}  // namespace
}  // namespace talix::test
