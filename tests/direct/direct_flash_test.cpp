#include <gtest/gtest.h>

#include <cmath>

#include "fastprops/enthal.h"
#include "fastprops/rksf.h"
#include "fastprops/rksf_direct.h"
#include "fastprops/routes.h"
#include "support/direct_route.h"

namespace talix {
namespace {

static_assert(!kEngineRoute, "these tests are for the direct route");

class DirectFlash : public testing::Test {
 protected:
  void SetUp() override {
    test::fresh_library();
    ASSERT_EQ(gas.run(), "");
  }
  test::FlashCase gas = test::natural_gas();
};

// An isothermal flash by successive substitution on the engine's coefficients, started from the K-values that
// the flash under test has left.
struct EngineSplit {
  R8 vapour = 0;
  FlashVec x{}, y{};
  R4 ZV = 0, ZL = 0;

  void solve(const FlashVec& z, R4 T, R4 P) {
    Vec<R8, kMaxComponents> K{};
    for (int i = 1; i <= fl.NC; ++i) K(i) = widen(fl.VLK(i));
    for (int pass = 1; pass <= 200; ++pass) {
      R8 low = 0;
      R8 high = 1;
      for (int k = 1; k <= 60; ++k) {
        vapour = 0.5 * (low + high);
        R8 sum = 0;
        for (int i = 1; i <= fl.NC; ++i) sum += widen(z(i)) * (K(i) - 1.0) / (1.0 + vapour * (K(i) - 1.0));
        (sum > 0 ? low : high) = vapour;
      }
      for (int i = 1; i <= fl.NC; ++i) {
        x(i) = static_cast<R4>(widen(z(i)) / (1.0 + vapour * (K(i) - 1.0)));
        y(i) = static_cast<R4>(K(i)) * x(i);
      }
      FlashVec phi_x{}, phi_y{};
      I4 type = 0;
      RKSF1(fl.NC, flash_phase::liquid, T, x, phi_x, ZL, P, type);
      RKSF1(fl.NC, flash_phase::vapour, T, y, phi_y, ZV, P, type);
      for (int i = 1; i <= fl.NC; ++i) K(i) = widen(phi_x(i)) / widen(phi_y(i));
    }
  }
};

TEST_F(DirectFlash, FugacitiesTakeTheDirectRoute) {
  FlashVec routed{}, direct{};
  R4 Z1 = 0;
  R4 Z2 = 0;
  I4 type1 = -9;
  I4 type2 = -9;
  RKSF(fl.NC, flash_phase::vapour, fl.T, fl.Y, routed, Z1, fl.P, type1);
  direct_fugacities(kSolverRoots, fl.NC, flash_phase::vapour, fl.T, fl.Y, direct, Z2, fl.P, type2);
  EXPECT_EQ(type1, 0);
  EXPECT_EQ(Z1, Z2);
  for (int i = 1; i <= fl.NC; ++i) EXPECT_EQ(routed(i), direct(i));
}

TEST_F(DirectFlash, GasConstantIsInTheUnitsOfTheRoute) { EXPECT_EQ(fl.RGAS, 83.1447F); }

TEST_F(DirectFlash, NaturalGasBalancesAndHasEqualFugacities) {
  EXPECT_GT(gas.FRV, 0.5F);
  EXPECT_LT(gas.FRV, 1.0F);
  FlashVec phi_x{}, phi_y{};
  R4 Z = 0;
  I4 type = 0;
  RKSF(fl.NC, flash_phase::liquid, fl.T, fl.X1, phi_x, Z, fl.P, type);
  RKSF(fl.NC, flash_phase::vapour, fl.T, fl.Y, phi_y, Z, fl.P, type);
  for (int i = 1; i <= fl.NC; ++i) {
    EXPECT_NEAR(std::log(phi_x(i) * fl.X1(i) / (phi_y(i) * fl.Y(i))), 0.0F, 1E-4F) << i;
    EXPECT_NEAR(fl.FV(i) + fl.FL(i), fl.F(i), 1E-5F * fl.F(i)) << i;
  }
}

TEST_F(DirectFlash, NaturalGasAgreesWithTheEngineWithoutPairParameters) {
  const FlashVec z = fl.F;
  test::drop_pair_parameters();
  EngineSplit engine;
  engine.solve(z, fl.T, fl.P);
  EXPECT_NEAR(widen(gas.FRV), engine.vapour, 2E-4);
  EXPECT_NEAR(fl.ZV, engine.ZV, 2E-4F);
  EXPECT_NEAR(fl.ZL, engine.ZL, 2E-4F);
  for (int i = 1; i <= fl.NC; ++i) {
    EXPECT_NEAR(fl.X1(i), engine.x(i), 1E-3F * engine.x(i) + 1E-5F) << i;
    EXPECT_NEAR(fl.Y(i), engine.y(i), 1E-3F * engine.y(i) + 1E-6F) << i;
  }
}

// Colder than -60 C the b curve of carbon dioxide is cut in this route and not in the engine.
TEST_F(DirectFlash, SplitsOfTheGasHaveEqualFugacitiesInTheEngine) {
  test::drop_pair_parameters();
  int splits = 0;
  for (const R4 T : {-60.0F, -45.0F, -30.0F, -15.0F, 0.0F, 15.0F}) {
    for (const R4 P : {1.0F, 5.0F, 20.0F, 40.0F}) {
      test::FlashCase state = test::natural_gas();
      state.T = T;
      state.P = P;
      ASSERT_EQ(state.run(), "") << T << ' ' << P;
      if (state.FRV <= 0.0F || state.FRV >= 1.0F) continue;
      ++splits;
      FlashVec phi_x{}, phi_y{};
      R4 Z = 0;
      I4 type = 0;
      RKSF1(fl.NC, flash_phase::liquid, fl.T, fl.X1, phi_x, Z, fl.P, type);
      RKSF1(fl.NC, flash_phase::vapour, fl.T, fl.Y, phi_y, Z, fl.P, type);
      for (int i = 1; i <= fl.NC; ++i)
        EXPECT_NEAR(std::log(phi_x(i) * fl.X1(i) / (phi_y(i) * fl.Y(i))), 0.0F, 2E-3F)
            << i << ' ' << T << ' ' << P;
    }
  }
  EXPECT_GE(splits, 18) << "of 24";
}

TEST_F(DirectFlash, PropertiesAgreeWithTheEngineWithoutPairParameters) {
  test::drop_pair_parameters();
  FugacityVector FUG{}, FUGTL{}, FUGPL{};
  static FugacityMatrix FUGN{};
  FlashVec HN{};
  for (const I4 PH : {flash_phase::vapour, flash_phase::liquid}) {
    const int column = PH == flash_phase::vapour ? 1 : 2;
    I4 PHOUT = 0;
    R4 RHO = 0, Z = 0, MW = 0, HID = 0, SID = 0, CPID = 0, H = 0, DHDT = 0, S = 0, CV = 0, CP = 0, SONIC = 0,
       JT = 0, KAPPA = 0;
    ENTHAL1(0, PH, PHOUT, fl.NC, fl.RGAS, RHO, fl.T, fl.P, Z, column == 1 ? fl.Y : fl.X1, MW, HID, SID, CPID,
            H, DHDT, S, CV, CP, SONIC, JT, KAPPA, FUG, FUGTL, FUGPL, FUGN, HN);
    EXPECT_NEAR(gas.TPROPS(1, column), MW, 1E-4F * MW);
    EXPECT_NEAR(gas.TPROPS(2, column), RHO, 1E-3F * RHO);
    EXPECT_NEAR(gas.TPROPS(6, column), CPID, 1E-3F * CPID);
  }
}

TEST_F(DirectFlash, EveryPropertyOfBothPhasesIsFinite) {
  for (int row = 1; row <= 15; ++row)
    for (int column = 1; column <= 2; ++column) EXPECT_TRUE(std::isfinite(gas.TPROPS(row, column))) << row;
  for (int row = 13; row <= 14; ++row)
    for (int column = 1; column <= 2; ++column) EXPECT_GT(gas.TPROPS(row, column), 0.0F) << row;
  EXPECT_GT(gas.TPROPS(15, 2), 0.0F);
  EXPECT_TRUE(std::isfinite(gas.SCAL(gas.nc() + 2, 2)));
}

TEST_F(DirectFlash, ModeZeroLeavesPhaseAndDerivativesUnset) {
  FugacityVector FUG{}, FUGTL{}, FUGPL{};
  static FugacityMatrix FUGN{};
  FlashVec HN{};
  HN.fill(-9.0F);
  FUGTL.fill(-9.0);
  I4 PHOUT = -9;
  R4 Z = fl.ZV;
  R4 RHO = -9, MW = -9, HID = -9, SID = -9, CPID = -9, H = -9, DHDT = -9, S = -9, CV = -9, CP = -9,
     SONIC = -9, JT = -9, KAPPA = -9;
  ENTHAL(0, flash_phase::vapour, PHOUT, fl.NC, fl.RGAS, RHO, fl.T, fl.P, Z, fl.Y, MW, HID, SID, CPID, H, DHDT,
         S, CV, CP, SONIC, JT, KAPPA, FUG, FUGTL, FUGPL, FUGN, HN);
  EXPECT_EQ(PHOUT, -9);
  EXPECT_EQ(DHDT, -9.0F);
  for (int i = 1; i <= fl.NC; ++i) {
    EXPECT_EQ(HN(i), -9.0F);
    EXPECT_EQ(FUGTL(i), -9.0);
  }
  EXPECT_EQ(Z, fl.ZV) << "the caller's compressibility factor";
  EXPECT_GT(RHO, 0.0F);
  EXPECT_LT(H, HID);
}

TEST_F(DirectFlash, BalancesOfTheAdiabaticFlashAreTheEngines) {
  FugacityVector FUG{}, FUGTL{}, FUGPL{};
  static FugacityMatrix FUGN{};
  FlashVec HN{};
  I4 PHOUT = -9;
  R4 Z = -9, RHO = -9, MW = -9, HID = -9, SID = -9, CPID = -9, H = -9, DHDT = -9, S = -9, CV = -9, CP = -9,
     SONIC = -9, JT = -9, KAPPA = -9;
  ENTHAL(2, flash_phase::vapour, PHOUT, fl.NC, fl.RGAS, RHO, fl.T, fl.P, Z, fl.Y, MW, HID, SID, CPID, H, DHDT,
         S, CV, CP, SONIC, JT, KAPPA, FUG, FUGTL, FUGPL, FUGN, HN);
  EXPECT_EQ(PHOUT, flash_phase::vapour);
  EXPECT_GT(DHDT, 0.0F);
  R4 sum = 0;
  for (int i = 1; i <= fl.NC; ++i) sum += fl.Y(i) * HN(i);
  EXPECT_NEAR(sum, H, 1E-3F * std::fabs(H));
}

TEST_F(DirectFlash, OtherFlashesComeBackToTheSameState) {
  const R4 enthalpy = gas.SCAL(gas.nc() + 2, 2);
  test::FlashCase nested = test::natural_gas();
  nested.IFLASH = flash_type::adiabatic_nested;
  nested.T = gas.T + 5.0F;
  nested.SCAL(gas.nc() + 2, 2) = enthalpy;
  EXPECT_EQ(nested.run(), "");
  EXPECT_NEAR(nested.T, gas.T, 0.01F);
  test::FlashCase fast = test::natural_gas();
  fast.IFLASH = flash_type::isothermal_fast;
  EXPECT_EQ(fast.run(), "");
  EXPECT_NEAR(fast.FRV, gas.FRV, 1E-5F);
  test::FlashCase fraction = test::natural_gas();
  fraction.IFLASH = flash_type::temperature_at_fraction;
  fraction.FRV = gas.FRV;
  EXPECT_EQ(fraction.run(), "");
  EXPECT_NEAR(fraction.T, gas.T, 0.02F);
}

// Its Newton steps balance the engine's enthalpies, here with pair parameters, against a target of this route.
TEST_F(DirectFlash, AdiabaticFlashEndsNearItsTarget) {
  test::FlashCase newton = test::natural_gas();
  newton.IFLASH = flash_type::adiabatic;
  newton.T = gas.T + 5.0F;
  newton.SCAL(gas.nc() + 2, 2) = gas.SCAL(gas.nc() + 2, 2);
  newton.run();
  EXPECT_NEAR(newton.T, gas.T, 1.0F);
}

TEST_F(DirectFlash, SinglePhaseKeepsTheColumnOfTheFlash) {
  test::FlashCase hot = test::natural_gas();
  hot.T = 100.0F;
  hot.P = 2.0F;
  ASSERT_EQ(hot.run(), "");
  EXPECT_EQ(hot.FRV, 1.0F);
  test::FlashCase cold;
  cold.numbers = {22, 23};
  cold.feed = {0.5F, 0.5F};
  cold.T = -20.0F;
  cold.P = 30.0F;
  ASSERT_EQ(cold.run(), "");
  EXPECT_EQ(cold.FRV, 0.0F);
  EXPECT_GT(cold.TPROPS(2, 2), 400.0F) << "liquid density [kg/m3]";
}

// The cubic reproduces the vapour pressure that its curves were fitted to: propane at 0 C, 4.74 bar.
TEST_F(DirectFlash, PurePropaneChangesPhaseAtItsVapourPressure) {
  test::FlashCase propane;
  propane.numbers = {22, 23};
  propane.feed = {1.0F, 1.0E-6F};
  propane.T = 0.0F;
  propane.P = 4.65F;
  ASSERT_EQ(propane.run(), "");
  EXPECT_GT(propane.FRV, 0.99F);
  propane.P = 4.84F;
  ASSERT_EQ(propane.run(), "");
  EXPECT_LT(propane.FRV, 0.01F);
}

}  // namespace
}  // namespace talix
