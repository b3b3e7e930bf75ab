// Roots of z^3 + AN(1) z^2 + AN(2) z + AN(3) = 0 for the direct route.
#pragma once

#include "base/array.h"
#include "base/real.h"

namespace talix {

using CubicVector = Vec<R8, 3>;

// By the polished solver of the engine.
void RKSCRT2(const CubicVector& AN, CubicVector& ZZ, R8& ZMAX, R8& ZMIN, I4& NRT);
// By the closed form of this layer.
void RKSCRT(const CubicVector& AN, CubicVector& ZZ, R8& ZMAX, R8& ZMIN, I4& NRT);
// For pressures below 1 bar: the smallest non-negative root, the largest, the third.
void RKS(const CubicVector& AN, CubicVector& ZZ);

}  // namespace talix
