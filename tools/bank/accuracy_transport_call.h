// Viscosity, conductivity and surface tension through the library's entry call, on a compiled bank.
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "api/talix_call.h"
#include "bank/record.h"

namespace talix::bank {

// One feed and its state.
struct EntryState {
  std::vector<int> numbers;  // of the components
  std::vector<double> feed;  // [mol]
  double T = 0.0;            // [K]
  double P = 0.0;            // [bar]; an answer where the flash looks for it
};

// The library set up on a bank of its own, written to a folder that goes away with the object.
class EntryBank {
 public:
  explicit EntryBank(const Bank& bank);
  ~EntryBank();
  EntryBank(const EntryBank&) = delete;
  EntryBank& operator=(const EntryBank&) = delete;

  // Table of properties of a flash with the code CODE; nothing where it ends with a failure. P is set by a flash that
  // finds it.
  std::optional<PropertyTable> flash(EntryState& state, I4 code) const;

 private:
  std::filesystem::path folder_;
};

// Corresponding states against methane at a density given from outside, for the component 1 of the last flash: the
// viscosity [mPa s] and the conductivity [W/(m K)] at T [K], P [bar] and RHO [mol/L].
double viscosity_at_density(bool liquid, double T, double P, double RHO);
double conductivity_at_density(bool liquid, double T, double P, double RHO);

// Conductivity of the liquid [W/(m K)] of the component 1 of the last flash by the library's method, at T [K]
// and at P [bar] instead of the 1 bar that the entry call takes.
double liquid_conductivity_at(double T, double P);

}  // namespace talix::bank
