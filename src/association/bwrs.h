// Benedict-Webb-Rubin equation in the form of Starling and Han: compressibility of a mixture.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "eos/ses_dispatcher.h"

namespace talix {

// Compressibility from a start value, with the slopes of the pressure.
void SBWRS0(const I4& IFCOM, const I4& ILCOM, const R8& T, const R8& P, const CompVec& X, R8& Z, R8& PV,
            R8& PTCN, I4& ICODE);

// Forgets the component parameters.
void reset_bwrs_cache();

}  // namespace talix
