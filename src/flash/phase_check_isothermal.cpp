#include <cmath>
#include <cstdio>

#include "engine/codes.h"
#include "fastprops/flash_record.h"
#include "fastprops/small_arrays.h"
#include "flash/phase_check.h"
#include "flash/robust_split.h"
#include "flash/robust_third_phase.h"

namespace talix {

namespace {

// The largest flow that the isothermal flash takes [mol].
constexpr R4 kLargestFeed = 1.0E+9F;
// Flows of a reported split below this tell nothing about the K-value.
constexpr R4 kLeastFlow = 1.0E-36F;
constexpr R8 kLeastShare = 1.0E-300;

// The feed as one phase: settle_one_phase leaves it for the check of the same call.
struct FeedTest {
  bool known;  // mixture, feed and trials are those of the call
  RobustMixture mixture;
  RobustPhase feed;
  StabilityResult trials;
};
constinit FeedTest test{};

struct Work {
  RobustSplit split;
  CompVec lnK;       // of the reported split
  CompVec polished;  // of the polished one
};
constinit Work work{};

// Stability of the feed; the answer also when the engine fails.
Stability test_feed() {
  const R8 T = static_cast<R8>(fl.T);
  const R8 P = static_cast<R8>(fl.P);
  gather_mixture(test.mixture);
  test.trials.count = 0;
  test.trials.answer = Stability::unsettled;
  evaluate_phase(test.mixture, T, P, test.mixture.z, phase::gibbs, PhaseDerivatives::composition, test.feed);
  if (test.feed.status != status::ok) return Stability::unsettled;
  if (test.mixture.n == 1)
    test.trials.answer = Stability::stable;
  else
    test_stability(test.mixture, T, P, test.feed, StabilityEffort::first, test.trials);
  return test.trials.answer;
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

// ln K of the polished split, from its compositions; a trace that has run out of digits keeps the reported one.
void take_polished() {
  for (int i = 1; i <= test.mixture.n; ++i) {
    const R8 y = work.split.vapour.x(i);
    const R8 x = work.split.liquid.x(i);
    work.polished(i) = y > kLeastShare && x > kLeastShare ? std::log(y) - std::log(x) : work.lnK(i);
  }
}

// The reported split, polished; false when it is none of the lower Gibbs energy.
bool reported_split_stands(R8 T, R8 P) {
  take_reported(test.mixture);
  polish_split(test.mixture, T, P, work.lnK, test.feed, work.split);
  if (!is_equilibrium(work.split)) return false;
  label_phases(test.mixture, work.split);
  if (!third_phase_plausible(test.mixture, work.split)) return true;
  // The stability test needs phases that share their tangent plane.
  take_polished();
  refine_split(test.mixture, T, P, work.polished, test.feed, work.split);
  if (!is_equilibrium(work.split)) converge_from(test.mixture, T, P, work.lnK, test.feed, work.split);
  if (!is_equilibrium(work.split)) return false;
  settle_split(test.mixture, test.feed, work.split);
  return work.split.answer == Split::two_phases;
}

// A reported split of the lower Gibbs energy proves that the feed is unstable; without one the trials have to.
void split_untold_feed(R8 T, R8 P) {
  work.split.answer = Split::unsettled;
  if (test.trials.answer == Stability::unstable)
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
  test.known = true;
  if (test_feed() != Stability::stable) return false;
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
    test_feed();
  }
  test.known = false;
  const bool reported = !is_hard_failure(STR) && reports_two_phases();
  STR.blank();
  work.split.answer = Split::unsettled;
  if (test.trials.answer == Stability::stable)
    take_one_phase(T, P, test.feed, work.split);
  else if (test.feed.status == status::ok && !(reported && reported_split_stands(T, P)))
    split_untold_feed(T, P);

  if (work.split.answer == Split::unsettled) {
    report_unsettled(STR, T, P);
    return;
  }
  store_split(test.mixture, work.split);
  if (work.split.third_phase) report_third_phase(STR);
}

}  // namespace talix
