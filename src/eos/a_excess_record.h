// Fit point of the A-excess mixing rule: the state at which its pair parameters are matched.
#pragma once

#include "base/real.h"

namespace talix {

struct AExcessReference {
  R8 TKIJ;  // reference temperature [K], key "Tkij"
  R8 PKIJ;  // reference pressure [Pa], key "Pkij"
};

extern constinit AExcessReference a_excess;

}  // namespace talix
