#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <string_view>

#include "base/stop_handler.h"
#include "database/component_record.h"
#include "engine/codes.h"
#include "fastprops/enthal.h"
#include "fastprops/error_matrix.h"
#include "fastprops/rksf.h"
#include "support/flash_case.h"

namespace talix {
namespace {

struct Thermal {
  I4 PHOUT = 0;
  R4 RHO = -9, Z = -9, MW = -9, HID = -9, SID = -9, CPID = -9, H = -9, DHDT = -9, S = -9, CV = -9, CP = -9,
     SONIC = -9, JT = -9, KAPPA = -9;
  FugacityVector FUG{}, FUGTL{}, FUGPL{};
  FugacityMatrix FUGN{};
  FlashVec HN{};

  void ask(I4 MODE, I4 PH, R4 T, R4 P, const FlashVec& X) {
    ENTHAL(MODE, PH, PHOUT, fl.NC, fl.RGAS, RHO, T, P, Z, X, MW, HID, SID, CPID, H, DHDT, S, CV, CP, SONIC,
           JT, KAPPA, FUG, FUGTL, FUGPL, FUGN, HN);
  }
};

class EngineRoute : public testing::Test {
 protected:
  void SetUp() override {
    test::fresh_library();
    test::FlashCase gas = test::natural_gas();
    ASSERT_EQ(gas.run(), "");
    y = fl.Y;
    x = fl.X1;
  }
  void TearDown() override { set_stop_handler(nullptr); }
  FlashVec x{}, y{};
};

TEST_F(EngineRoute, PhaseThreeAsksForTheLiquidRoot) {
  FlashVec liquid{}, second{};
  R4 Z1 = 0, Z3 = 0;
  I4 type1 = 0, type3 = 0;
  RKSF(10, flash_phase::liquid, fl.T, x, liquid, Z1, fl.P, type1);
  RKSF(10, flash_phase::second_liquid, fl.T, x, second, Z3, fl.P, type3);
  EXPECT_EQ(Z1, Z3);
  EXPECT_EQ(type1, type3);
  for (int i = 1; i <= 10; ++i) EXPECT_EQ(liquid(i), second(i));
}

TEST_F(EngineRoute, FugacitiesAreEqualInTheSplit) {
  FlashVec phi_x{}, phi_y{};
  R4 Z = 0;
  I4 type = 0;
  RKSF(10, flash_phase::liquid, fl.T, x, phi_x, Z, fl.P, type);
  RKSF(10, flash_phase::vapour, fl.T, y, phi_y, Z, fl.P, type);
  for (int i = 1; i <= 10; ++i) EXPECT_NEAR(std::log(phi_x(i) * x(i) / (phi_y(i) * y(i))), 0.0F, 1.0E-4F);
}

TEST_F(EngineRoute, BadStatusIsCountedWithoutAMessage) {
  FlashVec phi{};
  R4 Z = 0;
  I4 type = 0;
  const I4 before = errmat.NERRS;
  RKSF(10, flash_phase::vapour, fl.T, y, phi, Z, 0.0F, type);
  EXPECT_EQ(errmat.ERRMAT(error_row::RKSF1, 1), before + 1);
  for (int i = 1; i <= 10; ++i) EXPECT_EQ(phi(i), 1.0F);
}

TEST_F(EngineRoute, CoefficientsStayWithinTheirLimits) {
  // n-decane at 100 K is far below exp(-38).
  FlashVec pure{};
  pure(10) = 1.0F;
  FlashVec phi{};
  R4 Z = 0;
  I4 type = 0;
  RKSF(10, flash_phase::liquid, 90.0F, pure, phi, Z, 0.001F, type);
  R4 smallest = 1.0F;
  for (int i = 1; i <= 10; ++i) {
    EXPECT_GE(phi(i), static_cast<R4>(std::exp(-38.0)));
    EXPECT_LE(phi(i), static_cast<R4>(std::exp(38.0)));
    smallest = std::min(smallest, phi(i));
  }
  EXPECT_EQ(smallest, static_cast<R4>(std::exp(-38.0)));
}

TEST_F(EngineRoute, EngineStartsOnItsOwnWhenNotReady) {
  fl.ENGREADY = false;
  FlashVec phi{};
  R4 Z = 0;
  I4 type = 0;
  RKSF(10, flash_phase::vapour, fl.T, y, phi, Z, fl.P, type);
  EXPECT_TRUE(static_cast<bool>(fl.ENGREADY));
  fl.ENGREADY = false;
  Thermal t;
  t.ask(0, flash_phase::vapour, fl.T, fl.P, y);
  EXPECT_TRUE(static_cast<bool>(fl.ENGREADY));
  EXPECT_GT(t.RHO, 0.0F);
}

TEST_F(EngineRoute, ModeZeroGivesEveryRow) {
  Thermal t;
  t.ask(0, flash_phase::vapour, fl.T, fl.P, y);
  EXPECT_EQ(t.PHOUT, flash_phase::vapour);
  EXPECT_NEAR(t.RHO, t.MW * fl.P * 1.0E+5F / (t.Z * 8.314471F * fl.T) / 1000.0F, 1.0E-3F);
  EXPECT_GT(t.CP, t.CV);
  EXPECT_GT(t.CV, 0.0F);
  EXPECT_GT(t.SONIC, 200.0F);
  EXPECT_GT(t.KAPPA, 1.0F / fl.P) << "1/bar; a real gas is softer than the ideal one";
  EXPECT_GT(t.JT, 0.0F);
  EXPECT_NEAR(t.DHDT / t.MW, t.CP, 1.0E-3F * t.CP) << "the slope of the enthalpy is the heat capacity";
  EXPECT_LT(t.H, t.HID);
  EXPECT_LT(t.S, t.SID);
}

TEST_F(EngineRoute, MolarMassComesFromTheEngine) {
  Thermal t;
  comp.RMOLW(3) = comp.RMOLW(3) + 100.0;
  t.ask(0, flash_phase::vapour, fl.T, fl.P, y);
  R4 own = 0;
  for (int i = 1; i <= 10; ++i) own += y(i) * fl.AMW(i);
  EXPECT_NEAR(t.MW, own + 100.0F * y(3), 1.0E-3F);
}

TEST_F(EngineRoute, ModeOneLeavesTheOtherRowsAlone) {
  Thermal full, t;
  full.ask(0, flash_phase::vapour, fl.T, fl.P, y);
  t.ask(1, flash_phase::vapour, fl.T, fl.P, y);
  EXPECT_EQ(t.H, full.H);
  EXPECT_EQ(t.S, full.S);
  EXPECT_EQ(t.Z, full.Z);
  EXPECT_EQ(t.RHO, full.RHO);
  EXPECT_EQ(t.MW, full.MW);
  EXPECT_EQ(t.DHDT, full.DHDT);
  for (const R4 row : {t.HID, t.SID, t.CPID, t.CV, t.CP, t.SONIC, t.JT, t.KAPPA}) EXPECT_EQ(row, -9.0F);
}

TEST_F(EngineRoute, ModeTwoGivesPartialEnthalpiesAndFugacitySlopes) {
  Thermal t;
  t.ask(2, flash_phase::vapour, fl.T, fl.P, y);
  R4 sum = 0;
  for (int i = 1; i <= 10; ++i) sum += y(i) * t.HN(i);
  EXPECT_NEAR(sum, t.H, 1.0E-3F * std::fabs(t.H)) << "the enthalpy is the sum of its partial molar parts";
  // The slope in temperature against a central difference.
  const R4 step = 0.5F;
  Thermal up, down;
  up.ask(2, flash_phase::vapour, fl.T + step, fl.P, y);
  down.ask(2, flash_phase::vapour, fl.T - step, fl.P, y);
  for (int i = 1; i <= 10; ++i) {
    const R8 slope = (up.FUG(i) - down.FUG(i)) / widen(2.0F * step) * widen(fl.T);
    EXPECT_NEAR(t.FUGTL(i), slope, 2.0E-3 * std::fabs(slope) + 1.0E-4) << i;
    for (int j = 1; j <= 10; ++j) EXPECT_NEAR(t.FUGN(i, j), t.FUGN(j, i), 1.0E-9);
  }
}

TEST_F(EngineRoute, SingleRootCountsAsVapourEvenWhenAskedAsLiquid) {
  test::FlashCase hot = test::natural_gas();
  hot.T = 100.0F;
  hot.P = 2.0F;
  ASSERT_EQ(hot.run(), "");
  Thermal t;
  t.ask(0, flash_phase::liquid, fl.T, fl.P, fl.Y);
  EXPECT_EQ(t.PHOUT, flash_phase::vapour);
  Thermal without_list;
  without_list.ask(1, flash_phase::liquid, fl.T, fl.P, fl.Y);
  EXPECT_EQ(without_list.PHOUT, flash_phase::vapour);
}

TEST_F(EngineRoute, BadStatusIsCountedInBothCells) {
  Thermal t;
  t.ask(0, flash_phase::vapour, fl.T, 0.0F, y);
  EXPECT_GT(errmat.ERRMAT(error_row::ENTHAL1, 1), 0);
  EXPECT_GT(errmat.ERRMAT(error_row::ENTHAL1, 2), errmat.ERRMAT(error_row::ENTHAL1, 1));
  EXPECT_EQ(t.H, 0.0F);
}

std::string stopped_with;

TEST_F(EngineRoute, NegativeModeStops) {
  stopped_with.clear();
  set_stop_handler([](std::string_view text) { stopped_with = text; });
  Thermal t;
  t.ask(-1, flash_phase::vapour, fl.T, fl.P, y);
  EXPECT_EQ(stopped_with, "Wrong value for MODE in enthal1. Fix!");
  EXPECT_EQ(t.H, -9.0F);
}

TEST_F(EngineRoute, IdealGasHasNoEnthalpyAtItsReferenceTemperature) {
  Thermal t;
  t.ask(0, flash_phase::vapour, 273.15F, 1.0F, y);
  EXPECT_NEAR(t.HID, 0.0F, 1.0E-3F);
}

}  // namespace
}  // namespace talix
