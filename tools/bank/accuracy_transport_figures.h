// What the parts of the report on viscosity, conductivity and surface tension of phases share: figures of deviation
// and the cells of the reference tables.
#pragma once

#include <cmath>
#include <cstdio>
#include <ostream>
#include <string>

#include "api/phase_properties.h"
#include "bank/accuracy_transport_call.h"
#include "bank/tables.h"

namespace talix::bank::phase_report {

inline constexpr int kVapour = 1, kLiquid = 2;  // columns of the table of properties

inline std::string text(const char* format, double value) {
  char out[40];
  std::snprintf(out, sizeof out, format, value);
  return out;
}

// Deviations from the references [%].
struct Figures {
  int n = 0;
  double sum = 0.0, largest = 0.0;  // of the absolute values; with its sign
  std::string where;                // of the largest
  void add(double percent, const std::string& state) {
    ++n;
    sum += std::fabs(percent);
    if (std::fabs(percent) <= std::fabs(largest)) return;
    largest = percent;
    where = state;
  }
  [[nodiscard]] double mean() const { return n > 0 ? sum / n : 0.0; }
  [[nodiscard]] std::string pair() const {
    return n > 0 ? text("%.1f", mean()) + " / " + text("%+.1f", largest) : "-";
  }
  [[nodiscard]] std::string mean_text() const { return n > 0 ? text("%.1f", mean()) : "-"; }
};

// Both transport properties: the entry call, the same over process conditions, the method on reference densities; and of
// a liquid the conductivity at its own pressure.
struct Pair {
  Figures viscosity, conductivity;
  Figures& of(bool is_viscosity) { return is_viscosity ? viscosity : conductivity; }
};
struct Group {
  Pair all, process, method;
  Figures at_pressure;
};

inline double percent(double found, double expected) { return 100.0 * (found / expected - 1.0); }

inline bool is_viscosity(const SourceTable& table, std::size_t row) {
  return table.text(row, "quantity") == "viscosity_mPa_s";
}

inline double cell(const SourceTable& table, std::size_t row, const char* column) {
  return std::stod(table.text(row, column));
}

inline EntryState pure_state(const SourceTable& table, std::size_t row, double P) {
  return {{std::stoi(table.text(row, "number"))}, {1.0}, cell(table, row, "T_K"), P};
}

inline PropertyTable answer(const EntryBank& library, EntryState& state, I4 code, const std::string& name) {
  const std::optional<PropertyTable> found = library.flash(state, code);
  if (!found) throw BankError("no flash of " + name + " at " + std::to_string(state.T) + " K");
  return *found;
}

inline double row_of(const PropertyTable& table, bool viscosity, int column) {
  return static_cast<double>(table(viscosity ? property::viscosity : property::thermal_conductivity, column));
}

inline std::string at(double T, double P) { return text("%.0f K", T) + (P > 0.0 ? text(", %g bar", P) : ""); }

inline std::string beside(const Pair& p) {
  return p.viscosity.mean_text() + ", " + p.conductivity.mean_text();
}

// The gases of transport_gas.csv, flashed and written.
void write_gases(std::ostream& out, const EntryBank& library, const SourceTable& table);

}  // namespace talix::bank::phase_report
