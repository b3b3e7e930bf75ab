// A list of keys under construction: each call adds a key and moves the constant behind it out or in.
#pragma once

#include <charconv>
#include <cmath>
#include <string_view>

#include "base/logical.h"
#include "base/real.h"
#include "database/overrides.h"
#include "engine/codes.h"

namespace talix {

struct KeyList {
  I4& NKEYS;
  KeyNames& KEYS;
  KeyValues& VALUES;
  I4 ACTION;

  // What a written value may lack of the whole number that it stands for.
  static constexpr R8 kSlack = widen(0.0001F);

  [[nodiscard]] bool reads() const { return ACTION == action::information; }
  [[nodiscard]] bool writes() const { return ACTION == action::input; }

  // One key; returns its number.
  I4 add(std::string_view key) {
    KEYS(++NKEYS) = key;
    return NKEYS;
  }
  // Key STEM followed by NUMBER.
  I4 add(std::string_view stem, int number) {
    Text<10> key = text<10>(stem);
    std::to_chars(key.c + stem.size(), key.c + Text<10>::extent, number);
    return add(key.view());
  }

  void constant(std::string_view key, R8& value) { move(add(key), value); }
  void constant(std::string_view stem, int number, R8& value) { move(add(stem, number), value); }

  // A count or a code: the whole part of what is written. A value that no integer can hold changes nothing.
  void integer(std::string_view key, I4& value) {
    constexpr R8 largest = 2147483647.0;
    const I4 k = add(key);
    if (reads()) VALUES(k) = value;
    const R8 whole = writes() ? std::floor(VALUES(k) + kSlack) : 0.0;
    if (writes() && std::fabs(whole) <= largest) value = static_cast<I4>(whole);
  }
  // Columns FROM to TO of row I as the keys STEM1, STEM2, ...
  template <int N>
  void row(std::string_view stem, Mat<R8, kMaxComponents, N>& table, I4 i, int from = 1, int to = N) {
    for (int k = from; k <= to; ++k) constant(stem, k - from + 1, table(i, k));
  }

 private:
  void move(I4 k, R8& value) {
    if (reads()) VALUES(k) = value;
    if (writes()) value = VALUES(k);
  }
};

}  // namespace talix
