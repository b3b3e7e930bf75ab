// Components of the user: added, overridden, refused.
#include "bank/user_data.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <sstream>

#include "api/catalogue.h"
#include "api/small_calls.h"
#include "bank/user_columns.h"
#include "base/text.h"
#include "cli/app.h"
#include "cli/catalogue.h"
#include "support/bank_source.h"
#include "support/flash_case.h"
#include "support/test_support.h"

namespace talix::bank {
namespace {

using testing::Folder;

const std::filesystem::path kSource = TALIX_TEST_SOURCE;
const std::filesystem::path kData = kSource / "data";
const std::filesystem::path kExample = kSource / "examples" / "data" / "my-components.csv";

// The tables of the project, read once.
const BankSources& project() {
  static const BankSources sources = read_sources(kData);
  return sources;
}

struct Outcome {
  BankSources sources;
  std::vector<std::string> changes;
  std::string error;
  std::string file;
};

Outcome apply(const std::vector<std::string>& texts) {
  const Folder folder;
  std::vector<std::filesystem::path> files;
  for (const std::string& text : texts) {
    files.push_back(folder.path() / ("mine" + std::to_string(files.size() + 1) + ".csv"));
    folder.write(files.back().filename(), text);
  }
  Outcome outcome{.sources = project(), .changes = {}, .error = {}, .file = files.front().string()};
  try {
    outcome.changes = apply_user_tables(outcome.sources, kData, files);
  } catch (const BankError& error) {
    outcome.error = error.what();
  }
  return outcome;
}

constexpr const char* kHeader = "code,name,formula,family,tb_K,tc_K,pc_Pa";

// What is said to a new component with some cells more, or with other cells in the place of its own.
std::string error_of(const std::string& row, const std::string& more = "") {
  return apply({kHeader + more + "\n" + row + "\n"}).error;
}

std::string error_with(const std::string& column, const std::string& cell) {
  return error_of("QQ1,test ether,C6H12O,ether,379.15,576.8,3.759e6," + cell, "," + column);
}

bool holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// All cells of the rows of a component.
std::vector<std::string> rows_of(const SourceTable& table, int number) {
  std::vector<std::string> rows;
  for (std::size_t row = 0; row < table.rows(); ++row) {
    if (table.text(row, "number") != std::to_string(number)) continue;
    rows.emplace_back();
    for (const std::string& column : table.columns()) rows.back() += table.text(row, column) + "|";
  }
  return rows;
}

float real(const PureRecord& record, std::string_view field, int offset = 0) {
  return record.real(pure_field(field).cell + offset);
}

const PureRecord& record_of(const BuildResult& result, int number) {
  return result.bank.pure.at(static_cast<std::size_t>(number - 1));
}

TEST(UserData, AFewFiguresMakeAWholeRecord) {
  const Outcome o = apply({std::string(kHeader) + "\nQQ1,test ether,C6H12O,ether,379.15,576.8,3.759e6\n"});
  ASSERT_EQ(o.error, "");
  ASSERT_EQ(o.changes.size(), 1U);
  EXPECT_TRUE(holds(o.changes[0], "1246 test ether, code \"QQ1 \": added; estimated: omega")) << o.changes[0];
  const BuildResult result = compile_bank(o.sources, kData);
  const PureRecord& record = record_of(result, 1246);
  EXPECT_NEAR(real(record, "RMOLW"), 100.159F, 0.01F);
  EXPECT_NEAR(real(record, "OMEGA"), 0.28F, 0.01F);
  EXPECT_EQ(record.integer(250), 8);
  // Trouton's rule, and a liquid between water and a light hydrocarbon.
  EXPECT_NEAR(real(record, "HVAP") / 379.15F, 88.0F, 6.0F);
  EXPECT_NEAR(real(record, "RHO"), 0.85F, 0.15F);
  for (const char* flag : {"IPSA", "IDLI", "IPWA", "IHVA", "ISUR", "ICPIG", "IV25", "IS25"})
    EXPECT_GT(record.integer(pure_field(flag).cell), 0) << flag;
  for (const char* field : {"PARABF 1-5", "PARABF 6-10", "COFHT", "TCV"})
    EXPECT_NE(real(record, field), 0.0F) << field;
  // Ideal-gas heat capacity between those of 1-hexanol and tetrahydropyran, by elements.
  double cp = 0;
  for (int k = 5; k >= 0; --k) cp = cp * 298.15 + static_cast<double>(real(record, "COFHT", k));
  cp += static_cast<double>(real(record, "COFHT", 6)) / 298.15 +
        static_cast<double>(real(record, "COFHT", 7)) / 298.15 / 298.15;
  EXPECT_NEAR(cp, 136.0, 15.0);
}

TEST(UserData, AKnownCompoundComesOutAsInTheBank) {
  // Acetone by its boiling point, critical point, and a density; against its record in the bank.
  const Outcome o = apply(
      {std::string(kHeader) +
       ",rho_liq_points_K_kg_per_m3\nQQ1,acetone again,C3H6O,ketone,329.22,508.1,4.692e6,293.15:790\n"});
  ASSERT_EQ(o.error, "");
  const BuildResult result = compile_bank(o.sources, kData);
  constexpr int kAcetone = 496;
  const PureRecord& own = record_of(result, 1246);
  const PureRecord& known = record_of(result, kAcetone);
  ASSERT_EQ(known.text(2, 1), "ACET");
  EXPECT_NEAR(real(own, "OMEGA") / real(known, "OMEGA"), 1.0F, 0.05F);
  EXPECT_NEAR(real(own, "HVAP") / real(known, "HVAP"), 1.0F, 0.05F);
  EXPECT_NEAR(real(own, "SURT") / real(known, "SURT"), 1.0F, 0.2F);
  EXPECT_NEAR(real(own, "RHO") / real(known, "RHO"), 1.0F, 0.01F);
}

TEST(UserData, PointsAreMet) {
  // Vapour pressures and densities of acetone (reference equation of state), as a user would type them.
  const Outcome o =
      apply({"code,name,formula,tc_K,pc_Pa,psat_points_K_Pa,rho_liq_points_K_kg_per_m3,mu_liq_points_K_Pa_s\n"
             "QQ1,acetone again,C3H6O,508.1,4692000,280:13350;300:33300;329.2:101325;360:252000;400:668000,"
             "280:804;330:746;400:650,273.15:0.00040;298.15:0.000306;323.15:0.000247\n"});
  ASSERT_EQ(o.error, "");
  const BuildResult result = compile_bank(o.sources, kData);
  const PureRecord& own = record_of(result, 1246);
  EXPECT_EQ(own.text(17, 1), "COR ");
  EXPECT_NEAR(real(own, "ATBP"), 329.2F, 0.3F);
  EXPECT_GT(own.integer(pure_field("IVIL").cell), 0);
  const double pc = 4692000, tc = 508.1;
  for (const auto& [T, p] :
       {std::pair{280.0, 13350.0}, {300.0, 33300.0}, {360.0, 252000.0}, {400.0, 668000.0}}) {
    const double q = 1 - T / tc;
    const double w = static_cast<double>(real(own, "PWAG", 0)) * q +
                     static_cast<double>(real(own, "PWAG", 1)) * std::pow(q, 1.5) +
                     static_cast<double>(real(own, "PWAG", 2)) * q * q * q +
                     static_cast<double>(real(own, "PWAG", 3)) * std::pow(q, 6);
    EXPECT_NEAR(pc * std::exp(w * tc / T) / p, 1.0, 0.01) << T;
  }
}

TEST(UserData, ConstantsServeAsWellAsPoints) {
  const Outcome o =
      apply({"code,name,formula,tc_K,pc_Pa,psat_antoine_K_Pa,cp_ig_poly_K_J_per_molK\n"
             "QQ1,acetone "
             "again,C3H6O,508.1,4692000,260;350;9.42448;1312.253;-32.445,250;1000;6.3;0.2606;-0.0001253;2."
             "038e-08\n"});
  ASSERT_EQ(o.error, "");
  const BuildResult result = compile_bank(o.sources, kData);
  const PureRecord& own = record_of(result, 1246);
  EXPECT_NEAR(real(own, "ATBP"), 329.3F, 0.5F);
  double cp = 0;
  for (int k = 5; k >= 0; --k) cp = cp * 400.0 + static_cast<double>(real(own, "COFHT", k));
  cp += static_cast<double>(real(own, "COFHT", 6)) / 400.0 +
        static_cast<double>(real(own, "COFHT", 7)) / 160000.0;
  EXPECT_NEAR(cp, 6.3 + 0.2606 * 400 - 0.0001253 * 160000 + 2.038e-08 * 6.4e7, 0.5);
}

TEST(UserData, AnOverrideKeepsEveryCellThatIsNotGiven) {
  const Outcome o = apply({"code,dipole_D\n3P,0.5\n"});
  ASSERT_EQ(o.error, "");
  EXPECT_EQ(o.changes[0], "22 propane, code \" 3P \": overridden: dipole_D");
  const PureRecord before = record_of(compile_bank(project(), kData), 22);
  const PureRecord after = record_of(compile_bank(o.sources, kData), 22);
  const int dipole = pure_field("DIPOLE").cell;
  for (int cell = 1; cell <= PureRecord::kCells; ++cell) {
    if (cell == dipole)
      EXPECT_EQ(after.real(cell), 0.5F);
    else
      EXPECT_EQ(after.integer(cell), before.integer(cell)) << cell;
  }
}

TEST(UserData, AnOverrideOfOnePropertyFitsThatAlone) {
  const Outcome o = apply({"cas,sigma_points_K_N_per_m\n67-64-1,280:0.030;320:0.025;360:0.020\n"});
  ASSERT_EQ(o.error, "");
  const int number = std::atoi(o.changes[0].c_str());
  EXPECT_EQ(rows_of(*o.sources.curves, number), rows_of(*project().curves, number));
  EXPECT_EQ(rows_of(*o.sources.ideal_gas, number), rows_of(*project().ideal_gas, number));
  const PureRecord before = record_of(compile_bank(project(), kData), number);
  const PureRecord after = record_of(compile_bank(o.sources, kData), number);
  EXPECT_NE(real(after, "SURT"), real(before, "SURT"));
  const double tc = static_cast<double>(real(after, "TC"));
  EXPECT_NEAR(static_cast<double>(real(after, "SURT")) *
                  std::pow(1 - 320 / tc, static_cast<double>(real(after, "SURT", 1))),
              25.0, 0.5);
  for (const char* field : {"PSAT", "DLIP", "HVAPCF", "VIL", "TCL"})
    EXPECT_EQ(real(after, field), real(before, field)) << field;
}

TEST(UserData, AnOverrideOfTheVapourPressureFitsTheCurvesAnew) {
  const Outcome o =
      apply({"cas,psat_points_K_Pa\n67-64-1,280:13350;300:33300;329.2:101325;360:252000;400:668000\n"});
  ASSERT_EQ(o.error, "");
  const int number = std::atoi(o.changes[0].c_str());
  EXPECT_NE(rows_of(*o.sources.curves, number), rows_of(*project().curves, number));
  EXPECT_EQ(rows_of(*o.sources.curves, number).size(), 1U);
  EXPECT_EQ(rows_of(*o.sources.ideal_gas, number), rows_of(*project().ideal_gas, number));
  EXPECT_EQ(compile_bank(o.sources, kData).components, compile_bank(project(), kData).components);
}

TEST(UserData, PairsTakeNumberCodeOrName) {
  const Outcome o =
      apply({std::string(kHeader) +
             ",kij\nQQ1,test ether,C6H12O,ether,379.15,576.8,3.759e6,1P:0.03;ethane:0.04;22:0.05;QQ2:0\n"
             "QQ2,other ether,C6H12O,ether,379.15,576.8,3.759e6,\n"});
  ASSERT_EQ(o.error, "");
  const BuildResult result = compile_bank(o.sources, kData);
  int seen = 0;
  for (const PairRecord& pair : result.bank.pairs) {
    const int key = pair.integer(1);
    const float value = pair_real(pair, 1);
    if (key == 201246) seen += value == 0.03F ? 1 : 0;
    if (key == 211246) seen += value == 0.04F ? 1 : 0;
    if (key == 221246) seen += value == 0.05F ? 1 : 0;
    if (key == 12451246) seen += value == 0.0F && pair_text(pair, 5, 5) == "3" ? 1 : 0;
  }
  EXPECT_EQ(seen, 4);
}

TEST(UserData, AutomaticNumbersGoDownFromTheHighestFreeOne) {
  const std::string row = ",C6H12O,ether,379.15,576.8,3.759e6\n";
  const Outcome o =
      apply({"code,name,formula,family,tb_K,tc_K,pc_Pa\nQQ1,one" + row + "QQ2,two" + row,
             "number,code,name,formula,family,tb_K,tc_K,pc_Pa\n1245,QQ3,three" + row + ",QQ4,four" + row});
  ASSERT_EQ(o.error, "");
  ASSERT_EQ(o.changes.size(), 4U);
  EXPECT_TRUE(o.changes[0].starts_with("1246 one"));
  EXPECT_TRUE(o.changes[1].starts_with("1244 two"));
  EXPECT_TRUE(o.changes[2].starts_with("1245 three"));
  EXPECT_TRUE(o.changes[3].starts_with("1243 four"));
}

TEST(UserData, UnitSlipsAreNamedWithTheRightFigure) {
  const std::string bar = error_of("QQ1,test ether,C6H12O,ether,379.15,576.8,37.59");
  EXPECT_TRUE(holds(
      bar,
      "mine1.csv, line 2, column pc_Pa: value \"37.59\" [Pa]: outside 102000 to 2e+08; if it is in bar, "
      "write 3759000"))
      << bar;
  EXPECT_TRUE(
      holds(error_of("QQ1,test ether,C6H12O,ether,106,303.65,3.759e6"), "check the units: K, not degrees C"));
  EXPECT_TRUE(
      holds(error_of("QQ1,test ether,C6H12O,ether,379.15,303.65,3.759e6"), "above the critical temperature"));
  EXPECT_TRUE(holds(error_with("tm_K", "-140"), "if it is in degrees C, write 133.15"));
  EXPECT_TRUE(holds(error_with("vc_m3_per_mol", "340"), "if it is in cm3/mol, write 0.00034"));
  EXPECT_TRUE(holds(error_with("vc_m3_per_mol", "0.00034e1"), "critical compressibility of 2.6"));
  EXPECT_TRUE(holds(error_with("hvap_tb_J_per_mol", "33.1"), "if it is in kJ/mol, write 33100"));
  EXPECT_TRUE(holds(error_with("rho_liq_points_K_kg_per_m3", "293.15:0.86"), "if it is in g/cm3, write 860"));
  EXPECT_TRUE(holds(error_with("rho_liq_points_K_kg_per_m3", "293.15:8600"), "times the critical density"));
  EXPECT_TRUE(holds(error_with("sigma_points_K_N_per_m", "293.15:25.17"), "if it is in mN/m, write 0.02517"));
  EXPECT_TRUE(holds(error_with("sg_60F", "860"), "if it is in kg/m3, write 0.86"));
  const std::string bars = error_with("psat_points_K_Pa", "350:0.4;379.15:1.01325;400:1.8");
  EXPECT_TRUE(holds(bars, "mean an acentric factor of") && holds(bars, "check the units (K and Pa)")) << bars;
}

TEST(UserData, PointsThatDoNotRiseOrFallAreNamed) {
  const std::string error = error_with("psat_points_K_Pa", "300:5000;320:4000;340:30000");
  EXPECT_TRUE(holds(error, "line 2, column psat_points_K_Pa")) << error;
  EXPECT_TRUE(holds(error, "point 2 at 320 K: 4000 follows 5000, but it must rise with temperature"))
      << error;
  EXPECT_TRUE(holds(error_with("psat_points_K_Pa", "320:4000;300:5000"), "the temperatures must rise"));
  EXPECT_TRUE(
      holds(error_with("psat_points_K_Pa", "300:5000;600:40000"), "at or above the critical temperature"));
  EXPECT_TRUE(holds(error_with("psat_points_K_Pa", "300:5000;500:4e6"), "at or above the critical pressure"));
  EXPECT_TRUE(
      holds(error_with("psat_points_K_Pa", "350:80000;379.15:180000"), "at the boiling point of 379.15 K"));
  EXPECT_TRUE(
      holds(error_with("psat_antoine_K_Pa", "300;380;6.2;1400;-60"), "log10(P/Pa) = A - B/(T/K + C)"));
  EXPECT_TRUE(
      holds(error_with("psat_antoine_K_Pa", "300;380;9.2;-1400;-60"), "it must rise and stay below pc_Pa"));
  EXPECT_TRUE(holds(error_with("psat_antoine_K_Pa", "300;380;9.2;1400"),
                    "4 figures; write Tmin;Tmax and 3 constants"));
  EXPECT_TRUE(holds(error_with("rho_liq_points_K_kg_per_m3", "300:800;350:850"), "it must fall"));
  EXPECT_TRUE(holds(error_with("hvap_points_K_J_per_mol", "300:33000;350:35000"), "it must fall"));
  EXPECT_TRUE(holds(error_with("psat_points_K_Pa", "300=5000"), "write T:value;T:value"));
  EXPECT_TRUE(holds(error_with("k_liq_points_K_W_per_mK", "300:0.13"), "a single point"));
}

TEST(UserData, FaultyRowsAreNamed) {
  EXPECT_TRUE(
      holds(error_of("QQ1,test ether,C6H12O,ether,379.15,576.8"), "line 2: 6 fields where the header has 7"));
  EXPECT_TRUE(holds(error_of("QQ1,test ether,C6H12O,eter,379.15,576.8,3.759e6"),
                    "column family: value \"eter\": unknown"));
  EXPECT_TRUE(holds(error_of("QQ1,test ether,C6h12O,ether,379.15,576.8,3.759e6"), "not a formula"));
  EXPECT_TRUE(holds(error_of("QQ1,test ether,C6H12O,ether,nan,576.8,3.759e6"), "not a number"));
  EXPECT_TRUE(
      holds(error_of("QQ1,test ether,C6H12O,ether,,576.8,3.759e6"), "column omega is missing in the header"));
  EXPECT_TRUE(
      holds(error_of("QQ1,test ether,C6H12O,ether,379.15,,3.759e6"), "column tc_K: value \"\" [K]: empty"));
  EXPECT_TRUE(holds(error_of("QQ123,test ether,C6H12O,ether,379.15,576.8,3.759e6"), "at most 4 characters"));
  EXPECT_TRUE(holds(error_of("3P,test ether,C6H12O,ether,379.15,576.8,3.759e6"),
                    "component 22 (code \" 3P \") of the bank has another name"));
  EXPECT_TRUE(holds(error_of("QQ1,HEXENE,C6H12,olefin,336.6,504,3.2e6"), "must not begin with HE"));
  EXPECT_TRUE(holds(error_with("mw", "150"), "formula C6H12O has a molar mass of 100.159 g/mol, not 150"));
  EXPECT_TRUE(holds(error_with("cas", "67-64-2"), "the last digit would be 1"));
  EXPECT_TRUE(holds(error_with("cas", "67-64-1"), "to override, or choose a free cas"));
  EXPECT_TRUE(holds(error_with("number", "1247"), "outside 2 to 1246"));
  EXPECT_TRUE(holds(error_with("omega", "0.9"), "mean an acentric factor near 0.28"));
  EXPECT_TRUE(holds(error_with("pc_bar", "37"), "unknown column pc_bar in the header; write pc_Pa"));
  EXPECT_TRUE(holds(error_with("colour", "red"), "unknown column colour in the header; take it out"));
  for (const char* groups : {"1", "161:1", "1:0", "1:1 2:1", "1:1;2:1;3:1;4:1;5:1;6:1;7:1;8:1;9:1"}) {
    EXPECT_TRUE(holds(error_with("unifac_original", groups), "column unifac_original")) << groups;
  }
  EXPECT_EQ(error_with("unifac_original", "1:2;2:1"), "");
  EXPECT_TRUE(holds(error_of("QQ1,salt,CH4NaSiPB,other,379.15,576.8,3.759e6"), "at most three elements"));
  EXPECT_TRUE(holds(error_with("kij", "nothing:0.1"), "no other component has this"));
  EXPECT_TRUE(holds(error_with("kij", "1P:5"), "the value between -1 and 1"));
  const std::string same =
      error_of("QQ1,a,C6H12O,ether,379.15,576.8,3.759e6\nQQ1,b,C6H12O,ether,379.15,576.8,3.759e6");
  EXPECT_TRUE(holds(same, "line 3, column code") && holds(same, "stands already in") && holds(same, "line 2"))
      << same;
}

TEST(UserData, AllMistakesAreListedInOrderAndNothingIsWritten) {
  const Folder folder;
  folder.write("mine.csv", std::string(kHeader) +
                               "\n"
                               "QQ1,one,C6H12O,eter,379.15,576.8,37.59\n"
                               "QQ2,two,C6H12O,ether\n"
                               "QQ2,two,C6H12O,ether,379.15,303.6,3.759e6\n");
  BuildOptions options{kData, folder.path() / "share" / "Zandor", {folder.path() / "mine.csv"}};
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(build_main(options), 1);
  const std::string error = ::testing::internal::GetCapturedStderr();
  const std::size_t family = error.find("line 2, column family"),
                    pressure = error.find("line 2, column pc_Pa"), fields = error.find("line 3: 4 fields"),
                    boiling = error.find("line 4, column tb_K"),
                    count = error.find("4 mistakes; nothing was written");
  ASSERT_NE(count, std::string::npos) << error;
  EXPECT_LT(std::max(family, pressure), fields) << error;
  EXPECT_LT(fields, boiling) << error;
  EXPECT_LT(boiling, count) << error;
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "share"));
  options.with = {folder.path() / "absent.csv"};
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(build_main(options), 1);
  EXPECT_TRUE(holds(::testing::internal::GetCapturedStderr(), "absent.csv: cannot be opened"));
}

TEST(UserData, DocumentationNamesEveryCellColumnAndFile) {
  std::ifstream in(kSource / "docs" / "data.md");
  const std::string doc{std::istreambuf_iterator<char>(in), {}};
  for (const CellField& field : pure_fields()) {
    const std::string span =
        field.cells == 1 ? std::to_string(field.cell)
                         : std::to_string(field.cell) + " to " + std::to_string(field.cell + field.cells - 1);
    EXPECT_TRUE(holds(doc, "| " + span + " | `" + std::string(field.name) + "` |")) << field.name;
  }
  for (const UserColumn& column : user_columns())
    EXPECT_TRUE(holds(doc, "`" + std::string(column.name) + "`")) << column.name;
  for (const auto& entry :
       std::filesystem::directory_iterator(std::filesystem::path(test::install_directory()) / "Zandor")) {
    if (entry.path().filename() == "talix.err") continue;  // written by hosts, no part of the bank
    EXPECT_TRUE(holds(doc, "`" + entry.path().filename().string() + "`")) << entry.path();
  }
  // The example stands in the text as it stands in the file.
  const SourceTable example = SourceTable::read(kExample);
  ASSERT_EQ(example.rows(), 2U);
  for (const std::string& column : example.columns()) {
    if (column == "source") continue;
    const auto cell = [&](std::size_t row) {
      return example.text(row, column).empty() ? " |" : " " + example.text(row, column) + " |";
    };
    EXPECT_TRUE(holds(doc, "| `" + column + "` |" + cell(0) + cell(1))) << column;
  }
}

// The example of the documentation: built, looked up, flashed.
class UserExample : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder_ = new Folder;
    for (const char* share : {"one", "two"}) {
      ::testing::internal::CaptureStdout();
      EXPECT_EQ(build_main({kData, folder_->path() / share / "Zandor", {kExample}}), 0);
      told_ = ::testing::internal::GetCapturedStdout();
    }
  }
  static void TearDownTestSuite() {
    delete folder_;
    folder_ = nullptr;
  }
  static std::string share() { return (folder_->path() / "one").string(); }

  static Folder* folder_;
  static std::string told_;
};
Folder* UserExample::folder_ = nullptr;
std::string UserExample::told_;

TEST_F(UserExample, BuildTellsWhatBecameOfEachRow) {
  EXPECT_TRUE(holds(told_, "1246 cyclopentyl methyl ether, code \"CPME\": added; estimated: omega")) << told_;
  EXPECT_TRUE(holds(told_, "466 2-methyltetrahydrofuran, code \"MTTR\": overridden: dipole_D")) << told_;
}

TEST_F(UserExample, TwoBuildsAreByteIdentical) {
  int files = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_->path() / "one")) {
    if (!entry.is_regular_file()) continue;
    const std::filesystem::path name = std::filesystem::relative(entry.path(), folder_->path() / "one");
    EXPECT_EQ(folder_->read(("one" / name).string()), folder_->read(("two" / name).string())) << name;
    EXPECT_GT(entry.file_size(), 0U) << name;
    ++files;
  }
  EXPECT_GE(files, 16);
}

TEST_F(UserExample, TheSearchFindsItByAnyOfItsNames) {
  const cli::Catalogue catalogue = cli::Catalogue::read(share());
  for (const char* key : {"cyclopentyl methyl ether", "CPME", "methoxycyclopentane", "5614-37-9", "1246"}) {
    const cli::CatalogueEntry* const found = catalogue.find(key);
    ASSERT_NE(found, nullptr) << key;
    EXPECT_EQ(found->number, 1246) << key;
  }
  bool by_formula = false;
  for (const cli::CatalogueEntry* const entry : catalogue.search("OC6H12"))
    by_formula = by_formula || entry->number == 1246;
  EXPECT_TRUE(by_formula);
}

TEST_F(UserExample, CatalogueCallAndSearchAgreeOnEveryComponent) {
  test::fresh_library(share());
  const cli::Catalogue catalogue = cli::Catalogue::read(share());
  constexpr int kRecords = 1246, kName = 28;
  std::vector<R4> tc(kRecords), pc(kRecords), mw(kRecords), tb(kRecords), other(kRecords);
  std::string names(std::size_t{kRecords} * kName, ' ');
  I4 COUNT = 0;
  GETTALIXPROPS(&COUNT, tc.data(), pc.data(), mw.data(), tb.data(), other.data(), other.data(), names.data(),
                kName);
  EXPECT_EQ(COUNT, kRecords);
  int compared = 0;
  for (const cli::CatalogueEntry& entry : catalogue.entries()) {
    const auto at = static_cast<std::size_t>(entry.number - 1);
    EXPECT_NEAR(static_cast<double>(tc[at]) / *entry.tc_K, 1.0, 1e-6) << entry.name;
    EXPECT_NEAR(static_cast<double>(pc[at]) * 10.0 / *entry.pc_bar, 1.0, 1e-6) << entry.name;
    EXPECT_NEAR(static_cast<double>(mw[at]) / *entry.molar_mass_g_mol, 1.0, 1e-6) << entry.name;
    EXPECT_NEAR(static_cast<double>(tb[at]) / *entry.tb_K, 1.0, 1e-6) << entry.name;
    EXPECT_NE(trimmed(std::string_view(names).substr(at * kName, kName)), "") << entry.name;
    // Each is found by the atoms of its formula, turned round: the carbon behind.
    if (++compared % 25 != 0 || !entry.formula.starts_with("C") || entry.formula.size() < 3) continue;
    const auto hydrogen = entry.formula.find('H');
    if (hydrogen == std::string::npos) continue;
    bool found = false;
    for (const auto* const hit :
         catalogue.search(entry.formula.substr(hydrogen) + entry.formula.substr(0, hydrogen)))
      found = found || hit->number == entry.number;
    EXPECT_TRUE(found) << entry.name;
  }
  EXPECT_GE(compared, 970);
  test::fresh_library();
}

TEST_F(UserExample, CatalogueCallAndFlashReadTheSameRecord) {
  test::fresh_library(share());
  const I4 ID = 1246;
  R4 v[6] = {};
  std::string name(28, '#');
  I4 STATUS = -9;
  GETTALIXPROPSID(&ID, &v[0], &v[1], &v[2], &v[3], &v[4], &v[5], name.data(), 28, &STATUS);
  EXPECT_EQ(STATUS, 0);
  EXPECT_EQ(trimmed(name), "cyclopentyl methyl ether");
  EXPECT_FLOAT_EQ(v[0], 576.8F);
  EXPECT_FLOAT_EQ(v[1], 3.759F);
  EXPECT_NEAR(v[2], 100.159F, 0.01F);
  // It boils where the table says, at the pressure of the atmosphere; beside methane it stays in the liquid.
  test::FlashCase flash;
  flash.numbers = {20, 1246};
  flash.feed = {1.0F, 1.0F};
  flash.T = 20.0F;
  flash.P = 20.0F;
  EXPECT_EQ(flash.run(), "");
  std::ostringstream out, err;
  EXPECT_EQ(cli::run({"flash", "--comp", "cyclopentyl methyl ether", "--feed", "1", "--type", "bubble-t",
                      "-P", "1.01325", "--format", "json", "--install", share()},
                     out, err),
            0)
      << err.str();
  const std::size_t at = out.str().find("\"T_C\": ");
  ASSERT_NE(at, std::string::npos) << out.str();
  EXPECT_NEAR(std::atof(out.str().c_str() + at + 7), 106.0, 0.3);
  test::fresh_library();
}

}  // namespace
}  // namespace talix::bank
