// The parameter files of the compiled bank, read by the library and compared with the tables they come from.
#include "bank/parameter_files.h"

#include <cmath>
#include <map>

#include "association/cpa_record.h"
#include "bank/build.h"
#include "bank/tables.h"
#include "database/component_record.h"
#include "database/database_fixture.h"
#include "database/sdb_cpa.h"
#include "database/sdb_hydrate.h"
#include "database/sdb_srk.h"
#include "database/sdb_unifac.h"
#include "database/srk_variant_record.h"
#include "liquid/unifac_record.h"
#include "solids/hydrate_record.h"

namespace talix::test {
namespace {

using bank::BankError;
using bank::ParameterComponent;
using bank::SourceTable;

const std::filesystem::path kData = std::filesystem::path(TALIX_TEST_SOURCE) / "data";
constexpr bank::Range kAny{"", -1e300, 1e300};

class ParameterFiles : public DatabaseTest {
 protected:
  ParameterFiles() {
    I4 NFAIL = 0;
    SSYAO2(install_directory() + "\\Zandor\\", NFAIL);
    for (const ParameterComponent& component : bank::parameter_components(
             bank::read_bank(std::filesystem::path(install_directory()) / "Zandor").pure))
      by_cas[component.cas] = component;
  }
  [[nodiscard]] bool has(const std::string& cas) const { return by_cas.contains(cas); }
  [[nodiscard]] I4 number(const std::string& cas) const { return by_cas.at(cas).number; }

  std::map<std::string, ParameterComponent> by_cas;
};

// ---------------------------------------------------------------- groups

const std::pair<const char*, I4> kGroupTables[] = {{"original", model::unifac},
                                                   {"dortmund", model::unifac_dm},
                                                   {"lyngby", model::lyngby_unifac},
                                                   {"linear", model::linear_unifac}};

TEST_F(ParameterFiles, EverySubgroupIsReadBack) {
  const SourceTable table = SourceTable::read(kData / "unifac_subgroups.csv");
  const std::map<std::string, int> counts{
      {"original", 111}, {"dortmund", 113}, {"lyngby", 45}, {"linear", 138}};
  for (const auto& [name, code] : kGroupTables) {
    I4 NFAIL = 0;
    SDBUF0(code, NFAIL);
    ASSERT_EQ(NFAIL, status::ok) << name;
    int found = 0;
    for (std::size_t row = 0; row < table.rows(); ++row) {
      if (table.text(row, "table") != name) continue;
      const I4 k = table.integer(row, "subgroup", 1, 160);
      EXPECT_EQ(trimmed(unifac.CSBGRP(k)), table.text(row, "name8"));
      EXPECT_EQ(unifac.IMNGRP(k), table.integer(row, "main_group", 1, 77));
      EXPECT_EQ(unifac.RSBGRP(k), std::stof(table.text(row, "R"))) << name << k;
      EXPECT_EQ(unifac.QSBGRP(k), std::stof(table.text(row, "Q"))) << name << k;
      EXPECT_EQ(unifac.MWSGRP(k), std::stof(table.text(row, "molar_mass_g_mol"))) << name << k;
      ++found;
    }
    EXPECT_EQ(found, counts.at(name)) << name;
    int in_file = 0;
    for (I4 k = 1; k <= kMaxSubgroups; ++k) in_file += unifac.IMNGRP(k) != 0 ? 1 : 0;
    EXPECT_EQ(in_file, found) << name;
  }
}

TEST_F(ParameterFiles, EveryInteractionIsReadBack) {
  const SourceTable table = SourceTable::read(kData / "unifac_interactions.csv");
  const std::map<std::string, int> counts{
      {"original", 1256}, {"dortmund", 1334}, {"lyngby", 306}, {"linear", 1436}};
  for (const auto& [name, code] : kGroupTables) {
    I4 NFAIL = 0;
    SDBUF0(code, NFAIL);
    ASSERT_EQ(NFAIL, status::ok) << name;
    std::map<std::pair<I4, I4>, std::size_t> rows;
    I4 highest = 0;
    for (std::size_t row = 0; row < table.rows(); ++row) {
      if (table.text(row, "table") != name) continue;
      rows[{table.integer(row, "main_i", 1, 77), table.integer(row, "main_j", 1, 77)}] = row;
      highest = std::max(highest, table.integer(row, "main_i", 1, 77));
    }
    for (I4 i = 1; i <= highest; ++i) {
      for (I4 j = 1; j <= highest; ++j) {
        const auto row = rows.find({i, j});
        if (row == rows.end()) {
          EXPECT_EQ(unifac.AMNINT(i, j, 1), i == j ? 0.0F : 9999.0F) << name << i << ' ' << j;
          EXPECT_EQ(unifac.AMNINT(i, j, 2), 0.0F);
          EXPECT_EQ(unifac.AMNINT(i, j, 3), 0.0F);
          continue;
        }
        EXPECT_EQ(unifac.AMNINT(i, j, 1), std::stof(table.text(row->second, "a"))) << name << i << ' ' << j;
        EXPECT_EQ(unifac.AMNINT(i, j, 2), std::stof(table.text(row->second, "b"))) << name << i << ' ' << j;
        EXPECT_EQ(unifac.AMNINT(i, j, 3), std::stof(table.text(row->second, "c"))) << name << i << ' ' << j;
      }
    }
    EXPECT_EQ(static_cast<int>(rows.size()), counts.at(name)) << name;
  }
}

TEST_F(ParameterFiles, TheFieldsHoldTheFiguresInFull) {
  // Not only to single precision: what stands in the file is the published figure.
  for (const auto& [name, file] : {std::pair{"dortmund", "udo2002.out"}, std::pair{"original", "sufori.out"},
                                   std::pair{"lyngby", "suflyn.out"}, std::pair{"linear", "suflin.out"}}) {
    std::size_t records = 0;
    const std::string text = bank::unifac_text(kData, name, records);
    EXPECT_EQ(read_bytes(std::filesystem::path(install_directory()) / "Zandor" / file), text) << file;
    for (std::size_t start = 0; start < text.size();) {
      const std::size_t end = text.find('\n', start);
      ASSERT_LE(end - start, 80U);
      start = end + 1;
    }
  }
  std::size_t records = 0;
  const std::string linear = bank::unifac_text(kData, "linear", records);
  EXPECT_EQ(linear.substr(0, linear.find('\n')), "  141   52     linear           NIST-KT 2011, substitute ");
  // Figures with more decimals than the layout has by itself.
  const std::string dortmund = bank::unifac_text(kData, "dortmund", records);
  for (const char* figure : {"  936.3391", "  0.196357", "-8186501-5", "  4.52E-07"})
    EXPECT_NE(dortmund.find(figure), std::string::npos) << figure;
}

TEST_F(ParameterFiles, GroupsOfOneNumberAreTheSameAtoms) {
  const SourceTable table = SourceTable::read(kData / "unifac_subgroups.csv");
  std::map<int, std::string> original;
  for (std::size_t row = 0; row < table.rows(); ++row)
    if (table.text(row, "table") == "original")
      original[table.integer(row, "subgroup", 1, 160)] = table.text(row, "formula");
  int shared = 0;
  for (std::size_t row = 0; row < table.rows(); ++row) {
    const auto found = original.find(table.integer(row, "subgroup", 1, 160));
    if (found == original.end()) continue;
    EXPECT_EQ(table.text(row, "formula"), found->second)
        << table.text(row, "table") << ' ' << table.text(row, "subgroup");
    ++shared;
  }
  EXPECT_GT(shared, 300);
  EXPECT_EQ(original.at(16), "H2O");
}

TEST_F(ParameterFiles, WaterIsWaterInEveryTable) {
  comp.NGRP(1) = 1;
  comp.GRPTYP(1, 1) = 16;
  comp.GRPNUM(1, 1) = 1.0;
  const std::map<I4, R8> volume{{model::unifac, 0.92},
                                {model::unifac_dm, 1.7334},
                                {model::lyngby_unifac, 0.92},
                                {model::linear_unifac, 0.92}};
  for (const auto& [code, R] : volume) {
    I4 NFAIL = 0;
    SDBUF0(code, NFAIL);
    SUFAO3(1, code, NFAIL);
    ASSERT_EQ(NFAIL, status::ok);
    EXPECT_NEAR(unifac.RTOT(1), R, 1e-6);
    EXPECT_NEAR(unifac.MWSGRP(16), 18.015, 1e-3);
  }
}

// ---------------------------------------------------------------- cubic variants

TEST_F(ParameterFiles, EveryTwuSetIsReadBack) {
  const SourceTable table = SourceTable::read(kData / "srk_twu.csv");
  std::map<std::string, std::size_t> rows;
  for (std::size_t row = 0; row < table.rows(); ++row) rows[table.text(row, "cas")] = row;
  int twu = 0;
  for (const auto& [cas, component] : by_cas) {
    I4 NFAIL = 0;
    SP2DB0(1, component.number, NFAIL);
    ASSERT_EQ(NFAIL, status::ok) << cas;
    const auto row = rows.find(cas);
    if (row == rows.end()) {
      EXPECT_EQ(srk_variants.P2ALPH(1), 1);
      EXPECT_NEAR(srk_variants.CSRKP2(1, 1), 0.480 + component.omega * (1.574 - 0.176 * component.omega),
                  1e-4);
      continue;
    }
    ++twu;
    EXPECT_EQ(srk_variants.P2ALPH(1), 6);
    EXPECT_EQ(srk_variants.CSRKP2(1, 1), table.required(row->second, "L", kAny)) << cas;
    EXPECT_EQ(srk_variants.CSRKP2(1, 2), table.required(row->second, "M", kAny)) << cas;
    EXPECT_EQ(srk_variants.CSRKP2(1, 3), table.required(row->second, "N", kAny)) << cas;
  }
  EXPECT_GT(twu, 110);
  EXPECT_EQ(open_units(), 0);
}

TEST_F(ParameterFiles, EveryPolarSetIsReadBack) {
  const SourceTable table = SourceTable::read(kData / "srk_polar.csv");
  std::map<I4, std::size_t> rows;
  for (std::size_t row = 0; row < table.rows(); ++row) rows[table.integer(row, "number", 2, 1246)] = row;
  int fitted = 0;
  for (const auto& [cas, component] : by_cas) {
    I4 NFAIL = 0;
    SAPDB0(1, component.number, NFAIL);
    ASSERT_EQ(NFAIL, status::ok) << cas;
    const auto row = rows.find(component.number);
    if (row == rows.end()) {
      EXPECT_EQ(srk_variants.APALPH(1), 2) << cas;
      EXPECT_NEAR(srk_variants.TCASP(1), component.tc, 0.05) << cas;
      continue;
    }
    ++fitted;
    EXPECT_EQ(srk_variants.TCASP(1), table.required(row->second, "tc_K", kAny)) << cas;
    EXPECT_EQ(srk_variants.PCASP(1), table.required(row->second, "pc_bar", kAny)) << cas;
    EXPECT_EQ(srk_variants.OMASP(1), table.required(row->second, "omega", kAny)) << cas;
    EXPECT_EQ(srk_variants.APALPH(1), table.integer(row->second, "form", 2, 4)) << cas;
    EXPECT_EQ(srk_variants.CSRKAP(1, 1), table.required(row->second, "p1", kAny)) << cas;
    EXPECT_EQ(srk_variants.CSRKAP(1, 2), 0.0);
    EXPECT_EQ(srk_variants.CSRKAP(1, 3), 0.0);
  }
  EXPECT_GT(fitted, 110);
}

// ---------------------------------------------------------------- association

// sqrt(a) at T of a set over the critical temperature TC.
double root_a(double a0, double c1, double tc, double T) {
  return std::sqrt(a0) * (1 + c1 * (1 - std::sqrt(T / tc)));
}

TEST_F(ParameterFiles, EveryAssociationSetIsReadBack) {
  const SourceTable table = SourceTable::read(kData / "association_pure.csv");
  int found = 0;
  for (std::size_t row = 0; row < table.rows(); ++row) {
    const std::string& cas = table.text(row, "cas");
    if (!has(cas)) continue;
    ++found;
    I4 NFAIL = 0;
    SCPDB0(1, number(cas), NFAIL);
    ASSERT_EQ(NFAIL, status::ok);
    const bool single = table.text(row, "scheme") == "1A";
    EXPECT_EQ(cpa_sets.ASA(1), table.required(row, "eps_J_per_mol", kAny)) << cas;
    EXPECT_EQ(cpa_sets.ASB(1), table.required(row, "beta", kAny) * (single ? 2 : 1)) << cas;
    EXPECT_EQ(cpa_sets.ASF(1), table.required(row, "half_sites", kAny)) << cas;
    EXPECT_EQ(cpa_sets.ASC(1), 0.0);
    EXPECT_EQ(cpa_sets.ASD(1), 0.0);
    EXPECT_EQ(cpa_sets.EOSB(1), table.required(row, "b_m3_per_mol", kAny)) << cas;
    for (int k = 2; k <= 7; ++k) EXPECT_EQ(cpa_sets.EOSK(k, 1), 0.0);
    // The set has moved to the critical temperature of the component and is the same function of temperature.
    const double tc = table.required(row, "tc_K", kAny);
    for (const double T : {0.4 * tc, 0.7 * tc, 0.95 * tc}) {
      const double wanted =
          root_a(table.required(row, "a0_Pa_m6_per_mol2", kAny), table.required(row, "c1", kAny), tc, T);
      EXPECT_NEAR(root_a(cpa_sets.EOSA(1), cpa_sets.EOSK(1, 1), by_cas.at(cas).tc, T), wanted, 1e-9 * wanted)
          << cas;
    }
  }
  EXPECT_GT(found, 45);
}

TEST_F(ParameterFiles, EveryAssociationPairIsReadBack) {
  const SourceTable table = SourceTable::read(kData / "association_pairs.csv");
  int found = 0;
  for (std::size_t row = 0; row < table.rows(); ++row) {
    const std::string& first = table.text(row, "cas1");
    const std::string& second = table.text(row, "cas2");
    if (!has(first) || !has(second)) continue;
    ++found;
    comp.ICSTD(1) = number(first);
    comp.ICSTD(2) = number(second);
    I4 NFAIL = 0;
    SCPDB2(2, NFAIL);
    ASSERT_EQ(NFAIL, status::ok);
    EXPECT_EQ(pairs.BCPA0(1, 2), table.required(row, "kij", kAny)) << first << ' ' << second;
    EXPECT_EQ(pairs.BCPA0T(2, 1), table.required(row, "kijT_per_K", kAny)) << first << ' ' << second;
    if (table.text(row, "cross_rule") == "none" || table.text(row, "cross_rule") == "CR-1") {
      EXPECT_EQ(pairs.BCPA1(1, 2), 0.0) << first << ' ' << second;
      EXPECT_EQ(pairs.BCPA1T(1, 2), 0.0) << first << ' ' << second;
    }
  }
  EXPECT_GT(found, 110);
}

TEST_F(ParameterFiles, CrossAssociationIsInTheArrangementOfTheModel) {
  struct Case {
    const char *first, *second;
    double volume, energy;
  };
  // Elliott rule, solvation with the energy of half the partner, solvation with an energy of its own.
  for (const Case& pair :
       {Case{"64-17-5", "71-43-2", 0.002, 0}, Case{"67-63-0", "7732-18-5", -0.00562205, 0},
        Case{"7732-18-5", "124-38-9", 0.1836, 0}, Case{"7783-06-4", "7732-18-5", 0.0624, 2550.5},
        Case{"124-38-9", "74-82-8", 0, 0}, Case{"111-46-6", "67-56-1", -0.00134019, 0}}) {
    comp.ICSTD(1) = number(pair.first);
    comp.ICSTD(2) = number(pair.second);
    I4 NFAIL = 0;
    SCPDB2(2, NFAIL);
    ASSERT_EQ(NFAIL, status::ok);
    EXPECT_NEAR(pairs.BCPA1(1, 2), pair.volume, 5e-9) << pair.first;
    EXPECT_NEAR(pairs.BCPA1T(1, 2), pair.energy, 1e-9) << pair.first;
    EXPECT_EQ(pairs.BCP1TT(1, 2), 0.0);
  }
}

// ---------------------------------------------------------------- hydrates

TEST_F(ParameterFiles, EveryHydrateFormerIsReadBack) {
  const SourceTable table = SourceTable::read(kData / "hydrate_formers.csv");
  I4 NFAIL = 0;
  SDBPC2(NFAIL);
  ASSERT_EQ(NFAIL, status::ok);
  std::map<I4, I4> entries;
  for (I4 k = 1; k <= directory.NDIRH; ++k)
    entries[std::stoi(std::string(directory.CDENTH(k).sub(1, 4)))] = k;
  int found = 0;
  for (std::size_t row = 0; row < table.rows(); ++row) {
    const std::string& cas = table.text(row, "cas");
    if (!has(cas)) continue;
    ++found;
    ASSERT_TRUE(entries.contains(number(cas))) << cas;
    const I4 entry = entries.at(number(cas));
    EXPECT_EQ(directory.CDENTH(entry).sub(5, 8), by_cas.at(cas).code);
    SDBPC3(1, entry, NFAIL);
    ASSERT_EQ(NFAIL, status::ok);
    const auto expect = [&](int k, const std::string& column) {
      const std::string& text = table.text(row, column);
      EXPECT_EQ(static_cast<float>(hydrate.COHPC(k, 1)), text.empty() ? 0.0F : std::stof(text))
          << cas << ' ' << column;
    };
    expect(1, "core_radius_A");
    expect(2, "sigma_A");
    expect(3, "eps_over_k_K");
    int k = 4;
    for (const char* cavity : {"I_small", "I_large", "II_small", "II_large"}) {
      expect(k, "A_" + std::string(cavity) + "_K_per_bar");
      expect(k + 4, "B_" + std::string(cavity) + "_K");
      EXPECT_EQ(hydrate.COHPC(k + 8, 1), 0.0);
      EXPECT_EQ(hydrate.COHPC(k + 12, 1), 0.0);
      ++k;
    }
    for (int structure = 1; structure <= 2; ++structure)
      for (int cavity = 1; cavity <= 2; ++cavity)
        EXPECT_EQ(static_cast<bool>(hydrate.ENTERS(cavity, 1, structure)),
                  hydrate.COHPC(3 + 2 * (structure - 1) + cavity, 1) > 0);
  }
  EXPECT_EQ(found, 12);
  EXPECT_EQ(directory.NDIRH, found);
  SFLCL0(directory.hydrate_unit, "KEEP");
}

// ---------------------------------------------------------------- the writer

TEST(ParameterWriter, AKeyedFileEndsWithARecordThatIsNoComponent) {
  bank::KeyedFile file(10, 4);
  file.add(4, "    4 abc");
  file.add(9, "    9 def");
  EXPECT_EQ(file.text(" 9999"), "   5      \n   3      \n    4 abc \n    9 def \n 9999     \n");
  EXPECT_EQ(file.size(), 2U);
  EXPECT_THROW(file.add(9, "x"), BankError);
  EXPECT_THROW(file.add(3, "x"), BankError);
  EXPECT_THROW(file.add(10, "longer than ten"), BankError);
}

TEST(ParameterWriter, TwoBuildsAreEqualAndTablesMayBeMissing) {
  const ScratchDirectory first, second, data;
  const std::vector<bank::PureRecord> records = bank::compile_bank(kData).bank.pure;
  const auto written = bank::write_parameter_files(first.path(), kData, records);
  EXPECT_EQ(written.size(), 8U);
  bank::write_parameter_files(second.path(), kData, records);
  for (const bank::ParameterFile& file : written) {
    EXPECT_GT(file.records, 0U) << file.name;
    EXPECT_EQ(read_bytes(first.path() / file.name), read_bytes(second.path() / file.name)) << file.name;
  }
  EXPECT_TRUE(bank::write_parameter_files(second.path(), data.path(), records).empty());
}

TEST(ParameterWriter, FaultsInTheTablesAreNamed) {
  const ScratchDirectory data;
  const auto fault = [&](const auto& step) -> std::string {
    try {
      step();
    } catch (const BankError& error) {
      const std::string text = error.what();
      const std::string folder = data.path().string() + "/";
      return text.starts_with(folder) ? text.substr(folder.size()) : text;
    }
    return "none";
  };
  const std::vector<ParameterComponent> water{{9, "H2O ", "7732-18-5", "water", 647.096, 220.64, 0.344}};
  std::size_t records = 0;
  const auto pure = [&] { bank::association_pure_text(data.path(), water, records); };
  const auto pair = [&] { bank::association_pair_text(data.path(), water, records); };
  const auto groups = [&] { bank::unifac_text(data.path(), "original", records); };

  const std::string head =
      "cas,a0_Pa_m6_per_mol2,b_m3_per_mol,c1,eps_J_per_mol,beta,scheme,half_sites,tc_K\n";
  write_bytes(data.path() / "association_pure.csv", head + "7732-18-5,0.12,0.0145,0.6,16655,0.07,4C,2,647\n");
  EXPECT_EQ(fault(pure),
            "association_pure.csv, line 2, column b_m3_per_mol: value \"0.0145\" [m3/mol]: outside 1e-06 to "
            "0.01; check "
            "the figure and its unit");
  const std::string row = "7732-18-5,0.12,1.45e-05,0.6,16655,0.07,4C,2,647\n";
  write_bytes(data.path() / "association_pure.csv", head + row + row);
  EXPECT_EQ(fault(pure),
            "association_pure.csv, line 3, column cas: value \"7732-18-5\": this component stands in the "
            "table already");
  write_bytes(data.path() / "association_pure.csv", head + row);
  EXPECT_EQ(fault(pure), "none");
  EXPECT_EQ(records, 1U);
  write_bytes(
      data.path() / "association_pairs.csv",
      "cas1,cas2,kij,kijT_per_K,cross_rule,beta,eps_J_per_mol\n7732-18-5,74-82-8,0.1,0,solvation,,\n");
  EXPECT_EQ(fault(pair),
            "association_pairs.csv, line 2, column cross_rule: value \"solvation\": write none, CR-1, ECR "
            "(no single sites) or solvation with its beta");
  write_bytes(data.path() / "unifac_subgroups.csv",
              "table,subgroup,main_group,name8,R,Q,molar_mass_g_mol\noriginal,162,1,CH3,0.9,0.8,15\n");
  EXPECT_EQ(fault(groups), "unifac_subgroups.csv, line 2, column subgroup: value \"162\": outside 1 to 161");
  write_bytes(data.path() / "unifac_subgroups.csv",
              "table,subgroup,main_group,name8,R,Q,molar_mass_g_mol\noriginal,1,1,CH3,0.9,0.8,15\n"
              "original,2,2,CH2,0.9,0.8,14\n");
  write_bytes(data.path() / "unifac_interactions.csv",
              "table,main_i,main_j,a,b,c\noriginal,1,2,9999.5,0,0\n");
  EXPECT_EQ(fault(groups),
            "unifac_interactions.csv, line 2, column a: value \"9999.5\": a figure of 9999 stands for a "
            "pair without parameters");
}

}  // namespace
}  // namespace talix::test
