#include "bank/accuracy_transport_phases.h"

#include <array>
#include <map>
#include <sstream>
#include <vector>

#include "bank/accuracy_transport_figures.h"
#include "engine/codes.h"

namespace talix::bank {

using namespace phase_report;

namespace {

struct LiquidRoute {
  const char* group;
  const char* words;
  double viscosity, conductivity;  // asked for [%]; 0 where nothing is
};
constexpr auto kLiquidRoutes =
    std::to_array<LiquidRoute>({{"light hydrocarbon", "corresponding states", 6.0, 6.0},
                                {"branched light hydrocarbon", "corresponding states", 6.0, 6.0},
                                {"hydrogen liquid", "dilute gas", 0.0, 0.0},
                                {"fitted set", "set of its own", 3.0, 4.0}});

using Fluids = std::map<std::string, Group>;

std::map<std::string, Fluids> measure_liquids(const EntryBank& library, const SourceTable& table) {
  std::map<std::string, Fluids> routes;
  for (std::size_t row = 0; row < table.rows(); ++row) {
    const std::string& fluid = table.text(row, "fluid");
    const double expected = cell(table, row, "expected"), density = cell(table, row, "density_mol_L");
    EntryState state = pure_state(table, row, 1.0);
    const PropertyTable found = answer(library, state, flash_type::bubble_pressure, fluid);
    const bool viscosity = is_viscosity(table, row);
    const std::string where = at(state.T, 0.0);
    Group& g = routes[table.text(row, "group")][fluid];
    g.all.of(viscosity).add(percent(row_of(found, viscosity, kLiquid), expected), where);
    const double method = viscosity ? viscosity_at_density(true, state.T, state.P, density)
                                    : conductivity_at_density(true, state.T, state.P, density);
    g.method.of(viscosity).add(percent(method, expected), where);
    if (!viscosity) g.at_pressure.add(percent(liquid_conductivity_at(state.T, state.P), expected), where);
  }
  return routes;
}

// The means of one liquid that are beyond those asked for, and what the method and the pressure of 1 bar have in them.
void write_beyond(std::ostream& out, const LiquidRoute& route, const std::string& fluid, const Group& g,
                  bool by_method) {
  for (const bool viscosity : {true, false}) {
    const double aim = viscosity ? route.viscosity : route.conductivity;
    const Figures& all = viscosity ? g.all.viscosity : g.all.conductivity;
    const Figures& method = viscosity ? g.method.viscosity : g.method.conductivity;
    if (aim <= 0.0 || all.mean() <= aim) continue;
    out << "- " << fluid << (viscosity ? ", viscosity: " : ", conductivity: ") << all.mean_text() << " %";
    if (by_method) out << ", method alone " << method.mean_text() << " %";
    if (!viscosity)
      out << ", at the pressure of saturation instead of 1 bar " << g.at_pressure.mean_text() << " %";
    out << '\n';
  }
}

void write_liquids(std::ostream& out, const EntryBank& library, const SourceTable& table) {
  std::map<std::string, Fluids> routes = measure_liquids(library, table);
  out << "### Liquids at saturation\n\n"
         "0.5 to 0.9 of the critical temperature. The last column stands where corresponding states are the "
         "route.\n\n"
         "| liquid | route | viscosity | at | conductivity | at | asked for | method alone |\n"
         "|---|---|---|---|---|---|---|---|\n";
  std::ostringstream beyond;
  for (const LiquidRoute& route : kLiquidRoutes) {
    Group mean;
    for (const auto& [fluid, g] : routes[route.group]) {
      const bool by_method = std::string(route.words) == "corresponding states";
      out << "| " << fluid << " | " << route.words << " | " << g.all.viscosity.pair() << " | "
          << g.all.viscosity.where << " | " << g.all.conductivity.pair() << " | " << g.all.conductivity.where
          << " | "
          << (route.viscosity > 0.0 ? text("%.0f", route.viscosity) + ", " + text("%.0f", route.conductivity)
                                    : "-")
          << " | " << (by_method ? beside(g.method) : "-") << " |\n";
      write_beyond(beyond, route, fluid, g, by_method);
    }
  }
  const auto means = [&](const char* group, Pair Group::*which) {
    Pair sum;
    for (auto& [fluid, g] : routes[group])
      for (const bool viscosity : {true, false}) {
        sum.of(viscosity).sum += (g.*which).of(viscosity).sum;
        sum.of(viscosity).n += (g.*which).of(viscosity).n;
      }
    return beside(sum);
  };
  out << "\nMeans of viscosity and conductivity: straight chains of one to five carbons "
      << means("light hydrocarbon", &Group::all) << " (method alone "
      << means("light hydrocarbon", &Group::method)
      << ", expected\n5.2, 4.7 up to four carbons), branched ones "
      << means("branched light hydrocarbon", &Group::all)
      << " (method "
         "alone "
      << means("branched light hydrocarbon", &Group::method) << "), sets of their own "
      << means("fitted set", &Group::all) << ".\n\nBeyond what is asked for:\n\n"
      << (beyond.str().empty() ? "- none\n" : beyond.str())
      << "\nWhy:\n\n"
         "- Hydrocarbons of one to five carbons have no sets of their own: their class leads to "
         "corresponding "
         "states\n"
         "  whatever the bank holds. The shape factors know a branched chain by its acentric factor alone; "
         "with exact\n"
         "  densities and critical constants the method is as far off (last column).\n"
         "- The conductivity of a liquid is that at 1 bar, whatever the pressure. Where the equation of "
         "state "
         "has no liquid at\n"
         "  1 bar the density is that of a gas, and the conductivity falls to about that of the vapour: "
         "light "
         "hydrocarbons\n"
         "  above 0.91 to 0.94 of their critical temperature, and condensates rich in methane above some 90 "
         "bar. Below that\n"
         "  the liquid of 1 bar is thinner than the saturated one, which is what methane and ethane show "
         "against the method\n"
         "  alone.\n"
         "- Liquid hydrogen gets the viscosity of its dilute gas, and a conductivity made from it.\n"
         "- The factor for the pressure is applied to sets that are fitted at saturation: water near its "
         "critical point\n"
         "  comes out too viscous.\n\n";
}

constexpr double kTensionAim = 6.0;  // [%]

void write_tension(std::ostream& out, const EntryBank& library, const SourceTable& table) {
  std::map<std::string, Figures> fluids;
  for (std::size_t row = 0; row < table.rows(); ++row) {
    const std::string& fluid = table.text(row, "fluid");
    EntryState state = pure_state(table, row, 1.0);
    const PropertyTable found = answer(library, state, flash_type::bubble_pressure, fluid);
    fluids[fluid].add(percent(static_cast<double>(found(property::surface_tension, kLiquid)),
                              cell(table, row, "surface_tension_mN_m")),
                      at(state.T, 0.0));
  }
  int within = 0;
  for (const auto& [fluid, f] : fluids) within += std::fabs(f.largest) <= kTensionAim ? 1 : 0;
  out << "### Surface tension at saturation\n\n"
         "0.55 to 0.85 of the critical temperature, parachors with the densities of the library. The largest "
         "deviation of "
      << within << " of " << fluids.size() << " fluids\nis within " << text("%.0f", kTensionAim)
      << " %.\n\n"
         "| liquid | deviation | at |\n"
         "|---|---|---|\n";
  for (const auto& [fluid, f] : fluids)
    out << "| " << fluid << " | " << f.pair() << " | " << f.where << " |\n";
  out << '\n';
}

// The natural gas of `./dev run`.
EntryState natural_gas(double T, double P) {
  return {{15, 4, 20, 21, 22, 24, 23, 26, 25, 28},
          {0.010, 0.020, 0.760, 0.100, 0.060, 0.012, 0.018, 0.008, 0.007, 0.005},
          T,
          P};
}

// Deviation of the conductivity of methane [%] at T and P, which must be a state of transport_gas.csv.
double methane_conductivity(const EntryBank& library, const SourceTable& gases, double T, double P) {
  for (std::size_t row = 0; row < gases.rows(); ++row) {
    if (gases.text(row, "fluid") != "methane" || is_viscosity(gases, row)) continue;
    if (cell(gases, row, "T_K") != T || cell(gases, row, "P_bar") != P) continue;
    EntryState state = pure_state(gases, row, P);
    const PropertyTable found = answer(library, state, flash_type::isothermal, "methane");
    return percent(row_of(found, false, kVapour), cell(gases, row, "expected"));
  }
  throw BankError("no reference of methane at " + at(T, P));
}

void write_mixtures(std::ostream& out, const EntryBank& library, const SourceTable& table,
                    const SourceTable& gases) {
  out << "### Natural gas\n\n"
         "The ten-component gas of `./dev run`. No measurement of a gas near this composition and state was "
         "at hand. A\n"
         "correlation is one made from measurements of natural gases "
         "or reservoir\n"
         "fluids; an estimate goes by a mixing rule on reference values of the pure fluids.\n\n"
         "| phase | state | property | library | reference | deviation, % | kind | source |\n"
         "|---|---|---|---|---|---|---|---|\n";
  for (std::size_t row = 0; row < table.rows(); ++row) {
    EntryState state = natural_gas(cell(table, row, "T_K"), cell(table, row, "P_bar"));
    const PropertyTable found = answer(library, state, flash_type::isothermal, "the natural gas");
    const bool viscosity = is_viscosity(table, row);
    const std::string& phase = table.text(row, "phase");
    const double value = row_of(found, viscosity, phase == "vapour" ? kVapour : kLiquid);
    const double expected = cell(table, row, "expected");
    out << "| " << phase << " | " << at(state.T, state.P) << " | "
        << (viscosity ? "viscosity, mPa s" : "conductivity, W/(m K)") << " | " << text("%.4g", value) << " | "
        << text("%.4g", expected) << " | " << text("%+.1f", percent(value, expected)) << " | "
        << table.text(row, "basis") << " | " << table.text(row, "source") << " |\n";
  }
  constexpr double kT = 273.15, kP = 60.0;
  out << "\n- The conductivity of the vapour is too high by what the method gives methane alone at the same "
         "state: "
      << text("%+.1f", methane_conductivity(library, gases, kT, kP))
      << " %\n"
         "  against its reference correlation (Friend, Ely and Ingham), which no mixing rule can mend. "
         "Within "
         "5 % of either of the\n"
         "  two references is out of reach of the method.\n\n";
}

}  // namespace

void write_phase_transport(std::ostream& out, const Bank& bank, const std::filesystem::path& golden_dir) {
  const EntryBank library(bank);
  out << "## Viscosity, conductivity and surface tension of phases\n\n"
         "Rows 13 to 15 of the entry call against the values of `tests/golden/transport_gas.csv`, "
         "`transport_liquid.csv`,\n"
         "`surface_tension.csv` and `transport_mixture.csv`, which carry their sources: reference "
         "correlations, check values\n"
         "printed with them, and handbooks. Mean of the absolute deviations / largest deviation in percent, "
         "and where it is; pairs\n"
         "without a slash are the means of viscosity and conductivity.\n\n";
  const SourceTable gases = SourceTable::read(golden_dir / "transport_gas.csv");
  write_gases(out, library, gases);
  write_liquids(out, library, SourceTable::read(golden_dir / "transport_liquid.csv"));
  write_tension(out, library, SourceTable::read(golden_dir / "surface_tension.csv"));
  write_mixtures(out, library, SourceTable::read(golden_dir / "transport_mixture.csv"), gases);
}

}  // namespace talix::bank
