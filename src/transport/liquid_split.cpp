#include "transport/liquid_split.h"

#include <algorithm>

#include "database/component_record.h"

namespace talix {

namespace {

constexpr R8 kLowestDensity = 0.25;      // standard density that counts at least [g/cm3]
constexpr R8 kNoVolume = widen(1e-06F);  // mass volume of a group without correction [cm3/mol]

}  // namespace

// Field by field: the tables of the group are filled only as far as they are read.
void clear_split(LiquidSplit& split) {
  clear_group(split.group);
  split.STRAPV = 0.0;
  split.STOTV = 0.0;
  split.STOTX = 0.0;
}

R8 count_component(LiquidSplit& split, I4 I, R8 X) {
  const R8 volume = X * comp.RMOLW(I) / std::max(comp.RHO(I), kLowestDensity);
  split.STOTV += volume;
  split.STOTX += X;
  return volume;
}

void group_component(LiquidSplit& split, I4 I, R8 X, R8 VOLUME) {
  add_to_group(split.group, I, X);
  split.STRAPV += VOLUME;
}

R8 density_correction(const LiquidSplit& split) {
  if (!(split.STRAPV > kNoVolume)) return 1.0;
  return (split.group.total / split.STOTX) * (split.STOTV / split.STRAPV);
}

}  // namespace talix
