#include "flash/fltp3.h"

#include <cmath>

#include "database/component_record.h"
#include "engine/codes.h"
#include "engine/shmix_driver.h"
#include "fastprops/engine_call.h"
#include "fastprops/flash_record.h"
#include "fastprops/small_arrays.h"
#include "flash/kval.h"
#include "flash/rrice.h"

namespace talix {

namespace {

constexpr int kMaxPasses = 100;
constexpr R8 kFractionTolerance = 1.0E-6;
// Limits of the start K-values, those of every other K-value.
constexpr R8 kMinK = 1.0E-12;
constexpr R8 kMaxK = 1.0E+12;

R8 pressure() { return static_cast<R8>(fl.P) * kPascalPerBar; }

// Vapour pressure of a component [Pa], beyond its critical point the continuation of the correlation. A component
// without a correlation takes the Wilson relation.
R8 vapour_pressure(int i) {
  const R8 T = static_cast<R8>(fl.T);
  R8 PS = 0.0;
  R8 DPS = 0.0;
  I4 NFAIL = status::ok;
  SPSAT0(T, 0.0, i, logical(true), logical(false), method::bramm_default, PS, DPS, NFAIL);
  if (NFAIL == status::ok && std::isfinite(PS)) return PS;
  return comp.PC(i) * kPascalPerBar * std::exp(5.37 * (1.0 + comp.OMEGA(i)) * (1.0 - comp.TC(i) / T));
}

// The only component of the feed, or 0 when there are more; COUNT tells how many there are.
int only_component(int& COUNT) {
  int found = 0;
  COUNT = 0;
  for (int i = 1; i <= fl.NC; ++i) {
    if (fl.F(i) != 0.0F) {
      ++COUNT;
      found = i;
    } else {
      fl.FL(i) = fl.FV(i) = 0.0F;
    }
  }
  return COUNT == 1 ? found : 0;
}

void flash_one_component(int k) {
  const bool below_critical = comp.TC(k) > static_cast<R8>(fl.T);
  const R8 PSAT = below_critical ? vapour_pressure(k) : comp.PC(k) * kPascalPerBar;
  const bool vapour = pressure() < PSAT;
  fl.FV(k) = vapour ? fl.F(k) : 0.0F;
  fl.FL(k) = vapour ? 0.0F : fl.F(k);
  fl.VLK(k) = 1.0F;
}

void start_k_values() {
  for (int i = 1; i <= fl.NC; ++i) {
    R8 k = vapour_pressure(i) / pressure();
    if (k > kMaxK) k = kMaxK;
    if (!(k >= kMinK)) k = kMinK;
    fl.VLK(i) = static_cast<R4>(k);
  }
}

// Flows of both phases; a missing phase gets a trial composition for the next K-values.
void set_flows(I4 STATUS, R8 BETA) {
  for (int i = 1; i <= fl.NC; ++i) {
    const R8 F = static_cast<R8>(fl.F(i));
    const R8 K = static_cast<R8>(fl.VLK(i));
    if (STATUS == phase::liquid) {
      fl.FL(i) = fl.F(i);
      fl.FV(i) = static_cast<R4>(F * K);
    } else if (STATUS == phase::vapour) {
      fl.FV(i) = fl.F(i);
      fl.FL(i) = static_cast<R4>(F / K);
    } else {
      const R8 AUX = 1.0 - BETA + BETA * K;
      fl.FL(i) = static_cast<R4>((1.0 - BETA) * F / AUX);
      fl.FV(i) = static_cast<R4>(BETA * F * K / AUX);
    }
  }
}

R8 substitute_until_converged() {
  R8 BETA = 0.0;
  R8 BETA_PREV = -1.0;
  for (int ITCOUNT = 1;; ++ITCOUNT) {
    I4 STATUS = kTwoPhases;
    L4 TRIV_SOL{};
    RRICE(BETA, STATUS, TRIV_SOL);
    set_flows(STATUS, BETA);
    const bool settled = STATUS == kTwoPhases && std::fabs(BETA - BETA_PREV) <= kFractionTolerance;
    if (ITCOUNT >= kMaxPasses || TRIV_SOL || settled) return BETA;
    BETA_PREV = BETA;
    KVAL2();
  }
}

}  // namespace

// FLTP3: isothermal flash by plain substitution from Raoult's law.
//
// Out      STR  message, untouched on success
// Shared   reads fl.NC, F, T, P; sets fl.FV, FL, VLK and, through KVAL2, X1, Y, ZL, ZV; fl.NCAL on failure
// Status   fl.NCAL is flash_status::failed behind the message
// Reports  " Pressure not above 0, no flash calculation (FLTP3)"
// Oddity   one-phase states always run all 100 passes; after those the last values stand without a message
void FLTP3(Message& STR) {
  if (!(fl.P > 0.0F)) {
    fl.NCAL = flash_status::failed;
    report(STR, " Pressure not above 0, no flash calculation (FLTP3)");
    return;
  }
  int count = 0;
  const int k = only_component(count);
  if (count == 0) return;
  if (k != 0) {
    flash_one_component(k);
    return;
  }
  start_k_values();
  const R8 BETA = substitute_until_converged();
  if (BETA == 0.0) ZERO(fl.NC, fl.FV);
  if (BETA == 1.0) ZERO(fl.NC, fl.FL);
}

}  // namespace talix
