#include "eos/ssm_fit_a_excess.h"

#include <cmath>

#include "database/pair_record.h"
#include "engine/codes.h"
#include "engine/model_table.h"
#include "engine/shmix_driver.h"
#include "liquid/snl_nrtl.h"

namespace talix {

namespace {

constexpr R8 kSecondGuess = 0.4;
constexpr R8 kTolerance = 1E-10;
constexpr I4 kMostPasses = 250;

struct Work {
  CompVec X;
  CompVec GER;  // residual Gibbs energy over R T of the pure liquids [-]
  ExcessGibbs excess;
  CompVec DZDN, FUG, DFDT, DFDP, DHDN, DSDN;
  CompMat DFDN;
};

constinit Work work{};

// Residual Gibbs energy over R T of the liquid of NCOMP, as SHMIX0 counts it.
struct LiquidCall {
  R8 G;
  I4 IPHRTN;
  I4 NFAIL;
};

LiquidCall residual_gibbs(I4 slot, R8 T, R8 P, I4 NCOMP) {
  Vec<I4, kMaxComponents> IC{};
  const Flags3 none{};
  ReservedCodes IRESRV{};
  ReservedValues RESRV{};
  LiquidCall call{.G = 0.0, .IPHRTN = phase::none, .NFAIL = status::ok};
  L4 AMBIG{};
  R8 ZFUG = 0.0, ZVOL = 0.0, DZDT = 0.0, DZDP = 0.0;
  R8 H = 0.0, DHDT = 0.0, DHDP = 0.0, S = 0.0, DSDT = 0.0, DSDP = 0.0;
  SHMIX0(phase::liquid, root_option::real_only, T, P, NCOMP, IC, work.X, 0, none, 0, none, slot,
         thermal::residual, none, IRESRV, 0, call.IPHRTN, AMBIG, ZFUG, ZVOL, DZDT, DZDP, work.DZDN, work.FUG,
         work.DFDT, work.DFDP, work.DFDN, H, DHDT, DHDP, work.DHDN, S, DSDT, DSDP, work.DSDN, RESRV,
         call.NFAIL);
  call.G = H - S;
  return call;
}

// Secant search for the parameter of one pair: residual Gibbs energy of the equimolar liquid against TG.
I4 fit_pair(I4 slot, I4 i, I4 j, I4 ILCOM, R8 T, R8 P, R8 TG) {
  R8 old_F = 0.0;
  R8 old_K = 0.0;
  R8 KIJ = 0.0;
  R8 F2 = 1.0;
  for (I4 ITER = 0; std::fabs(F2) >= kTolerance;) {
    const LiquidCall call = residual_gibbs(slot, T, P, ILCOM);
    if (call.NFAIL != status::ok) return call.NFAIL;
    const R8 F = call.G - TG;
    if (!std::isfinite(F)) return status::numerical;
    if (ITER == 0) {
      old_F = F;
      KIJ = kSecondGuess;
    } else {
      F2 = F;
      if (std::fabs(F2) < kTolerance) break;
      const R8 next = KIJ - F2 * (KIJ - old_K) / (F2 - old_F);
      if (!std::isfinite(next)) return status::numerical;
      old_F = F2;
      old_K = KIJ;
      KIJ = next;
    }
    pairs.BICWS(i, j) = pairs.BICWS(j, i) = KIJ;
    if (++ITER > kMostPasses) return status::numerical;
  }
  return status::ok;
}

}  // namespace

// SSMMR7: pair parameters of the A-excess rule that make the equimolar liquid of each pair reproduce the
// excess energy of NRTL at one state.
//
// In       IFCOM, ILCOM  I4  range of components
//          T, P          R8  the state [K], [Pa]
// Shared   writes pairs.BICWS; reads the records of the model
// Status   ok; model_error (the model with this rule is not loaded); that of SHMIX0; phase::vapour or
//          another root type (a component is not liquid at the state: every parameter is then 0); stop (no
//          solution: the pair stays at its last value, those behind it at 0)
// Oddity   a component above its critical temperature has one root of no type and counts as liquid
void SSMMR7(const I4& IFCOM, const I4& ILCOM, const R8& T, const R8& P, I4& ICODE) {
  Work& w = work;
  for (int j = IFCOM; j <= ILCOM; ++j)
    for (int i = IFCOM; i <= ILCOM; ++i) pairs.BICWS(i, j) = 0.0;
  I4 slot = 0;
  SMDAO1(model::vardo3, slot);
  if (slot <= 0) {
    ICODE = status::model_error;
    return;
  }
  for (int i = IFCOM; i <= ILCOM; ++i) {
    w.X.fill(0.0);
    w.X(i) = 1.0;
    const LiquidCall pure = residual_gibbs(slot, T, P, -i);
    if (pure.NFAIL != status::ok || pure.IPHRTN != phase::liquid) {
      ICODE = pure.NFAIL != status::ok ? pure.NFAIL : pure.IPHRTN;
      return;
    }
    w.GER(i) = pure.G;
  }

  ActivityOptions value{};
  value(1) = true;
  for (int i = IFCOM; i <= ILCOM; ++i) {
    for (int j = i + 1; j <= ILCOM; ++j) {
      w.X.fill(0.0);
      w.X(i) = w.X(j) = 0.5;
      SNLAC0(T, w.X, w.excess, IFCOM, ILCOM, value);
      const R8 TG = w.X(i) * w.GER(i) + w.excess.GE + w.X(j) * w.GER(j);
      ICODE = fit_pair(slot, i, j, ILCOM, T, P, TG);
      if (ICODE != status::ok) return;
    }
  }
  ICODE = status::ok;
}

}  // namespace talix
