// Requests of the caller, expanded for the layers below.
#pragma once

#include "base/logical.h"
#include "eos/mixture_record.h"

namespace talix {

void SESAO0(const bool& LFUG, const Flags3& LDFUG, const bool& LVOL, const Flags3& LDVOL, const bool& LTHERM,
            const Flags3& LDTHERM, OptionTables& options);

}  // namespace talix
