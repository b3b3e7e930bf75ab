// Constants of the corresponding-states transport model: the reference fluid, methane, and the coefficients
// that carry its viscosity and conductivity over to a mixture. Single precision is part of the model.
#pragma once

#include "base/array.h"
#include "base/real.h"

namespace talix {

struct DenseFluidConstants {
  R4 RGL;         // gas constant [L atm/(mol K)]
  R4 TCREF;       // critical temperature of methane [K]
  R4 PCREF;       // critical pressure of methane [atm]; set, not used
  R4 RHOCREF;     // critical density of methane [mol/L]
  R4 ZCREF;       // critical compressibility factor of methane [-]
  R4 WREF;        // acentric factor of methane [-]
  R4 MWREF;       // molar mass of methane [g/mol]
  Vec<R4, 4> A;   // shape factor theta
  Vec<R4, 4> B;   // shape factor phi
  Vec<R4, 6> C;   // collision integral
  R4 ETA0K;       // dilute-gas coefficient
  R4 EPSK;        // energy parameter of methane [K]
  Vec<R4, 4> GV;  // first density term of viscosity
  Vec<R4, 7> EV;  // excess viscosity
  R4 RHOV;        // density scale of excess viscosity [g/cm3]
  Vec<R4, 4> GL;  // first density term of conductivity
  Vec<R4, 7> EL;  // excess conductivity
  R4 RHOL;        // density scale of excess conductivity [g/cm3]
};
static_assert(sizeof(DenseFluidConstants) == 47 * sizeof(R4));

extern constinit DenseFluidConstants dense_fluid;

// Stores the constants of the methane reference.
void set_dense_fluid_constants();

}  // namespace talix
