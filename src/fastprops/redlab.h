// Pure-component parameters of the direct route.
#pragma once

#include "base/real.h"

namespace talix {

// fl.A and fl.B at T; with MODE not 0 also fl.DA1, DA2, DB1, DB2.
void REDLAB(const R4& T, const I4& MODE, const I4& NC, I4& IER);

}  // namespace talix
