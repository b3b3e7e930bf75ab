// From the flash-type code of a call to its flash.
#pragma once

#include "fastprops/flash_message.h"

namespace talix {

// Runs the flash of fl.IFLASH; false with a text in STR when there is no result.
bool run_flash(Message& STR);

}  // namespace talix
