// Components that miss a line of the check, with the reason as far as the figures tell it.
#pragma once

#include <filesystem>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "bank/accuracy_lines.h"
#include "bank/check_exceptions.h"

namespace talix::bank {

struct Finding {
  const FitComponent* component = nullptr;
  std::string what;    // the line that is missed, with its figures
  std::string reason;  // empty: none known, which makes it a fault
};

// Why the curves of a component are less than a full fit, by its number, as curves.csv has it.
std::map<int, std::string> fit_notes(const std::filesystem::path& data_dir);

// Boiling point within 0.5 K of the record, heat of vaporisation there within 5 % of its source, vapour pressure rising
// and liquid density falling with temperature, a and b sound from 0.3 to 4 Tc. What is missed, in the order of the
// lines.
std::vector<Finding> find_exceptions(const std::vector<Line>& lines, const std::map<int, std::string>& notes);

void write_exceptions(std::ostream& out, const std::vector<Finding>& findings, const std::vector<Line>& lines,
                      const std::map<int, std::string>& notes);

// Faults of single records that data/exceptions.csv excuses.
void write_listed(std::ostream& out, const std::vector<std::string>& faults, ListedExceptions& listed,
                  const std::vector<Line>& lines);

}  // namespace talix::bank
