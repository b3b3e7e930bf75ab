#include "bank/build.h"

#include <gtest/gtest.h>

#include <cmath>

#include "bank/tables.h"
#include "support/bank_source.h"

namespace talix::bank {
namespace {

using testing::Folder;
using testing::Row;

const std::filesystem::path kData = std::filesystem::path(TALIX_TEST_SOURCE) / "data";

std::string error_of(const Folder& folder) {
  try {
    (void)compile_bank(folder.path());
  } catch (const BankError& error) {
    return error.what();
  }
  return {};
}

// Error of a component table in which one cell of propane is altered.
std::string error_with(const std::string& column, const std::string& text) {
  const Folder folder;
  testing::write_small_sources(folder);
  Row row = testing::propane();
  row[column] = text;
  folder.write("components.csv", testing::component_table({testing::water(), row}));
  return error_of(folder);
}

const PureRecord& record(const BuildResult& result, int number) {
  return result.bank.pure.at(static_cast<std::size_t>(number - 1));
}

double real(const PureRecord& pure, std::string_view field, int offset = 0) {
  return static_cast<double>(pure.real(pure_field(field).cell + offset));
}

std::string text(const PureRecord& pure, std::string_view field) {
  return pure.text(pure_field(field).cell, pure_field(field).cells);
}

TEST(BankBuild, RecordNumberIsComponentNumberUpToTheHighest) {
  const Folder folder;
  testing::write_small_sources(folder);
  const BuildResult result = compile_bank(folder.path());
  ASSERT_EQ(result.bank.pure.size(), 22U);
  ASSERT_EQ(result.bank.directory.size(), 22U);
  EXPECT_EQ(result.components, 2);
  EXPECT_EQ(text(record(result, 9), "ICS"), "H2O ");
  EXPECT_EQ(text(record(result, 22), "ICSTD"), "  22");
  EXPECT_EQ(result.bank.directory[21].standard, "  22");
  EXPECT_EQ(result.bank.directory[21].code, " 3P ");
  for (const int unused : {1, 2, 21}) {
    EXPECT_TRUE(is_unused(record(result, unused))) << unused;
    EXPECT_EQ(result.bank.directory[static_cast<std::size_t>(unused - 1)].code, "    ") << unused;
  }
}

TEST(BankBuild, ConstantsTakeTheUnitsOfTheRecord) {
  const Folder folder;
  testing::write_small_sources(folder);
  const BuildResult result = compile_bank(folder.path());
  const PureRecord& propane = record(result, 22);
  EXPECT_FLOAT_EQ(propane.real(51), 369.89F);
  EXPECT_FLOAT_EQ(propane.real(52), 4.2512F);  // MPa: read as ten times this in bar
  EXPECT_FLOAT_EQ(propane.real(53), 0.2F);     // m3/kmol
  EXPECT_FLOAT_EQ(propane.real(60), 8.0F / 3.0F);
  EXPECT_NEAR(real(propane, "UOPK"), 14.70, 0.01);
  EXPECT_EQ(propane.integer(26), 3);
  EXPECT_EQ(propane.integer(27), 8);
  EXPECT_EQ(propane.integer(43), 1);
  EXPECT_EQ(propane.integer(247), 22);
  EXPECT_EQ(propane.integer(250), 20);
  EXPECT_EQ(propane.real(207), 1.0F);
  EXPECT_EQ(propane.real(208), 2.0F);
  EXPECT_EQ(propane.real(209), 2.0F);
  EXPECT_EQ(propane.real(210), 1.0F);
}

TEST(BankBuild, AbsentFiguresStayZeroWithTheirFlags) {
  const Folder folder;
  testing::write_small_sources(folder);
  const BuildResult result = compile_bank(folder.path());
  const PureRecord& propane = record(result, 22);
  for (const int flag : {47, 48, 50, 70, 71, 93, 131, 154, 156, 186, 196, 231, 238, 249}) {
    EXPECT_EQ(propane.integer(flag), 0) << flag;
  }
  const PureRecord& water = record(result, 9);
  EXPECT_EQ(water.integer(154), 1);
  EXPECT_FLOAT_EQ(water.real(155), 1.85F);
  EXPECT_EQ(real(water, "HCRAT"), 0);
}

TEST(BankBuild, FittedCurvesGoToTheirCrossedCells) {
  const Folder folder;
  testing::write_small_sources(folder);
  folder.write("curves.csv",
               "number,code,basis,p1,p2,p3,p4,p5,p6,p7,p8,p9,p10,p11,p12,p13,p14,p15\n"
               "22,\" 3P \",correlations,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15\n");
  const BuildResult result = compile_bank(folder.path());
  const PureRecord& propane = record(result, 22);
  for (int i = 1; i <= 5; ++i) {
    EXPECT_EQ(propane.real(110 + i), static_cast<float>(i));
    EXPECT_EQ(propane.real(115 + i), static_cast<float>(10 + i));
    EXPECT_EQ(propane.real(120 + i), static_cast<float>(5 + i));
  }
  EXPECT_EQ(text(propane, "curves"), "COR ");
  EXPECT_EQ(text(record(result, 9), "curves"), "GEN ");
  EXPECT_EQ(result.fitted, 1);
  EXPECT_EQ(result.generalised, 1);
}

TEST(BankBuild, GeneralisedCurvesComeFromTheAcentricFactor) {
  const Folder folder;
  testing::write_small_sources(folder);
  const BuildResult result = compile_bank(folder.path());
  const double omega = 0.1521;
  const PureRecord& propane = record(result, 22);
  EXPECT_NEAR(real(propane, "PARABF 11-15", 1), 19.696 * omega + 0.18902, 1e-5);
  EXPECT_NEAR(real(propane, "PARABF 1-5", 3), 0.9, 1e-6);
  EXPECT_NEAR(real(propane, "PARABF 1-5", 2), 0.224051 + 0.198662 * (omega - 0.209), 1e-6);
}

TEST(BankBuild, ComponentBelowTheGeneralisedRelationIsLeftOutWithANote) {
  const Folder folder;
  testing::write_small_sources(folder);
  folder.write("components.csv",
               testing::component_table({testing::water(), testing::methane(), testing::propane()}));
  const BuildResult result = compile_bank(folder.path());
  EXPECT_EQ(result.components, 2);
  EXPECT_TRUE(is_unused(record(result, 20)));
  EXPECT_EQ(result.bank.directory[19].code, "    ");
  bool noted = false;
  for (const std::string& note : result.notes) noted = noted || note.starts_with("20 methane: left out");
  EXPECT_TRUE(noted);
}

TEST(BankBuild, HeatCapacityAndVapourPressureSetsCarryTheirFlags) {
  const Folder folder;
  testing::write_small_sources(folder);
  folder.write("ideal_gas.csv", "number,code,c1,c2,c3,c4,c5,c6,c7,c8\n22,\" 3P \",10,0.25,-1e-4,,,,,8\n");
  folder.write("vapour_pressure.csv", "number,code,w1,w2,w3,w4\n22,\" 3P \",-6.7,1.3,-1.4,-2.6\n");
  const BuildResult result = compile_bank(folder.path());
  const PureRecord& propane = record(result, 22);
  EXPECT_EQ(propane.integer(249), 1);
  EXPECT_EQ(propane.real(101), 10.0F);
  EXPECT_EQ(propane.real(103), -1e-4F);
  EXPECT_EQ(propane.real(108), 8.0F);
  EXPECT_EQ(propane.integer(50), 1);
  EXPECT_EQ(propane.real(185), -2.6F);
  EXPECT_EQ(record(result, 9).integer(50), 0);
}

TEST(BankBuild, FormationEntropyFollowsFromHeatAndGibbsEnergy) {
  const Folder folder;
  testing::write_small_sources(folder);
  Row row = testing::propane();
  row["hf_gas_J_per_mol"] = "-104680";
  row["gf_gas_J_per_mol"] = "-24390";
  row["hcomb_gross_J_per_mol"] = "2220000";
  folder.write("components.csv", testing::component_table({testing::water(), row}));
  const BuildResult result = compile_bank(folder.path());
  EXPECT_NEAR(real(record(result, 22), "SOFF"), (-104680.0 + 24390.0) / 298.15, 1e-3);
  EXPECT_FLOAT_EQ(record(result, 22).real(77), 2220000.0F);
  EXPECT_EQ(record(result, 22).real(78), 0.0F);  // the reader derives the net heat
}

TEST(BankBuild, FurtherElementsAreStoredByAtomicNumber) {
  const Folder folder;
  testing::write_small_sources(folder);
  Row row = testing::propane();
  row["other_atoms"] = "Si:2;Hg:1";
  folder.write("components.csv", testing::component_table({testing::water(), row}));
  const BuildResult result = compile_bank(folder.path());
  const PureRecord& altered = record(result, 22);
  const int expected[] = {14, 2, 80, 1, 0, 0};
  for (int i = 0; i < 6; ++i) EXPECT_EQ(altered.integer(35 + i), expected[i]) << i;
}

TEST(BankBuild, FaultsInTheComponentTableAreNamed) {
  const std::pair<const char*, const char*> faults[] = {{"number", "1"},
                                                        {"number", "1247"},
                                                        {"number", "9"},
                                                        {"code", "3P"},
                                                        {"code", "\"    \""},
                                                        {"code", "\"H2O \""},
                                                        {"name28", ""},
                                                        {"short_name", ""},
                                                        {"short_name", "ninechars"},
                                                        {"short_name", "H2x"},
                                                        {"short_name", "HEx"},
                                                        {"short_name", "N2x"},
                                                        {"cas", "1"},
                                                        {"isofam", "0"},
                                                        {"C", "-1"},
                                                        {"other_atoms", "Xx:1"},
                                                        {"other_atoms", "Si"},
                                                        {"tc_K", ""},
                                                        {"tc_K", "abc"},
                                                        {"pc_Pa", "42.5"},
                                                        {"vc_m3_per_mol", "200"},
                                                        {"omega", "nan"},
                                                        {"mw", "0"},
                                                        {"tb_K", ""},
                                                        {"sg_60F", ""},
                                                        {"unifac_original", "1"},
                                                        {"unifac_original", "161:1"}};
  for (const auto& [column, text] : faults) {
    const std::string error = error_with(column, text);
    EXPECT_NE(error.find("components.csv, line 3, column " + std::string(column)), std::string::npos)
        << column << " " << text << ": " << error;
  }
}

TEST(BankBuild, NineGroupsAreRefused) {
  EXPECT_NE(error_with("unifac_original", "1:1;2:1;3:1;4:1;5:1;6:1;7:1;8:1").find("column"), 0U);
  EXPECT_EQ(error_with("unifac_original", "1:1;2:1;3:1;4:1;5:1;6:1;7:1;8:1"), "");
  EXPECT_NE(error_with("unifac_original", "1:1;2:1;3:1;4:1;5:1;6:1;7:1;8:1;9:1"), "");
}

TEST(BankBuild, OnlyTheThreeLightGasesMayBeginWithTheirLetters) {
  const Folder folder;
  testing::write_small_sources(folder);
  Row gas = testing::propane();
  gas["code"] = "\"N2  \"";
  gas["short_name"] = "Nitrogen";
  folder.write("components.csv", testing::component_table({testing::water(), gas}));
  EXPECT_NE(error_of(folder).find("column short_name"), std::string::npos);
}

TEST(BankBuild, SetOfAnotherCodeIsRefused) {
  const Folder folder;
  testing::write_small_sources(folder);
  folder.write("vapour_pressure.csv", "number,code,w1,w2,w3,w4\n22,\" 4P \",-6.7,1.3,-1.4,-2.6\n");
  EXPECT_NE(error_of(folder).find("vapour_pressure.csv, line 2, column code"), std::string::npos);
}

TEST(BankBuild, SameSourcesGiveTheSameBytes) {
  const Folder first;
  const Folder second;
  for (const Folder* folder : {&first, &second}) write_bank(folder->path(), compile_bank(kData).bank);
  for (const char* const file : {"purezan.out", "pcdir.asc", "pzandir.out", "bzandir.out", "binzan.out",
                                 "phyddir.out", "purehyd.out"}) {
    EXPECT_FALSE(first.read(file).empty()) << file;
    EXPECT_EQ(first.read(file), second.read(file)) << file;
  }
}

TEST(BankBuild, ExitCodeTellsAFault) {
  const Folder folder;
  testing::write_small_sources(folder);
  BuildOptions options{folder.path(), folder.path() / "Zandor"};
  ::testing::internal::CaptureStdout();
  EXPECT_EQ(build_main(options), 0);
  EXPECT_NE(::testing::internal::GetCapturedStdout().find("wrote 2 components"), std::string::npos);
  EXPECT_TRUE(std::filesystem::exists(folder.path() / "Zandor" / "purezan.out"));
  EXPECT_TRUE(std::filesystem::exists(folder.path() / "catalogue.csv"));
  options.data_dir = folder.path() / "absent";
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(build_main(options), 1);
  EXPECT_NE(::testing::internal::GetCapturedStderr().find("components.csv: cannot be opened"),
            std::string::npos);
}

TEST(BankOfTheProject, HoldsTheGasPlantList) {
  const BuildResult result = compile_bank(kData);
  EXPECT_GE(result.components, 60);
  for (const int number :
       {4,   9,   22,  23,  24,  25,  26,  27,  28,  33,  42,  102, 116, 125, 130, 134, 228, 232,
        238, 201, 203, 202, 277, 278, 279, 280, 281, 283, 285, 323, 328, 329, 403, 415, 63,  62}) {
    EXPECT_FALSE(is_unused(record(result, number))) << number;
  }
}

TEST(BankOfTheProject, HoldsThePairsThatANaturalGasNeeds) {
  struct Expected {
    int key;
    float low;
    float high;
  };
  const BuildResult result = compile_bank(kData);
  const Expected expected[] = {{40011, 0.08F, 0.13F},  {40015, -0.08F, 0.02F}, {40020, 0.08F, 0.13F},
                               {40021, 0.10F, 0.15F},  {40022, 0.10F, 0.15F},  {110015, 0.10F, 0.20F},
                               {110020, 0.07F, 0.12F}, {150020, 0.01F, 0.05F}, {150021, 0.02F, 0.07F}};
  for (const auto& [key, low, high] : expected) {
    bool found = false;
    for (const PairRecord& pair : result.bank.pairs) {
      if (pair.integer(1) != key) continue;
      found = true;
      const float cool = pair_real(pair, 1) + 250.0F * pair_real(pair, 2);
      EXPECT_GE(cool, low) << key;
      EXPECT_LE(cool, high) << key;
      EXPECT_EQ(pair_text(pair, 5, 6), "10") << key;
    }
    EXPECT_TRUE(found) << key;
  }
}

TEST(BankOfTheProject, LeavesHydrocarbonsWithWaterAndGlycolsToTheEstimates) {
  const BuildResult result = compile_bank(kData);
  int gases = 0;
  for (const PairRecord& pair : result.bank.pairs) {
    const int key = pair.integer(1);
    const bool aqueous = key / 10000 == 9 && key % 10000 >= 20 && key % 10000 <= 57;
    const bool glycol = key / 10000 >= 20 && key / 10000 <= 57 && key % 10000 >= 403 && key % 10000 <= 415;
    // Methane to the butanes follow their Henry constants.
    const bool henry = key >= 90020 && key <= 90024;
    EXPECT_FALSE((aqueous && !henry) || glycol) << key;
    gases += henry;
  }
  EXPECT_EQ(gases, 5);
}

}  // namespace
}  // namespace talix::bank
