// Where the data bank stands.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace talix::cli {

// The places looked at, in their order.
struct InstallChoice {
  std::optional<std::string> option;  // --install DIR
  std::optional<std::string> home;    // variable TALIX_HOME
  std::filesystem::path beside;       // ../share/talix beside the executable
};

// The choice of this process.
InstallChoice install_choice(const std::string& option);

// The first place that is given: it must hold the compiled bank, or UsageError says what was missed where.
std::filesystem::path find_install(const InstallChoice& choice);

}  // namespace talix::cli
