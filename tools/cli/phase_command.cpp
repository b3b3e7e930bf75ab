#include "cli/phase_command.h"

#include "cli/failure.h"
#include "cli/install_directory.h"
#include "cli/phase_case.h"
#include "cli/quantity.h"
#include "cli/words.h"
#include "talix/morve.h"

namespace talix::cli {

namespace {

constexpr const char* kPhaseHelp =
    R"(Computes one phase of a given composition by one model, without a flash: whether
such a phase is stable is not looked at.

Roots             vapour, liquid: that root of the equation; where it has one root alone the phase comes back as the
                  one that the root is, or as the one asked for when that cannot be told. gibbs (default): the root
                  of the lower Gibbs energy. --pseudo-root lets a stand-in take the place of a missing root.

Constants         --set replaces a constant before the calculation and may be repeated:
                    KEY=VALUE        a constant of the model         --set H-datum=298.15
                    KEY:1=VALUE      a constant of component 1       --set Tc:1=190.6
                    KEY:1,2=VALUE    a constant of components 1, 2   --set TETA0:1,2=0.02
                  Components are counted as --comp lists them. Where two sections have a key of the same name, the one
                  that the model reads is taken; SECTION.KEY names another: --set general.Omega:2=0.1. Values are in
                  the units of the engine, which talix keys MODEL tells with all names.

Example:
  talix phase --model PR --root vapour --comp methane,n-butane --x 0.9,0.1 -T 25C -P 30bar
  talix phase --model 47 --comp methane,CO2 --x 0.7,0.3 -T 250K -P 40bar --set TETA0:1,2=0.1 --format json

Units of input    temperature C (default), K, F; pressure bar (default), Pa, kPa, MPa, psi, atm, all absolute; amounts
                  in moles, which need not sum to 1.
Units of output   ln phi and Z without unit; d(ln phi)/dT 1/K and d(ln phi)/dP 1/bar, the plain derivatives;
                  d(ln phi_i)/dn_j for one mole of the mixture in all; molar volume cm3/mol; density kg/m3; enthalpy
                  J/mol and entropy J/(mol K), 0 for the ideal gas at 0 C (entropy: and 1 bar, pure) unless H-datum
                  is set; cp and cv J/(mol K); thermal expansion 1/K; compressibilities 1/bar; Joule-Thomson
                  coefficient K/bar; speed of sound m/s; thermal pressure coefficient bar/K.
Exit codes        0 done, perhaps with warnings among the messages; 1 the engine failed: status and messages say why;
                  2 wrong arguments or no data bank.)";

int root_code(const std::string& root) {
  if (root == "vapour") return MORVE_VAPOUR;
  return root == "liquid" ? MORVE_LIQUID : MORVE_GIBBS;
}

void report_failure(const EnginePhase& result, std::ostream& err) {
  err << "talix: " << result.call << " failed with status " << result.status << ", "
      << code_text(result.status) << "\n";
  for (const EngineMessage& message : result.messages) {
    err << "talix: " << message.routine << ": " << message.text;
    if (message.times > 1) err << " (" << message.times << " times)";
    err << "\n";
  }
}

}  // namespace

CLI::App& PhaseCommand::add_to(CLI::App& app) {
  command_ =
      app.add_subcommand("phase", "properties of one phase by any model of the engine, without a flash");
  command_->footer(kPhaseHelp);
  command_->add_option("--model", model_, "model: name, code, or PR, SRK, VDW, BWRS; see talix models")
      ->type_name("NAME|CODE")
      ->required();
  command_->add_option("--root", root_, "vapour, liquid or gibbs (default)")
      ->type_name("ROOT")
      ->check(CLI::IsMember({"vapour", "liquid", "gibbs"}));
  command_->add_flag("--pseudo-root", pseudo_root_,
                     "let a stand-in take the place of a root that is missing");
  command_
      ->add_option("--comp", components_,
                   "components with commas between: name, synonym, four-character code, CAS number or "
                   "catalogue number")
      ->type_name("LIST")
      ->required();
  command_
      ->add_option("--x", fractions_,
                   "amount of each component in moles, with commas between; 1 for a single one")
      ->type_name("LIST");
  command_->add_option("-T,--temperature", temperature_, "temperature: C (default), K or F")
      ->type_name("VALUE[UNIT]")
      ->expected(1, 2)
      ->required();
  command_
      ->add_option("-P,--pressure", pressure_, "absolute pressure: bar (default), Pa, kPa, MPa, psi or atm")
      ->type_name("VALUE[UNIT]")
      ->expected(1, 2)
      ->required();
  command_->add_option("--set", settings_, "replace a constant: KEY=VALUE, KEY:i=VALUE or KEY:i,j=VALUE")
      ->type_name("SETTING")
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  return *command_;
}

int PhaseCommand::run(const std::string& install_option, std::ostream& out, std::ostream& err) const {
  PhaseRequest request;
  request.model = find_model(model_);
  request.root = root_code(root_);
  request.pseudo_root = pseudo_root_;
  request.T_C = parse_temperature(joined(temperature_, " "));
  request.P_bar = parse_pressure(joined(pressure_, " "));
  for (const std::string& text : settings_) request.settings.push_back(parse_setting(text));

  const std::filesystem::path install = find_install(install_choice(install_option));
  const Catalogue catalogue = Catalogue::read(install);
  for (const std::string& list : components_)
    for (const CatalogueEntry* const entry : catalogue.parse_list(list)) request.components.push_back(entry);
  check_component_count(request.components.size());
  if (!fractions_.empty()) request.x = parse_amounts(joined(fractions_, ","), "value of --x");
  if (fractions_.empty() && request.components.size() == 1) request.x = {1.0};
  if (request.x.size() != request.components.size()) {
    throw UsageError(std::to_string(request.components.size()) + " components but " +
                     std::to_string(request.x.size()) +
                     " values of --x; it takes one value for each component of --comp");
  }

  const EnginePhase result = run_phase(request, install);
  if (!result.ok) {
    if (format_ == "json") out << phase_json(request, result);
    report_failure(result, err);
    return kExitFlashFailed;
  }
  out << (format_ == "json"  ? phase_json(request, result)
          : format_ == "csv" ? phase_csv(request, result)
                             : phase_table(request, result));
  return kExitOk;
}

}  // namespace talix::cli
