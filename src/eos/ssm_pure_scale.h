// What every routine of pure-component parameters scales and floors with.
#pragma once

#include "base/real.h"

namespace talix::pure_scale {

inline constexpr R8 kBarToPascal = 100000.0;
inline constexpr R8 kSmallestA = 0.001;

// Tc/Pc [K/Pa] from TC [K] and PC [bar].
inline R8 critical_ratio(R8 TC, R8 PC) { return TC / (PC * kBarToPascal); }

// a before the scaling: below the floor the floor itself.
inline R8 floored(R8 a) { return a < kSmallestA ? kSmallestA : a; }

}  // namespace talix::pure_scale
