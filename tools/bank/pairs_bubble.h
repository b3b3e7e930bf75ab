// Bubble points and two-phase states of a pair, for any source of phase properties.
#pragma once

#include <array>

namespace talix::bank {

// One phase of a mixture of two.
struct PairPhase {
  bool ok = false;
  double Z = 0.0;                 // compressibility [-]
  std::array<double, 2> lnphi{};  // ln fugacity coefficients [-]
};

enum class PairRoot { liquid, vapour };  // smallest or largest density root

// Gives the phases of a pair at T [K], P [Pa] and mole fraction x of the first component.
class PairPhases {
 public:
  virtual ~PairPhases() = default;
  [[nodiscard]] virtual PairPhase phase(double T, double P, double x, PairRoot root) const = 0;
};

// A liquid with the vapour that it begins to form; also a two-phase state at given T and P.
struct PairState {
  bool ok = false;
  double P = 0.0;  // [Pa]
  double x = 0.0;  // liquid mole fraction of the first component
  double y = 0.0;  // vapour mole fraction of the first component
};

// Bubble point of a liquid with mole fraction X of the first component, 0 and 1 included. The search begins at START
// [Pa]; where that leads nowhere, the bubble line is followed from the pure components. Not ok: no second phase found.
PairState bubble_point(const PairPhases& source, double T, double x, double start);

// Both compositions at T [K] and P [Pa]; X and Y begin the search.
PairState two_phases(const PairPhases& source, double T, double P, double x, double y);

}  // namespace talix::bank
