// One line of a phase envelope, followed from point to point.
#pragma once

#include "cli/envelope.h"
#include "cli/envelope_place.h"

namespace talix::cli {

// Excess of the liquid density of a point over that of the vapour, relative to it; huge where one is missing.
double density_excess(const EnvelopePoint& point);

// Whether the phases of an answer are the same mixture at the same density: the trivial solution.
bool phases_alike(const FlashResult& result);

// Two phases in a share that counts, or two liquids.
bool two_phases(const FlashResult& result);

// Below this length a line has come to its end.
inline constexpr double kShortestStep = 0.0025;

// From low to high pressure and around, up to where nothing more is found.
class LineTracer {
 public:
  LineTracer(EnvelopeLine line, const FlashRequest& mixture, const EnvelopeOptions& options,
             const FlashFunction& flash, const EnvelopeProgress& progress);

  void run();

  // The bubble or dew point at the pressure or at the temperature of a place, nearest to that place.
  EnvelopePoint saturation(bool at_pressure, const Place& at);
  // The point of the line near a place on its way in a direction, at the pressure of the place where the line is
  // steep and at its temperature where it is flat, or the other way round; it may lie off by a share of the length.
  EnvelopePoint find(const Place& expected, const Place& way, double length);
  void keep(EnvelopePoint point);
  // Lists what was missing at the end of the line.
  void keep_failure();
  // Why the line ends where it does, as a sentence without a capital and a full stop: before keep_failure.
  std::string end_reason();

  [[nodiscard]] bool has_heading() const { return path_.size() >= 2; }
  [[nodiscard]] const Place& end() const { return path_.back(); }
  // How the line goes on from its end: the last direction, turned on by half of the last turn.
  [[nodiscard]] Place heading() const;
  // The longest step.
  [[nodiscard]] double longest() const { return longest_; }
  // The line leaves the range of the library upwards at its end, at its beginning.
  [[nodiscard]] bool open() const { return open_; }
  [[nodiscard]] bool open_at_start() const { return open_at_start_; }
  [[nodiscard]] const std::vector<EnvelopePoint>& points() const { return points_; }

 private:
  [[nodiscard]] bool dew() const { return line_ == EnvelopeLine::dew; }
  FlashResult ask(FlashType type, const Place& at);
  [[nodiscard]] EnvelopePoint failed(const Place& at, std::string message) const;
  bool divides(const Place& middle);
  bool begin(bool at_pressure, const Place& at);
  bool start_at_pressure();
  bool start_at_temperature();
  void follow();
  EnvelopePoint edge(const Place& middle, const Place& way, double length, bool& two_liquids);
  [[nodiscard]] bool on_this_line(const FlashResult& phases) const;
  bool step();
  bool take_back(double length);
  [[nodiscard]] double bounded(double length, const Place& way) const;
  [[nodiscard]] double bend_on_paper(const Place& next) const;
  bool leaves_range(const Place& at);
  std::string phases_beyond();

  EnvelopeLine line_;
  FlashRequest request_;
  EnvelopeOptions options_;
  const FlashFunction& flash_;
  const EnvelopeProgress& progress_;
  std::vector<EnvelopePoint> points_;
  std::vector<Place> path_;               // of the points found
  std::optional<EnvelopePoint> failure_;  // why the line does not go on
  double step_ = 0;
  double longest_ = 0;
  double most_kelvin_ = 0;
  double most_bar_ = 0;
  bool open_ = false;
  bool open_at_start_ = false;
  bool too_many_ = false;   // it goes on, but has too many points
  bool came_down_ = false;  // to the pressure at which it began
};

}  // namespace talix::cli
