// Compares the library with the reference flash on seeded states, with and without the check behind the flashes,
// and prints the shares by temperature and pressure.
//
// The component bank is that of the build, or of the install directory in TALIX_HOME.
// talix_verify [--isothermal N] [--saturation N] [--enthalpy N] [--seed S] [--part K/N] [--dump FILE]
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "fastprops/flash_record.h"
#include "support/reference_campaign.h"
#include "support/test_support.h"
#include "verify/verify_tally.h"

namespace talix::verify {

namespace {

using test::reference::Case;
using test::reference::Comparison;
using test::reference::Outcome;
using test::reference::Verdict;

struct Options {
  int isothermal = 2000;
  int saturation = 200;
  int enthalpy = 200;
  std::uint32_t seed = 1;
  int part = 0, parts = 1;  // every PARTS-th state from PART on
  const char* dump = nullptr;
};

constexpr std::array<I4, 10> kCodes = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
constexpr int kLevels = 2;

struct Run {
  Tally tally[kLevels][kCodes.size()];
  std::FILE* dump = nullptr;
};

void report(std::FILE* out, const Comparison& c, int index) {
  if (out == nullptr || c.level == 0) return;
  const Verdict v = c.outcome.verdict;
  if (v == Verdict::right || v == Verdict::no_answer || v == Verdict::metastable) return;
  std::fprintf(out, "state %d %s, code %d, level %d: %s\n  numbers", index, c.state.kind.c_str(), c.code,
               c.level, test::reference::name_of(v));
  for (const int n : c.state.numbers) std::fprintf(out, " %d", n);
  std::fprintf(out, "\n  feed");
  for (const R4 f : c.state.feed) std::fprintf(out, " %.9g", static_cast<R8>(f));
  std::fprintf(out,
               "\n  asked T %.6f K P %.8g bar fraction %.6f target %.9g J; ended at T %.6f P %.8g '%s'\n%s",
               c.T, c.P, c.fraction, c.target, c.outcome.T, c.outcome.P, c.outcome.message.c_str(),
               c.outcome.detail.c_str());
  std::fflush(out);
}

class Collector : public test::reference::Receiver {
 public:
  Collector(Run& run, int index) : run_(run), index_(index) {}
  void take(const Comparison& c) override {
    run_.tally[c.level][static_cast<std::size_t>(c.code - 1)].add(c);
    report(run_.dump, c, index_);
  }

 private:
  Run& run_;
  int index_;
};

using Campaign = void (*)(std::uint32_t, int, test::reference::Receiver&);

void run_campaign(const char* name, Campaign campaign, int states, const Options& o, Run& run) {
  for (int index = o.part; index < states; index += o.parts) {
    Collector collector(run, index);
    campaign(o.seed, index, collector);
    if ((index / o.parts) % 20 == 0) std::fprintf(stderr, "\r%s: %d of %d   ", name, index, states);
  }
  if (states > 0) std::fprintf(stderr, "\r%s: %d states done     \n", name, states);
}

bool take_option(const char* name, const char* value, Options& o) {
  if (std::strcmp(name, "--isothermal") == 0)
    o.isothermal = std::atoi(value);
  else if (std::strcmp(name, "--saturation") == 0)
    o.saturation = std::atoi(value);
  else if (std::strcmp(name, "--enthalpy") == 0)
    o.enthalpy = std::atoi(value);
  else if (std::strcmp(name, "--seed") == 0)
    o.seed = static_cast<std::uint32_t>(std::atoi(value));
  else if (std::strcmp(name, "--dump") == 0)
    o.dump = value;
  else if (std::strcmp(name, "--part") == 0)
    return std::sscanf(value, "%d/%d", &o.part, &o.parts) == 2 && o.parts > 0 && o.part >= 0;
  else
    return false;
  return true;
}

int run(int count, char** arguments) {
  Options o;
  for (int i = 1; i < count; i += 2) {
    if (i + 1 < count && take_option(arguments[i], arguments[i + 1], o)) continue;
    std::fprintf(stderr,
                 "talix_verify [--isothermal N] [--saturation N] [--enthalpy N] [--seed S] [--part K/N] "
                 "[--dump FILE]\n");
    return 2;
  }
  static Run run;
  if (o.dump != nullptr) run.dump = std::fopen(o.dump, "w");
  const char* home = std::getenv("TALIX_HOME");
  test::fresh_library(home != nullptr ? std::string{home} : test::install_directory());
  run_campaign("isothermal", test::reference::compare_isothermal, o.isothermal, o, run);
  run_campaign("saturation", test::reference::compare_saturation, o.saturation, o, run);
  run_campaign("enthalpy", test::reference::compare_enthalpy, o.enthalpy, o, run);
  for (const I4 code : kCodes) {
    for (int level = 0; level < kLevels; ++level) {
      char title[64];
      std::snprintf(title, sizeof title, "Code %d, level %d", code, level);
      run.tally[level][static_cast<std::size_t>(code - 1)].print(stdout, title);
    }
  }
  if (run.dump != nullptr) std::fclose(run.dump);
  return 0;
}

}  // namespace

}  // namespace talix::verify

int main(int count, char** arguments) { return talix::verify::run(count, arguments); }
