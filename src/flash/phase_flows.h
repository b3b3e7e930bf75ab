// Component flows of the phases from their fractions of the feed.
#pragma once

#include "base/real.h"
#include "fastprops/flash_record.h"

namespace talix {

// Total flows of the phases [mol]; without a second liquid FTLS is 0.
struct PhaseTotals {
  R4 FTV, FTL, FTLS;
};

// Totals of a split of FT [mol] into the liquid fractions FLA and FLB and the vapour, each at least its floor.
PhaseTotals totals_of_split(R4 FT, R4 FLA, R4 FLB, bool key);
// Fills fl.FV, FL and, with a key component, FLS from the K-values fl.VLK, VLKS.
void flows_of_split(const PhaseTotals& totals, bool key);
// Scales a phase whose component flows add up to next to nothing to TOTAL, so that it keeps a composition.
void scale_to_floor(FlashVec& flow, R4 total);

}  // namespace talix
