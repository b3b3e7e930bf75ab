#include "bank/fit_progress.h"

#include <unistd.h>

#include <cstdio>

namespace talix::bank {

namespace {

constexpr std::size_t kWidth = 30;  // characters of the bar

std::string duration(double seconds) {
  char text[40];
  if (seconds < 90.0)
    std::snprintf(text, sizeof text, "%.0f s", seconds);
  else
    std::snprintf(text, sizeof text, "%.0f min", seconds / 60.0);
  return text;
}

}  // namespace

FitProgress::FitProgress(std::size_t all, std::size_t done, bool silent)
    : all_(all),
      done_(done),
      taken_over_(done),
      silent_(silent),
      terminal_(::isatty(STDERR_FILENO) != 0),
      start_(std::chrono::steady_clock::now()) {}

double FitProgress::seconds() const {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
}

std::string FitProgress::bar(std::size_t done, std::size_t all, std::size_t fitted, double seconds) {
  const std::size_t full = all > 0 ? kWidth * done / all : kWidth;
  std::string text = "[" + std::string(full, '#') + std::string(kWidth - full, '.') + "] " +
                     std::to_string(done) + " of " + std::to_string(all);
  if (fitted > 0 && done < all) {
    const double left = seconds / static_cast<double>(fitted) * static_cast<double>(all - done);
    text += ", " + duration(left) + " to go";
  } else if (done == all) {
    text += ", " + duration(seconds);
  }
  return text;
}

void FitProgress::step(const std::string& name) {
  ++done_;
  if (silent_) return;
  const std::string text = bar(done_, all_, done_ - taken_over_, seconds());
  if (terminal_) {
    std::fprintf(stderr, "\r%s  %-28.28s", text.c_str(), name.c_str());
  } else if (10 * done_ / all_ != 10 * (done_ - 1) / all_) {
    std::fprintf(stderr, "%s\n", text.c_str());
  }
}

void FitProgress::finish() {
  if (!silent_ && terminal_) std::fprintf(stderr, "\n");
}

}  // namespace talix::bank
