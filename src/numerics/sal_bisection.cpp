#include "numerics/sal_bisection.h"

namespace talix {

// SALBS0: bisection search in an ascending integer table.
//
// In       KEY     I4        key wanted
//          IARRAY  I4(LAST)  table, ascending
//          LAST    I4        number of entries
//          NSTEP   I4        halvings, enough to close the interval; made whether or not it has closed
// Out      POS     I4        position of KEY, or kNotFound
void SALBS0(const I4& KEY, const I4* IARRAY, const I4& LAST, const I4& NSTEP, I4& POS) {
  POS = kNotFound;
  if (LAST < 1) return;
  const auto entry = [IARRAY](int i) { return IARRAY[i - 1]; };

  int first = 1;
  int last = LAST;
  for (int step = 1; step <= NSTEP; ++step) {
    const int middle = (last + first) / 2;
    if (KEY > entry(middle))
      first = middle + 1;
    else
      last = middle;
  }
  // A key beyond the table leaves the first position one behind its end.
  if (first <= LAST && KEY == entry(first))
    POS = first;
  else if (KEY == entry(last))
    POS = last;
}

}  // namespace talix
