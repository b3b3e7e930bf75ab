#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "cli/app.h"
#include "cli/failure.h"
#include "cli/install_directory.h"
#include "support/test_support.h"
#include "tools/cli_run.h"
#include "tools/process.h"

namespace talix::cli {
namespace {

using nlohmann::json;

using test::Output;
using test::talix;

Output flash(const std::string& components, const std::string& feed, const std::string& T,
             const std::string& P, const std::vector<std::string>& more = {}) {
  std::vector<std::string> arguments = {"flash", "--comp", components, "--feed", feed, "-T", T, "-P", P};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return talix(arguments);
}

json flash_json(const std::string& components, const std::string& feed, const std::string& T,
                const std::string& P, const std::vector<std::string>& more = {}) {
  std::vector<std::string> arguments = {"--format", "json"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  const Output output = flash(components, feed, T, P, arguments);
  EXPECT_EQ(output.code, kExitOk) << output.err;
  return json::parse(output.out);
}

bool holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// Sets or clears a variable of the process for the life of the object.
class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    if (const char* const old = std::getenv(name)) old_ = old;
    if (value == nullptr) {
      ::unsetenv(name);
    } else {
      ::setenv(name, value, 1);
    }
  }
  ~Variable() {
    if (old_) {
      ::setenv(name_, old_->c_str(), 1);
    } else {
      ::unsetenv(name_);
    }
  }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name_;
  std::optional<std::string> old_;
};

TEST(CliProgram, VersionAndHelpAnswerWithoutABank) {
  const Output version = talix({"--version"});
  EXPECT_EQ(version.code, kExitOk);
  EXPECT_EQ(version.out.rfind("talix ", 0), 0U);
  const Output help = talix({"--help"});
  EXPECT_EQ(help.code, kExitOk);
  EXPECT_TRUE(holds(help.out, "flash") && holds(help.out, "components") && holds(help.out, "Example"));
  std::ostringstream out;
  std::ostringstream err;
  EXPECT_EQ(run({"flash", "--help"}, out, err), kExitOk);
  for (const char* part :
       {"bar (default)", "C (default)", "--basis", "kg/m3", "Example", "--install", "--verify"}) {
    EXPECT_TRUE(holds(out.str(), part)) << part;
  }
}

TEST(CliProgram, WrongArgumentsExitWithTwo) {
  EXPECT_EQ(talix({}).code, kExitUsage);
  EXPECT_EQ(talix({"flush"}).code, kExitUsage);
  EXPECT_EQ(talix({"flash"}).code, kExitUsage);
  EXPECT_EQ(flash("methane", "1", "25C", "50bar", {"--basis", "volume"}).code, kExitUsage);
  EXPECT_EQ(flash("methane", "1", "25C", "50bar", {"--format", "xml"}).code, kExitUsage);
  for (const char* level : {"2", "-1", "yes"})
    EXPECT_EQ(flash("methane", "1", "25C", "50bar", {"--verify", level}).code, kExitUsage) << level;
  for (const auto& [feed, part] :
       std::vector<std::pair<std::string, std::string>>{{"0.5", "2 components but 1 feed values"},
                                                        {"0.5,0.5,1", "2 components but 3 feed values"},
                                                        {"0.5,-1", "negative"},
                                                        {"0.5,nan", "not a number"}}) {
    const Output output = flash("methane,ethane", feed, "25C", "50bar");
    EXPECT_EQ(output.code, kExitUsage) << feed;
    EXPECT_TRUE(holds(output.err, part)) << output.err;
    EXPECT_EQ(output.out, "");
  }
  EXPECT_EQ(flash("methane", "1", "nan", "50bar").code, kExitUsage);
  EXPECT_EQ(flash("methane", "1", "25C", "50barg").code, kExitUsage);
}

TEST(CliProgram, UnknownComponentNamesTheNearestAndExitsWithTwo) {
  const Output output = flash("methane,etane", "0.5,0.5", "25C", "50bar");
  EXPECT_EQ(output.code, kExitUsage);
  EXPECT_TRUE(holds(output.err, "unknown component 'etane'; nearest: ")) << output.err;
  EXPECT_TRUE(holds(output.err, " ethane (2P, number 21)")) << output.err;
}

TEST(CliProgram, FlashClosesTheBalanceOfEveryComponent) {
  const json report = flash_json("methane,ethane,n-decane", "0.8,0.15,0.05", "25C", "50bar");
  EXPECT_EQ(report["components"], json({"methane", "ethane", "n-decane"}));
  EXPECT_EQ(report["T_C"], 25.0);
  EXPECT_EQ(report["P_bar"], 50.0);
  const json& vapour = report["phases"]["vapour"];
  const json& liquid = report["phases"]["liquid"];
  ASSERT_FALSE(vapour.is_null());
  ASSERT_FALSE(liquid.is_null());
  double vapour_sum = 0;
  double liquid_sum = 0;
  for (std::size_t i = 0; i < 3; ++i) {
    const double y = vapour["composition"][i].get<double>();
    const double x = liquid["composition"][i].get<double>();
    vapour_sum += y;
    liquid_sum += x;
    EXPECT_NEAR(vapour["flow"].get<double>() * y + liquid["flow"].get<double>() * x,
                report["feed"][i].get<double>(), 1e-5);
  }
  EXPECT_NEAR(vapour_sum, 1, 1e-5);
  EXPECT_NEAR(liquid_sum, 1, 1e-5);
  EXPECT_NEAR(vapour["fraction"].get<double>() + liquid["fraction"].get<double>(), 1, 1e-5);
  EXPECT_NEAR(report["vapour_fraction"].get<double>(), vapour["fraction"].get<double>(), 1e-6);
  EXPECT_GT(liquid["composition"][2].get<double>(), vapour["composition"][2].get<double>());
  EXPECT_GT(liquid["properties"]["density_kg_m3"].get<double>(),
            vapour["properties"]["density_kg_m3"].get<double>());
  for (const auto& [name, value] : liquid["properties"].items()) {
    EXPECT_TRUE(value.is_null() || std::isfinite(value.get<double>())) << name;
  }
}

TEST(CliProgram, EveryWayToNameTheMixtureGivesTheSameResult) {
  const Output reference =
      flash("methane,ethane,n-decane", "0.8,0.15,0.05", "25C", "50bar", {"--format", "json"});
  ASSERT_EQ(reference.code, kExitOk) << reference.err;
  for (const char* components : {"1P, 2P ,10P", "74-82-8,74-84-0,124-18-5", "20,21,116", "CH4,C2H6,decane"}) {
    EXPECT_EQ(flash(components, "0.8,0.15,0.05", "25", "50", {"--format", "json"}).out, reference.out)
        << components;
  }
  EXPECT_EQ(flash("methane,ethane,n-decane", "0.8,0.15,0.05", "25 C", "5 MPa", {"--format", "json"}).out,
            reference.out);
  const Output words = talix({"flash", "--comp", "methane", "ethane", "n-decane", "--feed", "0.8", "0.15",
                              "0.05", "-T", "25", "C", "-P", "50", "bar", "--format", "json"});
  EXPECT_EQ(words.out, reference.out) << words.err;
}

TEST(CliProgram, MassAndMoleBasisDescribeTheSameMixture) {
  const json moles = flash_json("methane,n-decane", "0.7,0.3", "25C", "50bar");
  const double vapour_mass = moles["phases"]["vapour"]["flow"].get<double>() *
                             moles["phases"]["vapour"]["properties"]["molar_mass_g_mol"].get<double>();
  const double M1 = 16.0425;
  const double M2 = 142.282;
  std::ostringstream feed;
  feed.precision(9);
  feed << 0.7 * M1 << "," << 0.3 * M2;
  const json mass = flash_json("methane,n-decane", feed.str(), "25C", "50bar", {"--basis", "mass"});
  EXPECT_NEAR(mass["vapour_fraction"].get<double>(), moles["vapour_fraction"].get<double>(), 2e-5);
  EXPECT_NEAR(mass["phases"]["vapour"]["flow"].get<double>() / vapour_mass, 1, 1e-3);
  EXPECT_NEAR(mass["phases"]["vapour"]["properties"]["density_kg_m3"].get<double>(),
              moles["phases"]["vapour"]["properties"]["density_kg_m3"].get<double>(), 1e-2);
  EXPECT_EQ(mass["basis"], "mass");
  const json& x = mass["phases"]["liquid"]["composition"];
  EXPECT_NEAR(x[0].get<double>() + x[1].get<double>(), 1, 1e-5);
}

TEST(CliProgram, AllFifteenRowsAreShownForEveryPhaseThatHasThem) {
  const json phases = flash_json("methane,n-decane", "0.8,0.2", "25C", "50bar").at("phases");
  for (const char* const phase : {"vapour", "liquid"}) {
    const json properties = phases.at(phase).at("properties");
    EXPECT_EQ(properties.size(), 15U);
    for (const auto& [key, value] : properties.items()) {
      const bool tension_of_vapour = std::string(phase) == "vapour" && key == "surface_tension_mN_m";
      EXPECT_EQ(value.is_null(), tension_of_vapour) << phase << " " << key;
    }
  }
  EXPECT_GT(phases.at("liquid").at("properties").at("surface_tension_mN_m").get<double>(), 1.0);
}

TEST(CliProgram, TensionOfALiquidThatIsNoDenserThanItsVapourIsZeroAndShown) {
  const json liquid = flash_json("methane", "1", "25C", "10bar", {"--type", "feed"})
                          .at("phases")
                          .at("liquid")
                          .at("properties");
  EXPECT_EQ(liquid.at("surface_tension_mN_m").get<double>(), 0.0);
}

TEST(CliProgram, OnePhaseLeavesTheOtherNull) {
  const json gas = flash_json("methane,ethane", "0.9,0.1", "25C", "1atm");
  EXPECT_EQ(gas["vapour_fraction"], 1.0);
  EXPECT_TRUE(gas["phases"]["liquid"].is_null());
  EXPECT_NEAR(gas["phases"]["vapour"]["properties"]["density_kg_m3"].get<double>(), 0.715, 0.005);
  const json liquid = flash_json("n-decane,n-octane", "0.5,0.5", "25C", "5bar");
  EXPECT_EQ(liquid["vapour_fraction"], 0.0);
  EXPECT_TRUE(liquid["phases"]["vapour"].is_null());
  EXPECT_FALSE(liquid["phases"]["liquid"].is_null());
}

TEST(CliProgram, TwoLiquidsStandInColumnsOfTheirOwnUnlessTheFlashesRunAlone) {
  const json report = flash_json("methane,H2S", "0.6,0.4", "-100C", "60bar");
  EXPECT_EQ(report["vapour_fraction"], 0.0);
  EXPECT_EQ(report["message"], "");
  EXPECT_TRUE(report["phases"]["vapour"].is_null());
  const json& liquid = report["phases"]["liquid"];
  const json& second = report["phases"]["second_liquid"];
  EXPECT_LT(liquid["composition"][0].get<double>(), 0.2);
  EXPECT_GT(second["composition"][0].get<double>(), 0.8);
  EXPECT_GT(liquid["properties"]["density_kg_m3"].get<double>(),
            second["properties"]["density_kg_m3"].get<double>());
  EXPECT_NEAR(liquid["fraction"].get<double>() + second["fraction"].get<double>(), 1, 1e-5);
  for (std::size_t i = 0; i < 2; ++i)
    EXPECT_NEAR(liquid["flow"].get<double>() * liquid["composition"][i].get<double>() +
                    second["flow"].get<double>() * second["composition"][i].get<double>(),
                report["feed"][i].get<double>(), 1e-5);
  const json alone = flash_json("methane,H2S", "0.6,0.4", "-100C", "60bar", {"--verify", "0"});
  EXPECT_TRUE(alone["phases"]["second_liquid"].is_null());
  // The level is that of the request, not of the one before.
  EXPECT_EQ(flash_json("methane,H2S", "0.6,0.4", "-100C", "60bar"), report);
}

TEST(CliProgram, WarningOfTheCheckIsShownWithTheResults) {
  const Output output = flash("methane,propane,n-pentane,water", "0.4,0.2,0.2,0.2", "0C", "20bar");
  EXPECT_EQ(output.code, kExitOk);
  EXPECT_TRUE(holds(output.err, "talix: warning: . A third phase, ")) << output.err;
  EXPECT_TRUE(holds(output.out, "  Message          . A third phase, ")) << output.out;
}

TEST(CliProgram, FailedFlashExitsWithOneAndTheMessageOfTheLibrary) {
  const std::string message = "Temperature not between 0 and 1773 K, no calculation (TALIX)";
  const Output table = flash("methane,ethane", "0.5,0.5", "2000C", "50bar");
  EXPECT_EQ(table.code, kExitFlashFailed);
  EXPECT_TRUE(holds(table.err, message)) << table.err;
  EXPECT_EQ(table.out, "");
  const Output csv = flash("methane,ethane", "0.5,0.5", "-300C", "50bar", {"--format", "csv"});
  EXPECT_EQ(csv.code, kExitFlashFailed);
  EXPECT_EQ(csv.out, "");
  const Output as_json = flash("methane,ethane", "0.5,0.5", "2000C", "50bar", {"--format", "json"});
  EXPECT_EQ(as_json.code, kExitFlashFailed);
  EXPECT_TRUE(holds(as_json.err, message));
  const json report = json::parse(as_json.out);
  EXPECT_EQ(report["message"], message);
  EXPECT_TRUE(report["phases"]["vapour"].is_null() && report["phases"]["liquid"].is_null());
}

TEST(CliProgram, LimitsOfTheLibraryAreReportedInItsWords) {
  const auto message = [](const Output& output) {
    EXPECT_EQ(output.code, kExitFlashFailed);
    return output.err;
  };
  EXPECT_TRUE(
      holds(message(flash("methane", "0", "25C", "50bar")), "No feed specified, no calculation (TALIX)"));
  EXPECT_TRUE(holds(message(flash("methane", "1", "25C", "901bar")), "Pressure not between 0 and  900 bar"));
  EXPECT_TRUE(holds(message(flash("methane", "1", "25C", "-1bar")), "Pressure not between 0 and  900 bar"));
  EXPECT_NE(message(flash("methane", "1", "25C", "0bar")), "");
}

TEST(CliProgram, EarlierFlashesDoNotChangeAResult) {
  const std::vector<std::string> format = {"--format", "csv"};
  const std::string first = flash("methane,ethane,n-decane", "0.8,0.15,0.05", "25C", "50bar", format).out;
  EXPECT_NE(first, "");
  (void)flash("nitrogen,n-hexane", "0.5,0.5", "80C", "20bar", format);
  (void)flash("methane", "1", "3000C", "20bar", format);
  (void)flash("methane,ethane,n-decane", "0.1,0.15,0.75", "-20C", "10bar", format);
  EXPECT_EQ(flash("methane,ethane,n-decane", "0.8,0.15,0.05", "25C", "50bar", format).out, first);
}

json type_json(const std::string& type, const std::vector<std::string>& more) {
  std::vector<std::string> arguments = {"flash",  "--comp",        "methane,ethane,n-decane",
                                        "--feed", "0.8,0.15,0.05", "--type",
                                        type,     "--format",      "json"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  const Output output = talix(arguments);
  EXPECT_EQ(output.code, kExitOk) << type << output.err;
  return output.code == kExitOk ? json::parse(output.out) : json();
}

TEST(CliProgram, EveryTypeComesBackToTheIsothermalFlash) {
  const json tp = type_json("tp", {"-T", "25C", "-P", "20bar"});
  const double share = tp["vapour_fraction"].get<double>();
  EXPECT_EQ(tp["type"], "tp");
  const std::string fraction = std::to_string(share);
  const json t = type_json("vfrac-t", {"-P", "20bar", "--vfrac", fraction});
  EXPECT_NEAR(t["T_C"].get<double>(), 25, 0.05);
  const json p = type_json("vfrac-p", {"-T", "25C", "--vfrac", fraction, "-P", "15bar"});
  EXPECT_NEAR(p["P_bar"].get<double>(), 20, 0.05);
  const std::string enthalpy = std::to_string(tp["enthalpy_J_mol"].get<double>());
  for (const char* type : {"ph", "ph-nested"}) {
    const json h = type_json(type, {"-P", "20bar", "--H", enthalpy});
    EXPECT_NEAR(h["T_C"].get<double>(), 25, 0.05) << type;
    EXPECT_NEAR(h["enthalpy_J_mol"].get<double>(), tp["enthalpy_J_mol"].get<double>(), 1) << type;
    EXPECT_EQ(h["type"], type);
  }
  const json fast = type_json("fast", {"-T", "25C", "-P", "20bar"});
  EXPECT_NEAR(fast["vapour_fraction"].get<double>(), share, 1e-4);
}

TEST(CliProgram, BubbleAndDewPointsGiveBothPhases) {
  const json temperature = type_json("dew-t", {"-P", "20bar"});
  const std::string T = std::to_string(temperature["T_C"].get<double>());
  const json pressure = type_json("dew-p", {"-T", T});
  EXPECT_NEAR(pressure["P_bar"].get<double>(), 20, 0.05);
  EXPECT_EQ(temperature["vapour_fraction"], 1.0);
  EXPECT_GT(temperature["phases"]["liquid"]["composition"][2].get<double>(), 0.5);
  const json bubble = type_json("bubble-t", {"-P", "5bar"});
  const json back = type_json("bubble-p", {"-T", std::to_string(bubble["T_C"].get<double>())});
  EXPECT_NEAR(back["P_bar"].get<double>(), 5, 0.02);
  EXPECT_EQ(bubble["vapour_fraction"], 0.0);
  EXPECT_GT(bubble["phases"]["vapour"]["composition"][0].get<double>(), 0.9);
}

TEST(CliProgram, EnthalpyPerMassIsThatOfTheFeed) {
  const json tp = type_json("tp", {"-T", "25C", "-P", "20bar"});
  // The mean molar mass of the feed from those of its components.
  const double mass = 0.8 * 16.0425 + 0.15 * 30.069 + 0.05 * 142.282;
  const std::string per_kilogram = std::to_string(tp["enthalpy_J_mol"].get<double>() / mass) + "kJ/kg";
  EXPECT_NEAR(type_json("ph", {"-P", "20bar", "--H", per_kilogram})["T_C"].get<double>(), 25, 0.05);
  const Output by_mass =
      talix({"flash", "--comp", "methane,ethane,n-decane", "--feed", "12.834,4.51035,7.1141", "--basis",
             "mass", "--type", "ph", "-P", "20", "--H", per_kilogram, "--format", "json"});
  ASSERT_EQ(by_mass.code, kExitOk) << by_mass.err;
  const json report = json::parse(by_mass.out);
  EXPECT_NEAR(report["T_C"].get<double>(), 25, 0.05);
  EXPECT_NEAR(report["enthalpy_J_mol"].get<double>(), tp["enthalpy_J_mol"].get<double>(), 1);
}

TEST(CliProgram, FeedGivesBothColumnsWithoutASplit) {
  const json feed = type_json("feed", {"-T", "25C", "-P", "20bar"});
  EXPECT_TRUE(feed["vapour_fraction"].is_null());
  EXPECT_TRUE(feed["enthalpy_J_mol"].is_null());
  EXPECT_NEAR(feed["phases"]["vapour"]["composition"][2].get<double>(), 0.05, 1e-6);
  EXPECT_NEAR(feed["phases"]["liquid"]["composition"][2].get<double>(), 0.05, 1e-6);
}

TEST(CliProgram, ErrorReportIsWrittenIntoTheInstallDirectory) {
  const test::ScratchDirectory scratch;
  const std::filesystem::path bank = scratch.path() / "bank";
  std::filesystem::copy(test::install_directory(), bank, std::filesystem::copy_options::recursive);
  std::filesystem::remove(bank / "talix.err");
  std::ostringstream out;
  std::ostringstream err;
  EXPECT_EQ(run({"flash", "--comp", "methane", "--feed", "1", "-T", "25", "-P", "901", "--error-report",
                 "--install", bank.string()},
                out, err),
            kExitFlashFailed);
  EXPECT_TRUE(holds(err.str(), "error report added to " + (bank / "talix.err").string())) << err.str();
  EXPECT_TRUE(std::filesystem::exists(bank / "talix.err"));
}

TEST(CliProgram, WithoutACatalogueTheLibraryTellsItsComponents) {
  const test::ScratchDirectory scratch;
  const std::filesystem::path bank = scratch.path() / "bank";
  std::filesystem::copy(test::install_directory(), bank, std::filesystem::copy_options::recursive);
  std::filesystem::remove(bank / "catalogue.csv");
  std::ostringstream out;
  std::ostringstream err;
  ASSERT_EQ(run({"components", "--format", "json", "--install", bank.string()}, out, err), kExitOk)
      << err.str();
  const json list = json::parse(out.str());
  EXPECT_EQ(list.size(), json::parse(talix({"components", "--format", "json"}).out).size());
  for (const json& entry : list) {
    if (entry["number"] != 20) continue;
    EXPECT_NEAR(entry["tc_K"].get<double>(), 190.564, 1e-3);
    EXPECT_NEAR(entry["pc_bar"].get<double>(), 45.992, 1e-3);
    EXPECT_EQ(entry["code"], " 1P ");
  }
}

TEST(CliProgram, ComponentTwiceCountsTwiceWithANote) {
  const Output output =
      flash("methane,methane,n-decane", "0.4,0.4,0.2", "25C", "50bar", {"--format", "json"});
  EXPECT_EQ(output.code, kExitOk) << output.err;
  EXPECT_TRUE(holds(output.err, "note: methane is listed more than once"));
  const json report = json::parse(output.out);
  const json& x = report["phases"]["liquid"]["composition"];
  EXPECT_NEAR(x[0].get<double>(), x[1].get<double>(), 1e-6);
}

TEST(CliProgram, ComponentsAreFoundAndListed) {
  const Output all = talix({"components", "--format", "json"});
  ASSERT_EQ(all.code, kExitOk) << all.err;
  EXPECT_GE(json::parse(all.out).size(), 60U);
  const json methane = json::parse(talix({"components", "methane", "--format", "json"}).out);
  EXPECT_EQ(methane[0]["number"], 20);
  EXPECT_NEAR(methane[0]["tc_K"].get<double>(), 190.564, 1e-3);
  EXPECT_NEAR(methane[0]["pc_bar"].get<double>(), 45.992, 1e-3);
  const Output none = talix({"components", "methanee", "--format", "json"});
  EXPECT_EQ(none.code, kExitOk);
  EXPECT_EQ(none.out, "[]\n");
  EXPECT_TRUE(holds(none.err, "nearest: methane")) << none.err;
  EXPECT_TRUE(holds(talix({"components", "marsh", "gas"}).out, "74-82-8"));
}

TEST(CliInstall, TheOptionComesBeforeTheVariableAndThatBeforeThePlaceOfTheProgram) {
  const test::ScratchDirectory scratch;
  const auto missed = [](const InstallChoice& choice) -> std::string {
    try {
      (void)find_install(choice);
    } catch (const UsageError& error) {
      return error.what();
    }
    return "";
  };
  InstallChoice choice;
  choice.beside = scratch.path() / "beside";
  EXPECT_TRUE(holds(missed(choice), (scratch.path() / "beside/Zandor/purezan.out").string() +
                                        " (install directory beside the program)"));
  choice.home = (scratch.path() / "home").string();
  EXPECT_TRUE(
      holds(missed(choice), "home/Zandor/purezan.out (install directory given by the variable TALIX_HOME)"));
  choice.option = (scratch.path() / "option").string();
  EXPECT_TRUE(holds(missed(choice), "option/Zandor/purezan.out (install directory given with --install)"));
  EXPECT_TRUE(holds(missed(choice), "./dev build"));
  choice.option = test::install_directory();
  EXPECT_EQ(find_install(choice), test::install_directory());
  choice.option = std::string(300, 'x');
  EXPECT_TRUE(holds(missed(choice), "the library takes at most"));
}

TEST(CliInstall, TheVariableIsReadUnlessItIsEmpty) {
  const Variable set("TALIX_HOME", "/some/where");
  EXPECT_EQ(install_choice("").home, "/some/where");
  EXPECT_FALSE(install_choice("").option.has_value());
  EXPECT_EQ(install_choice("here").option, "here");
  const Variable empty("TALIX_HOME", "");
  EXPECT_FALSE(install_choice("").home.has_value());
}

TEST(CliInstall, AMissingBankExitsWithTwo) {
  const test::ScratchDirectory scratch;
  std::ostringstream out;
  std::ostringstream err;
  EXPECT_EQ(run({"components", "--install", scratch.path().string()}, out, err), kExitUsage);
  EXPECT_TRUE(holds(err.str(), "no data bank: looked for " + scratch.path().string()));
}

const std::string kBinaries = TALIX_TEST_BINARIES;
const std::string kFlash =
    " flash --comp methane,ethane,n-decane --feed 0.8,0.15,0.05 -T -25C -P 50bar --format json";

TEST(CliBinary, PrintsWhatTheFunctionsGive) {
  const Output inside =
      flash("methane,ethane,n-decane", "0.8,0.15,0.05", "-25C", "50bar", {"--format", "json"});
  const test::ProcessResult outside =
      test::run_process("env -u TALIX_HOME " + test::quoted(kBinaries + "/talix") + kFlash);
  EXPECT_EQ(outside.code, kExitOk);
  EXPECT_EQ(outside.output, inside.out);
}

TEST(CliBinary, ExitCodesReachTheShell) {
  const std::string program = "env -u TALIX_HOME " + test::quoted(kBinaries + "/talix");
  EXPECT_EQ(test::run_process(program + " --version").code, 0);
  EXPECT_EQ(test::run_process(program + " flash --comp methane --feed 1 -T 3000 -P 1 2>&1").code, 1);
  EXPECT_EQ(test::run_process(program + " flash --comp nothing --feed 1 -T 25 -P 1 2>&1").code, 2);
  EXPECT_EQ(
      test::run_process("TALIX_HOME=/nowhere " + test::quoted(kBinaries + "/talix") + " components 2>&1")
          .code,
      2);
}

TEST(CliBinary, FullDeviceIsAnError) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full on this system";
  const std::string program = "env -u TALIX_HOME " + test::quoted(kBinaries + "/talix");
  EXPECT_EQ(test::run_process(program + " components 2>&1 > /dev/full").code, kExitUsage);
}

TEST(CliBinary, ATreeThatWasMovedStillRuns) {
  const test::ScratchDirectory scratch;
  const std::filesystem::path moved = scratch.path() / "d\xC3\xA9plac\xC3\xA9 tree";
  const std::filesystem::path build = std::filesystem::path(kBinaries).parent_path();
  std::filesystem::create_directories(moved / "bin");
  std::filesystem::create_directories(moved / "share");
  std::filesystem::copy(build / "bin" / "talix", moved / "bin" / "talix");
  std::filesystem::copy(build / "share" / "talix", moved / "share" / "talix",
                        std::filesystem::copy_options::recursive);
  const std::string here =
      test::run_process("env -u TALIX_HOME " + test::quoted(kBinaries + "/talix") + kFlash).output;
  const test::ProcessResult there = test::run_process(
      "cd / && env -u TALIX_HOME " + test::quoted((moved / "bin" / "talix").string()) + kFlash);
  EXPECT_EQ(there.code, kExitOk);
  EXPECT_EQ(there.output, here);
}

}  // namespace
}  // namespace talix::cli
