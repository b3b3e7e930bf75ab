// The reference flash of the tests: phases of lowest Gibbs energy at given temperature and pressure.
#pragma once

#include "support/reference_split.h"
#include "support/reference_stability.h"

namespace talix::test::reference {

struct Answer {
  bool failed = false;
  int phases = 0;            // 1 or 2
  R8 vapour_share = 0.0;     // as in the result tables: 0 with two liquids
  R8 light_share = 0.0;      // of the phase that is the vapour or the lighter liquid
  Phase light, heavy;        // both are the one phase when there is no other
  bool two_liquids = false;  // both phases identified as liquids
  R8 g = 0.0;                // Gibbs energy over RT, per mole of feed
  R8 missing = 0.0;          // tangent-plane distance of a further phase, 0 when the answer is stable
  [[nodiscard]] bool third() const { return missing < -1.0E-8; }
};

// T in K, P in bar.
Answer flash(const Mixture& m, R8 T, R8 P, Effort effort = Effort::thorough);

}  // namespace talix::test::reference
