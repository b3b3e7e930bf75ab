// Fixed-length, blank-padded texts as they stand in records and files.
#pragma once

#include <cstddef>
#include <string_view>

#include "base/check.h"

namespace talix {

template <int N>
struct Text {
  static constexpr int extent = N;
  char c[N];

  // Copies, cut or blank-padded to the length of the field.
  constexpr Text& operator=(std::string_view source) {
    const int given = source.size() < static_cast<std::size_t>(N) ? static_cast<int>(source.size()) : N;
    for (int i = 0; i < given; ++i) c[i] = source[static_cast<std::size_t>(i)];
    for (int i = given; i < N; ++i) c[i] = ' ';
    return *this;
  }
  // Character I, counted from 1.
  constexpr char& operator()(int i) {
    check_index("text", i, 1, N);
    return c[i - 1];
  }
  constexpr char operator()(int i) const {
    check_index("text", i, 1, N);
    return c[i - 1];
  }
  // Characters FIRST to LAST, counted from 1.
  [[nodiscard]] constexpr std::string_view sub(int first, int last) const {
    check_index("text", first, 1, N);
    check_index("text", last, first - 1, N);
    return {c + (first - 1), static_cast<std::size_t>(last - first + 1)};
  }
  [[nodiscard]] constexpr std::string_view view() const { return {c, static_cast<std::size_t>(N)}; }
  constexpr void blank() { *this = std::string_view{}; }
};

template <int N>
constexpr Text<N> text(std::string_view source) {
  Text<N> result{};
  result = source;
  return result;
}

// Without trailing blanks.
constexpr std::string_view trimmed(std::string_view s) {
  while (!s.empty() && s.back() == ' ') s.remove_suffix(1);
  return s;
}

template <int N>
constexpr std::string_view trimmed(const Text<N>& s) {
  return trimmed(s.view());
}

// Comparison in which the shorter text counts as padded with blanks.
constexpr bool equal_padded(std::string_view a, std::string_view b) { return trimmed(a) == trimmed(b); }

}  // namespace talix
