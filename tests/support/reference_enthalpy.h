// The reference flash of the tests: enthalpy of the stable phases, and the temperature of a given one by bisection.
#pragma once

#include "support/reference_flash.h"

namespace talix::test::reference {

// Enthalpy per mole of feed [J/mol]; the answer of the flash behind it.
bool total_enthalpy(const Mixture& m, R8 T, R8 P, R8& h, Answer& answer);

struct EnthalpyState {
  R8 T = 0.0;
  R8 vapour_share = 0.0;
  bool plateau = false;  // a component alone between its two phases
};
// The temperature between LOW and HIGH at which the enthalpy is H; false when it lies outside.
bool temperature_of_enthalpy(const Mixture& m, R8 P, R8 h, R8 low, R8 high, EnthalpyState& result);

}  // namespace talix::test::reference
