// talix models and talix keys: what the engine holds.
#include <algorithm>
#include <nlohmann/json.hpp>

#include "cli/engine.h"
#include "cli/engine_keys.h"
#include "cli/failure.h"
#include "cli/install_directory.h"
#include "cli/json_number.h"
#include "cli/phase_command.h"
#include "cli/words.h"

namespace talix::cli {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kDefaultComponents = "methane,ethane";

constexpr const char* kKeysHelp =
    R"(Lists the constants that talix phase --set can replace, with the section and the
routine that they belong to, their values for the components named, and their units. Without --all: the sections that
the model reads. A constant without a unit is a coefficient of a correlation of the bank or a pure number.

Example:
  talix keys PR --comp methane,CO2
  talix keys 41 --all --format csv)";

// What a model computes, in words.
std::string computed(const EngineModel& model) {
  std::vector<std::string> parts;
  if (model.fugacity) parts.emplace_back("fugacity");
  if (model.volume) parts.emplace_back("volume");
  if (model.enthalpy) parts.emplace_back("enthalpy");
  return parts.empty() ? "nothing in this version" : joined(parts, ", ");
}

std::string models_table(const std::vector<EngineModel>& models) {
  std::string text = to_right("Code", 4) + "  " + to_left("Name", 30) + "  " + to_left("Class", 18) +
                     "  Computes\n" + std::string(4 + 2 + 30 + 2 + 18 + 2 + 25, '-') + "\n";
  for (const EngineModel& model : models)
    text += to_right(std::to_string(model.code), 4) + "  " + to_left(model.name, 30) + "  " +
            to_left(code_text(model.class_code), 18) + "  " + computed(model) + "\n";
  return text;
}

std::string models_csv(const std::vector<EngineModel>& models) {
  std::string text = "code,name,class,fugacity,volume,enthalpy\n";
  for (const EngineModel& model : models)
    text += std::to_string(model.code) + "," + csv_field(model.name) + "," +
            csv_field(code_text(model.class_code)) + "," + (model.fugacity ? "1" : "0") + "," +
            (model.volume ? "1" : "0") + "," + (model.enthalpy ? "1" : "0") + "\n";
  return text;
}

std::string models_json(const std::vector<EngineModel>& models) {
  Json list = Json::array();
  for (const EngineModel& model : models)
    list.push_back({{"code", model.code},
                    {"name", model.name},
                    {"class", code_text(model.class_code)},
                    {"fugacity", model.fugacity},
                    {"volume", model.volume},
                    {"enthalpy", model.enthalpy}});
  return list.dump(2) + "\n";
}

// A key as --set takes it.
std::string setting_name(const EngineKey& key) {
  std::string text = std::string(key.section->name) + "." + key.name;
  if (key.i != 0) text += ":" + std::to_string(key.i);
  if (key.j != 0) text += "," + std::to_string(key.j);
  return text;
}

std::string section_text(const EngineKey& key) {
  return std::string(routine_of(key.section->scope)) + ", section " + std::to_string(key.section->code);
}

std::string keys_table(const EngineModel& model, const std::vector<const CatalogueEntry*>& components,
                       const std::vector<EngineKey>& keys) {
  std::string text = "Constants for " + model.name + ", model " + std::to_string(model.code) + "\n";
  for (std::size_t i = 0; i < components.size(); ++i)
    text += "  component " + std::to_string(i + 1) + "  " + components[i]->name + "\n";
  std::size_t width = 24;
  for (const EngineKey& key : keys) width = std::max(width, columns_of(setting_name(key)));
  text += "\n" + to_left("Key for --set", width) + to_right("Value", 24) + "  " + to_left("Unit", 12) +
          "Routine\n" + std::string(width + 24 + 2 + 12 + 19, '-') + "\n";
  for (const EngineKey& key : keys)
    text += to_left(setting_name(key), width) + to_right(shortest(key.value), 24) + "  " +
            to_left(key.unit, 12) + section_text(key) + "\n";
  return text;
}

std::string keys_csv(const std::vector<EngineKey>& keys) {
  std::string text = "key,section,section_code,routine,component,second_component,value,unit\n";
  for (const EngineKey& key : keys)
    text += csv_field(key.name) + "," + std::string(key.section->name) + "," +
            std::to_string(key.section->code) + "," + routine_of(key.section->scope) + "," +
            std::to_string(key.i) + "," + std::to_string(key.j) + "," + shortest(key.value) + "," + key.unit +
            "\n";
  return text;
}

std::string keys_json(const std::vector<EngineKey>& keys) {
  Json list = Json::array();
  for (const EngineKey& key : keys)
    list.push_back({{"key", key.name},
                    {"section", key.section->name},
                    {"section_code", key.section->code},
                    {"routine", routine_of(key.section->scope)},
                    {"component", key.i == 0 ? Json(nullptr) : Json(key.i)},
                    {"second_component", key.j == 0 ? Json(nullptr) : Json(key.j)},
                    {"value", json_number(std::optional(key.value))},
                    {"unit", key.unit}});
  return list.dump(2) + "\n";
}

// All keys of a section for a list of components.
void add_keys(const KeySection& section, int components, std::vector<EngineKey>& keys) {
  const auto add = [&](int i, int j) {
    const std::vector<EngineKey> found = read_keys(section, i, j);
    keys.insert(keys.end(), found.begin(), found.end());
  };
  if (section.scope == KeyScope::model) return add(0, 0);
  for (int i = 1; i <= components; ++i) {
    if (section.scope == KeyScope::component) add(i, 0);
    for (int j = i + 1; section.scope == KeyScope::pair && j <= components; ++j) add(i, j);
  }
}

}  // namespace

CLI::App& ModelsCommand::add_to(CLI::App& app) {
  command_ = app.add_subcommand("models", "list the models of the engine and what each computes");
  command_->footer(
      "Example:\n  talix models\n\nCodes and names are what talix phase --model and talix keys take.");
  return *command_;
}

int ModelsCommand::run(std::ostream& out) const {
  const std::vector<EngineModel> models = engine_models();
  out << (format_ == "json"  ? models_json(models)
          : format_ == "csv" ? models_csv(models)
                             : models_table(models));
  return kExitOk;
}

CLI::App& KeysCommand::add_to(CLI::App& app) {
  command_ =
      app.add_subcommand("keys", "list the constants of the engine that can be replaced, with their values");
  command_->footer(kKeysHelp);
  command_->add_option("MODEL", model_, "model: name, code, or PR, SRK, VDW, BWRS; see talix models")
      ->required();
  command_
      ->add_option("--comp", components_,
                   "components whose constants are listed, with commas between (default methane,ethane)")
      ->type_name("LIST");
  command_->add_flag("--all", all_, "every section of the engine, also those that the model does not read");
  return *command_;
}

int KeysCommand::run(const std::string& install_option, std::ostream& out, std::ostream& err) const {
  const EngineModel model = find_model(model_);
  const std::filesystem::path install = find_install(install_choice(install_option));
  const Catalogue catalogue = Catalogue::read(install);
  std::vector<const CatalogueEntry*> components;
  for (const std::string& list :
       components_.empty() ? std::vector<std::string>{kDefaultComponents} : components_)
    for (const CatalogueEntry* const entry : catalogue.parse_list(list)) components.push_back(entry);
  check_component_count(components.size());

  try {
    start_engine(install, components, model);
  } catch (const EngineFailure& failure) {
    err << "talix: " << failure.call << " failed with status " << failure.status << ", "
        << code_text(failure.status) << "\n";
    for (const EngineMessage& message : engine_messages())
      err << "talix: " << message.routine << ": " << message.text << "\n";
    return kExitFlashFailed;
  }
  std::vector<EngineKey> keys;
  for (const KeySection& section : key_sections())
    if (all_ || reads_section(model, section)) add_keys(section, static_cast<int>(components.size()), keys);
  out << (format_ == "json"  ? keys_json(keys)
          : format_ == "csv" ? keys_csv(keys)
                             : keys_table(model, components, keys));
  return kExitOk;
}

}  // namespace talix::cli
