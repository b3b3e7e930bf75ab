// Curves of a and b and their cache: SSMPC0 to SSMPC3, SESPC0.
#include <gtest/gtest.h>

#include <cmath>

#include "database/component_record.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/model_record.h"
#include "engine/setup_record.h"
#include "eos/cubic_record.h"
#include "eos/eos_caches.h"
#include "eos/ses_pure_parameters.h"
#include "eos/ssm_pure_curves.h"
#include "eos/ssm_pure_vardo.h"
#include "support/eos_difference.h"
#include "support/eos_fixture.h"

namespace talix::test {
namespace {

constexpr int N = kMaxComponents;

class PureParameters : public ::testing::Test {
 protected:
  void SetUp() override { reset_fixture(); }
  static R8 curve(int i, int offset, R8 xi, int order) {
    return SSMPC1(comp.PARABF, N, i, offset, xi, order);
  }
  static R8 warm_a(int i, R8 xi, int order) { return SSMPC3(comp.PARABF, N, i, xi, order); }
  // Tables of component i at Tc/T = xi.
  static void at(int i, R8 xi, I4 level = 2) {
    I4 code = 0;
    SSMPC0(comp.TC(i) / xi, level, i, i, code);
    ASSERT_EQ(code, status::ok);
  }
  static R8 scale(int i) { return comp.TC(i) / (comp.PC(i) * 100000.0); }
};

TEST_F(PureParameters, CurveDerivativesAreSlopesInReducedTemperature) {
  for (const int offset : {0, 5}) {
    for (const R8 xi : {0.8, 1.0, 1.3, 2.0, 4.0}) {
      const auto value = [&](R8 tr) { return curve(kPropane, offset, 1.0 / tr, 1); };
      const R8 tr = 1.0 / xi;
      EXPECT_NEAR(curve(kPropane, offset, xi, 2), slope(value, tr, 2E-3 * tr), 1E-9);
      EXPECT_NEAR(curve(kPropane, offset, xi, 3), curvature(value, tr, 5E-3 * tr), 1E-6);
    }
  }
}

TEST_F(PureParameters, CurveOfBIsScaledByOneHundredth) {
  for (int k = 1; k <= 5; ++k) comp.PARABF(1, 5 + k) = comp.PARABF(1, k);
  for (int order = 1; order <= 3; ++order)
    EXPECT_DOUBLE_EQ(curve(1, 5, 1.2, order), 0.01 * curve(1, 0, 1.2, order));
}

TEST_F(PureParameters, BlendEndsAtAnArgumentOfFifty) {
  const R8 set[5] = {0.3, 0.2, 100.0, 1.0, -0.1};
  for (int k = 1; k <= 5; ++k) comp.PARABF(1, k) = set[k - 1];
  // Argument exactly 50 and -50: ln(2 cosh) and the exponential form.
  const R8 E = std::log(2.0 * std::cosh(25.0));
  EXPECT_EQ(curve(1, 0, 1.5, 1), 0.3 + (0.2 - 0.1) * 50.0 / 2.0 + (0.2 + 0.1) * E);
  EXPECT_EQ(curve(1, 0, 0.5, 1), 0.3 - (0.2 - 0.1) * 50.0 / 2.0 + (0.2 + 0.1) * E);
  // Beyond: abs(T)/2, one slope alone.
  const R8 xi = 1.6;
  const R8 T = 100.0 * (xi - 1.0);
  EXPECT_EQ(curve(1, 0, xi, 1), 0.3 + (0.2 - 0.1) * T / 2.0 + (0.2 + 0.1) * (T / 2.0));
  EXPECT_EQ(curve(1, 0, xi, 3), 2.0 * 100.0 * (xi * xi * xi) * 0.2);
  const R8 low = 0.4;
  EXPECT_EQ(curve(1, 0, low, 3), 2.0 * 100.0 * (low * low * low) * -0.1);
}

TEST_F(PureParameters, RationalCurveStartsAtColumnElevenAndHasItsSlopes) {
  EXPECT_NEAR(warm_a(kPropane, 1.0, 1), comp.PARABF(kPropane, 11), 1E-15);
  for (const R8 tr : {1.1, 1.5, 2.5}) {
    const auto value = [&](R8 u) { return warm_a(kPropane, 1.0 / u, 1); };
    EXPECT_NEAR(warm_a(kPropane, 1.0 / tr, 2), slope(value, tr, 1E-3 * tr), 1E-10);
    EXPECT_NEAR(warm_a(kPropane, 1.0 / tr, 3), curvature(value, tr, 5E-3 * tr), 1E-7);
  }
}

TEST_F(PureParameters, ExponentialCurveHasItsSlopes) {
  const R8 sets[2][4] = {{0.084456, 0.0058822, 0.9636, 2.0}, {0.08, -0.02, 0.08, 1.1005}};
  for (const auto& c : sets) {
    for (const R8 tr : {1.05, 1.3, 3.0}) {
      const auto value = [&](R8 u) { return SSMPC2(c[0], c[1], c[2], c[3], 1.0 / u, 1); };
      EXPECT_NEAR(SSMPC2(c[0], c[1], c[2], c[3], 1.0 / tr, 2), slope(value, tr, 1E-3 * tr), 1E-9);
      EXPECT_NEAR(SSMPC2(c[0], c[1], c[2], c[3], 1.0 / tr, 3), curvature(value, tr, 2E-3 * tr), 1E-5);
    }
  }
}

TEST_F(PureParameters, ColdRangeIsTheCurveAlone) {
  const R8 xi = 1.5;
  at(kPropane, xi);
  EXPECT_NEAR(pures.ARK(kPropane), curve(kPropane, 0, xi, 1) * scale(kPropane), 1E-18);
  EXPECT_NEAR(pures.BRK(kPropane), curve(kPropane, 5, xi, 1) * scale(kPropane), 1E-18);
  EXPECT_EQ(pures.CRK(kPropane), 0.0);
  EXPECT_EQ(pures.D1CDT(kPropane), 0.0);
  EXPECT_EQ(pures.D2CDT(kPropane), 0.0);
}

TEST_F(PureParameters, CriticalTemperatureItselfTakesTheColdCurveForA) {
  I4 code = 0;
  SSMPC0(comp.TC(kPropane), 2, kPropane, kPropane, code);
  EXPECT_EQ(pures.ARK(kPropane), curve(kPropane, 0, 1.0, 1) * scale(kPropane));
}

TEST_F(PureParameters, WarmLimitItselfTakesTheInterpolation) {
  // Tc and T chosen so that Tc/T is the limit exactly.
  comp.TC(kPropane) = 0.9090909;
  I4 code = 0;
  SSMPC0(1.0, 2, kPropane, kPropane, code);
  const R8 AAC = curve(kPropane, 0, 1.0, 1);
  const R8 AALIM = warm_a(kPropane, 0.9090909, 1);
  EXPECT_EQ(pures.ARK(kPropane), ((AALIM - AAC) * (0.9090909 - 1.0) / -0.0909091 + AAC) * scale(kPropane));
  // Just below it the rational curve holds alone.
  comp.TC(kPropane) = 0.9090908;
  SSMPC0(1.0, 2, kPropane, kPropane, code);
  EXPECT_EQ(pures.ARK(kPropane), warm_a(kPropane, 0.9090908, 1) * scale(kPropane));
}

TEST_F(PureParameters, AIsALineBetweenItsEnds) {
  const R8 xi = 0.95;
  at(kPropane, xi);
  const R8 AAC = curve(kPropane, 0, 1.0, 1);
  const R8 AALIM = warm_a(kPropane, 0.9090909, 1);
  EXPECT_NEAR(pures.ARK(kPropane) / scale(kPropane), (AALIM - AAC) * (xi - 1.0) / -0.0909091 + AAC, 1E-14);
}

TEST_F(PureParameters, DerivativesInTheZonesAreLinesAndNotTheSlopesOfTheValues) {
  const int i = kPropane;
  const R8 C1 = comp.PARABF(i, 11) / 4.934;
  const R8 C2 = (curve(i, 5, 1.04, 1) - C1) / -0.1500838;
  for (const R8 xi : {1.02, 0.98, 0.93}) {
    at(i, xi);
    const R8 T = comp.TC(i) / xi;
    // b: between 1.04 and the warm limit.
    for (int order = 2; order <= 3; ++order) {
      const R8 cold = curve(i, 5, 1.04, order);
      const R8 warm = SSMPC2(C1, C2, 0.08, 1.1005, 0.9090909, order);
      const R8 line = (warm - cold) * (xi - 1.04) / -0.1309091 + cold;
      const R8 W2 = T / (comp.PC(i) * 100000.0);
      const R8 W = order == 2 ? W2 : W2 / (comp.TC(i) / T);
      EXPECT_NEAR(order == 2 ? pures.D1BDT(i) : pures.D2BDT(i), line * W, 1E-12 * std::abs(line * W));
    }
    const R8 D1B = pures.D1BDT(i);
    const R8 D1A = pures.D1ADT(i);
    const auto value = [&](PureTables::Each<R8>& table) {
      return [&, i](R8 t) {
        I4 code = 0;
        SSMPC0(t, 0, i, i, code);
        return table(i);
      };
    };
    const R8 slope_b = T * slope(value(pures.BRK), T, 1E-4 * T);
    EXPECT_GT(std::abs(D1B - slope_b), 1E-3 * std::abs(slope_b)) << xi;
    if (xi < 1.0) {
      const R8 cold = curve(i, 0, 1.0, 2);
      const R8 warm = warm_a(i, 0.9090909, 2);
      const R8 line = (warm - cold) * (xi - 1.0) / -0.0909091 + cold;
      EXPECT_NEAR(D1A, line * T / (comp.PC(i) * 100000.0), 1E-12 * std::abs(D1A));
      const R8 slope_a = T * slope(value(pures.ARK), T, 1E-4 * T);
      EXPECT_GT(std::abs(D1A - slope_a), 1E-3 * std::abs(slope_a)) << xi;
    }
  }
}

TEST_F(PureParameters, DerivativesOutsideTheZonesAreTheSlopesOfTheValues) {
  for (const int i : {kMethane, kPropane, kDecane, kCarbonDioxide, kWater, kNitrogen, kHydrogen}) {
    for (const R8 xi : {0.3, 0.6, 0.85, 1.1, 1.5}) {
      const R8 T = comp.TC(i) / xi;
      at(i, xi);
      if (pures.ARK(i) <= 0.0010001 * scale(i)) continue;  // at its floor
      const R8 D1A = pures.D1ADT(i), D2A = pures.D2ADT(i), D1B = pures.D1BDT(i), D2B = pures.D2BDT(i);
      const R8 A = pures.ARK(i);
      const R8 B = pures.BRK(i);
      const auto value = [&](PureTables::Each<R8>& table) {
        return [&, i](R8 t) {
          I4 code = 0;
          SSMPC0(t, 0, i, i, code);
          return table(i);
        };
      };
      EXPECT_NEAR(D1A, T * slope(value(pures.ARK), T, 1E-3 * T), 1E-8 * A);
      EXPECT_NEAR(D1B, T * slope(value(pures.BRK), T, 1E-3 * T), 1E-8 * B);
      EXPECT_NEAR(D2A, T * T * curvature(value(pures.ARK), T, 4E-3 * T), 1E-5 * A);
      EXPECT_NEAR(D2B, T * T * curvature(value(pures.BRK), T, 4E-3 * T), 1E-5 * B);
    }
  }
}

TEST_F(PureParameters, BOfTheThreeFixedGasesDoesNotReadColumnEleven) {
  const char* tags[] = {"H2", "HE", "N2"};
  const R8 sets[3][4] = {{0.084456, 0.0058822, 0.9636, 2.0},
                         {0.105, -0.0284, 1.0, 2.0},
                         {0.081516, 0.092116, -7.50201, 5.48383}};
  for (int k = 0; k < 3; ++k) {
    comp.ICS(kMethane) = tags[k];
    for (const R8 xi : {0.2, 0.7, 1.03}) {
      for (const R8 column : {0.3, 0.5}) {
        comp.PARABF(kMethane, 11) = column;
        at(kMethane, xi);
        const auto& c = sets[k];
        EXPECT_NEAR(pures.BRK(kMethane) / scale(kMethane), SSMPC2(c[0], c[1], c[2], c[3], xi, 1), 1E-14)
            << tags[k] << xi;
      }
    }
  }
  // Any other component does.
  comp.ICS(kMethane) = "C1";
  comp.PARABF(kMethane, 11) = 0.3;
  at(kMethane, 0.7);
  const R8 first = pures.BRK(kMethane);
  comp.PARABF(kMethane, 11) = 0.5;
  at(kMethane, 0.7);
  EXPECT_NE(pures.BRK(kMethane), first);
}

TEST_F(PureParameters, BJoinsAtTheFixedFactor) {
  at(kPropane, 1.0399999999);
  const R8 below = pures.BRK(kPropane);
  at(kPropane, 1.04);
  EXPECT_NEAR(below, pures.BRK(kPropane), 1E-6 * below);
}

TEST_F(PureParameters, AHasAFloorThatLeavesItsDerivativesAlone) {
  comp.PARABF(kPropane, 1) -= 10.0;
  at(kPropane, 1.5);
  EXPECT_DOUBLE_EQ(pures.ARK(kPropane), 0.001 * scale(kPropane));
  EXPECT_EQ(ring.count, 0);
  const R8 W2 = comp.TC(kPropane) / 1.5 / (comp.PC(kPropane) * 100000.0);
  EXPECT_NEAR(pures.D1ADT(kPropane), curve(kPropane, 0, 1.5, 2) * W2, 1E-18);
}

TEST_F(PureParameters, LevelsNotAskedForStayAsTheyAre) {
  at(kPropane, 1.5, 2);
  const R8 D1 = pures.D1ADT(kPropane);
  const R8 D2 = pures.D2ADT(kPropane);
  at(kPropane, 1.6, 0);
  EXPECT_EQ(pures.D1ADT(kPropane), D1);
  at(kPropane, 1.6, 1);
  EXPECT_NE(pures.D1ADT(kPropane), D1);
  EXPECT_EQ(pures.D2ADT(kPropane), D2);
}

class PureCacheTest : public PureParameters {
 protected:
  static Vec<bool, 6> request(std::initializer_list<int> entries) {
    Vec<bool, 6> options{};
    for (const int k : entries) options(k) = true;
    return options;
  }
  static I4 ask(R8 T, std::initializer_list<int> entries, int model = kCubic, int first = 1, int last = 5) {
    I4 code = 0;
    SESPC0(T, model, request(entries), first, last, code);
    return code;
  }
};

TEST_F(PureCacheTest, RepeatedRequestIsAHit) {
  ask(300.0, {1, 4, 5});
  pures.ARK(1) = 77.0;
  pures.D1ADT(1) = 77.0;
  ask(300.0, {1, 4, 5});
  EXPECT_EQ(pures.ARK(1), 77.0);
  EXPECT_EQ(pures.D1ADT(1), 77.0);
  ask(301.0, {1});
  EXPECT_NE(pures.ARK(1), 77.0);
  EXPECT_EQ(pures.D1ADT(1), 77.0);  // level 1 has not been asked for
}

TEST_F(PureCacheTest, DerivativesAskedForLaterAreRefreshedByTheirOwnKey) {
  ask(300.0, {1, 4, 5});
  const R8 old = pures.D1ADT(1);
  ask(310.0, {1});
  EXPECT_EQ(pures.D1ADT(1), old);
  ask(310.0, {1, 4});
  const R8 fresh = pures.D1ADT(1);
  EXPECT_NE(fresh, old);
  reset_eos_caches();
  ask(310.0, {1, 4});
  EXPECT_EQ(pures.D1ADT(1), fresh);
}

TEST_F(PureCacheTest, DataChangeRefreshesEveryLevel) {
  ask(300.0, {1, 4, 5});
  pures.D2ADT(1) = 77.0;
  ++setup.generation;
  ask(300.0, {1});
  EXPECT_NE(pures.D2ADT(1), 77.0);
  pures.D2ADT(1) = 77.0;
  ask(300.0, {1}, kCubic, 1, 4);
  EXPECT_NE(pures.D2ADT(1), 77.0);
}

TEST_F(PureCacheTest, ParametersWithoutRoutineAnswerNotAvailableWithoutAMessage) {
  for (const I4 code : {pure::none, pure::steam}) {
    models.MODPUR(kCubic) = code;
    for (int again = 0; again < 2; ++again) EXPECT_EQ(ask(300.0, {1}), status::not_available);
  }
  EXPECT_EQ(ring.count, 0);
  EXPECT_EQ(pures.ARK(1), 0.0);
}

}  // namespace
}  // namespace talix::test
