// One isothermal flash: what is asked and what the library answers.
#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "cli/catalogue.h"

namespace talix::cli {

enum class Basis { mole, mass };

struct FlashRequest {
  std::vector<int> numbers;        // catalogue numbers, in the order given
  std::vector<std::string> names;  // names, in the same order
  std::vector<double> feed;        // flow of each component, in a free unit of moles or of mass
  double T_C = 25;                 // temperature [C]
  double P_bar = 1;                // pressure, absolute [bar]
  Basis basis = Basis::mole;       // of feed, flows, fractions and compositions
};

// Rows of the property table of a phase, in the order of the library.
inline constexpr int kProperties = 15;

struct PropertyName {
  const char* key;   // in JSON, with its unit
  const char* name;  // in tables
  const char* unit;
};

extern const std::array<PropertyName, kProperties> kPropertyNames;

struct PhaseResult {
  float flow = 0;                  // in the unit of the feed
  float fraction = 0;              // of the feed, on the basis of the request
  std::vector<float> composition;  // fractions on the basis of the request
  // Nothing where the library did not calculate the property.
  std::array<std::optional<float>, kProperties> properties;
};

struct FlashResult {
  bool ok = false;
  std::string message;                // text of the library, without blanks at its ends; empty for none
  float vapour_fraction = 0;          // moles of vapour over moles of feed
  std::optional<PhaseResult> vapour;  // nothing: no such phase
  std::optional<PhaseResult> liquid;
};

// Checks what was typed and forms the request; `notes` takes remarks that do not stop the calculation.
FlashRequest make_request(const std::vector<const CatalogueEntry*>& components,
                          const std::vector<double>& feed, double T_C, double P_bar, Basis basis,
                          std::vector<std::string>& notes);

// Runs the flash in the library with the bank of an install directory.
FlashResult run_flash(const FlashRequest& request, const std::filesystem::path& install);

}  // namespace talix::cli
