// Phase fractions and compositions of a split from its K-values, in 64-bit reals.
#pragma once

#include "flash/robust_phase.h"

namespace talix {

// Where the fraction of the lighter phase lies for given K-values.
enum class FractionRange {
  below,   // at or below 0: no lighter phase forms
  inside,  // between 0 and 1
  above    // at or above 1: no denser phase forms
};

struct SplitFractions {
  R8 vapour, liquid;  // fractions of the feed, sum 1; the smaller one to full relative precision [-]
  CompVec y, x;       // mole fractions of the lighter and the denser phase, sum 1 [-]
};

// Solves the Rachford-Rice equation. Outside 0..1 the fractions are 0 and 1, the phase that exists has the
// feed composition and the other the normalised incipient one.
FractionRange split_fractions(const RobustMixture& mixture, const CompVec& lnK, SplitFractions& out);

}  // namespace talix
