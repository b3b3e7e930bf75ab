// The two parts of a liquid in the combined methods: components with a value of their own, and the group
// that the corresponding-states method serves.
#pragma once

#include "base/real.h"
#include "transport/dense_fluid_group.h"

namespace talix {

struct LiquidSplit {
  DenseFluidGroup group;  // STRAPX is its total
  R8 STRAPV;              // mass volume of the group [cm3/mol]
  R8 STOTV;               // mass volume of the whole liquid [cm3/mol]
  R8 STOTX;               // sum of all mole fractions [-]
};

// No component yet.
void clear_split(LiquidSplit& split);
// Counts X moles of component I into the whole liquid; the mass volume of them [cm3/mol].
R8 count_component(LiquidSplit& split, I4 I, R8 X);
// Puts component I, of mass volume VOLUME, into the group.
void group_component(LiquidSplit& split, I4 I, R8 X, R8 VOLUME);
// CORF: density of the group over that of the liquid.
R8 density_correction(const LiquidSplit& split);

}  // namespace talix
