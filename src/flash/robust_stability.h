// Tangent-plane stability of a phase, from several starts.
#pragma once

#include "flash/robust_phase.h"

namespace talix {

// Stationary points that are kept of one test.
inline constexpr int kMaxTrials = 6;

enum class Stability {
  stable,    // no trial lies below the tangent plane
  unstable,  // at least one does
  unsettled  // the engine failed or the budget ran out before the answer
};

enum class StabilityEffort {
  first,  // ends with the first trial below the tangent plane
  full    // follows every start and keeps all stationary points
};

// A stationary point of the tangent-plane distance that is not the tested phase itself.
struct StabilityTrial {
  CompVec w;    // its mole fractions, sum 1 [-]
  CompVec lnK;  // ln of w over the tested composition [-]
  R8 distance;  // reduced tangent-plane distance 1 - sum of W at the point: below 0 the tested phase is unstable [-]
  I4 root;    // phase::liquid or phase::vapour as the engine identifies it
  L4 single;  // one root only, as in RobustPhase
  R8 Z;       // compressibility factor [-]
};

struct StabilityResult {
  Stability answer;
  I4 count;                                // trials kept, the lowest distance first
  Vec<StabilityTrial, kMaxTrials> trials;  // different from each other
};

// Is TESTED, evaluated at T [K], P [bar] with ln phi, stable against every other phase? Under `first` a stable answer
// keeps no trials, and the one trial of an unstable answer is the point found below the plane, not yet stationary.
// A phase that coexists with TESTED has a distance of 0 within the accuracy of their equilibrium: use the second
// routine there.
void test_stability(const RobustMixture& mixture, R8 T, R8 P, const RobustPhase& tested,
                    StabilityEffort effort, StabilityResult& result);
// The same where PARTNER is in equilibrium with TESTED (within 1e-6 in ln f): is there a third phase?
void test_stability_beside(const RobustMixture& mixture, R8 T, R8 P, const RobustPhase& tested,
                           const RobustPhase& partner, StabilityEffort effort, StabilityResult& result);

}  // namespace talix
