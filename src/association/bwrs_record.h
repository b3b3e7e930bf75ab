// State of the Benedict-Webb-Rubin equation: component parameters, the mixture at the last state.
#pragma once

#include <cmath>

#include "base/array.h"
#include "base/real.h"

namespace talix {

inline constexpr int kBwrsParameters = 11;
// Degree in which the mixture takes each parameter: the root of this degree is linear in composition.
inline constexpr Vec<I4, kBwrsParameters> kBwrsDegree{{2, 1, 2, 2, 2, 3, 3, 3, 3, 3, 2}};

inline constexpr R8 kBwrsLitresPerM3 = 1000.0;  // critical volumes come in m3/kmol
inline constexpr R8 kBwrsUnderflow = 80.5905;   // exponent whose exponential counts as zero [-]

// What the component parameters depend on.
struct BwrsKey {
  I4 generation;  // 1 + data-generation counter; 0 fits nothing
  I4 IFCOM, ILCOM;

  bool operator==(const BwrsKey&) const = default;
};

// Component parameters in the roots in which they mix, and the equation at the last state.
// Units: powers of J, mol, m3 and K.
struct BwrsRecord {
  BwrsKey key;
  I4 code;                                         // status of the parameters
  Mat<R8, kMaxComponents, kBwrsParameters> CBWRS;  // roots of the parameters
  Vec<R8, kBwrsParameters> root;                   // their mole-fraction means
  Vec<R8, kBwrsParameters> C;                      // parameters of the mixture
  R8 P;                                            // pressure [Pa]
  R8 RT;                                           // 1/T [1/K]
  R8 G1, G2, G3, G4, G5;                           // coefficients of D, D^2, D^3, D^6 and of the exponential
  R8 L1, L2, L3;                                   // T d/dT of G2, G3, G4
  R8 D;                                            // density of the last result [mol/m3]
  R8 DPDD;                                         // dP/dD there
};

extern constinit BwrsRecord bwrs;

// Terms of the equation at one density.
struct BwrsExponential {
  R8 GD2;    // gamma D^2
  R8 decay;  // exp(-gamma D^2)
  R8 TMP;    // its product with G5
};

inline BwrsExponential bwrs_exponential(R8 D) {
  const R8 GD2 = bwrs.C(11) * D * D;
  const R8 decay = GD2 < kBwrsUnderflow ? std::exp(-GD2) : 0.0;
  return {.GD2 = GD2, .decay = decay, .TMP = decay * bwrs.G5};
}

}  // namespace talix
