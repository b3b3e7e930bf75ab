#include "bank/fit_curves.h"

#include <ceres/ceres.h>

#include <algorithm>
#include <cmath>

namespace talix::bank {

namespace {

constexpr int NX = 15;
using X = std::array<double, NX>;

// The free variables of the fit. They are the constants in a form whose members act apart from each other:
// values and slopes of the curves at the joins in place of the constant terms.
enum Variable {
  A_CRIT,
  A_COLD,
  A_HOT,
  A_WIDTH,
  A_BEND,
  B_JOIN,
  B_COLD,
  B_HOT,
  B_WIDTH,
  B_BEND,
  P11,
  P12,
  P13,
  P14,
  P15
};

// Level of b at the critical point, and b where its curve hands over, of the components with tabulated
// constants.
double tabulated_join(Quantum k) {
  switch (k) {
    case Quantum::hydrogen:
      return 0.084456 + 0.0058822 * (-0.04) * std::exp(0.9636 / 0.96);
    case Quantum::helium:
      return 0.105 - 0.0284 * (-0.04) * std::exp(1.0 / 0.96);
    case Quantum::nitrogen:
      return 0.081516 + 0.092116 * (-0.04) * std::exp(-7.50201 / 4.44383);
    case Quantum::none:
      break;
  }
  return 0.0;
}

double tabulated_level(Quantum k) {
  switch (k) {
    case Quantum::hydrogen:
      return 0.084456;
    case Quantum::helium:
      return 0.105;
    case Quantum::nitrogen:
      return 0.081516;
    case Quantum::none:
      break;
  }
  return 0.08664;
}

double softened(double p2, double p5, double t) {
  const double at = std::fabs(t);
  return (p2 + p5) * t / 2.0 + (p2 - p5) * (at / 2.0 + std::log1p(std::exp(-at)));
}

// Constants of one curve from value at x0, end slopes, width and bend.
void curve_constants(double value, double x0, double cold, double hot, double log_p3, double p4, double* p) {
  const double p3 = std::exp(log_p3);
  const double p2 = cold / p3, p5 = hot / p3;
  p[0] = value - softened(p2, p5, p3 * (x0 - p4));
  p[1] = p2;
  p[2] = p3;
  p[3] = p4;
  p[4] = p5;
}

Curves curves_of(const double* x, Quantum kind) {
  Curves c;
  c.kind = kind;
  curve_constants(x[A_CRIT], 1.0, x[A_COLD], x[A_HOT], x[A_WIDTH], x[A_BEND], c.p.data());
  curve_constants(100.0 * x[B_JOIN], 1.04, 100.0 * x[B_COLD], 100.0 * x[B_HOT], x[B_WIDTH], x[B_BEND],
                  c.p.data() + 5);
  for (std::size_t k = 10; k < 15; ++k) {
    c.p[k] = x[k];
  }
  c.prepare();
  return c;
}

Curves rounded(const Curves& from) {
  Curves c = from;
  for (double& v : c.p) {
    v = static_cast<double>(static_cast<float>(v));
  }
  c.prepare();
  return c;
}

// Standard deviations asked of the saturation line, by reduced temperature.
double sigma_psat(double tr) {
  if (tr < 0.40) {
    return 0.003 + 0.2 * (0.40 - tr);
  }
  return tr > 0.981 ? 0.01 : (tr > 0.951 ? 0.002 : 0.0012);
}

double sigma_rhol(double tr) {
  if (tr < 0.40) {
    return 0.003 + 0.05 * (0.40 - tr);
  }
  if (tr > 0.981) {
    return 0.05;
  }
  return tr > 0.951 ? 0.003 + 0.4 * (tr - 0.95) : 0.002;
}

double sigma_gas(const FitComponent& c, const GasPoint& g) {
  const double tr = g.T / c.tc;
  double s = g.derived ? 0.02 : 0.003;
  if (tr < 1.25) {
    s *= tr < 1.08 ? 25.0 : (tr < 1.15 ? 12.0 : 4.0);  // next to the critical point the form cannot follow
  }
  if (g.P > 400e5) {
    s *= 4.0;
  }
  const Quantum kind = quantum_of(c.code.c_str());
  if (kind != Quantum::none && tr < 3.0) {
    s *= 3.0;  // cryogenic; met with as gases of the ambient range
  }
  if ((kind == Quantum::hydrogen || kind == Quantum::helium) && g.P > 150e5) {
    s *= 3.0;  // with b given, the pressures in use decide a
  }
  if (!g.derived && g.T >= 250.0 && g.T <= 450.0) {
    s *= 0.7;
  }
  return s;
}

double hinge(double x) { return x > 0.0 ? x : 0.0; }

struct Problem {
  const FitComponent* c = nullptr;
  const Reference* ref = nullptr;
  std::array<double, 8> cp_ig{};
  Quantum kind = Quantum::none;
  double guide_weight = 1.0;         // 1 where no measured-quality gas points exist
  std::vector<PointSolution> point;  // a and b of each saturation point; A 0 where there is none
  bool pointwise = false;            // first stage: residuals on the pointwise a and b
};

// Points of the gas region that count in the fit.
bool counts(const FitComponent& c, const GasPoint& g) { return g.T > 1.02 * c.tc && g.rho > 0.0; }

void saturation_residuals(const Problem& pb, const Curves& cv, std::vector<double>& r) {
  const FitComponent& c = *pb.c;
  for (std::size_t i = 0; i < pb.ref->sat.size(); ++i) {
    const SatPoint& s = pb.ref->sat[i];
    const double u = s.T / c.tc;
    if (u > 0.992) {
      continue;
    }
    const AB ab = curves_at(cv, u, false);
    if (pb.pointwise) {
      if (pb.point[i].A > 0.0) {
        r.push_back((ab.A / pb.point[i].A - 1.0) / 0.001);
        r.push_back((ab.B / pb.point[i].B - 1.0) / 0.001);
      }
      continue;
    }
    // Helium: the tabulated b is a quarter too large for the liquid next to the critical point.
    const double loose = pb.kind == Quantum::helium ? 1.0 + 25.0 * hinge(u - 0.60) : 1.0;
    const double sp = loose * sigma_psat(u), sr = loose * loose * loose * sigma_rhol(u);
    const Saturation st = saturation(ab, u, s.psat / c.pc);
    if (!st.ok) {
      // Above the equation's own critical temperature: back towards two phases.
      r.push_back((0.3 + hinge(5.0 - ab.A / ab.B)) / sp);
      r.push_back(0.3 / sr);
      continue;
    }
    const double rho = st.pr * c.pc / (st.ZL * GAS_CONSTANT * s.T);
    r.push_back(std::log(st.pr * c.pc / s.psat) / sp);
    r.push_back(std::log(rho / s.rhol) / sr);
  }
}

// Weight of the gas region against the saturation line: a little less for what is mostly met with as a
// condensing fluid.
double gas_weight(double tc) { return tc < 330.0 ? 0.6 : 0.5; }

void gas_residuals(const Problem& pb, const Curves& cv, std::vector<double>& r) {
  const std::size_t n0 = r.size();
  const FitComponent& c = *pb.c;
  for (const GasPoint& g : pb.ref->gas) {
    if (!counts(c, g)) {
      continue;
    }
    const double u = g.T / c.tc, pr = g.P / c.pc;
    const AB ab = curves_at(cv, u, true);
    const Root root = stable_root(ab, u, pr);
    const double z = root.ok ? root.Z : 1.0;
    r.push_back(std::log(pr / (z * u) * c.pc / (GAS_CONSTANT * c.tc) / g.rho) / sigma_gas(c, g));
    const double cp0 = ideal_gas_cp(pb.cp_ig, g.T);
    const Thermal th = thermal(ab, u, pr, z);
    const double far = sigma_gas(c, g) / 0.003;
    r.push_back((cp0 + GAS_CONSTANT * th.CP - g.cp) / g.cp / (0.04 * far));
    if (g.w > 0.0) {
      r.push_back((sound_speed(th, z, g.T, cp0, c.mw) / g.w - 1.0) / (0.04 * far));
    }
  }
  for (const GasPoint& g : pb.ref->guide) {
    const double u = g.T / c.tc, pr = g.P / c.pc;
    const AB ab = curves_at(cv, u, false);
    const Root root = stable_root(ab, u, pr);
    const double z = root.ok ? root.Z : 1.0;
    r.push_back(pb.guide_weight * std::log(pr / (z * u) * c.pc / (GAS_CONSTANT * c.tc) / g.rho) /
                sigma_gas(c, g));
  }
  for (std::size_t i = n0; i < r.size(); ++i) r[i] *= gas_weight(c.tc);
}

// States inside the zones at which the enthalpy of the tabulated derivatives is held to that of the values, and
// the heat capacity too where the critical point is far.
struct ZoneState {
  double u, pr;
  bool heat_capacity;
};
constexpr std::array<ZoneState, 15> ZONE_STATES = {{{0.97, 0.4, true},
                                                    {0.97, 1.5, false},
                                                    {0.97, 3.0, true},
                                                    {0.985, 0.4, true},
                                                    {0.985, 2.0, false},
                                                    {0.985, 3.5, true},
                                                    {1.02, 0.4, true},
                                                    {1.02, 1.0, false},
                                                    {1.02, 3.0, true},
                                                    {1.05, 0.4, true},
                                                    {1.05, 1.4, false},
                                                    {1.05, 3.0, true},
                                                    {1.08, 0.4, true},
                                                    {1.08, 1.2, false},
                                                    {1.08, 3.0, true}}};

// What the tabulated derivatives add to the results that belong to the values.
struct ZoneError {
  double H;   // residual enthalpy over RT [-]
  double CP;  // heat capacity over R [-]
};

ZoneError zone_error(const Curves& cv, double u, double pr) {
  const AB ab = curves_at(cv, u, true);
  const Root root = stable_root(ab, u, pr);
  if (!root.ok) {
    return {1.0, 10.0};
  }
  constexpr double H = 2e-4;
  const AB up = curves_at(cv, u + H, false), dn = curves_at(cv, u - H, false);
  AB exact = ab;
  exact.A1 = (up.A - dn.A) / (2.0 * H);
  exact.B1 = (up.B - dn.B) / (2.0 * H);
  exact.A2 = (up.A - 2.0 * ab.A + dn.A) / (H * H);
  exact.B2 = (up.B - 2.0 * ab.B + dn.B) / (H * H);
  const Thermal held = thermal(ab, u, pr, root.Z), right = thermal(exact, u, pr, root.Z);
  return {held.H - right.H, held.CP - right.CP};
}

// Weight of the enthalpy inside the zones: most where they cover ambient temperatures, least for the light
// gases, which are not handled there.
double zone_weight(double tc) {
  if (tc / 1.04 < 330.0 && 1.1 * tc > 270.0) {
    return 4.0;
  }
  return tc < 230.0 ? 1.0 : 2.0;
}

void shape_residuals(const Problem& pb, const double* x, const Curves& cv, std::vector<double>& r) {
  // Zone of a: both end derivatives against the slope of the values, and their mean.
  const double slope = (cv.AALIM - cv.AAC) / 0.1;
  const double ZW = 0.5;
  r.push_back(ZW * (0.5 * (cv.a1[0] + cv.a1[1]) - slope) / std::fabs(slope) / 0.02);
  r.push_back(ZW * (cv.a2[0] + 2.2 * cv.a1[0]) / std::fabs(slope) / 1.0);
  // Zone of the derivatives of b.
  const double b_slope =
      (curves_at(cv, 1.1, false).B - curves_at(cv, 1.0 / 1.04, false).B) / (1.1 - 1.0 / 1.04);
  r.push_back(ZW * (0.5 * (cv.b1[0] + cv.b1[1]) - b_slope) / 0.02);
  const double HW = zone_weight(pb.c->tc);
  for (const ZoneState& z : ZONE_STATES) {
    const ZoneError e = zone_error(cv, z.u, z.pr);
    r.push_back(HW * e.H / 0.1);
    if (z.heat_capacity) {
      r.push_back(e.CP / 1.0);
    }
  }
  // The critical point of the equation stays at the component's own.
  const double level = tabulated_level(pb.kind);
  const double a_level = 4.934 * level;
  if (pb.kind == Quantum::none) {
    r.push_back((x[P11] / x[A_CRIT] - 1.0) / 0.10);
    r.push_back((x[P11] / a_level - 1.0) / 0.20);
  } else {
    r.push_back((x[A_CRIT] / a_level - 1.0) / 0.01);
  }
  // Above the critical temperature: a off its floor up to 1500 K, b within reason at any temperature.
  const double umax = std::max(3.0, 1500.0 / pb.c->tc);
  for (const double f : {0.2, 0.4, 0.6, 0.8, 0.9, 0.95, 1.0}) {
    const double y = (1.0 - 1.0 / umax) * f;
    const double a = (x[P11] + x[P12] * y + x[P13] * y * y) / (1.0 + x[P14] * y + x[P15] * y * y);
    r.push_back(hinge(0.0016 - a) / 0.00004);
    const AB ab = curves_at(cv, 1.0 / (1.0 - y), true);
    r.push_back((hinge(0.6 * level - ab.B) + hinge(ab.B - 1.8 * level)) / 0.002);
    r.push_back(hinge(ab.A1 * (1.0 - y)) / 0.002);
  }
  // Behind the zone: a falls ever more slowly, or heat capacity and speed of sound go astray.
  for (const double u : {1.1, 1.13, 1.17, 1.25}) {
    const AB ab = curves_at(cv, u * 1.000001, true);
    r.push_back(hinge(1.4 + ab.A2 * u / ab.A1) / 0.1);
  }
  // Far below the data: b stays near its value at the lowest temperature of the data.
  const double u_low = pb.ref->sat.front().T / pb.c->tc;
  const double b_low = curves_at(cv, u_low, false).B, b_far = curves_at(cv, 0.18, false).B;
  r.push_back((hinge(b_far / b_low - 1.25) + hinge(0.7 - b_far / b_low)) / 0.02);
  // Weak pull to moderate shapes where the data do not decide.
  r.push_back((x[A_WIDTH] - 0.7) / 12.0);
  r.push_back((x[B_WIDTH] - 1.0) / 12.0);
}

void all_residuals(const Problem& pb, const double* x, std::vector<double>& r) {
  r.clear();
  const Curves cv = curves_of(x, pb.kind);
  saturation_residuals(pb, cv, r);
  if (!pb.pointwise) {
    gas_residuals(pb, cv, r);
  }
  shape_residuals(pb, x, cv, r);
  for (double& v : r) {
    if (!(std::fabs(v) < 1e6)) {
      v = 1e6;
    }
  }
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

void Deviation::add(double percent) {
  ++n;
  mean += std::fabs(percent);
  worst = std::max(worst, std::fabs(percent));
}

void Deviation::finish() { mean = n > 0 ? mean / n : 0.0; }

double ideal_gas_cp(const std::array<double, 8>& c, double T) {
  return ((((c[5] * T + c[4]) * T + c[3]) * T + c[2]) * T + c[1]) * T + c[0] + (c[7] / T + c[6]) / T;
}

std::array<double, 15> generalised_constants(double omega) {
  std::array<double, 15> p{};
  std::array<double, 5> b{}, a{};
  if (omega > 1.9603) {
    const double w = omega - 1.9603;
    b = {-0.765217 - 7.23916 * w - 1.6456 * w * w + 5.89471 * std::exp(1.16095 * w), 0.0,
         -26.3531 - 27.011 * w - 24.1673 * w * w + 33.6807 * std::exp(1.09797 * w), -1.35813 + 0.092 * w,
         0.337022 * std::exp(-2.24 * w)};
    a = {-6.09523 - 7.04448 * w + 13.0211 * w * w - 34.8313 * w * w * w,
         3.19863 + 3.3374 * w - 4.79384 * w * w + 15.2838 * w * w * w,
         7.84802 + 12.7236 * w - 27.3912 * w * w + 57.4649 * w * w * w, -1.0 + 0.30123 * std::exp(-w),
         0.0865 * std::exp(-w)};
  } else if (omega > 0.8899) {
    const double w = omega - 0.8899;
    b = {6.84 - 2.30516 * w + 0.660642 * w * w, -0.2298 + 0.214686 * w,
         0.71944 + 2.4884 * w + 3.44278 * w * w, -1.56238 - 0.233476 * w + 0.396386 * w * w,
         1.26515 - 0.831265 * w - 0.033464 * w * w};
    a = {-5.48548 - 1.9473 * w + 1.28702 * w * w, 2.03895 + 1.05456 * w + 0.0269543 * w * w,
         5.65695 + 2.35889 * w - 0.291408 * w * w, -0.35932 - 0.170314 * w - 0.13716 * w * w,
         0.9 - 0.724991 * w - 0.0326716 * w * w};
  } else {
    const double w = omega - 0.209;
    b = {35.0305 * std::exp(-0.0674 * w) - 26.6192, -0.22394 - 0.323813 * w + 0.462888 * w * w,
         -0.609812 + 1.27768 * w + 0.990627 * w * w, -1.28 - 11.4702 * std::exp(-5.44021 * w),
         1.05962 + 0.301848 * w};
    a = {-0.345306 * std::exp(-0.674207 * w) - 5.26729, 1.51527 + 0.773867 * w - 0.007 * w * w,
         6.5856 - 1.50273 * w + 0.203965 * w * w, -0.224051 - 0.198662 * w, 0.9};
  }
  const auto columns = [&](const std::array<double, 5>& q, std::size_t at) {
    p[at] = q[1] * q[4] + q[0];
    p[at + 1] = -q[1] / q[3];
    p[at + 2] = -q[3];
    p[at + 3] = q[4];
    p[at + 4] = -q[2] - q[1] / q[3];
  };
  columns(a, 0);
  columns(b, 5);
  const double t1 = p[2] * (1.0 - p[3]);
  p[10] = p[1] * std::log1p(std::exp(t1)) + p[0] - p[4] * std::log1p(std::exp(-t1));
  p[11] = 19.696 * omega + 0.18902;
  p[12] = -25.016 * omega - 0.72032;
  p[13] = 45.547 * omega + 1.2889;
  p[14] = 31.4571 * omega + 1.1923;
  return p;
}

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
  if (pb.kind == Quantum::hydrogen || pb.kind == Quantum::helium || c.omega < -0.1) {
    pb.guide_weight = 0.0;  // quantum gases and mercury do not follow corresponding states
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
  best.starts = used;
  best.curves = rounded(curves_of(best_x.data(), pb.kind));
  best.basis = ref.basis;
  return best;
}

CurveFigures figures_of(const FitComponent& c, const Reference& ref, const Curves& cv,
                        const std::array<double, 8>& cp_ig) {
  CurveFigures f;
  for (const SatPoint& s : ref.sat) {
    const double u = s.T / c.tc;
    if (u < 0.3999 || u > 0.9811) {
      continue;
    }
    const AB ab = curves_at(cv, u, true);
    const Saturation st = saturation(ab, u, s.psat / c.pc);
    if (!st.ok) {
      ++f.missing;
      continue;
    }
    const double p = st.pr * c.pc, rt = GAS_CONSTANT * s.T;
    f.psat.add(100.0 * (p / s.psat - 1.0));
    f.rhol.add(100.0 * (p / (st.ZL * rt) / s.rhol - 1.0));
    if (s.rhov > 0.0) {
      f.rhov.add(100.0 * (p / (st.ZV * rt) / s.rhov - 1.0));
    }
    if (s.hvap > 0.0) {
      const double h = rt * (thermal(ab, u, st.pr, st.ZV).H - thermal(ab, u, st.pr, st.ZL).H);
      f.hvap.add(100.0 * (h / s.hvap - 1.0));
    }
  }
  for (const GasPoint& g : ref.gas) {
    if (!counts(c, g) || g.P > 405e5) {
      continue;
    }
    const double u = g.T / c.tc, pr = g.P / c.pc;
    const AB ab = curves_at(cv, u, true);
    const Root root = stable_root(ab, u, pr);
    const Thermal th = thermal(ab, u, pr, root.Z);
    const double cp0 = ideal_gas_cp(cp_ig, g.T);
    f.rho_gas.add(100.0 * (g.P / (root.Z * GAS_CONSTANT * g.T) / g.rho - 1.0));
    f.cp_gas.add(100.0 * ((cp0 + GAS_CONSTANT * th.CP) / g.cp - 1.0));
    f.w_gas.add(100.0 * (sound_speed(th, root.Z, g.T, cp0, c.mw) / g.w - 1.0));
    f.jt_gas.add(100.0 * (joule_thomson(th, root.Z, g.T, g.P, cp0) - g.jt) / std::max(std::fabs(g.jt), 1e-6));
  }
  const double slope = (cv.AALIM - cv.AAC) / 0.1;
  f.zone_a = 100.0 * (0.5 * (cv.a1[0] + cv.a1[1]) / slope - 1.0);
  const double u0 = 1.0 / 1.04, b0 = curves_at(cv, u0, false).B;
  f.zone_b = 100.0 * (0.5 * (cv.b1[0] + cv.b1[1]) - (curves_at(cv, 1.1, false).B - b0) / (1.1 - u0)) / b0;
  for (int k = 1; k < 20; ++k) {
    const double u = u0 + (1.1 - u0) * k / 20.0;
    if (std::fabs(u - 1.0) < 0.002) {
      continue;
    }
    for (const double pr : {0.3, 0.8, 1.5, 3.0}) {
      f.zone_h = std::max(f.zone_h, std::fabs(zone_error(cv, u, pr).H));
    }
  }
  for (Deviation* d : {&f.psat, &f.rhol, &f.rhov, &f.hvap, &f.rho_gas, &f.cp_gas, &f.w_gas, &f.jt_gas}) {
    d->finish();
  }
  return f;
}

}  // namespace talix::bank
