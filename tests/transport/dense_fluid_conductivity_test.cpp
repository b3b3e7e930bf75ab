// Conductivity of the corresponding-states method: TRCOND, THERMC; and what the method gives against published gases.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <map>
#include <string>

#include "support/dense_fluid_cases.h"
#include "support/golden.h"

namespace talix::test {
namespace {

class DenseFluidConductivity : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_dense_fluid_record();
    set_dense_fluid_constants();
  }
};

R4 conductivity(const DenseCase& c) { return dense_answer(c).conductivity; }

DenseCase pure(std::string_view name, R4 T, R4 RHO) { return dense_case({{name, 1.0F}}, T, RHO); }

// The translational part for the reference fluid itself, in 64-bit reals.
TEST_F(DenseFluidConductivity, TranslationalPartFollowsItsFormula) {
  dense_mixture.FMIX = dense_mixture.HMIX = 1.0F;
  dense_mixture.MWLAM = dense_fluid.MWREF;
  dense_mixture.ZCMIX = dense_fluid.ZCREF;
  for (const double T : {110.0, 200.0, 400.0}) {
    for (const double RHO : {0.01, 5.0, 24.0}) {
      const double d = 0.001 * RHO * 16.04;
      const double ts = T / 148.6;
      const double omega = 1.16145 / std::pow(ts, 0.14874) + 0.52487 * std::exp(-0.7732 * ts) +
                           2.16178 * std::exp(-2.43787 * ts);
      const double l = 1.12 - std::log(T / 168.0);
      const double t0 = -7.14591312 + 81.3209381 / T;
      const double t2 = 12.4215708 - 950.983093 / std::pow(T, 1.5);
      const double t3 = 0.493518144 + (41.4513893 + 590.887024 / T) / T;
      const double expected =
          (-0.252762914 + 0.334328592 * l * l) * d + 0.194345042 * 7.67035 * std::sqrt(T) / omega +
          std::exp(t0 + t2 * std::pow(d, 0.1) + t3 * (d / 0.1628 - 1.0) * std::sqrt(d)) - std::exp(t0);
      EXPECT_NEAR(static_cast<double>(TRCOND(static_cast<R4>(RHO), static_cast<R4>(T))) / expected, 1.0,
                  2E-05);
    }
  }
}

TEST_F(DenseFluidConductivity, CorrectionActsOnTheWholeWithAPowerOfThreeHalves) {
  run_DCST(pure("propane", 400.0F, 5.0F));
  const R4 T0 = 400.0F / dense_mixture.FMIX;
  dense_mixture.DFDT = 0.0F;
  dense_mixture.ZCMIX = dense_fluid.ZCREF;
  const R4 plain = TRCOND(5.0F, 400.0F);
  dense_mixture.ZCMIX = 0.26F;
  const R4 ratio = dense_fluid.ZCREF / 0.26F;
  EXPECT_NEAR(TRCOND(5.0F, 400.0F) / plain, std::pow(ratio, 1.5F), 1E-06F);
  dense_mixture.DFDT = -0.001F;
  EXPECT_NEAR(TRCOND(5.0F, 400.0F) / plain, std::pow((1.0F + 0.001F * T0) * ratio, 1.5F), 1E-06F);
  dense_mixture.DFDT = 0.001F;
  EXPECT_NEAR(TRCOND(5.0F, 400.0F) / plain, std::pow(ratio, 1.5F), 1E-06F);
}

// Forms of the ideal-gas heat capacity: a conductivity with the form against one with its value.

TEST_F(DenseFluidConductivity, HyperbolicFormWithoutItsTermsIsItsFirstCoefficient) {
  DenseCase c = pure("ethane", 350.0F, 1.0F);
  c.CPC(1, 1) = 52.0F;
  const R4 expected = conductivity(c);
  c.ICP(1) = 7;
  c.CPC(1, 1) = 52000.0F;
  c.CPC(2, 1) = 1E+06F;  // belongs to the third coefficient, which is 0
  c.CPC(4, 1) = 1E+06F;  // belongs to the fifth
  EXPECT_TRUE(same_bits(conductivity(c), expected));
}

TEST_F(DenseFluidConductivity, EachHyperbolicTermStandsOnItsOwn) {
  const double T = 350.0;
  const double c1 = 40300.0, c2 = 134000.0, c3 = 1655.0, c4 = 73200.0, c5 = 752.0;
  const double sine = c2 * std::pow(c3 / T / std::sinh(c3 / T), 2);
  const double cosine = c4 * std::pow(c5 / T / std::cosh(c5 / T), 2);
  for (const bool with_sine : {true, false}) {
    for (const bool with_cosine : {true, false}) {
      DenseCase c = pure("ethane", 350.0F, 1.0F);
      c.CPC(1, 1) = static_cast<R4>((c1 + (with_sine ? sine : 0.0) + (with_cosine ? cosine : 0.0)) / 1000.0);
      const R4 expected = conductivity(c);
      c.ICP(1) = 7;
      c.CPC(1, 1) = static_cast<R4>(c1);
      c.CPC(2, 1) = static_cast<R4>(c2);
      c.CPC(3, 1) = with_sine ? static_cast<R4>(c3) : 0.0F;
      c.CPC(4, 1) = static_cast<R4>(c4);
      c.CPC(5, 1) = with_cosine ? static_cast<R4>(c5) : 0.0F;
      EXPECT_NEAR(conductivity(c) / expected, 1.0F, 1E-06F);
    }
  }
}

TEST_F(DenseFluidConductivity, HyperbolicTermsFadeInTheCold) {
  DenseCase c = pure("hydrogen", 15.0F, 0.1F);
  c.ICP(1) = 7;
  const R4 coefficients[] = {27617.0F, 9560.0F, 2466.0F, 3760.0F, 567.6F};
  for (int k = 0; k < 5; ++k) c.CPC(k + 1, 1) = coefficients[k];
  EXPECT_TRUE(std::isfinite(conductivity(c)));
  EXPECT_GT(conductivity(c), 0.0F);
}

TEST_F(DenseFluidConductivity, PolynomialReachesFromTheSixthPowerDownToTheInverseSquare) {
  const double T = 350.0;
  const double q[] = {20.0, 0.05, 1E-05, -2E-08, 3E-11, -4E-14, 500.0, -3E+05};
  double cp = q[6] / T + q[7] / (T * T);
  for (int k = 5; k >= 0; --k) cp += q[k] * std::pow(T, k);
  for (const I4 form : {0, 1, 6, 8}) {
    DenseCase c = pure("ethane", 350.0F, 1.0F);
    c.CPC(1, 1) = static_cast<R4>(cp);
    const R4 expected = conductivity(c);
    c.ICP(1) = form;
    for (int k = 0; k < 8; ++k) c.CPC(k + 1, 1) = static_cast<R4>(q[k]);
    EXPECT_NEAR(conductivity(c) / expected, 1.0F, 1E-06F);
  }
}

// A heat capacity without any internal part, to the last bit.
R4 monatomic() {
  R4 cp = 20.78F;
  while (cp / 4.184F < 4.968F) cp = std::nextafter(cp, 30.0F);
  return cp;
}

TEST_F(DenseFluidConductivity, GasesWithoutInternalDegreesOfFreedomConductByTranslation) {
  DenseCase c = dense_case({{"argon", 0.5F}, {"helium", 0.5F}}, 300.0F, 0.5F);
  ASSERT_EQ(monatomic() / 4.184F, 4.968F);
  c.CPC(1, 1) = c.CPC(1, 2) = monatomic();
  const DenseAnswer a = dense_answer(c);
  EXPECT_TRUE(same_bits(a.conductivity, TRCOND(a.RHO0, c.T)));
  DenseCase one = pure("argon", 300.0F, 0.5F);
  one.CPC(1, 1) = monatomic();
  const DenseAnswer b = dense_answer(one);
  EXPECT_TRUE(same_bits(b.conductivity, TRCOND(b.RHO0, one.T)));
}

TEST_F(DenseFluidConductivity, OneGasWithoutInternalDegreesOfFreedomLeavesThoseOfTheOthers) {
  DenseCase c = dense_case({{"argon", 0.3F}, {"methane", 0.3F}, {"helium", 0.4F}}, 300.0F, 0.5F);
  c.CPC(1, 1) = c.CPC(1, 3) = monatomic();
  const DenseAnswer a = dense_answer(c);
  EXPECT_TRUE(std::isfinite(a.conductivity));
  EXPECT_GT(a.conductivity, TRCOND(a.RHO0, c.T));
  // Their usual heat capacity of 20.786 gives the same to rounding.
  c.CPC(1, 1) = c.CPC(1, 3) = 20.786F;
  EXPECT_NEAR(conductivity(c) / a.conductivity, 1.0F, 1E-04F);
}

// Limits.

TEST_F(DenseFluidConductivity, InfiniteDilutionIsThePureFluid) {
  const R4 expected = conductivity(pure("propane", 400.0F, 2.0F));
  const R4 trace = 1E-06F;
  for (const char* solute : {"hydrogen", "n-decane", "water"}) {
    EXPECT_NEAR(
        conductivity(dense_case({{"propane", 1.0F - trace}, {solute, trace}}, 400.0F, 2.0F)) / expected, 1.0F,
        5E-05F);
    EXPECT_NEAR(
        conductivity(dense_case({{solute, trace}, {"propane", 1.0F - trace}}, 400.0F, 2.0F)) / expected, 1.0F,
        5E-05F);
  }
}

TEST_F(DenseFluidConductivity, ZeroFractionsChangeNothing) {
  const R4 expected = conductivity(pure("propane", 400.0F, 2.0F));
  const DenseCase c =
      dense_case({{"methane", 0.0F}, {"propane", 1.0F}, {"n-octane", 0.0F}, {"water", 0.0F}}, 400.0F, 2.0F);
  EXPECT_TRUE(same_bits(conductivity(c), expected));
}

TEST_F(DenseFluidConductivity, OrderAndCutsChangeRoundingAtMost) {
  const R4 one =
      conductivity(dense_case({{"methane", 0.5F}, {"nitrogen", 0.3F}, {"n-hexane", 0.2F}}, 350.0F, 4.0F));
  const R4 other =
      conductivity(dense_case({{"n-hexane", 0.2F}, {"methane", 0.5F}, {"nitrogen", 0.3F}}, 350.0F, 4.0F));
  const R4 cut = conductivity(dense_case(
      {{"methane", 0.25F}, {"methane", 0.25F}, {"nitrogen", 0.3F}, {"n-hexane", 0.2F}}, 350.0F, 4.0F));
  EXPECT_NEAR(other / one, 1.0F, 1E-05F);
  EXPECT_NEAR(cut / one, 1.0F, 1E-05F);
}

R4 lean_gas(R4 T, R4 RHO) {
  return conductivity(dense_case({{"methane", 0.8F}, {"propane", 0.15F}, {"nitrogen", 0.05F}}, T, RHO));
}

// All components of a mixture reach twice their critical temperature, as the reference sees it, at nearly one
// temperature.
constexpr R4 kStep = 455.1F;

TEST_F(DenseFluidConductivity, IsContinuousInTemperatureAndDensity) {
  const auto smooth = [](R4 T) {
    EXPECT_NEAR(lean_gas(T + 0.5F, 3.0F) / lean_gas(T, 3.0F), 1.0F, 0.006F) << T;
  };
  for (R4 T = 120.0F; T < kStep - 2.0F; T += 0.5F) smooth(T);
  for (R4 T = kStep + 2.0F; T < 600.0F; T += 0.5F) smooth(T);
  for (R4 RHO = 0.05F; RHO < 22.0F; RHO *= 1.005F)
    EXPECT_NEAR(lean_gas(300.0F, 1.005F * RHO) / lean_gas(300.0F, RHO), 1.0F, 0.02F) << RHO;
}

TEST_F(DenseFluidConductivity, StepsWhereTheSlopesOfTheFactorsStop) {
  const R4 ratio = lean_gas(kStep + 1.0F, 3.0F) / lean_gas(kStep - 1.0F, 3.0F);
  EXPECT_GT(ratio, 0.96F);
  EXPECT_LT(ratio, 0.99F);
}

// Published gases at their published densities. The bounds are what the method gives, rounded up: they are limits of
// the method, of which water, methanol and hydrogen lie far from a methane-like fluid.
struct Deviation {
  int count = 0;
  double viscosity = 0.0, conductivity = 0.0;  // sums of absolute deviations [%]
};

TEST_F(DenseFluidConductivity, PublishedGasesAreMetAsCloselyAsTheMethodCan) {
  std::map<std::string, Deviation> found;
  for (const GoldenRow& row : golden_rows("dense_fluid_gases.csv")) {
    ASSERT_GE(row.size(), 7U);
    const auto number = [&](std::size_t i) { return std::strtof(row[i].c_str(), nullptr); };
    ASSERT_EQ(dense_component(row[0]).name, row[0]);
    DenseCase c = pure(row[0], number(1), number(3));
    c.CPC(1, 1) = number(6);
    const DenseAnswer a = dense_answer(c);
    Deviation& d = found[row[0]];
    ++d.count;
    d.viscosity += 100.0 * std::abs(static_cast<double>(0.1F * a.viscosity / number(4)) - 1.0);
    d.conductivity += 100.0 * std::abs(static_cast<double>(a.conductivity / number(5)) - 1.0);
  }
  struct Bound {
    const char* name;
    int count;
    double viscosity, conductivity;  // mean deviation [%]
  };
  for (const Bound& bound :
       {Bound{"methane", 20, 1.0, 6.1}, Bound{"ethane", 16, 3.6, 11.1}, Bound{"propane", 10, 4.4, 6.7},
        Bound{"n-butane", 8, 5.6, 3.5}, Bound{"nitrogen", 20, 3.3, 7.2},
        Bound{"carbon dioxide", 17, 5.9, 20.2}, Bound{"hydrogen", 20, 16.4, 22.1},
        Bound{"water", 8, 23.9, 23.3}, Bound{"methanol", 10, 24.8, 5.0}}) {
    const Deviation& d = found[bound.name];
    EXPECT_EQ(d.count, bound.count) << bound.name;
    EXPECT_LT(d.viscosity / d.count, bound.viscosity) << bound.name;
    EXPECT_LT(d.conductivity / d.count, bound.conductivity) << bound.name;
  }
}

}  // namespace
}  // namespace talix::test
