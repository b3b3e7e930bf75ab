// Rows 13 to 15 of the property table: which phases have them, and that they depend on the call alone.
#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>

#include "api/phase_properties.h"
#include "fastprops/error_matrix.h"
#include "fastprops/fast_conductivity.h"
#include "fastprops/fast_viscosity.h"
#include "fastprops/flash_record.h"
#include "fastprops/surface_tension.h"
#include "support/flash_case.h"

namespace talix {
namespace {

constexpr int kVapour = 1, kLiquid = 2, kSecond = 3;
constexpr int kTransportRows[] = {property::viscosity, property::thermal_conductivity,
                                  property::surface_tension};

class TransportRows : public testing::Test {
 protected:
  void SetUp() override { test::fresh_library(); }
};

void expect_absent(const test::FlashCase& c, int column) {
  for (int row = 1; row <= kPropertyRows; ++row) EXPECT_EQ(c.TPROPS(row, column), 0.0F) << row;
}

void expect_vapour(const test::FlashCase& c) {
  EXPECT_GT(c.TPROPS(property::viscosity, kVapour), 0.003F);
  EXPECT_LT(c.TPROPS(property::viscosity, kVapour), 0.05F);
  EXPECT_GT(c.TPROPS(property::thermal_conductivity, kVapour), 0.005F);
  EXPECT_LT(c.TPROPS(property::thermal_conductivity, kVapour), 0.1F);
  EXPECT_EQ(c.TPROPS(property::surface_tension, kVapour), 0.0F);
}

void expect_liquid(const test::FlashCase& c, int column = kLiquid) {
  EXPECT_GT(c.TPROPS(property::viscosity, column), 0.02F);
  EXPECT_LT(c.TPROPS(property::viscosity, column), 2.0F);
  EXPECT_GT(c.TPROPS(property::thermal_conductivity, column), 0.03F);
  EXPECT_LT(c.TPROPS(property::thermal_conductivity, column), 1.0F);
  EXPECT_GT(c.TPROPS(property::surface_tension, column), 0.0F);
}

test::FlashCase pure(int number, R4 T, R4 P, I4 code = 5) {
  test::FlashCase c;
  c.numbers = {number};
  c.feed = {1.0F};
  c.T = T;
  c.P = P;
  c.IFLASH = code;
  return c;
}

TEST_F(TransportRows, TwoPhasesHaveAllRows) {
  test::FlashCase gas = test::natural_gas();
  ASSERT_EQ(gas.run(), "");
  expect_vapour(gas);
  expect_liquid(gas);
  expect_absent(gas, kSecond);
  EXPECT_EQ(errmat.NERRS, 0);
}

TEST_F(TransportRows, RowsAreWhatTheRoutinesOfTheLayerGive) {
  test::FlashCase gas = test::natural_gas();
  ASSERT_EQ(gas.run(), "");
  const R4 none = 0.0F;
  const FlashVec table{};
  R4 ETA = 0.0F, LAMBDA = 0.0F, SIGMA = 0.0F;
  MULO(fl.NC, fl.T, fl.P, none, fl.Y, fl.VC, fl.PC, fl.TC, fl.ZC, fl.CGAS, fl.AMW, none, none, ETA, none);
  EXPECT_EQ(gas.TPROPS(property::viscosity, kVapour), ETA);
  KLO(fl.NC, fl.T, fl.P, none, fl.Y, fl.VC, fl.PC, fl.TC, fl.ZC, fl.CGAS, fl.COFHT, fl.AMW, none, none,
      LAMBDA, none);
  EXPECT_EQ(gas.TPROPS(property::thermal_conductivity, kVapour), LAMBDA);
  VISLIQ(fl.NC, fl.T, fl.P, fl.CVISL, table, table, fl.X1, ETA);
  EXPECT_EQ(gas.TPROPS(property::viscosity, kLiquid), ETA);
  KLIQ(fl.NC, fl.T, fl.CKLIQ, table, fl.X1, none, LAMBDA);
  EXPECT_EQ(gas.TPROPS(property::thermal_conductivity, kLiquid), LAMBDA);
  SURTEN1(fl.NC, fl.T, fl.P, fl.Y, fl.X1, fl.ZV, fl.ZL, SIGMA);
  EXPECT_EQ(gas.TPROPS(property::surface_tension, kLiquid), SIGMA);
}

TEST_F(TransportRows, PhaseAboutToFormHasThemToo) {
  for (const I4 code : {1, 2, 3, 4}) {
    test::FlashCase gas = test::natural_gas();
    gas.IFLASH = code;
    if (code == 1) gas.T = -100.0F;
    if (code == 2) gas.P = 20.0F;
    ASSERT_EQ(gas.run(), "") << code;
    expect_vapour(gas);
    expect_liquid(gas);
  }
}

TEST_F(TransportRows, AbsentPhaseHasZeros) {
  test::FlashCase gas = pure(20, 25.0F, 10.0F);
  ASSERT_EQ(gas.run(), "");
  expect_vapour(gas);
  expect_absent(gas, kLiquid);
  test::FlashCase liquid = pure(116, 25.0F, 1.0F);
  ASSERT_EQ(liquid.run(), "");
  expect_liquid(liquid);
  expect_absent(liquid, kVapour);
}

TEST_F(TransportRows, SecondLiquidHasItsOwn) {
  test::FlashCase c;
  c.numbers = {28, 9};
  c.feed = {0.5F, 0.5F};
  c.T = 25.0F;
  c.P = 5.0F;
  ASSERT_EQ(c.run(), "");
  ASSERT_GT(c.total(4), 0.4F);
  ASSERT_GT(c.total(5), 0.4F);
  expect_liquid(c, kLiquid);
  expect_liquid(c, kSecond);
  EXPECT_NE(c.TPROPS(property::surface_tension, kLiquid), c.TPROPS(property::surface_tension, kSecond));
}

TEST_F(TransportRows, FeedAsItStandsHasNoInterfaceWithItselfWhereOneRootIsLeft) {
  test::FlashCase gas = pure(20, 25.0F, 10.0F, 33);
  ASSERT_EQ(gas.run(), "");
  EXPECT_EQ(gas.TPROPS(property::surface_tension, kLiquid), 0.0F);
  EXPECT_GT(gas.TPROPS(property::viscosity, kLiquid), 0.0F);
}

TEST_F(TransportRows, LiquidAloneDoesNotRememberAnOlderVapour) {
  test::FlashCase first = pure(116, 25.0F, 5.0F);
  ASSERT_EQ(first.run(), "");
  // The same components with a dense vapour in between.
  test::FlashCase between = pure(116, 330.0F, 1.0F, 1);
  ASSERT_EQ(between.run(), "");
  test::FlashCase again = pure(116, 25.0F, 5.0F);
  ASSERT_EQ(again.run(), "");
  for (const int row : kTransportRows)
    EXPECT_EQ(first.TPROPS(row, kLiquid), again.TPROPS(row, kLiquid)) << row;
  EXPECT_GT(first.TPROPS(property::surface_tension, kLiquid), 15.0F);
}

TEST_F(TransportRows, TensionOfALiquidAloneIsAgainstAnIdealGas) {
  test::FlashCase liquid = pure(116, 25.0F, 1.0F);
  ASSERT_EQ(liquid.run(), "");
  R4 SIGMA = 0.0F;
  SURTEN1(1, fl.T, fl.P, fl.X1, fl.X1, 1.0F, fl.ZL, SIGMA);
  EXPECT_EQ(liquid.TPROPS(property::surface_tension, kLiquid), SIGMA);
}

TEST_F(TransportRows, TensionVanishesTowardsTheCriticalPointAndDoesNotComeBack) {
  R4 before = 100.0F;
  for (const R4 T : {-40.0F, 0.0F, 40.0F, 80.0F, 95.0F}) {
    test::FlashCase propane = pure(22, T, 1.0F, 1);
    ASSERT_EQ(propane.run(), "") << T;
    const R4 sigma = propane.TPROPS(property::surface_tension, kLiquid);
    EXPECT_LT(sigma, before) << T;
    EXPECT_GE(sigma, 0.0F);
    before = sigma;
  }
  EXPECT_LT(before, 0.3F);
}

TEST_F(TransportRows, NothingNotANumberComesOutOfCornersOfTheRange) {
  const int numbers[] = {20, 22, 116, 15, 4, 8, 9, 328, 3, 58, 277};
  for (const int number : numbers)
    for (const R4 T : {-270.0F, -200.0F, -100.0F, 0.0F, 200.0F, 600.0F, 1500.0F})
      for (const R4 P : {1.0E-6F, 1.0F, 100.0F, 900.0F})
        for (const I4 code : {5, 33}) {
          test::FlashCase c = pure(number, T, P, code);
          if (const std::string message = c.run(); !message.empty() && message[0] != '.') continue;
          for (int column = 1; column <= 3; ++column)
            for (const int row : kTransportRows) {
              const R4 value = c.TPROPS(row, column);
              EXPECT_TRUE(std::isfinite(value)) << number << " " << T << " C " << P << " bar, row " << row;
              EXPECT_GE(value, 0.0F) << number << " " << T << " C " << P << " bar, row " << row;
            }
        }
}

// Largest relative change of a row between neighbours of a run of states.
struct Steps {
  R4 before[3] = {0.0F, 0.0F, 0.0F};
  R4 largest[3] = {0.0F, 0.0F, 0.0F};
  void add(const test::FlashCase& c, int column) {
    for (int k = 0; k < 3; ++k) {
      const R4 value = c.TPROPS(kTransportRows[k], column);
      if (before[k] > 0.0F) largest[k] = std::fmax(largest[k], std::fabs(value / before[k] - 1.0F));
      before[k] = value;
    }
  }
};

TEST_F(TransportRows, GasIsContinuousInPressureAndTemperature) {
  Steps pressure, temperature;
  for (R4 P = 0.5F; P < 300.0F; P *= 1.02F) {
    test::FlashCase gas = test::natural_gas();
    gas.feed[9] = 0.0F;
    gas.T = 60.0F;
    gas.P = P;
    ASSERT_EQ(gas.run(), "") << P;
    ASSERT_GT(gas.TPROPS(property::density, kVapour), 0.0F) << P;
    pressure.add(gas, kVapour);
  }
  for (R4 T = -60.0F; T < 400.0F; T += 2.0F) {
    test::FlashCase gas = pure(20, T, 5.0F);
    ASSERT_EQ(gas.run(), "") << T;
    temperature.add(gas, kVapour);
  }
  for (int k = 0; k < 2; ++k) {
    EXPECT_LT(pressure.largest[k], 0.02F) << kTransportRows[k];
    EXPECT_LT(temperature.largest[k], 0.02F) << kTransportRows[k];
  }
}

TEST_F(TransportRows, LiquidIsContinuousInPressureAndTemperature) {
  Steps pressure, temperature, light;
  for (R4 P = 0.5F; P < 80.0F; P *= 1.02F) {
    test::FlashCase decane = pure(116, 80.0F, P);
    ASSERT_EQ(decane.run(), "") << P;
    pressure.add(decane, kLiquid);
  }
  for (R4 T = -20.0F; T < 250.0F; T += 1.0F) {
    test::FlashCase decane = pure(116, T, 1.0F, 1);
    ASSERT_EQ(decane.run(), "") << T;
    temperature.add(decane, kLiquid);
  }
  for (R4 T = -120.0F; T < 40.0F; T += 1.0F) {
    test::FlashCase propane = pure(22, T, 1.0F, 1);
    ASSERT_EQ(propane.run(), "") << T;
    light.add(propane, kLiquid);
  }
  for (int k = 0; k < 3; ++k) {
    // The tension of a liquid alone falls to 0 with the pressure.
    const R4 limit = kTransportRows[k] == property::surface_tension ? 1.0F : 0.01F;
    EXPECT_LT(pressure.largest[k], limit) << kTransportRows[k];
    EXPECT_LT(temperature.largest[k], 0.05F) << kTransportRows[k];
    EXPECT_LT(light.largest[k], 0.05F) << kTransportRows[k];
  }
}

TEST_F(TransportRows, TraceComponentDoesNotMoveAPureFluid) {
  for (const R4 T : {-50.0F, 25.0F}) {
    test::FlashCase one = pure(22, T, 1.0F, 1);
    ASSERT_EQ(one.run(), "");
    test::FlashCase two = one;
    two.IFLASH = 1;
    two.numbers = {22, 28};
    two.feed = {1.0F, 1.0E-7F};
    two.P = 1.0F;
    ASSERT_EQ(two.run(), "");
    for (const int row : kTransportRows)
      for (const int column : {kVapour, kLiquid}) {
        const R4 reference = one.TPROPS(row, column);
        EXPECT_NEAR(two.TPROPS(row, column), reference, 2e-4F * std::fabs(reference)) << row << " " << column;
      }
  }
}

}  // namespace
}  // namespace talix
