// talix envelope.
#pragma once

#include <CLI/CLI.hpp>
#include <ostream>
#include <string>
#include <vector>

#include "cli/envelope.h"
#include "cli/mixture_options.h"

namespace talix::cli {

struct EnvelopeCommandOptions {
  MixtureOptions mixture;
  std::vector<std::string> from_pressure;
  int points = EnvelopeOptions{}.points;
  std::string plot;
  bool progress = false;
  std::string format = "table";
};

class EnvelopeCommand {
 public:
  // Adds the command with its options.
  CLI::App& add_to(CLI::App& app);
  [[nodiscard]] bool parsed() const { return command_->parsed(); }
  EnvelopeCommandOptions& options() { return options_; }
  // Runs it; gives the exit code.
  int run(const std::string& install_option, std::ostream& out, std::ostream& err) const;

 private:
  CLI::App* command_ = nullptr;
  EnvelopeCommandOptions options_;
};

}  // namespace talix::cli
