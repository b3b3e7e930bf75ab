#include "bank/dump.h"

#include <gtest/gtest.h>

#include <sstream>

#include "bank/build.h"
#include "support/bank_source.h"

namespace talix::bank {
namespace {

using testing::Folder;

Bank small_bank() {
  const Folder folder;
  testing::write_small_sources(folder);
  return compile_bank(folder.path()).bank;
}

TEST(BankDump, ComponentIsFoundByNumberCodeNameAndCas) {
  const Bank bank = small_bank();
  for (const char* const wanted : {"22", " 3P ", "3p", "propane", "PROPANE", "74-98-6", " propane "}) {
    EXPECT_EQ(find_component(bank, wanted), 22) << wanted;
  }
  EXPECT_EQ(find_component(bank, "h2o"), 9);
  for (const char* const wanted : {"", "1", "21", "23", "0", "99999", "prop"}) {
    EXPECT_EQ(find_component(bank, wanted), std::nullopt) << wanted;
  }
}

TEST(BankDump, RecordIsPrintedWithUnitsAndAbsentSets) {
  const Bank bank = small_bank();
  std::ostringstream out;
  print_record(out, bank.pure.at(21));
  const std::string text = out.str();
  for (const char* const part :
       {"51      TC           369.89001 [K]", "CIUPAC       \"propane", "PWAG         absent",
        "DIPOLE       absent", "ELEM         3 8 0", "UNIFAC       1 2 2 1 0"}) {
    EXPECT_NE(text.find(part), std::string::npos) << part << "\n" << text;
  }
}

TEST(BankDump, FilesAreFoundInTheFolderOrBelowIt) {
  const Folder folder;
  EXPECT_EQ(bank_folder(folder.path()), folder.path() / "Zandor");
  folder.write("purezan.out", "x");
  EXPECT_EQ(bank_folder(folder.path()), folder.path());
}

TEST(BankDump, UnknownComponentNamesSimilarOnes) {
  const Folder folder;
  write_bank(folder.path(), small_bank());
  DumpOptions options;
  options.share = folder.path();
  options.component = "prop";
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(dump_main(options), 1);
  EXPECT_NE(::testing::internal::GetCapturedStderr().find("did you mean: propane"), std::string::npos);
  options.component = "propane";
  options.pairs = true;
  ::testing::internal::CaptureStdout();
  EXPECT_EQ(dump_main(options), 0);
  EXPECT_NE(::testing::internal::GetCapturedStdout().find("H2O - 3P   status 1  TETA0 0.25"),
            std::string::npos);
  options.share = folder.path() / "absent";
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(dump_main(options), 1);
  EXPECT_NE(::testing::internal::GetCapturedStderr().find("cannot be opened"), std::string::npos);
}

}  // namespace
}  // namespace talix::bank
