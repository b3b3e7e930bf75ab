#include "transport/phase_state.h"

#include "engine/codes.h"
#include "engine/model_table.h"
#include "engine/shmix_driver.h"

namespace talix {

namespace {

// Room for the results of a SHMIX0 call. Only what is asked for is filled, so nothing is cleared.
struct Results {
  R8 ZFUG, DZDT, DZDP, H, DHDT, DHDP, S, DSDT, DSDP;
  CompVec DZDN, FUG, DFDT, DFDP, DHDN, DSDN;
  CompMat DFDN;
  ReservedValues RESRV;
  L4 AMBIG;
};

}  // namespace

// transport_phase: molar volume and, when wanted, heat capacity of one phase by the model of the transport
// methods.
//
// In       IPHTYP         I4      phase asked for
//          T, P           R8      [K], [Pa]
//          X              R8(50)  composition
//          NC             I4      number of components
//          IC             I4(50)  component index list, passed on
//          heat_capacity  bool    the heat capacity is wanted too
// Out      the phase; V and CP are set when the status is ok
// Status   ok; no_equation_of_state (not loaded); as SHMIX0
PhaseState transport_phase(I4 IPHTYP, R8 T, R8 P, const CompVec& X, I4 NC, const Vec<I4, kMaxComponents>& IC,
                           bool heat_capacity) {
  PhaseState state{
      .V = 0.0, .CP = 0.0, .IPHRTN = phase::none, .loaded = true, .status = status::no_equation_of_state};
  I4 slot = model::none;
  SMDAO1(model::vardo1, slot);
  if (slot == model::none) {
    state.loaded = false;
    return state;
  }

  Results r;
  ReservedCodes wanted{};
  wanted(1) = reserved::heat_capacity_p;
  Flags3 thermal_derivatives = kNoDerivatives;
  thermal_derivatives(1) = heat_capacity;
  R8 Z = 0.0;
  SHMIX0(IPHTYP, root_option::real_only, T, P, NC, IC, X, slot, kNoDerivatives, model::none, kNoDerivatives,
         heat_capacity ? slot : model::none, thermal::total, thermal_derivatives, wanted,
         heat_capacity ? 1 : 0, state.IPHRTN, r.AMBIG, r.ZFUG, Z, r.DZDT, r.DZDP, r.DZDN, r.FUG, r.DFDT,
         r.DFDP, r.DFDN, r.H, r.DHDT, r.DHDP, r.DHDN, r.S, r.DSDT, r.DSDP, r.DSDN, r.RESRV, state.status);
  if (state.status != status::ok) return state;
  state.V = Z * kGasConstant * T / P;
  if (heat_capacity) state.CP = r.RESRV(1);
  return state;
}

}  // namespace talix
