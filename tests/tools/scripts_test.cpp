// The checks of the project's sources find what they are there to find.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "support/test_support.h"
#include "tools/process.h"

namespace talix::test {
namespace {

const std::string kSource = TALIX_TEST_SOURCE;

ProcessResult script(const std::string& name, const std::string& arguments) {
  const std::string program =
      (name.ends_with(".py") ? "python3 " : "") + quoted(kSource + "/scripts/" + name);
  return run_process(program + " " + arguments + " 2>&1");
}

void write(const std::filesystem::path& file, const std::string& text) {
  std::filesystem::create_directories(file.parent_path());
  std::ofstream(file) << text;
}

bool holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(IncludeCheck, TheSourcesPass) {
  const ProcessResult result = script("check_includes.py", quoted(kSource));
  EXPECT_EQ(result.code, 0) << result.output;
}

TEST(IncludeCheck, ACycleBetweenFilesIsFound) {
  const ScratchDirectory scratch;
  write(scratch.path() / "src/eos/a.h", "#include \"eos/b.h\"\n");
  write(scratch.path() / "src/eos/b.h", "#include \"eos/c.h\"\n");
  write(scratch.path() / "src/eos/c.h", "#include \"eos/a.h\"\n");
  const ProcessResult result = script("check_includes.py", quoted(scratch.path().string()));
  EXPECT_EQ(result.code, 1);
  EXPECT_TRUE(holds(result.output, "cycle: eos/a.h -> eos/b.h -> eos/c.h -> eos/a.h")) << result.output;
}

TEST(IncludeCheck, EveryRuleOfTheFoldersIsKept) {
  struct Case {
    const char* file;
    const char* target;
    bool allowed;
  };
  for (const Case& rule :
       {Case{"base/x.h", "engine/t.h", false}, Case{"base/x.h", "base/t.h", true},
        Case{"numerics/x.cpp", "engine/error_ring.h", true}, Case{"numerics/x.cpp", "engine/setup.h", false},
        Case{"eos/x.cpp", "api/t.h", false}, Case{"database/x.cpp", "fastprops/t.h", false},
        Case{"engine/x.cpp", "flash/t.h", false}, Case{"fastprops/x.cpp", "flash/t.h", false},
        Case{"fastprops/x.cpp", "engine/t.h", true}, Case{"flash/x.cpp", "api/t.h", false},
        Case{"flash/x.cpp", "fastprops/t.h", true}, Case{"api/x.cpp", "flash/t.h", true}}) {
    const ScratchDirectory scratch;
    write(scratch.path() / "src" / rule.file, "#include \"" + std::string(rule.target) + "\"\n");
    write(scratch.path() / "src" / rule.target, "\n");
    const ProcessResult result = script("check_includes.py", quoted(scratch.path().string()));
    EXPECT_EQ(result.code, rule.allowed ? 0 : 1) << rule.file << " " << rule.target << "\n" << result.output;
  }
}

TEST(IncludeCheck, MissingFilesAndOtherTreesAreFound) {
  const ScratchDirectory scratch;
  write(scratch.path() / "src/eos/a.h", "#include \"array.h\"\n#include \"bank/tables.h\"\n");
  write(scratch.path() / "tools/bank/tables.h", "\n");
  const ProcessResult result = script("check_includes.py", quoted(scratch.path().string()));
  EXPECT_TRUE(holds(result.output, "array.h: no such file below src")) << result.output;
  EXPECT_TRUE(holds(result.output, "src never sees tools or tests")) << result.output;
}

TEST(IncludeCheck, TheCommandLineSeesThePublicHeadersOnly) {
  for (const auto& [target, allowed] :
       {std::pair("talix/morve.h", true), std::pair("talix/talix.h", true), std::pair("engine/t.h", false)}) {
    const ScratchDirectory scratch;
    write(scratch.path() / "src/engine/t.h", "\n");
    write(scratch.path() / "include/talix/morve.h", "\n");
    write(scratch.path() / "include/talix/talix.h", "\n");
    write(scratch.path() / "tools/cli/x.cpp", "#include \"" + std::string(target) + "\"\n");
    const ProcessResult result = script("check_includes.py", quoted(scratch.path().string()));
    EXPECT_EQ(result.code, allowed ? 0 : 1) << target << "\n" << result.output;
    EXPECT_EQ(holds(result.output, "the command line sees the public headers only"), !allowed)
        << result.output;
  }
}

TEST(WordCheck, TheSourcesPass) {
  const ProcessResult result = script("check_words.sh", "");
  EXPECT_EQ(result.code, 0) << result.output;
}

TEST(WordCheck, LeftoversAreFound) {
  // Written in pieces, so that this file passes the check itself.
  for (const std::string& line :
       {std::string("// TO") + "DO: later", std::string("// FIX") + "ME", std::string("see Pa") + "rt 7.2",
        std::string("<<<<<<") + "< ours", std::string("/ho") + "me/somebody/data"}) {
    const ScratchDirectory scratch;
    write(scratch.path() / "src/x.cpp", line + "\n");
    EXPECT_EQ(script("check_words.sh", quoted(scratch.path().string())).code, 1) << line;
  }
  const ScratchDirectory clean;
  write(clean.path() / "src/x.cpp", "// The total of all parts.\n");
  EXPECT_EQ(script("check_words.sh", quoted(clean.path().string())).code, 0);
}

TEST(RoutineIndex, IsUpToDate) {
  const ProcessResult result = script("routines.py", "--check");
  EXPECT_EQ(result.code, 0) << result.output;
}

std::string results(int passed, int failed) {
  std::string text = R"({"testsuites":[{"testsuite":[)";
  for (int i = 0; i < passed; ++i) text += R"({"name":"a","status":"RUN","result":"COMPLETED"},)";
  for (int i = 0; i < failed; ++i) {
    text += R"({"name":"b","status":"RUN","result":"COMPLETED","failures":[{"failure":"x"}]},)";
  }
  return text + R"({"name":"c","status":"RUN","result":"SKIPPED"}]}]})";
}

std::string last_line(std::string text) {
  if (!text.empty()) text.pop_back();
  return text.substr(text.rfind('\n') + 1);
}

TEST(TestCount, AddsUpTheRunsAndSkipsTheSkipped) {
  const ScratchDirectory scratch;
  write(scratch.path() / "a.json", results(3, 0));
  write(scratch.path() / "b.json", results(2, 0));
  const std::string files =
      quoted((scratch.path() / "a.json").string()) + " " + quoted((scratch.path() / "b.json").string());
  const ProcessResult good = script("count_tests.py", "--status 0 " + files);
  EXPECT_EQ(good.code, 0);
  EXPECT_EQ(last_line(good.output), "5 passed, 0 failed");
  write(scratch.path() / "b.json", results(2, 1));
  const ProcessResult bad = script("count_tests.py", "--status 1 " + files);
  EXPECT_EQ(bad.code, 1);
  EXPECT_EQ(last_line(bad.output), "5 passed, 1 failed");
}

TEST(TestCount, AFailedStepOrAnEmptyRunIsAFailure) {
  const ScratchDirectory scratch;
  write(scratch.path() / "a.json", results(3, 0));
  const std::string file = quoted((scratch.path() / "a.json").string());
  EXPECT_EQ(last_line(script("count_tests.py", "--status 2 " + file).output), "3 passed, 1 failed");
  EXPECT_EQ(script("count_tests.py", "--status 2 " + file).code, 1);
  EXPECT_EQ(last_line(script("count_tests.py", "--status 0 nowhere.json").output), "0 passed, 1 failed");
  write(scratch.path() / "a.json", "{");
  EXPECT_EQ(last_line(script("count_tests.py", "--status 0 " + file).output), "0 passed, 1 failed");
}

TEST(DevScript, HelpOfEveryCommandIsThere) {
  const std::string dev = quoted(kSource + "/dev");
  const ProcessResult overview = run_process(dev);
  EXPECT_EQ(overview.code, 0);
  for (const char* command : {"setup", "build", "run", "test", "bench", "lint", "fuzz", "bank"}) {
    EXPECT_TRUE(holds(overview.output, "  " + std::string(command) + " ")) << command;
    const ProcessResult help = run_process(dev + " " + command + " --help");
    EXPECT_EQ(help.code, 0) << command;
    EXPECT_EQ(help.output.rfind("./dev " + std::string(command), 0), 0U) << command;
  }
  EXPECT_EQ(run_process(dev + " nonsense 2>&1").code, 2);
  EXPECT_EQ(run_process(dev + " build nonsense 2>&1").code, 2);
}

}  // namespace
}  // namespace talix::test
