#include <algorithm>
#include <cmath>

#include "engine/codes.h"
#include "fastprops/flash_record.h"
#include "flash/robust_saturation.h"

namespace talix {

namespace {

constinit RobustPhase feed{};
constinit RobustPhase twin{};
constinit StabilityResult trials{};

// Below this pressure no line has two temperatures of one kind [bar]: critical pressures are above it.
constexpr R8 kNeverRetrograde = 2.0;
constexpr R8 kTwoRoots = 0.1;  // in ln Z
// Temperatures, over the mean critical one, at which two roots are looked for.
constexpr R8 kSubcritical[] = {0.95, 0.88, 0.8, 0.7};

// Slope, with ln P or ln T, of the tangent-plane distance of the incipient phase: the feed is unstable where it falls.
R8 distance_slope(const RobustMixture& mixture, bool at_T, const RobustPhase& incipient,
                  const RobustPhase& own) {
  R8 slope = 0.0;
  for (int i = 1; i <= mixture.n; ++i)
    slope += incipient.x(i) *
             (at_T ? incipient.lnphi_P(i) - own.lnphi_P(i) : incipient.lnphi_T(i) - own.lnphi_T(i));
  return slope;
}

// The mixture at the given state below its pseudo-critical temperature: a single root there is told apart.
bool below_pseudo_critical(const RobustMixture& mixture, R8 T, R8 P) {
  evaluate_phase(mixture, T, P, mixture.z, phase::liquid, PhaseDerivatives::none, feed);
  return feed.status == status::ok && !feed.single;
}

bool has_two_roots(const RobustMixture& mixture, R8 T, R8 P) {
  evaluate_phase(mixture, T, P, mixture.z, phase::liquid, PhaseDerivatives::none, feed);
  evaluate_phase(mixture, T, P, mixture.z, phase::vapour, PhaseDerivatives::none, twin);
  return feed.status == status::ok && twin.status == status::ok && std::log(twin.Z / feed.Z) > kTwoRoots;
}

// Below the pressure at which the two roots of the mixture meet: critical pressures are above it.
bool below_pseudo_critical_pressure(const RobustMixture& mixture, R8 P) {
  R8 mean = 0.0;
  for (int i = 1; i <= mixture.n; ++i) mean += mixture.z(i) * static_cast<R8>(fl.TC(mixture.at(i)));
  for (const R8 share : kSubcritical)
    if (has_two_roots(mixture, share * mean, P)) return true;
  return false;
}

bool splits(const RobustMixture& mixture, R8 T, R8 P) {
  evaluate_phase(mixture, T, P, mixture.z, phase::gibbs, PhaseDerivatives::none, feed);
  if (feed.status != status::ok) return false;
  test_stability(mixture, T, P, feed, StabilityEffort::first, trials);
  return trials.answer == Stability::unstable;
}

// Into a vapour and a liquid.
bool boils(const RobustMixture& mixture, R8 T, R8 P) {
  if (!splits(mixture, T, P)) return false;
  const StabilityTrial& trial = trials.trials(1);
  const bool feed_liquid = feed.root == phase::liquid && !feed.single;
  const bool trial_liquid = trial.root == phase::liquid && !trial.single;
  return !feed_liquid || !trial_liquid;
}

}  // namespace

// is_nearest_to_start: by the side of START on which the two-phase region of the point lies.
//
// In       split  a saturated state at the given T or P, its phases with derivatives
// Status   true when told so; false when another state of the kind may be nearer
bool is_nearest_to_start(const RobustMixture& mixture, SaturationGiven given, R8 START,
                         const RobustSplit& split) {
  const bool at_T = given == SaturationGiven::temperature;
  const bool bubble = !(split.fraction > 0.0);
  const bool saturated = bubble || !(split.fraction < 1.0);
  // Seen from the point, its two-phase region lies where the slope points down.
  const R8 here = at_T ? std::log(split.P) : split.T;
  const R8 start = at_T ? std::log(START) : START;
  R8 slope = 0.0;
  if (saturated)
    slope = bubble ? distance_slope(mixture, at_T, split.vapour, split.liquid)
                   : distance_slope(mixture, at_T, split.liquid, split.vapour);
  const bool outside = saturated && (start - here) * slope >= 0.0;
  const R8 mirror = 2.0 * start - here;
  // Gases that dissolve better with rising temperature leave the liquid once more on cooling.
  if (!at_T && bubble && outside)
    return !boils(mixture, START, split.P) && !boils(mixture, std::max(mirror, kLowestSaturation), split.P);
  if (!at_T && split.P < kNeverRetrograde) return true;
  // Below the pseudo-critical temperature or pressure one end of the two-phase region is a bubble point and the
  // other a dew point.
  if (at_T && below_pseudo_critical(mixture, split.T, static_cast<R8>(kMaxPressure))) return true;
  if (!at_T && below_pseudo_critical_pressure(mixture, split.P)) return true;
  if (!saturated) return false;
  if (outside) return true;
  if (at_T) return boils(mixture, split.T, std::min(std::exp(mirror), static_cast<R8>(kMaxPressure)));
  return boils(mixture, std::max(mirror, kLowestSaturation), split.P);
}

}  // namespace talix
