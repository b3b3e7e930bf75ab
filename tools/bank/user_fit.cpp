#include "bank/user_fit.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "bank/fit_rows.h"
#include "bank/transport_tables.h"
#include "bank/user_estimates.h"

namespace talix::bank {

namespace {

// A set of data/transport.csv and the columns of the user that it rests on, beside those below.
struct SetBasis {
  std::string_view set;
  std::array<std::string_view, 2> columns;
};
constexpr auto kSetBases =
    std::to_array<SetBasis>({{"HVAPCF", {"hvap_points_K_J_per_mol", ""}},
                             {"CCPL", {"cp_liq_points_K_J_per_molK", ""}},
                             {"VIL", {"mu_liq_points_K_Pa_s", ""}},
                             {"LVIS50", {"mu_liq_points_K_Pa_s", ""}},
                             {"SS", {"mu_liq_points_K_Pa_s", ""}},
                             {"PARL2", {"mu_liq_points_K_Pa_s", "k_liq_points_K_W_per_mK"}},
                             {"TCL", {"k_liq_points_K_W_per_mK", ""}},
                             {"SURT", {"sigma_points_K_N_per_m", ""}},
                             {"PACHOR", {"sigma_points_K_N_per_m", ""}}});
constexpr std::array kSaturation{
    "tc_K", "pc_Pa", "omega", "mw", "psat_points_K_Pa", "psat_antoine_K_Pa", "rho_liq_points_K_kg_per_m3"};
constexpr std::array kHeat{"cp_ig_points_K_J_per_molK", "cp_ig_poly_K_J_per_molK"};

bool rests_on_given(const UserComponent& c, const std::string& set) {
  return std::any_of(kSetBases.begin(), kSetBases.end(), [&](const SetBasis& basis) {
    return basis.set == set && (c.given.contains(basis.columns[0]) || c.given.contains(basis.columns[1]));
  });
}

FitComponent fit_component_of(const UserComponent& c) {
  FitComponent f;
  f.number = c.number;
  f.code = c.code;
  f.cas = c.cells.at("cas");
  f.name = c.cells.at("name");
  f.family = c.cells.contains("family") ? c.cells.at("family") : "";
  f.tc = static_cast<double>(static_cast<float>(c.value("tc_K")));
  f.pc = static_cast<double>(static_cast<float>(c.value("pc_Pa") * 1e-6)) * 10.0 * 100000.0;
  f.omega = c.value("omega");
  f.mw = c.value("mw");
  f.vc = c.value("vc_m3_per_mol");
  f.tb = c.value("tb_K");
  f.tm = c.value("tm_K");
  f.hvap_tb = c.value("hvap_tb_J_per_mol");
  f.sublimes = f.tm > 0.0 && f.tb < f.tm;
  return f;
}

// Puts the rows of a component in the place of those that the table has; KEEP tells which of the old ones stay.
template <class Keep>
void replace_rows(std::optional<SourceTable>& table, const char* name, const char* header, int number,
                  const std::vector<std::string>& rows, Keep keep) {
  std::string text = header;
  for (const std::string& row : rows) text += "\n" + row;
  const SourceTable made = SourceTable::parse(name, text);
  if (!table) table = SourceTable::parse(name, header);
  for (std::size_t row = table->rows(); row-- > 0;) {
    if (table->integer(row, "number", 2, kHighestNumber) == number && !keep(*table, row)) table->erase(row);
  }
  for (const std::string& column : made.columns()) table->add_column(column);
  for (std::size_t row = 0; row < made.rows(); ++row) {
    const std::size_t at = table->append(made, row);
    for (const std::string& column : made.columns()) table->set(at, column, made.text(row, column));
  }
}

}  // namespace

Renewed renewed_of(const UserComponent& c) {
  const auto any = [&](const auto& columns) {
    return std::any_of(columns.begin(), columns.end(),
                       [&](std::string_view s) { return c.given.contains(s); });
  };
  Renewed r{.saturation = c.added() || any(kSaturation), .heat = c.added() || any(kHeat)};
  for (const SetBasis& basis : kSetBases) r.others = r.others || any(basis.columns);
  return r;
}

void fit_tables(BankSources& sources, const ReferenceTables& reference, const std::map<int, Curves>& curves,
                const UserComponent& c) {
  const Renewed renewed = renewed_of(c);
  if (!renewed.saturation && !renewed.heat && !renewed.others) return;
  const FitComponent f = fit_component_of(c);
  ReferenceTables tables;
  if (!c.added()) {
    if (const auto at = reference.relations.find(f.cas); at != reference.relations.end())
      tables.relations[f.cas] = at->second;
    if (const auto at = reference.gas.find(f.cas); at != reference.gas.end()) tables.gas[f.cas] = at->second;
    const bool own = c.relations.contains("psat") || c.relations.contains("rho_liq_sat") ||
                     c.given.contains("tc_K") || c.given.contains("pc_Pa");
    if (const auto at = reference.points.find(f.cas); at != reference.points.end() && !own) {
      tables.points[f.cas] = at->second;
      tables.point_cp[f.cas] = reference.point_cp.at(f.cas);
      tables.point_source[f.cas] = reference.point_source.at(f.cas);
    }
  }
  for (const auto& [property, relation] : c.relations) {
    std::vector<Correlation> relations{relation};
    if (const auto wider = heat_by_atoms(sources, c.atoms); property == "cp_ig" && wider)
      relations.push_back(*wider);
    tables.relations[f.cas][property] = relations;
  }
  const bool whole = renewed.saturation || renewed.heat;
  const Curves* const given =
      renewed.saturation || !curves.contains(c.number) ? nullptr : &curves.at(c.number);
  const ComponentRows rows =
      fit_component(tables, f, {.curves = whole || given == nullptr, .transport = true}, given);
  const auto none = [](const SourceTable&, std::size_t) { return false; };
  if (renewed.saturation) {
    replace_rows(sources.curves, "curves.csv", kCurvesHeader, c.number, {rows.curves}, none);
    replace_rows(sources.vapour_pressure, "vapour_pressure.csv", kVapourHeader, c.number,
                 {rows.vapour_pressure}, none);
  }
  if (renewed.heat && !rows.ideal_gas.empty())
    replace_rows(sources.ideal_gas, "ideal_gas.csv", kIdealHeader, c.number, {rows.ideal_gas}, none);
  if (!renewed.saturation && !renewed.others) return;
  std::vector<std::string> sets;
  for (const std::string& row : rows.transport) {
    const SourceTable one = SourceTable::parse("transport.csv", std::string(kTransportHeader) + "\n" + row);
    if (renewed.saturation || rests_on_given(c, one.text(0, "set"))) sets.push_back(row);
  }
  replace_rows(sources.transport, "transport.csv", kTransportHeader, c.number, sets,
               [&](const SourceTable& table, std::size_t row) {
                 return !renewed.saturation && !rests_on_given(c, table.text(row, "set"));
               });
}

}  // namespace talix::bank
