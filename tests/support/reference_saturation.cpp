#include "support/reference_saturation.h"

#include <algorithm>
#include <cmath>

namespace talix::test::reference {

namespace {

constexpr int kBisections = 60;
constexpr R8 kWidth = 1.0E-10;  // relative width at the end of a bisection

constexpr int kHiddenSteps = 24;
constexpr R8 kJump = 0.2;  // of ln Z between two states of one phase that may hide a split

// Middle of two places: pressures in the logarithm.
R8 between(const Line& line, R8 a, R8 b) {
  return line.axis == Axis::pressure ? std::sqrt(a * b) : 0.5 * (a + b);
}

struct Point {
  R8 at = 0.0;
  Answer answer;
};

// Where the vapour share passes FRACTION between two states with two phases.
bool fraction_between(const Line& line, Point low, Point high, R8 fraction, R8& at) {
  const bool rising = high.answer.light_share > low.answer.light_share;
  R8 a = low.at, b = high.at;
  R8 a_share = low.answer.light_share, b_share = high.answer.light_share;
  for (int step = 0; step < kBisections && std::fabs(b - a) > kWidth * b; ++step) {
    const R8 middle = between(line, a, b);
    const Answer answer = flash(line.m, line.T(middle), line.P(middle), Effort::scan);
    if (answer.phases != 2 || answer.two_liquids) return false;
    const bool below = answer.light_share < fraction;
    (below == rising ? a : b) = middle;
    (below == rising ? a_share : b_share) = answer.light_share;
  }
  at = between(line, a, b);
  // A jump of the share, where a third phase begins, is no solution, nor is a state where one is missing.
  return std::fabs(a_share - fraction) < 1.0E-4 && std::fabs(b_share - fraction) < 1.0E-4 &&
         !flash(line.m, line.T(at), line.P(at), Effort::thorough).third();
}

bool usable(const Answer& a) { return a.phases == 2 && !a.two_liquids; }

void add_crossing(const Line& line, const Point& before, const Point& after, R8 fraction, Scan& result) {
  const R8 d0 = before.answer.light_share - fraction;
  const R8 d1 = after.answer.light_share - fraction;
  R8 at = 0.0;
  if (d0 * d1 <= 0.0 && fraction_between(line, before, after, fraction, at)) result.at_fraction.push_back(at);
}

// The last part of the two-phase region, between its edge and the next scan point.
void add_edge(const Line& line, const Boundary& edge, const Point& inner, R8 fraction, Scan& result) {
  const Point rim{edge.two_phases_above ? edge.at * (1.0 + 1.0E-9) : edge.at * (1.0 - 1.0E-9), edge.inside};
  if (!usable(rim.answer) || !usable(inner.answer)) return;
  if (rim.at < inner.at)
    add_crossing(line, rim, inner, fraction, result);
  else
    add_crossing(line, inner, rim, fraction, result);
}

// Between a liquid and a vapour next to each other on the scan there can be a narrow two-phase region.
bool hidden_between(const Line& line, R8 low, R8 high, R8& at) {
  Phase a, b, middle;
  if (!evaluate(line.m, line.T(low), line.P(low), line.m.z, a) ||
      !evaluate(line.m, line.T(high), line.P(high), line.m.z, b))
    return false;
  for (int step = 0; step < kHiddenSteps; ++step) {
    if (std::fabs(std::log(a.Z / b.Z)) < kJump) return false;
    at = between(line, low, high);
    if (splits(line, at, Effort::scan)) return true;
    if (!evaluate(line.m, line.T(at), line.P(at), line.m.z, middle)) return false;
    const bool lower_half = std::fabs(std::log(a.Z / middle.Z)) > std::fabs(std::log(middle.Z / b.Z));
    (lower_half ? high : low) = at;
    (lower_half ? b : a) = middle;
  }
  return false;
}

// What lies between two neighbouring points of a scan.
void connect(const Line& line, const Point& last, const Point& here, R8 fraction, Scan& result) {
  if (last.answer.phases == 0) return;
  if (here.answer.phases != last.answer.phases) {
    const bool above = here.answer.phases == 2;
    Boundary edge;
    if (boundary_between(line, above ? last.at : here.at, above ? here.at : last.at, Effort::scan, edge)) {
      result.boundaries.push_back(edge);
      if (fraction >= 0.0) add_edge(line, edge, above ? here : last, fraction, result);
    } else {
      ++result.failures;
    }
  } else if (fraction >= 0.0 && usable(here.answer) && usable(last.answer)) {
    add_crossing(line, last, here, fraction, result);
  }
}

bool has_two_roots(const Mixture& m, R8 T, R8 P, R8& difference) {
  Phase vapour, liquid;
  if (!evaluate(m, T, P, m.z, vapour, phase::vapour) || !evaluate(m, T, P, m.z, liquid, phase::liquid))
    return false;
  difference = vapour.lnphi[0] - liquid.lnphi[0];
  return vapour.Z > liquid.Z * (1.0 + 1.0E-9);
}

}  // namespace

Limits limits(Axis axis) {
  if (axis == Axis::pressure) return {1.0E-3, 900.0};
  return {100.0, 900.0};
}

bool splits(const Line& line, R8 at, Effort effort) {
  const Stability s = analyse(line.m, line.T(at), line.P(at), line.m.z, effort);
  return !s.failed && s.lowest() < kUnstable;
}

bool boundary_between(const Line& line, R8 outside, R8 inside, Effort effort, Boundary& result) {
  for (int step = 0; step < kBisections && std::fabs(inside - outside) > kWidth * inside; ++step) {
    const R8 middle = between(line, outside, inside);
    (splits(line, middle, effort) ? inside : outside) = middle;
  }
  // A step inside, where the split is clear; near a critical point and at the dew pressures of heavy oils in the cold,
  // where the volume of the liquid is lost beside that of the vapour, a larger one is needed.
  for (const R8 step : {1.0E-9, 1.0E-8, 1.0E-7, 1.0E-6, 1.0E-5, 1.0E-4}) {
    const R8 at = inside > outside ? inside * (1.0 + step) : inside * (1.0 - step);
    result.inside = flash(line.m, line.T(at), line.P(at), effort);
    if (result.inside.phases == 2) break;
  }
  result.at = inside;
  result.two_phases_above = inside > outside;
  result.bubble = result.inside.light_share < 0.5;
  result.two_liquids = result.inside.two_liquids;
  return result.inside.phases == 2;
}

Scan scan(const Line& line, R8 fraction, int points) {
  Scan result;
  const Limits range = limits(line.axis);
  Point last;
  for (int k = 0; k < points; ++k) {
    const R8 part = static_cast<R8>(k) / static_cast<R8>(points - 1);
    Point here;
    here.at = line.axis == Axis::pressure ? range.low * std::pow(range.high / range.low, part)
                                          : range.low + part * (range.high - range.low);
    if (fraction >= 0.0)
      here.answer = flash(line.m, line.T(here.at), line.P(here.at), Effort::scan);
    else
      here.answer.phases = splits(line, here.at, Effort::scan) ? 2 : 1;
    if (here.answer.failed) {
      ++result.failures;
      continue;
    }
    if (last.answer.phases == 1 && here.answer.phases == 1) {
      Point hidden;
      if (hidden_between(line, last.at, here.at, hidden.at)) {
        hidden.answer = flash(line.m, line.T(hidden.at), line.P(hidden.at), Effort::scan);
        connect(line, last, hidden, fraction, result);
        last = hidden;
      }
    }
    connect(line, last, here, fraction, result);
    last = here;
  }
  return result;
}

bool pure_saturation_pressure(const Mixture& m, R8 T, R8& P) {
  // Vapour is stable where its fugacity is the lower one. Both roots exist between the spinodals only: the
  // stable root's type steers elsewhere.
  R8 low = 1.0E-12, high = 1.0E3;
  Phase stable;
  for (int step = 0; step < 200 && high / low > 1.0 + 1.0E-13; ++step) {
    P = std::sqrt(low * high);
    R8 difference = 0.0;
    bool liquid = false;
    if (has_two_roots(m, T, P, difference)) {
      liquid = difference > 0.0;
    } else {
      if (!evaluate(m, T, P, m.z, stable)) return false;
      liquid = stable.liquid;
    }
    (liquid ? high : low) = P;
  }
  R8 difference = 0.0;
  return has_two_roots(m, T, P * (1.0 + 1.0E-12), difference);
}

bool pure_saturation_temperature(const Mixture& m, R8 P, R8& T) {
  R8 low = 0.0, high = 0.0;
  for (R8 t = 100.0; t < 900.0; t += 2.0) {
    R8 saturation = 0.0;
    if (!pure_saturation_pressure(m, t, saturation)) continue;
    if (saturation <= P) low = t;
    if (saturation > P && high == 0.0) high = t;
  }
  if (low == 0.0 || high == 0.0) return false;
  for (int step = 0; step < 60; ++step) {
    T = 0.5 * (low + high);
    R8 saturation = 0.0;
    if (!pure_saturation_pressure(m, T, saturation)) return false;
    (saturation > P ? high : low) = T;
  }
  return true;
}

}  // namespace talix::test::reference
