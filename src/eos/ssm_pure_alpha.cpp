#include "eos/ssm_pure_alpha.h"

#include <cmath>

#include "database/component_record.h"
#include "engine/codes.h"
#include "eos/cubic_record.h"
#include "eos/ssm_pure_scale.h"
#include "eos/vardo95_record.h"

namespace talix {

namespace {

using pure_scale::critical_ratio;
using pure_scale::floored;

constexpr R8 kLogSeven = 0.84509804;    // log10 of 7
constexpr R8 kLargestQuadratic = 0.49;  // acentric factor up to which the slope is a quadratic

R8 translation(int i, R8 T) { return T * vardo95.C95(i, 2) + vardo95.C95(i, 1); }

// a, b and translation for the slope XM of the square root of alpha.
void generalised_parameters(int i, const R8& T, const I4& IPARA, R8 XM) {
  const R8 TR = T / comp.TC(i);
  const R8 RTP = critical_ratio(comp.TC(i), comp.PC(i));
  const R8 root = std::sqrt(TR);
  const R8 AAC = 1.0 + XM * (1.0 - root);
  const R8 a = cur.OAPAR * (AAC * AAC) / TR;
  pures.ARK(i) = floored(a) * RTP;
  pures.BRK(i) = cur.OBPAR * RTP;
  pures.CRK(i) = translation(i, T);
  const R8 E = cur.OAPAR * RTP * AAC * XM / root + pures.ARK(i);
  if (IPARA > 0) {
    pures.D1ADT(i) = -E;
    pures.D1BDT(i) = 0.0;
    pures.D1CDT(i) = T * vardo95.C95(i, 2);
  }
  if (IPARA == 2) {
    pures.D2ADT(i) = 2.0 * E + cur.OAPAR * RTP * (AAC / root + XM) * XM / 2.0;
    pures.D2BDT(i) = 0.0;
    pures.D2CDT(i) = 0.0;
  }
}

R8 slope_of_constants(R8 W) {
  return (kLogSeven + W) * (W * cur.M2PAR + cur.M1PAR) / (1.0 + W * cur.M3PAR) - 1.0 + cur.M4PAR * (W * W);
}

R8 slope_in_two_ranges(R8 W) {
  if (W > kLargestQuadratic) return 0.379642 + 1.48503 * W - 0.164423 * (W * W) + 0.016666 * (W * W * W);
  return 0.37464 + 1.54226 * W - 0.26992 * (W * W);
}

// Sum over k of c(k) L^k, and what its first and second derivatives with L hold.
struct Polynomial {
  R8 value, first, second;
};

template <int ORDER>
Polynomial log_polynomial(const Mat<R8, kMaxComponents, ORDER>& table, int i, R8 L) {
  Polynomial p{};
  for (int k = ORDER; k >= 1; --k) {
    p.value = (p.value + table(i, k)) * L;
    p.first = p.first * L + k * table(i, k);
    if (k > 1) p.second = p.second * L + k * (k - 1) * table(i, k);
  }
  return p;
}

void log_parameters(int i, const R8& T, const I4& IPARA) {
  const R8 TRL = std::log(T / comp.TC(i));
  const R8 RTP = critical_ratio(comp.TC(i), comp.PC(i));
  const R8 C1 = vardo95.C95(i, 1);
  const R8 C2 = vardo95.C95(i, 2);
  const R8 C3 = vardo95.C95(i, 3);
  const Polynomial a = log_polynomial(vardo95.A95, i, TRL);
  const Polynomial b = log_polynomial(vardo95.B95, i, TRL);
  const R8 OA = cur.OAPAR * std::exp(a.value);
  pures.ARK(i) = floored(OA) * RTP;
  pures.BRK(i) = cur.OBPAR * RTP * std::exp(b.value);
  pures.CRK(i) = RTP * (C2 * std::atan(C3 * TRL) + C1);
  const R8 L = 1.0 + (C3 * TRL) * (C3 * TRL);
  if (IPARA > 0) {
    pures.D1ADT(i) = pures.ARK(i) * a.first;
    pures.D1BDT(i) = pures.BRK(i) * b.first;
    pures.D1CDT(i) = RTP * C2 * C3 / L;
  }
  if (IPARA == 2) {
    pures.D2ADT(i) = pures.ARK(i) * (a.first * a.first + a.second - a.first);
    pures.D2BDT(i) = pures.BRK(i) * (b.first * b.first + b.second - b.first);
    pures.D2CDT(i) = -RTP * C2 * C3 * (1.0 + 2.0 * (C3 * C3) * TRL / L) / L;
  }
}

}  // namespace

// SWLPC0: a and b with a square root of alpha that is linear in the square root of T/Tc; its slope follows
// the constants of the model.
//
// In       T             R8  temperature [K]
//          IPARA         I4  0 values, 1 with first, 2 with second derivatives
//          IFCOM, ILCOM  I4  range of components
// Shared   reads cur.OAPAR, OBPAR, M1PAR to M4PAR, comp.TC, PC, OMEGA, vardo95.C95; writes pures
// Status   ok
// Oddity   the derivatives of a floored a follow from the floored value
// Source   G. Soave, Chem. Eng. Sci. 27 (1972) 1197
void SWLPC0(const R8& T, const I4& IPARA, const I4& IFCOM, const I4& ILCOM, I4& ICODE) {
  ICODE = status::ok;
  for (int i = IFCOM; i <= ILCOM; ++i) generalised_parameters(i, T, IPARA, slope_of_constants(comp.OMEGA(i)));
}

// SWLPC1: as SWLPC0 with the slope of Peng and Robinson, quadratic in the acentric factor up to 0.49, cubic
// above.
//
// In       T             R8  temperature [K]
//          IPARA         I4  0 values, 1 with first, 2 with second derivatives
//          IFCOM, ILCOM  I4  range of components
// Shared   reads cur.OAPAR, OBPAR, comp.TC, PC, OMEGA, vardo95.C95; writes pures
// Status   ok
// Oddity   the slopes of the two ranges differ by 3E-5 at 0.49; a floored a as in SWLPC0
// Source   D.-Y. Peng, D. B. Robinson, Ind. Eng. Chem. Fundam. 15 (1976) 59; GPA RR-28 (1978)
void SWLPC1(const R8& T, const I4& IPARA, const I4& IFCOM, const I4& ILCOM, I4& ICODE) {
  ICODE = status::ok;
  for (int i = IFCOM; i <= ILCOM; ++i)
    generalised_parameters(i, T, IPARA, slope_in_two_ranges(comp.OMEGA(i)));
}

// SM9IN0: no translation for the components of a range.
//
// In       IFCOM, ILCOM  I4  range of components
// Shared   writes vardo95.C95
// Status   ok
// Oddity   what a host has set there is lost
void SM9IN0(const I4& IFCOM, const I4& ILCOM, I4& ICODE) {
  ICODE = status::ok;
  for (int i = IFCOM; i <= ILCOM; ++i)
    for (int k = 1; k <= 3; ++k) vardo95.C95(i, k) = 0.0;
}

// SM9PC0: ln a and ln b as polynomials in ln(T/Tc), with a translation that SM9IN0 clears first.
//
// In       T             R8  temperature [K]
//          IPARA         I4  0 values, 1 with first, 2 with second derivatives
//          IFCOM, ILCOM  I4  range of components
// Shared   reads cur.OAPAR, OBPAR, comp.TC, PC, vardo95; writes pures
// Status   ok
// Oddity   without coefficients, which no file holds, a/(R2 T) and b are those of the critical point at
//          every temperature; the slopes of a floored a follow from the floored value
void SM9PC0(const R8& T, const I4& IPARA, const I4& IFCOM, const I4& ILCOM, I4& ICODE) {
  SM9IN0(IFCOM, ILCOM, ICODE);
  for (int i = IFCOM; i <= ILCOM; ++i) log_parameters(i, T, IPARA);
}

}  // namespace talix
