// Replays inputs of the search, and runs seeded random calls where there is no fuzzing library:
//   talix_fuzz_replay FILE|DIRECTORY...         every input of files and directories
//   talix_fuzz_replay --random N [SEED [FIRST]] N random inputs, from the FIRST on
//   talix_fuzz_replay --describe FILE           the calls of an input
//   talix_fuzz_replay --write SEED INDEX FILE   a random input as a file
// Prints each broken rule, then what the calls came to; exits with 1 when a rule was broken.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/fuzz_call.h"

namespace {

using talix::fuzz::run_bytes;
using Input = std::vector<std::uint8_t>;

talix::fuzz::Tally tally;
int broken_rules = 0;

void run(const Input& input, const std::string& name) {
  const std::string broken = run_bytes(input.data(), input.size(), tally);
  if (broken.empty()) return;
  ++broken_rules;
  std::printf("%s: %s\n", name.c_str(), broken.c_str());
}

Input contents(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return Input(std::istreambuf_iterator<char>(file), {});
}

void replay(const std::filesystem::path& path) {
  if (std::filesystem::is_directory(path)) {
    for (const auto& entry : std::filesystem::directory_iterator(path)) replay(entry.path());
  } else {
    run(contents(path), path.string());
  }
}

void report() {
  std::printf("%lld calls, %lld with results and no text, most engine calls %d (level 1), %d (level 0)\n",
              static_cast<long long>(tally.calls), static_cast<long long>(tally.results),
              tally.most_engine_calls, tally.most_engine_calls_alone);
  for (const auto& [text, count] : tally.texts)
    std::printf("%9lld  %s\n", static_cast<long long>(count), text.c_str());
}

}  // namespace

int main(int argc, char** argv) {
  // A run that is ended early has told what it found.
  std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
  const char* home = std::getenv("TALIX_HOME");
  if (argc < 2 || !talix::fuzz::open_bank(home != nullptr ? home : TALIX_FUZZ_INSTALL)) {
    std::fprintf(stderr, argc < 2 ? "usage: talix_fuzz_replay FILE|DIRECTORY... | --random N [SEED [FIRST]]\n"
                                  : "talix_fuzz_replay: no component bank\n");
    return 2;
  }
  const std::string first = argv[1];
  if (first == "--random" && argc > 2) {
    const long long count = std::atoll(argv[2]);
    const auto seed = static_cast<std::uint32_t>(argc > 3 ? std::atoll(argv[3]) : 1);
    const long long from = argc > 4 ? std::atoll(argv[4]) : 0;
    for (long long i = from; i < from + count; ++i)
      run(talix::fuzz::random_bytes(seed, i), "seed " + std::to_string(seed) + " input " + std::to_string(i));
  } else if (first == "--describe" && argc > 2) {
    const Input input = contents(argv[2]);
    std::printf("%s", talix::fuzz::described(input.data(), input.size()).c_str());
    return 0;
  } else if (first == "--write" && argc > 4) {
    const Input input =
        talix::fuzz::random_bytes(static_cast<std::uint32_t>(std::atoll(argv[2])), std::atoll(argv[3]));
    std::ofstream(argv[4], std::ios::binary)
        .write(reinterpret_cast<const char*>(input.data()), static_cast<std::streamsize>(input.size()));
    return 0;
  } else {
    for (int i = 1; i < argc; ++i) replay(argv[i]);
  }
  report();
  return broken_rules == 0 ? 0 : 1;
}
