#include "numerics/ssvla_columns.h"

#include "base/array.h"

namespace talix {

namespace {

constexpr I4 kSumOfColumn = 1;

}  // namespace

// SSVLA0: column sum or column dot product.
//
// In       N       I4            rows that count
//          ARR1    R8(LD1,ND1)   table, column-major
//          K1      I4            its column
//          ARR2    R8(LD2,ND2)   second table, not read when MODE is 1
//          K2      I4            its column
//          MODE    I4            1 for the sum, any other for the dot product
// Out      RESULT  R8
void SSVLA0(const I4& N, const R8* ARR1, const I4& LD1, const I4& ND1, const I4& K1, const R8* ARR2,
            const I4& LD2, const I4& ND2, const I4& K2, const I4& MODE, R8& RESULT) {
  RESULT = 0.0;
  check_index("column", K1, 1, ND1);
  const MatView<const R8> one{ARR1, LD1};
  if (MODE == kSumOfColumn) {
    for (int i = 1; i <= N; ++i) RESULT += one(i, K1);
    return;
  }
  check_index("column", K2, 1, ND2);
  const MatView<const R8> two{ARR2, LD2};
  for (int i = 1; i <= N; ++i) RESULT += one(i, K1) * two(i, K2);
}

// SSVLA1: scale a column so that its entries sum to one.
//
// In       N       I4            rows that count
// In, out  ARR1    R8(LD1,ND1)   table, column-major
// In       K1      I4            its column
// Oddity   a sum of zero is not tested for: the column becomes infinite or not a number
void SSVLA1(const I4& N, R8* ARR1, const I4& LD1, const I4& ND1, const I4& K1) {
  R8 sum = 0.0;
  SSVLA0(N, ARR1, LD1, ND1, K1, ARR1, LD1, ND1, K1, kSumOfColumn, sum);
  const MatView<R8> table{ARR1, LD1};
  for (int i = 1; i <= N; ++i) table(i, K1) /= sum;
}

}  // namespace talix
