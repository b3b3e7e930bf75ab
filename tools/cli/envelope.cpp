#include "cli/envelope.h"

#include <algorithm>
#include <cmath>

#include "cli/words.h"

namespace talix::cli {

namespace {

constexpr double kZeroCelsius = 273.15;
// Directions and steps are measured in units of this temperature difference and of a pressure ratio of e.
constexpr double kKelvinPerUnit = 40;
// With this number of points a step is at most so long, along the line and on either axis of a plot.
constexpr double kReferencePoints = 80;
constexpr double kLongestStep = 0.12;
constexpr double kMostKelvin = 5;
constexpr double kMostBar = 4;
// Below this length the line has come to its end.
constexpr double kShortestStep = 0.01;
// Stretches without an answer that are passed over.
constexpr int kMostGaps = 2;
// An answer may lie this share of the step from where it is expected; below the second share the step grows.
constexpr double kFarthest = 0.25;
constexpr double kClose = 0.08;
// The line turns by at most this angle a step [rad].
constexpr double kSharpestTurn = 0.2;
// On a plot it should turn by no more than this [rad]; the next steps are shorter where it does.
constexpr double kSharpestBend = 0.2;
// Accuracy of the search for the edge of the two-phase region.
constexpr double kEdgeWidth = 2e-4;
// The same phase twice: densities within 1 %, or compositions and densities both close.
constexpr double kAlikeDensity = 0.01;
constexpr double kAlikeComposition = 1e-3;
constexpr double kNearDensity = 0.05;
// With a smaller excess of the liquid density the edge of the two-phase region is not sharp enough.
constexpr double kSharpEdge = 0.16;
// With a smaller excess of the liquid density an answer is checked by isothermal flashes around it.
constexpr double kDoubtful = 0.5;
// A phase with less than this share of the feed is none.
constexpr double kLeastShare = 1e-6;
constexpr double kHighestPressure = 900;      // of the library [bar]
constexpr double kHighestTemperature = 1500;  // of the library [C]

// A state, or a direction between states, in units of the step length.
struct Place {
  double x = 0;  // temperature
  double y = 0;  // logarithm of the pressure
};

Place place(double T_C, double P_bar) { return {(T_C + kZeroCelsius) / kKelvinPerUnit, std::log(P_bar)}; }
double temperature(const Place& p) { return p.x * kKelvinPerUnit - kZeroCelsius; }
double pressure(const Place& p) { return std::exp(p.y); }
Place along(const Place& from, const Place& direction, double length) {
  return {from.x + direction.x * length, from.y + direction.y * length};
}
double distance(const Place& a, const Place& b) { return std::hypot(a.x - b.x, a.y - b.y); }
Place direction(const Place& from, const Place& to) {
  const double length = distance(from, to);
  return length > 0 ? Place{(to.x - from.x) / length, (to.y - from.y) / length} : Place{0, 1};
}
double turn(const Place& a, const Place& b) {
  return std::abs(std::atan2(a.x * b.y - a.y * b.x, a.x * b.x + a.y * b.y));
}

std::optional<float> density(const std::optional<PhaseResult>& phase) {
  constexpr std::size_t kDensity = 1;
  return phase ? phase->properties[kDensity] : std::nullopt;
}

// Excess of the liquid density over that of the vapour, relative to it; a large number where one is missing.
double density_excess(const FlashResult& result) {
  const std::optional<float> vapour = density(result.vapour);
  const std::optional<float> liquid = density(result.liquid);
  if (!vapour || !liquid || !(*vapour > 0.0F) || !(*liquid > 0.0F)) return HUGE_VAL;
  return std::abs(static_cast<double>(*liquid) / static_cast<double>(*vapour) - 1);
}

// One line, from low to high pressure and around.
class Tracer {
 public:
  Tracer(EnvelopeLine line, const FlashRequest& mixture, const EnvelopeOptions& options,
         const FlashFunction& flash, const EnvelopeProgress& progress)
      : line_(line), request_(mixture), options_(options), flash_(flash), progress_(progress) {
    const double scale = kReferencePoints / options.points;
    longest_ = kLongestStep * scale;
    most_kelvin_ = kMostKelvin * scale;
    most_bar_ = kMostBar * scale;
  }

  std::vector<EnvelopePoint> run() {
    if (start()) {
      int resumed = 0;
      while (static_cast<int>(points_.size()) < 4 * options_.points) {
        if (!step() && (resumed++ == kMostGaps || !resume())) break;
      }
    }
    return std::move(points_);
  }

 private:
  bool dew() const { return line_ == EnvelopeLine::dew; }

  FlashResult ask(FlashType type, const Place& at) {
    request_.type = type;
    request_.T_C = temperature(at);
    request_.P_bar = pressure(at);
    return flash_(request_);
  }

  // The vapour fraction of an isothermal flash; nothing where it failed.
  std::optional<double> vapour_fraction(const Place& at) {
    const FlashResult result = ask(FlashType::tp, at);
    return result.ok ? std::optional(static_cast<double>(result.vapour_fraction)) : std::nullopt;
  }

  EnvelopePoint failed(const Place& at, std::string message) const {
    EnvelopePoint point;
    point.line = line_;
    point.T_C = temperature(at);
    point.P_bar = pressure(at);
    point.message = std::move(message);
    return point;
  }

  EnvelopePoint found(const FlashResult& result, const Place& at, std::string method) const {
    EnvelopePoint point;
    point.line = line_;
    point.ok = true;
    point.T_C = result.T_C ? static_cast<double>(*result.T_C) : temperature(at);
    point.P_bar = result.P_bar ? static_cast<double>(*result.P_bar) : pressure(at);
    point.method = std::move(method);
    point.message = result.message;
    point.vapour_density = density(result.vapour);
    point.liquid_density = density(result.liquid);
    return point;
  }

  // The bubble or dew point at the pressure or at the temperature of a place.
  EnvelopePoint saturation(bool at_pressure, const Place& at) {
    const FlashType type = dew() ? (at_pressure ? FlashType::dew_t : FlashType::dew_p)
                                 : (at_pressure ? FlashType::bubble_t : FlashType::bubble_p);
    const FlashResult result = ask(type, at);
    if (!result.ok) return failed(at, result.message);
    if (!result.vapour || !result.liquid) return failed(at, "the answer has one phase only");
    if (phases_alike(result)) return failed(at, "both phases are alike");
    // Towards the critical point the densities only come closer.
    if (last_excess() < density_excess(result) && density_excess(result) < kDoubtful)
      return failed(at, "the phases of the answer are not those of the line");
    EnvelopePoint point = found(result, at, row_of(type).name);
    if (density_excess(result) < kDoubtful && !divides(place(point.T_C, point.P_bar)))
      return failed(at, "the same phases on both sides of the answer");
    return point;
  }

  // Excess of the liquid density at the last point of the line.
  double last_excess() const {
    const auto last =
        std::find_if(points_.rbegin(), points_.rend(), [](const EnvelopePoint& p) { return p.ok; });
    if (last == points_.rend() || !last->vapour_density || !last->liquid_density) return HUGE_VAL;
    return std::abs(static_cast<double>(*last->liquid_density) / static_cast<double>(*last->vapour_density) -
                    1);
  }

  // Whether the isothermal flash finds other phases on one side of a place than on the other. Beyond the critical point
  // bubble and dew flashes alone still give answers, with the same single phase all around them.
  bool divides(const Place& middle) {
    if (answers_are_checked()) return true;
    constexpr double kReach = 0.02;
    const FlashResult hot = ask(FlashType::tp, {middle.x + kReach, middle.y - kReach});
    const FlashResult cold = ask(FlashType::tp, {middle.x - kReach, middle.y + kReach});
    if (!hot.ok || !cold.ok) return false;
    const auto kind = [this](const FlashResult& result) {
      return two_phases(result) ? 1 : result.vapour_fraction > 0.5F ? 2 : 0;
    };
    return kind(hot) != kind(cold);
  }

  void keep(EnvelopePoint point) {
    if (point.ok) path_.push_back(place(point.T_C, point.P_bar));
    points_.push_back(std::move(point));
    if (progress_) progress_(points_.back());
  }

  // The library gives no answer that is none, and warns of a second liquid, beside which isothermal flashes find other
  // phases than those of the line.
  bool answers_are_checked() const { return request_.verify != 0; }

  // Whether a point of low pressure has the right phases on both sides.
  bool on_the_line(const EnvelopePoint& point) {
    if (answers_are_checked()) return true;
    constexpr double kKelvin = 0.1;
    const Place middle = place(point.T_C, point.P_bar);
    const double outward = (dew() ? kKelvin : -kKelvin) / kKelvinPerUnit;
    const std::optional<double> outside = vapour_fraction({middle.x + outward, middle.y});
    const std::optional<double> inside = vapour_fraction({middle.x - outward, middle.y});
    if (!outside || !inside) return false;
    return dew() ? *outside >= 1 && *inside < 1 : *outside <= 0 && *inside > 0;
  }

  // Two neighbouring points; from a higher pressure where the first one does not hold.
  bool start() {
    constexpr int kTries = 12;
    constexpr double kNextTry = 0.4;
    const double first = std::log(options_.from_P_bar);
    for (int i = 0; i < kTries; ++i) {
      const Place at{place(kStartTemperature_C, 1).x, first + kNextTry * i};
      if (!(pressure(at) < kHighestPressure)) break;
      EnvelopePoint point = saturation(true, at);
      if (point.ok && !on_the_line(point)) {
        point = failed(place(point.T_C, point.P_bar), "not on the " + name() + " line");
      }
      if (!point.ok) {
        keep(std::move(point));
        continue;
      }
      const Place here = place(point.T_C, point.P_bar);
      EnvelopePoint next = saturation(true, {here.x, here.y + longest_ / 4});
      const bool good = next.ok && on_the_line(next);
      if (!good) continue;
      keep(std::move(point));
      keep(std::move(next));
      step_ = longest_ / 2;
      return true;
    }
    return start_at_temperature();
  }

  // The same from the lowest temperature that has a point: where the liquid splits in two at low temperature, a bubble
  // line begins at a high pressure.
  bool start_at_temperature() {
    constexpr double kColdest = -150;
    constexpr double kHottest = 400;
    constexpr double kNextKelvin = 10;
    if (!answers_are_checked()) return false;
    for (double T_C = kColdest; T_C <= kHottest; T_C += kNextKelvin) {
      EnvelopePoint point = saturation(false, place(T_C, options_.from_P_bar));
      if (!point.ok || point.P_bar < options_.from_P_bar) continue;
      const Place here = place(point.T_C, point.P_bar);
      EnvelopePoint next = saturation(false, {here.x + longest_ / 4, here.y});
      if (!next.ok) continue;
      keep(std::move(point));
      keep(std::move(next));
      step_ = longest_ / 4;
      return true;
    }
    return false;
  }

  std::string name() const { return dew() ? "dew" : "bubble"; }

  // How the line goes on from its end: the last direction, turned on by half of the last turn.
  Place heading() const {
    const std::size_t n = path_.size();
    const Place last = direction(path_[n - 2], path_[n - 1]);
    if (n < 3) return last;
    const Place before = direction(path_[n - 3], path_[n - 2]);
    const double share =
        0.5 * std::min(1.0, distance(path_[n - 2], path_[n - 1]) / distance(path_[n - 3], path_[n - 2]));
    return direction({0, 0}, {last.x + share * (last.x - before.x), last.y + share * (last.y - before.y)});
  }

  // The longest step in a direction that stays within the limits on both axes.
  double bounded(double length, const Place& way) const {
    length = std::min(length, longest_);
    if (way.x != 0) length = std::min(length, most_kelvin_ / kKelvinPerUnit / std::abs(way.x));
    if (way.y != 0) length = std::min(length, most_bar_ / pressure(path_.back()) / std::abs(way.y));
    return std::max(length, kShortestStep);
  }

  bool fits(const EnvelopePoint& point, const Place& expected, const Place& way, double length) const {
    const Place here = place(point.T_C, point.P_bar);
    return distance(here, expected) <= kFarthest * length &&
           turn(direction(path_.back(), here), way) <= 2 * kSharpestTurn;
  }

  // The angle by which the line turns at its last point on its way to the next one, with T and P on even axes.
  double bend_on_paper(const Place& next) const {
    const std::size_t n = path_.size();
    const auto paper = [](const Place& p) { return Place{temperature(p), pressure(p)}; };
    return turn(direction(paper(path_[n - 2]), paper(path_[n - 1])),
                direction(paper(path_[n - 1]), paper(next)));
  }

  // How far a point lies off a line through a place.
  double aside(const EnvelopePoint& point, const Place& through, const Place& way) const {
    const Place here = place(point.T_C, point.P_bar);
    return std::abs((here.x - through.x) * way.y - (here.y - through.y) * way.x);
  }

  // One point further, with shorter steps where it is not found; false at the end of the line.
  bool step() {
    const Place way = heading();
    double length = bounded(step_, way);
    EnvelopePoint first_failure;
    for (bool first = true;; first = false) {
      const Place expected = along(path_.back(), way, length);
      if (out_of_range(expected)) return false;
      EnvelopePoint point = next(expected, way, length);
      if (point.ok) {
        const double off = distance(place(point.T_C, point.P_bar), expected) / length;
        const double bend = bend_on_paper(place(point.T_C, point.P_bar));
        step_ = bend > kSharpestBend                         ? 0.6 * length
                : off < kClose && bend < 0.4 * kSharpestBend ? 1.5 * length
                                                             : length;
        keep(std::move(point));
        return true;
      }
      if (first) first_failure = std::move(point);
      if (length <= kShortestStep) {
        keep(std::move(first_failure));
        return false;
      }
      length = std::max(length / 2, kShortestStep);
    }
  }

  bool out_of_range(const Place& at) const {
    return pressure(at) > kHighestPressure || temperature(at) > kHighestTemperature ||
           pressure(at) < 0.5 * options_.from_P_bar || !(at.x > 0);
  }

  // The point of the line next to where it is expected: in T where the line is steep and in P where it is flat, and
  // the other way round, since either answer may be a loose one: the nearer one counts. Where neither holds, the edge
  // of the two-phase region.
  EnvelopePoint next(const Place& expected, const Place& way, double length) {
    const bool steep = std::abs(way.y) > std::abs(way.x);
    EnvelopePoint best = saturation(steep, expected);
    EnvelopePoint other = saturation(!steep, expected);
    const bool fit = best.ok && fits(best, expected, way, length);
    const bool other_fit = other.ok && fits(other, expected, way, length);
    if (other_fit && (!fit || aside(other, expected, way) < aside(best, expected, way))) return other;
    if (fit) return best;
    EnvelopePoint point = edge(expected, way, length);
    if (point.ok && fits(point, expected, way, length)) return point;
    if (!best.ok) return best;
    return failed(expected, "the " + best.method + " answer " + shortest(static_cast<float>(best.T_C)) +
                                " C, " + shortest(static_cast<float>(best.P_bar)) + " bar is off the line");
  }

  // Two phases that differ, in a share that counts.
  bool two_phases(const FlashResult& result) const {
    const double share = static_cast<double>(result.vapour_fraction);
    return result.ok && result.vapour && result.liquid && share > kLeastShare && share < 1 - kLeastShare &&
           !phases_alike(result);
  }

  // Bisection across the line, between a state with two phases and one without.
  EnvelopePoint edge(const Place& middle, const Place& way, double length) {
    const Place across{-way.y, way.x};
    const double reach = kFarthest * length;
    const Place a = along(middle, across, reach);
    const Place b = along(middle, across, -reach);
    const FlashResult one = ask(FlashType::tp, a);
    const FlashResult two = ask(FlashType::tp, b);
    if (two_phases(one) == two_phases(two) || !one.ok || !two.ok)
      return failed(middle, "no edge of the two-phase region");
    return two_phases(one) ? edge_between(a, b, one) : edge_between(b, a, two);
  }

  // The same from a state with two phases, whose flash is given, to one without.
  EnvelopePoint edge_between(Place inside, Place outside, FlashResult phases) {
    const Place from = inside;
    while (distance(inside, outside) > kEdgeWidth) {
      const Place half{(inside.x + outside.x) / 2, (inside.y + outside.y) / 2};
      FlashResult result = ask(FlashType::tp, half);
      if (two_phases(result)) {
        inside = half;
        phases = std::move(result);
      } else {
        outside = half;
      }
    }
    // The phase that vanishes tells the line; beyond the critical point it is the other one. Isothermal flashes give
    // no sharp edge where the phases are nearly alike.
    if ((phases.vapour_fraction > 0.5F) != dew()) return failed(from, "beyond the critical point");
    if (density_excess(phases) < kSharpEdge) return failed(from, "both phases are nearly alike");
    return found(phases, inside, "edge");
  }

  // The edge above a place inside the two-phase region, at the same temperature.
  EnvelopePoint edge_above(Place inside) {
    constexpr double kUpwards = 0.05;
    FlashResult phases = ask(FlashType::tp, inside);
    while (two_phases(phases) && pressure(inside) < kHighestPressure * std::exp(-kUpwards)) {
      const Place above{inside.x, inside.y + kUpwards};
      FlashResult result = ask(FlashType::tp, above);
      if (!two_phases(result)) return edge_between(inside, above, phases);
      inside = above;
      phases = std::move(result);
    }
    return failed(inside, "no edge of the two-phase region");
  }

  // Beyond a stretch where nothing is found: the bubble line at a higher temperature, by isothermal flashes upwards
  // from the pressure of its end. False where there is none either, as at the critical point.
  bool resume() {
    constexpr double kNeighbour = 0.04;
    if (dew() || path_.empty()) return false;
    const Place end = path_.back();
    for (const double jump : {0.1, 0.2, 0.4, 0.7, 1.0, 1.5}) {
      EnvelopePoint point = edge_above({end.x + jump, end.y});
      EnvelopePoint next = edge_above({end.x + jump + kNeighbour, end.y});
      if (!point.ok || !next.ok) continue;
      if (distance(place(point.T_C, point.P_bar), place(next.T_C, next.P_bar)) > 2 * kNeighbour) continue;
      point.after_gap = true;
      path_.clear();
      keep(std::move(point));
      keep(std::move(next));
      step_ = longest_ / 4;
      return true;
    }
    return false;
  }

  EnvelopeLine line_;
  FlashRequest request_;
  EnvelopeOptions options_;
  const FlashFunction& flash_;
  const EnvelopeProgress& progress_;
  std::vector<EnvelopePoint> points_;
  std::vector<Place> path_;  // of the points found
  double step_ = 0;
  double longest_ = 0;
  double most_kelvin_ = 0;
  double most_bar_ = 0;
};

}  // namespace

bool phases_alike(const FlashResult& result) {
  if (!result.vapour || !result.liquid) return false;
  double difference = 0;
  for (std::size_t i = 0; i < result.vapour->composition.size(); ++i) {
    difference = std::max(difference, std::abs(static_cast<double>(result.vapour->composition[i]) -
                                               static_cast<double>(result.liquid->composition[i])));
  }
  const double ratio = density_excess(result);
  if (ratio == HUGE_VAL) return difference < kAlikeComposition;
  return ratio < kAlikeDensity || (difference < kAlikeComposition && ratio < kNearDensity);
}

const EnvelopePoint* end_of(const std::vector<EnvelopePoint>& line) {
  const auto last = std::find_if(line.rbegin(), line.rend(), [](const EnvelopePoint& p) { return p.ok; });
  return last == line.rend() ? nullptr : &*last;
}

Envelope trace_envelope(const FlashRequest& mixture, const EnvelopeOptions& options,
                        const FlashFunction& flash, const EnvelopeProgress& progress) {
  Envelope envelope;
  envelope.bubble = Tracer(EnvelopeLine::bubble, mixture, options, flash, progress).run();
  envelope.dew = Tracer(EnvelopeLine::dew, mixture, options, flash, progress).run();
  return envelope;
}

}  // namespace talix::cli
