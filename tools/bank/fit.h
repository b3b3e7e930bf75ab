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
  bool fresh = false;             // nothing is taken over from an interrupted run
  bool verbose = false;           // a line of figures for each component in place of the bar
  bool silent = false;            // no progress at all
};

inline constexpr int kFitInterrupted = 130;  // exit code after an interrupt, as shells have it

// Fits every component and writes curves.csv, ideal_gas.csv, vapour_pressure.csv and transport.csv in the data
// directory. Each component is fitted on its own, so that the tables do not depend on the number of threads. With
// `only`, the rows of the other components stay as they are. An interrupt lets the components at work finish, leaves
// the tables as they were and notes what is done in fit.journal; the next run goes on from there. Returns 0, 1 with a
// message on stderr, or kFitInterrupted.
int fit_main(const FitOptions& options);

}  // namespace talix::bank
