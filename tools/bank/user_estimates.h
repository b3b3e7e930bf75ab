// Relations through the points of a user, and the estimates that stand in for what a user leaves out.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "bank/build.h"
#include "bank/correlations.h"
#include "bank/user_row.h"
#include "common/formula.h"

namespace talix::bank {

// The critical point.
struct UserCritical {
  double tc;  // [K]
  double pc;  // [Pa]
};

// Acentric factor with which the relation of Lee and Kesler meets vapour pressures [Pa] best, by least squares.
double acentric_through(const UserCritical& c, std::span<const UserPoint> points);
// The Wagner form through vapour pressures [Pa]; where they do not reach, it leans on the relation of Lee and Kesler.
Correlation pressure_through(const UserCritical& c, double omega, std::span<const UserPoint> points);
// Temperature at which a vapour pressure relation gives P [Pa], between 0.25 and 1 times the critical one.
double boiling_temperature(const UserCritical& c, const Correlation& pressure, double P);

// Rackett's form of the saturated liquid density [mol/m3] through densities: with both its constants where the points
// are wide apart, otherwise with one. Without points after Yamada and Gunn, J. Chem. Eng. Data 18 (1973) 234.
Correlation density_through(const UserCritical& c, double omega, std::span<const UserPoint> points);

// Heat of vaporisation [J/mol] from the slope of the vapour pressure; volumes after Haggenmacher, J. Am. Chem. Soc. 68
// (1946) 1633.
double vaporisation_from_slope(const UserCritical& c, const Correlation& pressure, double T);
// Watson's form through heats of vaporisation; with the usual exponent for a single one.
Correlation vaporisation_through(const UserCritical& c, std::span<const UserPoint> points);

// Surface tension [N/m]: a power of 1 - T/Tc, with the exponent 11/9 for a single point.
Correlation tension_through(const UserCritical& c, std::span<const UserPoint> points);
// The relation of Brock and Bird, AIChE J. 1 (1955) 174, for a boiling point [K].
Correlation tension_by_boiling(const UserCritical& c, double boiling);

// ln of a viscosity as a + b/T, from four points on with a term in ln T.
Correlation viscosity_through(std::span<const UserPoint> points);
// A polynomial through points, of the second degree at most.
Correlation polynomial_through(std::span<const UserPoint> points);

// Ideal-gas heat capacity [J/(mol K)] by contributions of the elements, the least squares of those that the bank holds.
std::optional<Correlation> heat_by_atoms(const BankSources& sources, const common::Atoms& atoms);

}  // namespace talix::bank
