// talix models and talix keys: what the engine holds.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "cli/app.h"
#include "cli/engine.h"
#include "cli/engine_keys.h"
#include "cli/failure.h"
#include "support/test_support.h"
#include "tools/cli_run.h"

namespace talix::cli {
namespace {

using nlohmann::json;

using test::Output;
using test::talix;

bool holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(CliModels, ListsEveryModelWithWhatItComputesWithoutABank) {
  const json list = json::parse(talix({"models", "--format", "json"}).out);
  EXPECT_EQ(list.size(), 40U);
  const auto row = [&](int code) {
    return *std::find_if(list.begin(), list.end(),
                         [&](const json& model) { return model.at("code") == code; });
  };
  EXPECT_EQ(row(27).at("name"), "Peng-Robinson");
  EXPECT_EQ(row(27).at("class"), "equation of state");
  EXPECT_TRUE(row(27).at("fugacity").get<bool>());
  EXPECT_FALSE(row(4).at("fugacity").get<bool>());
  EXPECT_TRUE(row(4).at("volume").get<bool>());
  EXPECT_FALSE(row(55).at("volume").get<bool>());
  const std::string table = talix({"models"}).out;
  EXPECT_TRUE(
      holds(table, "  47  Soave-Redlich-Kwong             equation of state   fugacity, volume, enthalpy\n"))
      << table;
  EXPECT_TRUE(holds(table, "nothing in this version"));
  EXPECT_TRUE(
      holds(talix({"models", "--format", "csv"}).out, "\n121,van der Waals,equation of state,1,1,1\n"));
}

TEST(CliKeys, ListsValuesUnitsAndRoutines) {
  const Output table = talix({"keys", "PR", "--comp", "methane,CO2"});
  ASSERT_EQ(table.code, kExitOk) << table.err;
  for (const char* part :
       {"component 1  methane", "general.Tc:2", "interaction.TETA0:1,2", "ideal-gas.H-datum",
        "SURMD0, section 85", "SURPC0, section 0", "SURBI0, section 41", "bar"})
    EXPECT_TRUE(holds(table.out, part)) << part;
  EXPECT_FALSE(holds(table.out, "curves."));
  EXPECT_TRUE(holds(talix({"keys", "41"}).out, "curves.Asub-1:1"));
  EXPECT_TRUE(holds(talix({"keys", "42"}).out, "nrtl.T-t0-ji:1,2"));
  EXPECT_TRUE(holds(talix({"keys", "43"}).out, "a-excess.Tkij"));
  EXPECT_TRUE(holds(talix({"keys", "27", "--format", "csv"}).out, "\nTc,general,0,SURPC0,1,0,190.56"));
}

TEST(CliKeys, EveryKeyOfEverySectionCanBeSet) {
  const json keys =
      json::parse(talix({"keys", "43", "--comp", "n-hexane,n-decane", "--all", "--format", "json"}).out);
  std::set<std::string> sections;
  for (const json& key : keys) {
    sections.insert(key.at("routine").get<std::string>() + key.at("section").get<std::string>());
    std::string text = key.at("section").get<std::string>() + "." + key.at("key").get<std::string>();
    if (!key.at("component").is_null()) text += ":" + std::to_string(key.at("component").get<int>());
    if (!key.at("second_component").is_null())
      text += "," + std::to_string(key.at("second_component").get<int>());
    // A fit is behind the pressure of the fit point: it stays.
    const bool fit_pressure = key.at("key") == "Pkij";
    const double value = fit_pressure ? key.at("value").get<double>() : 273.15;
    const KeySetting setting = parse_setting(text + "=" + json(value).dump());
    EXPECT_NO_THROW(apply_setting(setting, find_model("43"), 2)) << text;
    bool found = false;
    for (const KeySection& section : key_sections()) {
      if (section.name != setting.section || routine_of(section.scope) != key.at("routine")) continue;
      for (const EngineKey& now : read_keys(section, setting.i, setting.j))
        if (now.name == setting.key) {
          found = true;
          // Counts and flags keep the whole part.
          EXPECT_TRUE(now.value == value || now.value == 273.0 || now.value <= 8.0)
              << text << " " << now.value;
        }
    }
    EXPECT_TRUE(found) << text;
  }
  EXPECT_GE(sections.size(), 22U);
  EXPECT_GT(keys.size(), 150U);
}

TEST(CliKeys, EveryKeyHasItsUnitOrTheSectionHasNone) {
  ASSERT_EQ(talix({"keys", "41", "--comp", "methane,ethane"}).code, kExitOk);
  for (const KeySection& section : key_sections()) {
    const int i = section.scope == KeyScope::model ? 0 : 1;
    const int j = section.scope == KeyScope::pair ? 2 : 0;
    const std::size_t count = read_keys(section, i, j).size();
    if (section.units.empty() || count == 0) continue;
    EXPECT_EQ(section.units.size(), count) << section.name;
  }
}

TEST(CliKeys, SettingsAreReadAsTyped) {
  const KeySetting model = parse_setting(" H-datum = 298.15 ");
  EXPECT_EQ(model.key, "H-datum");
  EXPECT_EQ(model.i, 0);
  EXPECT_EQ(model.value, 298.15);
  const KeySetting component = parse_setting("elements.Atom nb X1:2=-1e-3");
  EXPECT_EQ(component.section, "elements");
  EXPECT_EQ(component.key, "Atom nb X1");
  EXPECT_EQ(component.i, 2);
  EXPECT_EQ(component.j, 0);
  EXPECT_EQ(component.value, -1e-3);
  const KeySetting pair = parse_setting("41.TETA1: 1, 2 =0.5");
  EXPECT_EQ(pair.section, "41");
  EXPECT_EQ(pair.i, 1);
  EXPECT_EQ(pair.j, 2);
  EXPECT_EQ(parse_setting("#sites/2:1=2").key, "#sites/2");
}

TEST(CliKeys, WrongArgumentsExitWithTwo) {
  EXPECT_TRUE(holds(talix({"keys", "nothing"}).err, "unknown model 'nothing'"));
  EXPECT_EQ(talix({"keys", "nothing"}).code, kExitUsage);
  EXPECT_EQ(talix({"keys"}).code, kExitUsage);
  EXPECT_EQ(talix({"keys", "PR", "--comp", "etane"}).code, kExitUsage);
  const Output saft = talix({"keys", "SAFT"});
  EXPECT_EQ(saft.code, kExitFlashFailed);
  EXPECT_TRUE(holds(saft.err, "Saft disabled")) << saft.err;
}

}  // namespace
}  // namespace talix::cli
