#include "fastprops/error_matrix.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "fastprops/flash_record.h"
#include "support/flash_case.h"
#include "support/test_support.h"

namespace talix {
namespace {

class ErrorReport : public testing::Test {
 protected:
  void SetUp() override { test::fresh_library(scratch.path().string()); }
  [[nodiscard]] std::filesystem::path file() const { return scratch.path() / "talix.err"; }
  [[nodiscard]] std::string content() const {
    std::ifstream in(file());
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
  }
  test::ScratchDirectory scratch;
  const std::string rule = std::string(80, '-') + "\n";
};

TEST_F(ErrorReport, NoEventNoFile) {
  ERRREPORT();
  EXPECT_FALSE(std::filesystem::exists(file()));
}

TEST_F(ErrorReport, NoEventLeavesAFileUntouched) {
  { std::ofstream(file()) << "older\n"; }
  ERRREPORT();
  EXPECT_EQ(content(), "older\n");
}

TEST_F(ErrorReport, LinesStandInTheOrderOfTheMatrix) {
  mark_error(error_row::TALIX, 6);
  mark_error(error_row::FLTP, 1);
  ERRREPORT();
  EXPECT_EQ(content(), rule + "Time Routine   Error\n   2 FLTP          1\n   1 TALIX         6\n" + rule);
}

TEST_F(ErrorReport, ReportIsAppended) {
  { std::ofstream(file()) << "older\n"; }
  mark_error(error_row::ZERO, 10);
  ERRREPORT();
  EXPECT_EQ(content(), "older\n" + rule + "Time Routine   Error\n   1 ZERO         10\n" + rule);
}

TEST_F(ErrorReport, UnwritableDirectoryEndsInSilence) {
  test::install_from((scratch.path() / "none" / "such").string());
  mark_error(error_row::ZERO, 10);
  ERRREPORT();
  EXPECT_FALSE(std::filesystem::exists(scratch.path() / "none"));
}

TEST_F(ErrorReport, LaterEventOverwritesTheCell) {
  mark_error(error_row::TALIX, 3);
  mark_error(error_row::TALIX, 4);
  mark_error(error_row::TALIX, 3);
  EXPECT_EQ(errmat.ERRMAT(error_row::TALIX, 3), 3);
  EXPECT_EQ(errmat.ERRMAT(error_row::TALIX, 4), 2);
  EXPECT_EQ(errmat.NERRS, 3);
}

TEST_F(ErrorReport, InitialisationClearsAndNames) {
  mark_error(error_row::TALIX, 3);
  errmat.ROUTINE(1).blank();
  ERRINIT();
  EXPECT_EQ(errmat.NERRS, 0);
  EXPECT_EQ(errmat.ERRMAT(error_row::TALIX, 3), 0);
  const char* names[] = {"DCBRT",  "ENTHAL",  "FKW",     "FLPQ",  "FLVP",   "FLTP",   "FLVT",   "KGMOL",
                         "KLIQ",   "KVAL",    "MOL",     "MOLFR", "MULO",   "REDLAB", "RHO",    "RKS",
                         "RKSCRT", "RKSCRT2", "RKSF",    "RKSF1", "VRDO11", "VRDO12", "VRDOE1", "VRDOE2",
                         "VRDOE3", "SURTEN",  "SURTEN1", "TELOP", "TRY",    "VISLIQ", "TALIX",  "VLINIT",
                         "WFR",    "WRLIN",   "ENTHAL1", "KLO",   "FLPQ2",  "ZERO"};
  for (int i = 1; i <= kErrorRoutines; ++i) EXPECT_EQ(trimmed(errmat.ROUTINE(i)), names[i - 1]);
}

TEST_F(ErrorReport, NothingInTheLibraryWritesTheFile) {
  test::FlashCase gas = test::natural_gas();
  gas.P = -1.0F;
  gas.run();
  EXPECT_EQ(errmat.NERRS, 1);
  EXPECT_FALSE(std::filesystem::exists(file()));
}

}  // namespace
}  // namespace talix
