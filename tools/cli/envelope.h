// The phase envelope of a mixture: its bubble and its dew line, point by point through the flashes of the library.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/flash_case.h"

namespace talix::cli {

enum class EnvelopeLine { bubble, dew };

struct EnvelopePoint {
  EnvelopeLine line = EnvelopeLine::bubble;
  bool ok = false;                      // false: nothing was found next to this state
  double T_C = 0;                       // [C]; of a failed point the state where it was looked for
  double P_bar = 0;                     // [bar]
  std::string method;                   // type of the flash that gave the point, or "edge"
  std::string message;                  // why a point failed, or the warning of the library
  std::optional<float> vapour_density;  // [kg/m3]
  std::optional<float> liquid_density;  // [kg/m3]
};

struct EnvelopeState {
  double T_C = 0;
  double P_bar = 0;
};

struct Envelope {
  std::vector<EnvelopePoint> bubble;  // along the line, failed ones between
  std::vector<EnvelopePoint> dew;
  std::string bubble_end;  // why the line ends where it does; blank for one without points
  std::string dew_end;
  bool bubble_open = false;  // the line leaves the range of the library: above 900 bar
  bool dew_open = false;
  std::optional<EnvelopeState> critical;        // between the ends of both lines, where these meet
  std::optional<EnvelopeState> cricondenbar;    // highest pressure with two phases, where the lines show it
  std::optional<EnvelopeState> cricondentherm;  // highest temperature with two phases
};

struct EnvelopeOptions {
  double from_P_bar = 1;  // where both lines begin [bar]
  int points = 80;        // about as many on each line
};

inline constexpr int kFewestPoints = 10;
inline constexpr int kMostPoints = 2000;

using FlashFunction = std::function<FlashResult(const FlashRequest&)>;
// Called with each point as it is found; of these, some are taken back for nearer ones where a line turns much.
using EnvelopeProgress = std::function<void(const EnvelopePoint&)>;

// Traces both lines up to where they meet. `mixture` gives components and feed; its state and type are not used.
Envelope trace_envelope(const FlashRequest& mixture, const EnvelopeOptions& options,
                        const FlashFunction& flash, const EnvelopeProgress& progress);

// The last point found on a line; nothing where there is none.
const EnvelopePoint* end_of(const std::vector<EnvelopePoint>& line);

}  // namespace talix::cli
