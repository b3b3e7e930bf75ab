#include "flash/robust_line.h"

#include <algorithm>
#include <cmath>

#include "engine/codes.h"
#include "fastprops/flash_record.h"
#include "flash/robust_line_step.h"

namespace talix {

namespace {

constexpr R8 kStartPressure = 0.05;  // lines start there [bar], or at half the given pressure below it
// Lowest temperatures at which they start, one after the other [K].
constexpr R8 kStartTemperatures[] = {60.0, 100.0, 150.0, 220.0};
constexpr R8 kLowestPressure = 1.0E-20;  // of a line followed downwards [bar]
constexpr int kMaxPoints = 300;
constexpr int kFirstIterations = 30;
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
  LineStepper step;
};
constinit Tracer t{};

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
    if (!line_slopes(mixture, g.held, extreme, part.slope_to)) continue;
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
  if (!(g.from.u(g.held) * g.to.u(g.held) < 0.0)) return;
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
  const LineSegment& g = t.step.segment;
  const auto square = [](const LinePoint& p) {
    const R8 ratio = std::log(p.Zy / p.Zx);
    return ratio * ratio;
  };
  const R8 before = square(g.from), last = square(g.to);
  if (!t.step.has_segment || !(before > 1.2 * last)) return;
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

bool has_ended(const RobustMixture& mixture, LineTrace& trace) {
  const LinePoint& p = t.step.segment.to;
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
    if (!advance(mixture, t.step)) break;
    trace.points = trace.points + 1;
    const LineSegment g = t.step.segment;
    if (is_exchanged(g.from) != is_exchanged(g.to)) note_critical(mixture, g, trace);
    note_limits(mixture, g.to, trace);
    search_segment(mixture, g, trace);
    if (has_ended(mixture, trace)) return;
    if (!choose_spec(mixture, t.step)) break;
  }
  if (engine_budget() <= 0) {
    trace.end = LineEnd::unsettled;
    return;
  }
  const LinePoint& p = t.step.segment.to;
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
  t.downwards = given == SaturationGiven::temperature && t.wanted < t.first.u(t.v);
  if (t.downwards && set_out(mixture, t.first, t.first_slopes, true, t.step)) follow(mixture, trace);
  t.downwards = false;
  if (set_out(mixture, t.first, t.first_slopes, false, t.step)) follow(mixture, trace);
}

}  // namespace talix
