// The two linear fits: ideal-gas heat capacity polynomial and Wagner vapour pressure.
#pragma once

#include "bank/fit_curves.h"

namespace talix::bank {

// Cp = c1 + c2 T + .. + c6 T^5 + c7/T + c8/T^2 [J/(mol K)], coefficients rounded to 32 bits.
struct HeatCapacityFit {
  std::array<double, 8> c{};
  double tmin = 0.0, tmax = 0.0;  // range of the reference [K]
  Deviation deviation;            // of the rounded coefficients
};

// ln(psat/Pc) = (w1 q + w2 q^1.5 + w3 q^3 + w4 q^6)/(T/Tc), q = 1 - T/Tc; coefficients rounded to 32 bits.
struct WagnerFit {
  std::array<double, 4> w{};
  Deviation deviation;  // reduced temperatures 0.40 to 0.98
};

HeatCapacityFit fit_heat_capacity(const Reference& ref);
WagnerFit fit_wagner(const FitComponent& c, const Reference& ref);

double wagner_pressure(const FitComponent& c, const std::array<double, 4>& w, double T);  // [Pa]

}  // namespace talix::bank
