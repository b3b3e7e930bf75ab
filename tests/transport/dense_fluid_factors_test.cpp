// Mixture factors of the corresponding-states method: DCST, ECSTX and the memory of the last call.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <random>

#include "support/dense_fluid_cases.h"
#include "transport/dense_fluid_terms.h"

namespace talix::test {
namespace {

class DenseFluidFactors : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_dense_fluid_record();
    set_dense_fluid_constants();
  }
};

void expect_same_sums(const DenseFluidMixture& a, const DenseFluidMixture& b) {
  EXPECT_TRUE(same_bits(a.FMIX, b.FMIX));
  EXPECT_TRUE(same_bits(a.HMIX, b.HMIX));
  EXPECT_TRUE(same_bits(a.DFDT, b.DFDT));
  EXPECT_TRUE(same_bits(a.DHDT, b.DHDT));
  EXPECT_TRUE(same_bits(a.MWETA, b.MWETA));
  EXPECT_TRUE(same_bits(a.MWLAM, b.MWLAM));
  EXPECT_TRUE(same_bits(a.ZCMIX, b.ZCMIX));
}

TEST_F(DenseFluidFactors, PureMethaneKeepsThePlainRatios) {
  for (const R4 T : {150.0F, 250.0F, 400.0F}) {
    const DenseCase c = dense_case({{"methane", 1.0F}}, T, 5.0F);
    I4 IERR = 7;
    run_DCST(c, IERR);
    EXPECT_EQ(IERR, 0);
    const R4 zc = c.PC(1) * c.VC(1) / (dense_fluid.RGL * c.TC(1));
    const R4 theta = dense_mixture.F(1) * dense_fluid.TCREF / c.TC(1);
    const R4 phi = dense_mixture.H(1) * zc / (dense_fluid.RHOCREF * dense_fluid.ZCREF * c.VC(1));
    EXPECT_NEAR(theta, 1.0F, 5E-04F);
    EXPECT_NEAR(phi, 1.0F, 5E-04F);
    EXPECT_NEAR(dense_mixture.F(1), c.TC(1) / dense_fluid.TCREF, 1E-03F);
    EXPECT_NEAR(dense_mixture.H(1), dense_fluid.RHOCREF * c.VC(1), 5E-03F);
    EXPECT_NEAR(dense_mixture.MWETA, c.CMW(1), 1E-03F);
    EXPECT_NEAR(dense_mixture.MWLAM, c.CMW(1), 1E-03F);
    EXPECT_FLOAT_EQ(dense_mixture.ZCMIX, zc);
  }
}

TEST_F(DenseFluidFactors, PureFluidHasItsOwnMolarMass) {
  for (const DenseComponent& d : kDenseComponents) {
    run_DCST(dense_case({{d.name, 1.0F}}, 1.2F * d.TC, 0.3F / d.VC));
    EXPECT_NEAR(dense_mixture.MWETA / d.CMW, 1.0F, 1E-05F) << d.name;
    EXPECT_NEAR(dense_mixture.MWLAM / d.CMW, 1.0F, 1E-05F) << d.name;
  }
}

TEST_F(DenseFluidFactors, ComponentWithoutFractionStaysOutOfEverySum) {
  const DenseCase without = dense_case({{"methane", 0.6F}, {"propane", 0.4F}}, 320.0F, 4.0F);
  run_DCST(without);
  const DenseFluidMixture expected = dense_mixture;
  for (const R4 absent : {0.0F, -0.5F, std::numeric_limits<R4>::quiet_NaN()}) {
    for (const int position : {0, 1, 2}) {
      std::vector<DenseShare> shares{{"methane", 0.6F}, {"propane", 0.4F}};
      shares.insert(shares.begin() + position, {"water", absent});
      const DenseCase c = dense_case(shares, 320.0F, 4.0F);
      run_DCST(c);
      expect_same_sums(dense_mixture, expected);
      const int at = position + 1;
      EXPECT_TRUE(same_bits(dense_mixture.F(at), c.TC(at) / dense_fluid.TCREF));
      EXPECT_TRUE(same_bits(dense_mixture.H(at), dense_fluid.RHOCREF * c.VC(at)));
    }
  }
}

// The start values stay in place for a component without a fraction.
TEST_F(DenseFluidFactors, LiquidStartsFromCorrectedRatios) {
  const DenseCase c = dense_case({{"methane", 1.0F}, {"n-hexane", 0.0F}}, 150.0F, 25.0F, true);
  run_DCST(c);
  const double ln_tr = std::log(150.0 / 507.82);
  const double w = 0.300319 - 0.011;
  const double theta = 1.0 + w * (0.090569 - 0.862762 * ln_tr);
  const double phi = 1.0 + w * (0.394901 * (0.5 - 1.023545) - 0.932813 * (0.5 - 0.754639) * ln_tr);
  const double zc = 30.04308 * 0.369549 / (0.08205616 * 507.82);
  EXPECT_NEAR(dense_mixture.F(2), 507.82 / 190.53 * theta, 1E-05);
  EXPECT_NEAR(dense_mixture.H(2), 10.104 * 0.369549 * phi * 0.287046 / zc, 1E-05);
}

TEST_F(DenseFluidFactors, CorrectionOfTheLiquidStartIsAtLeastOneTenth) {
  DenseCase c = dense_case({{"methane", 1.0F}, {"methane", 0.0F}}, 1500.0F, 1.0F, true);
  c.W(2) = 8.0F;
  run_DCST(c);
  const R4 zc = c.PC(2) * c.VC(2) / (dense_fluid.RGL * c.TC(2));
  EXPECT_FLOAT_EQ(dense_mixture.F(2), 0.1F * c.TC(2) / dense_fluid.TCREF);
  c.T = 60.0F;
  run_DCST(c);
  EXPECT_FLOAT_EQ(dense_mixture.H(2), 0.1F * dense_fluid.RHOCREF * c.VC(2) * dense_fluid.ZCREF / zc);
}

TEST_F(DenseFluidFactors, FactorsOfThePassesAreAtLeastOneHundredth) {
  DenseCase c = dense_case({{"methane", 1.0F}}, 400.0F, 0.1F);
  c.W(1) = 8.0F;
  run_DCST(c);
  EXPECT_FLOAT_EQ(dense_mixture.F(1), 0.01F * c.TC(1) / dense_fluid.TCREF);
  c = dense_case({{"methane", 1.0F}}, 60.0F, 40.0F);
  c.W(1) = 8.0F;
  run_DCST(c);
  const R4 zc = c.PC(1) * c.VC(1) / (dense_fluid.RGL * c.TC(1));
  EXPECT_FLOAT_EQ(dense_mixture.H(1), 0.01F * dense_fluid.RHOCREF * dense_fluid.ZCREF * c.VC(1) / zc);
}

TEST_F(DenseFluidFactors, ReducedTemperatureIsHeldBetweenHalfAndTwo) {
  const auto factors_at = [](R4 tr) {
    const DenseComponent& d = dense_component("propane");
    run_DCST(dense_case({{"propane", 1.0F}}, tr * d.TC, 1.0F / d.VC));
    return std::pair{dense_mixture.F(1), dense_mixture.H(1)};
  };
  EXPECT_EQ(factors_at(2.1F), factors_at(5.0F));
  EXPECT_EQ(factors_at(0.45F), factors_at(0.2F));
  EXPECT_NE(factors_at(1.9F), factors_at(2.1F));
  EXPECT_NE(factors_at(0.55F), factors_at(0.45F));
}

TEST_F(DenseFluidFactors, ReducedVolumeIsHeldBetweenHalfAndTwo) {
  const auto factors_at = [](R4 vr) {
    const DenseComponent& d = dense_component("propane");
    run_DCST(dense_case({{"propane", 1.0F}}, 400.0F, 1.0F / (vr * d.VC)));
    return std::pair{dense_mixture.F(1), dense_mixture.H(1)};
  };
  EXPECT_EQ(factors_at(2.2F), factors_at(200.0F));
  EXPECT_EQ(factors_at(0.45F), factors_at(0.3F));
  EXPECT_NE(factors_at(1.8F), factors_at(2.2F));
  EXPECT_NE(factors_at(0.55F), factors_at(0.45F));
}

TEST_F(DenseFluidFactors, SlopesStandStillOutsideTheRangeOfTheShapeFactors) {
  const DenseComponent& d = dense_component("propane");
  run_DCST(dense_case({{"propane", 1.0F}}, 2.5F * d.TC, 0.2F / d.VC));
  EXPECT_NEAR(dense_mixture.DFDT * 2.5F * d.TC, 0.0F, 1E-05F);
  EXPECT_EQ(dense_mixture.DHDT, 0.0F);
  run_DCST(dense_case({{"propane", 1.0F}}, 1.2F * d.TC, 1.0F / d.VC));
  EXPECT_LT(dense_mixture.DFDT, 0.0F);
  EXPECT_NE(dense_mixture.DHDT, 0.0F);
}

// The same numbers as differences of the factors themselves, at constant density, inside the range.
TEST_F(DenseFluidFactors, SlopesAreThoseOfTheFactorsOfAPureFluid) {
  const DenseComponent& d = dense_component("n-butane");
  const R4 T = 1.1F * d.TC;
  const R4 RHO = 1.1F / d.VC;
  const auto at = [&](R4 t) {
    run_DCST(dense_case({{"n-butane", 1.0F}}, t, RHO));
    return dense_mixture;
  };
  const R4 step = 4.0F;
  const DenseFluidMixture low = at(T - step);
  const DenseFluidMixture high = at(T + step);
  const DenseFluidMixture here = at(T);
  EXPECT_NEAR(here.DFDT, (high.FMIX - low.FMIX) / (2.0F * step), 0.02F * std::abs(here.DFDT));
  EXPECT_NEAR(here.DHDT, (high.HMIX - low.HMIX) / (2.0F * step), 0.02F * std::abs(here.DHDT));
}

TEST_F(DenseFluidFactors, FifteenPassesWithoutSettlingAreReported) {
  const DenseCase c = dense_case({{"helium", 0.514986F}, {"n-octane", 0.485014F}}, 124.0F, 1.48936F);
  I4 IERR = 0;
  run_DCST(c, IERR);
  EXPECT_EQ(IERR, 1);
  // Work went on with the factors of the last pass.
  PlainFluid p;
  plain_factors(c, p);
  EXPECT_EQ(p.IERR, 1);
  expect_same_sums(dense_mixture, p.mixture);
  const DenseAnswer a = dense_answer(c);
  EXPECT_TRUE(std::isfinite(a.viscosity) && a.viscosity > 0.0F);
  EXPECT_TRUE(std::isfinite(a.conductivity) && a.conductivity > 0.0F);
}

TEST_F(DenseFluidFactors, NotANumberIsReportedAsNotSettled) {
  I4 IERR = 0;
  run_DCST(dense_case({{"methane", 1.0F}}, std::numeric_limits<R4>::quiet_NaN(), 1.0F), IERR);
  EXPECT_EQ(IERR, 1);
  IERR = 0;
  run_DCST(dense_case({{"methane", 1.0F}}, 300.0F, std::numeric_limits<R4>::quiet_NaN()), IERR);
  EXPECT_EQ(IERR, 1);
  IERR = 0;
  run_DCST(dense_case({{"methane", 0.0F}}, 300.0F, 1.0F), IERR);
  EXPECT_EQ(IERR, 1);
}

TEST_F(DenseFluidFactors, DensityComesBackForTheCallsThatFollow) {
  for (const R4 RHO : {1E-06F, 0.04F, 3.0F, 25.0F}) {
    const R4 RHO0 = run_DCST(dense_case({{"methane", 0.9F}, {"ethane", 0.1F}}, 300.0F, RHO));
    EXPECT_NEAR(RHO0 / RHO, 1.0F, 2E-07F);
  }
}

TEST_F(DenseFluidFactors, DensityMayComeBackInThePlaceOfTheOneGiven) {
  const DenseCase c = dense_case({{"methane", 0.9F}, {"ethane", 0.1F}}, 300.0F, 3.3333333F);
  const R4 expected = run_DCST(c);
  const DenseFluidMixture mixture = dense_mixture;
  reset_dense_fluid_record();
  set_dense_fluid_constants();
  R4 both = c.RHO;
  I4 IERR = 0;
  DCST(logical(false), 1.0F, both, c.T, c.X, both, c.N, c.CMW, c.PC, c.TC, c.VC, c.W, IERR);
  EXPECT_TRUE(same_bits(both, expected));
  EXPECT_TRUE(same_bits(run_DCST(c), expected));
  expect_same_sums(dense_mixture, mixture);
}

TEST_F(DenseFluidFactors, PressureIsNotRead) {
  const DenseCase c = dense_case({{"methane", 0.9F}, {"ethane", 0.1F}}, 300.0F, 3.0F);
  run_DCST(c);
  const DenseFluidMixture expected = dense_mixture;
  for (const R4 P : {-1.0F, 1E+30F, std::numeric_limits<R4>::quiet_NaN()}) {
    dense_call.filled = false;
    R4 RHO0 = 0.0F;
    I4 IERR = 1;
    DCST(logical(false), P, RHO0, c.T, c.X, c.RHO, c.N, c.CMW, c.PC, c.TC, c.VC, c.W, IERR);
    expect_same_sums(dense_mixture, expected);
  }
}

// The memory of the last call.

TEST_F(DenseFluidFactors, SecondCallWithTheSameBitsIsServedFromTheFirst) {
  const DenseCase c = dense_case({{"methane", 0.9F}, {"ethane", 0.1F}}, 300.0F, 3.0F);
  I4 IERR = 0;
  const R4 first = run_DCST(c, IERR);
  const DenseFluidMixture mixture = dense_mixture;
  dense_call.IERR = 7;  // a mark that only the memory can hand out
  dense_mixture = DenseFluidMixture{};
  EXPECT_TRUE(same_bits(run_DCST(c, IERR), first));
  EXPECT_EQ(IERR, 7);
  expect_same_sums(dense_mixture, mixture);
  for (int i = 1; i <= c.N; ++i) {
    EXPECT_TRUE(same_bits(dense_mixture.F(i), mixture.F(i)));
    EXPECT_TRUE(same_bits(dense_mixture.H(i), mixture.H(i)));
  }
}

TEST_F(DenseFluidFactors, EveryInputBelongsToTheKey) {
  const DenseCase base = dense_case({{"methane", 0.7F}, {"propane", 0.2F}, {"nitrogen", 0.1F}}, 300.0F, 3.0F);
  const auto next = [](R4& value) { value = std::nextafter(value, 1E+30F); };
  const std::vector<std::function<void(DenseCase&)>> changes{
      [](DenseCase& c) { c.liquid = true; }, [](DenseCase& c) { c.N = 2; },
      [&](DenseCase& c) { next(c.T); },      [&](DenseCase& c) { next(c.RHO); },
      [&](DenseCase& c) { next(c.X(3)); },   [&](DenseCase& c) { next(c.CMW(2)); },
      [&](DenseCase& c) { next(c.PC(3)); },  [&](DenseCase& c) { next(c.TC(1)); },
      [&](DenseCase& c) { next(c.VC(2)); },  [&](DenseCase& c) { next(c.W(3)); },
  };
  I4 IERR = 0;
  for (std::size_t i = 0; i < changes.size(); ++i) {
    DenseCase other = base;
    changes[i](other);
    run_DCST(base, IERR);
    dense_call.IERR = 7;
    run_DCST(other, IERR);
    EXPECT_NE(IERR, 7) << "change " << i;
    dense_call.IERR = 7;
    run_DCST(base, IERR);
    EXPECT_NE(IERR, 7) << "change " << i << ", back";
    EXPECT_EQ(differing_bits(other), 0) << "change " << i;
    EXPECT_EQ(differing_bits(base), 0) << "change " << i;
  }
  run_DCST(base, IERR);
  dense_call.IERR = 7;
  next(dense_fluid.A(2));
  run_DCST(base, IERR);
  EXPECT_NE(IERR, 7);
  EXPECT_EQ(differing_bits(base), 0);
}

TEST_F(DenseFluidFactors, ResetForgetsTheLastCall) {
  const DenseCase c = dense_case({{"methane", 1.0F}}, 300.0F, 3.0F);
  I4 IERR = 0;
  run_DCST(c, IERR);
  dense_call.IERR = 7;
  reset_dense_fluid_record();
  set_dense_fluid_constants();
  run_DCST(c, IERR);
  EXPECT_EQ(IERR, 0);
}

// The plain form.

DenseCase random_case(std::mt19937& random, int most) {
  std::vector<DenseShare> shares;
  const int n = 1 + static_cast<int>(random() % static_cast<unsigned>(most));
  R4 total = 0.0F;
  for (int i = 0; i < n; ++i) {
    const R4 x = i > 0 && random() % 5 == 0 ? 0.0F : static_cast<R4>(random() % 1000 + 1);
    shares.push_back({kDenseComponents[random() % kDenseComponents.size()].name, x});
    total += x;
  }
  for (DenseShare& share : shares) share.x /= total;
  const R4 T = 80.0F + static_cast<R4>(random() % 6000) / 10.0F;
  const R4 RHO = std::pow(10.0F, static_cast<R4>(random() % 4700) / 1000.0F - 3.5F);
  DenseCase c = dense_case(shares, T, RHO, random() % 2 == 0);
  for (int i = 1; i <= c.N; ++i) {
    if (random() % 2 == 0) continue;
    const R4 coefficients[] = {33000.0F, 80000.0F, 2087.0F, 42000.0F, 992.0F};
    c.ICP(i) = 7;
    for (int k = 0; k < 5; ++k) c.CPC(k + 1, i) = coefficients[k];
  }
  return c;
}

TEST_F(DenseFluidFactors, AllResultsHaveTheBitsOfThePlainForm) {
  std::mt19937 random(20251121);
  for (int k = 0; k < 3000; ++k) ASSERT_EQ(differing_bits(random_case(random, 20)), 0) << "case " << k;
}

TEST_F(DenseFluidFactors, FiftyComponentsHaveTheBitsOfThePlainForm) {
  std::mt19937 random(50);
  std::vector<DenseShare> shares;
  for (std::size_t i = 0; i < 50; ++i)
    shares.push_back({kDenseComponents[i % kDenseComponents.size()].name, 0.02F});
  EXPECT_EQ(differing_bits(dense_case(shares, 350.0F, 2.0F)), 0);
  for (int k = 0; k < 50; ++k) ASSERT_EQ(differing_bits(random_case(random, 50)), 0) << "case " << k;
}

// Shared terms.

TEST_F(DenseFluidFactors, ArgumentOfTheExponentialIsBounded) {
  EXPECT_EQ(bounded_exp(200.0F), std::exp(75.0F));
  EXPECT_EQ(bounded_exp(75.0F), std::exp(75.0F));
  EXPECT_EQ(bounded_exp(-200.0F), std::exp(-75.0F));
  EXPECT_EQ(bounded_exp(1.5F), std::exp(1.5F));
  EXPECT_EQ(bounded_exp(std::numeric_limits<R4>::infinity()), std::exp(75.0F));
  EXPECT_TRUE(std::isnan(bounded_exp(std::numeric_limits<R4>::quiet_NaN())));
}

TEST_F(DenseFluidFactors, CollisionIntegralHasItsPublishedValues) {
  // Lennard-Jones 12-6 integrals, P. D. Neufeld et al., J. Chem. Phys. 57 (1972) 1100.
  EXPECT_NEAR(collision_integral(1.0F), 1.587F, 0.01F);
  EXPECT_NEAR(collision_integral(2.0F), 1.175F, 0.01F);
  EXPECT_NEAR(collision_integral(10.0F), 0.8242F, 0.005F);
}

}  // namespace
}  // namespace talix::test
