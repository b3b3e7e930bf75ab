#include "bank/user_estimates.h"

#include <Eigen/Dense>

#include <algorithm>
#include <array>
#include <cmath>

#include "bank/fit_curves.h"

namespace talix::bank {

namespace {

constexpr double kRackett = 2.0 / 7.0;   // exponent of the density form
constexpr double kWatson = 0.38;         // exponent of the heat of vaporisation
constexpr double kTension = 11.0 / 9.0;  // exponent of the surface tension
constexpr double kLowest = 0.3;          // reduced temperature down to which relations reach
constexpr double kHighest = 0.99;        // and up to which

Correlation relation(const char* equation, double tmin, double tmax, double tc, std::span<const double> c,
                     const char* source, bool estimated) {
  Correlation r;
  r.equation = equation;
  std::copy(c.begin(), c.end(), r.c.begin());
  r.count = static_cast<int>(c.size());
  r.tmin = tmin;
  r.tmax = tmax;
  r.tc = tc;
  r.rank = 1;
  r.source = source;
  r.estimated = estimated;
  return r;
}

// Least squares of sum(x_k f_k) = y.
std::vector<double> solved(const std::vector<std::vector<double>>& rows, const std::vector<double>& right) {
  const auto n = static_cast<Eigen::Index>(rows.size()), m = static_cast<Eigen::Index>(rows.front().size());
  Eigen::MatrixXd a(n, m);
  Eigen::VectorXd y(n);
  for (Eigen::Index i = 0; i < n; ++i) {
    for (Eigen::Index k = 0; k < m; ++k)
      a(i, k) = rows[static_cast<std::size_t>(i)][static_cast<std::size_t>(k)];
    y(i) = right[static_cast<std::size_t>(i)];
  }
  const Eigen::VectorXd x = a.colPivHouseholderQr().solve(y);
  return {x.data(), x.data() + x.size()};
}

std::vector<double> wagner_terms(double tr, double weight) {
  const double q = 1.0 - tr;
  return {weight * q / tr, weight * std::pow(q, 1.5) / tr, weight * q * q * q / tr,
          weight * std::pow(q, 6) / tr};
}

}  // namespace

double acentric_through(const UserCritical& c, std::span<const UserPoint> points) {
  // ln(P/Pc) is linear in the acentric factor.
  double above = 0, below = 0;
  for (const UserPoint& p : points) {
    const double tr = p.T / c.tc, level = lee_kesler_lnpr(tr, 0.0), slope = lee_kesler_lnpr(tr, 1.0) - level;
    above += slope * (std::log(p.value / c.pc) - level);
    below += slope * slope;
  }
  return above / below;
}

Correlation pressure_through(const UserCritical& c, double omega, std::span<const UserPoint> points) {
  constexpr double kLeaning = 0.03;  // weight of the relation of Lee and Kesler where there are no points
  std::vector<std::vector<double>> rows;
  std::vector<double> right;
  for (const UserPoint& p : points) {
    if (p.T >= c.tc) continue;
    rows.push_back(wagner_terms(p.T / c.tc, 1.0));
    right.push_back(std::log(p.value / c.pc));
  }
  const bool estimated = rows.empty();
  const double low = estimated ? 1e9 : points.front().T / c.tc,
               high = estimated ? 0.0 : points.back().T / c.tc;
  constexpr int kSteps = 24;
  for (int i = 0; i < kSteps; ++i) {
    const double tr = kLowest + (kHighest - kLowest) * i / kSteps;
    if (tr >= low && tr <= high) continue;
    rows.push_back(wagner_terms(tr, kLeaning));
    right.push_back(kLeaning * lee_kesler_lnpr(tr, omega));
  }
  std::vector<double> w = solved(rows, right);
  w.push_back(c.pc);
  return relation("WAGNER36", kLowest * c.tc, c.tc, c.tc, w,
                  estimated ? "EST: Lee and Kesler 1975" : "points of the user", estimated);
}

double boiling_temperature(const UserCritical& c, const Correlation& pressure, double P) {
  double low = 0.25 * c.tc, high = c.tc;
  for (int i = 0; i < 60; ++i) {
    const double mid = 0.5 * (low + high);
    (evaluate(pressure, mid) < P ? low : high) = mid;
  }
  return 0.5 * (low + high);
}

Correlation density_through(const UserCritical& c, double omega, std::span<const UserPoint> points) {
  constexpr double kWide = 0.1;  // reduced temperatures from which on both constants can be told
  const auto power = [&](double T) { return 1.0 + std::pow(1.0 - T / c.tc, kRackett); };
  double first = c.pc / (GAS_CONSTANT * c.tc), second = 0.29056 - 0.08775 * omega;
  if (points.size() > 1 && points.back().T - points.front().T > kWide * c.tc) {
    std::vector<std::vector<double>> rows;
    std::vector<double> right;
    for (const UserPoint& p : points) {
      rows.push_back({1.0, -power(p.T)});
      right.push_back(std::log(p.value));
    }
    const std::vector<double> x = solved(rows, right);
    first = std::exp(x[0]);
    second = std::exp(x[1]);
  } else if (!points.empty()) {
    double sum = 0;
    for (const UserPoint& p : points) sum += std::log(first / p.value) / power(p.T);
    second = std::exp(sum / static_cast<double>(points.size()));
  }
  const std::array<double, 4> constants{first, second, c.tc, kRackett};
  return relation("DIPPR105", kLowest * c.tc, kHighest * c.tc, c.tc, constants,
                  points.empty() ? "EST: Yamada and Gunn 1973" : "points of the user", points.empty());
}

double vaporisation_from_slope(const UserCritical& c, const Correlation& pressure, double T) {
  const double step = 1e-4 * T, p = evaluate(pressure, T), tr = T / c.tc;
  const double slope = std::log(evaluate(pressure, T + step) / evaluate(pressure, T - step)) / (2.0 * step);
  return GAS_CONSTANT * T * T * slope * std::sqrt(std::fmax(0.0, 1.0 - p / c.pc / (tr * tr * tr)));
}

namespace {

// c1 (1 - T/Tc)^c2 through points: two constants, or one where there is a single point.
std::array<double, 2> power_through(const UserCritical& c, std::span<const UserPoint> points,
                                    double exponent) {
  if (points.size() == 1) return {points[0].value / std::pow(1.0 - points[0].T / c.tc, exponent), exponent};
  std::vector<std::vector<double>> rows;
  std::vector<double> right;
  for (const UserPoint& p : points) {
    rows.push_back({1.0, std::log(1.0 - p.T / c.tc)});
    right.push_back(std::log(p.value));
  }
  const std::vector<double> x = solved(rows, right);
  return {std::exp(x[0]), x[1]};
}

}  // namespace

Correlation vaporisation_through(const UserCritical& c, std::span<const UserPoint> points) {
  const std::array<double, 2> x = power_through(c, points, kWatson);
  return relation("DIPPR106", kLowest * c.tc, kHighest * c.tc, c.tc, x, "points of the user", false);
}

Correlation tension_through(const UserCritical& c, std::span<const UserPoint> points) {
  const std::array<double, 2> x = power_through(c, points, kTension);
  return relation("PPDS14", kLowest * c.tc, kHighest * c.tc, c.tc, x, "points of the user", false);
}

Correlation tension_by_boiling(const UserCritical& c, double boiling) {
  const double bars = c.pc / 1e5, tbr = boiling / c.tc;
  const double q = 0.1196 * (1.0 + tbr * std::log(bars / 1.01325) / (1.0 - tbr)) - 0.279;
  const std::array<double, 2> x{1e-3 * std::pow(bars, 2.0 / 3.0) * std::cbrt(c.tc) * q, kTension};
  return relation("PPDS14", kLowest * c.tc, kHighest * c.tc, c.tc, x, "EST: Brock and Bird 1955", true);
}

Correlation viscosity_through(std::span<const UserPoint> points) {
  const bool bent = points.size() > 3;
  std::vector<std::vector<double>> rows;
  std::vector<double> right;
  for (const UserPoint& p : points) {
    rows.push_back({1.0, 1.0 / p.T});
    if (bent) rows.back().push_back(std::log(p.T));
    right.push_back(std::log(p.value));
  }
  return relation("DIPPR101", points.front().T, points.back().T, 0.0, solved(rows, right),
                  "points of the user", false);
}

Correlation polynomial_through(std::span<const UserPoint> points) {
  constexpr double kScale = 1000.0;  // [K]
  const std::size_t count = std::min<std::size_t>(points.size(), 3);
  std::vector<std::vector<double>> rows;
  std::vector<double> right;
  for (const UserPoint& p : points) {
    rows.emplace_back();
    for (std::size_t k = 0; k < count; ++k)
      rows.back().push_back(std::pow(p.T / kScale, static_cast<double>(k)));
    right.push_back(p.value);
  }
  std::vector<double> x = solved(rows, right);
  for (std::size_t k = 0; k < x.size(); ++k) x[k] /= std::pow(kScale, static_cast<double>(k));
  return relation("DIPPR100", points.front().T, points.back().T, 0.0, x, "points of the user", false);
}

namespace {

constexpr std::array kElements{"C", "H", "N", "O", "S", "F", "Cl", "Br", "I"};

// The counts of the elements, all others together, and 1 for the motion of the molecule as a whole.
std::vector<double> counted(const common::Atoms& atoms) {
  std::vector<double> counts(kElements.size() + 1, 0.0);
  for (const auto& [symbol, count] : atoms) {
    const std::string name = symbol == "D" ? "H" : symbol;
    const auto at = std::find(kElements.begin(), kElements.end(), name) - kElements.begin();
    counts[static_cast<std::size_t>(at)] += count;
  }
  counts.push_back(1.0);
  return counts;
}

}  // namespace

std::optional<Correlation> heat_by_atoms(const BankSources& sources, const common::Atoms& atoms) {
  if (!sources.ideal_gas) return std::nullopt;
  const SourceTable& table = *sources.ideal_gas;
  std::map<int, common::Atoms> known;
  for (std::size_t row = 0; row < sources.components.rows(); ++row) {
    if (const auto found = common::atoms_of(sources.components.text(row, "formula")))
      known[sources.components.integer(row, "number", 2, kHighestNumber)] = *found;
  }
  constexpr std::array kGrid{200.0, 300.0, 400.0, 500.0, 600.0, 800.0, 1000.0, 1250.0, 1500.0};
  std::vector<std::vector<double>> rows;
  std::vector<std::array<double, 8>> polynomials;
  for (std::size_t row = 0; row < table.rows(); ++row) {
    const auto found = known.find(table.integer(row, "number", 2, kHighestNumber));
    if (found == known.end() || (table.has("icpig") && table.text(row, "icpig") != "1")) continue;
    if (table.has("source") && table.text(row, "source").starts_with("EST")) continue;
    rows.push_back(counted(found->second));
    polynomials.emplace_back();
    for (std::size_t k = 0; k < 8; ++k)
      polynomials.back()[k] = table.number(row, "c" + std::to_string(k + 1), {"", -1e15, 1e15}).value_or(0.0);
  }
  constexpr std::size_t kFewest = 20;  // components below which contributions mean nothing
  if (rows.size() < kFewest) return std::nullopt;
  const std::vector<double> wanted = counted(atoms);
  std::vector<UserPoint> points;
  for (const double T : kGrid) {
    // Relative deviations count.
    std::vector<std::vector<double>> weighted = rows;
    for (std::size_t i = 0; i < rows.size(); ++i)
      for (double& v : weighted[i]) v /= ideal_gas_cp(polynomials[i], T);
    const std::vector<double> x = solved(weighted, std::vector<double>(rows.size(), 1.0));
    double cp = 0;
    for (std::size_t k = 0; k < x.size(); ++k) cp += wanted[k] * x[k];
    constexpr double kLeast = 2.5 * GAS_CONSTANT;
    points.push_back({T, std::fmax(cp, kLeast)});
  }
  constexpr double kScale = 1000.0;
  std::vector<std::vector<double>> powers;
  std::vector<double> right;
  for (const UserPoint& p : points) {
    const double t = p.T / kScale;
    powers.push_back(
        {1 / p.value, t / p.value, t * t / p.value, t * t * t / p.value, t * t * t * t / p.value});
    right.push_back(1.0);
  }
  std::vector<double> c = solved(powers, right);
  for (std::size_t k = 0; k < c.size(); ++k) c[k] /= std::pow(kScale, static_cast<double>(k));
  return relation("DIPPR100", 150.0, 1500.0, 0.0, c, "EST:atoms", true);
}

}  // namespace talix::bank
