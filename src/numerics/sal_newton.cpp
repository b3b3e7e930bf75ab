#include "numerics/sal_newton.h"

#include <cmath>

#include "engine/codes.h"
#include "engine/error_ring.h"
#include "numerics/sal_linear.h"

namespace talix {

namespace {

// Working storage of SALNR0.
struct NewtonStorage {
  Mat<R8, kMaxSystem, kMaxSystem> ALPHA;  // Jacobian
  Vec<R8, kMaxSystem> FI;                 // residuals
  Vec<R8, kMaxSystem> BETA;               // right-hand side, then step
  Vec<I4, kMaxSystem> KK;                 // pivot rows
};
constinit NewtonStorage work{};

// Steps of SALNR1.
constexpr int kMaxPasses = 100;

constexpr const char* kDuringIteration = "Bracketing root, error during iteration";

}  // namespace

// SALNR0: Newton-Raphson for a system of equations.
//
// In       NTRIAL  I4     largest number of steps
// In, out  X       R8(N)  start, then the last estimate
// In       N       I4     number of equations, 1 to 50
//          TOLX    R8     the sum of the absolute steps that counts as converged
//          TOLF    R8     the sum of the absolute residuals that counts as converged
//          FUNC           Jacobian and residuals
// Out      STATUS  I4
// Status   ok; as FUNC; failed (factorisation, NTRIAL used up, N outside 1 to 50 with nothing touched)
// Reports  "Could not create partial derivatives for Newton-Raphson", "LU decomposition failed",
//          "Could not improve root", severity 3
// Oddity   a variable whose old value lies below its step becomes twice the old value, so that it at most
//          doubles going up; a step down is never limited, and the convergence test sees the full step
void SALNR0(const I4& NTRIAL, R8* X, const I4& N, const R8& TOLX, const R8& TOLF, const SystemFunction& FUNC,
            I4& STATUS) {
  STATUS = status::ok;
  if (N < 1 || N > kMaxSystem) {
    STATUS = status::failed;
    return;
  }
  for (int trial = 1; trial <= NTRIAL; ++trial) {
    FUNC.call(FUNC.context, X, work.ALPHA, work.FI, STATUS);
    if (STATUS != status::ok) {
      SERPU0(severity::error, "SALNR0", "Could not create partial derivatives for Newton-Raphson");
      return;
    }
    R8 residual_sum = 0.0;
    for (int i = 1; i <= N; ++i) {
      work.BETA(i) = -work.FI(i);
      residual_sum += std::abs(work.FI(i));
    }
    if (residual_sum <= TOLF) return;

    R8 parity = 0.0;
    SALLA1(work.ALPHA.data(), N, kMaxSystem, work.KK.data(), parity, STATUS);
    if (STATUS == status::failed) {
      SERPU0(severity::error, "SALNR0", "LU decomposition failed");
      return;
    }
    SALLA0(work.ALPHA.data(), N, kMaxSystem, work.KK.data(), work.BETA.data());

    R8 step_sum = 0.0;
    for (int i = 1; i <= N; ++i) {
      const R8 step = work.BETA(i);
      step_sum += std::abs(step);
      X[i - 1] += step;
      const R8 old = X[i - 1] - step;
      if (old < step) X[i - 1] = 2.0 * old;
    }
    if (step_sum <= TOLX) return;
  }
  STATUS = status::failed;
  SERPU0(severity::error, "SALNR0", "Could not improve root");
}

// SALNR1: root of a scalar function by Newton's method inside a bracket, with bisection where it would leave.
//
// In       FUNC           value and derivative
//          XA, XB  R8     ends of the bracket
//          TOL     R8     step that counts as converged
// Out      STATUS  I4
// Returns  the estimate of the root: on success the one after the last evaluation, on failure the current one
//          (before the search has begun, XA or XB)
// Status   ok; as FUNC; failed (no sign change, or 100 passes used up)
// Reports  "Bracketing root, error supplied function, point 1", the same with "point 2",
//          "Could not bracket root", "Bracketing root, error during iteration",
//          "Bracketing root, maximum number of iterarions", severity 3
// Oddity   a root exactly on an end of the bracket counts as not bracketed
R8 SALNR1(const RootFunction& FUNC, const R8& XA, const R8& XB, const R8& TOL, I4& STATUS) {
  STATUS = status::ok;
  R8 fa = 0.0;
  R8 fb = 0.0;
  R8 df = 0.0;
  FUNC.call(FUNC.context, XA, fa, df, STATUS);
  if (STATUS != status::ok) {
    SERPU0(severity::error, "SALNR1", "Bracketing root, error supplied function, point 1");
    return XA;
  }
  FUNC.call(FUNC.context, XB, fb, df, STATUS);
  if (STATUS != status::ok) {
    SERPU0(severity::error, "SALNR1", "Bracketing root, error supplied function, point 2");
    return XB;
  }
  if (!(fa * fb < 0.0)) {
    STATUS = status::failed;
    SERPU0(severity::error, "SALNR1", "Could not bracket root");
    return XA;
  }

  // XL is the end with the negative value.
  R8 xl = fa < 0.0 ? XA : XB;
  R8 xh = fa < 0.0 ? XB : XA;
  R8 x = 0.5 * (XA + XB);
  R8 dx_old = std::abs(XB - XA);
  R8 dx = dx_old;
  R8 f = 0.0;
  FUNC.call(FUNC.context, x, f, df, STATUS);
  if (STATUS != status::ok) {
    SERPU0(severity::error, "SALNR1", kDuringIteration);
    return x;
  }
  for (int pass = 1; pass <= kMaxPasses; ++pass) {
    const bool leaves = !(((x - xh) * df - f) * ((x - xl) * df - f) < 0.0);
    if (leaves || std::abs(2.0 * f) > std::abs(dx_old * df)) {
      dx_old = dx;
      dx = 0.5 * (xh - xl);
      x = xl + dx;
      if (x == xl) return x;
    } else {
      dx_old = dx;
      dx = f / df;
      const R8 before = x;
      x -= dx;
      if (x == before) return x;
    }
    if (std::abs(dx) < TOL) return x;

    FUNC.call(FUNC.context, x, f, df, STATUS);
    if (STATUS != status::ok) {
      SERPU0(severity::error, "SALNR1", kDuringIteration);
      return x;
    }
    if (f < 0.0)
      xl = x;
    else
      xh = x;
  }
  STATUS = status::failed;
  SERPU0(severity::error, "SALNR1", "Bracketing root, maximum number of iterarions");
  return x;
}

}  // namespace talix
