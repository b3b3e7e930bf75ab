// Taking numbers and texts out of the bytes of an unformatted record, in the host's byte order.
#pragma once

#include <bit>
#include <cstring>
#include <string_view>

#include "base/check.h"
#include "base/real.h"

namespace talix {

static_assert(std::endian::native == std::endian::little, "the data files hold little-endian numbers");

// A record of N bytes; offsets are counted from 0.
template <int N>
struct RecordBytes {
  char b[N];

  template <class T>
  [[nodiscard]] T at(int offset) const {
    check_index("record", offset, 0, N - static_cast<int>(sizeof(T)));
    T value;
    std::memcpy(&value, b + offset, sizeof value);
    return value;
  }
  [[nodiscard]] I4 integer(int offset) const { return at<I4>(offset); }
  [[nodiscard]] R4 real(int offset) const { return at<R4>(offset); }
  [[nodiscard]] std::string_view text(int offset, int length) const {
    check_index("record", offset, 0, N - length);
    return {b + offset, static_cast<std::size_t>(length)};
  }
};

// Cells of four bytes, counted from 1, as the integer, real and text views of one record.
template <int CELLS>
struct RecordCells {
  RecordBytes<4 * CELLS> bytes;

  [[nodiscard]] I4 integer(int cell) const { return bytes.integer(4 * (cell - 1)); }
  [[nodiscard]] R4 real(int cell) const { return bytes.real(4 * (cell - 1)); }
  [[nodiscard]] std::string_view text(int first, int last) const {
    return bytes.text(4 * (first - 1), 4 * (last - first + 1));
  }
};

}  // namespace talix
