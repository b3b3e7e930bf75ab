#include "database/ssv_text_search.h"

#include <algorithm>

#include "base/text.h"

namespace talix {

namespace {

// Characters FIRST to LAST of S, as far as S has them.
std::string_view part(std::string_view s, I4 first, I4 last) {
  const I4 from = std::max(first, 1);
  const I4 to = std::min(last, static_cast<I4>(s.size()));
  if (to < from) return {};
  return s.substr(static_cast<std::size_t>(from - 1), static_cast<std::size_t>(to - from + 1));
}

}  // namespace

// SSVST0: search a text table.
//
// In       CARRAY  text  N elements of ELEN characters
//          IFIRST, ILAST  I4  range searched; the part outside 1 to N is left out
//          ISTART, IEND   I4  characters of an element that are compared
//          CTEXT   text  holds the key in characters JSTART to JEND
// Out      I4  index of the first match, or kNotFound; texts of different length are compared blank-padded
I4 SSVST0(const char* CARRAY, const I4& ELEN, const I4& N, const I4& IFIRST, const I4& ILAST,
          const I4& ISTART, const I4& IEND, std::string_view CTEXT, const I4& JSTART, const I4& JEND) {
  const std::string_view key = part(CTEXT, JSTART, JEND);
  const I4 last = std::min(ILAST, N);
  for (I4 i = std::max(IFIRST, 1); i <= last; ++i) {
    const std::string_view element{CARRAY + static_cast<std::size_t>(i - 1) * static_cast<std::size_t>(ELEN),
                                   static_cast<std::size_t>(ELEN)};
    if (equal_padded(part(element, ISTART, IEND), key)) return i;
  }
  return kNotFound;
}

}  // namespace talix
