#include "bank/fit_curves.h"

#include <ceres/ceres.h>

#include <algorithm>
#include <cmath>

#include "bank/fit_residuals.h"

namespace talix::bank {

namespace {

Curves rounded(const Curves& from) {
  Curves c = from;
  for (double& v : c.p) v = static_cast<double>(static_cast<float>(v));
  c.prepare();
  return c;
}

// The residuals with a difference slope, steps scaled to each variable.
class CurveCost : public ceres::CostFunction {
 public:
  CurveCost(const Problem& pb, int count) : pb_(pb) {
    set_num_residuals(count);
    mutable_parameter_block_sizes()->push_back(NX);
  }
  bool Evaluate(double const* const* parameters, double* residuals, double** jacobians) const override {
    std::vector<double> r0, r1;
    all_residuals(pb_, parameters[0], r0);
    std::copy(r0.begin(), r0.end(), residuals);
    if (jacobians == nullptr || jacobians[0] == nullptr) {
      return true;
    }
    X x{};
    std::copy(parameters[0], parameters[0] + NX, x.begin());
    for (std::size_t k = 0; k < NX; ++k) {
      const double keep = x[k];
      const double h = 1e-7 * std::max(std::fabs(keep), 0.01);
      x[k] = keep + h;
      all_residuals(pb_, x.data(), r1);
      x[k] = keep;
      for (std::size_t i = 0; i < r0.size(); ++i) {
        jacobians[0][i * NX + k] = (r1[i] - r0[i]) / h;
      }
    }
    return true;
  }

 private:
  const Problem& pb_;
};

struct Bound {
  double lo, hi;
};

std::array<Bound, NX> bounds_of(Quantum kind) {
  const double level = tabulated_level(kind), a = 4.934 * level;
  std::array<Bound, NX> b = {{{0.72 * a, 1.10 * a},
                              {0.02, 8.0},
                              {0.0, 4.0},
                              {-4.0, 4.2},
                              {-2.0, 5.0},
                              {0.045, 0.105},
                              {-0.02, 0.03},
                              {-0.6, 0.6},
                              {-1.0, 4.2},
                              {0.5, 3.5},
                              {0.68 * a, 1.12 * a},
                              {-60.0, 250.0},
                              {-250.0, 120.0},
                              {-0.9, 600.0},
                              {0.0, 600.0}}};
  if (kind != Quantum::none) {
    const double join = tabulated_join(kind);
    b[B_JOIN] = {join, join};
  }
  return b;
}

double solve(const Problem& pb, X& x, int iterations) {
  std::vector<double> r;
  all_residuals(pb, x.data(), r);
  ceres::Problem problem;
  problem.AddResidualBlock(new CurveCost(pb, static_cast<int>(r.size())), nullptr, x.data());
  const auto bounds = bounds_of(pb.kind);
  std::vector<int> constant;
  for (int k = 0; k < NX; ++k) {
    const Bound& b = bounds[static_cast<std::size_t>(k)];
    if (b.lo == b.hi) {
      x[static_cast<std::size_t>(k)] = b.lo;
      constant.push_back(k);
      continue;
    }
    x[static_cast<std::size_t>(k)] = std::clamp(x[static_cast<std::size_t>(k)], b.lo, b.hi);
    problem.SetParameterLowerBound(x.data(), k, b.lo);
    problem.SetParameterUpperBound(x.data(), k, b.hi);
  }
  if (pb.pointwise) {
    constant.insert(constant.end(), {P12, P13, P14, P15});
  }
  if (!constant.empty()) {
    problem.SetManifold(x.data(), new ceres::SubsetManifold(NX, constant));
  }
  ceres::Solver::Options o;
  o.linear_solver_type = ceres::DENSE_QR;
  o.max_num_iterations = iterations;
  o.num_threads = 1;
  o.function_tolerance = 1e-7;
  o.parameter_tolerance = 1e-10;
  o.logging_type = ceres::SILENT;
  ceres::Solver::Summary summary;
  ceres::Solve(o, &problem, &summary);
  return summary.final_cost;
}

// a and b of every saturation point on the branch that continues from low temperature.
void pointwise(Problem& pb) {
  pb.point.assign(pb.ref->sat.size(), {0.0, 0.0});
  double b_last = 0.0;
  bool lost = false;
  for (std::size_t i = 0; i < pb.ref->sat.size(); ++i) {
    const SatPoint& s = pb.ref->sat[i];
    const double u = s.T / pb.c->tc, pr = s.psat / pb.c->pc;
    const double w = pb.c->pc / (s.rhol * GAS_CONSTANT * pb.c->tc);
    if (u > (pb.kind == Quantum::helium ? 0.70 : 0.985) || u < 0.3 || lost) {
      continue;
    }
    std::array<PointSolution, 8> sol{};
    const int n = solve_point(u, pr, w, sol);
    int best = -1;
    for (int k = 0; k < n; ++k) {
      const double b = sol[static_cast<std::size_t>(k)].B;
      if (best < 0 ||
          std::fabs(b - (b_last > 0.0 ? b_last : 0.9 * w)) <
              std::fabs(sol[static_cast<std::size_t>(best)].B - (b_last > 0.0 ? b_last : 0.9 * w))) {
        best = k;
      }
    }
    if (best < 0) {
      lost = b_last > 0.0;
      continue;
    }
    const PointSolution& p = sol[static_cast<std::size_t>(best)];
    if (b_last > 0.0 && std::fabs(p.B / b_last - 1.0) > 0.06) {
      lost = true;
      continue;
    }
    pb.point[i] = p;
    b_last = p.B;
  }
}

X start_of(const FitComponent& c, Quantum kind, double width_factor, double bend_shift) {
  const std::array<double, 15> g = generalised_constants(std::max(c.omega, 0.1045));
  Curves cv;
  cv.p = g;
  cv.prepare();
  const double level = tabulated_level(kind);
  X x{};
  x[A_CRIT] = 4.934 * level;
  x[A_COLD] = g[1] * g[2];
  x[A_HOT] = std::max(g[4] * g[2], 0.02);
  x[A_WIDTH] = std::log(g[2] * width_factor);
  x[A_BEND] = g[3] + bend_shift;
  x[B_JOIN] = kind == Quantum::none ? curves_at(cv, 1.0 / 1.04, false).B : tabulated_join(kind);
  x[B_COLD] = 0.01 * g[6] * g[7];
  x[B_HOT] = 0.01 * g[9] * g[7];
  x[B_WIDTH] = std::log(std::max(g[7], 0.5) * width_factor);
  x[B_BEND] = g[8] + bend_shift;
  x[P11] = 4.934 * level;
  const double w = std::max(c.omega, 0.0);
  x[P12] = 19.696 * w + 0.18902;
  x[P13] = -25.016 * w - 0.72032;
  x[P14] = 45.547 * w + 1.2889;
  x[P15] = 31.4571 * w + 1.1923;
  return x;
}

}  // namespace

CurveFit fit_curves(const FitComponent& c, const Reference& ref, const std::array<double, 8>& cp_ig) {
  Problem pb;
  pb.c = &c;
  pb.ref = &ref;
  pb.cp_ig = cp_ig;
  pb.kind = quantum_of(c.code.c_str());
  double u_max = 0.0;
  for (const GasPoint& g : ref.gas) {
    u_max = std::max(u_max, g.T / c.tc);
  }
  pb.guide_weight = u_max > 1.9 ? 0.0 : (u_max > 1.08 ? 0.3 : 1.0);
  if (pb.kind == Quantum::hydrogen || pb.kind == Quantum::helium) {
    pb.guide_weight = 0.0;  // their own data reach far, and they do not follow corresponding states
  } else if (c.omega < -0.1) {
    pb.guide_weight = 0.3;  // deuterium, mercury: better a rough guide than none
  }
  pointwise(pb);
  struct Candidate {
    double cost;
    X x;
  };
  std::vector<Candidate> first;
  pb.pointwise = true;
  for (const double wf : {0.6, 1.0, 2.5}) {
    for (const double shift : {-0.1, 0.15, 0.5}) {
      X x = start_of(c, pb.kind, wf, shift);
      const double cost = solve(pb, x, 80);
      first.push_back({cost, x});
    }
  }
  std::stable_sort(first.begin(), first.end(),
                   [](const Candidate& a, const Candidate& b) { return a.cost < b.cost; });
  pb.pointwise = false;
  CurveFit best;
  best.cost = 1e300;
  X best_x{};
  int used = 0;
  for (std::size_t i = 0; i < first.size() && used < 8; ++i) {
    if (i > 0 && std::fabs(first[i].cost / first[i - 1].cost - 1.0) < 1e-6) {
      continue;
    }
    X x = first[i].x;
    const double cost = solve(pb, x, 150);
    ++used;
    if (cost < best.cost) {
      best.cost = cost;
      best_x = x;
    }
  }
  best.cost = solve(pb, best_x, 300);
  // Aims of its own are followed from there: with them alone the many minima are harder to tell apart.
  const Aims aims = aims_of(c);
  if (aims.join > 0.0) {
    pb.aims = aims;
    best.cost = solve(pb, best_x, 500);
  }
  best.starts = used;
  best.curves = rounded(curves_of(best_x.data(), pb.kind));
  best.basis = ref.basis;
  return best;
}

}  // namespace talix::bank
