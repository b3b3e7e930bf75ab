// The flash of very small and very large feeds on a feed of about 1.
#pragma once

#include "api/talix_call.h"
#include "base/real.h"

namespace talix {

// The power of two that brings the feed of the call to a total of 0.5 to 1 mol; 1 where the total is of ordinary
// size, where the flashes refuse the feed and where the code runs no flash.
R4 feed_factor();
// The feed and the enthalpy target of the call times a factor.
void scale_feed(R4 factor);
// The same with the flows of the phases, after the results.
void scale_state(R4 factor);
// Flows, totals and enthalpies of the result table times a factor.
void scale_results(R4 factor, ScalTable& SCAL);

}  // namespace talix
