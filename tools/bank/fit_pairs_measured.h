// Interaction parameters of a pair from its points of phase equilibrium and from Henry constants.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "bank/pairs_equation.h"
#include "bank/pairs_points.h"

namespace talix::bank {

// Solubility of a gas in water: ln H = h1 + h2/T + h3 ln T + h4 T, H in Pa.
struct HenryConstant {
  bool gas_first = true;  // the gas has the smaller number
  double h1 = 0.0, h2 = 0.0, h3 = 0.0, h4 = 0.0;
  double tmin = 0.0, tmax = 0.0;    // [K]
  std::optional<double> gas_phase;  // interaction parameter of the gas phase [-]
  std::string gas_origin;           // of the latter
  std::string source;
};

// What a fit gave.
struct PairFit {
  bool ok = false;
  PairParameters k;
  int points = 0;                 // in the fit
  int missing = 0;                // of them without a bubble point
  double mean = 0.0;              // mean deviation of the bubble pressure in the fit [%]
  double worst = 0.0;             // largest deviation of a Henry constant [%]
  double tmin = 0.0, tmax = 0.0;  // of the points in the fit [K]
};

// Fits the points that are neither kept out nor doubtful: measured ones, and computed ones at temperatures that no
// measurement covers. A temperature term comes
// in where it takes a seventh off the deviations and serves the points left out in turn as well; the term in composition
// only with ASYMMETRIC, where it takes off a quarter.
PairFit fit_points(const PairComponent& first, const PairComponent& second,
                   const std::vector<PairPoint>& points, bool asymmetric);

// Fits the parameter in water, with its temperature term, to the Henry constant and to the points; the one of the gas
// phase stays as it is given.
PairFit fit_henry(const PairComponent& first, const PairComponent& second, const HenryConstant& henry,
                  const std::vector<PairPoint>& points);

// Deviation of the equation at a point: ln of the ratio of the pressures and difference of the vapour compositions;
// absent where the point says nothing of it. MISSING: the equation has no such state.
struct PointDeviation {
  bool missing = false;
  std::optional<double> ln_p;
  std::optional<double> y;
};
PointDeviation point_deviation(const PairPhases& source, const PairPoint& point);

// Rounded as the tables hold it.
PairParameters rounded(const PairParameters& k);

}  // namespace talix::bank
