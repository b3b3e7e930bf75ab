// Alpha functions of the two variants of the Soave-Redlich-Kwong equation with their own parameter files.
#pragma once

#include "base/array.h"
#include "base/real.h"

namespace talix {

struct SrkVariantRecord {
  template <class T>
  using Each = Vec<T, kMaxComponents>;

  // SRK-SimSci, file "sdbp2.dat".
  Each<I4> P2ALPH;                    // form number, 1 or 6; 0 when empty
  Mat<R8, kMaxComponents, 3> CSRKP2;  // coefficients c1 to c3 [-]
  // SRK-Aspen, file "srkap.dat", with critical data of its own.
  Each<I4> APALPH;                    // form number, 1 to 5; 0 when empty
  Mat<R8, kMaxComponents, 3> CSRKAP;  // coefficients p1 to p3 [-]
  Each<R8> TCASP;                     // critical temperature [K]
  Each<R8> PCASP;                     // critical pressure [bar]
  Each<R8> OMASP;                     // acentric factor [-]
};

extern constinit SrkVariantRecord srk_variants;

}  // namespace talix
