// The cubic of a pair with the curves of the bank, and two published cubics to compare with.
#pragma once

#include <array>
#include <string>

#include "bank/fit_equation.h"
#include "bank/pairs_bubble.h"
#include "bank/record.h"

namespace talix::bank {

// What a cubic needs of a component.
struct PairComponent {
  int number = 0;
  int family = 0;      // of the asymmetric term
  double tc = 0.0;     // [K]
  double pc = 0.0;     // [Pa]
  double omega = 0.0;  // [-]
  Curves curves;       // prepared
};

// Reads it from a record of the bank.
PairComponent pair_component(const PureRecord& record);

// Interaction parameters: the factor of the mixed term is 1 - (t0 + t0t T) - (x1 - x2)(t1 + t1t T), the part of the
// composition between families alone.
struct PairParameters {
  double t0 = 0.0;   // [-]
  double t0t = 0.0;  // [1/K]
  double t1 = 0.0;   // [-]
  double t1t = 0.0;  // [1/K]
};

enum class PairCubic {
  bank,      // curves of the bank, the library's own equation
  soave,     // Soave, Chem. Eng. Sci. 27 (1972) 1197
  robinson,  // Peng, Robinson, Ind. Eng. Chem. Fundam. 15 (1976) 59
};

class PairEquation : public PairPhases {
 public:
  PairEquation(PairCubic cubic, const PairComponent& first, const PairComponent& second,
               const PairParameters& k);
  void set(const PairParameters& k) { k_ = k; }
  [[nodiscard]] PairPhase phase(double T, double P, double x, PairRoot root) const override;

 private:
  struct Pure {
    double a, b;  // [J m3/mol2], [m3/mol]
  };
  [[nodiscard]] Pure pure(const PairComponent& c, double T) const;
  // Pure parameters of both at a temperature; a bubble point asks for the same ones many times over.
  struct Held {
    double T = 0.0;
    std::array<Pure, 2> pure{};
  };

  PairCubic cubic_;
  std::array<PairComponent, 2> components_;
  PairParameters k_;
  double d1_ = 1.0, d2_ = 0.0;  // places of the poles of the attraction in units of -b
  mutable Held held_;
};

}  // namespace talix::bank
