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
  const std::string text{std::istreambuf_iterator<char>(in), {}};
  if (in.bad()) throw BankError(file.string() + ": cannot be read");
  return parse(file.string(), text);
}

SourceTable SourceTable::parse(std::string name, std::string_view text) {
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
    std::vector<std::string> cells = split(table.name_, line, content);
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
      throw BankError(table.name_ + ", line " + std::to_string(line) + ": " + std::to_string(cells.size()) +
                      " fields where the header has " + std::to_string(table.columns_.size()) +
                      "; put a field that holds a comma in quotes");
    }
    table.rows_.push_back({line, std::move(cells)});
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

void SourceTable::fail(std::size_t row, std::string_view column, std::string_view what,
                       std::string_view unit) const {
  std::string message = name_ + ", line " + std::to_string(rows_.at(row).line) + ", column " +
                        std::string(column) + ": value \"" + rows_.at(row).cells[index(column)] + "\"";
  if (!unit.empty()) message += " [" + std::string(unit) + "]";
  throw BankError(message + ": " + std::string(what));
}

}  // namespace talix::bank
