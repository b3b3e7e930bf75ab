#include "api/talix_call.h"

#include <cmath>
#include <cstdio>
#include <string_view>

#include "api/feed_scale.h"
#include "api/flash_dispatch.h"
#include "api/flash_results.h"
#include "api/vlinit.h"
#include "fastprops/error_matrix.h"
#include "fastprops/flash_message.h"
#include "fastprops/routes.h"
#include "fastprops/small_arrays.h"

namespace talix {

namespace {

// Values at or above this cannot be cut to a component number.
constexpr R4 kIntegerLimit = 2147483648.0F;

// Events of TALIX in the error matrix.
namespace event {
constexpr int temperature = 2;
constexpr int pressure = 3;
constexpr int fraction = 4;
constexpr int negative_feed = 5;
constexpr int no_feed = 6;
}  // namespace event

bool refuse(Message& STR, std::string_view text) {
  report(STR, text);
  return false;
}

bool refuse(Message& STR, std::string_view text, int number) {
  mark_error(error_row::TALIX, number);
  return refuse(STR, text);
}

// The message as far as the host's string reaches, blank-padded.
void hand_back(const Message& STR, char* host, I4 length) {
  if (host == nullptr) return;
  for (I4 i = 0; i < length; ++i) host[i] = i < Message::extent ? STR(i + 1) : ' ';
}

void start_call(char& UNIT) {
  fl.KSTART = false;
  fl.NCAL = flash_status::fresh;
  fl.RGAS = kRouteGasConstant;
  fl.TZERO = kFlashZeroCelsius;
  if (UNIT == 'w') UNIT = 'W';
  if (UNIT == 'm') UNIT = 'M';
  fl.NL2KEY = 0;
  fl.KVRESET = false;
  fl.ECHO_HELD = false;
  // The check works on the engine: it has nothing to say about the equation of the direct route.
  if constexpr (!kEngineRoute) fl.UNVERIFIED = true;
}

// The component list and the feed of the host; false when they cannot be taken over.
bool take_list(I4 NC, const ScalTable& SCAL, Message& STR) {
  if (NC < 0 || NC > kMaxComponents)
    return refuse(STR, " Number of components not between 0 and 50, no calculation (TALIX)");
  for (int i = 1; i <= NC; ++i)
    if (!(std::fabs(SCAL(i, 1)) < kIntegerLimit))
      return refuse(STR, " One of the component numbers is not a number, no calculation (TALIX)");
  fl.NC = NC;
  for (int i = 1; i <= NC; ++i) {
    fl.ICOMP(i) = static_cast<I4>(SCAL(i, 1));
    fl.SF(i) = SCAL(i, 2);
  }
  return true;
}

bool list_has_changed() {
  if (fl.NC != fl.NCOLD) return true;
  for (int i = 1; i <= fl.NC; ++i)
    if (fl.ICOMP(i) != fl.STD_OLD(i)) return true;
  return false;
}

// Loads a changed list. The list is stored before, and the code of the load is not looked at: the same list
// is not tried again.
void load_list() {
  const bool REINIT = list_has_changed();
  fl.NCOLD = fl.NC;
  for (int i = 1; i <= fl.NC; ++i) fl.STD_OLD(i) = fl.ICOMP(i);
  I4 IFAIL = 0;
  if (REINIT && fl.NC > 0) VLINIT(fl.NC, fl.ICOMP, IFAIL);
}

void take_state(R4 T, R4 P, R4 FRV, ScalTable& SCAL) {
  if (fl.IFLASH != flash_type::adiabatic && fl.IFLASH != flash_type::adiabatic_nested)
    SCAL(fl.NC + 2, 2) = 0.0F;
  fl.SF(fl.NC + 2) = SCAL(fl.NC + 2, 2);
  fl.T = fl.TZERO + T;
  fl.P = P;
  fl.QSPEC = fl.SF(fl.NC + 2) * 1000.0F;
  fl.FRV = FRV;
  fl.T_ASKED = fl.T;
  fl.P_ASKED = fl.P;
  fl.FRV_ASKED = FRV;
}

bool check_state(Message& STR) {
  if (!(fl.T > 0.0F) || !(fl.T <= kMaxTemperature)) {
    if (fl.MSGHOOK) mark_error(error_row::TALIX, event::temperature);
    return refuse(STR, " Temperature not between 0 and 1773 K, no calculation (TALIX)");
  }
  if (!(fl.P >= 0.0F) || !(fl.P <= kMaxPressure))
    return refuse(STR, " Pressure not between 0 and  900 bar, no calculation (TALIX)", event::pressure);
  if (!(fl.FRV >= 0.0F) || !(fl.FRV <= 1.0F))
    return refuse(STR, " Fraction vapour not between 0 and 1, no calculation (TALIX)", event::fraction);
  return true;
}

bool check_feed(Message& STR) {
  for (int i = 1; i <= fl.NC; ++i) {
    fl.F(i) = fl.SF(i);
    if (!std::isfinite(fl.F(i)))
      return refuse(STR, " One of the components has a feed that is not a number, no calculation (TALIX)");
    if (fl.F(i) < 0.0F)
      return refuse(STR, " One of the components has a negative feed, no calculation (TALIX)",
                    event::negative_feed);
  }
  fl.SFT = 0.0F;
  for (int i = 1; i <= fl.NC; ++i) fl.SFT += fl.SF(i);
  fl.FT = TELOP(fl.NC, fl.F);
  if (!(fl.FT > 0.0F)) return refuse(STR, " No feed specified, no calculation (TALIX)", event::no_feed);
  return true;
}

// A list whose load did not end well has no data to calculate with.
bool check_load(Message& STR) {
  constexpr int kRoom = Message::extent + 1;
  char text[kRoom];
  int length = 0;
  switch (fl.LOAD) {
    case load_result::complete:
      return true;
    case load_result::bad_number:
      length = std::snprintf(
          text, kRoom,
          " Component list not loaded, component number %d not between %d and %d, no calculation "
          "(TALIX)",
          fl.LOAD_DETAIL, kFirstComponentNumber, kLastComponentNumber);
      break;
    case load_result::empty_record:
      length = std::snprintf(
          text, kRoom, " Component list not loaded, no component has the number %d, no calculation (TALIX)",
          fl.LOAD_DETAIL);
      break;
    case load_result::unreadable:
      length = std::snprintf(text, kRoom,
                             " Component list not loaded, record %d not readable, no calculation (TALIX)",
                             fl.LOAD_DETAIL);
      break;
    case load_result::engine:
      length = std::snprintf(
          text, kRoom, " Component list not loaded, engine start failed at stage %d, no calculation (TALIX)",
          fl.LOAD_DETAIL);
      break;
    default:
      length = std::snprintf(
          text, kRoom,
          " Component list not loaded, data file not found or not readable, no calculation (TALIX)");
  }
  return refuse(STR, {text, static_cast<std::size_t>(length)});
}

// The flash of the call. Behind a check the texts of its passes are not final: what stands at the end is echoed once.
bool flash_and_echo(Message& STR) {
  fl.ECHO_HELD = !fl.UNVERIFIED;
  const bool done = run_flash(STR);
  if (fl.ECHO_HELD) {
    fl.ECHO_HELD = false;
    if (!trimmed(STR).empty()) echo(trimmed(STR));
  }
  return done;
}

// Everything up to the flash; false with a message when there is no result.
bool prepare(I4 NC, R4 T, R4 P, R4 FRV, char& UNIT, I4 IFLASH, ScalTable& SCAL, Message& STR) {
  start_call(UNIT);
  if (!take_list(NC, SCAL, STR)) return false;
  fl.IFLASH = IFLASH;
  load_list();
  fl.NCALLS = fl.NCALLS + 1;
  take_state(T, P, FRV, SCAL);
  if (!check_state(STR) || !check_feed(STR) || !check_load(STR)) return false;
  if (UNIT == 'W') {
    KGMOL(fl.NC, fl.F, fl.AMW);
    fl.FT = TELOP(fl.NC, fl.F);
  }
  return true;
}

// What a call writes into.
struct HostResults {
  R4 T, P, FRV;
  ScalTable SCAL;
  PropertyTable TPROPS;
};
constinit HostResults entry{};

// Columns 2 to 5 of row NC+2 hold enthalpies.
constexpr int kEnthalpyColumns = 5;

// Of the entries that a call writes.
bool all_finite(const ScalTable& SCAL, const PropertyTable& TPROPS) {
  for (int column = 2; column <= kScalColumns; ++column) {
    const int first = column == 2 ? fl.NC + 1 : 1;
    const int last = column <= kEnthalpyColumns ? fl.NC + 2 : fl.NC + 1;
    for (int row = first; row <= last; ++row)
      if (!std::isfinite(SCAL(row, column))) return false;
  }
  for (int column = 1; column <= kPropertyColumns; ++column)
    for (int row = 1; row <= kPropertyRows; ++row)
      if (!std::isfinite(TPROPS(row, column))) return false;
  return true;
}

// The result tables, on the feed of the host. Behind a check no result that is not a number is handed out: the host
// keeps what it had.
void hand_results(R4 factor, char UNIT, R4& T, R4& P, R4& FRV, ScalTable& SCAL, PropertyTable& TPROPS,
                  Message& STR) {
  const bool verified = !fl.UNVERIFIED;
  if (verified) entry = {T, P, FRV, SCAL, TPROPS};
  assemble_results(UNIT, T, P, FRV, SCAL, TPROPS, STR);
  scale_results(1.0F / factor, SCAL);
  if (!verified) return;
  if (std::isfinite(T) && std::isfinite(P) && std::isfinite(FRV) && all_finite(SCAL, TPROPS)) return;
  T = entry.T;
  P = entry.P;
  FRV = entry.FRV;
  SCAL = entry.SCAL;
  TPROPS = entry.TPROPS;
  report(STR, " A result is not a number, no calculation (TALIX)");
}

// The flash and its results; behind a check on a feed of about 1, where the host's is far from it.
void calculate(char UNIT, R4& T, R4& P, R4& FRV, ScalTable& SCAL, PropertyTable& TPROPS, Message& STR) {
  const R4 factor = fl.UNVERIFIED ? 1.0F : feed_factor();
  scale_feed(factor);
  if (flash_and_echo(STR)) hand_results(factor, UNIT, T, P, FRV, SCAL, TPROPS, STR);
  scale_state(1.0F / factor);
}

}  // namespace

// TALIX: one flash with the properties of its phases. The arguments, tables and units are described in
// include/talix/talix.h.
//
// In       NC, IFLASH, SCAL columns 1 and 2
// In, out  T, P, FRV, UNIT
// Out      SCAL columns 3 to 8 and its two summary rows, TPROPS, STR
// Shared   fl, errmat
// Status   STR: blank, a warning that begins with a full stop, or a failure without results
// Reports  the messages above, each echoed; cells 2 to 6 of TALIX
//          " A result is not a number, no calculation (TALIX)"  behind a check only
// Oddity   W decides the basis of the feed and M that of the results: a third letter means a feed in moles
//          and results in mass. The temperature failure counts only when messages go to the hook. A failed
//          load
//          is not tried again with the same list; the call then ends with a text.
void TALIX(I4* NC, R4* T, R4* P, R4* FRV, char* UNIT, I4 /*UNIT_LENGTH*/, I4* IFLASH, ScalTable* SCAL,
           PropertyTable* TPROPS, char* STR, I4 STR_LENGTH) {
  Message message{};
  message.blank();
  if (NC == nullptr || T == nullptr || P == nullptr || FRV == nullptr || UNIT == nullptr ||
      IFLASH == nullptr || SCAL == nullptr || TPROPS == nullptr) {
    report(message, " Argument missing, no calculation (TALIX)");
  } else if (prepare(*NC, *T, *P, *FRV, *UNIT, *IFLASH, *SCAL, message)) {
    calculate(*UNIT, *T, *P, *FRV, *SCAL, *TPROPS, message);
  }
  hand_back(message, STR, STR_LENGTH);
}

}  // namespace talix
