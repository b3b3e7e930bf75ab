// Pure-component states through the library's own engine, on a compiled bank.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "bank/fit_equation.h"
#include "bank/record.h"

namespace talix::bank {

// One phase of a pure component as the engine computes it.
struct EngineState {
  bool ok = false;
  double Z = 0.0;       // compressibility [-]
  double lnphi = 0.0;   // ln fugacity coefficient [-]
  double H = 0.0;       // enthalpy over RT, with the ideal gas [-]
  double CP = 0.0;      // heat capacity [J/(mol K)]
  double JTC = 0.0;     // Joule-Thomson coefficient [K/Pa]
  double WSOUND = 0.0;  // speed of sound [m/s]
};

// What is asked of the engine: the root, and whether thermal results are wanted.
enum class RootAsked { liquid, vapour, stable };

// Loads up to 50 components of a folder of bank files. Throws BankError where the engine refuses.
class EngineSet {
 public:
  EngineSet(const std::string& folder, const std::vector<std::string>& codes);
  // State of component INDEX (from 1) at T [K] and P [Pa].
  [[nodiscard]] EngineState state(int index, double T, double P, RootAsked root, bool thermal) const;
  // Vapour pressure [Pa] and both phases; START [Pa] begins the search. False without two phases.
  bool saturation(int index, double T, double start, double& P, EngineState& liquid,
                  EngineState& vapour) const;
  // Vapour pressure by the Wagner set of the record [Pa]; 0 where there is none.
  [[nodiscard]] double vapour_pressure_set(int index, double T) const;
  // Ideal-gas heat capacity coefficients of the record.
  [[nodiscard]] std::array<double, 8> heat_capacity(int index) const;
  // The curves as the engine holds them.
  [[nodiscard]] Curves curves(int index) const;
  [[nodiscard]] int slot() const { return slot_; }             // of the model in the engine's table
  [[nodiscard]] double critical_temperature(int index) const;  // [K]
  [[nodiscard]] double critical_pressure(int index) const;     // [Pa]

 private:
  int slot_ = 0;  // model slot
};

}  // namespace talix::bank
