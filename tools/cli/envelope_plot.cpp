#include "cli/envelope_plot.h"

#include <algorithm>
#include <system_error>

#include "cli/child_process.h"
#include "cli/envelope_report.h"
#include "cli/failure.h"
#include "cli/words.h"

namespace talix::cli {

namespace {

std::string extension(const std::filesystem::path& file) { return lower(file.extension().string()); }

// A text as a string of the plotting program: in single quotes only a quote has a meaning, and is doubled. A line
// break would end the command.
std::string quoted(const std::string& text) {
  std::string word = "'";
  for (const char c : text) {
    if (c == '\'') word += '\'';
    word += c == '\n' || c == '\r' ? ' ' : c;
  }
  return word + "'";
}

std::string state(const EnvelopePoint& point) {
  return shortest(static_cast<float>(point.T_C)) + " " + shortest(static_cast<float>(point.P_bar)) + "\n";
}

// A named block of data with the points of a kind.
void add_block(std::string& script, const std::string& name,
               const std::vector<const EnvelopePoint*>& points) {
  script += "$" + name + " << EOD\n";
  for (const EnvelopePoint* const point : points) script += state(*point);
  script += "EOD\n";
}

std::vector<const EnvelopePoint*> points_of(const std::vector<EnvelopePoint>& line, bool ok) {
  std::vector<const EnvelopePoint*> points;
  for (const EnvelopePoint& point : line)
    if (point.ok == ok) points.push_back(&point);
  return points;
}

// Both ends of the stretch without points between the lines.
std::string gap_states(const std::vector<const EnvelopePoint*>& bubble,
                       const std::vector<const EnvelopePoint*>& dew) {
  if (bubble.empty() || dew.empty()) return {};
  return state(*bubble.back()) + state(*dew.back());
}

// A block of data with one state, and the curve that marks it.
void add_mark(std::string& script, std::vector<std::string>& curves, const std::string& name,
              const std::string& title, int type, const std::optional<EnvelopeState>& at) {
  if (!at) return;
  script += "$" + name + " << EOD\n" + shortest(static_cast<float>(at->T_C)) + " " +
            shortest(static_cast<float>(at->P_bar)) + "\nEOD\n";
  curves.push_back("$" + name + " using 1:2 with points pointtype " + std::to_string(type) +
                   " pointsize 1.2 linecolor '#222222' title " + quoted(title));
}

}  // namespace

void check_plot_file(const std::filesystem::path& file) {
  if (extension(file) != ".svg" && extension(file) != ".png")
    throw UsageError("--plot " + file.string() + ": the name must end with .svg or .png");
}

std::string plot_script(const FlashRequest& mixture, const Envelope& envelope,
                        const std::filesystem::path& file) {
  std::vector<const EnvelopePoint*> failed = points_of(envelope.bubble, false);
  const std::vector<const EnvelopePoint*> more = points_of(envelope.dew, false);
  failed.insert(failed.end(), more.begin(), more.end());
  const std::vector<const EnvelopePoint*> bubble = points_of(envelope.bubble, true);
  const std::vector<const EnvelopePoint*> dew = points_of(envelope.dew, true);

  const bool open = envelope.bubble_open || envelope.dew_open;

  std::string script = "set encoding utf8\n";
  script += extension(file) == ".svg" ? "set terminal svg size 900,640 noenhanced background '#ffffff'\n"
                                      : "set terminal pngcairo size 1350,960 fontscale 1.4 linewidth 1.4 "
                                        "noenhanced background '#ffffff'\n";
  script += "set output " + quoted(file.string()) + "\n";
  script += "set title " + quoted("Phase envelope: " + mixture_title(mixture, 70)) + "\n";
  script += "set xlabel 'Temperature [°C]'\nset ylabel 'Pressure, absolute [bar]'\n";
  // An open line rises on the left.
  script += "set grid linecolor '#dddddd'\nset key top " + std::string(open ? "right" : "left") +
            "\nset yrange [0:*]\n";
  add_block(script, "bubble", bubble);
  add_block(script, "dew", dew);
  add_block(script, "failed", failed);
  std::vector<std::string> curves;
  if (!bubble.empty())
    curves.push_back("$bubble using 1:2 with lines linewidth 2 linecolor '#1f5fa8' title 'bubble line'");
  if (!dew.empty())
    curves.push_back("$dew using 1:2 with lines linewidth 2 linecolor '#c0392b' title 'dew line'");
  if (const std::string gaps = gap_states(bubble, dew); !gaps.empty() && !envelope.critical && !open) {
    script += "$gaps << EOD\n" + gaps + "EOD\n";
    curves.push_back(
        "$gaps using 1:2 with linespoints linewidth 1 dashtype 2 pointtype 6 pointsize 0.6 linecolor "
        "'#444444' "
        "title 'the lines do not meet'");
  }
  if (!failed.empty())
    curves.push_back(
        "$failed using 1:2 with points pointtype 2 pointsize 0.9 linecolor '#888888' title 'not found'");
  add_mark(script, curves, "critical", "critical point", 7, envelope.critical);
  add_mark(script, curves, "cricondenbar", "cricondenbar", 8, envelope.cricondenbar);
  add_mark(script, curves, "cricondentherm", "cricondentherm", 4, envelope.cricondentherm);
  script += "plot " + joined(curves, ", ") + "\nunset output\n";
  return script;
}

void write_plot(const std::string& script, const std::filesystem::path& file, const std::string& program) {
  const ChildResult result = run_child({program, "-"}, script);
  if (!result.started || (result.code == 127 && result.errors.empty())) {
    throw UsageError(
        "--plot: the program " + program +
        " is not there; install it with ./dev setup, or on Debian with: apt-get install gnuplot-nox");
  }
  std::error_code error;
  if (result.code != 0 || !std::filesystem::exists(file, error)) {
    throw UsageError("--plot " + file.string() + ": " + program + " failed: " +
                     (result.errors.empty() ? "no message" : std::string(strip(result.errors))));
  }
}

}  // namespace talix::cli
