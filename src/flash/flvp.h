// FLVP: temperature at which the feed has a given vapour fraction at a given pressure.
#pragma once

#include "fastprops/flash_message.h"

namespace talix {

void FLVP(Message& STR);

}  // namespace talix
