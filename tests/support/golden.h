// Tables of expected values: comma-separated text files in tests/golden, the first line names the columns.
#pragma once

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace talix::test {

using GoldenRow = std::vector<std::string>;

// All rows behind the line of names; empty when the file does not exist.
inline std::vector<GoldenRow> golden_rows(const std::string& file) {
  std::ifstream in(std::string(TALIX_TEST_SOURCE) + "/tests/golden/" + file);
  std::vector<GoldenRow> rows;
  std::string line;
  std::getline(in, line);
  while (std::getline(in, line)) {
    GoldenRow row;
    std::istringstream cells(line);
    for (std::string cell; std::getline(cells, cell, ',');) row.push_back(cell);
    rows.push_back(row);
  }
  return rows;
}

}  // namespace talix::test
