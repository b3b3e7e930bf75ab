#include <cmath>

#include "numerics/s0cbrt.h"
#include "transport/dense_fluid.h"
#include "transport/dense_fluid_record.h"
#include "transport/dense_fluid_terms.h"

namespace talix {

namespace {

constexpr R4 kPi6 = 0.52359879F;
constexpr R4 kTrace = 1E-06F;         // fraction of a component that is absent
constexpr R4 kVolumeScale = 97.751F;  // cube of the diameter of methane times its scale [A3]
constexpr R4 kVolumeDivisor = 1.84183347F;
constexpr R4 kAvogadro = 0.0006023F;  // [mol/L] to [1/A3]
constexpr R4 kDilute = 26.693F;       // dilute hard spheres [micropoise A2/(g K/mol)^0.5]
constexpr R4 kLeastDensity = 1E-20F;  // the limit of no density stands for all below [mol/L]

// Tables of the equations. Static: they are too large to be made at every call, and only the corner of the components
// in use is touched.
constinit DenseMat pair_terms{};                                    // S(I,J)
constinit Mat<R4, kMaxComponents, kMaxComponents + 1> equations{};  // the last column is the right-hand side
constinit DenseMat diameters{};  // of the pairs, over that of the last component

// Eliminates above and below each diagonal, without pivoting; the last column becomes the solution. Columns up to
// the pivot are not read again and stay as they are.
void eliminate(int n) {
  for (int k = 1; k <= n; ++k) {
    const R4 pivot = equations(k, k);
    for (int j = k + 1; j <= n + 1; ++j) {
      const R4 element = equations(k, j) / pivot;
      equations(k, j) = element;
      for (int i = 1; i < k; ++i) equations(i, j) -= equations(i, k) * element;
      for (int i = k + 1; i <= n; ++i) equations(i, j) -= equations(i, k) * element;
    }
  }
}

// Equation matrix from the pair terms. Off the diagonal one term of each sum is left.
void fill_matrix(int n, const DenseVec& CMW, const DenseVec& X) {
  DenseVec diagonal;
  for (int i = 1; i <= n; ++i) diagonal(i) = 0.0F;
  for (int l = 1; l <= n; ++l) {
    const R4 mass = 3.0F * CMW(l);
    for (int i = 1; i <= n; ++i) {
      const R4 q = CMW(i) / mass;
      const R4 own = 1.0F + 5.0F * q;
      const R4 s = pair_terms(i, l);
      diagonal(i) += s * (i == l ? own - 2.0F * q : own);
      equations(i, l) = 2.0F * X(i) * (s * -(2.0F * q));
    }
  }
  for (int i = 1; i <= n; ++i) equations(i, i) = 2.0F * X(i) * diagonal(i);
}

}  // namespace

// ENSKOG: viscosity of a mixture of hard spheres after Thorne and Enskog.
//
// In       N      I4         components
//          RHOX   R4         number density in the unit of the diameters
//          SIGMA  R4(50,50)  diameters of the pairs, symmetric
//          CMW    R4(50)     masses
//          X      R4(50)     fractions, above 0
// Out      VIS    R4         viscosity over that of a dilute gas of unit mass and diameter
// Source   M. K. Tham, K. E. Gubbins, J. Chem. Phys. 55 (1971) 268
void ENSKOG(const I4& N, const R4& RHOX, const DenseMat& SIGMA, const DenseVec& CMW, const DenseVec& X,
            R4& VIS) {
  const R4 term = RHOX * kPi6;
  R4 s2 = 0.0F;
  R4 s3 = 0.0F;
  for (int i = 1; i <= N; ++i) {
    s2 += X(i) * term * square(SIGMA(i, i));
    s3 += X(i) * term * cube(SIGMA(i, i));
  }
  const R4 e = 1.0F - s3;
  const R4 e2 = square(e);
  const R4 e3 = cube(e);
  const R4 s22 = square(s2);

  // Each pair once; the sums of a component take its partners in their order.
  DenseVec Y;
  DenseVec SE;
  const auto add = [&](int i, int j, R4 bg, R4 sigma2, R4 jf) {
    const R4 fr = CMW(j) / (CMW(i) + CMW(j));
    const R4 eij = bg * std::sqrt(2.0F * CMW(i) * fr) / sigma2;
    Y(i) += X(j) * fr * jf;
    SE(i) += X(j) * eij * jf;
    pair_terms(i, j) = X(j) * jf * square(fr) / eij;
  };
  for (int i = 1; i <= N; ++i) {
    Y(i) = 0.0F;
    SE(i) = 0.0F;
    for (int j = 1; j <= i; ++j) {
      const R4 g = SIGMA(i, i) * SIGMA(j, j) / (SIGMA(i, i) + SIGMA(j, j));
      const R4 bg = cube(SIGMA(i, j)) * 4.0F * kPi6 * RHOX;
      const R4 jf = bg * (e * s2 * 3.0F * g + e2 + s22 * 2.0F * square(g)) / e3;
      const R4 sigma2 = square(SIGMA(i, j));
      add(i, j, bg, sigma2, jf);
      if (j != i) add(j, i, bg, sigma2, jf);
    }
  }
  VIS = 0.0F;
  for (int i = 1; i <= N; ++i) {
    Y(i) = X(i) * (1.0F + 0.8F * Y(i));
    VIS += X(i) * SE(i);
    equations(i, N + 1) = Y(i);
  }

  fill_matrix(N, CMW, X);
  if (N == 1)
    equations(1, 2) = Y(1) / equations(1, 1);
  else
    eliminate(N);
  VIS = 8.0F * VIS / (25.0F * kPi6);
  for (int i = 1; i <= N; ++i) VIS += equations(i, N + 1) * Y(i);
}

// DELHSV: how much a mixture of hard spheres of different size and mass differs from one of equal spheres.
//
// In       RHO0  R4      density from DCST [mol/L]
//          T     R4      [K]
//          X     R4(50)  mole fractions; a component with 0 counts with 1E-06
//          N     I4      components
//          CMW   R4(50)  molar mass [g/mol]
// Returns  R4, micropoise; of either sign
// Shared   reads dense_mixture.H
// Source   J. F. Ely, J. Res. Natl. Bur. Stand. 86 (1981) 597
R4 DELHSV(const R4& RHO0, const R4& T, const DenseVec& X, const I4& N, const DenseVec& CMW) {
  if (N < 1) return 0.0F;
  const R4 density = RHO0 < kLeastDensity ? kLeastDensity : RHO0;

  // Fractions, diameters over that of the last component, masses over that of the last component.
  DenseVec Z;
  DenseVec D;
  DenseVec mass;
  const R4 CMWN = CMW(N);
  for (int i = 1; i <= N; ++i) {
    Z(i) = X(i) > 0.0F ? X(i) : kTrace;
    D(i) = S0CBRT(kVolumeScale * dense_mixture.H(i) / kVolumeDivisor);
    mass(i) = CMW(i) / CMWN;
  }
  const R4 SN = D(N);
  const R4 RHOSN = cube(SN) * kAvogadro * density;
  for (int i = 1; i <= N; ++i) D(i) = D(i) / SN;

  // Diameter and mass of the equal spheres; each pair once.
  DenseVec SI;
  DenseVec SM;
  for (int i = 1; i <= N; ++i) {
    SI(i) = 0.0F;
    SM(i) = 0.0F;
    for (int j = 1; j <= i; ++j) {
      const R4 sij = 0.5F * (D(i) + D(j));
      const R4 sij3 = cube(sij);
      const R4 reduced = std::sqrt(mass(i) * mass(j) / (mass(i) + mass(j)));
      diameters(i, j) = sij;
      diameters(j, i) = sij;
      R4 a = Z(j) * sij3;
      SI(i) += a;
      SM(i) += sij * a * reduced;
      if (j == i) continue;
      a = Z(i) * sij3;
      SI(j) += a;
      SM(j) += sij * a * reduced;
    }
  }
  R4 SUM1 = 0.0F;
  R4 SUM2 = 0.0F;
  for (int i = 1; i <= N; ++i) {
    SUM1 += Z(i) * SI(i);
    SUM2 += Z(i) * SM(i);
  }
  const R4 SX = S0CBRT(SUM1);
  const R4 M1 = SUM2 / (SUM1 * SX);
  const R4 MX = 2.0F * CMWN * square(M1);
  const R4 SIGX = SN * SX;
  const R4 RHOX = cube(SIGX) * kAvogadro * density;

  R4 V1 = 0.0F;
  ENSKOG(N, RHOSN, diameters, mass, Z, V1);
  V1 = V1 * kDilute * std::sqrt(CMWN * T) / square(SN);

  constexpr I4 one = 1;
  diameters(1, 1) = 1.0F;
  mass(1) = 1.0F;
  Z(1) = 1.0F;
  R4 V2 = 0.0F;
  ENSKOG(one, RHOX, diameters, mass, Z, V2);
  V2 = V2 * kDilute * std::sqrt(MX * T) / square(SIGX);
  return V1 - V2;
}

}  // namespace talix
