// talix-bank build: compiles the tables of data/ into the files of the component bank.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "bank/record.h"

namespace talix::bank {

struct BuildOptions {
  std::filesystem::path data_dir = "data";
  std::filesystem::path out_dir = "Zandor";
};

// What a compilation made and what it left out.
struct BuildResult {
  Bank bank;
  std::vector<std::string> notes;  // one line for each component that was left out or has generalised curves
  int components = 0;
  int fitted = 0;       // with fitted curves
  int generalised = 0;  // with curves from the acentric factor
};

// Compiles the tables in memory. Throws BankError for a fault in a table.
BuildResult compile_bank(const std::filesystem::path& data_dir);

// Compiles and writes; prints what was made. Gives the exit code: 0, or 1 after a fault.
int build_main(const BuildOptions& options);

}  // namespace talix::bank
