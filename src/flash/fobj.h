// FOBJ: enthalpy balance of the adiabatic flash and its temperature derivative.
#pragma once

#include "base/logical.h"
#include "base/real.h"

namespace talix {

// F [flow x J/mol], DF [flow x J/(mol K)]; FTLO, FTVO phase totals; CPL, CPV temperature derivatives of the phase
// enthalpies [J/(mol K)]; DOFLASH: the flows are those of FLTP3 at the current T, P.
void FOBJ(R4& F, R4& DF, R4& FTLO, R4& FTVO, R4& CPL, R4& CPV, L4& LIQUID, L4& VAPOUR, const L4& DOFLASH);

}  // namespace talix
