// Quadratic a with pair and family terms.
#pragma once

#include "base/real.h"
#include "database/pair_record.h"
#include "eos/eos_caches.h"
#include "eos/mixture_record.h"

namespace talix {

// Entry 1 of the parameter vector; RULE tags the tables that are passed.
void SSMMR8(const R8& T, const CompVec& X, MixtureVector& mixture, const I4& IFCOM, const I4& ILCOM,
            const Vec<bool, 6>& OPTMR, const I4& MODEL, const I4& RULE, const CompVec& APU,
            const CompVec& D1ADT, const CompVec& D2ADT, const InteractionTables& tables);
// Cubic family term E and its composition derivatives RESLTN.
void SSMMR9(const CompVec& X, const PairProducts::Entry& Q1, R8& E, CompVec& RESLTN, const PairProducts& list,
            const I4& IFCOM, const I4& ILCOM);

}  // namespace talix
