#include "cli/engine.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "cli/engine_keys.h"
#include "cli/failure.h"
#include "cli/words.h"
#include "talix/morve.h"

namespace talix::cli {

namespace {

// Codes of the bank are four characters wide.
constexpr std::int32_t kCodeWidth = 4;
constexpr std::int32_t kPlatform = 25;

// Enthalpies and entropies count from here, as those of the flashes do.
constexpr double kIdealGasDatum_K = 273.15;

// Names of models that are common outside the engine, in lower case.
struct ShortName {
  std::string_view name;
  int code;
};
constexpr std::array<ShortName, 5> kShortNames = {{{"pr", MORVE_PENG_ROBINSON},
                                                   {"srk", MORVE_SRK},
                                                   {"vdw", MORVE_VAN_DER_WAALS},
                                                   {"bwrs", MORVE_BWRS},
                                                   {"vardo", MORVE_VARDO1}}};

void check(const char* call, std::int32_t status) {
  if (status != MORVE_OK) throw EngineFailure{call, status};
}

std::string nearest_models(const std::string& key, const std::vector<EngineModel>& models) {
  std::vector<std::pair<std::size_t, const EngineModel*>> order;
  order.reserve(models.size());
  for (const EngineModel& model : models) order.emplace_back(edit_distance(lower(model.name), key), &model);
  std::stable_sort(order.begin(), order.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  constexpr std::size_t most = 3;
  std::string text;
  for (std::size_t i = 0; i < std::min(most, order.size()); ++i)
    text += (i == 0 ? "" : ", ") + order[i].second->name + " (" + std::to_string(order[i].second->code) + ")";
  return text;
}

void store_directory(const std::filesystem::path& install) {
  // The engine adds the names of its files to the directory as it stands.
  std::string path = (install / "Zandor").string() + "/";
  constexpr std::string_view mode = "INPUT";
  std::int32_t status = 0;
  SURPT0(path.data(), static_cast<std::int32_t>(path.size()), mode.data(),
         static_cast<std::int32_t>(mode.size()), &status);
  if (status != 0) throw EngineFailure{"SURPT0", MORVE_FAILED};
}

}  // namespace

std::vector<EngineMessage> engine_messages() {
  std::vector<EngineMessage> messages;
  std::int32_t count = 0;
  GETMORVEERRORCOUNT(&count);
  for (std::int32_t k = 1; k <= count; ++k) {
    std::string routine(MORVE_ROUTINE_LENGTH, ' ');
    std::string text(MORVE_MESSAGE_LENGTH, ' ');
    std::int32_t severity = 0;
    std::int32_t status = 0;
    GETMORVEERROR(&k, &severity, routine.data(), MORVE_ROUTINE_LENGTH, text.data(), MORVE_MESSAGE_LENGTH,
                  &status);
    EngineMessage message{severity, std::string(strip(routine)), std::string(strip(text)), 1};
    if (!messages.empty() && messages.back().routine == message.routine &&
        messages.back().text == message.text)
      ++messages.back().times;
    else
      messages.push_back(std::move(message));
  }
  return messages;
}

std::string code_text(int code) {
  const std::int32_t CODE = code;
  std::string text(MORVE_CODE_LENGTH, ' ');
  GETMORVECODETEXT(&CODE, text.data(), MORVE_CODE_LENGTH);
  return std::string(strip(text));
}

std::vector<EngineModel> engine_models() {
  std::array<std::int32_t, MORVE_MODEL_COUNT> codes{}, classes{}, fugacity{}, volume{}, enthalpy{};
  std::int32_t count = 0;
  GETMORVEMODELS(&count, codes.data(), classes.data(), fugacity.data(), volume.data(), enthalpy.data());
  std::vector<EngineModel> models;
  for (std::size_t k = 0; k < static_cast<std::size_t>(count); ++k)
    models.push_back(
        {codes[k], code_text(codes[k]), classes[k], fugacity[k] != 0, volume[k] != 0, enthalpy[k] != 0});
  std::sort(models.begin(), models.end(),
            [](const EngineModel& a, const EngineModel& b) { return a.code < b.code; });
  return models;
}

EngineModel find_model(std::string_view key_as_typed) {
  const std::string key = lower(strip(key_as_typed));
  const std::vector<EngineModel> models = engine_models();
  int code = 0;
  const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), code);
  const bool is_code = error == std::errc{} && end == key.data() + key.size();
  for (const ShortName& row : kShortNames)
    if (row.name == key) code = row.code;
  for (const EngineModel& model : models)
    if (is_code || code != 0 ? model.code == code : lower(model.name) == key) return model;
  throw UsageError("unknown model '" + std::string(strip(key_as_typed)) + "'; " +
                   (is_code ? std::string() : "nearest: " + nearest_models(key, models) + ". ") +
                   "See them all with: talix models");
}

void check_component_count(std::size_t count) {
  if (count > MORVE_MAX_COMPONENTS) {
    throw UsageError(std::to_string(count) + " components; the library takes at most " +
                     std::to_string(MORVE_MAX_COMPONENTS));
  }
}

void start_engine(const std::filesystem::path& install, const std::vector<const CatalogueEntry*>& components,
                  const EngineModel& model) {
  CLEARMORVEERRORS();
  std::int32_t status = 0;
  SURPL0(&kPlatform, &status);
  check("SURPL0", status);
  store_directory(install);

  std::string codes;
  for (const CatalogueEntry* const entry : components) codes += to_left(entry->code, kCodeWidth);
  const auto count = static_cast<std::int32_t>(components.size());
  SHINI0(&count, codes.data(), static_cast<std::int32_t>(codes.size()), &kCodeWidth, &status);
  check("SHINI0", status);

  std::int32_t slot = 0;
  SHMLD0(&model.code, &slot, &status);
  check("SHMLD0", status);
  SHDBS0(&status);
  check("SHDBS0", status);
  set_ideal_gas_datum(kIdealGasDatum_K);
}

std::int32_t slot_of(const EngineModel& model) {
  std::int32_t slot = 0;
  SMDAO1(&model.code, &slot);
  return slot;
}

}  // namespace talix::cli
