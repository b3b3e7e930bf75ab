#include "database/free_format.h"

#include <charconv>
#include <cmath>

namespace talix {

namespace {

bool is_blank(char c) { return c == ' ' || c == '\t'; }

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// A line that may have been cut cannot be trusted: it counts as unreadable.
bool fetch_line(FreeFormat& reader) {
  const I4 result = read_line(reader.unit, reader.line);
  reader.next = 0;
  if (result == io::ok && reader.line.length < kLineLength) return true;
  reader.at_end = result == io::end_of_file;
  reader.line.length = 0;
  return false;
}

// The next character that is no blank, without reading it; 0 at the end of the line.
char peek(FreeFormat& reader) {
  while (reader.next < reader.line.length && is_blank(reader.line.c[reader.next])) ++reader.next;
  return reader.next < reader.line.length ? reader.line.c[reader.next] : '\0';
}

// Characters up to the next separator, with the comma that may follow.
std::string_view token(FreeFormat& reader) {
  const char* first = reader.line.c + reader.next;
  const char* last = first;
  const char* end = reader.line.c + reader.line.length;
  while (last != end && !is_blank(*last) && *last != ',' && *last != '/') ++last;
  reader.next += static_cast<int>(last - first);
  if (peek(reader) == ',') ++reader.next;
  return {first, static_cast<std::size_t>(last - first)};
}

// Takes the repeat factor off an item.
void split_repeats(FreeFormat& reader, std::string_view& item) {
  const std::size_t star = item.find('*');
  if (star == 0 || star == std::string_view::npos) return;
  I4 factor = 0;
  const std::from_chars_result end = std::from_chars(item.data(), item.data() + star, factor);
  if (end.ec != std::errc{} || end.ptr != item.data() + star || factor < 1) return;
  item.remove_prefix(star + 1);
  reader.repeats = factor - 1;
  reader.repeated = item;
}

// The next item of a list; empty when the value is to stay. False without a further line.
bool next_item(FreeFormat& reader, std::string_view& item) {
  item = {};
  if (reader.ended) return true;
  if (reader.repeats > 0) {
    --reader.repeats;
    item = reader.repeated;
    return true;
  }
  while (peek(reader) == '\0')
    if (!fetch_line(reader)) return false;
  switch (peek(reader)) {
    case '/':
      reader.ended = true;
      return true;
    case ',':
      ++reader.next;
      return true;
    default:
      item = token(reader);
      split_repeats(reader, item);
      return true;
  }
}

// A leading plus sign means nothing, unless a sign follows it.
std::string_view without_plus(std::string_view item) {
  if (item.size() > 1 && item[0] == '+' && item[1] != '-') item.remove_prefix(1);
  return item;
}

}  // namespace

FreeFormat free_format(I4 unit) {
  return {.unit = unit, .line{}, .next = 0, .at_end = false, .repeats = 0, .repeated{}, .ended = false};
}

bool next_word(FreeFormat& reader, std::string_view& item) {
  do {
    if (!fetch_line(reader)) return false;
  } while (peek(reader) == '\0');
  const char quote = peek(reader);
  if (quote != '\'' && quote != '"') {
    item = token(reader);
    return true;
  }
  const std::string_view rest = reader.line.view().substr(static_cast<std::size_t>(reader.next) + 1);
  const std::size_t length = rest.find(quote);
  item = rest.substr(0, length);
  reader.next =
      length == std::string_view::npos ? reader.line.length : reader.next + static_cast<int>(length) + 2;
  return true;
}

void begin_list(FreeFormat& reader) {
  reader.repeats = 0;
  reader.ended = false;
  const char c = peek(reader);
  if (!is_digit(c) && c != '+' && c != '-' && c != '.') reader.next = reader.line.length;
}

bool next_real(FreeFormat& reader, R8& value) {
  std::string_view item;
  if (!next_item(reader, item)) return false;
  if (item.empty()) return true;
  item = without_plus(item);

  constexpr std::size_t room = 64;
  char digits[room];
  if (item.size() > room) return false;
  for (std::size_t i = 0; i < item.size(); ++i) digits[i] = item[i] == 'D' || item[i] == 'd' ? 'E' : item[i];
  R8 number = 0.0;
  const char* last = digits + item.size();
  const std::from_chars_result end = std::from_chars(digits, last, number);
  if (end.ec != std::errc{} || end.ptr != last || !std::isfinite(number)) return false;
  value = number;
  return true;
}

bool next_integer(FreeFormat& reader, I4& value) {
  std::string_view item;
  if (!next_item(reader, item)) return false;
  if (item.empty()) return true;
  item = without_plus(item);
  I4 number = 0;
  const std::from_chars_result end = std::from_chars(item.data(), item.data() + item.size(), number);
  if (end.ec != std::errc{} || end.ptr != item.data() + item.size()) return false;
  value = number;
  return true;
}

}  // namespace talix
