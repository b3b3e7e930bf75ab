#include "eos/sm9_translation.h"

#include "eos/cubic_record.h"

namespace talix {

// SM9VS0: volume translation, linear in composition, in units of the compressibility factor.
//
// In       IFCOM, ILCOM  I4      range of components
//          X             R8(50)  mole fractions [-]
//          P, T          R8      [Pa], [K]
// Out      VSC           R8      sum x c P/(R T) [-]
//          VSCT, VSCTT   R8      the same with T dc/dT, T^2 d2c/dT2 [-]
//          VSCN, VSCTN   R8(50)  terms of the components [-]
// Shared   reads pures.CRK, D1CDT, D2CDT
void SM9VS0(const I4& IFCOM, const I4& ILCOM, const CompVec& X, const R8& P, const R8& T, R8& VSC, R8& VSCT,
            CompVec& VSCN, CompVec& VSCTN, R8& VSCTT) {
  const R8 POVERT = P / T;
  VSC = 0.0;
  VSCT = 0.0;
  VSCTT = 0.0;
  for (int i = IFCOM; i <= ILCOM; ++i) {
    VSCN(i) = pures.CRK(i) * POVERT;
    VSCTN(i) = pures.D1CDT(i) * POVERT;
    VSC += X(i) * VSCN(i);
    VSCT += X(i) * VSCTN(i);
    VSCTT += X(i) * pures.D2CDT(i) * POVERT;
  }
}

}  // namespace talix
