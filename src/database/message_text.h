// Composing a message of the error ring: texts and numbers in columns, cut at 255 characters.
#pragma once

#include <charconv>
#include <string_view>

#include "base/real.h"
#include "base/text.h"

namespace talix {

struct MessageText {
  Text<255> buffer;
  int length;

  constexpr MessageText& add(std::string_view text) {
    for (const char c : text)
      if (length < Text<255>::extent) buffer(++length) = c;
    return *this;
  }
  // VALUE right-justified in WIDTH columns, stars when it does not fit; width 0 takes as many as needed.
  MessageText& add(I4 value, int width) {
    char digits[16];
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, value);
    const std::string_view number{digits, static_cast<std::size_t>(end.ptr - digits)};
    const int used = static_cast<int>(number.size());
    for (int i = used; i < width; ++i) add(" ");
    if (width == 0 || used <= width) return add(number);
    for (int i = 0; i < width; ++i) add("*");
    return *this;
  }
  [[nodiscard]] constexpr std::string_view view() const { return buffer.sub(1, length); }
};

}  // namespace talix
