// Selection of models.
#pragma once

#include "base/real.h"

namespace talix {

// Looks a model code up: LNO is its slot, or 0.
void SMDAO1(const I4& CODE, I4& LNO);
// Adds a slot for a model code.
void SMDAO0(const I4& CODE, I4& LNO, I4& NFAIL);
// Selects a model with those that it depends on.
void SHMLD0(const I4& CODE, I4& LNO, I4& NFAIL);

}  // namespace talix
