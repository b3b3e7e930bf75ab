#include "eos/ssm_mixing.h"

#include <limits>

#include "database/pair_record.h"
#include "engine/codes.h"
#include "engine/model_record.h"
#include "eos/cubic_record.h"
#include "eos/ssm_mixing_a_excess.h"
#include "eos/ssm_mixing_consistent.h"
#include "eos/ssm_mixing_g_excess.h"
#include "eos/ssm_mixing_quadratic.h"
#include "eos/ssm_pure_planar.h"
#include "eos/two_dimensional_record.h"

namespace talix {

namespace {

using q_index::IA;
using q_index::IB;
using q_index::IN;

void set_range(CompVec& values, const I4& IFCOM, const I4& ILCOM, R8 value) {
  for (int i = IFCOM; i <= ILCOM; ++i) values(i) = value;
}

void clear_square(CompMat& values, const I4& IFCOM, const I4& ILCOM) {
  for (int j = IFCOM; j <= ILCOM; ++j)
    for (int i = IFCOM; i <= ILCOM; ++i) values(i, j) = 0.0;
}

R8 weighted(const CompVec& X, const CompVec& values, const I4& IFCOM, const I4& ILCOM) {
  R8 sum = 0.0;
  for (int i = IFCOM; i <= ILCOM; ++i) sum += X(i) * values(i);
  return sum;
}

// The entries asked for with those that a rule needs to form them.
Vec<bool, 6> with_implied(const Vec<bool, 6>& OPTMR) {
  Vec<bool, 6> all = OPTMR;
  all(4) = OPTMR(4) || OPTMR(5) || OPTMR(6);
  all(2) = OPTMR(2) || OPTMR(3) || OPTMR(6);
  all(1) = true;
  return all;
}

}  // namespace

// SSMMIX: parameter vector of the mixture.
//
// In       T             R8      temperature [K]
//          X             R8(50)  mole fractions [-]
//          IFCOM, ILCOM  I4      range of components
//          OPTMR         flags   1 Q, 2 QN, 3 QNN, 4 QT, 5 QTT, 6 QNT
//          MODEL         I4      slot of the model table, whose MODMIX names the rule
// Out      mixture               the entries asked for; without a rule a and b hold no number
// Shared   reads models, pures, planar, pairs; writes planar_pairs
void SSMMIX(const R8& T, const CompVec& X, MixtureVector& mixture, const I4& IFCOM, const I4& ILCOM,
            const Vec<bool, 6>& OPTMR, const I4& MODEL) {
  const Vec<bool, 6> all = with_implied(OPTMR);
  if (models.MODMIX(MODEL) == mixing::classical_2d) S2DAO0(IFCOM, ILCOM);
  SSMMR1(mixture, IFCOM, ILCOM, OPTMR);
  switch (models.MODMIX(MODEL)) {
    case mixing::classical:
      SSMMR2(X, mixture, IFCOM, ILCOM, OPTMR, pures.BRK, pures.D1BDT, pures.D2BDT);
      SSMMR8(T, X, mixture, IFCOM, ILCOM, OPTMR, MODEL, mixing::classical, pures.ARK, pures.D1ADT,
             pures.D2ADT, pairs);
      break;
    case mixing::classical_2d:
      SSMMR2(X, mixture, IFCOM, ILCOM, OPTMR, planar.B2D, planar.D1B2DT, planar.D2B2DT);
      SSMMR8(T, X, mixture, IFCOM, ILCOM, OPTMR, MODEL, mixing::classical_2d, planar.A2D, planar.D1A2DT,
             planar.D2A2DT, planar_pairs);
      break;
    case mixing::g_excess:
      SSMMR2(X, mixture, IFCOM, ILCOM, all, pures.BRK, pures.D1BDT, pures.D2BDT);
      SSMMR4(T, X, mixture, IFCOM, ILCOM, all, MODEL, pures.ARK, pures.D1ADT, pures.D2ADT, pures.BRK,
             pures.D1BDT, pures.D2BDT);
      break;
    case mixing::a_excess:
      SSMMR5(T, X, mixture, IFCOM, ILCOM, all, MODEL);
      SSMMR6(T, X, mixture, IFCOM, ILCOM, all, MODEL);
      break;
    case mixing::nrtl:
      SSMMR2(X, mixture, IFCOM, ILCOM, all, pures.BRK, pures.D1BDT, pures.D2BDT);
      SSMMR3(T, X, mixture, IFCOM, ILCOM, all, MODEL);
      break;
    default:
      // No value of an earlier rule may stand in.
      mixture.Q(IA) = std::numeric_limits<R8>::quiet_NaN();
      mixture.Q(IB) = std::numeric_limits<R8>::quiet_NaN();
  }
}

// SSMMR1: the mole number.
//
// In       IFCOM, ILCOM  I4     range of components
//          OPTMR         flags
// Out      mixture              entry 0: value and first composition derivatives 1, the others 0
void SSMMR1(MixtureVector& mixture, const I4& IFCOM, const I4& ILCOM, const Vec<bool, 6>& OPTMR) {
  if (OPTMR(1)) mixture.Q(IN) = 1.0;
  if (OPTMR(2)) set_range(mixture.QN(IN), IFCOM, ILCOM, 1.0);
  if (OPTMR(3)) clear_square(mixture.QNN(IN), IFCOM, ILCOM);
  if (OPTMR(4)) mixture.QT(IN) = 0.0;
  if (OPTMR(5)) mixture.QTT(IN) = 0.0;
  if (OPTMR(6)) set_range(mixture.QNT(IN), IFCOM, ILCOM, 0.0);
}

// SSMMR2: b linear in composition.
//
// In       X                   R8(50)  mole fractions [-]
//          BPU, D1BDT, D2BDT   R8(50)  pure b and its T d/dT, T^2 d2/dT2 [K/Pa]
//          OPTMR               flags
// Out      mixture                     entry 2 [K/Pa]
void SSMMR2(const CompVec& X, MixtureVector& mixture, const I4& IFCOM, const I4& ILCOM,
            const Vec<bool, 6>& OPTMR, const CompVec& BPU, const CompVec& D1BDT, const CompVec& D2BDT) {
  if (OPTMR(1)) mixture.Q(IB) = weighted(X, BPU, IFCOM, ILCOM);
  if (OPTMR(2))
    for (int i = IFCOM; i <= ILCOM; ++i) mixture.QN(IB)(i) = BPU(i);
  if (OPTMR(3)) clear_square(mixture.QNN(IB), IFCOM, ILCOM);
  if (OPTMR(4)) mixture.QT(IB) = weighted(X, D1BDT, IFCOM, ILCOM);
  if (OPTMR(5)) mixture.QTT(IB) = weighted(X, D2BDT, IFCOM, ILCOM);
  if (OPTMR(6))
    for (int i = IFCOM; i <= ILCOM; ++i) mixture.QNT(IB)(i) = D1BDT(i);
}

}  // namespace talix
