#include "flash/fltp2.h"

#include <cmath>

#include "fastprops/flash_record.h"
#include "fastprops/small_arrays.h"
#include "flash/fltp_state.h"
#include "flash/kval.h"

namespace talix {

constinit Text<60> FLTP2_TEXT = text<60>("");

namespace {

constexpr R4 kMaxFlow = 1.0E+9F;
constexpr I4 kProvisionalPasses = 15;
constexpr I4 kMaxPasses = 80;
constexpr I4 kDampedPass = 10;
// Passes of one phase during which a trace of the other keeps its composition for the next K-values.
constexpr I4 kTracePasses = 30;
constexpr R4 kTrace = 1.0E-4F;

bool refuse(std::string_view message) {
  fl.NCAL = flash_status::failed;
  FLTP2_TEXT = message;
  echo(trimmed(FLTP2_TEXT));
  return false;
}

bool check_input(FltpState& s) {
  s.FT = TELOP(fl.NC, fl.F);
  for (int i = 1; i <= fl.NC; ++i)
    if (!(fl.F(i) >= 0.0F && fl.F(i) <= kMaxFlow))
      return refuse(" One feed stream negative or too big, no flash calculation (FLTP2)");
  if (!(s.FT > 0.0F) || s.FT > kMaxFlow)
    return refuse(" Total feed rate greater than 1.0e+9, no flash calculation (FLTP2)");
  if (!(fl.P > 0.0F)) return refuse(" Pressure not above 0, no flash calculation (FLTP2)");
  return true;
}

bool enter(FltpState& s) {
  if (!check_input(s)) return false;
  if (fl.NCAL != flash_status::warm_start && fl.NCAL != flash_status::warm_last) {
    for (int i = 1; i <= fl.NC; ++i) {
      fl.FV(i) = fl.F(i) * fl.FRV;
      fl.FL(i) = fl.F(i) - fl.FV(i);
    }
  }
  s.FTV = TELOP(fl.NC, fl.FV);
  s.FTL = TELOP(fl.NC, fl.FL);
  s.FLAIN = s.FTV > 0.0F ? s.FTL / (s.FTL + s.FTV) : 0.0F;
  s.RFT = 1.0F / s.FT;
  s.VFF = fl.FRV;
  // A total that no pass can have, so that the first convergence test fails.
  s.FTL = -1.0F;
  fl.KFLAT = false;
  return true;
}

void begin_pass(FltpState& s) {
  s.LOOP = s.LOOP + 1;
  KVAL(fl.IDEAL_FLTP, s.LOOP);
  if (s.LOOP <= kProvisionalPasses) fl.IDEAL_FLTP = kvalues::provisional;
  SplitEquations& e = s.equations;
  e.count = 0;
  s.ZKA = s.ZBKA = 0.0F;
  for (int i = 1; i <= fl.NC; ++i) {
    if (!(fl.F(i) >= kNegligibleFeed)) continue;
    const int k = ++e.count;
    e.ZZ(k) = fl.F(i) * s.RFT;
    e.KA(k) = fl.VLK(i);
    e.KB(k) = kNoSecondLiquidFactor;
    const R4 z = e.ZZ(k) >= kNegligibleFeed ? e.ZZ(k) : 0.0F;
    s.ZKA += z * e.KA(k);
    s.ZBKA += z / e.KA(k);
  }
  s.KVL = 0;
  s.FTLP = s.FTL;
}

void take_single_phase(FltpState& s, R4 alone, R4 with_trace, I4& passes) {
  s.FLA = alone;
  passes = passes + 1;
  if (passes <= kTracePasses && fl.IDEAL_FLTP == kvalues::provisional) s.FLA = with_trace;
}

void find_split(FltpState& s) {
  s.NCONV = AfterFlows::end_pass;
  if (!(s.FT > kFlowFloor)) {
    s.NCONV = AfterFlows::leave_flash;
    s.FLA = 1.0F - fl.FRV;
  } else if (s.ZBKA <= 1.0F) {
    take_single_phase(s, 0.0F, kTrace, s.NP2);
  } else if (s.ZKA <= 1.0F) {
    take_single_phase(s, 1.0F, 1.0F - kTrace, s.NP1);
  } else {
    s.NGO = SplitMode::vapour_liquid_a;
    if (s.LOOP == 1) s.FLA = s.FLAIN != 0.0F ? s.FLAIN : 0.5F;
    solve_split(s);
  }
}

// Damping stays a mean with the last pass, at every tenth.
void damp(FltpState& s) {
  if (s.LOOP % kDampedPass != 0) return;
  fl.IDEAL_FLTP = kvalues::provisional;
  s.FLA = (s.FTLP / s.FT + s.FLA) / 2.0F;
}

// True when the flash is done, with a text after the last pass.
bool end_pass(const FltpState& s) {
  if (s.LOOP == 1) return false;
  if (s.LOOP > kMaxPasses) {
    refuse(" K-values unusually dependent on composition, no convergence (FLTP2)");
    return true;
  }
  if (fl.IDEAL_FLTP == kvalues::provisional) return false;
  return std::fabs(s.FTLP - s.FTL) <= 1.0E-5F * s.FT;
}

// True when no other pass is to follow.
bool run_pass(FltpState& s) {
  begin_pass(s);
  find_split(s);
  damp(s);
  set_flows(s);
  if (s.KVL > kMaxNewtonSteps) {
    refuse(" Flash unable to converge to a solution (FLTP2)");
    return true;
  }
  return s.NCONV == AfterFlows::leave_flash || end_pass(s);
}

}  // namespace

// FLTP2: isothermal flash of two phases by successive substitution, the older form of FLTP.
//
// Out      FLTP2_TEXT  text of a failure, cut to 60 characters
// Shared   as FLTP
// Status   fl.NCAL is flash_status::failed behind every text
// Reports  to FLTP2_TEXT and as echo, both cut; not counted:
//          " One feed stream negative or too big, no flash calculation (FLTP2)"
//          " Total feed rate greater than 1.0e+9, no flash calculation (FLTP2)"
//          " Pressure not above 0, no flash calculation (FLTP2)"
//          " Flash unable to converge to a solution (FLTP2)"
//          " K-values unusually dependent on composition, no convergence (FLTP2)"
// Oddity   STR stays as it came; nothing in the library calls this form
void FLTP2(Message& /*STR*/) {
  FLTP2_TEXT.blank();
  FltpState s{};
  if (enter(s)) {
    while (!run_pass(s)) {
    }
  }
  fl.FRV = 1.0F - s.FLA - s.FLB;
}

}  // namespace talix
