#include "cli/envelope_command.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <iostream>

#include "cli/envelope_plot.h"
#include "cli/envelope_report.h"
#include "cli/failure.h"
#include "cli/install_directory.h"
#include "cli/quantity.h"
#include "cli/words.h"

namespace talix::cli {

namespace {

constexpr const char* kEnvelopeHelp =
    R"(Traces the bubble line and the dew line of a mixture from a low pressure upwards, around the highest
temperature and the highest pressure with two phases, up to the critical point where both lines meet. The table, JSON
and CSV give the critical point, the cricondenbar and the cricondentherm beside the points, and the picture marks
them. A point comes from a bubble or dew flash (types bubble-t, bubble-p, dew-t, dew-p); where the liquid parts into
two liquids, and no bubble is formed, from isothermal flashes on both sides of the edge of the two-phase region (edge).
A bubble line of a mixture with a gas that hardly dissolves may be open: it goes on above 900 bar. Where a third phase
begins, or liquids part, the lines may not meet: the table and JSON say for each line why it ends where it does. A
point that no flash finds is listed as failed with the message of the library. With --verify 0 the lines end below the
critical point.

Example:
  talix envelope --comp methane,propane,n-decane --feed 0.7,0.2,0.1 --format csv --plot envelope.svg

Units             temperature C, pressure bar (absolute), density kg/m3
Exit codes        0 done; 1 a line could not be begun; 2 wrong arguments, no data bank or no plotting program.)";

// Counts points on a line of standard error that is written over.
class Counter {
 public:
  Counter(std::ostream& err, bool wanted) : err_(err), wanted_(wanted) {}
  ~Counter() {
    if (wanted_ && count_ > 0) err_ << "\n";
  }
  Counter(const Counter&) = delete;
  Counter& operator=(const Counter&) = delete;

  void operator()(const EnvelopePoint& point) {
    ++count_;
    if (!wanted_) return;
    char text[96];
    std::snprintf(text, sizeof text, "\rtalix: %s line, point %d, %.1f C, %.2f bar%s   ",
                  point.line == EnvelopeLine::dew ? "dew" : "bubble", count_, point.T_C, point.P_bar,
                  point.ok ? "" : " failed");
    err_ << text << std::flush;
  }

 private:
  std::ostream& err_;
  bool wanted_;
  int count_ = 0;
};

}  // namespace

CLI::App& EnvelopeCommand::add_to(CLI::App& app) {
  command_ = app.add_subcommand("envelope", "bubble and dew line of a mixture, as a table and as a picture");
  command_->footer(kEnvelopeHelp);
  add_mixture(*command_, options_.mixture);
  command_
      ->add_option("--from-P", options_.from_pressure,
                   "pressure at which both lines begin: 1 bar (default), any unit of pressure")
      ->type_name("VALUE[UNIT]")
      ->expected(1, 2);
  command_
      ->add_option("--points", options_.points, "about as many points on each line, 10 to 2000; 80 (default)")
      ->type_name("N")
      ->check(CLI::Range(kFewestPoints, kMostPoints));
  command_->add_option("--plot", options_.plot, "draw the lines into this file, .svg or .png")
      ->type_name("FILE");
  command_->add_flag("--progress", options_.progress, "count the points on standard error, as on a terminal");
  return *command_;
}

int EnvelopeCommand::run(const std::string& install_option, std::ostream& out, std::ostream& err) const {
  const std::filesystem::path plot = options_.plot;
  if (!plot.empty()) check_plot_file(plot);
  const std::filesystem::path install = find_install(install_choice(install_option));
  const Catalogue catalogue = Catalogue::read(install);
  EnvelopeOptions trace;
  trace.points = options_.points;
  if (!options_.from_pressure.empty()) trace.from_P_bar = parse_pressure(joined(options_.from_pressure, " "));
  if (!(trace.from_P_bar > 0)) throw UsageError("--from-P: the pressure must be above 0");
  std::vector<std::string> notes;
  FlashRequest mixture =
      make_request(components_of(options_.mixture, catalogue), parse_feed(joined(options_.mixture.feed, ",")),
                   kStartTemperature_C, trace.from_P_bar,
                   options_.mixture.basis == "mass" ? Basis::mass : Basis::mole, notes);
  mixture.verify = options_.mixture.verify;
  for (const std::string& note : notes) err << "talix: note: " << note << "\n";

  open_library(install);
  Envelope envelope;
  {
    Counter counter(err, options_.progress || (&err == &std::cerr && ::isatty(STDERR_FILENO) != 0));
    envelope = trace_envelope(
        mixture, trace, [](const FlashRequest& request) { return run_flash(request); },
        [&](const EnvelopePoint& point) { counter(point); });
  }
  out << (options_.format == "json"  ? envelope_json(mixture, envelope)
          : options_.format == "csv" ? envelope_csv(envelope)
                                     : envelope_table(mixture, envelope));
  int code = kExitOk;
  for (const auto* line : {&envelope.bubble, &envelope.dew}) {
    if (end_of(*line) != nullptr) continue;
    err << "talix: the " << (line == &envelope.dew ? "dew" : "bubble")
        << " line could not be begun: " << (line->empty() ? "no point" : line->front().message) << "\n";
    code = kExitFlashFailed;
  }
  const bool any = end_of(envelope.bubble) != nullptr || end_of(envelope.dew) != nullptr;
  if (!plot.empty() && any) write_plot(plot_script(mixture, envelope, plot), plot);
  return code;
}

}  // namespace talix::cli
