// The text sources of the component bank: comma separated tables with a header line.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace talix::bank {

// A fault in a source table or in a bank file; the text says where it is and what to do.
struct BankError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Names a quantity in messages and bounds it.
struct Range {
  std::string_view unit;
  double low;
  double high;
};

// One source table in memory. Lines that start with # are comments. Rows count from 0.
class SourceTable {
 public:
  // Reads a table. Throws BankError where the file cannot be read, a row has not as many fields as the
  // header, or a column name stands twice.
  static SourceTable read(const std::filesystem::path& file);
  // The same from a text; `name` stands for the file in messages.
  static SourceTable parse(std::string name, std::string_view text);
  // The same, but a faulty row is left out and its fault added to the list; only a fault of the file throws.
  static SourceTable read(const std::filesystem::path& file, std::vector<std::string>& faults);

  [[nodiscard]] std::size_t rows() const { return rows_.size(); }
  [[nodiscard]] const std::vector<std::string>& columns() const { return columns_; }
  [[nodiscard]] bool has(std::string_view column) const;

  // Text of a cell as it stands. Throws where the table has no such column.
  [[nodiscard]] const std::string& text(std::size_t row, std::string_view column) const;
  // Number of a cell, nothing where the cell is empty. Throws where it is no number or outside the range.
  [[nodiscard]] std::optional<double> number(std::size_t row, std::string_view column, Range range) const;
  // The same for a cell that must be filled.
  [[nodiscard]] double required(std::size_t row, std::string_view column, Range range) const;
  // A whole number that must be filled.
  [[nodiscard]] int integer(std::size_t row, std::string_view column, int low, int high) const;

  // Throws BankError for a cell: "FILE, line N, column C: value "V" [unit]: WHAT".
  [[noreturn]] void fail(std::size_t row, std::string_view column, std::string_view what,
                         std::string_view unit = {}) const;
  // That text alone.
  [[nodiscard]] std::string fault(std::size_t row, std::string_view column, std::string_view what,
                                  std::string_view unit = {}) const;
  // "FILE, line N" of a row.
  [[nodiscard]] std::string place(std::size_t row) const;

  // Writes a cell. Throws where the table has no such column.
  void set(std::size_t row, std::string_view column, std::string text);
  // Adds a column of empty cells where the table has none of that name.
  void add_column(const std::string& column);
  // Adds an empty row that stands, in messages, where that row of the other table stands. Gives its index.
  std::size_t append(const SourceTable& other, std::size_t other_row);
  // Lets a row stand, in messages, where a row of another table stands.
  void attribute(std::size_t row, const SourceTable& other, std::size_t other_row);
  void erase(std::size_t row);

 private:
  struct Row {
    std::size_t line;
    std::vector<std::string> cells;
    std::string file;  // where the row comes from another file than the table; empty otherwise
  };

  static SourceTable parse(std::string name, std::string_view text, std::vector<std::string>* faults);
  [[nodiscard]] std::size_t index(std::string_view column) const;

  std::string name_;
  std::vector<std::string> columns_;
  std::vector<Row> rows_;
};

}  // namespace talix::bank
