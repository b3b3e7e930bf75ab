// Re-makes the table of interaction parameters for the curves of the bank as they stand.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "bank/fit_pairs_measured.h"
#include "bank/pairs_points.h"

namespace talix::bank {

struct PairFitOptions {
  std::string data_dir;  // directory of the text sources
  int jobs = 0;          // threads; 0: one for each core
  bool silent = false;   // no progress and no summary
};

// A published parameter and the cubic it belongs to.
struct PublishedPair {
  PairCubic cubic = PairCubic::soave;
  double kij = 0.0;
  double kijt = 0.0;  // [1/K]
  std::string basis;
};

// A pair without data of its own.
struct PairChoice {
  std::string kind;               // like, value or none
  std::vector<PairNumbers> like;  // pairs whose mean it takes
  double value = 0.0;
  std::string words;
};

// All that the fit reads besides the components.
struct PairSources {
  std::map<PairNumbers, std::vector<PairPoint>> points;
  std::map<PairNumbers, HenryConstant> henry;
  std::map<PairNumbers, PublishedPair> published;
  std::map<PairNumbers, PairChoice> choices;
};

// Reads pair_points.csv, pair_henry.csv, pair_published.csv and pair_choices.csv. Throws BankError.
PairSources read_pair_sources(const std::string& data_dir, const std::map<int, std::string>& codes);

// One row of pairs.csv.
struct PairRow {
  PairParameters k;
  char status = '1';   // 1 data, 3 no interaction
  std::string digits;  // source digits
  std::string basis;
  bool ok = false;
};

// The row of a pair with points, a Henry constant or a published parameter; not ok where the estimate rules serve it.
PairRow fit_pair(const PairSources& sources, const PairNumbers& numbers, const PairComponent& first,
                 const PairComponent& second);

// Writes pairs.csv in the data directory. Each pair is fitted on its own, so that the table does not depend on the
// number of threads. Returns 0, or 1 with a message on stderr.
int fit_pairs_main(const PairFitOptions& options);

}  // namespace talix::bank
