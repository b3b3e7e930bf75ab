// What the curves reach, and the small relations that fit and report share.
#include <algorithm>
#include <cmath>

#include "bank/fit_curves.h"
#include "bank/fit_residuals.h"

namespace talix::bank {

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
