#include "flash/robust_trial.h"

#include <algorithm>
#include <cmath>

#include "engine/codes.h"
#include "flash/robust_symmetric.h"

namespace talix {

namespace {

constexpr int kSubstitutions = 4;
constexpr int kRootKept = 3;
constexpr int kNewtonSteps = 40;
// Substitution that shrinks its steps by less than this factor gives way to Newton steps.
constexpr R8 kSlowRate = 0.6;
// Squared length of the last step and predicted decrease of a converged trial.
constexpr R8 kConverged2 = 1.0E-18;
constexpr R8 kNoDecrease = 1.0E-13;
constexpr R8 kFirstRadius = 0.5;
constexpr R8 kLargestRadius = 1.0;
// A trial ends above the plane once its distance is this many times the decrease expected of the steps to come: many
// after substitution, which may just be leaving a saddle, few where the second derivatives are positive definite.
// The last step, squared, or that decrease has to be no more than the other figures.
constexpr R8 kMarginPlain = 100.0;
constexpr R8 kMarginNewton = 10.0;
constexpr R8 kSmallStep2 = 0.02;
constexpr R8 kSmallDecrease = 0.05;
constexpr R8 kAlike = 0.95;  // steps whose direction hardly changes are extrapolated
// A near-pure start of a lower activity, as -ln, is given up.
constexpr R8 kLeastActive = 2.5;
constexpr R8 kLargestChange = 5.0;  // of a ln W in one Newton step

constinit TrialPoint next_point{};
constinit CompMat second{};
constinit CompVec gradient{}, step{}, previous{};

// The last substitution step, ln W = d - ln phi, beside the one before.
struct Pace {
  R8 rate;   // by which the steps shrink
  R8 alike;  // cosine of the angle between them
};

Pace compare_steps(I4 n, const TrialPoint& p, R8 last2) {
  R8 product = 0.0;
  for (int i = 1; i <= n; ++i) product += p.root_w(i) * p.root_w(i) * p.residual(i) * previous(i);
  return {product / last2, product / std::sqrt(last2 * p.step2)};
}

// True when the distance is well above what the steps to come can still take off it.
bool ends_above(const TrialPoint& p, R8 rate) {
  if (rate > kSlowRate || p.step2 > kSmallStep2) return false;
  return p.distance > kMarginPlain * 0.5 * p.step2 / (1.0 - std::max(rate, 0.0));
}

// Newton steps in ln W under a trust radius, measured in 2 sqrt(W). The point carries its derivatives.
TrialEnd newton_trial(TangentPlane& plane, StabilityEffort effort, bool ended_below, TrialPoint& p) {
  const int n = plane.mixture->n;
  R8 radius = kFirstRadius;
  for (int pass = 1; pass <= kNewtonSteps; ++pass) {
    ended_below = ended_below || is_below(plane, p);
    if (ended_below && effort == StabilityEffort::first) return TrialEnd::below;
    bool failed = false;
    if (!ended_below && at_known_phase(plane, p, failed)) return TrialEnd::trivial;
    if (failed) return TrialEnd::failed;

    fill_second(n, p.phase, second);
    for (int i = 1; i <= n; ++i) gradient(i) = p.root_w(i) * p.residual(i);
    bool curbed = false;
    R8 decrease = trust_step(n, second, gradient, radius, step, curbed);
    if (!curbed) {
      if (p.step2 < kConverged2 || decrease < kNoDecrease)
        return ended_below ? TrialEnd::below : TrialEnd::stationary;
      if (effort == StabilityEffort::first && p.distance > kMarginNewton * decrease &&
          decrease < kSmallDecrease)
        return TrialEnd::above;
    }
    // The step is repeated with a smaller radius until the distance falls.
    for (;;) {
      R8 size2 = 0.0;
      for (int i = 1; i <= n; ++i) {
        size2 += step(i) * step(i);
        const R8 change = step(i) / p.root_w(i);
        next_point.lnW(i) = p.lnW(i) + std::clamp(change, -kLargestChange, kLargestChange);
      }
      if (!evaluate_point(plane, phase::gibbs, PhaseDerivatives::composition, next_point))
        return ended_below ? TrialEnd::below : TrialEnd::failed;
      const R8 gain = p.tm - next_point.tm;
      if (gain > 0.1 * decrease || decrease < 1.0E-12) {
        if (gain > 0.75 * decrease)
          radius = std::min(kLargestRadius, std::max(radius, 2.0 * std::sqrt(size2)));
        break;
      }
      radius = 0.3 * std::sqrt(size2);
      if (radius < 1.0E-9) return ended_below ? TrialEnd::below : TrialEnd::stationary;
      decrease = trust_step(n, second, gradient, radius, step, curbed);
    }
    p = next_point;
  }
  return ended_below ? TrialEnd::below : TrialEnd::failed;
}

}  // namespace

// Follows one trial: substitution, extrapolated where its steps shrink evenly, then Newton steps.
//
// In       plane             the tested phase; its curvature is worked out when it is needed
//          start             how the trial begins
//          effort            first: ends with the first point below the plane
// In/out   point             lnW on entry the start; on exit the last point
TrialEnd run_trial(TangentPlane& plane, const TrialStart& start, StabilityEffort effort, TrialPoint& point) {
  const int n = plane.mixture->n;
  if (start.second_order) {
    if (!evaluate_point(plane, start.root, PhaseDerivatives::composition, point)) return TrialEnd::failed;
    return newton_trial(plane, effort, false, point);
  }
  // A near-pure start stays on its root until the other components have found their shares.
  const int kept = start.pure > 0 ? kRootKept : 1;
  bool below = false;
  bool comparable = false;  // the step before was a plain one
  R8 last2 = 0.0;
  for (int pass = 1; pass <= kSubstitutions; ++pass) {
    if (!evaluate_point(plane, pass <= kept ? start.root : phase::gibbs, PhaseDerivatives::none, point))
      return below ? TrialEnd::below : TrialEnd::failed;
    below = below || is_below(plane, point);
    if (below && effort == StabilityEffort::first) return TrialEnd::below;
    if (pass == 1 && start.pure > 0 && point.residual(start.pure) > kLeastActive) return TrialEnd::above;
    const bool on_gibbs_root = start.root == phase::gibbs || pass > kept;
    if (on_gibbs_root && point.step2 < kConverged2) return below ? TrialEnd::below : TrialEnd::stationary;
    bool failed = false;
    if (!below && pass > 1 && at_known_phase(plane, point, failed)) return TrialEnd::trivial;
    if (failed) return TrialEnd::failed;

    R8 stretch = 1.0;
    bool slow = false;
    if (comparable && point.step2 > 0.0) {
      const Pace pace = compare_steps(n, point, last2);
      if (effort == StabilityEffort::first && ends_above(point, pace.rate)) return TrialEnd::above;
      slow = pass >= 3 && std::fabs(pace.rate) > kSlowRate;
      if (pace.alike > kAlike && pace.rate > 0.0 && pace.rate < kSlowRate) stretch = 1.0 / (1.0 - pace.rate);
    }
    comparable = stretch == 1.0 && on_gibbs_root;
    last2 = point.step2;
    for (int i = 1; i <= n; ++i) {
      previous(i) = point.residual(i);
      point.lnW(i) -= stretch * point.residual(i);
    }
    if (slow) break;
  }
  // Newton steps start from the last substitution.
  if (!evaluate_point(plane, phase::gibbs, PhaseDerivatives::composition, point))
    return below ? TrialEnd::below : TrialEnd::failed;
  return newton_trial(plane, effort, below, point);
}

}  // namespace talix
