// The bracket of the enthalpy search and the choice of its next temperature.
#pragma once

#include "flash/robust_enthalpy.h"
#include "flash/robust_enthalpy_state.h"

namespace talix {

inline constexpr R8 kHottestState = 1773.15;  // where the search ends [K]
inline constexpr R8 kLimitWidth = 0.05;       // to which a limit of the model is found [K]

struct EnthalpySearch {
  const RobustMixture* mixture;
  R8 P, TARGET, START;      // [bar], [J/mol], [K]
  bool follow;              // the pair of phases of the start is followed, stable or not
  I4 most_flashes;          // the search ends with them
  EnthalpyPoint now;        // last state
  EnthalpyPoint low, high;  // the bracket: below and above the target
  bool has_low, has_high;   // set
  R8 coolest;               // where the search ends [K]
  bool crossing_sought;     // the change of the feed between its roots was looked for
  R8 floor, ceiling;        // temperatures at which the model is known not to work [K]
  R8 step, step_before;     // last steps inside the bracket [K]
  R8 miss_before;           // of the state before the last one inside the bracket [J/mol]
  int failures;             // states that could not be flashed
  bool has_lnK;
  CompVec lnK;  // of the last split
};

void start_search(const RobustMixture& mixture, R8 P, R8 TARGET, R8 START, const CompVec* START_LNK,
                  EnthalpySearch& s);

bool bracketed(const EnthalpySearch& s);
// The flash at T with the ln K of the last split where they help; s.now tells what it gave.
void flash_at(EnthalpySearch& s, R8 T, EnthalpyResult& result);
// Puts the last state to its side of the target.
void take_into_bracket(EnthalpySearch& s);
// True when a 32-bit temperature cannot come closer than the last state, or a start is close enough.
bool close_enough(const EnthalpySearch& s, const EnthalpyResult& result);
// The next temperature while one side of the target is not known; false at a limit of the model.
bool extrapolate(EnthalpySearch& s, R8& T);
// The next temperature inside the bracket.
R8 interpolate(EnthalpySearch& s);
// The next temperature after a state at T that could not be flashed; false when the search has to give up.
bool pass_failure(EnthalpySearch& s, R8& T);

}  // namespace talix
