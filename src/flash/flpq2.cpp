#include "flash/flpq2.h"

#include <cmath>

#include "fastprops/error_matrix.h"
#include "fastprops/flash_record.h"
#include "flash/bracket.h"
#include "flash/fobj.h"

namespace talix {

namespace {

constexpr int kMaxIterations = 50;
constexpr R4 kLowestBracket = 5.0F;         // [K]
constexpr R4 kCoarseStep = 0.001F;          // [K]
constexpr R4 kFineStep = 1.0E-5F;           // [K]
constexpr R4 kEnthalpyTolerance = 1.0E-4F;  // of the target
constexpr R4 kPlateau = 0.002F;             // [K]

// Bracket, trial and what the trial showed; residuals [flow x J/mol], temperatures [K].
struct EnthalpySearch : Bracket {
  R4 DFMIDDT;             // slope at TMID [flow x J/(mol K)]
  R4 TLIQHIGH, FLIQHIGH;  // hottest state found to be all liquid
  R4 TVAPLOW, FVAPLOW;    // coldest state found to be all vapour
  R4 STEP;
  L4 LIQUID, VAPOUR;
  bool REGION_CHANGE;  // the last step came into another phase region
};

void evaluate(R4& F, R4& DF, L4& LIQUID, L4& VAPOUR, const L4& DOFLASH) {
  R4 FTL = 0.0F;
  R4 FTV = 0.0F;
  R4 CPL = 0.0F;
  R4 CPV = 0.0F;
  FOBJ(F, DF, FTL, FTV, CPL, CPV, LIQUID, VAPOUR, DOFLASH);
}

void evaluate_at(R4 T, R4& F, EnthalpySearch& s) {
  fl.T = T;
  evaluate(F, s.DFMIDDT, s.LIQUID, s.VAPOUR, logical(true));
}

bool fail(Message& STR, I4& IFAIL) {
  IFAIL = 1;
  mark_error(error_row::FLPQ2, 1);
  report(STR, " Unbracketed root (FLPQ2)");
  return false;
}

// Widens the range until the balance changes its sign in it. The trial is evaluated last: flows, slope and
// flags belong to it.
bool bracket(EnthalpySearch& s) {
  s.TLOW = 100.0F;
  s.THIGH = 900.0F;
  while (s.TLOW > kLowestBracket && s.THIGH <= kMaxTemperature) {
    evaluate_at(s.TLOW, s.FLOW, s);
    evaluate_at(s.THIGH, s.FHIGH, s);
    s.TMID = (s.TLOW + s.THIGH) / 2.0F;
    evaluate_at(s.TMID, s.FMID, s);
    if (shrink(s)) return true;
    if (s.FHIGH < 0.0F)
      s.THIGH += 100.0F;
    else if (s.FLOW > 0.0F)
      s.TLOW = s.TLOW / 2.0F;
    else
      return false;
  }
  return false;
}

void newton_step(EnthalpySearch& s) {
  s.TMID = s.TMID - s.FMID / s.DFMIDDT;
  if (!(s.TMID >= s.TLOW && s.TMID <= s.THIGH) || s.REGION_CHANGE) s.TMID = (s.TLOW + s.THIGH) / 2.0F;
  s.STEP = s.TMID - fl.T;
  const bool was_liquid{s.LIQUID};
  const bool was_vapour{s.VAPOUR};
  evaluate_at(s.TMID, s.FMID, s);
  const bool liquid{s.LIQUID};
  const bool vapour{s.VAPOUR};
  s.REGION_CHANGE = liquid != was_liquid || vapour != was_vapour;
  if (liquid && !vapour && s.TMID > s.TLIQHIGH) {
    s.TLIQHIGH = s.TMID;
    s.FLIQHIGH = s.FMID;
  }
  if (vapour && !liquid && s.TMID < s.TVAPLOW) {
    s.TVAPLOW = s.TMID;
    s.FVAPLOW = s.FMID;
  }
}

bool converged(const EnthalpySearch& s) {
  const R4 step = std::fabs(s.STEP);
  if (step > kCoarseStep) return false;
  return std::fabs(s.FMID / fl.QSPEC) <= kEnthalpyTolerance || !(step > kFineStep);
}

// A target on the jump between all liquid and all vapour, as of a pure component: the split follows from the two
// residuals.
void split_plateau(EnthalpySearch& s) {
  R4 L_TO_FEED = s.FVAPLOW / (s.FVAPLOW - s.FLIQHIGH);
  if (L_TO_FEED > 1.0F) L_TO_FEED = 1.0F;
  if (!(L_TO_FEED >= 0.0F)) L_TO_FEED = 0.0F;
  for (int i = 1; i <= fl.NC; ++i) {
    fl.FL(i) = fl.F(i) * L_TO_FEED;
    fl.FV(i) = fl.F(i) * (1.0F - L_TO_FEED);
  }
  evaluate(s.FMID, s.DFMIDDT, s.LIQUID, s.VAPOUR, logical(false));
}

}  // namespace

// FLPQ2: temperature of the target enthalpy at given pressure, around the fast isothermal flash.
//
// Out      FOUT   R4  last residual [flow x J/mol]
//          IFAIL  I4  0 found, 1 not
//          STR    message, untouched on success
// Shared   reads fl.NC, F, P, QSPEC; sets fl.T and, through FOBJ, FV, FL, VLK, X1, Y
// Reports  " Unbracketed root (FLPQ2)", cell 1; " More than MAXIT iterations (FLPQ2)"
// Oddity   a target of 0 makes the relative test fail always: the search then runs until the temperature stands
void FLPQ2(R4& FOUT, I4& IFAIL, Message& STR) {
  IFAIL = 0;
  EnthalpySearch s{};
  if (!bracket(s)) {
    FOUT = s.FMID;
    fail(STR, IFAIL);
    return;
  }
  s.TLIQHIGH = s.TLOW;
  s.FLIQHIGH = s.FLOW;
  s.TVAPLOW = s.THIGH;
  s.FVAPLOW = s.FHIGH;
  int ITCOUNT = 0;
  do {
    newton_step(s);
    FOUT = s.FMID;
    if (!shrink(s)) {
      fail(STR, IFAIL);
      return;
    }
    ITCOUNT = ITCOUNT + 1;
    if (ITCOUNT > kMaxIterations) {
      IFAIL = 1;
      report(STR, " More than MAXIT iterations (FLPQ2)");
      return;
    }
  } while (!converged(s));
  if (std::fabs(s.TVAPLOW - s.TLIQHIGH) <= kPlateau) {
    split_plateau(s);
    FOUT = s.FMID;
  }
}

}  // namespace talix
