// The hydrate database: which cages a component enters, and its coefficients.
#pragma once

#include "base/real.h"

namespace talix {

// Reads the directory and opens the data file, which stays open.
void SDBPC2(I4& NFAIL);
// Reads record RECORD and stores it in slot ICOMP; a slot of 0 or below only reads.
void SDBPC3(const I4& ICOMP, const I4& RECORD, I4& NFAIL);

}  // namespace talix
