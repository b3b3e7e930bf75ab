#include <algorithm>
#include <cmath>

#include "engine/codes.h"
#include "flash/robust_fractions.h"
#include "flash/robust_newton.h"
#include "flash/robust_split.h"

namespace talix {

namespace {

// Substitutions before the first Newton step, and before a split that keeps lying outside 0..1 is given up.
constexpr int kSubstitutions = 4;
constexpr int kOutsideSubstitutions = 60;
constexpr R8 kShortestPart = 1.0E-6;
constexpr int kMaxNewtonSteps = 100;
// Shorter steps tried in place of one that does not descend.
constexpr int kMaxAttempts = 14;
// Trust radius in scaled flows: at first, its largest value, and how it shrinks and grows.
constexpr R8 kFirstRadius = 0.5;
constexpr R8 kLargestRadius = 2.0;
constexpr R8 kRadiusShrinks = 0.25;
constexpr R8 kRadiusGrows = 3.0;
// Share of the predicted descent above which the radius grows.
constexpr R8 kGoodDescent = 0.5;
// Largest change of ln K in one step, but for a trace: a component whose flows differ by more than exp of the
// second may change freely while it stays one, and comes back to exp of the third at once.
constexpr R8 kLongestStep = 50.0;
constexpr R8 kTraceRatio = 40.0;
constexpr R8 kTraceReturn = 30.0;
// A state is converged when the fugacities agree so far and no Newton step would move it by more.
constexpr R8 kEqual = 1.0E-10;
constexpr R8 kStill = 1.0E-7;
// What may be left in ln f where rounding stops the descent.
constexpr R8 kNearlyEqual = 1.0E-7;
// A polish ends with a Newton step whose end is not evaluated when the fugacities agree so far and the step is no longer
// in any ln K, which leaves its square, and some |ln K| is above the second.
constexpr R8 kShortStep = 5.0E-5;
constexpr R8 kFarFromCritical = 1.0;
// Phases nearer than this in every ln K and in the compressibility factor are the same phase.
constexpr R8 kTrivial = 1.0E-5;
// Differences in Gibbs energy that may be rounding: those below the first mostly are not, those above the
// second never.
constexpr R8 kGibbsDescent = 1.0E-14;
constexpr R8 kGibbsNoise = 2.0E-12;

struct Work {
  CompVec lnf;       // ln fugacity of the feed less ln P
  CompVec lnK;       // accepted state
  CompVec trial;     // state being tried
  CompVec residual;  // differences in ln f, lighter less denser phase, at the accepted state
  CompVec step;      // in ln K, of a substitution
  GibbsStep newton;
  SplitFractions at;                    // of the state being tried
  CompVec lnphi_lighter, lnphi_denser;  // of take_compositions
  RobustPhase feed;                     // of converge_split
  FractionRange range;
  R8 T, P;
};
constinit Work work{};

// Gibbs energy of the split less that of the feed, over RT.
R8 gibbs_of_split(int n, const CompVec& lnK, const RobustSplit& split) {
  R8 lighter = 0.0, denser = 0.0;
  for (int i = 1; i <= n; ++i) {
    const R8 y = split.vapour.x(i);
    const R8 x = split.liquid.x(i);
    // The composition with more digits tells the logarithm of the other.
    const R8 lnx = x > y ? std::log(x) : std::log(y) - lnK(i);
    lighter += y * (lnx + lnK(i) + split.vapour.lnphi(i) - work.lnf(i));
    denser += x * (lnx + split.liquid.lnphi(i) - work.lnf(i));
  }
  return work.at.vapour * lighter + work.at.liquid * denser;
}

// Fractions, phases and Gibbs energy at LNK; false when the engine fails or the budget is used up.
bool evaluate_state(const RobustMixture& mixture, const CompVec& lnK, PhaseDerivatives derivatives,
                    RobustSplit& split) {
  work.range = split_fractions(mixture, lnK, work.at);
  split.fraction = work.at.vapour;
  evaluate_phase(mixture, work.T, work.P, work.at.y, phase::gibbs, derivatives, split.vapour);
  if (split.vapour.status != status::ok) return false;
  evaluate_phase(mixture, work.T, work.P, work.at.x, phase::gibbs, derivatives, split.liquid);
  if (split.liquid.status != status::ok) return false;
  split.gibbs = work.range == FractionRange::inside ? gibbs_of_split(mixture.n, lnK, split) : 0.0;
  return true;
}

R8 largest(int n, const CompVec& v) {
  R8 result = 0.0;
  for (int i = 1; i <= n; ++i) result = std::max(result, std::fabs(v(i)));
  return result;
}

// Takes the tried state as the accepted one.
void accept(const RobustMixture& mixture, RobustSplit& split) {
  for (int i = 1; i <= mixture.n; ++i) {
    work.lnK(i) = work.trial(i);
    work.residual(i) = work.lnK(i) + split.vapour.lnphi(i) - split.liquid.lnphi(i);
  }
  split.unequal = largest(mixture.n, work.residual);
}

R8 unequal_of_trial(const RobustMixture& mixture, const RobustSplit& split) {
  R8 result = 0.0;
  for (int i = 1; i <= mixture.n; ++i)
    result = std::max(result, std::fabs(work.trial(i) + split.vapour.lnphi(i) - split.liquid.lnphi(i)));
  return result;
}

bool is_trivial(const RobustMixture& mixture, const RobustSplit& split) {
  return largest(mixture.n, work.lnK) < kTrivial && std::fabs(split.vapour.Z - split.liquid.Z) < kTrivial;
}

// The part of a change of ln K that is taken; RATIO is ln of the component's flow in the lighter over the
// denser phase.
R8 limited(R8 ratio, R8 change) {
  if (ratio > kTraceRatio) return std::max(change, kTraceReturn - ratio);
  if (ratio < -kTraceRatio) return std::min(change, -kTraceReturn - ratio);
  return std::clamp(change, -kLongestStep, kLongestStep);
}

// The state LENGTH of a step away from the accepted one, whose phase fraction is FRACTION.
void set_trial(int n, const CompVec& step, R8 fraction, R8 length) {
  const R8 totals = fraction > 0.0 && fraction < 1.0 ? std::log(fraction / (1.0 - fraction)) : 0.0;
  for (int i = 1; i <= n; ++i) work.trial(i) = work.lnK(i) + length * limited(work.lnK(i) + totals, step(i));
}

void retake_accepted(int n) {
  for (int i = 1; i <= n; ++i) work.trial(i) = work.lnK(i);
}

// Plain substitutions. True when the state is one that Newton steps can take up; false with the answer
// otherwise.
bool substitute(const RobustMixture& mixture, RobustSplit& split) {
  const int n = mixture.n;
  int inside = 0;
  for (int pass = 1; pass <= kOutsideSubstitutions; ++pass) {
    if (work.range == FractionRange::inside) inside = inside + 1;
    if (is_trivial(mixture, split)) {
      split.answer = Split::trivial;
      return false;
    }
    const bool last = inside >= kSubstitutions;
    if (last || (inside > 0 && split.unequal < kEqual)) {
      if (split.vapour.known == PhaseDerivatives::composition) return true;
      // The same state again, now with derivatives.
      retake_accepted(n);
      return evaluate_state(mixture, work.trial, PhaseDerivatives::composition, split);
    }
    for (int i = 1; i <= n; ++i) work.step(i) = -work.residual(i);
    const R8 gibbs = split.gibbs;
    const R8 fraction = split.fraction;
    R8 length = 1.0;
    set_trial(n, work.step, fraction, length);
    // A state inside is never left again.
    while (inside > 0 && length > kShortestPart &&
           split_fractions(mixture, work.trial, work.at) != FractionRange::inside) {
      length *= 0.5;
      set_trial(n, work.step, fraction, length);
    }
    const bool next_last = inside + 1 >= kSubstitutions;
    const PhaseDerivatives wanted = next_last ? PhaseDerivatives::composition : PhaseDerivatives::none;
    if (!evaluate_state(mixture, work.trial, wanted, split)) return false;
    if (inside > 0 && split.gibbs > gibbs + kGibbsNoise) {
      retake_accepted(n);
      return evaluate_state(mixture, work.trial, PhaseDerivatives::composition, split);
    }
    accept(mixture, split);
  }
  split.answer = Split::one_phase;
  return false;
}

// One step within the radius that descends. False when there is none, with the accepted state evaluated
// again.
bool descend(const RobustMixture& mixture, R8& radius, RobustSplit& split) {
  const int n = mixture.n;
  GibbsStep& newton = work.newton;
  const R8 gibbs = split.gibbs;
  const R8 unequal = split.unequal;
  const R8 fraction = split.fraction;
  for (int attempt = 1; attempt <= kMaxAttempts; ++attempt) {
    if (attempt > 1) gibbs_step(n, radius, newton);
    set_trial(n, newton.lnK, fraction, 1.0);
    if (split_fractions(mixture, work.trial, work.at) == FractionRange::inside) {
      if (!evaluate_state(mixture, work.trial, PhaseDerivatives::composition, split)) return false;
      const bool lower = split.gibbs < gibbs - kGibbsDescent;
      const bool level = split.gibbs <= gibbs + kGibbsNoise;
      if (lower || (level && unequal_of_trial(mixture, split) < unequal)) {
        if (gibbs - split.gibbs > kGoodDescent * newton.decrease && newton.curbed)
          radius = std::min(kLargestRadius, kRadiusGrows * radius);
        return true;
      }
    }
    radius = kRadiusShrinks * std::min(radius, newton.length);
  }
  retake_accepted(n);
  if (!evaluate_state(mixture, work.trial, PhaseDerivatives::composition, split)) return false;
  split.answer = split.unequal < kNearlyEqual ? Split::two_phases : Split::unsettled;
  return false;
}

void newton_to_equilibrium(const RobustMixture& mixture, RobustSplit& split) {
  R8 radius = kFirstRadius;
  for (int pass = 1; pass <= kMaxNewtonSteps; ++pass) {
    if (is_trivial(mixture, split)) {
      split.answer = Split::trivial;
      return;
    }
    form_gibbs_hessian(mixture, split, work.residual);
    gibbs_step(mixture.n, radius, work.newton);
    if (split.unequal < kEqual && !work.newton.curbed && largest(mixture.n, work.newton.lnK) < kStill) {
      split.answer = Split::two_phases;
      return;
    }
    if (!descend(mixture, radius, split)) return;
    accept(mixture, split);
  }
  if (split.unequal < kNearlyEqual) split.answer = Split::two_phases;
}

// ln phi at the composition X to first order.
void extrapolate(int n, const RobustPhase& phase, const CompVec& x, CompVec& lnphi) {
  for (int i = 1; i <= n; ++i) lnphi(i) = phase.lnphi(i);
  for (int j = 1; j <= n; ++j) {
    const R8 change = x(j) - phase.x(j);
    for (int i = 1; i <= n; ++i) lnphi(i) += phase.lnphi_n(i, j) * change;
  }
}

// The compositions of the tried state without an evaluation, ln phi to first order; false when the fugacities differ
// too much by that.
bool take_compositions(int n, RobustSplit& split) {
  extrapolate(n, split.vapour, work.at.y, work.lnphi_lighter);
  extrapolate(n, split.liquid, work.at.x, work.lnphi_denser);
  R8 unequal = 0.0;
  for (int i = 1; i <= n; ++i)
    unequal = std::max(unequal, std::fabs(work.trial(i) + work.lnphi_lighter(i) - work.lnphi_denser(i)));
  if (!(unequal < kNearlyEqual)) return false;
  split.answer = Split::two_phases;
  split.fraction = work.at.vapour;
  split.unequal = unequal;
  for (int i = 1; i <= n; ++i) {
    split.vapour.x(i) = work.at.y(i);
    split.vapour.lnphi(i) = work.lnphi_lighter(i);
    split.liquid.x(i) = work.at.x(i);
    split.liquid.lnphi(i) = work.lnphi_denser(i);
  }
  return true;
}

// What a split starts as, and the feed that its Gibbs energy refers to.
void open_split(const RobustMixture& mixture, R8 T, R8 P, const CompVec& lnK, const RobustPhase& feed,
                RobustSplit& split) {
  split.answer = Split::unsettled;
  split.T = work.T = T;
  split.P = work.P = P;
  split.two_liquids = split.third_phase = false;
  split.third_root = phase::none;
  split.gibbs = split.unequal = 0.0;
  for (int i = 1; i <= mixture.n; ++i) {
    work.lnf(i) = std::log(mixture.z(i)) + feed.lnphi(i);
    work.trial(i) = lnK(i);
  }
}

// The compositions after one more step from the accepted state, when it is so short that its end needs no evaluation.
bool take_last_step(const RobustMixture& mixture, RobustSplit& split) {
  const int n = mixture.n;
  if (!(largest(n, work.lnK) > kFarFromCritical) || !(split.unequal < kShortStep)) return false;
  form_gibbs_hessian(mixture, split, work.residual);
  gibbs_step(n, kFirstRadius, work.newton);
  if (work.newton.curbed || !(largest(n, work.newton.lnK) < kShortStep)) return false;
  set_trial(n, work.newton.lnK, split.fraction, 1.0);
  return split_fractions(mixture, work.trial, work.at) == FractionRange::inside &&
         take_compositions(n, split);
}

}  // namespace

// converge_from: the split that start values of ln K lead to, with the feed at hand.
//
// In       lnK     ln of the lighter over the denser phase's mole fractions
//          feed    the feed as one phase at T, P, of lowest Gibbs energy
// Out      split   two_phases: all fields but those of label_phases and of a third phase; one_phase: the start values
//                  lead to no split of this feed; trivial; unsettled
void converge_from(const RobustMixture& mixture, R8 T, R8 P, const CompVec& lnK, const RobustPhase& feed,
                   RobustSplit& split) {
  open_split(mixture, T, P, lnK, feed, split);
  if (!evaluate_state(mixture, work.trial, PhaseDerivatives::none, split)) return;
  accept(mixture, split);
  if (!substitute(mixture, split)) return;
  accept(mixture, split);
  newton_to_equilibrium(mixture, split);
}

// polish_split: a split that is nearly converged, brought to the end.
//
// In       lnK, feed  as in converge_from
// Out      split      as there. Where the fugacities agree closely and the phases are far apart the last step is one
//                     whose end is not evaluated: ln phi and unequal are those of the end to first order, Z, gibbs and
//                     the derivatives those before it
void polish_split(const RobustMixture& mixture, R8 T, R8 P, const CompVec& lnK, const RobustPhase& feed,
                  RobustSplit& split) {
  open_split(mixture, T, P, lnK, feed, split);
  if (!evaluate_state(mixture, work.trial, PhaseDerivatives::composition, split)) return;
  accept(mixture, split);
  if (work.range != FractionRange::inside)
    split.answer = Split::one_phase;
  else if (!take_last_step(mixture, split))
    newton_to_equilibrium(mixture, split);
}

// converge_split: the same without the feed at hand, at one evaluation more.
void converge_split(const RobustMixture& mixture, R8 T, R8 P, const CompVec& lnK, RobustSplit& split) {
  evaluate_phase(mixture, T, P, mixture.z, phase::gibbs, PhaseDerivatives::none, work.feed);
  split.answer = Split::unsettled;
  if (work.feed.status == status::ok) converge_from(mixture, T, P, lnK, work.feed, split);
}

}  // namespace talix
