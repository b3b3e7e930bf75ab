// Pure-component parameters of the association model, as the CPA database gives them.
#pragma once

#include "base/array.h"
#include "base/real.h"

namespace talix {

// A magnitude not above 1e-35 means that the parameter is absent.
struct CpaRecord {
  template <class T>
  using Each = Vec<T, kMaxComponents>;

  Each<R8> ASA;                     // association energy [J/mol]
  Each<R8> ASB;                     // association volume [-]
  Each<R8> ASC;                     // logarithmic temperature term of the association strength [-]
  Each<R8> ASD;                     // linear temperature term of the association strength [1/K]
  Each<R8> ASF;                     // half the number of association sites [-]
  Each<R8> EOSA;                    // a at the critical point [J m3/mol2]
  Each<R8> EOSB;                    // b [m3/mol]
  Mat<R8, 7, kMaxComponents> EOSK;  // (I, component): coefficients of the temperature function of a
};

extern constinit CpaRecord cpa_sets;

// Empties the parameters.
void reset_cpa_record();

}  // namespace talix
