// Newton-Raphson in many dimensions and, safeguarded, in one.
#pragma once

#include "base/array.h"
#include "base/real.h"

namespace talix {

// Largest system of SALNR0.
inline constexpr int kMaxSystem = 50;

// A system of equations: fills the Jacobian ALPHA(I,J) = dFI(I)/dX(J) and the residuals FI at X.
struct SystemFunction {
  void (*call)(void* context, const R8* X, Mat<R8, kMaxSystem, kMaxSystem>& ALPHA, Vec<R8, kMaxSystem>& FI,
               I4& STATUS);
  void* context;
};

// A scalar function: its value F and derivative DF at X.
struct RootFunction {
  void (*call)(void* context, const R8& X, R8& F, R8& DF, I4& STATUS);
  void* context;
};

// Improves X, the root of a system of N equations, in at most NTRIAL steps.
void SALNR0(const I4& NTRIAL, R8* X, const I4& N, const R8& TOLX, const R8& TOLF, const SystemFunction& FUNC,
            I4& STATUS);
// The root of a scalar function between XA and XB.
R8 SALNR1(const RootFunction& FUNC, const R8& XA, const R8& XB, const R8& TOL, I4& STATUS);

}  // namespace talix
