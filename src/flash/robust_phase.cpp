#include "flash/robust_phase.h"

#include <cmath>

#include "engine/codes.h"
#include "engine/shmix_driver.h"
#include "fastprops/engine_call.h"
#include "fastprops/flash_record.h"

namespace talix {

namespace {

constinit EngineCall call{};
constinit I4 budget = 0;

// Wilson's constant in ln K = ln(Pc/P) + 5.373 (1 + omega) (1 - Tc/T).
constexpr R8 kWilsonSlope = 5.373;

// True when a call is left; the phase is marked as failed otherwise.
bool take_from_budget(RobustPhase& out) {
  if (budget > 0) {
    budget = budget - 1;
    fl.NENGINE = fl.NENGINE + 1;
    return true;
  }
  out.status = status::failed;
  return false;
}

void prepare(const RobustMixture& mixture, R8 T, R8 P, const CompVec& X) {
  call.T = T;
  call.P = P * kPascalPerBar;
  for (int i = 1; i <= fl.NC; ++i) {
    call.IC(i) = i;
    call.X(i) = 0.0;
  }
  for (int i = 1; i <= mixture.n; ++i) call.X(mixture.at(i)) = X(i);
  call.DV = kNoDerivatives;
  call.DF = kNoDerivatives;
  call.DH = kNoDerivatives;
  call.NRESRV = 0;
  call.IPHRTN = phase::none;
}

void ask_engine(I4 ROOT, I4 LNOF, I4 LNOH) {
  SHMIX0(ROOT, root_option::real_only, call.T, call.P, fl.NC, call.IC, call.X, model::none, call.DV, LNOF,
         call.DF, LNOH, thermal::total, call.DH, call.IRESRV, call.NRESRV, call.IPHRTN, call.AMBIG, call.ZFUG,
         call.ZVOL, call.DZDT, call.DZDP, call.DZDN, call.FUG, call.DFDT, call.DFDP, call.DFDN, call.H,
         call.DHDT, call.DHDP, call.DHDN, call.S, call.DSDT, call.DSDP, call.DSDN, call.RESRV, call.NFAIL);
}

bool finite_results(const RobustMixture& mixture, const RobustPhase& out) {
  if (!std::isfinite(out.Z)) return false;
  for (int i = 1; i <= mixture.n; ++i)
    if (!std::isfinite(out.lnphi(i))) return false;
  return true;
}

}  // namespace

void gather_mixture(RobustMixture& mixture) {
  mixture.n = 0;
  mixture.total = 0.0;
  for (int i = 1; i <= fl.NC; ++i) {
    if (!(fl.F(i) > 0.0F)) continue;
    mixture.n = mixture.n + 1;
    mixture.at(mixture.n) = i;
    mixture.z(mixture.n) = static_cast<R8>(fl.F(i));
    mixture.total += mixture.z(mixture.n);
  }
  for (int i = 1; i <= mixture.n; ++i) mixture.z(i) /= mixture.total;
}

void set_engine_budget(I4 calls) { budget = calls; }

I4 engine_budget() { return budget; }

void evaluate_phase(const RobustMixture& mixture, R8 T, R8 P, const CompVec& X, I4 ROOT,
                    PhaseDerivatives derivatives, RobustPhase& out) {
  if (!take_from_budget(out)) return;
  prepare(mixture, T, P, X);
  const bool by_state = derivatives == PhaseDerivatives::all;
  const bool by_composition = by_state || derivatives == PhaseDerivatives::composition;
  call.DF(1) = by_state;
  call.DF(2) = by_state;
  call.DF(3) = by_composition;
  ask_engine(ROOT, fl.MODELID, model::none);

  out.status = call.NFAIL;
  out.root = call.IPHRTN;
  out.single = call.AMBIG;
  out.known = PhaseDerivatives::none;
  if (out.status != status::ok) return;
  out.known = derivatives;
  out.Z = call.ZFUG;
  for (int i = 1; i <= mixture.n; ++i) {
    out.x(i) = X(i);
    out.lnphi(i) = call.FUG(mixture.at(i));
    if (by_state) {
      out.lnphi_T(i) = call.DFDT(mixture.at(i));
      out.lnphi_P(i) = call.DFDP(mixture.at(i));
    }
  }
  if (by_composition)
    for (int j = 1; j <= mixture.n; ++j)
      for (int i = 1; i <= mixture.n; ++i) out.lnphi_n(i, j) = call.DFDN(mixture.at(i), mixture.at(j));
  if (!finite_results(mixture, out)) out.status = status::numerical;
}

void evaluate_enthalpy(const RobustMixture& mixture, R8 T, R8 P, I4 ROOT, RobustPhase& out) {
  if (!take_from_budget(out)) return;
  prepare(mixture, T, P, out.x);
  call.DH(1) = true;
  ask_engine(ROOT, model::none, fl.MODELID);
  out.status = call.NFAIL;
  if (out.status != status::ok) return;
  out.root = call.IPHRTN;
  out.single = call.AMBIG;
  out.h = call.H * kGasConstant * T;
  out.cp = call.DHDT * kGasConstant;
  if (!std::isfinite(out.h) || !std::isfinite(out.cp)) out.status = status::numerical;
}

void wilson_ln_k(const RobustMixture& mixture, R8 T, R8 P, CompVec& lnK) {
  for (int i = 1; i <= mixture.n; ++i) {
    const int k = mixture.at(i);
    lnK(i) = std::log(static_cast<R8>(fl.PC(k)) / P) +
             kWilsonSlope * (1.0 + static_cast<R8>(fl.OMEG(k))) * (1.0 - static_cast<R8>(fl.TC(k)) / T);
  }
}

}  // namespace talix
