#include "bank/fit_equation.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace talix::bank {

namespace {

constexpr double A_ZONE_END = 0.9090909;  // Tc/T where the zone of a and of the derivatives ends
constexpr double B_ZONE_START = 1.04;     // Tc/T where the b curve hands over
constexpr double A_FLOOR = 0.001;

double blend(const std::array<double, 15>& p, int off, double XI, int order) {
  const auto o = static_cast<std::size_t>(off);
  const double p1 = p[o], p2 = p[o + 1], p3 = p[o + 2], p4 = p[o + 3], p5 = p[o + 4];
  const double t = p3 * (XI - p4);
  const double at = std::fabs(t);
  const double scale = (off == 5) ? 0.01 : 1.0;
  if (order == 1) {
    const double e = (at > 50.0) ? at / 2.0 : std::log(2.0 * std::cosh(t / 2.0));
    return scale * (p1 + (p2 + p5) * t / 2.0 + (p2 - p5) * e);
  }
  if (order == 2) {
    return -scale * p3 * XI * XI * (p2 + p5 + (p2 - p5) * std::tanh(t / 2.0)) / 2.0;
  }
  const double x3 = XI * XI * XI;
  if (t > 50.0) {
    return scale * 2.0 * p3 * x3 * p2;
  }
  if (t < -50.0) {
    return scale * 2.0 * p3 * x3 * p5;
  }
  const double e = std::exp(t);
  return scale * (2.0 * p3 * x3 * (p2 * e + p5) / (1.0 + e) +
                  p3 * p3 * x3 * XI * (p2 - p5) * e / ((1.0 + e) * (1.0 + e)));
}

double rational(const std::array<double, 15>& p, double XI, int order) {
  const double u = 1.0 / XI;
  const double N2 = p[10] + p[11] + p[12], N1 = -p[11] - 2.0 * p[12], N0 = p[12];
  const double D2 = 1.0 + p[13] + p[14], D1 = -p[13] - 2.0 * p[14], D0 = p[14];
  const double den = (D2 * u + D1) * u + D0;
  const double tl = ((N2 * u + N1) * u + N0) / den;
  if (order == 1) {
    return tl;
  }
  const double g = (2.0 * N2 * u + N1) / den, d1 = (2.0 * D2 * u + D1) / den;
  if (order == 2) {
    return g - d1 * tl;
  }
  return 2.0 * ((N2 - D2 * tl) / den + d1 * (tl * d1 - g));
}

double hot_b(const HotB& h, double XI, int order) {
  const double ad = h.C4 - XI, f = std::exp(h.C3 / ad);
  if (order == 1) {
    return h.C1 + h.C2 * (1.0 - XI) * f;
  }
  const double w = -f * XI * XI * h.C3 / (ad * ad);
  if (order == 2) {
    return h.C2 * (XI * XI * f + w - XI * w);
  }
  const double v = (w * (XI - 1.0) / ad) * XI * (2.0 * h.C4 + XI * h.C3 / ad);
  return h.C2 * (2.0 * XI * XI * (w - f * XI) + v);
}

double line(const std::array<double, 2>& ends, double start, double XI) {
  return ends[0] + (ends[1] - ends[0]) * (XI - start) / (A_ZONE_END - start);
}

double lnphi(double Z, double As, double Bs) {
  return Z - 1.0 - std::log(Z - Bs) - As / Bs * std::log1p(Bs / Z);
}

}  // namespace

Quantum quantum_of(const char* code) {
  if (std::strncmp(code, "H2  ", 4) == 0) {
    return Quantum::hydrogen;
  }
  if (std::strncmp(code, "HE  ", 4) == 0) {
    return Quantum::helium;
  }
  if (std::strncmp(code, "N2  ", 4) == 0) {
    return Quantum::nitrogen;
  }
  return Quantum::none;
}

void Curves::prepare() {
  switch (kind) {
    case Quantum::hydrogen:
      hot = {0.084456, 0.0058822, 0.9636, 2.0};
      break;
    case Quantum::helium:
      hot = {0.105, -0.0284, 1.0, 2.0};
      break;
    case Quantum::nitrogen:
      hot = {0.081516, 0.092116, -7.50201, 5.48383};
      break;
    case Quantum::none: {
      const double C1 = p[10] / 4.934;
      hot = {C1, (blend(p, 5, B_ZONE_START, 1) - C1) / (-0.1500838), 0.08, 1.1005};
      break;
    }
  }
  AAC = blend(p, 0, 1.0, 1);
  AALIM = rational(p, A_ZONE_END, 1);
  a1 = {blend(p, 0, 1.0, 2), rational(p, A_ZONE_END, 2)};
  a2 = {blend(p, 0, 1.0, 3), rational(p, A_ZONE_END, 3)};
  b1 = {blend(p, 5, B_ZONE_START, 2), hot_b(hot, A_ZONE_END, 2)};
  b2 = {blend(p, 5, B_ZONE_START, 3), hot_b(hot, A_ZONE_END, 3)};
}

AB curves_at(const Curves& c, double u, bool derivatives) {
  const double XI = 1.0 / u;
  AB r{};
  if (!(XI < 1.0)) {
    r.A = blend(c.p, 0, XI, 1);
  } else if (!(XI < A_ZONE_END)) {
    r.A = (c.AALIM - c.AAC) * (XI - 1.0) / (-0.0909091) + c.AAC;
  } else {
    r.A = rational(c.p, XI, 1);
  }
  r.A = std::max(r.A, A_FLOOR);
  r.B = (XI < B_ZONE_START) ? hot_b(c.hot, XI, 1) : blend(c.p, 5, XI, 1);
  if (!derivatives) {
    return r;
  }
  if (!(XI < 1.0)) {
    r.A1 = blend(c.p, 0, XI, 2);
    r.A2 = blend(c.p, 0, XI, 3);
  } else if (!(XI < A_ZONE_END)) {
    r.A1 = line(c.a1, 1.0, XI);
    r.A2 = line(c.a2, 1.0, XI);
  } else {
    r.A1 = rational(c.p, XI, 2);
    r.A2 = rational(c.p, XI, 3);
  }
  if (!(XI < B_ZONE_START)) {
    r.B1 = blend(c.p, 5, XI, 2);
    r.B2 = blend(c.p, 5, XI, 3);
  } else if (!(XI < A_ZONE_END)) {
    r.B1 = line(c.b1, B_ZONE_START, XI);
    r.B2 = line(c.b2, B_ZONE_START, XI);
  } else {
    r.B1 = hot_b(c.hot, XI, 2);
    r.B2 = hot_b(c.hot, XI, 3);
  }
  return r;
}

int outer_roots(double A, double B, double u, double pr, Root& liquid, Root& vapour) {
  // Z^3 - Z^2 + (a - b^2 - b) Z - a b = 0 with a, b made dimensionless with P/T.
  const double as = A * pr / u, bs = B * pr / u;
  const double c1 = as - bs * bs - bs, c0 = -as * bs;
  const double q = (1.0 - 3.0 * c1) / 9.0;
  const double r = (-2.0 + 9.0 * c1 + 27.0 * c0) / 54.0;
  const double q3 = q * q * q;
  liquid = vapour = {false, 0.0, 0.0};
  const auto polish = [&](double z) {
    for (int k = 0; k < 3; ++k) {
      const double f = ((z - 1.0) * z + c1) * z + c0;
      const double d = (3.0 * z - 2.0) * z + c1;
      if (std::fabs(d) < 1e-300) {
        break;
      }
      const double step = f / d;
      const double zn = z - step;
      if (!(zn > bs)) {
        break;
      }
      z = zn;
    }
    return z;
  };
  if (r * r < q3) {
    const double theta = std::acos(std::clamp(r / std::sqrt(q3), -1.0, 1.0));
    const double s = -2.0 * std::sqrt(q);
    constexpr double TWO_PI = 6.283185307179586;
    std::array<double, 3> z = {s * std::cos(theta / 3.0) + 1.0 / 3.0,
                               s * std::cos((theta + TWO_PI) / 3.0) + 1.0 / 3.0,
                               s * std::cos((theta - TWO_PI) / 3.0) + 1.0 / 3.0};
    std::sort(z.begin(), z.end());
    const double zv = polish(z[2]);
    double zl = z[0];
    if (zl > bs) {
      zl = polish(zl);
      vapour = {zv > bs, zv, lnphi(zv, as, bs)};
      liquid = {true, zl, lnphi(zl, as, bs)};
      return 2;
    }
    vapour = {zv > bs, zv, lnphi(zv, as, bs)};
    liquid = vapour;
    return 1;
  }
  const double m = std::cbrt(std::fabs(r) + std::sqrt(r * r - q3));
  const double aa = (r < 0.0) ? m : -m;
  const double z = polish(aa + (aa != 0.0 ? q / aa : 0.0) + 1.0 / 3.0);
  if (!(z > bs)) {
    return 0;
  }
  vapour = {true, z, lnphi(z, as, bs)};
  liquid = vapour;
  return 1;
}

Root stable_root(const AB& ab, double u, double pr) {
  Root l{}, v{};
  const int n = outer_roots(ab.A, ab.B, u, pr, l, v);
  if (n == 2) {
    return l.lnphi < v.lnphi ? l : v;
  }
  return v;
}

Saturation saturation(const AB& ab, double u, double pr_start) {
  double lp = std::log(pr_start);
  double lo = -1e9, hi = 1e9;  // brackets by the number of roots
  Saturation s{false, 0.0, 0.0, 0.0};
  for (int k = 0; k < 60; ++k) {
    Root l{}, v{};
    const double pr = std::exp(lp);
    const int n = outer_roots(ab.A, ab.B, u, pr, l, v);
    if (n == 2 && v.ok) {
      const double f = l.lnphi - v.lnphi;
      const double slope = l.Z - v.Z;
      double step = -f / slope;
      if (!(std::fabs(step) < 1e9)) {
        return s;
      }
      step = std::clamp(step, -2.0, 2.0);
      if (std::fabs(step) < 1e-11) {
        s = {true, pr, l.Z, v.Z};
        return s;
      }
      if (step > 0.0) {
        lo = std::max(lo, lp);
      } else {
        hi = std::min(hi, lp);
      }
      lp += step;
      if (lp > hi || lp < lo) {
        lp = 0.5 * (std::max(lo, lp - 4.0) + std::min(hi, lp + 4.0));
      }
      continue;
    }
    // One root: a liquid-like one means that the pressure is too high.
    if (n == 0) {
      return s;
    }
    const double bs = ab.B * pr / u;
    const bool liquid_like = v.Z < 3.847 * bs;  // critical v/b of the equation
    if (liquid_like) {
      hi = std::min(hi, lp);
    } else {
      lo = std::max(lo, lp);
    }
    if (hi - lo < 1e-7) {
      return s;
    }
    lp = (lo > -1e8 && hi < 1e8) ? 0.5 * (lo + hi) : lp + (liquid_like ? -0.05 : 0.05);
    if (!(lp > -80.0 && lp < 10.0)) {
      return s;
    }
  }
  return s;
}

Thermal thermal(const AB& ab, double u, double pr, double Z) {
  const double w = Z * u / pr;
  const double A = ab.A, B = ab.B;
  const double a1 = u * ab.A1, b1 = u * ab.B1, a2 = u * u * ab.A2, b2 = u * u * ab.B2;
  // F = -ln(1 - B/w) - (A/B) ln(1 + B/w) and its derivatives by A and B at constant volume.
  const double L = std::log1p(B / w);
  const double FA = -L / B;
  const double FB = 1.0 / (w - B) + A * L / (B * B) - A / (B * (w + B));
  const double FAB = L / (B * B) - 1.0 / (B * (w + B));
  const double FBB = 1.0 / ((w - B) * (w - B)) - 2.0 * A * L / (B * B * B) + 2.0 * A / (B * B * (w + B)) +
                     A / (B * (w + B) * (w + B));
  const double FTC = FA * a1 + FB * b1;
  const double FTTC = FBB * b1 * b1 + 2.0 * FAB * a1 * b1 + FA * a2 + FB * b2;
  // Pressure derivatives, all over P.
  const double up = u / pr;
  const double PB = up * (1.0 / ((w - B) * (w - B)) + A / (w * (w + B) * (w + B)));
  const double PA = -up / (w * (w + B));
  Thermal t{};
  t.PV = w * up * (-1.0 / ((w - B) * (w - B)) + A * (2.0 * w + B) / (w * w * (w + B) * (w + B)));
  t.PTCN = 1.0 + PA * a1 + PB * b1;
  t.H = Z - 1.0 - FTC;
  const double U = -(2.0 * FTC + FTTC);
  t.CP = U - (Z * t.PTCN * t.PTCN / t.PV + 1.0);
  t.CV = U;
  return t;
}

double sound_speed(const Thermal& th, double Z, double T, double cp_ig, double molar_mass_g) {
  const double cp = cp_ig + GAS_CONSTANT * th.CP;
  const double cv = cp_ig - GAS_CONSTANT + GAS_CONSTANT * th.CV;
  const double w2 = -th.PV * Z * GAS_CONSTANT * T * cp / cv / (molar_mass_g * 1e-3);
  return w2 > 0.0 ? std::sqrt(w2) : 0.0;
}

double joule_thomson(const Thermal& th, double Z, double T, double P, double cp_ig) {
  const double cp = cp_ig + GAS_CONSTANT * th.CP;
  const double v = Z * GAS_CONSTANT * T / P;
  const double tbeta = -th.PTCN / th.PV;
  return v * (tbeta - 1.0) / cp;
}

int solve_point(double u, double pr, double w, std::array<PointSolution, 8>& out) {
  // A from the liquid volume, leaving the difference of the logarithms of both fugacities to vanish.
  const auto a_of = [&](double B) { return (1.0 / (w - B) - pr / u) * w * (w + B); };
  const auto f_of = [&](double B, bool& ok) {
    const double A = a_of(B);
    Root l{}, v{};
    const int n = outer_roots(A, B, u, pr, l, v);
    const double zl = pr * w / u;
    ok = (n == 2) && v.ok && v.Z > zl * 1.0000001;
    if (!ok) {
      return 0.0;
    }
    return lnphi(zl, A * pr / u, B * pr / u) - v.lnphi;
  };
  int n = 0;
  double b_old = 0.0, f_old = 0.0;
  bool have = false;
  for (int k = 0; k <= 2000 && n < 8; ++k) {
    const double B = w * (0.30 + 0.6999 * k / 2000.0);
    bool ok = false;
    const double f = f_of(B, ok);
    if (ok && have && f * f_old < 0.0) {
      double lo = b_old, hi = B, flo = f_old;
      for (int it = 0; it < 60; ++it) {
        const double mid = 0.5 * (lo + hi);
        bool okm = false;
        const double fm = f_of(mid, okm);
        if (!okm) {
          break;
        }
        if (fm * flo <= 0.0) {
          hi = mid;
        } else {
          lo = mid;
          flo = fm;
        }
      }
      const double root = 0.5 * (lo + hi);
      out[static_cast<std::size_t>(n++)] = {a_of(root), root};
    }
    have = ok;
    b_old = B;
    f_old = f;
  }
  return n;
}

}  // namespace talix::bank
