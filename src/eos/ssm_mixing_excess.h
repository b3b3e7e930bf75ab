// What the excess-energy mixing rules share: the ratios of a to b of the pure components, and the excess
// Gibbs energy of the liquid model behind the slot.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "eos/ses_dispatcher.h"
#include "liquid/snl_nrtl.h"

namespace talix {

// Ratios alpha = a/(R T b) of the pure components and their mean in the mixture. Derivatives are T d/dT and
// T^2 d2/dT2. All [-].
struct ExcessRatios {
  CompVec ALPHA, D1ALPH, D2ALPH;
  R8 mean, first, second;  // sum of x times each
};

// Every level of derivatives that the pure tables hold.
void excess_ratios(const CompVec& X, const CompVec& APU, const CompVec& D1ADT, const CompVec& D2ADT,
                   const CompVec& BPU, const CompVec& D1BDT, const CompVec& D2BDT, const I4& IFCOM,
                   const I4& ILCOM, const Vec<bool, 6>& OPTMR, ExcessRatios& ratios);

// The excess Gibbs energy by NRTL; zeros when the slot has another liquid model.
void excess_energy(const R8& T, const CompVec& X, const I4& IFCOM, const I4& ILCOM, const Vec<bool, 6>& OPTMR,
                   const I4& MODEL, ExcessGibbs& excess);

}  // namespace talix
