// The property engine alone, as the commands use it: models, a component list with its data, messages.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "cli/catalogue.h"

namespace talix::cli {

// One message of the engine, with the number of times that it came in a row.
struct EngineMessage {
  int severity = 0;  // 1 warning, 3 failure
  std::string routine;
  std::string text;
  int times = 1;
};

// Messages since they were cleared, oldest first; the engine keeps the last fifteen.
std::vector<EngineMessage> engine_messages();

// A status or another code of the engine in words.
std::string code_text(int code);

struct EngineModel {
  int code = 0;
  std::string name;
  int class_code = 0;
  bool fugacity = false;  // what the engine computes with it
  bool volume = false;
  bool enthalpy = false;

  [[nodiscard]] bool computes() const { return fugacity || volume || enthalpy; }
};

// All models that can be loaded, by code.
std::vector<EngineModel> engine_models();

// The model of a code, a name or a short name (PR, SRK, VDW, BWRS), without regard to case; throws UsageError with
// the nearest names.
EngineModel find_model(std::string_view key);

// A failure of the engine: the status in words, and what its messages tell.
struct EngineFailure {
  std::string call;  // routine that failed
  int status = 0;
};

// Refuses more components than the engine has room for.
void check_component_count(std::size_t count);

// Starts the engine for a component list and a model: data of the bank, ideal-gas datum of the flashes. Clears the
// messages first. Throws EngineFailure.
void start_engine(const std::filesystem::path& install, const std::vector<const CatalogueEntry*>& components,
                  const EngineModel& model);

// Slot of a model that is loaded.
std::int32_t slot_of(const EngineModel& model);

}  // namespace talix::cli
