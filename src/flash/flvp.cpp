#include "flash/flvp.h"

#include <algorithm>
#include <cmath>

#include "fastprops/error_matrix.h"
#include "fastprops/flash_record.h"
#include "fastprops/small_arrays.h"
#include "flash/flvp_state.h"
#include "flash/kval.h"
#include "flash/phase_flows.h"

namespace talix {

namespace {

constexpr R4 kMinTemperature = 1.0F;          // [K]
constexpr R4 kStartTemperature = 300.0F;      // in place of a temperature of 0 [K]
constexpr R4 kReplacedTemperature = 373.15F;  // in place of one out of range [K]
constexpr R4 kReplacedPressure = 2.0F;        // left behind by a refused call [bar]
constexpr R4 kMaxFlow = 1.0E+9F;              // [mol]
constexpr R4 kFirstLimit = 50.0F;             // first limit of the step [K]
constexpr R4 kSmallestLimit = 0.001F;         // and its lower end [K]
constexpr R4 kSmallestStep = 0.001F;          // smaller steps count as none [K]
constexpr R4 kLastAttempt = 100.0F;           // step that tries to leave a region without solution [K]
constexpr I4 kMaxSigns = 5;
constexpr I4 kMaxPasses = 80;
// From this pass on slopes are compared and signs of no solution are looked for.
constexpr I4 kSettledPass = 4;

bool refuse(Message& STR, std::string_view text) {
  fl.NCAL = flash_status::failed;
  report(STR, text);
  return false;
}

bool check_input(FlvpState& s, Message& STR) {
  if (fl.T == 0.0F) fl.T = kStartTemperature;
  if (!(fl.T >= kMinTemperature) || !(fl.T <= kMaxTemperature)) fl.T = kReplacedTemperature;
  if (!(fl.P > 0.0F) || !(fl.P <= kMaxPressure)) {
    fl.P = kReplacedPressure;
    mark_error(error_row::FLVP, 1);
    return refuse(STR, " Pressure not between 0 and  900 bar, no flash calculation (FLVP)");
  }
  s.FT = TELOP(fl.NC, fl.F);
  if (!(s.FT > kFlowFloor) || !(s.FT <= kMaxFlow))
    return refuse(STR, " Feed flow not between 1.0E-9 and 1.0E+9, no flash calculation (FLVP)");
  return true;
}

// Start flows from the fraction, unless a warm start keeps those of the last flash.
void set_start_flows(const FlvpState& s) {
  if (fl.NCAL == flash_status::warm_start || fl.NCAL == flash_status::warm_last) return;
  for (int i = 1; i <= fl.NC; ++i) {
    fl.FV(i) = fl.F(i) * fl.FRV;
    fl.FL(i) = fl.F(i) - fl.FV(i);
  }
  if (!s.key) return;
  ZERO(fl.NC, fl.FLS);
  fl.FLS(fl.NL2KEY) = fl.FL(fl.NL2KEY);
  fl.FL(fl.NL2KEY) = 0.0F;
}

bool enter(FlvpState& s, Message& STR) {
  if (!check_input(s, STR)) return false;
  s.key = fl.NL2KEY > 0;
  s.equations.second_liquid = s.key;
  s.TA = fl.T;
  s.RFT = 1.0F / s.FT;
  s.DTMAX = kFirstLimit;
  s.TOLQ = 1.0E-6F;
  s.FLL = 1.0F - fl.FRV;
  s.FLA = s.FLL;
  s.FTLS = s.key ? fl.FTLS_FLVP : 0.0F;
  set_start_flows(s);
  return true;
}

// Feed and K-values of the pass; K-values all near 1, as those of a pure component, tighten the tolerance.
void gather(FlvpState& s) {
  SplitEquations& e = s.equations;
  e.count = 0;
  R4 PURE = 0.0F;
  for (int i = 1; i <= fl.NC; ++i) {
    if (!(fl.F(i) >= kNegligibleFeed)) continue;
    const int k = ++e.count;
    e.ZZ(k) = fl.F(i) * s.RFT;
    e.KA(k) = fl.VLK(i);
    e.KB(k) = s.key ? fl.VLKS(i) : kNoSecondLiquidFactor;
    PURE += e.ZZ(k) * std::fabs(1.0F - e.KA(k));
  }
  if (PURE < 0.001F) s.TOLQ = 1.0E-7F;
}

void begin_pass(FlvpState& s) {
  s.LOOP = s.LOOP + 1;
  fl.T = s.TA;
  KVAL(fl.IDEAL_FLVP, s.LOOP);
  gather(s);
  s.QAOLD = s.QA;
  s.QBOLD = s.QB;
  evaluate_fraction(s, s.FLA);
}

bool turned(R4 slope, R4 before) {
  return (slope < 0.0F && before > 0.0F) || (slope > 0.0F && before < 0.0F);
}

// Slopes against the pass before; a slope that changes its sign halves the limit of the step. False when the
// search has stopped.
bool form_slopes(FlvpState& s) {
  if (s.LOOP < 2) return true;
  if (s.TA == s.TAOLD) return false;
  s.DQADTOLD = s.DQADT;
  s.DQBDTOLD = s.DQBDT;
  s.DQADT = (s.QAOLD - s.QA) / (s.TAOLD - s.TA);
  s.DQBDT = (s.QBOLD - s.QB) / (s.TAOLD - s.TA);
  if (s.LOOP >= kSettledPass && (turned(s.DQADT, s.DQADTOLD) || turned(s.DQBDT, s.DQBDTOLD)))
    s.DTMAX = std::max(s.DTMAX / 2.0F, kSmallestLimit);
  return true;
}

AfterDecision decide(FlvpState& s) {
  if (!form_slopes(s)) return AfterDecision::finish;
  // Equations that are not numbers have no solution.
  if (!std::isfinite(s.QA) || !std::isfinite(s.QB)) {
    s.DELTAT = kFirstLimit;
    return AfterDecision::no_convergence;
  }
  return s.key ? decide_second_liquid(s) : decide_step(s, s.QA, s.DQADT);
}

AfterDecision no_solution_sign(FlvpState& s, R4 Q) {
  s.NOSOL = s.NOSOL + 1;
  if (s.NOSOL > kMaxSigns) return AfterDecision::insolvable;
  s.DTMAX = kLastAttempt;
  s.DELTAT = std::copysign(kLastAttempt, Q);
  return AfterDecision::next_pass;
}

void set_flows(FlvpState& s) {
  const PhaseTotals totals = totals_of_split(s.FT, s.FLA, s.FLB, s.key);
  s.FTLS = totals.FTLS;
  flows_of_split(totals, s.key);
}

void take_step(FlvpState& s) {
  s.TAOLD = s.TA;
  s.DELTAT = std::clamp(s.DELTAT, -s.DTMAX, s.DTMAX);
  if (std::fabs(s.DELTAT) < kSmallestStep) s.DELTAT = 0.0F;
  s.TA = std::clamp(s.TA + s.DELTAT, kMinTemperature, kMaxTemperature);
}

// A pass with its decision; the flows follow every decision but the one to give up.
AfterDecision make_pass(FlvpState& s) {
  begin_pass(s);
  const AfterDecision decision = decide(s);
  if (decision == AfterDecision::finish || decision == AfterDecision::next_pass) set_flows(s);
  if (decision != AfterDecision::next_pass) return decision;
  if (s.LOOP > kMaxPasses) return AfterDecision::no_convergence;
  take_step(s);
  return AfterDecision::next_pass;
}

// The smaller the last step, the better a solution that is not one.
I4 loose_status(R4 DELTAT) {
  const R4 size = std::fabs(DELTAT);
  if (size < 0.001F) return -1;
  if (size < 0.01F) return -2;
  if (size < 0.1F) return -3;
  return flash_status::failed;
}

bool tells_failures() {
  return fl.IFLASH == flash_type::bubble_temperature || fl.IFLASH == flash_type::dew_temperature ||
         fl.IFLASH == flash_type::adiabatic;
}

// A search that ends on ideal K-values has formed no compositions; those of an older call must not stand.
void form_compositions() {
  if (fl.IDEAL_FLVP != kvalues::ideal) return;
  MOLFR(fl.NC, TELOP(fl.NC, fl.FV), fl.FV, fl.Y);
  MOLFR(fl.NC, TELOP(fl.NC, fl.FL), fl.FL, fl.X1);
}

void leave(const FlvpState& s, AfterDecision end, Message& STR) {
  fl.T = s.TA;
  form_compositions();
  if (s.key) fl.FTLS_FLVP = s.FTLS;
  fl.NCAL = end == AfterDecision::finish ? flash_status::fresh : loose_status(s.DELTAT);
  if (end == AfterDecision::finish || !tells_failures()) return;
  report(STR, end == AfterDecision::no_convergence
                  ? " No convergence after 80 iterations, calculation suspended (FLVP)"
                  : " Fraction vapour insolvable, non-condensables present (FLVP)");
}

}  // namespace

void evaluate_fraction(FlvpState& s, R4 FLA) {
  s.FLA = FLA;
  s.FLB = s.FLL - FLA;
  s.sums = split_sums(s.equations, s.FLA, s.FLB);
  s.QA = s.sums.SUMA;
  s.QB = s.key ? s.sums.SUMB : 0.0F;
}

R4 first_step(R4 Q) { return std::copysign(6.0F, Q); }

// Oddity   a slope of the wrong sign is followed upwards in temperature, whatever the equation says
AfterDecision decide_step(FlvpState& s, R4 Q, R4 DQDT) {
  if (s.LOOP == 1) {
    s.DELTAT = first_step(Q);
    return AfterDecision::next_pass;
  }
  if (s.LOOP >= kSettledPass) {
    if (s.DTMAX <= 1.0F && Q < -1.0E-5F) return no_solution_sign(s, Q);
    if (!(DQDT < 0.0F)) {
      s.DELTAT = s.DTMAX;
      return AfterDecision::next_pass;
    }
  }
  if (std::fabs(Q) < s.TOLQ) return AfterDecision::finish;
  s.DELTAT = DQDT != 0.0F ? -Q / DQDT : first_step(Q);
  return AfterDecision::next_pass;
}

// FLVP: temperature of a vapour fraction at given pressure, by a secant search with new K-values in every pass.
//
// Out      STR  message, untouched on success and where failures are not told
// Shared   reads fl.NC, F, FRV, P, NCAL, IFLASH, NL2KEY and fl.T as start; sets fl.T, FV, FL, FLS, NCAL, VLK,
//          VLKS, and through KVAL X1, Y, X2, ZL, ZV, ZL2; keeps fl.IDEAL_FLVP and FTLS_FLVP
// Status   fl.NCAL: fresh; -1 to -3 a loose solution whose last step was below 0.001, 0.01, 0.1 K; failed
// Reports  " Pressure not between 0 and  900 bar, no flash calculation (FLVP)", cell 1; fl.P becomes 2 bar
//          " Feed flow not between 1.0E-9 and 1.0E+9, no flash calculation (FLVP)"
//          " No convergence after 80 iterations, calculation suspended (FLVP)", codes 2, 4 and 8 only
//          " Fraction vapour insolvable, non-condensables present (FLVP)", codes 2, 4 and 8 only
// Oddity   for the other codes a search that does not converge ends without a text; only fl.NCAL tells. So does,
//          with all codes, one that stops at 1 K or 1773.15 K. A start temperature out of range is replaced in
//          silence.
void FLVP(Message& STR) {
  FlvpState s{};
  if (!enter(s, STR)) return;
  AfterDecision decision = AfterDecision::next_pass;
  while (decision == AfterDecision::next_pass) decision = make_pass(s);
  leave(s, decision, STR);
}

}  // namespace talix
