// The command line in this process.
#pragma once

#include <algorithm>
#include <array>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "cli/app.h"
#include "support/test_support.h"

namespace talix::test {

struct Output {
  int code;
  std::string out;
  std::string err;
};

// Runs it; the commands that read the bank get the compiled one.
inline Output talix(std::vector<std::string> arguments) {
  constexpr std::array<std::string_view, 4> readers{"flash", "components", "phase", "keys"};
  if (!arguments.empty() && std::find(readers.begin(), readers.end(), arguments.front()) != readers.end())
    arguments.insert(arguments.end(), {"--install", install_directory()});
  std::ostringstream out;
  std::ostringstream err;
  const int code = cli::run(arguments, out, err);
  return {code, out.str(), err.str()};
}

}  // namespace talix::test
