// The import of published figures of single models, on a small folder of facts.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "bank/tables.h"
#include "support/bank_writer.h"
#include "support/test_support.h"
#include "tools/process.h"

namespace talix::test {
namespace {

using bank::SourceTable;

class ParameterImport : public ::testing::Test {
 protected:
  ParameterImport() : facts(scratch.path() / "facts"), data(scratch.path() / "data") {
    std::filesystem::create_directories(data);
    for (const char* folder : {"unifac", "association", "alpha", "solids", "chain", "components"})
      std::filesystem::create_directories(facts / folder);
    const std::string subgroups =
        "subgroup,main_group,main_group_name,subgroup_name,name8,R,Q,molar_mass_g_mol,formula,note,source\n";
    const std::string pairs = "main_i,main_j,a_K,source\n";
    const std::string three = "main_i,main_j,a1_K,a2_dimensionless,a3_dimensionless,source\n";
    write("unifac/original_subgroups.csv", subgroups + "1,1,CH2,CH3,CH3,0.9011,0.8480,15.0350,CH3,,A\n" +
                                               "16,7,H2O,H2O,H2O,0.9200,1.4000,18.0150,H2O,,A\n" +
                                               "178,84,IMI,IMI,IMI,1,1,60,C3H3N2,,A\n");
    write("unifac/original_interactions.csv", pairs + "1,7,1318.0,A\n7,1,300.0,A\n1,84,1.0,A\n");
    write("unifac/dortmund_subgroups.csv", subgroups + "1,1,CH2,CH3,CH3,0.6325,1.0608,15.0350,CH3,,B\n" +
                                               "78,42,CY-CH2,CY-CH2,CY-CH2,0.7136,0.8635,14.0270,CH2,,B\n");
    write("unifac/dortmund_interactions.csv",
          "main_i,main_j,a_K,b_dimensionless,c_per_K,source\n1,42,-117.1,0.5481,-9.8e-4,B\n");
    write("unifac/lyngby_subgroups.csv", subgroups + "14,6,H2O,H2O,H2O,0.9200,1.4000,18.0150,H2O,,C\n");
    write("unifac/lyngby_interactions.csv", three);
    write("unifac/linear_nistkt_subgroups.csv",
          subgroups + "36,7,H2O,H2O,H2O,0.9200,1.4000,18.0150,H2O,,D\n" +
              "13,34,C=-C,CH\u2261C-,CH\u2261C-,1.2920,1.0880,25.0300,C2H,,D\n");
    write("unifac/linear_nistkt_interactions.csv", three);
    const std::string pure =
        "cas,name,a0_Pa_m6_mol2,b_m3_mol,c1,eps_assoc_J_mol,beta,scheme,Tc_used_K,rdf,status,ASF,source,"
        "note\n";
    write("association/cpa_pure.csv",
          pure + "1-1-1,one,1.5,2e-5,0.5,100,0.01,2B,400,simplified,recovered,1,R,\n" +
              "1-1-1,one,1.6,3e-5,0.6,200,0.02,2B,400,simplified,published,1,P,\n" +
              "1-1-1,one,1.7,3e-5,0.6,200,0.02,2B,400,original (CS),published,1,P,\n" +
              "2-2-2,two,1.5,2e-5,0.5,0,0,inert or 1 site,400,simplified,published,0.5,P,\n" +
              "3-3-3,three,1.5,2e-5,0.5,0,0,4C,400,simplified,unverified,2,P,\n");
    write(
        "association/cpa_binary.csv",
        "cas1,name1,cas2,name2,kij,kijT_per_K,cross_rule,beta_cross,eps_cross_J_mol,rdf,status,source,note\n"
        "1-1-1,one,2-2-2,two,0.1,0,none,,,simplified,package,X,\n"
        "2-2-2,two,1-1-1,one,0.2,0,solvation (modified CR-1),0.05,,simplified,published,Y,\n");
    write("alpha/twu_srk.csv",
          "cas,name,form,c1_L,c2_M,c3_N,Tc_K,Pc_Pa,source\n1-1-1,one,6,0.1,0.2,0.3,400,4e6,T\n"
          "9-9-9,none of ours,6,0.1,0.2,0.3,400,4e6,T\n");
    write("components/numbers.csv", "number,cas\n2,1-1-1\n");
    write("solids/langmuir.csv",
          "cas,former,structure,cavity,A_K_per_bar,B_K,source\n"
          "1-1-1,X,I,large,0.1,2000,other set\n"
          "1-1-1,X,I,large,0.2,2500,\"Munck, Skjold-Jorgensen & Rasmussen\"\n"
          "1-1-1,X,I,small,0.3,2600,Parrish & Prausnitz 1972\n");
    write("solids/kihara.csv",
          "cas,former,core_radius_a_A,sigma_A,eps_over_k_K,source\n"
          "1-1-1,X,0.1,3.1,150,Ng & Robinson 1977\n1-1-1,X,0.2,3.2,160,Parrish & Prausnitz 1972\n"
          "1-1-1,X,0.3,3.3,170,Ballard\n");
    write("solids/hydrate_checks.csv",
          "cas,composition_dry,T_K,P_Pa,structure,source,note\n1-1-1,X=1,280,1e6,I,S,\n");
    write("chain/henry.csv",
          "gas_cas,gas,h1,h2_K,h3,h4_per_K,status,source\n"
          "1-1-1,one,1,2,3,4,suspect,correlations collected by ChemSep\n"
          "1-1-1,one,5,6,7,8,ok,Klauda & Sandler 2000\n");
  }
  void write(const std::string& file, const std::string& text) { write_bytes(facts / file, text); }
  ProcessResult run() {
    return run_process("python3 " + quoted(std::string(TALIX_TEST_SOURCE) + "/scripts/import_parameters.py") +
                       " " + quoted(facts.string()) + " --data " + quoted(data.string()) + " 2>&1");
  }
  SourceTable table(const char* name) { return SourceTable::read(data / name); }

  ScratchDirectory scratch;
  std::filesystem::path facts, data;
};

TEST_F(ParameterImport, GroupsGoUnderTheNumbersOfTheOriginalTable) {
  const ProcessResult result = run();
  ASSERT_EQ(result.code, 0) << result.output;
  const SourceTable groups = table("unifac_subgroups.csv");
  std::string text;
  for (std::size_t row = 0; row < groups.rows(); ++row)
    text += groups.text(row, "table") + " " + groups.text(row, "subgroup") + " " +
            groups.text(row, "published_subgroup") + " " + groups.text(row, "name8") + " " +
            groups.text(row, "R") + "\n";
  EXPECT_EQ(text,
            "original 1 1 CH3 0.9011\noriginal 16 16 H2O 0.9200\ndortmund 1 1 CH3 0.6325\ndortmund 110 78 "
            "CY-CH2 0.7136\n"
            "lyngby 16 14 H2O 0.9200\nlinear 16 36 H2O 0.9200\nlinear 65 13 CH#C- 1.2920\n");
  const SourceTable pairs = table("unifac_interactions.csv");
  ASSERT_EQ(pairs.rows(), 3U);
  EXPECT_EQ(pairs.text(0, "a"), "1318.0");
  EXPECT_EQ(pairs.text(0, "b"), "0");
  EXPECT_EQ(pairs.text(2, "c"), "-9.8e-4");
}

TEST_F(ParameterImport, OneSetIsChosen) {
  ASSERT_EQ(run().code, 0);
  const SourceTable pure = table("association_pure.csv");
  ASSERT_EQ(pure.rows(), 2U);
  EXPECT_EQ(pure.text(0, "a0_Pa_m6_per_mol2"), "1.6");
  EXPECT_EQ(pure.text(1, "scheme"), "inert");
  const SourceTable pairs = table("association_pairs.csv");
  ASSERT_EQ(pairs.rows(), 1U);
  EXPECT_EQ(pairs.text(0, "kij"), "0.2");
  EXPECT_EQ(pairs.text(0, "cross_rule"), "solvation");
  EXPECT_EQ(table("srk_twu.csv").rows(), 1U);
  const SourceTable langmuir = table("hydrate_langmuir.csv");
  ASSERT_EQ(langmuir.rows(), 1U);
  EXPECT_EQ(langmuir.text(0, "A_K_per_bar"), "0.2");
  EXPECT_EQ(table("hydrate_kihara.csv").text(0, "sigma_A"), "3.2");
  EXPECT_EQ(table("hydrate_solubility.csv").text(0, "h1"), "5");
  EXPECT_EQ(table("hydrate_points.csv").rows(), 1U);
}

TEST_F(ParameterImport, TheSameFactsGiveTheSameTables) {
  ASSERT_EQ(run().code, 0);
  std::string before;
  for (const auto& name :
       {"unifac_subgroups.csv", "association_pairs.csv", "srk_twu.csv", "hydrate_points.csv"})
    before += read_bytes(data / name);
  ASSERT_EQ(run().code, 0);
  std::string after;
  for (const auto& name :
       {"unifac_subgroups.csv", "association_pairs.csv", "srk_twu.csv", "hydrate_points.csv"})
    after += read_bytes(data / name);
  EXPECT_EQ(before, after);
}

TEST_F(ParameterImport, CounterpartsMustBeTheSameAtoms) {
  write("unifac/lyngby_subgroups.csv",
        "subgroup,main_group,main_group_name,subgroup_name,name8,R,Q,molar_mass_g_mol,formula,note,source\n"
        "14,6,OH,OH,OH,0.9200,1.4000,17.0,HO,,C\n");
  const ProcessResult result = run();
  EXPECT_NE(result.code, 0);
  EXPECT_NE(result.output.find("lyngby 14 HO is not 16 H2O"), std::string::npos) << result.output;
}

TEST_F(ParameterImport, AFolderWithoutFactsIsNamed) {
  facts = scratch.path() / "nothing";
  const ProcessResult result = run();
  EXPECT_NE(result.code, 0);
  EXPECT_NE(result.output.find("no folder of fact tables"), std::string::npos) << result.output;
}

}  // namespace
}  // namespace talix::test
