#include "flash/robust_split.h"

#include <algorithm>
#include <cmath>

#include "engine/codes.h"
#include "flash/robust_third_phase.h"

namespace talix {

namespace {

// A split has to lie this far below another one to replace it, and may lie above the feed by rounding only.
constexpr R8 kGibbsNoise = 1.0E-12;
// Times that an unstable split is improved on.
constexpr int kImprovements = 6;
// An instability no deeper than this that leads to no split is rounding.
constexpr R8 kDistanceNoise = 1.0E-9;

struct Work {
  RobustPhase feed;
  StabilityResult trials;  // of the feed
  StabilityResult third;   // of a split
  RobustSplit candidate;
  CompVec lnK;
};
constinit Work work{};

// ln of a share over another, which may have run out of digits.
R8 ln_ratio(R8 above, R8 below) {
  constexpr R8 kLeast = 1.0E-300;
  return std::log(std::max(above, kLeast)) - std::log(std::max(below, kLeast));
}

// Tries a split from ln K; true when it replaces the one at hand, having the lower Gibbs energy.
bool improve(const RobustMixture& mixture, const CompVec& lnK, const RobustPhase& feed, RobustSplit& split) {
  converge_from(mixture, split.T, split.P, lnK, feed, work.candidate);
  if (!is_equilibrium(work.candidate) || !(work.candidate.gibbs < split.gibbs - kGibbsNoise)) return false;
  split = work.candidate;
  return true;
}

// The stationary points of an unstable split, beside each of its phases.
bool try_third_trials(const RobustMixture& mixture, const RobustPhase& feed, RobustSplit& split) {
  for (int k = 1; k <= work.third.count; ++k) {
    for (const RobustPhase* beside : {&split.vapour, &split.liquid}) {
      for (int i = 1; i <= mixture.n; ++i) work.lnK(i) = ln_ratio(work.third.trials(k).w(i), beside->x(i));
      if (improve(mixture, work.lnK, feed, split)) return true;
    }
  }
  return false;
}

// All stationary points of the feed; true when one replaces the split.
bool try_feed_trials(const RobustMixture& mixture, const RobustPhase& feed, RobustSplit& split) {
  test_stability(mixture, split.T, split.P, feed, StabilityEffort::full, work.trials);
  bool improved = false;
  for (int k = 1; k <= work.trials.count; ++k)
    improved = improve(mixture, work.trials.trials(k).lnK, feed, split) || improved;
  return improved;
}

// A split that starts with a little of the trial phase taken out of the feed: it lies below the feed, and Newton steps
// that only descend keep it there. For phases that substitution leaves.
void split_off(const RobustMixture& mixture, R8 T, R8 P, const RobustPhase& feed, const StabilityTrial& trial,
               RobustSplit& split) {
  R8 most = 1.0;
  for (int i = 1; i <= mixture.n; ++i) most = std::min(most, mixture.z(i) / trial.w(i));
  for (const R8 part : {0.5, 0.05}) {
    const R8 share = part * most;
    for (int i = 1; i <= mixture.n; ++i)
      work.lnK(i) = ln_ratio(trial.w(i), (mixture.z(i) - share * trial.w(i)) / (1.0 - share));
    polish_split(mixture, T, P, work.lnK, feed, split);
    if (is_equilibrium(split)) return;
  }
}

}  // namespace

void take_one_phase(R8 T, R8 P, const RobustPhase& feed, RobustSplit& split) {
  split.answer = Split::one_phase;
  split.T = T;
  split.P = P;
  split.fraction = feed.root == phase::liquid && !feed.single ? 0.0 : 1.0;
  split.gibbs = split.unequal = 0.0;
  split.vapour = feed;
  split.liquid = feed;
  split.two_liquids = split.third_phase = false;
  split.third_root = phase::none;
}

bool is_equilibrium(const RobustSplit& split) {
  return split.answer == Split::two_phases && split.gibbs < kGibbsNoise;
}

// A split that is not stable is replaced by the best one that the trials of its own and of the feed lead to;
// when that is not stable either, three phases are in equilibrium.
void settle_split(const RobustMixture& mixture, const RobustPhase& feed, RobustSplit& split) {
  label_phases(mixture, split);
  bool full = false;
  Stability answer = stability_of_split(mixture, split, full, work.third);
  bool improved = answer == Stability::unstable && try_feed_trials(mixture, feed, split);
  for (int round = 1; answer == Stability::unstable && round <= kImprovements; ++round) {
    improved = try_third_trials(mixture, feed, split) || improved;
    // Every start has been followed from this very split.
    if (full && !improved) break;
    label_phases(mixture, split);
    full = true;
    answer = stability_of_split(mixture, split, full, work.third);
    improved = false;
  }
  split.third_phase = answer == Stability::unstable;
  if (split.third_phase) split.third_root = work.third.trials(1).root;
  if (answer == Stability::unsettled) split.answer = Split::unsettled;
}

void split_unstable_feed(const RobustMixture& mixture, R8 T, R8 P, const RobustPhase& feed,
                         StabilityResult& trials, RobustSplit& split) {
  for (const StabilityEffort effort : {StabilityEffort::first, StabilityEffort::full}) {
    if (effort == StabilityEffort::full) test_stability(mixture, T, P, feed, effort, trials);
    for (int k = 1; k <= trials.count; ++k) {
      converge_from(mixture, T, P, trials.trials(k).lnK, feed, split);
      if (!is_equilibrium(split) && effort == StabilityEffort::full)
        split_off(mixture, T, P, feed, trials.trials(k), split);
      if (!is_equilibrium(split)) continue;
      settle_split(mixture, feed, split);
      return;
    }
  }
  if (trials.count > 0 && trials.trials(1).distance > -kDistanceNoise)
    take_one_phase(T, P, feed, split);
  else
    split.answer = Split::unsettled;
}

// robust_isothermal: the state of lowest Gibbs energy with at most two phases.
//
// Out      split  one_phase, two_phases or unsettled
void robust_isothermal(const RobustMixture& mixture, R8 T, R8 P, const CompVec* START_LNK,
                       RobustSplit& split) {
  split.answer = Split::unsettled;
  evaluate_phase(mixture, T, P, mixture.z, phase::gibbs, PhaseDerivatives::composition, work.feed);
  if (work.feed.status != status::ok) return;
  if (mixture.n == 1) {
    take_one_phase(T, P, work.feed, split);
    return;
  }
  if (START_LNK != nullptr) {
    converge_from(mixture, T, P, *START_LNK, work.feed, split);
    if (is_equilibrium(split)) {
      settle_split(mixture, work.feed, split);
      return;
    }
  }
  test_stability(mixture, T, P, work.feed, StabilityEffort::first, work.trials);
  switch (work.trials.answer) {
    case Stability::stable:
      take_one_phase(T, P, work.feed, split);
      return;
    case Stability::unstable:
      split_unstable_feed(mixture, T, P, work.feed, work.trials, split);
      return;
    case Stability::unsettled:
      split.answer = Split::unsettled;
      return;
  }
}

}  // namespace talix
