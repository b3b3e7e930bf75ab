// The doors of the optional data that are not read: each answers status::not_available.
#pragma once

#include "base/real.h"

namespace talix {

// Data of pseudo-component K from its measured properties.
void SFCPC0(const I4& K, I4& NFAIL);
// Fit of the missing NRTL pairs to the group model; 0 for both temperatures takes the settings.
void SNLUF0(const I4& N, const R8& T1, const R8& T2, I4& NFAIL);

}  // namespace talix
