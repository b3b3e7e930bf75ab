#include "bank/check.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "bank/build.h"
#include "bank/check_exceptions.h"
#include "bank/dump.h"
#include "bank/tables.h"
#include "support/bank_source.h"

namespace talix::bank {
namespace {

using testing::Folder;

const std::filesystem::path kData = std::filesystem::path(TALIX_TEST_SOURCE) / "data";

Bank small_bank() {
  const Folder folder;
  testing::write_small_sources(folder);
  return compile_bank(folder.path()).bank;
}

// Faults after one alteration of propane, record 22.
std::string faults_after(const std::function<void(PureRecord&)>& alter) {
  Bank bank = small_bank();
  alter(bank.pure.at(21));
  std::string all;
  for (const std::string& fault : find_faults(bank)) all += fault + '\n';
  return all;
}

std::function<void(PureRecord&)> with_real(std::string_view field, float value) {
  return [=](PureRecord& record) { record.set_real(pure_field(field).cell, value); };
}

TEST(BankCheck, BankOfTheProjectIsSound) {
  ListedExceptions listed(kData);
  for (const std::string& fault : listed.unlisted(find_faults(compile_bank(kData).bank)))
    ADD_FAILURE() << fault;
}

TEST(ListedExceptions, ExcuseTheFaultOfTheirRecordAndFieldOnly) {
  const Folder folder;
  folder.write("exceptions.csv",
               "number,code,field,reason\n22,\" 3P \",TC,a trial\n23,\" 4P \",VC,another\n");
  ListedExceptions listed(folder.path());
  const std::string mine = "purezan.out, record 22 (byte offset 21000): TC is -1 K, outside 3 to 2500";
  const std::string other = "purezan.out, record 22 (byte offset 21000): PC is 0 MPa, outside 0.1 to 200";
  const std::string pair = "binzan.out, record 1 (byte offset 0): TC";
  EXPECT_EQ(fault_parts(mine).number, 22);
  EXPECT_EQ(fault_parts(mine).what, "TC is -1 K, outside 3 to 2500");
  EXPECT_EQ(fault_parts(pair).number, 0);
  EXPECT_EQ(listed.unlisted({mine, other, pair}), (std::vector<std::string>{other, pair}));
  EXPECT_EQ(listed.reason(22, "TC is 5"), "a trial");
  EXPECT_FALSE(listed.reason(23, "TC is 5").has_value());
  // The second row excuses nothing any more.
  ASSERT_EQ(listed.unused().size(), 1U);
  EXPECT_NE(listed.unused()[0].find("record 23, \"VC\""), std::string::npos);
}

TEST(ListedExceptions, WantAReason) {
  const Folder folder;
  folder.write("exceptions.csv", "number,code,field,reason\n22,\" 3P \",TC,\n");
  EXPECT_THROW(ListedExceptions{folder.path()}, BankError);
  EXPECT_TRUE(ListedExceptions(folder.path() / "absent").unlisted({"x"}).size() == 1U);
}

TEST(BankCheck, SmallBankIsSound) {
  EXPECT_EQ(faults_after([](PureRecord&) {}), "");
}

TEST(BankCheck, FaultNamesFileRecordOffsetAndField) {
  const std::string fault = faults_after(with_real("TC", -1));
  EXPECT_NE(fault.find("purezan.out, record 22 (byte offset 21000): TC is -1 K, outside 3 to 4000"),
            std::string::npos)
      << fault;
}

TEST(BankCheck, EveryKindOfAlteredFigureIsFound) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const std::pair<std::string_view, float> figures[] = {
      {"TC", nan},     {"PC", 425},     {"VC", 200},         {"OMEGA", 9},       {"RMOLW", 45},
      {"ATBP", 400},   {"PACHOR", -1},  {"PARABF 11-15", 2}, {"PARABF 1-5", 90}, {"PARABF 6-10", 90},
      {"COFHT", 1e9F}, {"UNIFAC", 161}, {"LVIS50", nan},     {"HF", 1e9F}};
  for (const auto& [field, value] : figures) {
    EXPECT_NE(faults_after(with_real(field, value)), "") << field << " " << value;
  }
}

TEST(BankCheck, AlteredIdentityIsFound) {
  EXPECT_NE(faults_after([](PureRecord& r) { r.set_text(1, 1, "  23"); }).find("standard number"),
            std::string::npos);
  EXPECT_NE(faults_after([](PureRecord& r) { r.set_text(2, 1, " 4P "); }).find("of the directory"),
            std::string::npos);
  EXPECT_NE(faults_after([](PureRecord& r) { r.set_text(5, 7, ""); }).find("name is blank"),
            std::string::npos);
  EXPECT_NE(faults_after([](PureRecord& r) { r.set_text(17, 1, ""); }).find("basis of the curves"),
            std::string::npos);
  EXPECT_NE(faults_after([](PureRecord& r) { r.set_integer(247, 1); }).find("IDDB"), std::string::npos);
  EXPECT_NE(faults_after([](PureRecord& r) { r.bytes[17] = 7; }).find("not printable"), std::string::npos);
}

TEST(BankCheck, FlaggedSetWithoutFiguresIsFound) {
  EXPECT_NE(faults_after([](PureRecord& r) { r.set_integer(186, 1); }).find("TCL is flagged"),
            std::string::npos);
}

TEST(BankCheck, VapourPressureSetMustMeetTheAcentricFactor) {
  const auto wagner = [](float scale) {
    return [scale](PureRecord& record) {
      record.set_integer(50, 1);
      const float set[] = {-6.764F, 1.5509F, -1.5872F, -2.024F};
      for (int i = 0; i < 4; ++i) record.set_real(182 + i, scale * set[i]);
    };
  };
  EXPECT_EQ(faults_after(wagner(1.0F)), "");
  EXPECT_NE(faults_after(wagner(1.2F)).find("acentric factor of PWAG"), std::string::npos);
}

TEST(BankCheck, FittedLightGasMustMeetItsFixedB) {
  const auto nitrogen = [](const char* basis) {
    return [basis](PureRecord& record) {
      record.set_text(2, 1, "N2  ");
      record.set_text(17, 1, basis);
    };
  };
  EXPECT_NE(faults_after(nitrogen("COR ")).find("light-gas"), std::string::npos);
  EXPECT_EQ(faults_after(nitrogen("GEN ")).find("light-gas"), std::string::npos);
}

TEST(BankCheck, UnusedRecordMustBeBlank) {
  Bank bank = small_bank();
  bank.pure.at(4).set_integer(250, 20);
  bank.directory.at(6).code = "XX  ";
  bank.directory.at(7).standard = "   9";
  const std::vector<std::string> faults = find_faults(bank);
  ASSERT_EQ(faults.size(), 3U);
  EXPECT_NE(faults[0].find("record 5 (byte offset 4000): a record without code is not blank"),
            std::string::npos);
  EXPECT_NE(faults[1].find("record 7"), std::string::npos);
  EXPECT_NE(faults[2].find("record 8"), std::string::npos);
}

TEST(BankCheck, CodeTwiceIsFound) {
  Bank bank = small_bank();
  bank.pure.at(8).set_text(2, 1, " 3P ");
  bank.directory.at(8).code = " 3P ";
  std::string all;
  for (const std::string& fault : find_faults(bank)) all += fault;
  EXPECT_NE(all.find("stands in the bank twice"), std::string::npos);
}

TEST(BankCheck, AlteredPairsAreFound) {
  const std::function<void(PairRecord&)> alterations[] = {
      [](PairRecord& p) { p.set_integer(1, 220009); },
      [](PairRecord& p) { set_pair_text(p, 17, 17, "0"); },
      [](PairRecord& p) { set_pair_text(p, 17, 17, "x"); },
      [](PairRecord& p) { set_pair_text(p, 5, 5, "3"); },
      [](PairRecord& p) { set_pair_real(p, 1, 3.0F); },
      [](PairRecord& p) { set_pair_real(p, 2, 0.5F); },
      [](PairRecord& p) { set_pair_real(p, 30, std::numeric_limits<float>::infinity()); }};
  for (const auto& alter : alterations) {
    Bank bank = small_bank();
    alter(bank.pairs.at(0));
    const std::vector<std::string> faults = find_faults(bank);
    ASSERT_FALSE(faults.empty());
    EXPECT_EQ(faults[0].find("binzan.out, record 1 (byte offset 0): "), 0U) << faults[0];
  }
}

TEST(BankCheck, ExitCodeTellsFaultsAndUnreadableFiles) {
  const Folder folder;
  Bank bank = small_bank();
  write_bank(folder.path(), bank);
  CheckOptions options;
  options.share = folder.path();
  options.report.clear();
  ::testing::internal::CaptureStdout();
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(check_main(options), 0);
  bank.pure.at(21).set_real(51, -1);
  write_bank(folder.path(), bank);
  EXPECT_EQ(check_main(options), 1);
  folder.write("purezan.out", "garbage");
  EXPECT_EQ(check_main(options), 1);
  const std::string errors = ::testing::internal::GetCapturedStderr();
  EXPECT_NE(::testing::internal::GetCapturedStdout().find("2 components"), std::string::npos);
  EXPECT_NE(errors.find("TC is -1 K"), std::string::npos);
  EXPECT_NE(errors.find("purezan.out, byte offset 7: the file ends inside a record"), std::string::npos);
}

}  // namespace
}  // namespace talix::bank
