// talix-bank: makes, prints, checks and fits the component bank.

#include <CLI/CLI.hpp>

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "bank/build.h"
#include "bank/check.h"
#include "bank/dump.h"
#include "bank/fit.h"
#include "bank/fit_pairs.h"
#include "bank/parameter_fit.h"

namespace {

// Install directory where none is given: TALIX_HOME, then share/talix beside the folder of the program.
std::filesystem::path install_directory() {
  if (const char* const home = std::getenv("TALIX_HOME"); home != nullptr && *home != '\0') return home;
  std::error_code failed;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", failed);
  return failed ? std::filesystem::path("share/talix")
                : program.parent_path().parent_path() / "share" / "talix";
}

}  // namespace

int main(int argc, char** argv) {
  using namespace talix::bank;

  CLI::App app{"talix-bank: the component bank of Talix"};
  app.require_subcommand(1);
  int result = 0;

  BuildOptions build_options;
  build_options.out_dir = install_directory() / "Zandor";
  CLI::App* const build = app.add_subcommand("build", "compile the tables of a folder into the bank files");
  build->add_option("--data", build_options.data_dir, "folder of the tables")->capture_default_str();
  build->add_option("--out", build_options.out_dir, "folder of the bank files")->capture_default_str();
  build
      ->add_option(
          "--with", build_options.with,
          "table of your own components, which are added to the bank or override it; may be repeated")
      ->type_name("FILE.csv")
      ->allow_extra_args(false);
  build->callback([&] { result = build_main(build_options); });

  DumpOptions dump_options;
  dump_options.share = install_directory();
  CLI::App* const dump = app.add_subcommand("dump", "print one record");
  dump->add_option("component", dump_options.component, "number, code, name or CAS number")->required();
  dump->add_option("--share,--install", dump_options.share, "install directory or folder of the bank files")
      ->capture_default_str();
  dump->add_flag("--pairs", dump_options.pairs, "also the pairs with this component");
  dump->callback([&] { result = dump_main(dump_options); });

  CheckOptions check_options;
  check_options.share = install_directory();
  bool no_report = false;
  CLI::App* const check = app.add_subcommand("check", "validate every record and write the accuracy report");
  check->add_option("--share,--install", check_options.share, "install directory or folder of the bank files")
      ->capture_default_str();
  check->add_option("--data", check_options.data_dir, "folder of the reference tables")
      ->capture_default_str();
  check->add_option("--golden", check_options.golden_dir, "folder of the reference states of phases")
      ->capture_default_str();
  check->add_option("--report", check_options.report, "file of the accuracy report")->capture_default_str();
  check->add_flag("--no-report", no_report, "validate only");
  check->callback([&] {
    if (no_report) check_options.report.clear();
    result = check_main(check_options);
  });

  FitOptions fit_options;
  fit_options.data_dir = "data";
  CLI::App* const fit = app.add_subcommand("fit", "fit the curves and correlations to the reference tables");
  fit->add_option("--data", fit_options.data_dir, "folder of the tables, read and written")
      ->capture_default_str();
  fit->add_option("--only", fit_options.only,
                  "codes or numbers of the components to fit, separated by commas; all without it")
      ->delimiter(',');
  fit->add_option("--jobs", fit_options.jobs, "threads; 0 for one a core")->capture_default_str();
  fit->add_flag("--fresh", fit_options.fresh, "take nothing over from a run that was interrupted");
  fit->add_flag("--verbose", fit_options.verbose, "a line of figures for each component");
  bool only_curves = false, only_transport = false;
  CLI::Option* const curves =
      fit->add_flag("--curves", only_curves, "only the curves, ideal gas and Wagner sets");
  fit->add_flag("--transport", only_transport, "only the saturation and transport sets; takes seconds")
      ->excludes(curves);
  bool only_pairs = false;
  fit->add_flag("--pairs", only_pairs, "only the interaction parameters of pairs; takes minutes")
      ->excludes(curves);
  fit->callback([&] {
    if (only_pairs) {
      result = fit_pairs_main({.data_dir = fit_options.data_dir, .jobs = fit_options.jobs});
      return;
    }
    fit_options.curves = !only_transport;
    fit_options.transport = !only_curves;
    result = fit_main(fit_options);
  });

  ParameterFitOptions parameter_options;
  CLI::App* const parameters =
      app.add_subcommand("parameters", "fit the tables of the polar constants and of the hydrate formers");
  parameters->add_option("--data", parameter_options.data_dir, "folder of the tables, read and written")
      ->capture_default_str();
  parameters->callback([&] { result = parameter_fit_main(parameter_options); });

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error);
  }
  return result;
}
