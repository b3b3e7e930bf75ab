// The doors of the optional data: each answers status::not_available while its data are missing.
#pragma once

#include "base/array.h"
#include "base/logical.h"
#include "base/real.h"

namespace talix {

// Data of pseudo-component K from its measured properties.
void SFCPC0(const I4& K, I4& NFAIL);
// Parameters of "SRK-SimSci" and "SRK-Aspen" for components FIRST to LAST.
void SP2DB1(const I4& FIRST, const I4& LAST, const Vec<I4, kMaxComponents>& ICSTD, const L4& REPORT,
            I4& NFAIL);
void SAPDB1(const I4& FIRST, const I4& LAST, const Vec<I4, kMaxComponents>& ICSTD, const L4& REPORT,
            I4& NFAIL);
// Group table of UNIFAC model CODE, and the groups of N components in it.
void SDBUF0(const I4& CODE, I4& NFAIL);
void SUFAO3(const I4& N, const I4& CODE, I4& NFAIL);
// Fit of the missing NRTL pairs to the group model; 0 for both temperatures takes the settings.
void SNLUF0(const I4& N, const R8& T1, const R8& T2, I4& NFAIL);
// CPA parameters of component ICOMP with standard number NUMBER, and of the pairs of N components.
void SCPDB0(const I4& ICOMP, const I4& NUMBER, I4& NFAIL);
void SCPDB2(const I4& N, I4& NFAIL);

}  // namespace talix
