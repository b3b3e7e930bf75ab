#include "eos/spp_ideal_gas.h"

#include <cmath>

#include "database/component_record.h"
#include "engine/setup_record.h"

namespace talix {

namespace {

constexpr I4 kHyperbolic = 7;        // form of the heat capacity, comp.ICPIG
constexpr R8 kFloor = 1E-37;         // mole fraction in the logarithm
constexpr R8 kPerKilomole = 1000.0;  // the hyperbolic form holds J/(kmol K)

// Integrals of the powers of T that stand in the polynomial form.
struct Powers {
  R8 T, TR0, LOGT;            // [K], [K], ln(T/TR0)
  R8 D1, D2, D3, D4, D5, D6;  // (T^n - TR0^n)/n
  R8 E1, E2;                  // 1/T - 1/TR0, (1/T^2 - 1/TR0^2)/2
};

Powers powers(R8 T, R8 TR0) {
  const R8 T2 = T * T;
  const R8 R2 = TR0 * TR0;
  const R8 T3 = T2 * T;
  const R8 R3 = R2 * TR0;
  return {.T = T,
          .TR0 = TR0,
          .LOGT = std::log(T / TR0),
          .D1 = T - TR0,
          .D2 = (T2 - R2) / 2.0,
          .D3 = (T3 - R3) / 3.0,
          .D4 = (T2 * T2 - R2 * R2) / 4.0,
          .D5 = (T3 * T2 - R3 * R2) / 5.0,
          .D6 = (T3 * T3 - R3 * R3) / 6.0,
          .E1 = 1.0 / T - 1.0 / TR0,
          .E2 = (1.0 / T2 - 1.0 / R2) / 2.0};
}

void polynomial_component(int i, R8 x, const Powers& p, IdealGas& gas) {
  const auto c = [i](int k) { return comp.COFHT(i, k); };
  gas.SNREF(i) = (-kGasConstant * std::log(x) + c(1) * p.LOGT + c(2) * p.D1 + c(3) * p.D2 + c(4) * p.D3 +
                  c(5) * p.D4 + c(6) * p.D5 - c(7) * p.E1 - c(8) * p.E2) /
                 kGasConstant;
  gas.SREF += x * gas.SNREF(i);
  gas.HNREF(i) = (c(1) * p.D1 + c(2) * p.D2 + c(3) * p.D3 + c(4) * p.D4 + c(5) * p.D5 + c(6) * p.D6 +
                  c(7) * p.LOGT - c(8) * p.E1) /
                 (kGasConstant * p.T);
  gas.HREF += x * gas.HNREF(i);
  gas.CPREF += x * (((((c(6) * p.T + c(5)) * p.T + c(4)) * p.T + c(3)) * p.T + c(2)) * p.T + c(1) +
                    (c(8) / p.T + c(7)) / p.T);
}

// ln sinh u and ln cosh w; written so that a low temperature does not overflow.
R8 log_sinh(R8 u) { return std::abs(u) + std::log1p(-std::exp(-2.0 * std::abs(u))) - std::log(2.0); }
R8 log_cosh(R8 w) { return std::abs(w) + std::log1p(std::exp(-2.0 * std::abs(w))) - std::log(2.0); }

R8 sinh_entropy(R8 u) { return u / std::tanh(u) - log_sinh(u); }
R8 cosh_entropy(R8 w) { return -w * std::tanh(w) + log_cosh(w); }

void hyperbolic_component(int i, R8 x, const Powers& p, IdealGas& gas) {
  const auto c = [i](int k) { return comp.COFHT(i, k); };
  R8 HN = c(1) * p.D1;
  R8 SN = -kGasConstant * std::log(x) + c(1) * p.LOGT;
  gas.CPREF += x * c(1);
  if (c(3) != 0.0) {
    const R8 u = c(3) / p.T;
    const R8 u0 = c(3) / p.TR0;
    const R8 ratio = u / std::sinh(u);
    gas.CPREF += c(2) * ratio * ratio;
    HN += c(2) * (c(3) / std::tanh(u) - c(3) / std::tanh(u0));
    SN += c(2) * (sinh_entropy(u) - sinh_entropy(u0));
  }
  if (c(5) != 0.0) {
    const R8 w = c(5) / p.T;
    const R8 w0 = c(5) / p.TR0;
    const R8 ratio = w / std::cosh(w);
    gas.CPREF += c(4) * ratio * ratio;
    HN += c(4) * (-c(5) * std::tanh(w) + c(5) * std::tanh(w0));
    SN += c(4) * (cosh_entropy(w) - cosh_entropy(w0));
  }
  gas.CPREF /= kPerKilomole;
  gas.HNREF(i) = HN / (kGasConstant * p.T) / kPerKilomole;
  gas.HREF += x * gas.HNREF(i);
  gas.SNREF(i) = SN / kGasConstant / kPerKilomole;
  gas.SREF += x * gas.SNREF(i);
}

}  // namespace

// SPPIG0: ideal-gas properties from the reference temperature up, at 1 bar.
//
// In       T             R8      temperature [K]
//          IFCOM, ILCOM  I4      range of components
// In/Out   X             R8(50)  mole fractions [-]; one that is not positive becomes 1E-37
// Out      gas                   the range of components
// Shared   reads comp.ICPIG, COFHT, setup.TREF
// Oddity   in the hyperbolic form the two hyperbolic terms of CPREF carry no mole fraction, the division by
//          1000 acts on the running total, and the mixing term of the entropy falls under it as well
void SPPIG0(const R8& T, const I4& IFCOM, const I4& ILCOM, CompVec& X, IdealGas& gas) {
  gas.HREF = 0.0;
  gas.SREF = 0.0;
  gas.CPREF = 0.0;
  const Powers p = powers(T, setup.TREF);
  for (int i = IFCOM; i <= ILCOM; ++i) {
    if (!(X(i) > 0.0)) X(i) = kFloor;
    if (comp.ICPIG(i) == kHyperbolic) {
      hyperbolic_component(i, X(i), p, gas);
    } else {
      polynomial_component(i, X(i), p, gas);
    }
  }
  gas.CVREF = gas.CPREF - kGasConstant;
}

}  // namespace talix
