#include "fastprops/rksf.h"

#include <cmath>

#include "engine/codes.h"
#include "engine/shmix_driver.h"
#include "fastprops/engine_call.h"
#include "fastprops/error_matrix.h"
#include "fastprops/morvei.h"
#include "fastprops/rksf_direct.h"
#include "fastprops/routes.h"

namespace talix {

namespace {

// Limits of a logarithmic fugacity coefficient, so that its exponential stays a 32-bit number.
constexpr R8 kMaxLogarithm = 38.0;

constinit EngineCall call{};

// Before the call, so that what a failed engine leaves unset reads as an ideal gas and not as an older state.
void prepare(const I4& NC, const R4& T, const FlashVec& XX, const R4& P) {
  for (int i = 1; i <= NC; ++i) {
    call.IC(i) = i;
    call.X(i) = static_cast<R8>(XX(i));
    call.FUG(i) = 0.0;
  }
  call.T = static_cast<R8>(T);
  call.P = static_cast<R8>(P) * kPascalPerBar;
  call.IPHRTN = phase::none;
  call.ZVOL = 1.0;
}

}  // namespace

// RKSF1: fugacity coefficients and compressibility of one phase through the property engine.
//
// In       NC   I4           number of components
//          PH   I4           flash_phase::vapour asks for the vapour-type root, anything else for the liquid
//          T    R4           temperature [K]
//          XX   R4(50)       mole fractions
//          P    R4           pressure [bar]
// Out      PHI  R4(50)       fugacity coefficients [-], between exp(-38) and exp(38)
//          Z    R4           compressibility factor [-]
//          IPH  I4           type of the root returned, phase::*
// Shared   reads fl.MODELID, fl.ENGREADY; counts a bad engine status in cell 1 of RKSF1
// Oddity   the code of an engine start and a bad status are not reported; what came back is used as it is
void RKSF1(const I4& NC, const I4& PH, const R4& T, const FlashVec& XX, FlashVec& PHI, R4& Z, const R4& P,
           I4& IPH) {
  if (!fl.ENGREADY) {
    I4 ignored = 0;
    MORVEI(NC, ignored);
  }
  prepare(NC, T, XX, P);
  fl.NENGINE = fl.NENGINE + 1;
  SHMIX0(PH == flash_phase::vapour ? phase::vapour : phase::liquid, root_option::pseudo, call.T, call.P, NC,
         call.IC, call.X, model::none, call.DV, fl.MODELID, call.DF, model::none, thermal::total, call.DH,
         call.IRESRV, call.NRESRV, call.IPHRTN, call.AMBIG, call.ZFUG, call.ZVOL, call.DZDT, call.DZDP,
         call.DZDN, call.FUG, call.DFDT, call.DFDP, call.DFDN, call.H, call.DHDT, call.DHDP, call.DHDN,
         call.S, call.DSDT, call.DSDP, call.DSDN, call.RESRV, call.NFAIL);
  IPH = call.IPHRTN;
  if (call.NFAIL != status::ok) mark_error(error_row::RKSF1, 1);
  for (int i = 1; i <= NC; ++i) {
    R8 logarithm = call.FUG(i);
    if (logarithm > kMaxLogarithm) logarithm = kMaxLogarithm;
    if (!(logarithm >= -kMaxLogarithm)) logarithm = -kMaxLogarithm;
    PHI(i) = static_cast<R4>(std::exp(logarithm));
  }
  Z = static_cast<R4>(call.ZVOL);
}

// RKSF: fugacity coefficients and compressibility of one phase by the route in force. The direct route gives
// no root type: its IPH is 0.
void RKSF(const I4& NC, const I4& PH, const R4& T, const FlashVec& XX, FlashVec& PHI, R4& Z, const R4& P,
          I4& IPH) {
  if constexpr (kEngineRoute)
    RKSF1(NC, PH, T, XX, PHI, Z, P, IPH);
  else
    direct_fugacities(kSolverRoots, NC, PH, T, XX, PHI, Z, P, IPH);
}

}  // namespace talix
