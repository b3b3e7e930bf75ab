// Temperatures and pressures with a unit, as typed on the command line.
#pragma once

#include <string_view>
#include <vector>

namespace talix::cli {

// "25", "25C", "25 C", "298.15K", "77 F" to degrees Celsius. Without a unit: degrees Celsius.
double parse_temperature(std::string_view text);

// "50", "50bar", "5 MPa", "725 psi" to bar (absolute). Without a unit: bar.
double parse_pressure(std::string_view text);

// "0.8,0.15,0.05" to the amounts of the components: finite and not negative.
std::vector<double> parse_feed(std::string_view text);

}  // namespace talix::cli
