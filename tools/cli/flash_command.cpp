#include "cli/flash_command.h"

#include <filesystem>
#include <system_error>

#include "cli/failure.h"
#include "cli/flash_case.h"
#include "cli/flash_report.h"
#include "cli/install_directory.h"
#include "cli/quantity.h"
#include "cli/words.h"
#include "talix/talix.h"

namespace talix::cli {

namespace {

constexpr const char* kFlashHelp = R"(Splits a feed into vapour and liquid and prints the composition and the
properties of both phases. --type tells what is given and what is found.

Types             tp         temperature and pressure given (default)
                  bubble-t   temperature of the first bubble at a pressure; bubble-p  its pressure at a temperature
                  dew-t      temperature of the first drop at a pressure; dew-p  its pressure at a temperature
                  vfrac-t    temperature at a pressure and a vapour fraction, --vfrac
                  vfrac-p    pressure at a temperature and a vapour fraction, --vfrac
                  ph         temperature and split at a pressure and the enthalpy of the feed, --H
                  ph-nested  the same by nested searches, slower
                  fast       as tp, by a faster and less careful search
                  feed       no split: properties of the feed as vapour and as liquid
                  What is found may be given as a start value: -T or -P, otherwise 25 C and 10 bar.

Example:
  talix flash --comp methane,ethane,n-decane --feed 0.8,0.15,0.05 -T 25C -P 50bar
  talix flash --comp methane,ethane,n-decane --feed 0.8,0.15,0.05 --type dew-t -P 50bar

Units of input    temperature C (default), K, F; pressure bar (default), Pa, kPa, MPa, psi, atm, all absolute;
                  enthalpy J/mol (default), kJ/mol, kJ/kmol, MJ/kmol, J/kg, kJ/kg, per amount of the feed, 0 for the
                  ideal gas at 0 C; feed in moles, or in mass with --basis mass. Any unit of amount will do; flows
                  come out in it.
Units of output   density kg/m3; compressibility 1/bar; enthalpy J/mol; entropy and ideal-gas heat capacity
                  J/(mol K); heat capacities cv and cp J/(g K); speed of sound m/s; Joule-Thomson coefficient
                  K/bar; viscosity mPa s; thermal conductivity W/(m K); surface tension mN/m. The vapour
                  fraction is always in moles; with --basis mass the other fractions are mass fractions.
Exit codes        0 done, perhaps with a warning; 1 the flash failed, the message says why; 2 wrong arguments or no
                  data bank.)";

// What the arguments ask for.
FlashRequest requested(const FlashOptions& options, const Catalogue& catalogue,
                       std::vector<std::string>& notes) {
  const FlashType type = parse_flash_type(options.type);
  check_options(type, {!options.temperature.empty(), !options.pressure.empty(),
                       !options.vapour_fraction.empty(), !options.enthalpy.empty()});
  const double T_C =
      options.temperature.empty() ? kStartTemperature_C : parse_temperature(joined(options.temperature, " "));
  const double P_bar =
      options.pressure.empty() ? kStartPressure_bar : parse_pressure(joined(options.pressure, " "));
  const Basis basis = options.mixture.basis == "mass" ? Basis::mass : Basis::mole;
  FlashRequest request =
      make_request(components_of(options.mixture, catalogue), parse_feed(joined(options.mixture.feed, ",")),
                   T_C, P_bar, basis, notes);
  request.type = type;
  request.verify = options.mixture.verify;
  if (!options.vapour_fraction.empty())
    request.vapour_fraction = parse_vapour_fraction(options.vapour_fraction);
  if (!options.enthalpy.empty()) request.enthalpy = parse_enthalpy(joined(options.enthalpy, " "));
  return request;
}

// Lets the library write its report and says where it stands.
void report_errors(const std::filesystem::path& install, std::ostream& err) {
  const std::filesystem::path file = install / "talix.err";
  std::error_code missing;
  const std::uintmax_t before =
      std::filesystem::exists(file, missing) ? std::filesystem::file_size(file, missing) : 0;
  TALIXERRORREPORT();
  const bool grown =
      std::filesystem::exists(file, missing) && std::filesystem::file_size(file, missing) > before;
  if (grown)
    err << "talix: error report added to " << file.string() << "\n";
  else
    err << "talix: no error report: the flash met no failure, or " << file.string() << " cannot be written\n";
}

}  // namespace

CLI::App& FlashCommand::add_to(CLI::App& app) {
  command_ = app.add_subcommand("flash", "flash of a mixture: at T and P, bubble and dew points, adiabatic");
  command_->footer(kFlashHelp);
  add_mixture(*command_, options_.mixture);
  command_
      ->add_option("--type", options_.type,
                   "tp (default), bubble-t, bubble-p, dew-t, dew-p, vfrac-t, vfrac-p, ph, ph-nested, fast or "
                   "feed")
      ->type_name("TYPE");
  command_->add_option("-T,--temperature", options_.temperature, "temperature: C (default), K or F")
      ->type_name("VALUE[UNIT]")
      ->expected(1, 2);
  command_
      ->add_option("-P,--pressure", options_.pressure,
                   "absolute pressure: bar (default), Pa, kPa, MPa, psi or atm")
      ->type_name("VALUE[UNIT]")
      ->expected(1, 2);
  command_->add_option("--vfrac", options_.vapour_fraction, "vapour fraction in moles, 0 to 1")
      ->type_name("VALUE");
  command_
      ->add_option("--H", options_.enthalpy,
                   "enthalpy of the feed: J/mol (default), kJ/mol, kJ/kmol, MJ/kmol, J/kg or kJ/kg")
      ->type_name("VALUE[UNIT]")
      ->expected(1, 2);
  command_->add_flag("--error-report", options_.error_report,
                     "let the library add what failed to talix.err in the install directory");
  return *command_;
}

int FlashCommand::run(const std::string& install_option, std::ostream& out, std::ostream& err) const {
  const std::filesystem::path install = find_install(install_choice(install_option));
  const Catalogue catalogue = Catalogue::read(install);
  std::vector<std::string> notes;
  const FlashRequest request = requested(options_, catalogue, notes);
  for (const std::string& note : notes) err << "talix: note: " << note << "\n";

  const FlashResult result = run_flash(request, install);
  if (options_.error_report) report_errors(install, err);
  if (!result.ok) {
    if (options_.format == "json") out << flash_json(request, result);
    err << "talix: " << result.message << "\n";
    return kExitFlashFailed;
  }
  if (!result.message.empty()) err << "talix: warning: " << result.message << "\n";
  out << (options_.format == "json"  ? flash_json(request, result)
          : options_.format == "csv" ? flash_csv(request, result)
                                     : flash_table(request, result));
  return kExitOk;
}

}  // namespace talix::cli
