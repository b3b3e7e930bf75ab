// Records that an equation-of-state calculation hands from step to step: requests, parameter vector,
// model function, derivatives at constant composition, volume translation.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "eos/ses_dispatcher.h"

namespace talix {

// Indices of the parameter vector Q.
namespace q_index {
inline constexpr int IN = 0;  // mole number [-]
inline constexpr int IA = 1;  // a/(R^2 T) [K/Pa]
inline constexpr int IB = 2;  // b/R [K/Pa]
}  // namespace q_index

using QVec = VecFrom<R8, 0, 2>;        // entry k
using QDegrees = VecFrom<I4, 0, 2>;    // entry k
using QSquare = VecFrom<QVec, 0, 2>;   // entries k, l
using QComp = VecFrom<CompVec, 0, 2>;  // entry k, component i
using QMat = VecFrom<CompMat, 0, 2>;   // entry k, components i and j

// What the lower layers have to form; entry numbers as in the header of SESAO0.
struct OptionTables {
  Vec<bool, 20> OPTMOD;  // model function
  Vec<bool, 6> OPTMR;    // mixing rule: 1 Q, 2 QN, 3 QNN, 4 QT, 5 QTT, 6 QNT
  Vec<bool, 6> OPTCOM;   // derivatives at constant composition: 1 PN, 2 PTCN, 3 PVTC, 4 FTC, 5 FTTC, 6 FQTCN
  Vec<bool, 4> OPTFC;    // fugacity: 1 FUG, 2 FUGTL, 3 FUGPL, 4 FUGN
  Vec<bool, 14> OPTDER;  // read by no routine of this folder
  Vec<bool, 3> OPTVOL;   // read by no routine of this folder
  Vec<bool, 6> OPTLM;    // read by no routine of this folder
};

// Parameter vector of the mixture per mole, with its derivatives. Units of Q, since temperature
// derivatives are T d/dT and T^2 d2/dT2.
struct MixtureVector {
  I4 NQ;        // last entry in use: 2 for the cubic, 0 for the ideal gas
  QDegrees MQ;  // degree of homogeneity in the mole numbers
  QVec Q;       // values
  QVec QT;      // T dQ/dT
  QVec QTT;     // T^2 d2Q/dT2
  QComp QN;     // dQ/dn_i at one mole
  QComp QNT;    // T d/dT of QN
  QMat QNN;     // d2Q/(dn_i dn_j) at one mole
};

// Model function in reduced form: the volume variable is z, the pressure P/P. All [-], derivatives with
// Q(k) per unit of Q(k).
struct ModelFunction {
  R8 PV;        // (v/P) dP/dv
  R8 PT;        // (T/P) dP/dT at constant Q
  QVec PQ;      // dP/dQ(k)
  R8 PVV;       // (v^2/P) d2P/dv2
  R8 PTT;       // second T derivative at constant Q
  QSquare PQQ;  // second Q derivatives
  R8 PVT;       // v-T cross term
  QVec PQV;     // Q-v cross term
  R8 F;         // residual function
  R8 FT, FTT;   // its T derivatives at constant Q
  QVec FQ;      // its Q derivatives
  QSquare FQQ;  // second Q derivatives
  QVec FQTCQ;   // Q-T cross term at constant Q
};

// Derivatives at constant composition, reduced as those of the model function.
struct ComposedDerivatives {
  CompVec PN;  // composition derivative of pressure
  R8 PTCN;     // (T/P) dP/dT at constant volume
  R8 PVTC;     // v-T cross term
  R8 FTC;      // T dF/dT
  R8 FTTC;     // T^2 d2F/dT2
  QVec FQTCN;  // Q-T cross term of F
};

// Volume translation in units of the compressibility factor [-].
struct VolumeTranslation {
  R8 VSC;         // sum x c P/(R T)
  R8 VSCT;        // the same with T dc/dT
  R8 VSCTT;       // the same with T^2 d2c/dT2
  CompVec VSCN;   // c_i P/(R T)
  CompVec VSCTN;  // the same with T dc_i/dT
};

}  // namespace talix
