// Everything that is fitted for one component, as rows of the tables.
#pragma once

#include <string>
#include <vector>

#include "bank/fit_curves.h"

namespace talix::bank {

// What of a component is fitted.
struct FitParts {
  bool curves = true;     // curves of the cubic, ideal gas and Wagner set
  bool transport = true;  // saturation and transport sets
};

struct ComponentRows {
  std::string curves, ideal_gas, vapour_pressure;  // one row each; empty where nothing is fitted
  std::vector<std::string> transport;              // a row for each set
  std::string note;                                // why the curves are less than a full fit; empty otherwise
  std::string log;                                 // one line of figures
};

// Fits one component; depends on nothing but its arguments. GIVEN are the curves that the transport sets rest on where
// the curves are not fitted.
ComponentRows fit_component(const ReferenceTables& tables, const FitComponent& c, const FitParts& parts,
                            const Curves* given);

// First lines of the tables.
inline constexpr const char* kCurvesComment =
    "Curve constants of the cubic equation. Deviations over reduced temperatures 0.40 to 0.98; super: gas "
    "density above the critical temperature up to 400 bar.";
inline constexpr const char* kCurvesHeader =
    "number,code,basis,p1,p2,p3,p4,p5,p6,p7,p8,p9,p10,p11,p12,p13,p14,p15,"
    "psat_mean_pct,psat_max_pct,rho_mean_pct,rho_max_pct,super_mean_pct,source,note";
inline constexpr const char* kIdealComment =
    "Ideal-gas heat capacity [J/(mol K)] = c1 + c2 T + c3 T^2 + c4 T^3 + c5 T^4 + c6 T^5 + c7/T + c8/T^2, T "
    "in K.";
inline constexpr const char* kIdealHeader =
    "number,code,c1,c2,c3,c4,c5,c6,c7,c8,tmin_K,tmax_K,mean_pct,max_pct,source";
inline constexpr const char* kVapourComment =
    "ln(psat/Pc) = (w1 q + w2 q^1.5 + w3 q^3 + w4 q^6)/(T/Tc), q = 1 - T/Tc; Tc, Pc of components.csv.";
inline constexpr const char* kVapourHeader = "number,code,w1,w2,w3,w4,mean_pct,max_pct,source";

// Pieces of a row.
std::string cell_of(double v, const char* format = "%.9g");
std::string quoted_cell(const std::string& text);

}  // namespace talix::bank
