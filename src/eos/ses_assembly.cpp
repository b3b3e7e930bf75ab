#include "eos/ses_assembly.h"

#include <cmath>

namespace talix {

namespace {

// Sum over the entries in use of left(k) right(k).
R8 chain(const I4& NQ, const QVec& left, const QVec& right) {
  R8 sum = 0.0;
  for (int k = 0; k <= NQ; ++k) sum += left(k) * right(k);
  return sum;
}

// The same with composition derivatives of component i.
R8 chain(const I4& NQ, const QVec& left, const QComp& right, int i) {
  R8 sum = 0.0;
  for (int k = 0; k <= NQ; ++k) sum += left(k) * right(k)(i);
  return sum;
}

void composition_derivatives(const R8& Z, const ModelFunction& f, const MixtureVector& m, const CompVec& PN,
                             const I4& IFCOM, const I4& ILCOM, CompMat& FUGN) {
  const R8 ZPV = Z / f.PV;
  for (int j = IFCOM; j <= ILCOM; ++j) {
    // Row k of FQQ times the derivatives of component j.
    QVec FQQN{};
    for (int k = 0; k <= m.NQ; ++k) FQQN(k) = chain(m.NQ, f.FQQ(k), m.QN, j);
    for (int i = IFCOM; i <= j; ++i) {
      R8 curved = 0.0;
      for (int k = 0; k <= m.NQ; ++k) curved += f.FQ(k) * m.QNN(k)(i, j);
      FUGN(i, j) = ZPV * PN(i) * PN(j) + chain(m.NQ, FQQN, m.QN, i) + curved + 1.0;
      FUGN(j, i) = FUGN(i, j);
    }
  }
}

}  // namespace

// SESDD0: derivatives at constant composition.
//
// In       function, mixture  derivatives at constant parameters, and those of the parameters
//          OPTCOM             1 PN, 2 PTCN, 3 PVTC, 4 FTC, 5 FTTC, 6 FQTCN
// Out      composed           the entries asked for
void SESDD0(const ModelFunction& function, const MixtureVector& mixture, ComposedDerivatives& composed,
            const I4& IFCOM, const I4& ILCOM, const Vec<bool, 6>& OPTCOM) {
  const ModelFunction& f = function;
  const MixtureVector& m = mixture;
  if (OPTCOM(1))
    for (int i = IFCOM; i <= ILCOM; ++i) composed.PN(i) = chain(m.NQ, f.PQ, m.QN, i);
  if (OPTCOM(2)) composed.PTCN = f.PT + chain(m.NQ, f.PQ, m.QT);
  if (OPTCOM(3)) composed.PVTC = f.PVT + chain(m.NQ, f.PQV, m.QT);
  if (OPTCOM(4)) composed.FTC = f.FT + chain(m.NQ, f.FQ, m.QT);
  if (OPTCOM(5)) {
    R8 quadratic = 0.0;
    for (int k = 0; k <= m.NQ; ++k)
      for (int l = 0; l <= m.NQ; ++l) quadratic += f.FQQ(k)(l) * m.QT(k) * m.QT(l);
    composed.FTTC = f.FTT + quadratic + 2.0 * chain(m.NQ, f.FQTCQ, m.QT) + chain(m.NQ, f.FQ, m.QTT);
  }
  if (OPTCOM(6)) {
    for (int k = 0; k <= m.NQ; ++k) {
      R8 sum = 0.0;
      for (int l = 0; l <= m.NQ; ++l) sum += f.FQQ(l)(k) * m.QT(l);
      composed.FQTCN(k) = f.FQTCQ(k) + sum;
    }
  }
}

// SESFC0: ln fugacity coefficients and their derivatives.
//
// In       Z                            R8      compressibility without translation [-]
//          function, mixture, composed          derivatives
//          VSN, VSTN                    R8(50)  translation terms of the components [-]
//          OPTFC                        flags   1 FUG, 2 FUGTL, 3 FUGPL, 4 FUGN
// Out      FUG                          R8(50)  ln phi [-]
//          FUGTL                        R8(50)  T d ln phi/dT [-]
//          FUGPL                        R8(50)  P d ln phi/dP [-]
//          FUGN                         R8(50,50)  d ln phi_i/dn_j at one mole, symmetric [-]
void SESFC0(const R8& Z, const ModelFunction& function, const MixtureVector& mixture,
            const ComposedDerivatives& composed, CompVec& FUG, CompVec& FUGTL, CompVec* FUGPL, CompMat* FUGN,
            const CompVec& VSN, const CompVec& VSTN, const I4& IFCOM, const I4& ILCOM,
            const Vec<bool, 4>& OPTFC) {
  const ModelFunction& f = function;
  const MixtureVector& m = mixture;
  if (OPTFC(1)) {
    const R8 LNZ = std::log(Z);
    for (int i = IFCOM; i <= ILCOM; ++i) FUG(i) = VSN(i) + chain(m.NQ, f.FQ, m.QN, i) - LNZ;
  }
  if (OPTFC(4)) composition_derivatives(Z, f, m, composed.PN, IFCOM, ILCOM, *FUGN);
  if (OPTFC(2)) {
    const R8 ZPTPV = Z * composed.PTCN / f.PV;
    for (int i = IFCOM; i <= ILCOM; ++i)
      FUGTL(i) = ZPTPV * composed.PN(i) + VSTN(i) - VSN(i) + 1.0 + chain(m.NQ, composed.FQTCN, m.QN, i) +
                 chain(m.NQ, f.FQ, m.QNT, i);
  }
  if (OPTFC(3)) {
    const R8 ZPV = Z / f.PV;
    for (int i = IFCOM; i <= ILCOM; ++i) (*FUGPL)(i) = -ZPV * composed.PN(i) - 1.0 + VSN(i);
  }
}

}  // namespace talix
