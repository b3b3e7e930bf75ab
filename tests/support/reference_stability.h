// The reference flash of the tests: tangent-plane analysis from many starts.
#pragma once

#include <vector>

#include "support/reference_phase.h"

namespace talix::test::reference {

// A phase composition that a trial ended at, other than the composition analysed.
struct Stationary {
  Phase phase;
  R8 distance = 0.0;  // reduced tangent-plane distance tm; below 0: the composition splits
};

struct Stability {
  bool failed = false;
  Phase feed;                     // the composition analysed, at its stable root
  R8 curvature = 0.0;             // lowest eigenvalue of the scaled Hessian of its Gibbs energy
  std::vector<Stationary> found;  // each once, the lowest first
  [[nodiscard]] R8 lowest() const { return found.empty() ? 0.0 : found.front().distance; }
};

// A distance below this is a split.
inline constexpr R8 kUnstable = -1.0E-12;

enum class Effort {
  scan,       // few trials, for the many states of a scan
  thorough,   // every pure end, both roots, seeded random starts
  exhaustive  // hundreds of random starts, to test the reference itself
};

Stability analyse(const Mixture& m, R8 T, R8 P, const Numbers& x, Effort effort);

}  // namespace talix::test::reference
