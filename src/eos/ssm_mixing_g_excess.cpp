#include "eos/ssm_mixing_g_excess.h"

#include <cmath>

#include "engine/codes.h"
#include "engine/error_ring.h"
#include "eos/ssm_mixing_excess.h"

namespace talix {

constinit GExcessRecord g_excess{};

namespace {

using q_index::IA;
using q_index::IB;

// Coefficients of the zero-pressure function; the doubled second one is a single-precision constant of its own.
constexpr R8 kQ1 = -0.47832;
constexpr R8 kQ2 = -0.00469;
constexpr R8 kTwoQ2 = widen(-0.00938F);

struct Work {
  ExcessRatios ratios;
  ExcessGibbs excess;
  CompVec HN;
};

constinit Work work{};

struct PureB {
  const CompVec& value;
  const CompVec& first;
  const CompVec& second;
};

// The quadratic for the ratio of the mixture; without a solution the last one stays.
void solve(const CompVec& X, R8 b, const CompVec& BPU, const I4& IFCOM, const I4& ILCOM) {
  R8 squares = 0.0;
  R8 logarithms = 0.0;
  for (int i = IFCOM; i <= ILCOM; ++i) {
    squares += X(i) * (work.ratios.ALPHA(i) * work.ratios.ALPHA(i));
    logarithms += X(i) * std::log(b / BPU(i));
  }
  const R8 V1 = kQ1;
  const R8 V2 = kQ2;
  const R8 V3 = -(kQ1 * work.ratios.mean + kQ2 * squares + work.excess.GE + logarithms);
  const R8 DET = V1 * V1 - 4.0 * V2 * V3;
  if (DET < 0.0) {
    SERPU0(severity::error, "SSMMR4", "No solution (negative determinant) in  gE mixing rule");
    return;
  }
  const R8 HQ = -(V1 + std::copysign(std::sqrt(DET), V1)) / 2.0;
  const R8 H1 = HQ / V2;
  const R8 H2 = V3 / HQ;
  g_excess.H = H1 > H2 ? H1 : H2;
  if (g_excess.H < 0.0) SERPU0(severity::warning, "SSMMR4", "No positive root in gE mixing rule");
}

// Composition derivatives of n H.
void amount_derivatives(const MixtureVector& m, R8 D, const CompVec& BPU, const I4& IFCOM, const I4& ILCOM) {
  const R8 b = m.Q(IB);
  const R8 H = g_excess.H;
  for (int i = IFCOM; i <= ILCOM; ++i) {
    const R8 ALPHA = work.ratios.ALPHA(i);
    work.HN(i) = (kQ1 * ALPHA + kQ2 * (ALPHA * ALPHA + H * H) + work.excess.CHIN(i) + std::log(b / BPU(i)) +
                  m.QN(IB)(i) / b - 1.0) /
                 D;
  }
}

void set_amount_curvature(MixtureVector& m, R8 D, const I4& IFCOM, const I4& ILCOM) {
  const R8 b = m.Q(IB);
  const R8 H = g_excess.H;
  const CompVec& HN = work.HN;
  const CompVec& bn = m.QN(IB);
  for (int j = IFCOM; j <= ILCOM; ++j) {
    for (int i = IFCOM; i <= ILCOM; ++i) {
      const R8 HNN = (-kTwoQ2 * HN(i) * HN(j) + kTwoQ2 * H * (HN(i) + HN(j)) - kTwoQ2 * (H * H) +
                      work.excess.CHINN(i, j) + (bn(i) + bn(j)) / b - bn(i) * bn(j) / (b * b) +
                      m.QNN(IB)(i, j) / b - 1.0) /
                     D;
      m.QNN(IA)(i, j) = H * m.QNN(IB)(i, j) + HN(i) * bn(j) + bn(i) * HN(j) + b * HNN;
    }
  }
}

// HT: temperature derivative of H.
R8 slope(const CompVec& X, const MixtureVector& m, R8 D, const PureB& pure, const I4& IFCOM,
         const I4& ILCOM) {
  R8 products = 0.0;
  R8 sizes = 0.0;
  for (int i = IFCOM; i <= ILCOM; ++i) {
    products += X(i) * work.ratios.ALPHA(i) * work.ratios.D1ALPH(i);
    sizes += X(i) * (m.QT(IB) / m.Q(IB) - pure.first(i) / pure.value(i));
  }
  return (kQ1 * work.ratios.first + kTwoQ2 * products + work.excess.GET + sizes) / D;
}

// HTT.
R8 temperature_curvature(const CompVec& X, const MixtureVector& m, R8 D, R8 HT, const PureB& pure,
                         const I4& IFCOM, const I4& ILCOM) {
  const R8 mixed = m.QT(IB) / m.Q(IB);
  R8 products = 0.0;
  R8 sizes = 0.0;
  for (int i = IFCOM; i <= ILCOM; ++i) {
    const ExcessRatios& r = work.ratios;
    const R8 own = pure.first(i) / pure.value(i);
    products += X(i) * (r.D1ALPH(i) * r.D1ALPH(i) + r.ALPHA(i) * r.D2ALPH(i));
    sizes += X(i) * (-(mixed * mixed) + m.QTT(IB) / m.Q(IB) + own * own - pure.second(i) / pure.value(i));
  }
  return (kQ1 * work.ratios.second - kTwoQ2 * (HT * HT - products) + work.excess.GETT + sizes) / D;
}

void set_cross_derivatives(MixtureVector& m, R8 D, R8 HT, const PureB& pure, const I4& IFCOM,
                           const I4& ILCOM) {
  const R8 b = m.Q(IB);
  const R8 bt = m.QT(IB);
  const R8 H = g_excess.H;
  for (int i = IFCOM; i <= ILCOM; ++i) {
    const ExcessRatios& r = work.ratios;
    const R8 HNT = (kQ1 * r.D1ALPH(i) - kTwoQ2 * (work.HN(i) * HT - H * HT - r.ALPHA(i) * r.D1ALPH(i)) +
                    work.excess.CHINT(i) + bt / b - pure.first(i) / pure.value(i) +
                    (m.QNT(IB)(i) - m.QN(IB)(i) * bt / b) / b) /
                   D;
    m.QNT(IA)(i) = b * HNT + HT * m.QN(IB)(i) + bt * work.HN(i) + H * m.QNT(IB)(i);
  }
}

}  // namespace

// SSMMR4: a from the excess Gibbs energy of the liquid model, by the modified Huron-Vidal rule of second
// order.
//
// In       T                   R8      temperature [K]
//          X                   R8(50)  mole fractions [-]
//          IFCOM, ILCOM        I4      range of components
//          OPTMR               flags   1 Q, 2 QN, 3 QNN, 4 QT, 5 QTT, 6 QNT, with all that they imply
//          MODEL               I4      slot of the model table, whose MODLIQ names the liquid model
//          APU, D1ADT, D2ADT   R8(50)  pure a and its T d/dT, T^2 d2/dT2 [K/Pa]
//          BPU, D1BDT, D2BDT   R8(50)  the same of b [K/Pa]
// In/Out   mixture                     reads entry 2, sets entry 1 [K/Pa]
// Shared   keeps g_excess.H
// Reports  "No solution (negative determinant) in  gE mixing rule", severity 3;
//          "No positive root in gE mixing rule", severity 1
// Oddity   neither report fails the call: without a solution it goes on with the ratio of an earlier call,
//          without a positive one with the larger root
// Source   S. Dahl, M. L. Michelsen, AIChE J. 36 (1990) 1829
void SSMMR4(const R8& T, const CompVec& X, MixtureVector& mixture, const I4& IFCOM, const I4& ILCOM,
            const Vec<bool, 6>& OPTMR, const I4& MODEL, const CompVec& APU, const CompVec& D1ADT,
            const CompVec& D2ADT, const CompVec& BPU, const CompVec& D1BDT, const CompVec& D2BDT) {
  MixtureVector& m = mixture;
  excess_ratios(X, APU, D1ADT, D2ADT, BPU, D1BDT, D2BDT, IFCOM, ILCOM, OPTMR, work.ratios);
  excess_energy(T, X, IFCOM, ILCOM, OPTMR, MODEL, work.excess);
  const R8 b = m.Q(IB);
  solve(X, b, BPU, IFCOM, ILCOM);

  const R8 H = g_excess.H;
  const R8 D = kQ1 + 2.0 * H * kQ2;
  const PureB pure{.value = BPU, .first = D1BDT, .second = D2BDT};
  if (OPTMR(1)) m.Q(IA) = H * b;
  if (OPTMR(2)) {
    amount_derivatives(m, D, BPU, IFCOM, ILCOM);
    for (int i = IFCOM; i <= ILCOM; ++i) m.QN(IA)(i) = H * m.QN(IB)(i) + b * work.HN(i);
  }
  if (OPTMR(3)) set_amount_curvature(m, D, IFCOM, ILCOM);
  if (!OPTMR(4)) return;
  const R8 HT = slope(X, m, D, pure, IFCOM, ILCOM);
  m.QT(IA) = H * m.QT(IB) + b * HT;
  if (OPTMR(5)) {
    const R8 HTT = temperature_curvature(X, m, D, HT, pure, IFCOM, ILCOM);
    m.QTT(IA) = H * m.QTT(IB) + 2.0 * HT * m.QT(IB) + b * HTT;
  }
  if (OPTMR(6)) set_cross_derivatives(m, D, HT, pure, IFCOM, ILCOM);
}

}  // namespace talix
