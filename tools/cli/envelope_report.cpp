#include "cli/envelope_report.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <numeric>

#include "cli/json_number.h"
#include "cli/words.h"

namespace talix::cli {

namespace {

using Json = nlohmann::ordered_json;

const char* line_name(EnvelopeLine line) { return line == EnvelopeLine::dew ? "dew" : "bubble"; }

std::string decimals(double value, int places) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.*f", places, value);
  return text.data();
}

std::string density_text(const std::optional<float>& value) {
  return value ? decimals(static_cast<double>(*value), 3) : "-";
}

// States are single-precision numbers in the library.
float single(double value) { return static_cast<float>(value); }

Json line_json(const std::vector<EnvelopePoint>& line) {
  Json list = Json::array();
  for (const EnvelopePoint& point : line) {
    const auto density = [](const std::optional<float>& value) {
      return value ? json_number(*value) : Json(nullptr);
    };
    list.push_back({{"T_C", json_number(single(point.T_C))},
                    {"P_bar", json_number(single(point.P_bar))},
                    {"status", point.ok ? "ok" : "failed"},
                    {"method", point.method},
                    {"message", point.message},
                    {"vapour_density_kg_m3", density(point.vapour_density)},
                    {"liquid_density_kg_m3", density(point.liquid_density)}});
  }
  return list;
}

// The states that are marked beside the lines.
struct NamedState {
  const char* key;
  const char* title;
  const std::optional<EnvelopeState>* at;
};

std::array<NamedState, 3> marked_states(const Envelope& envelope) {
  return {{{"critical_point", "Critical point", &envelope.critical},
           {"cricondenbar", "Cricondenbar", &envelope.cricondenbar},
           {"cricondentherm", "Cricondentherm", &envelope.cricondentherm}}};
}

void add_line(std::string& text, const std::vector<EnvelopePoint>& line) {
  for (const EnvelopePoint& point : line) {
    std::string row = "  " + to_left(line_name(point.line), 7) + to_right(decimals(point.T_C, 3), 11) +
                      to_right(decimals(point.P_bar, 4), 12) +
                      to_right(density_text(point.vapour_density), 12) +
                      to_right(density_text(point.liquid_density), 12) + "  " + to_left(point.method, 9);
    if (!point.message.empty()) row += (point.ok ? "" : "failed: ") + point.message;
    row.erase(row.find_last_not_of(' ') + 1);
    text += row + "\n";
  }
}

}  // namespace

std::string mixture_title(const FlashRequest& mixture, std::size_t most_columns) {
  const double total = std::accumulate(mixture.feed.begin(), mixture.feed.end(), 0.0);
  std::string text;
  for (std::size_t i = 0; i < mixture.names.size(); ++i) {
    std::array<char, 32> share{};
    std::snprintf(share.data(), share.size(), " %.3g", mixture.feed[i] / total);
    const std::string part = (i == 0 ? "" : ", ") + mixture.names[i] + share.data();
    if (i > 0 && columns_of(text) + columns_of(part) > most_columns) return text + ", ...";
    text += part;
  }
  return text;
}

std::string envelope_table(const FlashRequest& mixture, const Envelope& envelope) {
  std::string text = "Phase envelope (Talix " TALIX_VERSION ")\n\n  " + mixture_title(mixture, 90) +
                     (mixture.basis == Basis::mass ? " (by mass)" : " (by moles)") + "\n\n";
  text += "  " + to_left("Line", 7) + to_right("T", 11) + to_right("P", 12) + to_right("Vapour", 12) +
          to_right("Liquid", 12) + "  From\n";
  text += "  " + to_left("", 7) + to_right("C", 11) + to_right("bar", 12) + to_right("kg/m3", 12) +
          to_right("kg/m3", 12) + "\n";
  text += "  " + std::string(65, '-') + "\n";
  add_line(text, envelope.bubble);
  add_line(text, envelope.dew);
  text += "  " + std::string(65, '-') + "\n";
  for (const auto* line : {&envelope.bubble, &envelope.dew}) {
    const EnvelopePoint* const end = end_of(*line);
    if (end == nullptr) continue;
    const std::string name = std::string("  The ") + line_name(end->line) + " line ";
    const std::string& reason = line == &envelope.dew ? envelope.dew_end : envelope.bubble_end;
    text += name + "ends at " + decimals(end->T_C, 2) + " C, " + decimals(end->P_bar, 2) + " bar" +
            (reason.empty() ? "" : ": " + reason) + ".\n";
    if (line == &envelope.dew ? envelope.dew_open : envelope.bubble_open)
      text += name + "is open: it goes on beyond the range of the library.\n";
  }
  for (const NamedState& state : marked_states(envelope)) {
    if (!*state.at) continue;
    text += "  " + to_left(std::string(state.title) + ":", 16) + decimals((*state.at)->T_C, 2) + " C, " +
            decimals((*state.at)->P_bar, 2) + " bar\n";
  }
  return text;
}

std::string envelope_json(const FlashRequest& mixture, const Envelope& envelope) {
  Json feed = Json::array();
  for (const double flow : mixture.feed) feed.push_back(json_number(std::optional(flow)));
  Json report = {{"components", mixture.names},
                 {"feed", std::move(feed)},
                 {"basis", mixture.basis == Basis::mass ? "mass" : "mole"},
                 {"bubble", line_json(envelope.bubble)},
                 {"dew", line_json(envelope.dew)},
                 {"bubble_end", envelope.bubble_end},
                 {"dew_end", envelope.dew_end},
                 {"bubble_open", envelope.bubble_open},
                 {"dew_open", envelope.dew_open}};
  for (const NamedState& state : marked_states(envelope)) {
    report[state.key] = *state.at ? Json{{"T_C", json_number(single((*state.at)->T_C))},
                                         {"P_bar", json_number(single((*state.at)->P_bar))}}
                                  : Json(nullptr);
  }
  return report.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string envelope_csv(const Envelope& envelope) {
  std::string text = "branch,T_C,P_bar,status,method,message,vapour_density_kg_m3,liquid_density_kg_m3\n";
  for (const auto* line : {&envelope.bubble, &envelope.dew}) {
    for (const EnvelopePoint& point : *line) {
      const auto density = [](const std::optional<float>& value) {
        return value && std::isfinite(*value) ? shortest(*value) : std::string();
      };
      text += std::string(line_name(point.line)) + "," + shortest(single(point.T_C)) + "," +
              shortest(single(point.P_bar)) + "," + (point.ok ? "ok" : "failed") + "," + point.method + "," +
              csv_field(point.message) + "," + density(point.vapour_density) + "," +
              density(point.liquid_density) + "\n";
    }
  }
  for (const NamedState& state : marked_states(envelope)) {
    if (!*state.at) continue;
    text += std::string(state.key) + "," + shortest(single((*state.at)->T_C)) + "," +
            shortest(single((*state.at)->P_bar)) + ",ok,,,,\n";
  }
  return text;
}

}  // namespace talix::cli
