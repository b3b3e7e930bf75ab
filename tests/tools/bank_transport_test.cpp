// The saturation and transport sets on their way from the table into the records, and what the check finds there.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "bank/build.h"
#include "bank/check_transport.h"
#include "bank/fit_sets.h"
#include "bank/tables.h"
#include "bank/transport_forms.h"
#include "support/bank_source.h"

namespace talix::bank {
namespace {

using testing::Folder;

const std::filesystem::path kData = std::filesystem::path(TALIX_TEST_SOURCE) / "data";
constexpr const char* kHeader = "number,code,set,flag,c1,c2,c3,c4,c5,c6,c7,c8\n";

double real(const PureRecord& record, std::string_view field, int offset = 0) {
  return static_cast<double>(record.real(pure_field(field).cell + offset));
}

int flag(const PureRecord& record, std::string_view field) { return record.integer(pure_field(field).cell); }

const Bank& project_bank() {
  static const Bank bank = compile_bank(kData).bank;
  return bank;
}

const PureRecord& component(int number) {
  return project_bank().pure.at(static_cast<std::size_t>(number - 1));
}

// Propane of a small bank with the given rows of transport.csv.
PureRecord propane_with(const std::string& rows) {
  const Folder folder;
  testing::write_small_sources(folder);
  folder.write("transport.csv", kHeader + rows);
  return compile_bank(folder.path()).bank.pure.at(21);
}

std::string error_with(const std::string& rows) {
  try {
    (void)propane_with(rows);
  } catch (const BankError& error) {
    return error.what();
  }
  return {};
}

// Faults of a component of the project after an alteration.
std::string faults_after(int number, const std::function<void(PureRecord&)>& alter) {
  PureRecord record = component(number);
  alter(record);
  std::string all;
  for (const std::string& fault : transport_faults(record)) all += fault + '\n';
  return all;
}

std::function<void(PureRecord&)> with_real(std::string_view field, int offset, float value) {
  return [=](PureRecord& record) { record.set_real(pure_field(field).cell + offset, value); };
}

constexpr int kWater = 9, kHydrogenSulphide = 11, kPhosphine = 16, kHydrogen = 8, kMethane = 20,
              kDecane = 116, kBenzene = 277;

TEST(BankTransport, CoefficientsStandInTheCellsOfTheirSet) {
  const PureRecord record = propane_with(
      "22,\" 3P \",VIL,1,1,2,3,4,5,6,,\n22,\" 3P \",TCV,0,1.5,1.25,,,,,,\n"
      "22,\" 3P \",SS,1,11,12,13,14,15,16,17,18\n");
  EXPECT_EQ(record.integer(196), 1);
  for (int k = 0; k < 6; ++k) EXPECT_EQ(record.real(197 + k), static_cast<float>(k + 1));
  EXPECT_EQ(record.real(203), 0.0F);
  EXPECT_EQ(record.real(194), 1.5F);
  EXPECT_EQ(record.real(195), 1.25F);
  EXPECT_EQ(record.integer(238), 1);
  // The second half of this set stands before the first.
  for (int k = 0; k < 4; ++k) {
    EXPECT_EQ(record.real(243 + k), static_cast<float>(11 + k));
    EXPECT_EQ(record.real(239 + k), static_cast<float>(15 + k));
  }
}

TEST(BankTransport, SetWithoutARowHasAFlagOfZero) {
  const PureRecord record = propane_with("22,\" 3P \",DLIP,0,200,2,1,,,,,\n");
  for (const std::string_view field : {"IPSA", "IDLI", "IHVA", "ITCL", "IVIL", "ISUR", "IQISS", "ILVT"})
    EXPECT_EQ(flag(record, field), 0) << field;
  // The density set is read without a look at its flag.
  EXPECT_EQ(real(record, "DLIP"), 200.0);
}

TEST(BankTransport, ParachorOfTheTableReplacesThatOfTheConstants) {
  EXPECT_EQ(propane_with("22,\" 3P \",PACHOR,0,151.5,,,,,,,\n").real(67), 151.5F);
}

TEST(BankTransport, UnknownSetsCodesAndFiguresAreRefused) {
  EXPECT_NE(error_with("22,\" 3P \",NOSET,0,1,,,,,,,\n").find("no set of the record"), std::string::npos);
  EXPECT_NE(error_with("22,\" 4P \",VIL,1,1,2,3,,,,,\n").find("the code of this component is \" 3P \""),
            std::string::npos);
  EXPECT_NE(error_with("22,\" 3P \",VIL,-1,1,2,3,,,,,\n"), "");
  EXPECT_NE(error_with("22,\" 3P \",VIL,1,one,2,3,,,,,\n"), "");
  EXPECT_EQ(error_with("22,\" 3P \",VIL,1,1,2,3,,,,,\n"), "");
}

TEST(BankTransport, EveryComponentHasDensityAndVapourPressure) {
  int components = 0, apart = 0;
  for (const PureRecord& record : project_bank().pure) {
    if (is_unused(record)) continue;
    ++components;
    const std::string code = record.text(2, 1);
    EXPECT_GT(real(record, "DLIP"), 0.0) << code;
    EXPECT_NE(real(record, "PSAT"), 0.0) << code;
    EXPECT_EQ(real(record, "PSAT", 2), 0.0) << code;
    EXPECT_EQ(flag(record, "IPSA"), kFrostKalkwarf) << code;
    EXPECT_TRUE(flag(record, "IDLI") == kTabulatedForm || real(record, "DDIP", 1) > 0.0) << code;
    // The extended Antoine equation goes the same way as the set that is read first, without the terms that are not
    // fitted. Its range ends below the critical point.
    SetValues psat{}, panto{};
    for (int k = 0; k < 7; ++k) psat.at(static_cast<std::size_t>(k)) = real(record, "PSAT", k);
    for (int k = 0; k < 9; ++k) panto.at(static_cast<std::size_t>(k)) = real(record, "PANTO", k);
    EXPECT_EQ(panto[2], 0.0) << code;
    EXPECT_EQ(panto[3], 0.0) << code;
    EXPECT_GT(panto[7], 0.0) << code;
    EXPECT_GT(panto[8], panto[7]) << code;
    EXPECT_LT(panto[8], real(record, "TC")) << code;
    const double T = 0.5 * (panto[7] + panto[8]);
    EXPECT_NEAR(panto_pressure(panto, T) / (1e6 * psat_pressure(psat, T)), 1.0, 0.15) << code;
    if (std::fabs(panto_pressure(panto, T) / (1e6 * psat_pressure(psat, T)) - 1.0) > 0.05) ++apart;
  }
  EXPECT_GE(components, 950);
  // Heavy polar liquids whose sources the form of Frost and Kalkwarf cannot follow: methyldiethanolamine and others.
  EXPECT_LE(apart, 6);
}

TEST(BankTransport, ComponentWithoutSourcesHasItsSetsAbsent) {
  const PureRecord& record = component(kPhosphine);
  for (const std::string_view field : {"ITCL", "IVIL", "ISUR", "IQISS", "ILVT"})
    EXPECT_EQ(flag(record, field), 0) << field;
  EXPECT_EQ(real(record, "VIL"), 0.0);
  EXPECT_EQ(real(record, "TCL"), 0.0);
  EXPECT_EQ(real(record, "PACHOR"), 0.0);
}

TEST(BankTransport, HeatOfVaporisationWithoutSourcesFollowsFromTheBoilingPoint) {
  const PureRecord& record = component(kPhosphine);
  EXPECT_EQ(flag(record, "IHVA"), kTabulatedForm);
  SetValues c{};
  for (int k = 0; k < 7; ++k) c.at(static_cast<std::size_t>(k)) = real(record, "HVAPCF", k);
  // 14.6 kJ/mol at the boiling point of -87.75 C, CRC Handbook of Chemistry and Physics.
  EXPECT_NEAR(hvap_heat(c, real(record, "TC"), 185.4), 14600.0, 300.0);
}

TEST(BankTransport, HandbookValuesOfKeyLiquids) {
  const auto set = [](int number, std::string_view field, int count) {
    SetValues c{};
    for (int k = 0; k < count; ++k) c.at(static_cast<std::size_t>(k)) = real(component(number), field, k);
    return c;
  };
  const auto viscosity = [&](int number, double T) {
    return vil_viscosity(flag(component(number), "IVIL"), set(number, "VIL", 7), T);
  };
  const auto conductivity = [&](int number, double T) { return tcl_conductivity(set(number, "TCL", 7), T); };
  // Water and benzene at 25 C, CRC Handbook of Chemistry and Physics: 0.890 and 0.604 mPa s, 0.607 and 0.141 W/(m K).
  EXPECT_NEAR(viscosity(kWater, 298.15), 0.890, 0.018);
  EXPECT_NEAR(viscosity(kBenzene, 298.15), 0.604, 0.012);
  EXPECT_NEAR(conductivity(kWater, 298.15), 0.6065, 0.012);
  EXPECT_NEAR(conductivity(kBenzene, 298.15), 0.141, 0.003);
  // n-Decane at 25 C: 0.838 mPa s, 0.132 W/(m K), 726 kg/m3; heat of vaporisation of water at 100 C: 40.66 kJ/mol.
  EXPECT_NEAR(viscosity(kDecane, 298.15), 0.838, 0.025);
  EXPECT_NEAR(conductivity(kDecane, 298.15), 0.132, 0.003);
  EXPECT_NEAR(dlip_density(set(kDecane, "DLIP", 3), real(component(kDecane), "TC"), 298.15), 726.0, 3.7);
  EXPECT_NEAR(hvap_heat(set(kWater, "HVAPCF", 7), real(component(kWater), "TC"), 373.15), 40660.0, 400.0);
  // Viscosity at 50 C: water 0.547 mPa s.
  EXPECT_NEAR(real(component(kWater), "LVIS50"), 0.547, 0.011);
  // Parachor of methane and n-decane, C. F. Weinaug, D. L. Katz, Ind. Eng. Chem. 35 (1943) 239 and the usual increments.
  EXPECT_NEAR(real(component(kMethane), "PACHOR"), 73.2, 3.0);
  EXPECT_NEAR(real(component(kDecane), "PACHOR"), 433.5, 13.0);
}

TEST(BankTransport, HydrogenHasTheModifiedEuckenFactor) {
  EXPECT_NEAR(real(component(kHydrogen), "TCV", 0), 1.77, 1e-6);
  EXPECT_NEAR(real(component(kHydrogen), "TCV", 1), 1.32, 1e-6);
}

TEST(BankTransport, OnlyHydrogenIsTakenForHydrogenByItsName) {
  for (const PureRecord& record : project_bank().pure) {
    if (is_unused(record)) continue;
    // The flash layer takes its name from here: the short name comes first.
    EXPECT_EQ(record.text(12, 4).starts_with("H2"), record.text(2, 1) == "H2  ") << record.text(2, 1);
  }
  EXPECT_EQ(component(kWater).text(12, 2), "Water   ");
  EXPECT_EQ(component(kHydrogenSulphide).text(12, 2), "HydSulph");
}

TEST(BankTransport, SoundSetsHaveNoFaultAndAlteredOnesDo) {
  EXPECT_EQ(faults_after(kDecane, [](PureRecord&) {}), "");
  const struct {
    std::string_view field;
    int offset;
    float value;
    const char* what;
  } alterations[] = {{"PSAT", 2, 0.5F, "Antoine set"},
                     {"PSAT", 0, 0.0F, "pressure at"},
                     {"DLIP", 0, 3.0F, "DLIP: density"},
                     {"DDIP", 1, 0.9F, "DDIP: density"},
                     {"HVAPCF", 1, -2.0F, "exponent is negative"},
                     {"HVAPCF", 0, 1e4F, "over HVAP"},
                     {"VIL", 2, 0.0F, "another form"},
                     {"VIL", 0, 9.0F, "VIL: viscosity at 0.7"},
                     {"SS 5-8", 1, 10.0F, "do not ascend"},
                     {"TCL", 5, 9000.0F, "do not ascend"},
                     {"TCL", 0, 90.0F, "TCL: conductivity"},
                     {"SURT", 1, 3.5F, "its exponent"},
                     {"PARL2", 2, -1.0F, "PARL2: parameter 3"}};
  for (const auto& [field, offset, value, what] : alterations) {
    const std::string found = faults_after(kDecane, with_real(field, offset, value));
    EXPECT_NE(found.find(what), std::string::npos) << field << ": " << found;
  }
}

TEST(BankTransport, ViscosityThatRisesIsAFault) {
  const std::string found = faults_after(kDecane, [](PureRecord& record) {
    record.set_integer(pure_field("IVIL").cell, kTabulatedForm);
    const float rising[] = {-13.6F, -100.0F, 0.5F, 0.0F, 0.0F, 0.0F};
    for (int k = 0; k < 6; ++k) record.set_real(pure_field("VIL").cell + k, rising[k]);
  });
  EXPECT_NE(found.find("does not fall"), std::string::npos) << found;
}

TEST(BankTransport, ReportHasASectionOnTheSets) {
  const std::string report = [] {
    std::ifstream in(kData.parent_path() / "docs" / "accuracy.md");
    return std::string(std::istreambuf_iterator<char>(in), {});
  }();
  EXPECT_NE(report.find("## Saturation and transport sets"), std::string::npos);
  const struct {
    std::string_view row, flag;
    int fewest;
  } sets[] = {{"| liquid viscosity | `VIL` | ", "IVIL", 700},
              {"| liquid conductivity | `TCL` | ", "ITCL", 750},
              {"| surface tension, power form | `SURT` | ", "ISUR", 750},
              {"| viscosity by corresponding states | `PARL2` | ", "ILVT", 550}};
  for (const auto& [row, field, fewest] : sets) {
    int components = 0;
    for (const PureRecord& record : project_bank().pure)
      if (!is_unused(record) && flag(record, field) != 0) ++components;
    EXPECT_GE(components, fewest) << row;
    EXPECT_NE(report.find(std::string(row) + std::to_string(components) + " |"), std::string::npos) << row;
  }
}

}  // namespace
}  // namespace talix::bank
