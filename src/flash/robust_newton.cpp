#include "flash/robust_newton.h"

#include <cmath>

#include "flash/robust_symmetric.h"

namespace talix {

namespace {

// Below this a scale is as good as 0 and is not divided by.
constexpr R8 kNoScale = 1.0E-140;

struct Work {
  CompMat fugacity;  // second derivatives but those of the ideal mixing
  CompMat hessian;   // scaled second derivatives
  CompMat factor;    // their Cholesky factor with a shift
  CompVec scale;     // square root of v l / z
  CompVec residual;  // gradient
  CompVec gradient;  // scaled gradient
  CompVec u;         // scaled step
  R8 VL;             // product of the phase fractions
};
constinit Work work{};

// Cuts of the interval that holds the shift of a curbed step.
constexpr int kCuts = 60;
constexpr R8 kFirstShift = 1.0E-3;
constexpr R8 kLargestShift = 1.0E+12;
constexpr R8 kLongEnough = 0.8;

R8 length_of_step(int n) {
  R8 square = 0.0;
  for (int i = 1; i <= n; ++i) square += work.u(i) * work.u(i);
  return std::sqrt(square);
}

// The step under a shift of the diagonal; false when the shifted matrix is not positive definite.
bool shifted_step(int n, R8 shift) {
  if (!cholesky_factor(n, work.hessian, shift, work.factor)) return false;
  cholesky_solve(n, work.factor, work.gradient, work.u);
  for (int i = 1; i <= n; ++i) work.u(i) = -work.u(i);
  return true;
}

// The step of the smallest shift that leaves it within the radius. Near a critical point gradient and
// negative curvature are tiny and of one size: the shift is cut out to the last digits.
bool curbed_step(int n, R8 radius) {
  R8 low = 0.0;
  R8 high = kFirstShift;
  while (!shifted_step(n, high) || length_of_step(n) > radius) {
    low = high;
    high *= 4.0;
    if (high > kLargestShift) return false;
  }
  for (int cut = 1; cut <= kCuts && length_of_step(n) < kLongEnough * radius; ++cut) {
    const R8 middle = low > 0.0 ? 0.5 * (low + high) : 0.1 * high;
    const bool fits = shifted_step(n, middle) && length_of_step(n) <= radius;
    (fits ? high : low) = middle;
    if (!fits) shifted_step(n, high);
  }
  return true;
}

R8 predicted_decrease(int n) {
  R8 sum = 0.0;
  for (int j = 1; j <= n; ++j) {
    R8 row = work.gradient(j);
    for (int i = 1; i <= n; ++i) row += 0.5 * work.hessian(i, j) * work.u(i);
    sum -= row * work.u(j);
  }
  return sum;
}

}  // namespace

// With v and l the flows of a component in the two phases and V and L their totals the second derivative by v
// is (1/v + 1/l) on the diagonal, less 1/V + 1/L, plus the composition derivatives of ln phi over V and L.
// Scaling by the square roots of v l / z turns the first part into ones.
void form_gibbs_hessian(const RobustMixture& mixture, const RobustSplit& split, const CompVec& residual) {
  const int n = mixture.n;
  const R8 V = split.fraction;
  const R8 L = 1.0 - V;
  work.VL = V * L;
  for (int i = 1; i <= n; ++i) {
    work.scale(i) = std::sqrt(V * split.vapour.x(i) / mixture.z(i) * L * split.liquid.x(i));
    work.residual(i) = residual(i);
    work.gradient(i) = work.scale(i) * residual(i);
  }
  for (int j = 1; j <= n; ++j) {
    for (int i = 1; i <= n; ++i) {
      work.fugacity(i, j) = split.vapour.lnphi_n(i, j) / V + split.liquid.lnphi_n(i, j) / L;
      work.hessian(i, j) = work.scale(i) * (work.fugacity(i, j) - 1.0 / work.VL) * work.scale(j);
    }
    work.hessian(j, j) += 1.0;
  }
}

void gibbs_step(int n, R8 radius, GibbsStep& step) {
  step.curbed = !shifted_step(n, 0.0) || length_of_step(n) > radius;
  if (step.curbed && !curbed_step(n, radius)) work.u.fill(0.0);
  step.length = length_of_step(n);
  step.decrease = predicted_decrease(n);
  R8 change = 0.0;
  for (int i = 1; i <= n; ++i) change += work.u(i) * work.scale(i);
  const R8 totals = change / work.VL;
  for (int i = 1; i <= n; ++i) {
    if (work.scale(i) > kNoScale) {
      step.lnK(i) = work.u(i) / work.scale(i) - totals;
      continue;
    }
    // A trace in one of the phases follows the others.
    R8 sum = -work.residual(i);
    for (int j = 1; j <= n; ++j) sum -= work.fugacity(i, j) * work.u(j) * work.scale(j);
    step.lnK(i) = sum;
  }
}

}  // namespace talix
