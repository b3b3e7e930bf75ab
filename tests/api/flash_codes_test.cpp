// Every flash-type code of the entry call: what is set before, what comes back.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "api/flash_dispatch.h"
#include "api/flash_results.h"
#include "fastprops/error_matrix.h"
#include "fastprops/flash_record.h"
#include "fastprops/rksf.h"
#include "support/flash_case.h"

namespace talix {
namespace {

using test::FlashCase;
using test::natural_gas;

FlashCase pure(int number, I4 code, R4 T, R4 P) {
  FlashCase c;
  c.numbers = {number};
  c.feed = {1.0F};
  c.IFLASH = code;
  c.T = T;
  c.P = P;
  return c;
}

FlashCase oil(I4 code, R4 T, R4 P) {
  FlashCase c;
  c.numbers = {22, 23, 25, 28};
  c.feed = {0.2F, 0.3F, 0.3F, 0.2F};
  c.IFLASH = code;
  c.T = T;
  c.P = P;
  return c;
}

// The pressure at which the equation of state has equal fugacities in both phases of a pure component.
R4 saturation_pressure(R4 T, R4 P) {
  FlashVec x{}, phi_l{}, phi_v{};
  x(1) = 1.0F;
  R4 Z = 0.0F;
  I4 type = 0;
  for (int step = 0; step < 100; ++step) {
    RKSF(1, flash_phase::liquid, T, x, phi_l, Z, P, type);
    RKSF(1, flash_phase::vapour, T, x, phi_v, Z, P, type);
    P *= phi_l(1) / phi_v(1);
  }
  return P;
}

class FlashCodes : public testing::Test {
 protected:
  void SetUp() override { test::fresh_flashes_alone(); }
};

TEST_F(FlashCodes, PureBubbleAndDewPressuresAreTheVapourPressureOfTheEquation) {
  for (const int number : {20, 4, 22, 25, 28, 116, 9})
    for (const R4 reduced : {0.60F, 0.75F, 0.90F}) {
      for (const I4 code : {flash_type::bubble_pressure, flash_type::dew_pressure}) {
        FlashCase c = pure(number, flash_type::feed_properties, 25.0F, 1.0F);
        ASSERT_EQ(c.run(), "");
        const R4 T = reduced * fl.TC(1);
        c.IFLASH = code;
        c.T = T - 273.15F;
        ASSERT_EQ(c.run(), "") << number << " " << T;
        const R4 own = saturation_pressure(fl.T, c.P);
        EXPECT_NEAR(c.P, own, 1.0E-4F * own) << number << " " << T << " code " << code;
      }
    }
}

TEST_F(FlashCodes, PureBubbleAndDewTemperaturesInvertThePressure) {
  for (const int number : {20, 4, 22, 25, 28, 116, 9})
    for (const R4 P : {0.1F, 1.0F, 5.0F, 15.0F})
      for (const I4 code : {flash_type::bubble_temperature, flash_type::dew_temperature}) {
        FlashCase c = pure(number, code, 25.0F, P);
        ASSERT_EQ(c.run(), "") << number << " " << P;
        const R4 own = saturation_pressure(fl.T, P);
        EXPECT_NEAR(own, P, 1.0E-4F * P) << number << " code " << code;
      }
}

TEST_F(FlashCodes, BubbleAndDewPointsOfAMixtureAreInverse) {
  for (const R4 T : {-40.0F, 0.0F, 40.0F, 80.0F, 120.0F}) {
    FlashCase p = oil(flash_type::bubble_pressure, T, 1.0F);
    ASSERT_EQ(p.run(), "") << T;
    FlashCase t = oil(flash_type::bubble_temperature, 25.0F, p.P);
    ASSERT_EQ(t.run(), "") << T;
    EXPECT_NEAR(t.T, T, 1.0E-4F * (T + 273.15F));
    p = oil(flash_type::dew_pressure, T, 1.0F);
    ASSERT_EQ(p.run(), "") << T;
    t = oil(flash_type::dew_temperature, 25.0F, p.P);
    ASSERT_EQ(t.run(), "") << T;
    EXPECT_NEAR(t.T, T, 1.0E-4F * (T + 273.15F));
  }
}

TEST_F(FlashCodes, FractionComesBackFromTheIsothermalFlash) {
  for (const R4 FRV : {0.05F, 0.4F, 0.95F}) {
    FlashCase p = oil(flash_type::pressure_at_fraction, 40.0F, 1.0F);
    p.FRV = FRV;
    ASSERT_EQ(p.run(), "");
    EXPECT_NEAR(p.FRV, FRV, 2.0E-5F);
    FlashCase tp = oil(flash_type::isothermal, 40.0F, p.P);
    ASSERT_EQ(tp.run(), "");
    EXPECT_NEAR(tp.FRV, FRV, 1.0E-3F);
    FlashCase fast = oil(flash_type::isothermal_fast, 40.0F, p.P);
    ASSERT_EQ(fast.run(), "");
    EXPECT_NEAR(fast.FRV, FRV, 1.0E-3F);
    FlashCase t = oil(flash_type::temperature_at_fraction, 25.0F, p.P);
    t.FRV = FRV;
    ASSERT_EQ(t.run(), "");
    EXPECT_NEAR(t.T, 40.0F, 0.05F);
    for (const I4 code : {flash_type::adiabatic, flash_type::adiabatic_nested}) {
      FlashCase h = oil(code, 25.0F, p.P);
      h.SCAL(6, 2) = tp.SCAL(6, 2);
      ASSERT_EQ(h.run(), "") << code;
      EXPECT_NEAR(h.T, 40.0F, 0.05F) << code;
      EXPECT_NEAR(h.FRV, FRV, 2.0E-3F) << code;
    }
  }
}

TEST_F(FlashCodes, IncipientPhaseKeepsCompositionAndProperties) {
  FlashCase bubble = oil(flash_type::bubble_pressure, 40.0F, 1.0F);
  ASSERT_EQ(bubble.run(), "");
  EXPECT_EQ(bubble.FRV, 0.0F);
  EXPECT_NEAR(bubble.total(3), 2.0E-8F, 1.0E-9F);
  R4 sum = 0.0F;
  for (int i = 1; i <= 4; ++i) {
    sum += bubble.SCAL(i, 6);
    EXPECT_NEAR(bubble.SCAL(i, 7), bubble.SCAL(i, 2), 1.0E-6F);
    EXPECT_NEAR(bubble.SCAL(i, 3) / bubble.total(3), bubble.SCAL(i, 6), 1.0E-3F)
        << "composition and flows are one pass apart";
  }
  EXPECT_NEAR(sum, 1.0F, 1.0E-5F);
  EXPECT_LT(bubble.TPROPS(2, 1), 50.0F) << "density of the bubble";
  EXPECT_GT(bubble.TPROPS(2, 1), 5.0F);
  EXPECT_GT(bubble.TPROPS(2, 2), 400.0F);
  EXPECT_LT(bubble.TPROPS(1, 1), bubble.TPROPS(1, 2));

  FlashCase dew = oil(flash_type::dew_temperature, 25.0F, 5.0F);
  ASSERT_EQ(dew.run(), "");
  EXPECT_EQ(dew.FRV, 1.0F);
  EXPECT_NEAR(dew.total(4), 2.0E-8F, 1.0E-9F);
  EXPECT_GT(dew.TPROPS(1, 2), dew.TPROPS(1, 1));
  EXPECT_GT(dew.TPROPS(2, 2), 400.0F);
}

TEST_F(FlashCodes, FlowBelowTheFloorLosesItsShare) {
  // A trace of n-decane: its flow in the bubble is below 1E-30, and its mole fraction there is 0 although its
  // K-value is not.
  FlashCase c = oil(flash_type::bubble_pressure, 40.0F, 1.0F);
  c.numbers.push_back(116);
  c.feed.push_back(1.0E-20F);
  ASSERT_EQ(c.run(), "");
  EXPECT_EQ(c.SCAL(5, 6), 0.0F);
  EXPECT_GT(fl.VLK(5), 1.0E-5F);
  EXPECT_NEAR(c.SCAL(5, 4), 1.0E-20F, 1.0E-26F);
  FlashCase without = oil(flash_type::bubble_pressure, 40.0F, 1.0F);
  ASSERT_EQ(without.run(), "");
  EXPECT_NEAR(c.P, without.P, 1.0E-5F * without.P);
}

TEST_F(FlashCodes, HostsFractionDoesNotCountForBubbleAndDewPoints) {
  for (const I4 code : {1, 2, 3, 4}) {
    FlashCase a = oil(code, 40.0F, 5.0F), b = oil(code, 40.0F, 5.0F);
    a.FRV = 0.0F;
    b.FRV = 0.7F;
    ASSERT_EQ(a.run(), "");
    ASSERT_EQ(b.run(), "");
    EXPECT_EQ(a.T, b.T) << code;
    EXPECT_EQ(a.P, b.P) << code;
    EXPECT_EQ(a.FRV, code <= 2 ? 0.0F : 1.0F);
    EXPECT_EQ(b.FRV, a.FRV);
  }
}

TEST_F(FlashCodes, StartValuesAreSoughtForThreeOfTheFour) {
  for (const I4 code : {1, 2, 3, 4, 6, 7}) {
    FlashCase c = oil(code, 40.0F, 5.0F);
    c.FRV = 0.5F;
    ASSERT_EQ(c.run(), "");
    const bool sought = code == 1 || code == 2 || code == 4;
    EXPECT_EQ(static_cast<bool>(fl.KSTART), sought) << code << ": the dew pressure runs without";
  }
}

TEST_F(FlashCodes, RetrogradeGasHasItsLowerDewPressure) {
  // A gas with two dew pressures at its temperature; the upper one is not found from any start.
  R4 lower = 0.0F;
  for (const R4 from : {1.0F, 20.0F, 60.0F, 150.0F, 300.0F}) {
    FlashCase gas = natural_gas();
    gas.IFLASH = flash_type::dew_pressure;
    gas.T = 50.0F;
    gas.P = from;
    ASSERT_EQ(gas.run(), "");
    if (lower == 0.0F) lower = gas.P;
    EXPECT_NEAR(gas.P, lower, 1.0E-4F * lower) << from;
  }
  EXPECT_LT(lower, 5.0F);
  FlashCase between = natural_gas();
  between.T = 50.0F;
  between.P = 40.0F;
  ASSERT_EQ(between.run(), "");
  EXPECT_GT(between.total(4), 1.0E-3F) << "two phases between the dew pressures";
}

TEST_F(FlashCodes, TextOfAFailedStartSearchIsDropped) {
  // Above the sum of the critical pressures the search for start values has no bracket.
  FlashCase c = oil(flash_type::bubble_temperature, 25.0F, 45.0F);
  const std::string STR = c.run();
  EXPECT_FALSE(static_cast<bool>(fl.KSTART));
  EXPECT_EQ(STR.find("FLPST"), std::string::npos) << STR;
}

TEST_F(FlashCodes, TemperatureAtFractionEndsLooselyWithoutAText) {
  // No such temperature: the answer is wrong, and only the status of the record tells.
  FlashCase c;
  c.numbers = {4, 15};
  c.feed = {0.1F, 0.6F};
  c.IFLASH = flash_type::temperature_at_fraction;
  c.T = 157.0F;
  c.P = 28.0F;
  c.FRV = 0.6F;
  EXPECT_EQ(c.run(), "");
  EXPECT_EQ(fl.NCAL, flash_status::failed);
  EXPECT_NE(c.T, 157.0F) << "results are written";
  EXPECT_GT(c.TPROPS(2, 1), 0.0F);
}

TEST_F(FlashCodes, FailureWithoutConvergenceLeavesTheHostsValues) {
  FlashCase c = pure(15, flash_type::dew_pressure, 90.0F, 3.0F);
  c.TPROPS.fill(8.0F);
  EXPECT_EQ(c.run(), " No convergence after MAXIT iterations, calculation suspended(FLVT)");
  EXPECT_EQ(c.P, 3.0F);
  EXPECT_EQ(c.TPROPS(1, 1), 8.0F);
}

TEST_F(FlashCodes, PressureOfZero) {
  for (const I4 code : {2, 4, 7})
    EXPECT_EQ(oil(code, 40.0F, 0.0F).run(),
              " Pressure not between 0 and  900 bar, no flash calculation (FLVP)")
        << code;
  EXPECT_EQ(oil(9, 40.0F, 0.0F).run(), " Pressure not between 0 and  900 bar, no flash calculation (FLPQ)");
  EXPECT_EQ(oil(10, 40.0F, 0.0F).run(), " Pressure not above 0, no flash calculation (FLTP3)");
  for (const I4 code : {1, 3, 6}) {
    FlashCase zero = oil(code, 40.0F, 0.0F), two = oil(code, 40.0F, 2.0F);
    zero.FRV = two.FRV = 0.5F;
    EXPECT_EQ(zero.run(), "") << code;
    EXPECT_EQ(two.run(), "") << code;
    EXPECT_EQ(zero.P, two.P) << code;
  }
}

TEST_F(FlashCodes, FeedThatFormsNoPhaseIsRefusedByEveryFlash) {
  for (const I4 code : {1, 2, 3, 4, 6, 7}) {
    FlashCase c = oil(code, 40.0F, 5.0F);
    for (R4& feed : c.feed) feed *= 1.0E-8F;
    c.FRV = 0.5F;
    const std::string routine = code == 1 || code == 3 || code == 6 ? "(FLVT)" : "(FLVP)";
    EXPECT_EQ(c.run(), " Feed flow not between 1.0E-9 and 1.0E+9, no flash calculation " + routine) << code;
    for (R4& feed : c.feed) feed *= 2.05F;
    if (code == flash_type::bubble_pressure) continue;
    EXPECT_EQ(c.run(), " Feed too small to form a phase, no calculation (TALIX)") << code;
  }
}

TEST_F(FlashCodes, SecondLiquidKeepsAShareOfADewPoint) {
  FlashCase c = oil(flash_type::dew_pressure, 40.0F, 5.0F);
  ASSERT_EQ(c.run(), "");
  Message STR{};
  for (const I4 code : {flash_type::dew_pressure, flash_type::dew_temperature})
    for (const I4 key : {0, 4}) {
      fl.IFLASH = code;
      fl.NL2KEY = key;
      STR.blank();
      run_flash(STR);
      EXPECT_EQ(fl.FRV, key == 0 ? 1.0F : 0.999999F);
    }
  fl.NL2KEY = 0;
}

TEST_F(FlashCodes, HistoryDoesNotMatter) {
  const auto outcome = [](I4 code) {
    FlashCase c = oil(code, 40.0F, 5.0F);
    c.FRV = 0.35F;
    c.SCAL(6, 2) = -8.0F;
    c.run();
    return c;
  };
  const auto disturb = [] {
    for (const I4 code : {1, 2, 3, 4, 6, 7, 10, 5}) {
      FlashCase other = natural_gas();
      other.IFLASH = code;
      other.FRV = 0.8F;
      other.run();
      FlashCase same = oil(code, 110.0F, 17.0F);
      same.feed = {0.7F, 0.1F, 0.1F, 0.1F};
      same.FRV = 0.6F;
      same.run();
    }
  };
  for (const int level : {0, 1})
    for (const I4 code : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 33}) {
      test::fresh_library();
      test::verify(level);
      const FlashCase fresh = outcome(code);
      disturb();
      const FlashCase after = outcome(code);
      EXPECT_EQ(std::memcmp(&fresh.SCAL, &after.SCAL, sizeof fresh.SCAL), 0) << code << ", level " << level;
      EXPECT_EQ(std::memcmp(&fresh.TPROPS, &after.TPROPS, sizeof fresh.TPROPS), 0)
          << code << ", level " << level;
      EXPECT_EQ(fresh.T, after.T) << code << ", level " << level;
      EXPECT_EQ(fresh.P, after.P) << code << ", level " << level;
    }
}

// The result tables of a call whose target differs from what the flash has found.
std::string assembled(I4 code, R4 QSPEC) {
  FlashCase c = oil(flash_type::isothermal, 40.0F, 5.0F);
  EXPECT_EQ(c.run(), "");
  fl.IFLASH = code;
  fl.QSPEC = QSPEC;
  Message STR{};
  STR.blank();
  assemble_results('M', c.T, c.P, c.FRV, c.SCAL, c.TPROPS, STR);
  return std::string{trimmed(STR)};
}

TEST_F(FlashCodes, MissedEnthalpyIsToldInPercent) {
  FlashCase c = oil(flash_type::isothermal, 40.0F, 5.0F);
  ASSERT_EQ(c.run(), "");
  const R4 found = fl.SF(6) * 1000.0F;
  EXPECT_EQ(assembled(flash_type::adiabatic, found), "");
  EXPECT_EQ(assembled(flash_type::adiabatic, found * 1.00005F), "");
  EXPECT_EQ(assembled(flash_type::adiabatic, found * 2.0F),
            " Adiabatic flash has changed enthalpy by    50.0000% (FLPQ3)");
  EXPECT_EQ(assembled(flash_type::adiabatic, found * 0.5F),
            " Adiabatic flash has changed enthalpy by  -100.0000% (FLPQ3)");
  EXPECT_EQ(assembled(flash_type::adiabatic, found * 1.0E-5F),
            " Adiabatic flash has changed enthalpy by **********% (FLPQ3)")
      << "a number that does not fit its field";
  EXPECT_EQ(assembled(flash_type::adiabatic_nested, found * 2.0F), "") << "one code only";
}

TEST_F(FlashCodes, MissedEnthalpyStandsBehindWrittenTables) {
  EXPECT_NE(assembled(flash_type::adiabatic, 1.0F), "");
  EXPECT_EQ(errmat.NERRS, 0);
}

}  // namespace
}  // namespace talix
