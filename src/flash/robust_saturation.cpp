#include "flash/robust_saturation.h"

#include <algorithm>
#include <cmath>

#include "engine/codes.h"
#include "fastprops/flash_record.h"
#include "flash/robust_line.h"

namespace talix {

namespace {

// Both lines, and the tries from Wilson's estimate.
constexpr int kMaxCandidates = 2 * kMaxCrossings + 2;
constexpr R8 kSameValue = 1.0E-7;  // in the ln of the variable asked for: one point
constexpr R8 kNegligible = 1.0E-300;
constexpr R8 kOneRoot = 1.0E-6;  // of ln Z

// A point to be tried: ln K with the lighter phase on top.
struct Candidate {
  CompVec lnK;
  R8 free;  // ln T or ln P, the one that is not given
  R8 away;  // from the caller's start
};

struct Work {
  LineTrace own, other;  // from the side asked for and from the other one
  I4 count;
  Vec<Candidate, kMaxCandidates> candidates;
  RobustSplit split, isothermal;
  RobustSplit unstable;  // the last point found with a further phase below it
  bool has_unstable;
  SaturationResult rated, scanned;
  RobustPhase vapour;
};
constinit Work w{};

struct Question {
  SaturationGiven given;
  R8 value, fraction, start;
  bool at_T;
  bool saturated;  // bubble or dew point
};

R8 away_from_start(const Question& q, R8 free) {
  if (q.at_T) return std::fabs(free - std::log(std::max(q.start, 1.0E-30)));
  return std::fabs(std::exp(free) - q.start);
}

// Keeps the candidates in order of their distance from the start.
void add_candidate(const RobustMixture& mixture, const Question& q, const LinePoint& point) {
  const bool exchanged = is_exchanged(point);
  if (std::fabs((exchanged ? 1.0 - point.fraction : point.fraction) - q.fraction) > 1.0E-9) return;
  const R8 free = point.u(q.at_T ? pressure_unknown(mixture) : temperature_unknown(mixture));
  for (int k = 1; k <= w.count; ++k)
    if (std::fabs(w.candidates(k).free - free) < kSameValue) return;
  if (w.count >= kMaxCandidates) return;
  int place = w.count + 1;
  const R8 away = away_from_start(q, free);
  for (; place > 1 && w.candidates(place - 1).away > away; --place)
    w.candidates(place) = w.candidates(place - 1);
  Candidate& c = w.candidates(place);
  for (int i = 1; i <= mixture.n; ++i) c.lnK(i) = exchanged ? -point.u(i) : point.u(i);
  c.free = free;
  c.away = away;
  w.count = w.count + 1;
}

// True when the line from the side asked for shows all of its kind.
bool is_complete(const Question& q, const LineTrace& trace) {
  return q.saturated ? trace.end == LineEnd::low_pressure && trace.critical_T > 0.0
                     : trace.end == LineEnd::critical;
}

void trace_both(const RobustMixture& mixture, const Question& q) {
  w.count = 0;
  w.has_unstable = false;
  w.other.count = 0;
  w.other.end = LineEnd::not_started;
  w.other.normal = w.other.exchanged = LineLimits{0.0, 0.0};
  w.other.critical_T = w.other.critical_P = 0.0;
  w.other.turned_T = w.other.turned_P = false;
  trace_line(mixture, q.fraction, q.given, q.value, q.saturated, w.own);
  for (int k = 1; k <= w.own.count; ++k) add_candidate(mixture, q, w.own.crossings(k));
  if (is_complete(q, w.own)) return;
  trace_line(mixture, 1.0 - q.fraction, q.given, q.value, true, w.other);
  for (int k = 1; k <= w.other.count; ++k) add_candidate(mixture, q, w.other.crossings(k));
}

void ln_k_of(const RobustMixture& mixture, const RobustSplit& split, CompVec& lnK) {
  for (int i = 1; i <= mixture.n; ++i)
    lnK(i) = std::log(std::max(split.vapour.x(i), kNegligible) / std::max(split.liquid.x(i), kNegligible));
}

// Takes W.split into the result when it is better. True when that is a stable one.
bool settle(const RobustMixture& mixture, const Question& q, SaturationResult& result) {
  w.unstable = w.split;
  w.has_unstable = true;
  if (!rate_saturation(mixture, q.given, w.split, w.rated)) return false;
  w.has_unstable = static_cast<bool>(w.rated.unstable);
  if (is_better_saturation(q.given, q.start, w.rated, result)) result = w.rated;
  return !w.has_unstable;
}

// From the phases that are stable where a metastable point was found to the point of theirs.
bool settle_from_isothermal(const RobustMixture& mixture, const Question& q, SaturationResult& result) {
  const R8 T = w.unstable.T, P = w.unstable.P;
  robust_isothermal(mixture, T, P, nullptr, w.isothermal);
  if (w.isothermal.answer != Split::two_phases) return false;
  CompVec lnK;
  ln_k_of(mixture, w.isothermal, lnK);
  if (!solve_saturation(mixture, q.given, q.value, q.fraction, lnK, q.at_T ? P : T, w.split)) return false;
  return settle(mixture, q, result);
}

bool settle_candidates(const RobustMixture& mixture, const Question& q, SaturationResult& result) {
  for (int k = 1; k <= w.count; ++k) {
    const Candidate& c = w.candidates(k);
    if (!solve_saturation(mixture, q.given, q.value, q.fraction, c.lnK, std::exp(c.free), w.split)) continue;
    if (settle(mixture, q, result)) return true;
  }
  return w.has_unstable && settle_from_isothermal(mixture, q, result);
}

// Newton from Wilson's estimate, for lines that could not be followed.
bool settle_wilson(const RobustMixture& mixture, const Question& q, SaturationResult& result) {
  LinePoint point{};
  wilson_at(mixture, q.fraction, q.given, q.value, point);
  CompVec lnK;
  for (int i = 1; i <= mixture.n; ++i) lnK(i) = point.u(i);
  const R8 start = std::exp(point.u(q.at_T ? pressure_unknown(mixture) : temperature_unknown(mixture)));
  return solve_saturation(mixture, q.given, q.value, q.fraction, lnK, start, w.split) &&
         settle(mixture, q, result);
}

R8 of_given(const Question& q, const LineLimits& limits) { return q.at_T ? limits.T : limits.P; }

// Is there vapour beside a liquid at the highest pressure?
bool boils_at(const RobustMixture& mixture, R8 T, R8 P) {
  robust_isothermal(mixture, T, P, nullptr, w.isothermal);
  return w.isothermal.answer == Split::two_phases && !w.isothermal.two_liquids;
}

// The lines join at a critical point or end there, or a line has turned back.
bool top_is_known(const Question& q) {
  if (w.own.critical_T > 0.0 || w.other.critical_T > 0.0) return true;
  return q.at_T ? w.own.turned_T || w.other.turned_T : w.own.turned_P || w.other.turned_P;
}

// Which limit of the lines the given value has passed.
void explain(const RobustMixture& mixture, const Question& q, SaturationResult& result) {
  const R8 same = std::max(of_given(q, w.own.normal), of_given(q, w.other.exchanged));
  const R8 contrary = std::max(of_given(q, w.own.exchanged), of_given(q, w.other.normal));
  result.answer = Saturation::no_line;
  result.limit = 0.0;
  const bool critical = w.own.critical_T > 0.0 || w.other.critical_T > 0.0;
  const R8 top = q.saturated ? std::max(same, contrary) : same;
  if (top > 0.0 && q.value > top && top_is_known(q)) {
    result.limit = top;
    result.answer = q.at_T ? Saturation::above_cricondentherm : Saturation::above_cricondenbar;
  } else if (q.saturated && same > 0.0 && q.value > same && critical) {
    result.limit = same;
    result.answer = Saturation::above_critical;
  } else if (q.at_T && boils_at(mixture, q.value, static_cast<R8>(kMaxPressure))) {
    result.answer = Saturation::above_range;
  }
}

// Two liquids are an answer in place of vapour and liquid where the lighter one has no vapour root, whose properties
// would stand in the column of the vapour.
bool stand_for_vapour(const RobustMixture& mixture, const RobustSplit& liquids) {
  evaluate_phase(mixture, liquids.T, liquids.P, liquids.vapour.x, phase::vapour, PhaseDerivatives::none,
                 w.vapour);
  return w.vapour.status == status::ok && std::fabs(std::log(w.vapour.Z / liquids.vapour.Z)) < kOneRoot;
}

}  // namespace

// robust_saturation: the lines of constant fraction, each point checked for stability, and a scan where they do not
// have it.
//
// In       given, value  temperature [K] or pressure [bar]
//          FRACTION      0 bubble point, 1 dew point
//          START         the caller's value of the other variable [bar] or [K]
// Out      result
// Status   found: the stable point nearest to START, or one with `unstable` set where no stable one was found, or one
//          with split.two_liquids where there is no other
void robust_saturation(const RobustMixture& mixture, SaturationGiven given, R8 value, R8 FRACTION, R8 START,
                       SaturationResult& result) {
  const Question q{given,
                   value,
                   FRACTION,
                   START,
                   given == SaturationGiven::temperature,
                   !(FRACTION > 0.0) || !(FRACTION < 1.0)};
  result.answer = Saturation::unsettled;
  result.limit = 0.0;
  result.unstable = false;
  result.rank = standing::metastable;
  if (mixture.n == 1) {
    saturation_of_pure(mixture, given, value, FRACTION, result);
    return;
  }
  trace_both(mixture, q);
  bool settled = settle_candidates(mixture, q, result);
  if (w.count == 0) settled = settle_wilson(mixture, q, result);
  // Lines that break off may hide a nearer point.
  const bool open = q.saturated && !is_complete(q, w.own) && !(w.other.end == LineEnd::low_pressure);
  if (settled && !open) return;
  if (result.answer == Saturation::found && result.rank == standing::lowest_pair) return;
  // A liquid that splits on lines that show everything has no stable bubble point to look for.
  const bool bubble_stands = result.answer == Saturation::found && result.unstable && !(FRACTION > 0.0);
  if (bubble_stands && (q.at_T || !open)) return;
  scan_saturation(mixture, given, value, FRACTION, START, w.scanned);
  const bool liquids = w.scanned.answer == Saturation::found && w.scanned.rank == standing::two_liquids;
  if (!liquids && is_better_saturation(given, START, w.scanned, result))
    result = w.scanned;
  else if (result.answer != Saturation::found)
    explain(mixture, q, result);
  // Beyond the limits of the lines that is what the caller has to know; where there is no line, two liquids may part.
  if (liquids && result.answer == Saturation::no_line && stand_for_vapour(mixture, w.scanned.split))
    result = w.scanned;
  // What was not found is only told where everything was looked at, or the lines say it too.
  if (w.scanned.answer == Saturation::unsettled && result.answer != Saturation::found &&
      (engine_budget() <= 0 || !is_complete(q, w.own) || result.answer == Saturation::no_line))
    result.answer = Saturation::unsettled;
}

}  // namespace talix
