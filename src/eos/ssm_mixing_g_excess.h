// a from the excess Gibbs energy at zero pressure, second order.
#pragma once

#include "base/real.h"
#include "eos/mixture_record.h"

namespace talix {

// State of the rule between calls.
struct GExcessRecord {
  R8 H;  // a/(R T b) of the mixture at the last call that had a solution [-]
};

extern constinit GExcessRecord g_excess;

// Entry 1 of the parameter vector, from entry 2, which has been set with all the derivatives that OPTMR
// implies.
void SSMMR4(const R8& T, const CompVec& X, MixtureVector& mixture, const I4& IFCOM, const I4& ILCOM,
            const Vec<bool, 6>& OPTMR, const I4& MODEL, const CompVec& APU, const CompVec& D1ADT,
            const CompVec& D2ADT, const CompVec& BPU, const CompVec& D1BDT, const CompVec& D2BDT);

}  // namespace talix
