#include "bank/accuracy_transport.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "bank/fit_csv.h"
#include "bank/tables.h"

namespace talix::bank {

namespace {

struct Figures {
  double mean = 0.0, worst = 0.0;
  std::optional<double> mean2, worst2;
  double tmin = 0.0, tmax = 0.0;
};

using SetsOfComponent = std::map<std::string, Figures>;

// Property, set, largest deviation that is asked for [%]; 0 where none is.
struct Property {
  const char* words;
  const char* set;
  double goal;
};
constexpr auto kProperties =
    std::to_array<Property>({{"saturated liquid density", "DLIP", 0.5},
                             {"vapour pressure, Frost and Kalkwarf", "PSAT", 0.0},
                             {"heat of vaporisation", "HVAPCF", 1.0},
                             {"liquid viscosity", "VIL", 2.0},
                             {"liquid viscosity from density and vapour pressure", "SS", 0.0},
                             {"liquid conductivity", "TCL", 2.0},
                             {"surface tension, power form", "SURT", 0.0},
                             {"surface tension, parachor", "PACHOR", 6.0},
                             {"viscosity by corresponding states", "PARL2", 0.0}});

std::string text(const char* format, double value) {
  char out[40];
  std::snprintf(out, sizeof out, format, value);
  return out;
}

std::string name_of(const PureRecord& record) {
  const CellField& field = pure_field("CIUPAC");
  const std::string name = record.text(field.cell, field.cells);
  return name.substr(0, name.find_last_not_of(' ') + 1);
}

// The first coefficient in the record must be that of the table.
void confirm(const PureRecord& record, const std::string& set, double first) {
  const double cell = static_cast<double>(record.real(pure_field(set == "SS" ? "SS 1-4" : set).cell));
  if (std::fabs(cell - first) <= 1e-6 * std::fabs(first)) return;
  throw BankError("the set " + set + " of " + name_of(record) +
                  " is not that of transport.csv: build the bank again");
}

std::map<int, SetsOfComponent> read_figures(const Bank& bank, const CsvTable& table) {
  std::map<int, SetsOfComponent> figures;
  for (std::size_t row = 0; row < table.rows.size(); ++row) {
    const int number = static_cast<int>(table.number(row, "number", 0.0));
    if (number < 1 || number > static_cast<int>(bank.pure.size())) continue;
    const std::string& set = table.text(row, "set");
    confirm(bank.pure.at(static_cast<std::size_t>(number - 1)), set, table.number(row, "c1", 0.0));
    if (table.text(row, "mean_pct").empty()) continue;
    Figures f;
    f.mean = table.number(row, "mean_pct", 0.0);
    f.worst = table.number(row, "max_pct", 0.0);
    if (!table.text(row, "mean2_pct").empty()) {
      f.mean2 = table.number(row, "mean2_pct", 0.0);
      f.worst2 = table.number(row, "max2_pct", 0.0);
    }
    f.tmin = table.number(row, "tmin_K", 0.0);
    f.tmax = table.number(row, "tmax_K", 0.0);
    figures[number][set] = f;
  }
  return figures;
}

// Names of the components that satisfy a condition, or "none".
template <class Condition>
std::string names(const Bank& bank, const std::map<int, SetsOfComponent>& all, Condition condition) {
  std::string list;
  for (std::size_t i = 1; i < bank.pure.size(); ++i) {
    if (is_unused(bank.pure[i])) continue;
    const auto at = all.find(static_cast<int>(i) + 1);
    if (at == all.end() || !condition(at->second)) continue;
    list += (list.empty() ? "" : ", ") + name_of(bank.pure[i]);
  }
  return list.empty() ? "none" : list;
}

void write_means(std::ostream& out, const Bank& bank, const std::map<int, SetsOfComponent>& all) {
  out << "| property | set | components | mean | mean of the worst | asked for | beyond that |\n"
         "|---|---|---|---|---|---|---|\n";
  for (const Property& p : kProperties) {
    double mean = 0.0, worst = 0.0;
    int n = 0;
    for (const auto& [number, sets] : all) {
      const auto at = sets.find(p.set);
      if (at == sets.end()) continue;
      mean += at->second.mean;
      worst += at->second.worst;
      ++n;
    }
    if (n == 0) continue;
    const std::string beyond = p.goal > 0.0
                                   ? names(bank, all,
                                           [&](const SetsOfComponent& sets) {
                                             const auto at = sets.find(p.set);
                                             return at != sets.end() && at->second.worst > p.goal + 0.05;
                                           })
                                   : "";
    out << "| " << p.words << " | `" << p.set << "` | " << n << " | " << text("%.2f", mean / n) << " | "
        << text("%.1f", worst / n) << " | " << (p.goal > 0.0 ? text("%.1f", p.goal) : "") << " | " << beyond
        << " |\n";
  }
  out << "\nAbsent sets, since nothing is published or, for `SS` and `PARL2`, since the form misses it by "
         "more than 8 and 10 %:\n\n";
  for (const Property& p : kProperties) {
    const std::string absent =
        names(bank, all, [&](const SetsOfComponent& sets) { return !sets.contains(p.set); });
    if (absent != "none") out << "- " << p.words << " (`" << p.set << "`): " << absent << '\n';
  }
  out << '\n';
}

void write_components(std::ostream& out, const Bank& bank, const std::map<int, SetsOfComponent>& all) {
  out << "| component | density | vapour pressure | heat of vaporisation | viscosity | from, to C | whole "
         "range | "
         "conductivity | surface tension, power | parachor | `SS` | `PARL2` viscosity, conductivity |\n"
         "|---|---|---|---|---|---|---|---|---|---|---|---|\n";
  for (const auto& [number, sets] : all) {
    const auto figures = [&sets = sets](const char* set, bool second) -> std::string {
      const auto at = sets.find(set);
      if (at == sets.end()) return "-";
      if (second)
        return at->second.mean2 ? text("%.1f", *at->second.mean2) + " / " + text("%.1f", *at->second.worst2)
                                : "-";
      return text("%.1f", at->second.mean) + " / " + text("%.1f", at->second.worst);
    };
    const auto vil = sets.find("VIL");
    const std::string range = vil == sets.end() ? "-"
                                                : text("%.0f", vil->second.tmin - 273.15) + ", " +
                                                      text("%.0f", vil->second.tmax - 273.15);
    out << "| " << name_of(bank.pure.at(static_cast<std::size_t>(number - 1))) << " | "
        << figures("DLIP", false) << " | " << figures("PSAT", false) << " | " << figures("HVAPCF", false)
        << " | " << figures("VIL", false) << " | " << range << " | " << figures("VIL", true) << " | "
        << figures("TCL", false) << " | " << figures("SURT", false) << " | " << figures("PACHOR", false)
        << " | " << figures("SS", false) << " | "
        << (sets.contains("PARL2") ? figures("PARL2", false) + ", " + figures("PARL2", true) : "-") << " |\n";
  }
  out << '\n';
}

}  // namespace

void write_transport_report(std::ostream& out, const Bank& bank, const std::filesystem::path& data_dir) {
  CsvTable table;
  if (!read_csv((data_dir / "transport.csv").string(), table)) return;
  const std::map<int, SetsOfComponent> all = read_figures(bank, table);
  out << "## Saturation and transport sets\n\n"
         "Fits of single properties to published values along the saturation line (`data/transport.csv`, "
         "with the\n"
         "sources); mean / worst deviation in percent over the range of the fit. That range is the one of "
         "the source\n"
         "where the form can follow it; otherwise its ends are given up, at low temperature where a liquid "
         "is nearly a\n"
         "glass and close to the critical point, until the deviation asked for is met. The parachor goes "
         "with the\n"
         "saturated densities of the cubic, 0.40 to 0.85 of the critical temperature.\n\n";
  write_means(out, bank, all);
  write_components(out, bank, all);
}

}  // namespace talix::bank
