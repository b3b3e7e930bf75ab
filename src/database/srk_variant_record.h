// Constants of the two cubic variants that bring alpha functions of their own, as their databases give them.
#pragma once

#include "base/array.h"
#include "base/real.h"

namespace talix {

// A form number of 0 means that the component has no constants; the models refuse to compute with it.
struct SrkVariantRecord {
  template <class T>
  using Each = Vec<T, kMaxComponents>;

  // "SRK-SimSci", written by SP2DB0.
  Each<I4> P2ALPH;                    // form of the alpha function: 1 or 6
  Mat<R8, kMaxComponents, 3> CSRKP2;  // (component, I): its coefficients [-]
  // "SRK-Aspen", written by SAPDB0.
  Each<I4> APALPH;                    // form of the alpha function: 1 to 5
  Mat<R8, kMaxComponents, 3> CSRKAP;  // (component, I): its coefficients [-]
  Each<R8> TCASP;                     // critical temperature of the set [K]
  Each<R8> PCASP;                     // critical pressure of the set [bar]
  Each<R8> OMASP;                     // acentric factor of the set [-]
};

extern constinit SrkVariantRecord srk_variants;

// Empties the record.
void reset_srk_variant_record();

}  // namespace talix
