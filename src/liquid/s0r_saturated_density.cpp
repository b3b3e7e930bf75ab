#include "liquid/s0r_saturated_density.h"

#include <cmath>

#include "database/component_record.h"
#include "engine/codes.h"
#include "eos/ses_dispatcher.h"

namespace talix {

namespace {

constexpr R8 kPascalPerBar = 100000.0;
constexpr R8 kGramsPerKilogram = 1000.0;
constexpr I4 kNoMethod = 0;

// Values of IDLI: the forms of the set DLIP.
constexpr I4 kFirstRiedel = 1;
constexpr I4 kLastRiedel = 7;
constexpr I4 kOwnRackett = 8;

// Above this reduced temperature the method of the Poynting factor follows a tangent.
constexpr R8 kTangentFrom = 0.5;

// Rackett factor from the acentric factor.
constexpr R8 kRackettBase = widen(0.29056F);
constexpr R8 kRackettSlope = widen(0.08775F);

enum class Form { riedel, rackett, fit };

struct Relation {
  Form form;
  R8 factor;  // Rackett factor [-]
};

Relation relation_of(I4 I) {
  if (comp.IDLI(I) >= kFirstRiedel && comp.IDLI(I) <= kLastRiedel) return {Form::riedel, 0.0};
  // One factor for all components: that of component 1.
  if (comp.IDLI(I) == kOwnRackett && comp.DLIP(1, 1) > 0.0) return {Form::rackett, comp.DLIP(1, 1)};
  if (comp.IDNDIP(I) > 0) return {Form::fit, 0.0};
  return {Form::rackett, kRackettBase - kRackettSlope * comp.OMEGA(I)};
}

R8 density(const Relation& relation, I4 I, R8 TIN) {
  const R8 q = 1.0 - TIN / comp.TC(I);
  switch (relation.form) {
    case Form::riedel:
      return comp.DLIP(I, 1) * (1.0 + comp.DLIP(I, 2) * std::cbrt(q) + comp.DLIP(I, 3) * q);
    case Form::fit: {
      const R8 top = comp.RMOLW(I) * comp.DDIP(I, 1);
      if (!(comp.DDIP(I, 3) > TIN)) return top / comp.DDIP(I, 2);
      const R8 exponent = 1.0 + std::pow(1.0 - TIN / comp.DDIP(I, 3), comp.DDIP(I, 4));
      return top / std::pow(comp.DDIP(I, 2), exponent);
    }
    case Form::rackett:
    default: {
      const R8 v = kGasConstant * comp.TC(I) / (comp.PC(I) * kPascalPerBar) *
                   std::pow(relation.factor, 1.0 + std::pow(q, 2.0 / 7.0));
      return comp.RMOLW(I) / kGramsPerKilogram / v;
    }
  }
}

// Temperature derivative; VALUE is the density at the same temperature.
R8 slope(const Relation& relation, I4 I, R8 TIN, R8 VALUE) {
  const R8 q = 1.0 - TIN / comp.TC(I);
  switch (relation.form) {
    case Form::riedel:
      return -comp.DLIP(I, 1) * (comp.DLIP(I, 2) / 3.0 * std::pow(q, -2.0 / 3.0) + comp.DLIP(I, 3)) /
             comp.TC(I);
    case Form::fit: {
      if (!(comp.DDIP(I, 3) > TIN)) return 0.0;
      const R8 power = comp.DDIP(I, 4) * std::pow(1.0 - TIN / comp.DDIP(I, 3), comp.DDIP(I, 4) - 1.0);
      return VALUE * std::log(comp.DDIP(I, 2)) / comp.DDIP(I, 3) * power;
    }
    case Form::rackett:
    default:
      return VALUE / comp.TC(I) * (2.0 / 7.0) * std::pow(q, -5.0 / 7.0) * std::log(relation.factor);
  }
}

}  // namespace

// S0RSC1: density of the saturated liquid.
//
// In       T       R8    [K]
//          P       R8    not read
//          I       I4    component
//          VALUE   L4    RSAT wanted
//          DERIV   L4    DRSAT wanted
//          METHOD  I4    method::riedel: frozen from the critical temperature up; method::poynting: on the
//                        tangent from half the critical temperature up to the critical one, then frozen;
//                        0: zero results
// Out      RSAT    R8    [kg/m3]
//          DRSAT   R8    its derivative [kg/(m3 K)]
//          STATUS  I4    status
// Shared   reads comp.TC, PC, OMEGA, RMOLW, IDLI, DLIP, IDNDIP, DDIP
// Status   ok; not_available (no such method)
// Oddity   with IDLI 8 the Rackett factor is the first coefficient of component 1, whichever is asked for
// Source   L. Riedel, Chem. Ing. Tech. 26 (1954) 259; H. G. Rackett, J. Chem. Eng. Data 15 (1970) 514;
//          C. F. Spencer, R. P. Danner, J. Chem. Eng. Data 17 (1972) 236
void S0RSC1(const R8& T, [[maybe_unused]] const R8& P, const I4& I, const L4& VALUE, const L4& DERIV,
            const I4& METHOD, R8& RSAT, R8& DRSAT, I4& STATUS) {
  STATUS = status::ok;
  if (METHOD == kNoMethod) {
    RSAT = 0.0;
    DRSAT = 0.0;
    return;
  }
  if (METHOD != method::riedel && METHOD != method::poynting) {
    STATUS = status::not_available;
    return;
  }
  const R8 tc = comp.TC(I);
  const bool tangent = METHOD == method::poynting && !(T / tc < kTangentFrom);
  const bool frozen = !(T < tc);
  R8 t = T;
  if (METHOD == method::riedel && frozen) t = tc;
  if (tangent) t = kTangentFrom * tc;

  const Relation relation = relation_of(I);
  R8 value = density(relation, I, t);
  R8 derivative = 0.0;
  if (tangent || (DERIV && !frozen)) derivative = slope(relation, I, t, value);
  if (tangent) {
    value += derivative * ((frozen ? tc : T) - t);
    if (frozen) derivative = 0.0;
  }
  if (VALUE) RSAT = value;
  if (DERIV) DRSAT = derivative;
}

}  // namespace talix
