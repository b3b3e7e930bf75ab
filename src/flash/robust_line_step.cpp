#include "flash/robust_line_step.h"

#include <algorithm>
#include <cmath>

#include "engine/codes.h"

namespace talix {

namespace {

constexpr int kStepIterations = 6;
constexpr int kJumpIterations = 12;  // across a critical point
constexpr int kEasy = 2, kHard = 4;  // iterations that lengthen and shorten the next step
constexpr R8 kLongest = 1.0, kShortest = 0.004, kFirst = 0.5;  // steps, as a share of the largest
constexpr R8 kShorter = 0.4;                                   // behind one that failed
// Largest steps.
constexpr R8 kLargestT = 0.08, kLargestP = 0.7, kLargestK = 0.6, kLargestShareK = 0.15;
// Weight of ln T among the sensitivities.
constexpr R8 kWeightT = 4.0;
// Critical region: every ln K below this. The critical point is passed in one step from gap
// to gap; a gap that is too wide for the mixture is made narrower.
constexpr R8 kCriticalK = 0.15, kWidestGap = 0.02, kNarrowestGap = 1.0E-4, kNarrower = 0.3;

bool near_critical(const RobustMixture& mixture, const LinePoint& point) {
  return largest_ln_k(mixture, point) < kCriticalK && std::fabs(std::log(point.Zy / point.Zx)) < 0.7;
}

// The unknown that moves most along the line; next to a critical point one of the ln K.
int most_sensitive(const RobustMixture& mixture, const LinePoint& point, const LineVec& slopes) {
  const int n = mixture.n;
  const int last = near_critical(mixture, point) ? n : n + 2;
  int best = 1;
  R8 most = -1.0;
  for (int i = 1; i <= last; ++i) {
    const R8 size = std::fabs(slopes(i)) * (i == n + 1 ? kWeightT : 1.0);
    if (size > most) {
      most = size;
      best = i;
    }
  }
  return best;
}

R8 step_length(const RobustMixture& mixture, const LineStepper& step) {
  const int n = mixture.n;
  const LinePoint& p = step.segment.to;
  R8 most = 1.0E+3;
  const auto limit = [&most](R8 slope, R8 largest) {
    if (std::fabs(slope) * most > largest) most = largest / std::fabs(slope);
  };
  for (int i = 1; i <= n; ++i) limit(step.slopes(i), kLargestK + kLargestShareK * std::fabs(p.u(i)));
  limit(step.slopes(n + 1), kLargestT);
  limit(step.slopes(n + 2), kLargestP);
  R8 end = p.u(step.held) + step.sense * step.reach * most;
  const R8 here = p.u(step.held);
  if (step.held <= n && here * step.sense < 0.0 && (here * end < 0.0 || std::fabs(end) < step.gap))
    end = std::fabs(here) > 1.5 * step.gap ? std::copysign(step.gap, here) : -std::copysign(step.gap, here);
  return end - p.u(step.held);
}

// Extrapolation by the cubics of the last segment where they hold, else along the slopes.
void predict(const RobustMixture& mixture, const LineStepper& step, R8 S, LinePoint& point) {
  const int order = mixture.n + 2;
  point = step.segment.to;
  const R8 ahead = S - step.segment.to.u(step.held);
  const LineSegment& g = step.segment;
  const R8 behind = g.to.u(step.held) - g.from.u(step.held);
  if (step.has_segment && g.held == step.held && behind * ahead > 0.0 &&
      std::fabs(ahead) < 2.0 * std::fabs(behind)) {
    for (int k = 1; k <= order; ++k) point.u(k) = cubic_value(g, k, S);
  } else {
    for (int k = 1; k <= order; ++k) point.u(k) += ahead * step.slopes(k);
  }
}

// A solution far from where the slopes lead belongs to another line.
bool has_jumped(const RobustMixture& mixture, const LinePoint& predicted, const LinePoint& found) {
  const int n = mixture.n;
  if (std::fabs(found.u(n + 1) - predicted.u(n + 1)) > kLargestT) return true;
  if (std::fabs(found.u(n + 2) - predicted.u(n + 2)) > 1.5 * kLargestP) return true;
  for (int i = 1; i <= n; ++i)
    if (std::fabs(found.u(i) - predicted.u(i)) >
        1.5 * (kLargestK + kLargestShareK * std::fabs(predicted.u(i))))
      return true;
  return false;
}

}  // namespace

R8 largest_ln_k(const RobustMixture& mixture, const LinePoint& point) {
  R8 most = 0.0;
  for (int i = 1; i <= mixture.n; ++i) most = std::max(most, std::fabs(point.u(i)));
  return most;
}

void set_roots(LinePoint& point) {
  const bool exchanged = is_exchanged(point);
  point.root_x = exchanged ? phase::vapour : phase::liquid;
  point.root_y = exchanged ? phase::liquid : phase::vapour;
}

bool choose_spec(const RobustMixture& mixture, LineStepper& step) {
  step.held = most_sensitive(mixture, step.segment.to, step.slopes);
  const R8 scale = step.slopes(step.held);
  if (!(std::fabs(scale) > 0.0)) return false;
  for (int i = 1; i <= mixture.n + 2; ++i) step.slopes(i) /= scale;
  if (scale < 0.0) step.sense = -step.sense;
  return true;
}

bool set_out(const RobustMixture& mixture, const LinePoint& first, const LineVec& slopes, bool downwards,
             LineStepper& step) {
  step.sense = downwards ? -1.0 : 1.0;
  step.reach = kFirst;
  step.gap = kWidestGap;
  step.has_segment = false;
  step.segment.to = first;
  step.slopes = slopes;
  return choose_spec(mixture, step);
}

bool advance(const RobustMixture& mixture, LineStepper& step) {
  LinePoint predicted{};
  while (step.reach > kShortest) {
    const R8 S = step.segment.to.u(step.held) + step_length(mixture, step);
    predict(mixture, step, S, predicted);
    LinePoint next = predicted;
    const bool jump = step.held <= mixture.n && S * step.segment.to.u(step.held) < 0.0;
    const PointAnswer answer =
        solve_point(mixture, step.held, S, jump ? kJumpIterations : kStepIterations, next);
    if (answer == PointAnswer::unsettled && engine_budget() <= 0) return false;
    if (answer != PointAnswer::solved || has_jumped(mixture, predicted, next)) {
      if (jump && step.gap > kNarrowestGap)
        step.gap *= kNarrower;
      else
        step.reach *= kShorter;
      continue;
    }
    LineSegment& g = step.segment;
    g.from = g.to;
    g.slope_from = step.slopes;
    g.held = step.held;
    set_roots(next);
    g.to = next;
    if (!line_slopes(mixture, g.held, g.to, g.slope_to)) return false;
    step.slopes = g.slope_to;
    step.has_segment = true;
    if (next.iterations <= kEasy) step.reach = std::min(kLongest, 1.6 * step.reach);
    if (next.iterations >= kHard) step.reach *= 0.7;
    return true;
  }
  return false;
}

}  // namespace talix
