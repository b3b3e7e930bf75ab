#include "numerics/sal_linear.h"

#include <cmath>
#include <utility>

#include "base/array.h"
#include "engine/codes.h"
#include "engine/error_ring.h"

namespace talix {

namespace {

// Stands in for a pivot of exactly 0.
constexpr R8 kSmallPivot = 1e-20;

// Scale factor of each row.
constinit Vec<R8, kMaxOrder> VV{};

// The largest element of each row, inverted, to VV. False when a row is all zeros.
bool scale_rows(const MatView<R8>& a, int n) {
  for (int i = 1; i <= n; ++i) {
    R8 largest = 0.0;
    for (int j = 1; j <= n; ++j)
      if (std::abs(a(i, j)) > largest) largest = std::abs(a(i, j));
    if (largest == 0.0) return false;
    VV(i) = 1.0 / largest;
  }
  return true;
}

// Brings column J to its form in L and U without the division by the pivot. Returns the pivot row: of equal
// candidates the last one.
int reduce_column(const MatView<R8>& a, int n, int j) {
  for (int i = 1; i < j; ++i) {
    R8 sum = a(i, j);
    for (int k = 1; k < i; ++k) sum -= a(i, k) * a(k, j);
    a(i, j) = sum;
  }
  R8 largest = 0.0;
  int pivot_row = j;
  for (int i = j; i <= n; ++i) {
    R8 sum = a(i, j);
    for (int k = 1; k < j; ++k) sum -= a(i, k) * a(k, j);
    a(i, j) = sum;
    const R8 figure = VV(i) * std::abs(sum);
    if (figure >= largest) {
      largest = figure;
      pivot_row = i;
    }
  }
  return pivot_row;
}

}  // namespace

// SALLA1: LU factorisation by Crout's method with implicit scaled partial pivoting.
//
// In, out  M       R8(LD,N)  column-major; overwritten by L (unit diagonal) and U
// In       N       I4        order, 1 to 100
//          LD      I4        leading dimension, at least N
// Out      KK      I4(N)     row swapped into position J at step J
//          D       R8        +1 or -1: parity of the row swaps
//          STATUS  I4
// Status   ok; failed (a row of zeros, M unchanged; or an order outside the limits, nothing touched)
// Reports  "LU decomposition, singular matrix", severity 3, for a row of zeros
// Oddity   a zero pivot in a non-zero row is no failure: it becomes 1e-20
void SALLA1(R8* M, const I4& N, const I4& LD, I4* KK, R8& D, I4& STATUS) {
  STATUS = status::ok;
  D = 1.0;
  if (N < 1 || N > kMaxOrder || LD < N) {
    STATUS = status::failed;
    return;
  }
  const MatView<R8> a{M, LD};
  if (!scale_rows(a, N)) {
    STATUS = status::failed;
    SERPU0(severity::error, "SALLA1", "LU decomposition, singular matrix");
    return;
  }

  for (int j = 1; j <= N; ++j) {
    const int pivot_row = reduce_column(a, N, j);
    if (pivot_row != j) {
      for (int k = 1; k <= N; ++k) std::swap(a(pivot_row, k), a(j, k));
      D = -D;
      VV(pivot_row) = VV(j);
    }
    KK[j - 1] = pivot_row;
    if (a(j, j) == 0.0) a(j, j) = kSmallPivot;
    if (j != N) {
      const R8 factor = 1.0 / a(j, j);
      for (int i = j + 1; i <= N; ++i) a(i, j) *= factor;
    }
  }
}

// SALLA0: forward and back substitution on a matrix factorised by SALLA1.
//
// In       M       R8(LD,N)  L and U
//          N       I4        order
//          LD      I4        leading dimension
//          KK      I4(N)     pivot rows
// In, out  RHS     R8(N)     right-hand side, overwritten by the solution
void SALLA0(const R8* M, const I4& N, const I4& LD, const I4* KK, R8* RHS) {
  const MatView<const R8> a{M, LD};

  // Leading zeros of the right-hand side cost nothing: the inner product starts at the first other value.
  int first = 0;
  for (int i = 1; i <= N; ++i) {
    const int row = KK[i - 1];
    R8 sum = RHS[row - 1];
    RHS[row - 1] = RHS[i - 1];
    if (first != 0) {
      for (int j = first; j < i; ++j) sum -= a(i, j) * RHS[j - 1];
    } else if (sum != 0.0) {
      first = i;
    }
    RHS[i - 1] = sum;
  }
  for (int i = N; i >= 1; --i) {
    R8 sum = RHS[i - 1];
    for (int j = i + 1; j <= N; ++j) sum -= a(i, j) * RHS[j - 1];
    RHS[i - 1] = sum / a(i, i);
  }
}

}  // namespace talix
