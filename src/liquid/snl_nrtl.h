// SNLAC0: excess Gibbs energy of the NRTL equation with its composition and temperature derivatives.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "eos/ses_dispatcher.h"

namespace talix {

// What an activity model gives; only the entries asked for are set. G is the excess Gibbs energy over RT of
// one mole, n G that of n moles. Temperature derivatives are T d/dT and T^2 d2/dT2.
struct ExcessGibbs {
  R8 GE;          // G [-]
  CompVec CHIN;   // d(n G)/dn_i at one mole: ln of the activity coefficient [-]
  CompMat CHINN;  // d2(n G)/(dn_i dn_j) at one mole [-]
  R8 GET;         // T dG/dT [-]
  R8 GETT;        // T^2 d2G/dT2 [-]
  CompVec CHINT;  // T d/dT of CHIN [-]
};

// Requests of an activity model, entries as in SNLAC0.
using ActivityOptions = Vec<bool, 6>;

// Components IFIRST to ILAST take part, the others are not looked at.
void SNLAC0(const R8& T, const CompVec& X, ExcessGibbs& excess, const I4& IFIRST, const I4& ILAST,
            const ActivityOptions& OPTLM);

// Forgets the tables of the last temperature.
void reset_nrtl_cache();

}  // namespace talix
