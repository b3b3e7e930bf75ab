// S0UBIN: the pair parameters of the user's own file.
#pragma once

#include "base/real.h"

namespace talix {

// Applies the file "usrbin.dat" to the first N components.
void S0UBIN(const I4& N, I4& NFAIL);

}  // namespace talix
