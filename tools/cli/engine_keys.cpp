#include "cli/engine_keys.h"

#include <array>
#include <charconv>
#include <cmath>

#include "cli/failure.h"
#include "cli/words.h"
#include "talix/morve.h"

namespace talix::cli {

namespace {

// One call of the routine of a scope.
struct KeyTable {
  std::int32_t count = 0;
  std::string names = std::string(std::size_t{MORVE_MAX_KEYS} * MORVE_KEY_LENGTH, ' ');
  std::array<double, MORVE_MAX_KEYS> values{};
  std::int32_t status = 0;

  void move(const KeySection& section, int i, int j, std::int32_t action) {
    const std::int32_t width = MORVE_KEY_LENGTH;
    const auto length = static_cast<std::int32_t>(names.size());
    const std::int32_t code = section.code;
    const std::int32_t I = i;
    const std::int32_t J = j;
    switch (section.scope) {
      case KeyScope::model:
        SURMD0(&count, names.data(), length, &width, values.data(), &action, &code, &status);
        break;
      case KeyScope::component:
        SURPC0(&count, names.data(), length, &width, values.data(), &action, &I, &code, &status);
        break;
      case KeyScope::pair:
        SURBI0(&count, names.data(), length, &width, values.data(), &action, &I, &J, &code, &status);
        break;
    }
  }
  [[nodiscard]] std::string name(std::int32_t k) const {
    constexpr std::size_t width = MORVE_KEY_LENGTH;
    return std::string(strip(std::string_view(names).substr(static_cast<std::size_t>(k) * width, width)));
  }
};

const char* scope_name(KeyScope scope) {
  switch (scope) {
    case KeyScope::model:
      return "a model";
    case KeyScope::component:
      return "a component";
    default:
      return "a pair";
  }
}

KeyScope scope_of(const KeySetting& setting) {
  if (setting.j != 0) return KeyScope::pair;
  return setting.i != 0 ? KeyScope::component : KeyScope::model;
}

bool is_section(const KeySection& section, const std::string& key) {
  return lower(section.name) == lower(key) || std::to_string(section.code) == key;
}

// The sections that may hold the key: those of its scope, and of the section that was named, or those the model reads
// in front of all others.
std::vector<const KeySection*> candidates(const KeySetting& setting, const EngineModel& model) {
  const KeyScope scope = scope_of(setting);
  std::vector<const KeySection*> found;
  std::vector<const KeySection*> others;
  for (const KeySection& section : key_sections()) {
    if (section.scope != scope) continue;
    if (!setting.section.empty()) {
      if (is_section(section, setting.section)) found.push_back(&section);
    } else if (reads_section(model, section)) {
      found.push_back(&section);
    } else {
      others.push_back(&section);
    }
  }
  found.insert(found.end(), others.begin(), others.end());
  if (!found.empty()) return found;
  std::string names;
  for (const KeySection& section : key_sections())
    if (section.scope == scope) names += (names.empty() ? "" : ", ") + std::string(section.name);
  throw UsageError("--set " + setting.text + ": no section '" + setting.section + "' of " +
                   scope_name(scope) + "; there are " + names);
}

void check_index(const KeySetting& setting, int index, std::size_t components) {
  if (index >= 1 && static_cast<std::size_t>(index) <= components) return;
  throw UsageError("--set " + setting.text + ": no component " + std::to_string(index) + "; --comp lists " +
                   std::to_string(components) + ", counted from 1");
}

// The keys that would have been right: those of the sections that MODEL reads, or of the one that was named.
std::string valid_keys(const KeySetting& setting, const EngineModel& model,
                       const std::vector<const KeySection*>& sections) {
  std::string text;
  for (const KeySection* const section : sections) {
    if (setting.section.empty() && !reads_section(model, *section)) continue;
    for (const EngineKey& key : read_keys(*section, setting.i, setting.j))
      text += (text.empty() ? "" : ", ") + key.name;
  }
  return text.empty() ? "none here" : text;
}

int parse_index(std::string_view text, std::string_view whole) {
  int index = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), index);
  if (error == std::errc{} && end == text.data() + text.size() && index >= 1) return index;
  throw UsageError(
      "--set " + std::string(whole) + ": '" + std::string(text) +
      "' is no component number; write KEY:1=VALUE for a component and KEY:1,2=VALUE for a pair");
}

}  // namespace

std::vector<EngineKey> read_keys(const KeySection& section, int i, int j) {
  KeyTable table;
  table.move(section, i, j, MORVE_READ);
  std::vector<EngineKey> keys;
  for (std::int32_t k = 0; k < table.count; ++k) {
    const auto at = static_cast<std::size_t>(k);
    const std::string unit = at < section.units.size() ? std::string(section.units[at]) : std::string();
    // A negative zero of an antisymmetric pair reads as zero.
    keys.push_back({&section, table.name(k), unit, i, j, table.values[at] + 0.0});
  }
  return keys;
}

KeySetting parse_setting(std::string_view text) {
  KeySetting setting;
  setting.text = std::string(strip(text));
  const std::size_t equals = text.rfind('=');
  if (equals == std::string_view::npos || strip(text.substr(0, equals)).empty()) {
    throw UsageError(
        "--set " + setting.text +
        ": write KEY=VALUE for a model, KEY:1=VALUE for a component, KEY:1,2=VALUE for a pair, with "
        "SECTION. in front where it is wanted");
  }
  const std::string_view digits = strip(text.substr(equals + 1));
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), setting.value);
  if (error != std::errc{} || end != digits.data() + digits.size() || !std::isfinite(setting.value))
    throw UsageError("--set " + setting.text + ": '" + std::string(digits) + "' is no finite number");

  std::string_view key = strip(text.substr(0, equals));
  if (const std::size_t colon = key.rfind(':'); colon != std::string_view::npos) {
    const std::vector<std::string> indices = split(key.substr(colon + 1), ',');
    if (indices.size() > 2)
      throw UsageError("--set " + setting.text + ": more than two components; a pair is KEY:1,2=VALUE");
    setting.i = parse_index(indices[0], setting.text);
    if (indices.size() == 2) setting.j = parse_index(indices[1], setting.text);
    key = strip(key.substr(0, colon));
  }
  if (const std::size_t dot = key.find('.'); dot != std::string_view::npos) {
    setting.section = std::string(strip(key.substr(0, dot)));
    key = strip(key.substr(dot + 1));
  }
  setting.key = std::string(key);
  return setting;
}

void apply_setting(const KeySetting& setting, const EngineModel& model, std::size_t components) {
  const KeyScope scope = scope_of(setting);
  if (scope != KeyScope::model) check_index(setting, setting.i, components);
  if (scope == KeyScope::pair) check_index(setting, setting.j, components);
  if (scope == KeyScope::pair && setting.i == setting.j)
    throw UsageError("--set " + setting.text + ": a pair has two different components");
  const std::vector<const KeySection*> sections = candidates(setting, model);
  for (const KeySection* const section : sections) {
    KeyTable table;
    table.move(*section, setting.i, setting.j, MORVE_READ);
    for (std::int32_t k = 0; k < table.count; ++k) {
      if (lower(table.name(k)) != lower(setting.key)) continue;
      table.values[static_cast<std::size_t>(k)] = setting.value;
      table.move(*section, setting.i, setting.j, MORVE_WRITE);
      if (table.status != MORVE_OK) throw EngineFailure{routine_of(scope), table.status};
      return;
    }
  }
  throw UsageError("--set " + setting.text + ": no key '" + setting.key + "' of " + scope_name(scope) +
                   "; keys: " + valid_keys(setting, model, sections) + ". See them with: talix keys " +
                   std::to_string(model.code) + " --all");
}

void set_ideal_gas_datum(double T_K) {
  for (const KeySection& section : key_sections()) {
    if (section.scope != KeyScope::model || section.code != MORVE_IDEAL_GAS_MODEL) continue;
    KeyTable table;
    table.values[0] = T_K;
    table.move(section, 0, 0, MORVE_WRITE);
    if (table.status != MORVE_OK) throw EngineFailure{"SURMD0", table.status};
  }
}

}  // namespace talix::cli
