// The import of fact tables: the same facts give the same tables, hand values go before facts, gaps are estimated.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "bank/fit_csv.h"
#include "support/bank_source.h"
#include "tools/process.h"

namespace talix::bank {
namespace {

using testing::Folder;
using testing::Row;

constexpr std::array kNumbers{"number",  "code",   "cas",    "name",  "name28",
                              "formula", "family", "isofam", "pinned"};
constexpr std::array kFacts{"cas",
                            "name",
                            "synonyms",
                            "formula",
                            "C",
                            "H",
                            "N",
                            "O",
                            "S",
                            "F",
                            "Cl",
                            "Br",
                            "I",
                            "other_atoms",
                            "mw",
                            "family",
                            "tc_K",
                            "src_tc",
                            "pc_Pa",
                            "src_pc",
                            "vc_m3_per_mol",
                            "src_vc",
                            "zc",
                            "omega",
                            "src_omega",
                            "tb_K",
                            "src_tb",
                            "tm_K",
                            "src_tm",
                            "ttriple_K",
                            "src_tt",
                            "dipole_D",
                            "src_dipole",
                            "hf_gas_J_per_mol",
                            "src_hf",
                            "gf_gas_J_per_mol",
                            "src_gf",
                            "s_gas_J_per_molK",
                            "src_s",
                            "hcomb_net_J_per_mol",
                            "hcomb_gross_J_per_mol",
                            "src_hcomb",
                            "hfus_J_per_mol",
                            "src_hfus",
                            "hvap_tb_J_per_mol",
                            "src_hvap",
                            "vliq_25C_m3_per_mol",
                            "src_vliq",
                            "sg_60F",
                            "src_sg",
                            "solubility_param_Pa05",
                            "src_solpar",
                            "parachor",
                            "src_parachor",
                            "radius_gyration_m",
                            "src_rg",
                            "unifac_original",
                            "src_unifac",
                            "unifac_dortmund",
                            "src_dortmund"};
constexpr std::array kRelations{"cas",    "property",  "equation", "c1",   "c2", "c3",
                                "c4",     "c5",        "c6",       "c7",   "c8", "tmin_K",
                                "tmax_K", "tc_used_K", "rank",     "flag", "src"};

template <std::size_t N>
std::string table(const std::array<const char*, N>& columns, const std::vector<Row>& rows) {
  const std::string counts = " C H N O S F Cl Br I ";
  std::string text;
  for (const char* const column : columns) text += std::string(text.empty() ? "" : ",") + column;
  for (const Row& row : rows) {
    text += '\n';
    for (const char* const column : columns) {
      const auto cell = row.find(column);
      if (column != columns.front()) text += ',';
      text += cell != row.end()                                                   ? cell->second
              : counts.find(" " + std::string(column) + " ") != std::string::npos ? "0"
                                                                                  : "";
    }
  }
  return text + '\n';
}

// An invented ketone with everything but vapour pressure, density form and heat capacity.
Row ketone() {
  return {{"number", "300"},
          {"code", "KET1"},
          {"cas", "1-11-1"},
          {"name", "heptanone"},
          {"name28", "heptanone"},
          {"formula", "C7H14O"},
          {"family", "ketone"},
          {"isofam", "8"},
          {"C", "7"},
          {"H", "14"},
          {"O", "1"},
          {"mw", "114.185"},
          {"tc_K", "611"},
          {"src_tc", "CRC"},
          {"pc_Pa", "2990000"},
          {"src_pc", "CRC"},
          {"vc_m3_per_mol", "0.00043"},
          {"src_vc", "CRC"},
          {"zc", "0.2531"},
          {"omega", "0.42"},
          {"src_omega", "CRC"},
          {"tb_K", "424.2"},
          {"src_tb", "CRC"},
          {"vliq_25C_m3_per_mol", "0.0001407"},
          {"src_vliq", "CRC"},
          {"unifac_original", "1:1;2:4;18:1"}};
}

// Ketones of a series with ideal-gas heat capacities, from which the contributions come.
Row relative(int carbons) {
  Row row = ketone();
  const std::string n = std::to_string(carbons);
  row["number"] = std::to_string(300 + carbons);
  row["code"] = "KR" + std::string(carbons < 10 ? "0" : "") + n;
  row["cas"] = "2-22-" + n;
  row["name"] = row["name28"] = "relative" + n;
  row["C"] = n;
  row["H"] = std::to_string(2 * carbons);
  row["mw"] = std::to_string(14.027 * carbons + 15.999);
  row["unifac_original"] = "1:1;2:" + std::to_string(carbons - 3) + ";18:1";
  return row;
}

Row heat_capacity(const Row& of, int carbons) {
  return {{"cas", of.at("cas")},
          {"property", "cp_ig"},
          {"equation", "DIPPR100"},
          {"c1", std::to_string(5.0 * carbons)},
          {"c2", std::to_string(0.06 * carbons)},
          {"tmin_K", "150"},
          {"tmax_K", "1500"},
          {"rank", "1"},
          {"src", "made up"}};
}

struct Import {
  Folder facts, data;
  std::vector<Row> compounds{ketone(), relative(5), relative(6), relative(8), relative(9), relative(10)};
  std::vector<Row> relations;
  Import() {
    for (const int n : {5, 6, 8, 9, 10}) relations.push_back(heat_capacity(relative(n), n));
  }
  test::ProcessResult run() const {
    facts.write("numbers.csv", table(kNumbers, compounds));
    facts.write("components.csv", table(kFacts, compounds));
    facts.write("correlations.csv", table(kRelations, relations));
    facts.write("correlations_long.csv", table(kRelations, {}));
    facts.write("reference_fluids.csv", "cas,eos_citation\n");
    facts.write("reference_points.csv",
                "cas,T_K,psat_Pa,rho_liq_sat_mol_m3,rho_vap_sat_mol_m3,hvap_J_mol,cp_ig_J_mol_K\n");
    return test::run_process("python3 " +
                             test::quoted(std::string(TALIX_TEST_SOURCE) + "/scripts/import_facts.py") + " " +
                             test::quoted(facts.path().string()) + " --data " +
                             test::quoted(data.path().string()) + " --report 2>&1");
  }
  [[nodiscard]] CsvTable read(const std::string& file) const {
    CsvTable t;
    EXPECT_TRUE(read_csv((data.path() / file).string(), t)) << file;
    return t;
  }
  // Row of the invented ketone and a property.
  [[nodiscard]] std::size_t row_of(const CsvTable& t, const std::string& property) const {
    for (std::size_t i = 0; i < t.rows.size(); ++i)
      if (t.text(i, "cas") == "1-11-1" && t.text(i, "property") == property) return i;
    ADD_FAILURE() << property;
    return 0;
  }
};

TEST(BankImport, GapsAreFilledByStatedEstimates) {
  const Import import;
  const test::ProcessResult result = import.run();
  ASSERT_EQ(result.code, 0) << result.output;
  EXPECT_TRUE(result.output.starts_with("6 components, 0 left out\n")) << result.output;
  const CsvTable t = import.read("saturation_correlations.csv");
  EXPECT_EQ(t.text(import.row_of(t, "psat"), "source"), "EST: Lee and Kesler 1975 through the boiling point");
  EXPECT_EQ(t.text(import.row_of(t, "rho_liq_sat"), "source"),
            "EST: Rackett 1970 through the density at 298.15 K");
  EXPECT_EQ(t.text(import.row_of(t, "hvap"), "source"),
            "EST: Watson 1943 from the heat of vaporisation at the boiling point");
  EXPECT_EQ(t.text(import.row_of(t, "psat"), "flag"), "estimated");
  const CsvTable c = import.read("components.csv");
  EXPECT_EQ(c.text(0, "src_hvap"), "EST:slope");
  EXPECT_NEAR(c.number(0, "hvap_tb_J_per_mol", 0.0), 38000.0, 3000.0);
  EXPECT_EQ(c.text(0, "src_sg"), "EST:Rackett");
  EXPECT_NEAR(c.number(0, "sg_60F", 0.0), 0.82, 0.01);
}

TEST(BankImport, HeatCapacityOfTheSeriesIsFoundFromItsGroups) {
  const Import import;
  ASSERT_EQ(import.run().code, 0);
  const CsvTable t = import.read("ideal_gas_correlations.csv");
  const std::size_t row = import.row_of(t, "cp_ig");
  EXPECT_EQ(t.text(row, "source"), "EST: group contributions, least squares over 5 compounds of the bank");
  const auto cp = [&](double T) {
    double sum = 0.0, power = 1.0;
    for (int k = 1; k <= 5; ++k, power *= T) sum += t.number(row, "c" + std::to_string(k), 0.0) * power;
    return sum;
  };
  // The series is linear in the carbon number, with 7 for the invented ketone.
  for (const double T : {250.0, 300.0, 700.0, 1100.0}) EXPECT_NEAR(cp(T), 35.0 + 0.42 * T, 0.1) << T;
}

TEST(BankImport, TheSameFactsGiveTheSameBytes) {
  const Import first, second;
  ASSERT_EQ(first.run().code, 0);
  ASSERT_EQ(second.run().code, 0);
  for (const char* const file :
       {"components.csv", "saturation_correlations.csv", "ideal_gas_correlations.csv",
        "transport_correlations.csv", "reference_points.csv"}) {
    EXPECT_FALSE(first.data.read(file).empty()) << file;
    EXPECT_EQ(first.data.read(file), second.data.read(file)) << file;
  }
}

TEST(BankImport, RelationsThatBetterOnesContradictAreLeftOut) {
  Import import;
  const Row good{{"cas", "1-11-1"},        {"property", "rho_liq_sat"},
                 {"equation", "DIPPR105"}, {"c1", "600"},
                 {"c2", "0.26"},           {"c3", "611"},
                 {"c4", "0.29"},           {"tmin_K", "240"},
                 {"tmax_K", "611"},        {"rank", "1"},
                 {"src", "good"}};
  Row bad = good, foreign = good;
  bad["rank"] = "2", bad["flag"] = "diff;outlier", bad["src"] = "bad";
  foreign["rank"] = "3", foreign["c3"] = "640", foreign["tmax_K"] = "640", foreign["src"] = "foreign";
  for (const Row& row : {good, bad, foreign}) import.relations.push_back(row);
  ASSERT_EQ(import.run().code, 0);
  const CsvTable t = import.read("saturation_correlations.csv");
  std::map<std::string, double> tmax;
  for (std::size_t i = 0; i < t.rows.size(); ++i)
    if (t.text(i, "property") == "rho_liq_sat" && t.text(i, "cas") == "1-11-1")
      tmax[t.text(i, "source")] = t.number(i, "tmax_K", 0.0);
  EXPECT_EQ(tmax.size(), 2U);
  EXPECT_EQ(tmax["good"], 611.0);
  EXPECT_NEAR(tmax["foreign"], 0.85 * 611.0, 0.01);
}

TEST(BankImport, VapourPressureThatMissesTheBoilingPointGivesWay) {
  Import import;
  const auto antoine = [](const char* a, const char* rank, const char* src) {
    return Row{{"cas", "1-11-1"}, {"property", "psat"}, {"equation", "ANTOINE_E"}, {"c1", a},
               {"c2", "3600"},    {"c3", "-62"},        {"tmin_K", "300"},         {"tmax_K", "450"},
               {"rank", rank},    {"src", src}};
  };
  // ln 101325 = 11.526; 3600/(424.2 - 62) = 9.939.
  import.relations.push_back(antoine("21.6", "1", "far"));
  import.relations.push_back(antoine("21.465", "2", "near"));
  ASSERT_EQ(import.run().code, 0);
  const CsvTable t = import.read("saturation_correlations.csv");
  EXPECT_EQ(t.text(import.row_of(t, "psat"), "source"), "near");
}

TEST(BankImport, BoilingPointThatTwoVapourPressuresMissAlikeIsTheirs) {
  for (const bool second : {true, false}) {
    Import import;
    for (const char* const src : {"one", "two"}) {
      // 1 atm at 425.5 K instead of 424.2 K.
      import.relations.push_back({{"cas", "1-11-1"},
                                  {"property", "psat"},
                                  {"equation", "ANTOINE_E"},
                                  {"c1", "21.43"},
                                  {"c2", "3600"},
                                  {"c3", "-62"},
                                  {"tmin_K", "300"},
                                  {"tmax_K", "450"},
                                  {"rank", "1"},
                                  { "src",
                                    src }});
      if (!second) break;
    }
    ASSERT_EQ(import.run().code, 0);
    const CsvTable c = import.read("components.csv");
    EXPECT_EQ(c.text(0, "src_tb"), second ? "calc:psat" : "CRC");
    EXPECT_NEAR(c.number(0, "tb_K", 0.0), second ? 3600.0 / (21.43 - std::log(101325.0)) + 62.0 : 424.2,
                0.01);
  }
}

TEST(BankImport, HandValuesGoBeforeFacts) {
  const Import import;
  import.data.write(
      "hand_values.csv",
      "# why\ncas,column,value,reason\n1-11-1,short_name,MyKetone,usual\n1-11-1,tm_K,240.5,measured\n"
      "1-11-1,vliq_25C_m3_per_mol,,wrong\n2-22-5,leave_out,,no use\n");
  const test::ProcessResult result = import.run();
  ASSERT_EQ(result.code, 0) << result.output;
  EXPECT_NE(result.output.find("left out: 305 relative5: no use"), std::string::npos) << result.output;
  const CsvTable c = import.read("components.csv");
  ASSERT_EQ(c.rows.size(), 5U);
  EXPECT_EQ(c.text(0, "short_name"), "MyKetone");
  EXPECT_EQ(c.text(0, "tm_K"), "240.5");
  EXPECT_TRUE(c.text(0, "src_vliq").starts_with("EST:")) << c.text(0, "src_vliq");
}

TEST(BankImport, ShortNamesKeepClearOfTheLightGases) {
  Import import;
  import.compounds[0]["name"] = "heptane thing of great length";
  import.compounds[1]["name"] = "helium compound";
  ASSERT_EQ(import.run().code, 0);
  const CsvTable c = import.read("components.csv");
  for (std::size_t i = 0; i < c.rows.size(); ++i) {
    const std::string brief = c.text(i, "short_name");
    EXPECT_LE(brief.size(), 8U);
    for (const char* const letters : {"H2", "HE", "He", "N2"})
      EXPECT_FALSE(brief.starts_with(letters)) << brief;
  }
}

TEST(BankImport, AMissingTableIsNamed) {
  const Import import;
  ASSERT_EQ(import.run().code, 0);
  std::filesystem::remove(import.facts.path() / "numbers.csv");
  const test::ProcessResult result = test::run_process(
      "python3 " + test::quoted(std::string(TALIX_TEST_SOURCE) + "/scripts/import_facts.py") + " " +
      test::quoted(import.facts.path().string()) + " --data " + test::quoted(import.data.path().string()) +
      " 2>&1");
  EXPECT_EQ(result.code, 1);
  EXPECT_NE(result.output.find("numbers.csv"), std::string::npos) << result.output;
}

}  // namespace
}  // namespace talix::bank
