#include "bank/user_data.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <sstream>

#include "bank/fit_rows.h"
#include "bank/transport_tables.h"
#include "bank/user_columns.h"
#include "bank/user_component.h"
#include "bank/user_fit.h"

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
