#include "bank/parameter_hydrate_state.h"

#include <algorithm>
#include <cmath>

#include "solids/hydrate_record.h"

namespace talix::bank {

namespace {

constexpr double kFreezing = 273.15;         // [K]
constexpr double kPascalPerBar = 1e5;        // Langmuir coefficients are by bar
constexpr double kFusionHeat = 6001.74;      // of ice [J/mol]
constexpr double kFusionCapacity = 37.83;    // liquid less ice [J/(mol K)]
constexpr double kFusionVolume = -1.629e-6;  // liquid less ice [m3/mol]

double langmuir(const Langmuir& set, double T) { return set.A > 0 ? set.A / T * std::exp(set.B / T) : 0; }

void set_lattice() {
  if (hydrate.COHCV(1, 1) == 0) set_hydrate_constants();
}

}  // namespace

LatticeConstants library_lattice(int structure) {
  set_lattice();
  return {hydrate.COHST(1, structure + 1), hydrate.COHST(2, structure + 1), hydrate.COHST(4, structure + 1)};
}

double cavities_per_water(int structure, int cavity) {
  set_lattice();
  return hydrate.COHCV(1, 2 * structure + cavity + 1);
}

double lattice_potential(const LatticeConstants& constants, int structure, double T, double P) {
  set_lattice();
  const double volume = hydrate.COHST(3, structure + 1) * 1e-6;  // [m3/mol]
  const double enthalpy = constants.enthalpy - kFreezing * constants.heat_capacity;
  return constants.potential / (GAS_CONSTANT * kFreezing) +
         enthalpy / GAS_CONSTANT * (1 / T - 1 / kFreezing) -
         constants.heat_capacity / GAS_CONSTANT * std::log(T / kFreezing) + volume * P / (GAS_CONSTANT * T);
}

double ice_over_liquid(double T, double P) {
  if (T >= kFreezing) return 0;
  return (kFusionHeat - kFusionCapacity * kFreezing) / GAS_CONSTANT * (1 / kFreezing - 1 / T) +
         kFusionCapacity / GAS_CONSTANT * std::log(T / kFreezing) - kFusionVolume * P / (GAS_CONSTANT * T);
}

std::vector<double> fugacities(const std::vector<GasPart>& parts, double T, double P) {
  // a/(R^2 T) and b/R of each component, in K/Pa.
  std::vector<double> a, b;
  double mixed_b = 0;
  for (const GasPart& part : parts) {
    const AB ab = curves_at(part.gas->curves, T / part.gas->tc, false);
    const double scale = part.gas->tc / part.gas->pc;
    a.push_back(ab.A * scale);
    b.push_back(ab.B * scale);
    mixed_b += part.fraction * b.back();
  }
  double mixed_a = 0;
  std::vector<double> row(parts.size());
  for (std::size_t i = 0; i < parts.size(); ++i) {
    for (std::size_t j = 0; j < parts.size(); ++j) row[i] += parts[j].fraction * std::sqrt(a[i] * a[j]);
    mixed_a += parts[i].fraction * row[i];
  }
  // The root of the mixture, as that of one component with Tc/Pc of 1 K over its own scale.
  const double scale = mixed_b;
  const double pr = P * scale / T;
  const Root root = stable_root({mixed_a / scale, 0, 0, 1.0, 0, 0}, 1.0, pr);
  const double Z = root.Z;
  const double A = mixed_a * P / T;
  const double B = mixed_b * P / T;
  std::vector<double> result;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const double lnphi = b[i] / mixed_b * (Z - 1) - std::log(Z - B) -
                         A / B * (2 * row[i] / mixed_a - b[i] / mixed_b) * std::log1p(B / Z);
    result.push_back(parts[i].fraction * P * std::exp(lnphi));
  }
  return result;
}

double water_excess(const std::vector<GasPart>& parts, int structure, double T, double P) {
  const std::vector<double> f = fugacities(parts, T, P);
  double small = 0;
  double large = 0;
  double dissolved = 0;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    small += langmuir(parts[i].small, T) * f[i] / kPascalPerBar;
    large += langmuir(parts[i].large, T) * f[i] / kPascalPerBar;
    const std::array<double, 4>& h = parts[i].gas->solubility;
    if (parts[i].gas->soluble) dissolved += f[i] / std::exp(h[0] + h[1] / T + h[2] * std::log(T) + h[3] * T);
  }
  const double water = T < 273.15 ? ice_over_liquid(T, P) : std::log1p(-std::min(dissolved, 0.5));
  return lattice_potential(library_lattice(structure), structure, T, P) - water -
         cavities_per_water(structure, 0) * std::log1p(small) -
         cavities_per_water(structure, 1) * std::log1p(large);
}

std::optional<double> equilibrium_pressure(const std::vector<GasPart>& parts, int structure, double T,
                                           double P) {
  const auto excess = [&](double ln_p) { return water_excess(parts, structure, T, std::exp(ln_p)); };
  // Hydrate forms above the pressure of equilibrium: the excess falls through 0. The crossing next to P is meant.
  const double middle = std::log(P);
  constexpr double kStep = 0.05;
  constexpr int kSteps = 60;  // up to a factor of 20
  for (int k = 0; k < kSteps; ++k) {
    for (const double low : {middle + kStep * k, middle - kStep * (k + 1)}) {
      double lo = low;
      double hi = low + kStep;
      if (!(excess(lo) > 0 && excess(hi) <= 0)) continue;
      for (int step = 0; step < 50; ++step) {
        const double half = (lo + hi) / 2;
        (excess(half) > 0 ? lo : hi) = half;
      }
      return std::exp(lo);
    }
  }
  return std::nullopt;
}

}  // namespace talix::bank
