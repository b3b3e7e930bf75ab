// The check between the flashes and the result tables, and the repair where it fails.
#pragma once

#include "fastprops/flash_message.h"

namespace talix {

// Before an isothermal flash: true when the feed is proven to be one phase. The flows, compositions and
// fraction of the flash record are then set and the passes of the flash are not needed.
bool settle_one_phase();

// After a flash that ended with STR: leaves a checked result in the flash record with STR blank or a
// warning, or a text that says why there is none.
void check_flash(Message& STR);

// Engine calls that a check may make beside those of the flash itself; an isothermal one makes them before
// and after the flash together.
inline constexpr I4 kCheckedEngineCalls = 20000;
void grant_engine_calls();
// Of a whole call with a check, the results included: of codes 1 to 7 and 10, whose flashes make at most 200 passes of
// two calls, and of any code. The searches of the adiabatic flashes end at the latest after ninety and eighty
// temperatures, of a flash each.
inline constexpr I4 kMostEngineCalls = kCheckedEngineCalls + 500;
inline constexpr I4 kMostAdiabaticEngineCalls = kCheckedEngineCalls + 80000;

// The parts of check_flash by kind of flash.
void check_isothermal(Message& STR);
void check_saturation(Message& STR);
void check_enthalpy_flash(Message& STR);

// Flows, compositions, fraction and state of the flash record from a split.
struct RobustSplit;
struct RobustMixture;
void store_split(const RobustMixture& mixture, const RobustSplit& split);

}  // namespace talix
