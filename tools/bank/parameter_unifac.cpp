#include <array>
#include <map>
#include <utility>

#include "bank/parameter_field.h"
#include "bank/parameter_files.h"
#include "bank/tables.h"

namespace talix::bank {

namespace {

// Limits of the tables of the library.
constexpr int kHighestSubgroup = 161;
constexpr int kHighestMainGroup = 77;

constexpr double kNoParameters = 9999;  // first parameter of a pair that has none
constexpr int kWidth = 10;
constexpr int kPerLine = 8;
constexpr int kNameWidth = 12;
constexpr int kTitleWidth = 25;

// What line 1 of a file says.
struct Title {
  const char* table;
  const char* name;
  const char* text;
};
constexpr Title kTitles[] = {{"original", "UNIFAC", "published list, rev. 6"},
                             {"dortmund", "UNIFAC-DM", "published list, 2021"},
                             {"lyngby", "Lyngby", "Larsen et al. 1987"},
                             {"linear", "linear", "NIST-KT 2011, substitute"}};

using Pair = std::array<double, 3>;

struct Subgroup {
  int main_group = 0;
  std::string name;
  double R = 0, Q = 0, mass = 0;
};

struct Groups {
  std::map<int, Subgroup> subgroups;  // by number
  std::map<std::pair<int, int>, Pair> pairs;
  int highest_main = 0;
};

Groups read_groups(const std::filesystem::path& data_dir, const std::string& name) {
  Groups groups;
  const SourceTable table = SourceTable::read(data_dir / "unifac_subgroups.csv");
  for (std::size_t row = 0; row < table.rows(); ++row) {
    if (table.text(row, "table") != name) continue;
    const int number = table.integer(row, "subgroup", 1, kHighestSubgroup);
    const Subgroup group{table.integer(row, "main_group", 1, kHighestMainGroup), table.text(row, "name8"),
                         table.required(row, "R", {"-", 0, 100}), table.required(row, "Q", {"-", 0, 100}),
                         table.required(row, "molar_mass_g_mol", {"g/mol", 1, 1000})};
    if (!groups.subgroups.emplace(number, group).second)
      table.fail(row, "subgroup", "this subgroup stands in the table already");
    groups.highest_main = std::max(groups.highest_main, group.main_group);
  }
  if (groups.subgroups.empty()) throw BankError("unifac_subgroups.csv: no rows of the table " + name);
  const SourceTable pairs = SourceTable::read(data_dir / "unifac_interactions.csv");
  for (std::size_t row = 0; row < pairs.rows(); ++row) {
    if (pairs.text(row, "table") != name) continue;
    const int first = pairs.integer(row, "main_i", 1, groups.highest_main);
    const int second = pairs.integer(row, "main_j", 1, groups.highest_main);
    const Pair values{pairs.required(row, "a", {"K", -1e5, 1e5}), pairs.required(row, "b", {"-", -1e3, 1e3}),
                      pairs.required(row, "c", {"-", -1e3, 1e3})};
    if (static_cast<int>(values[0]) == static_cast<int>(kNoParameters))
      pairs.fail(row, "a", "a figure of 9999 stands for a pair without parameters");
    if (first == second || !groups.pairs.emplace(std::pair{first, second}, values).second)
      pairs.fail(row, "main_j", "a pair of equal groups, or one that stands in the table already");
  }
  return groups;
}

std::string subgroup_line(int number, const Subgroup& group) {
  return integer_text(number, 4) + "  " + padded_text(group.name, 8) + "  " +
         integer_text(group.main_group, 4) + exact_text(group.R, kWidth, 4) + exact_text(group.Q, kWidth, 3) +
         exact_text(group.mass, kWidth, 2) + "\n";
}

// Set SET of main group I against all others.
std::string set_lines(const Groups& groups, int i, std::size_t set) {
  std::string text;
  for (int j = 1; j <= groups.highest_main; ++j) {
    const auto found = groups.pairs.find({i, j});
    const double missing = set == 0 && i != j ? kNoParameters : 0;
    text += exact_text(found != groups.pairs.end() ? found->second[set] : missing, kWidth, 4);
    if (j % kPerLine == 0 || j == groups.highest_main) text += '\n';
  }
  return text;
}

}  // namespace

std::string unifac_text(const std::filesystem::path& data_dir, const std::string& table,
                        std::size_t& records) {
  const Title* title = nullptr;
  for (const Title& row : kTitles)
    if (table == row.table) title = &row;
  if (title == nullptr) throw BankError("no group table is called " + table);
  const Groups groups = read_groups(data_dir, table);
  records = groups.subgroups.size();

  const int highest = groups.subgroups.rbegin()->first;
  std::string text = integer_text(highest, 5) + integer_text(groups.highest_main, 5) + "     " +
                     padded_text(title->name, kNameWidth) + "     " + padded_text(title->text, kTitleWidth) +
                     "\n";
  // A number that is no group of this table keeps its line, with main group 0.
  for (int number = 1; number <= highest; ++number) {
    const auto found = groups.subgroups.find(number);
    text += subgroup_line(number, found != groups.subgroups.end() ? found->second : Subgroup{});
  }
  for (int i = 1; i <= groups.highest_main; ++i)
    for (std::size_t set = 0; set < 3; ++set) text += set_lines(groups, i, set);
  return text;
}

}  // namespace talix::bank
