#include "flash/rrice.h"

#include <cmath>

#include "engine/codes.h"
#include "fastprops/flash_record.h"

namespace talix {

namespace {

constexpr R8 kTrivial = 0.0001;
constexpr R8 kStepTolerance = 1.0E-6;
// The Newton iteration takes a handful of steps; the bound is there for feeds that are no numbers.
constexpr int kMaxSteps = 200;

// Feed fractions.
constinit Vec<R8, kMaxComponents> Z{};

R8 k_value(int i) { return static_cast<R8>(fl.VLK(i)); }

// Feed fractions; returns the total feed.
R8 take_feed() {
  R8 FT = 0.0;
  for (int i = 1; i <= fl.NC; ++i) FT += static_cast<R8>(fl.F(i));
  for (int i = 1; i <= fl.NC; ++i) Z(i) = static_cast<R8>(fl.F(i)) / FT;
  return FT;
}

// Newton iteration inside bounds that only a step out of them moves.
R8 solve_fraction() {
  R8 B_LOW = 0.0;
  R8 B_HIGH = 1.0;
  R8 BETA = 0.5;
  for (int step = 1; step <= kMaxSteps; ++step) {
    R8 G = 0.0;
    R8 DG = 0.0;
    for (int i = 1; i <= fl.NC; ++i) {
      const R8 AUX1 = (k_value(i) - 1.0) / (1.0 - BETA + BETA * k_value(i));
      G += Z(i) * AUX1;
      DG -= Z(i) * AUX1 * AUX1;
    }
    R8 STEP = -G / DG;
    const R8 BTRY = BETA + STEP;
    if (BTRY >= B_LOW && BTRY <= B_HIGH) {
      BETA = BTRY;
    } else {
      (G > 0.0 ? B_LOW : B_HIGH) = BETA;
      BETA = (B_LOW + B_HIGH) / 2.0;
      STEP = (B_HIGH - B_LOW) / 2.0;
    }
    if (!(std::fabs(STEP) > kStepTolerance)) break;
  }
  return BETA;
}

}  // namespace

// RRICE: vapour fraction of the feed at the K-values that stand.
//
// Out      BETA      R8  vapour fraction [mol/mol]
//          STATUS    I4  kTwoPhases; phase::liquid (BETA 0); phase::vapour (BETA 1)
//          TRIV_SOL  L4  the sum of z K lies within 0.0001 of 1
// Shared   reads fl.NC, F, VLK
// Oddity   with two components a K-value of exactly 1 divides by zero, but then one of the tests before has
//          answered already
// Source   H.H. Rachford, J.D. Rice, J. Pet. Technol. 4 (1952) 19
void RRICE(R8& BETA, I4& STATUS, L4& TRIV_SOL) {
  const R8 FT = take_feed();
  R8 G0 = -1.0;
  R8 G1 = 1.0;
  for (int i = 1; i <= fl.NC; ++i) {
    if (Z(i) == 0.0) continue;
    G0 += Z(i) * k_value(i);
    G1 -= Z(i) / k_value(i);
  }
  TRIV_SOL = std::fabs(G0) < kTrivial;
  if (G0 < 0.0) {
    STATUS = phase::liquid;
    BETA = 0.0;
    return;
  }
  if (G1 > 0.0) {
    STATUS = phase::vapour;
    BETA = 1.0;
    return;
  }
  STATUS = kTwoPhases;
  if (TRIV_SOL) {
    BETA = G0 == 0.0 && G1 == 0.0 ? 0.5 : G0 / (G0 - G1);
  } else if (fl.NC == 2) {
    BETA =
        (static_cast<R8>(fl.F(1)) / (1.0 - k_value(2)) + static_cast<R8>(fl.F(2)) / (1.0 - k_value(1))) / FT;
  } else {
    BETA = solve_fraction();
  }
}

}  // namespace talix
