// The isothermal flash of the check: stability, split and third-phase search in 64-bit reals.
#pragma once

#include "flash/robust_stability.h"

namespace talix {

enum class Split {
  one_phase,  // the feed is stable: it stands in `vapour`, with the fraction by its identity. Of converge_split: the
              // start values lead to no split of this feed
  two_phases,  // an equilibrium of lower Gibbs energy than the feed
  trivial,     // the two phases became alike (converge_split)
  unsettled    // the engine failed or the budget ran out
};

struct RobustSplit {
  Split answer;
  R8 T, P;      // [K], [bar]
  R8 fraction;  // of the feed in `vapour`: the vapour fraction, or the share of the lighter liquid [mol/mol]
  R8 gibbs;     // G of the split less G of the feed as one phase, over RT, per mole of feed [-]
  R8 unequal;   // largest difference in ln f of a component between the phases [-]
  RobustPhase vapour;  // the lighter phase
  RobustPhase liquid;  // the denser phase
  L4 two_liquids;      // the engine identifies both phases as liquid
  L4 third_phase;      // a further phase would lower the Gibbs energy
  I4 third_root;       // its identity, phase::liquid or phase::vapour
};

// Converges a split from start values of ln K: a few substitutions, then Newton steps on the Gibbs energy
// within a trust radius. Uses no stability test. Both phases on their roots of lowest Gibbs energy.
void converge_split(const RobustMixture& mixture, R8 T, R8 P, const CompVec& lnK, RobustSplit& split);

// The same with the feed at hand, evaluated as one phase of lowest Gibbs energy.
void converge_from(const RobustMixture& mixture, R8 T, R8 P, const CompVec& lnK, const RobustPhase& feed,
                   RobustSplit& split);

// Improves a split that is nearly converged, mostly at the cost of one evaluation of each phase; accurate enough for a
// stability test.
void polish_split(const RobustMixture& mixture, R8 T, R8 P, const CompVec& lnK, const RobustPhase& feed,
                  RobustSplit& split);

// The whole flash: stability of the feed, split from its trials, stability of the split. START_LNK may be
// null; when it is not, it is tried before the stability test.
void robust_isothermal(const RobustMixture& mixture, R8 T, R8 P, const CompVec* START_LNK,
                       RobustSplit& split);

// The steps of robust_isothermal: the answer for a stable feed, the split of a feed that TRIALS show
// unstable, and the third-phase search behind a split that converge_from found.
void take_one_phase(R8 T, R8 P, const RobustPhase& feed, RobustSplit& split);
void split_unstable_feed(const RobustMixture& mixture, R8 T, R8 P, const RobustPhase& feed,
                         StabilityResult& trials, RobustSplit& split);
void settle_split(const RobustMixture& mixture, const RobustPhase& feed, RobustSplit& split);
// A split of two phases that does not lie above the feed.
bool is_equilibrium(const RobustSplit& split);

// Which of two coexisting phases stands in the vapour column: exchanges them when need be, sets two_liquids.
void label_phases(const RobustMixture& mixture, RobustSplit& split);

}  // namespace talix
