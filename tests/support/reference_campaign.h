// One seeded state through several codes of the library at both levels of its check, each answer judged by the
// reference flash.
#pragma once

#include <cstdint>

#include "support/reference_verdict.h"

namespace talix::test::reference {

struct Comparison {
  Case state;
  I4 code = 0;
  int level = 0;        // 0: flashes alone; 1: with the check behind them
  R8 T = 0.0, P = 0.0;  // asked [K], [bar]
  R8 fraction = 0.0;    // asked
  R8 target = 0.0;      // enthalpy asked [J]
  int phases = 0;       // of the reference, isothermal codes only
  bool nearest = true;  // of several answers, the one nearest to the start value
  Outcome outcome;
};

class Receiver {
 public:
  virtual ~Receiver() = default;
  virtual void take(const Comparison& c) = 0;
};

// Codes 5 and 10; codes 1 to 4, 6 and 7; codes 8 and 9. The list is loaded here, the records are those of a library
// in use.
void compare_isothermal(std::uint32_t seed, int index, Receiver& receiver);
void compare_saturation(std::uint32_t seed, int index, Receiver& receiver);
void compare_enthalpy(std::uint32_t seed, int index, Receiver& receiver);

// The same for a case whose list is loaded: codes 1 to 4, 6 and 7 with T and P as start values; codes 8 and 9 with the
// enthalpy at T and P and START as the host's temperature.
void compare_saturation_of(Case c, R8 fraction, Receiver& receiver);
void compare_enthalpy_of(Case c, R8 start, Receiver& receiver);

// States of a campaign in the test suite: TALIX_STATES when it is set, else USUAL.
int states_to_run(int usual);

}  // namespace talix::test::reference
