#include "bank/accuracy.h"

#include <gtest/gtest.h>

#include "bank/build.h"
#include "bank/tables.h"
#include "support/bank_source.h"

namespace talix::bank {
namespace {

using testing::Folder;

const std::filesystem::path kData = std::filesystem::path(TALIX_TEST_SOURCE) / "data";
const std::filesystem::path kGolden = std::filesystem::path(TALIX_TEST_SOURCE) / "tests" / "golden";

TEST(AccuracyReport, NamesEveryComponentOfTheBank) {
  const Folder folder;
  const BuildResult result = compile_bank(kData);
  write_accuracy_report(result.bank, kData, kGolden, folder.path() / "accuracy.md");
  const std::string report = folder.read("accuracy.md");
  const CellField& name = pure_field("CIUPAC");
  for (const PureRecord& record : result.bank.pure) {
    if (is_unused(record)) continue;
    const std::string text = record.text(name.cell, name.cells);
    const std::string trimmed = text.substr(0, text.find_last_not_of(' ') + 1);
    EXPECT_NE(report.find("| " + trimmed + " |"), std::string::npos) << trimmed;
  }
}

TEST(AccuracyReport, MissingTablesAndFoldersAreNamed) {
  const Folder folder;
  const Bank bank;
  EXPECT_THROW(write_accuracy_report(bank, folder.path(), kGolden, folder.path() / "accuracy.md"), BankError);
  EXPECT_THROW(write_accuracy_report(bank, kData, kGolden, folder.path() / "absent" / "accuracy.md"),
               BankError);
  EXPECT_THROW(
      write_accuracy_report(compile_bank(kData).bank, kData, folder.path(), folder.path() / "accuracy.md"),
      BankError);
}

TEST(AccuracyReport, FlashesTheReferenceStatesOfPhases) {
  const Folder folder;
  write_accuracy_report(compile_bank(kData).bank, kData, kGolden, folder.path() / "accuracy.md");
  const std::string report = folder.read("accuracy.md");
  // A row of every table, with a figure of more than nothing.
  for (const char* row : {"\n| hydrocarbon gas | 159, 173 | 3.", "\n| methane | 35, 35 | 0.",
                          "\n| propane | corresponding states | ", "\n| n-decane | set of its own | ",
                          "\n| water | 2.", "\n| vapour | 273 K, 60 bar | viscosity, mPa s | 0.0125"})
    EXPECT_NE(report.find(row), std::string::npos) << row;
  EXPECT_EQ(report.find(" nan"), std::string::npos);
}

}  // namespace
}  // namespace talix::bank
