#include "bank/pairs_bubble.h"

#include <algorithm>
#include <cmath>

namespace talix::bank {

namespace {

constexpr double kTiny = 1e-10;           // smallest mole fraction inside the search
constexpr double kConverged = 1e-9;       // in ln fugacity
constexpr double kSamePhase = 1e-4;       // phases closer than this in composition and density are one
constexpr double kLowestPressure = 1e-3;  // [Pa]
constexpr double kHighestPressure = 5e8;  // [Pa]

// Where a search stands: ln P and the logarithm of the ratio of the vapour mole fractions.
struct Guess {
  double lp = 0.0;
  double u = 0.0;
};

double fraction(double u) { return 1.0 / (1.0 + std::exp(-u)); }

double ratio_log(double x) {
  const double inside = std::clamp(x, kTiny, 1.0 - kTiny);
  return std::log(inside / (1.0 - inside));
}

// Differences of the ln fugacities at a guess, and what they rest on.
struct Residual {
  bool ok = false;
  std::array<double, 2> f{};
  PairPhase liquid, vapour;
};

Residual residual(const PairPhases& source, double T, double x, const Guess& g) {
  Residual r;
  const double P = std::exp(g.lp);
  if (!(P > kLowestPressure && P < kHighestPressure)) return r;
  const double y = fraction(g.u);
  r.liquid = source.phase(T, P, x, PairRoot::liquid);
  r.vapour = source.phase(T, P, y, PairRoot::vapour);
  if (!r.liquid.ok || !r.vapour.ok) return r;
  const std::array<double, 2> ln_x{std::log(x), std::log1p(-x)};
  const std::array<double, 2> ln_y{-std::log1p(std::exp(-g.u)), -std::log1p(std::exp(g.u))};
  for (std::size_t i = 0; i < 2; ++i)
    r.f.at(i) = ln_x.at(i) + r.liquid.lnphi.at(i) - ln_y.at(i) - r.vapour.lnphi.at(i);
  r.ok = std::isfinite(r.f[0]) && std::isfinite(r.f[1]);
  return r;
}

// Successive substitution: new vapour from the ratios of the fugacity coefficients, P scaled with their sum.
Guess substitute(double x, const Guess& g, const Residual& r) {
  const double g1 = std::log(x) + r.liquid.lnphi[0] - r.vapour.lnphi[0];
  const double g2 = std::log1p(-x) + r.liquid.lnphi[1] - r.vapour.lnphi[1];
  const double sum = std::exp(std::min(g1, 300.0)) + std::exp(std::min(g2, 300.0));
  return {g.lp + std::clamp(std::log(sum), -1.0, 1.0), g1 - g2};
}

// Newton step with differences for the slopes; false where they say nothing.
bool newton(const PairPhases& source, double T, double x, const Residual& r, Guess& g) {
  constexpr double kStep = 1e-6;
  const Residual at_p = residual(source, T, x, {g.lp + kStep, g.u});
  const Residual at_u = residual(source, T, x, {g.lp, g.u + kStep});
  if (!at_p.ok || !at_u.ok) return false;
  const double a = (at_p.f[0] - r.f[0]) / kStep, b = (at_u.f[0] - r.f[0]) / kStep;
  const double c = (at_p.f[1] - r.f[1]) / kStep, d = (at_u.f[1] - r.f[1]) / kStep;
  const double det = a * d - b * c;
  if (!(std::fabs(det) > 1e-14)) return false;
  const double dp = -(d * r.f[0] - b * r.f[1]) / det;
  const double du = -(a * r.f[1] - c * r.f[0]) / det;
  const double scale =
      std::min({1.0, 0.3 / std::max(std::fabs(dp), 1e-300), 1.0 / std::max(std::fabs(du), 1e-300)});
  g.lp += scale * dp;
  g.u += scale * du;
  return true;
}

// A dense gas can have a smaller compressibility than the liquid: only equal phases are none.
bool apart(double x, double y, const Residual& r) {
  return std::fabs(r.vapour.Z - r.liquid.Z) > kSamePhase * r.liquid.Z ||
         std::fabs(y - x) > kSamePhase * x * (1.0 - x);
}

// Search from a guess; the guess is left at the solution.
bool solve(const PairPhases& source, double T, double x, int substitutions, Guess& g) {
  constexpr int kMost = 40;
  for (int k = 0; k < kMost; ++k) {
    const Residual r = residual(source, T, x, g);
    if (!r.ok) return false;
    if (std::fabs(r.f[0]) < kConverged && std::fabs(r.f[1]) < kConverged) return apart(x, fraction(g.u), r);
    if (k < substitutions || !newton(source, T, x, r, g)) g = substitute(x, g, r);
    if (!std::isfinite(g.lp) || !std::isfinite(g.u)) return false;
  }
  return false;
}

// Vapour pressure of the component left where x is 0 or 1.
PairState pure_point(const PairPhases& source, double T, double x, double start) {
  const std::size_t own = x > 0.5 ? 0 : 1;
  const auto search = [&](double from) {
    double lp = std::log(from);
    for (int k = 0; k < 60; ++k) {
      const double P = std::exp(lp);
      if (!(P > kLowestPressure && P < kHighestPressure)) break;
      const PairPhase l = source.phase(T, P, x, PairRoot::liquid);
      const PairPhase v = source.phase(T, P, x, PairRoot::vapour);
      if (!l.ok || !v.ok || !(v.Z > l.Z * (1.0 + kSamePhase))) break;
      const double step = (l.lnphi.at(own) - v.lnphi.at(own)) / (v.Z - l.Z);
      lp += std::clamp(step, -1.0, 1.0);
      if (std::fabs(step) < kConverged) return PairState{.ok = true, .P = std::exp(lp), .x = x, .y = x};
    }
    return PairState{};
  };
  PairState s = search(start);
  // Two density roots exist only near the saturation line: look for them from low pressure on.
  for (double P = 1.0; !s.ok && P < 3e7; P *= 1.3) s = search(P);
  return s;
}

// Follows the bubble line from a pure component, whose vapour pressure is P, to X.
PairState follow(const PairPhases& source, double T, double x, double end, double P) {
  constexpr double kFirst = 1.0 / 32.0;
  constexpr double kSmallest = 1.0 / 4096.0;
  const PairPhase l = source.phase(T, P, end, PairRoot::liquid);
  const PairPhase v = source.phase(T, P, end, PairRoot::vapour);
  if (!l.ok || !v.ok) return {};
  const auto position = [&](double s) { return end + (x - end) * s; };
  Guess g;
  const auto begin = [&](double s) {
    const double at = position(s);
    const double k1 = at * std::exp(l.lnphi[0] - v.lnphi[0]);
    const double k2 = (1.0 - at) * std::exp(l.lnphi[1] - v.lnphi[1]);
    return Guess{.lp = std::log(P * (k1 + k2)), .u = std::log(k1 / k2)};
  };
  double s = 0.0, step = kFirst, past = 0.0;
  Guess before;
  bool line = false;
  while (s < 1.0) {
    const double next = std::min(1.0, s + step);
    Guess trial;
    if (s > 0.0) {
      // The ratio y/(1-y) over x/(1-x) varies far less along the line than the ratio itself.
      const double t = line ? (next - s) / (s - past) : 0.0;
      const auto level = [&](double at, const Guess& q) { return q.u - ratio_log(position(at)); };
      trial.lp = g.lp + t * (g.lp - before.lp);
      trial.u =
          level(s, g) + (line ? t * (level(s, g) - level(past, before)) : 0.0) + ratio_log(position(next));
    } else {
      trial = begin(next);
    }
    if (!solve(source, T, position(next), 0, trial) || (s > 0.0 && std::fabs(trial.lp - g.lp) > 0.7)) {
      step *= 0.5;
      if (step < kSmallest) return {};
      continue;
    }
    before = g;
    past = s;
    line = s > 0.0;
    g = trial;
    s = next;
    step = std::min(2.0 * step, 0.25);
  }
  return {.ok = true, .P = std::exp(g.lp), .x = x, .y = fraction(g.u)};
}

}  // namespace

PairState bubble_point(const PairPhases& source, double T, double x, double start) {
  if (!(x > 0.0) || !(x < 1.0)) return pure_point(source, T, x, start);
  const PairPhase l = source.phase(T, start, x, PairRoot::liquid);
  if (l.ok) {
    Guess g{.lp = std::log(start), .u = ratio_log(x) + l.lnphi[0] - l.lnphi[1]};
    if (solve(source, T, x, 4, g)) return {.ok = true, .P = std::exp(g.lp), .x = x, .y = fraction(g.u)};
  }
  for (const double end : {x < 0.5 ? 0.0 : 1.0, x < 0.5 ? 1.0 : 0.0}) {
    const PairState pure = pure_point(source, T, end, start);
    if (!pure.ok) continue;
    const PairState s = follow(source, T, x, end, pure.P);
    if (s.ok) return s;
  }
  return {};
}

PairState two_phases(const PairPhases& source, double T, double P, double x, double y) {
  for (int k = 0; k < 500; ++k) {
    const PairPhase l = source.phase(T, P, x, PairRoot::liquid);
    const PairPhase v = source.phase(T, P, y, PairRoot::vapour);
    if (!l.ok || !v.ok) return {};
    const double k1 = std::exp(l.lnphi[0] - v.lnphi[0]), k2 = std::exp(l.lnphi[1] - v.lnphi[1]);
    if (!(std::fabs(k1 - k2) > 1e-9)) return {};
    const double xn = std::clamp((1.0 - k2) / (k1 - k2), 0.5 * x, 0.5 * (1.0 + x));
    const double yn = std::clamp(k1 * xn, 0.5 * y, 0.5 * (1.0 + y));
    const double change = std::fabs(xn - x) + std::fabs(yn - y);
    x = xn;
    y = yn;
    if (change < 1e-10) return {.ok = std::fabs(x - y) > kSamePhase, .P = P, .x = x, .y = y};
  }
  return {};
}

}  // namespace talix::bank
