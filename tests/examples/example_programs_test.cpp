// The example programs know only the public header and the shared library: their numbers are those of the library.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "support/flash_case.h"
#include "support/test_support.h"

namespace talix {
namespace {

struct Output {
  int status;
  std::vector<std::string> lines;
};

Output run(const std::string& command) {
  Output result{-1, {}};
  std::FILE* pipe = ::popen(command.c_str(), "r");
  if (pipe == nullptr) return result;
  std::array<char, 512> line{};
  while (std::fgets(line.data(), static_cast<int>(line.size()), pipe) != nullptr)
    result.lines.emplace_back(line.data());
  result.status = ::pclose(pipe);
  return result;
}

// The last COUNT numbers of a line.
std::vector<double> last_numbers(const std::string& line, std::size_t count) {
  std::vector<double> numbers;
  std::size_t at = line.find_last_not_of(" \n");
  while (numbers.size() < count && at != std::string::npos) {
    const std::size_t before = line.find_last_of(' ', at);
    if (before == std::string::npos) break;
    numbers.insert(numbers.begin(), std::strtod(line.substr(before + 1, at - before).c_str(), nullptr));
    at = line.find_last_not_of(' ', before);
  }
  return numbers;
}

void expect_the_numbers_of_the_library(const std::string& program) {
  const std::filesystem::path path = std::filesystem::path(TALIX_TEST_BINARIES) / program;
  if (!std::filesystem::exists(path)) GTEST_SKIP() << program << " was not built: its compiler is missing";
  const Output out = run("'" + path.string() + "' '" + test::install_directory() + "' 2>&1");
  ASSERT_EQ(out.status, 0) << (out.lines.empty() ? "" : out.lines.front());
  ASSERT_EQ(out.lines.size(), 30U);

  test::fresh_library();
  test::FlashCase gas = test::natural_gas();
  ASSERT_EQ(gas.run(), "");
  const auto agree = [](double printed, R4 value) {
    const double expected = static_cast<double>(value);
    EXPECT_NEAR(printed, expected, 6.0E-5 * std::fabs(expected) + 6.0E-7);
  };
  EXPECT_NEAR(last_numbers(out.lines[0], 1).at(0), static_cast<double>(gas.FRV), 6.0E-6);
  for (int i = 1; i <= 10; ++i) {
    const std::vector<double> row = last_numbers(out.lines[static_cast<std::size_t>(2 + i)], 3);
    ASSERT_EQ(row.size(), 3U);
    agree(row[0], gas.SCAL(i, 2));
    agree(row[1], gas.SCAL(i, 6));
    agree(row[2], gas.SCAL(i, 7));
  }
  for (int i = 1; i <= 15; ++i) {
    const std::vector<double> row = last_numbers(out.lines[static_cast<std::size_t>(14 + i)], 2);
    ASSERT_EQ(row.size(), 2U);
    agree(row[0], gas.TPROPS(i, 1));
    agree(row[1], gas.TPROPS(i, 2));
  }
}

TEST(ExamplePrograms, CProgramGetsTheNumbersOfTheLibrary) {
  expect_the_numbers_of_the_library("example_flash_c");
}

TEST(ExamplePrograms, FortranProgramGetsTheNumbersOfTheLibrary) {
  expect_the_numbers_of_the_library("example_flash_fortran");
}

TEST(ExamplePrograms, ProgramsFailWithTheMessageOfTheLibrary) {
  const std::filesystem::path path = std::filesystem::path(TALIX_TEST_BINARIES) / "example_flash_c";
  ASSERT_TRUE(std::filesystem::exists(path));
  const Output out = run("'" + path.string() + "' /nowhere 2>&1");
  EXPECT_NE(out.status, 0);
  ASSERT_EQ(out.lines.size(), 1U);
  EXPECT_EQ(out.lines[0],
            " Component list not loaded, data file not found or not readable, no calculation (TALIX)\n");
}

TEST(SharedLibrary, ExportsOnlyThePublicNames) {
  const Output out = run(std::string("nm -D --defined-only '") + TALIX_TEST_LIBRARY + "'");
  ASSERT_EQ(out.status, 0);
  std::vector<std::string> names;
  for (const std::string& line : out.lines) names.push_back(line.substr(19, line.find('\n') - 19));
  const std::vector<std::string> expected = {
      "CLEARSCAL",       "CLEARTPROPS",         "GETTALIXAPPROPS", "GETTALIXELEMENTS", "GETTALIXPROPS",
      "GETTALIXPROPSID", "NORMALISECOMPONENTS", "SETTALIXINSTALL", "SETTALIXUSAGE",    "SETTALIXVERIFY",
      "TALIX",           "TALIXERRORREPORT",    "WEIGHTTOMOLE"};
  EXPECT_EQ(names, expected);
}

}  // namespace
}  // namespace talix
