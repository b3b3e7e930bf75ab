// Work for the instruction counter: `instruction_count CASE COMPONENTS CALLS` warms up and then runs the calls
// inside counted_calls, the one function that the counter is told to watch.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "bench_cases.h"

namespace {

volatile double sink = 0.0;

template <class Call>
[[gnu::noinline]] void counted_calls(int calls, Call call) {
  for (int i = 0; i < calls; ++i) sink = sink + call();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: instruction_count fugacities|thermal|flash COMPONENTS CALLS\n");
    return 2;
  }
  const int components = std::atoi(argv[2]);
  const int calls = std::atoi(argv[3]);
  if (components < 2 || components > 50 || calls < 1) {
    std::fprintf(stderr, "instruction_count: components 2 to 50, calls at least 1\n");
    return 2;
  }
  talix::bench::FlashCase flash(components);
  if (!flash.run()) {
    std::fprintf(stderr, "instruction_count:%s\n", flash.message().c_str());
    return 1;
  }
  talix::bench::DriverCase driver(components);
  if (std::strcmp(argv[1], "fugacities") == 0) {
    driver.fugacities();
    counted_calls(calls, [&] { return driver.fugacities(); });
  } else if (std::strcmp(argv[1], "thermal") == 0) {
    driver.thermal();
    counted_calls(calls, [&] { return driver.thermal(); });
  } else if (std::strcmp(argv[1], "flash") == 0) {
    counted_calls(calls, [&] { return flash.run() ? 1.0 : 0.0; });
  } else {
    std::fprintf(stderr, "instruction_count: no case '%s'\n", argv[1]);
    return 2;
  }
  return 0;
}
