// The binary database: directory and pair parameters.
#pragma once

#include "base/real.h"

namespace talix {

// Reads the directory and opens the data file, which stays open.
void SDBBI0(I4& NFAIL);
// Fills the pair tables for the N components of the set.
void SDBBI1(const I4& N, I4& NFAIL);

}  // namespace talix
