// FLVT: pressure at which the feed has a given vapour fraction at a given temperature.
#pragma once

#include "fastprops/flash_message.h"

namespace talix {

void FLVT(Message& STR);

}  // namespace talix
