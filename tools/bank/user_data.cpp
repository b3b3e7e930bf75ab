#include "bank/user_data.h"

#include <algorithm>
#include <array>
#include <map>
#include <sstream>

#include "bank/fit_rows.h"
#include "bank/pairs.h"
#include "bank/transport_tables.h"
#include "bank/user_columns.h"
#include "bank/user_component.h"
#include "bank/user_estimates.h"

namespace talix::bank {

namespace {

struct UserPair {
  const UserComponent* component;
  int partner;
  double value;
};

// Names of columns that no table has; false where there is one.
bool sound_header(const std::filesystem::path& file, const SourceTable& table,
                  std::vector<std::string>& faults) {
  bool sound = true;
  for (const std::string& column : table.columns()) {
    if (user_column(column) != nullptr) continue;
    faults.push_back(file.string() + ": unknown column " + column + " in the header; " +
                     advice_on_column(column));
    sound = false;
  }
  return sound;
}

std::vector<UserPair> pairs_of(const UserComponent& c, const UserIdentities& identities) {
  std::vector<UserPair> pairs;
  std::istringstream in(c.row.text("kij"));
  for (std::string item; std::getline(in, item, ';');) {
    const std::size_t colon = item.rfind(':');
    char* end = nullptr;
    const std::string figure = colon == std::string::npos ? std::string() : item.substr(colon + 1);
    const double value = std::strtod(figure.c_str(), &end);
    if (figure.empty() || *end != '\0' || !(value >= -1.0 && value <= 1.0)) {
      c.row.fault("kij", "\"" + item + "\": write component:value, the value between -1 and 1");
      continue;
    }
    const auto partner = identities.number_of(item.substr(0, colon));
    if (!partner || *partner == c.number)
      c.row.fault("kij", "\"" + item + "\": no other component has this number, code, CAS number or name");
    else
      pairs.push_back({&c, *partner, value});
  }
  return pairs;
}

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

// What of a component is fitted anew.
struct Renewed {
  bool saturation = false;  // curves, vapour pressure and all sets
  bool heat = false;        // the ideal gas
  bool others = false;      // single sets
};

Renewed renewed_of(const UserComponent& c) {
  const auto any = [&](const auto& columns) {
    return std::any_of(columns.begin(), columns.end(),
                       [&](std::string_view s) { return c.given.contains(s); });
  };
  Renewed r{.saturation = c.added() || any(kSaturation), .heat = c.added() || any(kHeat)};
  for (const SetBasis& basis : kSetBases) r.others = r.others || any(basis.columns);
  return r;
}

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

// Fits what rests on the figures of the user.
void fit_tables(BankSources& sources, const ReferenceTables& bank, const std::map<int, Curves>& curves,
                const UserComponent& c) {
  const Renewed renewed = renewed_of(c);
  if (!renewed.saturation && !renewed.heat && !renewed.others) return;
  const FitComponent f = fit_component_of(c);
  ReferenceTables tables;
  if (!c.added()) {
    if (const auto at = bank.relations.find(f.cas); at != bank.relations.end())
      tables.relations[f.cas] = at->second;
    if (const auto at = bank.gas.find(f.cas); at != bank.gas.end()) tables.gas[f.cas] = at->second;
    const bool own = c.relations.contains("psat") || c.relations.contains("rho_liq_sat") ||
                     c.given.contains("tc_K") || c.given.contains("pc_Pa");
    if (const auto at = bank.points.find(f.cas); at != bank.points.end() && !own) {
      tables.points[f.cas] = at->second;
      tables.point_cp[f.cas] = bank.point_cp.at(f.cas);
      tables.point_source[f.cas] = bank.point_source.at(f.cas);
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

void put_component(BankSources& sources, const UserComponent& c) {
  SourceTable& table = sources.components;
  std::size_t at = 0;
  if (c.bank_row) {
    at = *c.bank_row;
    table.attribute(at, c.row.table(), c.row.index());
  } else {
    at = table.append(c.row.table(), c.row.index());
  }
  for (const auto& [column, text] : c.cells)
    if (table.has(column)) table.set(at, column, text);
}

// A pair of the user takes the place of the constant and temperature terms that the table has.
void put_pair(SourceTable& table, const UserIdentities& identities, const UserPair& pair) {
  const int low = std::min(pair.component->number, pair.partner),
            high = std::max(pair.component->number, pair.partner);
  std::size_t at = table.rows();
  for (std::size_t row = 0; row < table.rows(); ++row) {
    if (table.text(row, "number1") == std::to_string(low) &&
        table.text(row, "number2") == std::to_string(high))
      at = row;
  }
  if (at == table.rows()) table.append(pair.component->row.table(), pair.component->row.index());
  const std::pair<const char*, std::string> cells[] = {{"number1", std::to_string(low)},
                                                       {"number2", std::to_string(high)},
                                                       {"code1", identities.code_of(low)},
                                                       {"code2", identities.code_of(high)},
                                                       {"teta0", cell_of(pair.value)},
                                                       {"teta0t_1_K", "0"},
                                                       {"teta1", "0"},
                                                       {"teta1t_1_K", "0"},
                                                       {"status", pair.value == 0.0 ? "3" : "1"},
                                                       {"source_digits", "20000"},
                                                       {"basis", "given by the user"}};
  for (const auto& [column, text] : cells) table.set(at, column, text);
}

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : ", ") + word;
  return text;
}

// What became of a row.
std::string change_of(const UserComponent& c) {
  const std::string label =
      std::to_string(c.number) + " " + c.cells.at("name") + ", code \"" + c.code + "\": ";
  if (c.added()) return label + "added" + (c.estimated.empty() ? "" : "; estimated: " + joined(c.estimated));
  std::vector<std::string> given;
  for (const std::string& column : c.given)
    if (column != "number" && column != "code" && column != "cas" && column != "source")
      given.push_back(column);
  return label + "overridden: " + joined(given);
}

// Number of the line that a mistake stands in, 0 for one of the whole file.
int line_of(const std::string& fault) {
  constexpr std::string_view kMark = ", line ";
  const std::size_t at = fault.find(kMark);
  return at == std::string::npos ? 0 : std::atoi(fault.c_str() + at + kMark.size());
}

// All mistakes, file by file in the order of their lines.
[[noreturn]] void refuse(std::vector<std::string> faults, const std::vector<std::filesystem::path>& files) {
  const auto file_of = [&](const std::string& fault) {
    return std::find_if(files.begin(), files.end(),
                        [&](const auto& f) { return fault.starts_with(f.string()); }) -
           files.begin();
  };
  std::stable_sort(faults.begin(), faults.end(), [&](const std::string& a, const std::string& b) {
    return std::pair(file_of(a), line_of(a)) < std::pair(file_of(b), line_of(b));
  });
  std::string text;
  for (const std::string& fault : faults) text += fault + "\n";
  throw BankError(text + (faults.size() == 1 ? "1 mistake" : std::to_string(faults.size()) + " mistakes") +
                  "; nothing was written");
}

}  // namespace

std::vector<std::string> apply_user_tables(BankSources& sources, const std::filesystem::path& data_dir,
                                           const std::vector<std::filesystem::path>& files) {
  if (files.empty()) return {};
  std::vector<std::string> faults;
  std::vector<SourceTable> tables;  // rows point into them
  tables.reserve(files.size());
  UserIdentities identities(sources.components);
  std::vector<UserComponent> components;
  for (const std::filesystem::path& file : files) {
    const SourceTable& table = tables.emplace_back(SourceTable::read(file, faults));
    if (!sound_header(file, table, faults)) continue;
    for (std::size_t row = 0; row < table.rows(); ++row)
      if (auto component = identities.resolve(UserRow(table, row, faults)))
        components.push_back(std::move(*component));
  }
  identities.choose_numbers(components);
  std::vector<UserPair> pairs;
  bool renewed = false;
  for (UserComponent& component : components) {
    complete(component, sources);
    const std::vector<UserPair> own = pairs_of(component, identities);
    pairs.insert(pairs.end(), own.begin(), own.end());
    const Renewed r = renewed_of(component);
    renewed = renewed || (!component.added() && (r.saturation || r.heat || r.others));
  }
  if (!faults.empty()) refuse(faults, files);

  ReferenceTables bank;
  std::map<int, Curves> curves;
  std::string message;
  if (renewed &&
      (!read_reference(data_dir.string(), bank, message) || !read_curves(data_dir.string(), bank, curves)))
    throw BankError(message.empty() ? data_dir.string() + "/curves.csv: cannot be read" : message);
  BankSources changed = sources;
  std::vector<std::string> changes;
  for (const UserComponent& component : components) {
    put_component(changed, component);
    fit_tables(changed, bank, curves, component);
    changes.push_back(change_of(component));
  }
  for (const UserPair& pair : pairs) put_pair(changed.pairs, identities, pair);
  sources = std::move(changed);
  return changes;
}

}  // namespace talix::bank
