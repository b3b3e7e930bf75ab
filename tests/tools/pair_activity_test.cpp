#include <gtest/gtest.h>

#include <algorithm>

#include "bank/accuracy_engine.h"
#include "bank/build.h"
#include "bank/pairs.h"
#include "database/pair_record.h"
#include "support/bank_source.h"

namespace talix::bank {
namespace {

const std::filesystem::path kData = std::filesystem::path(TALIX_TEST_SOURCE) / "data";
const std::map<int, std::string> kCodes{{9, "H2O "}, {20, " 1P "}, {22, " 3P "}};
const std::string kHeader =
    "number1,number2,code1,code2,alpha,alphat_1_K,t0_12,t1_12_K,t2_12_K2,t0_21,t1_21_K,t2_21_K2,source\n";
const std::string kRow = "9,22,\"H2O \",\" 3P \",0.3,0.0001,1,2,3,4,5,6,paper\n";

std::vector<PairRecord> added(const std::string& rows) {
  const SourceTable table = SourceTable::parse(
      "pairs.csv", testing::kPairHeader + "20,22,\" 1P \",\" 3P \",0.01,0,0,0,1,81110,\"why\"\n");
  std::vector<PairRecord> records = read_pair_records(table, kCodes);
  add_activity_sets(records, SourceTable::parse("nrtl.csv", kHeader + rows), kCodes);
  return records;
}

TEST(PairActivity, SetStandsInItsRealsOfANewRecord) {
  const auto records = added(kRow);
  ASSERT_EQ(records.size(), 2U);
  const PairRecord& record = records.front();
  EXPECT_EQ(record.integer(1), 90022);
  EXPECT_EQ(pair_text(record, 5, 6), "01");
  EXPECT_EQ(pair_text(record, 17, 21), "20007");
  const float expected[] = {0.3F, 0.0001F, 1, 2, 3, 4, 5, 6};
  for (int i = 0; i < 8; ++i) EXPECT_EQ(pair_real(record, 10 + i), expected[i]) << i;
  for (int i = 1; i < 10; ++i) EXPECT_EQ(pair_real(record, i), 0.0F) << i;
  EXPECT_EQ(pair_text(records.back(), 5, 6), "10");
}

TEST(PairActivity, SetJoinsARecordThatIsThere) {
  const auto records = added("20,22,\" 1P \",\" 3P \",0.3,0,1,2,3,4,5,6,paper\n");
  ASSERT_EQ(records.size(), 1U);
  EXPECT_EQ(pair_text(records.front(), 5, 6), "11");
  EXPECT_EQ(pair_text(records.front(), 17, 21), "81117");
  EXPECT_EQ(pair_real(records.front(), 1), 0.01F);
  EXPECT_EQ(pair_real(records.front(), 12), 1.0F);
}

TEST(PairActivity, FaultsNameLineAndColumn) {
  const std::pair<const char*, std::string> faults[] = {
      {"line 3, column number2", kRow + kRow},
      {"line 2, column alpha", "9,22,\"H2O \",\" 3P \",9,0,1,2,3,4,5,6,paper\n"},
      {"line 2, column t1_12_K", "9,22,\"H2O \",\" 3P \",0.3,0,1,,3,4,5,6,paper\n"},
      {"line 2, column code2", "9,22,\"H2O \",\" 4P \",0.3,0,1,2,3,4,5,6,paper\n"}};
  for (const auto& [where, rows] : faults) {
    try {
      (void)added(rows);
      ADD_FAILURE() << where;
    } catch (const BankError& error) {
      EXPECT_NE(std::string(error.what()).find(where), std::string::npos) << error.what();
    }
  }
}

// Ethanol with water: tau of the handbook's set, whichever component stands first.
TEST(PairActivity, EngineTakesTheSetInBothOrders) {
  const testing::Folder folder;
  write_bank(folder.path(), compile_bank(kData).bank);
  for (const bool water_first : {true, false}) {
    const std::vector<std::string> order =
        water_first ? std::vector<std::string>{"H2O ", "ETOH"} : std::vector<std::string>{"ETOH", "H2O "};
    const EngineSet set(folder.path().string(), order);
    const int water = water_first ? 1 : 2, ethanol = 3 - water;
    EXPECT_NEAR(pairs.TAUT1(water, ethanol), 624.8676, 1e-3);
    EXPECT_NEAR(pairs.TAUT1(ethanol, water), -29.16665, 1e-4);
    EXPECT_NEAR(pairs.ALFA(1, 2), 0.2937, 1e-6);
    EXPECT_EQ(pairs.ALFA(2, 1), 0.0);
    EXPECT_EQ(pairs.TETA1(water, ethanol), -pairs.TETA1(ethanol, water));
    EXPECT_NE(pairs.TETA0(1, 2), 0.0);
    EXPECT_FALSE(static_cast<bool>(pairs.LTAUX));
  }
}

// The search reaches every key, the first and the last ones too.
TEST(PairActivity, EngineFindsEveryPairOfTheFile) {
  const testing::Folder folder;
  const Bank bank = compile_bank(kData).bank;
  write_bank(folder.path(), bank);
  const auto code = [&](int number) { return bank.directory.at(static_cast<std::size_t>(number - 1)).code; };
  const std::size_t last = bank.pairs.size() - 1;
  ASSERT_GT(last, 300U);
  for (const std::size_t i : {std::size_t{0}, std::size_t{1}, last / 2, last - 1, last}) {
    const PairRecord& record = bank.pairs[i];
    const std::int32_t key = record.integer(1);
    const EngineSet set(folder.path().string(), {code(key / 10000), code(key % 10000)});
    const bool fitted = pair_text(record, 5, 5) == "1", activity = pair_text(record, 6, 6) == "1";
    if (fitted) {
      EXPECT_EQ(pairs.TETA0(1, 2), static_cast<R8>(pair_real(record, 1))) << key;
    }
    EXPECT_EQ(pairs.ALFA(1, 2), activity ? static_cast<R8>(pair_real(record, 10)) : 0.0) << key;
    EXPECT_TRUE(fitted || activity) << key;
  }
}

}  // namespace
}  // namespace talix::bank
