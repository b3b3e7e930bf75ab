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
    const bool slopes = jacobians != nullptr && jacobians[0] != nullptr;
    Tangents tangents;
    all_residuals(pb_, parameters[0], r0, slopes ? &tangents : nullptr);
    std::copy(r0.begin(), r0.end(), residuals);
    if (!slopes) {
      return true;
    }
    tangents.follow = true;
    X x{};
    std::copy(parameters[0], parameters[0] + NX, x.begin());
    for (std::size_t k = 0; k < NX; ++k) {
      const double keep = x[k];
      const double h = 1e-7 * std::max(std::fabs(keep), 0.01);
      x[k] = keep + h;
      all_residuals(pb_, x.data(), r1, &tangents);
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
  std::array<Bound, NX> b = {{{0.60 * a, 1.10 * a},
                              {0.02, 8.0},
                              {0.0, 4.0},
                              {-4.0, 4.2},
                              {-2.0, 5.0},
                              {0.010, 0.105},
                              {-0.02, 0.03},
                              {-0.6, 0.6},
                              {-1.0, 4.2},
                              {0.5, 3.5},
                              {0.55 * a, 1.12 * a},
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
  if (pb.held) {
    constant.insert(constant.end(), {A_WIDTH, A_BEND, B_WIDTH, B_BEND});
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
  // For large acentric factors the general curve rises behind the critical point; no start for a curve that falls.
  constexpr double kLargest = 0.4;
  const double w = std::clamp(c.omega, 0.0, kLargest);
  x[P12] = 19.696 * w + 0.18902;
  x[P13] = -25.016 * w - 0.72032;
  x[P14] = 45.547 * w + 1.2889;
  x[P15] = 31.4571 * w + 1.1923;
  return x;
}

// A set of constants with the cost of its residuals.
struct Candidate {
  double cost;
  X x;
};

void sort_by_cost(std::vector<Candidate>& candidates) {
  std::stable_sort(candidates.begin(), candidates.end(),
                   [](const Candidate& a, const Candidate& b) { return a.cost < b.cost; });
}

// The same minimum found twice counts once.
void drop_repeated(std::vector<Candidate>& candidates, std::size_t most) {
  constexpr double kSame = 1e-6;
  std::vector<Candidate> kept;
  for (const Candidate& c : candidates) {
    if (!kept.empty() && std::fabs(c.cost / kept.back().cost - 1.0) < kSame) continue;
    kept.push_back(c);
  }
  if (kept.size() > most) kept.resize(most);
  candidates = std::move(kept);
}

// What a fit of this component asks for.
Problem problem_of(const FitComponent& c, const Reference& ref, const std::array<double, 8>& cp_ig) {
  Problem pb;
  pb.c = &c;
  pb.ref = &ref;
  pb.cp_ig = cp_ig;
  pb.kind = quantum_of(c.code.c_str());
  double u_max = 0.0;
  for (const GasPoint& g : ref.gas) u_max = std::max(u_max, g.T / c.tc);
  pb.guide_weight = u_max > 1.9 ? 0.0 : (u_max > 1.08 ? 0.3 : 1.0);
  if (pb.kind == Quantum::hydrogen || pb.kind == Quantum::helium) {
    pb.guide_weight = 0.0;  // their own data reach far, and they do not follow corresponding states
  } else if (c.omega < -0.1) {
    pb.guide_weight = 0.3;  // deuterium, mercury: better a rough guide than none
  }
  return pb;
}

// The minimum over many starts: first on the pointwise a and b, then on what is asked for, where the poorer half is
// given up early.
X search(Problem& pb, CurveFit& fit) {
  constexpr int kPointwise = 80, kFirst = 30, kSecond = 150, kLast = 300, kAims = 500;
  constexpr std::size_t kMostFirst = 8, kMostSecond = 3;
  std::vector<Candidate> candidates;
  pb.pointwise = true;
  for (const double width : {0.6, 1.0, 2.5}) {
    for (const double shift : {-0.1, 0.15, 0.5}) {
      if (pb.held && (width != 1.0 || shift != 0.15)) continue;
      X x = start_of(*pb.c, pb.kind, width, pb.held ? 0.0 : shift);
      const double cost = solve(pb, x, kPointwise);
      candidates.push_back({cost, x});
    }
  }
  sort_by_cost(candidates);
  drop_repeated(candidates, kMostFirst);
  pb.pointwise = false;
  fit.starts = static_cast<int>(candidates.size());
  for (Candidate& c : candidates) c.cost = solve(pb, c.x, kFirst);
  sort_by_cost(candidates);
  drop_repeated(candidates, kMostSecond);
  for (Candidate& c : candidates) c.cost = solve(pb, c.x, kSecond);
  sort_by_cost(candidates);
  X best = candidates.front().x;
  fit.cost = solve(pb, best, kLast);
  // Aims of its own are followed from there: with them alone the many minima are harder to tell apart.
  const Aims aims = aims_of(*pb.c, *pb.ref);
  if (aims.own || aims.hvap > 0.0) {
    pb.aims = aims;
    fit.cost = solve(pb, best, kAims);
  }
  return best;
}

constexpr double kWorstPressure = 3.0;  // mean deviation of the vapour pressure that still will do [%]

// What keeps curves from use, and how far off the saturation line they are.
struct Verdict {
  bool sound = false;  // a and b as they must be at any temperature
  double score =
      1e9;  // mean deviations of pressure and density with a charge for states without two phases [%]
  std::string fault;  // empty where the curves will do
};

std::string with_figure(const char* format, double value) {
  char text[120];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

Verdict judge(const FitComponent& c, const Reference& ref, const Curves& curves) {
  Verdict v;
  const double top = std::max(4.0, 1500.0 / c.tc);
  double last = 1e9;
  for (double u = 0.3; u < top; u *= 1.01) {
    const AB ab = curves_at(curves, u, false);
    const char* what = nullptr;
    if (!(ab.A > 0.001))
      what = "a at its floor at %.0f K";
    else if (!(last < 0.01 || ab.A <= last * (1.0 + 1e-6)))
      what = "a rises at %.0f K";
    else if (!(ab.B > 0.008 && ab.B < 0.20))
      what = "b out of bounds at %.0f K";
    if (what != nullptr) {
      v.fault = with_figure(what, u * c.tc);
      return v;
    }
    last = ab.A;
  }
  v.sound = true;
  const CurveFigures f = figures_of(c, ref, curves, {});
  // Helium has to do with a tabulated b that is too large for its liquid.
  const double worst_density = curves.kind == Quantum::helium ? 20.0 : 6.0;  // mean [%]
  v.score = f.psat.mean + f.rhol.mean + 10.0 * f.missing;
  if (4 * f.missing > f.psat.n)
    v.fault = "no two phases over much of the saturation line";
  else if (!(f.psat.mean < kWorstPressure))
    v.fault = with_figure("vapour pressure %.1f %% off on average", f.psat.mean);
  else if (!(f.rhol.mean < worst_density))
    v.fault = with_figure("liquid density %.1f %% off on average", f.rhol.mean);
  return v;
}

// Whether the saturation data settle the shape of the curves and not only their level and slope.
bool wide_enough(const FitComponent& c, const Reference& ref) {
  constexpr double kSpan = 0.22;  // of T/Tc
  constexpr std::size_t kPoints = 10;
  return ref.sat.size() >= kPoints && ref.sat.back().T - ref.sat.front().T > kSpan * c.tc;
}

// How a fit departs from the full one.
struct Departure {
  bool held = false;     // widths and bends of the curves at their general values
  double density = 1.0;  // factor on the standard deviation of the density
  double firm = 1.0;     // factor on what keeps a falling
};

CurveFit fitted(const FitComponent& c, const Reference& ref, const std::array<double, 8>& cp_ig,
                const Departure& departure) {
  CurveFit fit;
  Problem pb = problem_of(c, ref, cp_ig);
  pb.held = departure.held;
  pb.aims.rhol = departure.density;
  pb.firm = departure.firm;
  pointwise(pb);
  const X x = search(pb, fit);
  fit.curves = rounded(curves_of(x.data(), pb.kind));
  fit.basis = ref.basis;
  fit.constants = departure.held ? NX - 4 : NX;
  return fit;
}

}  // namespace

CurveFit fit_curves(const FitComponent& c, const Reference& ref, const std::array<double, 8>& cp_ig) {
  const bool wide = wide_enough(c, ref);
  CurveFit best = fitted(c, ref, cp_ig, {.held = !wide});
  if (!wide) best.note = "few saturation data: widths and bends of the curves held at their general values";
  const Verdict first = judge(c, ref, best.curves);
  if (first.fault.empty()) return best;

  // Ever less of the component itself; the first that will do, or the nearest to the data among the sound ones.
  double least = first.score;
  const auto better = [&](CurveFit trial, const char* what) {
    const Verdict v = judge(c, ref, trial.curves);
    trial.note = "full fit: " + first.fault + "; " + what;
    if (v.sound && !v.fault.empty()) trial.note += ", " + v.fault;
    if (v.score < least) {
      least = v.score;
      best = trial;
    }
    return v.fault.empty();
  };
  if (first.sound) best.note = "full fit, but " + first.fault;
  constexpr double kFirm = 30.0;
  if (!first.sound && better(fitted(c, ref, cp_ig, {.held = !wide, .firm = kFirm}), "a held falling"))
    return best;
  if (wide && better(fitted(c, ref, cp_ig, {.held = true, .firm = kFirm}),
                     "widths and bends of the curves held at their general values"))
    return best;
  // The vapour pressure at the price of the density: equilibria rest on it.
  constexpr double kGivenUp = 40.0;  // factor on the standard deviation of the density
  CurveFit pressure = fitted(c, ref, cp_ig, {.density = kGivenUp, .firm = kFirm});
  const CurveFigures f = figures_of(c, ref, pressure.curves, {});
  if (judge(c, ref, pressure.curves).sound && f.missing == 0 && f.psat.mean < kWorstPressure) {
    pressure.note = "full fit: " + first.fault +
                    with_figure("; liquid density given up, %.0f %% off on average", f.rhol.mean);
    return pressure;
  }
  Reference general = ref;
  saturation_generalised(c, general);
  if (better(fitted(c, general, cp_ig, {.held = true, .firm = kFirm}), "fitted to corresponding states"))
    return best;
  CurveFit last;
  last.curves.kind = quantum_of(c.code.c_str());
  last.curves.p = generalised_constants(std::max(c.omega, 0.1045));
  last.curves = rounded(last.curves);
  last.basis = general.basis;
  last.constants = 0;
  better(last, "general curves of the acentric factor");
  return best;
}

}  // namespace talix::bank
