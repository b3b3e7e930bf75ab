#include "eos/ssm_pure_variants.h"

#include <cmath>

#include "database/component_record.h"
#include "database/srk_variant_record.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "eos/cubic_record.h"
#include "eos/ssm_pure_scale.h"

namespace talix {

namespace {

using pure_scale::critical_ratio;
using pure_scale::floored;

// A function of T/Tc with its first and second derivative.
struct Jet {
  R8 value, first, second;
};

Jet squared(const Jet& w) {
  return {.value = w.value * w.value,
          .first = 2.0 * w.value * w.first,
          .second = 2.0 * (w.first * w.first + w.value * w.second)};
}

// x^n exp(c (1 - x^m)).
Jet stretched_exponential(R8 TR, R8 n, R8 m, R8 c) {
  const R8 value = std::pow(TR, n) * std::exp(c * (1.0 - std::pow(TR, m)));
  const R8 slope = n / TR - c * m * std::pow(TR, m - 1.0);
  const R8 curvature = -n / (TR * TR) - c * m * (m - 1.0) * std::pow(TR, m - 2.0);
  return {.value = value, .first = value * slope, .second = value * (slope * slope + curvature)};
}

// 1 + f u - p u P with u = 1 - sqrt(x).
Jet polynomial_root(R8 TR, R8 f, R8 p, const Jet& P) {
  const R8 s = std::sqrt(TR);
  const Jet u{.value = 1.0 - s, .first = -0.5 / s, .second = 0.25 / (TR * s)};
  return {.value = 1.0 + f * u.value - p * u.value * P.value,
          .first = f * u.first - p * (u.first * P.value + u.value * P.first),
          .second = f * u.second - p * (u.second * P.value + 2.0 * u.first * P.first + u.value * P.second)};
}

// RTP = Tc/Pc [K/Pa].
void store(int i, R8 RTP, const I4& IPARA, R8 TR, const Jet& alpha) {
  const R8 OA = cur.OAPAR * alpha.value / TR;
  const R8 factor = cur.OAPAR * RTP;
  pures.ARK(i) = floored(OA) * RTP;
  pures.BRK(i) = cur.OBPAR * RTP;
  if (IPARA > 0) {
    pures.D1ADT(i) = factor * alpha.first - pures.ARK(i);
    pures.D1BDT(i) = pures.D1CDT(i) = 0.0;
  }
  if (IPARA == 2) {
    pures.D2ADT(i) = factor * (TR * alpha.second - 2.0 * alpha.first) + 2.0 * pures.ARK(i);
    pures.D2BDT(i) = pures.D2CDT(i) = 0.0;
  }
}

// False when the form is none of the two.
bool alpha_of_simsci(int i, R8 TR, Jet& alpha) {
  const R8 c1 = srk_variants.CSRKP2(i, 1);
  const R8 c2 = srk_variants.CSRKP2(i, 2);
  const R8 c3 = srk_variants.CSRKP2(i, 3);
  switch (srk_variants.P2ALPH(i)) {
    case 1:
      alpha = squared(polynomial_root(TR, c1, 0.0, {}));
      return true;
    case 6:
      alpha = stretched_exponential(TR, c3 * (c2 - 1.0), c2 * c3, c1);
      return true;
    default:
      return false;
  }
}

// Exponential above the critical temperature.
Jet warm_root(R8 TR, R8 DI) { return stretched_exponential(TR, 0.0, DI, 1.0 - 1.0 / DI); }

// False when the form is none of the five.
bool alpha_of_aspen(int i, R8 TR, bool cold, Jet& alpha) {
  const R8 W = srk_variants.OMASP(i);
  const R8 FOM = 0.48 + 1.57 * W - 0.176 * (W * W);
  const R8 p1 = srk_variants.CSRKAP(i, 1);
  const R8 p2 = srk_variants.CSRKAP(i, 2);
  const R8 p3 = srk_variants.CSRKAP(i, 3);
  switch (srk_variants.APALPH(i)) {
    case 1:
      alpha = stretched_exponential(TR, -0.5, 0.0, 0.0);
      return true;
    case 2:
      alpha = squared(polynomial_root(TR, FOM, 0.0, {}));
      return true;
    case 3:
      alpha = squared(cold ? polynomial_root(TR, FOM, 0.0, {}) : warm_root(TR, 1.0 + FOM / 2.0));
      return true;
    case 4:
      alpha = squared(cold ? polynomial_root(TR, FOM, p1, {.value = 0.7 - TR, .first = -1.0, .second = 0.0})
                           : warm_root(TR, 1.0 + FOM / 2.0 + 0.3 * p1));
      return true;
    case 5:
      alpha = squared(cold ? polynomial_root(TR, FOM, p1,
                                             {.value = 1.0 + p2 * TR + p3 * (TR * TR),
                                              .first = p2 + 2.0 * p3 * TR,
                                              .second = 2.0 * p3})
                           : warm_root(TR, FOM / 2.0 - p1 * (1.0 + p2 + p3)));
      return true;
    default:
      return false;
  }
}

}  // namespace

// SP2PC0: a and b with a temperature function of form 1 or 6.
//
// In       T             R8  temperature [K]
//          IPARA         I4  0 values, 1 with first, 2 with second derivatives
//          IFCOM, ILCOM  I4  range of components
// Shared   reads srk_variants.P2ALPH, CSRKP2, comp.TC, PC, cur.OAPAR, OBPAR; writes pures, but CRK
// Status   ok; stop (form of a component neither 1 nor 6)
// Reports  "ATTEMPT TO USE PRO/II WITH ALPHA NE 1 or 6", severity 3
// Source   C. H. Twu, D. Bluck, J. R. Cunningham, J. E. Coon, Fluid Phase Equilib. 69 (1991) 33 (form 6)
void SP2PC0(const R8& T, const I4& IPARA, const I4& IFCOM, const I4& ILCOM, I4& ICODE) {
  ICODE = status::ok;
  for (int i = IFCOM; i <= ILCOM; ++i) {
    const R8 TR = T / comp.TC(i);
    Jet alpha{};
    if (!alpha_of_simsci(i, TR, alpha)) {
      SERPU0(severity::error, "SP2PC0", "ATTEMPT TO USE PRO/II WITH ALPHA NE 1 or 6");
      ICODE = status::numerical;
      return;
    }
    store(i, critical_ratio(comp.TC(i), comp.PC(i)), IPARA, TR, alpha);
  }
}

// SAPPC0: a and b with a temperature function of form 1 to 5 and critical data of their own.
//
// In       T             R8  temperature [K]
//          IPARA         I4  0 values, 1 with first, 2 with second derivatives
//          IFCOM, ILCOM  I4  range of components
// Shared   reads srk_variants.APALPH, CSRKAP, TCASP, PCASP, OMASP, cur.OAPAR, OBPAR; writes pures, but CRK
// Status   ok; stop (form of a component none of 1 to 5)
// Reports  "ATTEMPT TO USE AspenPlus WITH ALPHA NE 1, 2, 3 or 4", severity 3
// Oddity   form 5 is served although the message leaves it out; above the critical temperature its
//          exponent has no leading 1, so that alpha may rise with temperature and jumps at Tc
// Source   J. F. Boston, P. M. Mathias, Proc. 2nd Int. Conf. Phase Equil. and Fluid Prop. (1980), 823;
//          P. M. Mathias, Ind. Eng. Chem. Process Des. Dev. 22 (1983) 385 (form 4)
void SAPPC0(const R8& T, const I4& IPARA, const I4& IFCOM, const I4& ILCOM, I4& ICODE) {
  ICODE = status::ok;
  for (int i = IFCOM; i <= ILCOM; ++i) {
    const R8 TC = srk_variants.TCASP(i);
    Jet alpha{};
    if (!alpha_of_aspen(i, T / TC, T < TC, alpha)) {
      SERPU0(severity::error, "SAPPC0", "ATTEMPT TO USE AspenPlus WITH ALPHA NE 1, 2, 3 or 4");
      ICODE = status::numerical;
      return;
    }
    store(i, critical_ratio(TC, srk_variants.PCASP(i)), IPARA, T / TC, alpha);
  }
}

}  // namespace talix
