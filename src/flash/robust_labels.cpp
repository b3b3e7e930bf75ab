#include <utility>

#include "engine/codes.h"
#include "fastprops/flash_record.h"
#include "flash/robust_split.h"

namespace talix {

namespace {

bool is_liquid(const RobustPhase& phase) { return phase.root == phase::liquid && !phase.single; }

// Molar volume over the mean critical volume, but for factors that both phases share.
R8 reduced_volume(const RobustMixture& mixture, const RobustPhase& phase) {
  R8 sum = 0.0;
  for (int i = 1; i <= mixture.n; ++i) sum += phase.x(i) * static_cast<R8>(fl.VC(mixture.at(i)));
  return phase.Z / sum;
}

}  // namespace

// label_phases: the lighter of two coexisting phases into `vapour`.
//
// The phase that the engine identifies as liquid is the denser one when the other is none; otherwise the one
// of the smaller reduced volume is.
void label_phases(const RobustMixture& mixture, RobustSplit& split) {
  const bool liquid_first = is_liquid(split.vapour);
  const bool liquid_second = is_liquid(split.liquid);
  const bool exchange = liquid_first != liquid_second
                            ? liquid_first
                            : reduced_volume(mixture, split.vapour) < reduced_volume(mixture, split.liquid);
  split.two_liquids = liquid_first && liquid_second;
  if (!exchange) return;
  std::swap(split.vapour, split.liquid);
  split.fraction = 1.0 - split.fraction;
}

}  // namespace talix
