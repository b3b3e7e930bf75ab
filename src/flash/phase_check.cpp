#include "flash/phase_check.h"

#include <string_view>

#include "fastprops/flash_record.h"
#include "flash/robust_split.h"

namespace talix {

namespace {

// A text of a flash that refuses its input names the calculation that is not made; all others tell of a
// search that did not end well, which the check may mend.
bool refuses_input(const Message& STR) {
  const std::string_view text = trimmed(STR);
  return text.find("no calculation") != std::string_view::npos ||
         text.find("no flash calculation") != std::string_view::npos;
}

void clear_flows() {
  for (int i = 1; i <= fl.NC; ++i) fl.FV(i) = fl.FL(i) = fl.FLS(i) = fl.Y(i) = fl.X1(i) = fl.X2(i) = 0.0F;
}

void store_one_phase(const RobustMixture& mixture, const RobustSplit& split) {
  const bool vapour = split.fraction > 0.5;
  FlashVec& flow = vapour ? fl.FV : fl.FL;
  FlashVec& fraction = vapour ? fl.Y : fl.X1;
  for (int i = 1; i <= mixture.n; ++i) {
    const int k = mixture.at(i);
    flow(k) = fl.F(k);
    fraction(k) = static_cast<R4>(mixture.z(i));
  }
  fl.FRV = vapour ? 1.0F : 0.0F;
}

// The smaller flow of a component is rounded, the other is what it leaves of the feed.
void store_two_phases(const RobustMixture& mixture, const RobustSplit& split) {
  FlashVec& lighter = split.two_liquids ? fl.FLS : fl.FV;
  FlashVec& lighter_fraction = split.two_liquids ? fl.X2 : fl.Y;
  for (int i = 1; i <= mixture.n; ++i) {
    const int k = mixture.at(i);
    const R8 feed = static_cast<R8>(fl.F(k));
    const R8 above = split.fraction * split.vapour.x(i) / mixture.z(i);
    const R8 below = (1.0 - split.fraction) * split.liquid.x(i) / mixture.z(i);
    if (above < below) {
      lighter(k) = static_cast<R4>(feed * above);
      fl.FL(k) = fl.F(k) - lighter(k);
    } else {
      fl.FL(k) = static_cast<R4>(feed * below);
      lighter(k) = fl.F(k) - fl.FL(k);
    }
    lighter_fraction(k) = static_cast<R4>(split.vapour.x(i));
    fl.X1(k) = static_cast<R4>(split.liquid.x(i));
  }
  fl.FRV = split.two_liquids ? 0.0F : static_cast<R4>(split.fraction);
}

}  // namespace

// store_split: a settled state into the flash record.
//
// Shared   reads fl.F; sets fl.T, P, FV, FL, FLS, Y, X1, X2, FRV, ZV, ZL, ZL2, NCAL
void store_split(const RobustMixture& mixture, const RobustSplit& split) {
  clear_flows();
  fl.T = static_cast<R4>(split.T);
  fl.P = static_cast<R4>(split.P);
  fl.NCAL = flash_status::fresh;
  fl.ZV = fl.ZL2 = static_cast<R4>(split.vapour.Z);
  fl.ZL = static_cast<R4>(split.liquid.Z);
  if (split.answer == Split::two_phases)
    store_two_phases(mixture, split);
  else
    store_one_phase(mixture, split);
}

// check_flash: the check behind the flash of fl.IFLASH.
//
// In, out  STR  of the flash, then of the check
// Shared   the flash record
void check_flash(Message& STR) {
  if (is_hard_failure(STR) && refuses_input(STR)) return;
  switch (fl.IFLASH) {
    case flash_type::isothermal:
    case flash_type::isothermal_fast:
      check_isothermal(STR);
      return;
    case flash_type::bubble_pressure:
    case flash_type::bubble_temperature:
    case flash_type::dew_pressure:
    case flash_type::dew_temperature:
    case flash_type::pressure_at_fraction:
    case flash_type::temperature_at_fraction:
      grant_engine_calls();
      check_saturation(STR);
      return;
    case flash_type::adiabatic:
    case flash_type::adiabatic_nested:
      grant_engine_calls();
      check_enthalpy_flash(STR);
      return;
    default:
      return;
  }
}

// The budget of a check: every loop of the robust solvers ends at the latest here.
void grant_engine_calls() { set_engine_budget(kCheckedEngineCalls); }

}  // namespace talix
