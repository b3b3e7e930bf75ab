// FLPST: start values of the bubble and dew flashes from Raoult's law.
#pragma once

#include "base/real.h"
#include "fastprops/flash_message.h"

namespace talix {

// What FLPST looks for, argument MODE.
namespace start_mode {
inline constexpr I4 bubble_temperature = 1;
inline constexpr I4 dew_temperature = 2;
inline constexpr I4 bubble_pressure = 3;
inline constexpr I4 dew_pressure = 4;
}  // namespace start_mode

// MODE start_mode::*; IFAIL 0, or 1 with a text in STR.
void FLPST(const I4& MODE, I4& IFAIL, Message& STR);
// Objective F of the temperature modes and its derivative DF [1/K] at fl.T, fl.P.
void FOBJ1(const I4& MODE, R4& F, R4& DF);

}  // namespace talix
