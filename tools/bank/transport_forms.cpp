#include "bank/transport_forms.h"

#include <cmath>

namespace talix::bank {

namespace {

constexpr double kLnTen = 2.30258512;          // as the engine has it
constexpr double kLnThousand = 6.90776;        // Pa s to mPa s
constexpr double kBoltzmann = 1.38064383e-23;  // J/K, the constants of the corresponding-states model
constexpr double kAvogadro = 6.0221694e+23;    // 1/mol
constexpr double kEnergyUnit = 1e-21;          // J
constexpr double kCubicAngstrom = 1e-30;       // m3

// Reduced state of the corresponding-states model of a pure liquid.
struct ReducedLiquid {
  double TR;      // temperature [-]
  double PRR;     // pressure [-]
  double size;    // the ratio, first parameter [-]
  double energy;  // [J]
  double area;    // [m2]
  double mass;    // [kg]
};

ReducedLiquid reduced(const SetValues& c, double molar_mass, double T, double P) {
  ReducedLiquid r{};
  r.size = c[0];
  r.energy = c[2] * kEnergyUnit;
  const double volume = c[1] * kCubicAngstrom;
  r.area = std::pow(volume, 2.0 / 3.0);
  r.mass = molar_mass * 0.001 / kAvogadro;
  r.TR = T * kBoltzmann * r.size / r.energy;
  r.PRR = P * volume / r.energy;
  return r;
}

}  // namespace

double vil_viscosity(int flag, const SetValues& c, double T) {
  if (flag == kTabulatedForm) {
    double ln = kLnThousand + c[0] + c[1] / T + c[2] * std::log(T);
    if (c[3] > 0.0 && c[4] > 0.0) ln += c[3] * std::pow(T, c[4]);
    return std::exp(ln);
  }
  const double u = 100.0 / T;
  return std::exp(c[0] + u * (c[1] + u * (c[2] + u * (c[3] + 10.0 * u * (c[4] + 10.0 * u * c[5])))));
}

double tcl_conductivity(const SetValues& c, double T) {
  const double at = std::fmin(std::fmax(T, c[5]), c[6]);
  const double value = (((c[4] * at + c[3]) * at + c[2]) * at + c[1]) * at + c[0];
  const double slope = ((4.0 * c[4] * at + 3.0 * c[3]) * at + 2.0 * c[2]) * at + c[1];
  return value + (T - at) * slope;
}

double dlip_density(const SetValues& c, double tc, double T) {
  const double q = 1.0 - std::fmin(T / tc, 1.0);
  return c[0] * (1.0 + c[1] * std::cbrt(q) + c[2] * q);
}

double ddip_density(const SetValues& c, double molar_mass, double T) {
  if (!(c[2] > T)) return molar_mass * c[0] / c[1];
  return molar_mass * c[0] / std::pow(c[1], 1.0 + std::pow(1.0 - T / c[2], c[3]));
}

double psat_pressure(const SetValues& c, double T) {
  // x exp(-x) = d exp(q) with x = d P below 1: the lower of the two solutions, by Newton's method from below.
  const double q = kLnTen * (c[0] + c[1] / T) + c[3] * std::log(T);
  const double d = kLnTen * c[4] / (T * T);
  double p = std::exp(q);
  for (int i = 0; i < 200; ++i) {
    const double f = std::log(p) - d * p - q;
    const double slope = 1.0 / p - d;
    if (!(slope > 0.0)) return 0.0;
    const double next = p - f / slope;
    if (!(next > 0.0)) return 0.0;
    if (std::fabs(next - p) < 1e-12 * p) return next;
    p = next;
  }
  return 0.0;
}

double hvap_exponent(const SetValues& c, double tc, double T) {
  const double bound = T < c[5] ? c[5] : (T > c[6] ? c[6] : T);
  const double r = bound / tc;
  return c[1] + r * (c[2] + r * (c[3] + r * c[4]));
}

double hvap_heat(const SetValues& c, double tc, double T) {
  if (!(T < tc)) return 0.0;
  return c[0] * std::pow(1.0 - T / tc, hvap_exponent(c, tc, T)) / 1000.0;
}

double surt_tension(const SetValues& c, double tc, double T) {
  return T < tc ? c[0] * std::pow(1.0 - T / tc, c[1]) : 0.0;
}

double parl2_viscosity(const SetValues& c, double molar_mass, double T, double P) {
  const ReducedLiquid r = reduced(c, molar_mass, T, P);
  const double value = 2.35647607 + 0.00230745506 * std::exp(6.03992224 / (r.TR + 0.194874898)) +
                       0.0724359825 * r.PRR * std::exp(2.61725593 / r.TR) -
                       1.36728799 * (r.TR - 1.04756296) * std::exp(-r.PRR) * r.size - 0.728395879 * r.size;
  return 1000.0 * std::sqrt(r.energy * r.mass) / r.area * value;
}

double parl2_conductivity(const SetValues& c, double molar_mass, double T, double P) {
  const ReducedLiquid r = reduced(c, molar_mass, T, P);
  const double value =
      -8.07744312 + 20.2070007 / (1.0 + r.TR) +
      (1.17945302 - 0.544696689 / r.TR) * r.PRR * std::exp(1.35986805 / (0.714541614 * r.PRR + 1.0)) +
      1.50550699 * r.size;
  return r.size * kBoltzmann / std::sqrt(r.mass / r.energy) / r.area * value;
}

}  // namespace talix::bank
