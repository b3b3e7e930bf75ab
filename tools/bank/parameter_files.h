// The parameter files that stand beside the component records: groups, association, cubic variants, hydrates.
#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "bank/record.h"

namespace talix::bank {

// What the parameter files need to know of a component.
struct ParameterComponent {
  int number;
  std::string code;
  std::string cas;
  std::string name;  // at most 28 characters
  double tc;         // [K]
  double pc;         // [bar]
  double omega;      // [-]
};

// The components of the records, by ascending number.
std::vector<ParameterComponent> parameter_components(std::span<const PureRecord> records);

// A keyed file as text: the numbers of its last and first data record, the records in ascending order of their
// keys, and a last record under a key that is no component, since the search of the library never looks at the last.
class KeyedFile {
 public:
  // COLUMNS of a record; HEADER_WIDTH columns of the two numbers in front.
  KeyedFile(int columns, int header_width) : columns_(columns), header_width_(header_width) {}
  // Adds a record. Keys must ascend.
  void add(int key, const std::string& record);
  // The whole file; CLOSING is the record that stands last.
  [[nodiscard]] std::string text(const std::string& closing) const;
  [[nodiscard]] std::size_t size() const { return records_.size(); }

 private:
  [[nodiscard]] std::string line(const std::string& record) const;

  int columns_;
  int header_width_;
  int last_key_ = 0;
  std::vector<std::string> records_;
};

// Number of records of each file that was written.
struct ParameterFile {
  std::string name;
  std::size_t records;
};

// Writes the files whose tables stand in DATA_DIR to DIR; a file without its tables is left out. Throws BankError for
// a fault in a table and where a file cannot be written.
std::vector<ParameterFile> write_parameter_files(const std::filesystem::path& dir,
                                                 const std::filesystem::path& data_dir,
                                                 std::span<const PureRecord> records);

// Puts the hydrate formers of DATA_DIR/hydrate_formers.csv into the bank: those of its components that the table has.
void add_hydrate_formers(Bank& bank, const std::filesystem::path& data_dir);

// The group table TABLE ("original", "dortmund", "lyngby" or "linear") as the file has it; RECORDS gives the number of
// its subgroups.
std::string unifac_text(const std::filesystem::path& data_dir, const std::string& table,
                        std::size_t& records);
std::string association_pure_text(const std::filesystem::path& data_dir,
                                  std::span<const ParameterComponent> components, std::size_t& records);
std::string association_pair_text(const std::filesystem::path& data_dir,
                                  std::span<const ParameterComponent> components, std::size_t& records);
std::string simsci_text(const std::filesystem::path& data_dir, std::span<const ParameterComponent> components,
                        std::size_t& records);
std::string aspen_text(const std::filesystem::path& data_dir, std::span<const ParameterComponent> components,
                       std::size_t& records);

}  // namespace talix::bank
