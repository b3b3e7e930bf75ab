// Temperatures, pressures and enthalpies with a unit, as typed on the command line.
#pragma once

#include <string_view>
#include <vector>

namespace talix::cli {

// "25", "25C", "25 C", "298.15K", "77 F" to degrees Celsius. Without a unit: degrees Celsius.
double parse_temperature(std::string_view text);

// "50", "50bar", "5 MPa", "725 psi" to bar (absolute). Without a unit: bar.
double parse_pressure(std::string_view text);

enum class EnthalpyBasis { mole, mass };

struct Enthalpy {
  double value = 0;  // [J/mol] or [J/kg]
  EnthalpyBasis basis = EnthalpyBasis::mole;
};

// "-1200", "-1.2 kJ/mol", "35 kJ/kg" to J/mol or J/kg of the feed. Without a unit: J/mol.
Enthalpy parse_enthalpy(std::string_view text);

// "0.3" to a vapour fraction, 0 to 1.
double parse_vapour_fraction(std::string_view text);

// "0.8,0.15,0.05" to the amounts of the components: finite and not negative.
std::vector<double> parse_feed(std::string_view text);

// The same; WHAT is what a message calls one of the values.
std::vector<double> parse_amounts(std::string_view text, std::string_view what);

}  // namespace talix::cli
