#include "transport/svi_liquid_standard.h"

#include <cmath>

#include "database/component_record.h"
#include "engine/codes.h"
#include "engine/shmix_driver.h"
#include "liquid/s0r_saturated_density.h"

namespace talix {

namespace {

constexpr R8 kPascalPerBar = 100000.0;

// Power of the density in both correlations.
constexpr R8 kDensityPower = widen(1.51706F);

// ln 1000, as the coefficient sets were fitted: Pa s to mPa s.
constexpr R8 kLnThousand = widen(6.90776F);

// IVIL of a set in the extended Antoine form.
constexpr I4 kExtendedAntoine = 7;

struct Saturation {
  R8 PS, DPS;      // vapour pressure [Pa], [Pa/K]
  R8 RHOS, DRHOS;  // density of the liquid [kg/m3], [kg/(m3 K)]
};

I4 find_saturation(R8 T, R8 P, I4 I, I4 vapour_pressure_method, bool derivatives, Saturation& s) {
  I4 failure = status::ok;
  s = Saturation{};
  SPSAT0(T, P, I, logical(true), logical(derivatives), vapour_pressure_method, s.PS, s.DPS, failure);
  if (failure != status::ok) return failure;
  S0RSC1(T, P, I, logical(true), logical(derivatives), method::riedel, s.RHOS, s.DRHOS, failure);
  if (failure != status::ok) return failure;
  return s.PS > 0.0 && s.RHOS > 0.0 ? status::ok : status::range;
}

bool inside(R8 value, R8 low, R8 high) { return value >= low && value <= high; }

// exp of ln eta weighted with the mole fractions.
using PureViscosity = void (*)(const R8& T, const R8& P, const I4& I, R8& LNETA, I4& STATUS);

void mix_logarithms(PureViscosity pure, const CompVec& X, R8 P, R8 T, I4 NC, R8& ETA, I4& STATUS) {
  R8 sum = 0.0;
  R8 total = 0.0;
  ETA = 0.0;
  for (int i = 1; i <= NC; ++i) {
    R8 lneta = 0.0;
    pure(T, P, i, lneta, STATUS);
    if (STATUS != status::ok) return;
    sum += X(i) * lneta;
    total += X(i);
  }
  ETA = std::exp(sum / total);
}

// Polynomial in 100/T; the steps of the last two coefficients are ten times as large.
R8 inverse_polynomial(I4 I, R8 T) {
  const auto c = [I](int k) { return comp.VIL(I, k); };
  const R8 u = 100.0 / T;
  return c(1) + u * (c(2) + u * (c(3) + u * (c(4) + 10.0 * u * (c(5) + 10.0 * u * c(6)))));
}

}  // namespace

// SVISS2: viscosity of a pure liquid from vapour pressure and density, with the effect of pressure.
//
// In       T, P    R8   [K], [Pa]
//          I       I4   component
// Out      LNETA   R8   ln of the viscosity [mPa s]; 0 when the status is not ok
//          STATUS  I4   status
// Shared   reads comp.SS: 1 to 4 coefficients, 5 and 6 range of T [K], 7 and 8 range of P [bar]; TC
// Status   ok; supercritical (T above critical); range (T or P outside the range of the set); as SPSAT0
void SVISS2(const R8& T, const R8& P, const I4& I, R8& LNETA, I4& STATUS) {
  LNETA = 0.0;
  STATUS = status::supercritical;
  if (!(T <= comp.TC(I))) return;

  Saturation s;
  STATUS = find_saturation(T, P, I, method::frost_kalkwarf, true, s);
  if (STATUS != status::ok) return;
  const R8 ps = P / kPascalPerBar;
  STATUS = status::range;
  if (!inside(T, comp.SS(I, 5), comp.SS(I, 6)) || !inside(ps, comp.SS(I, 7), comp.SS(I, 8))) return;

  const R8 at_saturation =
      comp.SS(I, 2) * std::log(s.PS / kPascalPerBar) + comp.SS(I, 1) + kDensityPower * std::log(s.RHOS);
  const R8 slope = comp.SS(I, 2) * s.DPS / s.PS + kDensityPower * s.DRHOS / s.RHOS;
  const R8 lneta = (comp.SS(I, 4) * slope + comp.SS(I, 3)) * (ps - 1.0) + at_saturation;
  if (!std::isfinite(lneta)) return;
  LNETA = lneta;
  STATUS = status::ok;
}

// SVISO0: viscosity of a pure saturated liquid by the set VIL.
//
// In       T, P    R8   [K], [Pa]
//          I       I4   component
// Out      LNETA   R8   ln of the viscosity [mPa s]; 0 when the status is not ok
//          STATUS  I4   status
// Shared   reads comp.IVIL, VIL, TC
// Status   ok; supercritical (T above critical); not_available (no set); range (no logarithm); as SPSAT0
// Oddity   a polynomial whose first or second coefficient is 0 gives a logarithm of 0, a viscosity of 1 mPa s
void SVISO0(const R8& T, const R8& P, const I4& I, R8& LNETA, I4& STATUS) {
  const auto c = [I](int k) { return comp.VIL(I, k); };
  LNETA = 0.0;
  STATUS = status::supercritical;
  if (!(T <= comp.TC(I))) return;
  STATUS = status::not_available;
  if (comp.IVIL(I) <= 0) return;

  R8 lneta = 0.0;
  if (comp.IVIL(I) == kExtendedAntoine) {
    lneta = kLnThousand + c(1) + c(2) / T + c(3) * std::log(T);
    if (c(4) > 0.0 && c(5) > 0.0) lneta += c(4) * std::pow(T, c(5));
  } else if (c(3) == 0.0) {
    Saturation s;
    STATUS = find_saturation(T, P, I, method::bramm_default, false, s);
    if (STATUS != status::ok) return;
    lneta = kDensityPower * std::log(s.RHOS) + c(1) + c(2) * std::log(s.PS);
  } else if (c(1) != 0.0 && c(2) != 0.0) {
    lneta = inverse_polynomial(I, T);
  }
  STATUS = status::range;
  if (!std::isfinite(lneta)) return;
  LNETA = lneta;
  STATUS = status::ok;
}

// SVISS1: mixture viscosity on SVISS2.
//
// In       X       R8(50)  mole fractions [-]
//          P, T    R8      [Pa], [K]
//          NC      I4      number of components
// Out      ETA     R8      [mPa s]; 0 when the status is not ok
//          STATUS  I4      status
// Status   as SVISS2 of the first component that fails
void SVISS1(const CompVec& X, const R8& P, const R8& T, const I4& NC, R8& ETA, I4& STATUS) {
  mix_logarithms(SVISS2, X, P, T, NC, ETA, STATUS);
}

// SVISO1: mixture viscosity on SVISO0.
//
// In       X       R8(50)  mole fractions [-]
//          P, T    R8      [Pa], [K]
//          NC      I4      number of components
// Out      ETA     R8      [mPa s]; 0 when the status is not ok
//          STATUS  I4      status
// Status   as SVISO0 of the first component that fails
void SVISO1(const CompVec& X, const R8& P, const R8& T, const I4& NC, R8& ETA, I4& STATUS) {
  mix_logarithms(SVISO0, X, P, T, NC, ETA, STATUS);
}

}  // namespace talix
