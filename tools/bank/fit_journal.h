// Components that an interrupted fit has finished, so that the next run goes on behind them.
#pragma once

#include <cstdint>
#include <fstream>
#include <map>
#include <string>

#include "bank/fit_rows.h"

namespace talix::bank {

// A file beside the tables. Each finished component is written at once and closed by a line of its own; what is cut off
// behind the last such line is left out on reading. A component counts as finished only where its key is the same: the
// key stands for all that the fit of the component depends on.
class FitJournal {
 public:
  // Opens the journal of a data directory, and reads what an interrupted run has left; FRESH forgets it.
  FitJournal(const std::string& data_dir, bool fresh);
  // Rows of a component that has been finished with this key; null where there are none.
  [[nodiscard]] const ComponentRows* find(int number, std::uint64_t key) const;
  // Notes a finished component. Callers take turns.
  void add(int number, std::uint64_t key, const ComponentRows& rows);
  // Takes the components of a finished run out again, and the file where none is left.
  void finish(const std::vector<int>& numbers);

  static std::string path_in(const std::string& data_dir);

 private:
  struct Entry {
    std::uint64_t key = 0;
    ComponentRows rows;
  };
  std::string path_;
  std::map<int, Entry> entries_;
  std::ofstream out_;

  void write_all();
};

// Key of a component: its reference data, what is fitted, and the program that fits.
std::uint64_t fit_key(const ReferenceTables& tables, const FitComponent& c, const FitParts& parts,
                      const Curves* given);

}  // namespace talix::bank
