// b and a from the excess energy at infinite pressure.
#pragma once

#include "base/real.h"
#include "eos/mixture_record.h"

namespace talix {

// Entry 2 of the parameter vector; OPTMR with all that its flags imply, in both.
void SSMMR5(const R8& T, const CompVec& X, MixtureVector& mixture, const I4& IFCOM, const I4& ILCOM,
            const Vec<bool, 6>& OPTMR, const I4& MODEL);
// Entry 1, from entry 2, which has been set.
void SSMMR6(const R8& T, const CompVec& X, MixtureVector& mixture, const I4& IFCOM, const I4& ILCOM,
            const Vec<bool, 6>& OPTMR, const I4& MODEL);

}  // namespace talix
