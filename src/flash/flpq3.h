// FLPQ3: adiabatic flash by the enthalpy search, with traces taken out where they block it.
#pragma once

#include "base/real.h"
#include "fastprops/flash_message.h"

namespace talix {

// IFAIL: 0 found, 1 not.
void FLPQ3(I4& IFAIL, Message& STR);

}  // namespace talix
