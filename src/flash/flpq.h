// FLPQ: adiabatic flash by nested searches around the flashes at given temperature and at given fraction.
#pragma once

#include "fastprops/flash_message.h"

namespace talix {

void FLPQ(Message& STR);

}  // namespace talix
