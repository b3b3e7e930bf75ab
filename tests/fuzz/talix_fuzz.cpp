// Entry of the coverage-guided search for inputs that break a rule of TALIX. The bank comes from the variable
// TALIX_HOME or from the build tree.
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "fuzz/fuzz_call.h"

namespace {

talix::fuzz::Tally tally;

void tell() {
  std::fprintf(stderr, "talix_fuzz: %lld calls, most engine calls %d (level 1), %d (level 0)\n",
               static_cast<long long>(tally.calls), tally.most_engine_calls, tally.most_engine_calls_alone);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  const char* home = std::getenv("TALIX_HOME");
  if (!talix::fuzz::open_bank(home != nullptr ? home : TALIX_FUZZ_INSTALL)) {
    std::fprintf(stderr, "talix_fuzz: no component bank\n");
    std::exit(1);
  }
  std::atexit(tell);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string broken = talix::fuzz::run_bytes(data, size, tally);
  if (broken.empty()) return 0;
  std::fprintf(stderr, "talix_fuzz: %s\n", broken.c_str());
  std::abort();
}
