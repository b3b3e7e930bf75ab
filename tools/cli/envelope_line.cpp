#include "cli/envelope_line.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "cli/words.h"

namespace talix::cli {

namespace {

// With this number of points a step is at most so long, along the line and on either axis of a plot.
constexpr double kReferencePoints = 80;
constexpr double kLongestStep = 0.12;
constexpr double kMostKelvin = 5;
constexpr double kMostBar = 4;
// An answer may lie this share of the step from where it is expected; below the second share the step grows.
constexpr double kFarthest = 0.25;
constexpr double kClose = 0.08;
// Method of a point at the edge of the two-phase region, which is searched within this share of the step and to this
// length.
constexpr const char* kEdge = "edge";
constexpr double kEdgeReach = 0.4;
constexpr double kEdgeWidth = 2e-5;
// The line turns by at most this angle a step [rad], on a plot by no more than the second one.
constexpr double kSharpestTurn = 0.4;
constexpr double kSharpestBend = 0.12;
// A line is cut off where it has this many times the points asked for.
constexpr int kMostPointsFactor = 4;
// The same phase twice: densities within 1 %, or compositions and densities both close.
constexpr double kAlikeDensity = 0.01;
constexpr double kAlikeComposition = 1e-3;
constexpr double kNearDensity = 0.05;
// A phase with less than this share of the feed is none.
constexpr double kLeastShare = 1e-6;
// A line that comes down again ends below this share of the pressure at which it began.
constexpr double kLowestShare = 0.5;
constexpr double kHighestPressure = 900;      // of the library [bar]
constexpr double kHighestTemperature = 1500;  // of the library [C]

std::optional<float> density(const PhaseResult& phase) {
  constexpr std::size_t kDensity = 1;
  return phase.properties[kDensity];
}
std::optional<float> density(const std::optional<PhaseResult>& phase) {
  return phase ? density(*phase) : std::nullopt;
}

double excess(const std::optional<float>& vapour, const std::optional<float>& liquid) {
  if (!vapour || !liquid || !(*vapour > 0.0F) || !(*liquid > 0.0F)) return HUGE_VAL;
  return std::abs(static_cast<double>(*liquid) / static_cast<double>(*vapour) - 1);
}

// The lighter and the heavier phase of a flash with two.
struct PhasePair {
  const PhaseResult* light;
  const PhaseResult* heavy;
};
PhasePair pair_of(const FlashResult& result) {
  if (result.vapour) return {&*result.vapour, &*result.liquid};
  const PhaseResult* const a = &*result.liquid;
  const PhaseResult* const b = &*result.second_liquid;
  return density(*a).value_or(0.0F) < density(*b).value_or(0.0F) ? PhasePair{a, b} : PhasePair{b, a};
}

// A flash that warns of a further phase has found no edge of the region with one phase.
bool stable(const EnvelopePoint& point) { return point.message.empty(); }

}  // namespace

bool two_phases(const FlashResult& result) {
  if (!result.ok) return false;
  if (result.second_liquid) return true;
  const double share = static_cast<double>(result.vapour_fraction);
  return result.vapour && result.liquid && share > kLeastShare && share < 1 - kLeastShare;
}

double density_excess(const EnvelopePoint& point) {
  return excess(point.vapour_density, point.liquid_density);
}

bool phases_alike(const FlashResult& result) {
  if (!result.vapour || !result.liquid) return false;
  double difference = 0;
  for (std::size_t i = 0; i < result.vapour->composition.size(); ++i) {
    difference = std::max(difference, std::abs(static_cast<double>(result.vapour->composition[i]) -
                                               static_cast<double>(result.liquid->composition[i])));
  }
  const double ratio = excess(density(result.vapour), density(result.liquid));
  if (ratio == HUGE_VAL) return difference < kAlikeComposition;
  return ratio < kAlikeDensity || (difference < kAlikeComposition && ratio < kNearDensity);
}

LineTracer::LineTracer(EnvelopeLine line, const FlashRequest& mixture, const EnvelopeOptions& options,
                       const FlashFunction& flash, const EnvelopeProgress& progress)
    : line_(line), request_(mixture), options_(options), flash_(flash), progress_(progress) {
  const double scale = kReferencePoints / options.points;
  longest_ = kLongestStep * scale;
  most_kelvin_ = kMostKelvin * scale;
  most_bar_ = kMostBar * scale;
}

void LineTracer::run() {
  if (start_at_pressure()) {
    follow();
  } else if (start_at_temperature()) {
    // The line begins further down: back to there first.
    const auto turn_round = [this] {
      std::reverse(points_.begin(), points_.end());
      std::reverse(path_.begin(), path_.end());
    };
    turn_round();
    follow();
    open_at_start_ = std::exchange(open_, false);
    keep_failure();
    turn_round();
    step_ = longest_ / 4;
    follow();
  }
}

void LineTracer::follow() {
  const std::size_t most = points_.size() + static_cast<std::size_t>(kMostPointsFactor * options_.points);
  while (step()) {
    if (points_.size() < most) continue;
    failure_ = failed(end(), "the line goes on, but has too many points");
    too_many_ = true;
    return;
  }
}

FlashResult LineTracer::ask(FlashType type, const Place& at) {
  request_.type = type;
  request_.T_C = temperature(at);
  request_.P_bar = pressure(at);
  return flash_(request_);
}

EnvelopePoint LineTracer::failed(const Place& at, std::string message) const {
  EnvelopePoint point;
  point.line = line_;
  point.T_C = temperature(at);
  point.P_bar = pressure(at);
  point.message = std::move(message);
  return point;
}

void LineTracer::keep(EnvelopePoint point) {
  if (point.ok) path_.push_back(place(point.T_C, point.P_bar));
  points_.push_back(std::move(point));
  if (progress_) progress_(points_.back());
}

void LineTracer::keep_failure() {
  if (failure_) keep(*std::exchange(failure_, std::nullopt));
}

EnvelopePoint LineTracer::saturation(bool at_pressure, const Place& at) {
  const FlashType type = dew() ? (at_pressure ? FlashType::dew_t : FlashType::dew_p)
                               : (at_pressure ? FlashType::bubble_t : FlashType::bubble_p);
  const FlashResult result = ask(type, at);
  if (!result.ok) return failed(at, result.message);
  if (!result.vapour || !result.liquid) return failed(at, "the answer has one phase only");
  EnvelopePoint point = failed(at, result.message);
  point.ok = true;
  if (result.T_C) point.T_C = static_cast<double>(*result.T_C);
  if (result.P_bar) point.P_bar = static_cast<double>(*result.P_bar);
  point.method = row_of(type).name;
  point.vapour_density = density(result.vapour);
  point.liquid_density = density(result.liquid);
  // Without the check of the library its flashes give answers that are none.
  if (request_.verify == 0) {
    if (phases_alike(result)) return failed(at, "both phases are alike");
    if (!divides(place(point.T_C, point.P_bar)))
      return failed(at, "the same phases on both sides of the answer");
  }
  return point;
}

// Whether the isothermal flash finds two phases on one side of a place only.
bool LineTracer::divides(const Place& middle) {
  constexpr double kReach = 0.02;
  const FlashResult hot = ask(FlashType::tp, {middle.x + kReach, middle.y - kReach});
  const FlashResult cold = ask(FlashType::tp, {middle.x - kReach, middle.y + kReach});
  if (!hot.ok || !cold.ok) return false;
  const auto kind = [](const FlashResult& result) {
    return two_phases(result) && !phases_alike(result) ? 1 : result.vapour_fraction > 0.5F ? 2 : 0;
  };
  return kind(hot) != kind(cold);
}

// Two neighbouring points, the first one at the pressure or at the temperature of a place.
bool LineTracer::begin(bool at_pressure, const Place& at) {
  EnvelopePoint point = saturation(at_pressure, at);
  if (point.ok && point.P_bar < kLowestShare * options_.from_P_bar)
    point = failed(at, "the line is below the pressure at which it was to begin");
  if (!point.ok) {
    if (!failure_) failure_ = std::move(point);
    return false;
  }
  const Place here = place(point.T_C, point.P_bar);
  const double further = longest_ / 4;
  EnvelopePoint next = saturation(
      at_pressure, at_pressure ? Place{here.x, here.y + further} : Place{here.x + further, here.y});
  if (!next.ok) return false;
  keep_failure();
  keep(std::move(point));
  keep(std::move(next));
  step_ = longest_ / 4;
  return true;
}

// From the lowest pressure, or the next one that has a point.
bool LineTracer::start_at_pressure() {
  constexpr int kTries = 12;
  constexpr double kNextTry = 0.4;
  for (int i = 0; i < kTries; ++i) {
    const Place at{place(kStartTemperature_C, 1).x, std::log(options_.from_P_bar) + kNextTry * i};
    if (!(pressure(at) < kHighestPressure)) break;
    if (begin(true, at)) return true;
  }
  return false;
}

// From the lowest temperature that has a point: where the liquid splits in two or a gas hardly dissolves, a bubble
// line begins at a high pressure.
bool LineTracer::start_at_temperature() {
  constexpr double kColdest = -150;
  constexpr double kNextKelvin = 10;
  constexpr int kTries = 56;  // up to 400 C
  const std::optional<EnvelopePoint> at_pressure = std::exchange(failure_, std::nullopt);
  for (int i = 0; i < kTries; ++i) {
    failure_.reset();
    if (begin(false, place(kColdest + kNextKelvin * i, options_.from_P_bar))) return true;
  }
  failure_ = at_pressure;
  return false;
}

Place LineTracer::heading() const {
  const std::size_t n = path_.size();
  const Place last = direction(path_[n - 2], path_[n - 1]);
  if (n < 3) return last;
  const Place before = direction(path_[n - 3], path_[n - 2]);
  const double share =
      0.5 * std::min(1.0, distance(path_[n - 2], path_[n - 1]) / distance(path_[n - 3], path_[n - 2]));
  return direction({0, 0}, {last.x + share * (last.x - before.x), last.y + share * (last.y - before.y)});
}

// The longest step in a direction that stays within the limits on both axes.
double LineTracer::bounded(double length, const Place& way) const {
  length = std::min(length, longest_);
  if (way.x != 0) length = std::min(length, most_kelvin_ / kKelvinPerUnit / std::abs(way.x));
  if (way.y != 0) length = std::min(length, most_bar_ / pressure(end()) / std::abs(way.y));
  return std::max(length, kShortestStep);
}

// The angle by which the line turns at its last point on its way to the next one, with T and P on even axes.
double LineTracer::bend_on_paper(const Place& next) const {
  const auto paper = [](const Place& p) { return Place{temperature(p), pressure(p)}; };
  const Place before = paper(path_[path_.size() - 2]);
  return turn(direction(before, paper(end())), direction(paper(end()), paper(next)));
}

bool LineTracer::leaves_range(const Place& at) {
  open_ = pressure(at) > kHighestPressure || temperature(at) > kHighestTemperature;
  came_down_ = !open_ && (pressure(at) < kLowestShare * options_.from_P_bar || !(at.x > 0));
  return open_ || came_down_;
}

// One point further, with shorter steps where it is not found or the line turns much; false at the end of the line.
bool LineTracer::step() {
  const Place way = heading();
  double length = bounded(step_, way);
  for (bool first = true;; first = false) {
    const Place expected = along(end(), way, length);
    if (leaves_range(expected)) return false;
    EnvelopePoint point = find(expected, way, length);
    const bool shortest = length <= kShortestStep;
    if (point.ok) {
      const Place here = place(point.T_C, point.P_bar);
      const double bend = bend_on_paper(here);
      if (!(bend > kSharpestBend) || shortest) {
        const bool easy = distance(here, expected) < kClose * length && bend < 0.4 * kSharpestBend;
        step_ = easy ? 1.5 * length : length;
        failure_.reset();
        keep(std::move(point));
        return true;
      }
      if (take_back(length)) return true;
    } else {
      if (first || !failure_) failure_ = std::move(point);
      if (shortest) return false;
    }
    length = std::max(length / 2, kShortestStep);
  }
}

// Where the line begins to turn much, even a short step shows a sharp bend after a long one: that one is taken back
// and halved.
bool LineTracer::take_back(double length) {
  constexpr double kLeastTakenBack = 8 * kShortestStep;
  constexpr std::size_t kLeastPoints = 4;
  if (path_.size() < kLeastPoints) return false;
  const double last = distance(path_[path_.size() - 2], end());
  if (!(last > 2 * length) || !(last > kLeastTakenBack)) return false;
  path_.pop_back();
  points_.pop_back();
  step_ = last / 2;
  return true;
}

EnvelopePoint LineTracer::find(const Place& expected, const Place& way, double length) {
  const bool on_edge = !points_.empty() && points_.back().method == kEdge;
  bool two_liquids = false;
  if (on_edge) {
    EnvelopePoint point = edge(expected, way, length, two_liquids);
    if (point.ok && two_liquids) return point;
  }
  const bool steep = std::abs(way.y) > std::abs(way.x);
  EnvelopePoint best;
  for (const bool at_pressure : {steep, !steep}) {
    EnvelopePoint point = saturation(at_pressure, expected);
    const Place here = place(point.T_C, point.P_bar);
    if (point.ok && distance(here, expected) <= kFarthest * length &&
        turn(direction(end(), here), way) <= kSharpestTurn) {
      if (stable(point)) return point;
      best = std::move(point);
      break;
    }
    if (point.ok) {
      point =
          failed(expected, "the " + point.method + " answer " + shortest(static_cast<float>(point.T_C)) +
                               " C, " + shortest(static_cast<float>(point.P_bar)) + " bar is off the line");
    }
    if (at_pressure == steep) best = std::move(point);
  }
  if (request_.verify != 0) {
    EnvelopePoint point = edge(expected, way, length, two_liquids);
    if (point.ok) return point;
  }
  return best;
}

// Where two liquids part or meet, the edge of the two-phase region goes on without a bubble or dew point: bisection
// across the line, between a state with one phase and one with two.
EnvelopePoint LineTracer::edge(const Place& middle, const Place& way, double length, bool& two_liquids) {
  const Place across{-way.y, way.x};
  Place inside = along(middle, across, kEdgeReach * length);
  Place outside = along(middle, across, -kEdgeReach * length);
  FlashResult phases = ask(FlashType::tp, inside);
  FlashResult other = ask(FlashType::tp, outside);
  if (!phases.ok || !other.ok || two_phases(phases) == two_phases(other))
    return failed(middle, "no edge of the two-phase region");
  if (two_phases(other)) {
    std::swap(inside, outside);
    std::swap(phases, other);
  }
  while (distance(inside, outside) > kEdgeWidth) {
    const Place half{(inside.x + outside.x) / 2, (inside.y + outside.y) / 2};
    FlashResult result = ask(FlashType::tp, half);
    if (!result.ok) return failed(half, result.message);
    if (two_phases(result)) {
      inside = half;
      phases = std::move(result);
    } else {
      outside = half;
    }
  }
  two_liquids = phases.second_liquid.has_value();
  const PhasePair pair = pair_of(phases);
  EnvelopePoint point = failed(inside, phases.message);
  point.ok = true;
  point.method = kEdge;
  point.vapour_density = density(*pair.light);
  point.liquid_density = density(*pair.heavy);
  if (!on_this_line(phases))
    return failed(middle, "the edge of the two-phase region belongs to the other line");
  return point;
}

// Two phases next to the edge of their region: the one that vanishes tells the line.
bool LineTracer::on_this_line(const FlashResult& phases) const {
  const PhasePair pair = pair_of(phases);
  return (pair.heavy->fraction < pair.light->fraction) == dew();
}

}  // namespace talix::cli
