// The two conductivity entries and their mixture methods.
#include "transport/stc_conductivity.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <limits>
#include <utility>

#include "engine/codes.h"
#include "engine/model_record.h"
#include "support/liquid_fixture.h"
#include "transport/dense_fluid_group.h"
#include "transport/phase_state.h"
#include "transport/stc_liquid.h"
#include "transport/stc_vapour.h"
#include "transport/svi_vapour.h"

namespace talix {
namespace {

using test::composition;
using test::kDecane;
using test::kHexane;
using test::kMethane;

const Vec<I4, kMaxComponents> kIndices{};

struct Answer {
  R8 lambda = -7.0, derivative = -7.0;
  I4 status = 0;
};

Answer liquid(R8 T, R8 P, const CompVec& x, I4 NC, I4 METHOD = method::mixture,
              I4 MODE = transport_request::value) {
  Answer a;
  STCLM1(T, P, x, NC, kIndices, MODE, METHOD, a.lambda, a.derivative, a.status);
  return a;
}

Answer vapour(R8 T, R8 P, const CompVec& x, I4 NC, I4 METHOD = method::mixture,
              I4 MODE = transport_request::value) {
  Answer a;
  STCVM1(T, P, x, NC, kIndices, MODE, METHOD, a.lambda, a.derivative, a.status);
  return a;
}

CompVec fractions(std::initializer_list<std::pair<int, R8>> entries) {
  CompVec x{};
  for (const auto& [i, fraction] : entries) x(i) = fraction;
  return x;
}

// Conductivity of MEMBERS as a group at CORF times the density of the phase.
R8 group_value(bool is_liquid, R8 T, R8 P, const CompVec& x, I4 NC, std::initializer_list<int> members,
               R8 CORF) {
  const PhaseState state =
      transport_phase(is_liquid ? phase::liquid : phase::vapour, T, P, x, NC, kIndices, false);
  EXPECT_EQ(state.status, status::ok);
  DenseFluidGroup group;
  clear_group(group);
  for (const int i : members) add_to_group(group, i, x(i));
  return group_conductivity(group, is_liquid, T, P, 0.001 / state.V * CORF);
}

class Conductivity : public ::testing::Test {
 protected:
  void SetUp() override { test::reset_liquid_fixture(); }
  static void unload() {
    for (int slot = 1; slot <= models.count; ++slot) models.MODEL(slot) = model::srk;
  }
  // A conductivity of A at any temperature in use.
  static void set_constant(int i, R8 A) {
    comp.ITCL(i) = 7;
    comp.TCL(i, 1) = A;
    comp.TCL(i, 6) = 100.0;
    comp.TCL(i, 7) = 500.0;
  }
  static void set_livithec() {
    const R8 sets[2][5] = {{1.0, 60.0, 2.0, 1.0, 0.9}, {1.1, 150.0, 4.0, 1.3, 1.5}};
    for (int i = 1; i <= 2; ++i) {
      comp.ILVT(i) = 1;
      for (int k = 1; k <= 5; ++k) comp.PARL2(i, k) = sets[i - 1][k - 1];
    }
    comp.ICS(1) = " 1P ";
    comp.RMOLW(2) = 86.175;
  }
};

// ---- the entries

TEST_F(Conductivity, TemperatureAndPressureMustBePositive) {
  const R8 nan = std::numeric_limits<R8>::quiet_NaN();
  const R8 states[][2] = {{0.0, 1e5}, {-1.0, 1e5}, {300.0, 0.0}, {300.0, -1e5}, {nan, 1e5}, {300.0, nan}};
  for (const auto& s : states) {
    EXPECT_EQ(liquid(s[0], s[1], composition({1.0}), 1).status, status::input);
    EXPECT_EQ(vapour(s[0], s[1], composition({1.0}), 1).status, status::input);
  }
  EXPECT_EQ(liquid(300.0, 1e5, composition({0.0}), 1).status, status::input);
  EXPECT_EQ(vapour(300.0, 1e5, composition({0.0}), 1).status, status::input);
}

TEST_F(Conductivity, TheDerivativeIsNotAvailableAndTheValueStands) {
  const CompVec x = composition({1.0});
  const Answer l = liquid(150.0, 30e5, x, 1, method::mixture, transport_request::both);
  EXPECT_EQ(l.status, status::not_available);
  EXPECT_EQ(l.lambda, liquid(150.0, 30e5, x, 1).lambda);
  EXPECT_EQ(l.derivative, 0.0);
  const Answer v = vapour(300.0, 1e5, x, 1, method::mixture, transport_request::both);
  EXPECT_EQ(v.status, status::not_available);
  EXPECT_EQ(v.lambda, vapour(300.0, 1e5, x, 1).lambda);
  EXPECT_EQ(v.derivative, -7.0);
  const Answer l2 = liquid(150.0, 30e5, x, 1, method::mixture, transport_request::derivative);
  EXPECT_EQ(l2.status, status::not_available);
  EXPECT_EQ(l2.lambda, -7.0);
  EXPECT_EQ(l2.derivative, 0.0);
  const Answer v2 = vapour(300.0, 1e5, x, 1, method::mixture, transport_request::derivative);
  EXPECT_EQ(v2.status, status::not_available);
  EXPECT_EQ(v2.lambda, -7.0);
  EXPECT_EQ(v2.derivative, -7.0);
}

TEST_F(Conductivity, OtherMethodsAndModesAreNotAvailable) {
  const CompVec x = composition({1.0});
  const Answer l = liquid(150.0, 30e5, x, 1, method::thodos_wilke_dean);
  EXPECT_EQ(l.status, status::not_available);
  EXPECT_EQ(l.lambda, 0.0);
  const Answer v = vapour(300.0, 1e5, x, 1, method::livithec);
  EXPECT_EQ(v.status, status::not_available);
  EXPECT_EQ(v.lambda, -7.0);
  EXPECT_EQ(liquid(150.0, 30e5, x, 1, method::mixture, 0).status, status::not_available);
  EXPECT_EQ(vapour(300.0, 1e5, x, 1, method::mixture, 4).status, status::not_available);
}

TEST_F(Conductivity, AFailedLiquidMethodEndsTheCallWithZero) {
  const Answer a = liquid(300.0, 1e5, composition({1.0}), 1, method::livithec, transport_request::both);
  EXPECT_EQ(a.status, status::unknown);
  EXPECT_EQ(a.lambda, 0.0);
  EXPECT_EQ(a.derivative, -7.0);
}

TEST_F(Conductivity, TheCompositionIsNormalised) {
  set_livithec();
  EXPECT_NEAR(liquid(300.0, 50e5, composition({3.0, 7.0}), 2, method::livithec).lambda,
              liquid(300.0, 50e5, composition({0.3, 0.7}), 2, method::livithec).lambda, 1e-16);
}

// ---- corresponding states of liquids

TEST_F(Conductivity, CorrespondingStatesOfLiquids) {
  set_livithec();
  EXPECT_NEAR(liquid(300.0, 50e5, composition({0.3, 0.7}), 2, method::livithec).lambda, 0.03278820138990609,
              1e-14);
  comp.ICS(1) = " 3P ";
  comp.RMOLW(1) = 44.096;
  EXPECT_NEAR(liquid(300.0, 50e5, composition({0.3, 0.7}), 2, method::livithec).lambda, 0.02870499038132498,
              1e-14);
}

TEST_F(Conductivity, CorrespondingStatesNeedASetOfEveryComponent) {
  set_livithec();
  comp.ILVT(2) = 0;
  EXPECT_EQ(liquid(300.0, 50e5, composition({1.0, 0.0}), 2, method::livithec).status, status::unknown);
}

TEST_F(Conductivity, CorrespondingStatesBeyondTheirRangeGiveNoNegativeConductivity) {
  set_livithec();
  const Answer hot = liquid(1000.0, 1e5, composition({1.0}), 1, method::livithec);
  EXPECT_EQ(hot.status, status::range);
  EXPECT_EQ(hot.lambda, 0.0);
}

// ---- vapour

TEST_F(Conductivity, EuckenFormFollowsFromViscosityAndHeatCapacity) {
  const CompVec x = composition({0.7, 0.3});
  R8 eta = 0.0;
  R8 deta = 0.0;
  I4 nfail = 0;
  SVVIM1(300.0, 10e5, x, 2, kIndices, transport_request::value, method::thodos_wilke_dean, eta, deta, nfail);
  ASSERT_EQ(nfail, status::ok);
  const R8 cp = transport_phase(phase::vapour, 300.0, 10e5, x, 2, kIndices, true).CP;
  const Answer a = vapour(300.0, 10e5, x, 2, method::thodos_wilke_dean);
  EXPECT_EQ(a.status, status::ok);
  EXPECT_NEAR(a.lambda, eta * (widen(1.15F) * cp + widen(16.564F)) / (0.7 * 16.043 + 0.3 * 30.07), 1e-15);
}

TEST_F(Conductivity, EuckenFormIsThatOfAnIdealGasAtLowPressure) {
  // 300 K, methane: the heat capacity of the fixture's polynomial by hand.
  const R8 cp = 19.25 + 300.0 * (5.213E-2 + 300.0 * (1.197E-5 - 300.0 * 1.132E-8));
  EXPECT_NEAR(transport_phase(phase::vapour, 300.0, 1.0, composition({1.0}), 1, kIndices, true).CP, cp, 1e-4);
  const R8 lambda = vapour(300.0, 1e5, composition({1.0}), 1, method::thodos_wilke_dean).lambda;
  EXPECT_GT(lambda, 0.030);
  EXPECT_LT(lambda, 0.045);
}

TEST_F(Conductivity, EuckenFormStatuses) {
  // Cold and compressed, the phase found is a liquid.
  const Answer a = vapour(120.0, 50e5, composition({1.0}), 1, method::thodos_wilke_dean);
  EXPECT_EQ(a.status, status::no_root);
  EXPECT_EQ(a.lambda, 0.0);
  EXPECT_EQ(vapour(0.5, 1e5, composition({1.0}), 1, method::thodos_wilke_dean).status,
            status::no_equation_of_state);
  unload();
  EXPECT_EQ(vapour(300.0, 1e5, composition({1.0}), 1, method::thodos_wilke_dean).status,
            status::no_equation_of_state);
}

TEST_F(Conductivity, VapourByCorrespondingStatesIsTheGroupOfAllComponents) {
  const CompVec x = composition({0.7, 0.2, 0.1});
  for (const R8 P : {1e5, 20e5}) {
    const Answer a = vapour(300.0, P, x, 3);
    EXPECT_EQ(a.status, status::ok);
    EXPECT_NEAR(a.lambda / group_value(false, 300.0, P, x, 3, {1, 2, 3}, 1.0), 1.0, 1e-6);
  }
  const R8 methane = vapour(300.0, 1e5, composition({1.0}), 1).lambda;
  EXPECT_GT(methane, 0.030);
  EXPECT_LT(methane, 0.040);
}

TEST_F(Conductivity, VapourByCorrespondingStatesLeavesTracesOut) {
  const R8 methane = vapour(300.0, 1e5, composition({1.0}), 1).lambda;
  R8 lambda = 0.0;
  I4 nfail = 0;
  STCTR0(composition({1.0, 0.9e-6}), 1e5, 300.0, kIndices, 2, lambda, nfail);
  EXPECT_EQ(nfail, status::ok);
  EXPECT_NEAR(lambda / methane, 1.0, 1e-6);
  STCTR0(composition({1e-7}), 1e5, 300.0, kIndices, 1, lambda, nfail);
  EXPECT_EQ(nfail, status::input);
  EXPECT_EQ(lambda, 0.0);
}

TEST_F(Conductivity, VapourByCorrespondingStatesTakesOnePascalForAPressureNotAboveZero) {
  R8 zero = 0.0;
  R8 one = 0.0;
  I4 nfail = 0;
  STCTR0(composition({1.0}), 0.0, 300.0, kIndices, 1, zero, nfail);
  EXPECT_EQ(nfail, status::ok);
  STCTR0(composition({1.0}), 1.0, 300.0, kIndices, 1, one, nfail);
  EXPECT_EQ(zero, one);
}

TEST_F(Conductivity, VapourByCorrespondingStatesNeedsTheModel) {
  unload();
  const Answer a = vapour(300.0, 1e5, composition({1.0}), 1);
  EXPECT_EQ(a.status, status::no_equation_of_state);
  EXPECT_EQ(a.lambda, 0.0);
}

// ---- liquid by the combined method

TEST_F(Conductivity, AllLightComponentsAreTheGroupAlone) {
  const CompVec x = composition({0.3, 0.3, 0.4});
  const Answer a = liquid(200.0, 30e5, x, 3);
  EXPECT_EQ(a.status, status::ok);
  EXPECT_NEAR(a.lambda / group_value(true, 200.0, 30e5, x, 3, {1, 2, 3}, 1.0), 1.0, 1e-6);
  EXPECT_GT(a.lambda, 0.08);
  EXPECT_LT(a.lambda, 0.25);
}

TEST_F(Conductivity, WhereBothRootsExistTheLiquidOneCounts) {
  // Saturated propane at 300 K: 0.094 W/(m K), its vapour 0.021 W/(m K).
  EXPECT_NEAR(liquid(300.0, 9.5e5, fractions({{test::kPropane, 1.0}}), 3).lambda, 0.094, 0.015);
}

TEST_F(Conductivity, AMixtureOfOneIsThePureComponent) {
  set_constant(kHexane, 0.12);
  for (const R8 P : {1e5, 100e5}) {
    R8 pure = 0.0;
    I4 nfail = 0;
    STCCM1(300.0, P, kHexane, pure, nfail);
    EXPECT_NEAR(liquid(300.0, P, fractions({{kHexane, 1.0}}), 10).lambda, pure, 1e-15);
    EXPECT_NEAR(liquid(300.0, P, fractions({{kHexane, 1.0}, {kMethane, 1e-9}}), 10).lambda, pure, 1e-9);
  }
}

TEST_F(Conductivity, TheRuleOfLiRunsOverOrderedPairs) {
  set_constant(kDecane, 0.20);
  set_constant(kHexane, 0.10);
  const R8 v4 = 0.25 * 142.285 / 0.734;
  const R8 v10 = 0.75 * 86.175 / 0.664;
  const R8 f = v4 / (v4 + v10);
  const R8 expected = f * f * 0.20 + (1.0 - f) * (1.0 - f) * 0.10 + 2.0 * f * (1.0 - f) * 2.0 / (5.0 + 10.0);
  EXPECT_NEAR(liquid(300.0, 1e5, fractions({{kDecane, 0.25}, {kHexane, 0.75}}), 10).lambda, expected, 1e-14);
}

TEST_F(Conductivity, TheGroupIsOneMoreComponentOfTheRule) {
  set_constant(kDecane, 0.15);
  const CompVec x = composition({0.2, 0.1, 0.0, 0.7});
  const R8 light = 0.2 * 16.043 / 0.30 + 0.1 * 30.07 / 0.3562;
  const R8 all = light + 0.7 * 142.285 / 0.734;
  const R8 k = group_value(true, 320.0, 30e5, x, 4, {1, 2}, 0.3 * all / light);
  const R8 f = light / all;
  const R8 expected = f * f * k + (1.0 - f) * (1.0 - f) * 0.15 + 4.0 * f * (1.0 - f) / (1.0 / k + 1.0 / 0.15);
  EXPECT_NEAR(liquid(320.0, 30e5, x, 4).lambda / expected, 1.0, 1e-6);
}

TEST_F(Conductivity, AComponentWithoutDataJoinsTheGroup) {
  const CompVec x = fractions({{kMethane, 0.2}, {kDecane, 0.8}});
  EXPECT_NEAR(liquid(320.0, 50e5, x, 4).lambda / group_value(true, 320.0, 50e5, x, 4, {1, 4}, 1.0), 1.0,
              1e-6);
}

TEST_F(Conductivity, TracesWithoutAValueStayOut) {
  set_constant(kDecane, 0.15);
  EXPECT_NEAR(liquid(320.0, 10e5, fractions({{kMethane, 0.9e-6}, {kDecane, 1.0}}), 4).lambda / 0.15, 1.0,
              2e-6);
  // A trace of methane only takes its part of the volume away from decane.
  const R8 f = 142.285 / 0.734 / (142.285 / 0.734 + 0.9e-6 * 16.043 / 0.30);
  R8 lambda = -7.0;
  I4 nfail = 0;
  STCCM0(fractions({{kMethane, 0.9e-6}, {kDecane, 1.0}}), 10e5, 320.0, kIndices, 4, lambda, nfail);
  EXPECT_NEAR(lambda, f * f * 0.15, 1e-15);
  STCCM0(composition({1e-7}), 30e5, 200.0, kIndices, 1, lambda, nfail);
  EXPECT_EQ(nfail, status::range);
  EXPECT_EQ(lambda, 0.0);
}

TEST_F(Conductivity, TheCombinedMethodNeedsTheEquationOfState) {
  EXPECT_EQ(liquid(0.5, 30e5, composition({1.0}), 1).status, status::input);
  unload();
  const Answer a = liquid(200.0, 30e5, composition({1.0}), 1);
  EXPECT_EQ(a.status, status::no_equation_of_state);
  EXPECT_EQ(a.lambda, 0.0);
}

TEST_F(Conductivity, TheCombinedMethodTakesOnePascalForAPressureNotAboveZero) {
  set_constant(kDecane, 0.15);
  R8 lambda = 0.0;
  I4 nfail = 0;
  STCCM0(fractions({{kDecane, 1.0}}), -1.0, 320.0, kIndices, 4, lambda, nfail);
  EXPECT_EQ(nfail, status::ok);
  EXPECT_NEAR(lambda, 0.15, 1e-15);
}

}  // namespace
}  // namespace talix
