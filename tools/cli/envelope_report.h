// Texts of a phase envelope: table, JSON, comma separated values.
#pragma once

#include <string>

#include "cli/envelope.h"

namespace talix::cli {

std::string envelope_table(const FlashRequest& mixture, const Envelope& envelope);
std::string envelope_json(const FlashRequest& mixture, const Envelope& envelope);
std::string envelope_csv(const Envelope& envelope);

// "methane 0.7, ethane 0.3" of the fractions of a feed, cut where it gets long.
std::string mixture_title(const FlashRequest& mixture, std::size_t most_columns);

}  // namespace talix::cli
