#include "flash/fltp3.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "database/component_record.h"
#include "engine/codes.h"
#include "engine/shmix_driver.h"
#include "fastprops/small_arrays.h"
#include "support/flash_case.h"
#include "support/random_mixtures.h"
#include "support/stability_check.h"

namespace talix {
namespace {

class FastFlash : public testing::Test {
 protected:
  void SetUp() override { test::fresh_flashes_alone(); }
  static void load(const std::vector<int>& numbers, const std::vector<R4>& feed) {
    test::FlashCase c;
    c.numbers = numbers;
    c.feed = feed;
    c.T = 25.0F;
    c.P = 1.0F;
    ASSERT_EQ(c.run(), "");
    fl.FV.fill(-1.0F);
    fl.FL.fill(-1.0F);
  }
  static std::string flash(R4 T, R4 P) {
    Message STR{};
    STR.blank();
    fl.T = T;
    fl.P = P;
    FLTP3(STR);
    return std::string{trimmed(STR)};
  }
};

TEST_F(FastFlash, PressureOfZeroIsRefused) {
  load({20, 22}, {0.5F, 0.5F});
  EXPECT_EQ(flash(250.0F, 0.0F), " Pressure not above 0, no flash calculation (FLTP3)");
  EXPECT_EQ(fl.NCAL, flash_status::failed);
}

TEST_F(FastFlash, OneComponentTurnsAtItsVapourPressure) {
  load({22}, {2.0F});
  R8 PS = 0.0, DPS = 0.0;
  I4 NFAIL = 0;
  SPSAT0(300.0, 0.0, 1, logical(true), logical(false), method::bramm_default, PS, DPS, NFAIL);
  ASSERT_EQ(NFAIL, status::ok);
  const R4 bar = static_cast<R4>(PS / 100000.0);
  EXPECT_NEAR(bar, 9.98F, 0.05F) << "propane at 300 K";
  ASSERT_EQ(flash(300.0F, bar * 0.999F), "");
  EXPECT_EQ(fl.FV(1), 2.0F);
  EXPECT_EQ(fl.FL(1), 0.0F);
  EXPECT_EQ(fl.VLK(1), 1.0F);
  ASSERT_EQ(flash(300.0F, bar * 1.001F), "");
  EXPECT_EQ(fl.FV(1), 0.0F);
  EXPECT_EQ(fl.FL(1), 2.0F);
}

TEST_F(FastFlash, AboveItsCriticalTemperatureTheCriticalPressureIsTheLimit) {
  load({20}, {1.0F});
  const R4 PC = static_cast<R4>(comp.PC(1));
  ASSERT_EQ(flash(300.0F, PC * 0.999F), "");
  EXPECT_EQ(fl.FV(1), 1.0F);
  ASSERT_EQ(flash(300.0F, PC * 1.001F), "");
  EXPECT_EQ(fl.FL(1), 1.0F);
}

TEST_F(FastFlash, ComponentsWithoutFeedHaveNoFlows) {
  load({20, 22, 25}, {0.0F, 0.6F, 0.4F});
  ASSERT_EQ(flash(290.0F, 3.0F), "");
  EXPECT_EQ(fl.FV(1), 0.0F);
  EXPECT_EQ(fl.FL(1), 0.0F);
  EXPECT_NEAR(fl.FV(2) + fl.FL(2), 0.6F, 1.0E-6F);
  const R4 FV2 = fl.FV(2);
  load({22, 25}, {0.6F, 0.4F});
  ASSERT_EQ(flash(290.0F, 3.0F), "");
  EXPECT_NEAR(fl.FV(1), FV2, 1.0E-5F);
}

TEST_F(FastFlash, OneComponentAmongOthersWithoutFeedIsPure) {
  load({20, 22, 25}, {0.0F, 0.6F, 0.0F});
  ASSERT_EQ(flash(300.0F, 20.0F), "");
  EXPECT_EQ(fl.FL(2), 0.6F);
  EXPECT_EQ(fl.FV(2), 0.0F);
  EXPECT_EQ(fl.FL(1) + fl.FV(1) + fl.FL(3) + fl.FV(3), 0.0F);
}

TEST_F(FastFlash, NoFeedGivesNoFlows) {
  load({20, 22}, {0.5F, 0.5F});
  fl.F.fill(0.0F);
  ASSERT_EQ(flash(300.0F, 20.0F), "");
  EXPECT_EQ(TELOP(2, fl.FV) + TELOP(2, fl.FL), 0.0F);
}

TEST_F(FastFlash, AllLiquidLosesItsTrialVapourAtTheEnd) {
  load({22, 23, 25}, {0.3F, 0.4F, 0.3F});
  ASSERT_EQ(flash(290.0F, 30.0F), "");
  for (int i = 1; i <= 3; ++i) {
    EXPECT_EQ(fl.FV(i), 0.0F);
    EXPECT_EQ(fl.FL(i), fl.F(i));
    EXPECT_GT(fl.Y(i), 0.0F) << "the trial vapour has served the K-values";
  }
  ASSERT_EQ(flash(450.0F, 1.0F), "");
  for (int i = 1; i <= 3; ++i) {
    EXPECT_EQ(fl.FL(i), 0.0F);
    EXPECT_EQ(fl.FV(i), fl.F(i));
  }
}

TEST_F(FastFlash, HeavyTracesStartFromFiniteKValues) {
  // The vapour pressure of eicosane at 100 K is below what 32 bits hold.
  load({20, 134, 22}, {0.9F, 0.05F, 0.05F});
  ASSERT_EQ(flash(100.0F, 1.0F), "");
  for (int i = 1; i <= 3; ++i) {
    EXPECT_TRUE(std::isfinite(fl.FV(i)));
    EXPECT_TRUE(std::isfinite(fl.FL(i)));
    EXPECT_GE(fl.VLK(i), 1.0E-12F);
  }
  EXPECT_NEAR(TELOP(3, fl.FV) + TELOP(3, fl.FL), 1.0F, 1.0E-6F);
}

// Shares over seeded states: two phases against code 5, one phase against the tangent plane.
struct Share {
  int states = 0;
  int right = 0;
  [[nodiscard]] R8 percent() const { return 100.0 * right / states; }
};

bool two_phases(const test::FlashCase& c) { return c.total(3) > kPhaseLimit && c.total(4) > kPhaseLimit; }

TEST_F(FastFlash, ShareOfRightAnswers) {
  test::MixtureSource source(811);
  Share split, single;
  for (int k = 0; k < 900; ++k) {
    const test::FlashCase mixture = source.next();
    test::load(mixture);
    const R8 P = std::exp(source.uniform(std::log(0.5), std::log(60.0)));
    test::FlashCase reference = mixture;
    reference.T = static_cast<R4>(test::temperature_between(mixture, P, source.uniform(-0.6, 1.6)) - 273.15);
    if (!(reference.T > -200.0F)) continue;
    reference.P = static_cast<R4>(P);
    test::FlashCase fast = reference;
    fast.IFLASH = flash_type::isothermal_fast;
    if (!reference.run().empty()) continue;
    std::vector<R8> z(mixture.feed.begin(), mixture.feed.end());
    const bool splits =
        test::tangent_plane_distance(static_cast<R8>(fl.T), static_cast<R8>(fl.P), z) < -1.0E-7;
    // Where code 5 itself is wrong there is no reference.
    if (splits != two_phases(reference)) continue;
    ASSERT_EQ(fast.run(), "") << k;
    Share& share = splits ? split : single;
    ++share.states;
    const bool right =
        splits ? two_phases(fast) && std::fabs(fast.FRV - reference.FRV) <= 1.0E-4F : !two_phases(fast);
    share.right += right ? 1 : 0;
  }
  std::printf("fast flash: two phases %.1f %% of %d right, one phase %.1f %% of %d\n", split.percent(),
              split.states, single.percent(), single.states);
  ASSERT_GT(split.states, 300);
  ASSERT_GT(single.states, 200);
  EXPECT_GE(split.percent(), 97.8);
  EXPECT_GE(single.percent(), 94.0);
}

}  // namespace
}  // namespace talix
