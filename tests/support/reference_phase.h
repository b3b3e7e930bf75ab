// The reference flash of the tests: one phase of a mixture in double precision over the engine's property driver.
// Nothing here is shared with the library's own check of its flashes.
#pragma once

#include <cstddef>
#include <vector>

#include "base/real.h"
#include "engine/codes.h"

namespace talix::test::reference {

using Numbers = std::vector<R8>;

// A square matrix, row after row.
struct Square {
  std::size_t n = 0;
  Numbers v;
  explicit Square(std::size_t size = 0) : n(size), v(size * size, 0.0) {}
  R8& operator()(std::size_t i, std::size_t j) { return v[i * n + j]; }
  R8 operator()(std::size_t i, std::size_t j) const { return v[i * n + j]; }
};

// The components of the loaded list that have a feed, with mole fractions that add up to 1.
struct Mixture {
  int listed = 0;              // components in the list
  std::vector<int> positions;  // place of each component in the list, from 1
  Numbers z;
  [[nodiscard]] std::size_t size() const { return z.size(); }
};

Mixture mixture_of(const std::vector<R4>& feed);

struct Phase {
  Numbers x;            // mole fractions
  Numbers lnphi;        // ln fugacity coefficients
  R8 Z = 0.0;           // compressibility factor [-]
  R8 g = 0.0;           // sum of x (ln x + ln phi)
  bool liquid = false;  // the engine identifies a liquid
};

// T in K, P in bar. False when the engine has no answer.
bool evaluate(const Mixture& m, R8 T, R8 P, const Numbers& x, Phase& result, I4 asked = phase::gibbs);
// The same with d ln phi(i)/dn(j) at one mole in total.
bool evaluate(const Mixture& m, R8 T, R8 P, const Numbers& x, Phase& result, Square& slopes);
// Enthalpy of the stable root [J/mol], as in row 7 of the property table.
bool enthalpy(const Mixture& m, R8 T, R8 P, const Numbers& x, R8& h);

// Mass density as far as it orders phases at the same temperature and pressure [g/mol].
R8 density(const Mixture& m, const Phase& p);

Numbers normalised(const Numbers& w);
R8 wilson(const Mixture& m, std::size_t i, R8 T, R8 P);
R8 largest_difference(const Numbers& a, const Numbers& b);

// Solves (A + shift I) s = b for a symmetric matrix; false when it is not clearly positive definite.
bool solve_positive(const Square& A, R8 shift, const Numbers& b, Numbers& s);
// Lowest eigenvalue of a symmetric matrix and its vector, by Jacobi rotations.
R8 lowest_eigenvalue(Square A, Numbers& vector);

}  // namespace talix::test::reference
