#include "fastprops/enthal.h"

#include "base/stop_handler.h"
#include "database/component_record.h"
#include "engine/codes.h"
#include "engine/shmix_driver.h"
#include "fastprops/engine_call.h"
#include "fastprops/enthal_direct.h"
#include "fastprops/error_matrix.h"
#include "fastprops/morvei.h"
#include "fastprops/routes.h"

namespace talix {

namespace {

constinit EngineCall call{};

// Reserved results of mode 0, in the order of the request list.
namespace slot {
constexpr int compressibility = 3;
constexpr int heat_capacity_p = 5;
constexpr int heat_capacity_v = 6;
constexpr int joule_thomson = 10;
constexpr int speed_of_sound = 11;
}  // namespace slot

constexpr I4 kModeZeroResults = 12;
constexpr ReservedCodes kModeZeroList = {reserved::thermal_expansion,
                                         reserved::adiabatic_compressibility,
                                         reserved::isothermal_compressibility,
                                         reserved::phase_indicator,
                                         reserved::heat_capacity_p,
                                         reserved::heat_capacity_v,
                                         reserved::isentropic_thermal,
                                         reserved::thermal_pressure,
                                         reserved::hildebrand,
                                         reserved::joule_thomson,
                                         reserved::speed_of_sound,
                                         reserved::phase_indicator};

// The root option that this layer passes for thermal properties.
constexpr I4 kNoRootOption = 0;

void prepare(const I4& MODE, const I4& NC, const R4& T, const R4& P, const FlashVec& FRAC) {
  call.T = static_cast<R8>(T);
  call.P = static_cast<R8>(P) * kPascalPerBar;
  for (int i = 1; i <= NC; ++i) {
    call.IC(i) = i;
    call.X(i) = static_cast<R8>(FRAC(i));
    call.DHDN(i) = 0.0;
  }
  call.DV = kNoDerivatives;
  call.DF = kNoDerivatives;
  call.DH = kNoDerivatives;
  call.DH(1) = true;
  if (MODE == 2) {
    call.DF(1) = true;
    call.DF(3) = true;
    call.DH(3) = true;
  }
  call.IRESRV = kModeZeroList;
  call.NRESRV = MODE == 0 ? kModeZeroResults : 0;
  call.RESRV(slot::speed_of_sound) = 0.0;
  // What a failed engine leaves unset reads as an ideal gas and not as an older state.
  call.IPHRTN = phase::none;
  call.AMBIG = false;
  call.ZVOL = 1.0;
  call.H = call.DHDT = call.S = 0.0;
}

void ask_engine(const I4& PH, const I4& NC, const I4& LNOVF, const I4& IHTYPE, FugacityVector& FUG,
                FugacityVector& FUGTL, FugacityVector& FUGPL, FugacityMatrix& FUGN) {
  fl.NENGINE = fl.NENGINE + 1;
  SHMIX0(PH == flash_phase::vapour ? phase::vapour : phase::liquid, kNoRootOption, call.T, call.P, NC,
         call.IC, call.X, LNOVF, call.DV, LNOVF, call.DF, fl.MODELID, IHTYPE, call.DH, call.IRESRV,
         call.NRESRV, call.IPHRTN, call.AMBIG, call.ZFUG, call.ZVOL, call.DZDT, call.DZDP, call.DZDN, FUG,
         FUGTL, FUGPL, FUGN, call.H, call.DHDT, call.DHDP, call.DHDN, call.S, call.DSDT, call.DSDP, call.DSDN,
         call.RESRV, call.NFAIL);
}

// With one root only, the phase follows the sign of the speed of sound, which is never negative: vapour.
I4 phase_of_result() {
  if (call.AMBIG) return call.RESRV(slot::speed_of_sound) < 0.0 ? flash_phase::liquid : flash_phase::vapour;
  return call.IPHRTN == phase::vapour || call.IPHRTN == phase::single ? flash_phase::vapour
                                                                      : flash_phase::liquid;
}

R8 mean_molar_mass(const I4& NC) {
  R8 sum = 0.0;
  for (int i = 1; i <= NC; ++i) sum += comp.RMOLW(i) * call.X(i);
  return sum;
}

}  // namespace

// ENTHAL1: thermal properties of one phase through the property engine.
//
// In       MODE  I4      0 all properties; 1 enthalpy with DHDT and HN; 2 also FUGTL, FUGN and HN filled
//          PH    I4      flash_phase::vapour asks for the vapour-type root, anything else for the liquid
//          NC    I4      number of components
//          R     R4      gas constant of the flash layer; not used, this route takes the engine's
//          T, P  R4      [K], [bar]
//          FRAC  R4(50)  mole fractions
// Out      PHOUT I4      flash_phase::liquid or vapour, as the engine sees the mixture
//          RHO   R4      density [kg/m3]
//          Z     R4      compressibility factor [-]
//          MW    R4      mean molar mass, from the engine's constants [g/mol]
//          H, S  R4      enthalpy [J/mol], entropy [J/(mol K)]
//          DHDT  R4      temperature derivative of the enthalpy [J/(mol K)]
//          HID, SID, CPID     ideal gas [J/mol], [J/(mol K)], [J/(mol K)]; mode 0
//          CV, CP        heat capacities [J/(g K)]; mode 0
//          SONIC         speed of sound [m/s]; mode 0
//          JT            Joule-Thomson coefficient [K/bar]; mode 0
//          KAPPA         isothermal compressibility [1/bar]; mode 0
//          FUG, FUGTL, FUGPL, FUGN   ln fugacity coefficients and derivatives; FUGTL and FUGN in mode 2
//          HN    R4(50)  partial molar enthalpies [J/mol]; zero in mode 1, which does not ask for them
// Shared   reads fl.MODELID, comp.RMOLW; counts bad engine statuses in cells 1 and 2 of ENTHAL1
// Reports  a mode below 0 stops with "Wrong value for MODE in enthal1. Fix!"
// Oddity   a bad status is not reported and what came back is used; a single root always counts as vapour
void ENTHAL1(const I4& MODE, const I4& PH, I4& PHOUT, const I4& NC, const R4& /*R*/, R4& RHO, const R4& T,
             const R4& P, R4& Z, const FlashVec& FRAC, R4& MW, R4& HID, R4& SID, R4& CPID, R4& H, R4& DHDT,
             R4& S, R4& CV, R4& CP, R4& SONIC, R4& JT, R4& KAPPA, FugacityVector& FUG, FugacityVector& FUGTL,
             FugacityVector& FUGPL, FugacityMatrix& FUGN, FlashVec& HN) {
  if (MODE < 0) {
    stop("Wrong value for MODE in enthal1. Fix!");
    return;
  }
  if (!fl.ENGREADY) {
    I4 ignored = 0;
    MORVEI(NC, ignored);
  }

  prepare(MODE, NC, T, P, FRAC);
  ask_engine(PH, NC, fl.MODELID, thermal::total, FUG, FUGTL, FUGPL, FUGN);
  PHOUT = phase_of_result();
  DHDT = static_cast<R4>(call.DHDT * kGasConstant);
  if (MODE > 0)
    for (int i = 1; i <= NC; ++i) HN(i) = static_cast<R4>(call.DHDN(i) * kGasConstant * call.T);
  if (call.NFAIL != status::ok) mark_error(error_row::ENTHAL1, 1);

  const R8 molar_mass = mean_molar_mass(NC);
  const R8 volume = call.ZVOL * kGasConstant * call.T / call.P;
  MW = static_cast<R4>(molar_mass);
  Z = static_cast<R4>(call.ZVOL);
  RHO = static_cast<R4>(molar_mass / volume / 1000.0);
  H = static_cast<R4>(kGasConstant * call.T * call.H);
  S = static_cast<R4>(kGasConstant * call.S);
  if (MODE != 0) return;

  KAPPA = static_cast<R4>(call.RESRV(slot::compressibility) * kPascalPerBar);
  CP = static_cast<R4>(call.RESRV(slot::heat_capacity_p) / molar_mass);
  CV = static_cast<R4>(call.RESRV(slot::heat_capacity_v) / molar_mass);
  JT = static_cast<R4>(call.RESRV(slot::joule_thomson) * kPascalPerBar);
  SONIC = static_cast<R4>(call.RESRV(slot::speed_of_sound));

  // The ideal gas at the same state; neither volume nor fugacities are needed.
  call.H = call.S = 0.0;
  ask_engine(PH, NC, model::none, thermal::ideal_gas, FUG, FUGTL, FUGPL, FUGN);
  HID = static_cast<R4>(kGasConstant * call.T * call.H);
  SID = static_cast<R4>(kGasConstant * call.S);
  CPID = static_cast<R4>(call.RESRV(slot::heat_capacity_p));
  if (call.NFAIL != status::ok) mark_error(error_row::ENTHAL1, 2);
}

// ENTHAL: thermal properties of one phase by the route in force.
//
// The direct route exists for MODE 0 only and takes Z from its caller; the balances of the adiabatic flash, which
// need the derivatives of the modes above 0, are the engine's with either switch. PHOUT, DHDT and HN stay unset
// on the direct route.
void ENTHAL(const I4& MODE, const I4& PH, I4& PHOUT, const I4& NC, const R4& R, R4& RHO, const R4& T,
            const R4& P, R4& Z, const FlashVec& FRAC, R4& MW, R4& HID, R4& SID, R4& CPID, R4& H, R4& DHDT,
            R4& S, R4& CV, R4& CP, R4& SONIC, R4& JT, R4& KAPPA, FugacityVector& FUG, FugacityVector& FUGTL,
            FugacityVector& FUGPL, FugacityMatrix& FUGN, FlashVec& HN) {
  if constexpr (!kEngineRoute) {
    if (MODE == 0) {
      direct_properties(NC, R, RHO, T, P, Z, FRAC, MW, HID, SID, CPID, H, S, CV, CP, SONIC, JT, KAPPA);
      return;
    }
  }
  ENTHAL1(MODE, PH, PHOUT, NC, R, RHO, T, P, Z, FRAC, MW, HID, SID, CPID, H, DHDT, S, CV, CP, SONIC, JT,
          KAPPA, FUG, FUGTL, FUGPL, FUGN, HN);
}

}  // namespace talix
