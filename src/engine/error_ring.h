// The log of the last fifteen events of the engine. It records; statuses steer.
#pragma once

#include <string_view>

#include "base/array.h"
#include "base/real.h"
#include "base/text.h"

namespace talix {

inline constexpr int kRingEntries = 15;

struct ErrorRing {
  I4 count;                             // entries in use, 0 to 15; entry 1 is the oldest
  Vec<I4, kRingEntries> SEVER0;         // severity: 1 warning, 3 error
  Vec<Text<6>, kRingEntries> NAMER0;    // routine that pushed the entry
  Vec<Text<255>, kRingEntries> TXTER0;  // message, blank-padded
};

extern constinit ErrorRing ring;

// Pushes a message; the oldest entry is lost when the ring is full.
void SERPU0(I4 severity, std::string_view name, std::string_view text);

// Empties the ring.
void reset_error_ring();

}  // namespace talix
