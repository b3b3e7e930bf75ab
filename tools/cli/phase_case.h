// The properties of one phase by one model: what is asked and what the engine answers.
#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "cli/engine.h"
#include "cli/engine_keys.h"

namespace talix::cli {

struct PhaseRequest {
  EngineModel model;
  std::vector<const CatalogueEntry*> components;
  std::vector<double> x;  // amounts, need not sum to 1
  double T_C = 0;         // [C]
  double P_bar = 0;       // absolute [bar]
  int root = 0;           // phase asked for, a code of the engine
  bool pseudo_root = false;
  std::vector<KeySetting> settings;
};

// Rows of the property table of a phase.
struct PhaseProperty {
  const char* key;   // in JSON, with its unit
  const char* name;  // in tables
  const char* unit;
};
inline constexpr std::size_t kPhaseProperties = 14;
extern const std::array<PhaseProperty, kPhaseProperties> kPhasePropertyNames;

struct EnginePhase {
  int status = 0;    // of the call that ended the calculation, a code of the engine
  std::string call;  // that call
  bool ok = false;
  int phase = 0;           // found, a code of the engine
  bool ambiguous = false;  // one root that could not be told apart: the phase asked for
  // Results of the components; empty where the model has none.
  std::vector<double> ln_phi;                  // [-]
  std::vector<double> dlnphi_dT;               // [1/K]
  std::vector<double> dlnphi_dP;               // [1/bar]
  std::vector<std::vector<double>> dlnphi_dn;  // row i, column j: d(ln phi_i)/dn_j for one mole in all [-]
  // Nothing where the model does not compute the property.
  std::array<std::optional<double>, kPhaseProperties> properties;
  std::vector<EngineMessage> messages;
};

// Loads bank and model, applies the settings, calls the engine. A failure of the engine is part of the result; what the
// user typed wrong throws UsageError.
EnginePhase run_phase(const PhaseRequest& request, const std::filesystem::path& install);

std::string phase_table(const PhaseRequest& request, const EnginePhase& result);
std::string phase_json(const PhaseRequest& request, const EnginePhase& result);
std::string phase_csv(const PhaseRequest& request, const EnginePhase& result);

}  // namespace talix::cli
