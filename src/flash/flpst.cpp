#include "flash/flpst.h"

#include <algorithm>
#include <cmath>

#include "base/logical.h"
#include "base/stop_handler.h"
#include "engine/codes.h"
#include "engine/shmix_driver.h"
#include "fastprops/engine_call.h"
#include "fastprops/flash_record.h"
#include "fastprops/small_arrays.h"
#include "flash/bracket.h"

namespace talix {

namespace {

// Above its critical temperature a component has its critical pressure as vapour pressure, nearly without slope.
constexpr R8 kNoSlope = 1.0E-10;
// Cap of the objective and its slope, for vapour pressures next to 0.
constexpr R8 kMaxObjective = 1.0E+10;
// Lower end of the slope, so that it stays a 32-bit number.
constexpr R8 kMinSlope = -1.0E+30;
// The first bracket and how far it may be widened [K].
constexpr R4 kFirstLow = 100.0F;
constexpr R4 kFirstHigh = 900.0F;
constexpr R4 kLowestLow = 5.0F;
constexpr R4 kWidening = 100.0F;
constexpr I4 kMaxIterations = 25;
// The start value needs no more accuracy [K].
constexpr R4 kLastStep = 1.0F;
// Limits of a K-value.
constexpr R8 kMinK = 1.0E-12;
constexpr R8 kMaxK = 1.0E+12;

// Vapour pressures of the last evaluation [Pa], their slopes [Pa/K] and the feed fractions.
constinit Vec<R8, kMaxComponents> PSAT{};
constinit Vec<R8, kMaxComponents> DPSDT{};
constinit FlashVec ZF{};

struct Search : Bracket {
  R4 DF;    // slope at TMID [1/K]
  R4 STEP;  // last step [K]
  I4 ITCOUNT;
};

// A component without vapour pressure data takes the correlation of the ideal K-values.
void from_acentric_factor(int i) {
  const R8 T = static_cast<R8>(fl.T);
  const R8 TC = static_cast<R8>(fl.TC(i));
  const R8 slope = 5.37 * (1.0 + static_cast<R8>(fl.OMEG(i)));
  PSAT(i) = static_cast<R8>(fl.PC(i)) * kPascalPerBar * std::exp(slope * (1.0 - TC / T));
  DPSDT(i) = PSAT(i) * slope * TC / (T * T);
}

void vapour_pressures() {
  const R8 T = static_cast<R8>(fl.T);
  const R8 P = static_cast<R8>(fl.P) * kPascalPerBar;
  MOLFR(fl.NC, TELOP(fl.NC, fl.F), fl.F, ZF);
  for (int i = 1; i <= fl.NC; ++i) {
    PSAT(i) = static_cast<R8>(fl.PC(i)) * kPascalPerBar;
    DPSDT(i) = kNoSlope;
    if (!(fl.TC(i) > fl.T)) continue;
    I4 NFAIL = status::ok;
    SPSAT0(T, P, i, logical(true), logical(true), method::bramm_default, PSAT(i), DPSDT(i), NFAIL);
    if (NFAIL != status::ok) from_acentric_factor(i);
  }
}

R8 bubble_sum() {
  R8 S = 0.0;
  for (int i = 1; i <= fl.NC; ++i)
    if (ZF(i) > 0.0F) S += PSAT(i) * static_cast<R8>(ZF(i));
  return S;
}

R8 dew_sum() {
  R8 S = 0.0;
  for (int i = 1; i <= fl.NC; ++i)
    if (ZF(i) > 0.0F) S += static_cast<R8>(ZF(i)) / PSAT(i);
  return S;
}

R8 bubble_slope() {
  R8 S1 = 0.0;
  for (int i = 1; i <= fl.NC; ++i)
    if (ZF(i) > 0.0F) S1 += DPSDT(i) * static_cast<R8>(ZF(i));
  return S1;
}

// A vapour pressure of 0 has no slope of its own; the cap on the objective speaks for it.
R8 dew_slope() {
  R8 S1 = 0.0;
  for (int i = 1; i <= fl.NC; ++i)
    if (ZF(i) > 0.0F && PSAT(i) > 0.0) S1 -= DPSDT(i) / PSAT(i) * (static_cast<R8>(ZF(i)) / PSAT(i));
  return S1;
}

void evaluate(I4 MODE, R4 T, R4& F, R4& DF) {
  fl.T = T;
  FOBJ1(MODE, F, DF);
}

bool unbracketed(Message& STR) {
  report(STR, " Unbracketed root (FLPST)");
  return false;
}

// TMID is evaluated last: fl.T and the slope belong to it.
bool bracket(Search& s, I4 MODE) {
  R4 unused = 0.0F;
  s.TLOW = kFirstLow;
  s.THIGH = kFirstHigh;
  while (s.TLOW > kLowestLow && s.THIGH <= kMaxTemperature) {
    evaluate(MODE, s.TLOW, s.FLOW, unused);
    evaluate(MODE, s.THIGH, s.FHIGH, unused);
    s.TMID = (s.TLOW + s.THIGH) / 2.0F;
    evaluate(MODE, s.TMID, s.FMID, s.DF);
    if (shrink(s)) return true;
    if (s.FHIGH < 0.0F)
      s.THIGH += kWidening;
    else if (s.FLOW > 0.0F)
      s.TLOW /= 2.0F;
    else
      return false;
  }
  return false;
}

bool search_temperature(I4 MODE, Message& STR) {
  Search s{};
  if (!bracket(s, MODE)) return unbracketed(STR);
  do {
    s.TMID = s.TMID - s.FMID / s.DF;
    if (!(s.TMID >= s.TLOW && s.TMID <= s.THIGH)) s.TMID = (s.TLOW + s.THIGH) / 2.0F;
    s.STEP = s.TMID - fl.T;
    evaluate(MODE, s.TMID, s.FMID, s.DF);
    if (!shrink(s)) return unbracketed(STR);
    s.ITCOUNT = s.ITCOUNT + 1;
    if (s.ITCOUNT > kMaxIterations) {
      report(STR, " More than MAXIT iterations (FLPST)");
      return false;
    }
  } while (std::fabs(s.STEP) > kLastStep);
  return true;
}

// Limited as the K-values of the flashes are.
void leave_start_values() {
  for (int i = 1; i <= fl.NC; ++i) {
    const R8 K = PSAT(i) / (static_cast<R8>(fl.P) * kPascalPerBar);
    fl.VLK(i) = static_cast<R4>(K >= kMinK ? std::min(K, kMaxK) : kMinK);
  }
  fl.KSTART = true;
}

}  // namespace

// FOBJ1: objective of the temperature search by Raoult's law.
//
// In       MODE  I4  start_mode::bubble_temperature: sum of z PSAT/P - 1;
//                    start_mode::dew_temperature: P sum of z/PSAT - 1
// Out      F     R4  objective [-], at most 1E+10
//          DF    R4  its slope [1/K], at most 1E+10
// Shared   reads fl.T, P, F, TC, PC, OMEG
// Reports  another MODE stops with "Wrong i value in fobj1, programming error "
void FOBJ1(const I4& MODE, R4& F, R4& DF) {
  if (MODE != start_mode::bubble_temperature && MODE != start_mode::dew_temperature) {
    stop("Wrong i value in fobj1, programming error ");
    return;
  }
  const R8 PP = static_cast<R8>(fl.P) * kPascalPerBar;
  vapour_pressures();
  if (MODE == start_mode::bubble_temperature) {
    F = static_cast<R4>(bubble_sum() / PP - 1.0);
    DF = static_cast<R4>(bubble_slope() / PP);
    return;
  }
  F = static_cast<R4>(std::min(dew_sum() * PP - 1.0, kMaxObjective));
  DF = static_cast<R4>(std::clamp(dew_slope() * PP, kMinSlope, kMaxObjective));
}

// FLPST: a pressure or a temperature near the bubble or dew point, and K-values for it, from Raoult's law.
//
// In       MODE   I4  start_mode::*
// Out      IFAIL  I4  0, or 1 with a text
//          STR        message, untouched on success
// Shared   reads fl.NC, F, TC, PC, OMEG and the given one of fl.T, P; sets the other one, fl.VLK and fl.KSTART
// Reports  " Unbracketed root (FLPST)"
//          " More than MAXIT iterations (FLPST)"
// Oddity   a failed search leaves fl.T at its last trial and fl.KSTART as it was. A dew temperature above 900 K is
//          not found: the bracket of a positive objective is widened downwards only.
void FLPST(const I4& MODE, I4& IFAIL, Message& STR) {
  IFAIL = 0;
  if (MODE == start_mode::bubble_pressure || MODE == start_mode::dew_pressure) {
    vapour_pressures();
    const R8 P = MODE == start_mode::bubble_pressure ? bubble_sum() : 1.0 / dew_sum();
    fl.P = static_cast<R4>(P / kPascalPerBar);
  } else if (!search_temperature(MODE, STR)) {
    IFAIL = 1;
    return;
  }
  leave_start_values();
}

}  // namespace talix
