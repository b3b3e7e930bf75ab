#include "flash/fobj.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "engine/error_ring.h"
#include "fastprops/small_arrays.h"
#include "flash/fltp3.h"
#include "support/flash_case.h"
#include "support/random_mixtures.h"

namespace talix {
namespace {

struct Balance {
  R4 F, DF, FTL, FTV, CPL, CPV;
  bool LIQUID, VAPOUR;
};

Balance balance(R4 T, bool flash = true) {
  Balance b{};
  L4 LIQUID{};
  L4 VAPOUR{};
  fl.T = T;
  FOBJ(b.F, b.DF, b.FTL, b.FTV, b.CPL, b.CPV, LIQUID, VAPOUR, logical(flash));
  b.LIQUID = static_cast<bool>(LIQUID);
  b.VAPOUR = static_cast<bool>(VAPOUR);
  return b;
}

// Between these two the curves of the cubic have tabulated slopes that are not those of their values.
bool in_derivative_zone(R4 T) {
  for (int i = 1; i <= fl.NC; ++i)
    if (fl.TC(i) / T > 0.9F && fl.TC(i) / T < 1.05F) return true;
  return false;
}

class EnthalpyBalance : public testing::Test {
 protected:
  void SetUp() override { test::fresh_flashes_alone(); }
};

TEST_F(EnthalpyBalance, SlopeOfTwoPhasesIsThatOfTheEnthalpy) {
  test::MixtureSource source(4);
  int compared = 0;
  R8 worst = 0.0;
  for (int k = 0; k < 400; ++k) {
    const test::FlashCase mixture = source.next();
    test::load(mixture);
    const R8 P = std::exp(source.uniform(std::log(1.0), std::log(25.0)));
    const R4 T = static_cast<R4>(test::temperature_between(mixture, P, source.uniform(0.15, 0.85)));
    if (in_derivative_zone(T)) continue;
    const R4 step = 0.25F;
    fl.P = static_cast<R4>(P);
    fl.QSPEC = 0.0F;
    const Balance low = balance(T - step);
    const Balance high = balance(T + step);
    const Balance lower = balance(T - 2.0F * step);
    const Balance higher = balance(T + 2.0F * step);
    const Balance here = balance(T);
    if (!(here.LIQUID && here.VAPOUR && lower.LIQUID && lower.VAPOUR && higher.LIQUID && higher.VAPOUR))
      continue;
    ++compared;
    const R4 slope = (8.0F * (high.F - low.F) - (higher.F - lower.F)) / (12.0F * step);
    EXPECT_NEAR(here.DF / slope, 1.0F, 0.01F) << k << " " << source.kind() << " T " << T << " P " << P;
    worst = std::max(worst, std::fabs(static_cast<R8>(here.DF / slope) - 1.0));
    // The heat of what moves between the phases is no small part of it.
    EXPECT_GT(here.DF, here.CPL * here.FTL + here.CPV * here.FTV);
  }
  RecordProperty("worst", std::to_string(worst));
  EXPECT_GE(compared, 100);
}

TEST_F(EnthalpyBalance, SlopeOfOnePhaseIsItsHeatCapacity) {
  test::FlashCase gas;
  gas.numbers = {20, 22};
  gas.feed = {0.9F, 0.1F};
  test::load(gas);
  fl.QSPEC = 0.0F;
  fl.P = 20.0F;
  for (const R4 T : {130.0F, 285.0F, 700.0F}) {
    const Balance low = balance(T - 2.0F);
    const Balance high = balance(T + 2.0F);
    const Balance here = balance(T);
    EXPECT_NE(here.LIQUID, here.VAPOUR) << T;
    EXPECT_NEAR(here.DF, (high.F - low.F) / 4.0F, 0.002F * here.DF) << T;
    EXPECT_FALSE(in_derivative_zone(T));
    EXPECT_EQ(here.DF, here.CPL * here.FTL + here.CPV * here.FTV);
    EXPECT_EQ(here.LIQUID ? here.CPV : here.CPL, 0.0F) << "an absent phase has no heat capacity";
  }
}

TEST_F(EnthalpyBalance, TargetIsSubtracted) {
  test::load(test::natural_gas());
  fl.P = 40.0F;
  fl.QSPEC = 0.0F;
  const Balance zero = balance(253.15F);
  fl.QSPEC = 1500.0F;
  const Balance target = balance(253.15F);
  EXPECT_NEAR(target.F, zero.F - 1500.0F, 0.01F);
  EXPECT_EQ(target.DF, zero.DF);
  EXPECT_NEAR(zero.FTL + zero.FTV, 1.0F, 1.0E-6F);
}

TEST_F(EnthalpyBalance, SlopeGrowsWithTheFlow) {
  test::FlashCase gas = test::natural_gas();
  test::load(gas);
  fl.P = 40.0F;
  fl.QSPEC = 0.0F;
  const Balance one = balance(253.15F);
  for (int i = 1; i <= fl.NC; ++i) fl.F(i) *= 100.0F;
  const Balance hundred = balance(253.15F);
  EXPECT_NEAR(hundred.DF / one.DF, 100.0F, 0.01F);
  EXPECT_NEAR(hundred.F / one.F, 100.0F, 0.01F);
}

TEST_F(EnthalpyBalance, PhasesBelowTheirShareDoNotTakePart) {
  test::load(test::natural_gas());
  fl.P = 40.0F;
  balance(253.15F);
  for (int i = 1; i <= fl.NC; ++i) {
    fl.FV(i) = fl.F(i);
    fl.FL(i) = fl.F(i) * 0.9E-6F;
  }
  EXPECT_FALSE(balance(253.15F, false).LIQUID);
  EXPECT_TRUE(balance(253.15F, false).VAPOUR);
  for (int i = 1; i <= fl.NC; ++i) fl.FL(i) = fl.F(i) * 1.1E-6F;
  EXPECT_TRUE(balance(253.15F, false).LIQUID);
  // Below the phase limit no share counts.
  for (int i = 1; i <= fl.NC; ++i) {
    fl.FV(i) = fl.F(i) * 1.0E-8F;
    fl.FL(i) = fl.F(i) * 1.0E-8F;
  }
  const Balance none = balance(253.15F, false);
  EXPECT_FALSE(none.LIQUID);
  EXPECT_FALSE(none.VAPOUR);
}

TEST_F(EnthalpyBalance, PureFeedHasASingularMatrixAndNoShiftOfTheSplit) {
  test::FlashCase propane;
  propane.numbers = {22};
  propane.feed = {1.0F};
  test::load(propane);
  fl.P = 10.0F;
  fl.FV(1) = 0.4F;
  fl.FL(1) = 0.6F;
  ring.count = 0;
  const Balance b = balance(300.0F, false);
  EXPECT_TRUE(b.LIQUID && b.VAPOUR);
  EXPECT_EQ(b.DF, b.CPV * 0.4F + b.CPL * 0.6F);
  ASSERT_GE(ring.count, 1) << "the factorisation told so";
}

TEST_F(EnthalpyBalance, FlowsStandWithoutAFlash) {
  test::load(test::natural_gas());
  fl.P = 40.0F;
  for (int i = 1; i <= fl.NC; ++i) fl.FV(i) = fl.FL(i) = fl.F(i) / 2.0F;
  const Balance b = balance(253.15F, false);
  EXPECT_NEAR(b.FTV, 0.5F, 1.0E-6F);
  for (int i = 1; i <= fl.NC; ++i) EXPECT_EQ(fl.FV(i), fl.F(i) / 2.0F);
  const Balance flashed = balance(253.15F);
  EXPECT_EQ(flashed.FTV, TELOP(fl.NC, fl.FV));
  EXPECT_NE(fl.FV(3), fl.F(3) / 2.0F);
}

TEST_F(EnthalpyBalance, ComponentsWithoutFeedLeaveTheSlopeAlone) {
  test::FlashCase with;
  with.numbers = {20, 22, 25};
  with.feed = {0.5F, 0.5F, 0.0F};
  test::load(with);
  fl.P = 10.0F;
  fl.QSPEC = 0.0F;
  const Balance a = balance(250.0F);
  test::FlashCase without;
  without.numbers = {20, 22};
  without.feed = {0.5F, 0.5F};
  test::load(without);
  fl.P = 10.0F;
  fl.QSPEC = 0.0F;
  const Balance b = balance(250.0F);
  ASSERT_TRUE(a.LIQUID && a.VAPOUR);
  EXPECT_NEAR(a.DF / b.DF, 1.0F, 1.0E-3F);
}

}  // namespace
}  // namespace talix
