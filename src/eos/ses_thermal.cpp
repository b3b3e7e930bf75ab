#include "eos/ses_thermal.h"

#include <cmath>

#include "database/component_record.h"
#include "eos/spp_ideal_gas.h"

namespace talix {

namespace {

constexpr R8 kGuard = 1E-35;                 // keeps a vanishing denominator from a stop
constexpr R8 kReferencePressure = 100000.0;  // of the ideal-gas entropy [Pa]
constexpr R8 kGramsPerKilogram = 1000.0;

}  // namespace

// SESPP0: residual thermal properties.
//
// In       function, composed, shift    derivatives and volume translation
//          FUG, FUGTL            R8(50) ln phi, T d ln phi/dT [-]
//          args.T, P, Z, LDTHERM        Z without translation
// Out      args.H, HT, HP, HNR          H/(RT); T-, P-derivatives; partial molar [-]
//          args.S, ST, SP, SNR          S/R; the same [-]
//          args.BETA, KAPT, DPDTV       with translation [1/K], [1/Pa], [Pa/K]
//          args.CP, CV                  residual [J/(mol K)]
//          args.DLVTV, DKAPT
void SESPP0(const ModelFunction& function, const ComposedDerivatives& composed,
            const VolumeTranslation& shift, const CompVec& FUG, const CompVec& FUGTL, const I4& IFCOM,
            const I4& ILCOM, EosArgs& args) {
  EosArgs& a = args;
  const ModelFunction& f = function;
  const R8 DV = shift.VSCT;
  const R8 DS = shift.VSC;
  const R8 FTC = composed.FTC;
  const R8 PTCN = composed.PTCN;
  const R8 Z = a.Z;

  a.H = Z - 1.0 - FTC - DV + DS;
  a.DLVTV = (FTC + DV) / (Z + DS);
  a.S = std::log(Z) - f.F - FTC - DV;
  a.DPDTV = a.P * PTCN / a.T;
  a.KAPT = -1.0 / (f.PV * a.P);
  const R8 PVG = f.PV - kGuard;
  a.DKAPT = (f.PV * composed.PVTC - (f.PVV + f.PV) * PTCN) / (PVG * PVG * PVG * a.T * a.P);
  a.BETA = a.KAPT * a.DPDTV;
  const R8 U = -kGasConstant * (2.0 * FTC + composed.FTTC);
  a.CP = U - (Z * PTCN * PTCN / f.PV + 1.0 + shift.VSCTT) * kGasConstant;
  const R8 PTV = PTCN - DV * f.PV / Z;
  a.CV = (Z * PTV * PTV / f.PV + 1.0) * kGasConstant + a.CP;
  if (a.LDTHERM(1)) {
    a.ST = a.CP / kGasConstant;
    a.HT = a.CP / kGasConstant;
  }
  if (a.LDTHERM(2)) {
    a.SP = Z * PTCN / f.PV + 1.0 - DV;
    a.HP = Z * (1.0 - a.T * a.BETA) - DV + DS;
  }

  // From here on the coefficients carry the translation.
  a.BETA = (Z * a.BETA + DV / a.T) / (Z + DS);
  a.KAPT = a.KAPT * Z / (Z + DS);
  a.DPDTV = a.P * PTV / a.T;
  if (a.LDTHERM(3)) {
    for (int i = IFCOM; i <= ILCOM; ++i) {
      (*a.SNR)(i) = -FUG(i) - FUGTL(i);
      (*a.HNR)(i) = -FUGTL(i);
    }
  }
}

// SESPP3: residual thermal properties of the ideal gas.
//
// In       args.T, P, LDTHERM
// Out      as SESPP0
void SESPP3(const I4& IFCOM, const I4& ILCOM, EosArgs& args) {
  EosArgs& a = args;
  a.H = 0.0;
  a.S = 0.0;
  a.DLVTV = 0.0;
  a.DKAPT = 0.0;
  a.CV = 0.0;
  a.CP = 0.0;
  a.DPDTV = a.P / a.T;
  a.KAPT = 1.0 / a.P;
  a.BETA = a.KAPT * a.DPDTV;
  if (a.LDTHERM(1)) {
    a.HT = 0.0;
    a.ST = 0.0;
  }
  if (a.LDTHERM(2)) {
    a.HP = 0.0;
    a.SP = 0.0;
  }
  if (a.LDTHERM(3)) {
    for (int i = IFCOM; i <= ILCOM; ++i) {
      (*a.HNR)(i) = 0.0;
      (*a.SNR)(i) = 0.0;
    }
  }
}

// SESPP1: adds the ideal gas at 1 bar and the pressure term of the entropy.
//
// In       args.T, P, LDTHERM
// In/Out   args.H, HT, HNR, S, ST, SP, SNR, CP, CV
//          X  R8(50)  mole fractions [-]; one that is not positive becomes 1E-37
void SESPP1(CompVec& X, const I4& IFCOM, const I4& ILCOM, EosArgs& args) {
  EosArgs& a = args;
  IdealGas gas;
  SPPIG0(a.T, IFCOM, ILCOM, X, gas);
  const R8 LNP = std::log(a.P / kReferencePressure);
  a.H += gas.HREF;
  a.S = a.S - LNP + gas.SREF;
  a.CP += gas.CPREF;
  a.CV += gas.CVREF;
  if (a.LDTHERM(1)) {
    a.HT = a.CP / kGasConstant;
    a.ST = a.CP / kGasConstant;
  }
  if (a.LDTHERM(2)) a.SP -= 1.0;
  if (a.LDTHERM(3)) {
    for (int i = IFCOM; i <= ILCOM; ++i) {
      (*a.HNR)(i) += gas.HNREF(i);
      (*a.SNR)(i) += gas.SNREF(i) - LNP;
    }
  }
}

// SESPP2: derived coefficients.
//
// In       X         R8(50)          mole fractions [-]
//          args.T, V, CP, CV, BETA, KAPT
// Out      args.JTC [K/Pa], KAPS [1/Pa], DPDTS [Pa/K], WSOUND [m/s]
// Shared   reads comp.RMOLW
// Oddity   a negative KAPS gives a speed of sound of 0
void SESPP2(const CompVec& X, const I4& IFCOM, const I4& ILCOM, EosArgs& args) {
  EosArgs& a = args;
  a.JTC = a.V * (a.T * a.BETA - 1.0) / (kGuard + a.CP);
  a.KAPS = a.KAPT * a.CV / (kGuard + a.CP);
  a.DPDTS = a.BETA / ((a.KAPT - a.KAPS) + kGuard);
  if (a.KAPS < 0.0) {
    a.WSOUND = 0.0;
    return;
  }
  R8 M = 0.0;
  for (int i = IFCOM; i <= ILCOM; ++i) M += comp.RMOLW(i) * X(i);
  M /= kGramsPerKilogram;
  a.WSOUND = std::sqrt(a.V / (M * a.KAPS + kGuard));
}

}  // namespace talix
