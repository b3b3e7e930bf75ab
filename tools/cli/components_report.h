// Texts of a list of catalogue entries.
#pragma once

#include <string>
#include <vector>

#include "cli/catalogue.h"

namespace talix::cli {

std::string components_table(const std::vector<const CatalogueEntry*>& entries);
std::string components_json(const std::vector<const CatalogueEntry*>& entries);
std::string components_csv(const std::vector<const CatalogueEntry*>& entries);

}  // namespace talix::cli
