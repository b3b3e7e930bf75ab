// Runs a command of the shell and keeps what it printed.
#pragma once

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>

namespace talix::test {

struct ProcessResult {
  int code = -1;       // exit code; -1 where the process did not end by itself
  std::string output;  // of standard output
};

inline ProcessResult run_process(const std::string& command) {
  ProcessResult result;
  std::FILE* const pipe = ::popen(command.c_str(), "r");
  if (pipe == nullptr) return result;
  std::array<char, 4096> buffer{};
  std::size_t size = 0;
  while ((size = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0)
    result.output.append(buffer.data(), size);
  const int status = ::pclose(pipe);
  if (WIFEXITED(status)) result.code = WEXITSTATUS(status);
  return result;
}

// A text as one word of the shell.
inline std::string quoted(const std::string& text) {
  std::string word = "'";
  for (const char c : text) {
    if (c == '\'') {
      word += "'\\''";
    } else {
      word += c;
    }
  }
  return word + "'";
}

}  // namespace talix::test
