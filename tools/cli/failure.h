// Failures of the command line that the user can mend.
#pragma once

#include <stdexcept>

namespace talix::cli {

// Exit codes of the program.
inline constexpr int kExitOk = 0;
inline constexpr int kExitFlashFailed = 1;  // the library refused or failed; its message is on standard error
inline constexpr int kExitUsage = 2;        // wrong arguments, or no usable data bank

// A wrong argument or missing data; the text says what is wrong and what to do.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace talix::cli
