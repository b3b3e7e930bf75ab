#include "bank/transport_tables.h"

#include <cmath>

#include "bank/fit_csv.h"
#include "bank/fit_rows.h"

namespace talix::bank {

namespace {

constexpr double kTopViscosity = 0.985;    // reduced temperatures up to which published values are taken
constexpr double kTopConductivity = 0.96;  // the rise at the critical point is no matter of a polynomial
constexpr double kTopTension = 0.97;
constexpr double kTopSaturation = 0.985;
constexpr double kTopHeatCapacity = 0.92;  // beyond, it rises without end
constexpr double kFiftyDegrees = 323.15;   // [K]

std::string deviations(const Deviation& d) {
  if (d.n == 0) return ",";
  return cell_of(d.mean, "%.3f") + "," + cell_of(d.worst, "%.3f");
}

// Modified Eucken factor of a vapour; the plain one where a molecule has no inner motion.
FittedSet vapour_conductivity(const FitComponent& c) {
  FittedSet set{.name = "TCV", .count = 2};
  set.c = c.monatomic ? SetValues{0.0, 2.5} : SetValues{1.77, 1.32};
  for (double& v : set.c) v = rounded_to_32_bits(v);
  set.source = "Poling, Prausnitz, O'Connell, 5th ed. 2001, ch. 10";
  return set;
}

std::optional<FittedSet> viscosity_at_50(const FitComponent& c, const FittedSet& vil) {
  if (!(kFiftyDegrees >= vil.tmin && kFiftyDegrees <= vil.tmax && kFiftyDegrees < c.tc)) return std::nullopt;
  FittedSet set{.name = "LVIS50", .count = 1, .source = vil.source};
  set.c[0] = rounded_to_32_bits(vil_viscosity(vil.flag, vil.c, kFiftyDegrees));
  return set;
}

}  // namespace

const char* const kTransportHeader =
    "number,code,set,flag,c1,c2,c3,c4,c5,c6,c7,c8,c9,tmin_K,tmax_K,mean_pct,max_pct,mean2_pct,max2_pct,"
    "source";
const char* const kTransportComment =
    "Saturation and transport sets of the records, one row a set; the forms stand in "
    "tools/bank/transport_forms.h.\n"
    "# Deviations in percent of the source from tmin to tmax; mean2, max2: those of the conductivity by "
    "PARL2.";

std::vector<std::string> transport_rows(const FitComponent& c, const std::vector<FittedSet>& sets) {
  std::vector<std::string> rows;
  for (const FittedSet& set : sets) {
    std::string row = std::to_string(c.number) + "," + quoted_cell(c.code) + "," + set.name + "," +
                      std::to_string(set.flag);
    for (std::size_t k = 0; k < set.c.size(); ++k)
      row += static_cast<int>(k) < set.count ? "," + cell_of(set.c[k]) : ",";
    row += set.tmax > 0.0 ? "," + cell_of(set.tmin, "%.6g") + "," + cell_of(set.tmax, "%.6g") : ",,";
    row += "," + deviations(set.deviation) + ",";
    row += deviations(set.second) + "," + quoted_cell(set.source);
    rows.push_back(row);
  }
  return rows;
}

std::vector<FittedSet> fit_transport(const ReferenceTables& tables, const FitComponent& c,
                                     const Curves& curves) {
  std::vector<FittedSet> out;
  const Reference ref = reference_of(tables, c);
  const SourceLine viscosity = source_line(tables, c, "mu_liq_sat", kTopViscosity);
  const SourceLine conductivity = source_line(tables, c, "k_liq_sat", kTopConductivity);
  const SourceLine tension = source_line(tables, c, "sigma", kTopTension);
  const SourceLine density_line = saturation_line(tables, c, ref, "rho_liq_sat", kTopSaturation);
  const auto add = [&](const std::optional<FittedSet>& set) {
    if (set) out.push_back(*set);
  };
  const auto pressure = fit_frost_kalkwarf(c, ref);
  add(pressure);
  add(fit_extended_antoine(c, ref));
  const std::vector<FittedSet> density = fit_liquid_density(c, density_line);
  out.insert(out.end(), density.begin(), density.end());
  add(fit_heat_of_vaporisation(c, saturation_line(tables, c, ref, "hvap", kTopSaturation)));
  add(fit_liquid_heat_capacity(c, source_line(tables, c, "cp_liq", kTopHeatCapacity)));
  const auto vil = fit_liquid_viscosity(c, viscosity);
  add(vil);
  if (vil) add(viscosity_at_50(c, *vil));
  if (pressure && !density.empty()) add(fit_pressure_viscosity(c, viscosity, density, *pressure));
  add(fit_liquid_conductivity(c, conductivity));
  out.push_back(vapour_conductivity(c));
  add(fit_surface_tension(c, tension));
  if (pressure) {
    add(fit_parachor(c, tension, curves, *pressure, density_line.tmax));
    add(fit_liquid_states(c, viscosity, conductivity, *pressure));
  }
  return out;
}

bool read_curves(const std::string& data_dir, const ReferenceTables& tables, std::map<int, Curves>& curves) {
  CsvTable table;
  if (!read_csv(data_dir + "/curves.csv", table)) return false;
  for (std::size_t row = 0; row < table.rows.size(); ++row) {
    Curves c;
    c.kind = quantum_of(table.text(row, "code").c_str());
    for (int k = 1; k <= 15; ++k)
      c.p[static_cast<std::size_t>(k - 1)] = table.number(row, "p" + std::to_string(k), 0.0);
    c.prepare();
    curves[static_cast<int>(table.number(row, "number", 0.0))] = c;
  }
  for (const FitComponent& c : tables.components) {
    if (curves.contains(c.number)) continue;
    Curves general;
    general.kind = quantum_of(c.code.c_str());
    general.p = generalised_constants(c.omega);
    general.prepare();
    curves[c.number] = general;
  }
  return true;
}

}  // namespace talix::bank
