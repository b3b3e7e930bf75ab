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

// A phase with a mole fraction below this knows too little of the tangent plane to be the one that is tested.
constexpr R8 kLostShare = 1.0E-30;

struct Work {
  CompMat curvature;
  CompMat factor;
  RobustPhase liquid;
  CompVec pure;  // ln phi of the pure liquids
};
constinit Work work{};

// True when the smallest eigenvalue of the liquid is below LEAST, or the engine cannot tell.
bool is_soft(const RobustMixture& mixture, const RobustSplit& split, R8 LEAST) {
  const RobustPhase* liquid = &split.liquid;
  if (liquid->known == PhaseDerivatives::none) {
    evaluate_phase(mixture, split.T, split.P, split.liquid.x, phase::gibbs, PhaseDerivatives::composition,
                   work.liquid);
    if (work.liquid.status != status::ok) return true;
    liquid = &work.liquid;
  }
  fill_second(mixture.n, *liquid, work.curvature);
  return !cholesky_factor(mixture.n, work.curvature, -LEAST, work.factor);
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
  R8 sum = 0.0, slight = 0.0;
  estimate_pure_liquids(mixture, split.T, split.P, work.pure);
  for (int i = 1; i <= mixture.n; ++i) {
    const int k = mixture.at(i);
    const R8 activity = split.liquid.x(i) * std::exp(split.liquid.lnphi(i) - work.pure(i));
    if (mixes_badly(mixture, i) && (split.liquid.x(i) > kLeastShare || activity > kLeastActivity))
      return true;
    if (!(static_cast<R8>(fl.TC(k)) > split.T)) continue;
    if (activity > kExcess * split.liquid.x(i)) sum += activity;
    if (activity > kSlightExcess * split.liquid.x(i)) slight += activity;
  }
  const Temperatures reduced = reduced_temperatures(mixture, split);
  if (!(slight > kActivitySum) || reduced.least > kHottest) return false;
  if (reduced.of_liquid < kColdLiquid && sum > kColdActivity) return true;
  return is_soft(mixture, split, kSoftLiquid + kSoftByActivity * sum);
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
