// The pieces of the enthalpy search: a state with its enthalpy and slope, the temperature at which the feed changes
// between its two roots, and the split of a state at a given enthalpy.
#pragma once

#include "flash/robust_split.h"

namespace talix {

// One state of the search.
struct EnthalpyPoint {
  R8 T;      // [K]
  R8 h;      // enthalpy [J/mol of feed]
  R8 least;  // the smaller and the larger enthalpy of its phases [J/mol]
  R8 most;
  R8 slope;     // dh/dT at the pressure, with the shift of the split [J/(mol K)]
  R8 tangent;   // the same as the engine gives it; slope holds what the search has learnt of it
  R8 cp;        // the same at a fixed split [J/(mol K)]
  bool ok;      // false: the engine or the isothermal flash failed
  bool one;     // one phase
  bool vapour;  // that phase is on the vapour side or could not be told apart
};

// The root on which a phase was found.
I4 own_root(const RobustPhase& phase);

// Isothermal flash, enthalpies and slope.
void evaluate_state(const RobustMixture& mixture, R8 T, R8 P, const CompVec* START_LNK, RobustSplit& split,
                    EnthalpyPoint& point);
// The same for the pair of phases that START_LNK lead to, stable or not against a third one.
void evaluate_pair(const RobustMixture& mixture, R8 T, R8 P, const CompVec& START_LNK, RobustSplit& split,
                   EnthalpyPoint& point);

// The temperature between LOW and HIGH [K] at which the liquid and the vapour root of the feed have equal Gibbs
// energy; false where both roots do not meet. The two roots are left in `split` as its phases.
bool find_crossing(const RobustMixture& mixture, R8 P, R8 LOW, R8 HIGH, RobustSplit& split);

// Moves the fraction of a split with its K-values and temperature kept until the enthalpy is TARGET [J/mol]; false,
// with the split as it came, when no fraction between 0 and 1 does or the fugacities become unequal.
bool settle_by_lever(const RobustMixture& mixture, R8 TARGET, RobustSplit& split);

// Enthalpy of a split whose phases have theirs [J/mol of feed].
R8 enthalpy_of(const RobustSplit& split);

}  // namespace talix
