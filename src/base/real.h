// Number types of the two layers and the one way to widen a single-precision constant.
#pragma once

#include <cfloat>
#include <cstdint>

namespace talix {

using R4 = float;         // flash layer
using R8 = double;        // property engine
using I4 = std::int32_t;  // counts, codes, statuses

static_assert(FLT_EVAL_METHOD == 0, "32-bit arithmetic must be done in 32 bits");
static_assert(sizeof(R4) == 4 && sizeof(R8) == 8);

// The double that holds a single-precision constant exactly: widen(298.15F) is 298.1499938964844.
constexpr R8 widen(R4 value) { return static_cast<R8>(value); }
R8 widen(R8) = delete;
R8 widen(int) = delete;

}  // namespace talix
