// What docs/engine.md tells to type works, and what it prints is what comes out.
#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "api/morve_engine.h"
#include "cli/engine.h"
#include "cli/engine_keys.h"
#include "tools/process.h"

namespace talix::test {
namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif

const std::string kSource = TALIX_TEST_SOURCE;
const std::string kBinaries = TALIX_TEST_BINARIES;

std::string page() {
  std::ifstream in(kSource + "/docs/engine.md");
  return {std::istreambuf_iterator<char>(in), {}};
}

// The blocks of a kind, joined: lines that end with a backslash go on.
std::vector<std::string> lines_of(const std::string& kind) {
  std::vector<std::string> lines;
  std::istringstream in(page());
  bool inside = false;
  bool goes_on = false;
  for (std::string line; std::getline(in, line);) {
    if (line.rfind("```", 0) == 0) {
      inside = line == "```" + kind;
      continue;
    }
    if (!inside) continue;
    const bool more = !line.empty() && line.back() == '\\';
    if (more) line.pop_back();
    if (goes_on)
      lines.back() += line;
    else
      lines.push_back(line);
    goes_on = more;
  }
  return lines;
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
  return text;
}

TEST(EnginePage, EveryCommandRunsAndTheExamplePrintsWhatIsShown) {
  const std::string build = kBinaries.substr(0, kBinaries.rfind('/'));
  std::size_t ran = 0;
  std::string last;
  for (const std::string& line : lines_of("sh")) {
    // A plain program cannot be linked with a library that is built with the sanitizers.
    if (kSanitized && line.find("phase_c") != std::string::npos) continue;
    const ProcessResult result = run_process("cd " + quoted(kSource) + " && env -u TALIX_HOME " +
                                             replaced(line, "build/release", build) + " 2>&1");
    EXPECT_EQ(result.code, 0) << line << "\n" << result.output;
    last = result.output;
    ++ran;
  }
  EXPECT_EQ(ran, kSanitized ? 4U : 6U);
  if (kSanitized) return;
  std::string shown;
  for (const std::string& line : lines_of("text")) shown += line + "\n";
  EXPECT_EQ(last, shown);
}

TEST(EnginePage, ExampleOfTheBuildPrintsTheSameAndTellsFailures) {
  const ProcessResult result =
      run_process(quoted(kBinaries + "/example_phase_c") + " " + quoted(install_directory()));
  EXPECT_EQ(result.code, 0);
  std::string shown;
  for (const std::string& line : lines_of("text")) shown += line + "\n";
  EXPECT_EQ(result.output, shown);
  const ProcessResult nowhere = run_process(quoted(kBinaries + "/example_phase_c") + " /nowhere 2>&1");
  EXPECT_EQ(nowhere.code, 1);
  EXPECT_EQ(nowhere.output.rfind("SHDBS0: status 125, yes", 0), 0U) << nowhere.output;
}

TEST(EnginePage, NumbersOfTheExampleAreThoseOfTheEngine) {
  const std::int32_t slot = set_up(" 1P  4P ", MORVE_PENG_ROBINSON);
  ASSERT_EQ(slot, 1);
  Mix mix(slot, {0.9, 0.1});
  mix.P = 30E5;
  ASSERT_EQ(mix.run(), MORVE_OK);
  double Z = 0;
  double V = 0;
  ASSERT_EQ(std::sscanf(lines_of("text").at(0).c_str(), "Z %lf, volume %lf", &Z, &V), 2);
  EXPECT_NEAR(Z, mix.ZVOL, 5E-9);
  EXPECT_NEAR(V, mix.ZVOL * 8.314471 * 298.15 / 30E5 * 1E6, 5E-5);
}

TEST(EnginePage, EveryKeyAndSectionIsOnIt) {
  ASSERT_GE(set_up(" 1P  2P ", MORVE_VARDO1), 1);
  const std::string text = page();
  for (const cli::KeySection& section : cli::key_sections()) {
    EXPECT_NE(text.find("`" + std::string(section.name) + "`"), std::string::npos) << section.name;
    const int i = section.scope == cli::KeyScope::model ? 0 : 1;
    const int j = section.scope == cli::KeyScope::pair ? 2 : 0;
    std::size_t named = 0;
    const std::vector<cli::EngineKey> keys = cli::read_keys(section, i, j);
    for (const cli::EngineKey& key : keys)
      if (text.find("\"" + key.name + "\"") != std::string::npos) ++named;
    // Numbered keys are written as the first to the last of them; the others are written one by one or as "the same".
    EXPECT_GE(named, keys.empty() ? 0U : 1U) << section.name;
  }
}

TEST(EnginePage, EveryModelThatComputesIsInItsTable) {
  const std::string text = page();
  for (const cli::EngineModel& model : cli::engine_models()) {
    const std::string row = "\n| " + std::to_string(model.code) + " | " + model.name + " |";
    EXPECT_EQ(text.find(row) != std::string::npos, model.computes()) << model.name;
  }
}

}  // namespace
}  // namespace talix::test
