#include "bank/fit_csv.h"

#include <cstdlib>
#include <fstream>

namespace talix::bank {

namespace {

std::vector<std::string> split(const std::string& line) {
  std::vector<std::string> cells(1);
  bool quoted = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (quoted) {
      if (c == '"' && i + 1 < line.size() && line[i + 1] == '"') {
        cells.back() += '"';
        ++i;
      } else if (c == '"') {
        quoted = false;
      } else {
        cells.back() += c;
      }
    } else if (c == '"') {
      quoted = true;
    } else if (c == ',') {
      cells.emplace_back();
    } else if (c != '\r') {
      cells.back() += c;
    }
  }
  return cells;
}

}  // namespace

const std::string& CsvTable::text(std::size_t row, const std::string& column) const {
  static const std::string none;
  const auto it = columns.find(column);
  if (it == columns.end() || it->second >= rows[row].size()) {
    return none;
  }
  return rows[row][it->second];
}

double CsvTable::number(std::size_t row, const std::string& column, double missing) const {
  const std::string& cell = text(row, column);
  return cell.empty() ? missing : std::strtod(cell.c_str(), nullptr);
}

bool read_csv(const std::string& path, CsvTable& table) {
  std::ifstream in(path);
  if (!in) {
    return false;
  }
  table = CsvTable{};
  std::string line;
  bool header = true;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#') {
      continue;
    }
    if (header) {
      const std::vector<std::string> names = split(line);
      for (std::size_t i = 0; i < names.size(); ++i) {
        table.columns[names[i]] = i;
      }
      header = false;
    } else {
      table.rows.push_back(split(line));
    }
  }
  return true;
}

}  // namespace talix::bank
