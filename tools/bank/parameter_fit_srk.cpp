// The polar constant of the alpha function
//   sqrt(alpha) = 1 + m (1 - sqrt(Tr)) - p (1 - sqrt(Tr))(0.7 - Tr)
// from the vapour pressures that the curves are fitted to. At each temperature there is one alpha with which the cubic has the measured pressure; in
// these the relation is linear in p.
#include <cmath>
#include <map>
#include <optional>

#include "bank/build.h"
#include "bank/fit_equation.h"
#include "bank/fit_reference.h"
#include "bank/parameter_field.h"
#include "bank/parameter_files.h"
#include "bank/parameter_fit.h"
#include "bank/tables.h"

namespace talix::bank {

namespace {

constexpr double kOa = 0.42748023354034140;  // of the cubic of Soave
constexpr double kOb = 0.086640349964957721;
constexpr int kPolar = 4;  // forms of the alpha function
constexpr int kPlain = 2;
constexpr double kLowestReduced = 0.50;   // [-]
constexpr double kHighestReduced = 0.96;  // [-]
constexpr double kLowestPressure = 500;   // [Pa]
constexpr int kFewestPoints = 8;
constexpr double kGoodEnough = 2;  // mean deviation with the acentric factor of the component [%]
constexpr double kPascalPerBar = 1e5;

double slope_of(double omega) { return 0.48 + omega * (1.57 - 0.176 * omega); }

AB equation(double u, double alpha) { return {kOa * alpha / u, 0, 0, kOb, 0, 0}; }

// ln of the reduced vapour pressure of the cubic; nothing where it has none.
std::optional<double> log_pressure(double u, double alpha, double start) {
  const Saturation state = saturation(equation(u, alpha), u, start);
  if (!state.ok || !(state.pr > 0)) return std::nullopt;
  return std::log(state.pr);
}

struct Point {
  double u;            // T/Tc
  double target;       // ln of the reduced pressure
  double root;         // sqrt(alpha) that meets it
  double sensitivity;  // of ln pressure to sqrt(alpha)
};

// Secant steps on sqrt(alpha).
bool meet_pressure(Point& point, double start) {
  const double pr = std::exp(point.target);
  double x0 = start;
  double x1 = start * 1.001;
  auto f0 = log_pressure(point.u, x0 * x0, pr);
  for (int step = 0; step < 30 && f0; ++step) {
    const auto f1 = log_pressure(point.u, x1 * x1, pr);
    if (!f1 || *f1 == *f0) return false;
    point.sensitivity = (*f1 - *f0) / (x1 - x0);
    const double next = x1 - (*f1 - point.target) / point.sensitivity;
    if (std::abs(next - x1) < 1e-9) {
      point.root = next;
      return true;
    }
    x0 = x1;
    f0 = f1;
    x1 = next;
  }
  return false;
}

double root_alpha(double u, double m, double p) {
  const double s = 1 - std::sqrt(u);
  return 1 + m * s - p * s * (0.7 - u);
}

// Mean deviation of the vapour pressure [%].
double deviation(const std::vector<Point>& points, double m, double p) {
  double sum = 0;
  for (const Point& point : points) {
    const double root = root_alpha(point.u, m, p);
    const auto found = log_pressure(point.u, root * root, std::exp(point.target));
    sum += found ? std::abs(std::exp(*found - point.target) - 1) : 1;
  }
  return 100 * sum / static_cast<double>(points.size());
}

// The states of the saturation line that the fit uses, over the critical point of the set.
std::vector<Point> reference_points(const PolarFit& fit, const std::vector<SatPoint>& line) {
  std::vector<Point> points;
  for (const SatPoint& state : line) {
    Point point{state.T / fit.tc, 0, 0, 0};
    if (point.u < kLowestReduced || point.u > kHighestReduced || !(state.psat >= kLowestPressure)) continue;
    point.target = std::log(state.psat / (fit.pc * kPascalPerBar));
    if (meet_pressure(point, root_alpha(point.u, slope_of(fit.omega), 0))) points.push_back(point);
  }
  return points;
}

// Sums of the least squares in the constant and, where wanted, in the slope m; each point counts by how far its
// pressure moves.
struct Squares {
  double ss = 0, sx = 0, xx = 0, sy = 0, xy = 0;
};

Squares sums(const std::vector<Point>& points, double m) {
  Squares result;
  for (const Point& point : points) {
    const double s = 1 - std::sqrt(point.u);
    const double ws = point.sensitivity * s;
    const double wx = -ws * (0.7 - point.u);
    const double wy = point.sensitivity * (point.root - 1 - m * s);
    result.ss += ws * ws;
    result.sx += ws * wx;
    result.xx += wx * wx;
    result.sy += ws * wy;
    result.xy += wx * wy;
  }
  return result;
}

// The acentric factor of a slope of the alpha function, on the rising branch.
double omega_of(double m) { return (1.57 - std::sqrt(1.57 * 1.57 - 4 * 0.176 * (m - 0.48))) / (2 * 0.176); }

// What a column of the file holds of a figure.
double written(double value, int decimals) { return std::stod(real_text(value, 6, decimals)); }

// A better acentric factor for the set, where its own does not go with the vapour pressure.
void fit_omega(PolarFit& fit, const std::vector<Point>& points) {
  const double m = slope_of(fit.omega);
  const Squares q = sums(points, m);
  const double step = (q.sy * q.xx - q.xy * q.sx) / (q.ss * q.xx - q.sx * q.sx);
  const double omega = omega_of(m + step);
  if (!std::isfinite(omega)) return;
  fit.omega = written(omega, 4);
  fit.own_omega = true;
}

PolarFit fit_component(const ParameterComponent& component, const std::vector<SatPoint>& line) {
  PolarFit fit{};
  fit.number = component.number;
  fit.code = component.code;
  fit.tc = written(component.tc, 2);
  fit.pc = written(component.pc, 2);
  fit.omega = written(component.omega, 4);
  fit.form = kPlain;
  const std::vector<Point> points = reference_points(fit, line);
  fit.points = static_cast<int>(points.size());
  if (fit.points < kFewestPoints) return fit;
  fit.tmin = points.front().u * fit.tc;
  fit.tmax = points.back().u * fit.tc;
  fit.plain = deviation(points, slope_of(fit.omega), 0);
  fit.mean = fit.plain;
  for (const bool own_omega : {false, true}) {
    PolarFit trial = fit;
    if (own_omega) fit_omega(trial, points);
    const double m = slope_of(trial.omega);
    const Squares q = sums(points, m);
    trial.p1 = std::round(1e4 * q.xy / q.xx) / 1e4;
    trial.form = kPolar;
    trial.mean = deviation(points, m, trial.p1);
    // Above the critical temperature alpha must fall.
    if (trial.mean < fit.mean && m / 2 + 0.3 * trial.p1 > 0) fit = trial;
    if (fit.mean < kGoodEnough) break;
  }
  return fit;
}

}  // namespace

std::vector<PolarFit> fit_polar(const std::filesystem::path& data_dir) {
  ReferenceTables tables;
  std::string fault;
  if (!read_reference(data_dir.string(), tables, fault)) throw BankError(fault);
  std::map<int, const FitComponent*> by_number;
  for (const FitComponent& component : tables.components) by_number[component.number] = &component;
  std::vector<PolarFit> fits;
  for (const ParameterComponent& component : parameter_components(compile_bank(data_dir).bank.pure)) {
    const auto found = by_number.find(component.number);
    if (found == by_number.end()) continue;
    const Reference reference = reference_of(tables, *found->second);
    // An estimate from the acentric factor holds nothing that the plain alpha function does not.
    if (reference.psat_estimated) continue;
    fits.push_back(fit_component(component, reference.sat));
  }
  return fits;
}

}  // namespace talix::bank
