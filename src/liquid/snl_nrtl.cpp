#include "liquid/snl_nrtl.h"

#include <cmath>

#include "database/pair_record.h"
#include "engine/setup_record.h"

namespace talix {

namespace {

// Everything that the tables of one temperature depend on.
struct NrtlKey {
  R8 T;              // temperature [K]
  I4 generation;     // 1 + data-generation counter; 0 fits nothing
  I4 IFIRST, ILAST;  // range of components

  bool operator==(const NrtlKey&) const = default;
};

// Tables of one temperature, (J, I) with J around I, and the sums over the neighbours of I. Derivatives are
// T d/dT and T^2 d2/dT2. All [-].
struct NrtlWork {
  NrtlKey key;
  CompMat TAU, D1TAU;         // energy term and its derivative
  CompMat GEX, D1GEX, D2GEX;  // exp(-alpha tau)
  CompMat D1TG, D2TG;         // derivatives of their product
  CompVec CTG, D1CTG, D2CTG;  // sums of x tau g
  CompVec CG, D1CG, D2CG;     // sums of x g
};

constinit NrtlWork work{};

struct Range {
  int first, last;
};

// Energy term, g and their derivatives for the component J around I.
void set_pair(int J, int I, R8 T) {
  NrtlWork& w = work;
  if (I == J) {
    w.TAU(J, I) = w.D1TAU(J, I) = w.D1GEX(J, I) = w.D2GEX(J, I) = w.D1TG(J, I) = w.D2TG(J, I) = 0.0;
    w.GEX(J, I) = 1.0;
    return;
  }
  // The upper triangle of ALFA holds the constant part of both directions, the lower one their slope.
  const int low = I < J ? I : J;
  const int high = I < J ? J : I;
  const R8 ALFAT = pairs.ALFA(high, low) * T;
  const R8 alpha = ALFAT + pairs.ALFA(low, high);

  const R8 t1 = pairs.TAUT1(J, I) / T;
  const R8 t2 = pairs.TAUT2(J, I) / (T * T);
  const R8 TAU = pairs.TAUT0(J, I) + t1 + t2;
  const R8 D1TAU = -t1 - 2.0 * t2;
  const R8 D2TAU = 2.0 * t1 + 6.0 * t2;

  const R8 GEX = std::exp(-TAU * alpha);
  const R8 slope = TAU * ALFAT + alpha * D1TAU;
  const R8 D1GEX = -GEX * slope;
  // The square of the slope instead of D1GEX^2/GEX: a g that underflows leaves zeros.
  const R8 D2GEX = GEX * (slope * slope - (alpha * D2TAU + 2.0 * D1TAU * ALFAT));

  w.TAU(J, I) = TAU;
  w.D1TAU(J, I) = D1TAU;
  w.GEX(J, I) = GEX;
  w.D1GEX(J, I) = D1GEX;
  w.D2GEX(J, I) = D2GEX;
  w.D1TG(J, I) = TAU * D1GEX + GEX * D1TAU;
  w.D2TG(J, I) = TAU * D2GEX + GEX * D2TAU + 2.0 * D1TAU * D1GEX;
}

// Sums over the neighbours J of each I, up to the derivative level asked for.
void local_sums(const CompVec& X, Range r, bool first, bool second) {
  NrtlWork& w = work;
  for (int I = r.first; I <= r.last; ++I) {
    R8 tg = 0.0;
    R8 g = 0.0;
    for (int J = r.first; J <= r.last; ++J) {
      tg += X(J) * w.TAU(J, I) * w.GEX(J, I);
      g += X(J) * w.GEX(J, I);
    }
    w.CTG(I) = tg;
    w.CG(I) = g;
  }
  const auto sum = [&X, r](const CompMat& table, CompVec& sums) {
    for (int I = r.first; I <= r.last; ++I) {
      sums(I) = 0.0;
      for (int J = r.first; J <= r.last; ++J) sums(I) += X(J) * table(J, I);
    }
  };
  if (first) {
    sum(w.D1TG, w.D1CTG);
    sum(w.D1GEX, w.D1CG);
  }
  if (second) {
    sum(w.D2TG, w.D2CTG);
    sum(w.D2GEX, w.D2CG);
  }
}

void first_composition(const CompVec& X, Range r, CompVec& CHIN) {
  const NrtlWork& w = work;
  for (int I = r.first; I <= r.last; ++I) CHIN(I) = w.CTG(I) / w.CG(I);
  for (int L = r.first; L <= r.last; ++L) {
    const R8 share = X(L) / w.CG(L);
    const R8 mean = w.CTG(L) / w.CG(L);
    for (int I = r.first; I <= r.last; ++I) CHIN(I) += share * w.GEX(I, L) * (w.TAU(I, L) - mean);
  }
}

// One triangle is formed and mirrored: the second derivatives are symmetric.
void second_composition(const CompVec& X, Range r, CompMat& CHINN) {
  const NrtlWork& w = work;
  const auto term = [](int a, int b) {
    return work.GEX(a, b) * (work.TAU(a, b) * work.CG(b) - work.CTG(b)) / (work.CG(b) * work.CG(b));
  };
  for (int M = r.first; M <= r.last; ++M) {
    for (int I = M; I <= r.last; ++I) CHINN(I, M) = term(M, I) + term(I, M);
    for (int L = r.first; L <= r.last; ++L) {
      const R8 share = X(L) * w.GEX(M, L) / (w.CG(L) * w.CG(L) * w.CG(L));
      const R8 rest = 2.0 * w.CTG(L) - w.TAU(M, L) * w.CG(L);
      for (int I = M; I <= r.last; ++I) CHINN(I, M) += share * w.GEX(I, L) * (rest - w.TAU(I, L) * w.CG(L));
    }
    for (int I = M + 1; I <= r.last; ++I) CHINN(M, I) = CHINN(I, M);
  }
}

R8 first_temperature(const CompVec& X, Range r) {
  const NrtlWork& w = work;
  R8 sum = 0.0;
  for (int I = r.first; I <= r.last; ++I)
    sum += X(I) * (w.CG(I) * w.D1CTG(I) - w.D1CG(I) * w.CTG(I)) / (w.CG(I) * w.CG(I));
  return sum;
}

R8 second_temperature(const CompVec& X, Range r) {
  const NrtlWork& w = work;
  R8 sum = 0.0;
  for (int I = r.first; I <= r.last; ++I) {
    const R8 CG = w.CG(I);
    sum += X(I) * (w.D2CTG(I) / CG - (2.0 * w.D1CG(I) * w.D1CTG(I) + w.D2CG(I) * w.CTG(I)) / (CG * CG) +
                   2.0 * w.D1CG(I) * w.D1CG(I) * w.CTG(I) / (CG * CG * CG));
  }
  return sum;
}

void mixed(const CompVec& X, Range r, CompVec& CHINT) {
  const NrtlWork& w = work;
  for (int I = r.first; I <= r.last; ++I)
    CHINT(I) = w.D1CTG(I) / w.CG(I) - w.D1CG(I) * w.CTG(I) / (w.CG(I) * w.CG(I));
  for (int L = r.first; L <= r.last; ++L) {
    const R8 CG = w.CG(L);
    const R8 mean = w.CTG(L) / CG;
    const R8 slope = w.D1CTG(L) / CG - 2.0 * mean * w.D1CG(L) / CG;
    const R8 growth = w.D1CG(L) / CG;
    const R8 share = X(L) / CG;
    for (int I = r.first; I <= r.last; ++I)
      CHINT(I) += share * (w.D1GEX(I, L) * (w.TAU(I, L) - mean) +
                           w.GEX(I, L) * (w.D1TAU(I, L) - w.TAU(I, L) * growth - slope));
  }
}

}  // namespace

void reset_nrtl_cache() { work.key = {}; }

// SNLAC0: the NRTL equation.
//
// In       T       R8         temperature [K]
//          X       R8(50)     mole fractions of IFIRST..ILAST [-]
//          IFIRST, ILAST  I4  range of components
//          OPTLM   flags      1 GE, 2 CHIN, 3 CHINN, 4 GET, 5 GETT, 6 CHINT
// Out      excess             the entries asked for, in the range
// Shared   reads pairs.TAUT0, TAUT1, TAUT2, ALFA, setup.generation
// Oddity   no status: a composition of zeros divides by zero
// Source   Renon and Prausnitz, AIChE J. 14 (1968) 135
void SNLAC0(const R8& T, const CompVec& X, ExcessGibbs& excess, const I4& IFIRST, const I4& ILAST,
            const ActivityOptions& OPTLM) {
  const Range r{.first = IFIRST, .last = ILAST};
  const NrtlKey key{.T = T, .generation = setup.generation + 1, .IFIRST = IFIRST, .ILAST = ILAST};
  if (!(work.key == key)) {
    for (int I = r.first; I <= r.last; ++I)
      for (int J = r.first; J <= r.last; ++J) set_pair(J, I, T);
    work.key = key;
  }
  local_sums(X, r, OPTLM(4) || OPTLM(5) || OPTLM(6), OPTLM(5));

  if (OPTLM(1)) {
    excess.GE = 0.0;
    for (int I = r.first; I <= r.last; ++I) excess.GE += X(I) * work.CTG(I) / work.CG(I);
  }
  if (OPTLM(2)) first_composition(X, r, excess.CHIN);
  if (OPTLM(3)) second_composition(X, r, excess.CHINN);
  if (OPTLM(4)) excess.GET = first_temperature(X, r);
  if (OPTLM(5)) excess.GETT = second_temperature(X, r);
  if (OPTLM(6)) mixed(X, r, excess.CHINT);
}

}  // namespace talix
