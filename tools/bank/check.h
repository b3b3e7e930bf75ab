// talix-bank check: validates every record of the compiled bank and writes the accuracy report.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "bank/record.h"

namespace talix::bank {

struct CheckOptions {
  std::filesystem::path share;                        // install directory, or the folder of the files
  std::filesystem::path data_dir = "data";            // reference tables of the report
  std::filesystem::path golden_dir = "tests/golden";  // reference states of viscosity, conductivity, tension
  std::filesystem::path report = "docs/accuracy.md";  // file of the report; empty for none
};

// Faults of a bank, one line each: file, record, field, value, what is wrong. Empty for a sound bank.
std::vector<std::string> find_faults(const Bank& bank);

// Gives the exit code: 0, or 1 for a file that cannot be read or a record with a fault.
int check_main(const CheckOptions& options);

}  // namespace talix::bank
