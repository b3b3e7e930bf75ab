#include "base/stop_handler.h"

#include <cstdio>
#include <cstdlib>

namespace talix {

namespace {

void print_and_exit(std::string_view text) {
  std::fprintf(stderr, "%.*s\n", static_cast<int>(text.size()), text.data());
  std::exit(EXIT_FAILURE);
}

constinit StopHandler current = print_and_exit;

}  // namespace

StopHandler set_stop_handler(StopHandler handler) {
  const StopHandler previous = current;
  current = handler != nullptr ? handler : print_and_exit;
  return previous;
}

void stop(std::string_view text) { current(text); }

}  // namespace talix
