// Numbers in the columns of formatted files.
#include "database/field_text.h"

#include <gtest/gtest.h>

#include <string>

namespace talix::test {
namespace {

R8 real(std::string_view field, int decimals = 4) {
  R8 value = -99.0;
  EXPECT_TRUE(real_field(field, decimals, value)) << field;
  return value;
}

bool refused(std::string_view field) {
  R8 value = -99.0;
  return !real_field(field, 4, value) && value == 0.0;
}

TEST(FieldText, APointGoesBeforeTheDecimalsOfTheField) {
  EXPECT_EQ(real("   12.5   "), 12.5);
  EXPECT_EQ(real("    125000"), 12.5);
  EXPECT_EQ(real("  -1250000"), -125.0);
  EXPECT_EQ(real("      5.", 2), 5.0);
  EXPECT_EQ(real("     .25"), 0.25);
  EXPECT_EQ(real("    -.25"), -0.25);
  EXPECT_EQ(real("    +0.1"), 0.1);
}

TEST(FieldText, ExponentsOfEverySpelling) {
  for (const char* spelling : {"1.5E-03", "1.5e-3", "1.5D-03", "1.5d-3", "1.5-3", "0.15E-2", " 1.5 E -03 "})
    EXPECT_EQ(real(spelling), 1.5e-3) << spelling;
  EXPECT_EQ(real("1.5E+03"), 1500.0);
  EXPECT_EQ(real("1.5E3"), 1500.0);
  EXPECT_EQ(real("1.5+3"), 1500.0);
  // Without a point the last four digits are decimals, also in front of an exponent.
  EXPECT_EQ(real("-8186501-5"), -0.008186501);
}

TEST(FieldText, BlanksCountForNothing) {
  EXPECT_EQ(real(""), 0.0);
  EXPECT_EQ(real("          "), 0.0);
  EXPECT_EQ(real(" 1 2.5 "), 12.5);
  I4 number = -1;
  EXPECT_TRUE(integer_field("    ", number));
  EXPECT_EQ(number, 0);
  EXPECT_TRUE(integer_field(" 40 30", number));
  EXPECT_EQ(number, 4030);
}

TEST(FieldText, AnythingElseIsRefused) {
  for (const char* field : {"abc", "1.2.3", "1E", "1E+", "--1", "+-1", "1.5X", ".", "-", "nan", "inf",
                            "1E99999", "1E400", "0x10", "1,5", "E5"})
    EXPECT_TRUE(refused(field)) << field;
  EXPECT_TRUE(refused(std::string(100, '1')));
  I4 number = -1;
  for (const char* field : {"1.0", "abc", "--1", "+-1", "+", "-", "99999999999"}) {
    EXPECT_FALSE(integer_field(field, number)) << field;
    EXPECT_EQ(number, 0);
  }
  EXPECT_TRUE(integer_field("+7", number));
  EXPECT_EQ(number, 7);
  EXPECT_TRUE(integer_field("-7", number));
  EXPECT_EQ(number, -7);
}

TEST(FieldText, SinglePrecisionIsRoundedOnce) {
  R4 value = 0.0F;
  // Between two singles and next to their middle: through a double it would be rounded twice.
  ASSERT_TRUE(real_field("1.00000005960464478", 4, value));
  EXPECT_EQ(value, 1.00000012F);
  ASSERT_TRUE(real_field(" -0.008186501", 4, value));
  EXPECT_EQ(value, -0.008186501F);
}

}  // namespace
}  // namespace talix::test
