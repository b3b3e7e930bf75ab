// Frame of the cubic: pure parameters, mixing, root and model function in one sequence.
#pragma once

#include "base/real.h"
#include "eos/mixture_record.h"

namespace talix {

void SSM000(const I4& MODEL, const I4& IPHASE, const R8& T, R8& P, const CompVec& X, const I4& IFCOM,
            const I4& ILCOM, const Vec<bool, 6>& OPTMR, const Vec<bool, 20>& OPTMOD, R8& V, R8& Z, R8& ZOTHER,
            R8& ZGAP, const I4& KROOT, MixtureVector& mixture, ModelFunction& function, I4& IPHRTN,
            I4& ICODE);

}  // namespace talix
