#include "database/field_text.h"

#include <charconv>
#include <system_error>

namespace talix {

namespace {

constexpr int kLongestField = 64;
constexpr int kLargestExponent = 9999;

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// A field without its blanks.
struct Packed {
  char c[kLongestField];
  int length;
};

bool pack(std::string_view field, Packed& packed) {
  packed.length = 0;
  for (const char c : field) {
    if (c == ' ') continue;
    if (packed.length == kLongestField) return false;
    packed.c[packed.length++] = c;
  }
  return true;
}

// The number as plain text with an exponent: what the conversion of the standard library reads.
struct Plain {
  char c[kLongestField + 8];
  int length;
  bool digits;  // any digit in the mantissa
};

// Copies sign and mantissa; gives the number of characters taken and counts the point.
int copy_mantissa(const Packed& packed, Plain& plain, bool& point) {
  int at = 0;
  if (at < packed.length && (packed.c[at] == '+' || packed.c[at] == '-')) {
    if (packed.c[at] == '-') plain.c[plain.length++] = '-';
    ++at;
  }
  for (; at < packed.length; ++at) {
    const char c = packed.c[at];
    if (c == '.') {
      if (point) break;
      point = true;
      if (!plain.digits) plain.c[plain.length++] = '0';
      plain.c[plain.length++] = '.';
    } else if (is_digit(c)) {
      plain.digits = true;
      plain.c[plain.length++] = c;
    } else {
      break;
    }
  }
  return at;
}

// The exponent from character AT on; false where it is none.
bool read_exponent(const Packed& packed, int at, int& exponent) {
  if (at == packed.length) return true;
  const char mark = packed.c[at];
  if (mark == 'E' || mark == 'e' || mark == 'D' || mark == 'd') ++at;
  bool negative = false;
  if (at < packed.length && (packed.c[at] == '+' || packed.c[at] == '-')) {
    negative = packed.c[at] == '-';
    ++at;
  } else if (at < packed.length && !is_digit(packed.c[at])) {
    return false;
  }
  if (at == packed.length) return false;
  for (; at < packed.length; ++at) {
    if (!is_digit(packed.c[at])) return false;
    exponent = 10 * exponent + (packed.c[at] - '0');
    if (exponent > kLargestExponent) return false;
  }
  if (negative) exponent = -exponent;
  return true;
}

template <class Real>
bool read_real(std::string_view field, int decimals, Real& value) {
  value = 0;
  Packed packed;
  if (!pack(field, packed)) return false;
  if (packed.length == 0) return true;
  Plain plain{{}, 0, false};
  bool point = false;
  int exponent = 0;
  const int at = copy_mantissa(packed, plain, point);
  if (!plain.digits || !read_exponent(packed, at, exponent)) return false;
  if (!point) exponent -= decimals;
  char* last = plain.c + plain.length;
  if (exponent != 0) {
    *last++ = 'e';
    const std::to_chars_result written = std::to_chars(last, plain.c + sizeof plain.c, exponent);
    if (written.ec != std::errc{}) return false;
    last = written.ptr;
  }
  Real read = 0;
  const std::from_chars_result end = std::from_chars(plain.c, last, read);
  if (end.ec != std::errc{} || end.ptr != last) return false;
  value = read;
  return true;
}

}  // namespace

bool integer_field(std::string_view field, I4& value) {
  value = 0;
  Packed packed;
  if (!pack(field, packed)) return false;
  if (packed.length == 0) return true;
  const char* first = packed.c;
  const char* const last = packed.c + packed.length;
  if (*first == '+') ++first;
  I4 read = 0;
  const std::from_chars_result end = std::from_chars(first, last, read);
  if (first == last || *first == '+' || end.ec != std::errc{} || end.ptr != last) return false;
  if (packed.c[0] == '+' && *first == '-') return false;
  value = read;
  return true;
}

bool real_field(std::string_view field, int decimals, R8& value) { return read_real(field, decimals, value); }

bool real_field(std::string_view field, int decimals, R4& value) { return read_real(field, decimals, value); }

}  // namespace talix
