#include "database/ssm_pair_lists.h"

#include "database/component_record.h"
#include "database/pair_record.h"
#include "engine/setup_record.h"

namespace talix {

namespace {

template <class List>
void append_both_orders(I4& count, List& first, List& second, I4 i, I4 j) {
  first(count + 1) = i;
  second(count + 1) = j;
  first(count + 2) = j;
  second(count + 2) = i;
  count += 2;
}

void number_families() {
  pairs.NF = 0;
  for (I4 i = 1; i <= pairs.NPAIR; ++i) {
    I4 number = 0;
    for (I4 k = 1; k < i && number == 0; ++k)
      if (comp.ISOFAM(k) == comp.ISOFAM(i)) number = pairs.NFAM(k);
    pairs.NFAM(i) = number != 0 ? number : ++pairs.NF;
  }
}

}  // namespace

// SSMAO0: derive the sparse lists and the family tables.
//
// Shared   reads TETA0, TETA0T, TETA1, TETA1T and NPAIR of pairs, comp.ISOFAM; writes NT0, NT1, IT0, JT0, IT1,
//          JT1, IDELTA, NF, NFAM; setup.generation
void SSMAO0() {
  pairs.NT0 = 0;
  pairs.NT1 = 0;
  for (I4 i = 1; i <= kMaxComponents; ++i) pairs.IDELTA(i, i) = 1;
  for (I4 i = 1; i <= pairs.NPAIR; ++i) {
    for (I4 j = i + 1; j <= pairs.NPAIR; ++j) {
      if (pairs.TETA0(i, j) != 0.0 || pairs.TETA0T(i, j) != 0.0)
        append_both_orders(pairs.NT0, pairs.IT0, pairs.JT0, i, j);
      if (pairs.TETA1(i, j) != 0.0 || pairs.TETA1T(i, j) != 0.0)
        append_both_orders(pairs.NT1, pairs.IT1, pairs.JT1, i, j);
      const I4 same = comp.ISOFAM(i) == comp.ISOFAM(j) ? 1 : 0;
      pairs.IDELTA(i, j) = same;
      pairs.IDELTA(j, i) = same;
    }
  }
  number_families();
  ++setup.generation;
}

}  // namespace talix
