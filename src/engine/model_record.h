// The table of loaded models: ten slots, found by code through SMDAO1.
#pragma once

#include "base/array.h"
#include "base/logical.h"
#include "base/real.h"

namespace talix {

inline constexpr int kMaxModels = 10;

struct ModelRecord {
  I4 count;                       // loaded models
  Vec<I4, kMaxModels> MODEL;      // code that selected the slot, model::*
  Vec<I4, kMaxModels> MODTYP;     // class, model_class::*
  Vec<I4, kMaxModels> MODPUR;     // pure-component parameters, pure::*
  Vec<I4, kMaxModels> MODFUN;     // equation, fun::*
  Vec<I4, kMaxModels> MODMIX;     // mixing rule, mixing::*
  Vec<I4, kMaxModels> MODLIQ;     // liquid model behind the mixing rule, 0 for none
  Vec<I4, kMaxModels> MODRSF;     // model of the reference-state fugacities, 0 for none
  Vec<I4, kMaxModels> MODRSP;     // reference-state vapour pressure, method::*
  Vec<L4, kMaxModels> MDFCAL;     // can compute fugacities
  Vec<L4, kMaxModels> MDVCAL;     // can compute volumes
  Vec<L4, kMaxModels> MDHCAL;     // can compute enthalpies
  Mat<I4, 5, kMaxModels> MODCOR;  // correction codes (I, slot)
  Vec<R8, kMaxModels> C1PAR;      // c1 of the cubic [-]
  Vec<R8, kMaxModels> C2PAR;      // c2 of the cubic [-]
  Vec<R8, kMaxModels> OAPAR;      // critical-point constant of a [-]
  Vec<R8, kMaxModels> OBPAR;      // critical-point constant of b [-]
  Vec<R8, kMaxModels> M1PAR;      // constants of the temperature function [-]
  Vec<R8, kMaxModels> M2PAR;
  Vec<R8, kMaxModels> M3PAR;
  Vec<R8, kMaxModels> M4PAR;
};

extern constinit ModelRecord models;

// Property results of the last model calculation, read back by SHMIX0.
struct ReservedRecord {
  R8 BETA;    // thermal expansivity [1/K]
  R8 KAPT;    // isothermal compressibility [1/Pa]
  R8 CP;      // heat capacity at constant pressure [J/(mol K)]
  R8 CV;      // heat capacity at constant volume [J/(mol K)]
  R8 DKAPT;   // pressure-temperature cross term of the compressibility
  R8 DLVTV;   // Hildebrand parameter entry [-]
  R8 DPDTV;   // dP/dT at constant volume [Pa/K]
  R8 KAPS;    // isentropic compressibility [1/Pa]
  R8 DPDTS;   // dP/dT at constant entropy [Pa/K]
  R8 JTC;     // Joule-Thomson coefficient [K/Pa]
  R8 WSOUND;  // speed of sound [m/s]
};

extern constinit ReservedRecord resv;

}  // namespace talix
