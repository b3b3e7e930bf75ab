#include "api/catalogue.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "api/small_calls.h"
#include "base/text.h"
#include "fastprops/flash_record.h"
#include "support/flash_case.h"
#include "support/test_support.h"

namespace talix {
namespace {

constexpr int kRecords = kLastComponentNumber;

struct Tables {
  std::vector<R4> critt, critp, molwt, apbpt, frzpt, heatc;
  std::string names;
  I4 COUNT = -1;
  Tables() : names(kRecords * 28, '#') {
    for (auto* table : {&critt, &critp, &molwt, &apbpt, &frzpt, &heatc}) table->assign(kRecords, -7.0F);
  }
  void fetch() {
    GETTALIXPROPS(&COUNT, critt.data(), critp.data(), molwt.data(), apbpt.data(), frzpt.data(), heatc.data(),
                  names.data(), 28);
  }
  [[nodiscard]] std::string name(int number) const {
    return names.substr(static_cast<std::size_t>(number - 1) * 28, 28);
  }
};

class Catalogue : public testing::Test {
 protected:
  void SetUp() override { test::fresh_library(); }
  static std::size_t at(int number) { return static_cast<std::size_t>(number - 1); }
};

TEST_F(Catalogue, ListHoldsTheRecordsOfTheFile) {
  Tables t;
  t.fetch();
  const auto size =
      std::filesystem::file_size(std::filesystem::path(test::install_directory()) / "Zandor" / "purezan.out");
  EXPECT_EQ(t.COUNT, static_cast<I4>(size / 1000));
  EXPECT_EQ(trimmed(t.name(20)), "methane");
  EXPECT_NEAR(t.critt[at(20)], 190.56F, 0.05F);
  EXPECT_NEAR(t.critp[at(20)], 4.599F, 0.01F) << "MPa, as stored";
  EXPECT_NEAR(t.molwt[at(20)], 16.043F, 0.005F);
  EXPECT_NEAR(t.apbpt[at(20)], 111.67F, 0.2F);
  EXPECT_EQ(t.critt[at(kRecords)], 0.0F) << "cleared beyond the records";
  EXPECT_EQ(t.name(kRecords)[0], '#') << "names beyond the records are left alone";
}

TEST_F(Catalogue, MissingFileCountsNone) {
  test::ScratchDirectory empty;
  test::install_from(empty.path().string());
  Tables t;
  t.fetch();
  EXPECT_EQ(t.COUNT, 0);
  EXPECT_EQ(t.critt[0], 0.0F);
  EXPECT_EQ(t.name(1)[0], '#');
  I4 COUNT = -1;
  std::vector<R4> values(kRecords * 17, 3.0F);
  GETTALIXAPPROPS(&COUNT, values.data(), values.data(), values.data(), values.data());
  EXPECT_EQ(COUNT, 0);
  EXPECT_EQ(values[0], 3.0F);
  R4* v = values.data();
  GETTALIXELEMENTS(&COUNT, v, v, v, v, v, v, v, v, v);
  EXPECT_EQ(COUNT, 0);
  EXPECT_EQ(values[0], 3.0F);
}

TEST_F(Catalogue, ShortFileEndsTheList) {
  test::ScratchDirectory scratch;
  std::filesystem::create_directories(scratch.path() / "Zandor");
  {
    std::ofstream out(scratch.path() / "Zandor" / "purezan.out", std::ios::binary);
    const std::vector<char> bytes(3500, 'A');
    out.write(bytes.data(), 3500);
  }
  test::install_from(scratch.path().string());
  Tables t;
  t.fetch();
  EXPECT_EQ(t.COUNT, 3) << "the record that is cut short is not counted";
  EXPECT_EQ(t.name(3), std::string(28, 'A'));
}

TEST_F(Catalogue, OneRecordByItsNumber) {
  const I4 ID = 22;
  R4 v[6] = {-1, -1, -1, -1, -1, -1};
  std::string name(28, '#');
  I4 STATUS = -9;
  GETTALIXPROPSID(&ID, &v[0], &v[1], &v[2], &v[3], &v[4], &v[5], name.data(), 28, &STATUS);
  EXPECT_EQ(STATUS, 0);
  EXPECT_EQ(trimmed(name), "propane");
  EXPECT_NEAR(v[2], 44.097F, 0.01F);
}

TEST_F(Catalogue, RecordBeyondTheFileIsBlankAndZero) {
  for (const I4 ID : {0, -3, 5000, 2000000000}) {
    R4 v[6] = {-1, -1, -1, -1, -1, -1};
    std::string name(28, '#');
    I4 STATUS = -9;
    GETTALIXPROPSID(&ID, &v[0], &v[1], &v[2], &v[3], &v[4], &v[5], name.data(), 28, &STATUS);
    EXPECT_EQ(STATUS, -1) << ID;
    EXPECT_EQ(name, std::string(28, ' '));
    for (const R4 value : v) EXPECT_EQ(value, 0.0F);
  }
}

TEST_F(Catalogue, NameFollowsTheHostsLength) {
  const I4 ID = 20;
  R4 v[6];
  I4 STATUS = 0;
  char wide[34];
  std::memset(wide, '#', sizeof wide);
  GETTALIXPROPSID(&ID, &v[0], &v[1], &v[2], &v[3], &v[4], &v[5], wide, 32, &STATUS);
  EXPECT_EQ(std::string(wide, 33), "methane" + std::string(25, ' ') + "#");
  char narrow[6] = {'#', '#', '#', '#', '#', '#'};
  GETTALIXPROPSID(&ID, &v[0], &v[1], &v[2], &v[3], &v[4], &v[5], narrow, 4, &STATUS);
  EXPECT_EQ(std::string(narrow, 6), "meth##");
}

TEST_F(Catalogue, ElementsAreCountedAsReals) {
  std::vector<std::vector<R4>> t(9, std::vector<R4>(kRecords, -1.0F));
  I4 COUNT = 0;
  GETTALIXELEMENTS(&COUNT, t[0].data(), t[1].data(), t[2].data(), t[3].data(), t[4].data(), t[5].data(),
                   t[6].data(), t[7].data(), t[8].data());
  EXPECT_GT(COUNT, 1000);
  EXPECT_EQ(t[0][at(22)], 3.0F);
  EXPECT_EQ(t[1][at(22)], 8.0F);
  EXPECT_EQ(t[2][at(15)], 2.0F) << "nitrogen";
  EXPECT_EQ(t[3][at(4)], 2.0F) << "carbon dioxide";
  EXPECT_EQ(t[4][at(11)], 1.0F) << "hydrogen sulphide";
}

TEST_F(Catalogue, CorrelationsStandRecordByRecord) {
  std::vector<R4> cpv(kRecords * 8), hvap(kRecords * 17), dliq(kRecords * 3), wag(kRecords * 4);
  I4 COUNT = 0;
  GETTALIXAPPROPS(&COUNT, cpv.data(), hvap.data(), dliq.data(), wag.data());
  EXPECT_GT(COUNT, 1000);
  test::FlashCase methane;
  methane.numbers = {20};
  methane.feed = {1.0F};
  ASSERT_EQ(methane.run(), "");
  for (int i = 1; i <= 8; ++i) EXPECT_EQ(cpv[at(20) * 8 + static_cast<std::size_t>(i - 1)], fl.COFHT(i, 1));
  for (int i = 1; i <= 3; ++i) EXPECT_EQ(dliq[at(20) * 3 + static_cast<std::size_t>(i - 1)], fl.CDEN(i, 1));
}

TEST_F(Catalogue, NullArraysAreSkipped) {
  I4 COUNT = 0;
  GETTALIXPROPS(&COUNT, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 28);
  EXPECT_GT(COUNT, 1000);
  GETTALIXAPPROPS(nullptr, nullptr, nullptr, nullptr, nullptr);
  GETTALIXELEMENTS(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
  GETTALIXPROPSID(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 28, nullptr);
}

TEST_F(Catalogue, WeightToMoleUsesTheMolarMassesOfTheFile) {
  const I4 numbers[3] = {20, 22, 9};
  const I4 N = 3;
  R4 weight[3] = {16.043F, 44.096F, 36.03F};
  R4 mole[3];
  WEIGHTTOMOLE(numbers, &N, weight, mole);
  EXPECT_NEAR(mole[0], 0.25F, 1.0E-4F);
  EXPECT_NEAR(mole[1], 0.25F, 1.0E-4F);
  EXPECT_NEAR(mole[2], 0.50F, 1.0E-4F);
  EXPECT_NEAR(weight[0] + weight[1] + weight[2], 1.0F, 1.0E-6F) << "normalised in place";
}

TEST_F(Catalogue, WeightToMoleRefusesUnknownNumbers) {
  for (const I4 bad : {0, -1, 1247, 2000000000, 85}) {
    const I4 numbers[2] = {20, bad};
    const I4 N = 2;
    R4 weight[2] = {0.5F, 0.5F};
    R4 mole[2] = {9.0F, 9.0F};
    WEIGHTTOMOLE(numbers, &N, weight, mole);
    EXPECT_EQ(mole[0], 0.0F) << bad;
    EXPECT_EQ(mole[1], 0.0F) << bad;
  }
}

TEST(SmallCalls, ClearingSetsEveryEntry) {
  ScalTable SCAL;
  PropertyTable TPROPS;
  SCAL.fill(1.0F);
  TPROPS.fill(1.0F);
  CLEARSCAL(&SCAL);
  CLEARTPROPS(&TPROPS);
  for (int j = 1; j <= 8; ++j)
    for (int i = 1; i <= 52; ++i) EXPECT_EQ(SCAL(i, j), 0.0F);
  for (int j = 1; j <= 3; ++j)
    for (int i = 1; i <= 15; ++i) EXPECT_EQ(TPROPS(i, j), 0.0F);
  CLEARSCAL(nullptr);
  CLEARTPROPS(nullptr);
}

TEST(SmallCalls, NormaliseDividesByTheSum) {
  R4 x[3] = {1.0F, 2.0F, 1.0F};
  const I4 N = 3;
  NORMALISECOMPONENTS(&N, x);
  EXPECT_EQ(x[0], 0.25F);
  EXPECT_EQ(x[1], 0.50F);
  R4 zero[2] = {0.0F, 0.0F};
  const I4 two = 2;
  NORMALISECOMPONENTS(&two, zero);
  EXPECT_NE(zero[0], zero[0]) << "a zero sum is not guarded";
  NORMALISECOMPONENTS(nullptr, x);
  NORMALISECOMPONENTS(&N, nullptr);
}

TEST(SmallCalls, InstallDirectoryIsStoredWithItsLength) {
  reset_flash_record();
  fl.NCOLD = 5;
  const std::string path = "C:\\Data\\Talix   ";
  const I4 used = 13;
  SETTALIXINSTALL(path.c_str(), static_cast<I4>(path.size()), &used);
  EXPECT_EQ(fl.INSTALL.sub(1, fl.INSTALL_LENGTH), "C:\\Data\\Talix");
  EXPECT_EQ(fl.NCOLD, 0);
  for (const I4 length : {-5, 0, 300, 2000000000}) {
    SETTALIXINSTALL(path.c_str(), static_cast<I4>(path.size()), &length);
    EXPECT_GE(fl.INSTALL_LENGTH, 0);
    EXPECT_LE(fl.INSTALL_LENGTH, 256);
  }
  SETTALIXINSTALL(path.c_str(), -4, &used);
  EXPECT_EQ(trimmed(fl.INSTALL), "");
  SETTALIXINSTALL(nullptr, 4, &used);
  SETTALIXINSTALL(path.c_str(), 4, nullptr);
}

TEST(SmallCalls, UsageIsStored) {
  reset_flash_record();
  const I4 usage = 4, hook = -1, unit = 6;
  SETTALIXUSAGE(&usage, &hook, &unit);
  EXPECT_EQ(fl.USAGE1, 4);
  EXPECT_EQ(fl.MSGHOOK.value, -1);
  EXPECT_EQ(fl.MSGUNIT, 6);
  SETTALIXUSAGE(nullptr, &hook, &unit);
}

}  // namespace
}  // namespace talix
