#include "flash/fltp.h"

#include <algorithm>
#include <cmath>

#include "fastprops/error_matrix.h"
#include "fastprops/flash_record.h"
#include "fastprops/small_arrays.h"
#include "flash/fltp_state.h"
#include "flash/kval.h"

namespace talix {

namespace {

constexpr R4 kMaxFlow = 1.0E+9F;
// Passes in which convergence is never accepted, and the last pass.
constexpr I4 kProvisionalPasses = 15;
constexpr I4 kMaxPasses = 160;
// Passes of one phase during which a trace of the other keeps its composition for the next K-values.
constexpr I4 kTracePasses = 30;
constexpr R4 kTrace = 1.0E-4F;

bool refuse(Message& STR, std::string_view text) {
  fl.NCAL = flash_status::failed;
  report(STR, text);
  return false;
}

bool check_input(FltpState& s, Message& STR) {
  s.FT = TELOP(fl.NC, fl.F);
  for (int i = 1; i <= fl.NC; ++i) {
    if (fl.F(i) >= 0.0F && fl.F(i) <= kMaxFlow) continue;
    mark_error(error_row::FLTP, 1);
    return refuse(STR, " One feed stream negative or too big, no flash calculation (FLTP)");
  }
  if (!(s.FT > 0.0F) || s.FT > kMaxFlow) {
    mark_error(error_row::FLTP, 2);
    return refuse(STR, " Total feed rate greater than 1.0E+9, no flash calculation (FLTP)");
  }
  if (!(fl.P > 0.0F)) return refuse(STR, " Pressure not above 0, no flash calculation (FLTP)");
  return true;
}

// Start flows from the vapour fraction at entry, unless a warm start keeps those of the last flash.
void set_start_flows(FltpState& s) {
  if (fl.NCAL != flash_status::warm_start && fl.NCAL != flash_status::warm_last) {
    for (int i = 1; i <= fl.NC; ++i) {
      fl.FV(i) = fl.F(i) * fl.FRV;
      fl.FL(i) = fl.F(i) - fl.FV(i);
    }
    if (s.key) {
      ZERO(fl.NC, fl.FLS);
      fl.FLS(fl.NL2KEY) = fl.FL(fl.NL2KEY);
      fl.FL(fl.NL2KEY) = 0.0F;
    }
  }
  s.FTV = TELOP(fl.NC, fl.FV);
  s.FTL = s.FT - s.FTV;
  s.FTLS = s.key ? fl.FTLS_FLTP : 0.0F;
  if (!s.key) s.FLAIN = s.FTL / (s.FTL + s.FTV);
  if (s.key && !(s.FTLS > kFlowFloor)) {
    ZERO(fl.NC, fl.FLS);
    fl.FLS(fl.NL2KEY) = kFlowFloor;
    if (!(s.FTL > kFlowFloor)) fl.FL(fl.NL2KEY) = 0.0F;
  }
}

bool enter(FltpState& s, Message& STR) {
  s.key = fl.NL2KEY > 0;
  s.equations.second_liquid = s.key;
  if (!check_input(s, STR)) return false;
  s.FLAMIN = 2.0F;
  s.FLAMAX = -1.0F;
  set_start_flows(s);
  s.RFT = 1.0F / s.FT;
  s.VFF = fl.FRV;
  fl.FRV = 1.0F;
  // A total that no pass can have, so that the first convergence test fails.
  s.FTL = -1.0F;
  s.FTLS = s.key ? -1.0F : 0.0F;
  fl.KFLAT = false;
  return true;
}

// Feed and K-values of the pass, with the sums of the region test. Without a key the four sums on the second
// liquid have values that make every test on it fall the right way.
void gather(FltpState& s) {
  SplitEquations& e = s.equations;
  e.count = 0;
  s.ZKA = s.ZBKA = 0.0F;
  s.ZKB = s.ZBKB = s.ZKABKB = s.ZKBBKA = 0.0F;
  for (int i = 1; i <= fl.NC; ++i) {
    if (!(fl.F(i) >= kNegligibleFeed)) continue;
    const int k = ++e.count;
    e.ZZ(k) = fl.F(i) * s.RFT;
    e.KA(k) = fl.VLK(i);
    e.KB(k) = s.key ? fl.VLKS(i) : kNoSecondLiquidFactor;
    const R4 z = e.ZZ(k) >= kNegligibleFeed ? e.ZZ(k) : 0.0F;
    s.ZKA += z * e.KA(k);
    s.ZBKA += z / e.KA(k);
    if (!s.key) continue;
    s.ZKB += z * e.KB(k);
    s.ZBKB += z / e.KB(k);
    s.ZKABKB += z * e.KA(k) / e.KB(k);
    s.ZKBBKA += z * e.KB(k) / e.KA(k);
  }
  if (s.key) return;
  s.ZKB = 1.5F;
  s.ZBKB = 0.5F;
  s.ZKABKB = 0.5F;
  s.ZKBBKA = 1.5F;
}

void begin_pass(FltpState& s) {
  s.LOOP = s.LOOP + 1;
  KVAL(fl.IDEAL_FLTP, s.LOOP);
  if (s.LOOP <= kProvisionalPasses) fl.IDEAL_FLTP = kvalues::provisional;
  gather(s);
  s.KVL = 0;
  s.FTLPP = s.FTLP;
  s.FTLP = s.FTL;
  s.FTLSP = s.FTLS;
}

// One phase only: FLA is ALONE, a little off it while the K-values are provisional.
void take_single_phase(FltpState& s, R4 alone, R4 with_trace, I4& passes) {
  s.NCONV = AfterFlows::end_pass;
  s.FLA = alone;
  passes = passes + 1;
  if (passes > kTracePasses) return;
  s.FLB = 0.0F;
  if (fl.IDEAL_FLTP == kvalues::provisional) s.FLA = with_trace;
}

// True when the region test alone settles the split of this pass.
bool region_test(FltpState& s) {
  if (!(s.FT > kFlowFloor)) {
    s.NCONV = AfterFlows::leave_flash;
    s.FLA = 1.0F - s.VFF;
    s.FLB = 0.0F;
    return true;
  }
  if (s.ZBKA <= 1.0F && s.ZBKB <= 1.0F) {
    take_single_phase(s, 0.0F, kTrace, s.NP2);
    return true;
  }
  if (s.ZKA <= 1.0F && s.ZKABKB <= 1.0F) {
    take_single_phase(s, 1.0F, 1.0F - kTrace, s.NP1);
    return true;
  }
  if (s.key && s.ZKB <= 1.0F && s.ZKBBKA <= 1.0F) {
    s.NCONV = AfterFlows::end_pass;
    s.FLA = 0.0F;
    s.FLB = 1.0F;
    return true;
  }
  return false;
}

void solve_two_phases(FltpState& s) {
  s.NGO = SplitMode::vapour_liquid_a;
  s.NCONV = AfterFlows::end_pass;
  s.FLB = 0.0F;
  if (s.LOOP == 1) s.FLA = s.FLAIN != 0.0F ? s.FLAIN : 0.5F;
  solve_split(s);
}

// Split and flows of the pass; false with a message when there are none.
bool solve_pass(FltpState& s, Message& STR) {
  const bool settled = region_test(s);
  if (!settled && s.key) {
    if (!search_regions(s, STR)) return false;
  } else {
    if (!settled) solve_two_phases(s);
    damp_split(s);
    set_flows(s);
  }
  if (s.KVL > kMaxNewtonSteps) return refuse(STR, " Flash unable to converge to a solution (FLTP)");
  return true;
}

// True when the flash is done, with a message after the last pass.
bool end_pass(FltpState& s, Message& STR) {
  if (s.LOOP == 1) return false;
  if (s.LOOP > kMaxPasses) {
    refuse(STR, " K-values unusually dependent on composition, no convergence (FLTP)");
    return true;
  }
  if (fl.IDEAL_FLTP == kvalues::provisional) return false;
  if (s.LOOP >= 71 && s.LOOP <= 79) {
    s.FLAMIN = std::min(s.FLAMIN, s.FLA);
    s.FLAMAX = std::max(s.FLAMAX, s.FLA);
  }
  const R4 tolerance = 1.0E-5F * s.FT;
  if (s.key) return second_liquid_converged(s, tolerance);
  return std::fabs(s.FTLP - s.FTL) <= tolerance;
}

void leave(const FltpState& s) {
  fl.PASSES = s.LOOP;
  if (s.key) fl.FTLS_FLTP = s.FTLS;
  fl.FRV = 1.0F - s.FLA - s.FLB;
}

}  // namespace

// FLTP: isothermal flash by successive substitution on the K-values.
//
// Out      STR  message, untouched on success
// Shared   reads fl.NC, F, FRV, T, P, NCAL, NL2KEY; sets fl.FV, FL, FLS, FRV, NCAL, KFLAT, VLK, VLKS, and
//          through KVAL X1, Y, X2, ZL, ZV, ZL2; keeps fl.IDEAL_FLTP, FTLS_FLTP and PASSES
// Status   fl.NCAL is flash_status::failed behind every message
// Reports  " One feed stream negative or too big, no flash calculation (FLTP)", cell 1
//          " Total feed rate greater than 1.0E+9, no flash calculation (FLTP)", cell 2
//          " Pressure not above 0, no flash calculation (FLTP)"
//          " Flash unable to find flash phase region (FLTP)", cell 3
//          " Flash unable to converge to a solution (FLTP)"
//          " K-values unusually dependent on composition, no convergence (FLTP)"
// Oddity   at least 16 passes are made, since convergence is not accepted before; ideal K-values are accepted
void FLTP(Message& STR) {
  FltpState s{};
  if (enter(s, STR)) {
    do {
      begin_pass(s);
    } while (solve_pass(s, STR) && s.NCONV != AfterFlows::leave_flash && !end_pass(s, STR));
  }
  leave(s);
}

}  // namespace talix
