// Interaction parameters carried over from a published cubic to the equation of the bank.
#pragma once

#include "bank/pairs_equation.h"

namespace talix::bank {

struct PairTransfer {
  bool ok = false;
  double t0 = 0.0;                // [-]
  int states = 0;                 // compared
  double mean = 0.0;              // mean deviation left [%]
  double tmin = 0.0, tmax = 0.0;  // [K]
};

// The constant at which the bank's equation gives the mixture the effect on the bubble pressure that the published
// cubic gives it with its parameter KIJ. Below both critical temperatures the effect is the ratio to the mole fraction
// mean of the vapour pressures, each equation with its own; above one of them, the part of the pressure that the gas
// adds per mole fraction. Not ok where no constant serves the states together, or only one far from KIJ. The errors of the published cubic for the pure liquids do not come over that way.
PairTransfer transfer(PairCubic cubic, const PairComponent& first, const PairComponent& second, double kij);

}  // namespace talix::bank
