#include "cli/flash_type.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "cli/failure.h"
#include "cli/flash_case.h"
#include "cli/quantity.h"
#include "tools/cli_fixture.h"

namespace talix::cli {
namespace {

template <class Call>
std::string refusal(Call call) {
  try {
    call();
  } catch (const UsageError& error) {
    return error.what();
  }
  return "";
}

bool holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(CliFlashType, EveryNameHasItsCode) {
  const std::map<std::string, int> expected = {
      {"bubble-p", 1}, {"bubble-t", 2}, {"dew-p", 3},     {"dew-t", 4}, {"tp", 5},   {"vfrac-p", 6},
      {"vfrac-t", 7},  {"ph", 8},       {"ph-nested", 9}, {"fast", 10}, {"feed", 33}};
  ASSERT_EQ(kFlashTypes.size(), expected.size());
  for (const auto& [name, code] : expected) {
    const FlashTypeRow& row = row_of(parse_flash_type(name));
    EXPECT_EQ(row.code, code) << name;
    EXPECT_EQ(row.name, name);
  }
  const std::string what = refusal([] { (void)parse_flash_type("boil"); });
  EXPECT_TRUE(holds(what, "unknown type 'boil'") && holds(what, "ph-nested")) << what;
}

TEST(CliFlashType, WhatATypeFindsNeedNotBeGiven) {
  const auto check = [](const char* name, GivenOptions given) {
    return refusal([&] { check_options(parse_flash_type(name), given); });
  };
  const GivenOptions t{true, false, false, false};
  const GivenOptions p{false, true, false, false};
  for (const char* name : {"bubble-t", "dew-t"}) {
    EXPECT_EQ(check(name, p), "") << name;
    EXPECT_TRUE(holds(check(name, t), "needs the pressure, -P")) << name;
  }
  for (const char* name : {"bubble-p", "dew-p"}) {
    EXPECT_EQ(check(name, t), "") << name;
    EXPECT_TRUE(holds(check(name, p), "needs the temperature, -T")) << name;
  }
  for (const char* name : {"tp", "fast", "feed"}) {
    EXPECT_TRUE(holds(check(name, t), "needs the pressure")) << name;
    EXPECT_TRUE(holds(check(name, p), "needs the temperature")) << name;
    EXPECT_EQ(check(name, {true, true, false, false}), "") << name;
  }
  EXPECT_EQ(check("vfrac-t", {false, true, true, false}), "");
  EXPECT_EQ(check("vfrac-p", {true, false, true, false}), "");
  EXPECT_TRUE(holds(check("vfrac-t", p), "needs the vapour fraction, --vfrac"));
  for (const char* name : {"ph", "ph-nested"}) {
    EXPECT_EQ(check(name, {false, true, false, true}), "") << name;
    EXPECT_TRUE(holds(check(name, p), "needs the target enthalpy, --H")) << name;
  }
}

TEST(CliFlashType, OptionsWithoutAPlaceAreRefused) {
  for (const FlashTypeRow& row : kFlashTypes) {
    const std::string what = refusal([&] { check_options(row.type, {true, true, true, true}); });
    EXPECT_TRUE(holds(what, "has no place with --type " + std::string(row.name))) << what;
  }
}

TEST(CliQuantity, EnthalpyInEveryUnitBecomesJoules) {
  const auto is = [](const char* text, double value, EnthalpyBasis basis) {
    const Enthalpy h = parse_enthalpy(text);
    EXPECT_DOUBLE_EQ(h.value, value) << text;
    EXPECT_EQ(h.basis, basis) << text;
  };
  is("-1200", -1200, EnthalpyBasis::mole);
  is("-1200 J/mol", -1200, EnthalpyBasis::mole);
  is("-1.2kJ/mol", -1200, EnthalpyBasis::mole);
  is("-1200 kj/kmol", -1200, EnthalpyBasis::mole);
  is("-1.2MJ/kmol", -1200, EnthalpyBasis::mole);
  is("35 kJ/kg", 35000, EnthalpyBasis::mass);
  is("35J/kg", 35, EnthalpyBasis::mass);
  EXPECT_TRUE(holds(refusal([] { (void)parse_enthalpy("3 cal"); }), "unknown unit 'cal'"));
  EXPECT_TRUE(holds(refusal([] { (void)parse_enthalpy("kJ/mol"); }), "not a number"));
}

TEST(CliQuantity, VapourFractionLiesBetweenZeroAndOne) {
  EXPECT_EQ(parse_vapour_fraction("0"), 0);
  EXPECT_EQ(parse_vapour_fraction(" 0.25 "), 0.25);
  EXPECT_EQ(parse_vapour_fraction("1"), 1);
  for (const char* text : {"-0.1", "1.01", "nan", "0.5x", ""}) {
    EXPECT_TRUE(holds(refusal([&] { (void)parse_vapour_fraction(text); }), "not a number from 0 to 1"))
        << text;
  }
}

// 1.5 kmol of methane and 0.5 kmol of n-decane, with round molar masses.
const std::vector<double> kMasses = {16, 142};

TEST(CliFlashType, TargetEnthalpyFollowsTheFeed) {
  FlashRequest request = test::two_component_request();
  request.type = FlashType::ph;
  request.enthalpy = {-1200, EnthalpyBasis::mole};
  EXPECT_NEAR(scaled_enthalpy(request, kMasses), -2.4, 1e-12);
  request.enthalpy = {1000, EnthalpyBasis::mass};  // of 95 kg
  EXPECT_NEAR(scaled_enthalpy(request, kMasses), 0.095, 1e-12);
  request.basis = Basis::mass;
  request.feed = {24, 71};  // the same amounts
  EXPECT_NEAR(scaled_enthalpy(request, kMasses), 0.095, 1e-12);
  request.enthalpy = {-1200, EnthalpyBasis::mole};
  EXPECT_NEAR(scaled_enthalpy(request, kMasses), -2.4, 1e-12);
  EXPECT_NEAR(feed_moles(request, kMasses), 2, 1e-12);
}

TEST(CliFlashType, ATargetOfZeroIsRefusedOnlyWhereItIsADivisor) {
  FlashRequest request = test::two_component_request();
  request.type = FlashType::ph;
  EXPECT_TRUE(holds(refusal([&] { (void)scaled_enthalpy(request, kMasses); }), "a target of 0 is not taken"));
  request.type = FlashType::ph_nested;
  EXPECT_EQ(scaled_enthalpy(request, kMasses), 0);
}

}  // namespace
}  // namespace talix::cli
