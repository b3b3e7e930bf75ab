// The reference flash of the tests: saturated states along a line of pressure or temperature, by scan and bisection.
#pragma once

#include <vector>

#include "support/reference_flash.h"

namespace talix::test::reference {

enum class Axis { pressure, temperature };

// The states of one mixture at a fixed temperature [K] or pressure [bar]; the other one runs.
struct Line {
  const Mixture& m;
  Axis axis;  // what runs
  R8 fixed;
  [[nodiscard]] R8 T(R8 at) const { return axis == Axis::pressure ? fixed : at; }
  [[nodiscard]] R8 P(R8 at) const { return axis == Axis::pressure ? at : fixed; }
};

struct Limits {
  R8 low, high;
};
// 0.001 to 900 bar or 100 to 900 K.
Limits limits(Axis axis);

// Where the number of phases changes from 1 to 2.
struct Boundary {
  R8 at = 0.0;          // [bar] or [K]
  bool bubble = false;  // the phase about to form is the lighter one
  bool two_liquids = false;
  bool two_phases_above = false;  // at the larger pressure or temperature
  Answer inside;                  // on the side with two phases, next to the boundary
};

bool splits(const Line& line, R8 at, Effort effort);
// The boundary between OUTSIDE (one phase) and INSIDE (two phases); false when the flash there fails.
bool boundary_between(const Line& line, R8 outside, R8 inside, Effort effort, Boundary& result);

struct Scan {
  std::vector<Boundary> boundaries;
  std::vector<R8> at_fraction;  // states whose vapour share is the one asked for, inside the two-phase region
  int failures = 0;
};
// FRACTION below 0 asks for boundaries only.
Scan scan(const Line& line, R8 fraction, int points);

// Saturation pressure [bar] of a mixture of one component, by bisection on the Gibbs energies of its two roots.
bool pure_saturation_pressure(const Mixture& m, R8 T, R8& P);
bool pure_saturation_temperature(const Mixture& m, R8 P, R8& T);

}  // namespace talix::test::reference
