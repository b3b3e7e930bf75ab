#include "flash/robust_third_phase.h"

#include <algorithm>
#include <cmath>

#include "engine/codes.h"
#include "fastprops/flash_record.h"
#include "flash/robust_estimates.h"
#include "flash/robust_plane.h"
#include "flash/robust_symmetric.h"

namespace talix {

namespace {

// Components count towards a second liquid when their activity is this much above their mole fraction. Their
// activities have to add up to the third.
constexpr R8 kSlightExcess = 1.2;
constexpr R8 kExcess = 1.5;
constexpr R8 kActivitySum = 0.3;
// A smallest eigenvalue of the second derivatives of the mixing energy, 1 in an ideal liquid and 0 at a spinodal,
// rules a second liquid out when it is above the first, plus the second times these activities. In place of the first:
// the third where the activities add up to more than the fourth, the fifth where the highest is more than the last
// times its mole fraction.
constexpr R8 kSoftLiquid = 0.3;
constexpr R8 kSoftByActivity = 0.4;
constexpr R8 kSoftActive = 0.42;
constexpr R8 kActive = 0.5;
constexpr R8 kSoftHeldBack = 0.47;
constexpr R8 kHeldBack = 20.0;
// Not so beside a vapour that is nearer than these in 2 sqrt(x) and ln Z, when the liquid itself has at least the third
// as eigenvalue, and across the line to the vapour the fourth plus the fifth times the activities, and no activity of
// the sixth is more than the last times its mole fraction: of 1980 third phases none was lost.
constexpr R8 kNear = 0.8;
constexpr R8 kNearLnZ = 1.0;
constexpr R8 kLeastNear = 0.05;
constexpr R8 kSoftAcross = 0.7;
constexpr R8 kSoftAcrossByActivity = 0.5;
constexpr R8 kFairActivity = 0.05;
constexpr R8 kNearRatio = 3.0;
// Colder than the first against the critical temperature of the heaviest component a liquid or a vapour so soft is
// enough, whatever the activities and the vapour say: of 226 third phases that these had hidden none was lost.
constexpr R8 kCold = 0.57;
constexpr R8 kSoftColdLiquid = 0.4;
constexpr R8 kSoftColdVapour = 0.3;
// Beside a phase softer than the first the quick test may run by a third phase, and beside a liquid with components that
// mix badly softer than the second, where the activities of the others add up to more than the third: so were 173 of 204
// third phases that it missed, among 168000.
constexpr R8 kSoftFull = 0.2;
constexpr R8 kSoftBadlyMixing = 0.65;
constexpr R8 kActiveBadlyMixing = 0.4;
// In a very cold liquid any component of this activity may lead another one.
constexpr R8 kColdLiquid = 0.4;
constexpr R8 kColdActivity = 0.5;
// Hotter than this against the critical temperature of the heaviest component, hydrocarbons and gases form no two
// liquids.
constexpr R8 kHottest = 0.7;
// For components that mix badly with hydrocarbons the estimate is too rough: they count from this mole
// fraction or activity.
constexpr R8 kLeastShare = 1.0E-3;
constexpr R8 kLeastActivity = 0.02;
// But a liquid that holds more of a single one than the first stays alone with its vapour where the activities of the
// others add up to no more than the second and its smallest eigenvalue is no less than the third: of 12800 third phases
// none was lost.
constexpr R8 kLedShare = 0.9;
constexpr R8 kLedSlight = 0.1;
constexpr R8 kLedSoft = 0.8;

// A phase with a mole fraction below this knows too little of the tangent plane to be the one that is tested.
constexpr R8 kLostShare = 1.0E-30;

struct Work {
  CompMat curvature;
  CompMat factor;
  RobustPhase phase;
  CompVec pure;       // ln phi of the pure liquids
  CompVec direction;  // from the liquid to the vapour
  CompVec product;    // of the curvature and that
};
constinit Work work{};

// Second derivatives of the mixing energy of a phase; false when the engine cannot tell.
bool curve(const RobustMixture& mixture, const RobustSplit& split, const RobustPhase& phase) {
  const RobustPhase* at = &phase;
  if (at->known == PhaseDerivatives::none) {
    evaluate_phase(mixture, split.T, split.P, phase.x, phase::gibbs, PhaseDerivatives::composition,
                   work.phase);
    if (work.phase.status != status::ok) return false;
    at = &work.phase;
  }
  fill_second(mixture.n, *at, work.curvature);
  return true;
}

// True when the smallest eigenvalue of the phase curved last is below LEAST.
bool is_soft(int n, R8 LEAST) { return !cholesky_factor(n, work.curvature, -LEAST, work.factor); }

// True where the engine cannot tell, too.
bool is_phase_soft(const RobustMixture& mixture, const RobustSplit& split, const RobustPhase& phase,
                   R8 LEAST) {
  return !curve(mixture, split, phase) || is_soft(mixture.n, LEAST);
}

// The direction from the liquid to the vapour in 2 sqrt(x), of length 1; the length that it had.
R8 point_to_vapour(int n, const RobustSplit& split, CompVec& direction) {
  R8 outward = 0.0, length2 = 0.0;
  for (int i = 1; i <= n; ++i) {
    direction(i) = 2.0 * (std::sqrt(split.vapour.x(i)) - std::sqrt(split.liquid.x(i)));
    outward += direction(i) * std::sqrt(split.liquid.x(i));
  }
  // Along the sphere on which the roots of mole fractions lie.
  for (int i = 1; i <= n; ++i) {
    direction(i) -= outward * std::sqrt(split.liquid.x(i));
    length2 += direction(i) * direction(i);
  }
  const R8 length = std::sqrt(length2);
  for (int i = 1; i <= n; ++i) direction(i) /= length;
  return length;
}

// True when the liquid is soft only because its vapour is near, as beside a critical point: along the line between
// them. EXCESS is the sum of the activities that count.
bool soft_towards_vapour(int n, const RobustSplit& split, R8 EXCESS) {
  const R8 across = kSoftAcross + kSoftAcrossByActivity * EXCESS;
  if (!(across < 1.0) || !(std::log(split.vapour.Z / split.liquid.Z) < kNearLnZ) || is_soft(n, kLeastNear))
    return false;
  const R8 length = point_to_vapour(n, split, work.direction);
  if (!(length > 0.0 && length < kNear)) return false;
  R8 along = 0.0;
  for (int i = 1; i <= n; ++i) {
    work.product(i) = 0.0;
    for (int j = 1; j <= n; ++j) work.product(i) += work.curvature(i, j) * work.direction(j);
    along += work.direction(i) * work.product(i);
  }
  // The same second derivatives with those along the line replaced by 1.
  for (int j = 1; j <= n; ++j)
    for (int i = 1; i <= n; ++i)
      work.curvature(i, j) += (along + 1.0) * work.direction(i) * work.direction(j) -
                              work.direction(i) * work.product(j) - work.product(i) * work.direction(j);
  return !is_soft(n, across);
}

// Of the components in the liquid, over their pure liquids.
struct Activities {
  R8 sum, slight;    // of those that exceed their mole fraction clearly and slightly
  R8 ratio;          // the highest over its mole fraction
  R8 share;          // mole fraction of the components that mix badly
  int badly_mixing;  // how many of these count
};

Activities activities(const RobustMixture& mixture, const RobustSplit& split) {
  Activities a{};
  estimate_pure_liquids(mixture, split.T, split.P, work.pure);
  for (int i = 1; i <= mixture.n; ++i) {
    const R8 x = split.liquid.x(i);
    const R8 activity = x * std::exp(split.liquid.lnphi(i) - work.pure(i));
    if (mixes_badly(mixture, i)) {
      a.share += x;
      if (x > kLeastShare || activity > kLeastActivity) a.badly_mixing = a.badly_mixing + 1;
    } else if (static_cast<R8>(fl.TC(mixture.at(i))) > split.T) {
      if (activity > kExcess * x) a.sum += activity;
      if (activity > kSlightExcess * x) a.slight += activity;
      if (activity > kFairActivity) a.ratio = std::max(a.ratio, activity / x);
    }
  }
  return a;
}

struct Temperatures {
  R8 of_liquid;  // over the mean critical temperature of the liquid
  R8 least;      // over the highest critical temperature
};

// The smallest eigenvalue of the liquid below which a third phase is plausible at these activities.
R8 softness_needed(const Activities& active) {
  const R8 least =
      active.ratio > kHeldBack ? kSoftHeldBack : (active.sum > kActive ? kSoftActive : kSoftLiquid);
  return least + kSoftByActivity * active.sum;
}

Temperatures reduced_temperatures(const RobustMixture& mixture, const RobustSplit& split) {
  R8 sum = 0.0, highest = 0.0;
  for (int i = 1; i <= mixture.n; ++i) {
    const R8 critical = static_cast<R8>(fl.TC(mixture.at(i)));
    sum += split.liquid.x(i) * critical;
    highest = std::max(highest, critical);
  }
  return {split.T / sum, split.T / highest};
}

// The eigenvalue of the liquid below which the quick test may run by a third phase.
R8 softness_to_miss(const RobustMixture& mixture, const RobustSplit& split) {
  if (split.two_liquids) return kSoftFull;
  const Activities active = activities(mixture, split);
  return active.badly_mixing > 0 && active.slight > kActiveBadlyMixing ? kSoftBadlyMixing : kSoftFull;
}

R8 least_share(int n, const RobustPhase& phase) {
  R8 least = 1.0;
  for (int i = 1; i <= n; ++i) least = std::min(least, phase.x(i));
  return least;
}

}  // namespace

// A second liquid consists of components that the liquid at hand holds less of than their activity over the
// pure liquid would allow; an ideal liquid of them forms when these activities add up to 1. Components above their
// critical temperature cannot lead one. The limits leave room on either side of 220 third phases among the splits of
// 16000 mixtures of gases and hydrocarbons.
bool third_phase_plausible(const RobustMixture& mixture, const RobustSplit& split) {
  // Beside two liquids a vapour is always possible.
  if (split.two_liquids) return true;
  const Activities active = activities(mixture, split);
  if (active.badly_mixing > 0) {
    if (active.badly_mixing > 1 || !(active.share > kLedShare) || active.slight > kLedSlight) return true;
    return is_phase_soft(mixture, split, split.liquid, kLedSoft);
  }
  const Temperatures reduced = reduced_temperatures(mixture, split);
  if (reduced.least > kHottest) return false;
  if (reduced.of_liquid < kColdLiquid && active.sum > kColdActivity) return true;
  const bool cold = reduced.least < kCold;
  if (cold && is_phase_soft(mixture, split, split.vapour, kSoftColdVapour)) return true;
  if (!(cold || active.slight > kActivitySum)) return false;
  if (!curve(mixture, split, split.liquid) || (cold && is_soft(mixture.n, kSoftColdLiquid))) return true;
  return active.slight > kActivitySum && is_soft(mixture.n, softness_needed(active)) &&
         !(active.ratio < kNearRatio && soft_towards_vapour(mixture.n, split, active.sum));
}

Stability stability_of_split(const RobustMixture& mixture, const RobustSplit& split, bool& FULL,
                             StabilityResult& result) {
  result.answer = Stability::stable;
  result.count = 0;
  if (!FULL && !third_phase_plausible(mixture, split)) return result.answer;
  const bool soft_vapour = is_phase_soft(mixture, split, split.vapour, kSoftFull);
  const bool soft_liquid = is_phase_soft(mixture, split, split.liquid, kSoftFull);
  FULL = FULL || soft_vapour || soft_liquid ||
         is_phase_soft(mixture, split, split.liquid, softness_to_miss(mixture, split));
  const R8 in_liquid = least_share(mixture.n, split.liquid);
  const R8 in_vapour = least_share(mixture.n, split.vapour);
  // The third phase is mostly close to the soft one, and only there its starts along the softest direction begin.
  const bool take_vapour = (in_liquid < kLostShare && in_liquid < in_vapour) ||
                           (soft_vapour && !soft_liquid && in_vapour >= kLostShare);
  const RobustPhase& tested = take_vapour ? split.vapour : split.liquid;
  const RobustPhase& partner = take_vapour ? split.liquid : split.vapour;
  test_stability_beside(mixture, split.T, split.P, tested, partner,
                        FULL ? StabilityEffort::full : StabilityEffort::first, result);
  return result.answer;
}

}  // namespace talix
