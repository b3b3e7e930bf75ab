// Ideal-gas properties: SPPIG0.
#include "eos/spp_ideal_gas.h"

#include <gtest/gtest.h>

#include <cmath>

#include "database/component_record.h"
#include "engine/setup_record.h"
#include "support/eos_difference.h"
#include "support/eos_fixture.h"

namespace talix::test {
namespace {

constexpr R8 R = kGasConstant;

class IdealGasTest : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_fixture();
    // Every term of the polynomial form, and a hyperbolic set [J/(kmol K)].
    const R8 polynomial[8] = {30.0, 0.02, 1E-5, -8E-9, 2E-12, -1E-16, 50.0, 3E4};
    const R8 hyperbolic[5] = {33363.0, 26790.0, 2610.5, 8896.0, 1169.0};
    for (int k = 1; k <= 8; ++k) comp.COFHT(1, k) = polynomial[k - 1];
    for (int k = 1; k <= 5; ++k) comp.COFHT(2, k) = hyperbolic[k - 1];
    comp.ICPIG(2) = 7;
  }
  static R8 polynomial_cp(R8 T) {
    const auto c = [](int k) { return comp.COFHT(1, k); };
    return c(1) + c(2) * T + c(3) * std::pow(T, 2) + c(4) * std::pow(T, 3) + c(5) * std::pow(T, 4) +
           c(6) * std::pow(T, 5) + c(7) / T + c(8) / (T * T);
  }
  static R8 hyperbolic_cp(R8 T) {
    const auto c = [](int k) { return comp.COFHT(2, k); };
    const R8 u = c(3) / T;
    const R8 w = c(5) / T;
    return (c(1) + c(2) * std::pow(u / std::sinh(u), 2) + c(4) * std::pow(w / std::cosh(w), 2)) / 1000.0;
  }
  // Component i alone.
  static IdealGas pure_gas(int i, R8 T) {
    CompVec x{};
    x(i) = 1.0;
    IdealGas gas{};
    SPPIG0(T, i, i, x, gas);
    return gas;
  }
};

TEST_F(IdealGasTest, HeatCapacityOfBothForms) {
  for (const R8 T : {200.0, 300.0, 700.0}) {
    EXPECT_NEAR(pure_gas(1, T).CPREF, polynomial_cp(T), 1E-12 * polynomial_cp(T));
    EXPECT_NEAR(pure_gas(2, T).CPREF, hyperbolic_cp(T), 1E-12 * hyperbolic_cp(T));
    for (const int i : {1, 2}) EXPECT_DOUBLE_EQ(pure_gas(i, T).CVREF, pure_gas(i, T).CPREF - R);
  }
}

TEST_F(IdealGasTest, EnthalpyAndEntropyAreTheIntegralsOfTheHeatCapacity) {
  for (const int i : {1, 2}) {
    for (const R8 T : {200.0, 300.0, 700.0}) {
      const R8 cp = pure_gas(i, T).CPREF;
      const R8 dh = slope([i](R8 t) { return pure_gas(i, t).HREF * R * t; }, T, 1E-2 * T);
      const R8 ds = slope([i](R8 t) { return pure_gas(i, t).SREF * R; }, T, 1E-2 * T);
      EXPECT_NEAR(dh, cp, 1E-9 * cp) << i << " " << T;
      EXPECT_NEAR(ds, cp / T, 1E-9 * cp / T) << i << " " << T;
    }
    EXPECT_NEAR(pure_gas(i, setup.TREF).HREF, 0.0, 1E-14);
    EXPECT_NEAR(pure_gas(i, setup.TREF).SREF, 0.0, 1E-14);
  }
}

TEST_F(IdealGasTest, LowTemperatureOfTheHyperbolicFormDoesNotOverflow) {
  const IdealGas gas = pure_gas(2, 2.0);
  EXPECT_NEAR(gas.CPREF, comp.COFHT(2, 1) / 1000.0, 1E-9);
  EXPECT_TRUE(std::isfinite(gas.HREF));
  EXPECT_TRUE(std::isfinite(gas.SREF));
}

TEST_F(IdealGasTest, HyperbolicFormWithoutItsTermsIsConstant) {
  comp.COFHT(2, 3) = 0.0;
  comp.COFHT(2, 5) = 0.0;
  const IdealGas gas = pure_gas(2, 400.0);
  EXPECT_DOUBLE_EQ(gas.CPREF, comp.COFHT(2, 1) / 1000.0);
  EXPECT_NEAR(gas.HREF, comp.COFHT(2, 1) * (400.0 - setup.TREF) / (R * 400.0) / 1000.0, 1E-14);
  EXPECT_NEAR(gas.SREF, comp.COFHT(2, 1) * std::log(400.0 / setup.TREF) / R / 1000.0, 1E-14);
}

TEST_F(IdealGasTest, MixtureOfPolynomialsIsLinearWithTheMixingTermOfTheEntropy) {
  CompVec x{};
  x(3) = 0.3;
  x(4) = 0.7;
  IdealGas gas{};
  SPPIG0(400.0, 3, 4, x, gas);
  const IdealGas a = pure_gas(3, 400.0);
  const IdealGas b = pure_gas(4, 400.0);
  EXPECT_NEAR(gas.CPREF, 0.3 * a.CPREF + 0.7 * b.CPREF, 1E-12);
  EXPECT_NEAR(gas.HREF, 0.3 * a.HREF + 0.7 * b.HREF, 1E-13);
  EXPECT_NEAR(gas.SREF, 0.3 * (a.SREF - std::log(0.3)) + 0.7 * (b.SREF - std::log(0.7)), 1E-13);
}

TEST_F(IdealGasTest, OrderOfMixedFormsChangesTheHeatCapacity) {
  // Polynomial first: its share is divided by 1000 with the running total.
  CompVec x{};
  x(1) = 0.4;
  x(2) = 0.6;
  IdealGas first{};
  SPPIG0(400.0, 1, 2, x, first);
  const R8 c1 = comp.COFHT(2, 1);
  const R8 waves = hyperbolic_cp(400.0) * 1000.0 - c1;  // without mole fraction
  EXPECT_NEAR(first.CPREF, (0.4 * polynomial_cp(400.0) + 0.6 * c1 + waves) / 1000.0, 1E-12);

  // Hyperbolic first: the polynomial comes in whole.
  for (int k = 1; k <= 8; ++k) comp.COFHT(3, k) = comp.COFHT(1, k);
  x(2) = 0.6;
  x(3) = 0.4;
  IdealGas second{};
  SPPIG0(400.0, 2, 3, x, second);
  EXPECT_NEAR(second.CPREF, (0.6 * c1 + waves) / 1000.0 + 0.4 * polynomial_cp(400.0), 1E-12);
  EXPECT_GT(std::abs(second.CPREF - first.CPREF), 1.0);
}

TEST_F(IdealGasTest, MixingTermOfTheHyperbolicFormIsDividedAsWell) {
  CompVec x{};
  x(2) = 0.25;
  IdealGas gas{};
  SPPIG0(400.0, 2, 2, x, gas);
  EXPECT_NEAR(gas.SNREF(2), pure_gas(2, 400.0).SNREF(2) - std::log(0.25) / 1000.0, 1E-13);
}

TEST_F(IdealGasTest, FractionThatIsNotPositiveIsSetInPlace) {
  for (const R8 value : {0.0, -0.3}) {
    CompVec x{};
    x(3) = 1.0;
    x(4) = value;
    IdealGas gas{};
    SPPIG0(400.0, 3, 4, x, gas);
    EXPECT_EQ(x(4), 1E-37);
    EXPECT_EQ(x(3), 1.0);
    EXPECT_NEAR(gas.SNREF(4), pure_gas(4, 400.0).SNREF(4) - std::log(1E-37), 1E-11);
  }
}

}  // namespace
}  // namespace talix::test
