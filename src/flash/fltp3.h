// FLTP3: the fast isothermal flash.
#pragma once

#include "fastprops/flash_message.h"

namespace talix {

// STR is written for a pressure not above 0 only: every other flash counts as done.
void FLTP3(Message& STR);

}  // namespace talix
