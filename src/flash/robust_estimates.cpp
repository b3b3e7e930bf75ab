#include "flash/robust_estimates.h"

#include <algorithm>
#include <cmath>

#include "database/component_record.h"
#include "engine/shmix_driver.h"
#include "fastprops/flash_record.h"

namespace talix {

namespace {

// Molar volume of a pure liquid over its critical volume, for the pressure correction of its fugacity.
constexpr R8 kLiquidVolume = 0.35;
// From bar cm3 to J.
constexpr R8 kJoulePerBarCm3 = 0.1;
// Below a reduced temperature of 0.4 a cubic equation makes heavy liquids less volatile than the vapour pressure
// relation: in ln by the first times omega squared at the second, with the third as power of the temperature.
constexpr R8 kColdFall = 2.2;
constexpr R8 kColdTemperature = 0.3;
constexpr R8 kColdPower = 5.0;
// Mole fraction from which a component may make up a fair part of a phase with water.
constexpr R8 kFairShare = 1.0E-4;
// ln fugacity coefficient of the saturated vapour at the critical temperature, and its power of the temperature.
constexpr R8 kSaturated = -0.42;
constexpr R8 kSaturatedPower = 4.3;

// Families of component_record.h whose members hardly mix with hydrocarbons.
namespace family {
constexpr I4 water = 1;
constexpr I4 alcohol = 2;
constexpr I4 glycol = 3;
constexpr I4 amine = 5;
constexpr I4 mercury = 10;
constexpr I4 hydrocarbon = 20;
}  // namespace family

// ln of the vapour pressure over the critical pressure.
R8 ln_vapour_pressure(R8 Tr, R8 omega) {
  const R8 Tr6 = Tr * Tr * Tr * Tr * Tr * Tr;
  const R8 simple = 5.92714 - 6.09648 / Tr - 1.28862 * std::log(Tr) + 0.169347 * Tr6;
  const R8 acentric = 15.2518 - 15.6875 / Tr - 13.4721 * std::log(Tr) + 0.43577 * Tr6;
  return simple + omega * acentric - kColdFall * omega * omega * std::pow(kColdTemperature / Tr, kColdPower);
}

}  // namespace

bool mixes_badly(const RobustMixture& mixture, int i) {
  const I4 code = comp.ISOFAM(mixture.at(i));
  return code == family::water || code == family::alcohol || code == family::glycol ||
         code == family::amine || code == family::mercury;
}

bool may_attract(const RobustMixture& mixture, int i, R8 T) {
  const int k = mixture.at(i);
  return comp.ISOFAM(k) != family::hydrocarbon && static_cast<R8>(fl.TC(k)) > T && mixture.z(i) > kFairShare;
}

// estimate_pure_liquids: the vapour pressure with the corrections for pressure and the imperfect vapour. Within 0.3 of the engine's values for
// hydrocarbons between reduced temperatures of 0.2 and 0.9; polar liquids and carbon dioxide come out too little
// volatile below 0.5.
//
// Source   Lee and Kesler, AIChE Journal 21 (1975) 510-527
void estimate_pure_liquids(const RobustMixture& mixture, R8 T, R8 P, CompVec& lnphi) {
  wilson_ln_k(mixture, T, P, lnphi);
  for (int i = 1; i <= mixture.n; ++i) {
    const int k = mixture.at(i);
    const R8 Tr = T / static_cast<R8>(fl.TC(k));
    if (!(Tr < 1.0)) continue;
    const R8 lnPs = ln_vapour_pressure(Tr, static_cast<R8>(fl.OMEG(k))) + std::log(static_cast<R8>(fl.PC(k)));
    const R8 volume = kLiquidVolume * static_cast<R8>(fl.VC(k));
    const R8 correction = volume * std::max(P - std::exp(lnPs), 0.0) * kJoulePerBarCm3 / (kGasConstant * T);
    lnphi(i) = lnPs - std::log(P) + kSaturated * std::pow(Tr, kSaturatedPower) + correction;
  }
}

}  // namespace talix
