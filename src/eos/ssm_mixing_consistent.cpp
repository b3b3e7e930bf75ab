#include "eos/ssm_mixing_consistent.h"

#include <cmath>

#include "engine/setup_record.h"
#include "eos/consistency_record.h"
#include "eos/cubic_record.h"
#include "eos/ssm_mixing_consistent_pairs.h"

namespace talix {

namespace {

using q_index::IA;
using q_index::IB;

// Sums over the neighbours of each centre, with plain temperature derivatives.
struct Sums {
  CompVec KS0, KS0T, KS0TT;      // a/(R T) over b of the pure components [-]
  CompVec LAT, LATT, LBT, LBTT;  // derivatives of ln a, ln b
  CompVec AL, ALT, ALTT;         // sum of x A G [K/Pa]
  CompVec BL, BLT, BLTT;         // sum of x G [K/Pa]
  CompVec RLN, RLNT;             // derivatives of the mean ratio of a to b with the amounts
};

constinit Sums work{};

// The pair quantities by centre and neighbour.
R8 A(int centre, int neighbour) { return consistency.ATBIN(neighbour, centre); }
R8 AT(int centre, int neighbour) { return consistency.ATBINT(neighbour, centre); }
R8 second_of_a(int centre, int neighbour) { return consistency.ATBNTT(neighbour, centre); }
R8 G(int centre, int neighbour) { return consistency.GTBIN(neighbour, centre); }
R8 GT(int centre, int neighbour) { return consistency.GTBINT(neighbour, centre); }
R8 second_of_g(int centre, int neighbour) { return consistency.GTBNTT(neighbour, centre); }

void pure_ratios(int i, R8 T, bool first, bool second) {
  Sums& w = work;
  w.KS0(i) = pures.ARK(i) / pures.BRK(i);
  if (!first) return;
  w.LAT(i) = pures.D1ADT(i) / pures.ARK(i) / T;
  w.LBT(i) = pures.D1BDT(i) / pures.BRK(i) / T;
  const R8 LKS0T = w.LAT(i) - w.LBT(i);
  w.KS0T(i) = w.KS0(i) * LKS0T;
  if (!second) return;
  w.LATT(i) = pures.D2ADT(i) / pures.ARK(i) / (T * T) - w.LAT(i) * w.LAT(i);
  w.LBTT(i) = pures.D2BDT(i) / pures.BRK(i) / (T * T) - w.LBT(i) * w.LBT(i);
  const R8 LKS0TT = w.LATT(i) - w.LBTT(i);
  w.KS0TT(i) = w.KS0(i) * (LKS0T * LKS0T + LKS0TT);
}

// Quantities of the neighbour j around i. The slopes of 1 - K are kept apart from its value, which may be 0.
void pair_quantities(int i, int j, R8 T, bool first, bool second) {
  ConsistencyRecord& c = consistency;
  const R8 L = 1.0 - (c.TAUT0(j, i) + T * c.TAUT1(j, i) + T * T * c.TAUT2(j, i));
  const R8 J = pures.BRK(i) + pures.BRK(j);
  const R8 base = 2.0 * std::sqrt(pures.ARK(i) * pures.ARK(j)) / J;
  const R8 A = base * L;
  const R8 g = std::exp(c.ALFA(j, i) * (A - work.KS0(i)));
  c.ATBIN(j, i) = A;
  c.GTBIN(j, i) = pures.BRK(j) * g;
  if (!first) return;

  const R8 LT = -(2.0 * T * c.TAUT2(j, i) + c.TAUT1(j, i));
  const R8 LBST = (pures.D1BDT(i) + pures.D1BDT(j)) / J / T;
  const R8 slope = (work.LAT(i) + work.LAT(j)) / 2.0 - LBST;
  c.ATBINT(j, i) = base * (L * slope + LT);
  const R8 LGT = c.ALFA(j, i) * (c.ATBINT(j, i) - work.KS0T(i));
  c.GTBINT(j, i) = pures.D1BDT(j) * g / T + pures.BRK(j) * g * LGT;
  if (!second) return;

  const R8 LTT = -2.0 * c.TAUT2(j, i);
  const R8 LBSTT = (pures.D2BDT(i) + pures.D2BDT(j)) / J / (T * T) - LBST * LBST;
  const R8 curvature = (work.LATT(i) + work.LATT(j)) / 2.0 - LBSTT;
  c.ATBNTT(j, i) = base * (L * (slope * slope + curvature) + 2.0 * slope * LT + LTT);
  const R8 L2 = c.ALFA(j, i) * (c.ATBNTT(j, i) - work.KS0TT(i));
  c.GTBNTT(j, i) =
      pures.D2BDT(j) * g / (T * T) + 2.0 * pures.D1BDT(j) * g * LGT / T + pures.BRK(j) * g * (LGT * LGT + L2);
}

void centre_sums(const CompVec& X, int i, const I4& IFCOM, const I4& ILCOM, bool first, bool second) {
  Sums& w = work;
  R8 AL = 0.0, ALT = 0.0, ALTT = 0.0, BL = 0.0, BLT = 0.0, BLTT = 0.0;
  for (int j = IFCOM; j <= ILCOM; ++j) {
    AL += X(j) * A(i, j) * G(i, j);
    BL += X(j) * G(i, j);
    if (!first) continue;
    ALT += X(j) * (AT(i, j) * G(i, j) + A(i, j) * GT(i, j));
    BLT += X(j) * GT(i, j);
    if (!second) continue;
    ALTT += X(j) * (second_of_a(i, j) * G(i, j) + 2.0 * AT(i, j) * GT(i, j) + A(i, j) * second_of_g(i, j));
    BLTT += X(j) * second_of_g(i, j);
  }
  w.AL(i) = AL;
  w.ALT(i) = ALT;
  w.ALTT(i) = ALTT;
  w.BL(i) = BL;
  w.BLT(i) = BLT;
  w.BLTT(i) = BLTT;
}

// RLN: derivative of the mean ratio with the amount of n.
R8 ratio_by_amount(const CompVec& X, int n, const I4& IFCOM, const I4& ILCOM) {
  const Sums& w = work;
  R8 sum = w.AL(n) / w.BL(n);
  for (int l = IFCOM; l <= ILCOM; ++l)
    sum += X(l) * G(l, n) * (w.BL(l) * A(l, n) - w.AL(l)) / (w.BL(l) * w.BL(l));
  return sum;
}

// RLNN.
R8 ratio_by_amounts(const CompVec& X, int m, int n, const I4& IFCOM, const I4& ILCOM) {
  const Sums& w = work;
  const auto around = [](int centre, int neighbour) {
    return G(centre, neighbour) * (work.BL(centre) * A(centre, neighbour) - work.AL(centre)) /
           (work.BL(centre) * work.BL(centre));
  };
  R8 sum = around(n, m) + around(m, n);
  for (int l = IFCOM; l <= ILCOM; ++l)
    sum -= X(l) * (w.BL(l) * (A(l, m) + A(l, n)) - 2.0 * w.AL(l)) * G(l, m) * G(l, n) /
           (w.BL(l) * w.BL(l) * w.BL(l));
  return sum;
}

// RLNT.
R8 ratio_by_amount_and_temperature(const CompVec& X, int n, const I4& IFCOM, const I4& ILCOM) {
  const Sums& w = work;
  R8 sum = w.ALT(n) / w.BL(n) - w.AL(n) * w.BLT(n) / (w.BL(n) * w.BL(n));
  for (int l = IFCOM; l <= ILCOM; ++l) {
    const R8 BL2 = w.BL(l) * w.BL(l);
    const R8 excess = w.BL(l) * A(l, n) - w.AL(l);
    sum += X(l) *
           (GT(l, n) * excess / BL2 + G(l, n) * (w.BLT(l) * A(l, n) + w.BL(l) * AT(l, n) - w.ALT(l)) / BL2 -
            2.0 * G(l, n) * excess * w.BLT(l) / (BL2 * w.BL(l)));
  }
  return sum;
}

bool needs_first(const Vec<bool, 6>& OPTMR) { return OPTMR(4) || OPTMR(5) || OPTMR(6); }

}  // namespace

// SSMMR3: a from a local-composition rule in the ratio of a to b.
//
// In       T             R8      temperature [K]
//          X             R8(50)  mole fractions [-]
//          IFCOM, ILCOM  I4      range of components
//          OPTMR         flags   1 Q, 2 QN, 3 QNN, 4 QT, 5 QTT, 6 QNT
//          MODEL         I4      slot of the model table
// In/Out   mixture               reads entry 2, sets entry 1 [K/Pa]
// Shared   keeps pair constants and pair quantities; both are formed anew when anything they depend on
//          changes: data, range, temperature, slot and its parameters, derivatives
void SSMMR3(const R8& T, const CompVec& X, MixtureVector& mixture, const I4& IFCOM, const I4& ILCOM,
            const Vec<bool, 6>& OPTMR, const I4& MODEL) {
  ConsistencyRecord& c = consistency;
  const PureKey key = pure_key(T, MODEL, IFCOM, ILCOM);
  if (c.generation != key.generation || c.IFCOM != IFCOM || c.ILCOM != ILCOM) {
    I4 ICODE = 0;
    for (I4 j = IFCOM; j <= ILCOM; ++j)
      for (I4 i = IFCOM; i <= ILCOM; ++i) SICBI0(i, j, ICODE);
    c.generation = key.generation;
    c.IFCOM = IFCOM;
    c.ILCOM = ILCOM;
    c.key = {};
  }
  const bool first = needs_first(OPTMR);
  const bool second = OPTMR(5);
  if (!(c.key == key) || (first && !c.first) || (second && !c.second)) {
    SICMR0(IFCOM, ILCOM, OPTMR, T);
    c.key = key;
    c.first = first;
    c.second = second;
  }
  SICMR1(IFCOM, ILCOM, OPTMR, T, X, mixture);
}

// SICMR0: pair quantities at one temperature.
//
// In       IFCOM, ILCOM  I4     range of components
//          OPTMR         flags  4 or 6 adds first, 5 first and second temperature derivatives
//          T             R8     temperature [K]
// Shared   reads pures and the pair constants; writes consistency.ATBIN, GTBIN and their derivatives
void SICMR0(const I4& IFCOM, const I4& ILCOM, const Vec<bool, 6>& OPTMR, const R8& T) {
  const bool first = needs_first(OPTMR);
  const bool second = OPTMR(5);
  for (int i = IFCOM; i <= ILCOM; ++i) pure_ratios(i, T, first, second);
  for (int i = IFCOM; i <= ILCOM; ++i)
    for (int j = IFCOM; j <= ILCOM; ++j) pair_quantities(i, j, T, first, second);
}

// SICMR1: entry 1 of the parameter vector from the pair quantities and entry 2.
//
// In       IFCOM, ILCOM  I4      range of components
//          OPTMR         flags   1 Q, 2 QN, 3 QNN, 4 QT, 5 QTT, 6 QNT
//          T             R8      temperature [K]
//          X             R8(50)  mole fractions [-]
// In/Out   mixture               reads entry 2, sets entry 1 [K/Pa]
// Shared   reads consistency, pures.BRK
void SICMR1(const I4& IFCOM, const I4& ILCOM, const Vec<bool, 6>& OPTMR, const R8& T, const CompVec& X,
            MixtureVector& mixture) {
  Sums& w = work;
  MixtureVector& m = mixture;
  const bool first = needs_first(OPTMR);
  const bool second = OPTMR(5);
  R8 RA = 0.0, RLT = 0.0, RLTT = 0.0;
  for (int i = IFCOM; i <= ILCOM; ++i) {
    centre_sums(X, i, IFCOM, ILCOM, first, second);
    const R8 BL2 = w.BL(i) * w.BL(i);
    const R8 turn = w.BL(i) * w.ALT(i) - w.AL(i) * w.BLT(i);
    RA += X(i) * w.AL(i) / w.BL(i);
    if (first) RLT += X(i) * turn / BL2;
    if (second)
      RLTT += X(i) *
              ((w.BL(i) * w.ALTT(i) - w.AL(i) * w.BLTT(i)) / BL2 - 2.0 * turn * w.BLT(i) / (BL2 * w.BL(i)));
  }

  const R8 K = m.Q(IB);
  if (OPTMR(1)) m.Q(IA) = K * RA;
  if (OPTMR(2) || OPTMR(3) || OPTMR(6))
    for (int n = IFCOM; n <= ILCOM; ++n) w.RLN(n) = ratio_by_amount(X, n, IFCOM, ILCOM);
  if (OPTMR(2))
    for (int n = IFCOM; n <= ILCOM; ++n) m.QN(IA)(n) = K * w.RLN(n) + pures.BRK(n) * RA;
  if (OPTMR(4)) m.QT(IA) = T * (K * RLT + RA * m.QT(IB) / T);
  if (OPTMR(3)) {
    for (int n = IFCOM; n <= ILCOM; ++n)
      for (int k = IFCOM; k <= ILCOM; ++k)
        m.QNN(IA)(k, n) =
            K * ratio_by_amounts(X, k, n, IFCOM, ILCOM) + pures.BRK(k) * w.RLN(n) + pures.BRK(n) * w.RLN(k);
  }
  if (OPTMR(6)) {
    for (int n = IFCOM; n <= ILCOM; ++n) {
      w.RLNT(n) = ratio_by_amount_and_temperature(X, n, IFCOM, ILCOM);
      m.QNT(IA)(n) =
          T * (K * w.RLNT(n) + pures.BRK(n) * RLT + w.RLN(n) * m.QT(IB) / T + RA * m.QNT(IB)(n) / T);
    }
  }
  if (OPTMR(5)) m.QTT(IA) = (T * T) * (K * RLTT + 2.0 * RLT * m.QT(IB) / T + RA * m.QTT(IB) / (T * T));
}

}  // namespace talix
