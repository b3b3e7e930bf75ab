// What the flash layer hands to the engine's transport entries, and what it makes of their answers.
#pragma once

#include "base/array.h"
#include "engine/codes.h"
#include "eos/ses_dispatcher.h"
#include "fastprops/engine_call.h"
#include "fastprops/error_matrix.h"
#include "fastprops/flash_record.h"

namespace talix {

// One call of a dispatcher for viscosity or conductivity.
struct TransportCall {
  R8 T, P;                     // [K], [Pa]
  CompVec X;                   // composition
  Vec<I4, kMaxComponents> IC;  // component index list, 1 throughout: the entries read the components in order
  R8 VALUE, DERIVATIVE;        // results
  I4 STATUS;                   // status::*
};

// Arguments of an entry for a phase at T [K] and P [Pa]. A result that the engine leaves unset is 0.
void prepare_transport(TransportCall& call, const I4& NC, R8 T, R8 P, const FlashVec& X);
// The value of a call as a 32-bit number, 0 where it is none. A status other than ok is counted in cell 1 of
// ROUTINE (error_row::*); the value stands.
R4 transport_value(const TransportCall& call, int routine);

}  // namespace talix
