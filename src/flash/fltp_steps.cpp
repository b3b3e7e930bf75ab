#include <algorithm>
#include <cmath>

#include "fastprops/flash_record.h"
#include "flash/fltp_state.h"
#include "flash/phase_flows.h"

namespace talix {

namespace {

// Below this sum of squares the equations have no slope: all K-values are near 1.
constexpr R4 kNoSlope = 1.0E-5F;
constexpr R4 kNewtonTolerance = 1.0E-10F;
// After so many steps a liquid-liquid split that wants a vapour is given up.
constexpr I4 kLiquidLiquidSteps = 20;

struct NewtonStep {
  R4 DELFLA, DELFLB;
  R4 CHKONE, CHKTWO;  // step times equation: the measure of convergence
};

NewtonStep newton_step(SplitMode NGO, const SplitSums& sums) {
  NewtonStep step{};
  switch (NGO) {
    case SplitMode::vapour_liquid_a:
      step.DELFLA = sums.SUMA / sums.SUMAA;
      break;
    case SplitMode::vapour_liquid_b:
      step.DELFLB = sums.SUMB / sums.SUMBB;
      break;
    case SplitMode::liquid_liquid:
      step.DELFLA = (sums.SUMA - sums.SUMB) / sums.SUMLL;
      step.DELFLB = -step.DELFLA;
      step.CHKONE = step.DELFLA * (sums.SUMA - sums.SUMB);
      return step;
    case SplitMode::three_phase: {
      R4 determinant = sums.SUMBB - sums.SUMAB * sums.SUMAB / sums.SUMAA;
      if (determinant == 0.0F) determinant = 1.0E-10F;
      step.DELFLB = (sums.SUMB - sums.SUMAB / sums.SUMAA * sums.SUMA) / determinant;
      step.DELFLA = (sums.SUMA - sums.SUMAB * step.DELFLB) / sums.SUMAA;
      break;
    }
  }
  step.CHKONE = step.DELFLA * sums.SUMA;
  step.CHKTWO = step.DELFLB * sums.SUMB;
  return step;
}

void take_step(FltpState& s, const NewtonStep& step) {
  s.FLA = std::clamp(s.FLA + step.DELFLA, 0.0F, 1.0F);
  s.FLB = std::clamp(s.FLB + step.DELFLB, 0.0F, 1.0F);
  const R4 excess = s.FLA + s.FLB - 1.0F;
  if (excess >= 0.0F) {
    s.FLA -= excess / 2.0F;
    s.FLB -= excess / 2.0F;
  }
}

// Beyond pass 80: halve the steps that overshoot or crawl. A and B are the liquid fractions of the last two
// passes; the first rule that applies is taken.
void damp_late(FltpState& s) {
  const R4 A = s.FTLP / s.FT;
  const R4 B = s.FTLPP / s.FT;
  const R4 OLD = A - B;
  const R4 NEW = s.FLA - A;
  if (s.FLA <= s.FLAMIN) {
    s.FLAMAX = (A + s.FLAMAX) / 2.0F;
    s.FLA = (A + s.FLAMAX) / 2.0F;
  } else if (s.FLA >= s.FLAMAX) {
    s.FLAMIN = (A + s.FLAMIN) / 2.0F;
    s.FLA = (A + s.FLAMIN) / 2.0F;
  } else if ((A > s.FLA && s.FLA > s.FLAMIN) || (OLD > 0.0F && NEW > 0.0F && OLD > NEW) ||
             (OLD < 0.0F && NEW < 0.0F && OLD < NEW)) {
    s.FLA = (A + s.FLA) / 2.0F;
  } else {
    s.FLA = (A + B) / 2.0F;
  }
}

}  // namespace

// Newton iteration on the split. The fractions are clamped inside the loop; the test uses the step before it.
//
// In, out  s  FLA, FLB start and solution; KVL steps taken, above 50 without convergence
// Shared   sets fl.KFLAT when the equations have no slope; the split is then that of the vapour fraction at
//          entry
void solve_split(FltpState& s) {
  s.KVL = 0;
  s.KNOWN = true;
  NewtonStep step{};
  do {
    const SplitSums sums = split_sums(s.equations, s.FLA, s.FLB);
    if (!(sums.SUMAA > kNoSlope) || !(sums.SUMBB > kNoSlope)) {
      fl.KFLAT = true;
      s.FLA = 1.0F - s.VFF;
      s.FLB = 0.0F;
      return;
    }
    step = newton_step(s.NGO, sums);
    take_step(s, step);
    s.KVL = s.KVL + 1;
    if (s.KVL > kMaxNewtonSteps) return;
    if (s.NGO == SplitMode::liquid_liquid && s.KVL >= kLiquidLiquidSteps && sums.SUMA < 0.0F) return;
  } while (std::fabs(step.CHKONE) > kNewtonTolerance || std::fabs(step.CHKTWO) > kNewtonTolerance);
}

// Damping: a mean with the last pass at every tenth, the middle of the range of passes 71 to 79 at pass 80,
// a set of rules beyond.
//
// Oddity   FLAMIN starts at 2 and FLAMAX at -1; where passes 71 to 79 have not set them they stand as they
//          are
void damp_split(FltpState& s) {
  if (s.LOOP < 80 && s.LOOP % 10 != 0) return;
  if (s.key) s.FLB = (s.FTLSP / s.FT + s.FLB) / 2.0F;
  if (s.LOOP < 80) {
    fl.IDEAL_FLTP = kvalues::provisional;
    s.FLA = (s.FTLP / s.FT + s.FLA) / 2.0F;
  } else if (s.LOOP == 80) {
    const bool both_ends = !(s.FLAMIN > 0.0F) && !(s.FLAMAX < 1.0F);
    s.FLA = both_ends ? (s.FTLP / s.FT + s.FLA + s.FTLPP / s.FT) / 3.0F : (s.FLAMIN + s.FLAMAX) / 2.0F;
  } else {
    damp_late(s);
  }
}

// Flows of all phases, each phase with at least its floor total and a composition.
//
// Shared   reads fl.NC, F, VLK, VLKS; sets fl.FV, FL and, with a second liquid, FLS
void set_flows(FltpState& s) {
  const PhaseTotals totals = totals_of_split(s.FT, s.FLA, s.FLB, s.key);
  s.FTV = totals.FTV;
  s.FTL = totals.FTL;
  s.FTLS = totals.FTLS;
  flows_of_split(totals, s.key);
}

}  // namespace talix
