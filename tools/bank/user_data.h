// Components of the user: tables that add to those of the bank or override them.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "bank/build.h"

namespace talix::bank {

// Puts the rows of the files into the tables, in the order of the files; a row may name a component that a row before
// it adds. Gives a line for each component: what was added, estimated or overridden. Throws BankError with all
// mistakes of all files, one a line; the tables are then not touched. What rests on a figure that a row gives is fitted
// anew, everything else of a component stays as it is.
std::vector<std::string> apply_user_tables(BankSources& sources, const std::filesystem::path& data_dir,
                                           const std::vector<std::filesystem::path>& files);

}  // namespace talix::bank
