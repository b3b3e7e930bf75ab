#include "transport/svi_liquid_corresponding.h"

#include <cmath>
#include <string_view>

#include "database/component_record.h"
#include "engine/codes.h"

namespace talix {

namespace {

constexpr R8 kBoltzmann = widen(1.38064383e-23F);  // [J/K]
constexpr R8 kAvogadro = widen(6.0221694e+23F);    // [1/mol]
constexpr R8 kEnergyUnit = 1e-21;                  // of the set [J]
constexpr R8 kVolumeUnit = 1e-30;                  // of the set [m3]
constexpr R8 kKilogramsPerGram = 0.001;
constexpr R8 kMilliPerUnit = 1000.0;  // Pa s to mPa s

// Pairs with methane: the energy of the pair follows from the fifth parameter of the other component.
constexpr std::string_view kMethane = " 1P ";
constexpr R8 kMethaneBase = widen(0.21938F);
constexpr R8 kMethaneSlope = widen(0.26504F);
constexpr R8 kMethaneScale = widen(20.18F);

bool is_methane(I4 I) { return comp.ICS(I).view() == kMethane; }

// Energy factor of a pair of different components. A set without a fifth parameter leaves the pair as it is.
R8 pair_energy(I4 I, I4 J) {
  if (!is_methane(I) && !is_methane(J)) return 1.0;
  const R8 other = kMethaneScale * comp.PARL2(is_methane(I) ? J : I, 5);
  return other > 0.0 ? kMethaneBase + kMethaneSlope * std::log(other) : 1.0;
}

// The dimensionless viscosity.
R8 reduced_viscosity(const LiquidReduced& s) {
  return widen(2.35647607F) +
         widen(0.00230745506F) * std::exp(widen(6.03992224F) / (s.TR + widen(0.194874898F))) +
         widen(0.0724359825F) * s.PRR * std::exp(widen(2.61725593F) / s.TR) -
         widen(1.36728799F) * (s.TR - widen(1.04756296F)) * std::exp(-s.PRR) * s.C -
         widen(0.728395879F) * s.C;
}

}  // namespace

// SVIMR0: mixture sums of the corresponding-states model of liquids.
//
// In       X     R8(50)  mole fractions [-]
//          NC    I4      number of components
// Out      the sums; the double ones run over ordered pairs, a component with itself included
// Shared   reads comp.PARL2, RMOLW, ICS
LiquidSums SVIMR0(const CompVec& X, const I4& NC) {
  LiquidSums sums{};
  for (int i = 1; i <= NC; ++i) {
    sums.SIG3 += X(i) * comp.PARL2(i, 2);
    sums.MW += X(i) * comp.RMOLW(i);
    sums.SQ += X(i) * comp.PARL2(i, 4);
    const R8 size_i = comp.PARL2(i, 4) / comp.PARL2(i, 1);
    const R8 energy_i = comp.PARL2(i, 3) / comp.PARL2(i, 1);
    sums.A += X(i) * X(i) * size_i;
    sums.YAN += X(i) * X(i) * comp.PARL2(i, 2) * energy_i;
    // The pair stands for both of its orders.
    for (int j = 1; j < i; ++j) {
      const R8 size_j = comp.PARL2(j, 4) / comp.PARL2(j, 1);
      const R8 energy_j = comp.PARL2(j, 3) / comp.PARL2(j, 1);
      const R8 volume = 0.5 * (comp.PARL2(i, 2) + comp.PARL2(j, 2));
      sums.A += 2.0 * X(i) * X(j) * std::sqrt(size_i * size_j);
      sums.YAN += 2.0 * X(i) * X(j) * volume * std::sqrt(energy_i * energy_j) * pair_energy(i, j);
    }
  }
  return sums;
}

// reduce_liquid: reduced temperature and pressure of a mixture.
//
// In       T, P   R8   [K], [Pa]
//          sums        of the mixture
LiquidReduced reduce_liquid(R8 T, R8 P, const LiquidSums& sums) {
  LiquidReduced s{};
  s.C = sums.SQ / sums.A;
  s.EPS = s.C * (sums.YAN / sums.SIG3) * kEnergyUnit;
  s.SIG3 = sums.SIG3 * kVolumeUnit;
  s.MASS = sums.MW * kKilogramsPerGram / kAvogadro;
  s.TR = T * kBoltzmann * s.C / s.EPS;
  s.PRR = P * s.SIG3 / s.EPS;
  return s;
}

// have_liquid_sets: whether none of the first NC components is without a set.
//
// In       NC    I4   number of components
// Shared   reads comp.ILVT
bool have_liquid_sets(I4 NC) {
  for (int i = 1; i <= NC; ++i)
    if (comp.ILVT(i) == 0) return false;
  return true;
}

// SVILI0: liquid viscosity by corresponding states.
//
// In       X       R8(50)  mole fractions [-]
//          P, T    R8      [Pa], [K]
//          NC      I4      number of components
// Out      ETA     R8      [mPa s]; 0 when the status is not ok
//          STATUS  I4      status
// Shared   reads comp.ILVT, PARL2, RMOLW, ICS
// Status   ok; unknown (a component without a set); range (the correlation gives no positive number)
void SVILI0(const CompVec& X, const R8& P, const R8& T, const I4& NC, R8& ETA, I4& STATUS) {
  ETA = 0.0;
  STATUS = status::unknown;
  if (!have_liquid_sets(NC)) return;

  const LiquidReduced s = reduce_liquid(T, P, SVIMR0(X, NC));
  const R8 scale = std::sqrt(s.EPS * s.MASS) / std::pow(s.SIG3, 2.0 / 3.0);
  const R8 viscosity = kMilliPerUnit * scale * reduced_viscosity(s);
  STATUS = status::range;
  if (!(viscosity > 0.0 && std::isfinite(viscosity))) return;
  ETA = viscosity;
  STATUS = status::ok;
}

}  // namespace talix
