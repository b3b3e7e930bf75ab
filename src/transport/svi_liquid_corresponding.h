// The corresponding-states model of liquids: its mixture sums and its viscosity.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "eos/ses_dispatcher.h"

namespace talix {

// Mixture sums over the sets PARL2.
struct LiquidSums {
  R8 SIG3;  // volume of a molecule [A3]
  R8 MW;    // molar mass [g/mol]
  R8 SQ;    // size factor [-]
  R8 A;     // double sum of the size factors over the first parameter [-]
  R8 YAN;   // double sum of volume times energy [A3 1e-21 J]
};

// The same, as the reduced temperature and pressure of the mixture.
struct LiquidReduced {
  R8 C;     // size factor of the mixture [-]
  R8 EPS;   // energy of the mixture [J]
  R8 SIG3;  // volume of a molecule [m3]
  R8 MASS;  // mass of a molecule [kg]
  R8 TR;    // reduced temperature [-]
  R8 PRR;   // reduced pressure [-]
};

// Sums over NC components of composition X.
LiquidSums SVIMR0(const CompVec& X, const I4& NC);

LiquidReduced reduce_liquid(R8 T, R8 P, const LiquidSums& sums);

// Whether each of the components has a set.
bool have_liquid_sets(I4 NC);

// ETA [mPa s] at T [K], P [Pa].
void SVILI0(const CompVec& X, const R8& P, const R8& T, const I4& NC, R8& ETA, I4& STATUS);

}  // namespace talix
