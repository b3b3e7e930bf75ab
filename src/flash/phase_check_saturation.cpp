#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string_view>

#include "engine/codes.h"
#include "fastprops/flash_record.h"
#include "flash/phase_check.h"
#include "flash/robust_saturation.h"

namespace talix {

namespace {

constinit RobustMixture mixture{};
constinit SaturationResult result{};
constinit SaturationResult polished{};  // the answer of the flash
constinit RobustSplit flash_split{};
constinit CompVec flash_lnK{};

// In place of a start pressure of 0, as the flash has it [bar].
constexpr R8 kReplacedPressure = 2.0;
constexpr R4 kLargestFeed = 1.0E+9F;
constexpr R4 kLowestTemperature = 1.0F;  // [K]
// Pressures below this are told with four figures, others with one decimal [bar].
constexpr R8 kSmallPressure = 10.0;

struct Question {
  SaturationGiven given;
  R8 value, fraction, start;
};

Question asked() {
  Question q{};
  const I4 code = fl.IFLASH;
  const bool at_T = code == flash_type::bubble_pressure || code == flash_type::dew_pressure ||
                    code == flash_type::pressure_at_fraction;
  q.given = at_T ? SaturationGiven::temperature : SaturationGiven::pressure;
  q.value = static_cast<R8>(at_T ? fl.T_ASKED : fl.P_ASKED);
  q.start = static_cast<R8>(at_T ? fl.P_ASKED : fl.T_ASKED);
  if (at_T && !(q.start > 0.0)) q.start = kReplacedPressure;
  if (code == flash_type::bubble_pressure || code == flash_type::bubble_temperature)
    q.fraction = 0.0;
  else if (code == flash_type::dew_pressure || code == flash_type::dew_temperature)
    q.fraction = 1.0;
  else
    q.fraction = static_cast<R8>(fl.FRV_ASKED);
  return q;
}

// Input that the flash refuses with a text of its own, which stands.
bool is_refused(const Question& q) {
  if (!(fl.FT > kPhaseLimit) || !(fl.FT <= kLargestFeed)) return true;
  return q.given == SaturationGiven::temperature ? !(q.value >= static_cast<R8>(kLowestTemperature))
                                                 : !(q.value > 0.0);
}

bool has_start_values() {
  for (int i = 1; i <= mixture.n; ++i) {
    const R8 K = static_cast<R8>(fl.VLK(mixture.at(i)));
    if (!(K > 0.0) || !std::isfinite(K)) return false;
    flash_lnK(i) = std::log(K);
  }
  return true;
}

enum class Standing {
  none,       // no solution
  candidate,  // a solution beside which there may be a better one
  settled     // the solution asked for
};

// The answer of the flash, polished.
Standing weigh(const Question& q) {
  if (mixture.n == 1 || !has_start_values()) return Standing::none;
  const R8 start = static_cast<R8>(q.given == SaturationGiven::temperature ? fl.P : fl.T);
  if (!(start > 0.0)) return Standing::none;
  if (!solve_saturation(mixture, q.given, q.value, q.fraction, flash_lnK, start, flash_split))
    return Standing::none;
  if (!rate_saturation(mixture, q.given, flash_split, polished)) return Standing::none;
  // At a given temperature a liquid that splits does so at every pressure of interest; elsewhere there may be a stable
  // point.
  const bool bubble = !(q.fraction > 0.0);
  if (polished.rank == standing::metastable && (q.given == SaturationGiven::pressure || !bubble))
    return Standing::candidate;
  return is_nearest_to_start(mixture, q.given, q.start, polished.split) ? Standing::settled
                                                                        : Standing::candidate;
}

void settle(const Question& q) {
  const Standing of_flash = weigh(q);
  if (of_flash == Standing::settled) {
    result = polished;
    return;
  }
  robust_saturation(mixture, q.given, q.value, q.fraction, q.start, result);
  if (of_flash == Standing::candidate && is_better_saturation(q.given, q.start, polished, result))
    result = polished;
}

void store(const Question& q) {
  const RobustSplit& s = result.split;
  fl.T = static_cast<R4>(s.T);
  fl.P = static_cast<R4>(s.P);
  fl.FRV = static_cast<R4>(q.fraction);
  const R4 FTV = std::max(fl.FT * fl.FRV, kFlowFloor);
  const R4 FTL = std::max(fl.FT * (1.0F - fl.FRV), kFlowFloor);
  for (int i = 1; i <= fl.NC; ++i) fl.FV(i) = fl.FL(i) = fl.FLS(i) = fl.Y(i) = fl.X1(i) = fl.X2(i) = 0.0F;
  for (int i = 1; i <= mixture.n; ++i) {
    const int k = mixture.at(i);
    const R8 in_vapour = s.vapour.x(i) * static_cast<R8>(FTV);
    const R8 in_liquid = s.liquid.x(i) * static_cast<R8>(FTL);
    const R8 feed = static_cast<R8>(fl.F(k));
    const R8 sum = in_vapour + in_liquid;
    const R8 share = sum > 0.0 ? in_vapour / sum : static_cast<R8>(fl.FRV);
    // The smaller flow is rounded, the other is what it leaves of the feed.
    if (share < 0.5) {
      fl.FV(k) = static_cast<R4>(feed * share);
      fl.FL(k) = fl.F(k) - fl.FV(k);
    } else {
      fl.FL(k) = static_cast<R4>(feed * (1.0 - share));
      fl.FV(k) = fl.F(k) - fl.FL(k);
    }
    fl.Y(k) = static_cast<R4>(s.vapour.x(i));
    fl.X1(k) = static_cast<R4>(s.liquid.x(i));
    fl.VLK(k) =
        static_cast<R4>(std::clamp(s.vapour.x(i) / std::max(s.liquid.x(i), 1.0E-300), 1.0E-12, 1.0E+12));
  }
  fl.ZV = static_cast<R4>(s.vapour.Z);
  fl.ZL = static_cast<R4>(s.liquid.Z);
  fl.NCAL = flash_status::fresh;
}

struct Line {
  char text[Message::extent];
};

Line subject(const Question& q) {
  Line line{};
  if (!(q.fraction > 0.0))
    std::snprintf(line.text, sizeof line.text, "No bubble point");
  else if (!(q.fraction < 1.0))
    std::snprintf(line.text, sizeof line.text, "No dew point");
  else
    std::snprintf(line.text, sizeof line.text, "No state with vapour fraction %.4f", q.fraction);
  return line;
}

Line state_of(SaturationGiven given, R8 value) {
  Line line{};
  if (given == SaturationGiven::temperature)
    std::snprintf(line.text, sizeof line.text, "%.2f K", value);
  else
    std::snprintf(line.text, sizeof line.text, value < kSmallPressure ? "%.4g bar" : "%.1f bar", value);
  return line;
}

// Why there is no such state.
Line reason(const Question& q) {
  Line line{};
  const bool at_T = q.given == SaturationGiven::temperature;
  const Line limit = state_of(q.given, result.limit);
  switch (result.answer) {
    case Saturation::above_cricondentherm:
      std::snprintf(line.text, sizeof line.text, ": above the cricondentherm of %.40s", limit.text);
      break;
    case Saturation::above_cricondenbar:
      std::snprintf(line.text, sizeof line.text, ": above the cricondenbar of %.40s", limit.text);
      break;
    case Saturation::above_critical:
      std::snprintf(line.text, sizeof line.text, ": above the critical %s of %.40s",
                    at_T ? "temperature" : "pressure", limit.text);
      break;
    case Saturation::above_range:
      std::snprintf(line.text, sizeof line.text, ": above 900 bar");
      break;
    case Saturation::no_line:
      if (at_T)
        std::snprintf(line.text, sizeof line.text, ": none up to 900 bar");
      else
        std::snprintf(line.text, sizeof line.text, ": none from %.0f to %.0f K", kLowestSaturation,
                      kHighestSaturation);
      break;
    default:
      break;
  }
  return line;
}

void tell_failure(const Question& q, Message& STR) {
  Line line{};
  int length = 0;
  const Line state = state_of(q.given, q.value);
  if (result.answer == Saturation::unsettled)
    length = std::snprintf(line.text, sizeof line.text,
                           " Saturation point could not be settled at %.40s (TALIX)", state.text);
  else
    length = std::snprintf(line.text, sizeof line.text, " %.50s at %.40s%.60s (TALIX)", subject(q).text,
                           state.text, reason(q).text);
  report(STR, {line.text, static_cast<std::size_t>(std::min<int>(length, Message::extent - 1))});
}

}  // namespace

// check_saturation: the bubble point, dew point or state at a given fraction behind its flash.
//
// In, out  STR  message of the flash; blank, a warning or a failure afterwards
// Shared   reads fl.T_ASKED, P_ASKED, FRV_ASKED, IFLASH, the feed and the state and K-values of the flash; sets the
//          results of the flash record
// Reports  ". A third phase, liquid, would lower the Gibbs energy further (TALIX)", or vapour
//          ". Both phases are liquids: the lighter one stands in the column of the vapour (TALIX)"
//          " No bubble point at ... K: above the cricondentherm of ... K (TALIX)", or dew point, or state with
//          vapour fraction; at ... bar: above the cricondenbar of ... bar; above the critical temperature or
//          pressure; above 900 bar; none up to 900 bar; none from 50 to 1200 K
//          " Saturation point could not be settled at ... (TALIX)"
// Oddity   of several answers the one nearest to the caller's start value counts, in ln P or in T; a start
//          pressure of 0 counts as 2 bar
void check_saturation(Message& STR) {
  const Question q = asked();
  if (is_refused(q)) return;
  gather_mixture(mixture);
  settle(q);
  STR.blank();
  if (result.answer != Saturation::found) {
    tell_failure(q, STR);
    return;
  }
  store(q);
  if (result.unstable)
    report(STR, result.split.third_root == phase::vapour
                    ? ". A third phase, vapour, would lower the Gibbs energy further (TALIX)"
                    : ". A third phase, liquid, would lower the Gibbs energy further (TALIX)");
  else if (result.split.two_liquids)
    report(STR, ". Both phases are liquids: the lighter one stands in the column of the vapour (TALIX)");
}

}  // namespace talix
