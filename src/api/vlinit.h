// VLINIT: reads the constants of a component list and starts the engine for it.
#pragma once

#include "base/array.h"
#include "base/real.h"

namespace talix {

// IFAIL: 0 complete; 1 file not opened or not readable, or SHINI0 failed; 2 number out of range, or SHMLD0
// failed; 3 SHDBS0, 4 SURMD0 failed.
void VLINIT(const I4& NC, const Vec<I4, kMaxComponents>& ISTD, I4& IFAIL);

}  // namespace talix
