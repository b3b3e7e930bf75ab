#include "flash/flpq.h"

#include <algorithm>
#include <cmath>

#include "fastprops/enthal.h"
#include "fastprops/error_matrix.h"
#include "fastprops/small_arrays.h"
#include "fastprops/try_step.h"
#include "flash/fltp.h"
#include "flash/flvp.h"

namespace talix {

namespace {

constexpr R4 kMaxFlow = 1.0E+9F;          // [mol]
constexpr R4 kStartTemperature = 300.0F;  // [K], where none is given
constexpr R4 kLowestTemperature = 1.0F;   // [K]
constexpr R4 kSlope = 200.0F;             // rule of thumb [J/(mol K)]
constexpr R4 kVaporisation = 50000.0F;    // rule of thumb [J/mol]
constexpr R4 kMaxStep = 50.0F;            // [K]
constexpr R4 kSmallStep = 0.001F;         // [K], or of the fraction
constexpr R4 kBalance = 2.0F;             // [J/mol]
constexpr I4 kCrawlSteps = 5;             // from here on a crawling temperature is given up
constexpr I4 kStepsOfBlock = 20;
constexpr I4 kMaxSteps = 80;

namespace event {
constexpr int flow = 1;
constexpr int temperature = 2;
constexpr int pressure = 3;
constexpr int trouble_temperature = 4;
constexpr int trouble_fraction = 5;
constexpr int no_convergence = 6;
}  // namespace event

enum class Next { step, fraction_search, stop };

struct AdiabaticState {
  I4 NCAL;        // pass code handed to the inner flash
  I4 NERR;        // worst status so far
  I4 NA2;         // steps of the running search
  R4 FT;          // total feed [mol]
  R4 FTV;         // total vapour of the last evaluation [mol]
  R4 QCAL;        // enthalpy of the last evaluation [flow x J/mol]
  R4 DELT;        // last step of the running search
  R4 DUM1, DUM2;  // last plain difference and limit of the acceleration
};

// Results of ENTHAL that the balance does not need.
struct UnusedResults {
  FugacityVector FUG, FUGTL, FUGPL;
  FugacityMatrix FUGN;
  FlashVec HN;
};
constinit UnusedResults unused{};

bool refuse(Message& STR, std::string_view text, int number) {
  mark_error(error_row::FLPQ, number);
  report(STR, text);
  return false;
}

bool check_input(AdiabaticState& s, Message& STR) {
  s.FT = TELOP(fl.NC, fl.F);
  if (!(s.FT > kFlowFloor) || s.FT > kMaxFlow)
    return refuse(STR, " Flash flow not between 1.0E-9 and 1.0E+9, no calculation (FLPQ)", event::flow);
  if (fl.T == 0.0F) fl.T = kStartTemperature;
  if (!(fl.T >= kLowestTemperature) || fl.T > kMaxTemperature)
    return refuse(STR, " Temperature not between 0 and 1773 K, no flash calculation (FLPQ)",
                  event::temperature);
  if (!(fl.P > 0.0F) || fl.P > kMaxPressure)
    return refuse(STR, " Pressure not between 0 and  900 bar, no flash calculation (FLPQ)", event::pressure);
  return true;
}

// Enthalpy of a phase [flow x J/mol]; an absent phase has none.
R4 phase_enthalpy(I4 PH, R4 total, FlashVec& flow, FlashVec& fraction, R4 Z) {
  if (!(total >= kPhaseLimit)) return 0.0F;
  I4 PHOUT = 0;
  R4 RHO = 0.0F, MW = 0.0F, HID = 0.0F, SID = 0.0F, CPID = 0.0F, H = 0.0F, DHDT = 0.0F, S = 0.0F, CV = 0.0F,
     CP = 0.0F, SONIC = 0.0F, JT = 0.0F, KAPPA = 0.0F;
  MOLFR(fl.NC, total, flow, fraction);
  ENTHAL(0, PH, PHOUT, fl.NC, fl.RGAS, RHO, fl.T, fl.P, Z, fraction, MW, HID, SID, CPID, H, DHDT, S, CV, CP,
         SONIC, JT, KAPPA, unused.FUG, unused.FUGTL, unused.FUGPL, unused.FUGN, unused.HN);
  return total * H;
}

void evaluate(AdiabaticState& s) {
  s.FTV = TELOP(fl.NC, fl.FV);
  const R4 FTL = TELOP(fl.NC, fl.FL);
  const R4 FTLS = TELOP(fl.NC, fl.FLS);
  const R4 QVV = phase_enthalpy(flash_phase::vapour, s.FTV, fl.FV, fl.Y, fl.ZV);
  const R4 QLL = phase_enthalpy(flash_phase::liquid, FTL, fl.FL, fl.X1, fl.ZL);
  const R4 QLLS = fl.NL2KEY > 0 ? phase_enthalpy(flash_phase::liquid, FTLS, fl.FLS, fl.X2, fl.ZL2) : 0.0F;
  s.QCAL = QVV + QLL + QLLS;
}

// Every 20 steps: false when the search is to stop, after 80 steps with a message.
bool bear_trouble(AdiabaticState& s, int number, Message& STR) {
  s.DUM2 = 2.0F * s.DUM2;
  if (s.NA2 >= kMaxSteps) {
    refuse(STR, " Adiabatic flash did not converge in 80 iterations (FLPQ)", event::no_convergence);
    s.NERR = std::min(s.NERR, -3);
    return false;
  }
  if (s.NERR == 0) return true;
  s.NERR = s.NERR - 1;
  refuse(STR, ".Adiabatic flash is having convergence trouble (FLPQ)", number);
  if (s.NERR >= -3) return true;
  if (s.NCAL == flash_status::warm_last) return false;
  s.NCAL = flash_status::warm_last;
  return true;
}

Next after_block(AdiabaticState& s, int number, Message& STR) {
  if (s.NA2 % kStepsOfBlock != 0) return Next::step;
  return bear_trouble(s, number, STR) ? Next::step : Next::stop;
}

Next switch_search(const AdiabaticState& s) {
  fl.FRV = s.FTV / s.FT;
  return Next::fraction_search;
}

// One accelerated step of the temperature, at most 50 K.
void move_temperature(AdiabaticState& s) {
  const R4 TOLD = (fl.QSPEC - s.QCAL) / (kSlope * s.FT) + fl.T;
  const R4 kept = fl.T;
  TRY(fl.T, TOLD, s.DELT, s.DUM1, s.DUM2);
  if (std::fabs(s.DELT) >= kMaxStep) {
    s.DELT = std::copysign(kMaxStep, s.DELT);
    fl.T = kept + s.DELT;
  }
  s.NA2 = s.NA2 + 1;
}

// True when the temperature was put back to a limit.
bool limit_temperature(AdiabaticState& s) {
  if (fl.T > kLowestTemperature && fl.T < kMaxTemperature) return false;
  fl.T = fl.T >= kMaxTemperature ? kMaxTemperature : kLowestTemperature;
  s.DELT = 0.0F;
  return true;
}

Next temperature_step(AdiabaticState& s, Message& STR) {
  fl.NCAL = s.NCAL;
  fl.FRV = 0.5F;
  FLTP(STR);
  s.NERR = std::min(s.NERR, fl.NCAL);
  if (s.NERR < -3) return Next::stop;
  evaluate(s);
  if (s.NCAL != flash_status::warm_last) s.NCAL = flash_status::warm_start;
  if (fl.KFLAT) {
    fl.KFLAT = false;
    if (s.NA2 > 0) {
      fl.FRV = 0.5F;
      return Next::fraction_search;
    }
  }
  move_temperature(s);
  if (!limit_temperature(s)) {
    const R4 step = std::fabs(s.DELT);
    if (step < kSmallStep) {
      if (s.NCAL != flash_status::warm_last) {
        s.NCAL = flash_status::warm_last;
        return Next::step;
      }
      return std::fabs(s.DUM1) * kSlope < kBalance ? Next::stop : switch_search(s);
    }
    if (s.NA2 >= kCrawlSteps && 10.0F * step < std::fabs(s.DUM1)) return switch_search(s);
  }
  return after_block(s, event::trouble_temperature, STR);
}

Next fraction_step(AdiabaticState& s, Message& STR) {
  fl.NCAL = s.NCAL;
  FLVP(STR);
  s.NERR = std::min(s.NERR, fl.NCAL);
  if (s.NERR < -3) return Next::stop;
  evaluate(s);
  const R4 DELV = (fl.QSPEC - s.QCAL) * (1.0F / (kVaporisation * s.FT)) + fl.FRV;
  TRY(fl.FRV, DELV, s.DELT, s.DUM1, s.DUM2);
  s.NA2 = s.NA2 + 1;
  if (fl.FRV > 1.0F) {
    fl.FRV = 0.9999F;
    s.DELT = 0.0F;
  } else if (!(fl.FRV >= 0.0F)) {
    fl.FRV = 1.0E-4F;
    s.DELT = 0.0F;
  } else if (std::fabs(s.DELT) < kSmallStep) {
    if (s.NCAL == flash_status::warm_last) return Next::stop;
    s.NCAL = flash_status::warm_last;
    return Next::step;
  }
  return after_block(s, event::trouble_fraction, STR);
}

void search(AdiabaticState& s, Message& STR) {
  Next next = Next::step;
  while (next == Next::step) next = temperature_step(s, STR);
  if (next == Next::stop) return;
  s.NA2 = 0;
  s.DELT = 0.0F;
  s.NCAL = flash_status::warm_start;
  do {
    next = fraction_step(s, STR);
  } while (next == Next::step);
}

}  // namespace

// FLPQ: the state of the feed at P with the total enthalpy QSPEC. Temperature is sought around FLTP; where it
// cannot carry the search the vapour fraction is, around FLVP, and there is no way back.
//
// Out      STR  message; texts of the inner flashes stay unless overwritten
// Shared   reads fl.NC, F, P, T, QSPEC; sets fl.T, FRV, FV, FL, NCAL, KFLAT and what FLTP and FLVP set
// Status   fl.NCAL: 0 found; -1 to -3 loose; flash_status::failed
// Reports  " Flash flow not between 1.0E-9 and 1.0E+9, no calculation (FLPQ)", cell 1
//          " Temperature not between 0 and 1773 K, no flash calculation (FLPQ)", cell 2
//          " Pressure not between 0 and  900 bar, no flash calculation (FLPQ)", cell 3
//          ".Adiabatic flash is having convergence trouble (FLPQ)", cells 4 and 5
//          " Adiabatic flash did not converge in 80 iterations (FLPQ)", cell 6
// Oddity   the fraction search ends on its step and not on the balance; an FLVP that fails without a text ends
//          the search without one
void FLPQ(Message& STR) {
  fl.KFLAT = false;
  AdiabaticState s{};
  s.NCAL = flash_status::first_pass;
  fl.NCAL = flash_status::first_pass;
  if (!check_input(s, STR)) {
    fl.NCAL = flash_status::failed;
    return;
  }
  search(s, STR);
  fl.NCAL = std::max(s.NERR, flash_status::failed);
}

}  // namespace talix
