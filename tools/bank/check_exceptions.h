// Faults that are known and stay: data/exceptions.csv names the record, what the fault begins with, and the reason.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace talix::bank {

// One fault as the check words it, taken apart.
struct RecordFault {
  int number = 0;    // of the record; 0 where the line names none of purezan.out
  std::string what;  // from the field on
};
RecordFault fault_parts(const std::string& line);

class ListedExceptions {
 public:
  // Reads the table of a data directory; an empty list where there is none. Throws BankError for a row that cannot be.
  explicit ListedExceptions(const std::filesystem::path& data_dir);
  // The reason listed for a fault of a record; nothing where it is not listed.
  std::optional<std::string> reason(int number, const std::string& what);
  // The faults that are not listed.
  std::vector<std::string> unlisted(const std::vector<std::string>& faults);
  // Rows that no fault has asked for so far, one line each: what they excuse is no longer so.
  [[nodiscard]] std::vector<std::string> unused() const;

 private:
  struct Row {
    int number;
    std::string field, reason;
    bool used;
  };
  std::vector<Row> rows_;
};

}  // namespace talix::bank
