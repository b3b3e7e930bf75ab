#include <algorithm>
#include <cmath>

#include "engine/codes.h"
#include "flash/robust_line.h"

namespace talix {

namespace {

constexpr int kBisections = 60;
constexpr int kDirectIterations = 8;
constexpr int kSearchSteps = 40;
constexpr R8 kSearchEnd = 1.0E-11;                                // of the unknown searched
constexpr R8 kLowestWilsonT = 5.0, kHighestWilsonT = 3000.0;      // [K]
constexpr R8 kLowestWilsonP = 1.0E-25, kHighestWilsonP = 1.0E+4;  // [bar]

R8 cubic_slope(const LineSegment& g, int k, R8 S) {
  const R8 h = g.to.u(g.held) - g.from.u(g.held);
  const R8 t = (S - g.from.u(g.held)) / h;
  return 6.0 * t * (1.0 - t) * (g.to.u(k) - g.from.u(k)) / h + (1.0 - t) * (1.0 - 3.0 * t) * g.slope_from(k) +
         t * (3.0 * t - 2.0) * g.slope_to(k);
}

// Share in the lighter phase above or below the one asked, by Wilson's K-values.
R8 wilson_residual(const RobustMixture& mixture, R8 fraction, R8 T, R8 P, CompVec& lnK) {
  wilson_ln_k(mixture, T, P, lnK);
  R8 sum = 0.0;
  for (int i = 1; i <= mixture.n; ++i) {
    const R8 K = std::exp(std::clamp(lnK(i), -300.0, 300.0));
    sum += mixture.z(i) * (K - 1.0) / (1.0 - fraction + fraction * K);
  }
  return sum;
}

void set_point(const RobustMixture& mixture, R8 fraction, R8 T, R8 P, LinePoint& point) {
  CompVec lnK;
  wilson_ln_k(mixture, T, P, lnK);
  for (int i = 1; i <= mixture.n; ++i) point.u(i) = lnK(i);
  point.u(temperature_unknown(mixture)) = std::log(T);
  point.u(pressure_unknown(mixture)) = std::log(P);
  point.fraction = fraction;
  point.root_x = phase::liquid;
  point.root_y = phase::vapour;
  point.Zx = point.Zy = point.Vx = point.Vy = 1.0;
  point.iterations = 0;
}

R8 wilson_temperature(const RobustMixture& mixture, R8 fraction, R8 P) {
  CompVec lnK;
  R8 low = std::log(kLowestWilsonT), high = std::log(kHighestWilsonT);
  for (int step = 0; step < kBisections; ++step) {
    const R8 middle = 0.5 * (low + high);
    (wilson_residual(mixture, fraction, std::exp(middle), P, lnK) > 0.0 ? high : low) = middle;
  }
  return std::exp(0.5 * (low + high));
}

R8 wilson_pressure(const RobustMixture& mixture, R8 fraction, R8 T) {
  CompVec lnK;
  R8 low = std::log(kLowestWilsonP), high = std::log(kHighestWilsonP);
  for (int step = 0; step < kBisections; ++step) {
    const R8 middle = 0.5 * (low + high);
    (wilson_residual(mixture, fraction, T, std::exp(middle), lnK) > 0.0 ? low : high) = middle;
  }
  return std::exp(0.5 * (low + high));
}

bool between(R8 value, R8 a, R8 b) { return (value - a) * (value - b) <= 0.0; }

// Bracketed search along the unknown that is held, each point solved at a value of it.
bool search_crossing(const RobustMixture& mixture, const LineSegment& g, int v, R8 value, LinePoint& point) {
  R8 a = g.from.u(g.held), b = g.to.u(g.held);
  R8 fa = g.from.u(v) - value, fb = g.to.u(v) - value;
  for (int step = 0; step < kSearchSteps; ++step) {
    R8 S = step % 3 == 2 ? 0.5 * (a + b) : a - fa * (b - a) / (fb - fa);
    if (!between(S, a, b)) S = 0.5 * (a + b);
    cubic_point(g, mixture.n + 2, S, point);
    if (solve_point(mixture, g.held, S, kDirectIterations, point) != PointAnswer::solved) return false;
    const R8 f = point.u(v) - value;
    if (std::fabs(f) < kSearchEnd) return true;
    if ((f < 0.0) == (fa < 0.0)) {
      a = S;
      fa = f;
    } else {
      b = S;
      fb = f;
    }
  }
  return std::fabs(point.u(v) - value) < 1.0E-8;
}

}  // namespace

bool is_exchanged(const LinePoint& point) { return point.Vy < point.Vx; }

void wilson_at(const RobustMixture& mixture, R8 FRACTION, SaturationGiven given, R8 value, LinePoint& point) {
  if (given == SaturationGiven::temperature)
    set_point(mixture, FRACTION, value, wilson_pressure(mixture, FRACTION, value), point);
  else
    set_point(mixture, FRACTION, wilson_temperature(mixture, FRACTION, value), value, point);
}

void wilson_point(const RobustMixture& mixture, R8 FRACTION, R8 P, R8 LOWEST, LinePoint& point) {
  wilson_at(mixture, FRACTION, SaturationGiven::pressure, P, point);
  if (temperature_of(mixture, point) < LOWEST)
    wilson_at(mixture, FRACTION, SaturationGiven::temperature, LOWEST, point);
}

R8 cubic_value(const LineSegment& g, int k, R8 S) {
  const R8 h = g.to.u(g.held) - g.from.u(g.held);
  const R8 t = (S - g.from.u(g.held)) / h;
  return (1.0 + 2.0 * t) * (1.0 - t) * (1.0 - t) * g.from.u(k) +
         t * (1.0 - t) * (1.0 - t) * h * g.slope_from(k) + t * t * (3.0 - 2.0 * t) * g.to.u(k) +
         t * t * (t - 1.0) * h * g.slope_to(k);
}

void cubic_point(const LineSegment& g, int order, R8 S, LinePoint& point) {
  const R8 a = g.from.u(g.held), b = g.to.u(g.held);
  const bool nearer_to_end = std::fabs(S - b) < std::fabs(S - a);
  point = nearer_to_end ? g.to : g.from;
  for (int k = 1; k <= order; ++k) point.u(k) = cubic_value(g, k, S);
}

bool find_extreme(const RobustMixture& mixture, const LineSegment& g, int v, LinePoint& point) {
  R8 a = g.from.u(g.held), b = g.to.u(g.held);
  const bool rising = cubic_slope(g, v, a) * (b - a) > 0.0;
  for (int step = 0; step < kBisections; ++step) {
    const R8 middle = 0.5 * (a + b);
    const bool rises = cubic_slope(g, v, middle) * (g.to.u(g.held) - g.from.u(g.held)) > 0.0;
    (rises == rising ? a : b) = middle;
  }
  const R8 S = 0.5 * (a + b);
  cubic_point(g, mixture.n + 2, S, point);
  return solve_point(mixture, g.held, S, kDirectIterations, point) == PointAnswer::solved;
}

bool find_crossing(const RobustMixture& mixture, const LineSegment& g, int v, R8 value, LinePoint& point) {
  R8 a = g.from.u(g.held), b = g.to.u(g.held);
  const bool below = g.from.u(v) < value;
  for (int step = 0; step < kBisections; ++step) {
    const R8 middle = 0.5 * (a + b);
    ((cubic_value(g, v, middle) < value) == below ? a : b) = middle;
  }
  cubic_point(g, mixture.n + 2, 0.5 * (a + b), point);
  const R8 expected = point.u(g.held);
  const R8 reach = 0.5 * std::fabs(g.to.u(g.held) - g.from.u(g.held));
  if (solve_point(mixture, v, value, kDirectIterations, point) == PointAnswer::solved &&
      std::fabs(point.u(g.held) - expected) <= reach)
    return true;
  return search_crossing(mixture, g, v, value, point);
}

}  // namespace talix
