#include "bank/build.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iostream>
#include <map>
#include <optional>
#include <set>
#include <sstream>

#include "bank/catalogue_writer.h"
#include "bank/elements.h"
#include "bank/pairs.h"
#include "bank/parameter_files.h"
#include "bank/tables.h"
#include "bank/user_data.h"
#include "engine/codes.h"
#include "eos/ssm_pure_generalised.h"

namespace talix::bank {

namespace {

constexpr double kPaPerMPa = 1e6;
constexpr double kReferenceTemperature = 298.15;  // of the data of formation [K]
constexpr int kStateClass = 1;                    // of every component of the catalogue
constexpr int kPolynomialForm = 1;                // of the ideal-gas heat capacity
constexpr int kGroupPairs = 8;
constexpr int kGroupLimit = 161;  // subgroup numbers from here on are no groups of the original set

// A table that other tables refer to by component number. Absent file: an empty index.
class ByNumber {
 public:
  explicit ByNumber(const std::optional<SourceTable>& table) : table_(table) {
    if (!table_) return;
    for (std::size_t row = 0; row < table_->rows(); ++row) {
      const int number = table_->integer(row, "number", 2, kHighestNumber);
      if (!rows_.emplace(number, row).second)
        table_->fail(row, "number", "this component stands in the table already");
    }
  }
  // Row of a component, nothing where the table has none. Its code must agree.
  [[nodiscard]] std::optional<std::size_t> row(int number, const std::string& code) const {
    const auto found = rows_.find(number);
    if (found == rows_.end()) return std::nullopt;
    if (table_->text(found->second, "code") != code) {
      table_->fail(found->second, "code",
                   "the code of component " + std::to_string(number) + " is \"" + code + "\"");
    }
    return found->second;
  }
  [[nodiscard]] const SourceTable& table() const { return *table_; }

 private:
  std::optional<SourceTable> table_;
  std::map<int, std::size_t> rows_;
};

// A table with several rows of a component. Absent file: no rows.
struct TransportRows {
  explicit TransportRows(const std::optional<SourceTable>& source) : table(source) {
    if (!table) return;
    for (std::size_t row = 0; row < table->rows(); ++row)
      by_number[table->integer(row, "number", 2, kHighestNumber)].push_back(row);
  }
  [[nodiscard]] std::vector<std::size_t> rows(int number) const {
    const auto found = by_number.find(number);
    return found == by_number.end() ? std::vector<std::size_t>{} : found->second;
  }
  std::optional<SourceTable> table;
  std::map<int, std::vector<std::size_t>> by_number;
};

void set_real(PureRecord& record, std::string_view field, double value) {
  record.set_real(pure_field(field).cell, static_cast<float>(value));
}

void set_integer(PureRecord& record, std::string_view field, int value) {
  record.set_integer(pure_field(field).cell, value);
}

void set_text(PureRecord& record, std::string_view field, std::string_view text) {
  const CellField& at = pure_field(field);
  record.set_text(at.cell, at.cells, text);
}

std::string right_justified(int number) {
  const std::string digits = std::to_string(number);
  return std::string(4 - digits.size(), ' ') + digits;
}

// Texts of the record, with the rules that keep them usable as keys.
void fill_identity(PureRecord& record, const SourceTable& table, std::size_t row, int number) {
  const std::string& code = table.text(row, "code");
  if (code.size() != 4)
    table.fail(row, "code", "a code has exactly 4 characters; put it in quotes with its blanks");
  if (code == "    ") table.fail(row, "code", "a code must not be blank");
  const std::string& name = table.text(row, "name28");
  if (name.empty() || name.size() > 28) table.fail(row, "name28", "write 1 to 28 characters");
  const std::string& brief = table.text(row, "short_name");
  if (brief.empty() || brief.size() > 8) table.fail(row, "short_name", "write 1 to 8 characters");
  // The light-gas form of the b curve is chosen by the first letters of the short name.
  for (const std::string light : {"H2", "HE", "N2"}) {
    if (brief.starts_with(light) != (code == light + "  ")) {
      table.fail(row, "short_name",
                 "only the component of code " + light + " begins with " + light + ", and it must");
    }
  }
  const std::string& cas = table.text(row, "cas");
  if (cas.size() < 7 || cas.size() > 12) table.fail(row, "cas", "write a CAS number with its hyphens");
  set_text(record, "ICSTD", right_justified(number));
  set_text(record, "ICS", code);
  set_text(record, "CIUPAC", name);
  set_text(record, "CMFNAM", brief);
  if (table.has("interface_name")) {
    const std::string& interface_name = table.text(row, "interface_name");
    if (interface_name.size() > 12) table.fail(row, "interface_name", "write at most 12 characters");
    set_text(record, "ASPNAM", interface_name);
  }
  set_text(record, "cas", cas);
  set_text(record, "edition", kEdition);
  set_integer(record, "ISTAT2", kStateClass);
  set_integer(record, "IDDB", number);
  set_integer(record, "ISOFAM", table.integer(row, "isofam", 1, 99));
}

// Atom counts; further elements stand as "Symbol:count;...".
void fill_elements(PureRecord& record, const SourceTable& table, std::size_t row) {
  const int first = pure_field("ELEM").cell;
  constexpr const char* kColumns[] = {"C", "H", "N", "O", "S", "F", "Cl", "Br", "I"};
  for (int i = 0; i < 9; ++i) record.set_integer(first + i, table.integer(row, kColumns[i], 0, 200));
  std::istringstream others(table.text(row, "other_atoms"));
  std::string item;
  for (int i = 9; std::getline(others, item, ';'); i += 2) {
    const std::size_t colon = item.find(':');
    const int atomic = colon == std::string::npos ? 0 : atomic_number(item.substr(0, colon));
    const int atoms = atomic == 0 ? 0 : std::atoi(item.c_str() + colon + 1);
    if (atoms < 1 || i > 13) table.fail(row, "other_atoms", "write up to three of Symbol:count, parted by ;");
    record.set_integer(first + i, atomic);
    record.set_integer(first + i + 1, atoms);
  }
  const int carbon = record.integer(first);
  if (carbon > 0) set_real(record, "HCRAT", static_cast<double>(record.integer(first + 1)) / carbon);
}

bool plain_hydrocarbon(const PureRecord& record) {
  const int first = pure_field("ELEM").cell;
  bool plain = record.integer(first) > 0 && record.integer(first + 1) > 0;
  for (const int i : {2, 3, 4, 5, 6, 7, 8, 10, 12, 14}) plain = plain && record.integer(first + i) == 0;
  return plain;
}

// Constants. Those that every calculation needs are required, the others stay 0 where the table has none.
void fill_constants(PureRecord& record, const SourceTable& table, std::size_t row) {
  const double boiling = table.required(row, "tb_K", {"K", 1, 2000});
  const double omega = table.required(row, "omega", {"-", -0.5, 3});
  set_real(record, "TC", table.required(row, "tc_K", {"K", 3, 4000}));
  set_real(record, "PC", table.required(row, "pc_Pa", {"Pa", 1e5, 2e8}) / kPaPerMPa);
  set_real(record, "VC", table.required(row, "vc_m3_per_mol", {"m3/mol", 2e-5, 1e-2}) * 1000);
  set_real(record, "OMEGA", omega);
  set_real(record, "OMHV", omega);
  set_real(record, "RMOLW", table.required(row, "mw", {"g/mol", 1, 1500}));
  set_real(record, "ATBP", boiling);

  const auto optional = [&](std::string_view field, std::string_view column, Range range, double factor) {
    if (const auto value = table.number(row, column, range)) set_real(record, field, *value * factor);
  };
  optional("TMELT", "tm_K", {"K", 0.5, 1500}, 1);
  optional("PACHOR", "parachor", {"(mN/m)^1/4 cm3/mol", 5, 3000}, 1);
  optional("HVAP", "hvap_tb_J_per_mol", {"J/mol", 10, 5e5}, 1);
  optional("HFUS", "hfus_J_per_mol", {"J/mol", 1, 5e5}, 1);
  optional("HCD", "hcomb_gross_J_per_mol", {"J/mol", 0, 1e8}, 1);
  optional("HCW", "hcomb_net_J_per_mol", {"J/mol", 0, 1e8}, 1);
  if (table.has("gcomb_J_per_mol")) optional("GC", "gcomb_J_per_mol", {"J/mol", -1e6, 1e8}, 1);

  const auto gravity = table.number(row, "sg_60F", {"-", 0.01, 30});
  if (gravity) {
    set_real(record, "RHO", *gravity);
    set_real(record, "UOPK", 1.2154 * std::cbrt(boiling) / *gravity);
  } else if (plain_hydrocarbon(record)) {
    table.fail(row, "sg_60F", "empty; the pair estimates with water and hydrogen need it for a hydrocarbon");
  }
  const auto heat = table.number(row, "hf_gas_J_per_mol", {"J/mol", -1e7, 1e7});
  const auto gibbs = table.number(row, "gf_gas_J_per_mol", {"J/mol", -1e7, 1e7});
  if (heat) set_real(record, "HF", *heat);
  if (gibbs) set_real(record, "GF", *gibbs);
  if (heat && gibbs) set_real(record, "SOFF", (*heat - *gibbs) / kReferenceTemperature);
  if (const auto dipole = table.number(row, "dipole_D", {"debye", 0, 20})) {
    set_integer(record, "IDIP", 1);
    set_real(record, "DIPOLE", *dipole);
  }
  if (const auto volume = table.number(row, "vliq_25C_m3_per_mol", {"m3/mol", 1e-6, 5e-3})) {
    set_integer(record, "IV25", 1);
    set_real(record, "VLIQ25", *volume * 1000);
  }
  if (const auto solubility = table.number(row, "solubility_param_Pa05", {"Pa^1/2", 100, 2e5})) {
    set_integer(record, "IS25", 1);
    set_real(record, "SL25", *solubility / 1000);
  }
}

// UNIFAC subgroups as "subgroup:count;...".
void fill_groups(PureRecord& record, const SourceTable& table, std::size_t row) {
  std::istringstream groups(table.text(row, "unifac_original"));
  std::string item;
  int pair = 0;
  while (std::getline(groups, item, ';')) {
    int subgroup = 0;
    int count = 0;
    char colon = 0;
    std::istringstream fields(item);
    if (!(fields >> subgroup >> colon >> count) || colon != ':' || subgroup < 1 || subgroup >= kGroupLimit ||
        count < 1 || pair == kGroupPairs) {
      table.fail(row, "unifac_original",
                 "write up to eight of subgroup:count, parted by ;, subgroup 1 to 160");
    }
    const int cell = pure_field("UNIFAC").cell + 2 * pair++;
    record.set_real(cell, static_cast<float>(subgroup));
    record.set_real(cell + 1, static_cast<float>(count));
  }
}

void fill_heat_capacity(PureRecord& record, const ByNumber& source, int number, const std::string& code) {
  const auto row = source.row(number, code);
  if (!row) return;
  // A table without the column holds polynomials only.
  const bool forms = source.table().has("icpig");
  set_integer(record, "ICPIG", forms ? source.table().integer(*row, "icpig", 0, 8) : kPolynomialForm);
  const int first = pure_field("COFHT").cell;
  for (int i = 0; i < 8; ++i) {
    const auto value = source.table().number(*row, "c" + std::to_string(i + 1), {"J/(mol K)", -1e12, 1e12});
    record.set_real(first + i, static_cast<float>(value.value_or(0)));
  }
}

void fill_vapour_pressure(PureRecord& record, const ByNumber& source, int number, const std::string& code) {
  const auto row = source.row(number, code);
  if (!row) return;
  set_integer(record, "IPWA", 1);
  const int first = pure_field("PWAG").cell;
  for (int i = 0; i < 4; ++i) {
    record.set_real(first + i, static_cast<float>(source.table().required(*row, "w" + std::to_string(i + 1),
                                                                          {"-", -1e4, 1e4})));
  }
}

// A set of data/transport.csv and where it stands in the record.
struct TransportField {
  std::string_view set;     // as the table names it
  std::string_view field;   // of its first coefficients
  std::string_view flag;    // cell of its flag, empty for none
  int count;                // most coefficients
  std::string_view second;  // field of the coefficients from the fifth on, empty where they follow
};
constexpr TransportField kTransportFields[] = {{"PSAT", "PSAT", "IPSA", 5, ""},
                                               {"DLIP", "DLIP", "IDLI", 3, ""},
                                               {"DDIP", "DDIP", "", 4, ""},
                                               {"HVAPCF", "HVAPCF", "IHVA", 7, ""},
                                               {"VIL", "VIL", "IVIL", 7, ""},
                                               {"LVIS50", "LVIS50", "", 1, ""},
                                               {"SS", "SS 1-4", "IQISS", 8, "SS 5-8"},
                                               {"TCL", "TCL", "ITCL", 7, ""},
                                               {"TCV", "TCV", "", 2, ""},
                                               {"SURT", "SURT", "ISUR", 2, ""},
                                               {"PACHOR", "PACHOR", "", 1, ""},
                                               {"PARL2", "PARL2", "ILVT", 5, ""},
                                               {"PANTO", "PANTO", "", 9, ""},
                                               {"CCPL", "CCPL", "ICPL", 7, ""}};

// The saturation and transport sets. A set without a row keeps its flag and its cells at 0. DLIP goes into the
// record also with a flag of 0: the flash layer reads it without looking at the flag.
void fill_transport(PureRecord& record, const SourceTable& table, const std::vector<std::size_t>& rows,
                    const std::string& code) {
  for (const std::size_t row : rows) {
    if (table.text(row, "code") != code)
      table.fail(row, "code", "the code of this component is \"" + code + "\"");
    const std::string& set = table.text(row, "set");
    const auto at = std::find_if(std::begin(kTransportFields), std::end(kTransportFields),
                                 [&](const TransportField& f) { return f.set == set; });
    if (at == std::end(kTransportFields)) table.fail(row, "set", "no set of the record has this name");
    if (!at->flag.empty()) set_integer(record, at->flag, table.integer(row, "flag", 0, 200));
    for (int i = 0; i < at->count; ++i) {
      const bool second = !at->second.empty() && i >= 4;
      const int cell = pure_field(second ? at->second : at->field).cell + (second ? i - 4 : i);
      const std::string column = "c" + std::to_string(i + 1);
      if (!table.has(column)) break;  // a table without sets that long
      const auto value = table.number(row, column, {"-", -1e30, 1e30});
      record.set_real(cell, static_cast<float>(value.value_or(0)));
    }
  }
}

// Curve constant INDEX (1 to 15) of the cubic: the file holds the third set of five before the second.
void set_curve(PureRecord& record, int index, double value) {
  constexpr std::string_view kSets[] = {"PARABF 1-5", "PARABF 6-10", "PARABF 11-15"};
  const int cell = pure_field(kSets[(index - 1) / 5]).cell + (index - 1) % 5;
  record.set_real(cell, static_cast<float>(value));
}

enum class Curves { fitted, generalised, none };

// What the curves were fitted to, as the table words it and as the record marks it.
struct Basis {
  std::string_view words;
  std::string_view mark;
  Curves curves;
};
constexpr Basis kBases[] = {{"equation of state", "EOS ", Curves::fitted},
                            {"correlations", "COR ", Curves::fitted},
                            {"generalised", "GEN ", Curves::generalised}};

Curves fill_curves(PureRecord& record, const ByNumber& source, int number, const std::string& code) {
  if (const auto row = source.row(number, code)) {
    for (int i = 1; i <= 15; ++i) {
      set_curve(record, i, source.table().required(*row, "p" + std::to_string(i), {"-", -1e6, 1e6}));
    }
    const std::string& words = source.table().text(*row, "basis");
    for (const Basis& basis : kBases) {
      if (words != basis.words) continue;
      set_text(record, "curves", basis.mark);
      return basis.curves;
    }
    source.table().fail(*row, "basis", "write equation of state, correlations or generalised");
  }
  CurveSet curves{};
  I4 state = 0;
  R8 reserved = 0;
  const R8 omega = static_cast<R8>(record.real(pure_field("OMEGA").cell));
  SSMPC4(omega, curves, state, reserved);
  if (state != status::ok) return Curves::none;
  for (int i = 1; i <= 15; ++i) set_curve(record, i, curves(i));
  set_text(record, "curves", "GEN ");
  return Curves::generalised;
}

}  // namespace

BankSources read_sources(const std::filesystem::path& data_dir) {
  const auto optional = [&](const char* name) -> std::optional<SourceTable> {
    if (!std::filesystem::exists(data_dir / name)) return std::nullopt;
    return SourceTable::read(data_dir / name);
  };
  return {.components = SourceTable::read(data_dir / "components.csv"),
          .pairs = SourceTable::read(data_dir / "pairs.csv"),
          .curves = optional("curves.csv"),
          .ideal_gas = optional("ideal_gas.csv"),
          .vapour_pressure = optional("vapour_pressure.csv"),
          .transport = optional("transport.csv"),
          .nrtl = optional("nrtl.csv")};
}

BuildResult compile_bank(const std::filesystem::path& data_dir) {
  return compile_bank(read_sources(data_dir), data_dir);
}

BuildResult compile_bank(const BankSources& sources, const std::filesystem::path& data_dir) {
  const SourceTable& table = sources.components;
  const ByNumber curves(sources.curves);
  const ByNumber heat_capacity(sources.ideal_gas);
  const ByNumber vapour_pressure(sources.vapour_pressure);
  const TransportRows transport(sources.transport);

  BuildResult result;
  std::map<int, std::string> codes;
  std::set<std::string> seen;
  std::map<int, PureRecord> records;
  for (std::size_t row = 0; row < table.rows(); ++row) {
    const int number = table.integer(row, "number", 2, kHighestNumber);
    PureRecord record = blank_pure_record();
    fill_identity(record, table, row, number);
    const std::string& code = table.text(row, "code");
    if (!codes.emplace(number, code).second)
      table.fail(row, "number", "this number stands in the table already");
    if (!seen.insert(code).second) table.fail(row, "code", "this code stands in the table already");
    fill_elements(record, table, row);
    fill_constants(record, table, row);
    fill_groups(record, table, row);
    fill_heat_capacity(record, heat_capacity, number, code);
    fill_vapour_pressure(record, vapour_pressure, number, code);
    if (transport.table) fill_transport(record, *transport.table, transport.rows(number), code);
    const std::string label = std::to_string(number) + " " + table.text(row, "name");
    switch (fill_curves(record, curves, number, code)) {
      case Curves::none:
        result.notes.push_back(label + ": left out, no fitted curves and an acentric factor of " +
                               table.text(row, "omega") +
                               ", below 0.1045 where the generalised relation begins");
        continue;
      case Curves::generalised:
        result.notes.push_back(label + ": curves from the acentric factor");
        ++result.generalised;
        break;
      case Curves::fitted:
        ++result.fitted;
        break;
    }
    records.emplace(number, record);
  }
  if (records.empty())
    throw BankError((data_dir / "components.csv").string() + ": no component in the table");
  result.components = static_cast<int>(records.size());

  const int highest = records.rbegin()->first;
  for (int number = 1; number <= highest; ++number) {
    const auto found = records.find(number);
    const bool used = found != records.end();
    result.bank.pure.push_back(used ? found->second : blank_pure_record());
    result.bank.directory.push_back({right_justified(number), used ? codes.at(number) : "    "});
  }
  result.bank.pairs = read_pair_records(sources.pairs, codes);
  if (sources.nrtl) add_activity_sets(result.bank.pairs, *sources.nrtl, codes);
  if (result.bank.pairs.size() > kMostPairs)
    throw BankError("pairs.csv: more pairs than the directory holds");
  add_hydrate_formers(result.bank, data_dir);
  return result;
}

namespace {

// The folder above the bank files where these stand in their usual folder, otherwise their own.
std::filesystem::path install_directory(const std::filesystem::path& out_dir) {
  const std::filesystem::path folder = out_dir.has_filename() ? out_dir : out_dir.parent_path();
  return folder.filename() == "Zandor" ? folder.parent_path() : folder;
}

}  // namespace

int build_main(const BuildOptions& options) {
  try {
    BankSources sources = read_sources(options.data_dir);
    const std::vector<std::string> changes = apply_user_tables(sources, options.data_dir, options.with);
    const BuildResult result = compile_bank(sources, options.data_dir);
    write_bank(options.out_dir, result.bank);
    const std::vector<ParameterFile> parameters =
        write_parameter_files(options.out_dir, options.data_dir, result.bank.pure);
    write_catalogue(sources.components, install_directory(options.out_dir));
    for (const std::string& change : changes) std::cout << change << '\n';
    for (const std::string& note : result.notes) std::cout << note << '\n';
    std::cout << "wrote " << result.components << " components (" << result.fitted << " with fitted curves, "
              << result.generalised << " from the acentric factor) and " << result.bank.pairs.size()
              << " pairs to " << options.out_dir.string() << '\n';
    for (const ParameterFile& file : parameters)
      std::cout << "wrote " << file.records << " records to " << file.name << '\n';
    return 0;
  } catch (const BankError& error) {
    std::cerr << "talix-bank: " << error.what() << '\n';
    return 1;
  }
}

}  // namespace talix::bank
