// A line of constant phase fraction, followed from low pressure.
#pragma once

#include "flash/robust_point.h"
#include "flash/robust_saturation.h"

namespace talix {

inline constexpr int kMaxCrossings = 8;

enum class LineEnd {
  not_started,    // no first point
  given_reached,  // followed downwards to the given value, where there is no second crossing
  low_pressure,   // back at low pressure
  low_temperature,
  high_pressure,  // above the highest pressure of the library
  critical,       // the phases became alike and the line ends there
  stuck,          // no further point could be solved
  unsettled       // the engine failed or the budget ran out
};

// Highest values of the part of a line on which y is the lighter phase, or of the part on which it is the denser.
struct LineLimits {
  R8 T, P;  // [K], [bar]; 0 when the line has no such part
};

struct LineTrace {
  LineEnd end;
  I4 count;                                 // crossings of the given value
  Vec<LinePoint, kMaxCrossings> crossings;  // solved; y lighter or denser as it came
  LineLimits normal, exchanged;             // y lighter, y denser
  R8 critical_T, critical_P;                // [K], [bar]; 0 when no critical point was passed
  bool turned_T, turned_P;                  // the line has passed its highest T, its highest P
  I4 points;
};

// Follows the line of FRACTION in the lighter phase from low pressure and collects where it has the given T [K] or
// P [bar]; past a critical point only when THROUGH is set.
void trace_line(const RobustMixture& mixture, R8 FRACTION, SaturationGiven given, R8 value, bool THROUGH,
                LineTrace& trace);

// True where y is the denser phase.
bool is_exchanged(const LinePoint& point);

// First point of a line: ln K, T and P by Wilson's estimate, at P [bar], or at the temperature LOWEST [K] when the
// line would start below it.
void wilson_point(const RobustMixture& mixture, R8 FRACTION, R8 P, R8 LOWEST, LinePoint& point);
// The same at given T [K] or P [bar].
void wilson_at(const RobustMixture& mixture, R8 FRACTION, SaturationGiven given, R8 value, LinePoint& point);

// Two neighbouring points of a line and the cubics between them in unknown `held`.
struct LineSegment {
  int held;
  LinePoint from, to;
  LineVec slope_from, slope_to;  // with respect to the unknown that is held
};

// Unknown K of the cubics at the value S of the unknown that is held.
R8 cubic_value(const LineSegment& segment, int k, R8 S);
// All unknowns there, with the roots and the fraction of the first point.
void cubic_point(const LineSegment& segment, int order, R8 S, LinePoint& point);
// The point of the segment at which unknown V has its extreme; false when it has none that can be solved.
bool find_extreme(const RobustMixture& mixture, const LineSegment& segment, int v, LinePoint& point);
// The point of the segment at which unknown V has VALUE; false when it cannot be solved.
bool find_crossing(const RobustMixture& mixture, const LineSegment& segment, int v, R8 value,
                   LinePoint& point);

}  // namespace talix
