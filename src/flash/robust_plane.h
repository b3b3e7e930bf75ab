// The tangent plane of a tested phase: the distance of a point from it, and whether the point tells anything new.
#pragma once

#include "flash/robust_phase.h"

namespace talix {

// A phase that a trial may end at without telling anything new, with the shape of the distance around it.
struct Bowl {
  CompVec x;                 // its mole fractions [-]
  R8 Z;                      // compressibility factor [-]
  I4 root;                   // its own side, phase::vapour or phase::liquid
  const RobustPhase* known;  // the phase, when it carries its composition derivatives
  bool curved;               // the four fields below are set
  CompMat hessian;           // second derivatives of the distance by 2 sqrt(x) [-]
  CompMat factor;            // their Cholesky factor, when they are positive definite
  R8 softest;    // smallest eigenvalue of the hessian, kSoft when above that: below 0 the phase is
                 // intrinsically unstable [-]
  CompVec soft;  // its vector, when the eigenvalue is below kSoft
};

// The tested phase, as the trials see it.
struct TangentPlane {
  const RobustMixture* mixture;
  R8 T, P;       // [K], [bar]
  CompVec lnx;   // ln of the tested mole fractions [-]
  CompVec d;     // ln x + ln phi [-]
  Bowl tested;   // the phase itself
  Bowl partner;  // a phase in equilibrium with it, when PAIRED
  bool paired;
};

// One point of a trial.
struct TrialPoint {
  CompVec lnW;       // ln of the trial mole numbers [-]
  CompVec root_w;    // square roots of the trial mole numbers [-]
  CompVec residual;  // ln W + ln phi - d [-]
  R8 tm;             // tangent-plane distance at these mole numbers [-]
  R8 distance;       // and at the best total for this composition, 1 - exp(-tpd) [-]
  R8 step2;          // sum of W residual squared [-]
  RobustPhase phase;
};

// Distances below this count as below the plane.
inline constexpr R8 kBelowPlane = -1.0E-10;
// Below this smallest eigenvalue the tested phase may be so near to a critical point or spinodal that the phase in
// equilibrium with it is close and hidden behind a low ridge.
inline constexpr R8 kSoft = 0.3;

// PARTNER may be null.
void open_plane(const RobustMixture& mixture, R8 T, R8 P, const RobustPhase& tested,
                const RobustPhase* PARTNER, TangentPlane& plane);
// Curvature around the tested phase or its partner, worked out once for a plane; false when the engine fails.
bool curve_bowl(const TangentPlane& plane, Bowl& bowl);

// Evaluates the phase at POINT.lnW and its distance; false when the engine fails or the budget is used up.
bool evaluate_point(const TangentPlane& plane, I4 ROOT, PhaseDerivatives derivatives, TrialPoint& point);
// Second derivatives of the distance by 2 sqrt(W) at a stationary point, from a phase with its composition derivatives.
void fill_second(I4 n, const RobustPhase& phase, CompMat& B);
// The point runs to the tested phase or its partner; FAILED when the engine fails.
bool at_known_phase(TangentPlane& plane, const TrialPoint& point, bool& FAILED);
// The point proves that the tested phase is unstable.
bool is_below(const TangentPlane& plane, const TrialPoint& point);

}  // namespace talix
