#include "bank/fit_rows.h"

#include <cstdio>

#include "bank/fit_linear.h"
#include "bank/transport_tables.h"

namespace talix::bank {

namespace {

std::string percent(double v) { return cell_of(v, "%.3f"); }

std::string row_head(const FitComponent& c) {
  return std::to_string(c.number) + "," + quoted_cell(c.code) + ",";
}

std::string curves_row(const FitComponent& c, const Reference& ref, const CurveFit& fit,
                       const CurveFigures& f) {
  std::string row = row_head(c) + fit.basis;
  for (const double v : fit.curves.p) row += "," + cell_of(v);
  row += "," + percent(f.psat.mean) + "," + percent(f.psat.worst) + "," + percent(f.rhol.mean) + "," +
         percent(f.rhol.worst) + "," + (f.rho_gas.n > 0 ? percent(f.rho_gas.mean) : std::string());
  return row + "," + quoted_cell(ref.source) + "," + quoted_cell(fit.note);
}

std::string ideal_gas_row(const FitComponent& c, const Reference& ref, const HeatCapacityFit& cp) {
  if (ref.cp.empty()) return {};
  std::string row = row_head(c);
  for (const double v : cp.c) row += cell_of(v) + ",";
  return row + cell_of(cp.tmin, "%g") + "," + cell_of(cp.tmax, "%g") + "," + percent(cp.deviation.mean) +
         "," + percent(cp.deviation.worst) + "," + quoted_cell(ref.cp_source);
}

std::string vapour_row(const FitComponent& c, const Reference& ref, const WagnerFit& wagner) {
  std::string row = row_head(c);
  for (const double v : wagner.w) row += cell_of(v) + ",";
  return row + percent(wagner.deviation.mean) + "," + percent(wagner.deviation.worst) + "," +
         quoted_cell(ref.source);
}

std::string log_line(const FitComponent& c, const CurveFit& fit, const CurveFigures& f,
                     const HeatCapacityFit& cp, const WagnerFit& wagner) {
  char text[400];
  std::snprintf(
      text, sizeof text,
      "%-24s %-12.12s psat %.3f/%.2f rho %.3f/%.2f rhov %.2f hv %.2f/%.1f | gas rho %.3f/%.2f cp %.2f w "
      "%.2f | zone a %.2f b %.2f h %.3f | cp %.3f/%.2f wag %.3f/%.2f cost %.0f%s%s",
      c.name.c_str(), fit.basis.c_str(), f.psat.mean, f.psat.worst, f.rhol.mean, f.rhol.worst, f.rhov.mean,
      f.hvap.mean, f.hvap.worst, f.rho_gas.mean, f.rho_gas.worst, f.cp_gas.mean, f.w_gas.mean, f.zone_a,
      f.zone_b, f.zone_h, cp.deviation.mean, cp.deviation.worst, wagner.deviation.mean,
      wagner.deviation.worst, fit.cost, fit.note.empty() ? "" : " | ", fit.note.c_str());
  return text;
}

}  // namespace

std::string cell_of(double v, const char* format) {
  char text[40];
  std::snprintf(text, sizeof text, format, v);
  return text;
}

std::string quoted_cell(const std::string& text) {
  std::string out = "\"";
  for (const char c : text) {
    out += c;
    if (c == '"') out += '"';
  }
  return out + "\"";
}

ComponentRows fit_component(const ReferenceTables& tables, const FitComponent& c, const FitParts& parts,
                            const Curves* given) {
  ComponentRows rows;
  Curves curves = given != nullptr ? *given : Curves{};
  if (parts.curves) {
    const Reference ref = reference_of(tables, c);
    const HeatCapacityFit cp = fit_heat_capacity(ref);
    const WagnerFit wagner = fit_wagner(c, ref);
    const CurveFit fit = fit_curves(c, ref, cp.c);
    const CurveFigures figures = figures_of(c, ref, fit.curves, cp.c);
    curves = fit.curves;
    rows.curves = curves_row(c, ref, fit, figures);
    rows.ideal_gas = ideal_gas_row(c, ref, cp);
    rows.vapour_pressure = vapour_row(c, ref, wagner);
    rows.note = fit.note;
    rows.log = log_line(c, fit, figures, cp, wagner);
  }
  if (parts.transport) rows.transport = transport_rows(c, fit_transport(tables, c, curves));
  return rows;
}

}  // namespace talix::bank
