#include "support/test_support.h"

#include <unistd.h>

#include <atomic>

#include "engine/error_ring.h"

namespace talix::test {

ScratchDirectory::ScratchDirectory() {
  static std::atomic<int> counter{0};
  path_ = std::filesystem::temp_directory_path() /
          ("talix-test-" + std::to_string(::getpid()) + "-" + std::to_string(++counter));
  std::filesystem::create_directories(path_);
}

ScratchDirectory::~ScratchDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string install_directory() { return TALIX_TEST_INSTALL; }

std::vector<std::string> ring_texts() {
  std::vector<std::string> texts;
  for (int i = 1; i <= ring.count; ++i) texts.emplace_back(trimmed(ring.TXTER0(i)));
  return texts;
}

}  // namespace talix::test
