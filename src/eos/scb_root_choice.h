// Compressibility of the generalised cubic: roots, their types and the choice between them.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "eos/mixture_record.h"
#include "eos/ssv_cubic_solve.h"

namespace talix {

using RootTypes = Vec<I4, 3>;

// Roots of CA y^3 + CB y^2 + CC y + CD = 0 between 0 and 1, polished, descending.
void SCBDS0(const R8& CA, const R8& CB, const R8& CC, const R8& CD, const R8& TOL, const I4& MAXIT, I4& NROOT,
            RootTable& ROOT, I4& ICODE);
// Type of each root.
void SCBDS1(const I4& MODFUN, const QVec& Q, const R8& T, const I4& NROOT, const RootTable& ROOT,
            RootTypes& IROOT, I4& ICODE);
// Pseudo-root of a monic cubic with the coefficients CB of y^2 and CC of y.
void SCBDS2(R8& ROOT, const R8& CB, const R8& CC, const I4& IPHASE, const I4& IPHRTN, I4& ICODE);
// Compressibility of the root asked for.
void SCBDS3(const I4& MODFUN, const QVec& Q, const R8& T, const R8& P, const I4& IPHASE, R8& Z, R8& ZOTHER,
            R8& ZGAP, const I4& KROOT, I4& IPHRTN, I4& ICODE);

}  // namespace talix
