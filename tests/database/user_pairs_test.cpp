#include "database/s0u_user_pairs.h"

#include <cmath>
#include <string>
#include <vector>

#include "database/database_fixture.h"
#include "database/free_format.h"
#include "database/load_order.h"
#include "engine/model_record.h"
#include "engine/model_table.h"
#include "liquid/snl_nrtl.h"

namespace talix::test {
namespace {

// ---- free format

class FreeFormatTest : public DatabaseTest {
 protected:
  void open(const std::string& text) {
    write_bytes(folder / "numbers", text);
    ASSERT_EQ(open_unit(kUnit, {(folder / "numbers").string(), Opening::old, false, false, 0}), io::ok);
    reader = free_format(kUnit);
  }
  ~FreeFormatTest() override { close_unit(kUnit, false); }

  std::string word() {
    std::string_view item;
    return next_word(reader, item) ? std::string{item} : "(end)";
  }
  std::vector<R8> reals(int count, R8 initial = -9.0) {
    std::vector<R8> values;
    for (int k = 0; k < count; ++k) {
      R8 value = initial;
      if (!next_real(reader, value)) break;
      values.push_back(value);
    }
    return values;
  }

  static constexpr I4 kUnit = 40;
  FreeFormat reader{};
};

TEST_F(FreeFormatTest, ItemsStandBetweenBlanksCommasAndLineEnds) {
  open("1 2,3 , 4\t5\r\n\n   6\n7,\n8");
  begin_list(reader);
  EXPECT_EQ(reals(9), (std::vector<R8>{1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_TRUE(reader.at_end);
}

TEST_F(FreeFormatTest, FormsOfNumbers) {
  open("+1.5 -2 3. .25 1e3 1E-2 1.5D2 -1d-1 007");
  begin_list(reader);
  EXPECT_EQ(reals(9), (std::vector<R8>{1.5, -2, 3, 0.25, 1000, 0.01, 150, -0.1, 7}));
}

TEST_F(FreeFormatTest, RepeatedItemsEmptyItemsAndTheSlash) {
  open("3*0.5,,2*-1 4 / 5\n6");
  begin_list(reader);
  EXPECT_EQ(reals(9), (std::vector<R8>{0.5, 0.5, 0.5, -9, -1, -1, 4, -9, -9}));
  std::string_view item;
  ASSERT_TRUE(next_word(reader, item));
  EXPECT_EQ(item, "6");
}

TEST_F(FreeFormatTest, WhatIsNoNumberIsRefused) {
  for (const std::string_view text :
       {"x", "1.5.2", "1,5x", "--1", "+-1", "inf", "nan", "1e999", "0*1", "*2", "1e"}) {
    open(std::string{text} + " 5");
    begin_list(reader);
    reader.next = 0;
    std::vector<R8> values = reals(3);
    EXPECT_LT(values.size(), 2U) << text;
    EXPECT_FALSE(reader.at_end) << text;
    close_unit(kUnit, false);
  }
}

TEST_F(FreeFormatTest, IntegersHaveNoPoint) {
  open("12 +7 -3 2*4 9.5");
  begin_list(reader);
  I4 value = 0;
  for (const I4 expected : {12, 7, -3, 4, 4}) {
    ASSERT_TRUE(next_integer(reader, value));
    EXPECT_EQ(value, expected);
  }
  EXPECT_FALSE(next_integer(reader, value));
}

TEST_F(FreeFormatTest, WordsStartALineAndLoseTheirQuotes) {
  open("\n  NRTL 1 2\n'A B' 3\n\"open\nlast,4\n");
  EXPECT_EQ(word(), "NRTL");
  EXPECT_EQ(word(), "A B");
  EXPECT_EQ(word(), "open");
  EXPECT_EQ(word(), "last");
  EXPECT_EQ(word(), "(end)");
  EXPECT_TRUE(reader.at_end);
}

TEST_F(FreeFormatTest, AListStandsBehindItsWordOrBelow) {
  open("one 1 2\ntwo and more\n3 4\nthree\n\n5 6\n");
  for (const R8 first : {1.0, 3.0, 5.0}) {
    word();
    begin_list(reader);
    EXPECT_EQ(reals(2), (std::vector<R8>{first, first + 1.0}));
  }
}

TEST_F(FreeFormatTest, ALineThatMayBeCutIsRefused) {
  open("1 " + std::string(kLineLength, ' ') + "2\n");
  begin_list(reader);
  EXPECT_TRUE(reals(1).empty());
  EXPECT_FALSE(reader.at_end);
}

// ---- the user's file

class UserPairs : public DatabaseTest {
 protected:
  UserPairs() {
    set_components({"A", "B", "C"});
    comp.ICSTD(1) = 9;
    comp.ICSTD(2) = 328;
    comp.ICSTD(3) = 20;
    pairs.NPAIR = 3;
  }
  I4 apply(const std::string& text, I4 N = 3) {
    write_bytes(folder / "usrbin.dat", text);
    I4 NFAIL = 0;
    S0UBIN(N, NFAIL);
    EXPECT_EQ(open_units(), 0);
    return NFAIL;
  }
};

constexpr std::string_view kGood = "NRTL\n9 328 0.1 0.2 0.3 0.4 0.5 0.6 0.7 0.8 0.9 1.0 1.1 1.2\n";

TEST_F(UserPairs, NoFile) {
  I4 NFAIL = 0;
  S0UBIN(3, NFAIL);
  EXPECT_EQ(NFAIL, status::not_available);
  EXPECT_EQ(ring.count, 0);
}

TEST_F(UserPairs, AFileThatCannotBeOpenedFails) {
  std::filesystem::create_directory(folder / "usrbin.dat");
  I4 NFAIL = 0;
  S0UBIN(3, NFAIL);
  EXPECT_EQ(NFAIL, status::failed);
}

TEST_F(UserPairs, NoFreeUnit) {
  write_bytes(folder / "usrbin.dat", kGood);
  for (I4 unit = 1; unit <= kLastUnit; ++unit) {
    if (unit == 5 || unit == 6) continue;
    ASSERT_EQ(open_unit(unit, {"", Opening::scratch, false, false, 0}), io::ok);
  }
  I4 NFAIL = 0;
  S0UBIN(3, NFAIL);
  EXPECT_EQ(NFAIL, status::failed);
  for (I4 unit = 1; unit <= kLastUnit; ++unit) close_unit(unit, false);
  S0UBIN(3, NFAIL);
  EXPECT_EQ(NFAIL, status::ok);
  EXPECT_EQ(pairs.TAUT0(1, 2), 0.1);
}

TEST_F(UserPairs, AnEmptyFileChangesNothing) {
  const I4 generation = setup.generation;
  EXPECT_EQ(apply(""), status::ok);
  EXPECT_EQ(apply("\n  \n\n"), status::ok);
  EXPECT_EQ(setup.generation, generation);
  EXPECT_EQ(ring.count, 0);
}

TEST_F(UserPairs, ActivityRecord) {
  const I4 generation = setup.generation;
  ASSERT_EQ(apply(std::string{kGood}), status::ok);
  EXPECT_EQ(setup.generation, generation + 1);
  EXPECT_EQ(pairs.TAUT0(1, 2), 0.1);
  EXPECT_EQ(pairs.TAUT1(1, 2), 0.2);
  EXPECT_EQ(pairs.TAUT2(1, 2), 0.3);
  EXPECT_EQ(pairs.ALFA(1, 2), 0.4);
  EXPECT_EQ(pairs.TAUT0(2, 1), 0.5);
  EXPECT_EQ(pairs.TAUT1(2, 1), 0.6);
  EXPECT_EQ(pairs.TAUT2(2, 1), 0.7);
  EXPECT_EQ(pairs.ALFA(2, 1), 0.8);
  EXPECT_EQ(pairs.HEN1(1, 2), 0.9);
  EXPECT_EQ(pairs.HEN4(1, 2), 1.2);
  EXPECT_EQ(pairs.HEN1(2, 1), 0.0);
  EXPECT_FALSE(static_cast<bool>(comp.ISHEN(1)));
}

TEST_F(UserPairs, TheFirstNumberIsTheFirstComponent) {
  ASSERT_EQ(apply("NRTL\n328 9 1 2 3 4 5 6 7 8 9 10 11 12\n"), status::ok);
  EXPECT_EQ(pairs.TAUT0(2, 1), 1.0);
  EXPECT_EQ(pairs.TAUT0(1, 2), 5.0);
  // The constant part stands above the diagonal all the same.
  EXPECT_EQ(pairs.ALFA(1, 2), 4.0);
  EXPECT_EQ(pairs.ALFA(2, 1), 8.0);
  EXPECT_EQ(pairs.HEN1(2, 1), 9.0);
}

TEST_F(UserPairs, HenryRecordMarksTheGas) {
  ASSERT_EQ(apply("HENRY\n20 9 1.5 -2.5D3 0 1e-3\n"), status::ok);
  EXPECT_EQ(pairs.HEN1(3, 1), 1.5);
  EXPECT_EQ(pairs.HEN2(3, 1), -2500.0);
  EXPECT_EQ(pairs.HEN3(3, 1), 0.0);
  EXPECT_EQ(pairs.HEN4(3, 1), 0.001);
  EXPECT_TRUE(static_cast<bool>(comp.ISHEN(3)));
  EXPECT_FALSE(static_cast<bool>(comp.ISHEN(1)));
  EXPECT_FALSE(static_cast<bool>(comp.ISHEN(2)));
}

TEST_F(UserPairs, LayoutsOfARecord) {
  for (const std::string_view text :
       {"HENRY\n20 9 1 2 3 4\n", "HENRY 20 9 1 2 3 4\n", "HENRY\n20 9\n1 2\n3 4",
        "'HENRY'\n20,9,1,2,3,4,99\n", "HENRY water\n20 9 1 2 3 4 text behind\n",
        "\n\nHENRY\n\n20\n9\n1\n2\n3\n4\n"}) {
    pairs.HEN4.fill(0.0);
    comp.ISHEN(3) = false;
    EXPECT_EQ(apply(std::string{text}), status::ok);
    EXPECT_EQ(pairs.HEN4(3, 1), 4.0) << text;
    EXPECT_TRUE(static_cast<bool>(comp.ISHEN(3))) << text;
  }
  EXPECT_EQ(ring.count, 0);
}

TEST_F(UserPairs, AnUnknownKeywordIsPassedWithItsNumbers) {
  const std::string good{kGood};
  for (const std::string_view text :
       {"WILSON\n9 328 1 2 3 4\n", "nrtl\n9 328 0.1 0.2\n", "WILSON 9 328\n", "HENRYS\n20 9 1 2 3 4\n"}) {
    reset_pair_record();
    const I4 generation = setup.generation;
    EXPECT_EQ(apply(std::string{text} + good), status::ok);
    EXPECT_EQ(setup.generation, generation + 1) << text;
    EXPECT_EQ(pairs.TAUT0(1, 2), 0.1) << text;
    EXPECT_EQ(pairs.HEN1(3, 1), 0.0) << text;
  }
  EXPECT_EQ(ring.count, 0);
}

TEST_F(UserPairs, TenCharactersOfAKeywordCount) {
  ASSERT_EQ(apply("'NRTL      xyz'\n9 328 12*1\n'HENRY     '\n20 9 4*1\n"), status::ok);
  EXPECT_EQ(pairs.TAUT0(1, 2), 1.0);
  EXPECT_EQ(pairs.HEN1(3, 1), 1.0);
}

TEST_F(UserPairs, APairNotInTheSetIsIgnored) {
  const I4 generation = setup.generation;
  EXPECT_EQ(apply("NRTL\n9 31 12*1.0\nHENRY\n31 9 4*1.0\nHENRY\n31 32 4*1.0\n"), status::ok);
  EXPECT_EQ(setup.generation, generation);
  for (int i = 1; i <= 3; ++i) EXPECT_FALSE(static_cast<bool>(comp.ISHEN(i)));
  // The records behind it count.
  EXPECT_EQ(apply("NRTL\n9 31 12*1.0\n" + std::string{kGood}), status::ok);
  EXPECT_EQ(pairs.TAUT0(1, 2), 0.1);
  EXPECT_EQ(ring.count, 0);
}

TEST_F(UserPairs, ComponentsBehindTheFirstNAreNotInTheSet) {
  EXPECT_EQ(apply("HENRY\n20 9 4*1.0\n" + std::string{kGood}, 2), status::ok);
  EXPECT_EQ(pairs.HEN1(3, 1), 0.0);
  EXPECT_EQ(pairs.TAUT0(1, 2), 0.1);
}

TEST_F(UserPairs, AComponentWithItselfIsNoPair) {
  const I4 generation = setup.generation;
  EXPECT_EQ(apply("HENRY\n9 9 4*1.0\n"), status::ok);
  EXPECT_EQ(setup.generation, generation);
  EXPECT_FALSE(static_cast<bool>(comp.ISHEN(1)));
}

TEST_F(UserPairs, ABrokenRecordEndsTheReading) {
  const std::string good{kGood};
  for (const std::string_view text : {"HENRY\n20 9 1 2 x 4\n", "HENRY\nwater 9 1 2 3 4\n",
                                      "HENRY\n20 9.5 1 2 3 4\n", "HENRY\n20 9 1 2 3\n"}) {
    reset_pair_record();
    reset_error_ring();
    comp.ISHEN.fill(logical(false));
    EXPECT_EQ(apply(good + std::string{text} + "HENRY\n328 9 1 2 3 4\n"), status::ok) << text;
    EXPECT_EQ(pairs.TAUT0(1, 2), 0.1) << text;
    EXPECT_EQ(pairs.HEN1(3, 1), 0.0) << text;
    EXPECT_EQ(pairs.HEN1(2, 1), 0.0) << text;
    EXPECT_FALSE(static_cast<bool>(comp.ISHEN(3))) << text;
    EXPECT_EQ(last_entry(), "1 S0UBIN User pair data end in a record that cannot be read") << text;
  }
}

TEST_F(UserPairs, TheEndOfTheFileInARecordIsAnEnd) {
  for (const std::string_view text :
       {"HENRY", "HENRY\n", "HENRY\n20", "HENRY\n20 9 1 2 3", "HENRY\n20 9 1 2 3\n"}) {
    EXPECT_EQ(apply(std::string{kGood} + std::string{text}), status::ok);
    EXPECT_EQ(pairs.TAUT0(1, 2), 0.1) << text;
    EXPECT_EQ(pairs.HEN1(3, 1), 0.0) << text;
  }
  EXPECT_EQ(ring.count, 0);
}

TEST_F(UserPairs, TheLastOfSeveralRecordsStands) {
  EXPECT_EQ(apply("HENRY\n20 9 4*1.0\nHENRY\n20 9 4*2.0\n"), status::ok);
  EXPECT_EQ(pairs.HEN3(3, 1), 2.0);
}

// ---- in the load

class UserPairsInALoad : public DatabaseTest {
 protected:
  UserPairsInALoad() {
    Bank bank;
    bank.pure = {pure_record(1, "----"), pure_record(9, "H2O ").integer(27, 2).integer(29, 1),
                 pure_record(328, "MEOH").integer(26, 1)};
    std::vector<float> values(17, 0.0F);
    values[9] = 0.3F;
    values[11] = 0.7F;
    bank.pairs = {{.low = 9, .high = 328, .activity = '1', .values = values}};
    bank.write(folder);
  }
  I4 load() {
    set_components({"H2O ", "MEOH"});
    I4 NFAIL = 0;
    SHDBS0(NFAIL);
    return NFAIL;
  }
  static int reports() {
    int count = 0;
    for (const std::string& entry : ring_texts())
      count += entry == "User overwrite binary data failed" ? 1 : 0;
    return count;
  }
};

TEST_F(UserPairsInALoad, AMissingFileIsReportedAndTheLoadGoesOn) {
  EXPECT_EQ(load(), status::ok);
  EXPECT_EQ(last_entry(), "1 SHDBS0 User overwrite binary data failed");
  EXPECT_EQ(pairs.TAUT0(1, 2), widen(0.7F));
}

TEST_F(UserPairsInALoad, TheUsersFileComesLast) {
  write_bytes(folder / "usrbin.dat", "NRTL\n9 328 1.25 11*0.0\nHENRY\n328 9 1 2 3 4\n");
  EXPECT_EQ(load(), status::ok);
  EXPECT_EQ(reports(), 0);
  EXPECT_EQ(pairs.TAUT0(1, 2), 1.25);
  EXPECT_EQ(pairs.ALFA(1, 2), 0.0);
  EXPECT_EQ(pairs.HEN1(2, 1), 1.0);
  EXPECT_TRUE(static_cast<bool>(comp.ISHEN(2)));
  // The next load starts from the database again.
  std::filesystem::remove(folder / "usrbin.dat");
  EXPECT_EQ(load(), status::ok);
  EXPECT_EQ(pairs.TAUT0(1, 2), widen(0.7F));
  EXPECT_EQ(pairs.HEN1(2, 1), 0.0);
  EXPECT_FALSE(static_cast<bool>(comp.ISHEN(2)));
}

TEST_F(UserPairsInALoad, ActivityCoefficientsFollowTheUser) {
  const auto activity = [] {
    CompVec x{};
    x(1) = 0.4;
    x(2) = 0.6;
    ActivityOptions options{};
    options(1) = true;
    static ExcessGibbs excess;
    SNLAC0(300.0, x, excess, 1, 2, options);
    return excess.GE;
  };
  ASSERT_EQ(load(), status::ok);
  const R8 before = activity();
  write_bytes(folder / "usrbin.dat", "NRTL\n9 328 1.0 0 0 0.3 1.0 7*0.0\n");
  I4 NFAIL = 0;
  S0UBIN(2, NFAIL);
  EXPECT_NE(activity(), before);
  // Symmetric interactions give gE/RT = x1 x2 tau G/(x1 + x2 G) + x1 x2 tau G/(x2 + x1 G).
  const R8 G = std::exp(-0.3);
  EXPECT_NEAR(activity(), 0.24 * G * (1.0 / (0.4 + 0.6 * G) + 1.0 / (0.6 + 0.4 * G)), 1e-14);
}

}  // namespace
}  // namespace talix::test
