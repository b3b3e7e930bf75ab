#include "cli/install_directory.h"

#include <array>
#include <cstdlib>
#include <system_error>

#include "cli/failure.h"

namespace talix::cli {

namespace {

// The library keeps the directory in a field of 256 characters and adds the names of its files to it.
constexpr std::size_t kLongestInstall = 220;

constexpr std::array<const char*, 2> kNeeded = {"Zandor/purezan.out", "Zandor/pcdir.asc"};

}  // namespace

InstallChoice install_choice(const std::string& option) {
  InstallChoice choice;
  if (!option.empty()) choice.option = option;
  if (const char* const home = std::getenv("TALIX_HOME"); home != nullptr && *home != '\0')
    choice.home = home;
  std::error_code error;
  const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
  if (!error) choice.beside = self.parent_path().parent_path() / "share" / "talix";
  return choice;
}

std::filesystem::path find_install(const InstallChoice& choice) {
  std::filesystem::path directory = choice.beside;
  std::string origin = "beside the program";
  if (choice.option) {
    directory = *choice.option;
    origin = "given with --install";
  } else if (choice.home) {
    directory = *choice.home;
    origin = "given by the variable TALIX_HOME";
  }
  if (directory.string().size() > kLongestInstall) {
    throw UsageError("install directory (" + origin + "): " + std::to_string(directory.string().size()) +
                     " characters; the library takes at most " + std::to_string(kLongestInstall));
  }
  for (const char* const file : kNeeded) {
    std::error_code error;
    if (std::filesystem::is_regular_file(directory / file, error)) continue;
    throw UsageError(
        "no data bank: looked for " + (directory / file).string() + " (install directory " + origin +
        "). Build the bank with ./dev build, or name the directory that holds it with --install DIR "
        "or the variable TALIX_HOME");
  }
  return directory;
}

}  // namespace talix::cli
