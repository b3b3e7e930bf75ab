// FLTP2: the older two-phase form of the isothermal flash.
#pragma once

#include "base/text.h"
#include "fastprops/flash_message.h"

namespace talix {

// Text of the last failure of FLTP2, cut to its length; blank after a success.
extern constinit Text<60> FLTP2_TEXT;

// STR is not written.
void FLTP2(Message& STR);

}  // namespace talix
