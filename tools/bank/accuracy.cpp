#include "bank/accuracy.h"

#include <fstream>

#include "bank/accuracy_exceptions.h"
#include "bank/accuracy_goals.h"
#include "bank/accuracy_lines.h"
#include "bank/accuracy_transport.h"
#include "bank/accuracy_transport_phases.h"
#include "bank/check.h"
#include "bank/check_exceptions.h"
#include "bank/pair_accuracy.h"
#include "bank/tables.h"

namespace talix::bank {

namespace {

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
  return n > 0 ? figure("%.2f", mean / n) + " / " + figure("%.1f", worst / n) + " (" + std::to_string(n) + ")"
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
    out << "| " << l.component->name << " | " << figure("%.0f", tc / 1.04 - 273.15) << " to "
        << figure("%.0f", tc * 1.1 - 273.15) << " | " << figure("%.1f", l.zone.a) << " | "
        << figure("%.1f", l.zone.b) << " | " << figure("%.0f", l.zone.H) << " | "
        << figure("%.0f", l.zone.H_gas) << " | " << pair_of(l.zone.CP, "%.1f") << " | "
        << figure("%.3f", l.zone.JT) << " |\n";
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
         "- Heat of vaporisation counts little in the fits of fluids with a reference equation, and not at "
         "all elsewhere; "
         "vapour\n"
         "  density is not fitted. With the right vapour pressure, the cubic gives the vapour of a polar "
         "fluid too light, "
         "and\n"
         "  above 0.9 Tc that of every fluid; the heat of vaporisation is too large by as much.\n"
         "- Methane, ethane, oxygen, argon, carbon monoxide, carbon dioxide and hydrogen sulphide are fitted "
         "with more "
         "weight on\n"
         "  the gas up to 100 bar, next to the critical temperature as well; carbon dioxide and methane pay "
         "with their "
         "liquid\n"
         "  density.\n"
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

std::vector<std::string> write_accuracy_report(const Bank& bank, const std::filesystem::path& data_dir,
                                               const std::filesystem::path& golden_dir,
                                               const std::filesystem::path& report) {
  ReferenceTables tables;
  std::string message;
  if (!read_reference(data_dir.string(), tables, message)) throw BankError(message);
  const std::vector<Line> lines = accuracy_lines(bank, tables);
  std::ofstream out(report);
  out << "# Accuracy of the component bank\n\n"
         "Written by `talix-bank check`. Every figure is computed by the library's own engine on the "
         "compiled\n"
         "bank and compared with the reference tables in `data/`.\n\n";
  const std::map<int, std::string> notes = fit_notes(data_dir);
  std::vector<Finding> findings = find_exceptions(lines, notes);
  ListedExceptions listed(data_dir);
  for (Finding& f : findings) {
    if (f.reason.empty()) f.reason = listed.reason(f.component->number, f.what).value_or("");
  }
  const std::vector<std::string> record_faults = find_faults(bank);
  write_goals(out, lines);
  write_exceptions(out, findings, lines, notes);
  write_listed(out, record_faults, listed, lines);
  write_summary(out, lines);
  write_saturation(out, lines);
  write_gases(out, lines);
  write_zones(out, lines);
  write_pair_report(out, bank, data_dir);
  write_transport_report(out, bank, data_dir);
  write_phase_transport(out, bank, golden_dir);
  write_notes(out);
  if (!out) throw BankError("cannot write " + report.string());
  std::vector<std::string> faults;
  for (const Finding& f : findings) {
    if (f.reason.empty())
      faults.push_back("purezan.out, record " + std::to_string(f.component->number) + " (" +
                       f.component->name + "): " + f.what);
  }
  for (const std::string& row : listed.unused()) faults.push_back(row);
  return faults;
}

}  // namespace talix::bank
