// What the transport methods ask of the equation of state: one phase at T and P.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "eos/ses_dispatcher.h"

namespace talix {

struct PhaseState {
  R8 V;         // molar volume [m3/mol]
  R8 CP;        // heat capacity [J/(mol K)], when asked for
  I4 IPHRTN;    // phase returned, phase::*
  bool loaded;  // the model is selected
  I4 status;    // status::*
};

// The phase of type IPHTYP, phase::*, of NC components; the caller looks at loaded, status and IPHRTN.
PhaseState transport_phase(I4 IPHTYP, R8 T, R8 P, const CompVec& X, I4 NC, const Vec<I4, kMaxComponents>& IC,
                           bool heat_capacity);

}  // namespace talix
