// Pure-component parameters from the component's own curves, joined by a cubic instead of a line.
#pragma once

#include "base/real.h"

namespace talix {

// IPARA 0: values; 1: with first, 2: with second temperature derivatives.
void SSMPC5(const R8& T, const I4& IPARA, const I4& IFCOM, const I4& ILCOM, I4& ICODE);

}  // namespace talix
