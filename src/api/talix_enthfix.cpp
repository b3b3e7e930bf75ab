#include "api/talix_enthfix.h"

#include <cmath>
#include <cstdio>
#include <string_view>

#include "fastprops/flash_message.h"

namespace talix {

namespace {

constexpr R4 kEnthalpyTolerance = 1.0E-4F;  // of the target
constexpr R4 kNoVapour = 1.0E-4F;  // fraction below which an isothermal flash tells no vapour composition
constexpr int kMaxEliminations = kMaxComponents;
constexpr std::string_view kChangedEnthalpy = " Adiabatic flash has changed enthalpy by ";

// One component taken out of the feed.
struct Elimination {
  int KSMALL, LLARGE;  // the component and the largest of the feed at that time
  R4 SMALLEST;         // its feed on the basis of the host
  R4 ENTHALPY;         // its share of the target by mass
};

struct EntryTables {
  ScalTable SCAL;
  PropertyTable TPROPS;
};

struct EnthalpyFix {
  I4 NC;
  char UNIT;
  R4 T, P, FRV;       // of the host [C], [bar], [-]
  R4 FEEDENTHALPY;    // target of the host
  R4 LATESTENTHALPY;  // target of the reduced feed
  R4 LATESTMASS;      // reduced feed [g]
  bool VAPOURFRACTIONSFOUND;
  FlashVec VAPMOLEF;  // vapour mole fractions over a common factor
  int SMALLCOUNT;
  Vec<Elimination, kMaxEliminations> eliminated;
};

constinit EntryTables scratch{};
constinit EnthalpyFix fix{};

// Moles to the basis of the feed and to that of the results, which a third letter makes different.
R4 feed_factor(char UNIT, int i) { return UNIT == 'W' ? fl.AMW(i) : 1.0F; }
R4 result_factor(char UNIT, int i) { return UNIT == 'M' ? 1.0F : fl.AMW(i); }

void call_talix(I4 IFLASH, EnthalpyFix& s, R4& T, R4& P, R4& FRV, char& UNIT, ScalTable& SCAL,
                PropertyTable& TPROPS, Message& STR) {
  T = s.T;
  P = s.P;
  FRV = s.FRV;
  TALIX(&s.NC, &T, &P, &FRV, &UNIT, 1, &IFLASH, &SCAL, &TPROPS, STR.c, Message::extent);
  s.UNIT = UNIT;
}

bool has_results(const Message& STR) {
  return !is_hard_failure(STR) || STR.view().substr(0, kChangedEnthalpy.size()) == kChangedEnthalpy;
}

// Vapour composition at the bubble point or, where there is none, at the state of the call.
void learn_vapour(EnthalpyFix& s, char& UNIT, const ScalTable& SCAL) {
  R4 T = 0.0F;
  R4 P = 0.0F;
  R4 FRV = 0.0F;
  Message STR{};
  scratch.SCAL = SCAL;
  call_talix(flash_type::bubble_pressure, s, T, P, FRV, UNIT, scratch.SCAL, scratch.TPROPS, STR);
  s.VAPOURFRACTIONSFOUND = !is_hard_failure(STR);
  if (!s.VAPOURFRACTIONSFOUND) {
    scratch.SCAL = SCAL;
    call_talix(flash_type::isothermal, s, T, P, FRV, UNIT, scratch.SCAL, scratch.TPROPS, STR);
    s.VAPOURFRACTIONSFOUND = !is_hard_failure(STR) && FRV >= kNoVapour;
  }
  for (int i = 1; i <= s.NC; ++i) s.VAPMOLEF(i) = scratch.SCAL(i, 6) / result_factor(s.UNIT, i);
}

// Takes the smallest feed out, with its share by mass of the target; false when one component is left.
bool eliminate(EnthalpyFix& s, ScalTable& SCAL) {
  Elimination e{};
  R4 largest = 0.0F;
  for (int i = 1; i <= s.NC; ++i) {
    const R4 feed = SCAL(i, 2);
    if (!(feed > 0.0F)) continue;
    if (e.KSMALL == 0 || feed < e.SMALLEST) {
      e.KSMALL = i;
      e.SMALLEST = feed;
    }
    if (feed > largest) {
      e.LLARGE = i;
      largest = feed;
    }
  }
  if (e.KSMALL == e.LLARGE) return false;
  const R4 mass = e.SMALLEST / feed_factor(s.UNIT, e.KSMALL) * fl.AMW(e.KSMALL);
  e.ENTHALPY = s.LATESTENTHALPY * mass / s.LATESTMASS;
  s.LATESTENTHALPY = s.LATESTENTHALPY - e.ENTHALPY;
  s.LATESTMASS = s.LATESTMASS - mass;
  s.SMALLCOUNT = s.SMALLCOUNT + 1;
  s.eliminated(s.SMALLCOUNT) = e;
  SCAL(e.KSMALL, 2) = 0.0F;
  return true;
}

R4 feed_mass(const EnthalpyFix& s, const ScalTable& SCAL) {
  R4 sum = 0.0F;
  for (int i = 1; i <= s.NC; ++i) sum += SCAL(i, 2) / feed_factor(s.UNIT, i) * fl.AMW(i);
  return sum;
}

// Flashes ever smaller feeds to their share of the target; false when a flash gives no results.
bool search_target(EnthalpyFix& s, R4& T, R4& P, R4& FRV, char& UNIT, ScalTable& SCAL, PropertyTable& TPROPS,
                   Message& STR) {
  s.LATESTENTHALPY = s.FEEDENTHALPY;
  s.LATESTMASS = feed_mass(s, SCAL);
  s.SMALLCOUNT = 0;
  for (int J = 1; J <= kMaxEliminations; ++J) {
    SCAL(s.NC + 2, 2) = s.LATESTENTHALPY;
    call_talix(flash_type::adiabatic, s, T, P, FRV, UNIT, SCAL, TPROPS, STR);
    if (!has_results(STR)) return false;
    const R4 gap = (SCAL(s.NC + 2, 2) - s.LATESTENTHALPY) / s.LATESTENTHALPY;
    if (std::fabs(gap) <= kEnthalpyTolerance) return true;
    if (!s.VAPOURFRACTIONSFOUND || !eliminate(s, SCAL)) return true;
  }
  return true;
}

// Feed and target of the host, after a flash without results.
void put_feed_back(const EnthalpyFix& s, ScalTable& SCAL) {
  for (int J = 1; J <= s.SMALLCOUNT; ++J) SCAL(s.eliminated(J).KSMALL, 2) = s.eliminated(J).SMALLEST;
  SCAL(s.NC + 2, 2) = s.FEEDENTHALPY;
}

// A component comes back to the vapour by its ratio to the largest one, the rest of it to the liquid.
void put_back(const EnthalpyFix& s, const Elimination& e, ScalTable& SCAL) {
  const int k = e.KSMALL;
  const int l = e.LLARGE;
  const R4 moles = e.SMALLEST / feed_factor(s.UNIT, k);
  const R4 ratio = s.VAPMOLEF(k) / s.VAPMOLEF(l);
  R4 EVAP = SCAL(l, 3) / result_factor(s.UNIT, l) * ratio;
  if (!(EVAP < moles)) EVAP = moles;
  const R4 share = EVAP / moles;
  SCAL(k, 2) = e.SMALLEST;
  SCAL(k, 3) = EVAP * result_factor(s.UNIT, k);
  SCAL(k, 4) = (moles - EVAP) * result_factor(s.UNIT, k);
  SCAL(s.NC + 2, 2) += e.ENTHALPY;
  SCAL(s.NC + 2, 3) += e.ENTHALPY * share;
  SCAL(s.NC + 2, 4) += e.ENTHALPY * (1.0F - share);
}

// Totals, compositions and fractions of the completed flows, and the mole fraction of vapour.
void renew_totals(const EnthalpyFix& s, ScalTable& SCAL, R4& FRV) {
  const int row = s.NC + 1;
  R4 vapour_moles = 0.0F;
  R4 moles = 0.0F;
  for (int column = 2; column <= 5; ++column) SCAL(row, column) = 0.0F;
  for (int i = 1; i <= s.NC; ++i) {
    for (int column = 2; column <= 5; ++column) SCAL(row, column) += SCAL(i, column);
    vapour_moles += SCAL(i, 3) / result_factor(s.UNIT, i);
    moles += (SCAL(i, 3) + SCAL(i, 4) + SCAL(i, 5)) / result_factor(s.UNIT, i);
  }
  for (int column = 3; column <= 5; ++column) {
    const R4 total = SCAL(row, column);
    for (int i = 1; i <= s.NC; ++i) SCAL(i, column + 3) = total > 0.0F ? SCAL(i, column) / total : 0.0F;
    SCAL(row, column + 3) = total / SCAL(row, 2);
  }
  FRV = vapour_moles / moles;
}

// What is missing from the target of the host, as a message.
void check_enthalpy(const EnthalpyFix& s, const ScalTable& SCAL, Message& STR) {
  const R4 D = (s.FEEDENTHALPY - SCAL(s.NC + 2, 2)) / s.FEEDENTHALPY;
  if (!(std::fabs(D) > kEnthalpyTolerance)) return;
  char digits[64];
  const int length = std::snprintf(digits, sizeof digits, "%10.4f", static_cast<R8>(100.0F * D));
  const std::string_view field = length == 10 && std::isfinite(D) ? digits : "**********";
  char text[Message::extent];
  const int end =
      std::snprintf(text, sizeof text, "%.*s%.10s%% (TALIXEn)", static_cast<int>(kChangedEnthalpy.size()),
                    kChangedEnthalpy.data(), field.data());
  report(STR, {text, static_cast<std::size_t>(end)});
}

void hand_back(const Message& STR, char* host, I4 length) {
  if (host == nullptr) return;
  for (I4 i = 0; i < length; ++i) host[i] = i < Message::extent ? STR(i + 1) : ' ';
}

}  // namespace

// TALIXENTHFIX: TALIX, but that an adiabatic flash (code 8) which misses its target is repeated with ever fewer
// components, the smallest feeds taken out first; these come back into the results.
//
// In, out  as TALIX
// Status   STR as TALIX
// Reports  as TALIX;
//          ".Warning: adiabatic flash only achieved by eliminating some components (TALIXEn)";
//          " Adiabatic flash has changed enthalpy by ...% (TALIXEn)", the tables are written
// Oddity   the properties in TPROPS are those of the reduced feed; unlike FLPQ3, components of any size are taken
//          out
void TALIXENTHFIX(I4* NC, R4* T, R4* P, R4* FRV, char* UNIT, I4 /*UNIT_LENGTH*/, I4* IFLASH, ScalTable* SCAL,
                  PropertyTable* TPROPS, char* STR, I4 STR_LENGTH) {
  const bool complete = NC != nullptr && T != nullptr && P != nullptr && FRV != nullptr && UNIT != nullptr &&
                        IFLASH != nullptr && SCAL != nullptr && TPROPS != nullptr;
  if (!complete || *IFLASH != flash_type::adiabatic || *NC < 1 || *NC > kMaxComponents) {
    TALIX(NC, T, P, FRV, UNIT, 1, IFLASH, SCAL, TPROPS, STR, STR_LENGTH);
    return;
  }
  EnthalpyFix& s = fix;
  s.NC = *NC;
  s.T = *T;
  s.P = *P;
  s.FRV = *FRV;
  s.FEEDENTHALPY = (*SCAL)(s.NC + 2, 2);
  learn_vapour(s, *UNIT, *SCAL);
  Message message{};
  message.blank();
  if (!search_target(s, *T, *P, *FRV, *UNIT, *SCAL, *TPROPS, message)) {
    put_feed_back(s, *SCAL);
    *T = s.T;
    *P = s.P;
    *FRV = s.FRV;
  } else {
    if (s.SMALLCOUNT > 0) {
      for (int J = 1; J <= s.SMALLCOUNT; ++J) put_back(s, s.eliminated(J), *SCAL);
      renew_totals(s, *SCAL, *FRV);
      report(message, ".Warning: adiabatic flash only achieved by eliminating some components (TALIXEn)");
    }
    check_enthalpy(s, *SCAL, message);
  }
  hand_back(message, STR, STR_LENGTH);
}

}  // namespace talix
