#include "bank/pairs_equation.h"

#include <algorithm>
#include <cmath>

namespace talix::bank {

namespace {

// Smallest and largest root above B of Z^3 + c2 Z^2 + c1 Z + c0, refined; false where there is none.
bool cubic_root(double c2, double c1, double c0, double B, PairRoot root, double& Z) {
  const double q = (c2 * c2 - 3.0 * c1) / 9.0;
  const double r = (2.0 * c2 * c2 * c2 - 9.0 * c2 * c1 + 27.0 * c0) / 54.0;
  std::array<double, 3> z{};
  int n = 1;
  if (r * r < q * q * q) {
    constexpr double kTurn = 6.283185307179586;
    const double theta = std::acos(std::clamp(r / std::sqrt(q * q * q), -1.0, 1.0));
    for (int k = 0; k < 3; ++k)
      z.at(static_cast<std::size_t>(k)) =
          -2.0 * std::sqrt(q) * std::cos((theta + kTurn * (k - 1)) / 3.0) - c2 / 3.0;
    n = 3;
  } else {
    const double m = std::cbrt(std::fabs(r) + std::sqrt(r * r - q * q * q));
    const double s = r < 0.0 ? m : -m;
    z[0] = s + (m > 0.0 ? q / s : 0.0) - c2 / 3.0;
  }
  bool found = false;
  for (int k = 0; k < n; ++k) {
    double v = z.at(static_cast<std::size_t>(k));
    for (int i = 0; i < 4; ++i) {
      const double d = (3.0 * v + 2.0 * c2) * v + c1;
      if (!(std::fabs(d) > 1e-300)) break;
      v -= (((v + c2) * v + c1) * v + c0) / d;
    }
    if (!(v > B)) continue;
    if (!found || (root == PairRoot::liquid ? v < Z : v > Z)) Z = v;
    found = true;
  }
  return found;
}

}  // namespace

PairComponent pair_component(const PureRecord& record) {
  const auto real = [&](std::string_view field, int offset = 0) {
    return static_cast<double>(record.real(pure_field(field).cell + offset));
  };
  PairComponent c;
  c.number = record.integer(pure_field("IDDB").cell);
  c.family = record.integer(pure_field("ISOFAM").cell);
  c.tc = real("TC");
  c.pc = real("PC") * 1e6;
  c.omega = real("OMEGA");
  constexpr std::array<std::string_view, 3> kSets{"PARABF 1-5", "PARABF 6-10", "PARABF 11-15"};
  for (std::size_t i = 0; i < 15; ++i) c.curves.p.at(i) = real(kSets.at(i / 5), static_cast<int>(i % 5));
  c.curves.kind = quantum_of(record.text(pure_field("ICS").cell, pure_field("ICS").cells).c_str());
  c.curves.prepare();
  return c;
}

PairEquation::PairEquation(PairCubic cubic, const PairComponent& first, const PairComponent& second,
                           const PairParameters& k)
    : cubic_(cubic), components_{first, second}, k_(k) {
  if (cubic == PairCubic::robinson) {
    d1_ = 1.0 + std::sqrt(2.0);
    d2_ = 1.0 - std::sqrt(2.0);
  }
}

PairEquation::Pure PairEquation::pure(const PairComponent& c, double T) const {
  const double RTc = GAS_CONSTANT * c.tc;
  if (cubic_ == PairCubic::bank) {
    const AB ab = curves_at(c.curves, T / c.tc, false);
    // The library's a is over RT.
    return {ab.A * RTc * GAS_CONSTANT * T / c.pc, ab.B * RTc / c.pc};
  }
  const bool soave = cubic_ == PairCubic::soave;
  const double w = c.omega;
  const double m = soave ? 0.480 + 1.574 * w - 0.176 * w * w : 0.37464 + 1.54226 * w - 0.26992 * w * w;
  const double root = 1.0 + m * (1.0 - std::sqrt(T / c.tc));
  return {(soave ? 0.42748 : 0.45724) * RTc * RTc / c.pc * root * root,
          (soave ? 0.08664 : 0.07780) * RTc / c.pc};
}

PairPhase PairEquation::phase(double T, double P, double x, PairRoot root) const {
  if (!(std::fabs(held_.T - T) <= 0.0)) held_ = {T, {pure(components_[0], T), pure(components_[1], T)}};
  const auto& [p1, p2] = held_.pure;
  const double z = 1.0 - x;
  const double s = std::sqrt(p1.a * p2.a);
  const double even = s * (1.0 - k_.t0 - k_.t0t * T);
  const bool families = components_[0].family != components_[1].family;
  const double odd = families ? -2.0 * s * (k_.t1 + k_.t1t * T) : 0.0;
  const double a = x * x * p1.a + z * z * p2.a + 2.0 * x * z * even + odd * x * z * (x - z);
  const double b = x * p1.b + z * p2.b;
  if (!(a > 0.0)) return {};
  const double RT = GAS_CONSTANT * T;
  const double A = a * P / (RT * RT), B = b * P / RT;
  const double sum = d1_ + d2_, product = d1_ * d2_;
  double Z = 0.0;
  if (!cubic_root((sum - 1.0) * B - 1.0, A + product * B * B - sum * B * (B + 1.0),
                  -(A * B + product * B * B * (B + 1.0)), B, root, Z))
    return {};
  // Derivatives of n^2 a by the mole numbers, over n.
  const double da1 = 2.0 * (x * p1.a + z * even) + odd * (z * (x - z) + x * z - x * z * (x - z));
  const double da2 = 2.0 * (z * p2.a + x * even) + odd * (x * (x - z) - x * z - x * z * (x - z));
  const double log_term = A / (B * (d1_ - d2_)) * std::log((Z + d1_ * B) / (Z + d2_ * B));
  PairPhase phase;
  phase.ok = true;
  phase.Z = Z;
  const auto lnphi = [&](double bi, double dai) {
    return bi / b * (Z - 1.0) - std::log(Z - B) - log_term * (dai / a - bi / b);
  };
  phase.lnphi = {lnphi(p1.b, da1), lnphi(p2.b, da2)};
  return phase;
}

}  // namespace talix::bank
