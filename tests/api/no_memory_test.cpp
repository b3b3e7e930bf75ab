// What a host learns when its memory is used up.
#include <gtest/gtest.h>

#include "support/test_support.h"
#include "tools/process.h"

namespace talix {
namespace {

TEST(NoMemory, LoadWithoutMemoryEndsWithATextAndTheNextListIsLoaded) {
  const std::string program = std::string(TALIX_TEST_BINARIES) + "/no_memory_program";
  const test::ProcessResult run = test::run_process(test::quoted(program) + " " +
                                                    test::quoted(test::install_directory()) + " 2>/dev/null");
  EXPECT_EQ(run.code, 0);
  EXPECT_EQ(run.output, "[ Not enough memory, no calculation (TALIX)]\n[]\n");
}

}  // namespace
}  // namespace talix
