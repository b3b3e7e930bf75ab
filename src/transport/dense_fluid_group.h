// A group of components on its way to the corresponding-states routines: collected in 64-bit reals from the component
// tables, handed over in the 32-bit reals and the units of those routines.
#pragma once

#include "eos/ses_dispatcher.h"
#include "transport/dense_fluid.h"

namespace talix {

// Fraction below which a component stays out of a group.
inline constexpr R8 kGroupFloor = widen(1E-06F);

struct DenseFluidGroup {
  I4 N;                               // components of the group
  Vec<I4, kMaxComponents> component;  // their indices
  CompVec x;                          // their fractions in the phase
  R8 total;                           // sum of those
  DenseVec X;                         // their fractions in the group, sum 1
  DenseVec CMW;                       // molar masses [g/mol]
  DenseVec PC, TC, VC, W;             // [atm], [K], [L/mol], [-]
  DenseHeatCapacity CPC;              // ideal-gas heat capacity coefficients
  Vec<I4, kMaxComponents> ICP;        // their forms
};

// Empties the group.
void clear_group(DenseFluidGroup& group);
// Adds component I with its fraction in the phase.
void add_to_group(DenseFluidGroup& group, int I, R8 fraction);
// Viscosity [mPa s] of the group at T [K], P [Pa] and density RHO [mol/L]; liquid selects the start of DCST.
R8 group_viscosity(DenseFluidGroup& group, bool liquid, R8 T, R8 P, R8 RHO);
// Its thermal conductivity [W/(m K)].
R8 group_conductivity(DenseFluidGroup& group, bool liquid, R8 T, R8 P, R8 RHO);

}  // namespace talix
