// The part of the accuracy report on the saturation and transport sets.
#pragma once

#include <filesystem>
#include <ostream>

#include "bank/record.h"

namespace talix::bank {

// Writes the deviations of transport.csv in `data_dir`; nothing where there is no such table. Throws BankError where
// a set of the bank is not that of the table.
void write_transport_report(std::ostream& out, const Bank& bank, const std::filesystem::path& data_dir);

}  // namespace talix::bank
