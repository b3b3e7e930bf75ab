// Saturated liquid density, vapour pressure and heat of vaporisation.
#include "bank/fit_sets.h"

#include <Eigen/Dense>

#include <algorithm>
#include <cmath>

namespace talix::bank {

namespace {

constexpr double kHighest = 0.985;    // reduced temperature up to which the sets are fitted
constexpr double kDensityGoal = 0.5;  // percent
constexpr double kHeatGoal = 1.0;     // percent
constexpr double kOutside = 0.4;      // weight of the source outside the range of a fit
constexpr double kPaPerMPa = 1e6;
// Share of the pressure term at the critical point after the van der Waals equation, in ln(pressure).
constexpr double kCriticalSlope = 27.0 / 64.0;
constexpr double kNearCritical = 0.9999, kMostAtEnd = 0.12;  // of Tc; of Pc
constexpr double kAlwaysInside = 5000.0;  // upper limit of a set that no temperature reaches [K]
constexpr double kColdest = 1.0;          // lower limit [K]

std::vector<SatPoint> below_critical(const FitComponent& c, const Reference& ref) {
  std::vector<SatPoint> points;
  for (const SatPoint& s : ref.sat)
    if (s.T < kHighest * c.tc) points.push_back(s);
  return points;
}

// Deviations of the vapour pressure below the critical temperature.
void measure_pressure(FittedSet& set, const FitComponent& c, const std::vector<SatPoint>& points) {
  for (const SatPoint& s : points) {
    if (!(s.T < c.tc)) continue;
    if (set.deviation.n == 0) set.tmin = s.T;
    set.tmax = s.T;
    set.deviation.add(100.0 * (psat_pressure(set.c, s.T) * kPaPerMPa / s.psat - 1.0));
  }
  set.deviation.finish();
}

FittedSet fit_dlip(const FitComponent& c, const SourceLine& line) {
  FittedSet set{.name = "DLIP", .count = 3};
  // The level at the critical point is free; where that leads below zero it is the critical density.
  const double critical = c.mw / 1000.0 / c.vc;
  for (const bool free : {true, false}) {
    std::vector<std::vector<double>> m;
    std::vector<double> b, w;
    for (const SourcePoint& p : line.points) {
      const double q = 1.0 - p.T / c.tc, rho = p.value * c.mw / 1000.0;
      m.push_back({std::cbrt(q) / rho, q / rho});
      if (free) m.back().push_back(1.0 / rho);
      b.push_back(free ? 1.0 : 1.0 - critical / rho);
      w.push_back(p.weight);
    }
    const std::vector<double> x = fit_evenly(m, b, w);
    const double level = free ? x[2] : critical;
    set.c = {level, x[0] / level, x[1] / level};
    if (level > 0.3 * critical) break;
  }
  round_all(set);
  measure(set, line, c.mw / 1000.0, [&](double T) { return dlip_density(set.c, c.tc, T); });
  return set;
}

// The exponent by a search, the two levels linear in the logarithm.
std::optional<FittedSet> fit_ddip(const FitComponent& c, const SourceLine& line) {
  std::optional<FittedSet> best;
  for (int k = 0; k <= 30; ++k) {
    const double exponent = 0.20 + 0.01 * k;
    FittedSet set{.name = "DDIP", .count = 4};
    std::vector<std::vector<double>> m;
    std::vector<double> b, w;
    for (const SourcePoint& p : line.points) {
      m.push_back({1.0, -(1.0 + std::pow(1.0 - p.T / c.tc, exponent))});
      b.push_back(std::log(p.value / 1000.0));
      w.push_back(p.weight);
    }
    const std::vector<double> x = fit_evenly(m, b, w);
    set.c = {std::exp(x[0]), std::exp(x[1]), c.tc, exponent};
    round_all(set);
    measure(set, line, c.mw / 1000.0, [&](double T) { return ddip_density(set.c, c.mw, T); });
    if (!best || set.deviation.worst < best->deviation.worst) best = set;
  }
  return best;
}

std::optional<FittedSet> fit_hvap(const FitComponent& c, const SourceLine& line) {
  std::optional<FittedSet> best;
  for (std::size_t terms = 1; terms <= 4; ++terms) {
    FittedSet set{.name = "HVAPCF", .flag = kTabulatedForm, .count = 7};
    std::vector<std::vector<double>> m;
    std::vector<double> b, w;
    for (const SourcePoint& p : line.points) {
      const double r = p.T / c.tc, ln = std::log(1.0 - r);
      std::vector<double> row{1.0};
      for (std::size_t k = 0; k < terms; ++k) row.push_back(ln * std::pow(r, static_cast<double>(k)));
      m.push_back(row);
      b.push_back(std::log(p.value * 1000.0));
      w.push_back(p.weight);
    }
    const std::vector<double> x = fit_evenly(m, b, w);
    set.c[0] = std::exp(x[0]);
    for (std::size_t k = 0; k < terms; ++k) set.c[k + 1] = x[k + 1];
    set.c[5] = kColdest;
    set.c[6] = kAlwaysInside;
    round_all(set);
    // The engine refuses a negative exponent.
    double least = 1.0;
    for (double r = 0.01; r <= 1.0; r += 0.01) least = std::min(least, hvap_exponent(set.c, c.tc, r * c.tc));
    if (!(least > 0.0)) continue;
    measure(set, line, 1.0, [&](double T) { return hvap_heat(set.c, c.tc, T); });
    if (!best || set.deviation.worst < best->deviation.worst) best = set;
  }
  return best;
}

}  // namespace

double rounded_to_32_bits(double v) { return static_cast<double>(static_cast<float>(v)); }

std::vector<double> fit_evenly(const std::vector<std::vector<double>>& m, const std::vector<double>& b,
                               const std::vector<double>& weight) {
  const auto n = static_cast<Eigen::Index>(m.size());
  const auto columns = static_cast<Eigen::Index>(m.front().size());
  Eigen::MatrixXd a(n, columns);
  Eigen::VectorXd y(n), w(n);
  for (Eigen::Index i = 0; i < n; ++i) {
    const auto at = static_cast<std::size_t>(i);
    for (Eigen::Index k = 0; k < columns; ++k) a(i, k) = m[at][static_cast<std::size_t>(k)];
    y(i) = b[at];
    w(i) = weight[at];
  }
  const Eigen::VectorXd scale = a.colwise().norm();
  a = a * scale.cwiseInverse().asDiagonal();
  Eigen::VectorXd x, pressed = w, best;
  double least = 0.0;
  constexpr int kRounds = 40;
  for (int round = 0; round < kRounds; ++round) {
    x = (pressed.asDiagonal() * a).colPivHouseholderQr().solve(pressed.cwiseProduct(y));
    const Eigen::VectorXd r = (a * x - y).cwiseAbs().cwiseProduct(w);
    const double worst = r.maxCoeff();
    if (round == 0 || worst < least) {
      least = worst;
      best = x;
    }
    if (!(worst > 0.0)) break;
    // Points that are off count more in the next round; none is forgotten.
    for (Eigen::Index i = 0; i < n; ++i) pressed(i) *= std::sqrt(0.15 + 0.85 * r(i) / worst);
    pressed *= w.norm() / pressed.norm();
  }
  std::vector<double> result(static_cast<std::size_t>(columns));
  for (Eigen::Index k = 0; k < columns; ++k) result[static_cast<std::size_t>(k)] = best(k) / scale(k);
  return result;
}

void round_all(FittedSet& set) {
  for (double& v : set.c) v = rounded_to_32_bits(v);
}

std::vector<FittedSet> fit_liquid_density(const FitComponent& c, const SourceLine& line) {
  const double factor = c.mw / 1000.0;
  auto dlip = fit_widest(
      c, line, kDensityGoal, kOutside, factor,
      [&](const SourceLine& l) -> std::optional<FittedSet> { return fit_dlip(c, l); },
      [&](const FittedSet& set, double T) { return dlip_density(set.c, c.tc, T); });
  const auto ddip = fit_widest(
      c, line, kDensityGoal, kOutside, factor, [&](const SourceLine& l) { return fit_ddip(c, l); },
      [&](const FittedSet& set, double T) { return ddip_density(set.c, c.mw, T); });
  if (!dlip || !ddip) return {};
  const bool first = dlip->deviation.worst <= kDensityGoal || dlip->deviation.worst <= ddip->deviation.worst;
  dlip->flag = first ? kTabulatedForm : 0;
  return {*dlip, *ddip};
}

std::optional<FittedSet> fit_frost_kalkwarf(const FitComponent& c, const Reference& ref) {
  std::vector<SatPoint> points = below_critical(c, ref);
  points.push_back({c.tc, c.pc, 0.0, 0.0, 0.0});
  const double critical = kCriticalSlope / std::log(10.0) * c.tc * c.tc / (c.pc / kPaPerMPa);
  FittedSet set{.name = "PSAT", .flag = kFrostKalkwarf, .count = 5, .source = ref.source};
  // The share of the last term is free first; held where it leaves the equation without a root below the
  // critical point.
  bool found_sound = false;
  for (const double share : {-1.0, 1.0, 1.2, 1.4, 0.8, 0.6, 0.4, 0.3}) {
    std::vector<std::vector<double>> m;
    std::vector<double> b, w;
    for (const SatPoint& s : points) {
      const double mpa = s.psat / kPaPerMPa;
      const double last = mpa / (s.T * s.T);
      std::vector<double> row{1.0, 1.0 / s.T, std::log10(s.T)};
      double rest = std::log10(mpa);
      if (share < 0.0)
        row.push_back(last);
      else
        rest -= share * critical * last;
      m.push_back(row);
      b.push_back(rest);
      // The equation is implicit: near the critical point an error in it is a larger one in the pressure.
      const double share_of_last = kCriticalSlope * s.psat / c.pc * std::pow(c.tc / s.T, 2.0);
      w.push_back((s.T < 0.4 * c.tc ? 0.2 : 1.0) / (1.0 - share_of_last));
    }
    const std::vector<double> x = fit_evenly(m, b, w);
    FittedSet trial = set;
    trial.deviation = {};
    trial.c = {x[0], x[1], 0.0, x[2], share < 0.0 ? x[3] : share * critical};
    round_all(trial);
    const double used = trial.c[4] / critical;
    if (!(used > 0.1 && used < 2.0)) continue;
    measure_pressure(trial, c, points);
    // A set must have a root up to the critical point, and end near its pressure.
    const double end = psat_pressure(trial.c, kNearCritical * c.tc) * kPaPerMPa / c.pc;
    const bool sound = end > 1.0 - kMostAtEnd && end < 1.0 + kMostAtEnd;
    const bool better = trial.deviation.worst < set.deviation.worst;
    if (set.deviation.n == 0 || (sound && !found_sound) || (sound == found_sound && better)) set = trial;
    found_sound = found_sound || sound;
    if (share < 0.0 && sound && trial.deviation.worst < 5.0) break;
  }
  if (set.deviation.n == 0) return std::nullopt;
  return set;
}

std::optional<FittedSet> fit_heat_of_vaporisation(const FitComponent& c, const SourceLine& line) {
  return fit_widest(
      c, line, kHeatGoal, kOutside, 1.0, [&](const SourceLine& l) { return fit_hvap(c, l); },
      [&](const FittedSet& set, double T) { return hvap_heat(set.c, c.tc, T); });
}

}  // namespace talix::bank
