#include "flash/fobj.h"

#include "engine/codes.h"
#include "fastprops/enthal.h"
#include "fastprops/small_arrays.h"
#include "flash/fltp3.h"
#include "numerics/sal_linear.h"

namespace talix {

namespace {

// Smallest share and total of a phase that takes part in the balance.
constexpr R4 kPhaseShare = 1.0E-6F;
// Keeps the inverse of a flow of 0 finite.
constexpr R8 kTinyFlow = 1.0E-50;

// What ENTHAL gives in its modes 1 and 2; the other results of its list are not read.
struct PhaseEnthalpy {
  R4 RHO, Z, MW, HID, SID, CPID, H, DHDT, S, CV, CP, SONIC, JT, KAPPA;
  FugacityVector FUG, FUGTL, FUGPL;
  FugacityMatrix FUGN;
  FlashVec HN;  // partial molar enthalpies [J/mol]
};

constinit PhaseEnthalpy vapour_result{};
constinit PhaseEnthalpy liquid_result{};
constinit FugacityMatrix AA{};
constinit FugacityVector B{};
constinit Vec<I4, kMaxComponents> KK{};

void evaluate(I4 MODE, I4 PH, R4 total, FlashVec& flow, FlashVec& fraction, PhaseEnthalpy& r) {
  I4 PHOUT = 0;
  MOLFR(fl.NC, total, flow, fraction);
  ENTHAL(MODE, PH, PHOUT, fl.NC, fl.RGAS, r.RHO, fl.T, fl.P, r.Z, fraction, r.MW, r.HID, r.SID, r.CPID, r.H,
         r.DHDT, r.S, r.CV, r.CP, r.SONIC, r.JT, r.KAPPA, r.FUG, r.FUGTL, r.FUGPL, r.FUGN, r.HN);
}

void clear_matrix() {
  for (int i = 1; i <= fl.NC; ++i)
    for (int j = 1; j <= fl.NC; ++j) AA(j, i) = 0.0;
}

// Change of ln fugacity of each component in a phase with the flow of each, added to AA.
void add_phase(const PhaseEnthalpy& r, R4 total, const FlashVec& flow) {
  const R8 reciprocal = 1.0 / static_cast<R8>(total);
  for (int i = 1; i <= fl.NC; ++i) {
    for (int j = 1; j <= fl.NC; ++j) AA(j, i) += (r.FUGN(j, i) - 1.0) * reciprocal;
    AA(i, i) += 1.0 / (static_cast<R8>(flow(i)) + kTinyFlow);
  }
}

// A feed of one component has a matrix of zeros, up to the rounding of the engine: its split does not depend on
// the fugacities.
void clear_pure_row() {
  int found = 0;
  for (int i = 1; i <= fl.NC; ++i) {
    if (!(fl.FV(i) + fl.FL(i) > 0.0F)) continue;
    if (found != 0) return;
    found = i;
  }
  if (found == 0) return;
  for (int j = 1; j <= fl.NC; ++j) AA(found, j) = 0.0;
}

// Heat carried by what moves between the phases as T changes at equal fugacities [flow x J/(mol K)].
R4 transfer_slope(R4 FTV, R4 FTL) {
  for (int i = 1; i <= fl.NC; ++i) B(i) = vapour_result.FUGTL(i) - liquid_result.FUGTL(i);
  clear_matrix();
  add_phase(vapour_result, FTV, fl.FV);
  add_phase(liquid_result, FTL, fl.FL);
  clear_pure_row();
  R8 D = 0.0;
  I4 STATUS = status::ok;
  SALLA1(AA.data(), fl.NC, kMaxComponents, KK.data(), D, STATUS);
  if (STATUS != status::ok) return 0.0F;
  SALLA0(AA.data(), fl.NC, kMaxComponents, KK.data(), B.data());
  R8 sum = 0.0;
  for (int i = 1; i <= fl.NC; ++i) sum += static_cast<R8>(liquid_result.HN(i) - vapour_result.HN(i)) * B(i);
  return static_cast<R4>(sum / static_cast<R8>(fl.T));
}

}  // namespace

// FOBJ: total enthalpy less its target, and the slope in temperature at constant pressure.
//
// In       DOFLASH  L4  true: FLTP3 first; false: the flows stand
// Out      F        R4  QCAL - QSPEC [flow x J/mol]
//          DF       R4  slope with the shift of the split [flow x J/(mol K)]
//          FTLO, FTVO   R4  totals of liquid and vapour [mol]
//          CPL, CPV     R4  dH/dT of liquid and vapour [J/(mol K)]; 0 for an absent phase
//          LIQUID, VAPOUR  L4  the phase is there: over 1E-6 of the flow and over 2.1E-8 mol
// Shared   reads fl.NC, F, T, P, QSPEC; sets fl.FV, FL, VLK through FLTP3, and X1, Y
// Oddity   a singular matrix, which a pure feed always has, leaves DF without the shift of the split
void FOBJ(R4& F, R4& DF, R4& FTLO, R4& FTVO, R4& CPL, R4& CPV, L4& LIQUID, L4& VAPOUR, const L4& DOFLASH) {
  if (DOFLASH) {
    Message ignored{};
    FLTP3(ignored);
  }
  const R4 FTV = TELOP(fl.NC, fl.FV);
  const R4 FTL = TELOP(fl.NC, fl.FL);
  VAPOUR = FTV / (FTL + FTV) > kPhaseShare && FTV > kPhaseLimit;
  LIQUID = FTL / (FTL + FTV) > kPhaseShare && FTL > kPhaseLimit;
  const bool TWOPHASE = VAPOUR && LIQUID;
  const I4 MODE = TWOPHASE ? 2 : 1;
  FTLO = FTL;
  FTVO = FTV;
  CPL = CPV = 0.0F;
  R4 QVV = 0.0F;
  R4 QLL = 0.0F;
  if (VAPOUR) {
    evaluate(MODE, flash_phase::vapour, FTV, fl.FV, fl.Y, vapour_result);
    QVV = vapour_result.H * FTV;
    CPV = vapour_result.DHDT;
  }
  if (LIQUID) {
    evaluate(MODE, flash_phase::liquid, FTL, fl.FL, fl.X1, liquid_result);
    QLL = liquid_result.H * FTL;
    CPL = liquid_result.DHDT;
  }
  F = QVV + QLL - fl.QSPEC;
  DF = CPV * FTV + CPL * FTL;
  if (TWOPHASE) DF += transfer_slope(FTV, FTL);
}

}  // namespace talix
