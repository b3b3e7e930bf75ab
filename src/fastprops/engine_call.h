// Argument blocks of the calls that the flash layer makes to the engine's property driver.
#pragma once

#include "base/array.h"
#include "engine/shmix_driver.h"

namespace talix {

// Inputs and results of one SHMIX0 call. One static block per routine: the engine fills only what is asked
// for, so nothing of a block is cleared beyond the components in use.
struct EngineCall {
  R8 T, P;                     // [K], [Pa]
  Vec<I4, kMaxComponents> IC;  // component index list
  CompVec X;                   // composition
  Flags3 DV, DF, DH;           // derivative requests
  ReservedCodes IRESRV;        // reserved results asked for
  I4 NRESRV;                   // their number
  I4 IPHRTN;                   // phase type returned
  L4 AMBIG;                    // one root only
  R8 ZFUG, ZVOL, DZDT, DZDP;   // compressibility factor and derivatives [-]
  CompVec DZDN;                // its composition derivative
  CompVec FUG, DFDT, DFDP;     // ln fugacity coefficients, T and P derivatives
  CompMat DFDN;                // their composition derivatives
  R8 H, DHDT, DHDP;            // enthalpy over RT and derivatives
  CompVec DHDN;                // partial molar enthalpies over RT
  R8 S, DSDT, DSDP;            // entropy over R and derivatives
  CompVec DSDN;                // partial molar entropies over R
  ReservedValues RESRV;        // reserved results
  I4 NFAIL;                    // status::*
};

inline constexpr R8 kPascalPerBar = 100000.0;

}  // namespace talix
