#include "api/talix_enthfix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "base/text.h"
#include "fastprops/flash_record.h"
#include "support/flash_case.h"
#include "support/random_mixtures.h"

namespace talix {
namespace {

using test::FlashCase;

constexpr const char* kWarning =
    ".Warning: adiabatic flash only achieved by eliminating some components (TALIXEn)";

std::string run_fix(FlashCase& c) {
  I4 NC = c.nc();
  for (int i = 1; i <= NC; ++i) {
    c.SCAL(i, 1) = static_cast<R4>(c.numbers[static_cast<std::size_t>(i - 1)]);
    c.SCAL(i, 2) = c.feed[static_cast<std::size_t>(i - 1)];
  }
  std::string STR(160, '#');
  TALIXENTHFIX(&NC, &c.T, &c.P, &c.FRV, &c.UNIT, 1, &c.IFLASH, &c.SCAL, &c.TPROPS, STR.data(),
               static_cast<I4>(STR.size()));
  return std::string{trimmed(STR)};
}

class EnthalpyFixCalls : public testing::Test {
 protected:
  void SetUp() override { test::fresh_flashes_alone(); }
};

TEST_F(EnthalpyFixCalls, OtherCodesPassThrough) {
  FlashCase direct = test::natural_gas();
  FlashCase fixed = direct;
  ASSERT_EQ(direct.run(), "");
  ASSERT_EQ(run_fix(fixed), "");
  EXPECT_EQ(fixed.FRV, direct.FRV);
  for (int row = 1; row <= 12; ++row)
    for (int column = 1; column <= 8; ++column) EXPECT_EQ(fixed.SCAL(row, column), direct.SCAL(row, column));
  fixed.feed[0] = -1.0F;
  EXPECT_EQ(run_fix(fixed), " One of the components has a negative feed, no calculation (TALIX)");
}

TEST_F(EnthalpyFixCalls, MissingArgumentsAreToldByTheEntryCall) {
  std::string STR(80, '#');
  TALIXENTHFIX(nullptr, nullptr, nullptr, nullptr, nullptr, 1, nullptr, nullptr, nullptr, STR.data(), 80);
  EXPECT_EQ(trimmed(STR), " Argument missing, no calculation (TALIX)");
}

TEST_F(EnthalpyFixCalls, TargetThatIsMetIsTheAnswerOfTheEntryCall) {
  FlashCase reference = test::natural_gas();
  ASSERT_EQ(reference.run(), "");
  for (const char unit : {'M', 'W'}) {
    FlashCase direct = reference;
    direct.IFLASH = flash_type::adiabatic;
    direct.UNIT = unit;
    direct.T = 10.0F;
    if (unit == 'W')
      for (int i = 1; i <= 10; ++i) direct.feed[static_cast<std::size_t>(i - 1)] *= fl.AMW(i);
    direct.SCAL(12, 2) = reference.SCAL(12, 2);
    FlashCase fixed = direct;
    ASSERT_EQ(direct.run(), "");
    ASSERT_EQ(run_fix(fixed), "");
    EXPECT_EQ(fixed.T, direct.T);
    EXPECT_EQ(fixed.FRV, direct.FRV);
    for (int row = 1; row <= 12; ++row)
      for (int column = 1; column <= 8; ++column)
        EXPECT_EQ(fixed.SCAL(row, column), direct.SCAL(row, column));
  }
}

TEST_F(EnthalpyFixCalls, FailureRestoresTheArguments) {
  FlashCase c = test::natural_gas();
  c.IFLASH = flash_type::adiabatic;
  c.T = 15.0F;
  c.FRV = 0.25F;
  c.SCAL(12, 2) = 1.0E+6F;
  EXPECT_EQ(run_fix(c), " Adiabatic flash did not converge in 80 iterations (FLPQ)");
  EXPECT_EQ(c.T, 15.0F);
  EXPECT_EQ(c.P, 40.0F);
  EXPECT_EQ(c.FRV, 0.25F);
  EXPECT_EQ(c.SCAL(12, 2), 1.0E+6F);
  for (int i = 1; i <= 10; ++i) EXPECT_EQ(c.SCAL(i, 2), c.feed[static_cast<std::size_t>(i - 1)]);
}

TEST_F(EnthalpyFixCalls, ComponentsTakenOutComeBackOnBothBases) {
  // Targets that the entry call misses, among many.
  test::MixtureSource source(5);
  int warned = 0;
  for (int k = 0; k < 2500 && warned < 6; ++k) {
    FlashCase c = source.next();
    for (std::size_t i = 2; i < c.feed.size(); ++i) c.feed[i] *= 0.02F;
    test::load(c);
    c.IFLASH = flash_type::adiabatic;
    c.UNIT = k % 2 == 0 ? 'M' : 'W';
    if (c.UNIT == 'W')
      for (int i = 1; i <= c.nc(); ++i) c.feed[static_cast<std::size_t>(i - 1)] *= fl.AMW(i);
    c.P = static_cast<R4>(std::exp(source.uniform(std::log(0.5), std::log(60.0))));
    const R4 target = static_cast<R4>(source.uniform(-30.0, 5.0));
    c.SCAL(c.nc() + 2, 2) = target;
    const std::string STR = run_fix(c);
    if (STR != kWarning) continue;
    ++warned;
    EXPECT_NEAR(c.SCAL(c.nc() + 2, 2), target, 1.1E-4F * std::fabs(target));
    R4 vapour = 0.0F, total = 0.0F, feed = 0.0F;
    for (int i = 1; i <= c.nc(); ++i) {
      const R4 F = c.feed[static_cast<std::size_t>(i - 1)];
      const R4 factor = c.UNIT == 'W' ? fl.AMW(i) : 1.0F;
      EXPECT_EQ(c.SCAL(i, 2), F);
      EXPECT_NEAR(c.SCAL(i, 3) + c.SCAL(i, 4), F, 1.0E-5F * F + 1.0E-5F) << STR;
      EXPECT_GE(c.SCAL(i, 3), 0.0F);
      EXPECT_GE(c.SCAL(i, 4), 0.0F);
      vapour += c.SCAL(i, 3) / factor;
      total += F / factor;
      feed += F;
    }
    EXPECT_NEAR(c.FRV, vapour / total, 1.0E-5F);
    EXPECT_NEAR(c.total(2), feed, 1.0E-4F * feed);
    EXPECT_NEAR(c.total(6) + c.total(7), 1.0F, 1.0E-4F);
    EXPECT_NEAR(c.SCAL(c.nc() + 2, 3) + c.SCAL(c.nc() + 2, 4), c.SCAL(c.nc() + 2, 2), 1.0E-3F);
  }
  EXPECT_EQ(warned, 6);
}

TEST_F(EnthalpyFixCalls, TargetThatIsMissedToTheLastComponentIsTold) {
  // No residual is small against a target of 0.
  FlashCase c;
  c.numbers = {20, 22, 25};
  c.feed = {0.5F, 0.3F, 0.2F};
  c.IFLASH = flash_type::adiabatic;
  c.P = 20.0F;
  c.SCAL(5, 2) = 0.0F;
  EXPECT_EQ(run_fix(c), " Adiabatic flash has changed enthalpy by **********% (TALIXEn)");
  for (int i = 1; i <= 3; ++i) {
    EXPECT_EQ(c.SCAL(i, 2), c.feed[static_cast<std::size_t>(i - 1)]);
    EXPECT_NEAR(c.SCAL(i, 3) + c.SCAL(i, 4), c.SCAL(i, 2), 1.0E-6F);
  }
}

TEST_F(EnthalpyFixCalls, MissIsToldInPerCentUnderItsOwnName) {
  // Targets of a few millijoules per mole are finer than 32 bits of temperature; a pure feed has nothing to lose.
  int told = 0;
  for (int k = 1; k <= 10; ++k) {
    FlashCase c;
    c.numbers = {22};
    c.feed = {1.0F};
    c.IFLASH = flash_type::adiabatic;
    c.P = 2.0F;
    const R4 target = 1.0E-6F * static_cast<R4>(k);
    c.SCAL(3, 2) = target;
    FlashCase direct = c;
    const std::string STR = run_fix(c);
    const std::string plain = direct.run();
    EXPECT_EQ(STR.empty(), plain.empty());
    if (STR.empty()) continue;
    ++told;
    EXPECT_EQ(STR.substr(0, 41), " Adiabatic flash has changed enthalpy by ");
    EXPECT_EQ(STR.substr(51), "% (TALIXEn)");
    EXPECT_EQ(plain.substr(51), "% (FLPQ3)");
    const R4 missing = 100.0F * (target - c.SCAL(3, 2)) / target;
    if (std::fabs(missing) < 99999.0F) {
      EXPECT_NEAR(std::stof(STR.substr(41, 10)), missing, 1.0E-3F * std::fabs(missing));
    }
  }
  EXPECT_GE(told, 3);
}

}  // namespace
}  // namespace talix
