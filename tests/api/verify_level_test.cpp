// What the level of the check changes around the flashes: the echo, the size of the feed, what a failure leaves.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include "api/small_calls.h"
#include "fastprops/error_matrix.h"
#include "fastprops/flash_record.h"
#include "support/flash_case.h"

namespace talix {
namespace {

using test::FlashCase;
using test::natural_gas;

constexpr R4 kNan = std::numeric_limits<R4>::quiet_NaN();
constexpr std::array<I4, 10> kFlashCodes = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};

class VerifyLevel : public testing::Test {
 protected:
  void SetUp() override { test::fresh_library(); }
};

TEST_F(VerifyLevel, IsCheckedFromTheLoadOn) {
  EXPECT_FALSE(fl.UNVERIFIED);
  test::verify(0);
  EXPECT_TRUE(fl.UNVERIFIED);
  EXPECT_EQ(natural_gas().run(), "");
  EXPECT_TRUE(fl.UNVERIFIED) << "a call keeps it";
  for (const int other : {-1, 2, 1000000}) {
    test::verify(other);
    EXPECT_TRUE(fl.UNVERIFIED) << other;
  }
  SETTALIXVERIFY(nullptr);
  EXPECT_TRUE(fl.UNVERIFIED);
  test::verify(1);
  EXPECT_FALSE(fl.UNVERIFIED);
  for (const int other : {-1, 2, 1000000}) {
    test::verify(other);
    EXPECT_FALSE(fl.UNVERIFIED) << other;
  }
}

// The lines that a call sends to standard output.
std::string echo_of(FlashCase c) {
  const I4 usage = 0, hook = 0, output = 6;
  SETTALIXUSAGE(&usage, &hook, &output);
  testing::internal::CaptureStdout();
  c.run();
  return testing::internal::GetCapturedStdout();
}

// A pressure of 0 is refused by the search for start values and then by the flash itself.
TEST_F(VerifyLevel, TextThatStandsIsEchoedOnceBehindTheCheck) {
  const std::string line = "  Pressure not between 0 and  900 bar, no flash calculation (FLVP)\n";
  for (const I4 code : {flash_type::bubble_temperature, flash_type::dew_temperature}) {
    FlashCase c = natural_gas();
    c.IFLASH = code;
    c.P = 0.0F;
    test::verify(1);
    ERRINIT();
    EXPECT_EQ(echo_of(c), line) << code;
    const ErrorMatrix checked = errmat;
    test::verify(0);
    ERRINIT();
    const std::string alone = echo_of(c);
    EXPECT_EQ(alone.substr(alone.size() - line.size()), line);
    EXPECT_EQ(std::memcmp(&checked, &errmat, sizeof checked), 0) << "the counts are those of the flashes";
  }
}

TEST_F(VerifyLevel, RefusalBeforeTheFlashIsEchoedOnceAtBothLevels) {
  for (const int level : {0, 1}) {
    test::verify(level);
    FlashCase c = natural_gas();
    c.P = -1.0F;
    EXPECT_EQ(echo_of(c), "  Pressure not between 0 and  900 bar, no calculation (TALIX)\n") << level;
    EXPECT_EQ(echo_of(natural_gas()), "") << level;
  }
}

FlashCase case_of(I4 code, R4 factor, char UNIT) {
  FlashCase c = natural_gas();
  c.IFLASH = code;
  c.UNIT = UNIT;
  if (code == flash_type::bubble_pressure || code == flash_type::bubble_temperature) c.T = -120.0F;
  if (code == flash_type::pressure_at_fraction || code == flash_type::temperature_at_fraction) c.FRV = 0.9F;
  for (R4& feed : c.feed) feed *= 0.5F * factor;
  c.SCAL(12, 2) = -2.0F * factor;
  return c;
}

// A power of two changes no digit of a feed: 2^-20 is about 1E-6 and 2^23 about 1E7.
TEST_F(VerifyLevel, SmallAndLargeFeedsGiveTheResultsOfAFeedOfOne) {
  for (const I4 code : kFlashCodes)
    for (const char UNIT : {'M', 'W', 'x'}) {
      // On the mass basis 16 kg have about 0.8 kmol.
      const R4 one = UNIT == 'W' ? 32.0F : 1.0F;
      FlashCase unit = case_of(code, one, UNIT);
      const std::string text = unit.run();
      for (const R4 factor : {0x1p-20F, 0x1p23F, 0x1p-24F, 0x1p29F}) {
        FlashCase c = case_of(code, one * factor, UNIT);
        const std::string what = std::to_string(code) + UNIT + " " + std::to_string(factor);
        EXPECT_EQ(c.run(), text) << what;
        EXPECT_EQ(c.T, unit.T) << what;
        EXPECT_EQ(c.P, unit.P) << what;
        EXPECT_EQ(c.FRV, unit.FRV) << what;
        EXPECT_EQ(std::memcmp(&c.TPROPS, &unit.TPROPS, sizeof c.TPROPS), 0) << what;
        for (int row = 1; row <= 11; ++row)
          for (int column = 6; column <= 8; ++column)
            EXPECT_EQ(c.SCAL(row, column), unit.SCAL(row, column)) << what;
        for (int row = 1; row <= 12; ++row)
          for (int column = row <= 10 ? 3 : 2; column <= 5; ++column)
            EXPECT_EQ(c.SCAL(row, column), unit.SCAL(row, column) * factor) << what << ", row " << row;
        for (int row = 1; row <= 10; ++row)
          EXPECT_EQ(c.SCAL(row, 2), c.feed[static_cast<std::size_t>(row - 1)]) << what;
      }
    }
}

TEST_F(VerifyLevel, FeedsOfAnyDigitsAgreeWithAFeedOfOne) {
  FlashCase one = natural_gas();
  ASSERT_EQ(one.run(), "");
  for (const R4 factor : {1.0E-7F, 1.0E-6F, 3.0E-4F, 3.0E4F, 1.0E7F, 0.9E9F}) {
    FlashCase c = natural_gas();
    for (R4& feed : c.feed) feed *= factor;
    ASSERT_EQ(c.run(), "") << factor;
    EXPECT_NEAR(c.FRV, one.FRV, 2.0E-5F) << factor;
    for (int i = 1; i <= 10; ++i) {
      EXPECT_NEAR(c.SCAL(i, 6), one.SCAL(i, 6), 2.0E-6F) << factor;
      EXPECT_NEAR(c.SCAL(i, 7), one.SCAL(i, 7), 2.0E-5F) << factor;
    }
    for (int row : {2, 7, 8, 10, 11})
      for (int column = 1; column <= 2; ++column)
        EXPECT_NEAR(c.TPROPS(row, column) / one.TPROPS(row, column), 1.0F, 1.0E-4F)
            << factor << ", row " << row;
  }
}

// The least flow of a phase is one in mol without the check, so that a small feed loses its smaller phase.
TEST_F(VerifyLevel, SmallFeedKeepsItsSmallerPhaseOnlyBehindTheCheck) {
  FlashCase small = natural_gas();
  for (R4& feed : small.feed) feed *= 3.0E-8F;
  ASSERT_EQ(small.run(), "");
  EXPECT_LT(small.FRV, 0.99F);
  test::verify(0);
  ASSERT_EQ(small.run(), "");
  EXPECT_TRUE(small.FRV == 0.0F || small.FRV == 1.0F) << small.FRV;
}

TEST_F(VerifyLevel, FeedIsRefusedByItsOwnSizeAtBothLevels) {
  for (const int level : {0, 1}) {
    test::verify(level);
    FlashCase methane;
    methane.numbers = {20};
    methane.feed = {2.0E-8F};
    EXPECT_EQ(methane.run(), " Feed too small to form a phase, no calculation (TALIX)") << level;
    methane.feed = {1.0E-7F};
    EXPECT_EQ(methane.run(), "") << level;
    methane.feed = {1.0E+9F};
    EXPECT_EQ(methane.run(), "") << level;
    methane.feed = {1.1E+9F};
    EXPECT_EQ(methane.run(), " One feed stream negative or too big, no flash calculation (FLTP)") << level;
    methane.IFLASH = flash_type::bubble_pressure;
    methane.T = -100.0F;
    EXPECT_EQ(methane.run(), " Feed flow not between 1.0E-9 and 1.0E+9, no flash calculation (FLVT)")
        << level;
    FlashCase two;
    two.numbers = {20, 21};
    two.feed = {0.9E+9F, 0.9E+9F};
    EXPECT_EQ(two.run(), " Total feed rate greater than 1.0E+9, no flash calculation (FLTP)") << level;
  }
}

TEST_F(VerifyLevel, CallWithoutAFlashFindsTheFlowsOfAScaledCall) {
  FlashCase large = natural_gas();
  for (R4& feed : large.feed) feed *= 1.0E+7F;
  ASSERT_EQ(large.run(), "");
  FlashCase after = large;
  after.IFLASH = 77;
  ASSERT_EQ(after.run(), "");
  for (int i = 1; i <= 10; ++i)
    for (int column = 3; column <= 8; ++column) EXPECT_EQ(after.SCAL(i, column), large.SCAL(i, column));
}

struct Failing {
  const char* what;
  R4 T, P, FRV;
  R4 feed;  // of the first component
};
constexpr Failing kFailing[] = {
    {"temperature", 2000.0F, 40.0F, 1.0F, 0.02F},  {"temperature", kNan, 40.0F, 1.0F, 0.02F},
    {"pressure", -20.0F, -1.0F, 1.0F, 0.02F},      {"pressure", -20.0F, kNan, 1.0F, 0.02F},
    {"pressure of 0", -20.0F, 0.0F, 0.5F, 0.02F},  {"fraction", -20.0F, 40.0F, 1.5F, 0.02F},
    {"negative feed", -20.0F, 40.0F, 1.0F, -1.0F}, {"feed", -20.0F, 40.0F, 1.0F, kNan},
    {"large feed", -20.0F, 40.0F, 0.5F, 2.0E9F},   {"far too hot", 1400.0F, 40.0F, 0.5F, 0.02F},
};

// The capital of the unit and the cleared enthalpy cell are written before anything is checked.
TEST_F(VerifyLevel, FailedCallChangesNothingOfTheHost) {
  int failed = 0;
  for (const int level : {0, 1}) {
    test::verify(level);
    for (const Failing& f : kFailing)
      for (const I4 code : kFlashCodes) {
        FlashCase c = natural_gas();
        c.SCAL.fill(7.0F);
        c.TPROPS.fill(8.0F);
        c.SCAL(3, 6) = kNan;
        c.SCAL(50, 3) = 9.0F;
        c.IFLASH = code;
        c.T = f.T;
        c.P = f.P;
        c.FRV = f.FRV;
        c.feed[0] = f.feed;
        c.SCAL(12, 2) = code == 8 || code == 9 ? -5.0E8F : 0.0F;
        for (int i = 1; i <= 10; ++i) {
          c.SCAL(i, 1) = static_cast<R4>(c.numbers[static_cast<std::size_t>(i - 1)]);
          c.SCAL(i, 2) = c.feed[static_cast<std::size_t>(i - 1)];
        }
        const ScalTable SCAL = c.SCAL;
        const PropertyTable TPROPS = c.TPROPS;
        const std::string STR = c.run();
        if (STR.empty() || STR[0] == '.' || STR.find("changed enthalpy") != std::string::npos) continue;
        ++failed;
        const std::string what = std::string(f.what) + ", code " + std::to_string(code) + STR;
        EXPECT_EQ(std::memcmp(&c.SCAL, &SCAL, sizeof SCAL), 0) << what;
        EXPECT_EQ(std::memcmp(&c.TPROPS, &TPROPS, sizeof TPROPS), 0) << what;
        EXPECT_EQ(std::memcmp(&c.T, &f.T, sizeof c.T), 0) << what;
        EXPECT_EQ(std::memcmp(&c.P, &f.P, sizeof c.P), 0) << what;
        EXPECT_EQ(std::memcmp(&c.FRV, &f.FRV, sizeof c.FRV), 0) << what;
      }
  }
  EXPECT_GT(failed, 150);
}

// Mass flows that are not numbers, forced through a constant of a component.
TEST_F(VerifyLevel, ResultThatIsNoNumberIsRefusedBehindTheCheck) {
  FlashCase gas = natural_gas();
  ASSERT_EQ(gas.run(), "");
  fl.AMW(3) = kNan;
  gas = natural_gas();
  gas.T = 100.0F;
  gas.P = 1.0F;
  gas.UNIT = 'x';
  gas.TPROPS.fill(8.0F);
  EXPECT_EQ(gas.run(), " A result is not a number, no calculation (TALIX)");
  EXPECT_EQ(gas.TPROPS(1, 1), 8.0F);
  EXPECT_EQ(gas.SCAL(1, 3), 0.0F);
  EXPECT_EQ(gas.T, 100.0F);
  test::verify(0);
  EXPECT_EQ(gas.run(), "");
  EXPECT_TRUE(std::isnan(gas.SCAL(11, 3)));
}

// What a host left in entries that a call does not write is its own.
TEST_F(VerifyLevel, ForeignEntriesOfTheTablesDoNotCount) {
  FlashCase gas = natural_gas();
  gas.SCAL.fill(kNan);
  EXPECT_EQ(gas.run(), "");
  EXPECT_TRUE(std::isnan(gas.SCAL(12, 8)));
  EXPECT_TRUE(std::isnan(gas.SCAL(20, 3)));
}

}  // namespace
}  // namespace talix
