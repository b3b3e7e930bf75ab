#include "cli/app.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "cli/catalogue.h"
#include "cli/components_report.h"
#include "cli/failure.h"
#include "cli/flash_case.h"
#include "cli/flash_report.h"
#include "cli/install_directory.h"
#include "cli/quantity.h"
#include "cli/words.h"

namespace talix::cli {

namespace {

struct FlashOptions {
  std::vector<std::string> components;
  std::vector<std::string> feed;
  std::vector<std::string> temperature;
  std::vector<std::string> pressure;
  std::string basis = "mole";
  std::string format = "table";
};

struct ComponentsOptions {
  std::vector<std::string> text;
  std::string format = "table";
};

constexpr const char* kFlashHelp =
    "Splits a feed into vapour and liquid at a temperature and a pressure and prints the composition and "
    "the\n"
    "properties of both phases.\n"
    "\n"
    "Example:\n"
    "  talix flash --comp methane,ethane,n-decane --feed 0.8,0.15,0.05 -T 25C -P 50bar\n"
    "\n"
    "Units of input    temperature C (default), K, F; pressure bar (default), Pa, kPa, MPa, psi, atm, all "
    "absolute;\n"
    "                  feed in moles, or in mass with --basis mass. Any unit of amount will do; flows come "
    "out in it.\n"
    "Units of output   density kg/m3; compressibility 1/bar; enthalpy J/mol; entropy and ideal-gas heat "
    "capacity\n"
    "                  J/(mol K); heat capacities cv and cp J/(g K); speed of sound m/s; Joule-Thomson "
    "coefficient\n"
    "                  K/bar; viscosity mPa s; thermal conductivity W/(m K); surface tension mN/m. The "
    "vapour\n"
    "                  fraction is always in moles; with --basis mass the other fractions are mass "
    "fractions.\n"
    "Exit codes        0 done; 1 the flash failed, the message says why; 2 wrong arguments or no data bank.";

std::string joined(const std::vector<std::string>& parts, const char* separator) {
  std::string text;
  for (const std::string& part : parts) text += (text.empty() ? "" : separator) + part;
  return text;
}

int flash(const FlashOptions& options, const std::string& install_option, std::ostream& out,
          std::ostream& err) {
  const std::filesystem::path install = find_install(install_choice(install_option));
  const Catalogue catalogue = Catalogue::read(install);
  const double T_C = parse_temperature(joined(options.temperature, " "));
  const double P_bar = parse_pressure(joined(options.pressure, " "));
  std::vector<const CatalogueEntry*> components;
  for (const std::string& list : options.components) {
    const std::vector<const CatalogueEntry*> part = catalogue.parse_list(list);
    components.insert(components.end(), part.begin(), part.end());
  }
  std::vector<std::string> notes;
  const FlashRequest request = make_request(components, parse_feed(joined(options.feed, ",")), T_C, P_bar,
                                            options.basis == "mass" ? Basis::mass : Basis::mole, notes);
  for (const std::string& note : notes) err << "talix: note: " << note << "\n";

  const FlashResult result = run_flash(request, install);
  if (!result.ok) {
    if (options.format == "json") out << flash_json(request, result);
    err << "talix: " << result.message << "\n";
    return kExitFlashFailed;
  }
  out << (options.format == "json"  ? flash_json(request, result)
          : options.format == "csv" ? flash_csv(request, result)
                                    : flash_table(request, result));
  return kExitOk;
}

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

  FlashOptions flash_options;
  CLI::App* const flash_command = app.add_subcommand("flash", "isothermal flash of a mixture");
  flash_command->footer(kFlashHelp);
  flash_command
      ->add_option("--comp", flash_options.components,
                   "components with commas between: name, synonym, four-character code, CAS number or "
                   "catalogue number")
      ->type_name("LIST")
      ->required();
  flash_command->add_option("--feed", flash_options.feed, "amount of each component, with commas between")
      ->type_name("LIST")
      ->required();
  flash_command->add_option("-T,--temperature", flash_options.temperature, "temperature: C (default), K or F")
      ->type_name("VALUE[UNIT]")
      ->expected(1, 2)
      ->required();
  flash_command
      ->add_option("-P,--pressure", flash_options.pressure,
                   "absolute pressure: bar (default), Pa, kPa, MPa, psi or atm")
      ->type_name("VALUE[UNIT]")
      ->expected(1, 2)
      ->required();
  flash_command
      ->add_option("--basis", flash_options.basis, "of the feed and the fractions: mole (default) or mass")
      ->type_name("BASIS")
      ->check(CLI::IsMember({"mole", "mass"}));
  add_common(*flash_command, flash_options.format);

  ComponentsOptions components_options;
  CLI::App* const components_command =
      app.add_subcommand("components", "list or search the components of the bank");
  components_command->footer(
      "Example:\n  talix components pentane\n\nUnits: molar mass g/mol, critical temperature K, "
      "critical pressure bar, boiling point at 1.01325 bar K.");
  components_command->add_option(
      "TEXT", components_options.text,
      "part of a name, synonym, code, CAS number or formula, or a catalogue number");
  add_common(*components_command, components_options.format);

  try {
    // The parser takes the arguments from the end of the list.
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    return flash_command->parsed() ? flash(flash_options, install, out, err)
                                   : components(components_options, install, out, err);
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
