// talix-bank dump: prints one record of the compiled bank with names, values, units and flags.
#pragma once

#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>

#include "bank/record.h"

namespace talix::bank {

struct DumpOptions {
  std::filesystem::path share;  // install directory, or the folder of the files
  std::string component;        // number, code, name, short name or CAS number
  bool pairs = false;           // also the pairs with this component
};

// The folder of the bank files: `share` itself where it holds them, otherwise its folder Zandor.
std::filesystem::path bank_folder(const std::filesystem::path& share);

// Number of the component a user means; nothing where no record fits. Case does not count.
std::optional<int> find_component(const Bank& bank, const std::string& wanted);

// Prints a record, one line a field. Sets whose flag is 0 are named as absent.
void print_record(std::ostream& out, const PureRecord& record);

// Gives the exit code: 0, or 1 where the bank cannot be read or has no such component.
int dump_main(const DumpOptions& options);

}  // namespace talix::bank
