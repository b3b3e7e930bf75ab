// Re-makes the fitted tables of the bank from the reference tables.
#pragma once

#include <string>
#include <vector>

namespace talix::bank {

struct FitOptions {
  std::string data_dir;           // directory of the text sources
  std::vector<std::string> only;  // codes, names, CAS or catalogue numbers to fit; empty: all
  int jobs = 0;                   // threads; 0: one for each core
  bool curves = true;             // the curves of the cubic, the ideal gas and the Wagner sets
  bool transport = true;          // the saturation and transport sets, with the curves as they then stand
};

// Fits every component and writes curves.csv, ideal_gas.csv, vapour_pressure.csv and transport.csv in the data
// directory.
// With `only`, the rows of the other components stay as they are. Returns 0, or 1 with a message on stderr.
int fit_main(const FitOptions& options);

}  // namespace talix::bank
