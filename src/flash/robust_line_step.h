// One step along a line of constant phase fraction.
#pragma once

#include "flash/robust_line.h"

namespace talix {

struct LineStepper {
  R8 reach;          // length of the next step, as a share of the largest one
  R8 gap;            // nearest approach of a ln K to a critical point
  R8 sense;          // of the movement along the slopes of segment.to: +1 or -1
  bool has_segment;  // segment.from is a point of the line
  LineSegment segment;
  LineVec slopes;  // at segment.to, with respect to held
  int held;
};

// Sets out from a solved point with its slopes by ln P, upwards or downwards in pressure; false when the line has no
// direction there.
bool set_out(const RobustMixture& mixture, const LinePoint& first, const LineVec& slopes, bool downwards,
             LineStepper& step);
// One step to a new segment; false when none could be made.
bool advance(const RobustMixture& mixture, LineStepper& step);
// Turns the slopes at the last point to the unknown that moves most; false when none moves.
bool choose_spec(const RobustMixture& mixture, LineStepper& step);

// Each phase on the root of its side.
void set_roots(LinePoint& point);
R8 largest_ln_k(const RobustMixture& mixture, const LinePoint& point);

}  // namespace talix
