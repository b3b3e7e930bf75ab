// Seeded mixtures of the bank that split into one vapour and one liquid, and states inside their two-phase region.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "base/real.h"
#include "support/flash_case.h"

namespace talix::test {

class MixtureSource {
 public:
  explicit MixtureSource(std::uint32_t seed) : engine_(seed) {}

  // 2 to 15 components; kinds go round from narrow-boiling to methane with decane.
  FlashCase next();
  // Kind of the last mixture.
  [[nodiscard]] const std::string& kind() const { return kind_; }
  [[nodiscard]] R8 uniform() { return static_cast<R8>(engine_()) / 4294967296.0; }
  R8 uniform(R8 low, R8 high) { return low + (high - low) * uniform(); }

 private:
  std::mt19937 engine_;
  int count_ = 0;
  std::string kind_;
};

// A temperature [K] between bubble and dew point by Wilson's K-values, SHARE of the way; the list has to be loaded.
R8 temperature_between(const FlashCase& c, R8 P, R8 share);
// Loads the list of a case by one isothermal flash at ambient conditions.
void load(FlashCase c);

}  // namespace talix::test
