#include "fastprops/flash_message.h"

#include <cstdio>

#include "fastprops/flash_record.h"

namespace talix {

namespace {

// Units of the host's list-style output that are always open.
constexpr I4 kUnitError = 0;
constexpr I4 kUnitOutput = 6;
// The fixed values that every call of WRLIN carries.
constexpr I4 kHookFirst = 13;
constexpr I4 kHookSecond = 5;
constexpr I4 kHookWidth = 60;

// A null pointer for a unit that is not open.
std::FILE* message_unit() {
  if (fl.MSGUNIT == kUnitError) return stderr;
  if (fl.MSGUNIT == kUnitOutput) return stdout;
  return nullptr;
}

}  // namespace

bool is_hard_failure(const Message& STR) { return !trimmed(STR.sub(1, 5)).empty() && STR(1) != '.'; }

void report(Message& STR, std::string_view text) {
  STR = text;
  echo(trimmed(STR));
}

void write_line(std::string_view line) {
  if (std::FILE* unit = message_unit(); unit != nullptr)
    std::fprintf(unit, "%.*s\n", static_cast<int>(line.size()), line.data());
}

// A list-style line begins with one blank; a unit that is not open drops the line.
void echo(std::string_view text) {
  if (fl.ECHO_HELD) return;
  if (fl.MSGHOOK) {
    WRLIN(kHookFirst, kHookSecond, text, static_cast<I4>(text.size()), kHookWidth);
    return;
  }
  if (std::FILE* unit = message_unit(); unit != nullptr)
    std::fprintf(unit, " %.*s\n", static_cast<int>(text.size()), text.data());
}

// WRLIN: the place where a host's own line writer would stand; it takes the line and does nothing.
void WRLIN(const I4& /*FIRST*/, const I4& /*SECOND*/, std::string_view /*text*/, const I4& /*LENGTH*/,
           const I4& /*WIDTH*/) {}

}  // namespace talix
