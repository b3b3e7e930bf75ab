// FLTP: isothermal flash at given temperature and pressure.
#pragma once

#include "fastprops/flash_message.h"

namespace talix {

void FLTP(Message& STR);

}  // namespace talix
