#include "api/flash_results.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "api/phase_properties.h"
#include "fastprops/small_arrays.h"

namespace talix {

namespace {

// One phase on the basis of the host.
struct PhaseBasis {
  FlashVec flow;
  FlashVec fraction;
  R4 total;
};

// The mass basis; kept apart so that the mole values stay for the next call.
struct MassBasis {
  PhaseBasis vapour, liquid, second;
};
constinit MassBasis mass{};

struct Columns {
  PropertyColumn OUTG, OUTL, OUTL2;
};

bool absent(R4 total) { return !(total > kPhaseLimit); }

// Flashes at a given fraction keep the composition of the phase that is about to form.
bool drops_absent_phases() { return fl.IFLASH >= flash_type::isothermal; }

void form_totals_and_fractions() {
  fl.FTV = TELOP(fl.NC, fl.FV);
  fl.FTL = TELOP(fl.NC, fl.FL);
  fl.FTLS = TELOP(fl.NC, fl.FLS);
  if (!absent(fl.FTV)) MOLFR(fl.NC, fl.FTV, fl.FV, fl.Y);
  if (!absent(fl.FTL)) MOLFR(fl.NC, fl.FTL, fl.FL, fl.X1);
  if (!absent(fl.FTLS)) MOLFR(fl.NC, fl.FTLS, fl.FLS, fl.X2);
}

void clear_absent(FlashVec& Y, FlashVec& X1, FlashVec& X2) {
  if (absent(fl.FTLS) && fl.NL2KEY == 0) ZERO(fl.NC, X2);
  if (!drops_absent_phases()) return;
  if (absent(fl.FTV)) ZERO(fl.NC, Y);
  if (absent(fl.FTL)) ZERO(fl.NC, X1);
  if (absent(fl.FTLS)) ZERO(fl.NC, X2);
}

void move_phase(R4& total_from, FlashVec& flow_from, FlashVec& x_from, R4& total_to, FlashVec& flow_to,
                FlashVec& x_to) {
  total_to = total_from;
  total_from = 0.0F;
  for (int i = 1; i <= fl.NC; ++i) {
    flow_to(i) = flow_from(i);
    flow_from(i) = 0.0F;
    x_to(i) = x_from(i);
    x_from(i) = 0.0F;
  }
}

// The check has told the phases of a saturation point and two liquids apart: the identity of the one with the flow,
// which is that of the other near a critical point, does not count.
bool phases_are_told() {
  if (fl.UNVERIFIED) return false;
  return fl.IFLASH < flash_type::isothermal || fl.IFLASH == flash_type::pressure_at_fraction ||
         fl.IFLASH == flash_type::temperature_at_fraction || !absent(fl.FTLS);
}

// A single phase that the engine identifies as the other one changes its columns.
void settle_identity() {
  if (phases_are_told()) return;
  if (!absent(fl.FTV) && absent(fl.FTL)) {
    if (phase_identity(flash_phase::vapour, fl.Y) != flash_phase::liquid) return;
    move_phase(fl.FTV, fl.FV, fl.Y, fl.FTL, fl.FL, fl.X1);
    fl.FRV = 0.0F;
  } else if (!absent(fl.FTL) && absent(fl.FTV)) {
    if (phase_identity(flash_phase::liquid, fl.X1) != flash_phase::vapour) return;
    move_phase(fl.FTL, fl.FL, fl.X1, fl.FTV, fl.FV, fl.Y);
    fl.FRV = 1.0F;
  }
}

void write_flows(ScalTable& SCAL, const FlashVec& FV, const FlashVec& FL, const FlashVec& FLS,
                 const FlashVec& Y, const FlashVec& X1, const FlashVec& X2) {
  for (int i = 1; i <= fl.NC; ++i) {
    SCAL(i, 3) = FV(i);
    SCAL(i, 4) = FL(i);
    SCAL(i, 5) = FLS(i);
    SCAL(i, 6) = Y(i);
    SCAL(i, 7) = X1(i);
    SCAL(i, 8) = X2(i);
  }
}

// Row NC+1, columns 3 to 8; FEED is the total that the fractions refer to.
void write_totals(ScalTable& SCAL, R4 FTV, R4 FTL, R4 FTLS, R4 FEED) {
  const int row = fl.NC + 1;
  SCAL(row, 3) = FTV;
  SCAL(row, 4) = FTL;
  SCAL(row, 5) = FTLS;
  SCAL(row, 6) = FTV / FEED;
  SCAL(row, 7) = FTL / FEED;
  SCAL(row, 8) = FTLS / FEED;
}

void write_mole_basis(ScalTable& SCAL) {
  write_flows(SCAL, fl.FV, fl.FL, fl.FLS, fl.Y, fl.X1, fl.X2);
  write_totals(SCAL, fl.FTV, fl.FTL, fl.FTLS, fl.FT);
}

void write_mass_basis(ScalTable& SCAL) {
  WFR(fl.NC, fl.AMW, fl.FV, mass.vapour.fraction, mass.vapour.flow, mass.vapour.total);
  WFR(fl.NC, fl.AMW, fl.FL, mass.liquid.fraction, mass.liquid.flow, mass.liquid.total);
  WFR(fl.NC, fl.AMW, fl.FLS, mass.second.fraction, mass.second.flow, mass.second.total);
  clear_absent(mass.vapour.fraction, mass.liquid.fraction, mass.second.fraction);
  write_flows(SCAL, mass.vapour.flow, mass.liquid.flow, mass.second.flow, mass.vapour.fraction,
              mass.liquid.fraction, mass.second.fraction);
  write_totals(SCAL, mass.vapour.total, mass.liquid.total, mass.second.total, fl.SFT);
}

R4 molar_vapour_fraction() {
  if (absent(fl.FTV)) return 0.0F;
  if (absent(fl.FTL)) return 1.0F;
  return fl.FTV / (fl.FTV + fl.FTL + fl.FTLS);
}

// Flashes at a given fraction give the properties of the phase about to form too; a phase without any flow or
// without a composition has none.
bool wants_properties(R4 total, const FlashVec& composition) {
  return total > 0.0F && (!absent(total) || !drops_absent_phases()) && TELOP(fl.NC, composition) > 0.0F;
}

// The compressibility factor of a vapour that is absent is that of an older state: without a vapour it counts as 0, so
// that the surface tension depends on this call alone.
void form_properties(Columns& columns) {
  const bool vapour = wants_properties(fl.FTV, fl.FV);
  if (vapour) {
    MOLFR(fl.NC, fl.FTV, fl.FV, fl.Y);
    phase_properties(flash_phase::vapour, fl.Y, fl.ZV, columns.OUTG);
    vapour_transport(fl.Y, columns.OUTG);
  }
  const R4 ZV = vapour ? fl.ZV : 0.0F;
  if (wants_properties(fl.FTL, fl.X1)) {
    phase_properties(flash_phase::liquid, fl.X1, fl.ZL, columns.OUTL);
    liquid_transport(fl.X1, ZV, fl.ZL, columns.OUTL);
  }
  if (!absent(fl.FTLS)) {
    phase_properties(flash_phase::liquid, fl.X2, fl.ZL2, columns.OUTL2);
    liquid_transport(fl.X2, ZV, fl.ZL2, columns.OUTL2);
  }
}

// Rows NC+1 and NC+2: total feed and enthalpies, with mole flows on both bases.
void write_enthalpies(ScalTable& SCAL, const Columns& columns) {
  const R4 QFTL = fl.FTL * columns.OUTL(property::enthalpy) / 1000.0F;
  const R4 QFTLS = fl.FTLS * columns.OUTL2(property::enthalpy) / 1000.0F;
  const R4 QFTV = fl.FTV * columns.OUTG(property::enthalpy) / 1000.0F;
  fl.SF(fl.NC + 1) = fl.SFT;
  fl.SF(fl.NC + 2) = QFTL + QFTLS + QFTV;
  SCAL(fl.NC + 1, 2) = fl.SFT;
  SCAL(fl.NC + 2, 2) = fl.SF(fl.NC + 2);
  SCAL(fl.NC + 2, 3) = QFTV;
  SCAL(fl.NC + 2, 4) = QFTL;
  SCAL(fl.NC + 2, 5) = QFTLS;
}

void write_properties(PropertyTable& TPROPS, const Columns& columns) {
  for (int i = 1; i <= kPropertyRows; ++i) {
    TPROPS(i, 1) = columns.OUTG(i);
    TPROPS(i, 2) = columns.OUTL(i);
    TPROPS(i, 3) = columns.OUTL2(i);
  }
}

// A real in a field of ten positions with four decimals; a value that does not fit fills the field with stars.
struct RealField {
  char text[11];
};
RealField real_field(R4 value) {
  RealField field{};
  char digits[64];
  const int length = std::snprintf(digits, sizeof digits, "%10.4f", static_cast<R8>(value));
  if (length != 10 || !std::isfinite(value))
    std::memset(field.text, '*', 10);
  else
    std::memcpy(field.text, digits, 10);
  return field;
}

// Behind a check the target may lie near 0, where 32-bit flows and enthalpies cannot meet it to a part of itself: the
// miss counts against RT of the feed there.
R4 scale_of_target() {
  if (fl.UNVERIFIED) return fl.QSPEC;
  return std::copysign(std::max(std::fabs(fl.QSPEC), fl.FT * kFlashGasConstant * fl.T), fl.QSPEC);
}

// The adiabatic flash by the enthalpy search tells what is missing from its target; the results stand.
void check_enthalpy(Message& STR) {
  constexpr R4 kEnthalpyTolerance = 1.0E-4F;
  const R4 D = (fl.QSPEC / 1000.0F - fl.SF(fl.NC + 2)) * 1000.0F / scale_of_target();
  if (!(std::fabs(D) > kEnthalpyTolerance)) return;
  char text[80];
  const int length = std::snprintf(text, sizeof text, " Adiabatic flash has changed enthalpy by %s%% (FLPQ3)",
                                   real_field(100.0F * D).text);
  report(STR, {text, static_cast<std::size_t>(length)});
}

}  // namespace

// Result tables of a call whose flash has ended.
//
// In       UNIT    M for the mole basis, anything else for mass
// Out      T, P, FRV, SCAL, TPROPS, STR as at the entry call
// Shared   reads fl.FV, FL, FLS; sets fl.Y, X1, X2, FTV, FTL, FTLS, FRV, ZV, ZL, ZL2, SF
// Reports  " Unable to find accurate specific heat, no calculation (TALIX)", not echoed and not counted, when
//          the vapour's heat capacity at constant volume is negative; the tables stay as written
//          " Adiabatic flash has changed enthalpy by ...% (FLPQ3)", code flash_type::adiabatic; the tables stay as
//          written. Behind a check it is a part of RT of the feed where the target is smaller, and a target of 0 has
//          an answer
void assemble_results(char UNIT, R4& T, R4& P, R4& FRV, ScalTable& SCAL, PropertyTable& TPROPS,
                      Message& STR) {
  form_totals_and_fractions();
  clear_absent(fl.Y, fl.X1, fl.X2);
  settle_identity();
  fl.FRV = fl.FTV / fl.FT;
  if (UNIT == 'M')
    write_mole_basis(SCAL);
  else
    write_mass_basis(SCAL);
  P = fl.P;
  T = fl.T - fl.TZERO;
  FRV = molar_vapour_fraction();

  Columns columns{};
  form_properties(columns);
  write_enthalpies(SCAL, columns);
  write_properties(TPROPS, columns);
  if (TPROPS(property::heat_capacity_v, 1) < 0.0F)
    STR = " Unable to find accurate specific heat, no calculation (TALIX)";
  if (fl.IFLASH == flash_type::adiabatic) check_enthalpy(STR);
}

}  // namespace talix
