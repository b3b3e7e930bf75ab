#include "engine/error_ring.h"

#include <cstring>

namespace talix {

namespace {

constexpr ErrorRing empty_ring() {
  ErrorRing empty{};
  for (int i = 1; i <= kRingEntries; ++i) {
    empty.NAMER0(i).blank();
    empty.TXTER0(i).blank();
  }
  return empty;
}

}  // namespace

constinit ErrorRing ring = empty_ring();

// SERPU0: push a message on the error ring.
//
// In       severity  I4    stored as given: 1 warning, 3 error
//          name      text  routine, cut or blank-padded to 6 characters
//          text      text  message, cut or blank-padded to 255 characters
// Shared   writes ring
void SERPU0(I4 severity, std::string_view name, std::string_view text) {
  if (ring.count < kRingEntries) {
    ++ring.count;
  } else {
    // The oldest entry is lost.
    constexpr std::size_t kept = kRingEntries - 1;
    std::memmove(&ring.SEVER0(1), &ring.SEVER0(2), kept * sizeof(ring.SEVER0(1)));
    std::memmove(&ring.NAMER0(1), &ring.NAMER0(2), kept * sizeof(ring.NAMER0(1)));
    std::memmove(&ring.TXTER0(1), &ring.TXTER0(2), kept * sizeof(ring.TXTER0(1)));
  }
  ring.SEVER0(ring.count) = severity;
  ring.NAMER0(ring.count) = name;
  ring.TXTER0(ring.count) = text;
}

void reset_error_ring() { ring = empty_ring(); }

}  // namespace talix
