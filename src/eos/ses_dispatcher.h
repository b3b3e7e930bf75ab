// SES000: the single door to the equation-of-state models.
#pragma once

#include "base/array.h"
#include "base/logical.h"
#include "base/real.h"

namespace talix {

inline constexpr R8 kGasConstant = 8.314471;  // of the engine [J/(mol K)]

using CompVec = Vec<R8, kMaxComponents>;
using CompMat = Mat<R8, kMaxComponents, kMaxComponents>;

// The argument list of SES000, and of every equation-of-state model behind it. H is H/(RT), S is S/R;
// T in K, P in Pa, volume in m3/mol. Array results stand in the caller's arrays.
struct EosArgs {
  I4 IPHASE;           // in: phase asked for, phase::*
  R8 T;                // in: temperature [K]
  R8 P;                // in, out for phase::given_volume: pressure [Pa]
  R8 V;                // out, in for phase::given_volume: molar volume without translation [m3/mol]
  I4 NCOMP;            // in: components of XIN; zero or negative: minus the index of a single pure component
  const CompVec* XIN;  // in: composition, need not be normalised
  bool LFUG;           // in: ln fugacity coefficients wanted
  Flags3 LDFUG;        // in: their derivatives with T, P, composition
  CompVec* FUG;        // out: ln fugacity coefficient
  CompVec* FUGTL;      // out: T d(ln phi)/dT
  CompVec* FUGPL;      // out: P d(ln phi)/dP
  CompMat* FUGN;       // out: composition derivatives of ln phi
  bool LVOL;           // in: volume wanted
  Flags3 LDVOL;        // in: derivatives of Z with T, P, composition
  R8 Z;                // in as start value of BWRS, out: compressibility factor with translation [-]
  R8 ZT, ZP;           // out: T dZ/dT, P dZ/dP
  CompVec* ZN;         // out: composition derivative of Z
  bool LTHERM;         // in: thermal properties wanted
  I4 IHTYPE;           // in: thermal::*
  Flags3 LDTHERM;      // in: thermal derivatives with T, P, composition
  R8 H, HT, HP;        // out: enthalpy and derivatives
  CompVec* HNR;        // out: partial molar enthalpies
  R8 S, ST, SP;        // out: entropy and derivatives
  CompVec* SNR;        // out: partial molar entropies
  R8 BETA;             // out: thermal expansivity [1/K]
  R8 KAPS, KAPT;       // out: isentropic, isothermal compressibility [1/Pa]
  R8 CP, CV;           // out: heat capacities [J/(mol K)]
  R8 DPDTS, DPDTV;     // out: dP/dT at constant entropy, volume [Pa/K]
  R8 JTC;              // out: Joule-Thomson coefficient [K/Pa]
  R8 WSOUND;           // out: speed of sound [m/s]
  I4 ICODE;            // out: status::*
  I4 IPHRTN;           // out: type of the root returned, phase::*
  I4 MODEL;            // in: model-table slot
  R8 ZOTHER;           // out: compressibility factor of the opposite extreme root [-]
  R8 DLVTV;            // out: (T dF/dT + VSCT)/(Z + VSC)
  R8 DKAPT;            // out: pressure-temperature cross term of the compressibility
  I4 KROOT;            // in: root_option::pseudo allows a pseudo-root
};

void SES000(EosArgs& args);

}  // namespace talix
