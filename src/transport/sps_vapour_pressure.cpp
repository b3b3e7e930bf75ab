#include "transport/sps_vapour_pressure.h"

#include <algorithm>
#include <cmath>

#include "database/component_record.h"
#include "engine/codes.h"

namespace talix {

namespace {

constexpr R8 kPascalPerBar = 100000.0;
constexpr R8 kPascalPerMegapascal = 1000000.0;

// ln 10, as the coefficient sets were fitted.
constexpr R8 kLnTen = widen(2.30258512F);

// ln 100000: the normal boiling point taken as 1 bar.
constexpr R8 kLnBar = widen(11.513F);

struct Pressure {
  R8 value;       // [Pa]
  R8 derivative;  // [Pa/K]
};

void hand_out(const Pressure& p, const L4& VALUE, const L4& DERIV, R8& PSAT, R8& DPSAT) {
  if (VALUE) PSAT = p.value;
  if (DERIV) DPSAT = p.derivative;
}

// Frost-Kalkwarf above the critical temperature: a line in 1/T through the boiling and the critical point.
Pressure beyond_critical(R8 T, I4 ICOMP) {
  const R8 p3 = 1.0 / comp.TC(ICOMP) - 1.0 / comp.TBOIL(ICOMP);
  const R8 p2 = std::log(kPascalPerBar * comp.PC(ICOMP)) - kLnBar;
  const R8 value = std::exp(p2 * (1.0 / T - 1.0 / comp.TBOIL(ICOMP)) / p3 + kLnBar);
  return {value, -(p2 / p3) / (T * T) * value};
}

// Solves ln PS - D PS/T^2 = Q0 for PS [MPa].
I4 solve_frost_kalkwarf(R8 T, R8 D, R8 Q0, R8& PS) {
  constexpr int max_steps = 10;
  constexpr R8 step_limit = 1e-6;  // [MPa], and of PS itself where that is less
  const R8 slope = D / (T * T);
  const R8 p0 = Q0 >= 100.0 ? 1e20 : std::exp(Q0);
  PS = p0;
  if (D == 0.0) return status::ok;
  if (D > 0.0) {
    // The left side has its maximum at T^2/D: above it no pressure satisfies the equation.
    if (T * T * std::exp(-Q0 - 1.0) < D) return status::no_root;
  } else {
    PS = 0.5 * p0;
    while (std::log(PS - slope * PS) > Q0) PS *= 0.5;
  }
  for (int step = 1; step <= max_steps; ++step) {
    const R8 change = (std::log(PS) - slope * PS - Q0) / (1.0 / PS - slope);
    PS -= change;
    if (std::abs(change) <= step_limit * std::min(1.0, PS)) return status::ok;
  }
  return status::not_converged;
}

}  // namespace

// SPSWG0: the Wagner equation.
//
// In       T       R8    [K]
//          ICOMP   I4    component
//          VALUE   L4    PSAT wanted
//          DERIV   L4    DPSAT wanted
// Out      PSAT    R8    vapour pressure [Pa]
//          DPSAT   R8    its derivative [Pa/K]
//          NFAIL   I4    status
// Shared   reads comp.TC, comp.PC, comp.PWAG
// Status   ok
// Oddity   from twice the critical temperature up the exponential of the extension is held, also in DPSAT
// Source   W. Wagner, Cryogenics 13 (1973) 470
void SPSWG0(const R8& T, const I4& ICOMP, const L4& VALUE, const L4& DERIV, R8& PSAT, R8& DPSAT, I4& NFAIL) {
  NFAIL = status::ok;
  const R8 tc = comp.TC(ICOMP);
  const R8 pc = comp.PC(ICOMP) * kPascalPerBar;
  const R8 w1 = comp.PWAG(ICOMP, 1);
  const R8 w2 = comp.PWAG(ICOMP, 2);
  const R8 w3 = comp.PWAG(ICOMP, 3);
  const R8 w4 = comp.PWAG(ICOMP, 4);
  const R8 q = 1.0 - T / tc;

  Pressure p{};
  if (q > 0.0) {
    const R8 root = std::sqrt(q);
    const R8 q2 = q * q;
    const R8 p1 = w1 * q + w2 * q * root + w3 * q2 * q + w4 * q2 * q2 * q2;
    const R8 exponent = p1 * tc / T;
    p.value = pc * std::exp(exponent);
    p.derivative =
        p.value * (-exponent / T - (w1 + 1.5 * w2 * root + 3.0 * w3 * q2 + 6.0 * w4 * q2 * q2 * q) / T);
  } else {
    const R8 extension = q > -1.0 ? std::exp(w1 * (tc - T) / tc) : std::exp(-w1);
    p.value = pc * extension;
    p.derivative = -(pc * w1 / tc) * extension;
  }
  hand_out(p, VALUE, DERIV, PSAT, DPSAT);
}

// SPSAN1: the Antoine equation in megapascal and powers of ten.
//
// In       T       R8    [K]
//          ICOMP   I4    component
//          VALUE   L4    PSAT wanted
//          DERIV   L4    DPSAT wanted
// Out      PSAT    R8    vapour pressure [Pa]
//          DPSAT   R8    its derivative [Pa/K]
//          NFAIL   I4    status
// Shared   reads comp.IPAN, comp.PANT, comp.PSAT: the set PANT when IPAN is set, otherwise PSAT
// Status   ok; input (T at the pole of the equation: PSAT and DPSAT are 0)
void SPSAN1(const R8& T, const I4& ICOMP, const L4& VALUE, const L4& DERIV, R8& PSAT, R8& DPSAT, I4& NFAIL) {
  NFAIL = status::ok;
  const bool own_set = comp.IPAN(ICOMP) != 0;
  const R8 a = own_set ? comp.PANT(ICOMP, 1) : comp.PSAT(ICOMP, 1);
  const R8 b = own_set ? comp.PANT(ICOMP, 2) : comp.PSAT(ICOMP, 2);
  const R8 c = own_set ? comp.PANT(ICOMP, 3) : comp.PSAT(ICOMP, 3);

  Pressure p{};
  const R8 denominator = c + T;
  if (denominator == 0.0) {
    NFAIL = status::input;
  } else {
    p.value = kPascalPerMegapascal * std::pow(10.0, a + b / denominator);
    p.derivative = p.value * kLnTen * (-b / (denominator * denominator));
  }
  hand_out(p, VALUE, DERIV, PSAT, DPSAT);
}

// SPSFK0: the Frost-Kalkwarf equation, ln PS - D PS/T^2 = A + B/T + C ln T with PS in megapascal. A, B, C, D are
// the entries 1, 2, 4, 5 of the set; the third is 0, since it marks an Antoine set otherwise.
//
// In       T       R8    [K]
//          ICOMP   I4    component
//          VALUE   L4    PSAT wanted
//          DERIV   L4    DPSAT wanted
// Out      PSAT    R8    vapour pressure [Pa]; as it came in on failure
//          DPSAT   R8    its derivative [Pa/K]; as it came in on failure
//          NFAIL   I4    status
// Shared   reads comp.PSAT, comp.TC, comp.PC, comp.TBOIL
// Status   ok; no_root (no pressure satisfies the equation); not_converged
// Source   A. A. Frost, D. R. Kalkwarf, J. Chem. Phys. 21 (1953) 264
void SPSFK0(const R8& T, const I4& ICOMP, const L4& VALUE, const L4& DERIV, R8& PSAT, R8& DPSAT, I4& NFAIL) {
  NFAIL = status::ok;
  if (comp.TC(ICOMP) < T) {
    hand_out(beyond_critical(T, ICOMP), VALUE, DERIV, PSAT, DPSAT);
    return;
  }
  const R8 a = comp.PSAT(ICOMP, 1) * kLnTen;
  const R8 b = comp.PSAT(ICOMP, 2) * kLnTen;
  const R8 c = comp.PSAT(ICOMP, 4);
  const R8 d = comp.PSAT(ICOMP, 5) * kLnTen;

  R8 ps = 0.0;
  NFAIL = solve_frost_kalkwarf(T, d, a + b / T + c * std::log(T), ps);
  if (NFAIL != status::ok) return;
  const R8 derivative = kPascalPerMegapascal * (-b / T + c - 2.0 * d * ps / (T * T)) / (T / ps - d / T);
  hand_out({kPascalPerMegapascal * ps, derivative}, VALUE, DERIV, PSAT, DPSAT);
}

// SPSAN2: the extended Antoine equation, ln PS = A + B/(T + C) + D T + E ln T + F T^G with PS in pascal.
//
// In       T       R8    [K]
//          ICOMP   I4    component
//          VALUE   L4    PSAT wanted
//          DERIV   L4    DPSAT wanted
// Out      PSAT    R8    vapour pressure [Pa]; outside the range of the set a line in 1/T from its nearer end
//          DPSAT   R8    its derivative [Pa/K]
//          NFAIL   I4    status
// Shared   reads comp.IPANO, comp.PANTO: A to G, then the limits of the range [K]; no range when they are
// equal Status   ok; not_available (no set); input (the pole of the equation: PSAT and DPSAT are 0)
void SPSAN2(const R8& T, const I4& ICOMP, const L4& VALUE, const L4& DERIV, R8& PSAT, R8& DPSAT, I4& NFAIL) {
  NFAIL = status::ok;
  if (comp.IPANO(ICOMP) == 0) {
    NFAIL = status::not_available;
    return;
  }
  const auto coefficient = [ICOMP](int i) { return comp.PANTO(ICOMP, i); };
  const R8 lowest = coefficient(8);
  const R8 highest = coefficient(9);
  const R8 t = lowest < highest ? std::clamp(T, lowest, highest) : T;

  Pressure p{};
  const R8 denominator = t + coefficient(3);
  if (denominator == 0.0) {
    NFAIL = status::input;
  } else {
    const R8 power = coefficient(6) * std::pow(t, coefficient(7));
    const R8 ln_ps = coefficient(1) + coefficient(2) / denominator + coefficient(4) * t +
                     coefficient(5) * std::log(t) + power;
    const R8 slope = -coefficient(2) / (denominator * denominator) + coefficient(4) + coefficient(5) / t +
                     coefficient(7) * power / t;
    p.value = std::exp(ln_ps);
    p.derivative = p.value * slope;
    if (t != T) {
      p.value *= std::exp(-t * t * slope * (1.0 / T - 1.0 / t));
      p.derivative = p.value * (t / T) * (t / T) * slope;
    }
  }
  hand_out(p, VALUE, DERIV, PSAT, DPSAT);
}

}  // namespace talix
