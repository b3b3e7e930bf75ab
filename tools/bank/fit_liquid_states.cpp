// The corresponding-states liquid model: one set of parameters for viscosity and conductivity of a liquid.
#include "bank/fit_sets.h"

#include <ceres/ceres.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace talix::bank {

namespace {

// Reduced temperatures between which the model is a liquid one.
constexpr double kLowest = 0.40, kHighest = 0.85;
constexpr double kAccepted = 10.0;  // mean deviation up to which a component gets the set [%]
constexpr double kNoLiquid = 3.0;   // residual where the model gives nothing positive [ln]

constexpr double kVolumeShare = 0.4;  // volume of a molecule over the critical one, as the n-alkanes have it
constexpr double kFarthest = 6.0;     // factor that the volume may be off before the set means nothing
constexpr double kPull = 0.0015;      // a share of the number of points
constexpr double kAvogadro = 6.02214e23;  // 1/mol
constexpr double kCubicAngstroms = 1e30;  // in a cubic metre

struct Target {
  double T, P, value;
  bool viscosity;
};

// The free parameters are the logarithms of ratio, volume and energy.
SetValues parameters(const double* x) {
  SetValues c{};
  c[0] = std::exp(x[0]);
  c[1] = std::exp(x[1]);
  c[2] = std::exp(x[2]);
  // The size is the ratio times one degree of freedom, so that mixtures average the ratio over the moles.
  c[3] = c[0];
  // With this value the methane factor 0.21938 + 0.26504 ln(20.18 c5) is 1: pairs with methane are like any other.
  c[4] = std::exp((1.0 - 0.21938) / 0.26504) / 20.18;
  return c;
}

double model_value(const SetValues& c, double molar_mass, const Target& t) {
  return t.viscosity ? parl2_viscosity(c, molar_mass, t.T, t.P) : parl2_conductivity(c, molar_mass, t.T, t.P);
}

struct Residuals {
  const std::vector<Target>* targets;
  double molar_mass;
  double volume;  // expected of a molecule [A3]
  bool operator()(double const* const* x, double* residuals) const {
    const SetValues c = parameters(x[0]);
    for (std::size_t i = 0; i < targets->size(); ++i) {
      const Target& t = (*targets)[i];
      const double v = model_value(c, molar_mass, t);
      const double ratio = v / t.value;
      residuals[i] = ratio > 0.0 && std::isfinite(ratio) ? std::log(ratio) : kNoLiquid;
    }
    // A faint pull to the expected volume settles it where the data do not.
    residuals[targets->size()] = kPull * static_cast<double>(targets->size()) * std::log(c[1] / volume);
    return true;
  }
};

void add_targets(std::vector<Target>& targets, const FitComponent& c, const SourceLine& line,
                 const FittedSet& pressure, double factor, bool viscosity) {
  constexpr std::size_t kEvery = 2;  // of the points
  for (std::size_t i = 0; i < line.points.size(); i += kEvery) {
    const SourcePoint& p = line.points[i];
    if (p.core && p.T > kLowest * c.tc && p.T < kHighest * c.tc)
      targets.push_back({p.T, 1e6 * psat_pressure(pressure.c, p.T), factor * p.value, viscosity});
  }
}

double solve_from(const std::vector<Target>& targets, double molar_mass, double volume,
                  std::array<double, 3>& x) {
  // The problem owns its cost and loss functions.
  auto cost = std::make_unique<ceres::DynamicNumericDiffCostFunction<Residuals>>(
      new Residuals{&targets, molar_mass, volume});  // NOLINT: owned by the cost function
  cost->AddParameterBlock(3);
  cost->SetNumResiduals(static_cast<int>(targets.size()) + 1);
  ceres::Problem problem;
  problem.AddResidualBlock(cost.release(), nullptr, x.data());
  ceres::Solver::Options options;
  options.max_num_iterations = 200;
  options.num_threads = 1;
  options.logging_type = ceres::SILENT;
  ceres::Solver::Summary summary;
  ceres::Solve(options, &problem, &summary);
  return summary.final_cost;
}

}  // namespace

std::optional<FittedSet> fit_liquid_states(const FitComponent& c, const SourceLine& viscosity,
                                           const SourceLine& conductivity, const FittedSet& pressure) {
  std::vector<Target> targets;
  add_targets(targets, c, viscosity, pressure, 1000.0, true);
  const std::size_t of_viscosity = targets.size();
  add_targets(targets, c, conductivity, pressure, 1.0, false);
  constexpr std::size_t kFewest = 6;
  if (of_viscosity < kFewest || targets.size() - of_viscosity < kFewest) return std::nullopt;
  const double expected = kVolumeShare * c.vc / kAvogadro * kCubicAngstroms;
  double least = 0.0;
  std::array<double, 3> best{};
  bool first = true;
  for (const double ratio : {0.5, 1.0, 2.0, 4.0}) {
    for (const double tr_at_critical : {0.8, 1.2, 1.6}) {
      for (const double volume : {0.5 * expected, 2.0 * expected}) {
        std::array<double, 3> x{std::log(ratio), std::log(volume),
                                std::log(1.38064383e-2 * ratio * c.tc / tr_at_critical)};
        const double cost = solve_from(targets, c.mw, expected, x);
        if (first || cost < least) {
          least = cost;
          best = x;
        }
        first = false;
      }
    }
  }
  FittedSet set{.name = "PARL2", .flag = kTabulatedForm, .count = 5};
  set.c = parameters(best.data());
  for (double& v : set.c) v = rounded_to_32_bits(v);
  set.tmin = std::max(std::max(viscosity.tmin, conductivity.tmin), kLowest * c.tc);
  set.tmax = std::min(std::min(viscosity.tmax, conductivity.tmax), kHighest * c.tc);
  for (const Target& t : targets)
    (t.viscosity ? set.deviation : set.second).add(100.0 * (model_value(set.c, c.mw, t) / t.value - 1.0));
  set.deviation.finish();
  set.second.finish();
  set.source = "viscosity: " + viscosity.source + "; conductivity: " + conductivity.source;
  if (std::fabs(std::log(set.c[1] / expected)) > std::log(kFarthest)) return std::nullopt;
  if (!(set.deviation.mean <= kAccepted && set.second.mean <= kAccepted)) return std::nullopt;
  return set;
}

}  // namespace talix::bank
