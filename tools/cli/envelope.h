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
  bool after_gap = false;               // the line is not drawn from the point before to this one
  std::optional<float> vapour_density;  // [kg/m3]
  std::optional<float> liquid_density;  // [kg/m3]
};

struct Envelope {
  std::vector<EnvelopePoint> bubble;  // in the order in which they were found, failed ones between
  std::vector<EnvelopePoint> dew;
};

struct EnvelopeOptions {
  double from_P_bar = 1;  // where both lines begin [bar]
  int points = 80;        // about as many on each line
};

inline constexpr int kFewestPoints = 10;
inline constexpr int kMostPoints = 2000;

using FlashFunction = std::function<FlashResult(const FlashRequest&)>;
// Called with each point as it is found.
using EnvelopeProgress = std::function<void(const EnvelopePoint&)>;

// Traces both lines. `mixture` gives components and feed; its state and type are not used.
Envelope trace_envelope(const FlashRequest& mixture, const EnvelopeOptions& options,
                        const FlashFunction& flash, const EnvelopeProgress& progress);

// Whether the phases of an answer are the same mixture at the same density: the trivial solution.
bool phases_alike(const FlashResult& result);

// The last point found on a line; nothing where there is none.
const EnvelopePoint* end_of(const std::vector<EnvelopePoint>& line);

}  // namespace talix::cli
