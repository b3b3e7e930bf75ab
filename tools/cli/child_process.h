// Runs another program with a text on its standard input.
#pragma once

#include <string>
#include <vector>

namespace talix::cli {

struct ChildResult {
  bool started = false;  // false: there is no such program
  int code = -1;         // exit code; -1 where it did not end by itself
  std::string errors;    // what it wrote on standard error
};

// `arguments` begin with the name of the program, which is looked for along PATH; no shell is involved.
ChildResult run_child(const std::vector<std::string>& arguments, const std::string& input);

}  // namespace talix::cli
