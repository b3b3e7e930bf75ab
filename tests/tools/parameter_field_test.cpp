// Numbers in the columns of the parameter files are read back as they were.
#include "bank/parameter_field.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "bank/tables.h"
#include "database/field_text.h"

namespace talix::bank::test {
namespace {

double read_back(const std::string& text, int decimals) {
  R8 value = 0;
  EXPECT_TRUE(real_field(text, decimals, value)) << text;
  return value;
}

TEST(ParameterField, TextsKeepEveryDigit) {
  EXPECT_EQ(exact_text(86.02, 10, 4), "     86.02");
  EXPECT_EQ(exact_text(-1553.9216, 10, 4), "-1553.9216");
  EXPECT_EQ(exact_text(200, 10, 4), "      200.");
  EXPECT_EQ(exact_text(0, 10, 4), "        0.");
  EXPECT_EQ(exact_text(4.52e-7, 10, 4), "  4.52E-07");
  EXPECT_EQ(exact_text(-0.0466, 6, 4), "-.0466");
  EXPECT_EQ(exact_text(-0.008186501, 10, 4), "-8186501-5");
  EXPECT_EQ(exact_text(0.12345678, 10, 4), "0.12345678");
  EXPECT_EQ(exact_text(0.123456789, 10, 4), ".123456789");
}

TEST(ParameterField, FiguresThatDoNotFitAreRefused) {
  EXPECT_THROW(exact_text(-123456.789012, 10, 4), BankError);
  EXPECT_THROW(real_text(1234567, 6, 4), BankError);
  EXPECT_THROW(real_text(std::numeric_limits<double>::quiet_NaN(), 10, 4), BankError);
  EXPECT_THROW(real_text(std::numeric_limits<double>::infinity(), 10, 4), BankError);
  EXPECT_EQ(real_text(1e-200, 5, 4), "   0.");
  EXPECT_EQ(real_text(-0.00219, 6, 4), "-.0022");
  EXPECT_THROW(integer_text(12345, 4), BankError);
  EXPECT_EQ(integer_text(1234, 4), "1234");
  EXPECT_EQ(padded_text("abc", 5), "abc  ");
  EXPECT_EQ(padded_text("abcdef", 5), "abcde");
}

TEST(ParameterField, RoundedFiguresHoldWhatTheColumnsHold) {
  EXPECT_EQ(real_text(647.096, 6, 2), " 647.1");
  EXPECT_EQ(real_text(45.98999977, 6, 2), " 45.99");
  EXPECT_EQ(real_text(5.1953, 6, 4), "5.1953");
  EXPECT_EQ(real_text(1.0 / 3.0, 13, 6), ".333333333333");
  EXPECT_EQ(real_text(-1.0 / 3.0, 13, 6), "-.33333333333");
}

TEST(ParameterField, EveryFigureIsReadBack) {
  std::mt19937 random(20);
  std::uniform_real_distribution<double> mantissa(-1, 1);
  std::uniform_int_distribution<int> exponent(-6, 5);
  for (int k = 0; k < 20000; ++k) {
    // Figures of at most six digits, as tables have them.
    const double value = std::stod(std::to_string(mantissa(random)));
    const double scaled = value * std::pow(10.0, exponent(random));
    const std::string text = real_text(scaled, 13, 6);
    ASSERT_EQ(text.size(), 13U);
    ASSERT_NEAR(read_back(text, 6), scaled, 1e-7 * std::abs(scaled)) << text;
    ASSERT_EQ(read_back(exact_text(value, 10, 4), 4), value);
  }
}

}  // namespace
}  // namespace talix::bank::test
