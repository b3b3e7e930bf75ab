#include "flash/robust_enthalpy_search.h"

#include <algorithm>
#include <cmath>

#include "fastprops/flash_record.h"

namespace talix {

namespace {

constexpr R8 kCoolestState = 5.0;     // [K]
constexpr R8 kCoolestPart = 0.2;      // of the mean critical temperature
constexpr R8 kLargestStep = 0.35;     // of T, while the target is not bracketed
constexpr R8 kOvershoot = 1.05;       // of the Newton step, so that it brackets the target,
constexpr R8 kNearStep = 5.0;         // where it is larger than this [K]
constexpr R8 kGoodDecrease = 0.7;     // of the miss from state to state
constexpr R8 kStartTolerance = 1e-5;  // of the enthalpy and the heat of one kelvin, for the start
constexpr R8 kStartStep = 2e-3;       // that one phase at the start may still need [K]
constexpr R8 kStartSplitStep = 1e-4;  // and two phases, whose K-values stay [K]
constexpr R8 kFinalStep = 4e-6;       // a smaller step is lost in the 32-bit temperature [K]
constexpr R8 kRounding = 1e-11;       // of the enthalpy: a smaller miss is rounding
constexpr R8 kSmallestStep = 1e-6;    // between two states that show a slope [K]
constexpr R8 kLeastSlope =
    0.02;  // part of the slope of the engine below which what two states show is no slope
constexpr int kMostFailures = 8;
// Tried in place of a start that cannot be flashed [K].
constexpr R8 kOtherStarts[kMostFailures] = {298.15, 400.0, 220.0, 550.0, 160.0, 800.0, 110.0, 1200.0};

// Far below the critical temperatures all is solid, and the curves of the equation mean nothing.
R8 coolest_state(const RobustMixture& mixture) {
  R8 TC = 0.0;
  for (int i = 1; i <= mixture.n; ++i) TC += mixture.z(i) * static_cast<R8>(fl.TC(mixture.at(i)));
  return std::max(kCoolestState, kCoolestPart * TC);
}

// The Newton step from a state; 0 where it has none.
R8 newton_step(const EnthalpySearch& s, const EnthalpyPoint& p) {
  return p.slope > 0.0 ? (s.TARGET - p.h) / p.slope : 0.0;
}

void keep_ln_k(EnthalpySearch& s, const RobustSplit& split) {
  s.has_lnK = true;
  for (int i = 1; i <= s.mixture->n; ++i) {
    s.lnK(i) = std::log(split.vapour.x(i) / split.liquid.x(i));
    s.has_lnK = s.has_lnK && std::isfinite(s.lnK(i));
  }
}

// Near the critical temperature of a component the engine's heat capacity is not the slope of its enthalpy: what the
// last two states of a kind show scales it.
void correct_slope(const EnthalpyPoint& before, EnthalpyPoint& now) {
  if (!before.ok || before.one != now.one || before.vapour != now.vapour) return;
  const R8 step = now.T - before.T;
  if (!(std::abs(step) > kSmallestStep)) return;
  const R8 seen = (now.h - before.h) / step;
  const R8 told = 0.5 * (now.tangent + before.tangent);
  if (seen > kLeastSlope * told && seen * kLeastSlope < told) now.slope = now.tangent * seen / told;
}

// The last split leads on where it was the start or one end of the bracket is a split.
bool split_is_near(const EnthalpySearch& s, const EnthalpyResult& result) {
  if (!s.has_lnK) return false;
  return result.flashes == 1 || (s.has_low && !s.low.one) || (s.has_high && !s.high.one);
}

// The fraction of the two phases can be moved to the target.
bool lever_reaches(const EnthalpySearch& s) { return s.now.least < s.TARGET && s.TARGET < s.now.most; }

}  // namespace

void start_search(const RobustMixture& mixture, R8 P, R8 TARGET, R8 START, const CompVec* START_LNK,
                  EnthalpySearch& s) {
  s.mixture = &mixture;
  s.P = P;
  s.TARGET = TARGET;
  s.coolest = coolest_state(mixture);
  s.START = std::clamp(START, s.coolest, kHottestState);
  s.follow = false;
  s.now.ok = false;
  s.has_low = s.has_high = s.crossing_sought = false;
  s.floor = s.coolest - 2.0 * kLimitWidth;
  s.ceiling = kHottestState + 2.0 * kLimitWidth;
  s.step = s.step_before = kHottestState;
  s.miss_before = 0.0;
  s.failures = 0;
  s.has_lnK = START_LNK != nullptr;
  if (s.has_lnK) s.lnK = *START_LNK;
}

bool bracketed(const EnthalpySearch& s) { return s.has_low && s.has_high; }

void flash_at(EnthalpySearch& s, R8 T, EnthalpyResult& result) {
  result.flashes = result.flashes + 1;
  const EnthalpyPoint before = s.now;
  if (s.follow)
    evaluate_pair(*s.mixture, T, s.P, s.lnK, result.split, s.now);
  else
    evaluate_state(*s.mixture, T, s.P, split_is_near(s, result) ? &s.lnK : nullptr, result.split, s.now);
  if (!s.now.ok) return;
  correct_slope(before, s.now);
  if (!s.now.one) keep_ln_k(s, result.split);
}

void take_into_bracket(EnthalpySearch& s) {
  const bool below = s.now.h < s.TARGET;
  (below ? s.low : s.high) = s.now;
  (below ? s.has_low : s.has_high) = true;
}

bool close_enough(const EnthalpySearch& s, const EnthalpyResult& result) {
  const R8 miss = std::abs(s.now.h - s.TARGET);
  const R8 scale = std::abs(s.now.h) + s.now.cp;
  if (miss <= kRounding * scale) return true;
  if (miss <= kFinalStep * s.now.slope && (miss <= kStartTolerance * scale || lever_reaches(s))) return true;
  if (result.flashes > 1) return false;
  if (s.now.one) return miss <= kStartStep * s.now.slope;
  return miss <= kStartTolerance * scale && miss <= kStartSplitStep * s.now.slope;
}

bool extrapolate(EnthalpySearch& s, R8& T) {
  const EnthalpyPoint& p = s.has_low ? s.low : s.high;
  const R8 bound = kLargestStep * p.T;
  R8 step = newton_step(s, p);
  if (std::abs(step) > kNearStep) step = kOvershoot * step;
  T = std::clamp(p.T + std::clamp(step, -bound, bound), s.coolest, kHottestState);
  if (s.has_high && T <= s.floor) T = 0.5 * (s.floor + p.T);
  if (s.has_low && T >= s.ceiling) T = 0.5 * (s.ceiling + p.T);
  if (s.has_high) return p.T - s.floor > kLimitWidth && T < p.T;
  return s.ceiling - p.T > kLimitWidth && T > p.T;
}

// Newton from the last state while the steps or the misses shrink, the middle otherwise.
R8 interpolate(EnthalpySearch& s) {
  R8 T = 0.5 * (s.low.T + s.high.T);
  const R8 step = newton_step(s, s.now);
  const R8 newton = s.now.T + step;
  const R8 miss = std::abs(s.now.h - s.TARGET);
  const bool converges = std::abs(step) <= 0.5 * s.step_before || miss <= kGoodDecrease * s.miss_before;
  if (step != 0.0 && newton > s.low.T && newton < s.high.T && converges) T = newton;
  s.step_before = s.step;
  s.step = std::abs(T - s.now.T);
  s.miss_before = miss;
  return T;
}

// Beyond the last state that worked it bounds what the model can reach; at the start and inside the bracket another
// temperature is tried.
bool pass_failure(EnthalpySearch& s, R8& T) {
  if (!(engine_budget() > 0)) return false;
  if (s.has_low != s.has_high) {
    (s.has_high ? s.floor : s.ceiling) = T;
    return true;
  }
  s.failures = s.failures + 1;
  if (s.failures > kMostFailures) return false;
  if (!s.has_low) {
    T = kOtherStarts[s.failures - 1];
    return true;
  }
  T = s.failures % 2 == 1 ? s.low.T + 0.3 * (T - s.low.T) : T + 0.6 * (s.high.T - T);
  return true;
}

}  // namespace talix
