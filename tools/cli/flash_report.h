// Texts of a flash: a table for a report, JSON, comma separated values.
#pragma once

#include <string>

#include "cli/flash_case.h"

namespace talix::cli {

std::string flash_table(const FlashRequest& request, const FlashResult& result);
std::string flash_json(const FlashRequest& request, const FlashResult& result);
std::string flash_csv(const FlashRequest& request, const FlashResult& result);

}  // namespace talix::cli
