#include "bank/fit_reference.h"

#include "bank/fit_csv.h"

#include <Eigen/Dense>

#include <algorithm>
#include <cmath>

namespace talix::bank {

namespace {

// Constants of one of the two fluids of B. I. Lee and M. G. Kesler, AIChE J. 21 (1975) 510.
struct LeeKesler {
  double b1, b2, b3, b4, c1, c2, c3, c4, d1, d2, beta, gamma;
};

constexpr LeeKesler SIMPLE = {0.1181193, 0.265728, 0.154790,    0.030323,    0.0236744, 0.0186984,
                              0.0,       0.042724, 0.155488e-4, 0.623689e-4, 0.65392,   0.060167};
constexpr LeeKesler OCTANE = {0.2026579, 0.331511, 0.027655,   0.203488,     0.0313385, 0.0503618,
                              0.016901,  0.041577, 0.48736e-4, 0.0740336e-4, 1.226,     0.03754};
constexpr double OMEGA_OCTANE = 0.3978;

double reduced_pressure(const LeeKesler& k, double tr, double vr) {
  const double B = k.b1 - k.b2 / tr - k.b3 / (tr * tr) - k.b4 / (tr * tr * tr);
  const double C = k.c1 - k.c2 / tr + k.c3 / (tr * tr * tr);
  const double D = k.d1 + k.d2 / tr;
  const double v2 = vr * vr;
  const double z = 1.0 + B / vr + C / v2 + D / (v2 * v2 * vr) +
                   k.c4 / (tr * tr * tr * v2) * (k.beta + k.gamma / v2) * std::exp(-k.gamma / v2);
  return z * tr / vr;
}

// Density search on a rising isotherm, in the logarithm of the volume.
double simple_z(const LeeKesler& k, double tr, double pr) {
  double lo = std::log(0.12), hi = std::log(20.0 * tr / pr);
  if (!(reduced_pressure(k, tr, std::exp(lo)) > pr) || !(reduced_pressure(k, tr, std::exp(hi)) < pr)) {
    return 0.0;
  }
  for (int i = 0; i < 60; ++i) {
    const double mid = 0.5 * (lo + hi);
    if (reduced_pressure(k, tr, std::exp(mid)) > pr) {
      lo = mid;
    } else {
      hi = mid;
    }
  }
  return pr * std::exp(0.5 * (lo + hi)) / tr;
}

// Value of a property from the first ranked relation whose range holds T; not a number where none does.
double ranked_value(const std::vector<Correlation>& rows, double T, const Correlation** used) {
  for (const Correlation& r : rows) {
    if (T >= r.tmin && T <= r.tmax) {
      const double v = evaluate(r, T);
      if (v > 0.0) {
        *used = &r;
        return v;
      }
    }
  }
  return std::nan("");
}

const std::vector<Correlation>& rows_of(const ReferenceTables& t, const std::string& cas,
                                        const std::string& property) {
  static const std::vector<Correlation> none;
  const auto it = t.relations.find(cas);
  if (it == t.relations.end()) {
    return none;
  }
  const auto jt = it->second.find(property);
  return jt == it->second.end() ? none : jt->second;
}

// Saturated liquid volume of Gunn and Yamada, reduced: for components without any liquid density.
double generalised_liquid_density(const FitComponent& c, double tr) {
  const double zra = 0.29056 - 0.08775 * c.omega;  // Yamada and Gunn, J. Chem. Eng. Data 18 (1973) 234
  const double v = GAS_CONSTANT * c.tc / c.pc * std::pow(zra, 1.0 + std::pow(1.0 - tr, 2.0 / 7.0));
  return 1.0 / v;
}

// A vapour pressure relation with the anchored Wagner form through its points.
struct PressureSource {
  const Correlation* row = nullptr;
  std::array<double, 4> wagner{};
  double score = 0.0;  // mean misfit, lack of coverage and rank
};

// From where a relation ends well below the critical point it is led on as corresponding states do, drawn to both ends.
std::vector<SatPoint> guides_behind(const FitComponent& c, const std::vector<SatPoint>& points) {
  constexpr double kEarly = 0.85, kStep = 0.025, kTop = 0.98;  // of Tc
  std::vector<SatPoint> guides;
  const double end = points.back().T / c.tc;
  if (end > kEarly) return guides;
  const double off = std::log(points.back().psat / c.pc) - lee_kesler_lnpr(end, c.omega);
  for (double tr = end + kStep; tr < kTop; tr += kStep) {
    const double ln = lee_kesler_lnpr(tr, c.omega) + off * (1.0 - tr) / (1.0 - end);
    guides.push_back({tr * c.tc, c.pc * std::exp(ln), 0.0, 0.0, 0.0});
  }
  return guides;
}

// Misfit of the anchored form tells whether a relation agrees with the critical point of the component: some
// published sets belong to another critical temperature or pressure.
PressureSource judged(const FitComponent& c, const Correlation& row, int order) {
  PressureSource s;
  s.row = &row;
  std::vector<SatPoint> points;
  int grid = 0;
  for (int k = 0; k <= 58; ++k) {
    const double T = (0.40 + 0.01 * k) * c.tc;
    ++grid;
    const double p = evaluate(row, T);
    if (T >= row.tmin && T <= row.tmax && p > 0.0) {
      points.push_back({T, p, 0.0, 0.0, 0.0});
    }
  }
  if (points.size() < 8) {
    s.score = 1e9;
    return s;
  }
  s.wagner = wagner_through(c, points, guides_behind(c, points));
  double misfit = 0.0;
  for (const SatPoint& p : points) {
    misfit += std::fabs(std::log(p.psat / wagner_pressure(c, s.wagner, p.T)));
  }
  const double count = static_cast<double>(points.size());
  s.score = misfit / count + 0.10 * (1.0 - count / grid) + 0.004 * order;
  // A source that does not boil at the boiling point, or is an estimate, stands back.
  constexpr double kMostAtBoiling = 0.06, kEstimate = 0.08;
  if (c.tb > 0.35 * c.tc && !c.sublimes) {
    const double p =
        c.tb >= row.tmin && c.tb <= row.tmax ? evaluate(row, c.tb) : wagner_pressure(c, s.wagner, c.tb);
    s.score += std::fmin(std::fabs(std::log(p / 101325.0)), kMostAtBoiling);
  }
  if (row.estimated) s.score += kEstimate;
  return s;
}

// Vapour pressure by the best relation, its anchored form above its range, another relation below it.
double joined_pressure(const std::vector<PressureSource>& sources, const FitComponent& c, double T) {
  const PressureSource& main = sources.front();
  const double w = wagner_pressure(c, main.wagner, T);
  if (T >= main.row->tmin && T <= main.row->tmax) {
    const double p = evaluate(*main.row, T);
    return std::fabs(std::log(p / w)) < 0.03 ? p : (T > 0.9 * c.tc ? w : std::nan(""));
  }
  if (T > main.row->tmax) {
    return w;
  }
  const double joint = main.row->tmin;
  for (const PressureSource& s : sources) {
    const bool covers = T >= s.row->tmin && joint <= s.row->tmax;
    if (!covers) continue;
    const double scale = evaluate(*main.row, joint) / evaluate(*s.row, joint);  // so that both meet
    if (std::fabs(std::log(scale)) < 0.15) return scale * evaluate(*s.row, T);
  }
  return std::nan("");
}

// Liquid density by rank; a relation with another critical temperature only well below it.
double joined_density(const std::vector<Correlation>& rows, const FitComponent& c, double T,
                      const Correlation** used) {
  for (const Correlation& r : rows) {
    const double end = r.equation == "DIPPR105" ? r.c[2] : r.tc;
    if (T < r.tmin || T > r.tmax || (end > 0.0 && std::fabs(end / c.tc - 1.0) > 0.02 && T > 0.85 * end)) {
      continue;
    }
    const double v = evaluate(r, T);
    if (v > 0.0) {
      *used = &r;
      return v;
    }
  }
  return std::nan("");
}

void saturation_from_relations(const ReferenceTables& t, const FitComponent& c, Reference& ref) {
  const auto& rl = rows_of(t, c.cas, "rho_liq_sat");
  const auto& hv = rows_of(t, c.cas, "hvap");
  std::vector<PressureSource> sources;
  for (const Correlation& row : rows_of(t, c.cas, "psat")) {
    const PressureSource s = judged(c, row, static_cast<int>(sources.size()));
    if (s.score < 1e8) {
      sources.push_back(s);
    }
  }
  if (sources.empty()) {
    return;
  }
  std::stable_sort(sources.begin(), sources.end(),
                   [](const PressureSource& a, const PressureSource& b) { return a.score < b.score; });
  const Correlation *ur = nullptr, *uh = nullptr;
  for (int k = 0; k <= 34; ++k) {
    const double tr = 0.30 + 0.02 * k;
    const double T = tr * c.tc;
    const double p = joined_pressure(sources, c, T);
    const double rho = rl.empty() ? generalised_liquid_density(c, tr) : joined_density(rl, c, T, &ur);
    if (!(p > 0.5) || !(rho > 0.0)) {
      continue;
    }
    double h = ranked_value(hv, T, &uh);
    if (!(h > 0.0)) {
      h = 0.0;
    }
    ref.sat.push_back({T, p, rho, 0.0, h});
  }
  ref.psat_estimated = sources.front().row->estimated;
  ref.rhol_estimated = ur == nullptr || ur->estimated;
  ref.hvap_estimated = uh == nullptr || uh->estimated;
  ref.basis = ref.psat_estimated ? "generalised" : "correlations";
  ref.source = "psat: " + sources.front().row->source + "; density: " +
               (ur != nullptr ? ur->source : std::string("Yamada and Gunn 1973, generalised"));
}

bool covers(const Correlation& row, double T) { return T >= row.tmin && T <= row.tmax; }

// The relation that reaches farthest between 100 and 1500 K, the better ranked one where they are close.
const Correlation* widest_of(const std::vector<Correlation>& rows) {
  const Correlation* widest = nullptr;
  const auto span = [](const Correlation& r) { return std::fmin(r.tmax, 1500.0) - std::fmax(r.tmin, 100.0); };
  for (const Correlation& r : rows) {
    if (widest == nullptr || span(r) > 1.3 * span(*widest)) widest = &r;
  }
  return widest;
}

// The relation that the middle of the range rests on: the ideal-gas part of a reference equation of state, whose
// vibration terms may be drawn on beyond its range, else the best ranked relation that holds at 298 K, else
// the first.
const Correlation* core_of(const std::vector<Correlation>& rows) {
  for (const Correlation& r : rows)
    if (r.equation == "CP0_PE") return &r;
  for (const Correlation& r : rows)
    if (covers(r, 298.15)) return &r;
  return rows.empty() ? nullptr : &rows.front();
}

// Value at T beyond the range of CORE: drawn on where its form allows and the widest relation agrees, otherwise
// from a relation that holds there, scaled to meet CORE at the end of its range.
double beyond_core(const std::vector<Correlation>& rows, const Correlation& core, const Correlation& widest,
                   double T) {
  constexpr double kAgreement = 0.03;  // largest relative difference of two sources at high temperature
  const double joint = T < core.tmin ? core.tmin : core.tmax;
  if (core.equation == "CP0_PE") {
    const double drawn_on = evaluate(core, T);
    const double other = covers(widest, T) ? evaluate(widest, T) : drawn_on;
    if (T < joint || std::fabs(drawn_on / other - 1.0) < kAgreement) return drawn_on;
  }
  const Correlation* other = covers(widest, T) ? &widest : nullptr;
  const double value = other != nullptr ? evaluate(widest, T) : ranked_value(rows, T, &other);
  if (other == nullptr) return std::nan("");
  const double at_joint = evaluate(*other, joint);
  return at_joint > 0.0 ? value * evaluate(core, joint) / at_joint : std::nan("");
}

// Ideal-gas heat capacity from where a fluid is liquid up to 1500 K. Temperatures in use count full.
void ideal_gas(const ReferenceTables& t, const FitComponent& c, Reference& ref) {
  const auto& rows = rows_of(t, c.cas, "cp_ig");
  const Correlation* core = core_of(rows);
  const Correlation* widest = widest_of(rows);
  if (core != nullptr && widest != nullptr) {
    ref.cp_source = core->source;
    ref.cp_estimated = core->estimated;
    constexpr int kLowPoints = 10;
    constexpr double kKnee = 200.0, kStep = 20.0, kTop = 1500.0;
    const double bottom = std::fmin(150.0, std::fmax(20.0, 0.45 * c.tc));
    const double cold_weight = c.tc < 200.0 ? 0.3 : 0.05;  // cold ideal gas matters for cold fluids
    std::vector<double> grid;
    for (int k = 0; k < kLowPoints; ++k) grid.push_back(bottom + (kKnee - bottom) * k / kLowPoints);
    for (double T = kKnee; T <= kTop; T += kStep) grid.push_back(T);
    for (const double T : grid) {
      const double v = covers(*core, T) ? evaluate(*core, T) : beyond_core(rows, *core, *widest, T);
      const double weight = T < 180.0 ? cold_weight : (T <= 800.0 ? 1.0 : 0.1);
      if (v > 0.0) ref.cp.push_back({T, v, weight});
    }
  }
  const auto it = t.point_cp.find(c.cas);
  if (it != t.point_cp.end() && ref.cp.size() < 8) {
    ref.cp = it->second;
    ref.cp_source = t.point_source.at(c.cas);
  }
}

}  // namespace

double wagner_pressure(const FitComponent& c, const std::array<double, 4>& w, double T) {
  const double q = 1.0 - T / c.tc;
  return c.pc *
         std::exp((w[0] * q + w[1] * std::pow(q, 1.5) + w[2] * q * q * q + w[3] * std::pow(q, 6)) * c.tc / T);
}

std::array<double, 4> wagner_through(const FitComponent& c, const std::vector<SatPoint>& points,
                                     const std::vector<SatPoint>& guides) {
  // The rows are relative errors of the pressure; a faint pull to zero settles coefficients without data.
  constexpr double kGuideWeight = 0.1;
  const auto own = static_cast<Eigen::Index>(points.size());
  const Eigen::Index n = own + static_cast<Eigen::Index>(guides.size());
  Eigen::MatrixXd m = Eigen::MatrixXd::Zero(n + 4, 4);
  Eigen::VectorXd y = Eigen::VectorXd::Zero(n + 4);
  for (Eigen::Index r = 0; r < n; ++r) {
    const SatPoint& s =
        r < own ? points[static_cast<std::size_t>(r)] : guides[static_cast<std::size_t>(r - own)];
    const double tr = s.T / c.tc, q = 1.0 - tr;
    const double w = r < own ? (tr < 0.40 ? 0.2 : 1.0) : kGuideWeight;
    m.row(r) << w * q / tr, w * std::pow(q, 1.5) / tr, w * q * q * q / tr, w * std::pow(q, 6) / tr;
    y(r) = w * std::log(s.psat / c.pc);
  }
  m.bottomRows(4).diagonal().setConstant(1e-4);
  const Eigen::VectorXd x = m.colPivHouseholderQr().solve(y);
  return {x(0), x(1), x(2), x(3)};
}

double lee_kesler_z(double tr, double pr, double omega) {
  const double z0 = simple_z(SIMPLE, tr, pr), zr = simple_z(OCTANE, tr, pr);
  return (z0 > 0.0 && zr > 0.0) ? z0 + omega / OMEGA_OCTANE * (zr - z0) : 0.0;
}

double lee_kesler_lnpr(double tr, double omega) {
  const double l = std::log(tr), t6 = std::pow(tr, 6);
  return 5.92714 - 6.09648 / tr - 1.28862 * l + 0.169347 * t6 +
         omega * (15.2518 - 15.6875 / tr - 13.4721 * l + 0.43577 * t6);
}

bool read_reference(const std::string& data_dir, ReferenceTables& tables, std::string& message) {
  CsvTable t;
  const auto load = [&](const char* name) {
    if (read_csv(data_dir + "/" + name, t)) {
      return true;
    }
    message = std::string("cannot read ") + data_dir + "/" + name;
    return false;
  };
  if (!load("components.csv")) {
    return false;
  }
  for (std::size_t i = 0; i < t.rows.size(); ++i) {
    FitComponent c;
    c.number = static_cast<int>(t.number(i, "number", 0.0));
    c.code = t.text(i, "code");
    c.code.resize(4, ' ');
    c.cas = t.text(i, "cas");
    c.name = t.text(i, "name");
    c.family = t.text(i, "family");
    c.tc = static_cast<double>(static_cast<float>(t.number(i, "tc_K", 0.0)));
    c.pc = static_cast<double>(static_cast<float>(t.number(i, "pc_Pa", 0.0) * 1e-6)) * 10.0 * 100000.0;
    c.omega = t.number(i, "omega", 0.0);
    c.mw = t.number(i, "mw", 0.0);
    c.vc = t.number(i, "vc_m3_per_mol", 0.0);
    c.tb = t.number(i, "tb_K", 0.0);
    c.tm = t.number(i, "tm_K", 0.0);
    c.hvap_tb = t.number(i, "hvap_tb_J_per_mol", 0.0);
    c.sublimes = t.text(i, "src_tb").ends_with("^") || (c.tm > 0.0 && c.tb < c.tm);
    // Of the elements only the noble gases and mercury are single atoms.
    for (const char* formula : {"He", "Ne", "Ar", "Kr", "Xe", "Hg"})
      c.monatomic = c.monatomic || t.text(i, "formula") == formula;
    if (c.tc > 0.0 && c.pc > 0.0) {
      tables.components.push_back(c);
    }
  }
  if (!load("reference_points.csv")) {
    return false;
  }
  for (std::size_t i = 0; i < t.rows.size(); ++i) {
    const std::string& cas = t.text(i, "cas");
    const double T = t.number(i, "T_K", 0.0);
    tables.points[cas].push_back({T, t.number(i, "psat_Pa", 0.0), t.number(i, "rho_liq_sat_mol_m3", 0.0),
                                  t.number(i, "rho_vap_sat_mol_m3", 0.0), t.number(i, "hvap_J_mol", 0.0)});
    tables.point_cp[cas].push_back({T, t.number(i, "cp_ig_J_mol_K", 0.0), 1.0});
    tables.point_source[cas] = t.text(i, "source");
  }
  if (!load("supercritical_points.csv")) {
    return false;
  }
  for (std::size_t i = 0; i < t.rows.size(); ++i) {
    tables.gas[t.text(i, "cas")].push_back({t.number(i, "T_K", 0.0), t.number(i, "P_Pa", 0.0),
                                            t.number(i, "rho_mol_m3", 0.0), t.number(i, "cp_J_molK", 0.0),
                                            t.number(i, "w_m_s", 0.0), t.number(i, "jt_K_Pa", 0.0), false});
  }
  for (const char* name :
       {"saturation_correlations.csv", "ideal_gas_correlations.csv", "transport_correlations.csv"}) {
    if (!load(name)) {
      return false;
    }
    for (std::size_t i = 0; i < t.rows.size(); ++i) {
      Correlation r;
      r.equation = t.text(i, "equation");
      for (int k = 1; k <= 27; ++k) {
        const std::string column = "c" + std::to_string(k);
        if (!t.text(i, column).empty()) {
          r.c[static_cast<std::size_t>(k - 1)] = t.number(i, column, 0.0);
          r.count = k;
        }
      }
      r.tmin = t.number(i, "tmin_K", 0.0);
      r.tmax = t.number(i, "tmax_K", 1e9);
      r.tc = t.number(i, "tc_used_K", 0.0);
      r.rank = static_cast<int>(t.number(i, "rank", 0.0));
      r.source = t.text(i, "source");
      r.estimated = r.source.starts_with("EST") || t.text(i, "flag").find("estimated") != std::string::npos;
      tables.relations[t.text(i, "cas")][t.text(i, "property")].push_back(r);
    }
  }
  return true;
}

void saturation_generalised(const FitComponent& c, Reference& ref) {
  ref.sat.clear();
  for (int k = 0; k <= 27; ++k) {
    const double tr = 0.44 + 0.02 * k;
    ref.sat.push_back({tr * c.tc, c.pc * std::exp(lee_kesler_lnpr(tr, c.omega)),
                       generalised_liquid_density(c, tr), 0.0, 0.0});
  }
  ref.psat_estimated = ref.rhol_estimated = true;
  ref.basis = "generalised";
  ref.source = "Lee and Kesler 1975; Yamada and Gunn 1973";
}

Reference reference_of(const ReferenceTables& tables, const FitComponent& c) {
  Reference ref;
  const auto it = tables.points.find(c.cas);
  if (it != tables.points.end()) {
    ref.basis = "equation of state";
    ref.source = tables.point_source.at(c.cas);
    for (const SatPoint& s : it->second) {
      if (s.psat > 0.5) {  // below that the cubic is at the end of its digits, and nothing asks for it
        ref.sat.push_back(s);
      }
    }
  } else {
    saturation_from_relations(tables, c, ref);
  }
  if (ref.sat.size() < 8) {
    saturation_generalised(c, ref);
  }
  std::sort(ref.sat.begin(), ref.sat.end(), [](const SatPoint& a, const SatPoint& b) { return a.T < b.T; });
  const auto gas = tables.gas.find(c.cas);
  if (gas != tables.gas.end()) {
    ref.gas = gas->second;
  }
  for (const double tr : {1.1, 1.15, 1.2, 1.3, 1.4, 1.6, 1.8, 2.0, 2.5, 3.0}) {
    for (const double pr : {0.1, 0.3, 0.6, 1.0, 1.5, 2.0, 3.0, 5.0, 7.0}) {
      const double z = lee_kesler_z(tr, pr, c.omega);
      if (z > 0.0) {
        const double T = tr * c.tc, P = pr * c.pc;
        ref.guide.push_back({T, P, P / (z * GAS_CONSTANT * T), 0.0, 0.0, 0.0, true});
      }
    }
  }
  ideal_gas(tables, c, ref);
  return ref;
}

}  // namespace talix::bank
