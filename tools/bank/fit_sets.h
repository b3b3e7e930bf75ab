// Fits of the saturation and transport sets of a record to published values.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "bank/fit_curves.h"
#include "bank/transport_forms.h"
#include "bank/transport_source.h"

namespace talix::bank {

// One fitted set: the cells of a record and what they reach.
struct FittedSet {
  std::string name;               // field of the record
  int flag = 0;                   // value of its flag; 0 where it has none or stays unread
  int count = 0;                  // coefficients in use
  SetValues c{};                  // rounded to 32 bits
  double tmin = 0.0, tmax = 0.0;  // range of the deviations [K]
  Deviation deviation{};          // against the source, in percent
  Deviation second{};             // over the whole range of the source; PARL2: of the conductivity
  std::string source{};
};

// Least squares of m x = b with the weights pressed towards the smallest largest deviation.
std::vector<double> fit_evenly(const std::vector<std::vector<double>>& m, const std::vector<double>& b,
                               const std::vector<double>& weight);

double rounded_to_32_bits(double v);

// Deviations over the core of a line, in its unit times `factor`; sets range and source.
template <class Value>
void measure(FittedSet& set, const SourceLine& line, double factor, Value value) {
  set.deviation = {};
  set.tmin = line.tmin;
  set.tmax = line.tmax;
  set.source = line.source;
  for (const SourcePoint& p : line.points)
    if (p.core) set.deviation.add(100.0 * (value(p.T) / (factor * p.value) - 1.0));
  set.deviation.finish();
}

// Deviations of a set over all that is core in a line.
template <class Value>
Deviation over_all(const FittedSet& set, const SourceLine& line, double factor, Value value) {
  Deviation d;
  for (const SourcePoint& p : line.points)
    if (p.core) d.add(100.0 * (value(set, p.T) / (factor * p.value) - 1.0));
  d.finish();
  return d;
}

// The widest range of a line over which FIT comes within `goal` percent; where it does over none, the set with the
// best of both, the range and the whole line. FIT takes a line and gives an optional set; VALUE takes a set and a
// temperature. Points of the source outside a range have the weight `outside`.
template <class Fit, class Value>
std::optional<FittedSet> fit_widest(const FitComponent& c, const SourceLine& line, double goal,
                                    double outside, double factor, Fit fit, Value value) {
  constexpr double kWhole = 2.0;  // what the mean over the whole line counts against the worst in the range
  if (line.points.empty()) return std::nullopt;
  std::optional<FittedSet> best;
  const auto score = [](const FittedSet& set) { return set.deviation.worst + kWhole * set.second.mean; };
  for (const auto& [low, high] : ranges_of(c, line)) {
    std::optional<FittedSet> set = fit(narrowed(line, low, high, outside));
    if (!set || set->deviation.n == 0) continue;
    set->second = over_all(*set, line, factor, value);
    if (set->deviation.worst <= goal) return set;
    if (!best || score(*set) < score(*best)) best = set;
  }
  return best;
}

// Rounds all coefficients of a set to 32 bits.
void round_all(FittedSet& set);

// DLIP and DDIP; DLIP gets the flag where it comes within half a percent or no farther than the other.
std::vector<FittedSet> fit_liquid_density(const FitComponent& c, const SourceLine& line);
// PSAT, the equation of Frost and Kalkwarf.
std::optional<FittedSet> fit_frost_kalkwarf(const FitComponent& c, const Reference& ref);
// PANTO, the extended Antoine equation with a power of T, in Pa.
std::optional<FittedSet> fit_extended_antoine(const FitComponent& c, const Reference& ref);
double panto_pressure(const SetValues& c, double T);  // [Pa]
// CCPL, heat capacity of the liquid [J/(mol K)], a polynomial in T between two limits.
std::optional<FittedSet> fit_liquid_heat_capacity(const FitComponent& c, const SourceLine& line);
double ccpl_heat_capacity(const SetValues& c, double T);  // [J/(mol K)]
// HVAPCF in its form 7, with limits that no temperature reaches.
std::optional<FittedSet> fit_heat_of_vaporisation(const FitComponent& c, const SourceLine& line);
// VIL: the widest range of the source over which one of the forms comes within two percent and stays sound from
// the freezing to the critical point.
std::optional<FittedSet> fit_liquid_viscosity(const FitComponent& c, const SourceLine& line);
// TCL, polynomial in T between two limits.
std::optional<FittedSet> fit_liquid_conductivity(const FitComponent& c, const SourceLine& line);
// SURT, a power of 1 - T/Tc.
std::optional<FittedSet> fit_surface_tension(const FitComponent& c, const SourceLine& line);
// PACHOR, with the saturated densities that the curves of the cubic give, up to where they rest on data.
std::optional<FittedSet> fit_parachor(const FitComponent& c, const SourceLine& line, const Curves& curves,
                                      const FittedSet& pressure, double highest);
// SS: viscosity from density and vapour pressure of the record.
std::optional<FittedSet> fit_pressure_viscosity(const FitComponent& c, const SourceLine& line,
                                                const std::vector<FittedSet>& density,
                                                const FittedSet& pressure);
// PARL2: from viscosity and conductivity together.
std::optional<FittedSet> fit_liquid_states(const FitComponent& c, const SourceLine& viscosity,
                                           const SourceLine& conductivity, const FittedSet& pressure);

}  // namespace talix::bank
