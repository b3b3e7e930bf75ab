// What the tests share: a clean start, a scratch directory, the compiled bank.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace talix::test {

// A directory of its own under the system's temporary directory, removed at the end of its life.
class ScratchDirectory {
 public:
  ScratchDirectory();
  ~ScratchDirectory();
  ScratchDirectory(const ScratchDirectory&) = delete;
  ScratchDirectory& operator=(const ScratchDirectory&) = delete;
  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// The install directory that holds the compiled bank in its folder Zandor.
std::string install_directory();

// Texts of the error ring, oldest first, without trailing blanks.
std::vector<std::string> ring_texts();

}  // namespace talix::test
