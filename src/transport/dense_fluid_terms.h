// Terms that the corresponding-states routines share.
#pragma once

#include <algorithm>
#include <cmath>

#include "base/real.h"
#include "transport/dense_fluid_record.h"

namespace talix {

// Exponential of X held to -75 to 75, the range that a 32-bit result can hold. Not a number stays one.
inline R4 bounded_exp(R4 x) { return std::exp(std::clamp(x, -75.0F, 75.0F)); }

inline R4 square(R4 x) { return x * x; }
inline R4 cube(R4 x) { return x * x * x; }

// Collision integral at the reduced temperature TS.
inline R4 collision_integral(R4 TS) {
  const auto& C = dense_fluid.C;
  return C(1) / std::pow(TS, C(2)) + C(3) * bounded_exp(-C(4) * TS) + C(5) * bounded_exp(-C(6) * TS);
}

// State of the mixture as the reference fluid sees it.
struct ReferenceState {
  R4 D0;      // density [g/cm3]
  R4 T0;      // temperature [K]
  R4 TI, T1;  // its reciprocal and its square root
};

inline ReferenceState reference_state(R4 RHO0, R4 T) {
  ReferenceState s{};
  s.D0 = 0.001F * RHO0 * dense_mixture.HMIX * dense_fluid.MWREF;
  s.T0 = T / dense_mixture.FMIX;
  s.TI = 1.0F / s.T0;
  s.T1 = std::sqrt(s.T0);
  return s;
}

// First density term: its factor at temperature T0.
inline R4 first_density_term(const Vec<R4, 4>& G, R4 T0) {
  return G(1) + G(2) * square(G(3) - std::log(T0 / G(4)));
}

// Excess over the dilute gas: exp(TRM0 + TRM2 R1 + TRM3 R2) - exp(TRM0), with E the seven coefficients.
inline R4 excess(const Vec<R4, 7>& E, const ReferenceState& s, R4 R1, R4 R2) {
  const R4 trm0 = E(1) + E(2) * s.TI;
  const R4 trm2 = E(3) + E(4) * s.TI / s.T1;
  const R4 trm3 = E(5) + s.TI * (E(6) + E(7) * s.TI);
  return bounded_exp(trm0 + trm2 * R1 + trm3 * R2) - bounded_exp(trm0);
}

}  // namespace talix
