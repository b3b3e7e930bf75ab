#include <algorithm>
#include <cmath>
#include <limits>

#include "cli/failure.h"
#include "cli/flash_case.h"
#include "cli/words.h"
#include "talix/talix.h"

namespace talix::cli {

namespace {

// The tables of the library end here.
constexpr std::size_t kMostComponents = TALIX_MAX_COMPONENTS;

bool fits_single_precision(double value) {
  return std::abs(value) <= static_cast<double>(std::numeric_limits<float>::max());
}

}  // namespace

FlashRequest make_request(const std::vector<const CatalogueEntry*>& components,
                          const std::vector<double>& feed, double T_C, double P_bar, Basis basis,
                          std::vector<std::string>& notes) {
  if (components.size() > kMostComponents) {
    throw UsageError(std::to_string(components.size()) + " components; the library takes at most " +
                     std::to_string(kMostComponents));
  }
  if (components.size() != feed.size()) {
    throw UsageError(std::to_string(components.size()) + " components but " + std::to_string(feed.size()) +
                     " feed values; --feed takes one value for each component of --comp");
  }
  double total = 0;
  for (const double flow : feed) {
    if (!std::isfinite(flow) || !(flow >= 0))
      throw UsageError("a feed value is negative or no finite number");
    total += flow;
  }
  if (!fits_single_precision(total)) {
    throw UsageError("the total feed of " + shortest(total) + " is too large; use a larger unit");
  }
  if (!std::isfinite(T_C) || !fits_single_precision(T_C))
    throw UsageError("the temperature is no finite number");
  if (!std::isfinite(P_bar) || !fits_single_precision(P_bar))
    throw UsageError("the pressure is no finite number");

  FlashRequest request;
  for (const CatalogueEntry* const entry : components) {
    const bool first_time =
        std::find(request.numbers.begin(), request.numbers.end(), entry->number) == request.numbers.end();
    const std::string note =
        entry->name + " is listed more than once; each place counts as a component of its own";
    if (!first_time && std::find(notes.begin(), notes.end(), note) == notes.end()) notes.push_back(note);
    request.numbers.push_back(entry->number);
    request.names.push_back(entry->name);
  }
  request.feed = feed;
  request.T_C = T_C;
  request.P_bar = P_bar;
  request.basis = basis;
  return request;
}

}  // namespace talix::cli
