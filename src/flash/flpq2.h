// FLPQ2: the temperature of a given enthalpy by a safeguarded Newton search.
#pragma once

#include "base/real.h"
#include "fastprops/flash_message.h"

namespace talix {

// FOUT: what is left of the balance [flow x J/mol]; IFAIL: 0 found, 1 not.
void FLPQ2(R4& FOUT, I4& IFAIL, Message& STR);

}  // namespace talix
