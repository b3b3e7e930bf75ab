// DCBRT: signed cube root with the nine-digit exponent of the fast layer.
#pragma once

#include "base/real.h"

namespace talix {

R8 DCBRT(const R8& X);

}  // namespace talix
