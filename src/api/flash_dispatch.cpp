#include "api/flash_dispatch.h"

#include "fastprops/flash_record.h"
#include "flash/flpq.h"
#include "flash/flpq2.h"
#include "flash/flpq3.h"
#include "flash/flpst.h"
#include "flash/fltp.h"
#include "flash/fltp3.h"
#include "flash/flvp.h"
#include "flash/flvt.h"
#include "flash/phase_check.h"

namespace talix {

namespace {

// Largest total feed, as in the flashes [mol].
constexpr R4 kLargestFeed = 1.0E+9F;

// Vapour fraction of a dew point while a second liquid is sought, so that both liquids keep a share.
constexpr R4 kDewWithSecondLiquid = 0.999999F;

bool refuse(Message& STR, std::string_view text) {
  report(STR, text);
  return false;
}

R4 dew_fraction() { return fl.NL2KEY > 0 ? kDewWithSecondLiquid : 1.0F; }

// A failed search for start values only means a poorer start: its code and its text are dropped.
void find_start(I4 MODE, Message& STR) {
  I4 ignored = 0;
  FLPST(MODE, ignored, STR);
  STR.blank();
}

// The enthalpy search, and the nested one when it gives up.
void adiabatic(Message& STR) {
  I4 IFAIL = 0;
  FLPQ3(IFAIL, STR);
  if (IFAIL == 0) return;
  STR.blank();
  FLPQ(STR);
}

// The properties of the feed as a fictitious mixture: the whole feed stands in both phases.
void take_feed_as_phases() {
  fl.FRV = 0.5F;
  for (int i = 1; i <= fl.NC; ++i) {
    fl.FV(i) = fl.F(i);
    fl.Y(i) = fl.FL(i) = fl.X1(i) = fl.SF(i);
    fl.X2(i) = fl.FLS(i) = 0.0F;
  }
}

// The same in front of the check, which mends what traces do to the search: without the up to fifty searches on ever
// shorter feeds, so that the engine calls stay bounded.
void adiabatic_to_check(Message& STR) {
  R4 FOUT = 0.0F;
  I4 IFAIL = 0;
  fl.NCAL = flash_status::fresh;
  FLPQ2(FOUT, IFAIL, STR);
  if (IFAIL == 0 && !is_hard_failure(STR)) return;
  STR.blank();
  fl.T = fl.T_ASKED;
  fl.FRV = fl.FRV_ASKED;
  fl.NCAL = flash_status::failed;
  FLPQ(STR);
}

// False when the code is none of a flash.
bool flash_of_code(Message& STR) {
  switch (fl.IFLASH) {
    case flash_type::bubble_pressure:
      fl.FRV = 0.0F;
      find_start(start_mode::bubble_pressure, STR);
      FLVT(STR);
      return true;
    case flash_type::bubble_temperature:
      fl.FRV = 0.0F;
      find_start(start_mode::bubble_temperature, STR);
      FLVP(STR);
      return true;
    case flash_type::dew_pressure:
      fl.FRV = dew_fraction();
      FLVT(STR);
      return true;
    case flash_type::dew_temperature:
      fl.FRV = dew_fraction();
      find_start(start_mode::dew_temperature, STR);
      FLVP(STR);
      return true;
    case flash_type::isothermal:
      FLTP(STR);
      return true;
    case flash_type::pressure_at_fraction:
      FLVT(STR);
      return true;
    case flash_type::temperature_at_fraction:
      FLVP(STR);
      return true;
    case flash_type::adiabatic:
      if (fl.UNVERIFIED)
        adiabatic(STR);
      else
        adiabatic_to_check(STR);
      return true;
    case flash_type::adiabatic_nested:
      FLPQ(STR);
      return true;
    case flash_type::isothermal_fast:
      FLTP3(STR);
      return true;
    default:
      return false;
  }
}

// A second liquid that the check found in the call before; the flashes without a key component leave it as it is.
void forget_second_liquid() {
  fl.FLS.fill(0.0F);
  fl.X2.fill(0.0F);
}

bool is_flash() {
  return fl.IFLASH >= flash_type::bubble_pressure && fl.IFLASH <= flash_type::isothermal_fast;
}

bool is_isothermal() {
  return fl.IFLASH == flash_type::isothermal || fl.IFLASH == flash_type::isothermal_fast;
}

}  // namespace

// The flash of a call, and the check behind it unless fl.UNVERIFIED.
//
// Out      STR  message of the flash; false when it is a failure without results
// Shared   as the flashes; fl.FRV is set before bubble and dew points
// Reports  " Pressure not above 0, no calculation (TALIX)"            codes without a flash
//          " Total feed rate greater than 1.0E+9, no calculation (TALIX)"  the same
//          " Feed too small to form a phase, no calculation (TALIX)"  2.1E-8 mol or less
// Oddity   an unknown code runs no flash and keeps the flows of the call before. The dew pressure starts from the
//          host's pressure, without start values of its own.
bool run_flash(Message& STR) {
  const bool checked = !fl.UNVERIFIED;
  if (is_flash()) forget_second_liquid();
  if (checked && is_isothermal() && settle_one_phase()) return true;
  if (!flash_of_code(STR)) {
    // Properties without a flash need a pressure and a feed that a flash would take all the same.
    if (!(fl.P > 0.0F)) return refuse(STR, " Pressure not above 0, no calculation (TALIX)");
    if (!(fl.FT <= kLargestFeed))
      return refuse(STR, " Total feed rate greater than 1.0E+9, no calculation (TALIX)");
    if (fl.IFLASH == flash_type::feed_properties) take_feed_as_phases();
    return true;
  }
  if (checked) check_flash(STR);
  if (is_hard_failure(STR)) return false;
  if (!(fl.FT > kPhaseLimit)) return refuse(STR, " Feed too small to form a phase, no calculation (TALIX)");
  return true;
}

}  // namespace talix
