// Counts of verdicts by temperature and pressure, and their tables.
#pragma once

#include <array>
#include <cstdio>

#include "support/reference_campaign.h"

namespace talix::verify {

inline constexpr std::array<R8, 6> kTemperatures = {0.0, 200.0, 250.0, 300.0, 400.0, 1.0E9};  // [K]
inline constexpr std::array<R8, 6> kPressures = {0.0, 1.0, 10.0, 50.0, 100.0, 1.0E9};         // [bar]
inline constexpr int kRows = static_cast<int>(kTemperatures.size()) - 1;
inline constexpr int kColumns = static_cast<int>(kPressures.size()) - 1;

struct Cell {
  int states = 0;
  int right = 0;       // within a boundary's neighbourhood counts as right
  int wrong = 0;       // without a text
  int warned = 0;      // wrong with a warning
  int unanswered = 0;  // a text although there is an answer
  long calls = 0;      // of the engine
  int most_calls = 0;
};

class Tally {
 public:
  // States are sorted by the asked temperature and pressure; those without an answer of the reference count by
  // themselves.
  void add(const test::reference::Comparison& c);
  void print(std::FILE* out, const char* title) const;

 private:
  Cell all_;
  Cell none_;          // the reference has no answer: a text is right
  Cell by_phases_[3];  // engine calls by the reference's number of phases
  Cell bin_[kRows][kColumns];
  int farther_ = 0;  // right answers of several that are not the one nearest to the start value
  std::array<int, test::reference::kVerdicts> verdicts_{};
};

}  // namespace talix::verify
