#include "bank/accuracy_lines.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <map>
#include <system_error>

#include "bank/accuracy_engine.h"
#include "bank/tables.h"

namespace talix::bank {

namespace {

constexpr int kMostAtOnce = 50;           // components that the engine takes in one load
constexpr double kFarFrom = 1.15;         // reduced temperature from which the gas region counts as open
constexpr double kNearFrom = 0.95;        // and up to which
constexpr double kMostPressure = 405e5;   // end of the comparison in the gas region [Pa]
constexpr double kLowPressure = 100.5e5;  // end of what pipelines and plants mostly run at [Pa]

void compare_saturation(const EngineSet& engine, int i, const Reference& ref, Line& line) {
  const double tc = engine.critical_temperature(i), pc = engine.critical_pressure(i);
  const Curves curves = engine.curves(i);
  for (const SatPoint& s : ref.sat) {
    const double u = s.T / tc;
    if (u < 0.3999 || u > 0.9811) continue;
    const Saturation start = saturation(curves_at(curves, u, false), u, s.psat / pc);
    EngineState liquid, vapour;
    double P = 0.0;
    if (!start.ok || !engine.saturation(i, s.T, start.pr * pc, P, liquid, vapour)) {
      ++line.missing;
      continue;
    }
    const double rt = GAS_CONSTANT * s.T;
    const double psat = 100.0 * (P / s.psat - 1.0), rhol = 100.0 * (P / (liquid.Z * rt) / s.rhol - 1.0);
    line.psat.add(psat);
    line.rhol.add(rhol);
    if (u > 0.4999 && u < 0.9501) {
      line.psat_core.add(psat);
      line.rhol_core.add(rhol);
    }
    if (s.rhov > 0.0) line.rhov.add(100.0 * (P / (vapour.Z * rt) / s.rhov - 1.0));
    if (s.hvap > 0.0) {
      const double h = 100.0 * (rt * (vapour.H - liquid.H) / s.hvap - 1.0);
      line.hvap.add(h);
      if (u < 0.9001) line.hvap_low.add(h);
      if (u > 0.4999 && u < 0.9001) line.hvap_core.add(h);
    }
  }
}

// What the form itself leaves in the heat of vaporisation: a and b that meet vapour pressure and liquid density at each
// temperature, the slope of the vapour pressure as it is.
void compare_form(const EngineSet& engine, int i, const Reference& ref, Line& line) {
  const double tc = engine.critical_temperature(i), pc = engine.critical_pressure(i);
  const Curves curves = engine.curves(i);
  for (const SatPoint& s : ref.sat) {
    const double u = s.T / tc, rt = GAS_CONSTANT * s.T;
    if (u < 0.4999 || u > 0.9001 || !(s.rhov > 0.0)) continue;
    std::array<PointSolution, 8> found{};
    const int n = solve_point(u, s.psat / pc, pc / (s.rhol * GAS_CONSTANT * tc), found);
    const double b = curves_at(curves, u, false).B;
    const PointSolution* nearest = nullptr;
    for (int k = 0; k < n; ++k) {
      const PointSolution& p = found.at(static_cast<std::size_t>(k));
      if (nearest == nullptr || std::fabs(p.B - b) < std::fabs(nearest->B - b)) nearest = &p;
    }
    Root liquid{}, vapour{};
    if (nearest == nullptr || outer_roots(nearest->A, nearest->B, u, s.psat / pc, liquid, vapour) != 2)
      continue;
    const double right = s.psat / rt * (1.0 / s.rhov - 1.0 / s.rhol);
    line.hvap_form.add(100.0 * ((vapour.Z - liquid.Z) / right - 1.0));
  }
}

void add_to(GasDeviations& d, const GasPoint& g, const EngineState& s) {
  d.rho.add(100.0 * (g.P / (s.Z * GAS_CONSTANT * g.T) / g.rho - 1.0));
  d.cp.add(100.0 * (s.CP / g.cp - 1.0));
  d.w.add(100.0 * (s.WSOUND / g.w - 1.0));
}

void compare_gas(const EngineSet& engine, int i, const Reference& ref, Line& line) {
  const double tc = engine.critical_temperature(i);
  for (const GasPoint& g : ref.gas) {
    const double u = g.T / tc;
    const bool low = g.P < kLowPressure;
    if ((u < 1.02 && !low) || g.P > kMostPressure) continue;
    const EngineState s = engine.state(i, g.T, g.P, RootAsked::stable, true);
    if (!s.ok) {
      ++line.missing;
      continue;
    }
    if (low) add_to(line.low, g, s);
    if (low && (u < kNearFrom || u > kFarFrom)) add_to(line.low_open, g, s);
    if (u < 1.02) continue;
    const double rho = 100.0 * (g.P / (s.Z * GAS_CONSTANT * g.T) / g.rho - 1.0);
    if (u < kFarFrom) {
      line.near_rho.add(rho);
      continue;
    }
    line.rho.add(rho);
    line.cp.add(100.0 * (s.CP / g.cp - 1.0));
    line.w.add(100.0 * (s.WSOUND / g.w - 1.0));
    line.jt.add(1e8 * (s.JTC - g.jt));
  }
}

// a and b with the derivatives that belong to their values.
AB true_slopes(const Curves& curves, double u) {
  constexpr double kStep = 2e-4;
  AB ab = curves_at(curves, u, false);
  const AB up = curves_at(curves, u + kStep, false), down = curves_at(curves, u - kStep, false);
  ab.A1 = (up.A - down.A) / (2.0 * kStep);
  ab.B1 = (up.B - down.B) / (2.0 * kStep);
  ab.A2 = (up.A - 2.0 * ab.A + down.A) / (kStep * kStep);
  ab.B2 = (up.B - 2.0 * ab.B + down.B) / (kStep * kStep);
  return ab;
}

void measure_zone(const EngineSet& engine, int i, const std::array<double, 8>& cp_ig, ZoneErrors& zone) {
  const Curves c = engine.curves(i);
  const double tc = engine.critical_temperature(i), pc = engine.critical_pressure(i);
  const double slope = (c.AALIM - c.AAC) / 0.1;
  zone.a = 100.0 * (0.5 * (c.a1[0] + c.a1[1]) / slope - 1.0);
  const double u0 = 1.0 / 1.04, b0 = curves_at(c, u0, false).B;
  const double b_slope = (curves_at(c, 1.1, false).B - b0) / (1.1 - u0);
  zone.b = 100.0 * (0.5 * (c.b1[0] + c.b1[1]) - b_slope) / b0;
  for (int k = 1; k < 20; ++k) {
    const double u = u0 + (1.1 - u0) * k / 20.0;
    if (std::fabs(u - 1.0) < 0.003) continue;
    const AB exact = true_slopes(c, u), tabulated = curves_at(c, u, true);
    const double T = u * tc, cp0 = ideal_gas_cp(cp_ig, T);
    for (const double pr : {0.3, 0.8, 1.5, 3.0}) {
      const EngineState s = engine.state(i, T, pr * pc, RootAsked::stable, true);
      if (!s.ok) continue;
      const Thermal right = thermal(exact, u, pr, s.Z), held = thermal(tabulated, u, pr, s.Z);
      const double dh = GAS_CONSTANT * T * (held.H - right.H);
      const double cp = cp0 + GAS_CONSTANT * right.CP;
      const double djt = 1e5 * (s.JTC - joule_thomson(right, s.Z, T, pr * pc, cp0));
      zone.states.push_back({u, pr, dh, 100.0 * (1.0 - cp / s.CP), djt});
      zone.H = std::max(zone.H, std::fabs(dh));
      if (pr < 0.5 || pr > 2.0) zone.CP.add(100.0 * (1.0 - cp / s.CP));
      if (pr < 0.5) {
        zone.H_gas = std::max(zone.H_gas, std::fabs(dh));
        zone.JT = std::max(zone.JT, std::fabs(djt));
      }
    }
  }
  zone.CP.finish();
}

// Parabola through the three points of a saturation line next to T, in 1/T; value and slope of what OF gives.
struct Interpolated {
  bool ok = false;
  double value = 0.0, slope = 0.0;
};

template <class Of>
Interpolated interpolated(const std::vector<SatPoint>& sat, double T, Of of) {
  std::vector<const SatPoint*> known;
  for (const SatPoint& s : sat)
    if (std::isfinite(of(s))) known.push_back(&s);
  if (known.size() < 3 || T < known.front()->T || T > known.back()->T) return {};
  std::size_t k = 1;
  while (k + 2 < known.size() && known[k]->T + known[k + 1]->T < 2.0 * T) ++k;
  const double x = 1.0 / T;
  Interpolated r{.ok = true};
  for (std::size_t i = 0; i < 3; ++i) {
    const auto at = [&](std::size_t n) { return 1.0 / known[k - 1 + n]->T; };
    const std::size_t j = (i + 1) % 3, l = (i + 2) % 3;
    const double scale = of(*known[k - 1 + i]) / ((at(i) - at(j)) * (at(i) - at(l)));
    r.value += scale * (x - at(j)) * (x - at(l));
    r.slope += scale * (2.0 * x - at(j) - at(l));
  }
  return r;
}

constexpr double kAtmosphere = 101325.0;  // [Pa]

// Temperature at which a source has 1 atm [K]; 0 where it does not reach it.
double source_boiling(const std::vector<SatPoint>& sat) {
  if (sat.empty() || sat.front().psat > kAtmosphere || sat.back().psat < kAtmosphere) return 0.0;
  double low = sat.front().T, high = sat.back().T;
  for (int i = 0; i < 60; ++i) {
    const double T = 0.5 * (low + high);
    const auto p = interpolated(sat, T, [](const SatPoint& s) { return std::log(s.psat); });
    (p.value < std::log(kAtmosphere) ? low : high) = T;
  }
  return 0.5 * (low + high);
}

void compare_boiling(const EngineSet& engine, int i, const Reference& ref, const FitComponent& c,
                     Line& line) {
  BoilingFigures& b = line.boiling;
  b.given = c.tb;
  b.sublimes = c.sublimes;
  b.source = source_boiling(ref.sat);
  EngineState liquid, vapour;
  double P = 0.0, T = b.source > 0.0 ? b.source : c.tb, start = kAtmosphere;
  // The vapour pressure is close to a line in 1/T: a few steps along its slope.
  for (int k = 0; k < 12; ++k) {
    if (!engine.saturation(i, T, start, P, liquid, vapour)) break;
    const double slope = (vapour.H - liquid.H) / (vapour.Z - liquid.Z);  // d ln P / d ln T
    const double step = -std::log(P / kAtmosphere) / slope;
    T *= std::exp(step);
    start = P;
    if (std::fabs(step) < 1e-9) {
      b.cubic = T;
      break;
    }
  }
  const auto hvap = interpolated(ref.sat, c.tb, [](const SatPoint& s) {
    return s.hvap > 0.0 ? s.hvap : std::numeric_limits<double>::quiet_NaN();
  });
  b.hvap_given = hvap.ok ? hvap.value : c.hvap_tb;
  const auto p = interpolated(ref.sat, c.tb, [](const SatPoint& s) { return std::log(s.psat); });
  if (!engine.saturation(i, c.tb, p.ok ? std::exp(p.value) : kAtmosphere, P, liquid, vapour)) return;
  b.hvap_cubic = GAS_CONSTANT * c.tb * (vapour.H - liquid.H);
  b.rhov_cubic = P / (vapour.Z * GAS_CONSTANT * c.tb);
  if (p.ok) {
    b.hvap_slope = -GAS_CONSTANT * p.slope * (vapour.Z - liquid.Z);
    b.psat_off = 100.0 * (P / std::exp(p.value) - 1.0);
  }
  const auto rhov = interpolated(ref.sat, c.tb, [](const SatPoint& s) {
    return s.rhov > 0.0 ? std::log(s.rhov) : std::numeric_limits<double>::quiet_NaN();
  });
  if (rhov.ok) b.rhov_source = std::exp(rhov.value);
}

void check_curves(const EngineSet& engine, int i, const Reference& ref, const FitComponent& c,
                  CurveFaults& f) {
  const Curves curves = engine.curves(i);
  constexpr double kStep = 0.01, kLow = 0.3, kHigh = 4.0, kFloor = 0.001, kTop = 0.98;
  const double tc = engine.critical_temperature(i);
  for (double u = kLow; u < kHigh + 0.5 * kStep; u += kStep) {
    const AB ab = curves_at(curves, u, false);
    if (f.a <= 0.0 && !(ab.A > kFloor && std::isfinite(ab.A))) f.a = u * tc;
    if (f.b <= 0.0 && !(ab.B > 0.0 && std::isfinite(ab.B))) f.b = u * tc;
  }
  const double first = std::max({kLow, ref.sat.empty() ? 0.0 : ref.sat.front().T / tc, c.tm / tc});
  double pressure = 0.0, density = 1e300;
  for (double u = first; u < kTop; u += kStep) {
    const Saturation s =
        saturation(curves_at(curves, u, false), u, std::exp(lee_kesler_lnpr(u, std::max(c.omega, 0.0))));
    if (!s.ok) continue;
    const double rho = s.pr / (s.ZL * u);
    if (f.pressure <= 0.0 && !(s.pr > pressure)) f.pressure = u * tc;
    if (f.density <= 0.0 && !(rho < density)) f.density = u * tc;
    pressure = s.pr;
    density = rho;
  }
}

Line compare(const EngineSet& engine, int i, const ReferenceTables& tables, const FitComponent& c) {
  Line line;
  line.component = &c;
  const Reference ref = reference_of(tables, c);
  line.basis = ref.basis;
  line.source = ref.source;
  line.psat_estimated = ref.psat_estimated;
  line.rhol_estimated = ref.rhol_estimated;
  line.hvap_estimated = ref.hvap_estimated;
  compare_saturation(engine, i, ref, line);
  compare_gas(engine, i, ref, line);
  if (ref.basis == "equation of state") compare_form(engine, i, ref, line);
  const std::array<double, 8> cp_ig = engine.heat_capacity(i);
  for (const CpPoint& p : ref.cp) line.cp_ig.add(100.0 * (ideal_gas_cp(cp_ig, p.T) / p.cp - 1.0));
  for (const SatPoint& s : ref.sat) {
    const double u = s.T / c.tc;
    if (u < 0.3999 || u > 0.9811) continue;
    line.wagner.add(100.0 * (engine.vapour_pressure_set(i, s.T) / s.psat - 1.0));
  }
  measure_zone(engine, i, cp_ig, line.zone);
  compare_boiling(engine, i, ref, c, line);
  check_curves(engine, i, ref, c, line.faults);
  for (Deviation* d :
       {&line.psat,        &line.rhol,      &line.rhov,      &line.hvap,      &line.hvap_low,
        &line.near_rho,    &line.rho,       &line.cp,        &line.w,         &line.jt,
        &line.cp_ig,       &line.wagner,    &line.psat_core, &line.rhol_core, &line.hvap_core,
        &line.hvap_form,   &line.low.rho,   &line.low.cp,    &line.low.w,     &line.low_open.rho,
        &line.low_open.cp, &line.low_open.w}) {
    d->finish();
  }
  return line;
}

// A folder of bank files that goes away with the object.
class TemporaryBank {
 public:
  explicit TemporaryBank(const Bank& bank) {
    folder_ = std::filesystem::temp_directory_path() / ("talix-accuracy-" + std::to_string(::getpid()));
    std::filesystem::create_directories(folder_);
    write_bank(folder_, bank);
  }
  ~TemporaryBank() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  TemporaryBank(const TemporaryBank&) = delete;
  TemporaryBank& operator=(const TemporaryBank&) = delete;
  [[nodiscard]] std::string path() const { return folder_.string(); }

 private:
  std::filesystem::path folder_;
};

}  // namespace

std::string figure(const char* format, double value) {
  char out[160];
  std::snprintf(out, sizeof out, format, value);
  return out;
}

std::string pair_of(const Deviation& d, const char* format) {
  return d.n > 0 ? figure(format, d.mean) + " / " + figure(format, d.worst) : "-";
}

std::vector<Line> accuracy_lines(const Bank& bank, const ReferenceTables& tables) {
  std::map<std::string, const FitComponent*> known;
  for (const FitComponent& c : tables.components) known[c.code] = &c;
  std::vector<const FitComponent*> listed;
  for (const DirectoryEntry& entry : bank.directory) {
    const auto it = known.find(entry.code);
    if (it != known.end()) listed.push_back(it->second);
  }
  const TemporaryBank folder(bank);
  std::vector<Line> lines;
  for (std::size_t first = 0; first < listed.size(); first += kMostAtOnce) {
    const std::size_t last = std::min(listed.size(), first + kMostAtOnce);
    std::vector<std::string> codes;
    for (std::size_t k = first; k < last; ++k) codes.push_back(listed[k]->code);
    const EngineSet engine(folder.path(), codes);
    for (std::size_t k = first; k < last; ++k) {
      lines.push_back(compare(engine, static_cast<int>(k - first) + 1, tables, *listed[k]));
    }
  }
  return lines;
}

}  // namespace talix::bank
