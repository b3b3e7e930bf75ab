// Corresponding-states transport of a dense fluid against methane: DCST finds the mixture factors, then TRPVIS gives
// the viscosity and THERMC the conductivity of the same mixture. 32-bit reals throughout are part of the method.
#pragma once

#include "base/array.h"
#include "base/logical.h"
#include "base/real.h"

namespace talix {

using DenseVec = Vec<R4, kMaxComponents>;
using DenseMat = Mat<R4, kMaxComponents, kMaxComponents>;
using DenseHeatCapacity = Mat<R4, 8, kMaxComponents>;

// Mixture factors at T [K] and density RHO [mol/L]; X mole fractions that sum to 1, CMW [g/mol], PC [atm], TC [K],
// VC [L/mol], W [-]. RHO0 is for the calls that follow; IERR 1: not converged, the last values stand.
void DCST(const L4& MODE, const R4& P, R4& RHO0, const R4& T, const DenseVec& X, const R4& RHO, const I4& N,
          const DenseVec& CMW, const DenseVec& PC, const DenseVec& TC, const DenseVec& VC, const DenseVec& W,
          I4& IERR);
// Temperature derivatives of the factors and effective molar masses; DCST calls it.
void ECSTX(const R4& RHO0, const R4& T, const DenseVec& X, const I4& N, const DenseVec& CMW,
           const DenseVec& PC, const DenseVec& TC, const DenseVec& VC, const DenseVec& W);
// Viscosity [micropoise, 1E-04 mPa s] after DCST.
R4 TRPVIS(const R4& RHO0, const R4& T, const DenseVec& X, const I4& N, const DenseVec& CMW);
// Hard-sphere mixture correction of the viscosity [micropoise].
R4 DELHSV(const R4& RHO0, const R4& T, const DenseVec& X, const I4& N, const DenseVec& CMW);
// Reduced viscosity VIS of a hard-sphere mixture of reduced number density RHOX, diameters SIGMA(I,J), masses CMW.
void ENSKOG(const I4& N, const R4& RHOX, const DenseMat& SIGMA, const DenseVec& CMW, const DenseVec& X,
            R4& VIS);
// Translational part of the conductivity [mW/(m K)] after DCST.
R4 TRCOND(const R4& RHO0, const R4& T);
// Conductivity [mW/(m K)] after DCST. CPC, ICP: coefficients and forms of the ideal-gas heat capacity.
R4 THERMC(const R4& RHO0, const R4& T, const DenseVec& X, const I4& N, const DenseVec& CMW,
          const DenseHeatCapacity& CPC, const Vec<I4, kMaxComponents>& ICP);

}  // namespace talix
