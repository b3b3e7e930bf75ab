#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "api/flash_results.h"
#include "engine/codes.h"
#include "fastprops/flash_record.h"
#include "fastprops/small_arrays.h"
#include "flash/phase_check.h"
#include "flash/robust_phase.h"
#include "support/flash_case.h"
#include "support/random_mixtures.h"

namespace talix {
namespace {

constexpr const char* kUnbracketed = " Unbracketed root (FLPQ2)";

class EnthalpyCheck : public testing::Test {
 protected:
  void SetUp() override {
    test::fresh_library();
    test::verify(1);
  }

  // Total enthalpy of a state by code 5 in the unit of the table [flow x kJ/mol].
  static R4 enthalpy_of(test::FlashCase c, R4 celsius, R4 P) {
    c.T = celsius;
    c.P = P;
    c.FRV = 1.0F;
    c.IFLASH = flash_type::isothermal;
    c.run();
    return c.SCAL(c.nc() + 2, 2);
  }
  // Code 8 or 9 through the entry call.
  static test::FlashCase adiabatic(test::FlashCase c, I4 code, R4 start, R4 P, R4 enthalpy,
                                   std::string& text) {
    c.T = start;
    c.P = P;
    c.FRV = 0.5F;
    c.IFLASH = code;
    c.SCAL(c.nc() + 2, 2) = enthalpy;
    text = c.run();
    return c;
  }

  // A flash that ended with TEXT at T [K] with flows as they stand in the record; the call asked for T_ASKED.
  static std::string check(I4 code, R4 T, R4 T_ASKED, R4 P, R4 QSPEC, const char* text, I4 budget = 20000) {
    fl.IFLASH = code;
    fl.T = T;
    fl.P = P;
    fl.T_ASKED = T_ASKED;
    fl.P_ASKED = P;
    fl.QSPEC = QSPEC;
    Message STR{};
    STR = text;
    set_engine_budget(budget);
    check_enthalpy_flash(STR);
    return std::string{trimmed(STR)};
  }
  static void expect_balance() {
    for (int i = 1; i <= fl.NC; ++i)
      EXPECT_NEAR(fl.FV(i) + fl.FL(i) + fl.FLS(i), fl.F(i), 2E-7F * fl.F(i)) << i;
  }
};

TEST_F(EnthalpyCheck, BothCodesFindTheirWayBack) {
  struct Case {
    std::vector<int> numbers;
    std::vector<R4> feed;
  };
  const std::vector<Case> cases = {{test::natural_gas().numbers, test::natural_gas().feed},
                                   {{20, 116}, {0.6F, 0.4F}},
                                   {{8, 20, 277}, {0.6F, 0.2F, 0.2F}},
                                   {{9, 20, 42}, {0.3F, 0.5F, 0.2F}},
                                   {{280, 281, 283}, {1.0F, 1.0F, 1.0F}},
                                   {{23, 24}, {0.5F, 0.5F}}};
  for (const Case& one : cases) {
    test::FlashCase c;
    c.numbers = one.numbers;
    c.feed = one.feed;
    for (const R4 celsius : {-60.0F, -10.0F, 40.0F, 137.2F, 250.0F})
      for (const R4 P : {1.0F, 20.0F, 110.0F}) {
        const R4 H = enthalpy_of(c, celsius, P);
        for (const I4 code : {flash_type::adiabatic, flash_type::adiabatic_nested}) {
          SCOPED_TRACE(testing::Message()
                       << one.numbers[0] << " " << celsius << " C " << P << " bar code " << code);
          std::string text;
          const test::FlashCase result = adiabatic(c, code, 25.0F, P, H, text);
          EXPECT_TRUE(text.empty() || text.starts_with(". A third phase")) << text;
          if (text.empty()) {
            EXPECT_NEAR(result.T, celsius, 0.01F);
          }
          EXPECT_NEAR(result.SCAL(c.nc() + 2, 2), H, 2E-6F * std::fabs(H) + 2E-5F);
          expect_balance();
        }
      }
  }
}

TEST_F(EnthalpyCheck, PureComponentOnItsPlateau) {
  for (const int number : {20, 9, 4}) {
    test::FlashCase c;
    c.numbers = {number};
    c.feed = {2.0F};
    const R4 P = 10.0F;
    const R4 liquid = enthalpy_of(c, number == 9 ? 170.0F : number == 4 ? -45.0F : -126.0F, P);
    const R4 vapour = enthalpy_of(c, number == 9 ? 190.0F : number == 4 ? -35.0F : -120.0F, P);
    R4 T = 0.0F, FRV = 0.0F;
    for (const R4 share : {0.2F, 0.5F, 0.8F}) {
      const R4 H = liquid + share * (vapour - liquid);
      for (const I4 code : {flash_type::adiabatic, flash_type::adiabatic_nested}) {
        std::string text;
        const test::FlashCase result = adiabatic(c, code, 25.0F, P, H, text);
        EXPECT_EQ(text, "") << number;
        EXPECT_NEAR(result.SCAL(3, 2), H, 2E-6F * std::fabs(H) + 1E-5F) << number << " " << share;
        EXPECT_GT(result.FRV, 0.05F);
        EXPECT_LT(result.FRV, 0.95F);
        if (share > 0.2F) {
          EXPECT_EQ(result.T, T);
        }
        EXPECT_GE(result.FRV, FRV);
        T = result.T;
        FRV = result.FRV;
      }
    }
  }
}

TEST_F(EnthalpyCheck, NaturalGasExpandsFrom200To20Bar) {
  const test::FlashCase gas = test::natural_gas();
  const R4 H = enthalpy_of(gas, 40.0F, 200.0F);
  std::string text;
  const test::FlashCase cold = adiabatic(gas, flash_type::adiabatic, 40.0F, 20.0F, H, text);
  EXPECT_EQ(text, "");
  EXPECT_LT(cold.T, 0.0F);
  EXPECT_GT(cold.T, -50.0F);
  EXPECT_NEAR(cold.SCAL(gas.nc() + 2, 2), H, 2E-6F * std::fabs(H) + 1E-5F);
}

TEST_F(EnthalpyCheck, SmallAndLargeFeeds) {
  const test::FlashCase gas = test::natural_gas();
  const R4 H = enthalpy_of(gas, -35.0F, 40.0F);
  std::string text;
  const test::FlashCase one = adiabatic(gas, flash_type::adiabatic, 25.0F, 40.0F, H, text);
  for (const R4 factor : {1E-6F, 1E-3F, 1E3F, 1E7F}) {
    test::FlashCase scaled = gas;
    for (R4& f : scaled.feed) f *= factor;
    for (const I4 code : {flash_type::adiabatic, flash_type::adiabatic_nested}) {
      const test::FlashCase result = adiabatic(scaled, code, 25.0F, 40.0F, H * factor, text);
      EXPECT_EQ(text, "") << factor;
      EXPECT_NEAR(result.T, one.T, 1E-3F) << factor;
      EXPECT_NEAR(result.FRV, one.FRV, 2E-6F) << factor;
      EXPECT_NEAR(result.SCAL(gas.nc() + 2, 2) / factor, H, 2E-6F * std::fabs(H) + 1E-5F) << factor;
    }
  }
}

TEST_F(EnthalpyCheck, RightAnswerOfTheFlashStands) {
  const test::FlashCase gas = test::natural_gas();
  const R4 H = enthalpy_of(gas, -30.0F, 40.0F);
  const R4 T = fl.T;
  const R4 FTV = fl.FTV;
  EXPECT_EQ(check(flash_type::adiabatic, T, 300.0F, 40.0F, H * 1000.0F, ""), "");
  EXPECT_EQ(fl.T, T);
  EXPECT_NEAR(TELOP(fl.NC, fl.FV), FTV, 1E-5F);
  EXPECT_LT(20000 - engine_budget(), 28) << "engine calls of an accepted answer";
  expect_balance();
}

TEST_F(EnthalpyCheck, WrongAnswersAndFailuresOfTheFlashAreRepaired) {
  const test::FlashCase gas = test::natural_gas();
  const R4 H = enthalpy_of(gas, -30.0F, 40.0F);
  const R4 T = fl.T;
  const R4 FTV = fl.FTV;
  struct Ending {
    R4 T;
    const char* text;
  };
  for (const Ending& ending :
       {Ending{T + 40.0F, ""}, Ending{T - 90.0F, ""}, Ending{1.0F, ""}, Ending{T, kUnbracketed},
        Ending{900.0F, kUnbracketed}, Ending{std::numeric_limits<R4>::quiet_NaN(), ""},
        Ending{T + 1.0F, ".Adiabatic flash is having convergence trouble (FLPQ)"},
        Ending{T + 0.05F,
               ".Warning: adiabatic flash only achieved by eliminating some components (FLPQ3)"}}) {
    for (const I4 code : {flash_type::adiabatic, flash_type::adiabatic_nested}) {
      EXPECT_EQ(check(code, ending.T, 320.0F, 40.0F, H * 1000.0F, ending.text), "") << ending.text;
      EXPECT_NEAR(fl.T, T, 1E-3F) << ending.T << ending.text;
      EXPECT_NEAR(TELOP(fl.NC, fl.FV), FTV, 1E-5F);
      EXPECT_EQ(fl.NCAL, flash_status::fresh);
      expect_balance();
    }
  }
}

TEST_F(EnthalpyCheck, TargetsOutOfReachTellTheRange) {
  const test::FlashCase gas = test::natural_gas();
  for (const I4 code : {flash_type::adiabatic, flash_type::adiabatic_nested})
    for (const R4 H : {1E30F, -1E30F, 1E6F, -1E6F}) {
      std::string text;
      const test::FlashCase result = adiabatic(gas, code, 25.0F, 40.0F, H, text);
      EXPECT_TRUE(text.starts_with(H > 0.0F ? " Enthalpy of 1e+" : " Enthalpy of -1e+")) << text;
      EXPECT_NE(text.find(" kJ/mol out of reach at 40 bar: from -"), std::string::npos) << text;
      EXPECT_TRUE(text.ends_with(" kJ/mol (TALIX)")) << text;
      EXPECT_LE(text.size(), 110U);
      EXPECT_EQ(result.T, 25.0F) << "a failed call changes nothing of the caller's";
      EXPECT_EQ(result.FRV, 0.5F);
      EXPECT_EQ(result.SCAL(gas.nc() + 2, 2), H);
    }
}

TEST_F(EnthalpyCheck, TargetThatIsNoNumberIsRefused) {
  const test::FlashCase gas = test::natural_gas();
  for (const I4 code : {flash_type::adiabatic, flash_type::adiabatic_nested})
    for (const R4 H : {std::numeric_limits<R4>::quiet_NaN(), std::numeric_limits<R4>::infinity(), -3E38F}) {
      std::string text;
      adiabatic(gas, code, 25.0F, 40.0F, H, text);
      EXPECT_EQ(text, " Target enthalpy is not a number, no calculation (TALIX)") << H;
    }
}

TEST_F(EnthalpyCheck, SearchWithoutEngineCallsIsTold) {
  const test::FlashCase gas = test::natural_gas();
  const R4 H = enthalpy_of(gas, -30.0F, 40.0F);
  EXPECT_EQ(check(flash_type::adiabatic, 300.0F, 300.0F, 40.0F, H * 1000.0F, "", 10),
            " Adiabatic flash could not be settled at 40 bar (TALIX)");
}

TEST_F(EnthalpyCheck, GapOfThreePhasesIsNamed) {
  test::FlashCase c;
  c.numbers = {9, 42};
  c.feed = {0.5F, 0.5F};
  // Two thirds up from two liquids to a vapour over one.
  std::string text;
  test::FlashCase result = adiabatic(c, flash_type::adiabatic_nested, 25.0F, 1.0F, -18.0F, text);
  EXPECT_TRUE(text.starts_with(". Enthalpy missed by ")) << text;
  EXPECT_TRUE(text.ends_with(" kJ/mol: a third phase is left out at 361.95 K (TALIX)")) << text;
  EXPECT_LE(text.size(), 110U);
  EXPECT_NEAR(result.T, 88.8F, 0.01F);
  // Code 8 tells what is missing in its own text.
  result = adiabatic(c, flash_type::adiabatic, 25.0F, 1.0F, -18.0F, text);
  EXPECT_TRUE(text.starts_with(" Adiabatic flash has changed enthalpy by ")) << text;
  EXPECT_NEAR(result.T, 88.8F, 0.01F);
}

TEST_F(EnthalpyCheck, ThirdPhaseIsNamed) {
  // Water, heptane and methane: three phases at ambient temperature.
  test::FlashCase c;
  c.numbers = {9, 20, 33};
  c.feed = {1.0F, 1.0F, 1.0F};
  const R4 H = enthalpy_of(c, 25.0F, 10.0F);
  for (const I4 code : {flash_type::adiabatic, flash_type::adiabatic_nested}) {
    std::string text;
    const test::FlashCase result = adiabatic(c, code, 40.0F, 10.0F, H, text);
    EXPECT_TRUE(text == ". A third phase, liquid, would lower the Gibbs energy further (TALIX)" ||
                text == ". A third phase, vapour, would lower the Gibbs energy further (TALIX)")
        << text;
    EXPECT_NEAR(result.SCAL(5, 2), H, 2E-6F * std::fabs(H) + 1E-5F);
  }
}

TEST_F(EnthalpyCheck, TargetOfZeroHasAnAnswerBehindTheCheckOnly) {
  const test::FlashCase gas = test::natural_gas();
  std::string text;
  const test::FlashCase nested = adiabatic(gas, flash_type::adiabatic_nested, 25.0F, 40.0F, 0.0F, text);
  EXPECT_EQ(text, "");
  for (const R4 H : {0.0F, -0.0F, 1E-6F, -1E-3F}) {
    const test::FlashCase result = adiabatic(gas, flash_type::adiabatic, 25.0F, 40.0F, H, text);
    EXPECT_EQ(text, "") << H;
    EXPECT_NEAR(result.T, nested.T, 0.05F) << H;
    EXPECT_NEAR(result.SCAL(gas.nc() + 2, 2), H, 1E-5F) << H;
  }
  // Alone, the flash divides by its target.
  test::verify(0);
  adiabatic(gas, flash_type::adiabatic, 25.0F, 40.0F, 0.0F, text);
  EXPECT_TRUE(text.starts_with(" Adiabatic flash has changed enthalpy by **********")) << text;
  test::verify(1);
}

TEST_F(EnthalpyCheck, RandomStatesComeBack) {
  test::MixtureSource source(17);
  int calls = 0, states = 0;
  for (int k = 0; k < 120; ++k) {
    const test::FlashCase c = source.next();
    const R4 P = static_cast<R4>(std::exp(source.uniform(std::log(0.1), std::log(300.0))));
    const R4 celsius = static_cast<R4>(source.uniform(-120.0, 320.0));
    const R4 H = enthalpy_of(c, celsius, P);
    const I4 code = k % 2 == 0 ? flash_type::adiabatic : flash_type::adiabatic_nested;
    std::string text;
    const test::FlashCase result = adiabatic(c, code, 25.0F, P, H, text);
    SCOPED_TRACE(testing::Message() << source.kind() << " " << celsius << " C " << P << " bar code " << code);
    EXPECT_TRUE(text.empty() || text.starts_with(". A third phase")) << text;
    if (text.empty()) {
      EXPECT_NEAR(result.T, celsius, 0.01F);
    }
    EXPECT_NEAR(result.SCAL(c.nc() + 2, 2), H, 2E-6F * std::fabs(H) + 1E-5F);
    calls += 20000 - engine_budget();
    ++states;
  }
  EXPECT_LT(calls, 100 * states) << "engine calls of the check";
}

}  // namespace
}  // namespace talix
