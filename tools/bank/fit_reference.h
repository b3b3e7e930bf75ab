// Reference data of one component for the fits: saturation line, gas region, ideal gas.
#pragma once

#include "bank/correlations.h"
#include "bank/fit_equation.h"

#include <map>
#include <string>
#include <vector>

namespace talix::bank {

// Constants of one component as the record of the bank will carry them.
struct FitComponent {
  int number = 0;    // catalogue number
  std::string code;  // four characters
  std::string cas;
  std::string name;
  std::string family;     // as components.csv has it
  double tc = 0.0;        // critical temperature [K], rounded to 32 bits
  double pc = 0.0;        // critical pressure [Pa], rounded to 32 bits
  double omega = 0.0;     // acentric factor [-]
  double mw = 0.0;        // molar mass [g/mol]
  double vc = 0.0;        // critical volume [m3/mol]
  double tb = 0.0;        // boiling point at 1 atm [K]; 0: none given
  double tm = 0.0;        // melting point [K]; 0: none given
  double hvap_tb = 0.0;   // heat of vaporisation at the boiling point [J/mol]; 0: none given
  bool sublimes = false;  // tb is the temperature at which the solid has 1 atm
  bool monatomic = false;
};

// One point on the saturation line; 0 where a quantity has no reference.
struct SatPoint {
  double T;     // [K]
  double psat;  // [Pa]
  double rhol;  // saturated liquid density [mol/m3]
  double rhov;  // saturated vapour density [mol/m3]
  double hvap;  // heat of vaporisation [J/mol]
};

// One single-phase point; 0 where a quantity has no reference.
struct GasPoint {
  double T;      // [K]
  double P;      // [Pa]
  double rho;    // [mol/m3]
  double cp;     // [J/(mol K)]
  double w;      // speed of sound [m/s]
  double jt;     // Joule-Thomson coefficient [K/Pa]
  bool derived;  // from the corresponding-states relation, not from an equation of the fluid
};

// Ideal-gas heat capacity at one temperature.
struct CpPoint {
  double T;       // [K]
  double cp;      // [J/(mol K)]
  double weight;  // in the fit [-]
};

// All that is known of one component.
struct Reference {
  std::string basis;            // "equation of state", "correlations" or "generalised"
  std::string source;           // citation for the saturation line
  std::string cp_source;        // citation for the ideal gas
  std::vector<SatPoint> sat;    // ascending in T
  std::vector<GasPoint> gas;    // measured-quality points
  std::vector<GasPoint> guide;  // corresponding-states points above the critical temperature
  std::vector<CpPoint> cp;      // ascending in T
  // Made by an estimation method, not published for the compound.
  bool psat_estimated = false, rhol_estimated = false, hvap_estimated = false, cp_estimated = false;
};

// The tables as read from the data directory.
struct ReferenceTables {
  std::vector<FitComponent> components;
  std::map<std::string, std::vector<SatPoint>> points;   // by CAS
  std::map<std::string, std::vector<CpPoint>> point_cp;  // by CAS
  std::map<std::string, std::string> point_source;       // by CAS
  std::map<std::string, std::vector<GasPoint>> gas;      // by CAS
  std::map<std::string, std::map<std::string, std::vector<Correlation>>>
      relations;  // by CAS, property; by rank
};

// Reads components.csv and the reference tables; false and a message where one is missing.
bool read_reference(const std::string& data_dir, ReferenceTables& tables, std::string& message);

// The saturation line of corresponding states, for components without any data or whose data no curves can follow.
void saturation_generalised(const FitComponent& c, Reference& ref);

// Puts the reference of one component together.
Reference reference_of(const ReferenceTables& tables, const FitComponent& c);

// ln(psat/Pc) = (w1 q + w2 q^1.5 + w3 q^3 + w4 q^6)/(T/Tc), q = 1 - T/Tc, least squares through the points.
// GUIDES count little: they settle the form where the points end early.
std::array<double, 4> wagner_through(const FitComponent& c, const std::vector<SatPoint>& points,
                                     const std::vector<SatPoint>& guides = {});
double wagner_pressure(const FitComponent& c, const std::array<double, 4>& w, double T);  // [Pa]

// Compressibility of the Lee-Kesler relation [-] at tr >= 1.05; 0 where it finds no density.
double lee_kesler_z(double tr, double pr, double omega);

// ln(psat/Pc) of the Lee-Kesler relation.
double lee_kesler_lnpr(double tr, double omega);

}  // namespace talix::bank
