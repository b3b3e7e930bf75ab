#include "bank/fit_residuals.h"

#include <algorithm>
#include <cmath>

namespace talix::bank {

namespace {

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

// Standard deviations asked of the saturation line, by reduced temperature.
double sigma_psat(double tr) {
  if (tr < 0.40) {
    return 0.003 + 0.2 * (0.40 - tr);
  }
  return tr > 0.981 ? 0.01 : (tr > 0.951 ? 0.002 : 0.0012);
}

double sigma_rhol(double tr, double rise) {
  if (tr < 0.40) {
    return 0.003 + 0.05 * (0.40 - tr);
  }
  if (tr > 0.981) {
    return 0.05;
  }
  return tr > 0.951 ? 0.003 + rise * (tr - 0.95) : 0.002;
}

constexpr double kPipeline =
    102e5;  // pressures up to here count most for the gases of aims of their own [Pa]

double sigma_gas(const FitComponent& c, const GasPoint& g, const Aims& aims) {
  const double tr = g.T / c.tc;
  double s = g.derived ? 0.02 : aims.gas;
  if (tr < 1.25) {  // next to the critical point the form cannot follow
    s *= tr < 1.08 ? aims.near[0] : (tr < 1.15 ? aims.near[1] : aims.near[2]);
  }
  if (!g.derived && g.P < kPipeline) {
    s *= aims.gas_low;
  } else if (!g.derived && g.P < 2.0 * kPipeline) {
    s *= aims.gas_mid;
  } else if (g.P > 300e5 || aims.gas_mid > 1.0) {
    s *= aims.gas_far;
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

// The residual whose square grows linearly from about R = WIDTH on, so that what the form cannot follow does not
// pull on the rest; R itself where WIDTH is 0.
double softened_residual(double r, double width) {
  if (!(width > 0.0)) {
    return r;
  }
  const double q = r / width;
  return std::copysign(width * std::sqrt(2.0 * (std::sqrt(1.0 + q * q) - 1.0)), r);
}

// Slopes of F by a and b at constant volume; those of ln(fugacity coefficient) at constant pressure are the same.
struct Slopes {
  double A, B;
};

Slopes helmholtz_slopes(double A, double B, double w) {
  const double L = std::log1p(B / w);
  return {-L / B, 1.0 / (w - B) + A * L / (B * B) - A / (B * (w + B))};
}

// Slopes of ln(volume) by a and b where ln(pressure) moves with the slopes given.
Slopes volume_slopes(double A, double B, double u, double w, double pr, const Slopes& lnp) {
  const double pw = u * (-1.0 / ((w - B) * (w - B)) + A * (2.0 * w + B) / (w * w * (w + B) * (w + B)));
  const double pA = -u / (w * (w + B));
  const double pB = u * (1.0 / ((w - B) * (w - B)) + A / (w * (w + B) * (w + B)));
  return {(pr * lnp.A - pA) / pw / w, (pr * lnp.B - pB) / pw / w};
}

Tangent saturated_tangent(const AB& ab, double u, double pr_start) {
  const Saturation s = saturation(ab, u, pr_start);
  Tangent t;
  t.ok = s.ok;
  t.A = ab.A;
  t.B = ab.B;
  if (!s.ok) return t;
  const double wl = s.ZL * u / s.pr, wv = s.ZV * u / s.pr;
  const Slopes l = helmholtz_slopes(ab.A, ab.B, wl), v = helmholtz_slopes(ab.A, ab.B, wv);
  const Slopes p = {(l.A - v.A) / (s.ZV - s.ZL), (l.B - v.B) / (s.ZV - s.ZL)};
  const Slopes dl = volume_slopes(ab.A, ab.B, u, wl, s.pr, p), dv = volume_slopes(ab.A, ab.B, u, wv, s.pr, p);
  t.lnp = std::log(s.pr);
  t.lnwl = std::log(wl);
  t.lnwv = std::log(wv);
  t.pA = p.A, t.pB = p.B, t.lA = dl.A, t.lB = dl.B, t.vA = dv.A, t.vB = dv.B;
  return t;
}

Tangent gas_tangent(const AB& ab, double u, double pr) {
  const Root root = stable_root(ab, u, pr);
  Tangent t;
  t.ok = root.ok;
  t.A = ab.A;
  t.B = ab.B;
  t.lnp = std::log(pr);
  if (!root.ok) return t;
  const double w = root.Z * u / pr;
  const Slopes d = volume_slopes(ab.A, ab.B, u, w, pr, {0.0, 0.0});
  t.lnwl = std::log(w);
  t.lA = d.A, t.lB = d.B;
  return t;
}

// The state at AB: along the tangent that was noted for it, or solved and noted.
template <class Solve>
Tangent state_at(const AB& ab, Tangents* tangents, Solve solve) {
  if (tangents == nullptr) return solve();
  if (!tangents->follow) {
    tangents->states.push_back(solve());
    return tangents->states.back();
  }
  Tangent t = tangents->states[tangents->next++];
  const double dA = ab.A - t.A, dB = ab.B - t.B;
  t.lnp += t.pA * dA + t.pB * dB;
  t.lnwl += t.lA * dA + t.lB * dB;
  t.lnwv += t.vA * dA + t.vB * dB;
  return t;
}

// Heat of vaporisation is asked for between these reduced temperatures, where its derivatives are those of the values.
constexpr double kHeatFrom = 0.49, kHeatTo = 0.91;

void saturation_residuals(const Problem& pb, const Curves& cv, Tangents* tangents, std::vector<double>& r) {
  const FitComponent& c = *pb.c;
  for (std::size_t i = 0; i < pb.ref->sat.size(); ++i) {
    const SatPoint& s = pb.ref->sat[i];
    const double u = s.T / c.tc;
    if (u > 0.992) {
      continue;
    }
    const bool heat = !pb.pointwise && pb.aims.hvap > 0.0 && s.hvap > 0.0 && u > kHeatFrom && u < kHeatTo;
    const AB ab = curves_at(cv, u, heat);
    if (pb.pointwise) {
      if (pb.point[i].A > 0.0) {
        r.push_back((ab.A / pb.point[i].A - 1.0) / 0.001);
        r.push_back((ab.B / pb.point[i].B - 1.0) / 0.001);
      }
      continue;
    }
    // Helium: the tabulated b is a quarter too large for the liquid next to the critical point.
    const double loose = pb.kind == Quantum::helium ? 1.0 + 25.0 * hinge(u - 0.60) : 1.0;
    const double sp = loose * pb.aims.psat * sigma_psat(u);
    const double sr = loose * loose * loose * pb.aims.rhol * sigma_rhol(u, pb.aims.rhol_rise);
    const Tangent t = state_at(ab, tangents, [&] { return saturated_tangent(ab, u, s.psat / c.pc); });
    if (!t.ok) {
      // Above the equation's own critical temperature: back towards two phases.
      r.push_back((0.3 + hinge(5.0 - ab.A / ab.B)) / sp);
      r.push_back(0.3 / sr);
      if (heat) r.push_back(0.3 / pb.aims.hvap);
      continue;
    }
    r.push_back((t.lnp - std::log(s.psat / c.pc)) / sp);
    r.push_back(softened_residual((std::log(c.pc / (GAS_CONSTANT * c.tc) / s.rhol) - t.lnwl) / sr,
                                  pb.aims.rhol_soft));
    if (heat) {
      const double pr = std::exp(t.lnp), per_u = pr / u;
      const double h =
          thermal(ab, u, pr, std::exp(t.lnwv) * per_u).H - thermal(ab, u, pr, std::exp(t.lnwl) * per_u).H;
      r.push_back((GAS_CONSTANT * s.T * h / s.hvap - 1.0) / pb.aims.hvap);
    }
  }
}

// Weight of the gas region against the saturation line: more for what is mostly met with as a gas, less for what
// is mostly met with as a condensing fluid.
double gas_weight(double tc) {
  if (tc < 230.0) return 1.0;
  return tc < 330.0 ? 0.6 : 0.5;
}

void gas_residuals(const Problem& pb, const Curves& cv, Tangents* tangents, std::vector<double>& r) {
  const std::size_t n0 = r.size();
  const FitComponent& c = *pb.c;
  for (const GasPoint& g : pb.ref->gas) {
    if (!counts(c, g)) {
      continue;
    }
    const double u = g.T / c.tc, pr = g.P / c.pc;
    const AB ab = curves_at(cv, u, true);
    const Tangent t = state_at(ab, tangents, [&] { return gas_tangent(ab, u, pr); });
    const double z = t.ok ? std::exp(t.lnwl) * pr / u : 1.0;
    const double sigma = sigma_gas(c, g, pb.aims);
    r.push_back(softened_residual(std::log(pr / (z * u) * c.pc / (GAS_CONSTANT * c.tc) / g.rho) / sigma,
                                  pb.aims.gas_soft));
    const double cp0 = ideal_gas_cp(pb.cp_ig, g.T);
    const Thermal th = thermal(ab, u, pr, z);
    const double far = sigma / 0.003;
    r.push_back((cp0 + GAS_CONSTANT * th.CP - g.cp) / g.cp / (pb.aims.thermal * far));
    if (g.w > 0.0) {
      r.push_back((sound_speed(th, z, g.T, cp0, c.mw) / g.w - 1.0) / (pb.aims.thermal * far));
    }
  }
  for (const GasPoint& g : pb.ref->guide) {
    const double u = g.T / c.tc, pr = g.P / c.pc;
    const AB ab = curves_at(cv, u, false);
    const Tangent t = state_at(ab, tangents, [&] { return gas_tangent(ab, u, pr); });
    const double z = t.ok ? std::exp(t.lnwl) * pr / u : 1.0;
    r.push_back(pb.guide_weight * std::log(pr / (z * u) * c.pc / (GAS_CONSTANT * c.tc) / g.rho) /
                sigma_gas(c, g, pb.aims));
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

// Weights of enthalpy and heat capacity inside the zones: most where they cover ambient temperatures, little for
// what is hardly ever met with so close to its critical point.
struct ZoneWeight {
  double H, CP;
};

ZoneWeight zone_weight(double tc, const Aims& aims) {
  if (tc / 1.04 < 330.0 && 1.1 * tc > 270.0) return {4.0, 1.0};
  if (tc < 60.0) return tc < 10.0 ? ZoneWeight{0.2, 0.1} : ZoneWeight{0.7, 0.5};
  if (tc < 230.0) return {aims.zone_H, 0.6};
  return tc < 520.0 ? ZoneWeight{2.0, 1.0} : ZoneWeight{0.7, 0.3};
}

// Slope of b by T/Tc on the warm side of the join; the tabulated derivative there is a line of its own.
double slope_behind_join(const Curves& cv) {
  constexpr double NEAR = 1.0 / 1.03999, FAR = 1.0 / 1.0399;
  return (curves_at(cv, FAR, false).B - curves_at(cv, NEAR, false).B) / (FAR - NEAR);
}

void shape_residuals(const Problem& pb, const double* x, const Curves& cv, std::vector<double>& r) {
  // Zone of a: both end derivatives against the slope of the values, and their mean.
  const double slope = (cv.AALIM - cv.AAC) / 0.1;
  const double mean_weight = 0.5;
  r.push_back(mean_weight * (0.5 * (cv.a1[0] + cv.a1[1]) - slope) / std::fabs(slope) / 0.02);
  r.push_back(mean_weight * (cv.a2[0] + 2.2 * cv.a1[0]) / std::fabs(slope) / 1.0);
  // Zone of the derivatives of b.
  const double b_slope =
      (curves_at(cv, 1.1, false).B - curves_at(cv, 1.0 / 1.04, false).B) / (1.1 - 1.0 / 1.04);
  r.push_back(mean_weight * (0.5 * (cv.b1[0] + cv.b1[1]) - b_slope) / 0.02);
  const ZoneWeight weight = zone_weight(pb.c->tc, pb.aims);
  for (const ZoneState& z : ZONE_STATES) {
    const ZoneError e = zone_error(cv, z.u, z.pr);
    r.push_back(weight.H * e.H / 0.1);
    if (z.heat_capacity) {
      r.push_back(weight.CP * e.CP);
    }
  }
  if (pb.aims.join > 0.0) {
    // Where the curves of b meet: a jump of the slope shows as a kink of bubble lines.
    const double hot = slope_behind_join(cv);
    r.push_back(pb.aims.join * (cv.b1[0] - hot) / 0.001);
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
  // Above the critical temperature: a off its floor up to 1500 K and a little over 4 Tc, b within reason at any
  // temperature.
  const double umax = std::max(4.15, 1500.0 / pb.c->tc);
  const double lowest_b = 0.6 * std::min(level, x[B_JOIN]);
  for (const double f : {0.2, 0.4, 0.6, 0.8, 0.9, 0.95, 0.975, 1.0}) {
    const double y = (1.0 - 1.0 / umax) * f;
    const double a = (x[P11] + x[P12] * y + x[P13] * y * y) / (1.0 + x[P14] * y + x[P15] * y * y);
    r.push_back(hinge(0.0016 - a) / 0.00004);
    const AB ab = curves_at(cv, 1.0 / (1.0 - y), true);
    r.push_back((hinge(lowest_b - ab.B) + hinge(ab.B - 1.8 * level)) / 0.002);
    r.push_back(pb.firm * hinge(ab.A1 * (1.0 - y) + 1e-4) / 0.001);
  }
  // Across the zone a falls by about an eighth.
  r.push_back(pb.firm * (hinge(cv.AALIM / cv.AAC - 0.92) + hinge(0.75 - cv.AALIM / cv.AAC)) / 0.003);
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

}  // namespace

// The heat of vaporisation is asked for where a reference equation gives it; other sources of it disagree too often
// with those of the vapour pressure. The main gases count most up to 100 bar, next to the critical temperature as well.
// Methane and nitrogen: also a smoother join, and densities before those beyond 300 bar, which the form reaches only
// with a steep rise of b behind the join.
Aims aims_of(const FitComponent& c, const Reference& ref) {
  Aims aims;
  if (ref.basis == "equation of state" && quantum_of(c.code.c_str()) == Quantum::none) aims.hvap = 0.01;
  const auto is = [&](const char* code) { return c.code == code; };
  if (is(" 1P ") || is("N2  ")) {
    aims.own = true;
    aims.psat = 1.2;
    aims.rhol = 0.5;
    aims.rhol_rise = 0.7;
    aims.gas = 0.0012;
    aims.gas_far = 3.0;
    aims.thermal = 0.03;
    aims.rhol_soft = 3.0;
    aims.gas_soft = 3.0;
    aims.join = 0.6;
    aims.zone_H = 0.3;
  }
  if (is(" 2P ") || is("O2  ") || is("CO  ") || is("H2S ") || is("AR  ") || is("CO2 ") || is(" 1P ")) {
    aims.own = true;
    aims.gas_low = 0.5;
    aims.gas_mid = 2.0;
    aims.gas_far = 6.0;
    aims.near = {10.0, 5.0, 2.0};
    aims.thermal *= 0.7;
  }
  if (is(" 1P ")) aims.gas_low = 0.58;
  if (is("CO2 ") || is("AR  ")) {
    aims.psat = is("CO2 ") ? 0.7 : 0.5;
    aims.rhol = is("CO2 ") ? 1.2 : 0.7;
    aims.gas_low = is("CO2 ") ? 0.25 : 0.3;
    aims.near = {3.0, 2.0, 1.0};
  }
  return aims;
}

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

void all_residuals(const Problem& pb, const double* x, std::vector<double>& r, Tangents* tangents) {
  r.clear();
  if (tangents != nullptr) tangents->next = 0;
  const Curves cv = curves_of(x, pb.kind);
  saturation_residuals(pb, cv, tangents, r);
  if (!pb.pointwise) {
    gas_residuals(pb, cv, tangents, r);
  }
  shape_residuals(pb, x, cv, r);
  for (double& v : r) {
    if (!(std::fabs(v) < 1e6)) {
      v = 1e6;
    }
  }
}

}  // namespace talix::bank
