// Sums over columns of a table.
#pragma once

#include "base/real.h"

namespace talix {

// Sum of column K1 of ARR1 (MODE 1), or its dot product with column K2 of ARR2.
void SSVLA0(const I4& N, const R8* ARR1, const I4& LD1, const I4& ND1, const I4& K1, const R8* ARR2,
            const I4& LD2, const I4& ND2, const I4& K2, const I4& MODE, R8& RESULT);
// Scales column K1 of ARR1 to a sum of one.
void SSVLA1(const I4& N, R8* ARR1, const I4& LD1, const I4& ND1, const I4& K1);

}  // namespace talix
