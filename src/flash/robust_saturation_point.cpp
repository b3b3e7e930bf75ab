#include <algorithm>
#include <cmath>

#include "engine/codes.h"
#include "fastprops/flash_record.h"
#include "flash/robust_line.h"
#include "flash/robust_saturation.h"

namespace talix {

namespace {

constinit StabilityResult trials{};
constinit RobustPhase lowest{};
constinit RobustSplit isothermal{};
constinit RobustSplit rated{};
constinit CompVec third_lnK{};  // of the phase that would lower the Gibbs energy, the lighter phase on top

constexpr int kIterations = 30;
// A trial this near to the phase in equilibrium is that phase.
constexpr R8 kSameComposition = 1.0E-3;
constexpr R8 kSameVolume = 0.03;  // in ln Z
// A phase below the tangent plane by more than this lowers the Gibbs energy; next to a critical point, where all
// distances are small, by more than the other.
constexpr R8 kDistance = -1.0E-8, kCriticalDistance = -2.0E-10;
constexpr R8 kNearCritical = 0.03;  // of the mole fractions of both phases
constexpr R8 kAlike = 1.0E-4;       // the same: both phases are one
constexpr R8 kLowerRoot = 1.0E-8;   // difference of G/RT that makes another root the lower one
// Difference of fractions that counts as none.
constexpr R8 kSameFraction = 1.0E-9;
constexpr R8 kSameSplit = 1.0E-5;  // the same, of two ways to the split
constexpr R8 kNegligible = 1.0E-30;
constexpr int kThirdPhases = 3;  // followed from one to the next

bool same_phase(I4 n, const StabilityTrial& trial, const RobustPhase& phase) {
  R8 apart = std::fabs(std::log(trial.Z / phase.Z)) * (kSameComposition / kSameVolume);
  for (int i = 1; i <= n; ++i) apart = std::max(apart, std::fabs(trial.w(i) - phase.x(i)));
  return apart < kSameComposition;
}

// Mole fractions within REACH and ln Z within ten times it.
bool are_near(I4 n, const RobustPhase& a, const RobustPhase& b, R8 reach) {
  R8 apart = 0.1 * std::fabs(std::log(a.Z / b.Z));
  for (int i = 1; i <= n; ++i) apart = std::max(apart, std::fabs(a.x(i) - b.x(i)));
  return apart < reach;
}

// No root of the phase's composition has a lower Gibbs energy than the one the phase is on.
bool has_lowest_root(const RobustMixture& mixture, const RobustSplit& split, const RobustPhase& phase_there) {
  evaluate_phase(mixture, split.T, split.P, phase_there.x, phase::gibbs, PhaseDerivatives::none, lowest);
  if (lowest.status != status::ok) return false;
  R8 below = 0.0;
  for (int i = 1; i <= mixture.n; ++i) below += phase_there.x(i) * (phase_there.lnphi(i) - lowest.lnphi(i));
  return below < kLowerRoot;
}

// First trial below the tangent plane that is not the other phase of the split.
const StabilityTrial* foreign_trial(I4 n, const RobustPhase& tested, const RobustPhase& partner) {
  R8 apart = 0.0;
  for (int i = 1; i <= n; ++i) apart = std::max(apart, std::fabs(tested.x(i) - partner.x(i)));
  const bool critical =
      apart < kNearCritical && std::fabs(std::log(tested.Z / partner.Z)) < 10.0 * kNearCritical;
  const R8 limit = critical ? kCriticalDistance : kDistance;
  for (int k = 1; k <= trials.count; ++k)
    if (trials.trials(k).distance < limit && !same_phase(n, trials.trials(k), partner))
      return &trials.trials(k);
  return nullptr;
}

// Split from the phases of the last solved point.
void fill_split(const RobustMixture& mixture, const LinePoint& point, RobustSplit& split) {
  split.answer = Split::two_phases;
  split.T = temperature_of(mixture, point);
  split.P = pressure_of(mixture, point);
  split.fraction = point.fraction;
  split.gibbs = 0.0;
  split.vapour = phase_y();
  split.liquid = phase_x();
  split.third_phase = false;
  split.third_root = phase::none;
  split.unequal = 0.0;
  for (int i = 1; i <= mixture.n; ++i)
    split.unequal = std::max(split.unequal, std::fabs(point.u(i) + phase_y().lnphi(i) - phase_x().lnphi(i)));
  label_phases(mixture, split);
}

}  // namespace

namespace {

// Solves the point on the extreme roots or on those of lowest Gibbs energy; true when it has FRACTION and two phases
// within the limits of the library.
bool solve_on_roots(const RobustMixture& mixture, SaturationGiven given, R8 value, R8 FRACTION,
                    const CompVec& START_LNK, R8 START_VALUE, bool extreme, RobustSplit& split) {
  const bool at_T = given == SaturationGiven::temperature;
  const int held = at_T ? temperature_unknown(mixture) : pressure_unknown(mixture);
  const int free = at_T ? pressure_unknown(mixture) : temperature_unknown(mixture);
  LinePoint point{};
  for (int i = 1; i <= mixture.n; ++i) point.u(i) = START_LNK(i);
  point.u(free) = std::log(START_VALUE);
  point.fraction = FRACTION;
  point.root_x = extreme ? phase::liquid : phase::gibbs;
  point.root_y = extreme ? phase::vapour : phase::gibbs;
  if (solve_point(mixture, held, std::log(value), kIterations, point) != PointAnswer::solved) return false;
  fill_split(mixture, point, split);
  if (!(split.P <= static_cast<R8>(kMaxPressure)) || !(split.T <= static_cast<R8>(kMaxTemperature)))
    return false;
  return !are_near(mixture.n, split.vapour, split.liquid, kAlike) &&
         std::fabs(split.fraction - FRACTION) < kSameFraction;
}

}  // namespace

bool solve_saturation(const RobustMixture& mixture, SaturationGiven given, R8 value, R8 FRACTION,
                      const CompVec& START_LNK, R8 START_VALUE, RobustSplit& split) {
  for (const bool extreme : {true, false})
    if (solve_on_roots(mixture, given, value, FRACTION, START_LNK, START_VALUE, extreme, split) &&
        !split.two_liquids)
      return true;
  return false;
}

bool solve_liquids(const RobustMixture& mixture, SaturationGiven given, R8 value, R8 FRACTION,
                   const CompVec& START_LNK, R8 START_VALUE, RobustSplit& split) {
  for (const bool extreme : {true, false})
    if (solve_on_roots(mixture, given, value, FRACTION, START_LNK, START_VALUE, extreme, split) &&
        split.two_liquids)
      return true;
  return false;
}

namespace {

// Tangent-plane test of the phase that is there, the feed's own side at a saturation point; sets third_phase and
// third_root.
Stability test_saturated(const RobustMixture& mixture, RobustSplit& split) {
  const bool test_vapour = split.fraction > 0.5;
  const RobustPhase& tested = test_vapour ? split.vapour : split.liquid;
  const RobustPhase& partner = test_vapour ? split.liquid : split.vapour;
  split.third_phase = false;
  test_stability(mixture, split.T, split.P, tested, StabilityEffort::full, trials);
  if (trials.answer == Stability::unsettled) return Stability::unsettled;
  const StabilityTrial* foreign = foreign_trial(mixture.n, tested, partner);
  if (foreign == nullptr) return Stability::stable;
  split.third_phase = true;
  split.third_root = foreign->root;
  const R8 sign = test_vapour ? -1.0 : 1.0;
  for (int i = 1; i <= mixture.n; ++i) third_lnK(i) = sign * foreign->lnK(i);
  return Stability::unstable;
}

// May an unstable state be told at all?
bool stands_unstable(const RobustMixture& mixture, const RobustSplit& split) {
  if (!(split.fraction < 1.0)) return false;
  if (!(split.fraction > 0.0) && split.third_root != phase::liquid) return false;
  return !are_near(mixture.n, split.vapour, split.liquid, kNearCritical) &&
         has_lowest_root(mixture, split, split.vapour) && has_lowest_root(mixture, split, split.liquid);
}

bool is_lowest_pair(const RobustMixture& mixture, const RobustSplit& split) {
  if (!(split.fraction > 0.0)) return false;
  robust_isothermal(mixture, split.T, split.P, nullptr, isothermal);
  return isothermal.answer == Split::two_phases && !isothermal.two_liquids &&
         std::fabs(isothermal.fraction - split.fraction) < kSameSplit;
}

}  // namespace

namespace {

bool rate(const RobustMixture& mixture, SaturationResult& result) {
  const Stability stability = test_saturated(mixture, rated);
  if (stability == Stability::unsettled) return false;
  const bool unstable = stability == Stability::unstable;
  if (unstable && (rated.two_liquids || !stands_unstable(mixture, rated))) return false;
  result.answer = Saturation::found;
  result.limit = 0.0;
  result.unstable = unstable;
  result.rank = rated.two_liquids                ? standing::two_liquids
                : !unstable                      ? standing::stable
                : is_lowest_pair(mixture, rated) ? standing::lowest_pair
                                                 : standing::metastable;
  result.split = rated;
  return true;
}

// From a dew point of an unstable vapour to that of the liquid that would form before, and likewise from a bubble
// point to that of another vapour.
bool follow_third_phase(const RobustMixture& mixture, SaturationGiven given) {
  const bool bubble = !(rated.fraction > 0.0);
  if (!rated.third_phase || (!bubble && rated.fraction < 1.0)) return false;
  if (bubble == (rated.third_root == phase::liquid)) return false;
  const bool at_T = given == SaturationGiven::temperature;
  const R8 value = at_T ? rated.T : rated.P, start = at_T ? rated.P : rated.T;
  return solve_saturation(mixture, given, value, rated.fraction, third_lnK, start, rated);
}

}  // namespace

// rate_saturation: stability of a saturated state against every phase but its own two.
//
// In       split   solved at the given T or P
// Out      result  found with its standing, split.third_phase and third_root; the point of the third phase instead
//                  where that one is stable; untouched when there is no answer
bool rate_saturation(const RobustMixture& mixture, SaturationGiven given, const RobustSplit& split,
                     SaturationResult& result) {
  rated = split;
  bool found = rate(mixture, result);
  for (int step = 0; step < kThirdPhases; ++step) {
    if (found && !result.unstable) return true;
    if (!follow_third_phase(mixture, given)) return found;
    found = rate(mixture, result) || found;
  }
  return found;
}

bool is_better_saturation(SaturationGiven given, R8 START, const SaturationResult& a,
                          const SaturationResult& b) {
  if (a.answer != Saturation::found || b.answer != Saturation::found) return a.answer == Saturation::found;
  if (a.rank != b.rank) return a.rank < b.rank;
  if (given == SaturationGiven::pressure) return std::fabs(a.split.T - START) < std::fabs(b.split.T - START);
  const R8 start = std::max(START, kNegligible);
  return std::fabs(std::log(a.split.P / start)) < std::fabs(std::log(b.split.P / start));
}

}  // namespace talix
