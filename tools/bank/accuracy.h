// The accuracy report: deviations of the bank's curves from the reference tables.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "bank/record.h"

namespace talix::bank {

// Compares saturation and gas properties of every component with the reference tables in `data_dir`, transport
// properties of phases with those in `golden_dir`, and writes the result to `report` as Markdown. Gives the exceptions
// for which no reason is known, one line each. Throws BankError where a table cannot be read or the file not be written.
std::vector<std::string> write_accuracy_report(const Bank& bank, const std::filesystem::path& data_dir,
                                               const std::filesystem::path& golden_dir,
                                               const std::filesystem::path& report);

}  // namespace talix::bank
