// SVICR0: liquid viscosity of heavy fractions from a viscosity-temperature chart.
#pragma once

#include "base/real.h"

namespace talix {

// Viscosity ETA [mPa s] of component I at T [K].
void SVICR0(const R8& T, const I4& I, R8& ETA, I4& STATUS);

// Last step of SVICR0: viscosity ETA [mPa s] from the kinematic one VKIN [mm2/s] and the density RHO [g/cm3].
void kinematic_to_dynamic(R8 VKIN, R8 RHO, R8& ETA, I4& STATUS);

}  // namespace talix
