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
// rules a second liquid out when it is above this, plus that much of the activities.
constexpr R8 kSoftLiquid = 0.3;
constexpr R8 kSoftByActivity = 0.4;
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
  RobustPhase liquid;
  CompVec pure;       // ln phi of the pure liquids
  CompVec direction;  // from the liquid to the vapour
  CompVec product;    // of the curvature and that
};
constinit Work work{};

// Second derivatives of the mixing energy of the liquid; false when the engine cannot tell.
bool curve_liquid(const RobustMixture& mixture, const RobustSplit& split) {
  const RobustPhase* liquid = &split.liquid;
  if (liquid->known == PhaseDerivatives::none) {
    evaluate_phase(mixture, split.T, split.P, split.liquid.x, phase::gibbs, PhaseDerivatives::composition,
                   work.liquid);
    if (work.liquid.status != status::ok) return false;
    liquid = &work.liquid;
  }
  fill_second(mixture.n, *liquid, work.curvature);
  return true;
}

// True when the smallest eigenvalue of the liquid is below LEAST.
bool is_soft(int n, R8 LEAST) { return !cholesky_factor(n, work.curvature, -LEAST, work.factor); }

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

Temperatures reduced_temperatures(const RobustMixture& mixture, const RobustSplit& split) {
  R8 sum = 0.0, highest = 0.0;
  for (int i = 1; i <= mixture.n; ++i) {
    const R8 critical = static_cast<R8>(fl.TC(mixture.at(i)));
    sum += split.liquid.x(i) * critical;
    highest = std::max(highest, critical);
  }
  return {split.T / sum, split.T / highest};
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
    return !curve_liquid(mixture, split) || is_soft(mixture.n, kLedSoft);
  }
  const Temperatures reduced = reduced_temperatures(mixture, split);
  if (!(active.slight > kActivitySum) || reduced.least > kHottest) return false;
  if (reduced.of_liquid < kColdLiquid && active.sum > kColdActivity) return true;
  if (!curve_liquid(mixture, split)) return true;
  return is_soft(mixture.n, kSoftLiquid + kSoftByActivity * active.sum) &&
         !(active.ratio < kNearRatio && soft_towards_vapour(mixture.n, split, active.sum));
}

Stability stability_of_split(const RobustMixture& mixture, const RobustSplit& split, bool full,
                             StabilityResult& result) {
  result.answer = Stability::stable;
  result.count = 0;
  if (!full && !third_phase_plausible(mixture, split)) return result.answer;
  const R8 in_liquid = least_share(mixture.n, split.liquid);
  const bool take_vapour = in_liquid < kLostShare && in_liquid < least_share(mixture.n, split.vapour);
  test_stability_beside(mixture, split.T, split.P, take_vapour ? split.vapour : split.liquid,
                        take_vapour ? split.liquid : split.vapour,
                        full ? StabilityEffort::full : StabilityEffort::first, result);
  return result.answer;
}

}  // namespace talix
