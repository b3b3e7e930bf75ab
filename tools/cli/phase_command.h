// talix phase, talix models, talix keys: the engine without a flash.
#pragma once

#include <CLI/CLI.hpp>
#include <ostream>
#include <string>
#include <vector>

namespace talix::cli {

class PhaseCommand {
 public:
  // Adds the command with its options.
  CLI::App& add_to(CLI::App& app);
  [[nodiscard]] bool parsed() const { return command_->parsed(); }
  std::string& format() { return format_; }
  // Runs it; gives the exit code.
  int run(const std::string& install_option, std::ostream& out, std::ostream& err) const;

 private:
  CLI::App* command_ = nullptr;
  std::string model_;
  std::string root_ = "gibbs";
  std::vector<std::string> components_;
  std::vector<std::string> fractions_;
  std::vector<std::string> temperature_;
  std::vector<std::string> pressure_;
  std::vector<std::string> settings_;
  bool pseudo_root_ = false;
  std::string format_ = "table";
};

class ModelsCommand {
 public:
  CLI::App& add_to(CLI::App& app);
  [[nodiscard]] bool parsed() const { return command_->parsed(); }
  std::string& format() { return format_; }
  int run(std::ostream& out) const;

 private:
  CLI::App* command_ = nullptr;
  std::string format_ = "table";
};

class KeysCommand {
 public:
  CLI::App& add_to(CLI::App& app);
  [[nodiscard]] bool parsed() const { return command_->parsed(); }
  std::string& format() { return format_; }
  int run(const std::string& install_option, std::ostream& out, std::ostream& err) const;

 private:
  CLI::App* command_ = nullptr;
  std::string model_;
  std::vector<std::string> components_;
  bool all_ = false;
  std::string format_ = "table";
};

}  // namespace talix::cli
