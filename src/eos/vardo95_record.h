// Coefficients of the log-polynomial form and of the volume translation.
#pragma once

#include "base/array.h"
#include "base/real.h"

namespace talix {

struct Vardo95Record {
  Mat<R8, kMaxComponents, 3>
      A95;  // powers 1 to 3 of ln(T/Tc) in ln of the a curve [-]; 0 unless a host sets them
  Mat<R8, kMaxComponents, 2> B95;  // powers 1 and 2 in ln of the b curve [-]; as A95
  // Translation: constant part, slope, curvature. Of the generalised form [K/Pa], [1/Pa], unused; of the
  // log-polynomial form [-], in units of Tc/Pc.
  Mat<R8, kMaxComponents, 3> C95;
};

extern constinit Vardo95Record vardo95;

}  // namespace talix
