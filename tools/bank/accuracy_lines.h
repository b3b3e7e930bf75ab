// What the accuracy report knows of each component, computed by the library's own engine on a compiled bank.
#pragma once

#include <string>
#include <vector>

#include "bank/fit_curves.h"
#include "bank/record.h"

namespace talix::bank {

// Cost of the stated derivatives at one state inside the zones.
struct ZoneState {
  double u, pr;      // T/Tc, P/Pc [-]
  double H, CP, JT;  // error of enthalpy [J/mol], heat capacity [%], Joule-Thomson coefficient [K/bar]
};

// Errors of the straight lines of derivatives inside the zones, against the slopes of the values.
struct ZoneErrors {
  double a = 0.0;      // mean of the end derivatives of a against the slope of a [%]
  double b = 0.0;      // the same for b, over b and per unit of T/Tc [%]
  double H = 0.0;      // largest error of the enthalpy [J/mol]
  double H_gas = 0.0;  // the same at 0.3 Pc [J/mol]
  Deviation CP;        // heat capacity, over the engine's own [%]
  double JT = 0.0;     // largest error of the Joule-Thomson coefficient at 0.3 Pc [K/bar]
  std::vector<ZoneState> states;
};

// Density, heat capacity and speed of sound of a gas, in percent.
struct GasDeviations {
  Deviation rho, cp, w;
};

// Temperatures at which the curves or the saturation line are not as they must be [K]; 0: nowhere.
struct CurveFaults {
  double a = 0.0;         // a at its floor or not finite, between 0.3 and 4 Tc
  double b = 0.0;         // b not positive or not finite, there
  double pressure = 0.0;  // vapour pressure not rising, from 0.3 Tc or where the data begin up to 0.98 Tc
  double density = 0.0;   // liquid density not falling, there
};

// Boiling point and what belongs to it.
struct BoilingFigures {
  double given = 0.0;        // boiling point of the record [K]
  double cubic = 0.0;        // of the equation [K]; 0: none found
  double source = 0.0;       // of the source of the vapour pressure [K]; 0: not reached by it
  bool sublimes = false;     // the record's temperature is below the melting point
  double hvap_given = 0.0;   // heat of vaporisation at the boiling point by its source [J/mol]; 0: none
  double hvap_cubic = 0.0;   // of the equation [J/mol]
  double hvap_slope = 0.0;   // slope of the source's vapour pressure with the volumes of the equation [J/mol]
  double rhov_source = 0.0;  // density of the saturated vapour by the reference equation [mol/m3]; 0: none
  double rhov_cubic = 0.0;   // by the equation [mol/m3]
  double psat_off = 0.0;     // vapour pressure of the equation against its source there [%]
};

// Everything the report says of one component.
struct Line {
  const FitComponent* component = nullptr;
  std::string basis;
  std::string source;  // of the saturation line
  int missing = 0;     // saturation points at which the engine finds one phase only
  Deviation psat, rhol, rhov, hvap;
  Deviation hvap_low;              // heat of vaporisation to 0.90 Tc
  Deviation psat_core, rhol_core;  // 0.50 to 0.95 Tc
  Deviation hvap_core;             // 0.50 to 0.90 Tc
  Deviation hvap_form;     // the same with vapour pressure and liquid density exact at every temperature
  GasDeviations low;       // gas states up to 100 bar
  GasDeviations low_open;  // of these the ones outside 0.95 to 1.15 Tc
  Deviation near_rho, rho, cp, w;  // above the critical temperature, below and from 1.15 Tc
  Deviation jt;                    // [mK/bar]
  Deviation wagner, cp_ig;         // vapour pressure set and heat capacity polynomial of the record
  ZoneErrors zone;
  BoilingFigures boiling;
  CurveFaults faults;
  bool hvap_estimated = false, psat_estimated = false, rhol_estimated = false;  // the source is an estimate
};

// One line for each component of the bank, in the order of their numbers. The tables must outlive the lines.
std::vector<Line> accuracy_lines(const Bank& bank, const ReferenceTables& tables);

// A figure as text, and mean and largest of a deviation; a dash where nothing was compared.
std::string figure(const char* format, double value);
std::string pair_of(const Deviation& d, const char* format = "%.2f");

}  // namespace talix::bank
