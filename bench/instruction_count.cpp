// Work for the instruction counter: `instruction_count CASE COMPONENTS CALLS` warms up and then runs the calls
// inside counted_calls, the one function that the counter is told to watch. CASE is fugacities or thermal, a call of
// the mixture driver, viscosity, conductivity or transport (both), calls of the dense-fluid transport, or
// flash:CODE:LEVEL[:REGION], a call of TALIX at a level of SETTALIXVERIFY; REGION 0 two phases (also when left out),
// 1 gas, 2 dense gas, 3 liquid for codes 5 and 10. Prints the driver calls of a flash.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "bench_cases.h"

namespace {

using talix::bench::FlashCase;

volatile double sink = 0.0;

template <class Call>
[[gnu::noinline]] void counted_calls(int calls, Call call) {
  for (int i = 0; i < calls; ++i) sink = sink + call();
}

int run_driver(bool thermal, int components, int calls) {
  FlashCase flash(components);
  if (!flash.run()) {
    std::fprintf(stderr, "instruction_count:%s\n", flash.message().c_str());
    return 1;
  }
  talix::bench::DriverCase driver(components);
  if (thermal) {
    driver.thermal();
    counted_calls(calls, [&] { return driver.thermal(); });
  } else {
    driver.fugacities();
    counted_calls(calls, [&] { return driver.fugacities(); });
  }
  return 0;
}

int run_transport(double (talix::bench::TransportCase::*call)(), int components, int calls) {
  talix::bench::TransportCase transport(components);
  (transport.*call)();
  counted_calls(calls, [&] { return (transport.*call)(); });
  return 0;
}

int run_flash(int code, int level, int region, int components, int calls) {
  FlashCase flash = region == 0 ? FlashCase(components, code, level)
                                : FlashCase(components, code, level,
                                            talix::bench::kRegions[static_cast<std::size_t>(region)]);
  if (!flash.run()) {
    std::fprintf(stderr, "instruction_count:%s\n", flash.message().c_str());
    return 1;
  }
  counted_calls(calls, [&] { return flash.run() ? 1.0 : 0.0; });
  std::printf("engine_calls %d\n", flash.engine_calls());
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(
        stderr,
        "usage: instruction_count "
        "fugacities|thermal|viscosity|conductivity|transport|flash:CODE:LEVEL[:REGION] COMPONENTS CALLS\n");
    return 2;
  }
  const int components = std::atoi(argv[2]);
  const int calls = std::atoi(argv[3]);
  if (components < 2 || components > 50 || calls < 1) {
    std::fprintf(stderr, "instruction_count: components 2 to 50, calls at least 1\n");
    return 2;
  }
  if (std::strcmp(argv[1], "fugacities") == 0) return run_driver(false, components, calls);
  if (std::strcmp(argv[1], "thermal") == 0) return run_driver(true, components, calls);
  using talix::bench::TransportCase;
  if (std::strcmp(argv[1], "viscosity") == 0)
    return run_transport(&TransportCase::viscosity, components, calls);
  if (std::strcmp(argv[1], "conductivity") == 0)
    return run_transport(&TransportCase::conductivity, components, calls);
  if (std::strcmp(argv[1], "transport") == 0) return run_transport(&TransportCase::both, components, calls);
  int code = 0, level = 0, region = 0;
  const int read = std::sscanf(argv[1], "flash:%d:%d:%d", &code, &level, &region);
  if (read >= 2 && region >= 0 && region < static_cast<int>(talix::bench::kRegions.size()))
    return run_flash(code, level, region, components, calls);
  std::fprintf(stderr, "instruction_count: no case '%s'\n", argv[1]);
  return 2;
}
