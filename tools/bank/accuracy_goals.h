// The part of the accuracy report that holds the figures against what was aimed at.
#pragma once

#include <ostream>
#include <vector>

#include "bank/accuracy_lines.h"

namespace talix::bank {

// What the bank as a whole reaches, beside the goals.
struct GoalFigures {
  double psat_all = 0.0, rhol_all = 0.0;  // means over the components with reference or ranked relations [%]
  double psat_reference = 0.0, rhol_reference = 0.0, hvap_reference = 0.0;  // over the reference fluids [%]
  double hvap_form = 0.0;  // what the form leaves of it with vapour pressure and liquid density exact [%]
  int all = 0, all_density = 0, reference = 0;  // how many
};

GoalFigures goal_figures(const std::vector<Line>& lines);

// Writes the sections of the goals and of the cost of the zones next to the critical temperature.
void write_goals(std::ostream& out, const std::vector<Line>& lines);

}  // namespace talix::bank
