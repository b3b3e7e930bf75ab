// The regions of the isothermal flash with a second liquid. They are entered only with a key component
// (fl.NL2KEY above 0), which no call of the library sets.
#include <cmath>

#include "fastprops/error_matrix.h"
#include "fastprops/flash_record.h"
#include "flash/fltp_state.h"

namespace talix {

namespace {

enum class Verdict { stands, try_next };

void solve_and_set_flows(FltpState& s, SplitMode mode) {
  s.NGO = mode;
  solve_split(s);
  damp_split(s);
  set_flows(s);
}

// Vapour and liquid A: stands unless a second liquid wants to form.
Verdict try_vapour_liquid_a(FltpState& s) {
  s.FLB = 0.0F;
  if (s.LOOP == 1) s.FLA = s.FLAIN != 0.0F ? s.FLAIN : 0.5F;
  s.NCONV = AfterFlows::judge_region;
  solve_and_set_flows(s, SplitMode::vapour_liquid_a);
  if (s.KVL > kMaxNewtonSteps || !(split_sums(s.equations, s.FLA, s.FLB).SUMB > 0.0F)) return Verdict::stands;
  s.FLAWZB = s.FLA;
  return Verdict::try_next;
}

// Vapour and liquid B: stands unless liquid A wants to form; a second liquid poor in its key is given up.
Verdict try_vapour_liquid_b(FltpState& s) {
  s.FLB = 0.5F;
  s.FLA = 0.0F;
  s.NCONV = AfterFlows::judge_region;
  solve_and_set_flows(s, SplitMode::vapour_liquid_b);
  if (s.KVL > kMaxNewtonSteps) return Verdict::stands;
  const SplitSums sums = split_sums(s.equations, s.FLA, s.FLB);
  const R4 band = 1000.0F * std::fabs(sums.SUMB);
  if (sums.SUMA > band) return Verdict::try_next;
  if (sums.SUMA < -band && !(fl.FLS(fl.NL2KEY) / s.FTLS > 0.3F)) {
    s.FLA = s.FLAWZB;
    s.FLB = 0.0F;
    set_flows(s);
  }
  return Verdict::stands;
}

// Two liquids: stands unless a vapour wants to form.
Verdict try_liquid_liquid(FltpState& s) {
  s.FLA = 0.5F;
  s.FLB = 0.5F;
  s.NCONV = AfterFlows::judge_region;
  solve_and_set_flows(s, SplitMode::liquid_liquid);
  if (s.KVL > kMaxNewtonSteps) return Verdict::stands;
  return split_sums(s.equations, s.FLA, s.FLB).SUMA < 0.0F ? Verdict::try_next : Verdict::stands;
}

void solve_three_phases(FltpState& s) {
  s.NCONV = AfterFlows::end_pass;
  if (s.FLA == 0.0F && s.FLB <= s.FLAWZB) {
    s.FLA = s.FLAWZB;
    s.FLB = 0.0F;
  }
  solve_and_set_flows(s, SplitMode::three_phase);
}

}  // namespace

// The regions in their order: vapour and A, vapour and B, two liquids, three phases.
//
// Status   false when no region could be entered; fl.NCAL is then flash_status::failed
// Reports  " Flash unable to find flash phase region (FLTP)", cell 3 of FLTP
bool search_regions(FltpState& s, Message& STR) {
  s.KNOWN = false;
  if (s.ZBKA >= 1.0F && s.ZKA >= 1.0F && try_vapour_liquid_a(s) == Verdict::stands) return true;
  if (s.ZBKB >= 1.0F && s.ZKB >= 1.0F && try_vapour_liquid_b(s) == Verdict::stands) return true;
  if (s.ZKABKB >= 1.0F && s.ZKBBKA >= 1.0F && try_liquid_liquid(s) == Verdict::stands) return true;
  if (!s.KNOWN) {
    fl.NCAL = flash_status::failed;
    report(STR, " Flash unable to find flash phase region (FLTP)");
    mark_error(error_row::FLTP, 3);
    return false;
  }
  solve_three_phases(s);
  return true;
}

// A converged pass that sits at a floor while the other single phase came up more often is redone as that
// phase; two liquids that have changed places count as converged.
bool second_liquid_converged(FltpState& s, R4 tolerance) {
  const auto close = [tolerance](R4 a, R4 b) { return std::fabs(a - b) <= tolerance; };
  if (close(s.FTLP, s.FTL) && close(s.FTLSP, s.FTLS)) {
    const bool all_vapour = s.FTV == kFlowFloor && s.NP1 < s.NP2;
    const bool all_liquid = !all_vapour && s.FTL == kFlowFloor && s.NP2 < s.NP1;
    if (all_vapour || all_liquid) {
      s.FLA = all_liquid ? 1.0F : 0.0F;
      s.FLB = 0.0F;
      s.NCONV = AfterFlows::leave_flash;
      set_flows(s);
    }
    return true;
  }
  return close(s.FTLP, s.FTLS) && close(s.FTLSP, s.FTL) && fl.FLS(fl.NL2KEY) >= fl.FL(fl.NL2KEY);
}

}  // namespace talix
