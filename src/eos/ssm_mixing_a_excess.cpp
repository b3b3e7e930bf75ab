#include "eos/ssm_mixing_a_excess.h"

#include <cstdio>
#include <limits>

#include "database/pair_record.h"
#include "engine/codes.h"
#include "engine/model_record.h"
#include "eos/cubic_record.h"
#include "eos/ssm_mixing_excess.h"

namespace talix {

namespace {

using q_index::IA;
using q_index::IB;

constexpr R8 kLn2 = widen(0.693147182F);

struct Work {
  ExcessRatios ratios;
  ExcessGibbs excess;
  CompMat BIJ, BIJT;   // second virial coefficient of a pair, over R, and its T d/dT [K/Pa]
  CompVec BN, BSVDTN;  // sums over the partners of a component
  CompVec U;           // composition derivatives of n times the denominator
  R8 BSV, BSV1DT, BSV2DT;
};

constinit Work work{};

void pure_and_excess(const R8& T, const CompVec& X, const I4& IFCOM, const I4& ILCOM,
                     const Vec<bool, 6>& OPTMR, const I4& MODEL) {
  excess_ratios(X, pures.ARK, pures.D1ADT, pures.D2ADT, pures.BRK, pures.D1BDT, pures.D2BDT, IFCOM, ILCOM,
                OPTMR, work.ratios);
  excess_energy(T, X, IFCOM, ILCOM, OPTMR, MODEL, work.excess);
}

// Sums over the second virial coefficients of the pairs.
void virial_sums(const CompVec& X, const I4& IFCOM, const I4& ILCOM, const Vec<bool, 6>& OPTMR) {
  Work& w = work;
  w.BSV = w.BSV1DT = w.BSV2DT = 0.0;
  for (int i = IFCOM; i <= ILCOM; ++i) {
    w.BN(i) = w.BSVDTN(i) = 0.0;
    R8 second = 0.0;
    for (int j = IFCOM; j <= ILCOM; ++j) {
      const R8 share = (1.0 - pairs.BICWS(i, j)) / 2.0;
      w.BIJ(i, j) = share * (pures.BRK(i) - pures.ARK(i) + pures.BRK(j) - pures.ARK(j));
      w.BN(i) += X(j) * w.BIJ(i, j);
      if (!OPTMR(4)) continue;
      w.BIJT(i, j) = share * (pures.D1BDT(i) - pures.D1ADT(i) + pures.D1BDT(j) - pures.D1ADT(j));
      w.BSVDTN(i) += X(j) * w.BIJT(i, j);
      if (OPTMR(5))
        second += X(j) * share * (pures.D2BDT(i) - pures.D2ADT(i) + pures.D2BDT(j) - pures.D2ADT(j));
    }
    w.BSV += X(i) * w.BN(i);
    w.BSV1DT += X(i) * w.BSVDTN(i);
    w.BSV2DT += X(i) * second;
  }
}

void set_b_curvature(MixtureVector& m, R8 DENOM, const I4& IFCOM, const I4& ILCOM) {
  const Work& w = work;
  const R8 D2 = DENOM * DENOM;
  for (int j = IFCOM; j <= ILCOM; ++j)
    for (int i = IFCOM; i <= ILCOM; ++i)
      m.QNN(IB)(i, j) = 2.0 * w.BIJ(i, j) / DENOM - 2.0 * w.BN(i) * w.U(j) / D2 -
                        2.0 * w.U(i) * w.BN(j) / D2 - w.BSV * w.excess.CHINN(i, j) / (kLn2 * D2) +
                        2.0 * w.BSV * w.U(i) * w.U(j) / (D2 * DENOM);
}

void set_b_cross_derivatives(MixtureVector& m, R8 DENOM, R8 W, const I4& IFCOM, const I4& ILCOM) {
  const Work& w = work;
  const R8 D2 = DENOM * DENOM;
  for (int i = IFCOM; i <= ILCOM; ++i)
    m.QNT(IB)(i) = 2.0 * w.BSVDTN(i) / DENOM - 2.0 * w.BN(i) * W / D2 - w.BSV1DT * w.U(i) / D2 -
                   w.BSV * (w.excess.CHINT(i) / kLn2 - w.ratios.D1ALPH(i)) / D2 +
                   2.0 * w.BSV * w.U(i) * W / (D2 * DENOM);
}

void print(const char* text) { std::fprintf(stdout, "%s\n", text); }

}  // namespace

// SSMMR5: b from the second virial coefficients of the pairs and the excess energy.
//
// In       T             R8      temperature [K]
//          X             R8(50)  mole fractions [-]
//          IFCOM, ILCOM  I4      range of components
//          OPTMR         flags   1 Q, 2 QN, 3 QNN, 4 QT, 5 QTT, 6 QNT, with all that they imply
//          MODEL         I4      slot of the model table, whose MODLIQ names the liquid model
// Out      mixture               entry 2 [K/Pa]
// Shared   reads pures, pairs.BICWS
// Oddity   other liquid models than NRTL are told on the standard output only: UNIFAC goes on without an
//          excess energy; any other leaves with b not a number. The denominator has a pole where the excess
//          energy over ln 2 equals the mean ratio of a to b less 1
// Source   D. S. H. Wong, S. I. Sandler, AIChE J. 38 (1992) 671
void SSMMR5(const R8& T, const CompVec& X, MixtureVector& mixture, const I4& IFCOM, const I4& ILCOM,
            const Vec<bool, 6>& OPTMR, const I4& MODEL) {
  MixtureVector& m = mixture;
  const I4 liquid = models.MODLIQ(MODEL);
  if (liquid == model::unifac) {
    print("Unifac mixing rule not implemented");
  } else if (liquid != model::nrtl) {
    print("No liquid model for excess mixing rule, STOP");
    m.Q(IB) = std::numeric_limits<R8>::quiet_NaN();
    return;
  }
  pure_and_excess(T, X, IFCOM, ILCOM, OPTMR, MODEL);
  virial_sums(X, IFCOM, ILCOM, OPTMR);

  Work& w = work;
  const R8 DENOM = 1.0 + w.excess.GE / kLn2 - w.ratios.mean;
  const R8 D2 = DENOM * DENOM;
  if (OPTMR(1)) m.Q(IB) = w.BSV / DENOM;
  if (OPTMR(2)) {
    for (int i = IFCOM; i <= ILCOM; ++i) {
      w.U(i) = 1.0 - w.ratios.ALPHA(i) + w.excess.CHIN(i) / kLn2;
      m.QN(IB)(i) = 2.0 * w.BN(i) / DENOM - w.U(i) * w.BSV / D2;
    }
  }
  if (OPTMR(3)) set_b_curvature(m, DENOM, IFCOM, ILCOM);
  if (!OPTMR(4)) return;
  const R8 W = w.excess.GET / kLn2 - w.ratios.first;
  m.QT(IB) = w.BSV1DT / DENOM - w.BSV * W / D2;
  if (OPTMR(5))
    m.QTT(IB) = w.BSV2DT / DENOM - 2.0 * w.BSV1DT * W / D2 -
                (w.excess.GETT / kLn2 - w.ratios.second) * w.BSV / D2 + 2.0 * w.BSV * (W * W) / (D2 * DENOM);
  if (OPTMR(6)) set_b_cross_derivatives(m, DENOM, W, IFCOM, ILCOM);
}

// SSMMR6: a from b and the excess energy.
//
// In       as SSMMR5
// In/Out   mixture               reads entry 2, sets entry 1 [K/Pa]
// Shared   reads pures
// Oddity   UNIFAC is told on the standard output and counts as no excess energy
// Source   as SSMMR5
void SSMMR6(const R8& T, const CompVec& X, MixtureVector& mixture, const I4& IFCOM, const I4& ILCOM,
            const Vec<bool, 6>& OPTMR, const I4& MODEL) {
  if (models.MODLIQ(MODEL) == model::unifac) print(" SSMMR6 (QX) Unifac mixing rule not implemented ");
  pure_and_excess(T, X, IFCOM, ILCOM, OPTMR, MODEL);

  const Work& w = work;
  MixtureVector& m = mixture;
  const R8 b = m.Q(IB);
  const R8 H = w.ratios.mean - w.excess.GE / kLn2;
  const auto HN = [](int i) { return work.ratios.ALPHA(i) - work.excess.CHIN(i) / kLn2; };
  if (OPTMR(1)) m.Q(IA) = H * b;
  if (OPTMR(2))
    for (int i = IFCOM; i <= ILCOM; ++i) m.QN(IA)(i) = H * m.QN(IB)(i) + b * HN(i);
  if (OPTMR(3)) {
    for (int j = IFCOM; j <= ILCOM; ++j)
      for (int i = IFCOM; i <= ILCOM; ++i)
        m.QNN(IA)(i, j) =
            H * m.QNN(IB)(i, j) + HN(j) * m.QN(IB)(i) + m.QN(IB)(j) * HN(i) - b * w.excess.CHINN(i, j) / kLn2;
  }
  if (!OPTMR(4)) return;
  const R8 HT = w.ratios.first - w.excess.GET / kLn2;
  m.QT(IA) = H * m.QT(IB) + b * HT;
  if (OPTMR(5)) {
    const R8 HTT = w.ratios.second - w.excess.GETT / kLn2;
    m.QTT(IA) = H * m.QTT(IB) + 2.0 * HT * m.QT(IB) + b * HTT;
  }
  if (OPTMR(6)) {
    for (int i = IFCOM; i <= ILCOM; ++i)
      m.QNT(IA)(i) = H * m.QNT(IB)(i) + HN(i) * m.QT(IB) +
                     b * (w.ratios.D1ALPH(i) - w.excess.CHINT(i) / kLn2) + m.QN(IB)(i) * HT;
  }
}

}  // namespace talix
