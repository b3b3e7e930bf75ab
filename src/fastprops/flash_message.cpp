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

}  // namespace

bool is_hard_failure(const Message& STR) { return !trimmed(STR.sub(1, 5)).empty() && STR(1) != '.'; }

void report(Message& STR, std::string_view text) {
  STR = text;
  echo(trimmed(STR));
}

// A list-style line begins with one blank; a unit that is not open drops the line.
void echo(std::string_view text) {
  if (fl.MSGHOOK) {
    WRLIN(kHookFirst, kHookSecond, text, static_cast<I4>(text.size()), kHookWidth);
    return;
  }
  std::FILE* unit = nullptr;
  if (fl.MSGUNIT == kUnitError) unit = stderr;
  if (fl.MSGUNIT == kUnitOutput) unit = stdout;
  if (unit != nullptr) std::fprintf(unit, " %.*s\n", static_cast<int>(text.size()), text.data());
}

// WRLIN: the place where a host's own line writer would stand; it takes the line and does nothing.
void WRLIN(const I4& /*FIRST*/, const I4& /*SECOND*/, std::string_view /*text*/, const I4& /*LENGTH*/,
           const I4& /*WIDTH*/) {}

}  // namespace talix
