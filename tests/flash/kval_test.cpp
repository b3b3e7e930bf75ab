#include "flash/kval.h"

#include <gtest/gtest.h>

#include <cmath>

#include "fastprops/flash_record.h"
#include "fastprops/rksf.h"
#include "support/flash_case.h"

namespace talix {
namespace {

class Kvalues : public testing::Test {
 protected:
  void SetUp() override { load(test::natural_gas()); }

  static void load(test::FlashCase c) {
    test::fresh_flashes_alone();
    ASSERT_EQ(c.run(), "");
  }
  static R4 wilson(int i) {
    return 1.0F / fl.P * std::exp(5.37F * (1.0F + fl.OMEG(i)) * (1.0F - fl.TC(i) / fl.T)) * fl.PC(i);
  }
  static void spoil_kvalues() { fl.VLK.fill(-1.0F); }
  static bool are_wilson() {
    for (int i = 1; i <= fl.NC; ++i)
      if (std::fabs(fl.VLK(i) / wilson(i) - 1.0F) > 1.0E-6F) return false;
    return true;
  }
};

TEST_F(Kvalues, FirstPassIsAlwaysIdeal) {
  for (const I4 before : {kvalues::real, kvalues::ideal, kvalues::provisional}) {
    I4 IDEAL = before;
    spoil_kvalues();
    KVAL(IDEAL, 1);
    EXPECT_EQ(IDEAL, kvalues::ideal);
    EXPECT_TRUE(are_wilson());
    EXPECT_EQ(fl.PLAST, fl.P);
    EXPECT_EQ(fl.TLAST, fl.T);
  }
}

TEST_F(Kvalues, LaterPassesAreReal) {
  I4 IDEAL = kvalues::real;
  spoil_kvalues();
  KVAL(IDEAL, 2);
  EXPECT_EQ(IDEAL, kvalues::real);
  EXPECT_FALSE(are_wilson());
  for (int i = 1; i <= fl.NC; ++i) EXPECT_NEAR(fl.VLK(i) * fl.X1(i), fl.Y(i), 1.0E-3F * fl.Y(i));
}

TEST_F(Kvalues, IdealStateThatHasMovedStaysIdealInTheFirstPasses) {
  I4 IDEAL = kvalues::ideal;
  fl.PLAST = fl.P * 0.98F;
  fl.TLAST = fl.T;
  KVAL(IDEAL, 5);
  EXPECT_EQ(IDEAL, kvalues::ideal);
  EXPECT_TRUE(are_wilson());

  fl.TLAST = fl.T - 1.0F;
  KVAL(IDEAL, 2);
  EXPECT_EQ(IDEAL, kvalues::ideal);

  fl.TLAST = fl.T - 0.5F;
  fl.PLAST = fl.P * 0.995F;
  KVAL(IDEAL, 2);
  EXPECT_EQ(IDEAL, kvalues::real) << "a small move does not count";
}

TEST_F(Kvalues, MovedStateIsRealFromPassSixOn) {
  I4 IDEAL = kvalues::ideal;
  fl.PLAST = fl.P * 0.5F;
  KVAL(IDEAL, 6);
  EXPECT_EQ(IDEAL, kvalues::real);
}

TEST_F(Kvalues, PressureSearchStaysReal) {
  I4 IDEAL = kvalues::ideal;
  fl.IFLASH = flash_type::pressure_at_fraction;
  fl.PLAST = fl.P * 0.5F;
  KVAL(IDEAL, 2);
  EXPECT_EQ(IDEAL, kvalues::real);
  KVAL(IDEAL, 1);
  EXPECT_EQ(IDEAL, kvalues::ideal) << "but the first pass is ideal";
}

TEST_F(Kvalues, PureComponentIsIdealOnlyInTheFirstPass) {
  test::FlashCase propane;
  propane.numbers = {22};
  propane.feed = {1.0F};
  propane.P = 5.0F;
  load(propane);
  fl.FV(1) = 0.5F;
  fl.FL(1) = 0.5F;
  I4 IDEAL = kvalues::ideal;
  KVAL(IDEAL, 1);
  EXPECT_TRUE(are_wilson());
  fl.PLAST = fl.P * 0.5F;
  KVAL(IDEAL, 2);
  EXPECT_EQ(IDEAL, kvalues::real);
  EXPECT_FALSE(are_wilson());
}

TEST_F(Kvalues, IdealValuesAreLimited) {
  fl.T = 20.0F;
  I4 IDEAL = kvalues::real;
  KVAL(IDEAL, 1);
  EXPECT_EQ(fl.VLK(10), 1.0E-12F);
  fl.T = 5000.0F;
  fl.P = 1.0E-12F;
  KVAL(IDEAL, 1);
  EXPECT_EQ(fl.VLK(10), 1.0E+12F);
}

TEST_F(Kvalues, CollapsedTrialPhaseRestartsFromIdealValues) {
  // Hot gas: both roots are the same, so that the trial phase cannot tell a split.
  test::FlashCase hot = test::natural_gas();
  hot.T = 150.0F;
  hot.P = 5.0F;
  load(hot);
  for (int i = 1; i <= fl.NC; ++i) {
    fl.FV(i) = fl.F(i);
    fl.FL(i) = fl.F(i) * 2.0E-8F;
  }
  I4 IDEAL = kvalues::real;
  KVAL(IDEAL, 20);
  EXPECT_LT(std::fabs((fl.ZV - fl.ZL) / fl.ZV), 0.02F);
  EXPECT_EQ(IDEAL, kvalues::ideal);
  EXPECT_TRUE(are_wilson());
}

TEST_F(Kvalues, TrialPhaseOfLowerFugacityKeepsTheFlashGoing) {
  // A gas held as one phase inside its two-phase region: the trial liquid of the split has lower fugacities
  // than the feed as vapour.
  const FlashVec x = fl.X1;
  for (int i = 1; i <= fl.NC; ++i) {
    fl.FV(i) = fl.F(i);
    fl.FL(i) = x(i) * 2.0E-8F;
  }
  I4 IDEAL = kvalues::real;
  KVAL(IDEAL, 20);
  EXPECT_EQ(IDEAL, kvalues::provisional);
}

TEST_F(Kvalues, DistinctTrialPhaseOfHigherFugacityIsAccepted) {
  // Liquid propane far from saturation with a vapour trial phase.
  test::FlashCase propane;
  propane.numbers = {22};
  propane.feed = {1.0F};
  propane.T = 20.0F;
  propane.P = 9.5F;
  load(propane);
  fl.FL(1) = 1.0F;
  fl.FV(1) = 2.0E-8F;
  I4 IDEAL = kvalues::real;
  KVAL(IDEAL, 20);
  EXPECT_GT(std::fabs((fl.ZV - fl.ZL) / fl.ZV), 0.02F);
  EXPECT_EQ(IDEAL, kvalues::real);
}

TEST_F(Kvalues, PlainUpdateHasNoTest) {
  for (int i = 1; i <= fl.NC; ++i) {
    fl.FV(i) = fl.F(i);
    fl.FL(i) = fl.F(i) * 2.0E-8F;
  }
  KVAL2();
  FlashVec phi_x{}, phi_y{};
  R4 Z = 0.0F;
  I4 type = 0;
  RKSF(fl.NC, flash_phase::liquid, fl.T, fl.X1, phi_x, Z, fl.P, type);
  RKSF(fl.NC, flash_phase::vapour, fl.T, fl.Y, phi_y, Z, fl.P, type);
  for (int i = 1; i <= fl.NC; ++i) EXPECT_EQ(fl.VLK(i), phi_x(i) / phi_y(i));
}

TEST_F(Kvalues, KeyComponentHasItsOwnIdealValues) {
  fl.NL2KEY = 10;
  I4 IDEAL = kvalues::real;
  KVAL(IDEAL, 1);
  EXPECT_EQ(fl.VLKS(1), 4000.0F);
  EXPECT_EQ(fl.VLKS(10), wilson(10));
  EXPECT_EQ(fl.VLK(10), wilson(10) * 100.0F);
}

TEST_F(Kvalues, EmptySecondLiquidHasTheFixedValue) {
  fl.NL2KEY = 10;
  fl.FLS.fill(0.0F);
  fl.FLS(1) = 1.0E-3F;
  I4 IDEAL = kvalues::real;
  KVAL(IDEAL, 2);
  for (int i = 1; i <= fl.NC; ++i) EXPECT_EQ(fl.VLKS(i), 4000.0F);
  fl.FLS(10) = 1.0E-3F;
  KVAL(IDEAL, 2);
  EXPECT_NE(fl.VLKS(1), 4000.0F);
  EXPECT_EQ(fl.XX(10, flash_phase::second_liquid), 0.5F);
}

}  // namespace
}  // namespace talix
