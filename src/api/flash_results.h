// From the flows of a flash to the result tables of the host.
#pragma once

#include "api/talix_call.h"
#include "fastprops/flash_message.h"

namespace talix {

// Phase identity, compositions, properties of every phase; writes SCAL, TPROPS, T [C], P [bar], FRV.
void assemble_results(char UNIT, R4& T, R4& P, R4& FRV, ScalTable& SCAL, PropertyTable& TPROPS, Message& STR);

}  // namespace talix
