// RRICE: the vapour fraction of given K-values, in double precision.
#pragma once

#include "base/logical.h"
#include "base/real.h"

namespace talix {

// What RRICE finds besides two phases, which is 0; the one-phase answers are the engine's root codes.
inline constexpr I4 kTwoPhases = 0;

// BETA: vapour fraction [mol/mol]; STATUS: kTwoPhases, phase::liquid, phase::vapour; TRIV_SOL: the K-values are
// so close to 1 that the phases are alike.
void RRICE(R8& BETA, I4& STATUS, L4& TRIV_SOL);

}  // namespace talix
