// Curves of the cubic from the acentric factor alone.
#pragma once

#include "base/array.h"
#include "base/real.h"

namespace talix {

using CurveSet = Vec<R8, 15>;

// The 15 curve parameters for acentric factor W.
void SSMPC4(const R8& W, CurveSet& EOSPAR, I4& ICODE, R8& RESERVED);
// The same for component IC, stored with its critical data: TC [K], PC [bar].
void SESGE0(const I4& MOD, const R8& TC, const R8& PC, const R8& W, const I4& IC, CurveSet& EOSPAR,
            R8& RESERVED, I4& ICODE);

}  // namespace talix
