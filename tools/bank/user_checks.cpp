// Whether the figures of a component of the user go together, with each other and with its points.
#include <cmath>

#include "bank/fit_curves.h"
#include "bank/user_component.h"
#include "bank/user_estimates.h"

namespace talix::bank {

namespace {

constexpr double kAtmosphere = 101325.0;  // [Pa]
constexpr double kColdest = 50.0;  // critical temperature below which the rules of most fluids fail [K]

bool gives(const UserComponent& c, std::initializer_list<const char*> columns) {
  for (const char* column : columns)
    if (c.given.contains(column)) return true;
  return false;
}

// The first of the columns that the row fills.
const char* first_given(const UserComponent& c, std::initializer_list<const char*> columns) {
  for (const char* column : columns)
    if (c.given.contains(column)) return column;
  return *columns.begin();
}

// Points below the critical temperature that rise or fall. FALLING: whether they must fall.
bool ordered(const UserComponent& c, const char* column, const std::vector<UserPoint>& points, bool falling) {
  bool sound = true;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const std::string which = "point " + std::to_string(i + 1) + " at " + shown(points[i].T) + " K: ";
    if (points[i].T >= c.value("tc_K")) {
      c.row.fault(column, which + "at or above the critical temperature of " + c.cells.at("tc_K") + " K");
      sound = false;
    }
    if (i == 0) continue;
    const double step = points[i].value - points[i - 1].value;
    if (falling ? step < 0.0 : step > 0.0) continue;
    c.row.fault(column, which + shown(points[i].value) + " follows " + shown(points[i - 1].value) +
                            ", but it must " + (falling ? "fall" : "rise") +
                            " with temperature; a figure is wrong or stands at the wrong place");
    sound = false;
  }
  return sound;
}

std::vector<UserPoint> antoine_points(const UserComponent& c, const char* column) {
  const auto set = c.row.constants(column, 3, 3);
  if (!set) return {};
  if (set->tmax >= c.value("tc_K")) {
    c.row.fault(column, "the upper temperature " + shown(set->tmax) +
                            " K is at or above the critical temperature of " + c.cells.at("tc_K") + " K");
    return {};
  }
  constexpr int kSteps = 24;
  std::vector<UserPoint> points;
  for (int i = 0; i <= kSteps; ++i) {
    const double T = set->tmin + (set->tmax - set->tmin) * i / kSteps;
    points.push_back({T, std::pow(10.0, set->c[0] - set->c[1] / (T + set->c[2]))});
    const double p = points.back().value;
    if (p > 0.0 && p < c.value("pc_Pa") && (i == 0 || p > points[points.size() - 2].value)) continue;
    c.row.fault(column,
                "vapour pressure of " + shown(p) + " Pa at " + shown(T) +
                    " K, but it must rise and stay below pc_Pa; the form is log10(P/Pa) = A - B/(T/K + C)");
    return {};
  }
  return points;
}

void take_pressure(UserComponent& c) {
  const char* const column = first_given(c, {"psat_points_K_Pa", "psat_antoine_K_Pa"});
  if (gives(c, {"psat_points_K_Pa"}) && gives(c, {"psat_antoine_K_Pa"})) {
    c.row.fault("psat_antoine_K_Pa", "the row has points of the vapour pressure as well; keep one of both");
    return;
  }
  const bool single = c.given.contains("psat_points_K_Pa");
  const std::vector<UserPoint> points = single ? c.row.points(column) : antoine_points(c, column);
  if (points.empty() || !ordered(c, column, points, false)) return;
  const UserCritical at{c.value("tc_K"), c.value("pc_Pa")};
  if (points.back().value >= at.pc) {
    c.row.fault(column, shown(points.back().value) + " Pa at " + shown(points.back().T) +
                            " K is at or above the critical pressure of " + c.cells.at("pc_Pa") + " Pa");
    return;
  }
  const std::string form = single ? "" : "; the form is log10(P/Pa) = A - B/(T/K + C)";
  const double alike = acentric_through(at, points);
  if (at.tc > kColdest && (alike < -0.3 || alike > 2.5)) {
    c.row.fault(column, "with tc_K and pc_Pa these pressures mean an acentric factor of " + shown(alike) +
                            "; check the units (K and Pa) of all three" + form);
    return;
  }
  // One pressure that does not go with the others stands out against the relation with the best acentric factor.
  constexpr double kMostOff = 0.5;  // of ln P
  for (const UserPoint& p : points) {
    const double off = std::log(p.value / at.pc) - lee_kesler_lnpr(p.T / at.tc, alike);
    if (std::fabs(off) < kMostOff || at.tc < kColdest) continue;
    c.row.fault(column, shown(p.value) + " Pa at " + shown(p.T) + " K is " + shown(std::exp(off)) +
                            " times what the other pressures, tc_K and pc_Pa lead to; check it" + form);
    return;
  }
  c.relations["psat"] = pressure_through(at, alike, points);
}

void take_density(UserComponent& c) {
  constexpr const char* kColumn = "rho_liq_points_K_kg_per_m3";
  std::vector<UserPoint> points = c.row.points(kColumn);
  if (points.empty() || !ordered(c, kColumn, points, true)) return;
  const UserCritical at{c.value("tc_K"), c.value("pc_Pa")};
  const double molar = c.value("mw") / 1000.0;  // [kg/mol]
  const double critical = molar * at.pc / (0.27 * GAS_CONSTANT * at.tc);
  constexpr double kLeast = 0.8, kMost = 5.5;  // densities over the critical one
  for (UserPoint& p : points) {
    if (p.value < kLeast * critical || p.value > kMost * critical) {
      c.row.fault(kColumn,
                  shown(p.value) + " kg/m3 at " + shown(p.T) + " K is " + shown(p.value / critical) +
                      " times the critical density that tc_K, pc_Pa and mw lead to; a liquid has 1 to 5");
      return;
    }
    p.value /= molar;
  }
  c.relations["rho_liq_sat"] = density_through(at, c.value("omega"), points);
}

void take_heats(UserComponent& c) {
  if (gives(c, {"cp_ig_points_K_J_per_molK"}) && gives(c, {"cp_ig_poly_K_J_per_molK"})) {
    c.row.fault("cp_ig_poly_K_J_per_molK",
                "the row has points of the heat capacity as well; keep one of both");
  } else if (const auto points = c.row.points("cp_ig_points_K_J_per_molK"); !points.empty()) {
    c.relations["cp_ig"] = polynomial_through(points);
  } else if (const auto set = c.row.constants("cp_ig_poly_K_J_per_molK", 1, 7)) {
    Correlation r = polynomial_through(std::vector<UserPoint>{{set->tmin, 1.0}});
    std::copy(set->c.begin(), set->c.end(), r.c.begin());
    r.count = static_cast<int>(set->c.size());
    r.tmax = set->tmax;
    for (int i = 0; i <= 20; ++i) {
      const double T = set->tmin + (set->tmax - set->tmin) * i / 20.0, cp = evaluate(r, T);
      if (cp > 2.4 * GAS_CONSTANT && cp < 5000.0) continue;
      c.row.fault("cp_ig_poly_K_J_per_molK",
                  shown(cp) + " J/(mol K) at " + shown(T) +
                      " K, outside 20 to 5000; check the constants and their unit");
      return;
    }
    c.relations["cp_ig"] = r;
  }
  constexpr const char* kLiquid = "cp_liq_points_K_J_per_molK";
  if (const auto points = c.row.points(kLiquid); !points.empty()) {
    if (points.size() < 2)
      c.row.fault(kLiquid, "a single point; give two or more");
    else
      c.relations["cp_liq"] = polynomial_through(points);
  }
}

}  // namespace

void take_relations(UserComponent& c) {
  const UserCritical at{c.value("tc_K"), c.value("pc_Pa")};
  if (gives(c, {"psat_points_K_Pa", "psat_antoine_K_Pa"})) take_pressure(c);
  take_density(c);
  take_heats(c);
  const auto falling = [&](const char* column, const char* property, std::size_t least, auto through) {
    const std::vector<UserPoint> points = c.row.points(column);
    if (points.empty() || !ordered(c, column, points, true)) return;
    if (points.size() < least)
      c.row.fault(column, "a single point; give two or more");
    else
      c.relations[property] = through(points);
  };
  falling("hvap_points_K_J_per_mol", "hvap", 1, [&](const auto& p) { return vaporisation_through(at, p); });
  falling("sigma_points_K_N_per_m", "sigma", 1, [&](const auto& p) { return tension_through(at, p); });
  falling("mu_liq_points_K_Pa_s", "mu_liq_sat", 2, [](const auto& p) { return viscosity_through(p); });
  falling("k_liq_points_K_W_per_mK", "k_liq_sat", 2, [](const auto& p) { return polynomial_through(p); });
}

void check_figures(UserComponent& c) {
  const UserCritical at{c.value("tc_K"), c.value("pc_Pa")};
  const double tb = c.value("tb_K"), tm = c.value("tm_K"), omega = c.value("omega"),
               vc = c.value("vc_m3_per_mol");
  const bool boils = tb > 0.0 && gives(c, {"tb_K", "tc_K", "pc_Pa"});
  if (boils && tb >= at.tc) {
    c.row.fault(first_given(c, {"tb_K", "tc_K"}), "boiling point of " + shown(tb) +
                                                      " K above the critical temperature of " + shown(at.tc) +
                                                      " K; one of both is wrong or not in K");
  } else if (boils && at.tc > kColdest) {
    const UserPoint boiling[] = {{tb, kAtmosphere}};
    const double alike = acentric_through(at, boiling);
    constexpr double kMostOff = 0.2;
    const bool differs =
        c.cells["src_omega"] != "EST:tb" && std::fabs(alike - omega) > kMostOff * (1.0 + std::fabs(omega));
    if (alike < -0.3 || alike > 2.0 || differs) {
      c.row.fault(first_given(c, {"tb_K", "tc_K", "pc_Pa"}),
                  "tc_K " + shown(at.tc) + ", pc_Pa " + shown(at.pc) + " and tb_K " + shown(tb) +
                      " mean an acentric factor near " + shown(alike) +
                      (differs ? ", not " + shown(omega) : ", which no fluid has") +
                      "; check the units: K, not degrees C, and Pa, not bar");
    }
  }
  if (c.relations.contains("psat") && tb > 0.0 && tb < at.tc && !c.relations["psat"].estimated) {
    const double p = evaluate(c.relations["psat"], tb);
    if (std::fabs(std::log(p / kAtmosphere)) > 0.25)
      c.row.fault(first_given(c, {"tb_K", "psat_points_K_Pa", "psat_antoine_K_Pa"}),
                  "the vapour pressure is " + shown(p) + " Pa at the boiling point of " + shown(tb) +
                      " K, where it must be 101325; check both");
  }
  if (tm >= at.tc && gives(c, {"tm_K", "tc_K"}))
    c.row.fault(
        first_given(c, {"tm_K", "tc_K"}),
        "melting point of " + shown(tm) + " K above the critical temperature of " + shown(at.tc) + " K");
  if (vc > 0.0 && gives(c, {"vc_m3_per_mol", "tc_K", "pc_Pa"})) {
    const double z = at.pc * vc / (GAS_CONSTANT * at.tc);
    if (z < 0.15 || z > 0.40)
      c.row.fault(first_given(c, {"vc_m3_per_mol", "tc_K", "pc_Pa"}),
                  "tc_K, pc_Pa and vc_m3_per_mol mean a critical compressibility of " + shown(z) +
                      "; fluids have 0.2 to 0.31: check the units K, Pa, m3/mol");
  }
  const double net = c.value("hcomb_net_J_per_mol"), gross = c.value("hcomb_gross_J_per_mol");
  if (net > 0.0 && gross > 0.0 && net > gross && gives(c, {"hcomb_net_J_per_mol", "hcomb_gross_J_per_mol"}))
    c.row.fault(first_given(c, {"hcomb_gross_J_per_mol", "hcomb_net_J_per_mol"}),
                "the gross heat of combustion is below the net one; they are exchanged");
}

}  // namespace talix::bank
