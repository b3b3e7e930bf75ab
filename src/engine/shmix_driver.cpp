#include "engine/shmix_driver.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "database/component_record.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/model_record.h"

namespace talix {

namespace {

// Results of a failed equation of state.
constexpr R8 kNoCompressibility = 1.23456789e34;

// Volume of dissolved salt against that of the equation of state [m3/mol], and the gas constant that goes
// with it [J/(mol K)].
constexpr R8 kSaltVolume = 0.000231;
constexpr R8 kSaltGasConstant = 8.31447;

I4 refuse(I4 failure, std::string_view message) {
  SERPU0(severity::error, "SHMIX0", message);
  return failure;
}

// Refuses states and requests that no model can serve. LAST is the highest slot asked for.
I4 check_request(R8 T, R8 P, I4 LAST, bool thermal_wanted, I4 IHTYPE) {
  if (!(T > 1.0 && P > 1e-30 && std::isfinite(T) && std::isfinite(P)))
    return refuse(status::input, "Pressure or temperature too low (input)");
  if (LAST <= 0) return refuse(status::failed, "All calculation property flags were .FALSE. (input)");
  if (thermal_wanted && IHTYPE != thermal::total && IHTYPE != thermal::residual &&
      IHTYPE != thermal::ideal_gas)
    return refuse(status::input, "Impossible value of IHTYPE for thermophysical properties");
  if (LAST > models.count) return refuse(status::input, "Requested model not available");
  return status::ok;
}

// Mole fraction of the salt in what was calculated.
R8 salt_fraction(I4 NCOMP, const CompVec& X) {
  if (comp.ISALT <= 0) return 0.0;
  if (NCOMP <= 0) return -NCOMP == comp.ISALT ? 1.0 : 0.0;
  if (comp.ISALT > NCOMP) return 0.0;
  R8 sum = 0.0;
  for (int i = 1; i <= NCOMP; ++i) sum += X(i);
  return X(comp.ISALT) / sum;
}

// Leaves a phase code of the callers and says whether the phase could be told apart.
void normalise_phase(I4 IPHTYP, I4& IPHRTN, L4& AMBIG) {
  AMBIG = false;
  if (IPHRTN == phase::single) {
    AMBIG = true;
    IPHRTN = IPHTYP == phase::liquid ? phase::liquid : phase::vapour;
  }
  if (IPHRTN == phase::middle) IPHRTN = phase::none;
}

// A model may leave alone what it was not asked for. Field by field: this is quicker than clearing the whole
// argument list.
void clear_results(EosArgs& eos) {
  eos.V = 0.0;
  eos.Z = 0.0;
  eos.ZT = 0.0;
  eos.ZP = 0.0;
  eos.H = 0.0;
  eos.HT = 0.0;
  eos.HP = 0.0;
  eos.S = 0.0;
  eos.ST = 0.0;
  eos.SP = 0.0;
  eos.BETA = 0.0;
  eos.KAPS = 0.0;
  eos.KAPT = 0.0;
  eos.CP = 0.0;
  eos.CV = 0.0;
  eos.DPDTS = 0.0;
  eos.DPDTV = 0.0;
  eos.JTC = 0.0;
  eos.WSOUND = 0.0;
  eos.ICODE = status::ok;
  eos.ZOTHER = 0.0;
  eos.DLVTV = 0.0;
  eos.DKAPT = 0.0;
}

void keep_reserved(const EosArgs& eos) {
  resv.BETA = eos.BETA;
  resv.KAPT = eos.KAPT;
  resv.CP = eos.CP;
  resv.CV = eos.CV;
  resv.DKAPT = eos.DKAPT;
  resv.DLVTV = eos.DLVTV;
  resv.DPDTV = eos.DPDTV;
  resv.KAPS = eos.KAPS;
  resv.DPDTS = eos.DPDTS;
  resv.JTC = eos.JTC;
  resv.WSOUND = eos.WSOUND;
}

// One of the results that the model calculation left, by its code.
R8 reserved_result(I4 selector, I4 IHTYPE) {
  const bool total = IHTYPE == thermal::total;
  switch (selector) {
    case reserved::thermal_expansion:
      return resv.BETA;
    case reserved::isothermal_compressibility:
      return resv.KAPT;
    case reserved::heat_capacity_p:
      return resv.CP;
    case reserved::heat_capacity_v:
      return resv.CV;
    case reserved::phase_indicator:
      return resv.DKAPT;
    case reserved::hildebrand:
      return resv.DLVTV;
    case reserved::thermal_pressure:
      return resv.DPDTV;
    case reserved::adiabatic_compressibility:
      return total ? resv.KAPS : 0.0;
    case reserved::isentropic_thermal:
      return total ? resv.DPDTS : 0.0;
    case reserved::joule_thomson:
      return total ? resv.JTC : 0.0;
    case reserved::speed_of_sound:
      return total ? resv.WSOUND : 0.0;
    default:
      return 0.0;
  }
}

// Answer of a class that is not served by an equation of state: its data are not available.
I4 refuse_class(I4 MODTYP, I4& IPHRTN) {
  switch (MODTYP) {
    case model_class::hydrate:
      IPHRTN = phase::none;
      return refuse(status::not_available, "Could not compute properties of hydrate phase");
    case model_class::freeze_out:
      IPHRTN = phase::none;
      return refuse(status::not_available, "Could not compute properties of freezeout phase");
    case model_class::liquid:
      IPHRTN = phase::none;
      return refuse(status::not_available, "Could not compute properties of liquid phase");
    case model_class::steam:
      return refuse(status::not_available, "Steam table calculation failed");
    default:
      return refuse(status::input, "Requested model not available");
  }
}

}  // namespace

// SHMIX0: properties of one phase from up to three models.
//
// In       IPHTYP  I4       phase asked for: phase::liquid, phase::vapour, phase::gibbs
//          IROOTO  I4       root option, root_option::*
//          T, P    R8       [K], [Pa]
//          NCOMP   I4       number of components; -K asks for pure component K
//          IC      I4(50)   component index list, for liquid models
//          X       R8(50)   composition
//          LNOV    I4       slot of the model for the volume, 0 for none
//          DV      L4(3)    its derivatives with T, P, composition
//          LNOF    I4       slot for the fugacities, 0 for none
//          DF      L4(3)    their derivatives
//          LNOH    I4       slot for enthalpy, entropy and reserved results, 0 for none
//          IHTYPE  I4       thermal::*; looked at only with LNOH
//          DH      L4(3)    derivatives of enthalpy and entropy
//          IRESRV  I4(20)   reserved results wanted, reserved::*
//          NRESRV  I4       how many of them
// In, out  IPHRTN  I4       phase returned
// Out      AMBIG   L4       only one root exists: the phase could not be told apart
//          ZFUG    R8       compressibility factor of the model for fugacities [-]
//          ZVOL    R8       compressibility factor of the model for the volume [-]
//          DZDT, DZDP, DZDN  T dZ/dT, P dZ/dP, composition derivative
//          FUG     R8(50)   ln fugacity coefficient, with DFDT, DFDP, DFDN scaled in the same way
//          H, DHDT, DHDP, DHDN  enthalpy over RT and derivatives
//          S, DSDT, DSDP, DSDN  entropy over R and derivatives
//          RESRV   R8(20)   reserved results in the order of IRESRV; 0 for an unknown code
//          NFAIL   I4       status
// Shared   reads models, comp.ISALT; writes resv
// Status   ok; input (T, P, IHTYPE, a slot that holds no model or a class without a calculation); failed
//          (nothing asked for); no_root (no root of the Gibbs type); not_available (class without data); as
//          SES000
// Reports  "Pressure or temperature too low (input)", "All calculation property flags were .FALSE. (input)",
//          "Impossible value of IHTYPE for thermophysical properties", "Equation of state calculation
//          failed", "Could not find e.o.s. root of requested Gibbs type", "Requested model not available",
//          "Could not compute properties of hydrate phase", the same of "freezeout" and "liquid",
//          "Steam table calculation failed", severity 3
// Oddity   ZFUG and ZVOL both take the value of the last equation of state that ran
void SHMIX0(const I4& IPHTYP, const I4& IROOTO, const R8& T, const R8& P, const I4& NCOMP,
            [[maybe_unused]] const Vec<I4, kMaxComponents>& IC, const CompVec& X, const I4& LNOV,
            const Flags3& DV, const I4& LNOF, const Flags3& DF, const I4& LNOH, const I4& IHTYPE,
            const Flags3& DH, const ReservedCodes& IRESRV, const I4& NRESRV, I4& IPHRTN, L4& AMBIG, R8& ZFUG,
            R8& ZVOL, R8& DZDT, R8& DZDP, CompVec& DZDN, CompVec& FUG, CompVec& DFDT, CompVec& DFDP,
            CompMat& DFDN, R8& H, R8& DHDT, R8& DHDP, CompVec& DHDN, R8& S, R8& DSDT, R8& DSDP, CompVec& DSDN,
            ReservedValues& RESRV, I4& NFAIL) {
  AMBIG = false;
  const int wanted_results = std::min(NRESRV, kMaxReserved);
  for (int i = 1; i <= wanted_results; ++i) RESRV(i) = 0.0;
  NFAIL = check_request(T, P, std::max({LNOF, LNOV, LNOH}), LNOH > 0, IHTYPE);
  if (NFAIL != status::ok) return;

  EosArgs eos;
  eos.IPHASE = IPHTYP;
  eos.T = T;
  eos.P = P;
  eos.NCOMP = NCOMP;
  eos.XIN = &X;
  eos.LDFUG = DF;
  eos.FUGPL = &DFDP;
  eos.FUGN = &DFDN;
  eos.LDVOL = DV;
  eos.ZN = &DZDN;
  eos.IHTYPE = IHTYPE;
  eos.LDTHERM = DH;
  eos.HNR = &DHDN;
  eos.SNR = &DSDN;
  eos.KROOT = IROOTO;
  eos.IPHRTN = IPHRTN;

  // Each distinct slot runs once, the lowest first.
  Vec<I4, kMaxModels> MODCNT{};
  if (LNOF > 0) ++MODCNT(LNOF);
  if (LNOV > 0) ++MODCNT(LNOV);
  if (LNOH > 0) ++MODCNT(LNOH);
  for (int slot = 1; slot <= models.count; ++slot) {
    if (MODCNT(slot) == 0) continue;
    if (models.MODTYP(slot) != model_class::equation_of_state) {
      NFAIL = refuse_class(models.MODTYP(slot), IPHRTN);
      return;
    }

    // Thermal properties need fugacities too: those must not replace the results of another row.
    eos.LFUG = slot == LNOF;
    eos.FUG = eos.LFUG ? &FUG : nullptr;
    eos.FUGTL = eos.LFUG ? &DFDT : nullptr;
    eos.LVOL = slot == LNOV;
    eos.LTHERM = slot == LNOH;
    eos.MODEL = slot;
    clear_results(eos);
    SES000(eos);
    IPHRTN = eos.IPHRTN;
    if (eos.ICODE != status::ok) {
      ZVOL = kNoCompressibility;
      ZFUG = kNoCompressibility;
      NFAIL = refuse(eos.ICODE, "Equation of state calculation failed");
      return;
    }

    if (models.MODPUR(slot) == pure::vardo)
      eos.Z -= P * salt_fraction(NCOMP, X) * kSaltVolume / (kSaltGasConstant * T);
    ZFUG = eos.Z;
    ZVOL = eos.Z;
    if (eos.LVOL) {
      if (DV(1)) DZDT = eos.ZT;
      if (DV(2)) DZDP = eos.ZP;
    }
    if (eos.LTHERM) {
      H = eos.H;
      S = eos.S;
      if (DH(1)) {
        DHDT = eos.HT;
        DSDT = eos.ST;
      }
      if (DH(2)) {
        DHDP = eos.HP;
        DSDP = eos.SP;
      }
      keep_reserved(eos);
    }
    normalise_phase(IPHTYP, IPHRTN, AMBIG);
    if (IPHTYP == phase::gibbs && IPHRTN != phase::vapour && IPHRTN != phase::liquid) {
      NFAIL = refuse(status::no_root, "Could not find e.o.s. root of requested Gibbs type");
      return;
    }
    if (eos.LTHERM)
      for (int i = 1; i <= wanted_results; ++i) RESRV(i) = reserved_result(IRESRV(i), IHTYPE);
  }
}

}  // namespace talix
