// The picture of a phase envelope, drawn by gnuplot.
#pragma once

#include <filesystem>
#include <string>

#include "cli/envelope.h"

namespace talix::cli {

inline constexpr const char* kPlotProgram = "gnuplot";

// Throws UsageError where the name of the file ends neither with .svg nor with .png.
void check_plot_file(const std::filesystem::path& file);

// What the plotting program reads: settings, both lines as data, failed points, the gap between the lines
// where these do not meet, and the marked states.
std::string plot_script(const FlashRequest& mixture, const Envelope& envelope,
                        const std::filesystem::path& file);

// Draws the picture; throws UsageError where the program is missing or fails.
void write_plot(const std::string& script, const std::filesystem::path& file,
                const std::string& program = kPlotProgram);

}  // namespace talix::cli
