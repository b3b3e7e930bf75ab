// Constants of the corresponding-states transport model, the reference fluid methane and the coefficients that carry
// its viscosity and conductivity over to a mixture, and the factors of the mixture in hand. Single precision is part of
// the model.
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

// The mixture in hand against the reference fluid: DCST and ECSTX write it, TRPVIS and THERMC read it.
struct DenseFluidMixture {
  Vec<R4, kMaxComponents> F;  // temperature factor of each component [-]
  Vec<R4, kMaxComponents> H;  // its volume factor [-]
  R4 FMIX, HMIX;              // factors of the mixture [-]
  R4 DFDT, DHDT;              // their derivatives with temperature [1/K]
  R4 MWETA, MWLAM;            // effective molar masses for viscosity and conductivity [g/mol]
  R4 ZCMIX;                   // mean critical compressibility factor [-]
};

extern constinit DenseFluidMixture dense_mixture;

// The last call of DCST: everything that it read, and everything that it left.
struct DenseFluidCall {
  bool filled;                            // false until the first call
  I4 MODE;                                // 1 for a liquid, otherwise 0
  I4 N;                                   // components
  R4 T, RHO;                              // [K], [mol/L]
  Vec<R4, kMaxComponents> X;              // mole fractions
  Vec<R4, kMaxComponents> CMW;            // molar masses [g/mol]
  Vec<R4, kMaxComponents> PC, TC, VC, W;  // [atm], [K], [L/mol], [-]
  DenseFluidConstants constants;          // as they were at the call
  DenseFluidMixture mixture;              // what the call left
  R4 RHO0;                                // density for the calls that follow [mol/L]
  I4 IERR;                                // its answer
};

extern constinit DenseFluidCall dense_call;

// Stores the constants of the methane reference.
void set_dense_fluid_constants();
// Constants, factors and the last call as they are at load: zero.
void reset_dense_fluid_record();

}  // namespace talix
