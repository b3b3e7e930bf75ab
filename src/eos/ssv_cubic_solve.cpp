#include "eos/ssv_cubic_solve.h"

#include <algorithm>
#include <cmath>

#include "engine/codes.h"
#include "engine/error_ring.h"

namespace talix {

namespace {

constexpr R8 kTiny = 1E-37;  // coefficients and slopes below this count as zero

// Trigonometric or one-root solution of y^3 + CS y^2 + DS y + ES = 0.
void monic_roots(R8 CS, R8 DS, R8 ES, I4& NROOT, RootTable& ROOTS) {
  const R8 Q = (CS * CS - 3.0 * DS) / 9.0;
  const R8 R = (CS * (2.0 * CS * CS - 9.0 * DS) + 27.0 * ES) / 54.0;
  const R8 Q3 = Q * Q * Q;
  const R8 DISC = R * R - Q3;

  if (DISC > 0.0) {
    const R8 AUX = std::pow(std::abs(R) + std::sqrt(DISC), 0.333333333);
    const R8 size = std::abs(Q / AUX + AUX);
    const R8 BS = R < 0.0 ? -size : size;
    NROOT = 1;
    ROOTS(1) = -BS - CS / 3.0;
    return;
  }

  NROOT = 3;
  const R8 C2 = -CS / 3.0;
  // An exact triple root leaves 0/0 for the angle.
  if (!(Q3 > 0.0)) {
    ROOTS(1) = ROOTS(2) = ROOTS(3) = C2;
    return;
  }
  const R8 TETA = std::acos(std::clamp(R / std::sqrt(Q3), -1.0, 1.0));
  const R8 C1 = -2.0 * std::sqrt(Q);
  // The cut values of 2 pi and 4 pi belong to the design; the polish removes their effect.
  ROOTS(1) = C1 * std::cos(TETA / 3.0) + C2;
  ROOTS(2) = C1 * std::cos((6.2831853 + TETA) / 3.0) + C2;
  ROOTS(3) = C1 * std::cos((12.5663706 + TETA) / 3.0) + C2;
  SSVCR2(ROOTS(1), ROOTS(2));
  SSVCR2(ROOTS(1), ROOTS(3));
  SSVCR2(ROOTS(2), ROOTS(3));
}

void quadratic_roots(R8 CB, R8 CC, R8 CD, I4& NROOT, RootTable& ROOTS) {
  const R8 DISC = CC * CC - 4.0 * CB * CD;
  if (!(DISC > 0.0)) {
    SERPU0(severity::warning, "SSVCR0", "Degenerated cubic equation has no solution");
    return;
  }
  const R8 root = std::sqrt(DISC);
  const R8 Q = -(CC + (CC < 0.0 ? -root : root)) / 2.0;
  NROOT = 2;
  ROOTS(1) = Q / CB;
  ROOTS(2) = CD / Q;
  SSVCR2(ROOTS(1), ROOTS(2));
}

}  // namespace

// SSVCR0: all real roots of a cubic.
//
// In       CA..CD  R8       coefficients from the third power down to the constant
// Out      NROOT   I4       roots found, 0 to 3
//          ROOTS   R8(3)    roots, ascending; unpolished
// Status   ok; numerical (the first three coefficients are below 1E-37)
// Reports  "Degenerated cubic equation has no solution", severity 1
//          "Coefficients A, B and C in cubic equation too small", severity 3
// Oddity   a quadratic with a double root counts as having none
void SSVCR0(const R8& CA, const R8& CB, const R8& CC, const R8& CD, I4& NROOT, RootTable& ROOTS, I4& ICODE) {
  ICODE = status::ok;
  NROOT = 0;
  if (!(std::abs(CA) < kTiny)) {
    monic_roots(CB / CA, CC / CA, CD / CA, NROOT, ROOTS);
  } else if (!(std::abs(CB) < kTiny)) {
    quadratic_roots(CB, CC, CD, NROOT, ROOTS);
  } else if (!(std::abs(CC) < kTiny)) {
    NROOT = 1;
    ROOTS(1) = -CD / CC;
  } else {
    SERPU0(severity::error, "SSVCR0", "Coefficients A, B and C in cubic equation too small");
    ICODE = status::numerical;
  }
}

// SSVCR1: Newton polish of a root of a cubic.
//
// In       CA..CD  R8  coefficients from the third power down to the constant
//          TOL     R8  relative size of the step that ends the iteration [-]
//          MAXIT   I4  steps allowed beyond the first
// In/Out   Y       R8  root
// Reports  "Very small dp/dx", severity 1
//          "Convergence not reached within maximum  number of iterations", severity 1
// Oddity   returns the best point that was evaluated, so the last step is never taken
void SSVCR1(R8& Y, const R8& CA, const R8& CB, const R8& CC, const R8& CD, const R8& TOL, const I4& MAXIT) {
  const auto value = [&](R8 y) { return ((CA * y + CB) * y + CC) * y + CD; };
  I4 ICOUNT = 0;
  R8 DZ = std::abs(Y) + 1.0;
  R8 PBEST = value(Y);
  R8 ZBEST = Y;
  while (std::abs(Y * TOL) < std::abs(DZ) && ICOUNT <= MAXIT) {
    ++ICOUNT;
    const R8 DP = value(Y);
    const R8 slope = Y * (2.0 * CB + 3.0 * CA * Y) + CC;
    if (std::abs(DP) < std::abs(PBEST)) {
      PBEST = DP;
      ZBEST = Y;
    }
    if (!(std::abs(slope) > kTiny)) {
      SERPU0(severity::warning, "SSVCR1", "Very small dp/dx");
      break;
    }
    DZ = -DP / slope;
    Y += DZ;
  }
  Y = ZBEST;
  if (ICOUNT >= MAXIT)
    SERPU0(severity::warning, "SSVCR1", "Convergence not reached within maximum  number of iterations");
}

// SSVCR2: puts a pair in ascending order.
//
// In/Out   A, B  R8
void SSVCR2(R8& A, R8& B) {
  if (A > B) std::swap(A, B);
}

}  // namespace talix
