// How far a fit is: a bar on a terminal, a line for every tenth elsewhere.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace talix::bank {

class FitProgress {
 public:
  // ALL components, of which DONE are taken over from an interrupted run. Quiet where SILENT.
  FitProgress(std::size_t all, std::size_t done, bool silent);
  // One more is done; its name stands behind the bar. Callers take turns.
  void step(const std::string& name);
  // Ends the line of the bar.
  void finish();
  [[nodiscard]] double seconds() const;

  // Text of the bar for DONE of ALL after SECONDS spent on FITTED of them.
  static std::string bar(std::size_t done, std::size_t all, std::size_t fitted, double seconds);

 private:
  std::size_t all_, done_, taken_over_;
  bool silent_, terminal_;
  std::chrono::steady_clock::time_point start_;
};

}  // namespace talix::bank
