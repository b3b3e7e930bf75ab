// What the host knows about the pseudo-components of the set: the measured properties of each cut.
#pragma once

#include "base/array.h"
#include "base/real.h"

namespace talix {

// A property counts as given when it is above 0. The slot index is the number of the pseudo-component; the
// component that it takes stands in setup.IDFRAC.
struct FractionRecord {
  template <class T>
  using Each = Vec<T, kMaxComponents>;

  Each<R8> FSPGR;                              // specific gravity [-]
  Each<R8> FTB;                                // boiling temperature at FPB
  Each<R8> FPB;                                // pressure that belongs to FTB
  Each<R8> FTDENS;                             // temperature of FDENS
  Each<R8> FDENS;                              // density at FTDENS
  Each<R8> FHC;                                // hydrogen to carbon ratio [-]
  Each<R8> FAMOLW;                             // molar mass [g/mol]
  Each<R8> FG, FT, FP;                         // kept for the host: cleared here, read by nobody
  Mat<R8, kMaxComponents, kMaxComponents> FX;  // as FG, one entry a pair
};

extern constinit FractionRecord fractions;

// Empties all slots.
void reset_fraction_record();

}  // namespace talix
