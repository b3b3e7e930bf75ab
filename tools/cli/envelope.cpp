#include "cli/envelope.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "cli/envelope_line.h"

namespace talix::cli {

namespace {

// Ends of both lines so near to each other, with densities so nearly alike, enclose the critical point.
constexpr double kMeetingLength = 0.005;
constexpr double kMeetingExcess = 0.4;
// The search between both ends goes on down to this length.
constexpr double kClosedLength = 0.001;
constexpr int kMostHalvings = 12;
// Each line heads for the end of the other one within this angle [rad].
constexpr double kWidestTurn = 0.8;
// A gap of more than so many steps has no points in between.
constexpr double kMostSteps = 2;
// A highest value found by a flash may lie this share of the distance of its neighbours from where it is expected.
constexpr double kNearTop = 0.25;

// Half way between the ends of both lines, on the curve that goes on smoothly from both.
Place middle_between(const LineTracer& bubble, const LineTracer& dew) {
  const Place a = bubble.end();
  const Place b = dew.end();
  const Place out = bubble.heading();
  const Place back = dew.heading();
  const double share = distance(a, b) / 8;
  return {(a.x + b.x) / 2 + share * (out.x + back.x), (a.y + b.y) / 2 + share * (out.y + back.y)};
}

// Whether each line heads for the end of the other one; past the critical point they do not.
bool facing(const LineTracer& bubble, const LineTracer& dew) {
  const Place out = direction(bubble.end(), dew.end());
  const Place back = direction(dew.end(), bubble.end());
  return turn(bubble.heading(), out) < kWidestTurn && turn(dew.heading(), back) < kWidestTurn;
}

// Takes points half way between the ends into the line to which they belong.
void close_gap(LineTracer& bubble, LineTracer& dew) {
  for (int i = 0; i < kMostHalvings; ++i) {
    const double gap = distance(bubble.end(), dew.end());
    if (!(gap > kClosedLength) || gap > kMostSteps * bubble.longest() || !facing(bubble, dew)) return;
    const Place middle = middle_between(bubble, dew);
    bool found = false;
    for (LineTracer* const line : {&bubble, &dew}) {
      EnvelopePoint point = line->find(middle, direction(line->end(), middle), gap / 2);
      if (!point.ok) continue;
      line->keep(std::move(point));
      found = true;
      break;
    }
    if (!found) return;
  }
}

std::optional<EnvelopeState> meeting_point(const LineTracer& bubble, const LineTracer& dew) {
  const Place a = bubble.end();
  const Place b = dew.end();
  const EnvelopePoint* const last_bubble = end_of(bubble.points());
  const EnvelopePoint* const last_dew = end_of(dew.points());
  if (last_bubble == nullptr || last_dew == nullptr || !(distance(a, b) < kMeetingLength) ||
      !(density_excess(*last_bubble) < kMeetingExcess) || !(density_excess(*last_dew) < kMeetingExcess))
    return std::nullopt;
  const Place between{(a.x + b.x) / 2, (a.y + b.y) / 2};
  return EnvelopeState{temperature(between), pressure(between)};
}

// The points found, from the beginning of the bubble line to that of the dew line.
std::vector<const EnvelopePoint*> whole_curve(const Envelope& envelope) {
  std::vector<const EnvelopePoint*> curve;
  for (const EnvelopePoint& point : envelope.bubble)
    if (point.ok) curve.push_back(&point);
  const auto turn = static_cast<std::ptrdiff_t>(curve.size());
  for (const EnvelopePoint& point : envelope.dew)
    if (point.ok) curve.push_back(&point);
  std::reverse(curve.begin() + turn, curve.end());
  return curve;
}

// Where the parabola through values at three positions has its top; nothing where it has none between them.
std::optional<double> top_of_parabola(const std::array<double, 3>& at, const std::array<double, 3>& value) {
  const double left = (value[1] - value[0]) / (at[1] - at[0]);
  const double right = (value[2] - value[1]) / (at[2] - at[1]);
  const double curvature = (right - left) / (at[2] - at[0]);
  const double top = (at[0] + at[1]) / 2 - left / (2 * curvature);
  if (!(curvature < 0) || !(top > at[0]) || !(top < at[2])) return std::nullopt;
  return top;
}

double value_of_parabola(const std::array<double, 3>& at, const std::array<double, 3>& value, double where) {
  const double left = (value[1] - value[0]) / (at[1] - at[0]);
  const double right = (value[2] - value[1]) / (at[2] - at[1]);
  const double curvature = (right - left) / (at[2] - at[0]);
  return value[0] + (where - at[0]) * (left + (where - at[1]) * curvature);
}

// The highest pressure or temperature of the curve: by the parabola through the highest point and its neighbours,
// and a flash there. Nothing where the curve is highest at one of its ends or at the gap between lines that do not
// meet.
std::optional<EnvelopeState> highest(const Envelope& envelope, bool of_pressure, LineTracer& bubble,
                                     LineTracer& dew) {
  const std::vector<const EnvelopePoint*> curve = whole_curve(envelope);
  const auto measure = [of_pressure](const EnvelopePoint* p) { return of_pressure ? p->P_bar : p->T_C; };
  const auto top = std::max_element(curve.begin(), curve.end(),
                                    [&](const auto* a, const auto* b) { return measure(a) < measure(b); });
  if (curve.size() < 3 || top == curve.begin() || top == curve.end() - 1) return std::nullopt;
  const EnvelopePoint* const point = *top;
  if (!envelope.critical && (point == end_of(envelope.bubble) || point == end_of(envelope.dew)))
    return std::nullopt;
  const std::array<Place, 3> p = {place((*(top - 1))->T_C, (*(top - 1))->P_bar),
                                  place(point->T_C, point->P_bar),
                                  place((*(top + 1))->T_C, (*(top + 1))->P_bar)};
  const std::array<double, 3> at = {-distance(p[0], p[1]), 0, distance(p[1], p[2])};
  const std::array<double, 3> x = {p[0].x, p[1].x, p[2].x};
  const std::array<double, 3> y = {p[0].y, p[1].y, p[2].y};
  const EnvelopeState as_found{point->T_C, point->P_bar};
  const std::optional<double> where = top_of_parabola(at, of_pressure ? y : x);
  if (!where) return as_found;
  const Place expected{value_of_parabola(at, x, *where), value_of_parabola(at, y, *where)};
  for (LineTracer* const line : {&bubble, &dew}) {
    const EnvelopePoint exact = line->saturation(!of_pressure, expected);
    if (exact.ok && distance(place(exact.T_C, exact.P_bar), expected) < kNearTop * (at[2] - at[0]) &&
        measure(&exact) >= measure(point))
      return EnvelopeState{exact.T_C, exact.P_bar};
  }
  return as_found;
}

}  // namespace

const EnvelopePoint* end_of(const std::vector<EnvelopePoint>& line) {
  const auto last = std::find_if(line.rbegin(), line.rend(), [](const EnvelopePoint& p) { return p.ok; });
  return last == line.rend() ? nullptr : &*last;
}

Envelope trace_envelope(const FlashRequest& mixture, const EnvelopeOptions& options,
                        const FlashFunction& flash, const EnvelopeProgress& progress) {
  LineTracer bubble(EnvelopeLine::bubble, mixture, options, flash, progress);
  LineTracer dew(EnvelopeLine::dew, mixture, options, flash, progress);
  bubble.run();
  dew.run();
  Envelope envelope;
  const bool both = bubble.has_heading() && dew.has_heading() && !bubble.open() && !dew.open();
  if (both) {
    close_gap(bubble, dew);
    envelope.critical = meeting_point(bubble, dew);
  }
  // Beyond the critical point a line has nothing to miss.
  if (envelope.critical) {
    envelope.bubble_end = "it meets the dew line at the critical point";
    envelope.dew_end = "it meets the bubble line at the critical point";
  } else {
    if (end_of(bubble.points()) != nullptr) envelope.bubble_end = bubble.end_reason();
    if (end_of(dew.points()) != nullptr) envelope.dew_end = dew.end_reason();
    bubble.keep_failure();
    dew.keep_failure();
  }
  envelope.bubble = bubble.points();
  envelope.dew = dew.points();
  envelope.bubble_open = bubble.open() || bubble.open_at_start();
  envelope.dew_open = dew.open() || dew.open_at_start();
  if (!envelope.bubble_open && !envelope.dew_open)
    envelope.cricondenbar = highest(envelope, true, bubble, dew);
  envelope.cricondentherm = highest(envelope, false, bubble, dew);
  return envelope;
}

}  // namespace talix::cli
