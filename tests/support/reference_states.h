// Seeded mixtures and states for the comparison of the library with the reference flash.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "support/reference_saturation.h"

namespace talix::test::reference {

struct Case {
  std::vector<int> numbers;
  std::vector<R4> feed;
  R8 T = 300.0;  // [K]
  R8 P = 1.0;    // [bar]
  std::string kind;
};

// One state of a seeded sequence; depends on the seed and its place alone, so that each can be looked at by itself.
class StateSource {
 public:
  StateSource(std::uint32_t seed, int index);

  // A mixture of 2 to 15 components at a state drawn from 150 to 600 K and 0.1 to 600 bar. The list is not loaded.
  Case draw();
  // Moves every second case to the neighbourhood of a boundary along its pressure or temperature, at relative
  // distances of 0.1 to 0.0001, or to that of a critical point. The list has to be loaded.
  void move_to_boundary(Case& c);
  [[nodiscard]] R8 uniform() { return static_cast<R8>(engine_()) / 4294967296.0; }
  R8 uniform(R8 low, R8 high) { return low + (high - low) * uniform(); }

 private:
  std::mt19937 engine_;
  int index_;
};

// What the library works with: 32-bit temperature in K from the host's degrees Celsius, and back.
R4 celsius(R8 T);
R8 kelvin(R4 host);
// Loads the component list of a case.
void load_list(const Case& c);

}  // namespace talix::test::reference
