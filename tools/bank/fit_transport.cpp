// Viscosity, conductivity and surface tension of the liquid.
#include "bank/fit_sets.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace talix::bank {

namespace {

constexpr double kGoal = 2.0;          // largest deviation of viscosity and conductivity [%]
constexpr double kOutside = 0.1;       // weight of the source outside the range of a fit
constexpr double kGuideWeight = 0.03;  // of the points between the end of a source and the critical point
constexpr int kGuides = 10;
// Reduced temperatures where liquids are mostly handled; there the fit is closer than at its ends.
constexpr double kMiddleLow = 0.42, kMiddleHigh = 0.85, kMiddleWeight = 1.5;
constexpr int kStepsOfCheck = 200;

// Viscosity at the critical point [mPa s] after O. A. Uyehara, K. M. Watson, Natl. Petrol. News 36 (1944) R714:
// 7.70 M^(1/2) Pc^(2/3) Tc^(-1/6) micropoise with Pc in atm.
double critical_viscosity(const FitComponent& c) {
  const double atm = c.pc / 101325.0;
  return 7.70e-4 * 0.1 * std::sqrt(c.mw) * std::pow(atm, 2.0 / 3.0) / std::pow(c.tc, 1.0 / 6.0);
}

// Falls with T from a little below the lowest point to the critical temperature, and ends at no less than a
// fraction of the critical viscosity.
bool sound_viscosity(const FitComponent& c, const FittedSet& set, double lowest) {
  double last = 1e300;
  for (int k = 0; k <= kStepsOfCheck; ++k) {
    const double T = 0.97 * lowest + (c.tc - 0.97 * lowest) * k / kStepsOfCheck;
    const double v = vil_viscosity(set.flag, set.c, T);
    if (!(v > 0.0) || !(v < 1.002 * last) || !(v < 1e12)) return false;
    last = v;
  }
  return last > 0.3 * critical_viscosity(c);
}

struct ViscosityForm {
  bool tabulated;     // extended Antoine form
  std::size_t terms;  // of the polynomial
  double power;       // exponent of the fourth term, 0 for none
};

constexpr ViscosityForm kViscosityForms[] = {{true, 3, 0.0},  {true, 4, 10.0}, {true, 4, 6.0},
                                             {true, 4, 2.0},  {true, 4, 1.0},  {false, 4, 0.0},
                                             {false, 5, 0.0}, {false, 6, 0.0}};

FittedSet viscosity_of_form(const FitComponent& c, const SourceLine& line, const ViscosityForm& form,
                            double middle_weight) {
  FittedSet set{.name = "VIL", .flag = form.tabulated ? kTabulatedForm : kPolynomialViscosity, .count = 7};
  std::vector<std::vector<double>> m;
  std::vector<double> b, w;
  const auto add = [&](double T, double mpa_s, double weight) {
    const double u = form.tabulated ? T : 100.0 / T;
    std::vector<double> row{1.0};
    if (form.tabulated) {
      row.push_back(1.0 / T);
      row.push_back(std::log(T));
      if (form.power > 0.0) row.push_back(std::pow(T, form.power));
    } else {
      for (std::size_t k = 1; k < form.terms; ++k) row.push_back(std::pow(u, static_cast<double>(k)));
    }
    m.push_back(row);
    b.push_back(std::log(mpa_s));
    w.push_back(weight);
  };
  for (const SourcePoint& p : line.points) {
    const bool middle = p.T > kMiddleLow * c.tc && p.T < kMiddleHigh * c.tc;
    add(p.T, 1000.0 * p.value, middle ? middle_weight * p.weight : p.weight);
  }
  // From the end of the source to the critical point its tangent in ln(viscosity) guides, down to the viscosity of
  // the critical point at most.
  const SourcePoint &end = line.points.back(), &before = line.points[line.points.size() - 3];
  if (end.T < 0.95 * c.tc) {
    const double slope = std::log(end.value / before.value) / (end.T - before.T);
    for (int k = 1; k <= kGuides; ++k) {
      const double step = (c.tc - end.T) * k / kGuides;
      add(end.T + step, std::max(1000.0 * end.value * std::exp(slope * step), critical_viscosity(c)),
          kGuideWeight);
    }
  }
  const std::vector<double> x = fit_evenly(m, b, w);
  for (std::size_t k = 0; k < x.size(); ++k) set.c[k] = x[k];
  if (form.tabulated) {
    set.c[0] -= 6.90776;
    set.c[4] = form.power;
  } else {
    set.c[4] /= 10.0;
    set.c[5] /= 100.0;
  }
  round_all(set);
  measure(set, line, 1000.0, [&](double T) { return vil_viscosity(set.flag, set.c, T); });
  return set;
}

}  // namespace

namespace {

// The best form over one range.
std::optional<FittedSet> viscosity_over(const FitComponent& c, const SourceLine& line, double middle_weight) {
  std::optional<FittedSet> best;
  for (const ViscosityForm& form : kViscosityForms) {
    const FittedSet set = viscosity_of_form(c, line, form, middle_weight);
    // The engine leaves out a fourth term that is not above 0.
    if (form.tabulated && form.terms == 4 && !(set.c[3] > 0.0)) continue;
    if (!sound_viscosity(c, set, line.points.front().T)) continue;
    if (!best || set.deviation.worst < best->deviation.worst) best = set;
    if (best->deviation.worst <= 0.5 * kGoal) break;
  }
  return best;
}

}  // namespace

std::optional<FittedSet> fit_liquid_viscosity(const FitComponent& c, const SourceLine& line) {
  const auto fit_with = [&](double middle_weight) {
    return fit_widest(
        c, line, kGoal, kOutside, 1000.0,
        [&](const SourceLine& l) { return viscosity_over(c, l, middle_weight); },
        [](const FittedSet& set, double T) { return vil_viscosity(set.flag, set.c, T); });
  };
  const auto even = fit_with(1.0), middle = fit_with(kMiddleWeight);
  // Closer in the middle, unless that costs ordinary temperatures at the cold end.
  constexpr double kMostLost = 5.0;  // K
  const bool closer = even && middle && middle->deviation.worst <= kGoal &&
                      middle->tmin <= std::max(even->tmin, kOrdinary) + kMostLost;
  return closer ? middle : even;
}

std::optional<FittedSet> fit_liquid_conductivity(const FitComponent& c, const SourceLine& line) {
  if (line.points.empty()) return std::nullopt;
  std::optional<FittedSet> best;
  // The fewer coefficients that do; the limit comes down where the tangent at it would fall to nothing.
  for (std::size_t terms = 2; terms <= 5; ++terms) {
    for (const double top : {1.0, 0.95, 0.92, 0.90}) {
      FittedSet set{.name = "TCL", .flag = kTabulatedForm, .count = 7};
      std::vector<std::vector<double>> m;
      std::vector<double> b, w;
      double high = line.points.front().T;
      for (const SourcePoint& p : line.points) {
        if (top < 1.0 && p.T > top * c.tc) continue;
        high = std::max(high, p.T);
        std::vector<double> row;
        for (std::size_t k = 0; k < terms; ++k)
          row.push_back(std::pow(p.T / c.tc, static_cast<double>(k)) / p.value);
        m.push_back(row);
        b.push_back(1.0);
        w.push_back(p.weight);
      }
      if (m.size() < terms + 2) continue;
      const std::vector<double> x = fit_evenly(m, b, w);
      for (std::size_t k = 0; k < terms; ++k) set.c[k] = x[k] / std::pow(c.tc, static_cast<double>(k));
      set.c[5] = line.points.front().T;
      set.c[6] = high;
      round_all(set);
      SourceLine used = line;
      used.tmax = std::min(line.tmax, high);
      std::erase_if(used.points, [&](const SourcePoint& p) { return p.T > high; });
      measure(set, used, 1.0, [&](double T) { return tcl_conductivity(set.c, T); });
      const double middle = tcl_conductivity(set.c, 0.5 * (set.c[5] + set.c[6]));
      const bool sound = tcl_conductivity(set.c, c.tc) > 0.1 * middle &&
                         tcl_conductivity(set.c, 0.8 * set.c[5]) > 0.1 * middle;
      if (!sound || !(set.c[5] < set.c[6])) continue;
      if (!best || set.deviation.worst < best->deviation.worst) best = set;
      break;
    }
    if (best && best->deviation.worst <= 0.5 * kGoal) break;
  }
  return best;
}

std::optional<FittedSet> fit_surface_tension(const FitComponent& c, const SourceLine& line) {
  constexpr double kTensionGoal = 3.0;  // percent
  const auto over = [&](const SourceLine& l) -> std::optional<FittedSet> {
    FittedSet set{.name = "SURT", .flag = 1, .count = 2};
    std::vector<std::vector<double>> m;
    std::vector<double> b, w;
    for (const SourcePoint& p : l.points) {
      m.push_back({1.0, std::log(1.0 - p.T / c.tc)});
      b.push_back(std::log(1000.0 * p.value));
      w.push_back(p.weight);
    }
    const std::vector<double> x = fit_evenly(m, b, w);
    set.c = {std::exp(x[0]), x[1]};
    round_all(set);
    measure(set, l, 1000.0, [&](double T) { return surt_tension(set.c, c.tc, T); });
    return set;
  };
  return fit_widest(c, line, kTensionGoal, kOutside, 1000.0, over,
                    [&](const FittedSet& set, double T) { return surt_tension(set.c, c.tc, T); });
}

std::optional<FittedSet> fit_parachor(const FitComponent& c, const SourceLine& line, const Curves& curves,
                                      const FittedSet& pressure, double highest) {
  FittedSet set{.name = "PACHOR", .count = 1};
  struct Ratio {
    double parachor, tension, difference;
  };
  constexpr double kLowest = 0.40, kHighest = 0.85;  // reduced temperatures
  std::vector<Ratio> ratios;
  for (const SourcePoint& p : line.points) {
    const double u = p.T / c.tc;
    if (u < kLowest || u > kHighest || p.T > highest || !p.core) continue;
    const Saturation s =
        saturation(curves_at(curves, u, false), u, 1e6 * psat_pressure(pressure.c, p.T) / c.pc);
    if (!s.ok) continue;
    constexpr double kCubicCentimetre = 1e-6;
    const double per_volume = s.pr * c.pc / (GAS_CONSTANT * p.T) * kCubicCentimetre;
    const double difference = per_volume / s.ZL - per_volume / s.ZV;
    if (!(difference > 0.0)) continue;
    if (ratios.empty()) set.tmin = p.T;
    set.tmax = p.T;
    ratios.push_back({std::pow(1000.0 * p.value, 0.25) / difference, 1000.0 * p.value, difference});
  }
  if (ratios.size() < 3) return std::nullopt;
  // The middle of the smallest and the largest: the least of the largest deviations.
  const auto [low, high] = std::minmax_element(
      ratios.begin(), ratios.end(), [](const Ratio& a, const Ratio& b) { return a.parachor < b.parachor; });
  set.c[0] = rounded_to_32_bits(std::sqrt(low->parachor * high->parachor));
  for (const Ratio& r : ratios)
    set.deviation.add(100.0 * (std::pow(set.c[0] * r.difference, 4.0) / r.tension - 1.0));
  set.deviation.finish();
  set.source = line.source;
  return set;
}

namespace {

constexpr double kDensityPower = 1.51706;  // fixed in the relation of SS

// What SS takes from the rest of the record, as logarithms.
struct SaturationOfRecord {
  const FitComponent& c;
  const std::vector<FittedSet>& density;
  const FittedSet& pressure;

  [[nodiscard]] double ln_density(double T) const {
    return std::log(density[0].flag != 0 ? dlip_density(density[0].c, c.tc, T)
                                         : ddip_density(density[1].c, c.mw, T));
  }
  [[nodiscard]] double ln_bar(double T) const { return std::log(10.0 * psat_pressure(pressure.c, T)); }
  [[nodiscard]] double viscosity(const SetValues& s, double T) const {
    return std::exp(s[0] + s[1] * ln_bar(T) + kDensityPower * ln_density(T));
  }
  // Slope of the logarithm of that viscosity by T [1/K].
  [[nodiscard]] double slope(double share, double T) const {
    constexpr double kStep = 0.01;  // K
    const auto part = [&](double t) { return share * ln_bar(t) + kDensityPower * ln_density(t); };
    return (part(T + kStep) - part(T - kStep)) / (2.0 * kStep);
  }
};

// Rise of ln(viscosity) by pressure [1/bar] at a viscosity in mPa s: J. Kouzel, Hydrocarbon Process. 44 (1965) no. 3,
// 120, as the engine corrects other liquid viscosities.
double rise_with_pressure(double viscosity) {
  return std::log(10.0) * 0.0145 * (0.0239 + 0.01638 * std::pow(viscosity, 0.278));
}

FittedSet pressure_viscosity_over(const SaturationOfRecord& record, const SourceLine& line) {
  constexpr double kHighestPressure = 300.0;  // of the pressure term [bar]
  FittedSet set{.name = "SS", .flag = 1, .count = 8};
  std::vector<std::vector<double>> m, pm;
  std::vector<double> b, w, pb, pw;
  for (const SourcePoint& p : line.points) {
    m.push_back({1.0, record.ln_bar(p.T)});
    b.push_back(std::log(1000.0 * p.value) - kDensityPower * record.ln_density(p.T));
    w.push_back(p.weight);
  }
  const std::vector<double> x = fit_evenly(m, b, w);
  for (const SourcePoint& p : line.points) {
    if (!p.core) continue;
    const double rise = rise_with_pressure(1000.0 * p.value);
    pm.push_back({1.0 / rise, record.slope(x[1], p.T) / rise});
    pb.push_back(1.0);
    pw.push_back(1.0);
  }
  const std::vector<double> y = fit_evenly(pm, pb, pw);
  set.c = {x[0], x[1], y[0], y[1], line.tmin, line.tmax, 0.0, kHighestPressure};
  round_all(set);
  measure(set, line, 1000.0, [&](double T) { return record.viscosity(set.c, T); });
  return set;
}

}  // namespace

std::optional<FittedSet> fit_pressure_viscosity(const FitComponent& c, const SourceLine& line,
                                                const std::vector<FittedSet>& density,
                                                const FittedSet& pressure) {
  constexpr double kSetGoal = 5.0, kWorst = 8.0;  // percent
  constexpr double kHighest = 0.97;               // reduced temperature
  constexpr std::size_t kFewest = 10;             // points
  const SaturationOfRecord record{c, density, pressure};
  SourceLine used = line;
  std::erase_if(used.points, [&](const SourcePoint& p) {
    return !p.core || p.T > kHighest * c.tc || !(psat_pressure(pressure.c, p.T) > 1e-9);
  });
  if (used.points.size() < kFewest) return std::nullopt;
  used.tmin = used.points.front().T;
  used.tmax = used.points.back().T;
  const auto set = fit_widest(
      c, used, kSetGoal, kOutside, 1000.0,
      [&](const SourceLine& l) -> std::optional<FittedSet> { return pressure_viscosity_over(record, l); },
      [&](const FittedSet& s, double T) { return record.viscosity(s.c, T); });
  return set && set->deviation.worst <= kWorst ? set : std::nullopt;
}

}  // namespace talix::bank
