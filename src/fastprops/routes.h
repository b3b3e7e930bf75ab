// The fixed switches of the fast layer: which route its fugacities and thermal properties take.
#pragma once

#include "base/real.h"
#include "fastprops/flash_record.h"

namespace talix {

// On: RKSF and ENTHAL ask the property engine. Off: they use the cubic of this layer (REDLAB).
#ifdef TALIX_DIRECT_ROUTE
inline constexpr bool kEngineRoute = false;
#else
inline constexpr bool kEngineRoute = true;
#endif

// Roots of the direct route. On: the polished solver (RKSCRT2). Off: the closed forms of this layer (RKSCRT,
// and RKS below 1 bar).
#ifdef TALIX_CLOSED_FORM_ROOTS
inline constexpr bool kSolverRoots = false;
#else
inline constexpr bool kSolverRoots = true;
#endif

// The direct route counts volumes in cm3 and energies in bar cm3; its formulas turn the latter into J by 0.1.
inline constexpr R4 kVolumeGasConstant = 83.1447F;  // [bar cm3/(mol K)]
// What fl.RGAS is in this build.
inline constexpr R4 kRouteGasConstant = kEngineRoute ? kFlashGasConstant : kVolumeGasConstant;

}  // namespace talix
