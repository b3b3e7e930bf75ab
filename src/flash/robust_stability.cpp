#include "flash/robust_stability.h"

#include <algorithm>
#include <cmath>

#include "engine/codes.h"
#include "fastprops/flash_record.h"
#include "flash/robust_estimates.h"
#include "flash/robust_trial.h"

namespace talix {

namespace {

constinit TangentPlane plane{};
constinit TrialPoint point{};
constinit RobustPhase other{};
constinit StabilityTrial candidate{};
constinit CompVec wilson{};
constinit CompVec pure_liquid{};  // ln phi of the components as liquids, estimated

// Two stationary points nearer to each other than this, in 2 sqrt(w) and in ln Z, are one.
constexpr R8 kSamePoint2 = 1.0E-8;
constexpr R8 kSameZ = 1.0E-3;
// A near-pure start is left out when its activity is below this by an estimate, in ln, and where the first point below
// the plane ends the test below the second: of 240 such points in 16000 tests the least estimate was -0.7.
constexpr R8 kLeastLnEstimate = -2.5;
constexpr R8 kLeastLnFirst = -1.5;
// And there above this reduced temperature, where no component leads a phase: the starts from Wilson's K find those.
constexpr R8 kHottestLead = 1.15;
// Nor has a vapour of less than these times the critical density and this Z another vapour beside it.
constexpr R8 kThinDensity = 0.25;
constexpr R8 kThinZ = 0.85;
constexpr R8 kJoulePerBarCm3 = 0.1;
// A component so active, in ln, surely leaves the tested phase: where the engine cannot tell as what, nothing can be
// said.
constexpr R8 kSurelyActive = 10.0;
constexpr R8 kLnBoiling = -0.5;       // ln K from which a component may boil alone
constexpr R8 kLeastLnBoiling = -1.5;  // the same for the liquid of a component that would boil
// Lengths of the starts along the softest direction, the least share of a root that they leave, and the least root.
constexpr R8 kSoftFar = 0.9;
constexpr R8 kSoftMiddle = 0.3;
constexpr R8 kSoftNear = 0.1;
constexpr R8 kLeastShrink = 0.1;
// Smallest eigenvalue from which a test that the first point below the plane ends goes without the nearest ones.
constexpr R8 kSoftNearest = 0.1;
constexpr R8 kLeastRoot = 1.0E-130;
constexpr R8 kPureRemainder = 1.0E-6;  // share of the other components in a near-pure start
// Share of a component in the start of a pair that water or its like leads, of any component below the reduced
// temperature of the leading one.
constexpr R8 kPairShare = 0.3;
constexpr R8 kColdPair = 0.33;
constexpr R8 kColdShare = 0.15;
constexpr int kPureStartsFirst = 10;
constexpr int kPureStartsFull = 20;

struct Run {
  StabilityEffort effort;
  StabilityResult* result;
  bool vapour_known;  // no trial that begins as a vapour can tell anything
  bool below;
  bool failed;
  bool lost;  // the engine could not evaluate the last trial
};

bool finished(const Run& run) { return run.failed || (run.below && run.effort == StabilityEffort::first); }

bool same_trial(I4 n, const StabilityTrial& a, const StabilityTrial& b) {
  R8 apart2 = 0.0;
  for (int i = 1; i <= n; ++i) {
    const R8 difference = 2.0 * (std::sqrt(a.w(i)) - std::sqrt(b.w(i)));
    apart2 += difference * difference;
  }
  return apart2 < kSamePoint2 && std::fabs(std::log(a.Z / b.Z)) < kSameZ;
}

// Puts the trial in its place by distance, unless it is there already.
void keep_candidate(I4 n, StabilityResult& result) {
  for (int k = 1; k <= result.count; ++k)
    if (same_trial(n, candidate, result.trials(k))) return;
  int place = result.count + 1;
  while (place > 1 && result.trials(place - 1).distance > candidate.distance) place = place - 1;
  if (place > kMaxTrials) return;
  result.count = std::min(result.count + 1, kMaxTrials);
  for (int k = result.count; k > place; --k) result.trials(k) = result.trials(k - 1);
  result.trials(place) = candidate;
}

// The point after one more substitution, which costs nothing: a better start for a split than the point itself.
void record_point(Run& run) {
  const I4 n = plane.mixture->n;
  R8 total = 0.0;
  for (int i = 1; i <= n; ++i) {
    candidate.w(i) = std::exp(plane.d(i) - point.phase.lnphi(i));
    total += candidate.w(i);
  }
  const R8 lnTotal = std::log(total);
  for (int i = 1; i <= n; ++i) {
    candidate.w(i) /= total;
    candidate.lnK(i) = plane.d(i) - point.phase.lnphi(i) - lnTotal - plane.lnx(i);
  }
  candidate.distance = std::min(1.0 - total, point.distance);
  candidate.root = point.phase.root;
  candidate.single = point.phase.single;
  candidate.Z = point.phase.Z;
  keep_candidate(n, *run.result);
}

void follow(Run& run, const TrialStart& start) {
  if (finished(run)) return;
  run.lost = false;
  switch (run_trial(plane, start, run.effort, point)) {
    case TrialEnd::below:
      run.below = true;
      record_point(run);
      break;
    case TrialEnd::stationary:
      if (run.effort == StabilityEffort::full) record_point(run);
      break;
    case TrialEnd::failed:
      // A phase that the model cannot describe is none that the tested one could split off.
      run.lost = true;
      if (engine_budget() <= 0) run.failed = true;
      break;
    case TrialEnd::above:
    case TrialEnd::trivial:
      break;
  }
}

// W = x K^POWER by Wilson's K.
void follow_wilson(Run& run, R8 POWER, I4 ROOT) {
  for (int i = 1; i <= plane.mixture->n; ++i) point.lnW(i) = plane.lnx(i) + POWER * wilson(i);
  follow(run, {ROOT, 0, false});
}

void follow_ideal_gas(Run& run) {
  for (int i = 1; i <= plane.mixture->n; ++i) point.lnW(i) = plane.d(i);
  follow(run, {phase::vapour, 0, false});
}

// The root on the other side of the tested composition, where the equation has one.
void follow_other_root(Run& run) {
  if (finished(run)) return;
  const I4 side = plane.tested.root == phase::vapour ? phase::liquid : phase::vapour;
  evaluate_phase(*plane.mixture, plane.T, plane.P, plane.tested.x, side, PhaseDerivatives::none, other);
  if (other.status != status::ok) {
    run.failed = true;
    return;
  }
  if (std::fabs(other.Z - plane.tested.Z) <= 1.0E-6 * plane.tested.Z) return;
  for (int i = 1; i <= plane.mixture->n; ++i) point.lnW(i) = plane.d(i) - other.lnphi(i);
  follow(run, {side, 0, false});
}

// Water and its like may be stable with some of a component that they attract and with little of it, and far below
// their freezing points with a little of a heavy component: such pairs have a valley of their own.
void follow_pairs(Run& run) {
  const I4 n = plane.mixture->n;
  for (int i = 1; i <= n; ++i) {
    if (!mixes_badly(*plane.mixture, i)) continue;
    const bool cold = plane.T < kColdPair * static_cast<R8>(fl.TC(plane.mixture->at(i)));
    for (int j = 1; j <= n && !finished(run); ++j) {
      const bool attracted = may_attract(*plane.mixture, j, plane.T);
      if (j == i || !(cold || attracted)) continue;
      const R8 share = attracted ? kPairShare : kColdShare;
      for (int k = 1; k <= n; ++k) point.lnW(k) = std::log(kPureRemainder) + plane.lnx(k);
      point.lnW(i) = std::log(1.0 - share);
      point.lnW(j) = std::log(share);
      follow(run, {phase::gibbs, i, false});
    }
  }
}

void follow_pure_start(Run& run, int component, I4 ROOT) {
  for (int i = 1; i <= plane.mixture->n; ++i)
    point.lnW(i) = i == component ? 0.0 : std::log(kPureRemainder) + plane.lnx(i);
  follow(run, {ROOT, component, false});
}

bool is_thin_vapour(const Bowl& known) {
  if (known.root != phase::vapour || !(known.Z > kThinZ)) return false;
  R8 critical = 0.0;
  for (int i = 1; i <= plane.mixture->n; ++i)
    critical += known.x(i) * static_cast<R8>(fl.VC(plane.mixture->at(i)));
  const R8 volume = known.Z * kGasConstant * plane.T / (plane.P * kJoulePerBarCm3);
  return critical < kThinDensity * volume;
}

bool has_badly_mixing() {
  for (int i = 1; i <= plane.mixture->n; ++i)
    if (mixes_badly(*plane.mixture, i)) return true;
  return false;
}

// True where a vapour cannot be a new phase: beside a thin one, and beside any that has its liquid, but for components
// like water. Of 1400 third phases beside a vapour and a liquid a trial that began as a vapour alone found none.
bool vapour_is_known(StabilityEffort effort) {
  if (effort == StabilityEffort::full) return false;
  if (is_thin_vapour(plane.tested) || (plane.paired && is_thin_vapour(plane.partner))) return true;
  return plane.paired && plane.tested.root == phase::liquid && plane.partner.root == phase::vapour &&
         !has_badly_mixing();
}

// True when a near-pure start of the component cannot show what the other starts do not.
bool tells_nothing(const Run& run, int component) {
  if (run.effort == StabilityEffort::full) return false;
  const R8 critical = static_cast<R8>(fl.TC(plane.mixture->at(component)));
  return plane.T > kHottestLead * critical || (run.vapour_known && pure_liquid(component) > 0.0);
}

// Trials that begin as one component with a trace of the others, the most active first by an estimate: a pure
// component has a fugacity coefficient near 1 as a gas.
void follow_near_pure(Run& run) {
  const I4 n = plane.mixture->n;
  static constinit CompVec estimate{};
  for (int i = 1; i <= n; ++i) estimate(i) = plane.d(i) - std::min(0.0, pure_liquid(i));
  const int most = std::min(n, run.effort == StabilityEffort::first ? kPureStartsFirst : kPureStartsFull);
  for (int k = 1; k <= most && !finished(run); ++k) {
    int best = 1;
    for (int i = 2; i <= n; ++i)
      if (estimate(i) > estimate(best)) best = i;
    const R8 activity = estimate(best);
    if (activity < (run.effort == StabilityEffort::first ? kLeastLnFirst : kLeastLnEstimate)) return;
    estimate(best) = -1.0E300;
    run.lost = false;
    if (!tells_nothing(run, best)) follow_pure_start(run, best, phase::gibbs);
    if (run.lost && activity > kSurelyActive) run.failed = true;
    // A component that alone would boil may still lead a liquid mixture, which only its own liquid root points to.
    if (wilson(best) > kLnBoiling && static_cast<R8>(fl.TC(plane.mixture->at(best))) > plane.T &&
        plane.d(best) - wilson(best) > kLeastLnBoiling)
      follow_pure_start(run, best, phase::liquid);
  }
}

// A trial from LENGTH along the softest direction of the tested phase, in 2 sqrt(x), by second-order steps.
void follow_soft_start(Run& run, R8 LENGTH) {
  for (int i = 1; i <= plane.mixture->n; ++i) {
    const R8 root = std::sqrt(plane.tested.x(i));
    const R8 moved = std::max(root + 0.5 * LENGTH * plane.tested.soft(i), kLeastShrink * root);
    point.lnW(i) = 2.0 * std::log(std::max(moved, kLeastRoot));
  }
  follow(run, {phase::gibbs, 0, true});
}

// Near a critical point the phase in equilibrium is close, and all other starts run by it: trials both ways along
// the softest direction, from far to near. Where the phase is intrinsically unstable, every length leads down.
void follow_soft(Run& run) {
  if (finished(run)) return;
  if (!curve_bowl(plane, plane.tested)) {
    run.failed = true;
    return;
  }
  if (plane.tested.softest >= kSoft) return;
  // A phase so close is there only where the tested one is very soft.
  const bool near = plane.tested.softest > 0.0 &&
                    (run.effort == StabilityEffort::full || plane.tested.softest < kSoftNearest);
  for (const R8 side : {1.0, -1.0}) {
    if (plane.tested.softest > 0.0) follow_soft_start(run, side * kSoftFar);
    follow_soft_start(run, side * kSoftMiddle);
    if (near) follow_soft_start(run, side * kSoftNear);
  }
}

// A pure component: only the other root can lie below.
void test_pure(Run& run) {
  const I4 side = plane.tested.root == phase::vapour ? phase::liquid : phase::vapour;
  point.lnW(1) = 0.0;
  evaluate_phase(*plane.mixture, plane.T, plane.P, plane.tested.x, side, PhaseDerivatives::none, point.phase);
  if (point.phase.status != status::ok) {
    run.failed = true;
    return;
  }
  if (std::fabs(point.phase.Z - plane.tested.Z) <= 1.0E-6 * plane.tested.Z) return;
  point.distance = -std::expm1(plane.d(1) - point.phase.lnphi(1));
  run.below = point.distance < kBelowPlane;
  if (run.below || run.effort == StabilityEffort::full) record_point(run);
}

void run_all(Run& run) {
  wilson_ln_k(*plane.mixture, plane.T, plane.P, wilson);
  estimate_pure_liquids(*plane.mixture, plane.T, plane.P, pure_liquid);
  forget_trials();
  if (plane.tested.root == phase::vapour) {
    follow_wilson(run, -1.0, phase::liquid);
    if (!run.vapour_known) follow_wilson(run, 1.0, phase::vapour);
  } else {
    if (!run.vapour_known) {
      follow_ideal_gas(run);
      follow_wilson(run, 1.0, phase::vapour);
    }
    follow_wilson(run, -1.0, phase::liquid);
  }
  if (!run.vapour_known || plane.tested.root == phase::vapour) follow_other_root(run);
  follow_near_pure(run);
  follow_pairs(run);
  follow_soft(run);
}

void test_plane(StabilityEffort effort, StabilityResult& result) {
  result.count = 0;
  Run run{effort, &result, vapour_is_known(effort), false, false, false};
  if (plane.mixture->n == 1)
    test_pure(run);
  else
    run_all(run);
  if (run.below)
    result.answer = Stability::unstable;
  else
    result.answer = run.failed ? Stability::unsettled : Stability::stable;
}

}  // namespace

// Tangent-plane stability of one phase.
//
// In       mixture           components with a feed
//          T, P     R8       [K], [bar]
//          tested            the phase, with its ln phi; on a root of the equation at T and P
//          effort            first or full
// Out      result            the answer and the trials, the lowest distance first
// Source   Michelsen, Fluid Phase Equilibria 9 (1982) 1-19
void test_stability(const RobustMixture& mixture, R8 T, R8 P, const RobustPhase& tested,
                    StabilityEffort effort, StabilityResult& result) {
  open_plane(mixture, T, P, tested, nullptr, plane);
  test_plane(effort, result);
}

// The same for one of two phases in equilibrium: trials that end at the other one are trivial as well.
void test_stability_beside(const RobustMixture& mixture, R8 T, R8 P, const RobustPhase& tested,
                           const RobustPhase& partner, StabilityEffort effort, StabilityResult& result) {
  open_plane(mixture, T, P, tested, &partner, plane);
  test_plane(effort, result);
}

}  // namespace talix
