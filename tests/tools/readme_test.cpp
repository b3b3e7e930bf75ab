// What README.md tells a newcomer to type works, and what it points to is there.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "tools/process.h"

namespace talix::test {
namespace {

const std::string kSource = TALIX_TEST_SOURCE;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif

std::string readme() {
  std::ifstream in(kSource + "/README.md");
  return {std::istreambuf_iterator<char>(in), {}};
}

// The lines of the blocks that hold shell commands, without their comments.
std::vector<std::string> commands() {
  std::vector<std::string> lines;
  std::istringstream in(readme());
  bool inside = false;
  for (std::string line; std::getline(in, line);) {
    if (line.rfind("```", 0) == 0) {
      inside = line == "```sh";
    } else if (inside && !line.empty()) {
      const std::size_t comment = line.find(" #");
      line = line.substr(0, comment);
      line = line.substr(0, line.find_last_not_of(' ') + 1);
      const bool goes_on = !lines.empty() && lines.back().ends_with('\\');
      if (goes_on) {
        lines.back().back() = ' ';
        lines.back() += line;
      } else {
        lines.push_back(line);
      }
    }
  }
  return lines;
}

// The command with the directory of this build in place of the one that README names.
std::string in_this_build(const std::string& command) {
  const std::string build = std::filesystem::path(TALIX_TEST_BINARIES).parent_path().string();
  std::string text;
  std::size_t from = 0;
  const std::string named = "build/release";
  const std::string absolute = "$PWD/";
  for (std::size_t at = command.find(named); at != std::string::npos; at = command.find(named, from)) {
    std::size_t end = at;
    if (end - from >= absolute.size() &&
        command.compare(end - absolute.size(), absolute.size(), absolute) == 0)
      end -= absolute.size();
    text += command.substr(from, end - from) + build;
    from = at + named.size();
  }
  text += command.substr(from);
  return "cd " + quoted(kSource) + " && env -u TALIX_HOME " + text + " 2>&1";
}

bool starts(const std::string& text, const std::string& head) { return text.rfind(head, 0) == 0; }

TEST(Readme, EveryCommandRuns) {
  std::size_t of_dev = 0;
  std::size_t of_talix = 0;
  std::size_t of_examples = 0;
  for (const std::string& command : commands()) {
    if (starts(command, "./dev ")) {
      // Building the project from inside its own tests would never end; the command must exist.
      EXPECT_EQ(run_process("cd " + quoted(kSource) + " && " + command + " --help").code, 0) << command;
      ++of_dev;
      continue;
    }
    const bool of_the_tool = starts(command, "build/release/bin/");
    // A plain program cannot load a library that is built with the sanitizers.
    if (kSanitized && !of_the_tool) continue;
    const ProcessResult result = run_process(in_this_build(command));
    EXPECT_EQ(result.code, 0) << command << "\n" << result.output;
    of_the_tool ? ++of_talix : ++of_examples;
  }
  EXPECT_GE(of_dev, 2U);
  EXPECT_GE(of_talix, 3U);
  EXPECT_GE(of_examples, kSanitized ? 0U : 4U);
}

TEST(Readme, EveryLinkLeadsToAFile) {
  const std::string text = readme();
  const std::regex link(R"(\]\(([^)#]+)\))");
  std::size_t links = 0;
  for (std::sregex_iterator it(text.begin(), text.end(), link), end; it != end; ++it) {
    EXPECT_TRUE(std::filesystem::exists(kSource + "/" + (*it)[1].str())) << (*it)[1].str();
    ++links;
  }
  EXPECT_GT(links, 3U);
}

}  // namespace
}  // namespace talix::test
