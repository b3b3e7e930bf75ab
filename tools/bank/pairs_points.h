// Phase equilibria of pairs: the table pair_points.csv and which of its points no fit may see.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "bank/tables.h"

namespace talix::bank {

using PairNumbers = std::pair<int, int>;  // numbers of both components, ascending

struct PairPoint {
  bool measured = true;     // false: computed with a reference equation
  bool doubtful = false;    // of a set that disagrees with others, or far off a plain cubic
  bool kept_out = false;    // never seen by a fit
  double T = 0.0;           // [K]
  double P = 0.0;           // [Pa]
  std::optional<double> x;  // liquid and vapour mole fraction of the component with the smaller number
  std::optional<double> y;
  std::string citation;
};

// Numbers of a row with the columns number1, number2, code1, code2. Throws BankError where they are not a pair of
// components in ascending order with these codes.
PairNumbers pair_numbers(const SourceTable& table, std::size_t row, const std::map<int, std::string>& codes);

// Points of each pair, sorted by temperature, pressure and composition, measured ones first. The third of every four
// measured and of every four computed ones is kept out.
std::map<PairNumbers, std::vector<PairPoint>> read_pair_points(const SourceTable& table,
                                                               const std::map<int, std::string>& codes);

}  // namespace talix::bank
