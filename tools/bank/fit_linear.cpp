#include "bank/fit_linear.h"

#include <Eigen/Dense>

#include <cmath>

namespace talix::bank {

namespace {

double rounded(double v) { return static_cast<double>(static_cast<float>(v)); }

// Least squares with a faint pull of each scaled coefficient to zero, so that a heat capacity without
// curvature gets plain coefficients.
Eigen::VectorXd least_squares(const Eigen::MatrixXd& m, const Eigen::VectorXd& y, double pull) {
  const Eigen::Index n = m.cols();
  Eigen::MatrixXd a(m.rows() + n, n);
  Eigen::VectorXd b = Eigen::VectorXd::Zero(m.rows() + n);
  a << m, pull * Eigen::MatrixXd::Identity(n, n);
  b.head(m.rows()) = y;
  return a.colPivHouseholderQr().solve(b);
}

// Fit with the weight HOLD on the rows below the range of the reference, and twice that on those above.
HeatCapacityFit heat_capacity_held(const Reference& ref, double hold) {
  HeatCapacityFit f;
  if (ref.cp.empty()) {
    return f;
  }
  f.tmin = ref.cp.front().T;
  f.tmax = ref.cp.back().T;
  // Beyond the reference the fit is held: level below, the last trend halved above, with little weight.
  struct Row {
    double T, cp, weight;
  };
  std::vector<Row> rows;
  for (const CpPoint& p : ref.cp) {
    rows.push_back({p.T, p.cp, p.weight});
  }
  for (double T = 50.0; T < f.tmin - 10.0; T += 25.0) {
    const double cp = std::max(ref.cp.front().cp * (1.0 - 0.5 * (f.tmin - T) / f.tmin), 2.5 * GAS_CONSTANT);
    rows.push_back({T, cp, hold});
  }
  const std::size_t n = ref.cp.size();
  const CpPoint &last = ref.cp[n - 1], &before = ref.cp[n - 3 < n ? n - 3 : 0];
  const double trend = (last.cp - before.cp) / (last.T - before.T);
  for (double T = f.tmax + 50.0; T <= 1700.0; T += 50.0) {
    const double span = T - f.tmax, fade = 600.0;
    rows.push_back({T, last.cp + trend * fade * (1.0 - std::exp(-span / fade)), 2.0 * hold});
  }
  Eigen::MatrixXd m(static_cast<Eigen::Index>(rows.size()), 8);
  Eigen::VectorXd y(static_cast<Eigen::Index>(rows.size()));
  constexpr double SCALE = 1000.0;  // temperature unit of the fit [K]
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto r = static_cast<Eigen::Index>(i);
    const double t = rows[i].T / SCALE, w = rows[i].weight / rows[i].cp;
    double power = 1.0;
    for (Eigen::Index k = 0; k < 6; ++k, power *= t) {
      m(r, k) = w * power;
    }
    m(r, 6) = w * 0.1 / t;
    m(r, 7) = w * 0.01 / (t * t);
    y(r) = w * rows[i].cp;
  }
  const Eigen::VectorXd x = least_squares(m, y, 1e-7);
  double scale = 1.0;
  for (int k = 0; k < 6; ++k, scale *= SCALE) {
    f.c[static_cast<std::size_t>(k)] = rounded(x(k) / scale);
  }
  f.c[6] = rounded(x(6) * 0.1 * SCALE);
  f.c[7] = rounded(x(7) * 0.01 * SCALE * SCALE);
  for (const CpPoint& p : ref.cp) {
    f.deviation.add(100.0 * (ideal_gas_cp(f.c, p.T) / p.cp - 1.0));
  }
  f.deviation.finish();
  return f;
}

// Whether a heat capacity stays that of a gas far below the range of its reference, and level far above.
bool sound_outside(const HeatCapacityFit& f) {
  constexpr double kColdest = 100.0, kStep = 10.0, kLeast = 2.0;  // K, K, R
  for (double T = kColdest; T < f.tmin; T += kStep)
    if (!(ideal_gas_cp(f.c, T) > kLeast * GAS_CONSTANT)) return false;
  constexpr double kHigh = 1500.0, kHottest = 1700.0, kMost = 1.3;
  for (double T = kHigh; T <= kHottest; T += kStep)
    if (!(ideal_gas_cp(f.c, T) < kMost * ideal_gas_cp(f.c, kHigh))) return false;
  return true;
}

}  // namespace

HeatCapacityFit fit_heat_capacity(const Reference& ref) {
  HeatCapacityFit f;
  for (const double hold : {0.005, 0.02, 0.1, 0.5}) {
    f = heat_capacity_held(ref, hold);
    if (sound_outside(f)) break;
  }
  return f;
}

WagnerFit fit_wagner(const FitComponent& c, const Reference& ref) {
  WagnerFit f;
  std::vector<SatPoint> used;
  for (const SatPoint& s : ref.sat) {
    if (s.T < 0.992 * c.tc) {
      used.push_back(s);
    }
  }
  const std::array<double, 4> x = wagner_through(c, used);
  for (int k = 0; k < 4; ++k) {
    f.w[static_cast<std::size_t>(k)] = rounded(x[static_cast<std::size_t>(k)]);
  }
  for (const SatPoint& s : used) {
    const double tr = s.T / c.tc;
    if (tr > 0.3999 && tr < 0.9811) {
      f.deviation.add(100.0 * (wagner_pressure(c, f.w, s.T) / s.psat - 1.0));
    }
  }
  f.deviation.finish();
  return f;
}

}  // namespace talix::bank
