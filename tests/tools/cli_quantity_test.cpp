#include "cli/quantity.h"

#include <gtest/gtest.h>

#include <string>

#include "cli/failure.h"

namespace talix::cli {
namespace {

// The text of the refusal, or an empty text where there is none.
template <class Parse>
std::string refusal(Parse parse, const char* text) {
  try {
    parse(text);
  } catch (const UsageError& error) {
    return error.what();
  }
  return "";
}

TEST(CliQuantity, TemperatureInEveryUnitBecomesCelsius) {
  EXPECT_DOUBLE_EQ(parse_temperature("25C"), 25.0);
  EXPECT_DOUBLE_EQ(parse_temperature("25 C"), 25.0);
  EXPECT_DOUBLE_EQ(parse_temperature(" 25 "), 25.0);
  EXPECT_DOUBLE_EQ(parse_temperature("-40F"), -40.0);
  EXPECT_NEAR(parse_temperature("77 F"), 25.0, 1e-12);
  EXPECT_NEAR(parse_temperature("298.15K"), 25.0, 1e-12);
  EXPECT_NEAR(parse_temperature("0k"), -273.15, 1e-12);
  EXPECT_DOUBLE_EQ(parse_temperature("+1.5e1 degC"), 15.0);
  EXPECT_DOUBLE_EQ(parse_temperature("25\xC2\xB0"
                                     "C"),
                   25.0);
}

TEST(CliQuantity, PressureInEveryUnitBecomesBar) {
  EXPECT_DOUBLE_EQ(parse_pressure("50"), 50.0);
  EXPECT_DOUBLE_EQ(parse_pressure("50bar"), 50.0);
  EXPECT_DOUBLE_EQ(parse_pressure("50 bar"), 50.0);
  EXPECT_DOUBLE_EQ(parse_pressure("50 BARA"), 50.0);
  EXPECT_DOUBLE_EQ(parse_pressure("5MPa"), 50.0);
  EXPECT_DOUBLE_EQ(parse_pressure("5000 kPa"), 50.0);
  EXPECT_DOUBLE_EQ(parse_pressure("5e6Pa"), 50.0);
  EXPECT_DOUBLE_EQ(parse_pressure("1 atm"), 1.01325);
  EXPECT_NEAR(parse_pressure("725.18869 psi"), 50.0, 1e-6);
  EXPECT_NEAR(parse_pressure("14.695949 psia"), 1.01325, 1e-7);
}

TEST(CliQuantity, GaugePressureIsRefusedWithAdvice) {
  for (const char* text : {"50barg", "50 bar(g)", "700psig", "500 kPag"}) {
    const std::string what = refusal(parse_pressure, text);
    EXPECT_NE(what.find("gauge"), std::string::npos) << text;
    EXPECT_NE(what.find("give the absolute pressure"), std::string::npos) << text;
  }
}

TEST(CliQuantity, UnknownUnitNamesTheUnits) {
  EXPECT_NE(refusal(parse_temperature, "25R").find("unknown unit 'R'; the units are C, K and F"),
            std::string::npos);
  EXPECT_NE(refusal(parse_pressure, "25 torr").find("bar, Pa, kPa, MPa, psi and atm"), std::string::npos);
}

TEST(CliQuantity, WhatIsNoFiniteNumberIsRefused) {
  for (const char* text :
       {"", "C", "nan", "inf", "-inf", "nanC", "1e999", "--5", "+-5", "0x10", "25,5", "1.2.3"}) {
    EXPECT_NE(refusal(parse_temperature, text), "") << text;
    EXPECT_NE(refusal(parse_pressure, text), "") << text;
  }
}

TEST(CliQuantity, FeedTakesOneNumberForEachComponent) {
  EXPECT_EQ(parse_feed("0.8,0.15, 0.05"), (std::vector<double>{0.8, 0.15, 0.05}));
  EXPECT_EQ(parse_feed("1"), std::vector<double>{1});
  EXPECT_EQ(parse_feed("0,1e-3"), (std::vector<double>{0, 1e-3}));
}

TEST(CliQuantity, BadFeedValuesAreRefusedByPlace) {
  EXPECT_NE(refusal(parse_feed, "0.5,-0.1").find("feed value 2 '-0.1': negative"), std::string::npos);
  for (const char* text : {"", "1,,2", "1,nan", "inf,1", "1,x", "1 2", "1;2", "1,"}) {
    EXPECT_NE(refusal(parse_feed, text).find("not a number"), std::string::npos) << text;
  }
}

}  // namespace
}  // namespace talix::cli
