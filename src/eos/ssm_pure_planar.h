// Pure-component parameters of the two-dimensional form, and the pair data that its mixing rule reads.
#pragma once

#include "base/real.h"

namespace talix {

// IPARA 0: values; 1: with first, 2: with second temperature derivatives.
void S2DPC0(const R8& T, const I4& IPARA, const I4& IFCOM, const I4& ILCOM, I4& ICODE);
// Copies the interaction tables to those of the two-dimensional form.
void S2DAO0(const I4& IFCOM, const I4& ILCOM);

}  // namespace talix
