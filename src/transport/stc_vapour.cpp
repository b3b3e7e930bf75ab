#include "transport/stc_vapour.h"

#include <cmath>

#include "database/component_record.h"
#include "engine/codes.h"
#include "numerics/ssvla_columns.h"
#include "transport/dense_fluid_group.h"
#include "transport/phase_state.h"
#include "transport/svi_vapour.h"

namespace talix {

namespace {

constexpr R8 kMolesPerLitre = 0.001;  // of 1 mol/m3

// Hands LAMBDA out, or 0 where a method gives no positive number.
void hand_out(R8 lambda, R8& LAMBDA, I4& STATUS) {
  STATUS = lambda > 0.0 && std::isfinite(lambda) ? status::ok : status::range;
  LAMBDA = STATUS == status::ok ? lambda : 0.0;
}

}  // namespace

// STCLI1: vapour conductivity by the Eucken form.
//
// In       X       R8(50)  mole fractions [-]
//          P, T    R8      [Pa], [K]
//          IC      I4(50)  component index list, passed on
//          NC      I4      number of components
// Out      LAMBDA  R8      [W/(m K)]; 0 when the status is not ok
//          STATUS  I4      status
// Shared   reads comp.RMOLW
// Status   ok; no_equation_of_state (not loaded, or failed); no_root (no vapour); range (no positive
//          number); as SVVIM1
// Source   A. Eucken, Phys. Z. 14 (1913) 324
void STCLI1(const CompVec& X, const R8& P, const R8& T, const Vec<I4, kMaxComponents>& IC, const I4& NC,
            R8& LAMBDA, I4& STATUS) {
  constexpr I4 dot_product = 2;
  R8 eta = 0.0;
  R8 deta = 0.0;
  LAMBDA = 0.0;
  SVVIM1(T, P, X, NC, IC, transport_request::value, method::thodos_wilke_dean, eta, deta, STATUS);
  if (STATUS != status::ok) return;
  R8 molar_mass = 0.0;
  SSVLA0(NC, X.data(), kMaxComponents, 1, 1, comp.RMOLW.data(), kMaxComponents, 1, 1, dot_product,
         molar_mass);

  const PhaseState vapour = transport_phase(phase::vapour, T, P, X, NC, IC, true);
  STATUS = status::no_equation_of_state;
  if (vapour.status != status::ok) return;
  STATUS = status::no_root;
  if (vapour.IPHRTN != phase::vapour) return;
  hand_out(eta * (widen(1.15F) * vapour.CP + widen(16.564F)) / molar_mass, LAMBDA, STATUS);
}

// STCTR0: vapour conductivity by corresponding states with methane.
//
// In       X       R8(50)  mole fractions [-]; components below 1e-6 are left out
//          P       R8      [Pa]; 1 is taken when it is not above 0
//          T       R8      [K]
//          IC      I4(50)  component index list, passed on
//          NC      I4      number of components
// Out      LAMBDA  R8      [W/(m K)]; 0 when the status is not ok
//          STATUS  I4      status
// Status   ok; no_equation_of_state (not loaded, or failed); input (no component is present); range (no
//          positive number)
// Source   J. F. Ely, H. J. M. Hanley, Ind. Eng. Chem. Fundam. 22 (1983) 90
void STCTR0(const CompVec& X, const R8& P, const R8& T, const Vec<I4, kMaxComponents>& IC, const I4& NC,
            R8& LAMBDA, I4& STATUS) {
  LAMBDA = 0.0;
  const R8 p = P > 0.0 ? P : 1.0;
  const PhaseState vapour = transport_phase(phase::vapour, T, p, X, NC, IC, false);
  STATUS = status::no_equation_of_state;
  if (vapour.status != status::ok) return;

  DenseFluidGroup group;
  clear_group(group);
  for (int i = 1; i <= NC; ++i)
    if (X(i) >= kGroupFloor) add_to_group(group, i, X(i));
  STATUS = status::input;
  if (group.N == 0) return;
  hand_out(group_conductivity(group, false, T, p, kMolesPerLitre / vapour.V), LAMBDA, STATUS);
}

}  // namespace talix
