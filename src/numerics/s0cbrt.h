// Signed cube root in single precision.
#pragma once

#include "base/real.h"

namespace talix {

R4 S0CBRT(const R4& X);

}  // namespace talix
