#include "flash/robust_symmetric.h"

#include <algorithm>
#include <cmath>

namespace talix {

namespace {

constinit CompMat factor{};  // of the shifted matrix in hand

// Halvings of the interval that holds an eigenvalue or a shift.
constexpr int kHalvings = 12;
constexpr int kInverseIterations = 4;
// Relative pivot below which a matrix counts as not positive definite.
constexpr R8 kSmallestPivot = 1.0E-14;

R8 length(I4 n, const CompVec& y) {
  R8 sum = 0.0;
  for (int i = 1; i <= n; ++i) sum += y(i) * y(i);
  return std::sqrt(sum);
}

R8 quadratic_form(I4 n, const CompMat& A, const CompVec& y) {
  R8 sum = 0.0;
  for (int j = 1; j <= n; ++j)
    for (int i = 1; i <= n; ++i) sum += y(i) * A(i, j) * y(j);
  return sum;
}

// y = -(B + SHIFT)^-1 g; false when the shifted matrix is not positive definite.
bool shifted_step(I4 n, const CompMat& B, const CompVec& g, R8 SHIFT, CompVec& y) {
  if (!cholesky_factor(n, B, SHIFT, factor)) return false;
  cholesky_solve(n, factor, g, y);
  for (int i = 1; i <= n; ++i) y(i) = -y(i);
  return true;
}

R8 predicted_decrease(I4 n, const CompMat& B, const CompVec& g, const CompVec& y) {
  R8 slope = 0.0;
  for (int i = 1; i <= n; ++i) slope += g(i) * y(i);
  return -(slope + 0.5 * quadratic_form(n, B, y));
}

}  // namespace

bool cholesky_factor(I4 n, const CompMat& A, R8 SHIFT, CompMat& L) {
  for (int j = 1; j <= n; ++j) {
    R8 pivot = A(j, j) + SHIFT;
    const R8 scale = std::fabs(A(j, j)) + std::fabs(SHIFT);
    for (int k = 1; k < j; ++k) pivot -= L(j, k) * L(j, k);
    if (!(pivot > kSmallestPivot * scale)) return false;
    L(j, j) = std::sqrt(pivot);
    for (int i = j + 1; i <= n; ++i) {
      R8 sum = A(i, j);
      for (int k = 1; k < j; ++k) sum -= L(i, k) * L(j, k);
      L(i, j) = sum / L(j, j);
    }
  }
  return true;
}

void cholesky_solve(I4 n, const CompMat& L, const CompVec& b, CompVec& y) {
  for (int i = 1; i <= n; ++i) {
    R8 sum = b(i);
    for (int k = 1; k < i; ++k) sum -= L(i, k) * y(k);
    y(i) = sum / L(i, i);
  }
  for (int i = n; i >= 1; --i) {
    R8 sum = y(i);
    for (int k = i + 1; k <= n; ++k) sum -= L(k, i) * y(k);
    y(i) = sum / L(i, i);
  }
}

// Smallest eigenvalue of A: bracketed by the shifts that leave it positive definite, then inverse iteration.
//
// In       n        I4       order
//          A        R8(n,n)  symmetric
// Out      u        R8(n)    its vector, of length 1
R8 smallest_eigenvalue(I4 n, const CompMat& A, CompVec& u) {
  R8 low = 0.0;  // A - low is positive definite
  R8 high = A(1, 1);
  for (int i = 2; i <= n; ++i)
    high = std::min(high, A(i, i));  // the smallest eigenvalue is not above any of these
  if (!cholesky_factor(n, A, 0.0, factor)) {
    high = std::min(high, 0.0);
    low = -1.0;
    while (!cholesky_factor(n, A, -low, factor) && low > -1.0E12) low *= 4.0;
  }
  for (int step = 0; step < kHalvings; ++step) {
    const R8 middle = 0.5 * (low + high);
    (cholesky_factor(n, A, -middle, factor) ? low : high) = middle;
  }
  // A little below the bracket, so that the factor stays well away from singular.
  cholesky_factor(n, A, -(low - 0.1 * (high - low)), factor);
  for (int i = 1; i <= n; ++i) u(i) = 1.0 + 0.1 * static_cast<R8>(i % 7);
  static constinit CompVec next{};
  for (int step = 0; step < kInverseIterations; ++step) {
    cholesky_solve(n, factor, u, next);
    const R8 size = length(n, next);
    for (int i = 1; i <= n; ++i) u(i) = next(i) / size;
  }
  return quadratic_form(n, A, u);
}

// The step within a trust radius, by the shift of the matrix that gives it.
//
// In       n, B, g           order, second derivatives, gradient
//          RADIUS   R8       greatest length of the step
// Out      y        R8(n)    the step
//          CURBED   bool     it is not the Newton step
R8 trust_step(I4 n, const CompMat& B, const CompVec& g, R8 RADIUS, CompVec& y, bool& CURBED) {
  CURBED = !shifted_step(n, B, g, 0.0, y) || length(n, y) > RADIUS;
  if (CURBED) {
    // A shift that surely shortens the step enough, then down to the smallest that does.
    R8 low = 0.0;
    R8 high = std::max(1.0E-3, length(n, g) / RADIUS);
    while ((!shifted_step(n, B, g, high, y) || length(n, y) > RADIUS) && high < 1.0E12) {
      low = high;
      high *= 3.0;
    }
    for (int step = 0; step < kHalvings; ++step) {
      const R8 middle = 0.5 * (low + high);
      const bool fits = shifted_step(n, B, g, middle, y) && length(n, y) <= RADIUS;
      (fits ? high : low) = middle;
      if (fits && length(n, y) > 0.8 * RADIUS) break;
    }
    shifted_step(n, B, g, high, y);
  }
  return predicted_decrease(n, B, g, y);
}

}  // namespace talix
