// What the transport sets are fitted to: published values of one property along the saturation line.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "bank/fit_reference.h"

namespace talix::bank {

inline constexpr double kOrdinary = 250.0;  // from here on liquids are handled every day [K]

struct SourcePoint {
  double T;       // [K]
  double value;   // in the unit of the property
  double weight;  // in the fit [-]
  bool core;      // from the source that the deviations are counted against
};

// Points of one property, ascending in T; empty where nothing is published.
struct SourceLine {
  std::string source;  // citation of the core
  double tmin = 0.0;   // range of the core [K]
  double tmax = 0.0;   // [K]
  std::vector<SourcePoint> points;
};

// The first ranked relations of a property make the core; below and above their range other relations, scaled
// to meet it at its end, count little. Nothing is taken above `top` times the critical temperature.
SourceLine source_line(const ReferenceTables& tables, const FitComponent& c, const std::string& property,
                       double top);

// Saturated liquid density [mol/m3] ("rho_liq_sat") or heat of vaporisation [J/mol] ("hvap"): the points of the
// reference equation of state where there is one, otherwise as source_line has it, otherwise the general
// relations of REF.
SourceLine saturation_line(const ReferenceTables& tables, const FitComponent& c, const Reference& ref,
                           const std::string& property, double top);

// Ranges inside that of a line, the least given up first. The low end, where a liquid is a glass or nearly one, is
// given up to 0.48 of the critical temperature, the high end to 0.82.
std::vector<std::pair<double, double>> ranges_of(const FitComponent& c, const SourceLine& line);
// The line with a narrower core; what was core outside it has the weight `outside`.
SourceLine narrowed(const SourceLine& line, double low, double high, double outside);

// The relations of a property, in the order of their rank.
const std::vector<Correlation>& relations_of(const ReferenceTables& tables, const std::string& cas,
                                             const std::string& property);

}  // namespace talix::bank
