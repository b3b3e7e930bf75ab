// How close the library comes to the phase equilibria of pairs, and the section of the report on it.
#pragma once

#include <filesystem>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "bank/pairs_points.h"
#include "bank/record.h"

namespace talix::bank {

// Mean of absolute deviations.
struct PairMean {
  int n = 0;
  double sum = 0.0;
  double worst = 0.0;
  void add(double deviation);
  void add(const PairMean& other);
  [[nodiscard]] double mean() const { return n > 0 ? sum / n : 0.0; }
};

// Points of one pair that share a fate.
struct PairShare {
  PairMean pressure;  // of the bubble pressure [%]
  PairMean vapour;    // of the vapour mole fraction [-]
  int missing = 0;    // states that the equation does not have
};

// Group of systems that the report keeps apart.
enum class PairGroup {
  hydrocarbon,
  carbon_dioxide,
  nitrogen,
  hydrogen_sulphide,
  hydrogen,
  other_gas,
  water,
  polar
};

struct PairLine {
  PairNumbers numbers;
  std::string name;
  PairGroup group = PairGroup::polar;
  bool measured = true;
  PairShare fitted, kept_out, doubtful;
};

// One line of each pair and kind of points, computed by the library's engine on the bank.
std::vector<PairLine> pair_accuracy(const Bank& bank,
                                    const std::map<PairNumbers, std::vector<PairPoint>>& points);

// Mean over the points of all lines of a group, of one kind.
PairShare group_share(const std::vector<PairLine>& lines, PairGroup group, bool measured,
                      PairShare PairLine::*share);

// The section of the report; reads pair_points.csv of the data directory.
void write_pair_report(std::ostream& out, const Bank& bank, const std::filesystem::path& data_dir);

}  // namespace talix::bank
