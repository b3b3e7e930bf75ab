// Langmuir coefficients of the hydrate formers for the water constants of the library.
//
// Published coefficients belong to other water constants. Where a former was measured alone, both of its cavities of
// the structure take a common factor, an exponential in 1/T, that brings the measured points onto equilibrium. Where it
// was not, its large cavity takes the factor that makes up for the difference of the water constants when that cavity
// is full, and its small cavity stays as published.
#include <algorithm>
#include <cmath>
#include <map>
#include <sstream>

#include "bank/build.h"
#include "bank/parameter_files.h"
#include "bank/parameter_fit.h"
#include "bank/parameter_hydrate_state.h"
#include "bank/tables.h"

namespace talix::bank {

namespace {

// Water constants of the published coefficients, for both structures.
constexpr LatticeConstants kPublished[] = {{1264, -4858, -39.16}, {883, -5201, -39.16}};

constexpr double kLowestTemperature = 260;  // of points used [K]
constexpr double kHighestPressure = 1e8;    // of points used [Pa]
constexpr double kFactorLow = 273.15;       // temperatures at which unmeasured formers are matched [K]
constexpr double kFactorHigh = 288.15;
constexpr int kFewestPoints = 4;
constexpr double kPascalPerBar = 1e5;

struct Point {
  double T, P;
};

struct Tables {
  std::map<std::string, FormerFit> formers;  // by CAS number
  std::map<std::string, HydrateGas> gases;
  std::map<std::string, std::vector<Point>> points[2];  // measured alone, by structure
};

Curves record_curves(const PureRecord& record, const std::string& code) {
  Curves curves;
  constexpr std::string_view kSets[] = {"PARABF 1-5", "PARABF 6-10", "PARABF 11-15"};
  for (int i = 0; i < 15; ++i)
    curves.p[static_cast<std::size_t>(i)] =
        static_cast<double>(record.real(pure_field(kSets[i / 5]).cell + i % 5));
  curves.kind = quantum_of(code.c_str());
  curves.prepare();
  return curves;
}

int structure_index(const SourceTable& table, std::size_t row) {
  const std::string& name = table.text(row, "structure");
  if (name != "I" && name != "II") table.fail(row, "structure", "write I or II");
  return name == "I" ? 0 : 1;
}

Tables read_tables(const std::filesystem::path& data_dir) {
  Tables tables;
  const SourceTable langmuir = SourceTable::read(data_dir / "hydrate_langmuir.csv");
  for (std::size_t row = 0; row < langmuir.rows(); ++row) {
    FormerFit& former = tables.formers[langmuir.text(row, "cas")];
    former.cas = langmuir.text(row, "cas");
    former.former = langmuir.text(row, "former");
    const int cavity = langmuir.text(row, "cavity") == "large" ? 1 : 0;
    former.cavity[structure_index(langmuir, row)][cavity] = {
        langmuir.required(row, "A_K_per_bar", {"K/bar", 1e-20, 1e6}),
        langmuir.required(row, "B_K", {"K", -1e4, 2e4})};
  }
  const SourceTable potential = SourceTable::read(data_dir / "hydrate_kihara.csv");
  for (std::size_t row = 0; row < potential.rows(); ++row) {
    const auto found = tables.formers.find(potential.text(row, "cas"));
    if (found == tables.formers.end()) continue;
    found->second.core = potential.text(row, "core_radius_A");
    found->second.sigma = potential.text(row, "sigma_A");
    found->second.epsilon = potential.text(row, "eps_over_k_K");
  }
  const BuildResult built = compile_bank(data_dir);
  for (const PureRecord& record : built.bank.pure) {
    if (is_unused(record)) continue;
    const ParameterComponent component = parameter_components({&record, 1}).front();
    if (tables.formers.contains(component.cas))
      tables.gases[component.cas] = {
          record_curves(record, component.code), component.tc, component.pc * kPascalPerBar, {}, false};
  }
  const SourceTable solubility = SourceTable::read(data_dir / "hydrate_solubility.csv");
  for (std::size_t row = 0; row < solubility.rows(); ++row) {
    const auto found = tables.gases.find(solubility.text(row, "cas"));
    if (found == tables.gases.end()) continue;
    constexpr const char* kColumns[] = {"h1", "h2_K", "h3", "h4_per_K"};
    for (std::size_t i = 0; i < 4; ++i)
      found->second.solubility[i] = solubility.required(row, kColumns[i], {"-", -1e6, 1e6});
    found->second.soluble = true;
  }
  const SourceTable points = SourceTable::read(data_dir / "hydrate_points.csv");
  for (std::size_t row = 0; row < points.rows(); ++row) {
    const Point point{points.required(row, "T_K", {"K", 200, 350}),
                      points.required(row, "P_Pa", {"Pa", 1e3, 1e9})};
    if (point.T >= kLowestTemperature && point.P <= kHighestPressure)
      tables.points[structure_index(points, row)][points.text(row, "cas")].push_back(point);
  }
  return tables;
}

std::vector<GasPart> alone(const FormerFit& former, const HydrateGas& gas, int structure) {
  return {{&gas, 1.0, former.cavity[structure][0], former.cavity[structure][1]}};
}

// ln of the factor on both cavities that brings a point onto equilibrium.
double wanted_factor(const FormerFit& former, const HydrateGas& gas, int structure, const Point& point) {
  double low = -20;
  double high = 20;
  for (int step = 0; step < 60; ++step) {
    const double middle = (low + high) / 2;
    FormerFit scaled = former;
    for (Langmuir& cavity : scaled.cavity[structure]) cavity.A *= std::exp(middle);
    (water_excess(alone(scaled, gas, structure), structure, point.T, point.P) > 0 ? low : high) = middle;
  }
  return (low + high) / 2;
}

// A factor exp(p + q/T) on a cavity.
void apply(Langmuir& cavity, double p, double q) {
  if (cavity.A <= 0) return;
  cavity.A *= std::exp(p);
  cavity.B += q;
}

void fit_measured(FormerFit& former, const HydrateGas& gas, int structure, const std::vector<Point>& points) {
  double n = 0, sx = 0, sy = 0, sxx = 0, sxy = 0;
  for (const Point& point : points) {
    const double x = 1 / point.T;
    const double y = wanted_factor(former, gas, structure, point);
    n += 1;
    sx += x;
    sy += y;
    sxx += x * x;
    sxy += x * y;
  }
  const double q = (n * sxy - sx * sy) / (n * sxx - sx * sx);
  const double p = (sy - q * sx) / n;
  apply(former.cavity[structure][0], p, q);
  apply(former.cavity[structure][1], p, q);

  // What is left of the factor is the deviation of the fugacity. That of the pressure would say nothing next to the
  // condensation of the former, where the fugacity hardly depends on it.
  double sum = 0;
  for (const Point& point : points) sum += std::abs(std::expm1(wanted_factor(former, gas, structure, point)));
  former.points[structure] = static_cast<int>(points.size());
  former.mean[structure] = 100 * sum / n;
}

void match_unmeasured(FormerFit& former, int structure) {
  const auto factor = [&](double T) {
    return (lattice_potential(library_lattice(structure), structure, T, 0) -
            lattice_potential(kPublished[structure], structure, T, 0)) /
           cavities_per_water(structure, 1);
  };
  const double low = factor(kFactorLow);
  const double q = (factor(kFactorHigh) - low) / (1 / kFactorHigh - 1 / kFactorLow);
  apply(former.cavity[structure][1], low - q / kFactorLow, q);
}

// Parts of a composition such as "CH4=0.9;C2H6=0.1"; empty where a component is no former of the list.
std::vector<GasPart> mixture(const std::string& composition, const Tables& tables,
                             const std::vector<FormerFit>& fits, int structure) {
  std::vector<GasPart> parts;
  std::istringstream items(composition);
  std::string item;
  while (std::getline(items, item, ';')) {
    const std::size_t equals = item.find('=');
    const auto named = [&](const FormerFit& fit) { return fit.former == item.substr(0, equals); };
    const auto found = std::find_if(fits.begin(), fits.end(), named);
    if (equals == std::string::npos || found == fits.end()) return {};
    parts.push_back({&tables.gases.at(found->cas), std::stod(item.substr(equals + 1)),
                     found->cavity[structure][0], found->cavity[structure][1]});
  }
  return parts;
}

}  // namespace

MixtureCheck check_mixtures(const std::filesystem::path& data_dir, const std::vector<FormerFit>& fits) {
  const Tables tables = read_tables(data_dir);
  const SourceTable table = SourceTable::read(data_dir / "hydrate_points.csv");
  MixtureCheck check{};
  for (std::size_t row = 0; row < table.rows(); ++row) {
    if (table.text(row, "cas") != "mixture") continue;
    const int structure = structure_index(table, row);
    const std::vector<GasPart> parts = mixture(table.text(row, "composition_dry"), tables, fits, structure);
    const double T = table.required(row, "T_K", {"K", 200, 350});
    const double P = table.required(row, "P_Pa", {"Pa", 1e3, 1e9});
    const auto found = parts.empty() ? std::optional<double>{} : equilibrium_pressure(parts, structure, T, P);
    const double deviation = found ? 100 * (*found / P - 1) : 100;
    ++check.points;
    check.mean += (std::abs(deviation) - check.mean) / check.points;
    check.bias += (deviation - check.bias) / check.points;
  }
  return check;
}

std::vector<FormerFit> fit_formers(const std::filesystem::path& data_dir) {
  Tables tables = read_tables(data_dir);
  std::vector<FormerFit> fits;
  for (auto& [cas, former] : tables.formers) {
    const auto gas = tables.gases.find(cas);
    if (gas == tables.gases.end()) continue;
    for (int structure = 0; structure < 2; ++structure) {
      if (former.cavity[structure][1].A <= 0) continue;
      const std::vector<Point>& points = tables.points[structure][cas];
      if (static_cast<int>(points.size()) >= kFewestPoints)
        fit_measured(former, gas->second, structure, points);
      else
        match_unmeasured(former, structure);
    }
    fits.push_back(former);
  }
  return fits;
}

}  // namespace talix::bank
