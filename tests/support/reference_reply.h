// One call of the library for the comparison with the reference flash, its answer in double precision.
#pragma once

#include <string>

#include "support/flash_case.h"
#include "support/reference_states.h"

namespace talix::test::reference {

// One call of the library and its phases in double precision, mole fractions over the components with a feed.
struct Reply {
  FlashCase host;
  std::string message;
  bool answered = false;  // blank or a warning
  int engine_calls = 0;
  R8 T = 0.0, P = 0.0;
  R8 vapour = 0.0, liquid = 0.0, second = 0.0;  // shares of the feed
  Numbers y, x, x2;
  bool finite = true;
};
// CODE with T [K], P [bar], fraction; TARGET is the enthalpy of the whole feed for codes 8 and 9 [J].
Reply ask(const Case& c, I4 code, R8 T, R8 P, R8 fraction, R8 target = 0.0);

}  // namespace talix::test::reference
