#include "bank/correlations.h"

#include <cmath>
#include <limits>

namespace talix::bank {

namespace {

constexpr double R_CODATA = 8.314462618;  // J/(mol K), the constant of the dimensionless forms

double sinh_term(double u, double T) {
  const double x = u / T;
  return x == 0.0 ? 1.0 : (x / std::sinh(x)) * (x / std::sinh(x));
}

double cosh_term(double u, double T) {
  const double x = u / T;
  return (x / std::cosh(x)) * (x / std::cosh(x));
}

double polynomial(const Correlation& r, int first, int last, double x) {
  double y = 0.0;
  for (int k = last; k >= first; --k) {
    y = y * x + r.c[static_cast<std::size_t>(k - 1)];
  }
  return y;
}

double antoine_ext(const std::array<double, 27>& c, double T, double tc) {
  const double x = std::fmax((T - c[6] - 273.15) / tc, 0.0);
  return std::pow(10.0, c[0] - c[1] / (T + c[2]) + 0.43429 * std::pow(x, c[3]) + c[4] * std::pow(x, 8) +
                            c[5] * std::pow(x, 12));
}

double trc_cp(const std::array<double, 27>& c, double T) {
  const double y = T > c[7] ? (T - c[7]) / (T + c[6]) : 0.0;
  const double d = (T == c[7]) ? 1.0 : T - c[7];
  double v = c[0] + c[1] / (T * T) * std::exp(-c[2] / T) + c[3] * y * y;
  if (T > c[7]) {
    v += (c[4] - c[5] / (d * d)) * std::pow(y, 8);
  }
  return R_CODATA * v;
}

double planck_einstein(const Correlation& r, double T) {
  const int pairs = static_cast<int>(r.c[2]);
  double v = r.c[1];
  int k = 3;
  for (int i = 0; i < pairs; ++i, k += 2) {
    const double n = r.c[static_cast<std::size_t>(k)], u = r.c[static_cast<std::size_t>(k + 1)];
    const double e = std::exp(-u / T);
    v += n * (u / T) * (u / T) * e / ((1.0 - e) * (1.0 - e));
  }
  for (; k + 1 < r.count; k += 2) {
    v += r.c[static_cast<std::size_t>(k)] * std::pow(T, r.c[static_cast<std::size_t>(k + 1)]);
  }
  return r.c[0] * v;
}

double pressure_or_density_sum(const Correlation& r, double T) {
  const double h = 1.0 - T / r.c[1];
  double s = 0.0;
  for (std::size_t k = 2; k + 1 < r.c.size(); k += 2) {
    s += r.c[k] * std::pow(h, r.c[k + 1]);
  }
  return s;
}

double dippr102(const std::array<double, 27>& c, double T) {
  return c[0] * std::pow(T, c[1]) / (1.0 + c[2] / T + c[3] / (T * T));
}

double dippr114(const std::array<double, 27>& c, double t) {
  const double t2 = t * t;
  return c[0] * c[0] / t + c[1] - 2.0 * c[0] * c[2] * t - c[0] * c[3] * t2 - c[2] * c[2] * t2 * t / 3.0 -
         c[2] * c[3] * t2 * t2 / 2.0 - c[3] * c[3] * t2 * t2 * t / 5.0;
}

double quasi_polynomial(const std::array<double, 27>& c, double r) {
  return R_CODATA * (c[0] * std::log(1.0 - r) + c[1] / (1.0 - r) + c[2] + r * (c[3] + r * (c[4] + r * c[5])));
}

double ratio(const Correlation& r, double T) {
  const int n = static_cast<int>(r.c[0]);
  return polynomial(r, 2, 1 + n, T) / polynomial(r, 2 + n, r.count, T);
}

}  // namespace

double evaluate(const Correlation& row, double T) {
  const auto& c = row.c;
  const std::string& e = row.equation;
  const double r = T / row.tc, t = 1.0 - r;
  const double x = (2.0 * T - row.tmax - row.tmin) / (row.tmax - row.tmin);
  if (e == "DIPPR100") {
    return polynomial(row, 1, 7, T);
  }
  if (e == "INV_DIPPR100") {
    return 1.0 / polynomial(row, 1, 7, T);
  }
  if (e == "DIPPR101") {
    return std::exp(c[0] + c[1] / T + c[2] * std::log(T) + c[3] * std::pow(T, c[4]));
  }
  if (e == "EXPPOLY") {
    return std::exp(c[0] + T * (c[1] + T * c[2]));
  }
  if (e == "PPDS9") {
    const double q = (c[2] - T) / (T - c[3]);
    return c[4] * std::exp(std::cbrt(q) * (c[0] + c[1] * q));
  }
  if (e == "PPDS14") {
    return c[0] * std::pow(t, c[1]) * (1.0 + c[2] * t);
  }
  if (e == "VISC_ANT10") {
    return std::pow(10.0, c[0] + c[1] / (c[2] - T));
  }
  if (e == "POWER") {
    return c[0] * std::pow(T, c[1]);
  }
  if (e == "SIGMA_SUM") {
    return c[0] * std::pow(t, c[1]) + c[2] * std::pow(t, c[3]) + c[4] * std::pow(t, c[5]);
  }
  if (e == "SOMAYAJULU") {
    return c[0] * std::pow(t, 1.25) + c[1] * std::pow(t, 2.25) + c[2] * std::pow(t, 3.25);
  }
  if (e == "DIPPR102") {
    return dippr102(c, T);
  }
  if (e == "DIPPR114") {
    return dippr114(c, t);
  }
  if (e == "ZABR_QUASI") {
    return quasi_polynomial(c, r);
  }
  if (e == "CS118") {
    return std::exp(c[0] + c[1] / std::pow(T, c[4]) + c[2] * std::log(T) + c[3] * T * T);
  }
  if (e == "DIPPR105") {
    return c[0] / std::pow(c[1], 1.0 + std::pow(1.0 - T / c[2], c[3]));
  }
  if (e == "DIPPR106") {
    return c[0] * std::pow(t, c[1] + c[2] * r + c[3] * r * r + c[4] * r * r * r);
  }
  if (e == "DIPPR107") {
    return c[0] + c[1] * sinh_term(c[2], T) + c[3] * cosh_term(c[4], T);
  }
  if (e == "DIPPR116") {
    return c[0] + c[1] * std::pow(t, 0.35) + c[2] * std::pow(t, 2.0 / 3.0) + c[3] * t +
           c[4] * std::pow(t, 4.0 / 3.0);
  }
  if (e == "CS16") {
    return c[0] + std::exp(c[1] / T + c[2] + c[3] * T + c[4] * T * T);
  }
  if (e == "ANTOINE_E") {
    return std::exp(c[0] - c[1] / (T + c[2]));
  }
  if (e == "ANTOINE_10") {
    return std::pow(10.0, c[0] - c[1] / (T + c[2]));
  }
  if (e == "ANTOINE_EXT") {
    return antoine_ext(c, T, row.tc);
  }
  if (e == "WAGNER25") {
    return c[4] *
           std::exp((c[0] * t + c[1] * std::pow(t, 1.5) + c[2] * std::pow(t, 2.5) + c[3] * std::pow(t, 5)) /
                    r);
  }
  if (e == "WAGNER36") {
    return c[4] *
           std::exp((c[0] * t + c[1] * std::pow(t, 1.5) + c[2] * std::pow(t, 3) + c[3] * std::pow(t, 6)) / r);
  }
  if (e == "PPDS12") {
    return R_CODATA * row.tc *
           (c[0] * std::cbrt(t) + c[1] * std::pow(t, 2.0 / 3.0) + c[2] * t + c[3] * t * t +
            c[4] * std::pow(t, 6));
  }
  if (e == "SHOMATE") {
    return c[0] + c[1] * T + c[2] * T * T + c[3] * T * T * T + c[4] / (T * T);
  }
  if (e == "TRC_CP") {
    return trc_cp(c, T);
  }
  if (e == "SPOLY") {
    return polynomial(row, 1, row.count, x);
  }
  if (e == "INV_SPOLY") {
    return 1.0 / polynomial(row, 1, row.count, x);
  }
  if (e == "EXP_SPOLY") {
    return std::exp(polynomial(row, 1, row.count, x));
  }
  if (e == "EXP_SPOLY_LNTAU") {
    const double u1 = std::log(1.0 - row.tmin / row.tc), u2 = std::log(1.0 - row.tmax / row.tc);
    const double u = std::log(t);
    return std::exp(polynomial(row, 1, row.count, (2.0 * u - u1 - u2) / std::fabs(u1 - u2)));
  }
  if (e == "ANC_EXP_TR") {
    return c[0] * std::exp(c[1] / T * pressure_or_density_sum(row, T));
  }
  if (e == "ANC_EXP") {
    return c[0] * std::exp(pressure_or_density_sum(row, T));
  }
  if (e == "ANC_LIN") {
    return c[0] * (1.0 + pressure_or_density_sum(row, T));
  }
  if (e == "RATPOLY") {
    return ratio(row, T);
  }
  if (e == "CP0_PE") {
    return planck_einstein(row, T);
  }
  return std::numeric_limits<double>::quiet_NaN();
}

}  // namespace talix::bank
