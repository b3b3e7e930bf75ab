#include "transport/stc_liquid.h"

#include <cmath>

#include "engine/codes.h"
#include "transport/liquid_split.h"
#include "transport/phase_state.h"
#include "transport/svi_liquid_corresponding.h"

namespace talix {

namespace {

constexpr R8 kBoltzmann = widen(1.38064383e-23F);  // [J/K]
constexpr R8 kMolesPerLitre = 0.001;               // of 1 mol/m3

// Parts of a liquid that conduct: components with a conductivity of their own, and the group as one more.
struct Conductors {
  int count;
  Vec<R8, kMaxComponents + 1> PHI;     // volume fractions [-]
  Vec<R8, kMaxComponents + 1> TCOLIQ;  // conductivities [W/(m K)]
};

void add_conductor(Conductors& parts, R8 PHI, R8 conductivity) {
  ++parts.count;
  parts.PHI(parts.count) = PHI;
  parts.TCOLIQ(parts.count) = conductivity;
}

// The rule of Li over ordered pairs, a part with itself included.
R8 li_rule(const Conductors& parts) {
  R8 sum = 0.0;
  for (int i = 1; i <= parts.count; ++i) {
    sum += parts.PHI(i) * parts.PHI(i) * parts.TCOLIQ(i);
    for (int j = 1; j < i; ++j) {
      const R8 mean = 2.0 / (1.0 / parts.TCOLIQ(i) + 1.0 / parts.TCOLIQ(j));
      sum += 2.0 * parts.PHI(i) * parts.PHI(j) * mean;
    }
  }
  return sum;
}

}  // namespace

// STCLI0: liquid conductivity by corresponding states.
//
// In       X       R8(50)  mole fractions [-]
//          P, T    R8      [Pa], [K]
//          NC      I4      number of components
// Out      LAMBDA  R8      [W/(m K)]; 0 when the status is not ok
//          STATUS  I4      status
// Shared   reads comp.ILVT, PARL2, RMOLW, ICS
// Status   ok; unknown (a component without a set); range (the correlation gives no positive number)
void STCLI0(const CompVec& X, const R8& P, const R8& T, const I4& NC, R8& LAMBDA, I4& STATUS) {
  LAMBDA = 0.0;
  STATUS = status::unknown;
  if (!have_liquid_sets(NC)) return;

  const LiquidReduced s = reduce_liquid(T, P, SVIMR0(X, NC));
  const R8 scale = s.C * kBoltzmann / std::sqrt(s.MASS / s.EPS) / std::pow(s.SIG3, 2.0 / 3.0);
  const R8 pressure_term = (widen(1.17945302F) - widen(0.544696689F) / s.TR) * s.PRR *
                           std::exp(widen(1.35986805F) / (widen(0.714541614F) * s.PRR + 1.0));
  const R8 lambda = scale * (-widen(8.07744312F) + widen(20.2070007F) / (1.0 + s.TR) + pressure_term +
                             widen(1.50550699F) * s.C);
  STATUS = status::range;
  if (!(lambda > 0.0 && std::isfinite(lambda))) return;
  LAMBDA = lambda;
  STATUS = status::ok;
}

// STCCM0: liquid conductivity by the combined method.
//
// In       X       R8(50)  mole fractions [-]
//          P       R8      [Pa]; 1 is taken when it is not above 0
//          T       R8      [K]
//          IC      I4(50)  component index list, passed on
//          NC      I4      number of components
// Out      LAMBDA  R8      [W/(m K)]; 0 when the status is not ok
//          STATUS  I4      status
// Shared   reads comp
// Status   ok; no_equation_of_state (not loaded); no_root (neither liquid nor vapour); range (neither a
//          component nor the group has a conductivity); as SHMIX0
// Source   C. C. Li, AIChE J. 22 (1976) 927; J. F. Ely, H. J. M. Hanley, Ind. Eng. Chem. Fundam. 22 (1983) 90
void STCCM0(const CompVec& X, const R8& P, const R8& T, const Vec<I4, kMaxComponents>& IC, const I4& NC,
            R8& LAMBDA, I4& STATUS) {
  LAMBDA = 0.0;
  const R8 p = P > 0.0 ? P : 1.0;
  const PhaseState liquid = transport_phase(phase::liquid, T, p, X, NC, IC, false);
  STATUS = liquid.status;
  if (STATUS != status::ok) return;
  STATUS = status::no_root;
  if (liquid.IPHRTN != phase::liquid && liquid.IPHRTN != phase::vapour) return;

  Conductors parts;
  parts.count = 0;
  LiquidSplit split;
  clear_split(split);
  for (int i = 1; i <= NC; ++i) {
    const R8 volume = count_component(split, i, X(i));
    R8 conductivity = 0.0;
    I4 failure = status::ok;
    STCCM1(T, p, i, conductivity, failure);
    if (failure == status::ok) {
      add_conductor(parts, volume, conductivity);
    } else if (X(i) > kGroupFloor) {
      group_component(split, i, X(i), volume);
    }
  }
  for (int k = 1; k <= parts.count; ++k) parts.PHI(k) /= split.STOTV;
  if (split.group.total >= kGroupFloor) {
    const R8 density = kMolesPerLitre / liquid.V * density_correction(split);
    const R8 conductivity = group_conductivity(split.group, true, T, p, density);
    if (conductivity > 0.0) add_conductor(parts, split.STRAPV / split.STOTV, conductivity);
  }

  const R8 lambda = li_rule(parts);
  STATUS = status::range;
  if (!(lambda > 0.0 && std::isfinite(lambda))) return;
  LAMBDA = lambda;
  STATUS = status::ok;
}

}  // namespace talix
