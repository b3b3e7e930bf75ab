// TALIX: the one calculation call of the library.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "fastprops/flash_record.h"

namespace talix {

using ScalTable = Mat<R4, kScalRows, kScalColumns>;
using PropertyTable = Mat<R4, kPropertyRows, kPropertyColumns>;

// Arguments as the host passes them; the two lengths follow their strings by value.
void TALIX(I4* NC, R4* T, R4* P, R4* FRV, char* UNIT, I4 UNIT_LENGTH, I4* IFLASH, ScalTable* SCAL,
           PropertyTable* TPROPS, char* STR, I4 STR_LENGTH);

}  // namespace talix
