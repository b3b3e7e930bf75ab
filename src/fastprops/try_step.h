// TRY: acceleration of a plain substitution.
#pragma once

#include "base/real.h"

namespace talix {

// One step of dominant-eigenvalue acceleration.
void TRY(R4& X, const R4& XNEW, R4& DX, R4& DXOLD, R4& R);

}  // namespace talix
