// The cubic of one pure component in reduced variables, for the fits.
//
// Everything is reduced with the component's own critical point: u = T/Tc, pr = P/Pc and the volume
// w = v Pc/(R Tc). The equation is then pr = u (1/(w - B) - A/(w (w + B))), where A and B are the two
// curves before their scaling with Tc/Pc.
#pragma once

#include <array>

namespace talix::bank {

inline constexpr double GAS_CONSTANT = 8.314471;  // J/(mol K), the engine's value

// The four constants of the b curve above the critical region.
struct HotB {
  double C1;  // level at the critical point [-]
  double C2;  // amplitude [-]
  double C3;  // exponent constant [-]
  double C4;  // pole of the exponent in Tc/T [-]
};

// Which of the components with tabulated b constants a component is.
enum class Quantum { none, hydrogen, helium, nitrogen };

Quantum quantum_of(const char* code);  // by the four-character code

// The fifteen constants of a component and what selects its branches.
struct Curves {
  std::array<double, 15> p{};    // PARABF in the order of its index
  Quantum kind = Quantum::none;  // components with tabulated b constants
  HotB hot{};                    // derived from p by prepare
  double AAC = 0.0;              // a at the critical point [-]
  double AALIM = 0.0;            // a at Tc/T 0.9090909 [-]
  std::array<double, 2> a1{};    // first derivative of a at both ends of its zone, by T/Tc
  std::array<double, 2> a2{};    // second derivative of a at both ends
  std::array<double, 2> b1{};    // first derivative of b at both ends of its zone
  std::array<double, 2> b2{};    // second derivative of b at both ends
  void prepare();                // fills the derived fields from p and kind
};

// a and b with their tabulated derivatives by T/Tc.
struct AB {
  double A, A1, A2;  // value, first and second derivative [-]
  double B, B1, B2;
};

AB curves_at(const Curves& c, double u, bool derivatives);

// One density root.
struct Root {
  bool ok;       // false: no such root
  double Z;      // compressibility [-]
  double lnphi;  // ln fugacity coefficient [-]
};

// Real roots above b at (A, B, u, pr): smallest and largest; equal where there is one.
int outer_roots(double A, double B, double u, double pr, Root& liquid, Root& vapour);

// Stable density root at u, pr.
Root stable_root(const AB& ab, double u, double pr);

// Saturation state of the equation.
struct Saturation {
  bool ok;
  double pr;      // vapour pressure over Pc [-]
  double ZL, ZV;  // compressibilities [-]
};

Saturation saturation(const AB& ab, double u, double pr_start);

// Thermal properties of one root. Residual to the ideal gas at the same T and P.
struct Thermal {
  double H;     // residual enthalpy over RT [-]
  double CP;    // residual heat capacity over R [-]
  double CV;    // residual isochoric heat capacity over R [-]
  double PV;    // reduced dP/dV, V/P dP/dV [-]
  double PTCN;  // T/P dP/dT at constant volume [-]
};

Thermal thermal(const AB& ab, double u, double pr, double Z);

// Speed of sound [m/s] and Joule-Thomson coefficient [K/Pa] from a thermal state.
double sound_speed(const Thermal& th, double Z, double T, double cp_ig, double molar_mass_g);
double joule_thomson(const Thermal& th, double Z, double T, double P, double cp_ig);

// a and b at which the equation meets a vapour pressure and a liquid volume: all solutions b, ascending.
struct PointSolution {
  double A, B;
};
int solve_point(double u, double pr, double w_liquid, std::array<PointSolution, 8>& out);

}  // namespace talix::bank
