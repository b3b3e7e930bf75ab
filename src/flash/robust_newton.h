// Newton steps on the Gibbs energy of a split, within a trust radius.
#pragma once

#include "flash/robust_split.h"

namespace talix {

struct GibbsStep {
  CompVec lnK;  // change of ln K
  R8 length;    // in the scaled flows; compares with the trust radius
  R8 decrease;  // of the Gibbs energy over RT that the second derivatives predict
  bool curbed;  // shorter than Newton's step, or the second derivatives were not positive definite
};

// The second derivatives of the Gibbs energy at the state of a split whose phases were evaluated with
// composition derivatives, in the scaled flows of the lighter phase. RESIDUAL holds the differences in ln f,
// lighter less denser phase. Both are kept for gibbs_step.
void form_gibbs_hessian(const RobustMixture& mixture, const RobustSplit& split, const CompVec& residual);

// The best step from the last formed state within RADIUS.
void gibbs_step(int n, R8 radius, GibbsStep& step);

}  // namespace talix
