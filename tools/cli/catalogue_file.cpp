// Reader of catalogue.csv.
#include <csv.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <system_error>
#include <utility>

#include "cli/catalogue.h"
#include "cli/failure.h"
#include "cli/flash_case.h"
#include "cli/words.h"
#include "talix/talix.h"

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
    return this->code(number) == std::optional(to_left(code, kCodeBytes));
  }

  // The code in the record of that number.
  std::optional<std::string> code(int number) {
    constexpr std::streamoff kRecordBytes = 1000;
    constexpr std::streamoff kCodeOffset = 4;
    std::array<char, kCodeBytes> stored{};
    in_.clear();
    in_.seekg((number - 1) * kRecordBytes + kCodeOffset);
    in_.read(stored.data(), stored.size());
    if (!in_.good()) return std::nullopt;
    return std::string(stored.data(), stored.size());
  }

 private:
  static constexpr std::size_t kCodeBytes = 4;
  std::ifstream in_;
};

std::optional<double> above_zero(float value) {
  return value > 0.0F ? std::optional(static_cast<double>(value)) : std::nullopt;
}

// What the catalogue call of the library returns; empty where it reads no component file.
std::vector<CatalogueEntry> entries_of_library(const std::filesystem::path& install) {
  constexpr std::size_t kRecords = TALIX_CATALOGUE_RECORDS;
  constexpr std::size_t kNameLength = TALIX_NAME_LENGTH;
  std::vector<float> CRITT(kRecords), CRITP(kRecords), MOLWT(kRecords), APBPT(kRecords), FRZPT(kRecords),
      HEATC(kRecords);
  std::string PNAME(kRecords * kNameLength, ' ');
  std::int32_t COUNT = 0;
  open_library(install);
  GETTALIXPROPS(&COUNT, CRITT.data(), CRITP.data(), MOLWT.data(), APBPT.data(), FRZPT.data(), HEATC.data(),
                PNAME.data(), TALIX_NAME_LENGTH);
  BankRecords records(install);
  std::vector<CatalogueEntry> entries;
  for (std::size_t i = 0; i < kRecords && i < static_cast<std::size_t>(std::max(COUNT, 0)); ++i) {
    const std::string_view name = strip(std::string_view(PNAME).substr(i * kNameLength, kNameLength));
    if (name.empty() || !(MOLWT[i] > 0.0F)) continue;
    constexpr double kBarPerMegapascal = 10;
    CatalogueEntry entry;
    entry.number = static_cast<int>(i) + 1;
    entry.code = records.code(entry.number).value_or("");
    entry.name = name;
    entry.molar_mass_g_mol = above_zero(MOLWT[i]);
    entry.tc_K = above_zero(CRITT[i]);
    entry.pc_bar = above_zero(CRITP[i]);
    if (entry.pc_bar) *entry.pc_bar *= kBarPerMegapascal;
    entry.tb_K = above_zero(APBPT[i]);
    entries.push_back(std::move(entry));
  }
  return entries;
}

}  // namespace

Catalogue Catalogue::read(const std::filesystem::path& install) {
  const std::filesystem::path path = install / "catalogue.csv";
  std::error_code error;
  if (!std::filesystem::exists(path, error)) {
    std::vector<CatalogueEntry> found = entries_of_library(install);
    if (!found.empty()) return Catalogue(std::move(found));
  }
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
