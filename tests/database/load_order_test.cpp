#include "database/load_order.h"

#include <tuple>

#include "association/cpa_record.h"
#include "database/keyed_fixture.h"
#include "database/optional_readers.h"
#include "database/srk_variant_record.h"
#include "engine/model_record.h"
#include "engine/model_table.h"
#include "liquid/unifac_record.h"
#include "solids/hydrate_record.h"

namespace talix::test {
namespace {

class LoadOrder : public DatabaseTest {
 protected:
  LoadOrder() {
    bank.pure = {
        pure_record(1, "----"),
        pure_record(9, "H2O ").integer(27, 2).integer(29, 1).integer(250, 1),
        hydrocarbon_record({20, " 1P ", 1, 4, 190.56F, 4.599F, 0.0986F, 0.011F, 16.043F, 111.66F, 0.3F}),
        hydrocarbon_record({31, " 6P ", 6, 14, 507.0F, 3.0F, 0.37F, 0.3F, 86.0F, 342.0F, 0.66F}),
        pure_record(1001, "NACL"),
        pure_record(328, "MEOH").integer(26, 1),
        pure_record(4, "CO2 ").integer(26, 1)};
    bank.pairs = {{.low = 20, .high = 31, .source = "11", .values = {0.25F}}};
    bank.hydrates = {{" 1P ", {1, 0, 1, 0}, {1.0F, 2.0F}}};
  }
  I4 load(std::initializer_list<std::string_view> codes) {
    set_components(codes);
    I4 NFAIL = 0;
    SHDBS0(NFAIL);
    return NFAIL;
  }
  static int count(std::string_view text) {
    int found = 0;
    for (const std::string& entry : ring_texts()) found += entry == text ? 1 : 0;
    return found;
  }
  static void select(I4 code) {
    I4 LNO = 0;
    I4 NFAIL = 0;
    SMDAO0(code, LNO, NFAIL);
  }

  Bank bank;
};

TEST_F(LoadOrder, ComponentsPairsAndHydrates) {
  bank.write(folder);
  hydrate.INDXH.fill(9);
  const I4 before = setup.generation;
  ASSERT_EQ(load({" 6P ", "H2O ", " 1P ", "NACL"}), status::ok);
  EXPECT_GT(setup.generation, before);
  EXPECT_EQ(comp.ICSTD(1), 31);
  EXPECT_EQ(comp.ICSTD(2), 9);
  EXPECT_EQ(comp.ICSTD(3), 20);
  EXPECT_EQ(comp.IWATER, 2);
  EXPECT_EQ(comp.ISALT, 4);
  EXPECT_EQ(hydrate.INDXH(1), 0);
  EXPECT_EQ(hydrate.INDXH(2), 0);
  EXPECT_EQ(hydrate.INDXH(3), 3);  // entry 1 of the hydrate directory is a component
  EXPECT_EQ(hydrate.COHPC(2, 3), 2.0);
  EXPECT_TRUE(static_cast<bool>(hydrate.ENTERS(2, 3, 1)));
  EXPECT_EQ(pairs.TETA0(1, 3), 0.25);
  EXPECT_NE(pairs.TETA0(1, 2), 0.0);
  EXPECT_EQ(pairs.TETA0(1, 4), 1.0);
  EXPECT_EQ(pairs.NPAIR, 4);
  EXPECT_GT(pairs.NT0, 0);
  EXPECT_EQ(setup.CUCOMP(1).view(), " 6P     ");
  EXPECT_EQ(setup.SHCPTY(1).view(), "ZANDOR ");
  EXPECT_EQ(open_units(), 0);
  EXPECT_EQ(setup.pure_records_read, 4);
}

TEST_F(LoadOrder, WaterAndSaltAreForgottenWithTheirList) {
  bank.write(folder);
  ASSERT_EQ(load({"H2O ", "NACL"}), status::ok);
  ASSERT_EQ(load({" 6P "}), status::ok);
  EXPECT_EQ(comp.IWATER, 0);
  EXPECT_EQ(comp.ISALT, 0);
}

TEST_F(LoadOrder, OldDirectoryDoesAsWell) {
  bank.old_style = true;
  bank.write(folder);
  ASSERT_EQ(load({" 6P ", "H2O "}), status::ok);
  EXPECT_EQ(comp.ICSTD(1), 31);
}

TEST_F(LoadOrder, AnUnknownCodeIsNamedAndTheFilesAreClosed) {
  bank.write(folder);
  EXPECT_EQ(load({" 6P ", "NONE", " 1P "}), status::unknown);
  EXPECT_EQ(last_entry(), "3 SHDBS0 Pure component NONE     not found in database");
  EXPECT_EQ(open_units(), 0);
  EXPECT_EQ(ring.count, 1);
  EXPECT_EQ(load({" 6P "}), status::ok);
}

TEST_F(LoadOrder, EntryOneOfThePureDirectoryIsNoComponent) {
  bank.write(folder);
  EXPECT_EQ(load({"----"}), status::unknown);
  EXPECT_EQ(last_entry(), "3 SHDBS0 Pure component ----     not found in database");
}

TEST_F(LoadOrder, OnlyFourCharactersOfACodeAreCompared) {
  bank.write(folder);
  EXPECT_EQ(load({" 6P xyz"}), status::ok);
  EXPECT_EQ(load({"6P  "}), status::unknown);
}

TEST_F(LoadOrder, FailuresOfTheDatabasesAreNamedLast) {
  EXPECT_EQ(load({" 6P "}), status::failed);
  EXPECT_EQ(ring_texts(), (std::vector<std::string>{"Pure component database directory file not found",
                                                    "Error with pure component database"}));
  EXPECT_EQ(last_entry(), "3 SHDBS0 Error with pure component database");
  bank.write(folder);
  std::filesystem::remove(folder / "phyddir.out");
  EXPECT_EQ(load({" 6P "}), status::failed);
  EXPECT_EQ(last_entry(), "3 SHDBS0 Error with hydrate database");
  EXPECT_EQ(open_units(), 0);
  std::filesystem::remove(folder / "bzandir.out");
  EXPECT_EQ(load({" 6P "}), status::failed);
  EXPECT_EQ(last_entry(), "3 SHDBS0 Error with binary database");
  EXPECT_EQ(open_units(), 0);
}

TEST_F(LoadOrder, MissingInteractionsEndTheLoad) {
  bank.pairs = {{.low = 4, .high = 328, .eos = '5'}};
  bank.write(folder);
  EXPECT_EQ(load({"MEOH", "CO2 "}), status::severe_warning);
  EXPECT_EQ(ring_texts(), (std::vector<std::string>{"Binary interactions needed for: MEOH - CO2",
                                                    "Could not read/generate BIP values"}));
  EXPECT_EQ(open_units(), 0);
}

TEST_F(LoadOrder, ATruncatedDataFileEndsTheLoad) {
  bank.write(folder);
  const std::string pure = read_bytes(folder / "purezan.out");
  write_bytes(folder / "purezan.out", pure.substr(0, 3500));
  EXPECT_EQ(load({" 1P ", " 6P "}), status::failed);
  EXPECT_EQ(last_entry(), "3 SDBPC1 Read error in pure component database, record 4");
  EXPECT_EQ(open_units(), 0);
  write_bytes(folder / "purezan.out", pure);
  write_bytes(folder / "purehyd.out", "");
  EXPECT_EQ(load({" 6P ", " 1P "}), status::failed);
  EXPECT_EQ(last_entry(), "3 SDPC2 Read error in hydrate database, record 1");
  EXPECT_EQ(open_units(), 0);
}

TEST_F(LoadOrder, OptionalDataAreReportedOnceAndForgiven) {
  bank.write(folder);
  ASSERT_EQ(load({" 6P ", "H2O ", " 1P "}), status::ok);
  EXPECT_EQ(ring_texts(), (std::vector<std::string>{
                              "Loading UNIFAC data failed", "No UNIFAC groups for component  6P",
                              "No UNIFAC groups for component H2O", "No UNIFAC groups for component  1P",
                              "CPA pure component db read failed", "CPA pure component db read failed",
                              "CPA pure component db read failed", "CPA binary parameter db read failed",
                              "User overwrite binary data failed"}));
  EXPECT_EQ(ring.SEVER0(1), 3);
  EXPECT_EQ(trimmed(ring.NAMER0(1)), "SDBUF0");
  for (int i = 2; i <= ring.count; ++i) {
    EXPECT_EQ(ring.SEVER0(i), 1);
    EXPECT_EQ(trimmed(ring.NAMER0(i)), i <= 4 ? "SUFAO3" : "SHDBS0");
  }
}

TEST_F(LoadOrder, TheRingKeepsTheLastMessagesOfALongList) {
  bank.pure = {pure_record(1, "----")};
  std::vector<std::string> codes;
  for (int i = 0; i < 50; ++i) {
    codes.push_back("C" + std::to_string(100 + i));
    bank.pure.push_back(
        hydrocarbon_record({20 + i, codes.back(), 1, 4, 190.0F, 4.5F, 0.1F, 0.1F, 16.0F, 111.0F, 0.3F}));
  }
  bank.pairs.clear();
  bank.write(folder);
  setup.NUMH = 0;
  for (const std::string& code : codes) setup.SHCOMP(++setup.NUMH) = code;
  I4 NFAIL = 0;
  SHDBS0(NFAIL);
  EXPECT_EQ(NFAIL, status::ok);
  EXPECT_EQ(ring.count, 15);
  EXPECT_EQ(count("CPA pure component db read failed"), 13);
}

TEST_F(LoadOrder, ModelsBringTheirOwnData) {
  bank.write(folder);
  select(model::srk_simsci);
  select(model::srk_aspen);
  ASSERT_EQ(load({" 6P "}), status::ok);
  EXPECT_EQ(ring_texts()[0], "Could not read SRKP2 database");
  EXPECT_EQ(ring_texts()[1], "Could not read SRKASP database");
  EXPECT_EQ(ring.SEVER0(1), 1);
  EXPECT_EQ(ring.SEVER0(2), 1);
}

TEST_F(LoadOrder, TheGroupModelFillsActivityDataOnlyWhenSwitchedOn) {
  bank.write(folder);
  select(model::nrtl);
  unifill.on = false;
  ASSERT_EQ(load({" 6P "}), status::ok);
  EXPECT_EQ(count("Unifill procedure failed"), 0);
  EXPECT_EQ(models.count, 1);
  unifill.on = true;
  ASSERT_EQ(load({" 6P "}), status::ok);
  EXPECT_EQ(count("Unifill procedure failed"), 1);
  for (int i = 1; i <= ring.count; ++i) {
    if (trimmed(ring.TXTER0(i)) != "Unifill procedure failed") continue;
    EXPECT_EQ(ring.SEVER0(i), 1);
    EXPECT_EQ(trimmed(ring.NAMER0(i)), "SNLUF0");
  }
  I4 LNO = 0;
  SMDAO1(model::unifac_dm, LNO);
  EXPECT_NE(LNO, 0);
}

TEST_F(LoadOrder, ChainModelWithoutDataIsRefusedBehindThePairs) {
  bank.write(folder);
  select(model::saft);
  EXPECT_EQ(load({" 6P ", " 1P "}), status::not_available);
  EXPECT_EQ(last_entry(), "3 SHDBS0 Saft disabled");
  EXPECT_EQ(ring.count, 1);
  EXPECT_EQ(pairs.TETA0(1, 2), 0.25);
  EXPECT_TRUE(stops.empty());
  EXPECT_EQ(open_units(), 0);
}

TEST_F(LoadOrder, PseudoComponentsNeedNoDirectoryEntry) {
  bank.write(folder);
  set_components({" 6P ", "PSEUDO"});
  setup.NFRAC = 2;
  setup.IDFRAC(1) = 7;
  setup.IDFRAC(2) = 2;
  I4 NFAIL = 0;
  SHDBS0(NFAIL);
  EXPECT_EQ(NFAIL, status::not_available);
  EXPECT_EQ(last_entry(), "3 SHDBS0 Keldrin procedure failed for component PSEUDO");
  EXPECT_EQ(setup.SHCPTY(1).view(), "ZANDOR ");
  EXPECT_EQ(setup.SHCPTY(2).view(), "KELDRIN");
  EXPECT_EQ(open_units(), 0);
}

TEST_F(LoadOrder, HenryDataOfAnOlderListAreForgotten) {
  bank.write(folder);
  pairs.HEN2(1, 2) = 5.0;
  pairs.BICWS(1, 2) = 5.0;
  comp.ISHEN(1) = true;
  ASSERT_EQ(load({" 6P ", " 1P "}), status::ok);
  EXPECT_EQ(pairs.HEN2(1, 2), 0.0);
  EXPECT_EQ(pairs.BICWS(1, 2), 0.0);
  EXPECT_FALSE(static_cast<bool>(comp.ISHEN(1)));
}

TEST_F(LoadOrder, AnEmptyListLoadsNothing) {
  bank.write(folder);
  EXPECT_EQ(load({}), status::ok);
  EXPECT_EQ(setup.pure_records_read, 0);
}

TEST_F(LoadOrder, AReadOnlyFolderIsEnough) {
  bank.write(folder);
  for (const auto& file : std::filesystem::directory_iterator{folder})
    std::filesystem::permissions(file.path(), std::filesystem::perms::owner_read);
  std::filesystem::permissions(folder,
                               std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
  const I4 NFAIL = load({" 6P ", "H2O "});
  std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
  EXPECT_EQ(NFAIL, status::ok);
}

TEST_F(LoadOrder, NoFileIsCreatedOrChanged) {
  bank.write(folder);
  std::vector<std::pair<std::string, std::string>> before;
  for (const auto& file : std::filesystem::directory_iterator{folder})
    before.emplace_back(file.path().filename().string(), read_bytes(file.path()));
  ASSERT_EQ(load({" 6P ", "H2O "}), status::ok);
  std::size_t files = 0;
  for ([[maybe_unused]] const auto& file : std::filesystem::directory_iterator{folder}) ++files;
  EXPECT_EQ(files, before.size());
  for (const auto& [file, bytes] : before) EXPECT_EQ(read_bytes(folder / file), bytes) << file;
}

TEST_F(LoadOrder, RepeatedLoadsLeaveNoUnitsBehind) {
  bank.write(folder);
  for (int i = 0; i < 300; ++i) {
    ASSERT_EQ(load({" 6P ", "H2O "}), status::ok);
    ASSERT_EQ(load({"NONE"}), status::unknown);
  }
  EXPECT_EQ(open_units(), 0);
  EXPECT_EQ(setup.units.pure, 31);
}

TEST_F(LoadOrder, ALoadReadsTheRecordsOfItsComponentsAlone) {
  // A catalogue of full size: 1246 components, 7500 pairs.
  for (int i = 100; static_cast<int>(bank.pure.size()) < 1246; ++i)
    bank.pure.push_back(hydrocarbon_record(
        {i, std::to_string(1000 + i), 6, 14, 507.0F, 3.0F, 0.37F, 0.3F, 86.0F, 342.0F, 0.66F}));
  for (int low = 100; bank.pairs.size() < 7500; ++low)
    for (int high = low + 1; high <= low + 100 && bank.pairs.size() < 7500; ++high)
      bank.pairs.push_back({.low = low, .high = high, .source = "11", .values = {0.01F}});
  bank.write(folder);
  // Both files end behind the records of the list: whoever reads on is told.
  constexpr std::size_t kPureRecords = 28, kPairs = 1820;
  for (const auto& [name, part, all] : {std::tuple{"purezan.out", kPureRecords, bank.pure.size()},
                                        std::tuple{"binzan.out", kPairs, bank.pairs.size()}}) {
    const std::string bytes = read_bytes(folder / name);
    write_bytes(folder / name, bytes.substr(0, bytes.size() / all * part));
  }
  const I4 before = setup.pure_records_read;
  ASSERT_EQ(load({"1110", "1111", "1112", "1113", "1114", "1115", "1116", "1117", "1118", "1119"}),
            status::ok);
  EXPECT_EQ(setup.pure_records_read - before, 10);
  EXPECT_EQ(pairs.NT0, 90);
  EXPECT_EQ(pairs.TETA0(1, 2), widen(0.01F));
  EXPECT_EQ(pairs.TETA0(9, 10), widen(0.01F));
  // The record behind them is out of reach.
  EXPECT_EQ(load({"1110", "1150"}), status::failed);
}

TEST_F(LoadOrder, DoorsOfOptionalDataAnswerNotAvailable) {
  I4 NFAIL = 0;
  SNLUF0(2, 0.0, 0.0, NFAIL = 0);
  EXPECT_EQ(NFAIL, status::not_available);
  SFCPC0(1, NFAIL = 0);
  EXPECT_EQ(NFAIL, status::not_available);
}

TEST_F(LoadOrder, OptionalFilesThatAreThereAreRead) {
  bank.write(folder);
  // One main group, one subgroup; methane alone in each of the keyed files.
  write_bytes(folder / "udo2002.out",
              "    1    1     name             text\n   1  CH3          1    0.6325    1.0608     15.03\n"
              "    0.0000\n    0.0000\n    0.0000\n");
  const std::string zeros = in_columns(" %13.6E", 0.0);
  std::string pure = "      20" + in_columns(" %13.6E", 0.125);
  std::string pair = "  200031" + in_columns(" %13.6E", 0.375);
  std::string pure_end = "99999999" + zeros;
  std::string pair_end = pure_end;
  for (int k = 1; k < 15; ++k) pure += zeros, pure_end += zeros;
  for (int k = 1; k < 5; ++k) pair += zeros, pair_end += zeros;
  write_bytes(folder / "cpapur.dat", keyed_file(218, 8, {pure, pure_end}));
  write_bytes(folder / "cpabin.dat", keyed_file(78, 8, {pair, pair_end}));
  write_bytes(
      folder / "sdbp2.dat",
      keyed_file(71, 4,
                 {"   20" + std::string(28, ' ') + " 1      0.4951      0.0000      0.0000", " 9999"}));
  write_bytes(
      folder / "srkap.dat",
      keyed_file(74, 4,
                 {"   20   190.56    45.99   0.0114  2       0.0000       0.0000       0.0000", " 9999"}));
  select(model::srk_simsci);
  select(model::srk_aspen);
  ASSERT_EQ(load({" 1P ", " 6P "}), status::ok);
  EXPECT_EQ(cpa_sets.ASB(1), 0.125);
  EXPECT_EQ(cpa_sets.ASB(2), 0.0);
  EXPECT_EQ(pairs.BCPA0(2, 1), 0.375);
  EXPECT_EQ(unifac.IMNGRP(1), 1);
  EXPECT_EQ(srk_variants.P2ALPH(1), 1);
  EXPECT_EQ(srk_variants.TCASP(1), 190.56);
  // The cubic variants miss the second component; neither has groups.
  EXPECT_EQ(ring_texts(), (std::vector<std::string>{
                              "Could not read SRKP2 database", "Could not read SRKASP database",
                              "No UNIFAC groups for component  1P", "No UNIFAC groups for component  6P",
                              "User overwrite binary data failed"}));
  EXPECT_EQ(open_units(), 0);
}

}  // namespace
}  // namespace talix::test
