// Writes keyed parameter files byte by byte, independently of the bank tool.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "database/database_fixture.h"

namespace talix::test {

// A file of fixed-length records: numbers of the last and the first record, then the records.
inline std::string keyed_file(int columns, int header_width, const std::vector<std::string>& records,
                              int last = -1) {
  const auto line = [columns](std::string text) {
    text.resize(static_cast<std::size_t>(columns), ' ');
    return text + "\n";
  };
  const auto header = [&](int value) {
    std::string digits = std::to_string(value);
    return line(std::string(static_cast<std::size_t>(header_width) - digits.size(), ' ') + digits);
  };
  std::string text = header(last >= 0 ? last : 2 + static_cast<int>(records.size())) + header(3);
  for (const std::string& record : records) text += line(record);
  return text;
}

template <class... Values>
std::string in_columns(const char* format, Values... values) {
  char text[300];
  std::snprintf(text, sizeof text, format, values...);
  return text;
}

}  // namespace talix::test
