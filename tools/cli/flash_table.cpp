#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numeric>

#include "cli/flash_report.h"
#include "cli/words.h"

namespace talix::cli {

// The keys say the unit; J_molK is joule per mole and kelvin, J_gK per gram and kelvin.
const std::array<PropertyName, kProperties> kPropertyNames = {{
    {"molar_mass_g_mol", "Molar mass", "g/mol"},
    {"density_kg_m3", "Density", "kg/m3"},
    {"isothermal_compressibility_1_bar", "Isothermal compressibility", "1/bar"},
    {"ideal_gas_enthalpy_J_mol", "Ideal-gas enthalpy", "J/mol"},
    {"ideal_gas_entropy_J_molK", "Ideal-gas entropy", "J/(mol K)"},
    {"ideal_gas_cp_J_molK", "Ideal-gas heat capacity cp", "J/(mol K)"},
    {"enthalpy_J_mol", "Enthalpy", "J/mol"},
    {"entropy_J_molK", "Entropy", "J/(mol K)"},
    {"cv_J_gK", "Heat capacity cv", "J/(g K)"},
    {"cp_J_gK", "Heat capacity cp", "J/(g K)"},
    {"speed_of_sound_m_s", "Speed of sound", "m/s"},
    {"joule_thomson_K_bar", "Joule-Thomson coefficient", "K/bar"},
    {"viscosity_mPa_s", "Viscosity", "mPa s"},
    {"thermal_conductivity_W_mK", "Thermal conductivity", "W/(m K)"},
    {"surface_tension_mN_m", "Surface tension", "mN/m"},
}};

namespace {

constexpr std::size_t kShortestName = 28;
constexpr std::size_t kLongestName = 40;
constexpr std::size_t kUnitWidth = 11;
constexpr std::size_t kNumberWidth = 15;

std::string printed(const char* format, double value) {
  std::array<char, 64> text{};
  const int length = std::snprintf(text.data(), text.size(), format, value);
  return std::string(text.data(), static_cast<std::size_t>(std::max(length, 0)));
}

// A fraction with six decimals; where these would hide a trace, in powers of ten.
std::string fraction_text(double value) {
  if (!std::isfinite(value)) return "-";
  return value != 0 && std::abs(value) < 1e-3 ? printed("%.4e", value) : printed("%.6f", value);
}

std::string six_digits(double value) { return std::isfinite(value) ? printed("%.6g", value) : "-"; }

// The rows of one report, all with the same columns: name, unit, a number for the feed and for each phase. The column
// of the second liquid is there only where such a phase is.
class Lines {
 public:
  Lines(std::size_t name_width, bool second_liquid)
      : name_width_(name_width), columns_(second_liquid ? 4 : 3) {}

  void row(std::string_view name, std::string_view unit, const std::array<std::string, 4>& numbers) {
    std::string line = "  " + to_left(cut(name), name_width_) + "  " + to_left(unit, kUnitWidth);
    for (std::size_t i = 0; i < columns_; ++i) line += to_right(numbers[i], kNumberWidth);
    line.erase(line.find_last_not_of(' ') + 1);
    text_ += line + "\n";
  }
  void rule() {
    text_ += "  " + std::string(name_width_ + 2 + kUnitWidth + columns_ * kNumberWidth, '-') + "\n";
  }
  void line(std::string_view text) { text_ += std::string(text) + "\n"; }
  [[nodiscard]] const std::string& text() const { return text_; }

 private:
  [[nodiscard]] std::string cut(std::string_view name) const {
    if (columns_of(name) <= name_width_) return std::string(name);
    return std::string(name.substr(0, name_width_ - 3)) + "...";
  }

  std::size_t name_width_;
  std::size_t columns_;
  std::string text_;
};

std::size_t name_width(const FlashRequest& request) {
  std::size_t width = kShortestName;
  for (const std::string& name : request.names) width = std::max(width, columns_of(name));
  return std::min(width, kLongestName);
}

// A row of numbers: that of the feed and VALUE of each phase.
template <class Value>
std::array<std::string, 4> cells(const std::string& feed, const FlashResult& result, Value value,
                                 std::string (*format)(double)) {
  const auto cell = [&](const std::optional<PhaseResult>& phase) {
    return phase ? format(static_cast<double>(value(*phase))) : std::string("-");
  };
  return {feed, cell(result.vapour), cell(result.liquid), cell(result.second_liquid)};
}

// Nothing where the phases are a vapour and a liquid.
const char* phases_text(const FlashResult& result) {
  if (result.second_liquid) return result.vapour ? "vapour and two liquids" : "two liquids";
  if (!result.vapour) return "liquid only";
  return result.liquid ? nullptr : "vapour only";
}

void heading(Lines& lines, const FlashRequest& request, const FlashResult& result) {
  const auto item = [&](std::string_view name, const std::string& value) {
    lines.line("  " + to_left(name, 17) + value);
  };
  const FlashTypeRow& row = row_of(request.type);
  lines.line(std::string(row.title) + " (Talix " TALIX_VERSION ")");
  lines.line("");
  item("Temperature", row.finds_temperature && result.T_C
                          ? shortest(*result.T_C) + " C (found)"
                          : shortest(std::round(request.T_C * 1e6) / 1e6) + " C");
  item("Pressure", row.finds_pressure && result.P_bar
                       ? shortest(*result.P_bar) + " bar (absolute, found)"
                       : shortest(std::round(request.P_bar * 1e8) / 1e8) + " bar (absolute)");
  if (request.type != FlashType::feed)
    item("Vapour fraction", fraction_text(static_cast<double>(result.vapour_fraction)) + " mol/mol");
  if (row.takes_enthalpy && result.enthalpy_J_mol)
    item("Enthalpy", six_digits(*result.enthalpy_J_mol) + " J/mol of feed");
  if (const char* const phases = phases_text(result); phases != nullptr) item("Phases", phases);
  item("Message", result.message.empty() ? "none" : result.message);
  lines.line("");
}

void compositions(Lines& lines, const FlashRequest& request, const FlashResult& result) {
  const bool mass = request.basis == Basis::mass;
  const char* const fraction_unit = mass ? "kg/kg" : "mol/mol";
  const double total = std::accumulate(request.feed.begin(), request.feed.end(), 0.0);
  lines.row(mass ? "Mass fraction" : "Mole fraction", "Unit", {"Feed", "Vapour", "Liquid", "Second liquid"});
  lines.rule();
  for (std::size_t i = 0; i < request.names.size(); ++i) {
    const auto part = [i](const PhaseResult& phase) { return phase.composition[i]; };
    lines.row(request.names[i], fraction_unit,
              cells(fraction_text(request.feed[i] / total), result, part, fraction_text));
  }
  lines.rule();
  const auto fraction = [](const PhaseResult& phase) { return phase.fraction; };
  const auto flow = [](const PhaseResult& phase) { return phase.flow; };
  lines.row(mass ? "Fraction of the feed (mass)" : "Fraction of the feed (mole)", fraction_unit,
            cells(fraction_text(1), result, fraction, fraction_text));
  lines.row("Flow *", mass ? "kg" : "kmol", cells(six_digits(total), result, flow, six_digits));
  lines.line("");
}

void properties(Lines& lines, const FlashResult& result) {
  lines.row("Property", "Unit", {"", "Vapour", "Liquid", "Second liquid"});
  lines.rule();
  for (std::size_t i = 0; i < kPropertyNames.size(); ++i) {
    const auto text = [i](const std::optional<PhaseResult>& phase) {
      return phase && phase->properties[i] ? six_digits(static_cast<double>(*phase->properties[i]))
                                           : std::string("-");
    };
    lines.row(kPropertyNames[i].name, kPropertyNames[i].unit,
              {"", text(result.vapour), text(result.liquid), text(result.second_liquid)});
  }
  lines.rule();
}

}  // namespace

std::string flash_table(const FlashRequest& request, const FlashResult& result) {
  Lines lines(name_width(request), result.second_liquid.has_value());
  heading(lines, request, result);
  compositions(lines, request, result);
  properties(lines, result);
  lines.line(
      request.basis == Basis::mass
          ? "  * Flows are in the unit of the feed: kg, or whatever unit of mass the feed is given in."
          : "  * Flows are in the unit of the feed: kmol, or whatever unit of moles the feed is given in.");
  lines.line("  - An absent phase, or a property without a value.");
  return lines.text();
}

std::string flash_csv(const FlashRequest& request, const FlashResult& result) {
  const bool mass = request.basis == Basis::mass;
  const bool second = result.second_liquid.has_value();
  const std::string fraction_unit = mass ? "kg/kg" : "mol/mol";
  const double total = std::accumulate(request.feed.begin(), request.feed.end(), 0.0);
  std::string text =
      second ? "quantity,unit,feed,vapour,liquid,second liquid\n" : "quantity,unit,feed,vapour,liquid\n";
  // VALUE gives the text of a phase.
  const auto row = [&](const std::string& quantity, const std::string& unit, const std::string& feed,
                       auto&& value) {
    text += csv_field(quantity) + "," + csv_field(unit) + "," + csv_field(feed) + "," + value(result.vapour) +
            "," + value(result.liquid);
    if (second) text += "," + value(result.second_liquid);
    text += "\n";
  };
  const auto number = [](float value) { return std::isfinite(value) ? shortest(value) : std::string(); };
  const auto none = [](const std::optional<PhaseResult>&) { return std::string(); };
  const auto of = [&](auto value) {
    return [&number, value](const std::optional<PhaseResult>& phase) {
      return phase ? number(value(*phase)) : std::string();
    };
  };
  const FlashTypeRow& type = row_of(request.type);
  row("temperature", "C",
      type.finds_temperature && result.T_C ? shortest(*result.T_C) : shortest(request.T_C), none);
  row("pressure", "bar",
      type.finds_pressure && result.P_bar ? shortest(*result.P_bar) : shortest(request.P_bar), none);
  row("vapour fraction", "mol/mol",
      request.type == FlashType::feed ? std::string() : number(result.vapour_fraction), none);
  row("message", "", result.message, none);
  row("flow", mass ? "kg" : "kmol", shortest(total), of([](const PhaseResult& phase) { return phase.flow; }));
  row(mass ? "mass fraction of the feed" : "mole fraction of the feed", fraction_unit, "1",
      of([](const PhaseResult& phase) { return phase.fraction; }));
  for (std::size_t i = 0; i < request.names.size(); ++i) {
    row((mass ? "mass fraction of " : "mole fraction of ") + request.names[i], fraction_unit,
        shortest(request.feed[i] / total),
        of([i](const PhaseResult& phase) { return phase.composition[i]; }));
  }
  for (std::size_t i = 0; i < kPropertyNames.size(); ++i) {
    const auto property = [&](const std::optional<PhaseResult>& phase) {
      return phase && phase->properties[i] ? number(*phase->properties[i]) : std::string();
    };
    std::string name = lower(kPropertyNames[i].name);
    if (name.rfind("joule", 0) == 0) name = kPropertyNames[i].name;
    row(name, kPropertyNames[i].unit, "", property);
  }
  return text;
}

}  // namespace talix::cli
