#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "api/small_calls.h"
#include "fastprops/error_matrix.h"
#include "fastprops/flash_message.h"
#include "fastprops/flash_record.h"
#include "support/flash_case.h"
#include "support/test_support.h"

namespace talix {
namespace {

using test::FlashCase;
using test::natural_gas;

constexpr R4 kNan = std::numeric_limits<R4>::quiet_NaN();
constexpr R4 kInf = std::numeric_limits<R4>::infinity();

class TalixMessages : public testing::Test {
 protected:
  void SetUp() override { test::fresh_library(); }

  static void expect_cell(int number, int count) {
    EXPECT_EQ(errmat.ERRMAT(error_row::TALIX, number), count);
  }
};

TEST_F(TalixMessages, GoodCallHasNone) {
  FlashCase gas = natural_gas();
  EXPECT_EQ(gas.run(), "");
  EXPECT_EQ(errmat.NERRS, 0);
}

TEST_F(TalixMessages, TemperatureOutsideItsRange) {
  for (const R4 T : {-273.15F, -300.0F, 1500.01F, std::nextafter(1500.0F, 2000.0F), kNan, kInf, -kInf}) {
    FlashCase gas = natural_gas();
    gas.T = T;
    EXPECT_EQ(gas.run(), " Temperature not between 0 and 1773 K, no calculation (TALIX)") << T;
  }
  expect_cell(2, 0);
  EXPECT_EQ(errmat.NERRS, 0);
}

TEST_F(TalixMessages, TemperatureFailureCountsOnlyWithTheHook) {
  const I4 usage = 0, hook = -1, unit = 6;
  SETTALIXUSAGE(&usage, &hook, &unit);
  FlashCase gas = natural_gas();
  gas.T = 2000.0F;
  testing::internal::CaptureStdout();
  gas.run();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  expect_cell(2, 1);
}

TEST_F(TalixMessages, FifteenHundredDegreesPass) {
  FlashCase methane;
  methane.numbers = {20};
  methane.feed = {1.0F};
  methane.T = 1500.0F;
  EXPECT_EQ(methane.run(), "");
  EXPECT_EQ(fl.T, 1773.15F);
}

TEST_F(TalixMessages, PressureOutsideItsRange) {
  for (const R4 P : {-1.0F, 900.1F, kNan, kInf}) {
    FlashCase gas = natural_gas();
    gas.P = P;
    EXPECT_EQ(gas.run(), " Pressure not between 0 and  900 bar, no calculation (TALIX)") << P;
  }
  expect_cell(3, 4);
}

TEST_F(TalixMessages, FeedTooLargeForAnyCalculation) {
  FlashCase gas = natural_gas();
  gas.IFLASH = flash_type::feed_properties;
  gas.feed[2] = 2.0E+9F;
  EXPECT_EQ(gas.run(), " Total feed rate greater than 1.0E+9, no calculation (TALIX)");
}

TEST_F(TalixMessages, UnknownCodeAfterAnyFlashGivesFiniteProperties) {
  for (const R4 T : {-150.0F, -20.0F, 100.0F, 600.0F}) {
    for (const I4 unknown : {-1, 0, 11}) {
      FlashCase gas = natural_gas();
      gas.T = T;
      ASSERT_EQ(gas.run(), "");
      gas.IFLASH = unknown;
      ASSERT_EQ(gas.run(), "");
      for (int row = 1; row <= kPropertyRows; ++row)
        for (int column = 1; column <= kPropertyColumns; ++column)
          EXPECT_TRUE(std::isfinite(gas.TPROPS(row, column))) << T << " C, row " << row;
    }
  }
}

TEST_F(TalixMessages, PressureOfZeroIsLeftToTheFlash) {
  FlashCase gas = natural_gas();
  gas.P = 0.0F;
  EXPECT_EQ(gas.run(), " Pressure not above 0, no flash calculation (FLTP)");
  EXPECT_EQ(fl.NCAL, flash_status::failed);
  gas.IFLASH = flash_type::feed_properties;
  EXPECT_EQ(gas.run(), " Pressure not above 0, no calculation (TALIX)");
}

TEST_F(TalixMessages, PressureOf900BarPasses) {
  FlashCase gas = natural_gas();
  gas.P = 900.0F;
  EXPECT_EQ(gas.run(), "");
}

TEST_F(TalixMessages, VapourFractionOutsideItsRange) {
  for (const R4 FRV : {-0.001F, 1.001F, kNan, kInf}) {
    FlashCase gas = natural_gas();
    gas.FRV = FRV;
    EXPECT_EQ(gas.run(), " Fraction vapour not between 0 and 1, no calculation (TALIX)") << FRV;
  }
  expect_cell(4, 4);
}

TEST_F(TalixMessages, NegativeFeed) {
  FlashCase gas = natural_gas();
  gas.feed[3] = -1.0E-6F;
  EXPECT_EQ(gas.run(), " One of the components has a negative feed, no calculation (TALIX)");
  expect_cell(5, 1);
}

TEST_F(TalixMessages, FeedThatIsNoNumber) {
  for (const R4 feed : {kNan, kInf, -kInf}) {
    FlashCase gas = natural_gas();
    gas.feed[9] = feed;
    EXPECT_EQ(gas.run(), " One of the components has a feed that is not a number, no calculation (TALIX)");
  }
}

TEST_F(TalixMessages, NoFeed) {
  FlashCase gas = natural_gas();
  for (R4& feed : gas.feed) feed = 0.0F;
  EXPECT_EQ(gas.run(), " No feed specified, no calculation (TALIX)");
  expect_cell(6, 1);
}

TEST_F(TalixMessages, NoComponentsMeansNoFeedAndNoLoad) {
  FlashCase gas = natural_gas();
  ASSERT_EQ(gas.run(), "");
  const FlashRecord before = fl;
  FlashCase none;
  EXPECT_EQ(none.run(), " No feed specified, no calculation (TALIX)");
  EXPECT_EQ(std::memcmp(&before.TC, &fl.TC, sizeof fl.TC), 0);
  EXPECT_EQ(fl.LOAD, load_result::complete);
  gas = natural_gas();
  EXPECT_EQ(gas.run(), "");
}

TEST_F(TalixMessages, NumberOfComponentsOutsideItsRange) {
  const char* text = " Number of components not between 0 and 50, no calculation (TALIX)";
  FlashCase many;
  many.numbers.assign(51, 20);
  many.feed.assign(51, 1.0F);
  EXPECT_EQ(many.run(), text);
  for (I4 NC : {-1, 51, 1000000, std::numeric_limits<I4>::max(), std::numeric_limits<I4>::min()}) {
    FlashCase gas = natural_gas();
    std::string STR(80, '#');
    TALIX(&NC, &gas.T, &gas.P, &gas.FRV, &gas.UNIT, 1, &gas.IFLASH, &gas.SCAL, &gas.TPROPS, STR.data(), 80);
    EXPECT_EQ(trimmed(STR), text) << NC;
  }
}

TEST_F(TalixMessages, ComponentNumberThatIsNoNumber) {
  for (const R4 number : {kNan, kInf, 3.0E+9F, -3.0E+9F}) {
    FlashCase gas = natural_gas();
    gas.SCAL(1, 1) = number;
    gas.SCAL(1, 2) = 1.0F;
    I4 NC = 1;
    std::string STR(80, '#');
    TALIX(&NC, &gas.T, &gas.P, &gas.FRV, &gas.UNIT, 1, &gas.IFLASH, &gas.SCAL, &gas.TPROPS, STR.data(), 80);
    EXPECT_EQ(trimmed(STR), " One of the component numbers is not a number, no calculation (TALIX)")
        << number;
  }
}

TEST_F(TalixMessages, FeedTooSmallForAPhase) {
  FlashCase methane;
  methane.numbers = {20};
  methane.feed = {2.0E-8F};
  EXPECT_EQ(methane.run(), " Feed too small to form a phase, no calculation (TALIX)");
}

TEST_F(TalixMessages, FeedAboveTheLimitOfTheFlash) {
  FlashCase gas;
  gas.numbers = {20, 21};
  gas.feed = {1.1E+9F, 1.0F};
  EXPECT_EQ(gas.run(), " One feed stream negative or too big, no flash calculation (FLTP)");
  EXPECT_EQ(errmat.ERRMAT(error_row::FLTP, 1), 1);
  gas.feed = {0.9E+9F, 0.9E+9F};
  EXPECT_EQ(gas.run(), " Total feed rate greater than 1.0E+9, no flash calculation (FLTP)");
  EXPECT_EQ(errmat.ERRMAT(error_row::FLTP, 2), 2);
  gas.numbers = {20};
  gas.feed = {1.0E+9F};
  EXPECT_EQ(gas.run(), "");
}

TEST_F(TalixMessages, FailedLoadIsToldAndNotTriedAgain) {
  for (const int number : {1, 1247, 0, -5, 1300}) {
    FlashCase one;
    one.numbers = {20, number};
    one.feed = {0.5F, 0.5F};
    const std::string text = " Component list not loaded, component number " + std::to_string(number) +
                             " not between 2 and 1246, no calculation (TALIX)";
    EXPECT_EQ(one.run(), text);
    EXPECT_EQ(one.run(), text);
  }
  FlashCase gas = natural_gas();
  EXPECT_EQ(gas.run(), "");
}

TEST_F(TalixMessages, MissingFileIsToldUntilTheInstallDirectoryIsSetAgain) {
  test::ScratchDirectory empty;
  test::fresh_library(empty.path().string());
  FlashCase gas = natural_gas();
  const char* text =
      " Component list not loaded, data file not found or not readable, no calculation (TALIX)";
  EXPECT_EQ(gas.run(), text);
  fl.INSTALL = test::install_directory();
  fl.INSTALL_LENGTH = static_cast<I4>(test::install_directory().size());
  EXPECT_EQ(gas.run(), text) << "the same list is not tried again";
  test::install_from(test::install_directory());
  EXPECT_EQ(gas.run(), "");
}

TEST_F(TalixMessages, NoInstallDirectoryAtAll) {
  test::fresh_library("");
  FlashCase gas = natural_gas();
  EXPECT_EQ(gas.run(),
            " Component list not loaded, data file not found or not readable, no calculation (TALIX)");
}

TEST_F(TalixMessages, FailureLeavesTheTablesAlone) {
  FlashCase gas = natural_gas();
  gas.SCAL.fill(7.0F);
  gas.TPROPS.fill(8.0F);
  gas.P = -1.0F;
  gas.run();
  EXPECT_EQ(gas.SCAL(1, 3), 7.0F);
  EXPECT_EQ(gas.SCAL(11, 2), 7.0F);
  EXPECT_EQ(gas.SCAL(12, 2), 0.0F) << "the enthalpy cell is cleared before the checks";
  EXPECT_EQ(gas.SCAL(12, 3), 7.0F);
  for (const R4 entry : gas.TPROPS.v[0]) EXPECT_EQ(entry, 8.0F);
  EXPECT_EQ(gas.T, -20.0F);
  EXPECT_EQ(gas.P, -1.0F);
  EXPECT_EQ(gas.FRV, 1.0F);
}

TEST_F(TalixMessages, AdiabaticCodesKeepTheirTargetCell) {
  FlashCase gas = natural_gas();
  gas.SCAL(12, 2) = 5.0F;
  gas.IFLASH = flash_type::adiabatic;
  gas.P = -1.0F;
  gas.run();
  EXPECT_EQ(gas.SCAL(12, 2), 5.0F);
  EXPECT_EQ(fl.QSPEC, 5000.0F);
}

TEST_F(TalixMessages, MessageIsCutToTheHostsString) {
  FlashCase gas = natural_gas();
  gas.P = -1.0F;
  I4 NC = 10;
  for (const I4 length : {5, 4, 1, 0, -7}) {
    char STR[12];
    std::memset(STR, '#', sizeof STR);
    TALIX(&NC, &gas.T, &gas.P, &gas.FRV, &gas.UNIT, 1, &gas.IFLASH, &gas.SCAL, &gas.TPROPS, STR, length);
    const int used = length > 0 ? length : 0;
    EXPECT_EQ(std::string(STR, static_cast<std::size_t>(used)),
              std::string(" Pressure").substr(0, static_cast<std::size_t>(used)));
    EXPECT_EQ(STR[used], '#') << length;
  }
}

TEST_F(TalixMessages, ShortStringDoesNotTurnAFailureIntoAResult) {
  FlashCase gas = natural_gas();
  gas.SCAL.fill(0.0F);
  gas.run();
  gas.TPROPS.fill(8.0F);
  gas.P = 0.0F;
  I4 NC = 10;
  char STR[1] = {'#'};
  TALIX(&NC, &gas.T, &gas.P, &gas.FRV, &gas.UNIT, 1, &gas.IFLASH, &gas.SCAL, &gas.TPROPS, STR, 1);
  EXPECT_EQ(gas.TPROPS(1, 1), 8.0F);
}

TEST_F(TalixMessages, LongStringIsBlankPadded) {
  FlashCase gas = natural_gas();
  I4 NC = 10;
  gas.P = -1.0F;
  std::string STR(1000, '#');
  TALIX(&NC, &gas.T, &gas.P, &gas.FRV, &gas.UNIT, 1, &gas.IFLASH, &gas.SCAL, &gas.TPROPS, STR.data(), 1000);
  EXPECT_EQ(trimmed(STR), " Pressure not between 0 and  900 bar, no calculation (TALIX)");
}

TEST_F(TalixMessages, NullArgumentsTouchNothing) {
  FlashCase gas = natural_gas();
  std::string STR(80, '#');
  TALIX(nullptr, &gas.T, &gas.P, &gas.FRV, &gas.UNIT, 1, &gas.IFLASH, &gas.SCAL, &gas.TPROPS, STR.data(), 80);
  EXPECT_EQ(trimmed(STR), " Argument missing, no calculation (TALIX)");
  I4 NC = 10;
  TALIX(&NC, &gas.T, &gas.P, &gas.FRV, &gas.UNIT, 1, &gas.IFLASH, nullptr, &gas.TPROPS, STR.data(), 80);
  EXPECT_EQ(trimmed(STR), " Argument missing, no calculation (TALIX)");
  TALIX(&NC, &gas.T, &gas.P, &gas.FRV, &gas.UNIT, 1, &gas.IFLASH, &gas.SCAL, nullptr, nullptr, 80);
  EXPECT_EQ(fl.NCALLS, 0);
}

TEST_F(TalixMessages, EchoIsOneListStyleLineToAnOpenUnit) {
  const I4 usage = 3, hook = 0;
  const std::string line = "  Pressure not between 0 and  900 bar, no calculation (TALIX)\n";
  FlashCase gas = natural_gas();
  for (const I4 unit : {0, 6, 52, -1}) {
    SETTALIXUSAGE(&usage, &hook, &unit);
    gas.P = -1.0F;
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    gas.run();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), unit == 0 ? line : "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), unit == 6 ? line : "");
  }
}

TEST(MessageText, FirstFiveCharactersDecide) {
  Message STR{};
  STR.blank();
  EXPECT_FALSE(is_hard_failure(STR));
  STR = ".Warning: something";
  EXPECT_FALSE(is_hard_failure(STR));
  STR = "     late text";
  EXPECT_FALSE(is_hard_failure(STR));
  STR = "    x";
  EXPECT_TRUE(is_hard_failure(STR));
}

}  // namespace
}  // namespace talix
