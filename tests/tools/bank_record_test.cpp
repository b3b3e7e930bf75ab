#include "bank/record.h"

#include <gtest/gtest.h>

#include <limits>

#include "bank/tables.h"
#include "support/bank_source.h"

namespace talix::bank {
namespace {

using testing::Folder;

template <class Action>
std::string error_of(Action action) {
  try {
    action();
  } catch (const BankError& error) {
    return error.what();
  }
  return {};
}

// Integer at a byte offset of a file, little-endian.
std::int32_t integer_at(const std::string& content, std::size_t offset) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    value |= static_cast<std::uint32_t>(static_cast<std::uint8_t>(content.at(offset + i))) << (8 * i);
  }
  return static_cast<std::int32_t>(value);
}

// A bank of COUNT numbers, all unused but the last.
Bank small_bank(int count) {
  Bank bank;
  for (int i = 1; i <= count; ++i) {
    bank.pure.push_back(blank_pure_record());
    const std::string digits = std::to_string(i);
    bank.directory.push_back({std::string(4 - digits.size(), ' ') + digits, i == count ? "LAST" : "    "});
  }
  bank.pure.back().set_text(2, 1, "LAST");
  bank.pairs.push_back(blank_pair_record(30020));
  bank.hydrate.emplace_back();
  bank.hydrate_directory.push_back({"   1", "    "});
  return bank;
}

TEST(PureRecord, CellsAreLittleEndianAtFourTimesTheirIndex) {
  PureRecord record;
  record.set_integer(26, 0x01020304);
  record.set_real(51, 1.0F);
  record.set_text(1, 1, "  20");
  EXPECT_EQ(record.bytes[100], 4);
  EXPECT_EQ(record.bytes[103], 1);
  EXPECT_EQ(record.bytes[203], 0x3F);
  EXPECT_EQ(record.bytes[202], 0x80);
  EXPECT_EQ(record.bytes[3], '0');
  EXPECT_EQ(record.integer(26), 0x01020304);
  EXPECT_EQ(record.real(51), 1.0F);
  EXPECT_EQ(record.text(1, 2), std::string("  20\0\0\0\0", 8));
}

TEST(PureRecord, LastCellIs250) {
  PureRecord record;
  record.set_integer(250, -2);
  EXPECT_EQ(record.bytes[999], 0xFF);
  EXPECT_THROW(record.set_integer(251, 1), std::out_of_range);
  EXPECT_THROW(record.set_integer(0, 1), std::out_of_range);
}

TEST(PureRecord, FieldsStandAtTheBytesThatTheReadersUse) {
  const std::pair<std::string_view, int> offsets[] = {
      {"ICSTD", 0},    {"ICS", 4},          {"CIUPAC", 16},        {"CMFNAM", 44},
      {"ASPNAM", 52},  {"ELEM", 100},       {"ISTAT2", 168},       {"IPSA", 184},
      {"IDLI", 188},   {"IPWA", 196},       {"TC", 200},           {"PC", 204},
      {"VC", 208},     {"OMEGA", 212},      {"RMOLW", 216},        {"ATBP", 220},
      {"TMELT", 224},  {"RHO", 228},        {"UOPK", 232},         {"HCRAT", 236},
      {"PACHOR", 264}, {"HF", 292},         {"HCD", 304},          {"HCW", 308},
      {"COFHT", 400},  {"PARABF 1-5", 440}, {"PARABF 11-15", 460}, {"PARABF 6-10", 480},
      {"PANTO", 548},  {"DDIP", 584},       {"DIPOLE", 616},       {"HVAPCF", 624},
      {"PSAT", 692},   {"DLIP", 712},       {"PWAG", 724},         {"TCL", 744},
      {"TCV", 772},    {"VIL", 784},        {"VIV", 812},          {"UNIFAC", 824},
      {"SURT", 924},   {"SS 5-8", 952},     {"SS 1-4", 968},       {"IDDB", 984},
      {"ICPIG", 992},  {"ISOFAM", 996}};
  for (const auto& [name, offset] : offsets) EXPECT_EQ(4 * (pure_field(name).cell - 1), offset) << name;
  EXPECT_THROW((void)pure_field("NONE"), std::out_of_range);
}

TEST(PureRecord, UnusedRecordIsBlankTextAndZeros) {
  const PureRecord record = blank_pure_record();
  EXPECT_TRUE(is_unused(record));
  for (std::size_t i = 0; i < 100; ++i) ASSERT_EQ(record.bytes[i], ' ');
  for (std::size_t i = 100; i < 1000; ++i) ASSERT_EQ(record.bytes[i], 0);
}

TEST(PairRecord, TextAndRealsStandBehindTheKey) {
  PairRecord record = blank_pair_record(200022);
  set_pair_text(record, 5, 5, "1");
  set_pair_text(record, 17, 21, "31");
  set_pair_real(record, 1, 1.0F);
  set_pair_real(record, 49, 1.0F);
  EXPECT_EQ(record.integer(1), 200022);
  EXPECT_EQ(record.bytes[8], '1');
  EXPECT_EQ(record.bytes[20], '3');
  EXPECT_EQ(record.bytes[22], ' ');
  EXPECT_EQ(record.bytes[107], 0x3F);
  EXPECT_EQ(record.bytes[299], 0x3F);
  EXPECT_EQ(pair_text(record, 17, 21), "31   ");
  EXPECT_EQ(pair_real(record, 49), 1.0F);
}

TEST(BankFiles, TextDirectoryHasTheFixedLayout) {
  const Folder folder;
  write_directory(folder.path(), small_bank(401).directory);
  const std::string content = folder.read("pcdir.asc");
  EXPECT_EQ(
      content.substr(0, 94),
      " 1000 1500   25   25  200  401    2  400    2STD MFD     1    1    2    0Talix bank edition 1\n");
  EXPECT_EQ(content.size(), 94U + 401U * 9U);
  EXPECT_EQ(content.substr(94, 9), "   1    \n");
  EXPECT_EQ(content.substr(94 + 400 * 9, 9), " 401LAST\n");
}

TEST(BankFiles, OldDirectoryHoldsItsBlocksBehindAsManyRecordsAgain) {
  const Folder folder;
  write_old_directory(folder.path(), small_bank(401).directory);
  const std::string content = folder.read("pzandir.out");
  ASSERT_EQ(content.size(), 5U * 4800U);  // header, two unused, two blocks
  const std::int32_t header[] = {1000, 1500, 25, 25, 200, 401, 2, 400, 2};
  for (std::size_t i = 0; i < 9; ++i) EXPECT_EQ(integer_at(content, 4 * i), header[i]) << i;
  EXPECT_EQ(content.substr(36, 8), "STD MFD ");
  EXPECT_EQ(integer_at(content, 44), 1);
  EXPECT_EQ(integer_at(content, 48), 1);
  EXPECT_EQ(integer_at(content, 52), 2);
  EXPECT_EQ(content.substr(60, 20), kEdition);
  EXPECT_EQ(content.substr(3 * 4800, 8), "   1    ");
  EXPECT_EQ(content.substr(4 * 4800, 8), " 401LAST");
}

TEST(BankFiles, PairDirectoryHoldsSixHundredKeysABlock) {
  const Folder folder;
  std::vector<PairRecord> pairs;
  for (int i = 0; i < 601; ++i) pairs.push_back(blank_pair_record(20003 + i));
  write_pair_files(folder.path(), pairs);
  const std::string keys = folder.read("bzandir.out");
  ASSERT_EQ(keys.size(), 3U * 4800U);
  EXPECT_EQ(keys.substr(0, 20), kEdition);
  const std::int32_t header[] = {300, 100, 49, 1, 12, 0, 601, 2, 600};
  for (std::size_t i = 0; i < 9; ++i) EXPECT_EQ(integer_at(keys, 20 + 4 * i), header[i]) << i;
  EXPECT_EQ(integer_at(keys, 4800), 20003);
  EXPECT_EQ(integer_at(keys, 4800 + 599 * 8), 20602);
  EXPECT_EQ(integer_at(keys, 2 * 4800), 20603);
  EXPECT_EQ(folder.read("binzan.out").size(), 601U * 300U);
}

TEST(BankFiles, WhatIsWrittenIsReadBack) {
  const Folder folder;
  const Bank bank = small_bank(450);
  write_bank(folder.path(), bank);
  const Bank read = read_bank(folder.path());
  ASSERT_EQ(read.pure.size(), 450U);
  EXPECT_EQ(read.pure.back().bytes, bank.pure.back().bytes);
  EXPECT_EQ(read.directory.back().code, "LAST");
  EXPECT_EQ(read.pairs.at(0).bytes, bank.pairs.at(0).bytes);
  EXPECT_EQ(read.hydrate.size(), 1U);
  EXPECT_TRUE(std::filesystem::exists(folder.path() / "pzandir.out"));
}

TEST(BankFiles, OldDirectoryMayBeAbsentButMustNotDisagree) {
  const Folder folder;
  const Bank bank = small_bank(450);
  write_bank(folder.path(), bank);
  std::vector<DirectoryEntry> other = bank.directory;
  other.at(20).code = "XXXX";
  write_old_directory(folder.path(), other);
  EXPECT_NE(error_of([&] { (void)read_bank(folder.path()); }).find("pzandir.out: its entries are not those"),
            std::string::npos);
  other.pop_back();
  write_old_directory(folder.path(), other);
  EXPECT_NE(error_of([&] { (void)read_bank(folder.path()); }), "");
  std::filesystem::remove(folder.path() / "pzandir.out");
  EXPECT_EQ(read_bank(folder.path()).directory.size(), 450U);
}

// A bank folder of which one file is altered before it is read.
std::string error_after(const std::string& file, const std::string& content) {
  const Folder folder;
  write_bank(folder.path(), small_bank(30));
  folder.write(file, content);
  return error_of([&] { (void)read_bank(folder.path()); });
}

TEST(BankFiles, MissingFileIsNamed) {
  for (const char* const file :
       {"purezan.out", "pcdir.asc", "bzandir.out", "binzan.out", "phyddir.out", "purehyd.out"}) {
    const Folder folder;
    write_bank(folder.path(), small_bank(30));
    std::filesystem::remove(folder.path() / file);
    const std::string error = error_of([&] { (void)read_bank(folder.path()); });
    EXPECT_NE(error.find(file), std::string::npos) << error;
    EXPECT_NE(error.find("cannot be opened"), std::string::npos) << error;
  }
}

TEST(BankFiles, TruncatedAndEmptyFilesAreRefusedWithTheirOffset) {
  for (const char* const file : {"purezan.out", "bzandir.out", "binzan.out", "phyddir.out", "purehyd.out"}) {
    const std::string cut = error_after(file, std::string(777, '\0'));
    EXPECT_NE(cut.find(std::string(file) + ", byte offset 777: the file ends inside a record"),
              std::string::npos)
        << cut;
    EXPECT_NE(error_after(file, "").find("the file is empty"), std::string::npos) << file;
  }
  EXPECT_NE(error_after("pcdir.asc", "").find("pcdir.asc, byte offset 0: the file is empty"),
            std::string::npos);
}

TEST(BankFiles, GarbageIsRefused) {
  EXPECT_NE(error_after("bzandir.out", std::string(9600, 'x')).find("byte offset 20: configuration value 1"),
            std::string::npos);
  EXPECT_NE(error_after("phyddir.out", std::string(9600, 'x')).find("byte offset 0: configuration value 1"),
            std::string::npos);
  EXPECT_NE(error_after("pcdir.asc", "garbage\n").find("line 1 is not 93 characters long"),
            std::string::npos);
}

TEST(BankFiles, CountsOfDirectoryAndDataMustAgree) {
  EXPECT_NE(error_after("purezan.out", std::string(29000, ' ')).find("29 records, its directory 30"),
            std::string::npos);
  EXPECT_NE(error_after("binzan.out", std::string(600, ' ')).find("2 records, its directory 1"),
            std::string::npos);
  EXPECT_NE(error_after("purehyd.out", std::string(400, ' ')).find("2 records, its directory 1"),
            std::string::npos);
}

TEST(BankFiles, DirectoryLinesMustMatchTheirCount) {
  const Folder folder;
  write_bank(folder.path(), small_bank(30));
  std::string content = folder.read("pcdir.asc");
  folder.write("pcdir.asc", content.substr(0, content.size() - 9));
  EXPECT_NE(error_of([&] { (void)read_bank(folder.path()); }).find("byte offset 25: line 1 promises"),
            std::string::npos);
  folder.write("pcdir.asc", content.substr(0, content.size() - 3));
  EXPECT_NE(error_of([&] { (void)read_bank(folder.path()); }).find("ends inside a line"), std::string::npos);
}

TEST(BankFiles, KeysMustRiseAndMatchTheirRecords) {
  const Folder folder;
  Bank bank = small_bank(30);
  bank.pairs.push_back(blank_pair_record(30020));
  write_bank(folder.path(), bank);
  EXPECT_NE(
      error_of([&] { (void)read_bank(folder.path()); }).find("byte offset 4808: key 30020 does not rise"),
      std::string::npos);
  bank.pairs[1] = blank_pair_record(30021);
  write_bank(folder.path(), bank);
  std::string data = folder.read("binzan.out");
  data[300] = 'x';
  folder.write("binzan.out", data);
  EXPECT_NE(error_of([&] { (void)read_bank(folder.path()); }).find("binzan.out, byte offset 300: the key is"),
            std::string::npos);
}

TEST(BankFiles, FolderThatCannotBeWrittenIsNamed) {
  EXPECT_NE(error_of([] { write_bank("/proc/no/such", small_bank(3)); }).find("/proc/no/such"),
            std::string::npos);
}

}  // namespace
}  // namespace talix::bank
