#include <algorithm>
#include <cmath>

#include "engine/codes.h"
#include "fastprops/flash_record.h"
#include "flash/robust_saturation.h"

namespace talix {

namespace {

constexpr int kPoints = 36;       // of the scan for saturation points
constexpr int kSplitPoints = 24;  // of the scan for a fraction, each one a flash
constexpr R8 kLowestP = 1.0E-4;   // [bar]
constexpr int kBisections = 14;
constexpr int kGapSteps = 6;
constexpr R8 kOtherPhase = 0.3;  // difference of a mole fraction that makes another phase
constexpr int kJumpSteps = 40;
constexpr R8 kJumpWidth = 1.0E-9;  // of ln T or ln P, at which a jump of the volume shows
constexpr R8 kJump = 0.03;         // of ln Z
constexpr R8 kNegligible = 1.0E-300;

// A state of the scan: the share of the feed in the lighter phase, and ln K of its two phases.
struct ScanState {
  R8 free;       // ln T or ln P, the one that is not given
  bool settled;  // false when the engine failed
  bool split;    // the feed is unstable; of a scan for a fraction: into vapour and liquid
  R8 fraction;  // of two phases; of an unstable feed 0 when a lighter phase splits off, 1 when a denser one does; of
                // one phase in a scan for a fraction by its identity
  CompVec lnK;
};

struct Work {
  Vec<ScanState, kPoints> states;
  ScanState low, high, middle, gap, hidden;
  RobustPhase feed;
  RobustPhase low_feed, high_feed;  // on both sides of a jump
  StabilityResult trials;
  RobustSplit split;
  SaturationResult found;
};
constinit Work w{};

struct Question {
  SaturationGiven given;
  R8 value, fraction, start;
  bool saturated;  // bubble or dew point
};

R8 temperature(const Question& q, R8 free) {
  return q.given == SaturationGiven::temperature ? q.value : std::exp(free);
}

R8 pressure(const Question& q, R8 free) {
  return q.given == SaturationGiven::temperature ? std::exp(free) : q.value;
}

// The trial against the feed, as their labels would have it: a liquid is denser than what is none, others go by their
// molar volumes over the mean critical volume.
bool is_lighter(const RobustMixture& mixture, const StabilityTrial& trial) {
  const bool trial_liquid = trial.root == phase::liquid && !trial.single;
  const bool feed_liquid = w.feed.root == phase::liquid && !w.feed.single;
  if (trial_liquid != feed_liquid) return feed_liquid;
  R8 trial_sum = 0.0, feed_sum = 0.0;
  for (int i = 1; i <= mixture.n; ++i) {
    const R8 VC = static_cast<R8>(fl.VC(mixture.at(i)));
    trial_sum += trial.w(i) * VC;
    feed_sum += mixture.z(i) * VC;
  }
  return trial.Z / trial_sum > w.feed.Z / feed_sum;
}

// Is the feed unstable, and against what: ln K of the trial over the feed, turned so that y is the lighter phase.
void examine_feed(const RobustMixture& mixture, R8 T, R8 P, ScanState& s) {
  evaluate_phase(mixture, T, P, mixture.z, phase::gibbs, PhaseDerivatives::none, w.feed);
  if (w.feed.status != status::ok) return;
  test_stability(mixture, T, P, w.feed, StabilityEffort::first, w.trials);
  s.settled = w.trials.answer != Stability::unsettled;
  s.split = w.trials.answer == Stability::unstable;
  if (!s.split) return;
  const StabilityTrial& trial = w.trials.trials(1);
  const bool lighter = is_lighter(mixture, trial);
  const R8 sign = lighter ? 1.0 : -1.0;
  s.fraction = lighter ? 0.0 : 1.0;
  for (int i = 1; i <= mixture.n; ++i) s.lnK(i) = sign * trial.lnK(i);
}

void examine_split(const RobustMixture& mixture, R8 T, R8 P, ScanState& s) {
  robust_isothermal(mixture, T, P, nullptr, w.split);
  s.settled = w.split.answer != Split::unsettled;
  s.split = w.split.answer == Split::two_phases && !w.split.two_liquids;
  s.fraction = w.split.fraction;
  if (!s.split) return;
  for (int i = 1; i <= mixture.n; ++i)
    s.lnK(i) =
        std::log(std::max(w.split.vapour.x(i), kNegligible) / std::max(w.split.liquid.x(i), kNegligible));
}

void examine(const RobustMixture& mixture, const Question& q, R8 free, ScanState& s) {
  s.free = free;
  s.settled = s.split = false;
  s.fraction = 0.0;
  if (q.saturated)
    examine_feed(mixture, temperature(q, free), pressure(q, free), s);
  else
    examine_split(mixture, temperature(q, free), pressure(q, free), s);
}

// Does the state asked for lie between two neighbours?
bool lies_between(const Question& q, const ScanState& a, const ScanState& b) {
  if (!a.settled || !b.settled) return false;
  if (q.saturated) return a.split != b.split;
  return a.split && b.split && (a.fraction - q.fraction) * (b.fraction - q.fraction) <= 0.0;
}

// The shares of two states have the one asked for between them. Vapour beside liquid may lie between two liquids and
// one phase, where no point of the scan meets it.
bool shares_pass(const Question& q, const ScanState& a, const ScanState& b) {
  return !q.saturated && a.settled && b.settled &&
         (a.fraction - q.fraction) * (b.fraction - q.fraction) <= 0.0;
}

// Could it? Next to the end of the two-phase region every fraction may be met.
bool may_lie_between(const Question& q, const ScanState& a, const ScanState& b) {
  return lies_between(q, a, b) || (a.settled && b.settled && a.split != b.split);
}

// Which half of W.low, W.middle, W.high is to be looked at.
bool is_in_lower(const Question& q) {
  if (lies_between(q, w.low, w.middle)) return true;
  if (lies_between(q, w.middle, w.high)) return false;
  if (w.middle.split && shares_pass(q, w.low, w.middle) != shares_pass(q, w.middle, w.high))
    return shares_pass(q, w.low, w.middle);
  return may_lie_between(q, w.low, w.middle) || (!w.middle.split && shares_pass(q, w.low, w.middle));
}

bool try_state(const RobustMixture& mixture, const Question& q, const ScanState& s) {
  if (!s.split || (q.saturated && s.fraction != q.fraction)) return false;
  const R8 start = std::exp(s.free);
  return solve_saturation(mixture, q.given, q.value, q.fraction, s.lnK, start, w.split);
}

// Where nothing boils or condenses between W.low and W.high: the point at which two liquids part.
bool part_liquids(const RobustMixture& mixture, const Question& q) {
  if (!q.saturated) return false;
  for (const ScanState* s : {&w.low, &w.high})
    if (s->split && s->fraction == q.fraction &&
        solve_liquids(mixture, q.given, q.value, q.fraction, s->lnK, std::exp(s->free), w.split))
      return true;
  return false;
}

// Narrows the pair W.low, W.high down until the point is solved between them.
bool close_in(const RobustMixture& mixture, const Question& q) {
  for (int step = 0; step < kBisections; ++step) {
    if (step % 3 == 0) {
      for (const ScanState* s : {&w.low, &w.high}) {
        if (!try_state(mixture, q, *s)) continue;
        const R8 free = std::log(q.given == SaturationGiven::temperature ? w.split.P : w.split.T);
        const R8 room = 0.02 + 0.5 * (w.high.free - w.low.free);
        if (free > w.low.free - room && free < w.high.free + room) return true;
      }
    }
    examine(mixture, q, 0.5 * (w.low.free + w.high.free), w.middle);
    if (!w.middle.settled) return false;
    (is_in_lower(q) ? w.high : w.low) = w.middle;
  }
  return try_state(mixture, q, w.low) || try_state(mixture, q, w.high) || part_liquids(mixture, q);
}

// How different the phases are that two unstable states split off: largest difference of a mole fraction.
R8 difference(const RobustMixture& mixture, const ScanState& a, const ScanState& b) {
  const R8 sign_a = a.fraction > 0.5 ? -1.0 : 1.0, sign_b = b.fraction > 0.5 ? -1.0 : 1.0;
  R8 most = a.fraction == b.fraction ? 0.0 : 1.0;
  for (int i = 1; i <= mixture.n; ++i)
    most =
        std::max(most, mixture.z(i) * std::fabs(std::exp(sign_a * a.lnK(i)) - std::exp(sign_b * b.lnK(i))));
  return most;
}

// Two unstable neighbours that split off different phases may have a stable state between them: W.middle then.
bool find_gap(const RobustMixture& mixture, const Question& q, const ScanState& a, const ScanState& b) {
  if (!q.saturated || !a.split || !b.split || difference(mixture, a, b) < kOtherPhase) return false;
  w.low = a;
  w.high = b;
  for (int step = 0; step < kGapSteps; ++step) {
    examine(mixture, q, 0.5 * (w.low.free + w.high.free), w.middle);
    if (!w.middle.settled) return false;
    if (!w.middle.split) return true;
    const bool like_low = difference(mixture, w.middle, w.low) < difference(mixture, w.middle, w.high);
    (like_low ? w.low : w.high) = w.middle;
  }
  return false;
}

// Two stable neighbours, one liquid and one vapour, have a two-phase region between them where the volume of the feed
// on its root of lowest Gibbs energy jumps: W.hidden is a state of it. Mixtures that boil like a pure component have
// so narrow a region that no point of the scan meets it.
bool find_hidden(const RobustMixture& mixture, const Question& q, const ScanState& a, const ScanState& b) {
  if (!a.settled || !b.settled || a.split || b.split) return false;
  const auto place = [&](R8 free, RobustPhase& phase) {
    evaluate_phase(mixture, temperature(q, free), pressure(q, free), mixture.z, phase::gibbs,
                   PhaseDerivatives::none, phase);
    return phase.status == status::ok;
  };
  R8 low = a.free, high = b.free;
  if (!place(low, w.low_feed) || !place(high, w.high_feed)) return false;
  for (int step = 0; step < kJumpSteps && high - low > kJumpWidth; ++step) {
    const R8 middle = 0.5 * (low + high);
    if (!(std::fabs(std::log(w.low_feed.Z / w.high_feed.Z)) > kJump) || !place(middle, w.feed)) return false;
    const bool lower =
        std::fabs(std::log(w.low_feed.Z / w.feed.Z)) > std::fabs(std::log(w.feed.Z / w.high_feed.Z));
    (lower ? high : low) = middle;
    (lower ? w.high_feed : w.low_feed) = w.feed;
  }
  if (!(std::fabs(std::log(w.low_feed.Z / w.high_feed.Z)) > kJump)) return false;
  examine(mixture, q, 0.5 * (low + high), w.hidden);
  return w.hidden.settled && w.hidden.split;
}

// The last solved state, if it is better than the one found before.
void consider(const RobustMixture& mixture, const Question& q, SaturationResult& result) {
  if (!rate_saturation(mixture, q.given, w.split, w.found)) return;
  if (is_better_saturation(q.given, q.start, w.found, result)) result = w.found;
}

void search_pair(const RobustMixture& mixture, const Question& q, const ScanState& a, const ScanState& b,
                 SaturationResult& result) {
  w.low = a;
  w.high = b;
  if (close_in(mixture, q)) consider(mixture, q, result);
}

}  // namespace

// scan_saturation: stability of the feed, or its split, over the other variable, and the state between the two
// neighbours where it changes.
//
// Out      result  found, the stable one nearest to START; no_line when no neighbours have it between them;
//                  unsettled when the engine failed or the budget ran out on the way
void scan_saturation(const RobustMixture& mixture, SaturationGiven given, R8 value, R8 FRACTION, R8 START,
                     SaturationResult& result) {
  const Question q{given, value, FRACTION, START, !(FRACTION > 0.0) || !(FRACTION < 1.0)};
  const bool at_T = given == SaturationGiven::temperature;
  const R8 low = std::log(at_T ? kLowestP : kLowestSaturation);
  const R8 high = std::log(at_T ? static_cast<R8>(kMaxPressure) : kHighestSaturation);
  result.answer = Saturation::no_line;
  result.limit = 0.0;
  result.unstable = false;
  result.rank = standing::metastable;
  bool complete = true;
  const int points = q.saturated ? kPoints : kSplitPoints;
  for (int k = 1; k <= points; ++k) {
    examine(mixture, q, low + (high - low) * static_cast<R8>(k - 1) / static_cast<R8>(points - 1),
            w.states(k));
    complete = complete && w.states(k).settled;
  }
  for (int k = 1; k < points; ++k) {
    const ScanState &a = w.states(k), &b = w.states(k + 1);
    if (find_gap(mixture, q, a, b)) {
      w.gap = w.middle;
      search_pair(mixture, q, a, w.gap, result);
      search_pair(mixture, q, w.gap, b, result);
    } else if (find_hidden(mixture, q, a, b)) {
      search_pair(mixture, q, a, w.hidden, result);
      search_pair(mixture, q, w.hidden, b, result);
    } else if (may_lie_between(q, a, b) || shares_pass(q, a, b)) {
      search_pair(mixture, q, a, b, result);
    }
  }
  if (result.answer != Saturation::found && (!complete || engine_budget() <= 0))
    result.answer = Saturation::unsettled;
}

}  // namespace talix
