// The pure component database: directory, records, and the search for a component.
#pragma once

#include "base/real.h"

namespace talix {

// Reads the directory and opens the data file, which stays open.
void SDBPC0(I4& NFAIL);
// Reads record RECORD and stores it in slot ICOMP; a slot of 0 or below only reads.
void SDBPC1(const I4& ICOMP, const I4& RECORD, I4& NFAIL);
// Is the code of component ICOMP in the directory?
bool SDBAO0(const I4& ICOMP);

}  // namespace talix
