#include "bank/fit_pairs_measured.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "bank/fit_pairs_search.h"

namespace talix::bank {

namespace {

constexpr double kCap = 0.7;             // largest deviation that counts, and that of a point without a state
constexpr double kVapourWeight = 2.5;    // 0.02 in the vapour composition counts as 5 % in pressure
constexpr double kHighPressure = 2e7;    // above it a point counts less, as its reciprocal [Pa]
constexpr double kShortestRange = 40.0;  // for a temperature term [K]
constexpr int kFewest = 8;               // points for a second parameter
constexpr double kSteepest = 0.0006;     // temperature term [1/K]
constexpr double kSteepestGas =
    0.0015;                     // the same with a gas that is always far above its critical temperature
constexpr double kCold = 50.0;  // critical temperature of such a gas [K]
constexpr double kFurthestPerSlope = 120.0;  // change at ambient temperatures over the steepest term [K]
constexpr double kSlopeGain = 0.85;          // of the deviations that a temperature term may leave
constexpr double kTurnGain = 0.95;           // the same for points left out in turn
constexpr double kAsymmetryGain = 0.75;      // that the term in composition may leave

// Deviations at a set of points, as one figure.
double objective(PairEquation& equation, const PairParameters& k,
                 const std::vector<const PairPoint*>& points) {
  equation.set(k);
  double sum = 0.0, weights = 0.0;
  for (const PairPoint* p : points) {
    const PointDeviation d = point_deviation(equation, *p);
    const double weight = std::min(1.0, kHighPressure / p->P);
    weights += weight;
    if (d.missing) {
      sum += weight * kCap;
      continue;
    }
    if (d.ln_p) sum += weight * std::min(std::fabs(*d.ln_p), kCap);
    if (d.y) sum += weight * std::min(kVapourWeight * std::fabs(*d.y), kCap);
  }
  return sum / weights;
}

using Chosen = std::vector<const PairPoint*>;

// Points that a fit may see: measured ones, and computed ones at temperatures that no measurement covers.
Chosen points_of_fit(const std::vector<PairPoint>& points) {
  constexpr double kBeyond = 2.0;  // [K]
  double low = 1e9, high = 0.0;
  for (const PairPoint& p : points) {
    if (!p.measured || p.doubtful) continue;
    low = std::min(low, p.T);
    high = std::max(high, p.T);
  }
  Chosen chosen;
  for (const PairPoint& p : points) {
    const bool missing = p.T < low - kBeyond || p.T > high + kBeyond;
    if ((p.measured || missing) && !p.kept_out && !p.doubtful) chosen.push_back(&p);
  }
  return chosen;
}

// Which parameters a fit may move.
struct Shape {
  bool slope;
  bool odd;
  double steepest;  // largest temperature term [1/K]
};

// The parameters from the values at both ends of the temperature range and the part of the composition.
PairParameters unpack(const std::vector<double>& v, const Shape& shape, double tmin, double tmax) {
  PairParameters k;
  std::size_t i = 0;
  k.t0 = v[i++];
  if (shape.slope) {
    const double hot = v[i++];
    k.t0t = (hot - k.t0) / (tmax - tmin);
    k.t0 -= k.t0t * tmin;
  }
  if (shape.odd) k.t1 = v[i];
  return k;
}

PairParameters search(PairEquation& equation, const Chosen& points, const Shape& shape,
                      const PairParameters& from, double tmin, double tmax) {
  std::vector<double> start{from.t0 + from.t0t * tmin}, step{0.02};
  if (shape.slope) {
    start.push_back(from.t0 + from.t0t * tmax);
    step.push_back(-0.02);
  }
  if (shape.odd) {
    start.push_back(from.t1);
    step.push_back(0.03);
  }
  const auto f = [&](const std::vector<double>& v) {
    const PairParameters k = unpack(v, shape, tmin, tmax);
    const double steep = std::max(0.0, std::fabs(k.t0t) - shape.steepest) * 1e4;
    return objective(equation, k, points) + steep;
  };
  return unpack(simplex_search(f, start, step), shape, tmin, tmax);
}

// A temperature term at its bound follows the scatter of a short range; one that leads far from the constant at ambient
// temperatures, outside its range, would do harm there.
bool strays(const PairParameters& k, const PairParameters& constant, const Shape& shape) {
  constexpr double kAmbient[] = {250.0, 350.0};  // [K]
  if (std::fabs(k.t0t) > 0.98 * shape.steepest) return true;
  return std::any_of(std::begin(kAmbient), std::end(kAmbient), [&](double T) {
    return std::fabs(k.t0 + k.t0t * T - constant.t0) > kFurthestPerSlope * shape.steepest;
  });
}

// Deviations of points that the fit of the others gives, both halves in turn.
double in_turn(PairEquation& equation, const Chosen& points, const Shape& shape, const PairParameters& from,
               double tmin, double tmax) {
  double sum = 0.0;
  for (const std::size_t half : {0U, 1U}) {
    Chosen own, others;
    for (std::size_t i = 0; i < points.size(); ++i) (i % 2 == half ? own : others).push_back(points[i]);
    sum += objective(equation, search(equation, own, shape, from, tmin, tmax), others) / 2.0;
  }
  return sum;
}

void describe(PairEquation& equation, const Chosen& points, PairFit& fit) {
  equation.set(fit.k);
  double sum = 0.0;
  int n = 0;
  for (const PairPoint* p : points) {
    const PointDeviation d = point_deviation(equation, *p);
    fit.missing += d.missing;
    if (!d.ln_p) continue;
    sum += std::fabs(std::expm1(*d.ln_p)) * 100.0;
    ++n;
  }
  fit.points = static_cast<int>(points.size());
  fit.mean = n > 0 ? sum / n : 0.0;
}

// Mean and WORST deviation of ln H over the range of a Henry constant.
double henry_deviation(PairEquation& equation, const PairParameters& k, const HenryConstant& henry,
                       double& worst) {
  constexpr double kStep = 10.0;  // [K]
  const double water = henry.gas_first ? 0.0 : 1.0;
  const std::size_t gas = henry.gas_first ? 0 : 1;
  const int steps = static_cast<int>(std::lround((henry.tmax - henry.tmin) / kStep));
  equation.set(k);
  double sum = 0.0, start = 1e3;
  worst = 0.0;
  for (int i = 0; i <= steps; ++i) {
    const double T = henry.tmin + kStep * i;
    const PairState s = bubble_point(equation, T, water, start);
    double d = kCap;
    if (s.ok) {
      start = s.P;
      const PairPhase l = equation.phase(T, s.P, water, PairRoot::liquid);
      const double ln_h = henry.h1 + henry.h2 / T + henry.h3 * std::log(T) + henry.h4 * T;
      d = std::fabs(l.lnphi.at(gas) + std::log(s.P) - ln_h);
    }
    worst = std::max(worst, d);
    sum += std::min(d, kCap);
  }
  return sum / (steps + 1);
}

}  // namespace

PairParameters rounded(const PairParameters& k) {
  const auto to = [](double v, double digits) { return std::round(v * digits) / digits; };
  return {to(k.t0, 1e5), to(k.t0t, 1e8), to(k.t1, 1e5), to(k.t1t, 1e8)};
}

PointDeviation point_deviation(const PairPhases& source, const PairPoint& point) {
  PointDeviation d;
  if (point.x) {
    const PairState s = bubble_point(source, point.T, *point.x, point.P);
    d.missing = !s.ok;
    if (!s.ok) return d;
    d.ln_p = std::log(s.P / point.P);
    if (point.y) d.y = s.y - *point.y;
    return d;
  }
  const double y = std::clamp(*point.y, 1e-6, 1.0 - 1e-6);
  const PairState s = two_phases(source, point.T, point.P, y > 0.5 ? 0.05 : 0.95, y);
  d.missing = !s.ok;
  if (s.ok) d.y = s.y - *point.y;
  return d;
}

PairFit fit_points(const PairComponent& first, const PairComponent& second,
                   const std::vector<PairPoint>& points, bool asymmetric) {
  PairFit fit;
  const Chosen chosen = points_of_fit(points);
  if (chosen.empty()) return fit;
  fit.tmin = fit.tmax = chosen.front()->T;
  for (const PairPoint* p : chosen) {
    fit.tmin = std::min(fit.tmin, p->T);
    fit.tmax = std::max(fit.tmax, p->T);
  }
  PairEquation equation(PairCubic::bank, first, second, {});
  const auto constant = [&](double t) { return objective(equation, {.t0 = t}, chosen); };
  fit.k.t0 = golden_search(constant, -0.4, 0.6, 25);
  double least = constant(fit.k.t0);

  const double steepest = std::min(first.tc, second.tc) < kCold ? kSteepestGas : kSteepest;
  Shape shape{false, false, steepest};
  const bool enough = static_cast<int>(chosen.size()) >= kFewest;
  const auto try_shape = [&](const Shape& wider, double gain) {
    const PairParameters k = search(equation, chosen, wider, fit.k, fit.tmin, fit.tmax);
    const double value = objective(equation, k, chosen);
    if (value > gain * least || (wider.slope && strays(k, fit.k, wider))) return;
    if (in_turn(equation, chosen, wider, fit.k, fit.tmin, fit.tmax) >
        kTurnGain * in_turn(equation, chosen, shape, fit.k, fit.tmin, fit.tmax))
      return;
    shape = wider;
    fit.k = k;
    least = value;
  };
  if (enough && asymmetric && first.family != second.family)
    try_shape({false, true, steepest}, kAsymmetryGain);
  if (enough && fit.tmax - fit.tmin >= kShortestRange) try_shape({true, shape.odd, steepest}, kSlopeGain);
  fit.k = rounded(fit.k);
  describe(equation, chosen, fit);
  fit.ok = true;
  return fit;
}

PairFit fit_henry(const PairComponent& first, const PairComponent& second, const HenryConstant& henry,
                  const std::vector<PairPoint>& points) {
  PairFit fit;
  fit.tmin = henry.tmin;
  fit.tmax = henry.tmax;
  const Chosen chosen = points_of_fit(points);
  PairEquation equation(PairCubic::bank, first, second, {});
  // Water without gas has the fraction 0 of the gas, and the factor of t1 is -1 there if the gas comes first.
  const double sign = henry.gas_first ? -1.0 : 1.0;
  const auto unpacked = [&](const std::vector<double>& v) {
    const double slope = (v[1] - v[0]) / (henry.tmax - henry.tmin);
    const double aqueous = v[0] - slope * henry.tmin;
    if (!henry.gas_phase) return PairParameters{aqueous, slope, 0.0, 0.0};
    const double gas = *henry.gas_phase;
    return PairParameters{(aqueous + gas) / 2.0, slope / 2.0, sign * (aqueous - gas) / 2.0,
                          sign * slope / 2.0};
  };
  const auto f = [&](const std::vector<double>& v) {
    double worst = 0.0;
    const PairParameters k = unpacked(v);
    const double of_henry = henry_deviation(equation, k, henry, worst);
    return chosen.empty() ? of_henry : of_henry + objective(equation, k, chosen);
  };
  const double level = golden_search([&](double t) { return f({t, t}); }, -4.0, 0.4, 88);
  fit.k = rounded(unpacked(simplex_search(f, {level - 0.03, level + 0.03}, {0.02, 0.03})));
  describe(equation, chosen, fit);
  double worst = 0.0;
  henry_deviation(equation, fit.k, henry, worst);
  fit.worst = std::expm1(worst) * 100.0;
  fit.ok = true;
  return fit;
}

}  // namespace talix::bank
