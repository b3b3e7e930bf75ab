#include "database/sdb_pure.h"

#include <cmath>

#include "database/database_fixture.h"
#include "database/sdb_pure_listing.h"
#include "database/ssv_text_search.h"

namespace talix::test {
namespace {

class PureDatabase : public DatabaseTest {
 protected:
  I4 open() {
    I4 NFAIL = 0;
    SDBPC0(NFAIL);
    return NFAIL;
  }
  // Writes one record behind an empty first one and reads it into slot 3.
  I4 load(const CellRecord& record) {
    Bank bank;
    bank.pure = {pure_record(1, "----"), record};
    bank.write(folder);
    if (open() != status::ok) return -1;
    I4 NFAIL = 0;
    SDBPC1(3, 2, NFAIL);
    SFLCL0(directory.pure_unit, "KEEP");
    directory.pure_unit = 0;
    return NFAIL;
  }
  void write_old(const DirectoryHead& head,
                 const std::vector<std::string>& codes = {"   1AAAA", "   2BBBB"}) {
    write_code_directory(folder / "pzandir.out", head, codes);
    write_bytes(folder / "purezan.out", std::string(2000, ' '));
  }
};

TEST_F(PureDatabase, TextDirectoryIsReadWithAFixedHeader) {
  write_text_directory(folder / "pcdir.asc", {"   1----", "   9H2O ", "  20 2P "});
  write_bytes(folder / "purezan.out", std::string(3000, ' '));
  ASSERT_EQ(open(), status::ok);
  EXPECT_TRUE(static_cast<bool>(directory.NEWZANSTYLE));
  EXPECT_EQ(directory.NDIR, 3);
  EXPECT_EQ(directory.CDENT(2).view(), "   9H2O         ");
  EXPECT_EQ(directory.CDENT(3).view(), "  20 2P         ");
  EXPECT_EQ(directory.CMANY(1).view(), "STD ");
  EXPECT_EQ(directory.CMANY(2).view(), "MFD ");
  EXPECT_EQ(directory.CMANY(3).view(), "    ");
  EXPECT_EQ(directory.L1MANY(1), 1);
  EXPECT_EQ(directory.L2MANY(1), 4);
  EXPECT_EQ(directory.L1MANY(2), 5);
  EXPECT_EQ(directory.L2MANY(2), 8);
  EXPECT_EQ(directory.MSTD, 1);
  EXPECT_EQ(directory.MMFD, 2);
  EXPECT_EQ(setup.date_pure.view(), "April 2003          ");
  EXPECT_TRUE(unit_is_open(directory.pure_unit));
  EXPECT_EQ(open_units(), 1);
}

TEST_F(PureDatabase, OnlyTwoNumbersOfLineOneCount) {
  write_bytes(folder / "pcdir.asc",
              "xxxxxyyyyy               "
              "    1"
              "-----*****    2????\n   1AAAA\n");
  write_bytes(folder / "purezan.out", "");
  EXPECT_EQ(open(), status::ok);
  EXPECT_EQ(directory.NDIR, 1);
}

TEST_F(PureDatabase, OldDirectoryIsReadOverSeveralBlocks) {
  std::vector<std::string> codes;
  for (int i = 1; i <= 1000; ++i) {
    const std::string number = std::to_string(i);
    codes.push_back("    " + std::string(4 - number.size(), '_') + number);
  }
  write_old({.sizes = kPureSizes}, codes);
  ASSERT_EQ(open(), status::ok);
  EXPECT_FALSE(static_cast<bool>(directory.NEWZANSTYLE));
  EXPECT_EQ(directory.NDIR, 1000);
  EXPECT_EQ(directory.CDENT(1).view(), "    ___1        ");
  EXPECT_EQ(directory.CDENT(400).view(), "    _400        ");
  EXPECT_EQ(directory.CDENT(401).view(), "    _401        ");
  EXPECT_EQ(directory.CDENT(1000).view(), "    1000        ");
  EXPECT_EQ(setup.date_pure.view(), "1 January 2001      ");
  EXPECT_EQ(open_units(), 1);
}

TEST_F(PureDatabase, FieldsAreFoundByName) {
  write_old({.sizes = kPureSizes,
             .names = {"XYZ ", "MFD ", "STD "},
             .lengths = {2, 1, 1},
             .words = 4,
             .per_block = 240},
            {"12345678AAAA   1"});
  ASSERT_EQ(open(), status::ok);
  EXPECT_EQ(directory.MMFD, 2);
  EXPECT_EQ(directory.MSTD, 3);
  EXPECT_EQ(directory.L1MANY(2), 9);
  EXPECT_EQ(directory.L2MANY(2), 12);
  EXPECT_EQ(directory.L1MANY(3), 13);
  EXPECT_EQ(directory.L2MANY(3), 16);
  EXPECT_EQ(directory.CDENT(1).view(), "12345678AAAA   1");
}

TEST_F(PureDatabase, TextDirectoryWinsOverTheOldOne) {
  write_old({.sizes = kPureSizes});
  write_text_directory(folder / "pcdir.asc", {"   1CCCC"});
  ASSERT_EQ(open(), status::ok);
  EXPECT_EQ(directory.NDIR, 1);
  EXPECT_EQ(directory.CDENT(1).sub(5, 8), "CCCC");
}

TEST_F(PureDatabase, MissingFilesAreNamed) {
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(last_entry(), "3 SDBPC0 Pure component database directory file not found");
  write_text_directory(folder / "pcdir.asc", {"   1CCCC"});
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(last_entry(), "3 SDBPC0 Pure component database file not found");
  EXPECT_FALSE(std::filesystem::exists(folder / "purezan.out"));
  EXPECT_EQ(open_units(), 0);
}

TEST_F(PureDatabase, FilesThatCannotBeOpenedAreNamed) {
  std::filesystem::create_directories(folder / "pzandir.out");
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(last_entry(), "3 SDBPC0 Could not open pure component database directory file");
  std::filesystem::remove(folder / "pzandir.out");
  write_code_directory(folder / "pzandir.out", {.sizes = kPureSizes}, {"   1AAAA"});
  std::filesystem::create_directories(folder / "purezan.out");
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(last_entry(), "3 SDBPC0 Could not open pure component database");
  EXPECT_EQ(open_units(), 0);
}

TEST_F(PureDatabase, WithoutAFreeUnitNothingIsOpened) {
  write_old({.sizes = kPureSizes});
  for (I4 unit = 31; unit <= 99; ++unit)
    ASSERT_EQ(open_unit(unit, {"", Opening::scratch, false, false, 0}), 0);
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(last_entry(), "3 SDBPC0 Could not open pure component database directory file");
  write_text_directory(folder / "pcdir.asc", {"   1CCCC"});
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(last_entry(), "3 SDBPC0 Could not open pure component database directory file");
}

TEST_F(PureDatabase, ATextDirectoryThatGoesAwayStopsTheLibrary) {
  std::filesystem::create_directories(folder / "pcdir.asc");  // is there, and cannot be opened
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(stops, std::vector<std::string>{"Zandor file pcdir.asc not found"});
}

TEST_F(PureDatabase, HeadOfTheOldDirectoryIsChecked) {
  const std::string message = "3 SDBPC0 Configuration error in pure component database directory file";
  std::vector<DirectoryHead> heads;
  for (std::size_t i = 0; i < 5; ++i) {
    heads.push_back({.sizes = kPureSizes});
    ++heads.back().sizes[i];
  }
  heads.push_back({.sizes = kPureSizes, .many = 0});
  heads.push_back({.sizes = kPureSizes, .many = 4});
  heads.push_back({.sizes = kPureSizes, .many = 2147483647});
  heads.push_back({.sizes = kPureSizes, .entries = 1501, .blocks = 4});
  heads.push_back({.sizes = kPureSizes, .entries = 2147483647, .blocks = 1});
  heads.push_back({.sizes = kPureSizes, .words = 5});
  heads.push_back({.sizes = kPureSizes, .words = 0});
  heads.push_back({.sizes = kPureSizes, .words = -3});
  heads.push_back({.sizes = kPureSizes, .per_block = 0});
  heads.push_back({.sizes = kPureSizes, .blocks = 1, .per_block = 2000000000});
  heads.push_back({.sizes = kPureSizes, .blocks = 0});
  heads.push_back({.sizes = kPureSizes, .blocks = 2});  // the first block would hold more than there is
  for (std::size_t i = 0; i < heads.size(); ++i) {
    write_old(heads[i]);
    EXPECT_EQ(open(), status::failed) << i;
    EXPECT_EQ(last_entry(), message) << i;
    EXPECT_EQ(directory.NDIR, 0) << i;
    EXPECT_EQ(open_units(), 0) << i;
  }
}

TEST_F(PureDatabase, ADirectoryOf1500EntriesFits) {
  write_old({.sizes = kPureSizes}, std::vector<std::string>(1500, "   1AAAA"));
  EXPECT_EQ(open(), status::ok);
  EXPECT_EQ(directory.NDIR, 1500);
}

TEST_F(PureDatabase, TruncatedDirectoriesAreRefused) {
  write_old({.sizes = kPureSizes});
  const std::string whole = read_bytes(folder / "pzandir.out");
  for (const std::size_t length : {std::size_t{0}, std::size_t{50}, std::size_t{4800}, std::size_t{9610}}) {
    write_bytes(folder / "pzandir.out", whole.substr(0, length));
    EXPECT_EQ(open(), status::failed) << length;
    EXPECT_EQ(last_entry(), "3 SDBPC0 Configuration error in pure component database directory file");
  }
  write_text_directory(folder / "pcdir.asc", {"   1AAAA", "   2BBBB"});
  const std::string text = read_bytes(folder / "pcdir.asc");
  for (const std::size_t length : {std::size_t{0}, std::size_t{20}, text.size() - 9}) {
    write_bytes(folder / "pcdir.asc", text.substr(0, length));
    EXPECT_EQ(open(), status::failed) << length;
    EXPECT_EQ(last_entry(), "3 SDBPC0 Configuration error in pure component database directory file");
    EXPECT_EQ(directory.NDIR, 0);
  }
  write_text_directory(folder / "pcdir.asc", {"   1AAAA"}, 3);  // the layout of line 1 fits two code fields
  EXPECT_EQ(open(), status::failed);
  write_text_directory(folder / "pcdir.asc", std::vector<std::string>(1501, "   1AAAA"));
  EXPECT_EQ(open(), status::failed);
}

TEST_F(PureDatabase, CodeFieldsAreChecked) {
  write_old({.sizes = kPureSizes, .names = {"STD ", "ABC "}});
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(last_entry(), "3 SDBPC0 STD or MFD code fields not found");
  write_old({.sizes = kPureSizes, .names = {"ABC ", "MFD "}});
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(last_entry(), "3 SDBPC0 STD or MFD code fields not found");

  const std::string length = "3 SDBPC0 Incorrrect length of component code";
  write_old({.sizes = kPureSizes, .lengths = {2, 1}});
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(last_entry(), length);
  write_old({.sizes = kPureSizes, .lengths = {1, 0}});
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(last_entry(), length);
  for (const int words : {0, 3, -1, 2147483647}) {
    write_old({.sizes = kPureSizes,
               .names = {"STD ", "MFD ", "XYZ "},
               .lengths = {1, 1, words},
               .words = 4,
               .per_block = 240});
    EXPECT_EQ(open(), status::failed) << words;
    EXPECT_EQ(last_entry(), length) << words;
  }
  for (const int words : {1, 2}) {
    write_old({.sizes = kPureSizes,
               .names = {"STD ", "MFD ", "XYZ "},
               .lengths = {1, 1, words},
               .words = 4,
               .per_block = 240});
    EXPECT_EQ(open(), status::ok) << words;
  }
}

TEST_F(PureDatabase, UnitOfTheDataFileIsRemembered) {
  write_text_directory(folder / "pcdir.asc", {"   1CCCC"});
  write_bytes(folder / "purezan.out", "");
  ASSERT_EQ(open_unit(31, {"", Opening::scratch, false, false, 0}), io::ok);
  ASSERT_EQ(open(), status::ok);
  EXPECT_EQ(directory.pure_unit, 32);
  EXPECT_EQ(setup.units.pure, 32);
  ASSERT_EQ(open(), status::ok);  // a second opening gives the first file back
  EXPECT_EQ(open_units(), 2);
}

TEST_F(PureDatabase, IdentityAndConstants) {
  CellRecord record = pure_record(109, " 6P ");
  record.text(5, "a name of twenty-eight chars").text(12, "shortnam").text(14, "twelve chars");
  for (int e = 1; e <= 15; ++e) record.integer(25 + e, 100 + e);
  for (int cell = 51; cell <= 60; ++cell) record.real(cell, 0.25F * static_cast<float>(cell));
  record.real(51, 647.3F).real(52, 22.12F);
  record.real(64, 1.5F).real(65, 2.5F).real(67, 3.5F).real(68, 4.5F).real(69, 5.5F).integer(70, 0).integer(71,
                                                                                                           8);
  record.integer(247, 4711).integer(250, 20);
  ASSERT_EQ(load(record), status::ok);
  EXPECT_EQ(comp.ICSTD(3), 109);
  EXPECT_EQ(comp.ICS(3).view(), " 6P ");
  EXPECT_EQ(comp.CIUPAC(3).view(), "a name of twenty-eight chars");
  EXPECT_EQ(comp.CMFNAM(3).view(), "shortnam");
  EXPECT_EQ(comp.ASPNAM(3).view(), "twelve chars    ");
  for (int e = 1; e <= 15; ++e) EXPECT_EQ(comp.ELEM(3, e), 100 + e);
  EXPECT_EQ(comp.NOTRY(3), 1);
  EXPECT_NEAR(comp.TC(3), 647.3, 3e-5);
  EXPECT_EQ(comp.TC(3), static_cast<double>(647.3F));
  EXPECT_NEAR(comp.PC(3), 221.2, 1e-5);
  EXPECT_EQ(comp.PC(3), 10.0 * static_cast<double>(22.12F));
  EXPECT_EQ(comp.VC(3), 0.25 * 53);
  EXPECT_EQ(comp.OMEGA(3), 0.25 * 54);
  EXPECT_EQ(comp.RMOLW(3), 0.25 * 55);
  EXPECT_EQ(comp.ATBP(3), 0.25 * 56);
  EXPECT_EQ(comp.TBOIL(3), 0.25 * 56);
  EXPECT_EQ(comp.TMELT(3), 0.25 * 57);
  EXPECT_EQ(comp.SPAR(4, 3), 0.25 * 57);
  EXPECT_EQ(comp.RHO(3), 0.25 * 58);
  EXPECT_EQ(comp.UOPK(3), 0.25 * 59);
  EXPECT_EQ(comp.HCRAT(3), 0.25 * 60);
  EXPECT_EQ(comp.LVIS50(3), 1.5);
  EXPECT_EQ(comp.BLIN(3), 2.5);
  EXPECT_EQ(comp.PACHOR(3), 3.5);
  EXPECT_EQ(comp.VLIQ25(3), 4.5);  // whatever the flag says
  EXPECT_EQ(comp.IV25(3), 0);
  EXPECT_EQ(comp.SL25(3), 5.5);
  EXPECT_EQ(comp.IS25(3), 8);
  EXPECT_EQ(comp.IDDB(3), 4711);
  EXPECT_EQ(comp.ISOFAM(3), 20);
}

TEST_F(PureDatabase, ASmallSolubilityIsNone) {
  for (const float value : {0.0F, 1e-10F, -1e-10F, std::nanf("")}) {
    ASSERT_EQ(load(pure_record(2, "AAAA").real(69, value).integer(71, 8)), status::ok);
    EXPECT_EQ(comp.SL25(3), 0.0);
    EXPECT_EQ(comp.IS25(3), 0);
  }
  ASSERT_EQ(load(pure_record(2, "AAAA").real(69, -2e-10F).integer(71, 8)), status::ok);
  EXPECT_EQ(comp.IS25(3), 8);
}

TEST_F(PureDatabase, NetHeatOfCombustionIsDerivedInSinglePrecision) {
  ASSERT_EQ(load(pure_record(2, "AAAA").real(77, 1000000.0F).integer(27, 2)), status::ok);
  EXPECT_EQ(comp.HCD(3), 1e6);
  EXPECT_NEAR(comp.HCW(3), 955998.4, 0.04);
  EXPECT_EQ(comp.HCW(3), 955998.375);  // the nearest 32-bit number
  ASSERT_EQ(load(pure_record(2, "AAAA").real(77, 1000000.0F).real(78, 5.0F).integer(27, 2)), status::ok);
  EXPECT_EQ(comp.HCW(3), 5.0);
}

TEST_F(PureDatabase, HeatsAndSolidSet) {
  CellRecord record = pure_record(2, "AAAA");
  for (int cell = 74; cell <= 86; ++cell) record.real(cell, static_cast<float>(cell));
  comp.SPAR(2, 3) = 99.0;
  comp.SPAR(3, 3) = 99.0;
  ASSERT_EQ(load(record), status::ok);
  EXPECT_EQ(comp.HF(3), 74.0);
  EXPECT_EQ(comp.SOFF(3), 75.0);
  EXPECT_EQ(comp.GF(3), 76.0);
  EXPECT_EQ(comp.HCD(3), 77.0);
  EXPECT_EQ(comp.HCW(3), 78.0);
  EXPECT_EQ(comp.GC(3), 79.0);
  EXPECT_EQ(comp.OMHV(3), 83.0);
  EXPECT_EQ(comp.HVAP(3), 84.0);
  EXPECT_EQ(comp.HFUS(3), 85.0);
  EXPECT_EQ(comp.HREF(3), 86.0);
  EXPECT_EQ(comp.SPAR(1, 3), 85.0);
  EXPECT_EQ(comp.SPAR(2, 3), 0.0);
  EXPECT_EQ(comp.SPAR(3, 3), 0.0);
}

// Sets whose flag is an integer cell: first cell, length, and how they are read back.
struct ConditionalSet {
  const char* name;
  int flag, first, count;
  R8 (*value)(int k);
};
const ConditionalSet kConditionalSets[] = {
    {"CCPL", 93, 94, 7, [](int k) { return comp.CCPL(3, k); }},
    {"PARL2", 131, 133, 5, [](int k) { return comp.PARL2(3, k); }},
    {"DIPOLE", 154, 155, 1, [](int) { return comp.DIPOLE(3); }},
    {"HVAPCF", 156, 157, 17, [](int k) { return comp.HVAPCF(3, k); }},
    {"PSAT", 47, 174, 5, [](int k) { return comp.PSAT(3, k); }},
    {"DLIP", 48, 179, 3, [](int k) { return comp.DLIP(3, k); }},
    {"PWAG", 50, 182, 4, [](int k) { return comp.PWAG(3, k); }},
    {"TCL", 186, 187, 7, [](int k) { return comp.TCL(3, k); }},
    {"VIL", 196, 197, 7, [](int k) { return comp.VIL(3, k); }},
    {"second half of SS", 238, 239, 4, [](int k) { return comp.SS(3, k + 4); }},
    {"first half of SS", 238, 243, 4, [](int k) { return comp.SS(3, k); }},
};

TEST_F(PureDatabase, ConditionalSetsFollowTheirFlag) {
  for (const ConditionalSet& set : kConditionalSets) {
    CellRecord record = pure_record(2, "AAAA");
    for (int k = 0; k < set.count; ++k) record.real(set.first + k, static_cast<float>(set.first + k));
    record.integer(set.flag, -1);
    ASSERT_EQ(load(record), status::ok);
    for (int k = 1; k <= set.count; ++k) EXPECT_EQ(set.value(k), set.first + k - 1) << set.name << k;
    record.integer(set.flag, 0);
    ASSERT_EQ(load(record), status::ok);
    for (int k = 1; k <= set.count; ++k) EXPECT_EQ(set.value(k), 0.0) << set.name << k;
  }
}

TEST_F(PureDatabase, SetsWithoutAFlag) {
  CellRecord record = pure_record(2, "AAAA");
  for (int cell = 51; cell <= 246; ++cell) record.real(cell, static_cast<float>(cell));
  record.integer(249, 7).integer(231, 5);
  ASSERT_EQ(load(record), status::ok);
  for (int k = 1; k <= 8; ++k) EXPECT_EQ(comp.COFHT(3, k), 100 + k);
  for (int k = 1; k <= 5; ++k) {
    EXPECT_EQ(comp.COFHTX(3, k), 0.0);
    EXPECT_EQ(comp.PARABF(3, k), 110 + k);
    EXPECT_EQ(comp.PARABF(3, 10 + k), 115 + k);
    EXPECT_EQ(comp.PARABF(3, 5 + k), 120 + k);
  }
  for (int k = 1; k <= 2; ++k) {
    EXPECT_EQ(comp.TCV(3, k), 193 + k);
    EXPECT_EQ(comp.VIV(3, k), 203 + k);
    EXPECT_EQ(comp.SURT(3, k), 231 + k);
  }
  EXPECT_EQ(comp.ISUR(3), 5);
}

TEST_F(PureDatabase, HeatCapacityOfFormEightHasFiveMoreCoefficients) {
  CellRecord record = pure_record(2, "AAAA");
  for (int cell = 101; cell <= 110; ++cell) record.real(cell, static_cast<float>(cell));
  record.real(248, 248.0F).integer(249, 8);
  ASSERT_EQ(load(record), status::ok);
  EXPECT_EQ(comp.ICPIG(3), 8);
  EXPECT_EQ(comp.COFHT(3, 6), 106.0);
  EXPECT_EQ(comp.COFHT(3, 7), 0.0);
  EXPECT_EQ(comp.COFHT(3, 8), 0.0);
  for (int k = 1; k <= 4; ++k) EXPECT_EQ(comp.COFHTX(3, k), 106 + k);
  EXPECT_EQ(comp.COFHTX(3, 5), 248.0);
}

TEST_F(PureDatabase, AbsentValuesOfTheFitsAreRecognised) {
  for (const float empty : {0.0F, -123456789.0F}) {
    CellRecord record =
        pure_record(2, "AAAA").real(138, empty).real(139, 3.0F).real(147, empty).real(148, 4.0F);
    ASSERT_EQ(load(record), status::ok);
    EXPECT_EQ(comp.IPANO(3), 0);
    EXPECT_EQ(comp.PANTO(3, 2), 0.0);
    EXPECT_EQ(comp.IDNDIP(3), 0);
    EXPECT_EQ(comp.DDIP(3, 2), 0.0);
  }
  CellRecord record = pure_record(2, "AAAA");
  for (int cell = 138; cell <= 153; ++cell) record.real(cell, static_cast<float>(cell));
  ASSERT_EQ(load(record), status::ok);
  EXPECT_EQ(comp.IPANO(3), 7);
  for (int k = 1; k <= 9; ++k) EXPECT_EQ(comp.PANTO(3, k), 137 + k);
  EXPECT_EQ(comp.IDNDIP(3), 7);
  for (int k = 1; k <= 7; ++k) EXPECT_EQ(comp.DDIP(3, k), 146 + k);
}

TEST_F(PureDatabase, ADensityFitWithoutAPositiveSecondCoefficientIsSwitchedOff) {
  ASSERT_EQ(load(pure_record(2, "AAAA").real(147, 5.0F).real(148, -1.0F)), status::ok);
  EXPECT_EQ(comp.IDNDIP(3), 0);
  EXPECT_EQ(comp.DDIP(3, 1), 5.0);
  EXPECT_EQ(comp.DDIP(3, 2), -1.0);
}

TEST_F(PureDatabase, GroupsAreCountedWithoutGaps) {
  CellRecord record = pure_record(2, "AAAA");
  const float pairs_of_groups[] = {1.0F,  2.0F, 0.0F,  9.0F, 161.0F, 9.0F, 160.9F, 3.0F,
                                   -4.0F, 9.0F, 17.0F, 1.5F, 0.5F,   9.0F, 1e30F,  9.0F};
  for (int k = 0; k < 16; ++k) record.real(207 + k, pairs_of_groups[k]);
  ASSERT_EQ(load(record), status::ok);
  EXPECT_EQ(comp.NGRP(3), 3);
  EXPECT_EQ(comp.GRPTYP(3, 1), 1);
  EXPECT_EQ(comp.GRPNUM(3, 1), 2.0);
  EXPECT_EQ(comp.GRPTYP(3, 2), 160);
  EXPECT_EQ(comp.GRPNUM(3, 2), 3.0);
  EXPECT_EQ(comp.GRPTYP(3, 3), 17);
  EXPECT_EQ(comp.GRPNUM(3, 3), 1.5);
  EXPECT_EQ(comp.GRPTYP(3, 4), 0);
}

TEST_F(PureDatabase, PlainHydrocarbons) {
  const auto notry = [this](CellRecord record) {
    EXPECT_EQ(load(record), status::ok);
    return comp.NOTRY(3);
  };
  EXPECT_EQ(notry(pure_record(2, "AAAA").integer(26, 1).integer(27, 4)), 0);
  EXPECT_EQ(notry(pure_record(2, "AAAA").integer(26, 1)), 1);
  EXPECT_EQ(notry(pure_record(2, "AAAA").integer(27, 2)), 1);
  for (int e = 3; e <= 15; ++e) {
    const bool atomic_number = e == 10 || e == 12 || e == 14;
    EXPECT_EQ(notry(pure_record(2, "AAAA").integer(26, 1).integer(27, 4).integer(25 + e, 1)),
              atomic_number ? 0 : 1)
        << e;
  }
}

TEST_F(PureDatabase, SaltIsFoundByItsNumber) {
  ASSERT_EQ(load(pure_record(1001, "NACL")), status::ok);
  EXPECT_EQ(comp.ISALT, 3);
}

TEST_F(PureDatabase, ReadingCountsAndChangesTheGeneration) {
  setup.pure_records_read = 0;
  const I4 before = setup.generation;
  ASSERT_EQ(load(pure_record(2, "AAAA")), status::ok);
  EXPECT_EQ(setup.pure_records_read, 1);
  EXPECT_GT(setup.generation, before);

  ASSERT_EQ(open(), status::ok);
  comp.TC(3) = 5.0;
  I4 NFAIL = 0;
  SDBPC1(0, 2, NFAIL);
  EXPECT_EQ(NFAIL, status::ok);
  SDBPC1(-7, 2, NFAIL);
  EXPECT_EQ(NFAIL, status::ok);
  EXPECT_EQ(setup.pure_records_read, 3);
  EXPECT_EQ(comp.TC(3), 5.0);
}

TEST_F(PureDatabase, ARecordThatCannotBeReadIsReported) {
  Bank bank;
  bank.pure = {pure_record(1, "----"), pure_record(2, "AAAA")};
  bank.pure[1].text(1, "12x4");
  bank.write(folder);
  ASSERT_EQ(open(), status::ok);
  for (const I4 record : {2, 3, 1500, 0, -1}) {
    I4 NFAIL = 0;
    SDBPC1(1, record, NFAIL);
    EXPECT_EQ(NFAIL, status::failed);
    EXPECT_EQ(last_entry(),
              "3 SDBPC1 Read error in pure component database, record " + std::to_string(record));
  }
}

TEST_F(PureDatabase, CodesAreLookedUpFromTheSecondEntryOn) {
  write_text_directory(folder / "pcdir.asc", {"   1AAAA", "   9H2O ", "  20 2P "});
  write_bytes(folder / "purezan.out", "");
  ASSERT_EQ(open(), status::ok);
  setup.CUCOMP(1) = "AAAA";
  setup.CUCOMP(2) = "H2O";
  setup.CUCOMP(3) = " 2P xxxx";
  setup.CUCOMP(4) = "2P";
  EXPECT_FALSE(SDBAO0(1));
  EXPECT_TRUE(SDBAO0(2));
  EXPECT_TRUE(SDBAO0(3));
  EXPECT_FALSE(SDBAO0(4));
}

TEST_F(PureDatabase, TheListingShowsEveryCell) {
  const std::filesystem::path here = std::filesystem::current_path();
  std::filesystem::current_path(scratch.path());
  ASSERT_EQ(load(pure_record(7, "AAAA")), status::ok);
  EXPECT_FALSE(std::filesystem::exists("ftdb.chk"));  // off
  list_pure_records = true;
  const I4 NFAIL = load(pure_record(7, "AAAA").integer(26, 12).real(51, -123.456F).real(52, 1.5e-12F));
  list_pure_records = false;
  const std::string listing = read_bytes("ftdb.chk");
  std::filesystem::current_path(here);
  ASSERT_EQ(NFAIL, status::ok);
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < listing.size(); at = listing.find('\n', at) + 1)
    lines.push_back(listing.substr(at, listing.find('\n', at) - at));
  ASSERT_EQ(lines.size(), 250U);
  EXPECT_EQ(lines[1].substr(0, 10), "   2;AAAA;");
  EXPECT_EQ(lines[25].substr(9), ";            12; 0.1681558E-43;");
  EXPECT_EQ(lines[50].substr(24), ";-0.1234560E+03;T;");
  EXPECT_EQ(lines[51].substr(24), "; 0.1500000E-11;T;");
  EXPECT_EQ(lines[52].substr(9), ";             0; 0.0000000E+00;F;");
  EXPECT_EQ(lines[52].substr(0, 5), "  53;");
}

TEST(TextSearch, FindsTheFirstMatchInRange) {
  const char table[] = "abcdabxxabcd";  // three elements of four characters
  EXPECT_EQ(SSVST0(table, 4, 3, 1, 3, 1, 4, "abcd", 1, 4), 1);
  EXPECT_EQ(SSVST0(table, 4, 3, 2, 3, 1, 4, "abcd", 1, 4), 3);
  EXPECT_EQ(SSVST0(table, 4, 3, 2, 3, 1, 2, "zzab", 3, 4), 2);
  EXPECT_EQ(SSVST0(table, 4, 3, 1, 3, 1, 4, "nope", 1, 4), -1000);
  EXPECT_EQ(SSVST0(table, 4, 3, 3, 2, 1, 4, "abcd", 1, 4), -1000);
}

TEST(TextSearch, ShorterTextsArePadded) {
  const char table[] = "ab  abcd";
  EXPECT_EQ(SSVST0(table, 4, 2, 1, 2, 1, 4, "ab", 1, 2), 1);
  EXPECT_EQ(SSVST0(table, 4, 2, 1, 2, 3, 4, "", 1, 0), 1);
  EXPECT_EQ(SSVST0(table, 4, 2, 1, 2, 1, 4, "ab", 1, 8), 1);
}

TEST(TextSearch, RangesOutsideTheTableAreLeftOut) {
  const char table[] = "abcdefgh";
  EXPECT_EQ(SSVST0(table, 4, 2, -5, 900, 1, 4, "efgh", 1, 4), 2);
  EXPECT_EQ(SSVST0(table, 4, 2, 3, 900, 1, 4, "efgh", 1, 4), -1000);
}

}  // namespace
}  // namespace talix::test
