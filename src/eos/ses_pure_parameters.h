// Pure-component parameters of the cubic at one temperature, cached.
#pragma once

#include "base/real.h"
#include "eos/mixture_record.h"

namespace talix {

void SESPC0(const R8& T, const I4& MODEL, const Vec<bool, 6>& OPTMR, const I4& IFCOM, const I4& ILCOM,
            I4& ICODE);

}  // namespace talix
