#include "flash/kval.h"

#include <cmath>

#include "fastprops/rksf.h"
#include "fastprops/small_arrays.h"

namespace talix {

namespace {

// Limits of a K-value, vapour over liquid and vapour over second liquid.
constexpr R4 kMinK = 1.0E-12F;
constexpr R4 kMaxK = 1.0E+12F;
constexpr R4 kMinSecondK = 1.0E-10F;
constexpr R4 kMaxSecondK = 1.0E+10F;
// K-value over the second liquid of everything but its key component.
constexpr R4 kNoSecondLiquid = 4000.0F;

// Fugacity coefficients of the last evaluation: liquid, vapour, second liquid.
constinit FlashVec FOX{};
constinit FlashVec FOY{};
constinit FlashVec FOX2{};

// Not a number becomes the lower limit, so that a flash always runs on finite K-values.
R4 limited(R4 value, R4 lower, R4 upper) {
  if (value > upper) return upper;
  return value >= lower ? value : lower;
}

// Ideal K-values are out of date when the state has moved since the last evaluation.
bool state_has_moved() {
  return std::fabs(fl.P - fl.PLAST) >= 0.01F * fl.P || std::fabs(fl.T - fl.TLAST) >= 1.0F;
}

void wilson(I4& IDEAL) {
  fl.PLAST = fl.P;
  fl.TLAST = fl.T;
  IDEAL = kvalues::ideal;
  for (int i = 1; i <= fl.NC; ++i) {
    const R4 k = 1.0F / fl.P * std::exp(5.37F * (1.0F + fl.OMEG(i)) * (1.0F - fl.TC(i) / fl.T)) * fl.PC(i);
    fl.VLK(i) = limited(k, kMinK, kMaxK);
  }
  if (fl.NL2KEY <= 0) return;
  for (int i = 1; i <= fl.NC; ++i) fl.VLKS(i) = kNoSecondLiquid;
  fl.VLKS(fl.NL2KEY) = fl.VLK(fl.NL2KEY);
  fl.VLK(fl.NL2KEY) = limited(fl.VLK(fl.NL2KEY) * 100.0F, kMinK, kMaxK);
}

// Compositions from the flows, fugacity coefficients from the compositions.
void evaluate_phases(R4& FTV, R4& FTL) {
  I4 root_type = 0;
  FTV = TELOP(fl.NC, fl.FV);
  FTL = TELOP(fl.NC, fl.FL);
  MOLFR(fl.NC, FTL, fl.FL, fl.X1);
  MOLFR(fl.NC, FTV, fl.FV, fl.Y);
  RKSF(fl.NC, flash_phase::liquid, fl.T, fl.X1, FOX, fl.ZL, fl.P, root_type);
  RKSF(fl.NC, flash_phase::vapour, fl.T, fl.Y, FOY, fl.ZV, fl.P, root_type);
  for (int i = 1; i <= fl.NC; ++i) fl.VLK(i) = limited(FOX(i) / FOY(i), kMinK, kMaxK);
}

void evaluate_second_liquid() {
  I4 root_type = 0;
  const R4 total = TELOP(fl.NC, fl.FLS);
  MOLFR(fl.NC, total, fl.FLS, fl.X2);
  RKSF(fl.NC, flash_phase::second_liquid, fl.T, fl.X2, FOX2, fl.ZL2, fl.P, root_type);
  const bool present = fl.X2(fl.NL2KEY) > 0.0F;
  for (int i = 1; i <= fl.NC; ++i)
    fl.VLKS(i) = present ? limited(FOX2(i) / FOY(i), kMinSecondK, kMaxSecondK) : kNoSecondLiquid;
}

void remember_phases() {
  for (int i = 1; i <= fl.NC; ++i) {
    fl.XX(i, flash_phase::liquid) = fl.X1(i);
    fl.XX(i, flash_phase::vapour) = fl.Y(i);
    fl.FOOX(i, flash_phase::liquid) = FOX(i);
    fl.FOOX(i, flash_phase::vapour) = FOY(i);
  }
  if (fl.NL2KEY <= 0) return;
  for (int i = 1; i <= fl.NC; ++i) {
    fl.XX(i, flash_phase::second_liquid) = fl.X2(i);
    fl.FOOX(i, flash_phase::second_liquid) = FOX2(i);
  }
}

// True when a component's fugacity in the trial phase lies over 2 % below that in the phase that exists: the
// split may yet grow.
bool split_may_grow(I4 NHI) {
  const I4 NLO = NHI % 2 + 1;
  for (int i = 1; i <= fl.NC; ++i) {
    if (fl.XX(i, NHI) < 1.0E-12F) continue;
    const R4 FUGH = fl.FOOX(i, NHI) * fl.XX(i, NHI);
    const R4 FUGL = fl.FOOX(i, NLO) * fl.XX(i, NLO);
    if (FUGL * 1.02F < FUGH) return true;
  }
  return false;
}

}  // namespace

// KVAL: update of the K-values, ideal or from the fugacity coefficients of the current phases.
//
// In       LOOP   I4  pass of the calling flash, from 1; a flash always starts from ideal K-values
// In, out  IDEAL  I4  kvalues::*, what the K-values were and are
// Shared   reads fl.NC, T, P, IFLASH, NL2KEY, FV, FL, FLS; sets fl.VLK, VLKS, X1, Y, X2, ZL, ZV, ZL2, PLAST,
//          TLAST, XX, FOOX
// Oddity   a one-phase state whose trial phase sits on the same root restarts from ideal K-values, and IDEAL
//          tells the caller so
void KVAL(I4& IDEAL, const I4& LOOP) {
  const bool were_ideal = IDEAL != kvalues::real && IDEAL != kvalues::provisional;
  const bool moved_away = were_ideal && LOOP <= 5 && fl.NC != 1 &&
                          fl.IFLASH != flash_type::pressure_at_fraction && state_has_moved();
  if (moved_away || LOOP == 1) {
    wilson(IDEAL);
    return;
  }

  IDEAL = kvalues::real;
  fl.PLAST = fl.P;
  fl.TLAST = fl.T;
  R4 FTV = 0.0F;
  R4 FTL = 0.0F;
  evaluate_phases(FTV, FTL);
  if (fl.NL2KEY > 0) evaluate_second_liquid();
  remember_phases();

  // A state of two phases is left to the flash; one of a single phase is tested for stability.
  if (FTL >= kPhaseLimit && FTV > kPhaseLimit) return;
  const I4 NHI = FTL < kPhaseLimit ? flash_phase::vapour : flash_phase::liquid;
  if (split_may_grow(NHI)) {
    IDEAL = kvalues::provisional;
    return;
  }
  if (std::fabs((fl.ZV - fl.ZL) / fl.ZV) > 0.02F) return;
  wilson(IDEAL);
}

// KVAL2: real K-values of the current vapour and liquid, without status or test.
//
// Shared   reads fl.NC, T, P, FV, FL; sets fl.VLK, X1, Y, ZL, ZV
void KVAL2() {
  R4 FTV = 0.0F;
  R4 FTL = 0.0F;
  evaluate_phases(FTV, FTL);
}

}  // namespace talix
