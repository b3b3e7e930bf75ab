// Logical of the host interface: 4 bytes, 0 is false and -1 is true; any other non-zero value counts as true.
#pragma once

#include "base/array.h"
#include "base/real.h"

namespace talix {

struct L4 {
  I4 value;

  constexpr explicit operator bool() const { return value != 0; }
  constexpr L4& operator=(bool flag) {
    value = flag ? -1 : 0;
    return *this;
  }
};

constexpr L4 logical(bool flag) { return L4{flag ? -1 : 0}; }

// Requests for derivatives: with temperature, with pressure, with composition.
using Flags3 = Vec<L4, 3>;

inline constexpr Flags3 kNoDerivatives{};

}  // namespace talix
