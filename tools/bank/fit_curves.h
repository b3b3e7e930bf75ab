// Fit of the fifteen curve constants of one component.
#pragma once

#include "bank/fit_reference.h"

namespace talix::bank {

// Deviations of one component, in percent of the reference.
struct Deviation {
  int n = 0;
  double mean = 0.0;   // of the absolute deviations
  double worst = 0.0;  // largest absolute deviation
  void add(double percent);
  void finish();  // turns the running sum into the mean
};

// What the curves reach.
struct CurveFigures {
  int missing = 0;                           // saturation points at which the equation has one phase only
  Deviation psat, rhol, rhov, hvap;          // reduced temperatures 0.40 to 0.98
  Deviation rho_gas, cp_gas, w_gas, jt_gas;  // points above the critical temperature, to 400 bar
  double zone_a = 0.0;  // slope of a across its zone against the mean of the end derivatives [%]
  double zone_b = 0.0;  // the same for b, as a share of b per unit of T/Tc [%]
  double zone_h = 0.0;  // largest error of the residual enthalpy inside the zone, over RT [-]
};

struct CurveFit {
  Curves curves;  // constants rounded to 32 bits
  std::string basis;
  double cost = 0.0;  // half the sum of squared weighted residuals
  int starts = 0;
  int constants = 15;  // how many were free
  std::string note;    // why the curves are less than a full fit; empty otherwise
};

// Fits the constants. cp_ig: coefficients c1..c8 of the ideal-gas heat capacity.
CurveFit fit_curves(const FitComponent& c, const Reference& ref, const std::array<double, 8>& cp_ig);

// Compares curves with a reference through this tool's own evaluation of the equation.
CurveFigures figures_of(const FitComponent& c, const Reference& ref, const Curves& curves,
                        const std::array<double, 8>& cp_ig);

// Generalised constants in the acentric factor, the start of every fit (first ten and columns 12 to 15).
std::array<double, 15> generalised_constants(double omega);

double ideal_gas_cp(const std::array<double, 8>& c, double T);  // [J/(mol K)]

}  // namespace talix::bank
