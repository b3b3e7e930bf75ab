// The flash at given pressure and enthalpy, in 64-bit reals: a bracketed search over the checked isothermal flash.
#pragma once

#include "flash/robust_split.h"

namespace talix {

enum class EnthalpyAnswer {
  found,
  below_range,  // the target lies below the enthalpy at the lowest temperature
  above_range,  // the target lies above the enthalpy at the highest temperature
  jump,         // the target lies in a jump between two different equilibria: the nearer one is given
  unsettled     // the engine failed or the budget ran out
};

struct EnthalpyResult {
  EnthalpyAnswer answer;
  R8 lowest, highest;      // reachable range of the enthalpy [J/mol of feed], set when the target is outside
  R8 enthalpy;             // of the state found [J/mol of feed]
  R8 jump_low, jump_high;  // enthalpies on both sides of a jump [J/mol of feed]
  I4 flashes;              // isothermal flashes that were made; 1 when the start stood
  RobustSplit split;  // the state found, at a T that a 32-bit real holds, with the enthalpies of its phases
};

// P [bar], TARGET [J/mol of feed], START [K] a first guess of the temperature. START_LNK are ln K of a split at
// START; it may be null.
void robust_enthalpy(const RobustMixture& mixture, R8 P, R8 TARGET, R8 START, const CompVec* START_LNK,
                     EnthalpyResult& result);

}  // namespace talix
