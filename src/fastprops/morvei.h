// MORVEI: brings the property engine up for the current component list.
#pragma once

#include "base/real.h"

namespace talix {

// IFAIL: 0 complete, 1 SHINI0, 2 SHMLD0, 3 SHDBS0, 4 SURMD0 failed.
void MORVEI(const I4& NC, I4& IFAIL);

}  // namespace talix
