// Whether a split is itself stable.
#pragma once

#include "flash/robust_split.h"

namespace talix {

// True when a further phase beside those of the split cannot be ruled out without a stability test.
bool third_phase_plausible(const RobustMixture& mixture, const RobustSplit& split);

// The stability of a split, whose phases share one tangent plane: stable at once where a third phase is not
// plausible, otherwise by a test of the denser or of the only soft phase, from every start where a phase is soft. FULL tests in any case and
// from every start; on exit it tells whether every start was followed.
Stability stability_of_split(const RobustMixture& mixture, const RobustSplit& split, bool& FULL,
                             StabilityResult& result);

}  // namespace talix
