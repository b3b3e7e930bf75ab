#include "bank/pairs_points.h"

#include <algorithm>
#include <tuple>

namespace talix::bank {

namespace {

PairPoint read_point(const SourceTable& table, std::size_t row) {
  PairPoint p;
  const std::string& kind = table.text(row, "kind");
  if (kind != "measured" && kind != "computed") table.fail(row, "kind", "write measured or computed");
  p.measured = kind == "measured";
  p.doubtful = !table.text(row, "doubt").empty();
  p.T = table.required(row, "T_K", {"K", 10, 2000});
  p.P = table.required(row, "P_Pa", {"Pa", 1, 1e9});
  p.x = table.number(row, "x1", {"-", 0, 1});
  p.y = table.number(row, "y1", {"-", 0, 1});
  if (!p.x && !p.y) table.fail(row, "x1", "neither a liquid nor a vapour composition");
  p.citation = table.text(row, "citation");
  if (p.citation.empty()) table.fail(row, "citation", "empty; say where the point comes from");
  return p;
}

// The third of every four: neither the first nor the last of a short set.
void keep_out(std::vector<PairPoint>& points) {
  constexpr std::size_t kQuarter = 4;
  constexpr std::size_t kThird = 2;
  std::size_t measured = 0, computed = 0;
  for (PairPoint& p : points) p.kept_out = (p.measured ? measured++ : computed++) % kQuarter == kThird;
}

}  // namespace

PairNumbers pair_numbers(const SourceTable& table, std::size_t row, const std::map<int, std::string>& codes) {
  PairNumbers numbers;
  for (const bool second : {false, true}) {
    const std::string side = second ? "2" : "1";
    const int number = table.integer(row, "number" + side, 2, 9999);
    const auto found = codes.find(number);
    if (found == codes.end())
      table.fail(row, "number" + side, "no component of this number in components.csv");
    if (table.text(row, "code" + side) != found->second) {
      table.fail(row, "code" + side,
                 "the code of component " + std::to_string(number) + " is \"" + found->second + "\"");
    }
    (second ? numbers.second : numbers.first) = number;
  }
  if (numbers.first >= numbers.second)
    table.fail(row, "number2", "the second number must be above the first");
  return numbers;
}

std::map<PairNumbers, std::vector<PairPoint>> read_pair_points(const SourceTable& table,
                                                               const std::map<int, std::string>& codes) {
  std::map<PairNumbers, std::vector<PairPoint>> points;
  for (std::size_t row = 0; row < table.rows(); ++row)
    points[pair_numbers(table, row, codes)].push_back(read_point(table, row));
  for (auto& [numbers, list] : points) {
    const auto key = [](const PairPoint& p) {
      return std::make_tuple(!p.measured, p.T, p.P, p.x.value_or(-1.0), p.y.value_or(-1.0), p.citation);
    };
    std::stable_sort(list.begin(), list.end(),
                     [&](const PairPoint& a, const PairPoint& b) { return key(a) < key(b); });
    keep_out(list);
  }
  return points;
}

}  // namespace talix::bank
