#include "flash/robust_third_phase.h"

#include <algorithm>
#include <cmath>

#include "database/component_record.h"
#include "engine/codes.h"
#include "engine/shmix_driver.h"
#include "fastprops/flash_record.h"
#include "flash/robust_symmetric.h"

namespace talix {

namespace {

// Molar volume of a pure liquid over its critical volume, for the pressure correction of its fugacity.
constexpr R8 kLiquidVolume = 0.35;
// From bar cm3 to J.
constexpr R8 kJoulePerBarCm3 = 0.1;
// Components count towards a second liquid when their activity is this much above their mole fraction, and
// make one plausible when the activities add up to the sum.
constexpr R8 kExcess = 1.5;
constexpr R8 kActivitySum = 0.3;
// For components that mix badly with hydrocarbons the estimate is too rough: they count from this mole
// fraction or activity.
constexpr R8 kLeastShare = 1.0E-3;
constexpr R8 kLeastActivity = 0.02;

// With this excess, or in a liquid colder than that, the estimates decide nothing. There a second liquid
// counts as plausible when the smallest eigenvalue of the second derivatives of the mixing energy, 1 in an
// ideal liquid and 0 at a spinodal, is below the third.
constexpr R8 kSlightExcess = 1.2;
constexpr R8 kColdLiquid = 0.5;
constexpr R8 kSoftLiquid = 0.5;

// A phase with a mole fraction below this knows too little of the tangent plane to be the one that is tested.
constexpr R8 kLostShare = 1.0E-30;

struct Work {
  CompMat curvature;
  CompMat factor;
  RobustPhase liquid;
  CompVec pure;  // ln phi of the pure liquids but for the pressure correction
};
constinit Work work{};

// True when the liquid is nearer to a spinodal than that, or the engine cannot tell.
bool is_soft(const RobustMixture& mixture, const RobustSplit& split) {
  const int n = mixture.n;
  evaluate_phase(mixture, split.T, split.P, split.liquid.x, phase::gibbs, PhaseDerivatives::composition,
                 work.liquid);
  if (work.liquid.status != status::ok) return true;
  for (int j = 1; j <= n; ++j) {
    for (int i = 1; i <= n; ++i)
      work.curvature(i, j) = std::sqrt(split.liquid.x(i) * split.liquid.x(j)) * work.liquid.lnphi_n(i, j);
    work.curvature(j, j) += 1.0;
  }
  return !cholesky_factor(n, work.curvature, -kSoftLiquid, work.factor);
}

// Temperature over the mean critical temperature of the liquid.
R8 reduced_temperature(const RobustMixture& mixture, const RobustSplit& split) {
  R8 sum = 0.0;
  for (int i = 1; i <= mixture.n; ++i) sum += split.liquid.x(i) * static_cast<R8>(fl.TC(mixture.at(i)));
  return split.T / sum;
}

// Families of component_record.h whose members hardly mix with hydrocarbons.
namespace family {
constexpr I4 water = 1;
constexpr I4 alcohol = 2;
constexpr I4 glycol = 3;
constexpr I4 amine = 5;
constexpr I4 mercury = 10;
}  // namespace family

bool mixes_badly(int i) {
  const I4 code = comp.ISOFAM(i);
  return code == family::water || code == family::alcohol || code == family::glycol ||
         code == family::amine || code == family::mercury;
}

R8 least_share(int n, const RobustPhase& phase) {
  R8 least = 1.0;
  for (int i = 1; i <= n; ++i) least = std::min(least, phase.x(i));
  return least;
}

}  // namespace

// A second liquid consists of components that the liquid at hand holds less of than their activity over the
// pure liquid would allow; an ideal liquid of them forms when these activities add up to 1. The fugacity of
// the pure liquid is Wilson's vapour pressure with the pressure correction.
bool third_phase_plausible(const RobustMixture& mixture, const RobustSplit& split) {
  // Beside two liquids a vapour is always possible.
  if (split.two_liquids) return true;
  R8 sum = 0.0, slight = 0.0;
  wilson_ln_k(mixture, split.T, split.P, work.pure);
  for (int i = 1; i <= mixture.n; ++i) {
    const R8 volume = kLiquidVolume * static_cast<R8>(fl.VC(mixture.at(i)));
    const R8 saturation = split.P * std::exp(std::min(work.pure(i), 50.0));
    const R8 correction =
        volume * std::max(split.P - saturation, 0.0) * kJoulePerBarCm3 / (kGasConstant * split.T);
    const R8 activity = split.liquid.x(i) * std::exp(split.liquid.lnphi(i) - work.pure(i) - correction);
    if (mixes_badly(mixture.at(i)) && (split.liquid.x(i) > kLeastShare || activity > kLeastActivity))
      return true;
    if (activity > kExcess * split.liquid.x(i)) sum += activity;
    if (activity > kSlightExcess * split.liquid.x(i)) slight += activity;
  }
  if (sum > kActivitySum) return true;
  const bool unsure = slight > kActivitySum || reduced_temperature(mixture, split) < kColdLiquid;
  return unsure && is_soft(mixture, split);
}

Stability stability_of_split(const RobustMixture& mixture, const RobustSplit& split, bool full,
                             StabilityResult& result) {
  result.answer = Stability::stable;
  result.count = 0;
  if (!full && !third_phase_plausible(mixture, split)) return result.answer;
  const R8 in_liquid = least_share(mixture.n, split.liquid);
  const bool take_vapour = in_liquid < kLostShare && in_liquid < least_share(mixture.n, split.vapour);
  test_stability(mixture, split.T, split.P, take_vapour ? split.vapour : split.liquid,
                 full ? StabilityEffort::full : StabilityEffort::first, result);
  return result.answer;
}

}  // namespace talix
