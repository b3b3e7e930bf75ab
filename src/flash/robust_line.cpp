#include "flash/robust_line.h"

#include <algorithm>
#include <cmath>

#include "engine/codes.h"
#include "fastprops/flash_record.h"

namespace talix {

namespace {

constexpr R8 kStartPressure = 0.05;  // lines start there [bar], or at half the given pressure below it
// Lowest temperatures at which they start, one after the other [K].
constexpr R8 kStartTemperatures[] = {60.0, 100.0, 150.0, 220.0};
constexpr R8 kLowestPressure = 1.0E-20;  // of a line followed downwards [bar]
constexpr int kMaxPoints = 300;
constexpr int kFirstIterations = 30;
constexpr int kStepIterations = 6;
constexpr int kJumpIterations = 12;  // across a critical point
constexpr int kEasy = 2, kHard = 4;  // iterations that lengthen and shorten the next step
constexpr R8 kLongest = 1.0, kShortest = 0.004, kFirst = 0.5;  // steps, as a share of the largest
constexpr R8 kShorter = 0.4;                                   // behind one that failed
// Largest steps.
constexpr R8 kLargestT = 0.08, kLargestP = 0.7, kLargestK = 0.6, kLargestShareK = 0.15;
// Weight of ln T among the sensitivities.
constexpr R8 kWeightT = 4.0;
// Critical region: every ln K below this. The critical point is passed in one step from gap
// to gap; a gap that is too wide for the mixture is made narrower.
constexpr R8 kCriticalK = 0.15, kWidestGap = 0.02, kNarrowestGap = 1.0E-4, kNarrower = 0.3;
// A line that cannot be followed further ends at a critical point when its phases are as near as this.
constexpr R8 kNearlyAlike = 0.4;
// Farthest that a critical point is extrapolated, in ln T and ln P.
constexpr R8 kFarthestT = 0.02, kFarthestP = 0.1;

struct Tracer {
  SaturationGiven given;
  R8 wanted;        // ln of the given value
  int v;            // its unknown
  bool through;     // past the critical point
  bool downwards;   // towards lower pressure
  LinePoint first;  // of the line
  LineVec first_slopes;
  R8 reach;          // length of the next step, as a share of the largest one
  R8 gap;            // nearest approach of a ln K to a critical point
  R8 sense;          // of the movement along the slopes of segment.to: +1 or -1
  bool has_segment;  // segment.from is a point of the line
  LineSegment segment;
  LineVec slopes;  // at segment.to, with respect to spec
  int spec;
};
constinit Tracer t{};

R8 largest_ln_k(const RobustMixture& mixture, const LinePoint& point) {
  R8 most = 0.0;
  for (int i = 1; i <= mixture.n; ++i) most = std::max(most, std::fabs(point.u(i)));
  return most;
}

bool near_critical(const RobustMixture& mixture, const LinePoint& point) {
  return largest_ln_k(mixture, point) < kCriticalK && std::fabs(std::log(point.Zy / point.Zx)) < 0.7;
}

// The unknown that moves most along the line; next to a critical point one of the ln K.
int most_sensitive(const RobustMixture& mixture, const LinePoint& point, const LineVec& slopes) {
  const int n = mixture.n;
  const int last = near_critical(mixture, point) ? n : n + 2;
  int best = 1;
  R8 most = -1.0;
  for (int i = 1; i <= last; ++i) {
    const R8 size = std::fabs(slopes(i)) * (i == n + 1 ? kWeightT : 1.0);
    if (size > most) {
      most = size;
      best = i;
    }
  }
  return best;
}

// Turns the slopes at the last point to the unknown that moves most.
bool choose_spec(const RobustMixture& mixture) {
  t.spec = most_sensitive(mixture, t.segment.to, t.slopes);
  const R8 scale = t.slopes(t.spec);
  if (!(std::fabs(scale) > 0.0)) return false;
  for (int i = 1; i <= mixture.n + 2; ++i) t.slopes(i) /= scale;
  if (scale < 0.0) t.sense = -t.sense;
  return true;
}

R8 step_length(const RobustMixture& mixture) {
  const int n = mixture.n;
  const LinePoint& p = t.segment.to;
  R8 most = 1.0E+3;
  const auto limit = [&most](R8 slope, R8 largest) {
    if (std::fabs(slope) * most > largest) most = largest / std::fabs(slope);
  };
  for (int i = 1; i <= n; ++i) limit(t.slopes(i), kLargestK + kLargestShareK * std::fabs(p.u(i)));
  limit(t.slopes(n + 1), kLargestT);
  limit(t.slopes(n + 2), kLargestP);
  R8 end = p.u(t.spec) + t.sense * t.reach * most;
  const R8 here = p.u(t.spec);
  if (t.spec <= n && here * t.sense < 0.0 && (here * end < 0.0 || std::fabs(end) < t.gap))
    end = std::fabs(here) > 1.5 * t.gap ? std::copysign(t.gap, here) : -std::copysign(t.gap, here);
  return end - p.u(t.spec);
}

// Extrapolation by the cubics of the last segment where they hold, else along the slopes.
void predict(const RobustMixture& mixture, R8 S, LinePoint& point) {
  const int order = mixture.n + 2;
  point = t.segment.to;
  const R8 step = S - t.segment.to.u(t.spec);
  LineSegment& g = t.segment;
  const R8 behind = g.to.u(t.spec) - g.from.u(t.spec);
  if (t.has_segment && g.spec == t.spec && behind * step > 0.0 && std::fabs(step) < 2.0 * std::fabs(behind)) {
    for (int k = 1; k <= order; ++k) point.u(k) = cubic_value(g, k, S);
  } else {
    for (int k = 1; k <= order; ++k) point.u(k) += step * t.slopes(k);
  }
}

// A solution far from where the slopes lead belongs to another line.
bool has_jumped(const RobustMixture& mixture, const LinePoint& predicted, const LinePoint& found) {
  const int n = mixture.n;
  if (std::fabs(found.u(n + 1) - predicted.u(n + 1)) > kLargestT) return true;
  if (std::fabs(found.u(n + 2) - predicted.u(n + 2)) > 1.5 * kLargestP) return true;
  for (int i = 1; i <= n; ++i)
    if (std::fabs(found.u(i) - predicted.u(i)) >
        1.5 * (kLargestK + kLargestShareK * std::fabs(predicted.u(i))))
      return true;
  return false;
}

void set_roots(LinePoint& point) {
  const bool exchanged = is_exchanged(point);
  point.root_x = exchanged ? phase::vapour : phase::liquid;
  point.root_y = exchanged ? phase::liquid : phase::vapour;
}

void note_limits(const RobustMixture& mixture, const LinePoint& point, LineTrace& trace) {
  LineLimits& limits = is_exchanged(point) ? trace.exchanged : trace.normal;
  limits.T = std::max(limits.T, temperature_of(mixture, point));
  limits.P = std::max(limits.P, pressure_of(mixture, point));
}

void note_crossing(const RobustMixture& mixture, const LineSegment& g, LineTrace& trace) {
  const R8 a = g.from.u(t.v) - t.wanted, b = g.to.u(t.v) - t.wanted;
  if ((a < 0.0) == (b < 0.0) || trace.count >= kMaxCrossings) return;
  LinePoint point{};
  if (!find_crossing(mixture, g, t.v, t.wanted, point)) return;
  set_roots(point);
  trace.count = trace.count + 1;
  trace.crossings(trace.count) = point;
}

// Crossings of a segment, on both sides of an extreme of the given unknown.
void search_segment(const RobustMixture& mixture, const LineSegment& g, LineTrace& trace) {
  const int n = mixture.n;
  for (const int v : {n + 1, n + 2}) {
    if (!(g.slope_from(v) * g.slope_to(v) < 0.0)) continue;
    LinePoint extreme{};
    if (!find_extreme(mixture, g, v, extreme)) continue;
    note_limits(mixture, extreme, trace);
    if (extreme.u(v) > std::max(g.from.u(v), g.to.u(v)))
      (v == n + 1 ? trace.turned_T : trace.turned_P) = true;
    if (v != t.v) continue;
    LineSegment part = g;
    part.to = extreme;
    if (!line_slopes(mixture, g.spec, extreme, part.slope_to)) continue;
    // The slopes come in steps of the unknown that was held.
    LineSegment rest = g;
    rest.from = extreme;
    rest.slope_from = part.slope_to;
    note_crossing(mixture, part, trace);
    note_crossing(mixture, rest, trace);
    return;
  }
  note_crossing(mixture, g, trace);
}

// The critical point between two points of which y is the lighter phase of one only.
void note_critical(const RobustMixture& mixture, const LineSegment& g, LineTrace& trace) {
  if (!(g.from.u(g.spec) * g.to.u(g.spec) < 0.0)) return;
  trace.critical_T = std::exp(cubic_value(g, temperature_unknown(mixture), 0.0));
  trace.critical_P = std::exp(cubic_value(g, pressure_unknown(mixture), 0.0));
  for (LineLimits* part : {&trace.normal, &trace.exchanged}) {
    part->T = std::max(part->T, trace.critical_T);
    part->P = std::max(part->P, trace.critical_P);
  }
}

// The critical point ahead of a line that could not be followed to its end: there the logarithm of the ratio of the
// volumes goes to zero as the square root of the distance.
void extrapolate_critical(const RobustMixture& mixture, LineTrace& trace) {
  const LineSegment& g = t.segment;
  const auto square = [](const LinePoint& p) {
    const R8 ratio = std::log(p.Zy / p.Zx);
    return ratio * ratio;
  };
  const R8 before = square(g.from), last = square(g.to);
  if (!t.has_segment || !(before > 1.2 * last)) return;
  const R8 ahead = last / (before - last);
  const int v_T = temperature_unknown(mixture), v_P = pressure_unknown(mixture);
  const R8 by_T = ahead * (g.to.u(v_T) - g.from.u(v_T)), by_P = ahead * (g.to.u(v_P) - g.from.u(v_P));
  if (!(std::fabs(by_T) < kFarthestT) || !(std::fabs(by_P) < kFarthestP)) return;
  trace.critical_T = std::exp(g.to.u(v_T) + by_T);
  trace.critical_P = std::exp(g.to.u(v_P) + by_P);
  LineLimits& limits = is_exchanged(g.to) ? trace.exchanged : trace.normal;
  limits.T = std::max(limits.T, trace.critical_T);
  limits.P = std::max(limits.P, trace.critical_P);
}

// First point of the line: at low pressure, or at a low temperature where that would be too cold.
bool start(const RobustMixture& mixture, R8 fraction, LineTrace& trace) {
  R8 P = kStartPressure;
  if (t.given == SaturationGiven::pressure) P = std::min(P, 0.5 * std::exp(t.wanted));
  for (const R8 lowest : kStartTemperatures) {
    LinePoint& p = t.first;
    wilson_point(mixture, fraction, P, lowest, p);
    const int v = temperature_of(mixture, p) <= lowest * 1.0001 ? temperature_unknown(mixture)
                                                                : pressure_unknown(mixture);
    const PointAnswer answer = solve_point(mixture, v, p.u(v), kFirstIterations, p);
    if (answer == PointAnswer::solved && !is_exchanged(p)) {
      note_limits(mixture, p, trace);
      return line_slopes(mixture, pressure_unknown(mixture), p, t.first_slopes);
    }
    if (engine_budget() <= 0) trace.end = LineEnd::unsettled;
  }
  return false;
}

// Back to the first point, to go on upwards or downwards in pressure.
bool set_out(const RobustMixture& mixture, bool downwards) {
  t.downwards = downwards;
  t.sense = downwards ? -1.0 : 1.0;
  t.reach = kFirst;
  t.gap = kWidestGap;
  t.has_segment = false;
  t.segment.to = t.first;
  t.slopes = t.first_slopes;
  return choose_spec(mixture);
}

// One step to a new segment; false when none could be made.
bool advance(const RobustMixture& mixture, LineTrace& trace) {
  LinePoint predicted{};
  while (t.reach > kShortest) {
    const R8 S = t.segment.to.u(t.spec) + step_length(mixture);
    predict(mixture, S, predicted);
    LinePoint next = predicted;
    const bool jump = t.spec <= mixture.n && S * t.segment.to.u(t.spec) < 0.0;
    const PointAnswer answer =
        solve_point(mixture, t.spec, S, jump ? kJumpIterations : kStepIterations, next);
    if (answer == PointAnswer::unsettled && engine_budget() <= 0) {
      trace.end = LineEnd::unsettled;
      return false;
    }
    if (answer != PointAnswer::solved || has_jumped(mixture, predicted, next)) {
      if (jump && t.gap > kNarrowestGap)
        t.gap *= kNarrower;
      else
        t.reach *= kShorter;
      continue;
    }
    LineSegment& g = t.segment;
    g.from = g.to;
    g.slope_from = t.slopes;
    g.spec = t.spec;
    set_roots(next);
    g.to = next;
    if (!line_slopes(mixture, g.spec, g.to, g.slope_to)) return false;
    t.slopes = g.slope_to;
    t.has_segment = true;
    if (next.iterations <= kEasy) t.reach = std::min(kLongest, 1.6 * t.reach);
    if (next.iterations >= kHard) t.reach *= 0.7;
    return true;
  }
  return false;
}

bool has_ended(const RobustMixture& mixture, LineTrace& trace) {
  const LinePoint& p = t.segment.to;
  if (t.downwards) {
    if (pressure_of(mixture, p) < kLowestPressure) trace.end = LineEnd::low_pressure;
    if (trace.count > 0) trace.end = LineEnd::given_reached;
  } else if (p.u(pressure_unknown(mixture)) < t.first.u(pressure_unknown(mixture))) {
    trace.end = LineEnd::low_pressure;
  }
  if (temperature_of(mixture, p) < kLowestSaturation) trace.end = LineEnd::low_temperature;
  if (pressure_of(mixture, p) > static_cast<R8>(kMaxPressure)) trace.end = LineEnd::high_pressure;
  if (!t.through && is_exchanged(p)) trace.end = LineEnd::critical;
  return trace.end != LineEnd::stuck;
}

void follow(const RobustMixture& mixture, LineTrace& trace) {
  trace.end = LineEnd::stuck;
  while (trace.points < kMaxPoints) {
    if (!advance(mixture, trace)) break;
    trace.points = trace.points + 1;
    const LineSegment g = t.segment;
    if (is_exchanged(g.from) != is_exchanged(g.to)) note_critical(mixture, g, trace);
    note_limits(mixture, g.to, trace);
    search_segment(mixture, g, trace);
    if (has_ended(mixture, trace)) return;
    if (!choose_spec(mixture)) break;
  }
  if (trace.end != LineEnd::stuck) return;
  const LinePoint& p = t.segment.to;
  if (!(largest_ln_k(mixture, p) < kNearlyAlike) || !(std::fabs(std::log(p.Zy / p.Zx)) < 2.0 * kNearlyAlike))
    return;
  trace.end = LineEnd::critical;
  extrapolate_critical(mixture, trace);
}

}  // namespace

// trace_line: continuation in ln K, ln T and ln P with the most sensitive unknown held in each step.
//
// In       FRACTION      of the feed in the lighter phase at the start of the line
//          given, value  crossings of this T [K] or P [bar] are collected
//          THROUGH       go on past a critical point, where the phases change their parts
// Out      trace
// Source   M.L. Michelsen, Fluid Phase Equilibria 4 (1980) 1-10
void trace_line(const RobustMixture& mixture, R8 FRACTION, SaturationGiven given, R8 value, bool THROUGH,
                LineTrace& trace) {
  trace.end = LineEnd::not_started;
  trace.count = trace.points = 0;
  trace.normal = trace.exchanged = LineLimits{0.0, 0.0};
  trace.critical_T = trace.critical_P = 0.0;
  trace.turned_T = trace.turned_P = false;
  t.given = given;
  t.wanted = std::log(value);
  t.v = given == SaturationGiven::temperature ? temperature_unknown(mixture) : pressure_unknown(mixture);
  t.through = THROUGH;
  if (!start(mixture, FRACTION, trace)) return;
  if (given == SaturationGiven::temperature && t.wanted < t.first.u(t.v) && set_out(mixture, true))
    follow(mixture, trace);
  if (set_out(mixture, false)) follow(mixture, trace);
}

}  // namespace talix
