// SSMBI0: interaction parameters of a pair without data.
#pragma once

#include "base/real.h"

namespace talix {

// Estimates the parameters of the pair (A, B). Status ok, or failed when no rule applies.
void SSMBI0(const I4& A, const I4& B, I4& NFAIL);

}  // namespace talix
