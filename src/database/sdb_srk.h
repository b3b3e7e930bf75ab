// The databases of the two cubic variants with alpha functions of their own.
#pragma once

#include "base/array.h"
#include "base/logical.h"
#include "base/real.h"

namespace talix {

// Constants of "SRK-SimSci" for component ICOMP of standard number NUMBER.
void SP2DB0(const I4& ICOMP, const I4& NUMBER, I4& NFAIL);
// The same for components FIRST to LAST.
void SP2DB1(const I4& FIRST, const I4& LAST, const Vec<I4, kMaxComponents>& ICSTD, const L4& REPORT,
            I4& NFAIL);
// Constants of "SRK-Aspen", likewise.
void SAPDB0(const I4& ICOMP, const I4& NUMBER, I4& NFAIL);
void SAPDB1(const I4& FIRST, const I4& LAST, const Vec<I4, kMaxComponents>& ICSTD, const L4& REPORT,
            I4& NFAIL);
// Bisection for a standard number on the open file of either.
void SSADB3(const I4& UNIT, const I4& LOW, const I4& HIGH, const I4& KEY, L4& FOUND, I4& RECORD);

}  // namespace talix
