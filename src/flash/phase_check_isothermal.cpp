#include <algorithm>
#include <cmath>
#include <cstdio>

#include "engine/codes.h"
#include "fastprops/flash_record.h"
#include "fastprops/small_arrays.h"
#include "flash/phase_check.h"
#include "flash/robust_split.h"

namespace talix {

namespace {

// The largest flow that the isothermal flash takes [mol].
constexpr R4 kLargestFeed = 1.0E+9F;
// Flows of a reported split below this tell nothing about the K-value.
constexpr R4 kLeastFlow = 1.0E-36F;

// A split that is so far below the feed, over RT, proves that the feed is unstable.
constexpr R8 kClearlyBelow = -1.0E-6;
// By Wilson's K a feed surely splits where both sums, of z K and of z/K, are above 1 by this in ln, and by that much
// more as the pressure nears the critical one: so was each of 20000 feeds in 90000.
constexpr R8 kSureByWilson = 0.5;
constexpr R8 kSureByPressure = 1.0;

// The feed as one phase: settle_one_phase leaves it for the check of the same call.
struct FeedTest {
  bool known;  // mixture and feed are those of the call
  bool done;   // the trials too
  RobustMixture mixture;
  RobustPhase feed;
  StabilityResult trials;
};
constinit FeedTest test{};

struct Work {
  RobustSplit split;
  CompVec lnK;  // of the reported split
};
constinit Work work{};

// The feed as one phase, its stability open.
void open_feed() {
  gather_mixture(test.mixture);
  test.known = true;
  test.done = false;
  test.trials.count = 0;
  test.trials.answer = Stability::unsettled;
  evaluate_phase(test.mixture, static_cast<R8>(fl.T), static_cast<R8>(fl.P), test.mixture.z, phase::gibbs,
                 PhaseDerivatives::composition, test.feed);
  if (test.mixture.n > 1 || test.feed.status != status::ok) return;
  test.done = true;
  test.trials.answer = Stability::stable;
}

// Stability of the feed; the answer also when the engine fails.
Stability test_feed() {
  if (test.done) return test.trials.answer;
  test.done = true;
  if (test.feed.status != status::ok) return Stability::unsettled;
  test_stability(test.mixture, static_cast<R8>(fl.T), static_cast<R8>(fl.P), test.feed,
                 StabilityEffort::first, test.trials);
  return test.trials.answer;
}

// True when the feed is so far inside the region of two phases that the flash can be left to find them.
bool surely_splits() {
  const RobustMixture& mixture = test.mixture;
  if (test.done) return false;
  R8 bubble = 0.0, dew = 0.0, critical = 0.0;
  wilson_ln_k(mixture, static_cast<R8>(fl.T), static_cast<R8>(fl.P), work.lnK);
  for (int i = 1; i <= mixture.n; ++i) {
    bubble += mixture.z(i) * std::exp(work.lnK(i));
    dew += mixture.z(i) * std::exp(-work.lnK(i));
    critical += mixture.z(i) * static_cast<R8>(fl.PC(mixture.at(i)));
  }
  const R8 least = kSureByWilson + kSureByPressure * static_cast<R8>(fl.P) / critical;
  return std::log(std::min(bubble, dew)) > least;
}

bool feed_can_be_tested() {
  if (!(fl.P > 0.0F) || !(fl.FT > kPhaseLimit) || !(fl.FT <= kLargestFeed)) return false;
  for (int i = 1; i <= fl.NC; ++i)
    if (!(fl.F(i) <= kLargestFeed)) return false;
  return true;
}

bool reports_two_phases() { return TELOP(fl.NC, fl.FV) > kPhaseLimit && TELOP(fl.NC, fl.FL) > kPhaseLimit; }

// ln K of the reported flows.
void take_reported(const RobustMixture& mixture) {
  const R8 FTV = static_cast<R8>(TELOP(fl.NC, fl.FV));
  const R8 FTL = static_cast<R8>(TELOP(fl.NC, fl.FL));
  wilson_ln_k(mixture, static_cast<R8>(fl.T), static_cast<R8>(fl.P), work.lnK);
  for (int i = 1; i <= mixture.n; ++i) {
    const int k = mixture.at(i);
    if (fl.FV(k) > kLeastFlow && fl.FL(k) > kLeastFlow)
      work.lnK(i) = std::log(static_cast<R8>(fl.FV(k)) / FTV) - std::log(static_cast<R8>(fl.FL(k)) / FTL);
  }
}

// The reported split, polished; false when it is none of the lower Gibbs energy.
bool reported_split_stands(R8 T, R8 P) {
  take_reported(test.mixture);
  polish_split(test.mixture, T, P, work.lnK, test.feed, work.split);
  if (!is_equilibrium(work.split)) return false;
  settle_split(test.mixture, test.feed, work.split);
  return work.split.answer == Split::two_phases;
}

// The state of the feed, of which the flash may have REPORTED a split.
void settle_feed(R8 T, R8 P, bool reported) {
  work.split.answer = Split::unsettled;
  if (test.feed.status != status::ok) return;
  if (!(test.done && test.trials.answer == Stability::stable) && reported && reported_split_stands(T, P) &&
      (work.split.gibbs < kClearlyBelow || test_feed() != Stability::stable))
    return;
  work.split.answer = Split::unsettled;
  if (test_feed() == Stability::stable)
    take_one_phase(T, P, test.feed, work.split);
  else if (test.trials.answer == Stability::unstable)
    split_unstable_feed(test.mixture, T, P, test.feed, test.trials, work.split);
}

void report_unsettled(Message& STR, R8 T, R8 P) {
  char text[Message::extent];
  const int length = std::snprintf(
      text, sizeof text, " Isothermal flash could not be settled at %.2f K and %.5g bar (TALIX)", T, P);
  fl.NCAL = flash_status::failed;
  report(STR, {text, static_cast<std::size_t>(length)});
}

void report_third_phase(Message& STR) {
  if (work.split.third_root == phase::liquid)
    report(STR, ". A third phase, liquid, would lower the Gibbs energy further (TALIX)");
  else
    report(STR, ". A third phase, vapour, would lower the Gibbs energy further (TALIX)");
}

}  // namespace

// settle_one_phase: an isothermal flash without its passes, where the feed is proven stable.
//
// Shared   reads fl.F, FT, T, P; sets what store_split sets, and fl.PASSES, when the answer is true
// Status   false also for what the flash refuses and for what the engine cannot tell
bool settle_one_phase() {
  test.known = false;
  if (!feed_can_be_tested()) return false;
  grant_engine_calls();
  open_feed();
  if (surely_splits() || test_feed() != Stability::stable) return false;
  take_one_phase(static_cast<R8>(fl.T), static_cast<R8>(fl.P), test.feed, work.split);
  store_split(test.mixture, work.split);
  fl.PASSES = 0;
  test.known = false;
  return true;
}

// check_isothermal: the check of codes 5 and 10.
//
// In, out  STR  a text about convergence is taken back where the state can be settled
// Shared   reads fl.T, P and the reported flows; sets what store_split sets
// Reports  ". A third phase, liquid, would lower the Gibbs energy further (TALIX)", or vapour; the best two
//          phases stand
//          " Isothermal flash could not be settled at ... K and ... bar (TALIX)"
void check_isothermal(Message& STR) {
  const R8 T = static_cast<R8>(fl.T);
  const R8 P = static_cast<R8>(fl.P);
  if (!test.known) {
    if (!feed_can_be_tested()) return;
    grant_engine_calls();
    open_feed();
  }
  test.known = false;
  const bool reported = !is_hard_failure(STR) && reports_two_phases();
  STR.blank();
  settle_feed(T, P, reported);
  if (work.split.answer == Split::unsettled) {
    report_unsettled(STR, T, P);
    return;
  }
  store_split(test.mixture, work.split);
  if (work.split.third_phase) report_third_phase(STR);
}

}  // namespace talix
