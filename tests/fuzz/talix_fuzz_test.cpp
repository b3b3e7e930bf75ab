// A small share of what the search for inputs runs: the inputs it kept, and some random ones.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/fuzz_call.h"
#include "support/flash_case.h"
#include "support/test_support.h"

namespace talix {
namespace {

constexpr std::uint32_t kSeed = 20260114;
constexpr int kInputs = 300;

class FuzzedCalls : public testing::Test {
 protected:
  void SetUp() override {
    test::fresh_library();
    ASSERT_TRUE(fuzz::open_bank(test::install_directory()));
  }
  void TearDown() override { test::fresh_library(); }

  void run(const std::vector<std::uint8_t>& input, const std::string& name) {
    EXPECT_EQ(fuzz::run_bytes(input.data(), input.size(), tally), "") << name;
  }

  fuzz::Tally tally;
};

TEST_F(FuzzedCalls, KeptInputsBreakNoRule) {
  int inputs = 0;
  for (const auto& entry :
       std::filesystem::directory_iterator(std::string(TALIX_TEST_SOURCE) + "/tests/fuzz/corpus")) {
    std::ifstream file(entry.path(), std::ios::binary);
    run(std::vector<std::uint8_t>(std::istreambuf_iterator<char>(file), {}),
        entry.path().filename().string());
    ++inputs;
  }
  EXPECT_GE(inputs, 10);
  EXPECT_GE(tally.calls, inputs);
}

TEST_F(FuzzedCalls, RandomInputsBreakNoRule) {
  for (int k = 0; k < kInputs; ++k) run(fuzz::random_bytes(kSeed, k), "input " + std::to_string(k));
  EXPECT_GT(tally.calls, 4 * kInputs);
  EXPECT_GT(tally.results, kInputs) << "most of the calls have to be sensible ones";
  EXPECT_GT(tally.texts.size(), 10U) << "and some have to be refused";
}

}  // namespace
}  // namespace talix
