#include "bank/pair_accuracy.h"

#include <gtest/gtest.h>

#include <sstream>

#include "bank/build.h"
#include "support/bank_source.h"

namespace talix::bank {
namespace {

const std::filesystem::path kData = std::filesystem::path(TALIX_TEST_SOURCE) / "data";

const std::vector<PairLine>& lines() {
  static const std::vector<PairLine> all = [] {
    const Bank bank = compile_bank(kData).bank;
    std::map<int, std::string> codes;
    for (const DirectoryEntry& entry : bank.directory) codes[std::stoi(entry.standard)] = entry.code;
    return pair_accuracy(bank, read_pair_points(SourceTable::read(kData / "pair_points.csv"), codes));
  }();
  return all;
}

const PairLine& line(const std::string& name) {
  for (const PairLine& l : lines())
    if (l.name == name) return l;
  throw BankError("no line of " + name);
}

constexpr PairGroup kGoalGroups[] = {PairGroup::hydrocarbon, PairGroup::carbon_dioxide, PairGroup::nitrogen,
                                     PairGroup::hydrogen_sulphide, PairGroup::hydrogen};

TEST(PairAccuracy, MeasuredPointsKeptOutAreMet) {
  PairShare sum;
  for (const PairGroup group : kGoalGroups) {
    const PairShare share = group_share(lines(), group, true, &PairLine::kept_out);
    EXPECT_GE(share.pressure.n, 10);
    EXPECT_LE(share.pressure.mean(), 5.0) << static_cast<int>(group);
    sum.pressure.add(share.pressure);
    sum.vapour.add(share.vapour);
    sum.missing += share.missing;
  }
  EXPECT_GT(sum.pressure.n, 280);
  EXPECT_LE(sum.pressure.mean(), 3.5);
  EXPECT_LE(sum.vapour.mean(), 0.02);
  EXPECT_LE(sum.missing, 4);
}

TEST(PairAccuracy, EverySystemHasItsGroup) {
  const std::pair<const char*, PairGroup> expected[] = {
      {"methane with ethane", PairGroup::hydrocarbon},
      {"carbon dioxide with nitrogen", PairGroup::carbon_dioxide},
      {"nitrogen with methane", PairGroup::nitrogen},
      {"carbon dioxide with hydrogen sulphide", PairGroup::hydrogen_sulphide},
      {"hydrogen with methane", PairGroup::hydrogen},
      {"methane with argon", PairGroup::other_gas},
      {"carbon dioxide with water", PairGroup::water},
      {"hydrogen with water", PairGroup::water},
      {"carbon dioxide with methanol", PairGroup::polar},
      {"hydrogen sulphide with ethylene glycol", PairGroup::polar}};
  for (const auto& [name, group] : expected) EXPECT_EQ(line(name).group, group) << name;
}

TEST(PairAccuracy, DoubtfulPointsStandApart) {
  const PairLine& l = line("methane with n-pentane");
  EXPECT_EQ(l.doubtful.pressure.n, 16);
  EXPECT_EQ(l.fitted.pressure.n + l.kept_out.pressure.n, 0);
}

// Without its parameters carbon dioxide with propane is far off: the figures do come from the bank.
TEST(PairAccuracy, FiguresFollowTheParameters) {
  Bank bank = compile_bank(kData).bank;
  std::map<int, std::string> codes;
  for (const DirectoryEntry& entry : bank.directory) codes[std::stoi(entry.standard)] = entry.code;
  auto points = read_pair_points(SourceTable::read(kData / "pair_points.csv"), codes);
  std::erase_if(points, [](const auto& entry) { return entry.first != PairNumbers{4, 22}; });
  for (PairRecord& record : bank.pairs)
    if (record.integer(1) == 40022) set_pair_real(record, 1, 0.0F);
  const std::vector<PairLine> off = pair_accuracy(bank, points);
  ASSERT_EQ(off.size(), 1U);
  EXPECT_GT(off.front().kept_out.pressure.mean(),
            5.0 * line("carbon dioxide with propane").kept_out.pressure.mean());
}

TEST(PairAccuracy, SectionNamesGoalsAndSystems) {
  std::ostringstream out;
  write_pair_report(out, compile_bank(kData).bank, kData);
  const std::string text = out.str();
  for (const char* part : {"## Phase equilibria of pairs\n", "| hydrocarbons with each other | ",
                           "| **the first five together** | ", "| methane with n-decane | measured | ",
                           "| carbon dioxide with ethane | GERG-2008 | "})
    EXPECT_NE(text.find(part), std::string::npos) << part;
  EXPECT_THROW(write_pair_report(out, Bank{}, kData / "absent"), BankError);
}

}  // namespace
}  // namespace talix::bank
