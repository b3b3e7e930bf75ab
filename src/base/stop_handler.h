// The few named stops go through one replaceable handler, so that tools and tests can catch them.
#pragma once

#include <string_view>

namespace talix {

using StopHandler = void (*)(std::string_view text);

// Replaces the handler and returns the previous one. The default prints the text and ends the process.
StopHandler set_stop_handler(StopHandler handler);
// Calls the handler. When a replaced handler returns, the caller goes on with the status it names.
void stop(std::string_view text);

}  // namespace talix
