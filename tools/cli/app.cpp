#include "cli/app.h"

#include <CLI/CLI.hpp>

#include "cli/catalogue.h"
#include "cli/components_report.h"
#include "cli/envelope_command.h"
#include "cli/failure.h"
#include "cli/flash_command.h"
#include "cli/install_directory.h"
#include "cli/phase_command.h"
#include "cli/words.h"

namespace talix::cli {

namespace {

struct ComponentsOptions {
  std::vector<std::string> text;
  std::string format = "table";
};

int components(const ComponentsOptions& options, const std::string& install_option, std::ostream& out,
               std::ostream& err) {
  const Catalogue catalogue = Catalogue::read(find_install(install_choice(install_option)));
  const std::string text = joined(options.text, " ");
  const std::vector<const CatalogueEntry*> found = catalogue.search(text);
  if (found.empty()) {
    err << "talix: no component matches '" << text << "'";
    const std::vector<const CatalogueEntry*> near = catalogue.nearest(text, 5);
    for (std::size_t i = 0; i < near.size(); ++i) err << (i == 0 ? "; nearest: " : ", ") << near[i]->name;
    err << "\n";
  }
  if (options.format == "json") {
    out << components_json(found);
  } else if (options.format == "csv") {
    out << components_csv(found);
  } else if (!found.empty()) {
    out << components_table(found);
  }
  return kExitOk;
}

}  // namespace

int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
  CLI::App app{"Talix: phase equilibrium and properties of oil, gas and process fluids", "talix"};
  app.set_version_flag("--version", "talix " TALIX_VERSION);
  app.footer(
      "Example:\n  talix flash --comp methane,ethane,n-decane --feed 0.8,0.15,0.05 -T 25C -P 50bar\n\n"
      "talix COMMAND --help tells the options and the units of a command.");
  app.require_subcommand(1);
  std::string install;
  const auto add_common = [&](CLI::App& command, std::string& format) {
    command.add_option("--format", format, "table (default), json or csv")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"table", "json", "csv"}));
    command
        .add_option(
            "--install", install,
            "directory of the data bank; otherwise the variable TALIX_HOME, then ../share/talix beside "
            "the program")
        ->type_name("DIR");
  };

  FlashCommand flash;
  add_common(flash.add_to(app), flash.options().format);
  EnvelopeCommand envelope;
  add_common(envelope.add_to(app), envelope.options().format);

  PhaseCommand phase;
  add_common(phase.add_to(app), phase.format());
  ModelsCommand models;
  add_common(models.add_to(app), models.format());
  KeysCommand keys;
  add_common(keys.add_to(app), keys.format());

  ComponentsOptions components_options;
  CLI::App* const components_command =
      app.add_subcommand("components", "list or search the components of the bank");
  components_command->footer(
      "Example:\n  talix components pentane\n\nUnits: molar mass g/mol, critical temperature K, "
      "critical pressure bar, boiling point at 1.01325 bar K.");
  components_command->add_option("TEXT", components_options.text,
                                 "part of a name, synonym, code, CAS number or formula, a formula with its "
                                 "atoms in any order, or a catalogue "
                                 "number");
  add_common(*components_command, components_options.format);

  try {
    // The parser takes the arguments from the end of the list.
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    if (flash.parsed()) return flash.run(install, out, err);
    if (envelope.parsed()) return envelope.run(install, out, err);
    if (phase.parsed()) return phase.run(install, out, err);
    if (models.parsed()) return models.run(out);
    if (keys.parsed()) return keys.run(install, out, err);
    return components(components_options, install, out, err);
  } catch (const CLI::ParseError& error) {
    return app.exit(error, out, err) == 0 ? kExitOk : kExitUsage;
  } catch (const UsageError& error) {
    err << "talix: " << error.what() << "\n";
    return kExitUsage;
  } catch (const std::exception& error) {
    err << "talix: " << error.what() << "\n";
    return kExitUsage;
  }
}

}  // namespace talix::cli
