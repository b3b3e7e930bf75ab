// A fit that is interrupted goes on where it stopped, and what it makes does not depend on that or on the threads.
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

#include "bank/fit.h"
#include "bank/fit_journal.h"
#include "bank/fit_progress.h"
#include "support/bank_source.h"

namespace talix::bank {
namespace {

const std::string kData = std::string(TALIX_TEST_SOURCE) + "/data";
constexpr const char* kMade[] = {"curves.csv", "ideal_gas.csv", "vapour_pressure.csv", "transport.csv"};

void copy_references(const testing::Folder& folder) {
  for (const char* file :
       {"components.csv", "reference_points.csv", "supercritical_points.csv", "saturation_correlations.csv",
        "ideal_gas_correlations.csv", "transport_correlations.csv"}) {
    std::filesystem::copy_file(kData + "/" + file, folder.path() / file);
  }
}

FitOptions options_of(const testing::Folder& folder) {
  FitOptions options;
  options.data_dir = folder.path().string();
  options.only = {"krypton", "xenon", "neon", "fluorine", "chlorine", "ozone"};
  options.jobs = 1;
  options.silent = true;
  return options;
}

ComponentRows some_rows() {
  ComponentRows rows;
  rows.curves = "22,\" 3P \",equation of state,1,2";
  rows.ideal_gas = "22,\" 3P \",3";
  rows.vapour_pressure = "22,\" 3P \",4";
  rows.transport = {"22,\" 3P \",PSAT,80", "22,\" 3P \",DLIP,7"};
  rows.note = "full fit: a rises at 400 K";
  rows.log = "propane psat 0.1";
  return rows;
}

TEST(FitJournal, GivesBackWhatWasFinishedWithTheSameKey) {
  const testing::Folder folder;
  const std::string dir = folder.path().string();
  {
    FitJournal journal(dir, false);
    journal.add(22, 0x1234abcdULL, some_rows());
    EXPECT_EQ(journal.find(22, 0x1234abcdULL), nullptr);  // what this run has made it does not ask for
  }
  FitJournal again(dir, false);
  const ComponentRows* const rows = again.find(22, 0x1234abcdULL);
  ASSERT_NE(rows, nullptr);
  EXPECT_EQ(rows->curves, some_rows().curves);
  EXPECT_EQ(rows->ideal_gas, some_rows().ideal_gas);
  EXPECT_EQ(rows->vapour_pressure, some_rows().vapour_pressure);
  EXPECT_EQ(rows->transport, some_rows().transport);
  EXPECT_EQ(rows->note, some_rows().note);
  EXPECT_EQ(again.find(22, 0x1234abceULL), nullptr);
  EXPECT_EQ(again.find(23, 0x1234abcdULL), nullptr);
}

TEST(FitJournal, WhatWasCutOffDoesNotCount) {
  const testing::Folder folder;
  const std::string dir = folder.path().string();
  {
    FitJournal journal(dir, false);
    journal.add(20, 1, some_rows());
    journal.add(22, 2, some_rows());
  }
  const std::string whole = folder.read("fit.journal");
  // Within the last line, and within a row.
  for (const std::size_t cut : {whole.size() - 1, whole.size() - 40}) {
    folder.write("fit.journal", whole.substr(0, cut));
    const FitJournal journal(dir, false);
    EXPECT_NE(journal.find(20, 1), nullptr) << cut;
    EXPECT_EQ(journal.find(22, 2), nullptr) << cut;
  }
}

TEST(FitJournal, FreshForgetsAndFinishKeepsTheOthers) {
  const testing::Folder folder;
  const std::string dir = folder.path().string();
  {
    FitJournal journal(dir, false);
    journal.add(20, 1, some_rows());
    journal.add(22, 2, some_rows());
  }
  {
    FitJournal journal(dir, false);
    journal.finish({20});
  }
  {
    FitJournal journal(dir, false);
    EXPECT_EQ(journal.find(20, 1), nullptr);
    EXPECT_NE(journal.find(22, 2), nullptr);
    journal.finish({22});
  }
  EXPECT_FALSE(std::filesystem::exists(FitJournal::path_in(dir)));
  {
    FitJournal journal(dir, false);
    journal.add(20, 1, some_rows());
  }
  EXPECT_EQ(FitJournal(dir, true).find(20, 1), nullptr);
}

TEST(FitJournal, KeyFollowsTheDataOfTheComponentAlone) {
  ReferenceTables tables;
  FitComponent c;
  c.code = " 3P ";
  c.cas = "74-98-6";
  c.tc = 369.89;
  tables.points["74-98-6"].push_back({300.0, 1e6, 11000.0, 500.0, 15000.0});
  const std::uint64_t key = fit_key(tables, c, {}, nullptr);
  EXPECT_EQ(fit_key(tables, c, {}, nullptr), key);
  EXPECT_NE(fit_key(tables, c, {.curves = true, .transport = false}, nullptr), key);
  tables.points["74-84-0"].push_back({250.0, 1e6, 11000.0, 500.0, 15000.0});
  EXPECT_EQ(fit_key(tables, c, {}, nullptr), key);
  tables.points["74-98-6"].front().psat = 1.0001e6;
  EXPECT_NE(fit_key(tables, c, {}, nullptr), key);
  tables.points["74-98-6"].front().psat = 1e6;
  tables.relations["74-98-6"]["psat"].push_back({.equation = "DIPPR101", .source = "x"});
  EXPECT_NE(fit_key(tables, c, {}, nullptr), key);
}

TEST(FitProgress, BarTellsShareAndTimeLeft) {
  EXPECT_EQ(FitProgress::bar(0, 10, 0, 0.0), "[..............................] 0 of 10");
  EXPECT_EQ(FitProgress::bar(5, 10, 5, 20.0), "[###############...............] 5 of 10, 20 s to go");
  // Of five, two are taken over: three took 30 s, five more take 50 s.
  EXPECT_EQ(FitProgress::bar(5, 10, 3, 30.0), "[###############...............] 5 of 10, 50 s to go");
  EXPECT_EQ(FitProgress::bar(1, 901, 1, 1.0), "[..............................] 1 of 901, 15 min to go");
  EXPECT_EQ(FitProgress::bar(10, 10, 10, 40.0), "[##############################] 10 of 10, 40 s");
}

TEST(FitMain, InterruptedRunGoesOnAndGivesTheSameTables) {
  const testing::Folder whole, broken;
  copy_references(whole);
  copy_references(broken);
  ASSERT_EQ(fit_main(options_of(whole)), 0);
  EXPECT_FALSE(std::filesystem::exists(whole.path() / "fit.journal"));

  // As soon as one component is finished the run is interrupted.
  std::thread interrupter([&] {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(2);
    while (broken.read("fit.journal").find(" end ") == std::string::npos) {
      if (std::chrono::steady_clock::now() > deadline) return;
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    std::raise(SIGINT);
  });
  ::testing::internal::CaptureStderr();
  const int first = fit_main(options_of(broken));
  interrupter.join();
  EXPECT_NE(::testing::internal::GetCapturedStderr().find("interrupted"), std::string::npos);
  ASSERT_EQ(first, kFitInterrupted);
  for (const char* file : kMade) EXPECT_FALSE(std::filesystem::exists(broken.path() / file)) << file;
  const std::string journal = broken.read("fit.journal");
  EXPECT_NE(journal.find(" end "), std::string::npos);

  FitOptions options = options_of(broken);
  options.jobs = 2;
  options.silent = false;
  ::testing::internal::CaptureStderr();
  ASSERT_EQ(fit_main(options), 0);
  EXPECT_NE(::testing::internal::GetCapturedStderr().find("taken over"), std::string::npos);
  for (const char* file : kMade) EXPECT_EQ(broken.read(file), whole.read(file)) << file;
  EXPECT_FALSE(std::filesystem::exists(broken.path() / "fit.journal"));
}

TEST(FitMain, TableWithOtherColumnsIsNotMixedWithNewRows) {
  const testing::Folder folder;
  copy_references(folder);
  folder.write("curves.csv", "number,code,p1\n2,\"D2  \",1\n");
  FitOptions options = options_of(folder);
  options.only = {"krypton"};
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(fit_main(options), 1);
  EXPECT_NE(::testing::internal::GetCapturedStderr().find("other columns"), std::string::npos);
  EXPECT_EQ(folder.read("curves.csv"), "number,code,p1\n2,\"D2  \",1\n");
}

}  // namespace
}  // namespace talix::bank
