// Ideal-gas enthalpy, entropy and heat capacity of a mixture.
#pragma once

#include "base/real.h"
#include "eos/ses_dispatcher.h"

namespace talix {

struct IdealGas {
  R8 HREF;        // enthalpy over RT [-]
  R8 SREF;        // entropy over R [-]
  R8 CPREF;       // heat capacity at constant pressure [J/(mol K)]
  R8 CVREF;       // heat capacity at constant volume [J/(mol K)]
  CompVec HNREF;  // partial molar enthalpies over RT [-]
  CompVec SNREF;  // partial molar entropies over R [-]
};

void SPPIG0(const R8& T, const I4& IFCOM, const I4& ILCOM, CompVec& X, IdealGas& gas);

}  // namespace talix
