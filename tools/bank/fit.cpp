#include "bank/fit.h"

#include "bank/fit_csv.h"
#include "bank/fit_linear.h"
#include "bank/transport_tables.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <fstream>
#include <map>
#include <mutex>
#include <thread>

namespace talix::bank {

namespace {

// The three table rows of one component, ready to write.
struct Rows {
  std::string curves, ideal_gas, vapour_pressure;
};

constexpr const char* CURVES_HEADER =
    "number,code,basis,p1,p2,p3,p4,p5,p6,p7,p8,p9,p10,p11,p12,p13,p14,p15,"
    "psat_mean_pct,psat_max_pct,rho_mean_pct,rho_max_pct,super_mean_pct,source";
constexpr const char* IDEAL_HEADER =
    "number,code,c1,c2,c3,c4,c5,c6,c7,c8,tmin_K,tmax_K,mean_pct,max_pct,source";
constexpr const char* VAPOUR_HEADER = "number,code,w1,w2,w3,w4,mean_pct,max_pct,source";

std::string number(double v, const char* format = "%.9g") {
  char text[40];
  std::snprintf(text, sizeof text, format, v);
  return text;
}

std::string quoted(const std::string& text) {
  std::string out = "\"";
  for (const char c : text) {
    out += c;
    if (c == '"') {
      out += '"';
    }
  }
  return out + "\"";
}

std::string percent(double v) { return number(v, "%.3f"); }

Rows fit_one(const ReferenceTables& tables, const FitComponent& c, std::string& log) {
  const Reference ref = reference_of(tables, c);
  const HeatCapacityFit cp = fit_heat_capacity(ref);
  const WagnerFit wagner = fit_wagner(c, ref);
  const CurveFit fit = fit_curves(c, ref, cp.c);
  const CurveFigures f = figures_of(c, ref, fit.curves, cp.c);
  const std::string head = std::to_string(c.number) + "," + quoted(c.code) + ",";
  Rows rows;
  rows.curves = head + fit.basis;
  for (const double v : fit.curves.p) {
    rows.curves += "," + number(v);
  }
  rows.curves += "," + percent(f.psat.mean) + "," + percent(f.psat.worst) + "," + percent(f.rhol.mean) + "," +
                 percent(f.rhol.worst) + "," + (f.rho_gas.n > 0 ? percent(f.rho_gas.mean) : std::string()) +
                 "," + quoted(ref.source);
  if (!ref.cp.empty()) {
    rows.ideal_gas = head;
    for (const double v : cp.c) {
      rows.ideal_gas += number(v) + ",";
    }
    rows.ideal_gas += number(cp.tmin, "%g") + "," + number(cp.tmax, "%g") + "," + percent(cp.deviation.mean) +
                      "," + percent(cp.deviation.worst) + "," + quoted(ref.cp_source);
  }
  rows.vapour_pressure = head;
  for (const double v : wagner.w) {
    rows.vapour_pressure += number(v) + ",";
  }
  rows.vapour_pressure +=
      percent(wagner.deviation.mean) + "," + percent(wagner.deviation.worst) + "," + quoted(ref.source);
  char text[400];
  std::snprintf(text, sizeof text,
                "%-24s %-10.10s psat %.3f/%.2f rho %.3f/%.2f rhov %.2f hv %.2f/%.1f | gas rho %.3f/%.2f cp "
                "%.2f w %.2f | "
                "zone a %.2f b %.2f h %.3f | cp %.3f/%.2f wag %.3f/%.2f cost %.0f",
                c.name.c_str(), fit.basis.c_str(), f.psat.mean, f.psat.worst, f.rhol.mean, f.rhol.worst,
                f.rhov.mean, f.hvap.mean, f.hvap.worst, f.rho_gas.mean, f.rho_gas.worst, f.cp_gas.mean,
                f.w_gas.mean, f.zone_a, f.zone_b, f.zone_h, cp.deviation.mean, cp.deviation.worst,
                wagner.deviation.mean, wagner.deviation.worst, fit.cost);
  log = text;
  return rows;
}

bool selected(const FitOptions& options, const FitComponent& c) {
  const auto is = [&](const std::string& key) {
    return key == c.code || key == c.name || key == c.cas || key == std::to_string(c.number);
  };
  return options.only.empty() || std::any_of(options.only.begin(), options.only.end(), is);
}

// Rows of an existing table by catalogue number, as they stand.
std::map<int, std::string> existing(const std::string& path) {
  std::map<int, std::string> rows;
  std::ifstream in(path);
  std::string line;
  bool header = true;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#') {
      continue;
    }
    if (!header) {
      rows[std::atoi(line.c_str())] = line;
    }
    header = false;
  }
  return rows;
}

bool write_table(const std::string& path, const char* comment, const char* header,
                 const std::map<int, std::string>& rows) {
  std::ofstream out(path);
  out << "# " << comment << "\n# Made by talix-bank fit; do not edit by hand.\n" << header << "\n";
  for (const auto& [key, line] : rows) {
    out << line << "\n";
  }
  return static_cast<bool>(out);
}

// The three tables of the equation of state and the ideal gas.
bool fit_curve_tables(const FitOptions& options, const ReferenceTables& tables,
                      const std::vector<const FitComponent*>& todo) {
  std::vector<Rows> results(todo.size());
  std::atomic<std::size_t> next{0}, done{0};
  std::mutex print;
  const auto work = [&] {
    for (std::size_t i = next++; i < todo.size(); i = next++) {
      std::string log;
      results[i] = fit_one(tables, *todo[i], log);
      const std::lock_guard<std::mutex> lock(print);
      std::fprintf(stderr, "[%zu/%zu] %s\n", ++done, todo.size(), log.c_str());
    }
  };
  const unsigned cores = std::max(1U, std::thread::hardware_concurrency());
  const std::size_t jobs = options.jobs > 0 ? static_cast<std::size_t>(options.jobs) : cores;
  std::vector<std::thread> threads;
  for (std::size_t k = 0; k + 1 < std::min(jobs, todo.size()); ++k) {
    threads.emplace_back(work);
  }
  work();
  for (std::thread& t : threads) {
    t.join();
  }
  const std::string dir = options.data_dir + "/";
  std::map<int, std::string> curves, ideal, vapour;
  if (!options.only.empty()) {
    curves = existing(dir + "curves.csv");
    ideal = existing(dir + "ideal_gas.csv");
    vapour = existing(dir + "vapour_pressure.csv");
  }
  for (std::size_t i = 0; i < todo.size(); ++i) {
    curves[todo[i]->number] = results[i].curves;
    vapour[todo[i]->number] = results[i].vapour_pressure;
    if (!results[i].ideal_gas.empty()) {
      ideal[todo[i]->number] = results[i].ideal_gas;
    }
  }
  return write_table(
             dir + "curves.csv",
             "Curve constants of the cubic equation. Deviations over reduced temperatures 0.40 to 0.98; "
             "super: gas "
             "density above the critical temperature up to 400 bar.",
             CURVES_HEADER, curves) &&
         write_table(dir + "ideal_gas.csv",
                     "Ideal-gas heat capacity [J/(mol K)] = c1 + c2 T + c3 T^2 + c4 T^3 + c5 T^4 + c6 T^5 + "
                     "c7/T + c8/T^2, "
                     "T in K.",
                     IDEAL_HEADER, ideal) &&
         write_table(dir + "vapour_pressure.csv",
                     "ln(psat/Pc) = (w1 q + w2 q^1.5 + w3 q^3 + w4 q^6)/(T/Tc), q = 1 - T/Tc; Tc, Pc of "
                     "components.csv.",
                     VAPOUR_HEADER, vapour);
}

}  // namespace

int fit_main(const FitOptions& options) {
  ReferenceTables tables;
  std::string message;
  if (!read_reference(options.data_dir, tables, message)) {
    std::fprintf(stderr, "talix-bank fit: %s\n", message.c_str());
    return 1;
  }
  std::vector<const FitComponent*> todo;
  for (const FitComponent& c : tables.components) {
    if (selected(options, c)) {
      todo.push_back(&c);
    }
  }
  if (todo.empty()) {
    std::fprintf(stderr, "talix-bank fit: no component of that name\n");
    return 1;
  }
  if (options.curves && !fit_curve_tables(options, tables, todo)) {
    std::fprintf(stderr, "talix-bank fit: cannot write the tables in %s\n", options.data_dir.c_str());
    return 1;
  }
  if (options.transport &&
      !fit_transport_table(options.data_dir, tables, todo, !options.only.empty(), message)) {
    std::fprintf(stderr, "talix-bank fit: %s\n", message.c_str());
    return 1;
  }
  return 0;
}

}  // namespace talix::bank
