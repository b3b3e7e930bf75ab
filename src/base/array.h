// Fixed-extent arrays with the index base of the tables they hold: Vec and Mat count from 1,
// VecFrom from a given lower bound. They are aggregates: `Vec<R8, 3> v{}` is zero.
#pragma once

#include "base/check.h"

namespace talix {

template <class T, int N>
struct Vec {
  static constexpr int extent = N;
  T v[N];

  constexpr T& operator()(int i) {
    check_index("vector", i, 1, N);
    return v[i - 1];
  }
  constexpr const T& operator()(int i) const {
    check_index("vector", i, 1, N);
    return v[i - 1];
  }
  T& operator[](int) = delete;
  constexpr T* data() { return v; }
  constexpr const T* data() const { return v; }
  constexpr void fill(const T& value) {
    for (T& entry : v) entry = value;
  }
};

// Indices LO to HI, both included.
template <class T, int LO, int HI>
struct VecFrom {
  static constexpr int extent = HI - LO + 1;
  T v[HI - LO + 1];

  constexpr T& operator()(int i) {
    check_index("vector", i, LO, HI);
    return v[i - LO];
  }
  constexpr const T& operator()(int i) const {
    check_index("vector", i, LO, HI);
    return v[i - LO];
  }
  T& operator[](int) = delete;
  constexpr void fill(const T& value) {
    for (T& entry : v) entry = value;
  }
};

// N1 rows, N2 columns, the first index fastest in memory.
template <class T, int N1, int N2>
struct Mat {
  static constexpr int rows = N1;
  static constexpr int columns = N2;
  T v[N2][N1];

  constexpr T& operator()(int i, int j) {
    check_index("matrix row", i, 1, N1);
    check_index("matrix column", j, 1, N2);
    return v[j - 1][i - 1];
  }
  constexpr const T& operator()(int i, int j) const {
    check_index("matrix row", i, 1, N1);
    check_index("matrix column", j, 1, N2);
    return v[j - 1][i - 1];
  }
  T& operator[](int) = delete;
  constexpr T* data() { return &v[0][0]; }
  constexpr const T* data() const { return &v[0][0]; }
  constexpr void fill(const T& value) {
    for (auto& column : v)
      for (T& entry : column) entry = value;
  }
};

// Three indices, the first fastest in memory.
template <class T, int N1, int N2, int N3>
struct Cube {
  T v[N3][N2][N1];

  constexpr T& operator()(int i, int j, int k) {
    check_index("cube row", i, 1, N1);
    check_index("cube column", j, 1, N2);
    check_index("cube layer", k, 1, N3);
    return v[k - 1][j - 1][i - 1];
  }
  constexpr const T& operator()(int i, int j, int k) const {
    check_index("cube row", i, 1, N1);
    check_index("cube column", j, 1, N2);
    check_index("cube layer", k, 1, N3);
    return v[k - 1][j - 1][i - 1];
  }
  T& operator[](int) = delete;
  constexpr void fill(const T& value) {
    for (auto& layer : v)
      for (auto& column : layer)
        for (T& entry : column) entry = value;
  }
};

// A matrix owned by somebody else, column-major with a leading dimension.
template <class T>
struct MatView {
  T* first;
  int leading;

  constexpr T& operator()(int i, int j) const {
    check_index("view row", i, 1, leading);
    return first[(i - 1) + (j - 1) * leading];
  }
};

// Extents that run through the whole system.
inline constexpr int kMaxComponents = 50;

}  // namespace talix
