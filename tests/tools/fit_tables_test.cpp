// The committed tables of fits: harmless outside the fitted range, as close as promised inside, and made again
// by the fit.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "bank/fit.h"
#include "bank/fit_csv.h"
#include "bank/fit_linear.h"
#include "support/bank_source.h"

namespace talix::bank {
namespace {

const std::string kData = std::string(TALIX_TEST_SOURCE) + "/data";

struct Fitted {
  FitComponent component;
  Curves curves;
  std::string note;  // why the curves are less than a full fit
};

class FitTables : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string message;
    ASSERT_TRUE(read_reference(kData, tables, message)) << message;
    ASSERT_TRUE(read_csv(kData + "/curves.csv", rows));
    for (std::size_t row = 0; row < rows.rows.size(); ++row) {
      const int number = static_cast<int>(rows.number(row, "number", 0.0));
      const auto at = std::find_if(tables.components.begin(), tables.components.end(),
                                   [&](const FitComponent& c) { return c.number == number; });
      ASSERT_NE(at, tables.components.end()) << number;
      Fitted f{*at, {}, rows.text(row, "note")};
      f.curves.kind = quantum_of(at->code.c_str());
      for (int k = 1; k <= 15; ++k)
        f.curves.p.at(static_cast<std::size_t>(k - 1)) =
            rows.number(row, "p" + std::to_string(k), std::nan(""));
      f.curves.prepare();
      fits.push_back(f);
    }
    ASSERT_GE(fits.size(), 950U);
  }
  ReferenceTables tables;
  CsvTable rows;
  std::vector<Fitted> fits;
};

// The general relation in the acentric factor, the last resort of a fit, keeps neither promise.
TEST_F(FitTables, CurvesStayPositiveTo1500KAndAFallsUntilItNearlyVanishes) {
  int general = 0;
  for (const Fitted& f : fits) {
    if (f.note.find("general curves") != std::string::npos) {
      ++general;
      continue;
    }
    double last = 1e9;
    for (double u = 0.3; u < std::max(4.0, 1500.0 / f.component.tc); u *= 1.01) {
      const AB ab = curves_at(f.curves, u, false);
      EXPECT_GT(ab.B, 0.008) << f.component.name << " at " << u;
      EXPECT_LT(ab.B, 0.20) << f.component.name << " at " << u;
      EXPECT_GT(ab.A, 0.001) << f.component.name << " at " << u;
      if (last > 0.01) {
        EXPECT_LE(ab.A, last * (1.0 + 1e-6)) << f.component.name << " at " << u;
      }
      last = ab.A;
    }
  }
  EXPECT_LE(general, 3);
}

TEST_F(FitTables, RationalCurveHasNoPoleUpTo30TimesTheCriticalTemperature) {
  for (const Fitted& f : fits) {
    for (double u = 1.0; u < 30.0; u += 0.01) {
      const double y = 1.0 - 1.0 / u;
      EXPECT_GT(1.0 + f.curves.p[13] * y + f.curves.p[14] * y * y, 0.1) << f.component.name << " at " << u;
    }
  }
}

TEST_F(FitTables, ConstantsAreExactIn32Bits) {
  for (const Fitted& f : fits) {
    for (const double p : f.curves.p) {
      std::array<char, 32> text{};
      std::snprintf(text.data(), text.size(), "%.9g", static_cast<double>(static_cast<float>(p)));
      EXPECT_EQ(std::strtod(text.data(), nullptr), p) << f.component.name;
    }
  }
}

TEST_F(FitTables, MeansOverTheComponentsMeetTheGoal) {
  Deviation psat, rhol, reference_psat, reference_rhol;
  for (const Fitted& f : fits) {
    const Reference ref = reference_of(tables, f.component);
    const CurveFigures g = figures_of(f.component, ref, f.curves, {});
    EXPECT_GT(g.psat.n, 4) << f.component.name;
    if (!ref.psat_estimated) psat.add(g.psat.mean);
    if (!ref.rhol_estimated) rhol.add(g.rhol.mean);
    if (ref.basis != "equation of state") continue;
    reference_psat.add(g.psat.mean);
    reference_rhol.add(g.rhol.mean);
  }
  for (Deviation* d : {&psat, &rhol, &reference_psat, &reference_rhol}) d->finish();
  EXPECT_GT(psat.n, 850);
  EXPECT_GT(rhol.n, 650);
  EXPECT_GT(reference_psat.n, 120);
  EXPECT_LT(psat.mean, 0.50);
  EXPECT_GT(psat.mean, 0.01);
  EXPECT_LT(rhol.mean, 1.00);
  EXPECT_GT(rhol.mean, 0.05);
  EXPECT_LT(reference_psat.mean, 0.30);
  EXPECT_LT(reference_rhol.mean, 0.70);
}

TEST_F(FitTables, KeyFluidsMeetTheGoalOneByOne) {
  for (const char* name :
       {"methane", "nitrogen", "carbon dioxide", "propane", "n-decane", "water", "benzene", "methanol"}) {
    const auto at =
        std::find_if(fits.begin(), fits.end(), [&](const Fitted& f) { return f.component.name == name; });
    ASSERT_NE(at, fits.end()) << name;
    const CurveFigures g = figures_of(at->component, reference_of(tables, at->component), at->curves, {});
    EXPECT_LT(g.psat.mean, 0.30) << name;
    EXPECT_LT(g.rhol.mean, 0.90) << name;
  }
}

TEST_F(FitTables, HeatCapacitiesStaySaneOutsideTheirRange) {
  CsvTable ideal;
  ASSERT_TRUE(read_csv(kData + "/ideal_gas.csv", ideal));
  ASSERT_GE(ideal.rows.size() + 1, fits.size());  // sodium chloride has none
  for (std::size_t row = 0; row < ideal.rows.size(); ++row) {
    std::array<double, 8> c{};
    for (int k = 1; k <= 8; ++k)
      c.at(static_cast<std::size_t>(k - 1)) = ideal.number(row, "c" + std::to_string(k), std::nan(""));
    const double top = ideal_gas_cp(c, 1500.0);
    for (double T = 100.0; T <= 1700.0; T += 10.0) {
      const double cp = ideal_gas_cp(c, T);
      EXPECT_GT(cp, 2.0 * GAS_CONSTANT) << ideal.text(row, "code") << " at " << T;
      EXPECT_LT(cp, 1.3 * top + 5.0) << ideal.text(row, "code") << " at " << T;
    }
  }
}

TEST_F(FitTables, FitGivesTheSameTablesEveryTime) {
  const testing::Folder folder;
  for (const char* file :
       {"components.csv", "reference_points.csv", "supercritical_points.csv", "saturation_correlations.csv",
        "ideal_gas_correlations.csv", "transport_correlations.csv"}) {
    std::filesystem::copy_file(kData + "/" + file, folder.path() / file);
  }
  FitOptions options;
  options.data_dir = folder.path().string();
  options.only = {"krypton", "AR  ", "102"};
  options.jobs = 2;
  ASSERT_EQ(fit_main(options), 0);
  const std::string first = folder.read("curves.csv"), ideal = folder.read("ideal_gas.csv");
  options.jobs = 1;
  ASSERT_EQ(fit_main(options), 0);
  EXPECT_EQ(folder.read("curves.csv"), first);
  EXPECT_EQ(folder.read("ideal_gas.csv"), ideal);
  // Argon, krypton and n-nonane, in the order of their numbers.
  CsvTable made;
  ASSERT_TRUE(read_csv((folder.path() / "curves.csv").string(), made));
  ASSERT_EQ(made.rows.size(), 3U);
  EXPECT_EQ(made.text(0, "code"), "AR  ");
  EXPECT_EQ(made.text(1, "number"), "102");
  // The transport sets go with the curves that the same run has made.
  CsvTable transport;
  ASSERT_TRUE(read_csv((folder.path() / "transport.csv").string(), transport));
  ASSERT_GT(transport.rows.size(), 30U);
  EXPECT_EQ(transport.text(0, "code"), "AR  ");
}

TEST(FitMain, UnknownComponentsAndMissingTablesAreRefused) {
  FitOptions options;
  options.data_dir = kData;
  options.only = {"no such component"};
  EXPECT_EQ(fit_main(options), 1);
  const testing::Folder folder;
  options.data_dir = folder.path().string();
  EXPECT_EQ(fit_main(options), 1);
}

}  // namespace
}  // namespace talix::bank
