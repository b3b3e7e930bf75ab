// A small reader of comma separated tables with quoted fields, for the fits.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace talix::bank {

// One table in memory: named columns, rows of text.
struct CsvTable {
  std::map<std::string, std::size_t> columns;
  std::vector<std::vector<std::string>> rows;

  // Text of a column of a row; empty where the column does not exist.
  const std::string& text(std::size_t row, const std::string& column) const;
  // Number of a column of a row; `missing` where the cell is empty.
  double number(std::size_t row, const std::string& column, double missing) const;
};

// Reads a table; false where the file cannot be opened. Lines that start with # are comments.
bool read_csv(const std::string& path, CsvTable& table);

}  // namespace talix::bank
