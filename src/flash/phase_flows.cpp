#include "flash/phase_flows.h"

#include <algorithm>

#include "fastprops/small_arrays.h"
#include "flash/rachford_rice.h"

namespace talix {

namespace {

// A phase whose component flows add up to no more is scaled to its floor total.
constexpr R4 kSmallPhase = 1.0E-8F;

}  // namespace

PhaseTotals totals_of_split(R4 FT, R4 FLA, R4 FLB, bool key) {
  PhaseTotals totals{};
  totals.FTL = std::max(kFlowFloor, FLA * FT);
  totals.FTLS = key ? std::max(kFlowFloor, FLB * FT) : 0.0F;
  totals.FTV = std::max(kFlowFloor, FT - totals.FTL - totals.FTLS);
  return totals;
}

void flows_of_split(const PhaseTotals& totals, bool key) {
  for (int i = 1; i <= fl.NC; ++i) {
    const R4 KA = fl.VLK(i);
    const R4 KB = key ? fl.VLKS(i) : kNoSecondLiquidFactor;
    const R4 VV = KA * KB * totals.FTV;
    const R4 LA = KB * totals.FTL;
    const R4 LB = totals.FTLS * KA;
    const R4 R = fl.F(i) / (VV + LA + LB);
    fl.FV(i) = R * VV;
    fl.FL(i) = R * LA;
    if (key) fl.FLS(i) = R * LB;
  }
  scale_to_floor(fl.FL, totals.FTL);
  scale_to_floor(fl.FV, totals.FTV);
  if (key) scale_to_floor(fl.FLS, totals.FTLS);
}

void scale_to_floor(FlashVec& flow, R4 total) {
  const R4 sum = TELOP(fl.NC, flow);
  if (sum > kSmallPhase || !(sum > 0.0F)) return;
  const R4 factor = total / sum;
  for (int i = 1; i <= fl.NC; ++i) flow(i) *= factor;
}

}  // namespace talix
