// From derivatives at constant parameters to derivatives at constant composition, and to fugacities.
#pragma once

#include "base/real.h"
#include "eos/mixture_record.h"

namespace talix {

// Chain rule.
void SESDD0(const ModelFunction& function, const MixtureVector& mixture, ComposedDerivatives& composed,
            const I4& IFCOM, const I4& ILCOM, const Vec<bool, 6>& OPTCOM);
// Fugacity coefficients; only the arrays asked for are touched.
void SESFC0(const R8& Z, const ModelFunction& function, const MixtureVector& mixture,
            const ComposedDerivatives& composed, CompVec& FUG, CompVec& FUGTL, CompVec* FUGPL, CompMat* FUGN,
            const CompVec& VSN, const CompVec& VSTN, const I4& IFCOM, const I4& ILCOM,
            const Vec<bool, 4>& OPTFC);

}  // namespace talix
