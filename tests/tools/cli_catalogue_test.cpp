#include "cli/catalogue.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "bank/catalogue_writer.h"
#include "bank/tables.h"
#include "cli/failure.h"
#include "cli/words.h"
#include "common/formula.h"
#include "support/test_support.h"
#include "tools/cli_fixture.h"

namespace talix::cli {
namespace {

using test::small_catalogue;

int number_of(const Catalogue& catalogue, const char* key) {
  const CatalogueEntry* const found = catalogue.find(key);
  return found == nullptr ? 0 : found->number;
}

template <class Call>
std::string refusal(Call call) {
  try {
    call();
  } catch (const UsageError& error) {
    return error.what();
  }
  return "";
}

TEST(CliCatalogue, EveryKindOfKeyFindsTheComponent) {
  const Catalogue catalogue = small_catalogue();
  for (const char* key : {"methane", "Methane", " METHANE ", "R50", "marsh gas", " 1P ", "1P", "1p",
                          "74-82-8", "20", "CH4", "ch4"}) {
    EXPECT_EQ(number_of(catalogue, key), 20) << key;
  }
  EXPECT_EQ(number_of(catalogue, "4P1"), 24);
}

TEST(CliCatalogue, AFormulaOfTwoComponentsNamesNone) { EXPECT_EQ(number_of(small_catalogue(), "C4H10"), 0); }

TEST(CliCatalogue, AtomsOfAFormulaStandInAnyOrder) {
  const Catalogue catalogue = small_catalogue();
  for (const char* key : {"H4C", "h4c", "CHHHH", " H4C "}) EXPECT_EQ(number_of(catalogue, key), 20) << key;
  EXPECT_EQ(number_of(catalogue, "CH3CH3"), 21);
  for (const char* key : {"CH5", "H04C0", "C1H4Q", "CH4-", "C999999999999H4"})
    EXPECT_EQ(number_of(catalogue, key), 0) << key;
  const auto found = catalogue.search("h10c4");
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0]->number, 23);
  EXPECT_EQ(found[1]->number, 24);
  // Two elements of one letter each, or one of two letters: small letters mean the common one.
  EXPECT_EQ(common::capitals_of("ccl4"), "CCl4");
  EXPECT_EQ(common::capitals_of("co2"), "CO2");
  EXPECT_EQ(common::atoms_of("Co")->size(), 1U);
  EXPECT_EQ(common::atoms_of("CO")->size(), 2U);
}

TEST(CliCatalogue, ANameOfTwoComponentsIsRefusedWithBoth) {
  std::vector<CatalogueEntry> entries = {
      test::catalogue_entry(746, "DIIS", "diisopropylamine", "108-18-9", "C6H15N", {"DIPA"}),
      test::catalogue_entry(758, "DIPA", "diisopropanolamine", "110-97-4", "C6H15NO2", {"dipa", "di"}),
      test::catalogue_entry(759, "QQ1 ", "another", "64-17-5", "C6H15NO2", {"DI"})};
  const Catalogue catalogue(entries);
  EXPECT_EQ(number_of(catalogue, "DIPA"), 758) << "a code goes before synonyms";
  EXPECT_EQ(number_of(catalogue, "di"), 0);
  const std::string what = refusal([&] { (void)catalogue.get("di"); });
  EXPECT_EQ(what,
            "'di' means 2 components: diisopropanolamine (DIPA, number 758), another (QQ1, number 759); "
            "write the code or "
            "the number of one");
  EXPECT_EQ(catalogue.matches("di").size(), 2U);
  EXPECT_EQ(catalogue.search("dipa").size(), 2U);
  const std::string formula = refusal([&] { (void)catalogue.parse_list("H15NO2C6,di"); });
  EXPECT_NE(formula.find("'H15NO2C6' means 2 components"), std::string::npos) << formula;
}

TEST(CliCatalogue, NamesWithCommasAreTakenWholeFromAList) {
  const Catalogue catalogue = small_catalogue();
  const auto list = catalogue.parse_list("methane,2,2-dimethylbutane, 1,3-butadiene,1P,124-18-5");
  ASSERT_EQ(list.size(), 5U);
  EXPECT_EQ(list[1]->number, 29);
  EXPECT_EQ(list[2]->number, 176);
  EXPECT_EQ(list[3]->number, 20);
  EXPECT_EQ(list[4]->number, 116);
}

TEST(CliCatalogue, SemicolonsSplitAListWhereTheyStand) {
  const Catalogue catalogue = small_catalogue();
  const auto list = catalogue.parse_list("butane, 2,2-dimethyl-;ethane");
  ASSERT_EQ(list.size(), 2U);
  EXPECT_EQ(list[0]->number, 29);
}

TEST(CliCatalogue, UnknownComponentNamesTheNearest) {
  const Catalogue catalogue = small_catalogue();
  const std::string what = refusal([&] { (void)catalogue.parse_list("methan,ethane"); });
  EXPECT_NE(what.find("unknown component 'methan'; nearest: methane (1P, number 20)"), std::string::npos)
      << what;
  const std::string locants = refusal([&] { (void)catalogue.parse_list("2,2-dimetylbutane"); });
  EXPECT_NE(locants.find("unknown component '2,2-dimetylbutane'; nearest: 2,2-dimethylbutane"),
            std::string::npos)
      << locants;
  const std::string part = refusal([&] { (void)catalogue.get("decan"); });
  EXPECT_NE(part.find("n-decane"), std::string::npos) << part;
}

TEST(CliCatalogue, NothingNearLeavesTheListOut) {
  const std::string what = refusal([] { (void)small_catalogue().get("zzzzzzzzzzzzz"); });
  EXPECT_EQ(what, "unknown component 'zzzzzzzzzzzzz'; See the catalogue with: talix components");
}

TEST(CliCatalogue, AnEmptyPlaceInAListIsRefused) {
  for (const char* text : {"", ",", "methane,", "methane,,ethane"}) {
    EXPECT_NE(refusal([&] { (void)small_catalogue().parse_list(text); }).find("a component is empty"),
              std::string::npos)
        << text;
  }
}

TEST(CliCatalogue, NumbersOutsideTheCatalogueAreUnknown) {
  for (const char* key : {"0", "1", "999", "99999999999999999999"}) {
    EXPECT_EQ(number_of(small_catalogue(), key), 0) << key;
  }
}

TEST(CliCatalogue, SearchPutsExactMatchesFirst) {
  const Catalogue catalogue = small_catalogue();
  const auto found = catalogue.search("Butane");
  ASSERT_EQ(found.size(), 3U);
  EXPECT_EQ(found[0]->number, 23);  // its synonym is the text itself
  EXPECT_EQ(found[1]->number, 24);
  EXPECT_EQ(found[2]->number, 29);
  EXPECT_EQ(catalogue.search("").size(), catalogue.entries().size());
  EXPECT_TRUE(catalogue.search("zzz").empty());
  ASSERT_EQ(catalogue.search("116").size(), 1U);
}

TEST(CliCatalogue, EditDistanceCountsSwappedLettersOnce) {
  EXPECT_EQ(edit_distance("methane", "mehtane"), 1U);
  EXPECT_EQ(edit_distance("", "abc"), 3U);
  EXPECT_EQ(edit_distance("kitten", "sitting"), 3U);
}

// A bank file that holds the codes of some records and nothing else.
void write_bank(const std::filesystem::path& install, const std::vector<std::pair<int, std::string>>& codes) {
  std::filesystem::create_directories(install / "Zandor");
  std::ofstream out(install / "Zandor" / "purezan.out", std::ios::binary);
  for (const auto& [number, code] : codes) {
    out.seekp((number - 1) * 1000);
    std::string record(1000, ' ');
    record.replace(4, 4, code);
    out << record;
  }
}

TEST(CliCatalogue, TheNameOfAnotherComponentIsNoSynonym) {
  const bank::SourceTable table = bank::SourceTable::parse(
      "components.csv",
      "number,code,name,cas,formula,mw,tc_K,pc_Pa,omega,tb_K,synonyms,short_name\n"
      "252,QQ1 ,cis-3-hexene,7642-09-3,C6H12,84,510,3290000,0.28,339,,C3C6e\n"
      "253,QQ2 ,trans-3-hexene,13269-52-8,C6H12,84,507,3180000,0.29,340,Cis-3-hexene;hex-3-ene,T3C6e\n");
  const test::ScratchDirectory scratch;
  bank::write_catalogue(table, scratch.path());
  write_bank(scratch.path(), {{252, "QQ1 "}, {253, "QQ2 "}});
  const Catalogue catalogue = Catalogue::read(scratch.path());
  ASSERT_EQ(catalogue.entries().size(), 2U);
  EXPECT_EQ(catalogue.entries()[1].synonyms, (std::vector<std::string>{"hex-3-ene", "T3C6e"}));
  EXPECT_EQ(catalogue.search("cis-3-hexene").size(), 1U);
}

TEST(CliCatalogue, TableOfTheBankBecomesACatalogueAndIsReadBack) {
  const test::ScratchDirectory scratch;
  const std::filesystem::path data = std::filesystem::path(TALIX_TEST_SOURCE) / "data";
  bank::write_catalogue(data, scratch.path());
  const bank::SourceTable table = bank::SourceTable::read(data / "components.csv");
  std::vector<std::pair<int, std::string>> codes;
  for (std::size_t row = 0; row < table.rows(); ++row) {
    codes.emplace_back(table.integer(row, "number", 2, 1246), table.text(row, "code"));
  }
  write_bank(scratch.path(), codes);

  const Catalogue catalogue = Catalogue::read(scratch.path());
  EXPECT_EQ(catalogue.entries().size(), table.rows());
  for (std::size_t row = 0; row < table.rows(); ++row) {
    for (const char* column : {"number", "code", "cas", "name"}) {
      const CatalogueEntry* const found = catalogue.find(table.text(row, column));
      ASSERT_NE(found, nullptr) << table.text(row, column);
      EXPECT_EQ(found->number, codes[row].first) << table.text(row, column);
    }
  }
  const CatalogueEntry& methane = catalogue.get("marsh gas");
  EXPECT_EQ(methane.code, " 1P ");
  EXPECT_EQ(methane.formula, "CH4");
  EXPECT_NEAR(methane.molar_mass_g_mol.value_or(0), 16.0425, 1e-3);
  EXPECT_NEAR(methane.pc_bar.value_or(0), 45.992, 1e-9);
}

TEST(CliCatalogue, ComponentsWithoutARecordInTheBankAreLeftOut) {
  const test::ScratchDirectory scratch;
  std::ofstream(scratch.path() / "catalogue.csv")
      << "number,code,name,cas,formula,molar_mass_g_mol,tc_K,pc_bar,omega,tb_K,synonyms\n"
         "2,\" AA \",a,1-1-1,C,1,2,3,4,5,\n"
         "3,\" BB \",\"b, \"\"quoted\"\"\",2-2-2,C2,,,,,,x;y z\n"
         "9,\" CC \",beyond the file,3-3-3,C3,,,,,,\n";
  write_bank(scratch.path(), {{2, " ZZ "}, {3, " BB "}});
  const Catalogue catalogue = Catalogue::read(scratch.path());
  ASSERT_EQ(catalogue.entries().size(), 1U);
  EXPECT_EQ(catalogue.entries()[0].name, "b, \"quoted\"");
  EXPECT_FALSE(catalogue.entries()[0].tc_K.has_value());
  EXPECT_EQ(catalogue.entries()[0].synonyms, (std::vector<std::string>{"x", "y z"}));
}

TEST(CliCatalogue, DamagedCataloguesAreRefusedByName) {
  const test::ScratchDirectory scratch;
  const auto what = [&](const char* text) {
    std::ofstream(scratch.path() / "catalogue.csv") << text;
    return refusal([&] { (void)Catalogue::read(scratch.path()); });
  };
  EXPECT_NE(what("").find("catalogue.csv: empty"), std::string::npos);
  EXPECT_NE(what("number,code\n2,\"open").find("a quote is not closed"), std::string::npos);
  EXPECT_NE(what("code,number\nAA,x\n").find("'x' is no catalogue number"), std::string::npos);
  EXPECT_NE(what("number,code\n2,AA\n").find("no column name"), std::string::npos);
  std::filesystem::remove(scratch.path() / "catalogue.csv");
  EXPECT_NE(refusal([&] { (void)Catalogue::read(scratch.path()); }).find("cannot be opened"),
            std::string::npos);
}

}  // namespace
}  // namespace talix::cli
