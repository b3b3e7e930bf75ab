// a of the consistent local-composition rule.
#pragma once

#include "base/real.h"
#include "eos/mixture_record.h"

namespace talix {

// Entry 1 of the parameter vector, from entry 2, which has been set.
void SSMMR3(const R8& T, const CompVec& X, MixtureVector& mixture, const I4& IFCOM, const I4& ILCOM,
            const Vec<bool, 6>& OPTMR, const I4& MODEL);
// Pair quantities at the temperature T.
void SICMR0(const I4& IFCOM, const I4& ILCOM, const Vec<bool, 6>& OPTMR, const R8& T);
// Sums over the composition.
void SICMR1(const I4& IFCOM, const I4& ILCOM, const Vec<bool, 6>& OPTMR, const R8& T, const CompVec& X,
            MixtureVector& mixture);

}  // namespace talix
