// The catalogue of the bank for programs that look components up by name.
#pragma once

#include <filesystem>

#include "bank/tables.h"

namespace talix::bank {

// Writes SHARE_DIR/catalogue.csv from DATA_DIR/components.csv: names, codes, formulas and main constants.
// Throws BankError where the table is not sound or the file cannot be written.
void write_catalogue(const std::filesystem::path& data_dir, const std::filesystem::path& share_dir);
// The same from that table in memory.
void write_catalogue(const SourceTable& table, const std::filesystem::path& share_dir);

}  // namespace talix::bank
