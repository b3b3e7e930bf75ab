// The fitted tables behind the parameter files.
#include "bank/parameter_fit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>

#include "bank/fit_equation.h"
#include "bank/fit_reference.h"
#include "bank/parameter_hydrate_state.h"
#include "bank/tables.h"
#include "support/bank_writer.h"
#include "support/test_support.h"

namespace talix::bank::test {
namespace {

const std::filesystem::path kData = std::filesystem::path(TALIX_TEST_SOURCE) / "data";

TEST(PolarFits, TheConstantBringsTheVapourPressureDown) {
  const std::vector<PolarFit> fits = fit_polar(kData);
  ASSERT_GT(fits.size(), 110U);
  double with = 0;
  double without = 0;
  std::map<std::string, PolarFit> by_code;
  for (const PolarFit& fit : fits) {
    EXPECT_LE(fit.mean, fit.plain) << fit.code;
    with += std::min(fit.mean, 20.0);
    without += std::min(fit.plain, 20.0);
    by_code[fit.code] = fit;
    // Above the critical temperature alpha falls.
    const double m = 0.48 + fit.omega * (1.57 - 0.176 * fit.omega);
    EXPECT_TRUE(fit.form == 2 || m / 2 + 0.3 * fit.p1 > 0) << fit.code;
  }
  EXPECT_LT(with, 0.5 * without);
  for (const char* code : {"H2O ", "H2S ", "CO2 ", " 1P ", " 3P ", "N2  "})
    EXPECT_LT(by_code[code].mean, 1.0) << code;
  EXPECT_EQ(by_code["H2O "].form, 4);
}

TEST(PolarFits, WaterAgainstItsReference) {
  // The alpha function of the library written out, with the constants as the table has them.
  const SourceTable table = SourceTable::read(kData / "srk_polar.csv");
  ReferenceTables reference;
  std::string fault;
  ASSERT_TRUE(read_reference(kData.string(), reference, fault)) << fault;
  for (std::size_t row = 0; row < table.rows(); ++row) {
    if (table.text(row, "code") != "H2O ") continue;
    const double tc = table.required(row, "tc_K", {"K", 1, 1e4});
    const double pc = 1e5 * table.required(row, "pc_bar", {"bar", 1, 1e4});
    const double omega = table.required(row, "omega", {"-", -1, 2});
    const double p = table.required(row, "p1", {"-", -9, 9});
    const double m = 0.48 + 1.57 * omega - 0.176 * omega * omega;
    int checked = 0;
    for (const SatPoint& state : reference.points.at("7732-18-5")) {
      const double u = state.T / tc;
      if (u < 0.5 || u > 0.95) continue;
      const double root = 1 + m * (1 - std::sqrt(u)) - p * (1 - std::sqrt(u)) * (0.7 - u);
      const Saturation found =
          saturation({0.42748023354 * root * root / u, 0, 0, 0.08664034997, 0, 0}, u, state.psat / pc);
      ASSERT_TRUE(found.ok);
      EXPECT_NEAR(found.pr * pc / state.psat, 1.0, 0.02) << state.T;
      ++checked;
    }
    EXPECT_GE(checked, 5);
    return;
  }
  FAIL() << "no row of water";
}

TEST(HydrateFits, MeasuredPointsAreMet) {
  const std::vector<FormerFit> fits = fit_formers(kData);
  ASSERT_EQ(fits.size(), 12U);
  int measured = 0;
  for (const FormerFit& fit : fits) {
    for (int structure = 0; structure < 2; ++structure) {
      if (fit.points[structure] == 0) continue;
      ++measured;
      EXPECT_LT(fit.mean[structure], 4.0) << fit.former;
    }
  }
  EXPECT_EQ(measured, 8);
  // None of the points of gas mixtures was used; 15 % in pressure are about one kelvin.
  const MixtureCheck mixtures = check_mixtures(kData, fits);
  EXPECT_EQ(mixtures.points, 10);
  EXPECT_LT(mixtures.mean, 15.0);
}

TEST(HydrateFits, TheTableHoldsTheFit) {
  const SourceTable table = SourceTable::read(kData / "hydrate_formers.csv");
  const std::vector<FormerFit> fits = fit_formers(kData);
  ASSERT_EQ(table.rows(), fits.size());
  for (std::size_t row = 0; row < table.rows(); ++row) {
    EXPECT_EQ(table.text(row, "cas"), fits[row].cas);
    const auto A = table.number(row, "A_II_large_K_per_bar", {"K/bar", 0, 1e6});
    const auto B = table.number(row, "B_II_large_K", {"K", 0, 1e5});
    ASSERT_EQ(A.has_value(), fits[row].cavity[1][1].A > 0);
    // At 280 K: the curves of the gases may have been fitted anew since the table was made.
    if (!A) continue;
    EXPECT_NEAR(std::log(*A / fits[row].cavity[1][1].A) + (*B - fits[row].cavity[1][1].B) / 280, 0, 0.05)
        << row;
  }
}

TEST(HydrateState, IceAndWaterMeetAtTheFreezingPoint) {
  EXPECT_EQ(ice_over_liquid(273.15, 1e5), 0.0);
  EXPECT_NEAR(ice_over_liquid(273.1499, 0), 0.0, 1e-5);
  EXPECT_LT(ice_over_liquid(263.15, 1e5), -0.09);
  // Vapour pressures over ice and over liquid water at -10 degrees C: 259.9 and 286.5 Pa.
  EXPECT_NEAR(ice_over_liquid(263.15, 0), std::log(259.9 / 286.5), 0.003);
}

TEST(HydrateState, LatticeConstantsAreThoseOfTheLibrary) {
  EXPECT_NEAR(library_lattice(0).potential, 1287, 1e-3);
  EXPECT_NEAR(library_lattice(1).enthalpy, -5238, 1e-3);
  EXPECT_NEAR(cavities_per_water(0, 0), 1.0 / 23, 1e-7);
  EXPECT_NEAR(cavities_per_water(0, 1), 3.0 / 23, 1e-7);
  EXPECT_NEAR(cavities_per_water(1, 0), 2.0 / 17, 1e-7);
  EXPECT_NEAR(cavities_per_water(1, 1), 1.0 / 17, 1e-7);
  // At 273.15 K and without pressure the potential is that of the table.
  EXPECT_NEAR(lattice_potential(library_lattice(0), 0, 273.15, 0), 1287 / (8.314471 * 273.15), 1e-7);
}

TEST(HydrateState, FugacityOfOneComponentIsThatOfTheCubic) {
  HydrateGas gas{};
  gas.tc = 190.564;
  gas.pc = 4599200;
  gas.curves.p = {-4.55465955, 1.5, 1.2, 0.9, 0.8, 8.6, 0.1, 2, 0.9, 0.1, 0.43, 2.2, -0.9, 3, 2};
  gas.curves.prepare();
  const std::vector<GasPart> one{{&gas, 1.0, {0, 0}, {0, 0}}};
  const std::vector<GasPart> halves{{&gas, 0.5, {0, 0}, {0, 0}}, {&gas, 0.5, {0, 0}, {0, 0}}};
  for (const double P : {1e5, 5e6, 3e7}) {
    const double u = 280 / gas.tc;
    const AB ab = curves_at(gas.curves, u, false);
    const Root root = stable_root(ab, u, P / gas.pc);
    ASSERT_TRUE(root.ok);
    EXPECT_NEAR(fugacities(one, 280, P)[0] / (P * std::exp(root.lnphi)), 1.0, 1e-9);
    EXPECT_NEAR(fugacities(halves, 280, P)[0], fugacities(one, 280, P)[0] / 2, 1e-3);
  }
}

TEST(ParameterFitProgram, TablesAreWrittenAndAFaultIsNamed) {
  const talix::test::ScratchDirectory data;
  for (const auto& file : std::filesystem::directory_iterator(kData))
    if (file.path().extension() == ".csv") std::filesystem::copy(file.path(), data.path());
  std::filesystem::remove(data.path() / "srk_polar.csv");
  std::filesystem::remove(data.path() / "hydrate_formers.csv");
  EXPECT_EQ(parameter_fit_main({data.path()}), 0);
  EXPECT_GT(SourceTable::read(data.path() / "srk_polar.csv").rows(), 110U);
  EXPECT_EQ(SourceTable::read(data.path() / "hydrate_formers.csv").rows(), 12U);
  const std::string polar = talix::test::read_bytes(data.path() / "srk_polar.csv");
  EXPECT_EQ(parameter_fit_main({data.path()}), 0);
  EXPECT_EQ(talix::test::read_bytes(data.path() / "srk_polar.csv"), polar);
  std::filesystem::remove(data.path() / "hydrate_points.csv");
  EXPECT_EQ(parameter_fit_main({data.path()}), 1);
}

}  // namespace
}  // namespace talix::bank::test
