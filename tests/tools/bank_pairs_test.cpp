#include "bank/pairs.h"

#include <gtest/gtest.h>

#include "support/bank_source.h"

namespace talix::bank {
namespace {

using testing::kPairHeader;

const std::map<int, std::string> kCodes{{9, "H2O "}, {20, " 1P "}, {22, " 3P "}};

std::vector<PairRecord> read(const std::string& rows) {
  return read_pair_records(SourceTable::parse("pairs.csv", kPairHeader + rows), kCodes);
}

std::string error_of(const std::string& rows) {
  try {
    (void)read(rows);
  } catch (const BankError& error) {
    return error.what();
  }
  return {};
}

TEST(PairTable, KeyHoldsTheSmallerNumberFirst) {
  EXPECT_EQ(pair_key(9, 1011), 91011);
  EXPECT_EQ(pair_key(1011, 9), 91011);
}

TEST(PairTable, RowsBecomeRecordsWithAscendingKeys) {
  const auto records = read(
      "20,22,\" 1P \",\" 3P \",0,0,0,0,3,31000,\"near zero\"\n"
      "9,22,\"H2O \",\" 3P \",0.25,0.0005,-0.1,-0.0002,1,71000,\"why, so\"\n");
  ASSERT_EQ(records.size(), 2U);
  EXPECT_EQ(records[0].integer(1), 90022);
  EXPECT_EQ(records[1].integer(1), 200022);
  const float expected[] = {0.25F, 0.0005F, -0.1F, -0.0002F};
  for (int i = 0; i < 4; ++i) EXPECT_EQ(pair_real(records[0], i + 1), expected[i]) << i;
  for (int i = 5; i <= 49; ++i) EXPECT_EQ(pair_real(records[0], i), 0.0F) << i;
  EXPECT_EQ(pair_text(records[0], 5, 6), "10");
  EXPECT_EQ(pair_text(records[0], 17, 21), "71000");
  EXPECT_EQ(pair_text(records[0], 23, 31), "H2O - 3P ");
  EXPECT_EQ(pair_text(records[0], 33, 39), "why, so");
  EXPECT_EQ(pair_text(records[1], 5, 5), "3");
}

TEST(PairTable, FaultsNameLineAndColumn) {
  const std::pair<const char*, const char*> faults[] = {
      {"number2", "9,23,\"H2O \",\" 4P \",0.1,0,0,0,1,31000,x\n"},
      {"number2", "22,9,\" 3P \",\"H2O \",0.1,0,0,0,1,31000,x\n"},
      {"number2", "9,9,\"H2O \",\"H2O \",0.1,0,0,0,1,31000,x\n"},
      {"code2", "9,22,\"H2O \",\" 1P \",0.1,0,0,0,1,31000,x\n"},
      {"teta0", "9,22,\"H2O \",\" 3P \",,0,0,0,1,31000,x\n"},
      {"teta0", "9,22,\"H2O \",\" 3P \",3,0,0,0,1,31000,x\n"},
      {"teta1t_1_K", "9,22,\"H2O \",\" 3P \",0.1,0,0,0.5,1,31000,x\n"},
      {"status", "9,22,\"H2O \",\" 3P \",0.1,0,0,0,2,31000,x\n"},
      {"status", "9,22,\"H2O \",\" 3P \",0.1,0,0,0,3,31000,x\n"},
      {"status", "9,22,\"H2O \",\" 3P \",0,0,0,0,1,31000,x\n"},
      {"source_digits", "9,22,\"H2O \",\" 3P \",0.1,0,0,0,1,01000,x\n"},
      {"source_digits", "9,22,\"H2O \",\" 3P \",0.1,0,0,0,1,31,x\n"},
      {"basis", "9,22,\"H2O \",\" 3P \",0.1,0,0,0,1,31000,\n"}};
  for (const auto& [column, row] : faults) {
    EXPECT_NE(error_of(row).find("pairs.csv, line 2, column " + std::string(column)), std::string::npos)
        << row << error_of(row);
  }
}

TEST(PairTable, PairTwiceIsRefused) {
  const std::string row = "9,22,\"H2O \",\" 3P \",0.1,0,0,0,1,31000,x\n";
  EXPECT_NE(error_of(row + row).find("line 3, column number2"), std::string::npos);
}

}  // namespace
}  // namespace talix::bank
