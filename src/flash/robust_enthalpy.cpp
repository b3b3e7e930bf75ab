#include "flash/robust_enthalpy.h"

#include <algorithm>
#include <cmath>

#include "engine/codes.h"
#include "flash/robust_enthalpy_search.h"

namespace talix {

namespace {

constexpr R8 kClosed = 1e-10;            // width over T at which a bracket holds a jump
constexpr R8 kMeets = 1e-5;              // of the enthalpy and the heat of one kelvin
constexpr R8 kAlikeFugacities = 1e-5;    // in ln f: the feed boils at one temperature
constexpr R8 kTemperatureDigits = 1e-7;  // of T, what a 32-bit real rounds
constexpr R8 kSteep = 1e-6;              // width over T at which a bracket shows
constexpr R8 kSteeper = 100.0;           // that it is steeper by this than both its ends: a jump
constexpr R8 kLargestMove = 5e-3;        // of one phase from the state that was flashed [K]
constexpr int kMostFinalSteps = 5;
constexpr int kMostFlashes = 90;
constexpr int kMostSecondFlashes = 16;
constexpr int kMostLimitSteps = 40;

constinit EnthalpySearch search{};
constinit EnthalpyResult first{};

// The sides of a jump.
struct JumpSide {
  R8 T;        // [K]
  bool split;  // two phases
  CompVec lnK;
};
constinit JumpSide sides[2]{};

R8 nearest_32_bit(R8 T) { return static_cast<R8>(static_cast<R4>(T)); }

bool found(const EnthalpyResult& result) { return result.answer == EnthalpyAnswer::found; }

// Whether the state that stands has the enthalpy.
void tell_enthalpy(const EnthalpySearch& s, EnthalpyResult& result) {
  result.enthalpy = enthalpy_of(result.split);
  const R8 rounding = kTemperatureDigits * result.split.T * s.now.cp;
  const bool met =
      std::abs(result.enthalpy - s.TARGET) <= kMeets * (std::abs(s.TARGET) + s.now.cp) + rounding;
  result.answer = met ? EnthalpyAnswer::found : EnthalpyAnswer::jump;
}

// One phase at the 32-bit temperature that comes closest, near the state that was flashed. Its heat capacity may not be
// the slope: what the steps show replaces it.
void finish_one_phase(EnthalpySearch& s, RobustSplit& split) {
  R8 T = split.T;
  R8 h = s.now.h;
  R8 slope = s.now.slope;
  for (int step = 1; step <= kMostFinalSteps && slope > 0.0; ++step) {
    const R8 move = std::clamp(T + (s.TARGET - h) / slope - s.now.T, -kLargestMove, kLargestMove);
    const R8 next = nearest_32_bit(s.now.T + move);
    if (next == T) break;
    evaluate_enthalpy(*s.mixture, next, s.P, own_root(split.vapour), split.vapour);
    if (split.vapour.status != status::ok) break;
    const R8 seen = (split.vapour.h - h) / (next - T);
    if (seen > 0.0) slope = seen;
    T = next;
    h = split.vapour.h;
  }
  split.T = nearest_32_bit(T);
}

// The state found, at a temperature that a 32-bit real holds: two phases by the lever between them, so that the
// rounding of T does not show in the enthalpy.
void finish(EnthalpySearch& s, EnthalpyResult& result) {
  RobustSplit& split = result.split;
  if (split.answer == Split::one_phase) {
    finish_one_phase(s, split);
  } else {
    split.T = nearest_32_bit(split.T);
    settle_by_lever(*s.mixture, s.TARGET, split);
  }
  tell_enthalpy(s, result);
}

// A feed whose two roots have equal fugacities at one temperature boils there: it is split by the lever, or one of
// its sides goes into the bracket. True when the search has ended.
bool settle_plateau(EnthalpySearch& s, R8 largest, EnthalpyResult& result) {
  RobustSplit& split = result.split;
  evaluate_enthalpy(*s.mixture, split.T, s.P, phase::liquid, split.liquid);
  evaluate_enthalpy(*s.mixture, split.T, s.P, phase::vapour, split.vapour);
  if (split.liquid.status != status::ok || split.vapour.status != status::ok) return false;
  const bool below = split.vapour.h < s.TARGET;
  const bool above = split.liquid.h > s.TARGET;
  if (below || above) {
    const RobustPhase& side = below ? split.vapour : split.liquid;
    s.now = {.T = split.T,
             .h = side.h,
             .least = side.h,
             .most = side.h,
             .slope = side.cp,
             .tangent = side.cp,
             .cp = side.cp,
             .ok = true,
             .one = true,
             .vapour = below};
    take_into_bracket(s);
    return false;
  }
  split.answer = Split::two_phases;
  split.fraction = (s.TARGET - split.liquid.h) / (split.vapour.h - split.liquid.h);
  split.gibbs = 0.0;
  split.unequal = largest;
  split.two_liquids = false;
  split.third_phase = false;
  s.now.one = false;
  finish(s, result);
  return true;
}

// Where the ends of the bracket are one phase on both sides of boiling, the temperature at which the feed changes
// its root lies among the two phases. True when the search has ended.
bool try_crossing(EnthalpySearch& s, EnthalpyResult& result) {
  s.crossing_sought = true;
  RobustSplit& split = result.split;
  if (!find_crossing(*s.mixture, s.P, s.low.T, s.high.T, split)) return false;
  R8 largest = 0.0;
  for (int i = 1; i <= s.mixture->n; ++i)
    largest = std::max(largest, std::abs(split.liquid.lnphi(i) - split.vapour.lnphi(i)));
  if (largest <= kAlikeFugacities) return settle_plateau(s, largest, result);
  flash_at(s, split.T, result);
  if (!s.now.ok) return false;
  if (close_enough(s, result)) {
    finish(s, result);
    return true;
  }
  take_into_bracket(s);
  return false;
}

bool crossing_is_inside(const EnthalpySearch& s) {
  return !s.crossing_sought && s.low.one && s.high.one && !s.low.vapour && s.high.vapour;
}

// Enthalpy at the far limit of the model, seen from the last state that works.
R8 enthalpy_at_limit(EnthalpySearch& s, bool upwards, EnthalpyResult& result) {
  EnthalpyPoint good = upwards ? s.high : s.low;
  R8 bad = upwards ? kHottestState + 2.0 * kLimitWidth : s.coolest - 2.0 * kLimitWidth;
  R8 T = upwards ? kHottestState : s.coolest;
  for (int step = 1; step <= kMostLimitSteps && std::abs(bad - good.T) > kLimitWidth; ++step) {
    flash_at(s, T, result);
    if (s.now.ok && s.now.slope > 0.0) {
      good = s.now;
      if (step == 1) break;
    } else {
      bad = T;
    }
    T = 0.5 * (good.T + bad);
  }
  return good.h;
}

void out_of_range(EnthalpySearch& s, EnthalpyResult& result) {
  if (s.has_high) {
    result.answer = EnthalpyAnswer::below_range;
    result.lowest = s.high.h;
    result.highest = enthalpy_at_limit(s, true, result);
  } else {
    result.answer = EnthalpyAnswer::above_range;
    result.highest = s.low.h;
    result.lowest = enthalpy_at_limit(s, false, result);
  }
}

// The bracket has closed on a jump: a split on either side may still carry the lever; otherwise the nearer side
// stands.
void settle_jump(EnthalpySearch& s, EnthalpyResult& result) {
  result.jump_low = s.low.h;
  result.jump_high = s.high.h;
  const bool low_nearer = s.TARGET - s.low.h <= s.high.h - s.TARGET;
  bool ok = false;
  for (const bool take_low : {!low_nearer, low_nearer}) {
    flash_at(s, take_low ? s.low.T : s.high.T, result);
    ok = s.now.ok;
    if (!s.follow)
      sides[take_low ? 0 : 1] = {.T = s.now.T, .split = ok && !s.now.one && s.has_lnK, .lnK = s.lnK};
    if (!ok) continue;
    result.split.T = nearest_32_bit(result.split.T);
    if (!s.now.one && settle_by_lever(*s.mixture, s.TARGET, result.split)) break;
  }
  if (!ok) return;
  tell_enthalpy(s, result);
}

// The bracket has closed, or on two states, one of them of two phases, whose slopes do not lead from one to the other.
bool holds_jump(const EnthalpySearch& s) {
  const R8 width = s.high.T - s.low.T;
  if (!(width > kClosed * s.low.T)) return true;
  if (width > kSteep * s.low.T || (s.low.one && s.high.one)) return false;
  return s.high.h - s.low.h > kSteeper * width * std::max(s.low.tangent, s.high.tangent);
}

// The search from s.START until an answer stands in `result`.
void run(EnthalpySearch& s, EnthalpyResult& result) {
  result.answer = EnthalpyAnswer::unsettled;
  R8 T = s.START;
  while (result.flashes < s.most_flashes) {
    flash_at(s, T, result);
    if (s.now.ok && close_enough(s, result)) {
      finish(s, result);
      return;
    }
    if (s.now.ok && (s.now.slope > 0.0 || bracketed(s))) {
      take_into_bracket(s);
    } else {
      if (!pass_failure(s, T)) return;
      if (s.has_low == s.has_high) continue;
    }

    if (!bracketed(s)) {
      if (extrapolate(s, T)) continue;
      out_of_range(s, result);
      return;
    }
    if (crossing_is_inside(s) && try_crossing(s, result)) return;
    if (holds_jump(s)) {
      settle_jump(s, result);
      return;
    }
    T = interpolate(s);
  }
}

// What the searches so far have cost goes with the first answer.
void back_to_first(EnthalpyResult& result) {
  first.flashes = result.flashes;
  result = first;
}

// The pair of phases of LNK at T, followed to the target.
bool search_along_pair(EnthalpySearch& s, R8 T, const CompVec& lnK, EnthalpyResult& result) {
  start_search(*s.mixture, s.P, s.TARGET, T, &lnK, s);
  s.follow = true;
  s.most_flashes = result.flashes + kMostSecondFlashes;
  run(s, result);
  return found(result) && result.split.answer == Split::two_phases;
}

// Three phases where the stable pair changes: the pair of the start or one of both sides, followed beyond the change,
// has the enthalpy.
void search_along_pairs(EnthalpySearch& s, R8 START, const CompVec* START_LNK, EnthalpyResult& result) {
  if (START_LNK != nullptr && search_along_pair(s, START, *START_LNK, result)) return;
  const bool high_first = s.TARGET - first.jump_low > first.jump_high - s.TARGET;
  for (const JumpSide* side : {&sides[high_first ? 1 : 0], &sides[high_first ? 0 : 1]})
    if (side->split && search_along_pair(s, side->T, side->lnK, result)) return;
  back_to_first(result);
}

}  // namespace

// The state of the feed at P with the enthalpy TARGET.
//
// The Gibbs energy of the best two phases is concave in T, so that their enthalpy rises with T: the target is
// bracketed, and the bracket shrinks by Newton steps with the exact slope, by halves where these do not converge. Two
// places need more: a feed that boils at one temperature or nearly so, found by the crossing of its two roots, and a
// jump, where the best pair of phases changes because a third one is left out. There a pair is followed beyond the
// change, and where none has the enthalpy the nearer side of the jump stands.
//
// In       mixture, P [bar], TARGET [J/mol of feed], START [K]
//          START_LNK  ln K of a split at START, or null
// Out      result     answer; with found and jump the state, at a T that a 32-bit real holds
// Oddity   where the enthalpy of the engine falls with T (cold water below 175 K) the model ends
void robust_enthalpy(const RobustMixture& mixture, R8 P, R8 TARGET, R8 START, const CompVec* START_LNK,
                     EnthalpyResult& result) {
  EnthalpySearch& s = search;
  start_search(mixture, P, TARGET, START, START_LNK, s);
  s.most_flashes = kMostFlashes;
  result.flashes = 0;
  result.jump_low = result.jump_high = TARGET;
  for (JumpSide& side : sides) side.split = false;
  run(s, result);
  if (result.answer != EnthalpyAnswer::jump) return;
  first = result;
  search_along_pairs(s, START, START_LNK, result);
}

}  // namespace talix
