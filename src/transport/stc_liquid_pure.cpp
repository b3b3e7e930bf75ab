#include <algorithm>
#include <cmath>

#include "database/component_record.h"
#include "engine/codes.h"
#include "eos/spp_ideal_gas.h"
#include "liquid/s0r_saturated_density.h"
#include "transport/liquid_class.h"
#include "transport/stc_liquid.h"
#include "transport/svi_liquid_combined.h"

namespace talix {

namespace {

constexpr R8 kPascalPerBar = 100000.0;
constexpr R8 kFreezing = widen(273.15F);  // 0 degC [K]

// ITCL of a polynomial with a range.
constexpr I4 kPolynomial = 7;

// exp of an argument held to a range.
R8 bounded_exp(R8 argument) { return std::exp(std::clamp(argument, -50.0, 50.0)); }

// The straight line of pseudo-components and heavy components.
R8 heavy_line(R8 T) { return widen(0.1337F) - widen(0.000142F) * (T - kFreezing); }

// Heat capacity of component I as an ideal gas [J/(mol K)].
R8 ideal_heat_capacity(I4 I, R8 T) {
  CompVec x;
  x(I) = 1.0;
  IdealGas gas;
  SPPIG0(T, I, I, x, gas);
  return gas.CPREF;
}

// The Eucken form of hydrogen.
void hydrogen_conductivity(R8 T, R8 P, I4 I, R8& LAMBDA, I4& STATUS) {
  R8 eta = 0.0;
  SVICM1(T, P, I, eta, STATUS);
  if (STATUS != status::ok) return;
  const R8 cv = ideal_heat_capacity(I, T) - kGasConstant;
  LAMBDA = (comp.TCV(I, 1) * kGasConstant / cv + comp.TCV(I, 2)) * eta * cv / comp.RMOLW(I);
}

// Polynomial of degree 4 in T; outside its range it runs on along the tangent of the nearer end.
R8 polynomial(I4 I, R8 T) {
  const auto c = [I](int k) { return comp.TCL(I, k); };
  R8 t = T;
  if (T > c(7)) t = c(7);
  if (T < c(6)) t = c(6);
  const R8 value = c(1) + t * (c(2) + t * (c(3) + t * (c(4) + t * c(5))));
  if (t == T) return value;
  return value + (T - t) * (c(2) + t * (2.0 * c(3) + t * (3.0 * c(4) + t * 4.0 * c(5))));
}

// Heat capacity of the liquid over that of the ideal gas [J/(g K)].
R8 rowlinson_bondi(I4 I, R8 TR) {
  const R8 q = 1.0 - TR;
  const R8 acentric = 0.25 * comp.OMEGA(I) *
                      (widen(17.11F) + widen(25.2F) * std::pow(q, widen(0.333333F)) / TR + widen(1.742F) / q);
  return (widen(1.45F) + widen(0.45F) / q + acentric - bounded_exp(widen(20.17F) * TR - widen(17.9F))) *
         kGasConstant / comp.RMOLW(I);
}

// From heat capacity and density.
void from_heat_capacity(R8 T, R8 P, I4 I, R8& LAMBDA, I4& STATUS) {
  R8 denl = 0.0;
  R8 slope = 0.0;
  S0RSC1(T, P, I, logical(true), logical(false), method::riedel, denl, slope, STATUS);
  if (STATUS != status::ok) return;
  const R8 cp = ideal_heat_capacity(I, T) / comp.RMOLW(I) + rowlinson_bondi(I, T / comp.TC(I));
  LAMBDA = comp.TCL(I, 1) * cp * std::pow(denl, 4.0 / 3.0) / T;
}

// The forms of the set TCL.
void from_set(R8 T, R8 P, I4 I, R8& LAMBDA, I4& STATUS) {
  const auto c = [I](int k) { return comp.TCL(I, k); };
  STATUS = status::not_available;
  if (comp.ITCL(I) <= 0) return;
  STATUS = status::supercritical;
  if (!(T <= comp.TC(I))) return;

  STATUS = status::ok;
  if (comp.ITCL(I) == kPolynomial) {
    LAMBDA = polynomial(I, T);
  } else if (c(2) == 0.0) {
    from_heat_capacity(T, P, I, LAMBDA, STATUS);
  } else if (c(3) == 0.0) {
    LAMBDA = c(1) * c(2) / T;
  } else {
    // The coefficients are stored scaled by powers of ten.
    LAMBDA = c(1) + T * (0.01 * c(2) +
                         T * (0.0001 * c(3) + T * (1e-06 * c(4) + T * (1e-09 * c(5) + T * 1e-12 * c(6)))));
  }
}

// Effect of pressure after Lenoir; PBAR in bar. It holds from reduced temperatures 0.4 to 0.8 and above
// 34.5 bar.
R8 lenoir_factor(R8 PBAR, R8 TR, R8 PC) {
  if (!(PBAR > 34.5 && TR >= 0.4 && TR <= 0.8)) return 1.0;
  const auto correction = [TR](R8 p) {
    return widen(17.77F) + widen(0.65F) * p - widen(7.764F) * TR -
           widen(2.054F) * TR * TR / bounded_exp(widen(0.2F) * p);
  };
  return correction(PBAR / PC) / correction(widen(1.01325F) / PC);
}

}  // namespace

// STCCM1: conductivity of a pure liquid for the combined method.
//
// In       T, P    R8   [K], [Pa]
//          I       I4   component
// Out      LAMBDA  R8   [W/(m K)]; 0 when the status is not ok
//          STATUS  I4   status
// Shared   reads comp: ELEM, RMOLW, TC, PC, OMEGA, COFHT, ICPIG, TCV, ITCL, TCL and what S0RSC1 and SVICM1
//          read
// Status   ok; not_available (a light component, or no data); supercritical (T above critical, where a set
//          serves); range (no positive number); as SVICM1 for hydrogen
// Oddity   the first pressure coefficient is ten times the published one: for hexane at 300 K and 500 bar a
//          factor of 1.91 instead of 1.14; the factor is switched on and off by steps
// Source   J. M. Lenoir, Petroleum Refiner 36 (1957) 162; J. S. Rowlinson, Liquids and Liquid Mixtures, 2nd
//          ed. (1969); A. Bondi, Physical Properties of Molecular Crystals, Liquids and Glasses (1968)
void STCCM1(const R8& T, const R8& P, const I4& I, R8& LAMBDA, I4& STATUS) {
  const LiquidClass kind = liquid_class(I);
  R8 lambda = 0.0;
  LAMBDA = 0.0;
  STATUS = status::ok;
  if (!kind.ISZAN || kind.HEAVY) {
    lambda = heavy_line(T);
  } else if (kind.HYDGEN) {
    hydrogen_conductivity(T, P, I, lambda, STATUS);
  } else if (kind.LIGHT) {
    STATUS = status::not_available;
  } else {
    from_set(T, P, I, lambda, STATUS);
  }
  if (STATUS != status::ok) return;
  if (!kind.HYDGEN || !kind.ISZAN) lambda *= lenoir_factor(P / kPascalPerBar, T / comp.TC(I), comp.PC(I));

  STATUS = status::range;
  if (!(lambda > 0.0 && std::isfinite(lambda))) return;
  LAMBDA = lambda;
  STATUS = status::ok;
}

}  // namespace talix
