// One flash: what is asked and what the library answers.
#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "cli/catalogue.h"
#include "cli/flash_type.h"
#include "cli/quantity.h"

namespace talix::cli {

enum class Basis { mole, mass };

struct FlashRequest {
  std::vector<int> numbers;        // catalogue numbers, in the order given
  std::vector<std::string> names;  // names, in the same order
  std::vector<double> feed;        // flow of each component, in a free unit of moles or of mass
  double T_C = 25;                 // temperature [C], the start value where the type finds it
  double P_bar = 1;                // pressure, absolute [bar], the start value where the type finds it
  Basis basis = Basis::mole;       // of feed, flows, fractions and compositions
  FlashType type = FlashType::tp;
  double vapour_fraction = 0;  // [mol/mol] for the types that take it
  Enthalpy enthalpy;           // of the feed, the target of the types that take it
  int verify = 1;              // level of the check behind the flashes: 0 none, 1 check and repair
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
  std::string message;                   // text of the library, without blanks at its ends; empty for none
  std::optional<float> T_C;              // [C] and
  std::optional<float> P_bar;            // [bar], where the type finds them
  float vapour_fraction = 0;             // moles of vapour over moles of feed
  std::optional<double> enthalpy_J_mol;  // of all phases per mole of feed
  std::optional<PhaseResult> vapour;     // nothing: no such phase
  std::optional<PhaseResult> liquid;
  std::optional<PhaseResult> second_liquid;  // of two liquids the one less dense for its components
};

// Checks what was typed and forms the request; `notes` takes remarks that do not stop the calculation.
FlashRequest make_request(const std::vector<const CatalogueEntry*>& components,
                          const std::vector<double>& feed, double T_C, double P_bar, Basis basis,
                          std::vector<std::string>& notes);

// Where a type finds the temperature or the pressure and none is given, the search starts here.
inline constexpr double kStartTemperature_C = 25;
inline constexpr double kStartPressure_bar = 10;

// The target of the adiabatic flashes as the library takes it: flow of the feed times J/mol over 1000. `molar_masses`
// [g/mol] belong to the components. Throws UsageError for a target of 0 where the library works relative to it.
double scaled_enthalpy(const FlashRequest& request, const std::vector<double>& molar_masses);

// Amount of the feed in moles: kmol where flows are kg.
double feed_moles(const FlashRequest& request, const std::vector<double>& molar_masses);

// Loads the bank of an install directory into the library; messages go nowhere but into the results.
void open_library(const std::filesystem::path& install);

// Runs a flash in the library, whose bank is loaded.
FlashResult run_flash(const FlashRequest& request);

// The same with the bank of an install directory.
FlashResult run_flash(const FlashRequest& request, const std::filesystem::path& install);

}  // namespace talix::cli
