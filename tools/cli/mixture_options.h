// Options of every command that takes a mixture.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "cli/catalogue.h"

namespace talix::cli {

struct MixtureOptions {
  std::vector<std::string> components;
  std::vector<std::string> feed;
  std::string basis = "mole";
  int verify = 1;  // level of the check behind the flashes, as the library counts it
};

// Adds --comp, --feed, --basis and --verify to a command.
void add_mixture(CLI::App& command, MixtureOptions& options);

// The components named, in their order; throws UsageError for unknown ones.
std::vector<const CatalogueEntry*> components_of(const MixtureOptions& options, const Catalogue& catalogue);

}  // namespace talix::cli
