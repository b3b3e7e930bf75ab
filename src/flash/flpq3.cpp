#include "flash/flpq3.h"

#include <cmath>

#include "fastprops/small_arrays.h"
#include "flash/flpq2.h"
#include "flash/flpst.h"
#include "flash/fltp.h"
#include "flash/flvt.h"

namespace talix {

namespace {

constexpr R4 kCloseToLine = 0.99F;  // phase total [mol] from which a state counts as near its boundary
constexpr R4 kNoVapour = 1.0E-4F;   // fraction below which the vapour composition is not known
constexpr R4 kNoLiquid = 0.9999F;
constexpr R4 kEnthalpyTolerance = 1.0E-4F;  // of the target
constexpr R4 kLargeShare = 0.01F;           // of the feed: such a component is not taken out
constexpr int kMaxEliminations = kMaxComponents;

// One component taken out of the feed.
struct Elimination {
  int KSMALL, LLARGE;  // the component and the largest of the feed at that time
  R4 SMALLEST;         // its feed [mol]
};

struct TargetSearch {
  R4 TEMPERATURE, PRESSURE, VAPFRACTION, FEEDENTHALPY;  // as they came
  R4 FEEDTOTAL, MASSTOTAL;                              // [mol], [g]
  FlashVec FCOPY, MASSCOPY;                             // by component [mol], [g]
  FlashVec VAPMOLEF;                                    // vapour composition over a common factor
  R4 FEEDTOTALVAPOUR, FEEDTOTALLIQUID;                  // [mol]
  bool VAPOURFRACTIONSFOUND, LIQUIDFRACTIONSFOUND;
  bool CLOSETOBUBBLELINE, CLOSETODEWLINE;
  R4 LATESTENTHALPY, LATESTTOTAL, LATESTMASS;  // of the reduced feed
  int SMALLCOUNT;
  Vec<Elimination, kMaxEliminations> eliminated;
};

constinit TargetSearch search{};

void keep_call(TargetSearch& s) {
  s.TEMPERATURE = fl.T;
  s.PRESSURE = fl.P;
  s.VAPFRACTION = fl.FRV;
  s.FEEDENTHALPY = fl.QSPEC;
  for (int i = 1; i <= fl.NC; ++i) {
    s.FCOPY(i) = fl.F(i);
    s.MASSCOPY(i) = fl.F(i) * fl.AMW(i);
  }
  s.FEEDTOTAL = TELOP(fl.NC, s.FCOPY);
  s.MASSTOTAL = TELOP(fl.NC, s.MASSCOPY);
}

void set_state(const TargetSearch& s, R4 FRV, R4 QSPEC, Message& STR) {
  fl.T = s.TEMPERATURE;
  fl.P = s.PRESSURE;
  fl.FRV = FRV;
  fl.QSPEC = QSPEC;
  fl.NCAL = flash_status::fresh;
  STR.blank();
}

// VAPMOLEF from the flows of the last flash.
void take_vapour_composition(TargetSearch& s) {
  FlashVec YW{};
  FlashVec flow{};
  R4 total = 0.0F;
  WFR(fl.NC, fl.AMW, fl.FV, YW, flow, total);
  for (int i = 1; i <= fl.NC; ++i) s.VAPMOLEF(i) = YW(i) / fl.AMW(i);
}

// Where the state of the call lies, by an isothermal flash at its temperature.
//
// Oddity   the flags compare flow totals with 0.99 and not fractions: they mean what their names say for a feed of
//          about 1
void locate(TargetSearch& s, Message& STR) {
  set_state(s, 0.0F, 0.0F, STR);
  FLTP(STR);
  const bool found = !is_hard_failure(STR);
  s.VAPOURFRACTIONSFOUND = s.LIQUIDFRACTIONSFOUND = found;
  s.FEEDTOTALVAPOUR = found ? TELOP(fl.NC, fl.FV) : s.VAPFRACTION;
  s.FEEDTOTALLIQUID = found ? TELOP(fl.NC, fl.FL) : 1.0F - s.VAPFRACTION;
  s.CLOSETOBUBBLELINE = s.FEEDTOTALLIQUID >= kCloseToLine;
  s.CLOSETODEWLINE = s.FEEDTOTALVAPOUR >= kCloseToLine;
  if (s.CLOSETOBUBBLELINE && fl.FRV < kNoVapour) s.VAPOURFRACTIONSFOUND = false;
  if (s.CLOSETODEWLINE && fl.FRV > kNoLiquid) s.LIQUIDFRACTIONSFOUND = false;
  take_vapour_composition(s);
}

// The composition of the first bubble at the temperature of the call, where it can be found.
void take_bubble(TargetSearch& s, Message& STR) {
  set_state(s, 0.0F, 0.0F, STR);
  I4 ignored = 0;
  FLPST(start_mode::bubble_pressure, ignored, STR);
  STR.blank();
  FLVT(STR);
  if (is_hard_failure(STR)) return;
  s.VAPOURFRACTIONSFOUND = true;
  take_vapour_composition(s);
}

// Smallest feed above 0 and largest feed.
Elimination extremes() {
  Elimination e{};
  R4 largest = 0.0F;
  for (int i = 1; i <= fl.NC; ++i) {
    if (!(fl.F(i) > 0.0F)) continue;
    if (e.KSMALL == 0 || fl.F(i) < e.SMALLEST) {
      e.KSMALL = i;
      e.SMALLEST = fl.F(i);
    }
    if (fl.F(i) > largest) {
      e.LLARGE = i;
      largest = fl.F(i);
    }
  }
  return e;
}

// Takes the smallest feed out, with its share by mass of the target; false when the search is to end as it is.
bool eliminate(TargetSearch& s) {
  if (!s.CLOSETOBUBBLELINE && !s.CLOSETODEWLINE) return false;
  if (!s.VAPOURFRACTIONSFOUND) return false;
  const Elimination e = extremes();
  if (e.SMALLEST >= kLargeShare * s.FEEDTOTAL || e.KSMALL == e.LLARGE) return false;
  s.SMALLCOUNT = s.SMALLCOUNT + 1;
  s.eliminated(s.SMALLCOUNT) = e;
  fl.F(e.KSMALL) = 0.0F;
  s.LATESTENTHALPY = (s.LATESTMASS - s.MASSCOPY(e.KSMALL)) * s.LATESTENTHALPY / s.LATESTMASS;
  s.LATESTTOTAL = s.LATESTTOTAL - s.FCOPY(e.KSMALL);
  s.LATESTMASS = s.LATESTMASS - s.MASSCOPY(e.KSMALL);
  return true;
}

// The enthalpy search on ever smaller feeds; false when it fails.
bool search_target(TargetSearch& s, Message& STR) {
  s.LATESTENTHALPY = s.FEEDENTHALPY;
  s.LATESTTOTAL = s.FEEDTOTAL;
  s.LATESTMASS = s.MASSTOTAL;
  s.SMALLCOUNT = 0;
  for (int J = 1; J <= kMaxEliminations; ++J) {
    set_state(s, s.VAPFRACTION, s.LATESTENTHALPY, STR);
    R4 FOUT = 0.0F;
    I4 IFAIL = 0;
    FLPQ2(FOUT, IFAIL, STR);
    if (IFAIL != 0 || is_hard_failure(STR)) return false;
    if (std::fabs(FOUT / s.LATESTENTHALPY) <= kEnthalpyTolerance) return true;
    if (!eliminate(s)) return true;
  }
  return true;
}

// The calculated part of a component that was taken out, at most all of it; a ratio that is no number gives all.
R4 limited_part(R4 part, R4 SMALLEST) { return part < SMALLEST ? part : SMALLEST; }

// Puts the components back by their ratio to the largest one.
void put_back(TargetSearch& s) {
  for (int J = 1; J <= s.SMALLCOUNT; ++J) {
    const Elimination& e = s.eliminated(J);
    const int k = e.KSMALL;
    const int l = e.LLARGE;
    const R4 flow = s.CLOSETOBUBBLELINE ? fl.FV(l) : fl.FL(l);
    const R4 part = fl.AMW(l) * flow * s.VAPMOLEF(k) / s.VAPMOLEF(l) / fl.AMW(k);
    fl.F(k) = e.SMALLEST;
    if (s.CLOSETOBUBBLELINE) {
      fl.FV(k) = limited_part(part, e.SMALLEST);
      fl.FL(k) = fl.F(k) - fl.FV(k);
    } else {
      fl.FL(k) = limited_part(part, e.SMALLEST);
      fl.FV(k) = fl.F(k) - fl.FL(k);
    }
  }
}

// The call as it came, for the next flash.
void restore_call(const TargetSearch& s) {
  for (int i = 1; i <= fl.NC; ++i) fl.F(i) = s.FCOPY(i);
  fl.T = s.TEMPERATURE;
  fl.P = s.PRESSURE;
  fl.FRV = s.VAPFRACTION;
  fl.QSPEC = s.FEEDENTHALPY;
  fl.NCAL = flash_status::failed;
}

}  // namespace

// FLPQ3: the state of the feed at P with the total enthalpy QSPEC. Where a trace blocks the search near a phase
// boundary, the smallest feeds are taken out one by one and put back into the answer.
//
// Out      IFAIL  I4  0 found, 1 not: feed, target, temperature, pressure and fraction are then as they came
//          STR    message; blank on success without eliminations
// Shared   reads fl.NC, F, T, P, FRV, QSPEC, AMW; sets fl.T, FV, FL, FRV, NCAL, VLK, X1, Y, KSTART
// Status   fl.NCAL is flash_status::failed with IFAIL 1
// Reports  the messages of FLPQ2;
//          ".Warning: adiabatic flash only achieved by eliminating some components (FLPQ3)"
// Oddity   the boundary that counts is that at the temperature of the call, not at the one sought; near the dew
//          line too the components come back by the composition of the vapour
void FLPQ3(I4& IFAIL, Message& STR) {
  IFAIL = 0;
  TargetSearch& s = search;
  keep_call(s);
  locate(s, STR);
  take_bubble(s, STR);
  if (!search_target(s, STR)) {
    IFAIL = 1;
    restore_call(s);
    return;
  }
  put_back(s);
  if (s.SMALLCOUNT > 0)
    report(STR, ".Warning: adiabatic flash only achieved by eliminating some components (FLPQ3)");
  fl.QSPEC = s.FEEDENTHALPY;
}

}  // namespace talix
