// Dense linear equations: LU factorisation and solution.
#pragma once

#include "base/real.h"

namespace talix {

// Largest order of SALLA1.
inline constexpr int kMaxOrder = 100;

// Factorises M in place; KK receives the pivot rows, D the parity of the row swaps.
void SALLA1(R8* M, const I4& N, const I4& LD, I4* KK, R8& D, I4& STATUS);
// Solves for RHS with a factorised M.
void SALLA0(const R8* M, const I4& N, const I4& LD, const I4* KK, R8* RHS);

}  // namespace talix
