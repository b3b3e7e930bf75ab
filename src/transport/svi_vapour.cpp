#include "transport/svi_vapour.h"

#include <algorithm>
#include <cmath>

#include "database/component_record.h"
#include "engine/codes.h"
#include "numerics/ssvla_columns.h"
#include "transport/dense_fluid_group.h"
#include "transport/phase_state.h"
#include "transport/svi_liquid_corresponding.h"

namespace talix {

namespace {

constexpr R8 kPascalPerBar = 100000.0;
constexpr R8 kKilomolePerMole = 0.001;
constexpr R8 kMicroPerUnit = 1000000.0;
constexpr R8 kMilliPerMicro = 0.001;

// Exponents of the two scales, one sixth and two thirds as the method has them.
constexpr R8 kSixth = widen(0.16667F);
constexpr R8 kTwoThirdsDilute = widen(0.66667F);
constexpr R8 kTwoThirdsDense = widen(0.666667F);

// Reduced density above which the fluid is a liquid.
constexpr R8 kLargestGasDensity = 2.5;

// Method of Thodos, Wilke, Dean and Stiel.
I4 dense_gas(const CompVec& X, R8 P, R8 T, const Vec<I4, kMaxComponents>& IC, I4 NC, R8& ETA) {
  CompVec ETAP0;
  R8 ETAMIX = 0.0;
  R8 VCMIX = 0.0;
  R8 XI = 0.0;
  SVITH0(NC, T, ETAP0);
  SVIWK0(NC, X, ETAP0, ETAMIX);
  SVIDS0(NC, X, VCMIX, XI);

  const PhaseState state = transport_phase(phase::vapour, T, P, X, NC, IC, false);
  if (!state.loaded || state.status != status::ok) return status::no_equation_of_state;
  if (state.IPHRTN != phase::vapour) return status::no_root;

  const R8 RHORM = kKilomolePerMole * VCMIX / state.V;
  if (RHORM > kLargestGasDensity) {
    I4 liquid = status::ok;
    SVILI0(X, P, T, NC, ETA, liquid);
    return liquid;
  }
  const R8 RKSIM = widen(1.08F) * (std::exp(widen(1.439F) * RHORM) -
                                   std::exp(-widen(1.111F) * std::pow(RHORM, widen(1.858F))));
  ETA = (RKSIM / XI * kMicroPerUnit + ETAMIX) * kMilliPerMicro;
  return status::ok;
}

}  // namespace

// SVITH0: viscosity of each component at low pressure.
//
// In       NC     I4      components
//          T      R8      [K]
// Out      ETAP0  R8(50)  [micro-Pa s]
// Shared   reads comp.TC, comp.PC, comp.RMOLW
// Source   L. I. Stiel, G. Thodos, AIChE J. 7 (1961) 611
void SVITH0(const I4& NC, const R8& T, CompVec& ETAP0) {
  constexpr R8 largest = 10.0;
  for (int i = 1; i <= NC; ++i) {
    const R8 XIP =
        std::pow(comp.TC(i), kSixth) / (std::sqrt(comp.RMOLW(i)) * std::pow(comp.PC(i), kTwoThirdsDilute));
    const R8 TR = T / comp.TC(i);
    const R8 POW1 = std::min(widen(0.449F) * TR, largest);
    const R8 POW2 = std::min(widen(4.508F) * TR, largest);
    ETAP0(i) = (widen(4.61F) * std::pow(TR, widen(0.618F)) - widen(2.04F) * std::exp(-POW1) +
                widen(1.94F) * std::exp(-POW2) + widen(0.1F)) /
               XIP / 10.0;
  }
}

// SVIWK0: viscosity of a mixture at low pressure by the rule of Wilke.
//
// In       NC      I4      components
//          X       R8(50)  composition
//          ETAP0   R8(50)  viscosities of the components
// Out      ETAMIX  R8      in the unit of ETAP0
// Shared   reads comp.RMOLW
// Source   C. R. Wilke, J. Chem. Phys. 18 (1950) 517
void SVIWK0(const I4& NC, const CompVec& X, const CompVec& ETAP0, R8& ETAMIX) {
  ETAMIX = 0.0;
  for (int i = 1; i <= NC; ++i) {
    R8 sum = 0.0;
    for (int j = 1; j <= NC; ++j) {
      const R8 mass = comp.RMOLW(j) / comp.RMOLW(i);
      const R8 root = 1.0 + std::sqrt(ETAP0(i) / ETAP0(j)) * std::sqrt(std::sqrt(mass));
      sum += X(j) * (root * root / std::sqrt(8.0 * (1.0 + comp.RMOLW(i) / comp.RMOLW(j))));
    }
    // A component that is absent adds nothing, also where no other is present.
    if (X(i) != 0.0) ETAMIX += X(i) * ETAP0(i) / sum;
  }
}

// SVIDS0: pseudo-critical volume of a mixture and scale of the dense-gas correction.
//
// In       NC     I4      components
//          X      R8(50)  composition
// Out      VCMIX  R8      [m3/kmol]
//          XI     R8      reciprocal of a viscosity [1/(Pa s)]
// Shared   reads comp.TC, comp.PC, comp.VC, comp.RMOLW
// Source   D. E. Dean, L. I. Stiel, AIChE J. 11 (1965) 526
void SVIDS0(const I4& NC, const CompVec& X, R8& VCMIX, R8& XI) {
  constexpr I4 column = 1;
  constexpr I4 product = 2;
  R8 MOLW = 0.0;
  SSVLA0(NC, X.data(), kMaxComponents, column, column, comp.RMOLW.data(), kMaxComponents, column, column,
         product, MOLW);
  R8 TCMIX = 0.0;
  R8 ZCMIX = 0.0;
  VCMIX = 0.0;
  for (int i = 1; i <= NC; ++i) {
    TCMIX += X(i) * comp.TC(i);
    VCMIX += X(i) * comp.VC(i);
    ZCMIX += X(i) * comp.PC(i) * comp.VC(i) / comp.TC(i);
  }
  const R8 PCMIX = kPascalPerBar * ZCMIX * TCMIX / VCMIX;
  XI = widen(2.1356E+10F) * std::pow(TCMIX, kSixth) / (std::sqrt(MOLW) * std::pow(PCMIX, kTwoThirdsDense));
}

// SVITR0: viscosity of a vapour by corresponding states.
//
// In       X       R8(50)  composition; components below 1E-06 are left out
//          P       R8      [Pa]; 1 Pa where it is not above 0
//          T       R8      [K]
//          IC      I4(50)  component index list, passed on
//          NC      I4      components
// Out      ETA     R8      [mPa s]; as it came in on failure
//          STATUS  I4
// Shared   reads comp; writes dense_mixture
// Status   ok; no_equation_of_state (model not loaded, or it failed); input (no component is present)
void SVITR0(const CompVec& X, const R8& P, const R8& T, const Vec<I4, kMaxComponents>& IC, const I4& NC,
            R8& ETA, I4& STATUS) {
  const R8 pressure = P > 0.0 ? P : 1.0;
  const PhaseState state = transport_phase(phase::vapour, T, pressure, X, NC, IC, false);
  STATUS = status::no_equation_of_state;
  if (!state.loaded || state.status != status::ok) return;

  DenseFluidGroup group;
  clear_group(group);
  for (int i = 1; i <= NC; ++i)
    if (X(i) >= kGroupFloor) add_to_group(group, i, X(i));
  STATUS = status::input;
  if (group.N == 0) return;
  ETA = group_viscosity(group, false, T, pressure, kKilomolePerMole / state.V);
  STATUS = status::ok;
}

// SVVIM1: viscosity of a vapour.
//
// In       T, P    R8      [K], [Pa]
//          X       R8(50)  composition
//          NC      I4      components
//          IC      I4(50)  component index list, passed on
//          MODE    I4      transport_request::*
//          METHOD  I4      method::thodos_wilke_dean or method::mixture
// Out      ETA     R8      [mPa s]; as it came in when it is not asked for or not found
//          DETA    R8      not written: there is no derivative
//          STATUS  I4
// Status   ok; input (T or P not above 0, no component present); no_equation_of_state (model not loaded, or it
//          failed); no_root (the phase found is no vapour); not_available (method or derivative); unknown (above
//          2.5 times the critical density the liquid method takes over and has no data)
// Oddity   the components are those of the tables from the first on, whatever IC says
void SVVIM1(const R8& T, const R8& P, const CompVec& X, const I4& NC, const Vec<I4, kMaxComponents>& IC,
            const I4& MODE, const I4& METHOD, R8& ETA, [[maybe_unused]] R8& DETA, I4& STATUS) {
  STATUS = status::input;
  if (!(T > 0.0 && P > 0.0)) return;
  STATUS = status::not_available;
  if (MODE != transport_request::value && MODE != transport_request::both) return;
  if (METHOD == method::thodos_wilke_dean)
    STATUS = dense_gas(X, P, T, IC, NC, ETA);
  else if (METHOD == method::mixture)
    SVITR0(X, P, T, IC, NC, ETA, STATUS);
  if (STATUS == status::ok && MODE == transport_request::both) STATUS = status::not_available;
}

}  // namespace talix
