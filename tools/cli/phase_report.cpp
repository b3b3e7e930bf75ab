#include <algorithm>
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "cli/json_number.h"
#include "cli/phase_case.h"
#include "cli/words.h"

namespace talix::cli {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kNameWidth = 30;
constexpr std::size_t kNumberWidth = 15;

std::string digits(double value) {
  if (!std::isfinite(value)) return "-";
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.8g", value);
  return text.data();
}

double rounded(double value, double places) { return std::round(value * places) / places; }

std::string cut(std::string_view name) {
  if (columns_of(name) <= kNameWidth) return std::string(name);
  return std::string(name.substr(0, kNameWidth - 3)) + "...";
}

std::string row(std::string_view name, const std::vector<std::string>& cells) {
  std::string line = "  " + to_left(cut(name), kNameWidth);
  for (const std::string& cell : cells) line += to_right(cell, kNumberWidth);
  line.erase(line.find_last_not_of(' ') + 1);
  return line + "\n";
}

std::string rule(std::size_t cells) {
  return "  " + std::string(kNameWidth + cells * kNumberWidth, '-') + "\n";
}

std::string phase_text(const PhaseRequest& request, const EnginePhase& result) {
  std::string text = code_text(result.phase) + " (asked for: " + code_text(request.root) + ")";
  if (result.ambiguous) text += "; one root alone, which could not be told apart";
  return text;
}

std::string status_text(const EnginePhase& result) {
  return std::to_string(result.status) + " (" + code_text(result.status) + ")" +
         (result.ok ? ": no failure" : " from " + result.call);
}

std::string message_text(const EngineMessage& message) {
  std::string text = message.routine + ", severity " + std::to_string(message.severity) + ": " + message.text;
  if (message.times > 1) text += " (" + std::to_string(message.times) + " times)";
  return text;
}

std::string heading(const PhaseRequest& request, const EnginePhase& result) {
  const auto item = [](std::string_view name, const std::string& value) {
    return "  " + to_left(name, 17) + value + "\n";
  };
  std::string text = "Properties of one phase by " + request.model.name + ", model " +
                     std::to_string(request.model.code) + " (Talix " TALIX_VERSION ")\n\n";
  text += item("Temperature", shortest(rounded(request.T_C, 1e6)) + " C");
  text += item("Pressure", shortest(rounded(request.P_bar, 1e8)) + " bar (absolute)");
  text += item("Phase", phase_text(request, result));
  text += item("Status", status_text(result));
  for (const KeySetting& setting : request.settings) text += item("Replaced", setting.text);
  if (result.messages.empty()) text += item("Messages", "none");
  for (std::size_t k = 0; k < result.messages.size(); ++k)
    text += item(k == 0 ? "Messages" : "", message_text(result.messages[k]));
  return text + "\n";
}

std::string fugacities(const PhaseRequest& request, const EnginePhase& result) {
  std::string text = row("Component", {"x", "ln phi", "d(ln phi)/dT", "d(ln phi)/dP"}) +
                     row("", {"-", "-", "1/K", "1/bar"}) + rule(4);
  double total = 0;
  for (const double amount : request.x) total += amount;
  for (std::size_t i = 0; i < result.ln_phi.size(); ++i)
    text += row(request.components[i]->name, {digits(request.x[i] / total), digits(result.ln_phi[i]),
                                              digits(result.dlnphi_dT[i]), digits(result.dlnphi_dP[i])});
  text += "\n  d(ln phi_i)/dn_j for one mole of the mixture in all; row i, column j\n";
  std::vector<std::string> numbers;
  for (std::size_t j = 1; j <= result.ln_phi.size(); ++j) numbers.push_back(std::to_string(j));
  text += row("Component", numbers) + rule(numbers.size());
  for (std::size_t i = 0; i < result.dlnphi_dn.size(); ++i) {
    std::vector<std::string> cells;
    for (const double value : result.dlnphi_dn[i]) cells.push_back(digits(value));
    text += row(std::to_string(i + 1) + " " + request.components[i]->name, cells);
  }
  return text + "\n";
}

Json numbers_json(const std::vector<double>& values) {
  Json list = Json::array();
  for (const double value : values) list.push_back(json_number(std::optional(value)));
  return list;
}

Json settings_json(const PhaseRequest& request) {
  Json list = Json::array();
  for (const KeySetting& setting : request.settings) list.push_back(setting.text);
  return list;
}

}  // namespace

std::string phase_table(const PhaseRequest& request, const EnginePhase& result) {
  std::string text = heading(request, result);
  if (!result.ln_phi.empty()) text += fugacities(request, result);
  text += row("Property", {"Unit", "Value"}) + rule(2);
  for (std::size_t k = 0; k < kPhaseProperties; ++k) {
    const std::optional<double>& value = result.properties[k];
    text += row(kPhasePropertyNames[k].name, {kPhasePropertyNames[k].unit, value ? digits(*value) : "-"});
  }
  return text;
}

std::string phase_json(const PhaseRequest& request, const EnginePhase& result) {
  Json names = Json::array();
  for (const CatalogueEntry* const entry : request.components) names.push_back(entry->name);
  Json slopes = Json::array();
  for (const std::vector<double>& line : result.dlnphi_dn) slopes.push_back(numbers_json(line));
  Json properties = Json::object();
  for (std::size_t k = 0; k < kPhaseProperties; ++k)
    properties[kPhasePropertyNames[k].key] = json_number(result.properties[k]);
  Json messages = Json::array();
  for (const EngineMessage& message : result.messages)
    messages.push_back({{"severity", message.severity},
                        {"routine", message.routine},
                        {"text", message.text},
                        {"times", message.times}});
  const Json report = {
      {"model", {{"code", request.model.code}, {"name", request.model.name}}},
      {"components", std::move(names)},
      {"x", numbers_json(request.x)},
      {"T_C", json_number(std::optional(request.T_C))},
      {"P_bar", json_number(std::optional(request.P_bar))},
      {"root", code_text(request.root)},
      {"set", settings_json(request)},
      {"status", {{"code", result.status}, {"text", code_text(result.status)}, {"call", result.call}}},
      {"phase", result.ok ? Json(code_text(result.phase)) : Json(nullptr)},
      {"one_root_not_told_apart", result.ok ? Json(result.ambiguous) : Json(nullptr)},
      {"ln_phi", numbers_json(result.ln_phi)},
      {"dlnphi_dT_1_K", numbers_json(result.dlnphi_dT)},
      {"dlnphi_dP_1_bar", numbers_json(result.dlnphi_dP)},
      {"dlnphi_dn", std::move(slopes)},
      {"properties", std::move(properties)},
      {"messages", std::move(messages)},
  };
  return report.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string phase_csv(const PhaseRequest& request, const EnginePhase& result) {
  std::string text = "quantity,component,second_component,unit,value\n";
  const auto line = [&](std::string_view quantity, const std::string& first, const std::string& second,
                        std::string_view unit, double value) {
    text += std::string(quantity) + "," + csv_field(first) + "," + csv_field(second) + "," +
            std::string(unit) + "," + (std::isfinite(value) ? shortest(value) : "") + "\n";
  };
  const auto name = [&](std::size_t i) { return request.components[i]->name; };
  for (std::size_t i = 0; i < result.ln_phi.size(); ++i) {
    line("ln_phi", name(i), "", "-", result.ln_phi[i]);
    line("dlnphi_dT", name(i), "", "1/K", result.dlnphi_dT[i]);
    line("dlnphi_dP", name(i), "", "1/bar", result.dlnphi_dP[i]);
    for (std::size_t j = 0; j < result.ln_phi.size(); ++j)
      line("dlnphi_dn", name(i), name(j), "-", result.dlnphi_dn[i][j]);
  }
  for (std::size_t k = 0; k < kPhaseProperties; ++k)
    if (result.properties[k])
      line(csv_field(kPhasePropertyNames[k].name), "", "", kPhasePropertyNames[k].unit,
           *result.properties[k]);
  return text;
}

}  // namespace talix::cli
