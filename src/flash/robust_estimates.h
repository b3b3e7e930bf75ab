// What the solvers of the check know of components without an engine call.
#pragma once

#include "flash/robust_phase.h"

namespace talix {

// ln fugacity coefficient of each component as a pure liquid at T [K] and P [bar]; of one above its critical
// temperature Wilson's ln K.
void estimate_pure_liquids(const RobustMixture& mixture, R8 T, R8 P, CompVec& lnphi);

// True for water, alcohols, glycols, amines and mercury, which hardly mix with hydrocarbons.
bool mixes_badly(const RobustMixture& mixture, int i);
// True for a component below its critical temperature that these may attract: no hydrocarbon, and more than a trace.
bool may_attract(const RobustMixture& mixture, int i, R8 T);

}  // namespace talix
