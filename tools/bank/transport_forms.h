// The relations that the transport and saturation sets of a record feed, in the units of the record. One place
// for the fits, the checks and their tests.
#pragma once

#include <array>

namespace talix::bank {

// Coefficients of one set, unused ones 0.
using SetValues = std::array<double, 9>;

inline constexpr int kTabulatedForm = 7;        // flag of the sets with a range or an extended Antoine form
inline constexpr int kPolynomialViscosity = 1;  // flag of VIL where it is a polynomial in 100/T
inline constexpr int kFrostKalkwarf = 80;       // flag of PSAT

// Liquid viscosity [mPa s] of VIL; the flag tells the form.
double vil_viscosity(int flag, const SetValues& c, double T);
// Liquid conductivity [W/(m K)] of TCL, drawn on along its tangents outside c6 to c7.
double tcl_conductivity(const SetValues& c, double T);
// Saturated liquid density [kg/m3] of DLIP.
double dlip_density(const SetValues& c, double tc, double T);
// Saturated liquid density [kg/m3] of DDIP, whose first coefficient is in kmol/m3.
double ddip_density(const SetValues& c, double molar_mass, double T);
// Vapour pressure [MPa] of PSAT; 0 where the equation has no solution.
double psat_pressure(const SetValues& c, double T);
// Heat of vaporisation [J/mol] of HVAPCF in its form 7.
double hvap_heat(const SetValues& c, double tc, double T);
// Exponent of that form.
double hvap_exponent(const SetValues& c, double tc, double T);
// Surface tension [mN/m] of SURT.
double surt_tension(const SetValues& c, double tc, double T);

// Liquid viscosity [mPa s] and conductivity [W/(m K)] of PARL2 for a pure liquid at T [K] and P [Pa].
double parl2_viscosity(const SetValues& c, double molar_mass, double T, double P);
double parl2_conductivity(const SetValues& c, double molar_mass, double T, double P);

}  // namespace talix::bank
