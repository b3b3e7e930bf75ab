// The temperature search with a second liquid. It is entered only with a key component (fl.NL2KEY above 0), which
// no call of the library sets.
#include <algorithm>
#include <cmath>

#include "flash/flvp_state.h"

namespace talix {

namespace {

// A share of liquid A that counts as none.
constexpr R4 kNoLiquid = 1.0E-5F;
constexpr R4 kShareTolerance = 1.0E-5F;
constexpr I4 kMaxShareSteps = 80;
constexpr R4 kBothTolerance = 1.0E-5F;

R4 preference(const FlvpState& s) { return s.QA - s.QB; }

// Newton on QA = QB in the share of liquid A, from the middle.
void share_liquids(FlvpState& s) {
  evaluate_fraction(s, s.FLL / 2.0F);
  for (int step = 1; step <= kMaxShareSteps; ++step) {
    const R4 before = s.FLA;
    const R4 FLA = std::clamp(before + preference(s) / s.sums.SUMLL, 0.0F, s.FLL);
    evaluate_fraction(s, FLA);
    if (!(std::fabs(FLA - before) > kShareTolerance)) return;
  }
}

// Both liquids: the step that brings QA and QB to 0 together.
AfterDecision decide_both(FlvpState& s) {
  share_liquids(s);
  if (std::fabs(s.QA + s.QB) < kBothTolerance) return AfterDecision::finish;
  if (s.LOOP == 1) {
    s.DELTAT = first_step(s.QA + s.QB);
    return AfterDecision::next_pass;
  }
  const R4 TEMP = (s.sums.SUMAB - s.sums.SUMBB) / (s.sums.SUMAA - s.sums.SUMAB);
  const R4 step = (s.QA * TEMP - s.QB) / (s.DQBDT - s.DQADT * TEMP);
  s.DELTAT = std::isfinite(step) ? step : first_step(s.QA + s.QB);
  return AfterDecision::next_pass;
}

}  // namespace

// QA - QB falls with the share of liquid A: positive even where all liquid is A, the second liquid is absent; not
// positive even where none is, liquid A is.
AfterDecision decide_second_liquid(FlvpState& s) {
  if (preference(s) > 0.0F && s.FLL - s.FLA > kNoLiquid) evaluate_fraction(s, s.FLL);
  if (preference(s) > 0.0F) return decide_step(s, s.QA, s.DQADT);
  if (s.FLA >= kNoLiquid) evaluate_fraction(s, 0.0F);
  if (!(preference(s) > 0.0F)) return decide_step(s, s.QB, s.DQBDT);
  return decide_both(s);
}

}  // namespace talix
