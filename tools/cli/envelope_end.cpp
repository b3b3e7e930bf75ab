// Why a line of a phase envelope ends.
#include "cli/envelope_line.h"

namespace talix::cli {

namespace {

// Ends with densities nearer than this have come to a critical point, though it may not be one of stable phases.
constexpr double kNearlyAlike = 0.15;

}  // namespace

// What stands on the two sides of the line just beyond its end.
std::string LineTracer::phases_beyond() {
  const Place way = heading();
  const Place ahead = along(end(), way, 2 * kShortestStep);
  const Place across{-way.y, way.x};
  const FlashResult left = ask(FlashType::tp, along(ahead, across, kShortestStep));
  const FlashResult right = ask(FlashType::tp, along(ahead, across, -kShortestStep));
  if (!left.ok || !right.ok) return "nothing is known of the phases there";
  if (two_phases(left) != two_phases(right)) {
    const FlashResult& split = two_phases(left) ? left : right;
    const std::string pair = split.second_liquid ? "two liquids" : "vapour and liquid";
    const std::string other = dew() ? "bubble" : "dew";
    return "beyond it there is one phase on one side and " + pair + " on the other" +
           (on_this_line(split)
                ? ""
                : ": the edge of the two-phase region goes on as part of the " + other + " line");
  }
  if (two_phases(left)) return "beyond it there are two phases on both sides: a third one begins near there";
  const EnvelopePoint* const last = end_of(points_);
  if (last != nullptr && density_excess(*last) < kNearlyAlike)
    return "beyond it there is one phase on both sides: its two phases become one there";
  return "beyond it there is one phase on both sides";
}

std::string LineTracer::end_reason() {
  if (open_) return "it goes on beyond the range of the library";
  if (too_many_) return "it goes on, but has too many points: --points gives more";
  if (came_down_) return "it has come down below the pressure at which it began";
  const std::string missing = failure_ ? failure_->message : std::string();
  if (!has_heading()) return missing.empty() ? "nothing was found beyond it" : missing;
  const std::string found = dew() ? "no further dew point was found" : "no further bubble point was found";
  return found + (missing.empty() ? "" : " (" + missing + ")") + "; " + phases_beyond();
}

}  // namespace talix::cli
