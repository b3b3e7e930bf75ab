// Atoms of a molecule from its formula, in any order.
#pragma once

#include <algorithm>
#include <array>
#include <cctype>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "bank/elements.h"

namespace talix::common {

using Atoms = std::map<std::string, int, std::less<>>;

// Symbol and count of each element of a formula such as C2H6O or CH3CH2OH; deuterium counts as D. Nothing where the text
// is no formula.
inline std::optional<Atoms> atoms_of(std::string_view formula) {
  constexpr int kMostAtoms = 200;
  Atoms atoms;
  while (!formula.empty()) {
    std::size_t size = 1;
    if (std::isupper(static_cast<unsigned char>(formula.front())) == 0) return std::nullopt;
    if (formula.size() > 1 && std::islower(static_cast<unsigned char>(formula[1])) != 0) size = 2;
    const std::string symbol(formula.substr(0, size));
    if (symbol != "D" && bank::atomic_number(symbol) == 0) return std::nullopt;
    formula.remove_prefix(size);
    int count = 0;
    bool written = false;
    while (!formula.empty() && std::isdigit(static_cast<unsigned char>(formula.front())) != 0 &&
           count <= kMostAtoms) {
      count = 10 * count + (formula.front() - '0');
      written = true;
      formula.remove_prefix(1);
    }
    if (written && count == 0) return std::nullopt;
    int& total = atoms[symbol];
    total += written ? count : 1;
    if (total > kMostAtoms) return std::nullopt;
  }
  if (atoms.empty()) return std::nullopt;
  return atoms;
}

// The formula that a text in small letters most likely means: elements of one letter, and the few of two letters that
// are common in compounds.
inline std::string capitals_of(std::string_view small) {
  constexpr std::array<std::string_view, 7> kPairs{"cl", "br", "si", "se", "ge", "he", "hg"};
  std::string formula;
  for (std::size_t i = 0; i < small.size(); ++i) {
    formula += static_cast<char>(std::toupper(static_cast<unsigned char>(small[i])));
    if (std::find(kPairs.begin(), kPairs.end(), small.substr(i, 2)) == kPairs.end()) continue;
    formula += small[++i];
  }
  return formula;
}

}  // namespace talix::common
