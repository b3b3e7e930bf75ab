// SHMIX0: the single door to the properties of one phase, and the vapour pressure of a pure component.
#pragma once

#include "base/array.h"
#include "base/logical.h"
#include "base/real.h"
#include "eos/ses_dispatcher.h"

namespace talix {

// Entries that a list of reserved results may have.
inline constexpr int kMaxReserved = 20;
using ReservedCodes = Vec<I4, kMaxReserved>;
using ReservedValues = Vec<R8, kMaxReserved>;

void SHMIX0(const I4& IPHTYP, const I4& IROOTO, const R8& T, const R8& P, const I4& NCOMP,
            const Vec<I4, kMaxComponents>& IC, const CompVec& X, const I4& LNOV, const Flags3& DV,
            const I4& LNOF, const Flags3& DF, const I4& LNOH, const I4& IHTYPE, const Flags3& DH,
            const ReservedCodes& IRESRV, const I4& NRESRV, I4& IPHRTN, L4& AMBIG, R8& ZFUG, R8& ZVOL,
            R8& DZDT, R8& DZDP, CompVec& DZDN, CompVec& FUG, CompVec& DFDT, CompVec& DFDP, CompMat& DFDN,
            R8& H, R8& DHDT, R8& DHDP, CompVec& DHDN, R8& S, R8& DSDT, R8& DSDP, CompVec& DSDN,
            ReservedValues& RESRV, I4& NFAIL);

// Vapour pressure PS [Pa] of component ICOMP and its derivative DPS [Pa/K] by the method code METHOD.
void SPSAT0(const R8& T, const R8& PSGIVEN, const I4& ICOMP, const L4& VALUE, const L4& DERIV,
            const I4& METHOD, R8& PS, R8& DPS, I4& NFAIL);
// The set that METHOD takes for component ICOMP, method::wagner, frost_kalkwarf, antoine or antoine_extended; 0 when
// the component has none for it, or METHOD is none of these and no default.
I4 vapour_pressure_set(const I4& METHOD, const I4& ICOMP);

}  // namespace talix
