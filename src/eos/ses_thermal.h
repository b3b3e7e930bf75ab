// Enthalpy, entropy and the derived properties of a phase; all work on the argument list of SES000.
#pragma once

#include "base/real.h"
#include "eos/mixture_record.h"
#include "eos/ses_dispatcher.h"

namespace talix {

// Residual properties.
void SESPP0(const ModelFunction& function, const ComposedDerivatives& composed,
            const VolumeTranslation& shift, const CompVec& FUG, const CompVec& FUGTL, const I4& IFCOM,
            const I4& ILCOM, EosArgs& args);
// Ideal-gas part, added.
void SESPP1(CompVec& X, const I4& IFCOM, const I4& ILCOM, EosArgs& args);
// Joule-Thomson coefficient, isentropic coefficients, speed of sound.
void SESPP2(const CompVec& X, const I4& IFCOM, const I4& ILCOM, EosArgs& args);
// Residual properties of the ideal gas.
void SESPP3(const I4& IFCOM, const I4& ILCOM, EosArgs& args);

}  // namespace talix
