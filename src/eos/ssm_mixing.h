// Mixing rules: dispatcher, mole number and linear b.
#pragma once

#include "base/real.h"
#include "eos/mixture_record.h"

namespace talix {

// Parameter vector of the mixture by the rule of the model.
void SSMMIX(const R8& T, const CompVec& X, MixtureVector& mixture, const I4& IFCOM, const I4& ILCOM,
            const Vec<bool, 6>& OPTMR, const I4& MODEL);
// Mole number, entry 0.
void SSMMR1(MixtureVector& mixture, const I4& IFCOM, const I4& ILCOM, const Vec<bool, 6>& OPTMR);
// Linear b, entry 2.
void SSMMR2(const CompVec& X, MixtureVector& mixture, const I4& IFCOM, const I4& ILCOM,
            const Vec<bool, 6>& OPTMR, const CompVec& BPU, const CompVec& D1BDT, const CompVec& D2BDT);

}  // namespace talix
