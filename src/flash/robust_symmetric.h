// Symmetric matrices of the tangent-plane trials: Cholesky factor, smallest eigenvalue, step within a trust radius.
#pragma once

#include "eos/ses_dispatcher.h"

namespace talix {

// Lower factor of A + SHIFT times the unit matrix; false when that is not positive definite.
bool cholesky_factor(I4 n, const CompMat& A, R8 SHIFT, CompMat& L);
// Solves L L' y = b.
void cholesky_solve(I4 n, const CompMat& L, const CompVec& b, CompVec& y);
// Smallest eigenvalue of A, its vector of length 1 in u.
R8 smallest_eigenvalue(I4 n, const CompMat& A, CompVec& u);
// The step y that lowers g'y + y'By/2 most within the length RADIUS; returns the decrease that this form predicts.
// CURBED: the radius or a missing positive definiteness changed the Newton step.
R8 trust_step(I4 n, const CompMat& B, const CompVec& g, R8 RADIUS, CompVec& y, bool& CURBED);

}  // namespace talix
