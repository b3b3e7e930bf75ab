// State of the cubic: constants of the model in use and the pure-component tables at the current temperature.
#pragma once

#include "base/array.h"
#include "base/real.h"

namespace talix {

struct CubicConstants {
  R8 C1PAR, C2PAR;                // denominator (v + c1 b)(v + c2 b) [-]
  R8 OAPAR, OBPAR;                // critical-point constants [-]
  R8 M1PAR, M2PAR, M3PAR, M4PAR;  // temperature function [-]

  bool operator==(const CubicConstants&) const = default;
};

struct PureTables {
  template <class T>
  using Each = Vec<T, kMaxComponents>;

  Each<R8> ARK;                  // a/(R^2 T) [K/Pa]
  Each<R8> BRK;                  // b/R [K/Pa]
  Each<R8> CRK;                  // volume translation c/R [K/Pa]
  Each<R8> D1ADT, D1BDT, D1CDT;  // T d/dT of these [K/Pa]
  Each<R8> D2ADT, D2BDT, D2CDT;  // T^2 d2/dT2 of these [K/Pa]
};

extern constinit CubicConstants cur;
extern constinit PureTables pures;

}  // namespace talix
