#include "bank/check_exceptions.h"

#include <cstdlib>
#include <string_view>

#include "bank/tables.h"

namespace talix::bank {

RecordFault fault_parts(const std::string& line) {
  constexpr std::string_view kFile = "purezan.out, record ";
  constexpr std::string_view kBehind = "): ";
  const std::size_t end = line.find(kBehind);
  if (!line.starts_with(kFile) || end == std::string::npos) return {0, line};
  return {std::atoi(line.c_str() + kFile.size()), line.substr(end + kBehind.size())};
}

ListedExceptions::ListedExceptions(const std::filesystem::path& data_dir) {
  const std::filesystem::path file = data_dir / "exceptions.csv";
  if (!std::filesystem::exists(file)) return;
  const SourceTable table = SourceTable::read(file);
  constexpr int kHighest = 1246;
  for (std::size_t row = 0; row < table.rows(); ++row) {
    if (table.text(row, "field").empty()) table.fail(row, "field", "say what the fault begins with");
    if (table.text(row, "reason").empty()) table.fail(row, "reason", "an exception wants a reason");
    rows_.push_back({table.integer(row, "number", 2, kHighest), table.text(row, "field"),
                     table.text(row, "reason"), false});
  }
}

std::optional<std::string> ListedExceptions::reason(int number, const std::string& what) {
  for (Row& row : rows_) {
    if (row.number != number || !what.starts_with(row.field)) continue;
    row.used = true;
    return row.reason;
  }
  return std::nullopt;
}

std::vector<std::string> ListedExceptions::unlisted(const std::vector<std::string>& faults) {
  std::vector<std::string> left;
  for (const std::string& fault : faults) {
    const RecordFault parts = fault_parts(fault);
    if (!reason(parts.number, parts.what)) left.push_back(fault);
  }
  return left;
}

std::vector<std::string> ListedExceptions::unused() const {
  std::vector<std::string> lines;
  for (const Row& row : rows_) {
    if (!row.used)
      lines.push_back("exceptions.csv: record " + std::to_string(row.number) + ", \"" + row.field +
                      "\" is listed, but no fault begins with it; take the row out");
  }
  return lines;
}

}  // namespace talix::bank
