#include "cli/quantity.h"

#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>

#include "cli/failure.h"
#include "cli/words.h"

namespace talix::cli {

namespace {

// A value in a unit becomes the unit of the library as (value + before) * factor + after.
struct Unit {
  std::string_view name;  // in lower case
  double before;
  double factor;
  double after;
};

constexpr double kCelsiusOffset = 273.15;
constexpr double kBarPerPsi = 0.0689475729316836;  // 4.4482216152605 N over (25.4 mm)^2
constexpr double kBarPerAtm = 1.01325;

constexpr auto kTemperatureUnits = std::to_array<Unit>({
    {"", 0, 1, 0},
    {"c", 0, 1, 0},
    {"degc", 0, 1, 0},
    {"\xC2\xB0"
     "c",
     0, 1, 0},
    {"k", 0, 1, -kCelsiusOffset},
    {"f", -32, 5.0 / 9.0, 0},
    {"degf", -32, 5.0 / 9.0, 0},
    {"\xC2\xB0"
     "f",
     -32, 5.0 / 9.0, 0},
});

constexpr auto kPressureUnits = std::to_array<Unit>({
    {"", 0, 1, 0},
    {"bar", 0, 1, 0},
    {"bara", 0, 1, 0},
    {"pa", 0, 1e-5, 0},
    {"kpa", 0, 1e-2, 0},
    {"mpa", 0, 10, 0},
    {"psi", 0, kBarPerPsi, 0},
    {"psia", 0, kBarPerPsi, 0},
    {"atm", 0, kBarPerAtm, 0},
});

struct EnthalpyUnit {
  std::string_view name;  // in lower case
  double factor;          // to J/mol or J/kg
  EnthalpyBasis basis;
};

constexpr auto kEnthalpyUnits = std::to_array<EnthalpyUnit>({
    {"", 1, EnthalpyBasis::mole},
    {"j/mol", 1, EnthalpyBasis::mole},
    {"kj/mol", 1e3, EnthalpyBasis::mole},
    {"kj/kmol", 1, EnthalpyBasis::mole},
    {"mj/kmol", 1e3, EnthalpyBasis::mole},
    {"j/kg", 1, EnthalpyBasis::mass},
    {"kj/kg", 1e3, EnthalpyBasis::mass},
});

// The number at the head of a text, which is cut to what follows. Texts like "nan" and "inf" are no numbers
// here.
std::optional<double> take_number(std::string_view& text) {
  std::string_view digits = text;
  if (!digits.empty() && digits.front() == '+') digits.remove_prefix(1);
  const std::size_t sign = !digits.empty() && digits.front() == '-' ? 1 : 0;
  if (digits.size() <= sign || std::string_view("0123456789.").find(digits[sign]) == std::string_view::npos) {
    return std::nullopt;
  }
  if (digits.data() != text.data() && sign == 1) return std::nullopt;
  double value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (error != std::errc{} || !std::isfinite(value)) return std::nullopt;
  text = std::string_view(end, static_cast<std::size_t>(digits.data() + digits.size() - end));
  return value;
}

bool is_gauge(const std::string& unit) {
  return unit == "barg" || unit == "psig" || unit == "bar(g)" || unit == "psi(g)" || unit == "kpag" ||
         unit == "mpag" || unit == "atmg";
}

template <class Table>
std::optional<double> in_library_unit(double value, std::string_view unit, const Table& table) {
  for (const Unit& row : table) {
    if (row.name == unit) return (value + row.before) * row.factor + row.after;
  }
  return std::nullopt;
}

}  // namespace

double parse_temperature(std::string_view text) {
  std::string_view rest = strip(text);
  const std::optional<double> value = take_number(rest);
  if (!value) {
    throw UsageError("temperature '" + std::string(text) +
                     "': not a number; write for example 25C, 298.15K or 77F");
  }
  const std::string unit = lower(strip(rest));
  const std::optional<double> celsius = in_library_unit(*value, unit, kTemperatureUnits);
  if (!celsius) {
    throw UsageError("temperature '" + std::string(text) + "': unknown unit '" + std::string(strip(rest)) +
                     "'; the units are C, K and F");
  }
  return *celsius;
}

double parse_pressure(std::string_view text) {
  std::string_view rest = strip(text);
  const std::optional<double> value = take_number(rest);
  if (!value) {
    throw UsageError("pressure '" + std::string(text) +
                     "': not a number; write for example 50bar, 5MPa or 725psi");
  }
  const std::string unit = lower(strip(rest));
  if (is_gauge(unit)) {
    throw UsageError(
        "pressure '" + std::string(text) +
        "': gauge pressures are not taken, since the pressure of the atmosphere at the site is not "
        "known; add it and give the absolute pressure (at sea level 50 barg is 51.013 bar, 725 psig "
        "is 739.7 psi)");
  }
  const std::optional<double> bar = in_library_unit(*value, unit, kPressureUnits);
  if (!bar) {
    throw UsageError("pressure '" + std::string(text) + "': unknown unit '" + std::string(strip(rest)) +
                     "'; the units are bar, Pa, kPa, MPa, psi and atm, all absolute");
  }
  return *bar;
}

Enthalpy parse_enthalpy(std::string_view text) {
  std::string_view rest = strip(text);
  const std::optional<double> value = take_number(rest);
  if (!value) {
    throw UsageError("enthalpy '" + std::string(text) +
                     "': not a number; write for example -1200, -1.2kJ/mol or 35kJ/kg");
  }
  const std::string unit = lower(strip(rest));
  for (const EnthalpyUnit& row : kEnthalpyUnits) {
    if (row.name == unit) return {*value * row.factor, row.basis};
  }
  throw UsageError("enthalpy '" + std::string(text) + "': unknown unit '" + std::string(strip(rest)) +
                   "'; the units are J/mol, kJ/mol, kJ/kmol, MJ/kmol, J/kg and kJ/kg");
}

double parse_vapour_fraction(std::string_view text) {
  std::string_view rest = strip(text);
  const std::optional<double> value = take_number(rest);
  if (!value || !strip(rest).empty() || !(*value >= 0 && *value <= 1)) {
    throw UsageError("vapour fraction '" + std::string(text) + "': not a number from 0 to 1");
  }
  return *value;
}

std::vector<double> parse_feed(std::string_view text) { return parse_amounts(text, "feed value"); }

std::vector<double> parse_amounts(std::string_view text, std::string_view what) {
  std::vector<double> feed;
  for (const std::string& part : split(text, ',')) {
    std::string_view rest = part;
    const std::optional<double> value = take_number(rest);
    if (!value || !strip(rest).empty()) {
      throw UsageError(std::string(what) + " " + std::to_string(feed.size() + 1) + " '" + part +
                       "': not a number; write one number for each component, separated by commas");
    }
    if (*value < 0) {
      throw UsageError(std::string(what) + " " + std::to_string(feed.size() + 1) + " '" + part +
                       "': negative; the amount of a component is 0 or more");
    }
    feed.push_back(*value);
  }
  return feed;
}

}  // namespace talix::cli
