#include "eos/ses_dispatcher.h"

#include <cmath>

#include "association/bwrs_phase.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/model_record.h"
#include "eos/cubic_record.h"
#include "eos/mixture_record.h"
#include "eos/ses_assembly.h"
#include "eos/ses_options.h"
#include "eos/ses_thermal.h"
#include "eos/sm9_translation.h"
#include "eos/ssm_cubic_frame.h"

namespace talix {

namespace {

constexpr R8 kSmallestSum = 1E-20;
constexpr R8 kFractionFloor = 1E-26;

// Work record of the evaluation that runs.
struct EosWork {
  CompVec X;  // working composition
  OptionTables options;
  MixtureVector mixture;
  ModelFunction function;
  ComposedDerivatives composed;
  VolumeTranslation shift;
  CompVec FUG, FUGTL;  // for a thermal request without room for fugacities
};

constinit EosWork work{};

void push_failure(const char* message) { SERPU0(severity::error, "SES000", message); }

void copy_constants(const I4& MODEL) {
  cur = {.C1PAR = models.C1PAR(MODEL),
         .C2PAR = models.C2PAR(MODEL),
         .OAPAR = models.OAPAR(MODEL),
         .OBPAR = models.OBPAR(MODEL),
         .M1PAR = models.M1PAR(MODEL),
         .M2PAR = models.M2PAR(MODEL),
         .M3PAR = models.M3PAR(MODEL),
         .M4PAR = models.M4PAR(MODEL)};
}

// Normalised composition of the called range; the floor keeps every logarithm below finite.
I4 working_composition(const EosArgs& args, I4& IFCOM, I4& ILCOM) {
  CompVec& X = work.X;
  if (args.NCOMP == 0 || args.NCOMP > kMaxComponents || args.NCOMP < -kMaxComponents) return status::input;
  if (args.NCOMP < 0) {
    IFCOM = ILCOM = -args.NCOMP;
    X(IFCOM) = 1.0;
    return status::ok;
  }
  IFCOM = 1;
  ILCOM = args.NCOMP;
  R8 SUM = 0.0;
  for (int i = 1; i <= ILCOM; ++i) SUM += (*args.XIN)(i);
  if (!(std::abs(SUM) >= kSmallestSum)) {
    push_failure("Sum of mole fractions too low");
    return status::input;
  }
  for (int i = 1; i <= ILCOM; ++i) {
    X(i) = (*args.XIN)(i) / SUM;
    if (std::abs(X(i)) < kFractionFloor) X(i) = kFractionFloor;
  }
  return status::ok;
}

void volume_translation(const EosArgs& args, const I4& IFCOM, const I4& ILCOM) {
  VolumeTranslation& s = work.shift;
  const I4 MODPUR = models.MODPUR(args.MODEL);
  if (MODPUR == pure::vardo95 || MODPUR == pure::soave) {
    SM9VS0(IFCOM, ILCOM, work.X, args.P, args.T, s.VSC, s.VSCT, s.VSCN, s.VSCTN, s.VSCTT);
    return;
  }
  s.VSC = s.VSCT = s.VSCTT = 0.0;
  for (int i = IFCOM; i <= ILCOM; ++i) {
    s.VSCN(i) = 0.0;
    s.VSCTN(i) = 0.0;
  }
}

void thermal_properties(const CompVec& FUG, const CompVec& FUGTL, const I4& IFCOM, const I4& ILCOM,
                        EosArgs& args) {
  if (args.IHTYPE == thermal::ideal_gas) {
    SESPP3(IFCOM, ILCOM, args);
  } else {
    SESPP0(work.function, work.composed, work.shift, FUG, FUGTL, IFCOM, ILCOM, args);
  }
  if (args.IHTYPE == thermal::residual) {
    args.KAPS = args.DPDTS = args.JTC = args.WSOUND = 0.0;
    return;
  }
  SESPP1(work.X, IFCOM, ILCOM, args);
  SESPP2(work.X, IFCOM, ILCOM, args);
}

void no_thermal_properties(EosArgs& args) {
  args.BETA = args.KAPS = args.KAPT = args.CP = args.CV = 0.0;
  args.DPDTS = args.DPDTV = args.JTC = args.WSOUND = args.DKAPT = args.DLVTV = 0.0;
}

// Derivatives of Z, then Z itself, with the translation.
void volume_results(const I4& IFCOM, const I4& ILCOM, EosArgs& args) {
  const R8 Z = args.Z;
  const R8 PV = work.function.PV;
  const VolumeTranslation& s = work.shift;
  if (args.LDVOL(1)) args.ZT = -Z * work.composed.PTCN / PV - Z + s.VSCT - s.VSC;
  if (args.LDVOL(2)) args.ZP = Z / PV + Z + s.VSC;
  if (args.LDVOL(3)) {
    for (int i = IFCOM; i <= ILCOM; ++i)
      (*args.ZN)(i) = -Z * work.composed.PN(i) / PV - Z + s.VSCN(i) - s.VSC;
  }
  args.Z += s.VSC;
}

// The model of volumes alone: whatever else is asked for is refused, since nothing would set it.
void virial_volume(const I4& IFCOM, const I4& ILCOM, EosArgs& args) {
  args.ICODE = status::not_available;
  if (!args.LFUG && !args.LTHERM)
    bwrs_phase(args.IPHASE, IFCOM, ILCOM, args.T, args.P, work.X, args.Z, args.ZOTHER, work.function.PV,
               work.composed.PTCN, args.IPHRTN, args.ICODE);
  if (args.ICODE == status::not_available || args.ICODE == status::no_parameters)
    push_failure("Could not compute basic e.o.s. properties");
  if (args.ICODE != status::ok) return;
  args.V = kGasConstant * args.Z * args.T / args.P;
  work.shift = {};
  if (args.LVOL && args.LDVOL(3)) bwrs_composition_slope(IFCOM, ILCOM, work.composed.PN);
  no_thermal_properties(args);
  if (args.LVOL) volume_results(IFCOM, ILCOM, args);
}

}  // namespace

// SES000: properties of one phase by an equation of state.
//
// Selects the model function of the slot, normalises the composition, expands the requests, finds root and
// derivatives and assembles what was asked for; it never iterates.
//
// In/Out   args  every argument with its direction in the record. Array results that are asked for must
//                have room; FUG and FUGTL may be absent when only thermal properties are asked for
// Shared   reads models, comp, pairs, setup; writes cur, pures
// Status   ok; input (no usable composition); model_error (model function not served here); not_available
//          (phase type, model, or a fugacity or thermal property of fun::bwrs); no_root; numerical;
//          no_parameters (fun::bwrs); not_converged (fun::bwrs, no message)
// Reports  "Requested e.o.s. model not available", "Sum of mole fractions too low",
//          "Could not compute basic e.o.s. properties", all severity 3
// Oddity   a slot of fun::saft computes nothing and succeeds; fun::bwrs leaves "Incorrect model function" of
//          SSM000 in the ring and succeeds, without volume translation; Z carries the translation only when the
//          volume was asked for; the floor of a fraction is not renormalised
void SES000(EosArgs& args) {
  args.ICODE = status::ok;
  const bool slot = args.MODEL >= 1 && args.MODEL <= kMaxModels;
  const I4 MODFUN = slot ? models.MODFUN(args.MODEL) : model::none;
  switch (MODFUN) {
    case fun::saft:
      return;
    case fun::cpa:
      args.ICODE = status::not_available;
      push_failure("Could not compute basic e.o.s. properties");
      return;
    case fun::cubic:
    case fun::ideal_gas:
    case fun::hard_sphere_chain:
    case fun::bwrs:
      break;
    default:
      args.ICODE = status::model_error;
      push_failure("Requested e.o.s. model not available");
      return;
  }
  copy_constants(args.MODEL);
  I4 IFCOM = 0;
  I4 ILCOM = 0;
  args.ICODE = working_composition(args, IFCOM, ILCOM);
  if (args.ICODE != status::ok) return;
  OptionTables& o = work.options;
  SESAO0(args.LFUG, args.LDFUG, args.LVOL, args.LDVOL, args.LTHERM, args.LDTHERM, o);

  // Root and model function.
  if (MODFUN == fun::hard_sphere_chain) {
    args.ICODE = status::not_available;
  } else {
    R8 ZGAP = 0.0;
    SSM000(args.MODEL, args.IPHASE, args.T, args.P, work.X, IFCOM, ILCOM, o.OPTMR, o.OPTMOD, args.V, args.Z,
           args.ZOTHER, ZGAP, args.KROOT, work.mixture, work.function, args.IPHRTN, args.ICODE);
  }
  if (args.ICODE != status::ok) {
    push_failure("Could not compute basic e.o.s. properties");
    return;
  }
  if (MODFUN == fun::bwrs) {
    virial_volume(IFCOM, ILCOM, args);
    return;
  }

  // Derivatives, fugacities, thermal properties, volume.
  volume_translation(args, IFCOM, ILCOM);
  CompVec& FUG = args.FUG != nullptr ? *args.FUG : work.FUG;
  CompVec& FUGTL = args.FUGTL != nullptr ? *args.FUGTL : work.FUGTL;
  SESDD0(work.function, work.mixture, work.composed, IFCOM, ILCOM, o.OPTCOM);
  SESFC0(args.Z, work.function, work.mixture, work.composed, FUG, FUGTL, args.FUGPL, args.FUGN,
         work.shift.VSCN, work.shift.VSCTN, IFCOM, ILCOM, o.OPTFC);
  if (args.LTHERM) {
    thermal_properties(FUG, FUGTL, IFCOM, ILCOM, args);
  } else {
    no_thermal_properties(args);
  }
  if (args.LVOL) volume_results(IFCOM, ILCOM, args);
}

}  // namespace talix
