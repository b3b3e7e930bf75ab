// K-values of the flashes.
#pragma once

#include "base/real.h"

namespace talix {

// Updates the K-values; IDEAL kvalues::* tells both ways what they are, LOOP is the caller's pass from 1.
void KVAL(I4& IDEAL, const I4& LOOP);
// The plain real update of the fast isothermal flash.
void KVAL2();

}  // namespace talix
