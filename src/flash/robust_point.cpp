#include "flash/robust_point.h"

#include <algorithm>
#include <cmath>

#include "engine/codes.h"
#include "fastprops/flash_record.h"
#include "numerics/sal_linear.h"

namespace talix {

namespace {

// Largest difference that a solved point leaves, in ln f and in the sum of the mole fractions.
constexpr R8 kTolerance = 1.0E-10;
// A difference that rounding may leave where a phase is nearly incompressible; accepted when steps end.
constexpr R8 kLooseTolerance = 1.0E-9;
// Phases nearer to each other than this are alike.
constexpr R8 kAlike = 1.0E-6;
// Largest Newton steps.
constexpr R8 kStepT = 0.15;  // of ln T
constexpr R8 kStepP = 1.5;   // of ln P
constexpr R8 kStepK = 2.0;   // of ln K, and a share of its size
constexpr R8 kShareK = 0.3;
// Range of temperatures [K] and pressures [bar] that a step may reach.
constexpr R8 kLowestT = 2.0, kHighestT = 5000.0;
constexpr R8 kLowestP = 1.0E-30, kHighestP = 1.0E+5;
// Reach of the zones, in Tc/T, in which the tabulated temperature derivatives are not the slopes of the values, and
// the relative step of the differences used there.
constexpr R8 kZoneLow = 0.9, kZoneHigh = 1.05;
constexpr R8 kShift = 1.0E-6;

struct Work {
  RobustPhase x, y, shifted;
  CompVec X, Y;      // compositions, not normalised
  R8 sum_x, sum_y;   // their sums
  bool true_slopes;  // lnphi_T is the slope of the values
  Vec<R8, kMaxUnknowns> residual;
  Mat<R8, kMaxUnknowns, kMaxUnknowns> jacobian;
  Vec<I4, kMaxUnknowns> pivots;
};
constinit Work w{};

R8 normalise(int n, const CompVec& from, CompVec& to) {
  R8 sum = 0.0;
  for (int i = 1; i <= n; ++i) sum += from(i);
  for (int i = 1; i <= n; ++i) to(i) = from(i) / sum;
  return sum;
}

bool in_zone(const RobustMixture& mixture, R8 T) {
  for (int i = 1; i <= mixture.n; ++i) {
    const R8 ratio = static_cast<R8>(fl.TC(mixture.at(i))) / T;
    if (ratio > kZoneLow && ratio < kZoneHigh) return true;
  }
  return false;
}

// The slope of ln phi with ln T as a difference, where the engine's derivative is not that slope.
bool mend_temperature_slope(const RobustMixture& mixture, R8 T, R8 P, I4 root, RobustPhase& phase) {
  w.shifted.status = status::ok;
  evaluate_phase(mixture, T * (1.0 + kShift), P, phase.x, root, PhaseDerivatives::none, w.shifted);
  if (w.shifted.status != status::ok) return false;
  // A shift across the limit of the root leaves no difference to use.
  if (std::fabs(std::log(w.shifted.Z / phase.Z)) > 0.01) return true;
  for (int i = 1; i <= mixture.n; ++i)
    phase.lnphi_T(i) = (w.shifted.lnphi(i) - phase.lnphi(i)) / std::log1p(kShift);
  return true;
}

bool evaluate_side(const RobustMixture& mixture, R8 T, R8 P, I4 root, bool slope_T, CompVec& composition,
                   R8& sum, RobustPhase& phase) {
  CompVec normal;
  sum = normalise(mixture.n, composition, normal);
  if (!(sum > 0.0) || !std::isfinite(sum)) return false;
  evaluate_phase(mixture, T, P, normal, root, PhaseDerivatives::all, phase);
  if (phase.status != status::ok) return false;
  return !slope_T || mend_temperature_slope(mixture, T, P, root, phase);
}

R8 reduced_volume(const RobustMixture& mixture, const RobustPhase& phase) {
  R8 sum = 0.0;
  for (int i = 1; i <= mixture.n; ++i) sum += phase.x(i) * static_cast<R8>(fl.VC(mixture.at(i)));
  return phase.Z / sum;
}

// Both phases at the point; with moving temperature its slopes are mended.
bool evaluate(const RobustMixture& mixture, int held, LinePoint& point) {
  const R8 T = temperature_of(mixture, point);
  const R8 P = pressure_of(mixture, point);
  compositions_of(mixture, point, w.X, w.Y);
  const bool zone = in_zone(mixture, T);
  const bool slope_T = zone && held != temperature_unknown(mixture);
  w.true_slopes = slope_T || !zone;
  if (!evaluate_side(mixture, T, P, point.root_x, slope_T, w.X, w.sum_x, w.x)) return false;
  if (!evaluate_side(mixture, T, P, point.root_y, slope_T, w.Y, w.sum_y, w.y)) return false;
  point.Zx = w.x.Z;
  point.Zy = w.y.Z;
  point.Vx = reduced_volume(mixture, w.x);
  point.Vy = reduced_volume(mixture, w.y);
  return true;
}

void form_residual(const RobustMixture& mixture, const LinePoint& point) {
  const int n = mixture.n;
  for (int i = 1; i <= n; ++i) w.residual(i) = point.u(i) + w.y.lnphi(i) - w.x.lnphi(i);
  R8 sum = 0.0;
  for (int i = 1; i <= n; ++i) sum += w.Y(i) - w.X(i);
  w.residual(n + 1) = sum;
  w.residual(n + 2) = 0.0;
}

void form_jacobian(const RobustMixture& mixture, int held, const LinePoint& point) {
  const int n = mixture.n;
  const R8 b = point.fraction;
  for (int j = 1; j <= n; ++j) {
    const R8 product = w.X(j) * w.Y(j) / mixture.z(j);
    const R8 dx = -b * product;
    const R8 dy = (1.0 - b) * product;
    for (int i = 1; i <= n; ++i)
      w.jacobian(i, j) = w.y.lnphi_n(i, j) / w.sum_y * dy - w.x.lnphi_n(i, j) / w.sum_x * dx;
    w.jacobian(j, j) += 1.0;
    w.jacobian(n + 1, j) = dy - dx;
    w.jacobian(n + 2, j) = 0.0;
  }
  for (int i = 1; i <= n; ++i) {
    w.jacobian(i, n + 1) = w.y.lnphi_T(i) - w.x.lnphi_T(i);
    w.jacobian(i, n + 2) = w.y.lnphi_P(i) - w.x.lnphi_P(i);
  }
  for (int k = n + 1; k <= n + 2; ++k) w.jacobian(n + 1, k) = w.jacobian(n + 2, k) = 0.0;
  w.jacobian(n + 2, held) = 1.0;
}

// Solves jacobian times step = right-hand side, which it replaces.
bool solve_equations(int order, LineVec& step) {
  I4 STATUS = status::ok;
  R8 parity = 0.0;
  SALLA1(w.jacobian.data(), order, kMaxUnknowns, w.pivots.data(), parity, STATUS);
  if (STATUS != status::ok) return false;
  SALLA0(w.jacobian.data(), order, kMaxUnknowns, w.pivots.data(), step.data());
  for (int i = 1; i <= order; ++i)
    if (!std::isfinite(step(i))) return false;
  return true;
}

R8 largest(int count, const LineVec& v) {
  R8 most = 0.0;
  for (int i = 1; i <= count; ++i) most = std::max(most, std::fabs(v(i)));
  return most;
}

// Share of the step that keeps every unknown within its largest step.
R8 share_of_step(const RobustMixture& mixture, const LinePoint& point, const LineVec& step) {
  const int n = mixture.n;
  R8 share = 1.0;
  const auto limit = [&share](R8 size, R8 most) {
    if (std::fabs(size) > most) share = std::min(share, most / std::fabs(size));
  };
  for (int i = 1; i <= n; ++i) limit(step(i), kStepK + kShareK * std::fabs(point.u(i)));
  limit(step(n + 1), kStepT);
  limit(step(n + 2), kStepP);
  return share;
}

bool alike(const RobustMixture& mixture, const LinePoint& point) {
  return !(largest(mixture.n, point.u) > kAlike) && !(std::fabs(std::log(point.Zy / point.Zx)) > kAlike);
}

bool out_of_range(const RobustMixture& mixture, const LinePoint& point) {
  const R8 T = temperature_of(mixture, point);
  const R8 P = pressure_of(mixture, point);
  return !(T > kLowestT) || !(T < kHighestT) || !(P > kLowestP) || !(P < kHighestP);
}

}  // namespace

int temperature_unknown(const RobustMixture& mixture) { return mixture.n + 1; }

int pressure_unknown(const RobustMixture& mixture) { return mixture.n + 2; }

R8 temperature_of(const RobustMixture& mixture, const LinePoint& point) {
  return std::exp(point.u(mixture.n + 1));
}

R8 pressure_of(const RobustMixture& mixture, const LinePoint& point) {
  return std::exp(point.u(mixture.n + 2));
}

void compositions_of(const RobustMixture& mixture, const LinePoint& point, CompVec& x, CompVec& y) {
  for (int i = 1; i <= mixture.n; ++i) {
    const R8 K = std::exp(std::clamp(point.u(i), -600.0, 600.0));
    const R8 share = (1.0 - point.fraction) + point.fraction * K;
    x(i) = mixture.z(i) / share;
    y(i) = mixture.z(i) * (K / share);
  }
}

const RobustPhase& phase_x() { return w.x; }

const RobustPhase& phase_y() { return w.y; }

// solve_point: Newton's method in ln K, ln T and ln P (Michelsen 1980).
//
// In       held            unknown that is held, 1 to n+2
//          value           what it is held at
//          max_iterations  Newton steps allowed
// In, out  point           start values; fraction and roots are kept
// Status   solved: every ln f equal within 1e-10 (1e-9 where rounding allows no more)
// Source   M.L. Michelsen, Fluid Phase Equilibria 4 (1980) 1-10
PointAnswer solve_point(const RobustMixture& mixture, int held, R8 value, int max_iterations,
                        LinePoint& point) {
  const int order = mixture.n + 2;
  point.u(held) = value;
  R8 before = 0.0;
  for (point.iterations = 0; point.iterations <= max_iterations; ++point.iterations) {
    if (out_of_range(mixture, point)) return PointAnswer::no_convergence;
    if (!evaluate(mixture, held, point)) return PointAnswer::unsettled;
    if (alike(mixture, point)) return PointAnswer::trivial;
    form_residual(mixture, point);
    const R8 error = largest(order, w.residual);
    if (!std::isfinite(error)) return PointAnswer::no_convergence;
    if (error < kTolerance) return PointAnswer::solved;
    if (error < kLooseTolerance && point.iterations > 2 && error > 0.1 * before) return PointAnswer::solved;
    before = error;
    if (point.iterations == max_iterations) break;
    form_jacobian(mixture, held, point);
    if (!solve_equations(order, w.residual)) return PointAnswer::no_convergence;
    const R8 share = share_of_step(mixture, point, w.residual);
    for (int i = 1; i <= order; ++i) point.u(i) -= share * w.residual(i);
    point.u(held) = value;
  }
  return PointAnswer::no_convergence;
}

bool line_slopes(const RobustMixture& mixture, int held, const LinePoint& point, LineVec& slopes) {
  if (!w.true_slopes) {
    LinePoint again = point;
    if (!evaluate(mixture, pressure_unknown(mixture), again)) return false;
  }
  form_jacobian(mixture, held, point);
  for (int i = 1; i <= mixture.n + 2; ++i) slopes(i) = 0.0;
  slopes(mixture.n + 2) = 1.0;
  return solve_equations(mixture.n + 2, slopes);
}

}  // namespace talix
