// A small property engine in memory for the tests of the equations of state: components, curves, pairs and
// model slots are written straight into the records, without files.
#pragma once

#include <vector>

#include "eos/mixture_record.h"
#include "eos/ses_dispatcher.h"

namespace talix::test {

// Components of the fixture; further ones are generalised alkanes of rising size.
enum Component {
  kMethane = 1,
  kEthane,
  kPropane,
  kDecane,
  kCarbonDioxide,
  kWater,
  kNitrogen,
  kHydrogen,
  kButane,
  kHexane,
  kFirstFiller
};

// Slots of the model table.
enum Slot {
  kCubic = 1,  // c1 0, c2 1
  kIdealGas,   //
  kEqualC,     // c1 = c2 = 0
  kNegativeC,  // c1 negative, c2 above 1
  kOtherSlot   // the cubic once more
};

// Everything zero, then the components, the families, the slots; no pair parameters.
void reset_fixture();
// Pair parameters between every two components, with asymmetry between families.
void set_pair_parameters();
// Ordered pair lists, families; adds 1 to the data-generation counter.
void update_pairs();
// Slot with equation FUNCTION, parameters PURE, mixing rule MIX and denominators C1, C2.
void set_slot(int slot, I4 code, I4 function, I4 pure_code, I4 mix, R8 c1, R8 c2);

// A call with room for every result.
struct Call {
  EosArgs args;
  CompVec x, FUG, FUGTL, FUGPL, ZN, HNR, SNR;
  CompMat FUGN;

  Call();
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;
  void composition(const std::vector<R8>& n);
  void want_all();
  void run() { SES000(args); }
};

}  // namespace talix::test
