#include "eos/ssm_mixing_quadratic.h"

#include <cmath>

namespace talix {

namespace {

using q_index::IA;

// Sums behind the family term. U and V run over the partners j of a component.
struct FamilySums {
  CompVec XFAM;  // mole fraction of each family
  CompVec XX;    // x(j) times the mole fraction of its family
  CompVec U;     // sum of x(j) Q1
  CompVec V;     // sum of x(j) XFAM(family of j) Q1
  CompVec QSUM;  // sum over the members i of a family of x(i) U(i)
  CompVec E3;    // family term of each component
};

struct Work {
  FamilySums sums;
  CompVec E1, E2, RESLTN;
  CompMat T;   // family part of the second composition derivatives
  CompMat RR;  // (s, i): sum over the partners j of i in family s of x(j) Q1
};

constinit Work work{};

// Pairs of one list inside the called range, ordered by their first member.
void collect_pairs(const Vec<I4, kMaxOrderedPairs>& IT, const Vec<I4, kMaxOrderedPairs>& JT, const I4& NT,
                   const I4& IFCOM, const I4& ILCOM, PairProducts& list) {
  list.count = 0;
  for (int i = IFCOM; i <= ILCOM + 1; ++i) list.row(i) = 1;
  if (IFCOM == ILCOM) return;
  const auto inside = [&](int L) {
    return IT(L) >= IFCOM && IT(L) <= ILCOM && JT(L) >= IFCOM && JT(L) <= ILCOM;
  };
  // Lengths of the rows, then their starts, then the entries in the order of the list.
  for (int L = 1; L <= NT; ++L)
    if (inside(L)) ++list.row(IT(L) + 1);
  for (int i = IFCOM; i <= ILCOM; ++i) list.row(i + 1) += list.row(i) - 1;
  list.count = list.row(ILCOM + 1) - 1;
  Vec<I4, kMaxComponents> next;
  for (int i = IFCOM; i <= ILCOM; ++i) next(i) = list.row(i);
  for (int L = 1; L <= NT; ++L) {
    if (!inside(L)) continue;
    const I4 place = next(IT(L))++;
    list.I(place) = IT(L);
    list.J(place) = JT(L);
  }
}

// Products of the pairs with the parameter THETA = table + T slope.
void pair_products(const R8& T, const InteractionTables::Table& table, const InteractionTables::Table& slope,
                   const QuadraticCache& c, PairProducts& list) {
  for (int L = 1; L <= list.count; ++L) {
    const int i = list.I(L);
    const int j = list.J(L);
    const R8 TT = T * slope(i, j);
    const R8 TH = table(i, j) + TT;
    const R8 product = c.ALP(i) * c.ALP(j);
    list.Q(L) = -product * TH;
    if (!c.first) continue;
    const R8 mixed = c.ALPT(i) * c.ALP(j) + c.ALP(i) * c.ALPT(j);
    list.QT(L) = -(mixed * TH + product * TT);
    if (!c.second) continue;
    const R8 curved = c.ALPTT(i) * c.ALP(j) + 2.0 * c.ALPT(i) * c.ALPT(j) + c.ALP(i) * c.ALPTT(j);
    list.QTT(L) = -(curved * TH + 2.0 * mixed * TT);
  }
}

// Square roots of the pure parameters and the products of the pairs, unless they are at hand.
void refresh_cache(const R8& T, const I4& IFCOM, const I4& ILCOM, const Vec<bool, 6>& OPTMR, const I4& MODEL,
                   const I4& RULE, const CompVec& APU, const CompVec& D1ADT, const CompVec& D2ADT,
                   const InteractionTables& tables) {
  QuadraticCache& c = quadratic_cache;
  const bool second = OPTMR(5);
  const bool first = second || OPTMR(4) || OPTMR(6);
  const PureKey key = pure_key(T, MODEL, IFCOM, ILCOM);
  if (c.key == key && c.rule == RULE && c.first >= first && c.second >= second) return;

  // The pairs themselves change only with data and range.
  const bool same_pairs = c.key.generation == key.generation && c.key.IFCOM == IFCOM && c.key.ILCOM == ILCOM;
  c.key = key;
  c.rule = RULE;
  c.first = first;
  c.second = second;
  for (int i = IFCOM; i <= ILCOM; ++i) {
    c.ALP(i) = std::sqrt(APU(i));
    if (first) c.ALPT(i) = D1ADT(i) / (2.0 * c.ALP(i));
    if (second) c.ALPTT(i) = (D2ADT(i) - D1ADT(i) * c.ALPT(i) / c.ALP(i)) / (2.0 * c.ALP(i));
  }
  if (!same_pairs) {
    collect_pairs(tables.IT0, tables.JT0, tables.NT0, IFCOM, ILCOM, c.quadratic);
    collect_pairs(tables.IT1, tables.JT1, tables.NT1, IFCOM, ILCOM, c.familywise);
  }
  pair_products(T, tables.TETA0, tables.TETA0T, c, c.quadratic);
  pair_products(T, tables.TETA1, tables.TETA1T, c, c.familywise);
}

// E2(i): sum over the partners j of i of x(j) times the product.
void pair_sums(const CompVec& X, const PairProducts& list, const PairProducts::Entry& entry, const I4& IFCOM,
               const I4& ILCOM, CompVec& E2) {
  for (int i = IFCOM; i <= ILCOM; ++i) {
    R8 sum = 0.0;
    const int end = list.row(i + 1);
    for (int L = list.row(i); L < end; ++L) sum += X(list.J(L)) * entry(L);
    E2(i) = sum;
  }
}

R8 weighted(const CompVec& X, const CompVec& values, const I4& IFCOM, const I4& ILCOM) {
  R8 sum = 0.0;
  for (int i = IFCOM; i <= ILCOM; ++i) sum += X(i) * values(i);
  return sum;
}

// Family term E3 of each component. With QQ(s, t) = sum of x(i) x(j) Q1 over the pairs between two families
// and RR(i, t) = sum of x(j) Q1 over the partners of i in one, it is
//   E3(i) = 2/3 sum over t of (QQ(s, t) + (XFAM(s) - XFAM(t)) RR(i, t)), s the family of i;
// the sums over t close into QSUM, U and V.
void family_sums(const CompVec& X, const PairProducts::Entry& Q1, const PairProducts& list, const I4& IFCOM,
                 const I4& ILCOM) {
  FamilySums& s = work.sums;
  for (int f = 1; f <= pairs.NF; ++f) {
    s.XFAM(f) = 0.0;
    s.QSUM(f) = 0.0;
  }
  for (int i = IFCOM; i <= ILCOM; ++i) s.XFAM(pairs.NFAM(i)) += X(i);
  for (int i = IFCOM; i <= ILCOM; ++i) s.XX(i) = X(i) * s.XFAM(pairs.NFAM(i));
  for (int i = IFCOM; i <= ILCOM; ++i) {
    R8 U = 0.0;
    R8 V = 0.0;
    const int end = list.row(i + 1);
    for (int L = list.row(i); L < end; ++L) {
      const int j = list.J(L);
      U += X(j) * Q1(L);
      V += s.XX(j) * Q1(L);
    }
    s.U(i) = U;
    s.V(i) = V;
  }
  for (int i = IFCOM; i <= ILCOM; ++i) s.QSUM(pairs.NFAM(i)) += X(i) * s.U(i);
  for (int i = IFCOM; i <= ILCOM; ++i) {
    const int own = pairs.NFAM(i);
    s.E3(i) = 2.0 / 3.0 * (s.QSUM(own) + (s.XFAM(own) * s.U(i) - s.V(i)));
  }
}

// Family part of the second composition derivatives.
void add_family_curvature(const CompVec& X, const PairProducts& list, const I4& IFCOM, const I4& ILCOM,
                          CompMat& QNN) {
  family_sums(X, list.Q, list, IFCOM, ILCOM);
  const FamilySums& s = work.sums;
  CompMat& T = work.T;
  CompMat& RR = work.RR;
  for (int j = IFCOM; j <= ILCOM; ++j) {
    for (int i = IFCOM; i <= ILCOM; ++i) T(i, j) = 0.0;
    for (int f = 1; f <= pairs.NF; ++f) RR(f, j) = 0.0;
  }
  for (int L = 1; L <= list.count; ++L) {
    T(list.I(L), list.J(L)) = list.Q(L);
    RR(pairs.NFAM(list.J(L)), list.I(L)) += X(list.J(L)) * list.Q(L);
  }
  const R8 ES = weighted(X, s.E3, IFCOM, ILCOM);
  for (int j = IFCOM; j <= ILCOM; ++j) {
    const int t = pairs.NFAM(j);
    for (int i = IFCOM; i <= ILCOM; ++i) {
      const int f = pairs.NFAM(i);
      const R8 same = pairs.IDELTA(i, j) != 0 ? s.U(i) + s.U(j) : 0.0;
      const R8 curvature = (same - (RR(f, j) + RR(t, i)) + T(i, j) * (s.XFAM(f) - s.XFAM(t))) / 3.0;
      QNN(i, j) += -3.0 * (s.E3(i) + s.E3(j)) + 6.0 * curvature + 2.0 * ES;
    }
  }
}

// Value, or a temperature derivative of it: sum x E1, which has been set, plus pairs, plus family term.
R8 assemble(const CompVec& X, const PairProducts::Entry& pair_entry, const PairProducts::Entry& family_entry,
            const I4& IFCOM, const I4& ILCOM) {
  const PairProducts& list = quadratic_cache.familywise;
  pair_sums(X, quadratic_cache.quadratic, pair_entry, IFCOM, ILCOM, work.E2);
  R8 E = 0.0;
  SSMMR9(X, family_entry, E, work.RESLTN, list, IFCOM, ILCOM);
  return weighted(X, work.E1, IFCOM, ILCOM) + weighted(X, work.E2, IFCOM, ILCOM) + E;
}

void set_composition_derivatives(const I4& IFCOM, const I4& ILCOM, CompVec& derivatives) {
  for (int i = IFCOM; i <= ILCOM; ++i) derivatives(i) = 2.0 * work.E1(i) + 2.0 * work.E2(i) + work.RESLTN(i);
}

void second_composition_derivatives(const CompVec& X, const I4& IFCOM, const I4& ILCOM, CompMat& QNN) {
  const QuadraticCache& c = quadratic_cache;
  for (int j = IFCOM; j <= ILCOM; ++j)
    for (int i = IFCOM; i <= ILCOM; ++i) QNN(i, j) = 2.0 * c.ALP(i) * c.ALP(j);
  for (int L = 1; L <= c.quadratic.count; ++L)
    QNN(c.quadratic.I(L), c.quadratic.J(L)) += 2.0 * c.quadratic.Q(L);
  // Without pairs every family term is zero.
  if (c.familywise.count > 0) add_family_curvature(X, c.familywise, IFCOM, ILCOM, QNN);
}

}  // namespace

// SSMMR8: quadratic a with pair and family terms.
//
// In       T                  R8      temperature [K]
//          X                  R8(50)  mole fractions [-]
//          IFCOM, ILCOM       I4      range of components
//          OPTMR              flags   1 Q, 2 QN, 3 QNN, 4 QT, 5 QTT, 6 QNT
//          MODEL, RULE        I4      slot of the model table, tag of the tables passed
//          APU, D1ADT, D2ADT  R8(50)  pure a and its T d/dT, T^2 d2/dT2 [K/Pa]
//          tables                     interaction parameters and pair lists
// Out      mixture                    entry 1 [K/Pa]
// Shared   keeps the pair work of the last temperature, range and slot; reads pairs.NF, NFAM, IDELTA
void SSMMR8(const R8& T, const CompVec& X, MixtureVector& mixture, const I4& IFCOM, const I4& ILCOM,
            const Vec<bool, 6>& OPTMR, const I4& MODEL, const I4& RULE, const CompVec& APU,
            const CompVec& D1ADT, const CompVec& D2ADT, const InteractionTables& tables) {
  refresh_cache(T, IFCOM, ILCOM, OPTMR, MODEL, RULE, APU, D1ADT, D2ADT, tables);
  const QuadraticCache& c = quadratic_cache;
  CompVec& E1 = work.E1;
  const bool slope = OPTMR(4) || OPTMR(6);

  // Value.
  const R8 S = weighted(X, c.ALP, IFCOM, ILCOM);
  for (int i = IFCOM; i <= ILCOM; ++i) E1(i) = S * c.ALP(i);
  const R8 value = assemble(X, c.quadratic.Q, c.familywise.Q, IFCOM, ILCOM);
  if (OPTMR(1)) mixture.Q(IA) = value;
  if (OPTMR(2)) set_composition_derivatives(IFCOM, ILCOM, mixture.QN(IA));

  // First and second temperature derivatives.
  const R8 ST = slope || OPTMR(5) ? weighted(X, c.ALPT, IFCOM, ILCOM) : 0.0;
  if (slope) {
    for (int i = IFCOM; i <= ILCOM; ++i) E1(i) = S * c.ALPT(i) + ST * c.ALP(i);
    const R8 first = assemble(X, c.quadratic.QT, c.familywise.QT, IFCOM, ILCOM);
    if (OPTMR(4)) mixture.QT(IA) = first;
    if (OPTMR(6)) set_composition_derivatives(IFCOM, ILCOM, mixture.QNT(IA));
  }
  if (OPTMR(5)) {
    const R8 STT = weighted(X, c.ALPTT, IFCOM, ILCOM);
    for (int i = IFCOM; i <= ILCOM; ++i) E1(i) = S * c.ALPTT(i) + 2.0 * ST * c.ALPT(i) + STT * c.ALP(i);
    mixture.QTT(IA) = assemble(X, c.quadratic.QTT, c.familywise.QTT, IFCOM, ILCOM);
  }

  if (OPTMR(3)) second_composition_derivatives(X, IFCOM, ILCOM, mixture.QNN(IA));
}

// SSMMR9: cubic family term.
//
// In       X             R8(50)  mole fractions [-]
//          Q1            R8      products of the pairs [K/Pa]
//          list                  the pairs they belong to
//          IFCOM, ILCOM  I4      range of components
// Out      E             R8      family term [K/Pa]
//          RESLTN        R8(50)  its composition derivatives [K/Pa]
// Shared   reads pairs.NF, NFAM
void SSMMR9(const CompVec& X, const PairProducts::Entry& Q1, R8& E, CompVec& RESLTN, const PairProducts& list,
            const I4& IFCOM, const I4& ILCOM) {
  E = 0.0;
  // One component, or no pairs: every sum is zero.
  if (IFCOM == ILCOM || list.count == 0) {
    for (int i = IFCOM; i <= ILCOM; ++i) RESLTN(i) = 0.0;
    return;
  }
  family_sums(X, Q1, list, IFCOM, ILCOM);
  const CompVec& E3 = work.sums.E3;
  E = weighted(X, E3, IFCOM, ILCOM);
  for (int i = IFCOM; i <= ILCOM; ++i) RESLTN(i) = 3.0 * E3(i) - E;
}

}  // namespace talix
