#include <algorithm>
#include <cmath>

#include "engine/codes.h"
#include "fastprops/flash_record.h"
#include "flash/robust_saturation.h"

namespace talix {

namespace {

constinit RobustPhase gas{};
constinit RobustPhase condensed{};
constinit CompVec alone{};

constexpr int kSteps = 120;
constexpr R8 kEnd = 1.0E-10;      // largest difference in ln f that is left
constexpr R8 kLeastGap = 1.0E-5;  // in ln Z: roots nearer than this are one
constexpr R8 kLowestT = 2.0;      // [K]
constexpr R8 kNearCritical =
    0.98;                         // over the critical constant: the equation has a critical point of its own
constexpr R8 kLowestP = 1.0E-20;  // [bar]

enum class Stable { liquid, vapour, none };

struct Search {
  SaturationGiven given;
  R8 value;
  R8 low, high;   // bracket of the ln of the other variable, none of the two phases is stable at its ends
  R8 difference;  // ln phi of the liquid less that of the vapour, when both are there
  bool both;
  Stable stable;       // the stable phase at the last evaluation
  bool supercritical;  // the equation has one root that is neither
};

R8 T_at(const Search& s, R8 free) {
  return s.given == SaturationGiven::temperature ? s.value : std::exp(free);
}

R8 P_at(const Search& s, R8 free) {
  return s.given == SaturationGiven::temperature ? std::exp(free) : s.value;
}

bool evaluate(const RobustMixture& mixture, Search& s, R8 free) {
  const R8 T = T_at(s, free), P = P_at(s, free);
  evaluate_phase(mixture, T, P, alone, phase::vapour, PhaseDerivatives::none, gas);
  evaluate_phase(mixture, T, P, alone, phase::liquid, PhaseDerivatives::none, condensed);
  if (gas.status != status::ok || condensed.status != status::ok) return false;
  s.both = std::log(gas.Z / condensed.Z) > kLeastGap;
  s.supercritical = !s.both && gas.single;
  s.difference = condensed.lnphi(1) - gas.lnphi(1);
  if (s.both)
    s.stable = s.difference > 0.0 ? Stable::vapour : Stable::liquid;
  else
    s.stable = s.supercritical ? Stable::none : gas.root == phase::liquid ? Stable::liquid : Stable::vapour;
  return true;
}

// Towards the liquid pressure rises and temperature falls.
void shrink(Search& s, R8 free) {
  const bool too_high = (s.given == SaturationGiven::temperature) == (s.stable == Stable::liquid);
  (too_high ? s.high : s.low) = free;
}

// Step that would make the fugacities equal: exact for an ideal vapour over an incompressible liquid.
R8 next_value(const RobustMixture& mixture, const Search& s, R8 free) {
  R8 next = 0.5 * (s.low + s.high);
  if (!s.both) return next;
  if (s.given == SaturationGiven::temperature) {
    const R8 slope = gas.Z - condensed.Z;  // of the difference, negative
    next = free + s.difference / std::max(slope, 1.0E-6);
  } else {
    // Slope from the heat of vaporisation by Wilson's estimate; the bracket guards it.
    const int k = mixture.at(1);
    const R8 heat = 5.373 * (1.0 + static_cast<R8>(fl.OMEG(k))) * static_cast<R8>(fl.TC(k)) / std::exp(free);
    next = free - s.difference / std::max(heat * (gas.Z - condensed.Z), 1.0E-6);
  }
  return next > s.low && next < s.high ? next : 0.5 * (s.low + s.high);
}

void set_bracket(const RobustMixture& mixture, Search& s, R8& free) {
  const int k = mixture.at(1);
  const R8 TC = static_cast<R8>(fl.TC(k)), PC = static_cast<R8>(fl.PC(k));
  const R8 slope = 5.373 * (1.0 + static_cast<R8>(fl.OMEG(k)));
  if (s.given == SaturationGiven::temperature) {
    s.low = std::log(kLowestP);
    s.high = std::log(2.0 * PC);
    free = std::log(PC) + slope * (1.0 - TC / s.value);
  } else {
    s.low = std::log(kLowestT);
    s.high = std::log(1.3 * TC);
    const R8 ratio = 1.0 - std::log(s.value / PC) / slope;
    free = std::log(ratio > 0.5 ? TC / ratio : 1.2 * TC);
  }
  if (!(free > s.low && free < s.high)) free = 0.5 * (s.low + s.high);
}

void store(const Search& s, R8 free, R8 FRACTION, RobustSplit& split) {
  split.answer = Split::two_phases;
  split.T = T_at(s, free);
  split.P = P_at(s, free);
  split.fraction = FRACTION;
  split.gibbs = 0.0;
  split.unequal = std::fabs(s.difference);
  split.vapour = gas;
  split.liquid = condensed;
  split.two_liquids = split.third_phase = false;
  split.third_root = phase::none;
}

}  // namespace

// saturation_of_pure: pressure or temperature at which the liquid and the vapour root have equal fugacities.
//
// Status   found; above_critical with the critical constant as limit; no_line below the lowest
//          pressure or temperature; unsettled
void saturation_of_pure(const RobustMixture& mixture, SaturationGiven given, R8 value, R8 FRACTION,
                        SaturationResult& result) {
  Search s{};
  s.given = given;
  s.value = value;
  alone(1) = 1.0;
  R8 free = 0.0;
  set_bracket(mixture, s, free);
  const int k = mixture.at(1);
  const R8 limit = static_cast<R8>(given == SaturationGiven::temperature ? fl.TC(k) : fl.PC(k));
  result.answer = Saturation::unsettled;
  result.unstable = false;
  result.rank = standing::stable;
  result.limit = 0.0;
  for (int step = 0; step < kSteps && s.high - s.low > 1.0E-14; ++step) {
    if (!evaluate(mixture, s, free)) return;
    if (s.both && std::fabs(s.difference) < kEnd) {
      store(s, free, FRACTION, result.split);
      result.answer = Saturation::found;
      return;
    }
    if (s.supercritical && given == SaturationGiven::temperature) break;
    if (s.supercritical) s.stable = Stable::vapour;
    shrink(s, free);
    free = next_value(mixture, s, free);
  }
  if (s.both && !(value >= kNearCritical * limit)) return;
  result.answer = value > kNearCritical * limit ? Saturation::above_critical : Saturation::no_line;
  result.limit = limit;
}

}  // namespace talix
