#include "bank/accuracy.h"

#include <gtest/gtest.h>

#include "bank/build.h"
#include "bank/tables.h"
#include "support/bank_source.h"

namespace talix::bank {
namespace {

using testing::Folder;

const std::filesystem::path kData = std::filesystem::path(TALIX_TEST_SOURCE) / "data";

TEST(AccuracyReport, NamesEveryComponentOfTheBank) {
  const Folder folder;
  const BuildResult result = compile_bank(kData);
  write_accuracy_report(result.bank, kData, folder.path() / "accuracy.md");
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
  EXPECT_THROW(write_accuracy_report(bank, folder.path(), folder.path() / "accuracy.md"), BankError);
  EXPECT_THROW(write_accuracy_report(bank, kData, folder.path() / "absent" / "accuracy.md"), BankError);
}

}  // namespace
}  // namespace talix::bank
