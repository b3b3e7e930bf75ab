// Fit of the pair parameters of the A-excess rule: SSMMR7.
#include "eos/ssm_fit_a_excess.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "database/component_record.h"
#include "database/pair_record.h"
#include "engine/codes.h"
#include "engine/model_record.h"
#include "liquid/snl_nrtl.h"
#include "support/cubic_family.h"
#include "support/eos_fixture.h"

namespace talix::test {
namespace {

constexpr R8 kT = 298.15;
constexpr R8 kP = 2E6;
// Butane, hexane and two heavier ones: liquids at this state.
constexpr int kFirst = kButane;
constexpr int kLast = kButane + 3;

class FitAExcess : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_cubic_family();
    slot_ = load_model(model::vardo3);
  }
  R8 residual_gibbs(const std::vector<R8>& x) const {
    Call call;
    call.composition(x);
    call.args.MODEL = slot_;
    call.args.T = kT;
    call.args.P = kP;
    call.args.IPHASE = phase::liquid;
    call.args.KROOT = root_option::real_only;
    call.args.IHTYPE = thermal::residual;
    call.args.LTHERM = true;
    call.run();
    EXPECT_EQ(call.args.ICODE, status::ok);
    return call.args.H - call.args.S;
  }
  static std::vector<R8> half(int i, int j, int n) {
    std::vector<R8> x(static_cast<std::size_t>(n), 0.0);
    x[static_cast<std::size_t>(i - 1)] += 0.5;
    x[static_cast<std::size_t>(j - 1)] += 0.5;
    return x;
  }
  static R8 excess(int i, int j, int n) {
    CompVec x{};
    x(i) = x(j) = 0.5;
    ActivityOptions value{};
    value(1) = true;
    ExcessGibbs energy{};
    SNLAC0(kT, x, energy, 1, n, value);
    return energy.GE;
  }
  I4 slot_ = 0;
};

TEST_F(FitAExcess, EveryPairMeetsItsTarget) {
  constexpr int n = kLast;
  I4 code = 0;
  SSMMR7(kFirst, kLast, kT, kP, code);
  ASSERT_EQ(code, status::ok);
  for (int i = kFirst; i <= n; ++i) {
    for (int j = i + 1; j <= n; ++j) {
      const R8 target =
          0.5 * residual_gibbs(half(i, i, n)) + 0.5 * residual_gibbs(half(j, j, n)) + excess(i, j, n);
      EXPECT_NEAR(residual_gibbs(half(i, j, n)), target, 1E-9) << i << " " << j;
      EXPECT_EQ(pairs.BICWS(i, j), pairs.BICWS(j, i));
      EXPECT_NE(pairs.BICWS(i, j), 0.0);
    }
  }
}

TEST_F(FitAExcess, TheFitDoesNotDependOnWhatWasThereBefore) {
  I4 code = 0;
  SSMMR7(kFirst, kLast, kT, kP, code);
  ASSERT_EQ(code, status::ok);
  const R8 first = pairs.BICWS(kFirst, kLast);
  pairs.BICWS(kFirst, kLast) = pairs.BICWS(kLast, kFirst) = 0.9;
  SSMMR7(kFirst, kLast, kT, kP, code);
  EXPECT_EQ(pairs.BICWS(kFirst, kLast), first);
}

TEST_F(FitAExcess, AComponentThatIsNoLiquidGivesItsRootTypeAndAllZero) {
  // Butane at 1 bar and 400 K has no liquid root, below its critical temperature.
  I4 code = 0;
  SSMMR7(kFirst, kLast, 400.0, 1.013E5, code);
  EXPECT_EQ(code, phase::vapour);
  for (int i = kFirst; i <= kLast; ++i)
    for (int j = kFirst; j <= kLast; ++j) EXPECT_EQ(pairs.BICWS(i, j), 0.0);
}

TEST_F(FitAExcess, WithoutTheModelNothingIsFitted) {
  models = {};
  I4 code = 0;
  SSMMR7(1, 3, kT, kP, code);
  EXPECT_EQ(code, status::model_error);
}

TEST_F(FitAExcess, AStateOutOfReachGivesTheStatusOfTheCall) {
  I4 code = 0;
  SSMMR7(1, 3, 0.0, kP, code);
  EXPECT_EQ(code, status::input);
}

TEST_F(FitAExcess, AnExcessEnergyOutOfReachEndsTheSearch) {
  pairs.TAUT0(1, 2) = pairs.TAUT0(2, 1) = 1E6;
  pairs.ALFA(1, 2) = pairs.ALFA(2, 1) = 0.0;
  update_pairs();
  I4 code = 0;
  SSMMR7(1, 2, kT, kP, code);
  EXPECT_NE(code, status::ok);
}

}  // namespace
}  // namespace talix::test
