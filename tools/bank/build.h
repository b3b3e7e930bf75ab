// talix-bank build: compiles the tables of data/ into the files of the component bank.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "bank/record.h"
#include "bank/tables.h"

namespace talix::bank {

struct BuildOptions {
  std::filesystem::path data_dir = "data";
  std::filesystem::path out_dir = "Zandor";
  std::vector<std::filesystem::path> with{};  // tables of the user, in the order in which they apply
};

// The tables that the records are made from.
struct BankSources {
  SourceTable components, pairs;
  std::optional<SourceTable> curves, ideal_gas, vapour_pressure, transport, nrtl;  // may be absent
};
BankSources read_sources(const std::filesystem::path& data_dir);

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
// The same from tables in memory; the hydrate formers still come from the folder.
BuildResult compile_bank(const BankSources& sources, const std::filesystem::path& data_dir);

// Compiles and writes; prints what was made. Gives the exit code: 0, or 1 after a fault, which leaves no file touched.
int build_main(const BuildOptions& options);

}  // namespace talix::bank
