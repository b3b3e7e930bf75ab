// The imported tables keep the rules of data/README.md.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "bank/correlations.h"
#include "bank/elements.h"
#include "bank/fit_csv.h"

namespace talix::bank {
namespace {

const std::string kData = std::string(TALIX_TEST_SOURCE) + "/data/";
constexpr double kGas = 8.314462618;  // J/(mol K)

const CsvTable& components() {
  static const CsvTable table = [] {
    CsvTable t;
    EXPECT_TRUE(read_csv(kData + "components.csv", t));
    return t;
  }();
  return table;
}

struct Relation {
  Correlation form;
  std::string flag;
};
using Relations =
    std::map<std::pair<std::string, std::string>, std::vector<Relation>>;  // by CAS and property

const Relations& relations() {
  static const Relations all = [] {
    Relations result;
    for (const char* const file :
         {"saturation_correlations.csv", "ideal_gas_correlations.csv", "transport_correlations.csv"}) {
      CsvTable t;
      EXPECT_TRUE(read_csv(kData + file, t)) << file;
      for (std::size_t i = 0; i < t.rows.size(); ++i) {
        Relation r;
        r.form.equation = t.text(i, "equation");
        for (int k = 1; k <= 27; ++k) {
          const std::string column = "c" + std::to_string(k);
          if (t.text(i, column).empty()) continue;
          r.form.c[static_cast<std::size_t>(k - 1)] = t.number(i, column, 0.0);
          r.form.count = k;
        }
        r.form.tmin = t.number(i, "tmin_K", 0.0);
        r.form.tmax = t.number(i, "tmax_K", 1e9);
        r.form.tc = t.number(i, "tc_used_K", 0.0);
        r.form.rank = static_cast<int>(t.number(i, "rank", 0.0));
        r.form.source = t.text(i, "source");
        r.flag = t.text(i, "flag");
        result[{t.text(i, "cas"), t.text(i, "property")}].push_back(r);
      }
    }
    return result;
  }();
  return all;
}

const std::vector<Relation>& relations_of(const std::string& cas, const std::string& property) {
  static const std::vector<Relation> none;
  const auto found = relations().find({cas, property});
  return found == relations().end() ? none : found->second;
}

std::set<std::string> reference_fluids() {
  CsvTable t;
  EXPECT_TRUE(read_csv(kData + "reference_points.csv", t));
  std::set<std::string> result;
  for (std::size_t i = 0; i < t.rows.size(); ++i) result.insert(t.text(i, "cas"));
  return result;
}

std::string upper(std::string text) {
  std::ranges::transform(text, text.begin(),
                         [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return text;
}

TEST(BankComponents, NumbersCodesAndNamesAreDistinct) {
  const CsvTable& t = components();
  EXPECT_GE(t.rows.size(), 950U);
  std::map<std::string, std::set<std::string>> seen;
  for (std::size_t i = 0; i < t.rows.size(); ++i) {
    for (const char* const column :
         {"number", "code", "cas", "name", "name28", "short_name", "interface_name"}) {
      EXPECT_TRUE(seen[column].insert(upper(t.text(i, column))).second) << column << " " << t.text(i, column);
    }
    const int number = static_cast<int>(t.number(i, "number", 0.0));
    EXPECT_TRUE(number >= 2 && number <= 1246) << number;
  }
}

TEST(BankComponents, NamesFitTheirCells) {
  const CsvTable& t = components();
  for (std::size_t i = 0; i < t.rows.size(); ++i) {
    EXPECT_EQ(t.text(i, "code").size(), 4U) << t.text(i, "name");
    EXPECT_LE(t.text(i, "name28").size(), 28U) << t.text(i, "name");
    EXPECT_LE(t.text(i, "short_name").size(), 8U) << t.text(i, "name");
    EXPECT_LE(t.text(i, "interface_name").size(), 12U) << t.text(i, "name");
    EXPECT_FALSE(t.text(i, "short_name").empty()) << t.text(i, "name");
  }
}

TEST(BankComponents, OnlyTheLightGasesBeginWithTheirLetters) {
  const CsvTable& t = components();
  int light = 0;
  for (std::size_t i = 0; i < t.rows.size(); ++i) {
    const std::string brief = upper(t.text(i, "short_name"));
    const std::string& code = t.text(i, "code");
    const bool gas = code == "H2  " || code == "HE  " || code == "N2  ";
    light += gas ? 1 : 0;
    const bool letters = brief.starts_with("H2") || brief.starts_with("HE") || brief.starts_with("N2");
    EXPECT_EQ(letters, gas) << t.text(i, "name") << " " << brief;
  }
  EXPECT_EQ(light, 3);
}

TEST(BankComponents, ConstantsAreThereForEveryComponent) {
  const CsvTable& t = components();
  for (std::size_t i = 0; i < t.rows.size(); ++i) {
    const std::string& name = t.text(i, "name");
    for (const char* const column : {"mw", "tc_K", "pc_Pa", "vc_m3_per_mol", "tb_K", "hvap_tb_J_per_mol"})
      EXPECT_GT(t.number(i, column, 0.0), 0.0) << name << " " << column;
    EXPECT_FALSE(t.text(i, "omega").empty()) << name;
    EXPECT_LT(t.number(i, "tb_K", 1e9), t.number(i, "tc_K", 0.0)) << name;
    const double z =
        t.number(i, "pc_Pa", 0.0) * t.number(i, "vc_m3_per_mol", 0.0) / (kGas * t.number(i, "tc_K", 1.0));
    EXPECT_NEAR(t.number(i, "zc", 0.0), z, 0.004) << name;
  }
}

TEST(BankComponents, AtomsGiveTheFormulaAndTheMass) {
  const CsvTable& t = components();
  constexpr std::array kMass{12.011, 1.008, 14.007, 15.999, 32.065, 18.998, 35.453, 79.904, 126.904};
  constexpr std::array<const char*, 9> kSymbols{"C", "H", "N", "O", "S", "F", "Cl", "Br", "I"};
  for (std::size_t i = 0; i < t.rows.size(); ++i) {
    const std::string& name = t.text(i, "name");
    const std::string& others = t.text(i, "other_atoms");
    EXPECT_LE(std::ranges::count(others, ';'), 2) << name;
    double mass = 0.0;
    for (std::size_t k = 0; k < kMass.size(); ++k) mass += kMass.at(k) * t.number(i, kSymbols.at(k), 0.0);
    std::istringstream items(others);
    for (std::string item; std::getline(items, item, ';');)
      EXPECT_GT(atomic_number(item.substr(0, item.find(':'))), 0) << name;
    const bool heavy = t.text(i, "formula").find('D') != std::string::npos;  // deuterium counts as hydrogen
    if (others.empty() && !heavy) {
      EXPECT_NEAR(t.number(i, "mw", 0.0), mass, 2e-3 * mass) << name;
    }
  }
}

TEST(BankComponents, GroupsAreOfTheOriginalSet) {
  const CsvTable& t = components();
  int with_groups = 0;
  for (std::size_t i = 0; i < t.rows.size(); ++i) {
    const std::string& name = t.text(i, "name");
    std::istringstream groups(t.text(i, "unifac_original"));
    int pairs = 0;
    for (std::string item; std::getline(groups, item, ';'); ++pairs) {
      const int subgroup = std::stoi(item);
      EXPECT_TRUE(subgroup >= 1 && subgroup < 161) << name << " " << item;
      EXPECT_GE(std::stoi(item.substr(item.find(':') + 1)), 1) << name;
    }
    EXPECT_LE(pairs, 8) << name;
    with_groups += pairs > 0 ? 1 : 0;
  }
  EXPECT_GE(with_groups, 790);
}

TEST(BankComponents, SaltAndMercuryAreThere) {
  const CsvTable& t = components();
  std::map<std::string, std::string> codes;
  for (std::size_t i = 0; i < t.rows.size(); ++i) codes[t.text(i, "number")] = t.text(i, "code");
  EXPECT_EQ(codes["1001"], "NACL");
  EXPECT_EQ(codes["1011"], "HG  ");
}

TEST(BankComponents, FamiliesAreThoseOfTheKeys) {
  const CsvTable& t = components();
  for (std::size_t i = 0; i < t.rows.size(); ++i) {
    const int family = static_cast<int>(t.number(i, "isofam", 0.0));
    EXPECT_TRUE((family >= 1 && family <= 10) || family == 20) << t.text(i, "name");
    bool plain = t.number(i, "C", 0.0) > 0 && t.number(i, "H", 0.0) > 0 && t.text(i, "other_atoms").empty();
    for (const char* const atom : {"N", "O", "S", "F", "Cl", "Br", "I"})
      plain = plain && t.number(i, atom, 0.0) == 0;
    EXPECT_EQ(family == 20, plain) << t.text(i, "name");
  }
}

TEST(BankComponents, NormalAlkanesAboveDocosaneAreSmooth) {
  const CsvTable& t = components();
  struct Member {
    double n, tc, pc, vc, omega;
  };
  std::vector<Member> series;
  for (std::size_t i = 0; i < t.rows.size(); ++i) {
    const std::string& code = t.text(i, "code");
    const int n = static_cast<int>(t.number(i, "C", 0.0));
    if (t.text(i, "family") != "paraffin" || !code.ends_with("P ") || n < 22) continue;
    series.push_back({static_cast<double>(n), t.number(i, "tc_K", 0.0), t.number(i, "pc_Pa", 0.0),
                      t.number(i, "vc_m3_per_mol", 0.0), t.number(i, "omega", 0.0)});
    if (n < 23) continue;
    EXPECT_EQ(t.text(i, "src_pc"), "EST:series") << code;
    EXPECT_EQ(t.text(i, "src_vc"), "EST:series") << code;
    EXPECT_EQ(t.text(i, "src_omega"), "EST:series") << code;
  }
  ASSERT_GE(series.size(), 11U);
  for (std::size_t k = 1; k < series.size(); ++k) {
    const double step = series[k].n - series[k - 1].n;
    EXPECT_LT(series[k].pc, series[k - 1].pc) << series[k].n;
    EXPECT_GT(series[k].tc, series[k - 1].tc) << series[k].n;
    // Slopes of the sources jump by more than half between neighbours.
    EXPECT_NEAR((series[k].vc - series[k - 1].vc) / step, 1.4e-4, 0.5e-4) << series[k].n;
    EXPECT_NEAR(std::log(series[k - 1].pc / series[k].pc) / step, 0.05, 0.015) << series[k].n;
    if (k > 1) {
      EXPECT_NEAR((series[k].omega - series[k - 1].omega) / step, 0.039, 0.002) << series[k].n;
    }
  }
}

TEST(BankComponents, EveryComponentHasTheThreeRelationsOfACubic) {
  const std::set<std::string> fluids = reference_fluids();
  const CsvTable& t = components();
  for (std::size_t i = 0; i < t.rows.size(); ++i) {
    const std::string& cas = t.text(i, "cas");
    if (fluids.contains(cas)) continue;
    for (const char* const property : {"psat", "rho_liq_sat", "cp_ig"})
      EXPECT_FALSE(relations_of(cas, property).empty()) << t.text(i, "name") << " " << property;
  }
}

TEST(BankComponents, EstimatesAreMarkedAsSuch) {
  int estimates = 0;
  for (const auto& [key, rows] : relations()) {
    for (std::size_t k = 0; k < rows.size(); ++k) {
      const bool estimated = rows[k].form.source.starts_with("EST: ");
      EXPECT_EQ(rows[k].flag.find("estimated") != std::string::npos, estimated)
          << key.first << " " << key.second;
      // An estimate is the last choice.
      if (estimated) {
        EXPECT_EQ(k + 1, rows.size()) << key.first << " " << key.second;
      }
      estimates += estimated ? 1 : 0;
    }
  }
  EXPECT_GT(estimates, 500);
}

TEST(BankComponents, EstimatedRelationsMeetWhatTheyRestOn) {
  const CsvTable& t = components();
  int pressures = 0, densities = 0, heats = 0;
  for (std::size_t i = 0; i < t.rows.size(); ++i) {
    const std::string& name = t.text(i, "name");
    const std::string& cas = t.text(i, "cas");
    const double tb = t.number(i, "tb_K", 0.0), tc = t.number(i, "tc_K", 0.0);
    for (const Relation& r : relations_of(cas, "psat")) {
      if (r.flag != "estimated") continue;
      ++pressures;
      EXPECT_NEAR(evaluate(r.form, tb), 101325.0, 20.0) << name;
      EXPECT_NEAR(evaluate(r.form, tc), t.number(i, "pc_Pa", 0.0), 1e-3 * t.number(i, "pc_Pa", 0.0)) << name;
      for (double u = 0.4; u < 0.99; u += 0.05)
        EXPECT_GT(evaluate(r.form, (u + 0.01) * tc), evaluate(r.form, u * tc)) << name;
    }
    for (const Relation& r : relations_of(cas, "rho_liq_sat")) {
      if (r.flag != "estimated" || r.form.source.find("the density at 298.15") == std::string::npos) continue;
      ++densities;
      EXPECT_NEAR(evaluate(r.form, 298.15) * t.number(i, "vliq_25C_m3_per_mol", 0.0), 1.0, 1e-5) << name;
    }
    for (const Relation& r : relations_of(cas, "hvap")) {
      if (r.flag != "estimated") continue;
      ++heats;
      EXPECT_NEAR(evaluate(r.form, tb) / t.number(i, "hvap_tb_J_per_mol", 0.0), 1.0, 1e-4) << name;
    }
  }
  EXPECT_GT(pressures, 30);
  EXPECT_GT(densities, 150);
  EXPECT_GT(heats, 200);
}

TEST(BankComponents, EstimatedIdealGasHeatCapacitiesRise) {
  int estimated = 0;
  for (const auto& [key, rows] : relations()) {
    if (key.second != "cp_ig") continue;
    for (const Relation& r : rows) {
      if (r.flag != "estimated") continue;
      ++estimated;
      for (double T = r.form.tmin; T < r.form.tmax - 50.0; T += 50.0)
        EXPECT_GT(evaluate(r.form, T + 50.0), evaluate(r.form, T)) << key.first << " " << T;
    }
  }
  EXPECT_GT(estimated, 150);
}

// Relations on older critical constants stay well below them: all glycols, and every component without an equation
// of state.
TEST(BankComponents, RelationsOfAnotherCriticalPointEndBelowIt) {
  const std::set<std::string> fluids = reference_fluids();
  const CsvTable& t = components();
  int cut = 0, glycols = 0;
  for (std::size_t i = 0; i < t.rows.size(); ++i) {
    const std::string& cas = t.text(i, "cas");
    const double tc = t.number(i, "tc_K", 0.0);
    if (fluids.contains(cas)) continue;
    for (const char* const property : {"psat", "rho_liq_sat", "hvap"}) {
      for (const Relation& r : relations_of(cas, property)) {
        const double own = r.form.equation == "DIPPR105" ? r.form.c[2] : r.form.tc;
        if (r.form.equation.find("SPOLY") != std::string::npos || own == 0.0 ||
            std::fabs(own / tc - 1.0) <= 0.01)
          continue;
        EXPECT_LE(r.form.tmax, 0.8501 * std::min(own, tc)) << t.text(i, "name") << " " << property;
        ++cut;
        glycols += t.text(i, "isofam") == "3" ? 1 : 0;
      }
    }
  }
  EXPECT_GT(cut, 100);
  EXPECT_GE(glycols, 3);
}

}  // namespace
}  // namespace talix::bank
