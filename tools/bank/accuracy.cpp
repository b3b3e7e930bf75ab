#include "bank/accuracy.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <system_error>

#include "bank/accuracy_engine.h"
#include "bank/accuracy_transport.h"
#include "bank/accuracy_transport_phases.h"
#include "bank/fit_curves.h"
#include "bank/tables.h"

namespace talix::bank {

namespace {

constexpr int kMostAtOnce = 50;          // components that the engine takes in one load
constexpr double kFarFrom = 1.15;        // reduced temperature from which the gas region counts as open
constexpr double kMostPressure = 405e5;  // end of the comparison in the gas region [Pa]

// Errors of the straight lines of derivatives inside the zones, against the slopes of the values.
struct ZoneErrors {
  double a = 0.0;      // mean of the end derivatives of a against the slope of a [%]
  double b = 0.0;      // the same for b, over b and per unit of T/Tc [%]
  double H = 0.0;      // largest error of the enthalpy [J/mol]
  double H_gas = 0.0;  // the same at 0.3 Pc [J/mol]
  Deviation CP;        // heat capacity, over the engine's own [%]
  double JT = 0.0;     // largest error of the Joule-Thomson coefficient at 0.3 Pc [K/bar]
};

// Everything the report says of one component.
struct Line {
  const FitComponent* component = nullptr;
  std::string basis;
  int missing = 0;  // saturation points at which the engine finds one phase only
  Deviation psat, rhol, rhov, hvap;
  Deviation hvap_low;              // heat of vaporisation to 0.90 Tc
  Deviation near_rho, rho, cp, w;  // above the critical temperature, below and from 1.15 Tc
  Deviation jt;                    // [mK/bar]
  Deviation wagner, cp_ig;         // vapour pressure set and heat capacity polynomial of the record
  ZoneErrors zone;
};

std::string text(const char* format, double value) {
  char out[40];
  std::snprintf(out, sizeof out, format, value);
  return out;
}

std::string pair_of(const Deviation& d, const char* format = "%.2f") {
  return d.n > 0 ? text(format, d.mean) + " / " + text(format, d.worst) : "-";
}

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
    line.psat.add(100.0 * (P / s.psat - 1.0));
    line.rhol.add(100.0 * (P / (liquid.Z * rt) / s.rhol - 1.0));
    if (s.rhov > 0.0) line.rhov.add(100.0 * (P / (vapour.Z * rt) / s.rhov - 1.0));
    if (s.hvap > 0.0) {
      const double h = 100.0 * (rt * (vapour.H - liquid.H) / s.hvap - 1.0);
      line.hvap.add(h);
      if (u < 0.9001) line.hvap_low.add(h);
    }
  }
}

void compare_gas(const EngineSet& engine, int i, const Reference& ref, Line& line) {
  const double tc = engine.critical_temperature(i);
  for (const GasPoint& g : ref.gas) {
    const double u = g.T / tc;
    if (u < 1.02 || g.P > kMostPressure) continue;
    const EngineState s = engine.state(i, g.T, g.P, RootAsked::stable, true);
    if (!s.ok) {
      ++line.missing;
      continue;
    }
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
      zone.H = std::max(zone.H, std::fabs(dh));
      if (pr < 0.5 || pr > 2.0) zone.CP.add(100.0 * (1.0 - cp / s.CP));
      if (pr < 0.5) {
        zone.H_gas = std::max(zone.H_gas, std::fabs(dh));
        const double jt = joule_thomson(right, s.Z, T, pr * pc, cp0);
        zone.JT = std::max(zone.JT, std::fabs(1e5 * (s.JTC - jt)));
      }
    }
  }
  zone.CP.finish();
}

Line compare(const EngineSet& engine, int i, const ReferenceTables& tables, const FitComponent& c) {
  Line line;
  line.component = &c;
  const Reference ref = reference_of(tables, c);
  line.basis = ref.basis;
  compare_saturation(engine, i, ref, line);
  compare_gas(engine, i, ref, line);
  const std::array<double, 8> cp_ig = engine.heat_capacity(i);
  for (const CpPoint& p : ref.cp) line.cp_ig.add(100.0 * (ideal_gas_cp(cp_ig, p.T) / p.cp - 1.0));
  for (const SatPoint& s : ref.sat) {
    const double u = s.T / c.tc;
    if (u < 0.3999 || u > 0.9811) continue;
    line.wagner.add(100.0 * (engine.vapour_pressure_set(i, s.T) / s.psat - 1.0));
  }
  measure_zone(engine, i, cp_ig, line.zone);
  for (Deviation* d : {&line.psat, &line.rhol, &line.rhov, &line.hvap, &line.hvap_low, &line.near_rho,
                       &line.rho, &line.cp, &line.w, &line.jt, &line.cp_ig, &line.wagner}) {
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

std::vector<Line> all_lines(const Bank& bank, const ReferenceTables& tables) {
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

using Member = Deviation Line::*;

// Mean over components of the mean and of the worst deviation.
std::string mean_over(const std::vector<Line>& lines, Member member, const std::string& basis) {
  double mean = 0.0, worst = 0.0;
  int n = 0;
  for (const Line& line : lines) {
    if ((!basis.empty() && line.basis != basis) || (line.*member).n == 0) continue;
    mean += (line.*member).mean;
    worst += (line.*member).worst;
    ++n;
  }
  return n > 0 ? text("%.2f", mean / n) + " / " + text("%.1f", worst / n) + " (" + std::to_string(n) + ")"
               : "-";
}

void write_summary(std::ostream& out, const std::vector<Line>& lines) {
  out << "## Means over the components\n\n"
         "Mean and worst deviation in percent, averaged over the components; in brackets how many.\n\n"
         "| reference | vapour pressure | liquid density | vapour density | heat of vaporisation | the same "
         "to 0.90 |\n"
         "|---|---|---|---|---|---|\n";
  for (const char* basis : {"", "equation of state", "correlations", "generalised"}) {
    const std::string name =
        *basis == '\0' ? "mean of " + std::to_string(lines.size()) + " components" : basis;
    if (*basis != '\0' && mean_over(lines, &Line::psat, basis) == "-") continue;
    out << "| " << name << " | " << mean_over(lines, &Line::psat, basis) << " | "
        << mean_over(lines, &Line::rhol, basis) << " | " << mean_over(lines, &Line::rhov, basis) << " | "
        << mean_over(lines, &Line::hvap, basis) << " | " << mean_over(lines, &Line::hvap_low, basis)
        << " |\n";
  }
  out << "\nIdeal-gas heat capacity polynomial: " << mean_over(lines, &Line::cp_ig, "")
      << "; Wagner vapour pressure set: " << mean_over(lines, &Line::wagner, "") << ".\n\n";
}

void write_saturation(std::ostream& out, const std::vector<Line>& lines) {
  out << "## Saturation line, component by component\n\n"
         "Reduced temperatures 0.40 to 0.98; mean / worst deviation in percent; n is the number of "
         "points.\n\n"
         "| component | reference | vapour pressure | liquid density | vapour density | heat of vaporisation "
         "| the "
         "same to 0.90 | Wagner set | ideal-gas Cp | n | number "
         "|\n|---|---|---|---|---|---|---|---|---|---|---|\n";
  for (const Line& l : lines) {
    out << "| " << l.component->name << " | " << l.basis << " | " << pair_of(l.psat) << " | "
        << pair_of(l.rhol) << " | " << pair_of(l.rhov, "%.1f") << " | " << pair_of(l.hvap, "%.1f") << " | "
        << pair_of(l.hvap_low, "%.1f") << " | " << pair_of(l.wagner) << " | " << pair_of(l.cp_ig) << " | "
        << l.psat.n << (l.missing > 0 ? " (" + std::to_string(l.missing) + " without two phases)" : "")
        << " | " << l.component->number << " |\n";
  }
  out << '\n';
}

void write_gases(std::ostream& out, const std::vector<Line>& lines) {
  out << "## Gas region\n\n"
         "Above the critical temperature against GERG-2008, up to 400 bar; mean / worst deviation in "
         "percent, Joule-Thomson coefficient in\n"
         "mK/bar. The region below 1.15 Tc stands apart: a cubic cannot follow a fluid there.\n\n"
         "| component | density below 1.15 Tc | n | density | heat capacity | speed of sound | Joule-Thomson "
         "|\n"
         "|---|---|---|---|---|---|---|\n";
  for (const Line& l : lines) {
    if (l.near_rho.n + l.rho.n == 0) continue;
    out << "| " << l.component->name << " | " << pair_of(l.near_rho, "%.1f") << " | " << l.rho.n << " | "
        << pair_of(l.rho) << " | " << pair_of(l.cp, "%.1f") << " | " << pair_of(l.w, "%.1f") << " | "
        << pair_of(l.jt, "%.0f") << " |\n";
  }
  out << "\nMean over the gases: density from 1.15 Tc " << mean_over(lines, &Line::rho, "")
      << ", heat capacity " << mean_over(lines, &Line::cp, "") << ", speed of sound "
      << mean_over(lines, &Line::w, "") << ".\n\n";
}

void write_zones(std::ostream& out, const std::vector<Line>& lines) {
  out << "## The zones around the critical temperature\n\n"
         "Between Tc/T 1 and 0.909 (a) and 1.04 and 0.909 (b) the temperature derivatives are straight "
         "lines\n"
         "between the ends of the zone and not the slopes of the values, so that enthalpy, heat capacity "
         "and\n"
         "Joule-Thomson coefficient disagree there with the fugacities. The fit bends the curves so that "
         "little\n"
         "of it is left, most of all where the zone covers ambient temperatures. Columns: temperatures of "
         "the\n"
         "zone; mean of the end derivatives of a against the slope of a; the same for b, in percent of b "
         "per\n"
         "unit of T/Tc; largest error of the enthalpy at 0.3 to 3 Pc and at 0.3 Pc; mean / worst error of "
         "the\n"
         "heat capacity at 0.3 and 3 Pc; largest error of the Joule-Thomson coefficient at 0.3 Pc.\n\n"
         "| component | zone, C | a, % | b, % | H, J/mol | H at 0.3 Pc, J/mol | Cp, % | JT, K/bar |\n"
         "|---|---|---|---|---|---|---|---|\n";
  for (const Line& l : lines) {
    const double tc = l.component->tc;
    out << "| " << l.component->name << " | " << text("%.0f", tc / 1.04 - 273.15) << " to "
        << text("%.0f", tc * 1.1 - 273.15) << " | " << text("%.1f", l.zone.a) << " | "
        << text("%.1f", l.zone.b) << " | " << text("%.0f", l.zone.H) << " | " << text("%.0f", l.zone.H_gas)
        << " | " << pair_of(l.zone.CP, "%.1f") << " | " << text("%.3f", l.zone.JT) << " |\n";
  }
  out << '\n';
}

void write_notes(std::ostream& out) {
  out << "## Notes\n\n"
         "- The reference of a component is its equation of state (`data/reference_points.csv`), else "
         "published\n"
         "  correlations inside their range (`data/saturation_correlations.csv`), else a "
         "corresponding-states\n"
         "  relation. Where a vapour pressure relation ends below the critical point, the Wagner form "
         "through it\n"
         "  and the critical point carries on. Points below 0.5 Pa are left out.\n"
         "- Heat of vaporisation and vapour density are not fitted. With the right vapour pressure, the "
         "cubic\n"
         "  gives the vapour of a polar fluid too light, and above 0.9 Tc that of every fluid; the heat of\n"
         "  vaporisation is too large by as much.\n"
         "- Hydrogen, helium and nitrogen have tabulated constants for b above Tc/T 1.04. Those of helium "
         "are a\n"
         "  quarter above what its liquid near the critical point asks for; its vapour pressure is kept, "
         "its\n"
         "  liquid density is given up from 3.2 K upwards.\n"
         "- The two curves of b meet at Tc/T 1.04 with different slopes: b falls towards the join and, for "
         "a\n"
         "  dense gas, has to rise behind it. For methane (183 K) and nitrogen the fit keeps the jump small, "
         "or\n"
         "  bubble lines of natural gas would show a kink there. Methane pays with its density above 300 "
         "bar.\n"
         "- The correlations of glycols and alkanolamines disagree with each other and with the critical\n"
         "  constants by several percent; closer figures than those shown would not mean more.\n"
         "- Curves are stored in single precision; the figures are those of the stored constants.\n";
}

}  // namespace

void write_accuracy_report(const Bank& bank, const std::filesystem::path& data_dir,
                           const std::filesystem::path& golden_dir, const std::filesystem::path& report) {
  ReferenceTables tables;
  std::string message;
  if (!read_reference(data_dir.string(), tables, message)) throw BankError(message);
  const std::vector<Line> lines = all_lines(bank, tables);
  std::ofstream out(report);
  out << "# Accuracy of the component bank\n\n"
         "Written by `talix-bank check`. Every figure is computed by the library's own engine on the "
         "compiled\n"
         "bank and compared with the reference tables in `data/`.\n\n";
  write_summary(out, lines);
  write_saturation(out, lines);
  write_gases(out, lines);
  write_zones(out, lines);
  write_transport_report(out, bank, data_dir);
  write_phase_transport(out, bank, golden_dir);
  write_notes(out);
  if (!out) throw BankError("cannot write " + report.string());
}

}  // namespace talix::bank
