// talix flash.
#pragma once

#include <CLI/CLI.hpp>
#include <ostream>
#include <string>
#include <vector>

#include "cli/mixture_options.h"

namespace talix::cli {

struct FlashOptions {
  MixtureOptions mixture;
  std::string type = "tp";
  std::vector<std::string> temperature;
  std::vector<std::string> pressure;
  std::string vapour_fraction;
  std::vector<std::string> enthalpy;
  std::string format = "table";
  bool error_report = false;
};

class FlashCommand {
 public:
  // Adds the command with its options.
  CLI::App& add_to(CLI::App& app);
  [[nodiscard]] bool parsed() const { return command_->parsed(); }
  FlashOptions& options() { return options_; }
  // Runs it; gives the exit code.
  int run(const std::string& install_option, std::ostream& out, std::ostream& err) const;

 private:
  CLI::App* command_ = nullptr;
  FlashOptions options_;
};

}  // namespace talix::cli
