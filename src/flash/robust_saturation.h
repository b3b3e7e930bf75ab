// Bubble and dew points and states at a given vapour fraction, in 64-bit reals.
#pragma once

#include "flash/robust_split.h"

namespace talix {

// Temperatures that are searched [K].
inline constexpr R8 kLowestSaturation = 50.0;
inline constexpr R8 kHighestSaturation = 1200.0;

enum class SaturationGiven { temperature, pressure };

enum class Saturation {
  found,
  above_cricondenbar,    // the given pressure is above the highest pressure of the line
  above_cricondentherm,  // the given temperature is above the highest temperature of the line
  above_critical,        // beyond the end of this line, where only the line of the other kind goes on
  above_range,           // the line is above the highest pressure of the library there
  no_line,               // no saturation line was found at the given value
  unsettled              // the engine failed or the budget ran out
};

struct SaturationResult {
  Saturation answer;
  R8 limit;           // the limit of the given variable that was passed [bar] or [K], 0 when it is not known
  RobustSplit split;  // state, fraction and phases; the feed's own side is `liquid` at a bubble point
  L4 unstable;        // a further phase would lower the Gibbs energy (split.third_phase tells which)
  I4 rank;            // the lower the better: standing::*
};

// How good a saturated state is.
namespace standing {
inline constexpr I4 stable = 0;
inline constexpr I4 lowest_pair =
    1;  // a third phase would form; of two phases these have the lowest Gibbs energy
inline constexpr I4 metastable = 2;   // a liquid that splits boils, or another pair of phases lies lower
inline constexpr I4 two_liquids = 3;  // stable, but both phases are liquids: where nothing boils or condenses
}  // namespace standing

// The state at the given T [K] or P [bar] and vapour fraction FRACTION (0 bubble point, 1 dew point). Where there
// are several, the one nearest to START, the caller's value of the other variable ([bar], in its logarithm, or [K]).
void robust_saturation(const RobustMixture& mixture, SaturationGiven given, R8 value, R8 FRACTION, R8 START,
                       SaturationResult& result);

// The same for one component: the vapour pressure curve.
void saturation_of_pure(const RobustMixture& mixture, SaturationGiven given, R8 value, R8 FRACTION,
                        SaturationResult& result);

// Solves the point at the given T or P from START_LNK and START_VALUE, the other variable, on the liquid and the
// vapour root, or on the roots of lowest Gibbs energy when these lead nowhere. True with the split filled in and
// labelled when it has FRACTION.
bool solve_saturation(const RobustMixture& mixture, SaturationGiven given, R8 value, R8 FRACTION,
                      const CompVec& START_LNK, R8 START_VALUE, RobustSplit& split);

// The same where two liquids part, for bubble and dew points.
bool solve_liquids(const RobustMixture& mixture, SaturationGiven given, R8 value, R8 FRACTION,
                   const CompVec& START_LNK, R8 START_VALUE, RobustSplit& split);

// True when no other state of the same fraction can be nearer to START: told from one side of the two-phase region
// and a look at the feed on the far side of START. False when that is open.
bool is_nearest_to_start(const RobustMixture& mixture, SaturationGiven given, R8 START,
                         const RobustSplit& split);

// The split as a result with its standing. False for an unstable state that is no answer even for want of a stable
// one: an unstable vapour has its dew point elsewhere, and two phases that are nearly alike or would be of lower
// Gibbs energy on their other root are none.
bool rate_saturation(const RobustMixture& mixture, SaturationGiven given, const RobustSplit& split,
                     SaturationResult& result);

// The better standing, then the one nearer to START.
bool is_better_saturation(SaturationGiven given, R8 START, const SaturationResult& a,
                          const SaturationResult& b);

// The search without a line: the given T or P is scanned for the limits of the two-phase region.
void scan_saturation(const RobustMixture& mixture, SaturationGiven given, R8 value, R8 FRACTION, R8 START,
                     SaturationResult& result);

}  // namespace talix
