// SSVST0: linear search in a table of texts.
#pragma once

#include <string_view>

#include "base/real.h"
#include "numerics/sal_bisection.h"  // kNotFound

namespace talix {

// First index I of IFIRST to ILAST for which characters ISTART to IEND of element I equal characters JSTART to
// JEND of CTEXT; otherwise kNotFound. N elements of ELEN characters stand one behind the other.
I4 SSVST0(const char* CARRAY, const I4& ELEN, const I4& N, const I4& IFIRST, const I4& ILAST,
          const I4& ISTART, const I4& IEND, std::string_view CTEXT, const I4& JSTART, const I4& JEND);

}  // namespace talix
