#include "flash/flvt.h"

#include <algorithm>
#include <cmath>

#include "fastprops/error_matrix.h"
#include "fastprops/flash_record.h"
#include "fastprops/small_arrays.h"
#include "flash/flvt_state.h"
#include "flash/kval.h"
#include "flash/phase_flows.h"

namespace talix {

namespace {

constexpr R4 kMinTemperature = 1.0F;         // [K]
constexpr R4 kRefusedTemperature = 373.15F;  // left behind by a refused call [K]
constexpr R4 kReplacedPressure = 2.0F;       // start in place of one that cannot be used [bar]
constexpr R4 kMaxFlow = 1.0E+9F;             // [mol]
constexpr R4 kMaxStep = 1.5F;                // of the pressure [bar]
constexpr R4 kTolerance = 1.0E-5F;           // relative, of pressure and liquid fraction
constexpr I4 kMaxPasses = 200;

enum class Verdict { next_pass, converged, no_convergence };

bool refuse(Message& STR, std::string_view text, int number) {
  fl.NCAL = flash_status::failed;
  report(STR, text);
  mark_error(error_row::FLVT, number);
  return false;
}

bool enter(FlvtState& s, Message& STR) {
  if (!(fl.T >= kMinTemperature) || !(fl.T <= kMaxTemperature)) {
    fl.T = kRefusedTemperature;
    return refuse(STR, " Temperature not between 0 and 1773 K, no flash calculation (FLVT)", 1);
  }
  if (!(fl.P > 0.0F) || !(fl.P <= kMaxPressure)) fl.P = kReplacedPressure;
  s.FT = TELOP(fl.NC, fl.F);
  if (!(s.FT > kFlowFloor) || !(s.FT <= kMaxFlow))
    return refuse(STR, " Feed flow not between 1.0E-9 and 1.0E+9, no flash calculation (FLVT)", 2);
  s.key = fl.NL2KEY > 0;
  s.equations.second_liquid = s.key;
  s.RFT = 1.0F / s.FT;
  s.PSTAR = fl.P;
  s.FLL = 1.0F - fl.FRV;
  s.FTL = -1.0F;
  s.IDEAL = kvalues::ideal;
  return true;
}

void gather(FlvtState& s) {
  SplitEquations& e = s.equations;
  e.count = 0;
  for (int i = 1; i <= fl.NC; ++i) {
    if (!(fl.F(i) >= kNegligibleFeed)) continue;
    const int k = ++e.count;
    e.ZZ(k) = fl.F(i) * s.RFT;
    e.KA(k) = fl.VLK(i);
    e.KB(k) = s.key ? fl.VLKS(i) : kNoSecondLiquidFactor;
  }
}

// The first pass stays on the K-values of FLPST where there are any.
void begin_pass(FlvtState& s) {
  s.LOOP = s.LOOP + 1;
  fl.P = s.PSTAR;
  if (fl.KSTART && s.LOOP == 1)
    s.IDEAL = kvalues::real;
  else
    KVAL(s.IDEAL, s.LOOP);
  gather(s);
  s.KVL = 0;
  s.NGO = PressureMode::liquid_a;
  s.FLA = s.FLL;
  s.FLB = 0.0F;
  s.FTLO = s.FTL;
  s.PCAL = s.PSTAR;
}

// One limited step; true when neither the pressure nor the split has moved.
bool take_step(FlvtState& s) {
  const R4 PLASTCAL = s.PCAL;
  const R4 FLALAST = s.FLA;
  s.PCAL = std::min(s.PCAL + std::clamp(s.DELP, -kMaxStep, kMaxStep), kMaxPressure);
  if (!(s.PCAL > 0.0F)) s.PCAL = PLASTCAL / 2.0F;
  s.FLA = std::clamp(s.FLA + s.QAL, 0.0F, s.FLL);
  s.FLB = s.FLL - s.FLA;
  return !(std::fabs(s.FLA - FLALAST) > kTolerance) && !(std::fabs(s.PCAL - PLASTCAL) >= kTolerance * s.PCAL);
}

// Newton loop on the pressure with the K-values taken as proportional to 1/P.
void solve_pressure(FlvtState& s) {
  bool settled = false;
  do {
    evaluate_pressure(s);
    s.QAL = 0.0F;
    s.DELP = -s.QA / s.QAP;
    if (s.key) step_second_liquid(s);
    // An equation that is not a number has no solution.
    if (!std::isfinite(s.DELP) || !std::isfinite(s.QAL)) {
      s.KVL = kMaxPressureSteps + 1;
      return;
    }
    settled = take_step(s);
    s.KVL = s.KVL + 1;
  } while (s.KVL <= kMaxPressureSteps && (!settled || (s.key && admit_second_liquid(s))));
}

// Flows from the K-values at PSTAR.
void set_flows(FlvtState& s) {
  const PhaseTotals totals = totals_of_split(s.FT, s.FLA, s.FLB, s.key);
  s.FTL = totals.FTL;
  if (s.key) {
    flows_of_split(totals, s.key);
    return;
  }
  for (int i = 1; i <= fl.NC; ++i) {
    const R4 J = totals.FTV * fl.VLK(i);
    const R4 R = fl.F(i) / (totals.FTL + J);
    fl.FL(i) = R * totals.FTL;
    fl.FV(i) = R * J;
  }
  scale_to_floor(fl.FL, totals.FTL);
  scale_to_floor(fl.FV, totals.FTV);
}

Verdict judge(FlvtState& s) {
  if (s.KVL > kMaxPressureSteps) {
    if (s.LOOP > 1) return Verdict::no_convergence;
    s.KVL = 0;
  }
  const R4 change = std::fabs(s.PCAL - s.PSTAR) / s.PSTAR;
  s.PSTAR = s.PCAL;
  if (s.LOOP == 1) return Verdict::next_pass;
  if (s.LOOP > kMaxPasses) return Verdict::no_convergence;
  if (s.IDEAL != kvalues::real) return Verdict::next_pass;
  if (!(change <= kTolerance)) return Verdict::next_pass;
  if (!(std::fabs(s.FTL - s.FTLO) * s.RFT <= kTolerance)) return Verdict::next_pass;
  return Verdict::converged;
}

}  // namespace

// Equations at PCAL: QA and QB are 0 where liquid A and liquid B are saturated. A K-value is capped at 1E+6 in
// the equation of liquid A and not in its slope.
void evaluate_pressure(FlvtState& s) {
  constexpr R4 kMaxScaledK = 1000000.0F;
  const SplitEquations& e = s.equations;
  const R4 J = s.PSTAR / s.PCAL;
  s.QA = s.QB = s.QAP = s.QBP = s.QAA = s.QBB = 0.0F;
  for (int i = 1; i <= e.count; ++i) {
    const R4 K = e.KA(i);
    const R4 PK = std::min(K * J, kMaxScaledK);
    const R4 Z = e.ZZ(i);
    if (!s.key) {
      const R4 L = 1.0F / (s.FLL * (1.0F - PK) + PK);
      s.QA += Z * L * (1.0F - PK);
      s.QAP += Z * L * L * K;
      continue;
    }
    const R4 KS = e.KB(i);
    const R4 L = 1.0F / (s.FLA * KS + s.FLB * K + PK * KS * fl.FRV);
    const R4 TEMP2 = Z * KS * (1.0F - PK) * L;
    const R4 TEMP3 = Z * (K - KS * PK) * L;
    const R4 slope = Z * KS * K * L * L;
    s.QA += TEMP2;
    s.QB += TEMP3;
    s.QAP += slope * (s.FLA * KS + s.FLB * K + fl.FRV * KS);
    s.QBP += slope * (s.FLA * KS + s.FLB * K + fl.FRV * K);
    s.QAA += TEMP2 * (K - KS) * L;
    s.QBB += TEMP3 * (K - KS) * L;
  }
  s.QAP *= J / s.PCAL;
  s.QBP *= J / s.PCAL;
}

// FLVT: pressure of a vapour fraction at given temperature, by substitution of K-values around a Newton loop.
//
// Out      STR  message, untouched on success
// Shared   reads fl.NC, F, FRV, T, KSTART, NL2KEY and fl.P as start; sets fl.P, FV, FL, FLS, NCAL, VLK, VLKS, and
//          through KVAL X1, Y, X2, ZL, ZV, ZL2
// Status   fl.NCAL is flash_status::failed behind the texts of the entry only
// Reports  " Temperature not between 0 and 1773 K, no flash calculation (FLVT)", cell 1; fl.T becomes 373.15 K
//          " Feed flow not between 1.0E-9 and 1.0E+9, no flash calculation (FLVT)", cell 2
//          " No convergence after MAXIT iterations, calculation suspended(FLVT)", cell 3
// Oddity   a start pressure that cannot be used is replaced by 2 bar in silence, and a search that runs into
//          900 bar ends there without a text. The lower limit of the feed is 2.0E-8, not the 1.0E-9 of the text.
void FLVT(Message& STR) {
  FlvtState s{};
  if (!enter(s, STR)) return;
  Verdict verdict = Verdict::next_pass;
  while (verdict == Verdict::next_pass) {
    begin_pass(s);
    solve_pressure(s);
    set_flows(s);
    verdict = judge(s);
  }
  fl.P = s.PCAL;
  if (verdict == Verdict::converged) return;
  report(STR, " No convergence after MAXIT iterations, calculation suspended(FLVT)");
  mark_error(error_row::FLVT, 3);
}

}  // namespace talix
