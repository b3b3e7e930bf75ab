#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>

#include "cli/components_report.h"
#include "cli/failure.h"
#include "cli/flash_report.h"
#include "cli/json_number.h"
#include "cli/words.h"
#include "tools/cli_fixture.h"

namespace talix::cli {
namespace {

using nlohmann::json;
using test::two_component_request;
using test::two_phase_result;

std::vector<std::string> lines_of(const std::string& text) {
  std::istringstream in(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

TEST(CliReport, JsonHasTheKeysOfEveryPhase) {
  const json report = json::parse(flash_json(two_component_request(), two_phase_result()));
  EXPECT_EQ(report["components"], json({"methane", "n-decane"}));
  EXPECT_EQ(report["feed"], json({1.5, 0.5}));
  EXPECT_EQ(report["basis"], "mole");
  EXPECT_EQ(report["type"], "tp");
  EXPECT_TRUE(report["enthalpy_J_mol"].is_null());
  EXPECT_EQ(report["T_C"], 25.0);
  EXPECT_EQ(report["P_bar"], 50.0);
  EXPECT_EQ(report["vapour_fraction"], 0.6);
  EXPECT_EQ(report["message"], "");
  const std::set<std::string> expected = {"molar_mass_g_mol",
                                          "density_kg_m3",
                                          "isothermal_compressibility_1_bar",
                                          "ideal_gas_enthalpy_J_mol",
                                          "ideal_gas_entropy_J_molK",
                                          "ideal_gas_cp_J_molK",
                                          "enthalpy_J_mol",
                                          "entropy_J_molK",
                                          "cv_J_gK",
                                          "cp_J_gK",
                                          "speed_of_sound_m_s",
                                          "joule_thomson_K_bar",
                                          "viscosity_mPa_s",
                                          "thermal_conductivity_W_mK",
                                          "surface_tension_mN_m"};
  for (const char* phase : {"vapour", "liquid"}) {
    const json& values = report["phases"][phase];
    std::set<std::string> keys;
    for (const auto& [key, value] : values["properties"].items()) keys.insert(key);
    EXPECT_EQ(keys, expected);
    EXPECT_EQ(values["composition"].size(), 2U);
    EXPECT_TRUE(values["flow"].is_number());
    EXPECT_TRUE(values["fraction"].is_number());
  }
  EXPECT_EQ(report["phases"]["vapour"]["properties"]["density_kg_m3"], 1.1);
  EXPECT_TRUE(report["phases"]["vapour"]["properties"]["surface_tension_mN_m"].is_null());
  EXPECT_TRUE(report["phases"]["liquid"]["properties"]["viscosity_mPa_s"].is_null());
}

// Two liquids without a vapour, the lighter one second.
FlashResult two_liquid_result() {
  FlashResult result = two_phase_result();
  result.second_liquid = result.vapour;
  result.vapour.reset();
  result.vapour_fraction = 0;
  return result;
}

TEST(CliReport, SecondLiquidHasTheKeysOfAPhaseOrIsNull) {
  const json without = json::parse(flash_json(two_component_request(), two_phase_result()));
  EXPECT_TRUE(without["phases"].contains("second_liquid"));
  EXPECT_TRUE(without["phases"]["second_liquid"].is_null());
  const json with = json::parse(flash_json(two_component_request(), two_liquid_result()));
  EXPECT_TRUE(with["phases"]["vapour"].is_null());
  EXPECT_EQ(with["phases"]["second_liquid"], without["phases"]["vapour"]);
  EXPECT_EQ(with["phases"]["liquid"], without["phases"]["liquid"]);
}

TEST(CliReport, SecondLiquidHasAColumnOnlyWhereItIs) {
  const std::string without = flash_table(two_component_request(), two_phase_result());
  EXPECT_EQ(without.find("Second liquid"), std::string::npos);
  const std::vector<std::string> table = lines_of(flash_table(two_component_request(), two_liquid_result()));
  int headings = 0;
  for (const std::string& line : table) {
    if (line.find("Second liquid") != std::string::npos) {
      ++headings;
      EXPECT_EQ(line.substr(line.size() - 30), "         Liquid  Second liquid") << line;
    }
    if (line.rfind("  Phases", 0) == 0) {
      EXPECT_EQ(line, "  Phases           two liquids");
    }
    if (line.rfind("  methane", 0) == 0) {
      EXPECT_EQ(line.substr(line.size() - 45), "              -       0.375000       0.999950") << line;
    }
  }
  EXPECT_EQ(headings, 2);
  FlashResult three = two_liquid_result();
  three.vapour = three.liquid;
  EXPECT_NE(flash_table(two_component_request(), three).find("vapour and two liquids"), std::string::npos);
}

TEST(CliReport, CsvHasAColumnForASecondLiquidWhereItIs) {
  const std::vector<std::string> csv = lines_of(flash_csv(two_component_request(), two_liquid_result()));
  EXPECT_EQ(csv[0], "quantity,unit,feed,vapour,liquid,second liquid");
  for (const std::string& line : csv) EXPECT_EQ(std::count(line.begin(), line.end(), ','), 5) << line;
  EXPECT_EQ(csv[5], "flow,kmol,2,,0.8,1.2");
}

TEST(CliReport, AbsentPhaseIsNullInJsonAndADashInTheTable) {
  FlashResult result = two_phase_result();
  result.vapour_fraction = 1.0F;
  result.liquid.reset();
  const json report = json::parse(flash_json(two_component_request(), result));
  EXPECT_TRUE(report["phases"]["liquid"].is_null());
  EXPECT_FALSE(report["phases"]["vapour"].is_null());
  const std::string table = flash_table(two_component_request(), result);
  EXPECT_NE(table.find("vapour only"), std::string::npos);
  for (const std::string& line : lines_of(table)) {
    if (line.rfind("  methane", 0) == 0) {
      EXPECT_EQ(line.substr(line.size() - 2), " -") << line;
    }
  }
}

TEST(CliReport, FailureIsStillValidJson) {
  FlashResult result;
  result.message = "No feed specified, no calculation (TALIX)";
  const json report = json::parse(flash_json(two_component_request(), result));
  EXPECT_EQ(report["message"], "No feed specified, no calculation (TALIX)");
  EXPECT_TRUE(report["vapour_fraction"].is_null());
  EXPECT_TRUE(report["phases"]["vapour"].is_null());
  EXPECT_TRUE(report["phases"]["liquid"].is_null());
}

TEST(CliReport, NumbersThatAreNotFiniteBecomeNull) {
  FlashResult result = two_phase_result();
  result.vapour->composition[0] = std::numeric_limits<float>::quiet_NaN();
  result.vapour->properties[1] = std::numeric_limits<float>::infinity();
  const json report = json::parse(flash_json(two_component_request(), result));
  EXPECT_TRUE(report["phases"]["vapour"]["composition"][0].is_null());
  EXPECT_TRUE(report["phases"]["vapour"]["properties"]["density_kg_m3"].is_null());
}

TEST(CliReport, SinglePrecisionNumbersKeepTheirDigits) {
  EXPECT_EQ(json_number(0.1F).dump(), "0.1");
  EXPECT_EQ(json_number(16.0425F).dump(), "16.0425");
  EXPECT_EQ(static_cast<float>(json_number(1.0F / 3.0F).get<double>()), 1.0F / 3.0F);
}

TEST(CliReport, TableIsAlignedAndStatesEveryUnit) {
  const std::string table = flash_table(two_component_request(), two_phase_result());
  const std::vector<std::string> lines = lines_of(table);
  std::size_t rows = 0;
  for (const std::string& line : lines) {
    EXPECT_LE(columns_of(line), 100U) << line;
    for (const PropertyName& property : kPropertyNames) {
      if (line.rfind("  " + std::string(property.name) + " ", 0) != 0) continue;
      EXPECT_NE(line.find(property.unit), std::string::npos) << line;
      EXPECT_EQ(line.size(), lines[lines.size() - 4].size()) << line;
      ++rows;
    }
  }
  EXPECT_EQ(rows, kPropertyNames.size());
  EXPECT_NE(table.find("25 C\n"), std::string::npos);
  EXPECT_NE(table.find("50 bar (absolute)\n"), std::string::npos);
  EXPECT_NE(table.find("0.600000 mol/mol\n"), std::string::npos);
  EXPECT_NE(table.find("unit of the feed: kmol"), std::string::npos);
}

TEST(CliReport, TableOfTwoPhasesReadsAsInAReport) {
  const std::vector<std::string> lines = lines_of(flash_table(two_component_request(), two_phase_result()));
  ASSERT_GT(lines.size(), 14U);
  EXPECT_EQ(lines[7],
            "  Mole fraction                 Unit                  Feed         Vapour         Liquid");
  EXPECT_EQ(lines[9],
            "  methane                       mol/mol           0.750000       0.999950       0.375000");
  EXPECT_EQ(lines[10],
            "  n-decane                      mol/mol           0.250000     5.0000e-05       0.625000");
  EXPECT_EQ(lines[12],
            "  Fraction of the feed (mole)   mol/mol           1.000000       0.600000       0.400000");
  EXPECT_EQ(lines[13],
            "  Flow *                        kmol                     2            1.2            0.8");
}

TEST(CliReport, MassBasisIsNamedInTheHeadings) {
  FlashRequest request = two_component_request();
  request.basis = Basis::mass;
  const std::string table = flash_table(request, two_phase_result());
  EXPECT_NE(table.find("Mass fraction "), std::string::npos);
  EXPECT_NE(table.find("kg/kg"), std::string::npos);
  EXPECT_EQ(table.find("Mole fraction"), std::string::npos);
  EXPECT_NE(flash_csv(request, two_phase_result()).find("mass fraction of methane,kg/kg"), std::string::npos);
  EXPECT_EQ(json::parse(flash_json(request, two_phase_result()))["basis"], "mass");
}

TEST(CliReport, LongNamesAreCutAndKeepTheColumns) {
  FlashRequest request = two_component_request();
  request.names[1] = "a-component-with-a-name-that-is-longer-than-any-column-of-a-report";
  const std::vector<std::string> lines = lines_of(flash_table(request, two_phase_result()));
  EXPECT_EQ(lines[9].size(), lines[10].size());
  EXPECT_LE(lines[10].size(), 100U);
  EXPECT_NE(lines[10].find("..."), std::string::npos);
}

TEST(CliReport, CsvHasOneRowForEachQuantityWithItsUnit) {
  FlashRequest request = two_component_request();
  request.names[0] = "2,2-\"x\"";
  FlashResult result = two_phase_result();
  result.message = ". one, two";
  const std::vector<std::string> lines = lines_of(flash_csv(request, result));
  EXPECT_EQ(lines.size(), 1U + 4U + 2U + 2U + 15U);
  EXPECT_EQ(lines[0], "quantity,unit,feed,vapour,liquid");
  EXPECT_EQ(lines[1], "temperature,C,25,,");
  EXPECT_EQ(lines[2], "pressure,bar,50,,");
  EXPECT_EQ(lines[4], "message,,\". one, two\",,");
  EXPECT_EQ(lines[5], "flow,kmol,2,1.2,0.8");
  EXPECT_EQ(lines[7], "\"mole fraction of 2,2-\"\"x\"\"\",mol/mol,0.75,0.99995,0.375");
  EXPECT_EQ(lines.back(), "surface tension,mN/m,,,");
}

TEST(CliReport, ComponentsInJsonCarryTheConstants) {
  const Catalogue catalogue = test::small_catalogue();
  const json list = json::parse(components_json(catalogue.search("methane")));
  ASSERT_EQ(list.size(), 1U);
  EXPECT_EQ(list[0]["number"], 20);
  EXPECT_EQ(list[0]["code"], " 1P ");
  EXPECT_EQ(list[0]["name"], "methane");
  EXPECT_EQ(list[0]["cas"], "74-82-8");
  EXPECT_EQ(list[0]["formula"], "CH4");
  EXPECT_EQ(list[0]["molar_mass_g_mol"], 16.0425);
  EXPECT_EQ(list[0]["tc_K"], 190.564);
  EXPECT_EQ(list[0]["pc_bar"], 45.992);
  EXPECT_EQ(list[0]["omega"], 0.01142);
  EXPECT_EQ(list[0]["tb_K"], 111.6672);
  EXPECT_TRUE(json::parse(components_json(catalogue.search("ethane")))[0]["tc_K"].is_null());
  EXPECT_EQ(components_json({}), "[]\n");
}

TEST(CliReport, ComponentsInCsvAreQuotedWhereNeeded) {
  const Catalogue catalogue = test::small_catalogue();
  const std::vector<std::string> lines = lines_of(components_csv(catalogue.search("neohexane")));
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[1], "29,\" 6P1\",\"2,2-dimethylbutane\",75-83-2,C6H14,,,,,");
}

TEST(CliReport, ComponentsTableHasUnitsBelowItsHeadings) {
  const Catalogue catalogue = test::small_catalogue();
  const std::vector<std::string> lines = lines_of(components_table(catalogue.search("")));
  EXPECT_EQ(lines.size(), 3U + catalogue.entries().size());
  EXPECT_NE(lines[1].find("g/mol"), std::string::npos);
  EXPECT_NE(lines[4].find("190.56"), std::string::npos);
  for (const std::string& line : lines) EXPECT_LE(line.size(), 100U);
}

TEST(CliRequest, CountsOfComponentsAndFeedMustAgree) {
  const Catalogue catalogue = test::small_catalogue();
  std::vector<std::string> notes;
  const auto components = catalogue.parse_list("methane,ethane");
  EXPECT_THROW(make_request(components, {1.0}, 25, 1, Basis::mole, notes), UsageError);
  EXPECT_THROW(make_request(components, {1.0, 1.0, 1.0}, 25, 1, Basis::mole, notes), UsageError);
  EXPECT_THROW(make_request(components, {1.0, -1.0}, 25, 1, Basis::mole, notes), UsageError);
  EXPECT_THROW(
      make_request(components, {1.0, std::numeric_limits<double>::quiet_NaN()}, 25, 1, Basis::mole, notes),
      UsageError);
  EXPECT_THROW(make_request(components, {1e38, 3e38}, 25, 1, Basis::mole, notes), UsageError);
  EXPECT_THROW(make_request(components, {1.0, 1.0}, 1e39, 1, Basis::mole, notes), UsageError);
  EXPECT_THROW(make_request(components, {1.0, 1.0}, 25, 1e39, Basis::mole, notes), UsageError);
  EXPECT_TRUE(notes.empty());
}

TEST(CliRequest, AComponentTwiceIsAllowedWithANote) {
  const Catalogue catalogue = test::small_catalogue();
  std::vector<std::string> notes;
  const FlashRequest request =
      make_request(catalogue.parse_list("methane,1P,ethane,20"), {1, 1, 1, 1}, 25, 1, Basis::mole, notes);
  EXPECT_EQ(request.numbers, (std::vector<int>{20, 20, 21, 20}));
  ASSERT_EQ(notes.size(), 1U);
  EXPECT_NE(notes[0].find("methane is listed more than once"), std::string::npos);
}

TEST(CliRequest, MoreComponentsThanTheTablesHoldAreRefused) {
  const Catalogue catalogue = test::small_catalogue();
  const std::vector<const CatalogueEntry*> fifty(50, &catalogue.get("methane"));
  std::vector<const CatalogueEntry*> more = fifty;
  more.push_back(more.front());
  std::vector<std::string> notes;
  EXPECT_EQ(make_request(fifty, std::vector<double>(50, 1.0), 25, 1, Basis::mole, notes).numbers.size(), 50U);
  EXPECT_THROW(make_request(more, std::vector<double>(51, 1.0), 25, 1, Basis::mole, notes), UsageError);
}

}  // namespace
}  // namespace talix::cli
