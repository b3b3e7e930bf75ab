#include "cli/child_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <memory>

extern char** environ;

namespace talix::cli {

namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

std::string contents(std::FILE* file) {
  std::string text;
  std::array<char, 4096> buffer{};
  std::rewind(file);
  for (std::size_t size = 0; (size = std::fread(buffer.data(), 1, buffer.size(), file)) > 0;)
    text.append(buffer.data(), size);
  return text;
}

}  // namespace

// Files without a name stand for the pipes: no end can wait for the other.
ChildResult run_child(const std::vector<std::string>& arguments, const std::string& input) {
  ChildResult result;
  const File in(std::tmpfile());
  const File errors(std::tmpfile());
  if (!in || !errors || std::fwrite(input.data(), 1, input.size(), in.get()) != input.size() ||
      std::fflush(in.get()) != 0) {
    result.errors = "no temporary file can be written";
    result.started = true;
    return result;
  }
  std::rewind(in.get());

  std::vector<std::string> words = arguments;
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ::fileno(in.get()), STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, ::fileno(errors.get()), STDERR_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  const int error = ::posix_spawnp(&child, argv[0], &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) return result;
  result.started = true;
  int status = 0;
  if (::waitpid(child, &status, 0) == child && WIFEXITED(status)) result.code = WEXITSTATUS(status);
  result.errors = contents(errors.get());
  return result;
}

}  // namespace talix::cli
