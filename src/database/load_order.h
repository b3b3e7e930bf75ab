// SHDBS0: loads everything that the selected models and the component set need.
#pragma once

#include "base/real.h"

namespace talix {

void SHDBS0(I4& NFAIL);

}  // namespace talix
