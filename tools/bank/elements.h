// Symbols of the elements.
#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace talix::bank {

inline constexpr auto kElementSymbols = std::to_array<std::string_view>(
    {"H",  "He", "Li", "Be", "B",  "C",  "N",  "O",  "F",  "Ne", "Na", "Mg", "Al", "Si", "P",  "S",
     "Cl", "Ar", "K",  "Ca", "Sc", "Ti", "V",  "Cr", "Mn", "Fe", "Co", "Ni", "Cu", "Zn", "Ga", "Ge",
     "As", "Se", "Br", "Kr", "Rb", "Sr", "Y",  "Zr", "Nb", "Mo", "Tc", "Ru", "Rh", "Pd", "Ag", "Cd",
     "In", "Sn", "Sb", "Te", "I",  "Xe", "Cs", "Ba", "La", "Ce", "Pr", "Nd", "Pm", "Sm", "Eu", "Gd",
     "Tb", "Dy", "Ho", "Er", "Tm", "Yb", "Lu", "Hf", "Ta", "W",  "Re", "Os", "Ir", "Pt", "Au", "Hg",
     "Tl", "Pb", "Bi", "Po", "At", "Rn", "Fr", "Ra", "Ac", "Th", "Pa", "U"});

// Atomic number of a symbol, 0 for an unknown one.
constexpr int atomic_number(std::string_view symbol) {
  const auto found = std::find(kElementSymbols.begin(), kElementSymbols.end(), symbol);
  return found == kElementSymbols.end() ? 0 : static_cast<int>(found - kElementSymbols.begin()) + 1;
}
static_assert(atomic_number("Xe") == 54 && atomic_number("Hg") == 80 && atomic_number("U") == 92);

}  // namespace talix::bank
