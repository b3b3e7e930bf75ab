#include "bank/tables.h"

#include <gtest/gtest.h>

#include "support/bank_source.h"

namespace talix::bank {
namespace {

using testing::Folder;

// Text of the error that an action throws; empty where it throws none.
template <class Action>
std::string error_of(Action action) {
  try {
    action();
  } catch (const BankError& error) {
    return error.what();
  }
  return {};
}

TEST(SourceTable, QuotedFieldsKeepCommasQuotesAndBlanks) {
  const SourceTable table = SourceTable::parse("t.csv", "code,name\n\" 1P \",\"2,2-di \"\"x\"\"\"\n");
  ASSERT_EQ(table.rows(), 1U);
  EXPECT_EQ(table.text(0, "code"), " 1P ");
  EXPECT_EQ(table.text(0, "name"), "2,2-di \"x\"");
}

TEST(SourceTable, CommentsEmptyLinesAndCarriageReturnsAreNoRows) {
  const SourceTable table = SourceTable::parse("t.csv", "# about\r\na,b\r\n\r\n1,2\r\n# more\n3,\n");
  ASSERT_EQ(table.rows(), 2U);
  EXPECT_EQ(table.text(0, "b"), "2");
  EXPECT_EQ(table.text(1, "b"), "");
}

TEST(SourceTable, MissingFileNamesTheFile) {
  EXPECT_NE(error_of([] { SourceTable::read("/nowhere/x.csv"); }).find("/nowhere/x.csv"), std::string::npos);
}

TEST(SourceTable, RowOfWrongLengthNamesItsLine) {
  const std::string error = error_of([] { SourceTable::parse("t.csv", "# c\na,b\n1,2\n1,2,3\n"); });
  EXPECT_EQ(error,
            "t.csv, line 4: 3 fields where the header has 2; put a field that holds a comma in quotes");
}

TEST(SourceTable, OpenQuoteNamesItsLine) {
  EXPECT_NE(error_of([] { SourceTable::parse("t.csv", "a\n\"x\n"); }).find("t.csv, line 2: a quote"),
            std::string::npos);
}

TEST(SourceTable, HeaderIsNeededAndItsNamesAreDistinct) {
  EXPECT_EQ(error_of([] { SourceTable::parse("t.csv", "# c\n"); }), "t.csv: empty table, no header line");
  EXPECT_NE(error_of([] { SourceTable::parse("t.csv", "a,b,a\n"); }).find("column a stands twice"),
            std::string::npos);
}

TEST(SourceTable, UnknownColumnIsNamed) {
  const SourceTable table = SourceTable::parse("t.csv", "a\n1\n");
  EXPECT_FALSE(table.has("tc_K"));
  EXPECT_EQ(error_of([&] { (void)table.text(0, "tc_K"); }),
            "t.csv: column tc_K is missing in the header; add it");
}

TEST(SourceTable, BadNumberNamesLineColumnValueAndUnit) {
  const SourceTable table = SourceTable::parse("t.csv", "tc_K\n12K\n");
  EXPECT_EQ(error_of([&] {
              (void)table.number(0, "tc_K", {"K", 0, 100});
            }),
            "t.csv, line 2, column tc_K: value \"12K\" [K]: not a number; write a plain decimal number");
}

TEST(SourceTable, NumberOutsideItsRangeAndNanAreRefused) {
  const SourceTable table = SourceTable::parse("t.csv", "x\n101\nnan\ninf\n1e400\n");
  for (std::size_t row = 0; row < table.rows(); ++row) {
    EXPECT_NE(error_of([&] { (void)table.number(row, "x", {"K", 0, 100}); }), "") << row;
  }
  EXPECT_NE(error_of([&] {
              (void)table.number(0, "x", {"K", 0, 100});
            }).find("outside 0 to 100"),
            std::string::npos);
}

TEST(SourceTable, EmptyNumberIsNothingUnlessItIsNeeded) {
  const SourceTable table = SourceTable::parse("t.csv", "x,y\n,2.5e-3\n");
  EXPECT_FALSE(table.number(0, "x", {"K", 0, 100}).has_value());
  EXPECT_EQ(table.required(0, "y", {"K", 0, 100}), 2.5e-3);
  EXPECT_NE(error_of([&] {
              (void)table.required(0, "x", {"K", 0, 100});
            }).find("empty; this figure is needed"),
            std::string::npos);
}

TEST(SourceTable, WholeNumbersAreWholeAndInRange) {
  const SourceTable table = SourceTable::parse("t.csv", "n,m,o\n7,7.0,\n");
  EXPECT_EQ(table.integer(0, "n", 2, 9), 7);
  EXPECT_NE(error_of([&] { (void)table.integer(0, "n", 8, 9); }), "");
  EXPECT_NE(error_of([&] { (void)table.integer(0, "m", 2, 9); }), "");
  EXPECT_NE(error_of([&] { (void)table.integer(0, "o", 2, 9); }), "");
}

}  // namespace
}  // namespace talix::bank
