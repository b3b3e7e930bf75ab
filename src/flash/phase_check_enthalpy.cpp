#include <algorithm>
#include <cmath>
#include <cstdio>

#include "engine/codes.h"
#include "fastprops/flash_record.h"
#include "fastprops/small_arrays.h"
#include "flash/phase_check.h"
#include "flash/robust_enthalpy.h"

namespace talix {

namespace {

constexpr R8 kSmallestFraction = 1e-36;  // in place of what a 32-bit real cannot hold
constexpr R8 kJoulePerKilojoule = 1000.0;
constexpr int kRoom = 111;

constinit RobustMixture mixture{};
constinit EnthalpyResult result{};
constinit CompVec lnK{};

// The K-values of the flash, where it ended with two phases.
bool has_start_values() {
  const R8 FTV = static_cast<R8>(TELOP(fl.NC, fl.FV));
  const R8 FTL = static_cast<R8>(TELOP(fl.NC, fl.FL));
  if (mixture.n < 2 || !(FTV > static_cast<R8>(kPhaseLimit)) || !(FTL > static_cast<R8>(kPhaseLimit)))
    return false;
  for (int i = 1; i <= mixture.n; ++i) {
    const int k = mixture.at(i);
    const R8 y = std::max(static_cast<R8>(fl.FV(k)) / FTV, kSmallestFraction);
    const R8 x = std::max(static_cast<R8>(fl.FL(k)) / FTL, kSmallestFraction);
    lnK(i) = std::log(y / x);
    if (!std::isfinite(lnK(i))) return false;
  }
  return true;
}

// The search starts from the answer of the flash where there is one, and ends there where it is right.
void solve(bool answered, R8 target) {
  const bool state = answered && std::isfinite(fl.T) && fl.T > 0.0F && fl.T <= kMaxTemperature;
  const bool split = state && has_start_values();
  robust_enthalpy(mixture, static_cast<R8>(fl.P), target, static_cast<R8>(state ? fl.T : fl.T_ASKED),
                  split ? &lnK : nullptr, result);
}

void tell_range(R8 target, Message& STR) {
  char text[kRoom];
  const int length = std::snprintf(
      text, kRoom, " Enthalpy of %.6g kJ/mol out of reach at %.6g bar: from %.6g to %.6g kJ/mol (TALIX)",
      target / kJoulePerKilojoule, static_cast<R8>(fl.P), result.lowest / kJoulePerKilojoule,
      result.highest / kJoulePerKilojoule);
  report(STR, {text, static_cast<std::size_t>(std::min(length, kRoom - 1))});
}

void tell_jump(R8 target, Message& STR) {
  char text[kRoom];
  const int length = std::snprintf(
      text, kRoom, ". Enthalpy missed by %.4g kJ/mol: a third phase is left out at %.2f K (TALIX)",
      (target - result.enthalpy) / kJoulePerKilojoule, result.split.T);
  report(STR, {text, static_cast<std::size_t>(std::min(length, kRoom - 1))});
}

void tell_unsettled(Message& STR) {
  char text[kRoom];
  const int length = std::snprintf(text, kRoom, " Adiabatic flash could not be settled at %.6g bar (TALIX)",
                                   static_cast<R8>(fl.P));
  report(STR, {text, static_cast<std::size_t>(std::min(length, kRoom - 1))});
}

}  // namespace

// check_enthalpy_flash: the state at the pressure and enthalpy of the call behind codes 8 and 9.
//
// In, out  STR  message of the flash; blank, a warning or a failure afterwards
// Shared   reads fl.T_ASKED, P, QSPEC, IFLASH, the feed and the state and flows of the flash; sets the results of the
//          flash record
// Reports  ". A third phase, liquid, would lower the Gibbs energy further (TALIX)", or vapour
//          ". Enthalpy missed by ... kJ/mol: a third phase is left out at ... K (TALIX)": no two phases have the
//          enthalpy; the nearest state stands
//          " Enthalpy of ... kJ/mol out of reach at ... bar: from ... to ... kJ/mol (TALIX)"
//          " Adiabatic flash could not be settled at ... bar (TALIX)"
//          " Target enthalpy is not a number, no calculation (TALIX)"
// Oddity   the enthalpies of the texts are those of a mole of feed; a feed too small for a phase keeps its text
void check_enthalpy_flash(Message& STR) {
  if (!(fl.FT > kPhaseLimit)) return;
  const bool answered = !is_hard_failure(STR);
  STR.blank();
  if (!std::isfinite(fl.QSPEC)) {
    report(STR, " Target enthalpy is not a number, no calculation (TALIX)");
    return;
  }
  gather_mixture(mixture);
  const R8 target = static_cast<R8>(fl.QSPEC) / mixture.total;
  solve(answered, target);
  switch (result.answer) {
    case EnthalpyAnswer::found:
    case EnthalpyAnswer::jump:
      store_split(mixture, result.split);
      fl.NCAL = flash_status::fresh;
      if (result.answer == EnthalpyAnswer::jump)
        tell_jump(target, STR);
      else if (result.split.answer == Split::two_phases && result.split.third_phase)
        report(STR, result.split.third_root == phase::vapour
                        ? ". A third phase, vapour, would lower the Gibbs energy further (TALIX)"
                        : ". A third phase, liquid, would lower the Gibbs energy further (TALIX)");
      return;
    case EnthalpyAnswer::below_range:
    case EnthalpyAnswer::above_range:
      tell_range(target, STR);
      return;
    case EnthalpyAnswer::unsettled:
      tell_unsettled(STR);
      return;
  }
}

}  // namespace talix
