// Published temperature correlations: one row is one published set of coefficients.
#pragma once

#include <array>
#include <string>

namespace talix::bank {

// One published correlation, coefficients and range as its source gives them.
struct Correlation {
  std::string equation;        // name of the form
  std::array<double, 27> c{};  // coefficients, unused ones 0
  int count = 0;               // index of the last coefficient given
  double tmin = 0.0;           // lower end of the range [K]
  double tmax = 0.0;           // upper end of the range [K]; 0: none given
  double tc = 0.0;             // critical temperature of the form [K]
  int rank = 0;                // order of preference among the rows of one property
  std::string source;          // citation
  bool estimated = false;      // made by an estimation method, not published for the compound
};

// Value at T [K] in the unit of the property (Pa, mol/m3, J/mol, J/(mol K), Pa s, W/(m K), N/m).
// Not a number for an unknown form or outside what the form can take.
double evaluate(const Correlation& row, double T);

}  // namespace talix::bank
