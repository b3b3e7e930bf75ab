// Residuals of the curve fit: the free variables, what is asked of the curves, and with which weight.
#pragma once

#include "bank/fit_curves.h"

namespace talix::bank {

inline constexpr int NX = 15;
using X = std::array<double, NX>;

// The free variables of the fit. They are the constants in a form whose members act apart from each other:
// values and slopes of the curves at the joins in place of the constant terms.
enum Variable {
  A_CRIT,
  A_COLD,
  A_HOT,
  A_WIDTH,
  A_BEND,
  B_JOIN,
  B_COLD,
  B_HOT,
  B_WIDTH,
  B_BEND,
  P11,
  P12,
  P13,
  P14,
  P15
};

// What a fit asks of the curves beyond the plain weights. The defaults are the plain weights.
struct Aims {
  double psat = 1.0;       // factor on the standard deviation of the vapour pressure
  double rhol = 1.0;       // factor on that of the liquid density
  double rhol_rise = 0.4;  // rise of that of the liquid density above 0.951 Tc, per unit of T/Tc
  double gas = 0.003;      // standard deviation of the gas density, relative
  double gas_low = 1.0;    // factor on it below 100 bar
  double gas_mid = 1.0;    // factor on it from there to 200 bar
  double gas_far = 1.0;    // factor on it above 300 bar, or above 200 where the one before is raised
  std::array<double, 3> near{25.0, 12.0,
                             4.0};  // factors on it up to 1.08, 1.15 and 1.25 of the critical temperature
  double thermal = 0.04;   // standard deviation of heat capacity and speed of sound of the gas, relative
  double rhol_soft = 0.0;  // residual of the liquid density from which it counts linearly; 0: none
  double gas_soft = 0.0;   // the same for the gas density
  double join = 0.0;       // weight of the jump of db/d(T/Tc) where the two curves of b meet
  double zone_H = 0.6;  // weight of the enthalpy inside the zones, where the critical point lies below 230 K
  bool own = false;     // the component has aims of its own
  double hvap = 0.0;    // standard deviation of the heat of vaporisation, relative; 0: not asked for
};

// The plain weights, or those of the main constituents of natural gas.
Aims aims_of(const FitComponent& c, const Reference& ref);

// What one fit runs on.
struct Problem {
  const FitComponent* c = nullptr;
  const Reference* ref = nullptr;
  std::array<double, 8> cp_ig{};
  Quantum kind = Quantum::none;
  Aims aims;
  double guide_weight = 1.0;         // 1 where no measured-quality gas points exist
  std::vector<PointSolution> point;  // a and b of each saturation point; A 0 where there is none
  bool pointwise = false;            // first stage: residuals on the pointwise a and b
  double firm = 1.0;                 // factor on what keeps a falling across and behind its zone
  bool held = false;                 // widths and bends of the curves stay as they are
};

// Two saturated volumes, or one gas volume, with their slopes by the parameters a and b of the equation.
struct Tangent {
  bool ok = false;          // false: the equation has no such state
  double A = 0.0, B = 0.0;  // where the tangent touches
  double lnp = 0.0;         // ln(P/Pc)
  double lnwl = 0.0;        // ln of the reduced liquid (or only) volume
  double lnwv = 0.0;        // ln of the reduced vapour volume
  double pA = 0.0, pB = 0.0, lA = 0.0, lB = 0.0, vA = 0.0, vB = 0.0;  // slopes of the three
};

// The states of one evaluation of the residuals, in the order in which they are asked for. Evaluations close by
// follow the tangents and need no search for a root.
struct Tangents {
  std::vector<Tangent> states;
  std::size_t next = 0;
  bool follow = false;  // false: solve and note; true: follow the notes
};

// b of the components with tabulated constants where their curve hands over; 0 for the others.
double tabulated_join(Quantum k);
// Level of b at the critical point.
double tabulated_level(Quantum k);
// The constants that belong to the variables, ready for use.
Curves curves_of(const double* x, Quantum kind);
// All weighted residuals at X; always as many for one problem. TANGENTS, where given, is filled or followed.
void all_residuals(const Problem& pb, const double* x, std::vector<double>& r, Tangents* tangents = nullptr);

// Points of the gas region that count in fit and figures.
inline bool counts(const FitComponent& c, const GasPoint& g) { return g.T > 1.02 * c.tc && g.rho > 0.0; }

// What the tabulated derivatives add to the results that belong to the values.
struct ZoneError {
  double H;   // residual enthalpy over RT [-]
  double CP;  // heat capacity over R [-]
};

// The error at reduced temperature U and pressure PR, on the stable root.
ZoneError zone_error(const Curves& cv, double u, double pr);

}  // namespace talix::bank
