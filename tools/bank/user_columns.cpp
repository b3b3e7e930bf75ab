#include "bank/user_columns.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace talix::bank {

namespace {

constexpr UserKind kText = UserKind::text;
constexpr UserKind kNumber = UserKind::number;
constexpr UserKind kPoints = UserKind::points;

// name, kind, unit, low, high, column of the source, meaning
constexpr auto kColumns = std::to_array<UserColumn>({
    {"number", kNumber, "", 2, 1246, "", "number in the bank"},
    {"code", kText, "", 0, 0, "", "four-character code"},
    {"cas", kText, "", 0, 0, "", "CAS number"},
    {"name", kText, "", 0, 0, "", "full name"},
    {"short_name", kText, "", 0, 0, "", "name within eight characters"},
    {"synonyms", kText, "", 0, 0, "", "other names, parted by ;"},
    {"formula", kText, "", 0, 0, "", "atoms of a molecule"},
    {"family", kText, "", 0, 0, "", "chemical family"},
    {"mw", kNumber, "g/mol", 1, 1500, "", "molar mass"},
    {"tc_K", kNumber, "K", 3, 4000, "src_tc", "critical temperature"},
    {"pc_Pa", kNumber, "Pa", 1.02e5, 2e8, "src_pc", "critical pressure"},
    {"vc_m3_per_mol", kNumber, "m3/mol", 2e-5, 1e-2, "src_vc", "critical volume"},
    {"omega", kNumber, "-", -0.5, 3, "src_omega", "acentric factor"},
    {"tb_K", kNumber, "K", 1, 2000, "src_tb", "boiling point at 101325 Pa"},
    {"tm_K", kNumber, "K", 0.5, 1500, "src_tm", "melting point"},
    {"dipole_D", kNumber, "debye", 0, 20, "src_dipole", "dipole moment"},
    {"hf_gas_J_per_mol", kNumber, "J/mol", -1e7, 1e7, "src_hf", "heat of formation"},
    {"gf_gas_J_per_mol", kNumber, "J/mol", -1e7, 1e7, "src_gf", "Gibbs energy of formation"},
    {"hcomb_net_J_per_mol", kNumber, "J/mol", 1e4, 1e8, "src_hcomb", "heat of combustion, water as gas"},
    {"hcomb_gross_J_per_mol", kNumber, "J/mol", 1e4, 1e8, "src_hcomb", "heat of combustion, water as liquid"},
    {"hfus_J_per_mol", kNumber, "J/mol", 20, 5e5, "src_hfus", "heat of fusion"},
    {"hvap_tb_J_per_mol", kNumber, "J/mol", 500, 5e5, "src_hvap",
     "heat of vaporisation at the boiling point"},
    {"vliq_25C_m3_per_mol", kNumber, "m3/mol", 1e-5, 5e-3, "src_vliq", "liquid volume at 298.15 K"},
    {"sg_60F", kNumber, "-", 0.05, 15, "src_sg", "liquid density at 60 F over 999.016 kg/m3"},
    {"solubility_param_Pa05", kNumber, "Pa^1/2", 3000, 1e5, "src_solpar", "solubility parameter"},
    {"parachor", kNumber, "(mN/m)^1/4 cm3/mol", 5, 3000, "src_parachor", "parachor"},
    {"unifac_original", kText, "", 0, 0, "src_unifac", "groups, subgroup:count;..."},
    {"psat_points_K_Pa", kPoints, "Pa", 1e-3, 2e8, "", "vapour pressure"},
    {"psat_antoine_K_Pa", UserKind::constants, "", 0, 0, "", "log10 P = A - B/(T + C)"},
    {"rho_liq_points_K_kg_per_m3", kPoints, "kg/m3", 40, 15000, "", "density of the saturated liquid"},
    {"cp_ig_points_K_J_per_molK", kPoints, "J/(mol K)", 20, 5000, "", "heat capacity of the ideal gas"},
    {"cp_ig_poly_K_J_per_molK", UserKind::constants, "", 0, 0, "", "the same as c1 + c2 T + c3 T^2 + ..."},
    {"hvap_points_K_J_per_mol", kPoints, "J/mol", 500, 5e5, "", "heat of vaporisation"},
    {"cp_liq_points_K_J_per_molK", kPoints, "J/(mol K)", 20, 10000, "", "heat capacity of the liquid"},
    {"mu_liq_points_K_Pa_s", kPoints, "Pa s", 1e-6, 100, "", "viscosity of the liquid"},
    {"k_liq_points_K_W_per_mK", kPoints, "W/(m K)", 0.01, 5, "", "thermal conductivity of the liquid"},
    {"sigma_points_K_N_per_m", kPoints, "N/m", 1e-5, 0.6, "", "surface tension"},
    {"kij", kText, "", 0, 0, "", "interaction parameters, component:value;..."},
    {"source", kText, "", 0, 0, "", "where the figures come from"},
});

// Another unit of a quantity: a figure in it times the factor is in that of the table.
struct OtherUnit {
  std::string_view unit;  // of the table
  std::string_view other;
  double factor;
};
constexpr auto kOtherUnits = std::to_array<OtherUnit>({{"Pa", "bar", 1e5},
                                                       {"Pa", "MPa", 1e6},
                                                       {"Pa", "kPa", 1e3},
                                                       {"m3/mol", "cm3/mol", 1e-6},
                                                       {"m3/mol", "m3/kmol", 1e-3},
                                                       {"J/mol", "kJ/mol", 1e3},
                                                       {"J/(mol K)", "kJ/(mol K)", 1e3},
                                                       {"kg/m3", "g/cm3", 1e3},
                                                       {"-", "kg/m3", 1.0 / 999.016},
                                                       {"Pa^1/2", "MPa^1/2", 1e3},
                                                       {"Pa s", "mPa s", 1e-3},
                                                       {"W/(m K)", "mW/(m K)", 1e-3},
                                                       {"N/m", "mN/m", 1e-3},
                                                       {"g/mol", "kg/mol", 1e3}});

// First part of a column name, without its unit.
std::string_view stem(std::string_view name) { return name.substr(0, name.find('_')); }

}  // namespace

std::span<const UserColumn> user_columns() { return kColumns; }

const UserColumn* user_column(std::string_view name) {
  const auto found =
      std::find_if(kColumns.begin(), kColumns.end(), [&](const UserColumn& c) { return c.name == name; });
  return found == kColumns.end() ? nullptr : &*found;
}

std::string advice_on_column(std::string_view name) {
  std::string alike;
  for (const UserColumn& column : kColumns)
    if (stem(column.name) == stem(name)) alike += (alike.empty() ? "" : " or ") + std::string(column.name);
  if (alike.empty()) return "take it out, or see docs/data.md for the names";
  return "write " + alike + ", with the figures in the unit of the name";
}

std::string advice_on_unit(const UserColumn& column, double value) {
  for (const OtherUnit& o : kOtherUnits) {
    const double converted = value * o.factor;
    if (o.unit != column.unit || converted < column.low || converted > column.high) continue;
    std::array<char, 120> text{};
    std::snprintf(text.data(), text.size(), "; if it is in %.*s, write %.7g",
                  static_cast<int>(o.other.size()), o.other.data(), converted);
    return text.data();
  }
  return {};
}

}  // namespace talix::bank
