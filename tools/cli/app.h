// The program: arguments in, texts and an exit code out.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace talix::cli {

// Runs the command line `arguments` (without the name of the program).
int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);

}  // namespace talix::cli
