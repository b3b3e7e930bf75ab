// TALIXENTHFIX: the entry call with an adiabatic flash that takes traces out of the feed where they block it.
#pragma once

#include "api/talix_call.h"

namespace talix {

// Arguments as TALIX; STR_LENGTH at least 80.
void TALIXENTHFIX(I4* NC, R4* T, R4* P, R4* FRV, char* UNIT, I4 UNIT_LENGTH, I4* IFLASH, ScalTable* SCAL,
                  PropertyTable* TPROPS, char* STR, I4 STR_LENGTH);

}  // namespace talix
