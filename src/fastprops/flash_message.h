// The message of a call and its echo.
#pragma once

#include <string_view>

#include "base/real.h"
#include "base/text.h"

namespace talix {

// STR inside the library: long enough for every message; the entry call cuts it to the host's length.
using Message = Text<160>;

// True for a text that means failure without results: not blank in its first five characters and not a
// warning, which begins with a full stop.
bool is_hard_failure(const Message& STR);
// Stores TEXT in STR and echoes it.
void report(Message& STR, std::string_view text);
// Sends a message to WRLIN or as one line to unit MSGUNIT; does nothing while fl.ECHO_HELD.
void echo(std::string_view text);
// Sends a line as it stands to unit MSGUNIT.
void write_line(std::string_view line);
// The host's line writer; empty.
void WRLIN(const I4& FIRST, const I4& SECOND, std::string_view text, const I4& LENGTH, const I4& WIDTH);

}  // namespace talix
