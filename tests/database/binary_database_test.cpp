#include "database/sdb_binary.h"

#include <cmath>
#include <cstring>

#include "database/database_fixture.h"
#include "database/ssm_pair_lists.h"

namespace talix::test {
namespace {

class BinaryDatabase : public DatabaseTest {
 protected:
  static I4 open() {
    I4 NFAIL = 0;
    SDBBI0(NFAIL);
    return NFAIL;
  }
  static I4 fill(I4 n) {
    I4 NFAIL = 0;
    SDBBI1(n, NFAIL);
    return NFAIL;
  }
  static void component(I4 i, I4 number, std::string_view code = "CODE", bool plain = false, I4 isofam = 1) {
    comp.ICSTD(i) = number;
    comp.ICS(i) = code;
    comp.NOTRY(i) = plain ? 0 : 1;
    comp.ISOFAM(i) = isofam;
  }
  static std::vector<float> counting() {
    std::vector<float> values;
    for (int i = 1; i <= 49; ++i) values.push_back(static_cast<float>(i));
    return values;
  }
  // Two components, 328 and 4, with one row of the file: no rule estimates this pair.
  I4 load_row(PairRow row, I4 first = 4, I4 second = 328) {
    row.low = 4;
    row.high = 328;
    if (row.values.empty()) row.values = counting();
    write_pairs(folder, {row});
    component(1, first, "ONE ");
    component(2, second, "TWO ");
    if (open() != status::ok) return -1;
    return fill(2);
  }
  void write_keys(const std::vector<int>& keys) {
    std::vector<PairRow> rows;
    for (const int key : keys)
      rows.push_back({.low = key / 10000, .high = key % 10000, .source = "11", .values = counting()});
    write_pairs(folder, rows);
  }
  static void expect_no_interaction(I4 i, I4 j) {
    for (const PairRecord::Table* table : {&pairs.TETA0, &pairs.TETA0T, &pairs.TETA1, &pairs.TETA1T}) {
      EXPECT_EQ((*table)(i, j), 0.0);
      EXPECT_EQ((*table)(j, i), 0.0);
    }
  }
};

TEST_F(BinaryDatabase, DirectoryIsReadOverSeveralBlocks) {
  std::vector<PairRow> rows;
  for (int i = 0; i < 1300; ++i) rows.push_back({.low = 2 + i / 100, .high = 1000 + i % 100});
  write_pairs(folder, rows);
  ASSERT_EQ(open(), status::ok);
  EXPECT_EQ(directory.NLBI, 1300);
  EXPECT_EQ(directory.IBINSC(1), 21000);
  EXPECT_EQ(directory.IBINSC(600), 71099);
  EXPECT_EQ(directory.IBINSC(601), 81000);
  EXPECT_EQ(directory.IBINSC(1300), 141099);
  EXPECT_EQ(setup.date_binary.view(), "2 February 2002     ");
  EXPECT_TRUE(unit_is_open(directory.binary_unit));
  EXPECT_EQ(open_units(), 1);
  ASSERT_EQ(open(), status::ok);
  EXPECT_EQ(open_units(), 1);
}

TEST_F(BinaryDatabase, MissingFilesAreNamed) {
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(last_entry(), "3 SDBBI0 Pure component database directory file not found");
  write_keys({40005});
  std::filesystem::remove(folder / "binzan.out");
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(last_entry(), "3 SDBBI0 Binary database file not found");
  EXPECT_EQ(open_units(), 0);
}

TEST_F(BinaryDatabase, FilesThatCannotBeOpenedAreNamed) {
  std::filesystem::create_directories(folder / "bzandir.out");
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(last_entry(), "3 SDBBI0 Error opening database directory file");
  std::filesystem::remove(folder / "bzandir.out");
  write_keys({40005});
  std::filesystem::remove(folder / "binzan.out");
  std::filesystem::create_directories(folder / "binzan.out");
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(last_entry(), "3 SDBBI0 Error opening binary database file");
  EXPECT_EQ(open_units(), 0);
}

TEST_F(BinaryDatabase, WithoutAFreeUnitTheReadingGoesOnAndFails) {
  write_keys({40005});
  for (I4 unit = 30; unit <= 99; ++unit)
    ASSERT_EQ(open_unit(unit, {"", Opening::scratch, false, false, 0}), 0);
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(ring_texts(),
            (std::vector<std::string>{"Error opening database directory unit",
                                      "Configuration error in binary database directory file"}));
}

TEST_F(BinaryDatabase, TheLastUnitIsFreeButCannotBeOpened) {
  write_keys({40005});
  for (I4 unit = 30; unit <= 98; ++unit)
    ASSERT_EQ(open_unit(unit, {"", Opening::scratch, false, false, 0}), 0);
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(last_entry(), "3 SDBBI0 Error opening database directory file");
}

TEST_F(BinaryDatabase, HeadOfTheDirectoryIsChecked) {
  std::vector<PairDirectoryHead> heads;
  for (std::size_t i = 0; i < 5; ++i) {
    heads.emplace_back();
    ++heads.back().sizes[i];
  }
  heads.push_back({.entries = 7501, .blocks = 13});
  heads.push_back({.entries = 2147483647, .blocks = 1});
  heads.push_back({.entries = 3, .blocks = 1});  // the third entry of the block is no key
  heads.push_back({.blocks = 0});
  heads.push_back({.blocks = 2});
  heads.push_back({.blocks = 2147483647});
  heads.push_back({.per_block = 0});
  heads.push_back({.blocks = 1, .per_block = 2147483647});
  for (std::size_t i = 0; i < heads.size(); ++i) {
    write_pairs(folder, {{.low = 4, .high = 5}, {.low = 4, .high = 6}}, heads[i]);
    EXPECT_EQ(open(), status::failed) << i;
    EXPECT_EQ(last_entry(), "3 SDBBI0 Configuration error in binary database directory file") << i;
    EXPECT_EQ(directory.NLBI, 0) << i;
    EXPECT_EQ(open_units(), 0) << i;
  }
}

TEST_F(BinaryDatabase, KeysMustBeInStrictOrder) {
  write_keys({40005, 40005});
  EXPECT_EQ(open(), status::failed);
  write_keys({40005, 40006});
  std::string bytes = read_bytes(folder / "bzandir.out");
  std::swap_ranges(bytes.begin() + 4800, bytes.begin() + 4808, bytes.begin() + 4808);
  write_bytes(folder / "bzandir.out", bytes);
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(last_entry(), "3 SDBBI0 Configuration error in binary database directory file");
}

TEST_F(BinaryDatabase, AnEmptyDatabaseEstimatesEveryPair) {
  write_pairs(folder, {});
  write_bytes(folder / "binzan.out", "");
  ASSERT_EQ(open(), status::ok);
  EXPECT_EQ(directory.NLBI, 0);
  component(1, 1011);
  component(2, 9);
  EXPECT_EQ(fill(2), status::ok);
  EXPECT_EQ(pairs.TETA0(1, 2), 0.072542958);
}

TEST_F(BinaryDatabase, EveryKeyIsFound) {
  for (const int count : {1, 2, 3, 7, 8, 9, 64, 1000, 1023, 1024, 1025}) {
    std::vector<PairRow> rows;
    for (int i = 0; i < count; ++i)
      rows.push_back({.low = 4, .high = 5 + 2 * i, .values = {static_cast<float>(i + 1)}});
    write_pairs(folder, rows);
    ASSERT_EQ(open(), status::ok);
    component(1, 4);
    for (int i = 0; i < count; ++i) {
      component(2, 5 + 2 * i);
      ASSERT_EQ(fill(2), status::ok);
      ASSERT_EQ(pairs.TETA0(1, 2), i + 1) << count;
      component(2, 6 + 2 * i);
      ASSERT_EQ(fill(2), status::ok);
      ASSERT_EQ(pairs.TETA0(1, 2), 0.0) << count;
    }
  }
}

TEST_F(BinaryDatabase, DataAreTakenInTheOrderOfTheKey) {
  ASSERT_EQ(load_row({}), status::ok);
  EXPECT_EQ(pairs.TETA0(1, 2), 1.0);
  EXPECT_EQ(pairs.TETA0(2, 1), 1.0);
  EXPECT_EQ(pairs.TETA0T(1, 2), 2.0);
  EXPECT_EQ(pairs.TETA0T(2, 1), 2.0);
  EXPECT_EQ(pairs.TETA1(1, 2), 3.0);
  EXPECT_EQ(pairs.TETA1(2, 1), -3.0);
  EXPECT_EQ(pairs.TETA1T(1, 2), 4.0);
  EXPECT_EQ(pairs.TETA1T(2, 1), -4.0);

  ASSERT_EQ(load_row({}, 328, 4), status::ok);
  EXPECT_EQ(pairs.TETA0(1, 2), 1.0);
  EXPECT_EQ(pairs.TETA1(2, 1), 3.0);
  EXPECT_EQ(pairs.TETA1(1, 2), -3.0);
  EXPECT_EQ(pairs.TETA1T(2, 1), 4.0);
}

TEST_F(BinaryDatabase, ActivityDataFollowTheKeyButTheNonRandomnessTheLoop) {
  ASSERT_EQ(load_row({.activity = '1'}, 328, 4), status::ok);
  EXPECT_EQ(pairs.ALFA(1, 2), 10.0);
  EXPECT_EQ(pairs.ALFA(2, 1), 11.0);
  EXPECT_EQ(pairs.TAUT0(2, 1), 12.0);
  EXPECT_EQ(pairs.TAUT1(2, 1), 13.0);
  EXPECT_EQ(pairs.TAUT2(2, 1), 14.0);
  EXPECT_EQ(pairs.TAUT0(1, 2), 15.0);
  EXPECT_EQ(pairs.TAUT1(1, 2), 16.0);
  EXPECT_EQ(pairs.TAUT2(1, 2), 17.0);
  EXPECT_FALSE(static_cast<bool>(pairs.LTAUX));
}

TEST_F(BinaryDatabase, StatusOfTheActivityData) {
  for (const char letter : {'0', '5'}) {
    pairs.ALFA(1, 2) = pairs.ALFA(2, 1) = pairs.TAUT0(1, 2) = pairs.TAUT2(2, 1) = 9.0;
    ASSERT_EQ(load_row({.activity = letter}), status::ok);
    EXPECT_EQ(pairs.ALFA(1, 2), 0.0);
    EXPECT_EQ(pairs.ALFA(2, 1), 0.0);
    EXPECT_EQ(pairs.TAUT0(1, 2), 0.0);
    EXPECT_EQ(pairs.TAUT2(2, 1), 0.0);
    EXPECT_TRUE(static_cast<bool>(pairs.LTAUX));
  }
  ASSERT_EQ(load_row({.activity = 'X'}), status::ok);
  EXPECT_EQ(pairs.ALFA(1, 2), 10.0);
  EXPECT_TRUE(static_cast<bool>(pairs.LTAUX));
}

TEST_F(BinaryDatabase, OnlyTheLastPairDecidesTheActivityFlag) {
  write_pairs(folder, {{.low = 4, .high = 328, .activity = 'X', .values = counting()},
                       {.low = 4, .high = 500, .activity = '1', .values = counting()},
                       {.low = 328, .high = 500, .activity = '1', .values = counting()}});
  ASSERT_EQ(open(), status::ok);
  component(1, 4);
  component(2, 328);
  component(3, 500);
  ASSERT_EQ(fill(3), status::ok);
  EXPECT_FALSE(static_cast<bool>(pairs.LTAUX));
  component(1, 500);
  component(3, 4);  // now the pair of 328 and 4 comes last
  ASSERT_EQ(fill(3), status::ok);
  EXPECT_TRUE(static_cast<bool>(pairs.LTAUX));
}

TEST_F(BinaryDatabase, StatusZeroEstimates) {
  write_pairs(folder, {{.low = 9, .high = 1011, .eos = '0', .source = "00", .values = counting()}});
  ASSERT_EQ(open(), status::ok);
  component(1, 9);
  component(2, 1011);
  ASSERT_EQ(fill(2), status::ok);
  EXPECT_EQ(pairs.TETA0(1, 2), 0.072542958);
  ASSERT_EQ(load_row({.eos = '0', .source = "00"}), status::ok);  // no rule: the status stays
  expect_no_interaction(1, 2);
}

TEST_F(BinaryDatabase, StatusThreeIsNotEstimated) {
  write_pairs(folder, {{.low = 9, .high = 1011, .eos = '3', .source = "00", .values = counting()}});
  ASSERT_EQ(open(), status::ok);
  component(1, 9);
  component(2, 1011);
  ASSERT_EQ(fill(2), status::ok);
  expect_no_interaction(1, 2);
}

TEST_F(BinaryDatabase, StatusFiveIsReportedAndTheLoopGoesOn) {
  write_pairs(folder, {{.low = 4, .high = 328, .eos = '5', .source = "00", .values = counting()},
                       {.low = 4, .high = 500, .eos = '5', .values = counting()},
                       {.low = 328, .high = 500, .values = counting()}});
  ASSERT_EQ(open(), status::ok);
  component(1, 500, "FIVE");
  component(2, 4, "CO2 ");
  component(3, 328, "MEOH");
  EXPECT_EQ(fill(3), status::severe_warning);
  EXPECT_EQ(ring_texts(), (std::vector<std::string>{"Binary interactions needed for: FIVE - CO2",
                                                    "Binary interactions needed for: CO2  - MEOH"}));
  EXPECT_EQ(last_entry().substr(0, 8), "3 SDBBI1");
  expect_no_interaction(1, 2);
  EXPECT_EQ(pairs.TETA0(1, 3), 1.0);
}

TEST_F(BinaryDatabase, ASourceOfZeroIsReported) {
  EXPECT_EQ(load_row({.source = "01"}), status::severe_warning);
  EXPECT_EQ(last_entry(), "3 SDBBI1 BICS missing in databank for: ONE  - TWO");
  EXPECT_EQ(pairs.TETA0(1, 2), 1.0);
  EXPECT_EQ(load_row({.source = " 1"}), status::severe_warning);
  EXPECT_EQ(load_row({.source = "10"}), status::ok);
}

TEST_F(BinaryDatabase, ARecordThatCannotBeReadEndsTheLoad) {
  EXPECT_EQ(load_row({.source = "x1"}), status::failed);
  EXPECT_EQ(last_entry(), "3 SDBBI1 Read error in binary database, record 1");
  ASSERT_EQ(load_row({}), status::ok);
  write_bytes(folder / "binzan.out", std::string(299, ' '));
  ASSERT_EQ(open(), status::ok);
  EXPECT_EQ(fill(2), status::failed);
  EXPECT_EQ(last_entry(), "3 SDBBI1 Read error in binary database, record 1");
}

TEST_F(BinaryDatabase, PairsThatHaveNoKey) {
  write_pairs(folder, {{.low = 1, .high = 9, .activity = '1', .values = counting()}});
  ASSERT_EQ(open(), status::ok);
  component(1, -1, "PS1 ", true);
  component(2, 9);
  comp.ATBP(1) = 342.0;
  comp.RHO(1) = 0.66;
  comp.RMOLW(1) = 86.0;
  ASSERT_EQ(fill(2), status::ok);
  EXPECT_NEAR(pairs.TETA0(1, 2), -0.13233748574810217, 1e-13);  // last row of the water table
  component(1, 1, "PS1 ", true);
  ASSERT_EQ(fill(2), status::ok);
  EXPECT_NEAR(pairs.TETA0(1, 2), -0.13233748574810217, 1e-13);
  EXPECT_EQ(pairs.ALFA(1, 2), 0.0);

  component(2, -1, "PS2 ", true);  // two of them have no interaction at all
  ASSERT_EQ(fill(2), status::ok);
  expect_no_interaction(1, 2);
  EXPECT_TRUE(static_cast<bool>(pairs.LTAUX));
}

TEST_F(BinaryDatabase, MercuryWithWaterNeedsNoData) {
  write_pairs(folder, {});
  ASSERT_EQ(open(), status::ok);
  for (const bool swapped : {false, true}) {
    component(1, swapped ? 9 : 1011);
    component(2, swapped ? 1011 : 9);
    ASSERT_EQ(fill(2), status::ok);
    EXPECT_EQ(pairs.TETA0(1, 2), 0.072542958);
    EXPECT_EQ(pairs.TETA0T(2, 1), 0.00167531602);
  }
}

TEST_F(BinaryDatabase, TwoComponentsOfOneNumber) {
  write_pairs(folder, {{.low = 4, .high = 4, .activity = '1', .values = counting()}});
  ASSERT_EQ(open(), status::ok);
  component(1, 4);
  component(2, 4);
  ASSERT_EQ(fill(2), status::ok);
  EXPECT_EQ(pairs.TETA1(1, 2), 3.0);
  EXPECT_EQ(pairs.TETA1(2, 1), -3.0);
  EXPECT_EQ(pairs.TAUT0(1, 2), 12.0);
  EXPECT_EQ(pairs.TAUT0(2, 1), 15.0);
}

TEST_F(BinaryDatabase, OldValuesAreCleared) {
  write_pairs(folder, {});
  ASSERT_EQ(open(), status::ok);
  PairRecord::Table* tables[] = {&pairs.TETA0, &pairs.TETA0T, &pairs.TETA1, &pairs.TETA1T,
                                 &pairs.ALFA,  &pairs.TAUT0,  &pairs.TAUT1, &pairs.TAUT2,
                                 &pairs.BCPA0, &pairs.BCPA0T, &pairs.BCPA1, &pairs.BCPA1T};
  for (PairRecord::Table* table : tables) table->fill(9.0);
  component(1, 4);
  component(2, 328);
  ASSERT_EQ(fill(2), status::ok);
  for (const PairRecord::Table* table : tables)
    for (int i = 1; i <= 2; ++i)
      for (int j = 1; j <= 2; ++j) EXPECT_EQ((*table)(i, j), 0.0);
}

TEST_F(BinaryDatabase, FiftyComponentsGiveBothOrdersOfEveryPair) {
  pairs.NPAIR = 50;
  for (I4 i = 1; i <= 50; ++i) {
    comp.ISOFAM(i) = 1 + i % 3;
    for (I4 j = 1; j <= 50; ++j) {
      pairs.TETA0(i, j) = i == j ? 0.0 : 0.1;
      pairs.TETA1T(i, j) = i < j ? 0.1 : (i > j ? -0.1 : 0.0);
    }
  }
  const I4 before = setup.generation;
  SSMAO0();
  EXPECT_GT(setup.generation, before);
  EXPECT_EQ(pairs.NT0, 2450);
  EXPECT_EQ(pairs.NT1, 2450);
  EXPECT_EQ(pairs.IT0(1), 1);
  EXPECT_EQ(pairs.JT0(1), 2);
  EXPECT_EQ(pairs.IT0(2), 2);
  EXPECT_EQ(pairs.JT0(2), 1);
  EXPECT_EQ(pairs.IT1(2450), 50);
  EXPECT_EQ(pairs.JT1(2450), 49);
  EXPECT_EQ(pairs.NF, 3);
  EXPECT_EQ(pairs.NFAM(1), 1);
  EXPECT_EQ(pairs.NFAM(2), 2);
  EXPECT_EQ(pairs.NFAM(3), 3);
  EXPECT_EQ(pairs.NFAM(50), 2);
  for (I4 i = 1; i <= 50; ++i)
    for (I4 j = 1; j <= 50; ++j) EXPECT_EQ(pairs.IDELTA(i, j), i % 3 == j % 3 ? 1 : 0);
}

TEST_F(BinaryDatabase, ListsHoldOnlyPairsWithParameters) {
  pairs.NPAIR = 3;
  comp.ISOFAM(1) = 20;
  comp.ISOFAM(2) = 1;
  comp.ISOFAM(3) = 20;
  pairs.TETA0(1, 3) = 0.1;
  pairs.TETA0T(2, 3) = 0.1;
  pairs.TETA1(1, 2) = 0.1;
  SSMAO0();
  EXPECT_EQ(pairs.NT0, 4);
  EXPECT_EQ(pairs.IT0(1), 1);
  EXPECT_EQ(pairs.JT0(1), 3);
  EXPECT_EQ(pairs.IT0(3), 2);
  EXPECT_EQ(pairs.JT0(3), 3);
  EXPECT_EQ(pairs.NT1, 2);
  EXPECT_EQ(pairs.NF, 2);
  EXPECT_EQ(pairs.NFAM(3), 1);
  EXPECT_EQ(pairs.IDELTA(1, 3), 1);
  EXPECT_EQ(pairs.IDELTA(1, 2), 0);
  EXPECT_EQ(pairs.IDELTA(2, 2), 1);
}

}  // namespace
}  // namespace talix::test
