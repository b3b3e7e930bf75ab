// An independent check of phase equilibrium on top of the engine's fugacities, in double precision: tangent-plane
// distance by successive substitution from vapour-like and liquid-like trials.
#pragma once

#include <vector>

#include "base/real.h"

namespace talix::test {

// ln fugacity coefficients of a composition at T [K], P [bar]; asked as a root type or phase::gibbs.
bool log_phi(I4 asked, R8 T, R8 P, const std::vector<R8>& x, std::vector<R8>& result);
// Lowest reduced tangent-plane distance found from several trials; clearly negative means that the composition
// splits. Trials that end at the composition itself do not count.
R8 tangent_plane_distance(R8 T, R8 P, const std::vector<R8>& z);

}  // namespace talix::test
