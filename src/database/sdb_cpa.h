// The databases of the association model: pure-component parameters and pair parameters.
#pragma once

#include "base/logical.h"
#include "base/real.h"

namespace talix {

// Parameters of component ICOMP of standard number NUMBER.
void SCPDB0(const I4& ICOMP, const I4& NUMBER, I4& NFAIL);
// Parameters of the pairs of N components.
void SCPDB2(const I4& N, I4& NFAIL);
// Bisection for a key on the open file of either.
void SCPDB3(const I4& UNIT, const I4& LOW, const I4& HIGH, const I4& KEY, L4& FOUND, I4& RECORD);
// Estimate of the parameters of a pair that is not on file.
void SCPDB5(const I4& ICOMP, const I4& JCOMP, I4& NFAIL);

}  // namespace talix
