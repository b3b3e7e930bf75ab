// Reader of catalogue.csv.
#include <csv.h>

#include <array>
#include <charconv>
#include <cmath>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <utility>

#include "cli/catalogue.h"
#include "cli/failure.h"
#include "cli/words.h"

namespace talix::cli {

namespace {

using Row = std::vector<std::string>;

// Rows as the parser hands them over.
struct Rows {
  std::vector<Row> done;
  Row current;
};

void take_field(void* text, std::size_t size, void* target) {
  static_cast<Rows*>(target)->current.emplace_back(static_cast<const char*>(text), size);
}

void take_row(int /*terminator*/, void* target) {
  auto* const rows = static_cast<Rows*>(target);
  rows->done.push_back(std::exchange(rows->current, {}));
}

std::vector<Row> parse(const std::string& file, const std::string& text) {
  csv_parser parser;
  if (csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI) != 0) throw UsageError(file + ": no memory to read it");
  Rows rows;
  const bool whole =
      csv_parse(&parser, text.data(), text.size(), take_field, take_row, &rows) == text.size() &&
      csv_fini(&parser, take_field, take_row, &rows) == 0;
  csv_free(&parser);
  if (!whole)
    throw UsageError(file + ": damaged (a quote is not closed); build the bank again with ./dev bank");
  return std::move(rows.done);
}

std::optional<double> number(const std::string& text) {
  double value = 0;
  const char* const last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, value);
  if (text.empty() || error != std::errc{} || end != last || !std::isfinite(value)) return std::nullopt;
  return value;
}

// The records of the bank, to tell whether it holds a component.
class BankRecords {
 public:
  explicit BankRecords(const std::filesystem::path& install)
      : in_(install / "Zandor" / "purezan.out", std::ios::binary) {}

  // Whether the record of that number carries that code.
  bool holds(int number, const std::string& code) {
    constexpr std::streamoff kRecordBytes = 1000;
    constexpr std::streamoff kCodeOffset = 4;
    std::array<char, 4> stored{};
    in_.clear();
    in_.seekg((number - 1) * kRecordBytes + kCodeOffset);
    in_.read(stored.data(), stored.size());
    return in_.good() && std::string_view(stored.data(), stored.size()) == to_left(code, stored.size());
  }

 private:
  std::ifstream in_;
};

}  // namespace

Catalogue Catalogue::read(const std::filesystem::path& install) {
  const std::filesystem::path path = install / "catalogue.csv";
  const std::string file = path.string();
  std::ifstream in(path, std::ios::binary);
  if (!in) throw UsageError(file + ": cannot be opened; build the bank with ./dev bank");
  const std::string text{std::istreambuf_iterator<char>(in), {}};
  const std::vector<Row> rows = parse(file, text);
  if (rows.empty()) throw UsageError(file + ": empty; build the bank again with ./dev bank");

  std::map<std::string, std::size_t, std::less<>> column;
  for (std::size_t i = 0; i < rows[0].size(); ++i) column.emplace(rows[0][i], i);
  const auto cell = [&](std::size_t row, std::string_view name) -> const std::string& {
    const auto found = column.find(name);
    if (found == column.end() || found->second >= rows[row].size()) {
      throw UsageError(file + ", row " + std::to_string(row + 1) + ": no column " + std::string(name) +
                       "; build the bank again with ./dev bank");
    }
    return rows[row][found->second];
  };

  BankRecords records(install);
  std::vector<CatalogueEntry> entries;
  for (std::size_t i = 1; i < rows.size(); ++i) {
    CatalogueEntry entry;
    const std::optional<double> given = number(cell(i, "number"));
    if (!given || !(*given >= 1 && *given <= 9999)) {
      throw UsageError(file + ", row " + std::to_string(i + 1) + ": '" + cell(i, "number") +
                       "' is no catalogue number; build the bank again with ./dev bank");
    }
    entry.number = static_cast<int>(*given);
    entry.code = cell(i, "code");
    entry.name = cell(i, "name");
    entry.cas = cell(i, "cas");
    entry.formula = cell(i, "formula");
    entry.molar_mass_g_mol = number(cell(i, "molar_mass_g_mol"));
    entry.tc_K = number(cell(i, "tc_K"));
    entry.pc_bar = number(cell(i, "pc_bar"));
    entry.omega = number(cell(i, "omega"));
    entry.tb_K = number(cell(i, "tb_K"));
    for (std::string& synonym : split(cell(i, "synonyms"), ';')) {
      if (!synonym.empty()) entry.synonyms.push_back(std::move(synonym));
    }
    if (records.holds(entry.number, entry.code)) entries.push_back(std::move(entry));
  }
  return Catalogue(std::move(entries));
}

}  // namespace talix::cli
