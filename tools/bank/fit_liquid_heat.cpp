// Two sets that follow their source with a few linear terms: liquid heat capacity and extended Antoine equation.
#include "bank/fit_sets.h"

#include <algorithm>
#include <cmath>

namespace talix::bank {

namespace {

constexpr double kHighest = 0.985;  // reduced temperature up to which a vapour pressure is fitted
constexpr double kHeatGoal = 1.0;  // largest deviation of the heat capacity that asks for no further term [%]
constexpr double kLastPower = 6.0;                // of T in the extended Antoine equation
constexpr double kColdWeight = 0.2, kCold = 0.4;  // weight below this reduced temperature

double polynomial(const SetValues& c, double T) {
  return (((c[4] * T + c[3]) * T + c[2]) * T + c[1]) * T + c[0];
}

}  // namespace

double ccpl_heat_capacity(const SetValues& c, double T) { return polynomial(c, std::clamp(T, c[5], c[6])); }

double panto_pressure(const SetValues& c, double T) {
  return std::exp(c[0] + c[1] / (T + c[2]) + c[3] * T + c[4] * std::log(T) + c[5] * std::pow(T, c[6]));
}

std::optional<FittedSet> fit_liquid_heat_capacity(const FitComponent& c, const SourceLine& line) {
  std::optional<FittedSet> best;
  for (std::size_t terms = 2; terms <= 5 && line.points.size() >= terms + 3; ++terms) {
    FittedSet set{.name = "CCPL", .flag = kTabulatedForm, .count = 7};
    std::vector<std::vector<double>> m;
    std::vector<double> b, w;
    for (const SourcePoint& p : line.points) {
      std::vector<double> row;
      for (std::size_t k = 0; k < terms; ++k)
        row.push_back(std::pow(p.T / c.tc, static_cast<double>(k)) / p.value);
      m.push_back(row);
      b.push_back(1.0);
      w.push_back(p.weight);
    }
    const std::vector<double> x = fit_evenly(m, b, w);
    for (std::size_t k = 0; k < terms; ++k) set.c[k] = x[k] / std::pow(c.tc, static_cast<double>(k));
    set.c[5] = line.tmin;
    set.c[6] = line.tmax;
    round_all(set);
    measure(set, line, 1.0, [&](double T) { return ccpl_heat_capacity(set.c, T); });
    if (!best || set.deviation.worst < best->deviation.worst) best = set;
    if (best->deviation.worst <= kHeatGoal) break;
  }
  return best;
}

std::optional<FittedSet> fit_extended_antoine(const FitComponent& c, const Reference& ref) {
  FittedSet set{.name = "PANTO", .count = 9, .source = ref.source};
  std::vector<std::vector<double>> m;
  std::vector<double> b, w;
  std::vector<SatPoint> points;
  for (const SatPoint& s : ref.sat) {
    if (s.T > kHighest * c.tc) continue;
    m.push_back({1.0, c.tc / s.T, std::log(s.T / c.tc), std::pow(s.T / c.tc, kLastPower)});
    b.push_back(std::log(s.psat));
    w.push_back(s.T < kCold * c.tc ? kColdWeight : 1.0);
    points.push_back(s);
  }
  constexpr std::size_t kFewest = 6;
  if (points.size() < kFewest) return std::nullopt;
  const std::vector<double> x = fit_evenly(m, b, w);
  set.c = {x[0] - x[2] * std::log(c.tc),
           x[1] * c.tc,
           0.0,
           0.0,
           x[2],
           x[3] / std::pow(c.tc, kLastPower),
           kLastPower,
           points.front().T,
           points.back().T};
  round_all(set);
  set.tmin = points.front().T;
  set.tmax = points.back().T;
  for (const SatPoint& s : points) set.deviation.add(100.0 * (panto_pressure(set.c, s.T) / s.psat - 1.0));
  set.deviation.finish();
  return set;
}

}  // namespace talix::bank
