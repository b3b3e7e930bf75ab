#include "bank/user_component.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <sstream>

#include "bank/fit_curves.h"
#include "bank/fit_rows.h"
#include "bank/user_columns.h"
#include "bank/user_estimates.h"

namespace talix::bank {

namespace {

constexpr double kAtmosphere = 101325.0;  // [Pa]
constexpr double kRoom = 298.15;          // [K]
constexpr double kSixtyF = 288.706;       // [K]
constexpr double kWater60F = 999.016;     // [kg/m3]

struct Family {
  std::string_view word;
  int number;
};
constexpr auto kFamilies = std::to_array<Family>(
    {{"hydrocarbon", 20}, {"paraffin", 20},    {"isoparaffin", 20}, {"naphthene", 20}, {"olefin", 20},
     {"diolefin", 20},    {"acetylene", 20},   {"aromatic", 20},    {"water", 1},      {"alcohol", 2},
     {"glycol", 3},       {"glycol ether", 4}, {"amine", 5},        {"inorganic", 6},  {"noble", 6},
     {"sulphur", 7},      {"acid", 8},         {"aldehyde", 8},     {"ester", 8},      {"ether", 8},
     {"ketone", 8},       {"oxygenate", 8},    {"halogen", 9},      {"nitrile", 10},   {"silicon", 10},
     {"other", 10}});

struct AtomMass {
  std::string_view symbol;
  double mass;  // [g/mol]
};
constexpr auto kAtomMasses = std::to_array<AtomMass>(
    {{"H", 1.00794}, {"D", 2.014102},  {"B", 10.811},    {"C", 12.0107},  {"N", 14.0067},
     {"O", 15.9994}, {"F", 18.998403}, {"Na", 22.98977}, {"Si", 28.0855}, {"P", 30.973762},
     {"S", 32.065},  {"Cl", 35.453},   {"Ge", 72.64},    {"As", 74.9216}, {"Se", 78.96},
     {"Br", 79.904}, {"Sn", 118.71},   {"I", 126.90447}, {"Hg", 200.59},  {"Pb", 207.2}});

// Molar mass [g/mol], 0 where an element is not in the list.
double mass_of(const common::Atoms& atoms) {
  double mass = 0;
  for (const auto& [symbol, count] : atoms) {
    const auto at = std::find_if(kAtomMasses.begin(), kAtomMasses.end(),
                                 [&, &name = symbol](const AtomMass& a) { return a.symbol == name; });
    if (at == kAtomMasses.end()) return 0;
    mass += count * at->mass;
  }
  return mass;
}

// Atom counts as the columns of the table have them.
void spread_atoms(UserComponent& c) {
  std::string others;
  for (const char* symbol : {"C", "H", "N", "O", "S", "F", "Cl", "Br", "I"}) c.cells[symbol] = "0";
  for (const auto& [symbol, count] : c.atoms) {
    const std::string name = symbol == "D" ? "H" : symbol;
    if (const auto cell = c.cells.find(name);
        cell != c.cells.end() && name.size() < 3 && !cell->second.empty() &&
        std::isdigit(static_cast<unsigned char>(cell->second[0])) != 0) {
      cell->second = std::to_string(std::atoi(cell->second.c_str()) + count);
    } else {
      others += (others.empty() ? "" : ";") + name + ":" + std::to_string(count);
    }
  }
  c.cells["other_atoms"] = others;
  if (std::count(others.begin(), others.end(), ':') > 3)
    c.row.fault("formula", "a record holds at most three elements beside C, H, N, O, S, F, Cl, Br and I");
}

void take_identity(UserComponent& c) {
  const UserRow& row = c.row;
  for (const char* column : {"name", "synonyms", "short_name", "formula"})
    if (row.given(column)) c.cells[column] = row.text(column);
  c.cells["number"] = std::to_string(c.number);
  c.cells["code"] = c.code;
  if (c.added()) {
    c.cells["cas"] =
        row.given("cas") ? row.text("cas") : "USER-" + std::to_string(10000 + c.number).substr(1);
    if (!row.given("short_name")) c.cells["short_name"] = c.cells["name"].substr(0, 8);
  }
  if (row.given("name")) c.cells["name28"] = c.cells["name"].substr(0, 28);
  const std::string& brief = c.cells["short_name"];
  const char* const column = row.given("short_name") ? "short_name" : "name";
  if (brief.size() > 8) row.fault("short_name", "write at most 8 characters");
  for (const char* light : {"H2", "HE", "N2"}) {
    if (c.added() && brief.starts_with(light))
      row.fault(column,
                std::string("a short name must not begin with ") + light + "; give another in short_name");
  }
  if (const auto atoms = common::atoms_of(c.cells["formula"])) {
    c.atoms = *atoms;
    if (row.given("formula")) spread_atoms(c);
  } else if (row.given("formula")) {
    row.fault("formula", "not a formula; write the symbols of the elements with their counts, as C10H16");
  }
  if (row.given("family")) {
    const auto at = std::find_if(kFamilies.begin(), kFamilies.end(),
                                 [&](const Family& f) { return f.word == row.text("family"); });
    if (at == kFamilies.end()) {
      std::string words;
      for (const Family& f : kFamilies) words += (words.empty() ? "" : ", ") + std::string(f.word);
      row.fault("family", "unknown; write one of " + words);
    } else {
      c.cells["family"] = at->word;
      c.cells["isofam"] = std::to_string(at->number);
    }
  } else if (c.added()) {
    const bool plain = std::all_of(c.atoms.begin(), c.atoms.end(), [](const auto& a) {
      return a.first == "C" || a.first == "H" || a.first == "D";
    });
    c.cells["family"] = plain ? "hydrocarbon" : "other";
    c.cells["isofam"] = plain ? "20" : "10";
  }
}

bool sound_groups(const std::string& text) {
  constexpr int kMost = 8, kHighest = 160;
  std::istringstream in(text);
  int groups = 0;
  for (std::string item; std::getline(in, item, ';'); ++groups) {
    int subgroup = 0, count = 0;
    char colon = 0;
    std::istringstream fields(item);
    if (!(fields >> subgroup >> colon >> count) || !(fields >> std::ws).eof() || colon != ':' ||
        subgroup < 1 || subgroup > kHighest || count < 1)
      return false;
  }
  return groups > 0 && groups <= kMost;
}

void take_figures(UserComponent& c) {
  for (const UserColumn& column : user_columns()) {
    if (c.row.given(column.name)) c.given.emplace(column.name);
    if (column.kind != UserKind::number || column.name == "number") continue;
    if (const auto value = c.row.number(column.name)) {
      c.put(column.name, *value);
      if (!column.source.empty()) c.cells[std::string(column.source)] = "USER";
    }
  }
  if (c.row.given("unifac_original")) {
    c.cells["unifac_original"] = c.row.text("unifac_original");
    c.cells["src_unifac"] = "USER";
    if (!sound_groups(c.cells["unifac_original"]))
      c.row.fault("unifac_original",
                  "write up to eight of subgroup:count, parted by ;, the subgroup from 1 to 160");
  }
  const double mass = mass_of(c.atoms);
  constexpr double kMostOff = 0.005;
  if (c.value("mw") == 0.0 && mass > 0.0) c.put("mw", mass);
  if ((c.given.contains("mw") || c.given.contains("formula")) && mass > 0.0 && c.value("mw") > 0.0 &&
      std::fabs(c.value("mw") / mass - 1.0) > kMostOff)
    c.row.fault(c.given.contains("mw") ? "mw" : "formula",
                "formula " + c.cells["formula"] + " has a molar mass of " + shown(mass) + " g/mol, not " +
                    shown(c.value("mw")) + "; one of both is wrong");
}

}  // namespace

double UserComponent::value(std::string_view column) const {
  const auto found = cells.find(column);
  return found == cells.end() || found->second.empty() ? 0.0 : std::strtod(found->second.c_str(), nullptr);
}

void UserComponent::put(std::string_view column, double figure) {
  cells[std::string(column)] = cell_of(figure);
}

void UserComponent::estimate(std::string_view column, double figure, std::string_view word) {
  put(column, figure);
  estimated.emplace_back(column);
  if (const UserColumn* const meant = user_column(column); meant != nullptr && !meant->source.empty())
    cells[std::string(meant->source)] = "EST:" + std::string(word);
}

namespace {

// The relations that rest on points, for a component whose constants are all there; estimates of single figures.
void estimate_figures(UserComponent& c, const BankSources& sources) {
  const UserCritical at{c.value("tc_K"), c.value("pc_Pa")};
  const double omega = c.value("omega"), mw = c.value("mw");
  if (!c.relations.contains("psat")) c.relations["psat"] = pressure_through(at, omega, {});
  const Correlation& pressure = c.relations["psat"];
  if (c.value("tb_K") == 0.0) c.estimate("tb_K", boiling_temperature(at, pressure, kAtmosphere), "psat");
  if (c.value("vc_m3_per_mol") == 0.0)
    c.estimate("vc_m3_per_mol", (0.2905 - 0.085 * omega) * GAS_CONSTANT * at.tc / at.pc, "omega");
  c.put("zc", at.pc * c.value("vc_m3_per_mol") / (GAS_CONSTANT * at.tc));
  const double boiling = c.value("tb_K");
  if (!c.relations.contains("rho_liq_sat")) {
    std::vector<UserPoint> known;
    if (c.value("sg_60F") > 0.0 && at.tc > 1.05 * kSixtyF)
      known = {{kSixtyF, c.value("sg_60F") * kWater60F * 1000.0 / mw}};
    else if (c.value("vliq_25C_m3_per_mol") > 0.0 && at.tc > 1.05 * kRoom)
      known = {{kRoom, 1.0 / c.value("vliq_25C_m3_per_mol")}};
    c.relations["rho_liq_sat"] = density_through(at, omega, known);
  }
  const Correlation& density = c.relations["rho_liq_sat"];
  constexpr double kTop = 0.95;  // reduced temperature of a gas above its critical temperature
  if (c.value("sg_60F") == 0.0)
    c.estimate("sg_60F", evaluate(density, std::fmin(kSixtyF, kTop * at.tc)) * mw / 1000.0 / kWater60F,
               "density");
  if (c.value("vliq_25C_m3_per_mol") == 0.0 && at.tc > 1.02 * kRoom)
    c.estimate("vliq_25C_m3_per_mol", 1.0 / evaluate(density, kRoom), "density");
  if (c.value("hvap_tb_J_per_mol") == 0.0) {
    const bool points = c.relations.contains("hvap");
    c.estimate(
        "hvap_tb_J_per_mol",
        points ? evaluate(c.relations["hvap"], boiling) : vaporisation_from_slope(at, pressure, boiling),
        points ? "hvap" : "slope");
  }
  if (!c.relations.contains("hvap")) {
    const UserPoint known[] = {{boiling, c.value("hvap_tb_J_per_mol")}};
    Correlation watson = vaporisation_through(at, known);
    watson.source = "EST: Watson 1943";
    watson.estimated = true;
    c.relations["hvap"] = watson;
  }
  if (c.value("solubility_param_Pa05") == 0.0 && at.tc > 1.02 * kRoom) {
    const double energy = evaluate(c.relations["hvap"], kRoom) - GAS_CONSTANT * kRoom;
    if (energy > 0.0)
      c.estimate("solubility_param_Pa05", std::sqrt(energy / c.value("vliq_25C_m3_per_mol")), "hvap");
  }
  if (!c.relations.contains("sigma")) c.relations["sigma"] = tension_by_boiling(at, boiling);
  const bool heat = c.relations.contains("cp_ig");
  if (const auto atoms = heat_by_atoms(sources, c.atoms); atoms && !heat) c.relations["cp_ig"] = *atoms;
  if (!c.relations.contains("cp_ig"))
    c.row.missing("cp_ig_points_K_J_per_molK",
                  "the bank has too few components to estimate the heat capacity from");
}

}  // namespace

void complete(UserComponent& c, const BankSources& sources) {
  for (const std::string& column : sources.components.columns())
    c.cells[column] = c.added() ? std::string() : sources.components.text(*c.bank_row, column);
  take_identity(c);
  take_figures(c);
  const std::size_t before = c.row.mistakes();
  if (c.added()) {
    for (const char* column : {"tc_K", "pc_Pa"})
      if (!c.row.given(column)) c.row.missing(column, "a new component needs it");
    if (c.value("mw") == 0.0 && !c.row.given("mw") && !c.atoms.empty())
      c.row.missing("mw", "the formula holds an element whose mass is not known here; give the molar mass");
  }
  if (c.value("tc_K") == 0.0 || c.value("pc_Pa") == 0.0 || c.value("mw") == 0.0) {
    // Points have their own mistakes all the same.
    for (const UserColumn& column : user_columns())
      if (column.kind == UserKind::points) (void)c.row.points(column.name);
    return;
  }
  take_relations(c);
  if (c.row.mistakes() > before) return;
  const UserCritical at{c.value("tc_K"), c.value("pc_Pa")};
  if (c.added() && c.value("omega") == 0.0 && !c.row.given("omega")) {
    if (c.relations.contains("psat")) {
      c.estimate("omega", -std::log10(evaluate(c.relations["psat"], 0.7 * at.tc) / at.pc) - 1.0, "psat");
    } else if (c.value("tb_K") > 0.0 && c.value("tb_K") < at.tc) {
      const UserPoint boiling[] = {{c.value("tb_K"), kAtmosphere}};
      c.estimate("omega", acentric_through(at, boiling), "tb");
    } else if (!c.row.given("tb_K")) {
      c.row.missing("omega", "give the acentric factor, the boiling point in tb_K or vapour pressures");
      return;
    }
  }
  check_figures(c);
  if (c.row.mistakes() > before || !c.added()) return;
  estimate_figures(c, sources);
}

}  // namespace talix::bank
