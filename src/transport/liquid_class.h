// What a component is to the liquid viscosity and conductivity: which correlation serves it.
#pragma once

#include "base/real.h"

namespace talix {

struct LiquidClass {
  bool ISZAN;   // in the directory of components; otherwise a pseudo-component
  bool LIGHT;   // hydrocarbon of one to five carbon atoms
  bool HYDGEN;  // hydrogen
  bool HEAVY;   // more than twenty carbon atoms
};

LiquidClass liquid_class(I4 I);

}  // namespace talix
