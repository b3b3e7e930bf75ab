#include "flash/robust_trial.h"

#include <algorithm>
#include <cmath>
#include <utility>

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
constexpr R8 kNoPoint = 1.0E300;    // above any distance

// Points that other trials of the same plane have passed on their way to nothing new.
constexpr int kMostPassed = 60;
// A trial joins another one where it comes this near, squared, to a straight part of its way, against its length.
constexpr R8 kJoins = 0.04;
struct Passed {
  int count;                         // of points of ended trials
  int open;                          // and those of the trial in hand
  Vec<CompVec, kMostPassed> root_w;  // square roots of the mole numbers
  Vec<R8, kMostPassed> step2;        // squared length of the step from there [-]
  Vec<bool, kMostPassed> goes_on;    // to the next point
};
constinit Passed passed{};

constinit TrialPoint spare{};
constinit CompMat second{};
constinit CompVec gradient{}, step{}, previous{}, low{};

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

void note_passed(I4 n, const TrialPoint& p) {
  if (passed.open >= kMostPassed) return;
  if (passed.open > passed.count) passed.goes_on(passed.open) = true;
  passed.open = passed.open + 1;
  for (int i = 1; i <= n; ++i) passed.root_w(passed.open)(i) = p.root_w(i);
  passed.step2(passed.open) = p.step2;
  passed.goes_on(passed.open) = false;
}

// True when the point with these roots lies at point K of an ended trial or between it and the next one.
bool lies_on_way(I4 n, const CompVec& root, int k) {
  R8 apart2 = 0.0, along = 0.0, length2 = 0.0;
  const int next = passed.goes_on(k) ? k + 1 : k;
  for (int i = 1; i <= n; ++i) {
    const R8 apart = 2.0 * (root(i) - passed.root_w(k)(i));
    const R8 way = 2.0 * (passed.root_w(next)(i) - passed.root_w(k)(i));
    apart2 += apart * apart;
    along += apart * way;
    length2 += way * way;
  }
  if (apart2 < kJoins * passed.step2(k)) return true;
  return along > 0.0 && along < length2 && apart2 - along * along / length2 < kJoins * length2;
}

// True when the point at lnW lies on the way of an ended trial.
bool joins_another(I4 n, const CompVec& lnW) {
  if (passed.count == 0) return false;
  static constinit CompVec root{};
  for (int i = 1; i <= n; ++i) root(i) = std::exp(0.5 * lnW(i));
  for (int k = 1; k <= passed.count; ++k)
    if (lies_on_way(n, root, k)) return true;
  return false;
}

// All but the composition derivatives of the phase.
void copy_point(I4 n, const TrialPoint& from, TrialPoint& to) {
  for (int i = 1; i <= n; ++i) {
    to.lnW(i) = from.lnW(i);
    to.root_w(i) = from.root_w(i);
    to.residual(i) = from.residual(i);
    to.phase.x(i) = from.phase.x(i);
    to.phase.lnphi(i) = from.phase.lnphi(i);
  }
  to.tm = from.tm;
  to.distance = from.distance;
  to.step2 = from.step2;
  to.phase.Z = from.phase.Z;
  to.phase.root = from.phase.root;
  to.phase.single = from.phase.single;
  to.phase.status = from.phase.status;
  to.phase.known = PhaseDerivatives::none;
}

R8 total_of(I4 n, const TrialPoint& p) {
  R8 total = 0.0;
  for (int i = 1; i <= n; ++i) total += p.root_w(i) * p.root_w(i);
  return total;
}

// Newton steps in ln W under a trust radius, measured in 2 sqrt(W). The point carries its derivatives. JOINS: the trial
// ends where it joins the way of another one.
TrialEnd newton_steps(TangentPlane& plane, StabilityEffort effort, bool joins, bool ended_below,
                      TrialPoint*& now, TrialPoint*& next) {
  const int n = plane.mixture->n;
  const R8 scale = std::sqrt(std::max(1.0, total_of(n, *now)));
  R8 radius = kFirstRadius * scale;
  for (int pass = 1; pass <= kNewtonSteps; ++pass) {
    const TrialPoint& p = *now;
    ended_below = ended_below || is_below(plane, p);
    if (ended_below && effort == StabilityEffort::first) return TrialEnd::below;
    bool failed = false;
    if (!ended_below && at_known_phase(plane, p, failed)) return TrialEnd::trivial;
    if (failed) return TrialEnd::failed;
    if (!ended_below) note_passed(n, p);

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
        next->lnW(i) = p.lnW(i) + std::clamp(change, -kLargestChange, kLargestChange);
      }
      if (!ended_below && joins && joins_another(n, next->lnW)) return TrialEnd::trivial;
      if (!evaluate_point(plane, phase::gibbs, PhaseDerivatives::composition, *next))
        return ended_below ? TrialEnd::below : TrialEnd::failed;
      const R8 gain = p.tm - next->tm;
      if (gain > 0.1 * decrease || decrease < 1.0E-12) {
        if (gain > 0.75 * decrease)
          radius = std::min(kLargestRadius * scale, std::max(radius, 2.0 * std::sqrt(size2)));
        break;
      }
      radius = 0.3 * std::sqrt(size2);
      if (radius < 1.0E-9) return ended_below ? TrialEnd::below : TrialEnd::stationary;
      decrease = trust_step(n, second, gradient, radius, step, curbed);
    }
    std::swap(now, next);
  }
  return ended_below ? TrialEnd::below : TrialEnd::failed;
}

// The same from POINT, which is the last point afterwards, without derivatives.
TrialEnd newton_trial(TangentPlane& plane, StabilityEffort effort, bool joins, bool below,
                      TrialPoint& point) {
  TrialPoint* now = &point;
  TrialPoint* next = &spare;
  const TrialEnd end = newton_steps(plane, effort, joins, below, now, next);
  if (now != &point) copy_point(plane.mixture->n, *now, point);
  return end;
}

// Substitution, extrapolated where its steps shrink evenly, then Newton steps.
TrialEnd substitute(TangentPlane& plane, const TrialStart& start, StabilityEffort effort, TrialPoint& point) {
  const int n = plane.mixture->n;
  // A near-pure start stays on its root until the other components have found their shares.
  const int kept = start.pure > 0 ? kRootKept : 1;
  bool below = false;
  bool comparable = false;  // the step before was a plain one
  R8 last2 = 0.0;
  R8 lowest = kNoPoint;  // tm of the point in LOW
  for (int pass = 1; pass <= kSubstitutions; ++pass) {
    if (!evaluate_point(plane, pass <= kept ? start.root : phase::gibbs, PhaseDerivatives::none, point))
      return below ? TrialEnd::below : TrialEnd::failed;
    below = below || is_below(plane, point);
    if (below && effort == StabilityEffort::first) return TrialEnd::below;
    // Where the components attract each other, substitution may leave a valley for the tested phase.
    if (point.tm > lowest) {
      for (int i = 1; i <= n; ++i) point.lnW(i) = low(i);
      break;
    }
    if ((below || (start.pure > 0 && pass == 1)) && point.tm < lowest) {
      lowest = point.tm;
      const R8 best_total = std::log1p(-point.distance) - std::log(total_of(n, point));
      for (int i = 1; i <= n; ++i) low(i) = point.lnW(i) + best_total;
    }
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
    if (on_gibbs_root && !below) note_passed(n, point);
    if ((start.root == phase::gibbs || pass >= kept) && joins_another(n, point.lnW))
      return below ? TrialEnd::below : TrialEnd::trivial;
    if (slow) break;
  }
  // Newton steps start from the last substitution.
  if (!evaluate_point(plane, phase::gibbs, PhaseDerivatives::composition, point))
    return below ? TrialEnd::below : TrialEnd::failed;
  return newton_trial(plane, effort, true, below, point);
}

}  // namespace

void forget_trials() { passed.count = 0; }

// Follows one trial: substitution, extrapolated where its steps shrink evenly, then Newton steps.
//
// In       plane             the tested phase; its curvature is worked out when it is needed
//          start             how the trial begins
//          effort            first: ends with the first point below the plane
// In/out   point             lnW on entry the start; on exit the last point
TrialEnd run_trial(TangentPlane& plane, const TrialStart& start, StabilityEffort effort, TrialPoint& point) {
  passed.open = passed.count;
  TrialEnd end = TrialEnd::failed;
  if (!start.second_order)
    end = substitute(plane, start, effort, point);
  else if (evaluate_point(plane, start.root, PhaseDerivatives::composition, point))
    // A trial along the soft direction joins no other: behind a low ridge only it leads to the phase in equilibrium.
    end = newton_trial(plane, effort, false, false, point);
  if (end != TrialEnd::failed) passed.count = passed.open;
  return end;
}

}  // namespace talix
