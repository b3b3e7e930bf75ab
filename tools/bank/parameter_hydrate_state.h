// Equilibrium of a gas with its hydrate and water, with the constants that the library has for the lattice.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "bank/fit_equation.h"
#include "bank/parameter_fit.h"

namespace talix::bank {

// Chemical potential of water in the empty lattice of one structure against liquid water, as three constants at
// 273.15 K: difference of the potential and of the enthalpy [J/mol], of the heat capacity [J/(mol K)].
struct LatticeConstants {
  double potential, enthalpy, heat_capacity;
};

// Structures count from 0, cavities small 0 and large 1.
LatticeConstants library_lattice(int structure);
double cavities_per_water(int structure, int cavity);

// The potential over RT at T [K] and P [Pa].
double lattice_potential(const LatticeConstants& constants, int structure, double T, double P);

// ln of the fugacity of ice over that of liquid water at T [K] and P [Pa]; 0 above the freezing point.
double ice_over_liquid(double T, double P);

// A gas component: its curves and its solubility in water, ln H = h1 + h2/T + h3 ln T + h4 T with H in Pa.
struct HydrateGas {
  Curves curves;
  double tc, pc;  // [K], [Pa]
  std::array<double, 4> solubility{};
  bool soluble = false;
};

// One component of a gas mixture with its Langmuir coefficients of one structure.
struct GasPart {
  const HydrateGas* gas;
  double fraction;
  Langmuir small, large;
};

// Fugacities [Pa] of the components of the stable phase; classical mixing without interaction parameters.
std::vector<double> fugacities(const std::vector<GasPart>& parts, double T, double P);

// How far hydrate is from equilibrium with water at T and P: ln of the fugacity of water in the lattice over that in
// liquid water with its dissolved gas, or in ice.
double water_excess(const std::vector<GasPart>& parts, int structure, double T, double P);

// Pressure of equilibrium at T near P [Pa]; nothing where there is none within a factor of 20.
std::optional<double> equilibrium_pressure(const std::vector<GasPart>& parts, int structure, double T,
                                           double P);

}  // namespace talix::bank
