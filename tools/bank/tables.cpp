#include "bank/tables.h"

#include <csv.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>
#include <iterator>
#include <sstream>
#include <utility>

namespace talix::bank {

namespace {

// Collects the fields of one logical line.
struct Fields {
  std::vector<std::string> cells;
  bool complete = false;
};

void take_field(void* text, size_t size, void* target) {
  static_cast<Fields*>(target)->cells.emplace_back(static_cast<const char*>(text), size);
}

void take_row(int /*terminator*/, void* target) { static_cast<Fields*>(target)->complete = true; }

// Parses one physical line; a table of the bank has no field that spans lines.
std::vector<std::string> split(const std::string& name, std::size_t line, std::string_view text) {
  csv_parser parser;
  if (csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI) != 0) {
    throw BankError(name + ": the table reader did not start");
  }
  Fields fields;
  const bool parsed =
      csv_parse(&parser, text.data(), text.size(), take_field, take_row, &fields) == text.size();
  const bool finished = parsed && csv_fini(&parser, take_field, take_row, &fields) == 0;
  csv_free(&parser);
  if (!finished) {
    throw BankError(name + ", line " + std::to_string(line) +
                    ": a quote is not closed or stands inside a field; put the whole field in quotes and "
                    "double each quote inside it");
  }
  return std::move(fields.cells);
}

std::string content_of(const std::filesystem::path& file, std::ifstream& in) {
  std::string text{std::istreambuf_iterator<char>(in), {}};
  if (in.bad()) throw BankError(file.string() + ": cannot be read");
  return text;
}

// A bound as a reader would write it.
std::string plain(double value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

}  // namespace

SourceTable SourceTable::read(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw BankError(file.string() + ": cannot be opened; name the folder of the tables with --data");
  return parse(file.string(), content_of(file, in));
}

SourceTable SourceTable::read(const std::filesystem::path& file, std::vector<std::string>& faults) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw BankError(file.string() + ": cannot be opened; check the name");
  std::string text = content_of(file, in);
  constexpr std::string_view kMark = "\xEF\xBB\xBF";  // some spreadsheets begin a text with it
  if (text.starts_with(kMark)) text.erase(0, kMark.size());
  return parse(file.string(), text, &faults);
}

SourceTable SourceTable::parse(std::string name, std::string_view text) {
  return parse(std::move(name), text, nullptr);
}

SourceTable SourceTable::parse(std::string name, std::string_view text, std::vector<std::string>* faults) {
  SourceTable table;
  table.name_ = std::move(name);
  std::size_t line = 0;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view content = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    ++line;
    if (!content.empty() && content.back() == '\r') content.remove_suffix(1);
    if (content.empty() || content.front() == '#') continue;
    std::vector<std::string> cells;
    try {
      cells = split(table.name_, line, content);
    } catch (const BankError& error) {
      if (faults == nullptr || table.columns_.empty()) throw;
      faults->emplace_back(error.what());
      continue;
    }
    if (table.columns_.empty()) {
      table.columns_ = std::move(cells);
      for (std::size_t i = 0; i < table.columns_.size(); ++i) {
        if (std::count(table.columns_.begin(), table.columns_.end(), table.columns_[i]) > 1) {
          throw BankError(table.name_ + ", line " + std::to_string(line) + ": column " + table.columns_[i] +
                          " stands twice in the header; rename one");
        }
      }
      continue;
    }
    if (cells.size() != table.columns_.size()) {
      const std::string fault = table.name_ + ", line " + std::to_string(line) + ": " +
                                std::to_string(cells.size()) + " fields where the header has " +
                                std::to_string(table.columns_.size()) +
                                "; put a field that holds a comma in quotes";
      if (faults == nullptr) throw BankError(fault);
      faults->push_back(fault);
      continue;
    }
    table.rows_.push_back({line, std::move(cells), {}});
  }
  if (table.columns_.empty()) throw BankError(table.name_ + ": empty table, no header line");
  return table;
}

bool SourceTable::has(std::string_view column) const {
  return std::find(columns_.begin(), columns_.end(), column) != columns_.end();
}

std::size_t SourceTable::index(std::string_view column) const {
  const auto found = std::find(columns_.begin(), columns_.end(), column);
  if (found == columns_.end()) {
    throw BankError(name_ + ": column " + std::string(column) + " is missing in the header; add it");
  }
  return static_cast<std::size_t>(found - columns_.begin());
}

const std::string& SourceTable::text(std::size_t row, std::string_view column) const {
  return rows_.at(row).cells[index(column)];
}

std::optional<double> SourceTable::number(std::size_t row, std::string_view column, Range range) const {
  const std::string& cell = text(row, column);
  if (cell.empty()) return std::nullopt;
  double value = 0;
  const char* const last = cell.data() + cell.size();
  const auto [end, error] = std::from_chars(cell.data(), last, value);
  if (error != std::errc{} || end != last || !std::isfinite(value)) {
    fail(row, column, "not a number; write a plain decimal number", range.unit);
  }
  if (!(value >= range.low && value <= range.high)) {
    fail(row, column,
         "outside " + plain(range.low) + " to " + plain(range.high) + "; check the figure and its unit",
         range.unit);
  }
  return value;
}

double SourceTable::required(std::size_t row, std::string_view column, Range range) const {
  const std::optional<double> value = number(row, column, range);
  if (!value) fail(row, column, "empty; this figure is needed", range.unit);
  return *value;
}

int SourceTable::integer(std::size_t row, std::string_view column, int low, int high) const {
  const std::string& cell = text(row, column);
  int value = 0;
  const char* const last = cell.data() + cell.size();
  const auto [end, error] = std::from_chars(cell.data(), last, value);
  if (error != std::errc{} || end != last) fail(row, column, "not a whole number; write digits only");
  if (value < low || value > high) {
    fail(row, column, "outside " + std::to_string(low) + " to " + std::to_string(high));
  }
  return value;
}

std::string SourceTable::place(std::size_t row) const {
  const Row& at = rows_.at(row);
  return (at.file.empty() ? name_ : at.file) + ", line " + std::to_string(at.line);
}

std::string SourceTable::fault(std::size_t row, std::string_view column, std::string_view what,
                               std::string_view unit) const {
  std::string message = place(row) + ", column " + std::string(column) + ": value \"" +
                        rows_.at(row).cells[index(column)] + "\"";
  if (!unit.empty()) message += " [" + std::string(unit) + "]";
  return message + ": " + std::string(what);
}

void SourceTable::fail(std::size_t row, std::string_view column, std::string_view what,
                       std::string_view unit) const {
  throw BankError(fault(row, column, what, unit));
}

void SourceTable::set(std::size_t row, std::string_view column, std::string text) {
  rows_.at(row).cells[index(column)] = std::move(text);
}

void SourceTable::add_column(const std::string& column) {
  if (has(column)) return;
  columns_.push_back(column);
  for (Row& row : rows_) row.cells.emplace_back();
}

std::size_t SourceTable::append(const SourceTable& other, std::size_t other_row) {
  rows_.push_back({0, std::vector<std::string>(columns_.size()), {}});
  attribute(rows_.size() - 1, other, other_row);
  return rows_.size() - 1;
}

void SourceTable::attribute(std::size_t row, const SourceTable& other, std::size_t other_row) {
  const Row& origin = other.rows_.at(other_row);
  rows_.at(row).line = origin.line;
  rows_.at(row).file = origin.file.empty() ? other.name_ : origin.file;
}

void SourceTable::erase(std::size_t row) { rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(row)); }

}  // namespace talix::bank
