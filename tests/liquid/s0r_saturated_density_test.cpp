#include "liquid/s0r_saturated_density.h"

#include <gtest/gtest.h>

#include <cmath>

#include "database/component_record.h"
#include "engine/codes.h"
#include "engine/reset.h"

namespace talix {
namespace {

constexpr int kHexaneLike = 2;
constexpr R8 kTc = 507.6;

struct Density {
  R8 value = -1.0, slope = -1.0;
  I4 status = 0;
};

Density density_at(R8 T, I4 METHOD, bool value = true, bool slope = true) {
  Density d;
  S0RSC1(T, 1e5, kHexaneLike, logical(value), logical(slope), METHOD, d.value, d.slope, d.status);
  return d;
}

class SaturatedDensity : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_engine();
    comp.TC(kHexaneLike) = kTc;
    comp.PC(kHexaneLike) = 30.25;
    comp.OMEGA(kHexaneLike) = 0.3013;
    comp.RMOLW(kHexaneLike) = 86.175;
  }
  static void set_riedel(I4 flag = 1) {
    comp.IDLI(kHexaneLike) = flag;
    comp.DLIP(kHexaneLike, 1) = 234.0;
    comp.DLIP(kHexaneLike, 2) = 1.9;
    comp.DLIP(kHexaneLike, 3) = 0.8;
  }
  static void set_fit() {
    comp.IDNDIP(kHexaneLike) = 7;
    const R8 set[4] = {0.7147, 0.265, 507.6, 0.2781};
    for (int k = 1; k <= 4; ++k) comp.DDIP(kHexaneLike, k) = set[k - 1];
  }
  static void expect_slopes(I4 METHOD) {
    for (const R8 T : {180.0, 240.0, 300.0, 400.0, 480.0}) {
      const R8 h = 1e-3;
      const R8 slope = (density_at(T + h, METHOD).value - density_at(T - h, METHOD).value) / (2.0 * h);
      EXPECT_NEAR(density_at(T, METHOD).slope / slope, 1.0, 1e-6) << T << " K, method " << METHOD;
    }
  }
};

TEST_F(SaturatedDensity, WithoutAnySetTheRackettFactorFollowsFromTheAcentricFactor) {
  EXPECT_NEAR(density_at(350.0, method::riedel).value, 606.5867991907361, 1e-9);
  expect_slopes(method::riedel);
}

TEST_F(SaturatedDensity, ASetOfRiedelComesFirst) {
  set_fit();
  for (const I4 flag : {1, 7}) {
    set_riedel(flag);
    EXPECT_NEAR(density_at(350.0, method::riedel).value, 593.1782431489326, 1e-9);
    expect_slopes(method::riedel);
  }
}

TEST_F(SaturatedDensity, FlagEightTakesTheRackettFactorOfComponentOne) {
  set_riedel(8);
  comp.DLIP(1, 1) = 0.2637;
  EXPECT_NEAR(density_at(350.0, method::riedel).value, 608.2492168874091, 1e-9);
  expect_slopes(method::riedel);
}

TEST_F(SaturatedDensity, FlagEightWithoutAFactorOfComponentOneIsNoSet) {
  set_riedel(8);
  EXPECT_NEAR(density_at(350.0, method::riedel).value, 606.5867991907361, 1e-9);
}

TEST_F(SaturatedDensity, TheFitOfFourCoefficients) {
  set_fit();
  EXPECT_NEAR(density_at(350.0, method::riedel).value, 606.5480511313156, 1e-9);
  expect_slopes(method::riedel);
}

TEST_F(SaturatedDensity, TheFitIsFrozenFromItsOwnCriticalTemperature) {
  set_fit();
  comp.DDIP(kHexaneLike, 3) = 345.0;
  const Density d = density_at(350.0, method::riedel);
  EXPECT_NEAR(d.value, 232.41234905660377, 1e-9);
  EXPECT_EQ(d.slope, 0.0);
}

TEST_F(SaturatedDensity, FromTheCriticalTemperatureUpTheDensityIsFrozen) {
  set_riedel();
  for (const R8 T : {kTc, 600.0, 2000.0}) {
    const Density d = density_at(T, method::riedel);
    EXPECT_EQ(d.status, status::ok);
    EXPECT_EQ(d.value, 234.0);
    EXPECT_EQ(d.slope, 0.0);
  }
  EXPECT_NEAR(density_at(kTc * (1.0 - 1e-15), method::riedel).value, 234.0, 0.1);
}

TEST_F(SaturatedDensity, MethodOfThePoyntingFactorFollowsTheTangentFromHalfTheCriticalTemperature) {
  const auto check = [] {
    const Density half = density_at(0.5 * kTc * (1.0 - 1e-12), method::riedel);
    EXPECT_NEAR(density_at(200.0, method::poynting).value, density_at(200.0, method::riedel).value, 1e-12);
    for (const R8 T : {0.5 * kTc, 300.0, 450.0}) {
      const Density d = density_at(T, method::poynting);
      EXPECT_NEAR(d.value, half.value + half.slope * (T - 0.5 * kTc), 1e-7);
      EXPECT_NEAR(d.slope, half.slope, 1e-9);
    }
    for (const R8 T : {kTc, 700.0}) {
      const Density d = density_at(T, method::poynting);
      EXPECT_NEAR(d.value, half.value + half.slope * 0.5 * kTc, 1e-7);
      EXPECT_EQ(d.slope, 0.0);
    }
  };
  check();
  set_fit();
  check();
  set_riedel();
  check();
  expect_slopes(method::poynting);
}

TEST_F(SaturatedDensity, TheTangentNeedsNoDerivativeAskedFor) {
  set_riedel();
  EXPECT_EQ(density_at(400.0, method::poynting, true, false).value,
            density_at(400.0, method::poynting).value);
}

TEST_F(SaturatedDensity, NoMethodGivesZeroAndAnUnknownOneFails) {
  const Density none = density_at(350.0, 0);
  EXPECT_EQ(none.status, status::ok);
  EXPECT_EQ(none.value, 0.0);
  EXPECT_EQ(none.slope, 0.0);
  const Density unknown = density_at(350.0, method::bramm_default);
  EXPECT_EQ(unknown.status, status::not_available);
  EXPECT_EQ(unknown.value, -1.0);
}

TEST_F(SaturatedDensity, OnlyWhatIsWantedIsSet) {
  EXPECT_EQ(density_at(350.0, method::riedel, true, false).slope, -1.0);
  EXPECT_EQ(density_at(350.0, method::riedel, false, true).value, -1.0);
  EXPECT_LT(density_at(350.0, method::riedel, false, true).slope, -0.1);
}

}  // namespace
}  // namespace talix
