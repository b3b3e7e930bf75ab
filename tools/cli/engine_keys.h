// Constants of the engine by name: the sections, their keys with values, and replacing one of them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cli/engine.h"

namespace talix::cli {

// What a constant belongs to, and with it the routine that moves it.
enum class KeyScope { model, component, pair };

struct KeySection {
  KeyScope scope;
  int code;                             // as the routine takes it
  std::string_view name;                // as it is written in front of a key
  std::vector<std::string_view> units;  // of its keys, in their order; empty: coefficients of a correlation
};

// All sections, those of a model first.
const std::vector<KeySection>& key_sections();

// Whether a model reads constants of a section.
bool reads_section(const EngineModel& model, const KeySection& section);

// "SURMD0", "SURPC0" or "SURBI0".
const char* routine_of(KeyScope scope);

// One constant with its value.
struct EngineKey {
  const KeySection* section = nullptr;
  std::string name;
  std::string unit;
  int i = 0;  // component, from 1; 0 for a constant of a model
  int j = 0;  // second component of a pair; else 0
  double value = 0;
};

// The keys of a section for component I, or the pair I, J; none where it does not apply.
std::vector<EngineKey> read_keys(const KeySection& section, int i, int j);

// "KEY=VALUE", "KEY:i=VALUE" or "KEY:i,j=VALUE", each with "SECTION." in front where it is wanted.
struct KeySetting {
  std::string section;  // name or code; empty: the first one that has the key
  std::string key;
  int i = 0;
  int j = 0;
  double value = 0;
  std::string text;  // as typed
};

// Throws UsageError where the text is none.
KeySetting parse_setting(std::string_view text);

// Replaces a constant of the list of COMPONENTS that is loaded for MODEL. Throws UsageError where there is no such key
// or component, EngineFailure where the engine refuses.
void apply_setting(const KeySetting& setting, const EngineModel& model, std::size_t components);

// Reference temperature of enthalpies and entropies of the ideal gas [K].
void set_ideal_gas_datum(double T_K);

}  // namespace talix::cli
