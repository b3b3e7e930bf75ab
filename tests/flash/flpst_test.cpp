#include "flash/flpst.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "base/logical.h"
#include "base/stop_handler.h"
#include "engine/codes.h"
#include "engine/shmix_driver.h"
#include "fastprops/flash_record.h"
#include "support/flash_case.h"

namespace talix {
namespace {

class PhaseRegionSearch : public testing::Test {
 protected:
  void SetUp() override {
    test::fresh_flashes_alone();
    load({22, 23, 25, 28}, {0.2F, 0.3F, 0.3F, 0.2F});
  }
  void TearDown() override { set_stop_handler(nullptr); }

  // Leaves a mixture at 300 K and 5 bar in the record.
  static void load(std::vector<int> numbers, std::vector<R4> feed) {
    test::FlashCase c;
    c.numbers = std::move(numbers);
    c.feed = std::move(feed);
    ASSERT_EQ(c.run(), "");
    fl.T = 300.0F;
    fl.P = 5.0F;
    fl.KSTART = false;
  }
  static std::string search(I4 MODE, I4& IFAIL) {
    Message STR{};
    STR.blank();
    FLPST(MODE, IFAIL, STR);
    return std::string{trimmed(STR)};
  }
  static void expect_found(I4 MODE) {
    I4 IFAIL = 7;
    EXPECT_EQ(search(MODE, IFAIL), "");
    EXPECT_EQ(IFAIL, 0);
    EXPECT_TRUE(static_cast<bool>(fl.KSTART));
  }
  static R8 vapour_pressure(int i) {
    R8 PS = 0.0, DPS = 0.0;
    I4 NFAIL = status::ok;
    SPSAT0(static_cast<R8>(fl.T), 0.0, i, logical(true), logical(false), method::bramm_default, PS, DPS,
           NFAIL);
    EXPECT_EQ(NFAIL, status::ok);
    return PS;
  }
  static R4 objective(I4 MODE, R4 T) {
    fl.T = T;
    R4 F = 0.0F, DF = 0.0F;
    FOBJ1(MODE, F, DF);
    return F;
  }
  // The root of the objective between two temperatures where it changes its sign.
  static R4 root(I4 MODE, R4 low, R4 high) {
    const bool rises = objective(MODE, high) > 0.0F;
    for (int step = 0; step < 60; ++step) {
      const R4 middle = (low + high) / 2.0F;
      ((objective(MODE, middle) > 0.0F) == rises ? high : low) = middle;
    }
    return low;
  }
};

TEST_F(PhaseRegionSearch, BubblePressureIsTheSumOfTheVapourPressures) {
  R8 P = 0.0;
  for (int i = 1; i <= 4; ++i) P += static_cast<R8>(fl.F(i)) * vapour_pressure(i);
  expect_found(start_mode::bubble_pressure);
  EXPECT_NEAR(static_cast<R8>(fl.P) * 1.0E+5, P, 1.0E-5 * P);
  EXPECT_EQ(fl.T, 300.0F);
  R4 sum = 0.0F;
  for (int i = 1; i <= 4; ++i) {
    EXPECT_NEAR(static_cast<R8>(fl.VLK(i)), vapour_pressure(i) / P, 1.0E-5 * vapour_pressure(i) / P);
    sum += fl.F(i) * fl.VLK(i);
  }
  EXPECT_NEAR(sum, 1.0F, 1.0E-5F);
}

TEST_F(PhaseRegionSearch, DewPressureIsTheHarmonicMean) {
  R8 S = 0.0;
  for (int i = 1; i <= 4; ++i) S += static_cast<R8>(fl.F(i)) / vapour_pressure(i);
  expect_found(start_mode::dew_pressure);
  EXPECT_NEAR(static_cast<R8>(fl.P) * 1.0E+5, 1.0 / S, 1.0E-5 / S);
  R4 sum = 0.0F;
  for (int i = 1; i <= 4; ++i) sum += fl.F(i) / fl.VLK(i);
  EXPECT_NEAR(sum, 1.0F, 1.0E-5F);
}

TEST_F(PhaseRegionSearch, TemperaturesLieWithinOneKelvinOfTheRoot) {
  for (const I4 MODE : {start_mode::bubble_temperature, start_mode::dew_temperature})
    for (const R4 P : {0.01F, 0.3F, 1.0F, 5.0F, 20.0F}) {
      fl.P = P;
      expect_found(MODE);
      const R4 T = fl.T;
      EXPECT_EQ(fl.P, P);
      EXPECT_NEAR(T, root(MODE, 100.0F, 500.0F), 1.0F) << MODE << " at " << P;
    }
}

TEST_F(PhaseRegionSearch, BracketIsWidenedDownwardsForLightGases) {
  // Methane at a pressure whose bubble temperature lies below the first bracket.
  load({20}, {1.0F});
  fl.P = 0.05F;
  I4 IFAIL = 0;
  const std::string STR = search(start_mode::bubble_temperature, IFAIL);
  EXPECT_EQ(STR, "");
  EXPECT_LT(fl.T, 100.0F);
  EXPECT_GT(fl.T, 5.0F);
}

TEST_F(PhaseRegionSearch, ObjectiveHasItsOwnSlope) {
  for (const I4 MODE : {start_mode::bubble_temperature, start_mode::dew_temperature})
    for (const R4 T : {200.0F, 280.0F, 350.0F}) {
      fl.T = T;
      R4 F = 0.0F, DF = 0.0F;
      FOBJ1(MODE, F, DF);
      const R4 h = 0.25F;
      const R4 difference = (objective(MODE, T + h) - objective(MODE, T - h)) / (2.0F * h);
      EXPECT_NEAR(DF, difference, 2.0E-3F * std::fabs(DF)) << MODE << " at " << T;
    }
}

TEST_F(PhaseRegionSearch, SupercriticalComponentHasItsCriticalPressure) {
  load({20}, {1.0F});
  fl.T = 250.0F;
  fl.P = 2.0F;
  R4 F = 0.0F, DF = 0.0F;
  FOBJ1(start_mode::bubble_temperature, F, DF);
  EXPECT_NEAR(F, fl.PC(1) / 2.0F - 1.0F, 1.0E-5F * fl.PC(1));
  EXPECT_NEAR(DF, 1.0E-10F / 2.0E+5F, 1.0E-20F);
  fl.T = fl.TC(1);
  EXPECT_NEAR(objective(start_mode::bubble_temperature, fl.TC(1)), fl.PC(1) / 2.0F - 1.0F, 1.0E-4F)
      << "at its critical temperature too";
}

TEST_F(PhaseRegionSearch, ObjectiveIsCappedForVapourPressuresNearZero) {
  load({116}, {1.0F});
  for (const R4 T : {5.0F, 20.0F, 60.0F}) {
    fl.T = T;
    R4 F = 0.0F, DF = 0.0F;
    FOBJ1(start_mode::dew_temperature, F, DF);
    EXPECT_EQ(F, 1.0E+10F) << T;
    EXPECT_TRUE(std::isfinite(DF)) << T;
    EXPECT_LE(DF, 0.0F) << T;
  }
}

TEST_F(PhaseRegionSearch, ComponentsWithoutFeedDoNotCount) {
  const R4 with = objective(start_mode::dew_temperature, 250.0F);
  load({22, 23, 25, 28, 116}, {0.2F, 0.3F, 0.3F, 0.2F, 0.0F});
  EXPECT_EQ(objective(start_mode::dew_temperature, 250.0F), with);
  // Nor do they where they have no vapour pressure that 64 bits hold.
  load({20}, {1.0F});
  const R4 pure = objective(start_mode::dew_temperature, 60.0F);
  load({20, 116}, {1.0F, 0.0F});
  EXPECT_EQ(objective(start_mode::dew_temperature, 60.0F), pure);
  I4 IFAIL = 0;
  fl.P = 1.0F;
  EXPECT_EQ(search(start_mode::dew_temperature, IFAIL), "");
}

TEST_F(PhaseRegionSearch, RootOutsideTheWidestBracketIsTold) {
  for (const I4 MODE : {start_mode::bubble_temperature, start_mode::dew_temperature}) {
    fl.P = 800.0F;
    fl.KSTART = false;
    I4 IFAIL = 0;
    EXPECT_EQ(search(MODE, IFAIL), " Unbracketed root (FLPST)");
    EXPECT_EQ(IFAIL, 1);
    EXPECT_FALSE(static_cast<bool>(fl.KSTART));
    EXPECT_EQ(fl.P, 800.0F);
  }
  EXPECT_LT(fl.T, 600.0F) << "a dew temperature is widened downwards only; the last trial stands";
  EXPECT_GT(fl.T, 400.0F);
}

TEST_F(PhaseRegionSearch, FailedBubbleSearchLeavesAHighTemperature) {
  fl.P = 800.0F;
  I4 IFAIL = 0;
  search(start_mode::bubble_temperature, IFAIL);
  EXPECT_GE(fl.T, 900.0F);
}

TEST_F(PhaseRegionSearch, EquationsThatAreNoNumbersEndTheSearch) {
  I4 IFAIL = 0;
  fl.P = std::nanf("");
  EXPECT_EQ(search(start_mode::bubble_temperature, IFAIL), " Unbracketed root (FLPST)");
  EXPECT_EQ(search(start_mode::dew_temperature, IFAIL), " Unbracketed root (FLPST)");
  fl.P = 0.0F;
  search(start_mode::bubble_temperature, IFAIL);
  EXPECT_EQ(IFAIL, 1);
}

TEST_F(PhaseRegionSearch, TooManyIterationsAreTold) {
  // Far below any pressure in use the Newton steps creep.
  load({116}, {1.0F});
  fl.P = 1.0E-14F;
  I4 IFAIL = 0;
  EXPECT_EQ(search(start_mode::bubble_temperature, IFAIL), " More than MAXIT iterations (FLPST)");
  EXPECT_EQ(IFAIL, 1);
  EXPECT_FALSE(static_cast<bool>(fl.KSTART));
}

std::string stopped_with;

TEST_F(PhaseRegionSearch, OtherModesOfTheObjectiveStop) {
  set_stop_handler([](std::string_view text) { stopped_with = text; });
  R4 F = 4.0F, DF = 5.0F;
  FOBJ1(start_mode::bubble_pressure, F, DF);
  EXPECT_EQ(stopped_with, "Wrong i value in fobj1, programming error ");
  EXPECT_EQ(F, 4.0F);
  EXPECT_EQ(DF, 5.0F);
}

TEST_F(PhaseRegionSearch, StartValuesAreFiniteAtAnyTemperature) {
  load({20, 116, 9}, {0.5F, 0.3F, 0.2F});
  for (const I4 MODE : {start_mode::bubble_pressure, start_mode::dew_pressure})
    for (const R4 T : {1.0F, 20.0F, 100.0F, 700.0F, 1773.0F}) {
      fl.T = T;
      I4 IFAIL = 0;
      EXPECT_EQ(search(MODE, IFAIL), "");
      for (int i = 1; i <= 3; ++i) {
        EXPECT_GE(fl.VLK(i), 1.0E-12F) << MODE << " at " << T;
        EXPECT_LE(fl.VLK(i), 1.0E+12F) << MODE << " at " << T;
      }
    }
}

}  // namespace
}  // namespace talix
