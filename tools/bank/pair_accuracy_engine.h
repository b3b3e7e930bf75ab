// Phases of a pair through the library's own engine, on a compiled bank.
#pragma once

#include <string>
#include <vector>

#include "bank/accuracy_engine.h"
#include "bank/pairs_bubble.h"

namespace talix::bank {

// Loads both components with their interaction parameters. One at a time: the engine holds one set of components.
class PairEngine : public PairPhases {
 public:
  PairEngine(const std::string& folder, const std::string& first_code, const std::string& second_code)
      : set_(folder, {first_code, second_code}) {}
  [[nodiscard]] PairPhase phase(double T, double P, double x, PairRoot root) const override;

 private:
  EngineSet set_;
};

}  // namespace talix::bank
