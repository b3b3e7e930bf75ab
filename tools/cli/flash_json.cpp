#include <nlohmann/json.hpp>

#include "cli/flash_report.h"
#include "cli/json_number.h"

namespace talix::cli {

namespace {

using Json = nlohmann::ordered_json;

Json phase_json(const std::optional<PhaseResult>& phase) {
  if (!phase) return nullptr;
  Json composition = Json::array();
  for (const float fraction : phase->composition) composition.push_back(json_number(fraction));
  Json properties = Json::object();
  for (std::size_t i = 0; i < kPropertyNames.size(); ++i) {
    const std::optional<float>& value = phase->properties[i];
    properties[kPropertyNames[i].key] = value ? json_number(*value) : Json(nullptr);
  }
  return {{"flow", json_number(phase->flow)},
          {"fraction", json_number(phase->fraction)},
          {"composition", std::move(composition)},
          {"properties", std::move(properties)}};
}

}  // namespace

std::string flash_json(const FlashRequest& request, const FlashResult& result) {
  Json feed = Json::array();
  for (const double flow : request.feed) feed.push_back(json_number(std::optional(flow)));
  const FlashTypeRow& row = row_of(request.type);
  const auto found = [](const std::optional<float>& value) {
    return value ? json_number(*value) : Json(nullptr);
  };
  const Json report = {
      {"components", request.names},
      {"feed", std::move(feed)},
      {"basis", request.basis == Basis::mass ? "mass" : "mole"},
      {"type", row.name},
      {"T_C", row.finds_temperature ? found(result.T_C) : json_number(std::optional(request.T_C))},
      {"P_bar", row.finds_pressure ? found(result.P_bar) : json_number(std::optional(request.P_bar))},
      {"vapour_fraction",
       result.ok && request.type != FlashType::feed ? json_number(result.vapour_fraction) : Json(nullptr)},
      {"enthalpy_J_mol", json_number(result.enthalpy_J_mol)},
      {"message", result.message},
      {"phases",
       {{"vapour", phase_json(result.vapour)},
        {"liquid", phase_json(result.liquid)},
        {"second_liquid", phase_json(result.second_liquid)}}},
  };
  // A name that is not valid UTF-8 must not spoil the report.
  return report.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace talix::cli
