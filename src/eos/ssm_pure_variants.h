// Pure-component parameters of the Soave-Redlich-Kwong variants whose temperature functions come from parameter
// files.
#pragma once

#include "base/real.h"

namespace talix {

// Forms 1 and 6. IPARA 0: values; 1: with first, 2: with second temperature derivatives; so for both.
void SP2PC0(const R8& T, const I4& IPARA, const I4& IFCOM, const I4& ILCOM, I4& ICODE);
// Forms 1 to 5, with critical data of their own.
void SAPPC0(const R8& T, const I4& IPARA, const I4& IFCOM, const I4& ILCOM, I4& ICODE);

}  // namespace talix
