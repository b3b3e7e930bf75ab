// One trial phase of the tangent-plane analysis: from a start to a stationary point, or to an early answer.
#pragma once

#include "flash/robust_plane.h"
#include "flash/robust_stability.h"

namespace talix {

enum class TrialEnd {
  below,       // a point below the tangent plane is found
  stationary,  // converged to a point not below the plane
  above,       // on its way to such a point, stopped early
  trivial,     // at the tested phase or its partner
  failed       // the engine failed or the budget ran out
};

// How a trial begins, beside its mole numbers.
struct TrialStart {
  I4 root;            // asked for at the start; phase::gibbs afterwards
  I4 pure;            // the component that the start nearly consists of, 0 for none
  bool second_order;  // Newton steps from the start, no substitution
};

// Before the first trial of a plane.
void forget_trials();
// Follows a trial from POINT.lnW; where it joins the way of one before, it may end as trivial.
TrialEnd run_trial(TangentPlane& plane, const TrialStart& start, StabilityEffort effort, TrialPoint& point);

}  // namespace talix
