// The command line of the library.
#include <iostream>
#include <string>
#include <vector>

#include "cli/app.h"
#include "cli/failure.h"

int main(int argc, char** argv) {
  const int code = talix::cli::run(std::vector<std::string>(argv + 1, argv + argc), std::cout, std::cerr);
  std::cout.flush();
  if (!std::cout) {
    std::cerr << "talix: the output cannot be written\n";
    return talix::cli::kExitUsage;
  }
  return code;
}
