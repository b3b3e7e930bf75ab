// Published correlation forms and the corresponding-states relations behind the fits.
#include <gtest/gtest.h>

#include <cmath>

#include "bank/correlations.h"
#include "bank/fit_linear.h"

namespace talix::bank {
namespace {

Correlation form(const char* equation, std::initializer_list<double> c, double tc = 0.0, double tmin = 100.0,
                 double tmax = 500.0) {
  Correlation r;
  r.equation = equation;
  for (const double v : c) r.c.at(static_cast<std::size_t>(r.count++)) = v;
  r.tc = tc;
  r.tmin = tmin;
  r.tmax = tmax;
  return r;
}

TEST(Correlations, FormsGiveTheirDefinition) {
  EXPECT_NEAR(evaluate(form("DIPPR100", {1, 2, 3}), 10.0), 321.0, 1e-12);
  EXPECT_NEAR(evaluate(form("INV_DIPPR100", {1, 2, 3}), 10.0), 1.0 / 321.0, 1e-15);
  EXPECT_NEAR(evaluate(form("DIPPR101", {1, 200, 0.5, 1e-3, 1}), 100.0),
              std::exp(1 + 2 + 0.5 * std::log(100.0) + 0.1), 1e-9);
  EXPECT_NEAR(evaluate(form("DIPPR105", {2, 0.5, 400, 0.3}, 400), 300.0),
              2 / std::pow(0.5, 1 + std::pow(0.25, 0.3)), 1e-12);
  EXPECT_NEAR(evaluate(form("DIPPR106", {5, 0.4, 0.1}, 400), 300.0), 5 * std::pow(0.25, 0.4 + 0.075), 1e-12);
  EXPECT_NEAR(evaluate(form("DIPPR102", {2, 0.5, 100, 2e4}), 100.0), 2 * 10 / (1 + 1 + 2), 1e-12);
  EXPECT_NEAR(
      evaluate(form("DIPPR114", {2, 5, 3, 4}, 400), 200.0),
      4 / 0.5 + 5 - 2 * 2 * 3 * 0.5 - 2 * 4 * 0.25 - 9 * 0.125 / 3 - 12 * 0.0625 / 2 - 16 * 0.03125 / 5,
      1e-12);
  EXPECT_NEAR(evaluate(form("ZABR_QUASI", {1, 2, 3, 4, 5, 6}, 400), 200.0),
              8.314462618 * (std::log(0.5) + 4 + 3 + 2 + 1.25 + 0.75), 1e-9);
  EXPECT_NEAR(evaluate(form("CS118", {1, 200, 0.5, 1e-4, 1}), 100.0),
              std::exp(1 + 2 + 0.5 * std::log(100.0) + 1.0), 1e-9);
  EXPECT_NEAR(evaluate(form("ANTOINE_10", {9, 900, -50}), 350.0), 1e6, 1e-6);
  EXPECT_NEAR(evaluate(form("ANTOINE_E", {9, 900, -50}), 350.0), std::exp(6.0), 1e-9);
  EXPECT_NEAR(evaluate(form("WAGNER25", {-7, 1, -2, -3, 5e6}, 500), 500.0), 5e6, 1e-6);
  EXPECT_NEAR(evaluate(form("WAGNER36", {-7, 1, -2, -3, 5e6}, 500), 250.0),
              5e6 * std::exp(2 * (-3.5 + std::pow(0.5, 1.5) - 0.25 - 3.0 / 64)), 1.0);
  EXPECT_NEAR(evaluate(form("SPOLY", {1, 2, 3}, 0, 100, 300), 300.0), 6.0, 1e-12);
  EXPECT_NEAR(evaluate(form("EXP_SPOLY", {1, 2, 3}, 0, 100, 300), 200.0), std::exp(1.0), 1e-12);
  EXPECT_NEAR(evaluate(form("RATPOLY", {2, 1, 3, 4, 5}), 10.0), 31.0 / 54.0, 1e-12);
  EXPECT_NEAR(evaluate(form("CP0_PE", {8.0, 2.5, 0, 0.5, 0}), 300.0), 24.0, 1e-12);
  EXPECT_NEAR(evaluate(form("SHOMATE", {1, 0, 0, 0, 100}), 10.0), 2.0, 1e-12);
}

// Compressibility 1 in the limit of no pressure, the tabulated value of the simple fluid at Tr 2 and Pr 1, and
// the definition of the acentric factor.
TEST(LeeKesler, HasTheRightLimits) {
  EXPECT_NEAR(lee_kesler_z(1.2, 1e-4, 0.15), 1.0, 1e-4);
  EXPECT_NEAR(lee_kesler_z(2.0, 1.0, 0.0), 0.9754, 0.0005);
  EXPECT_NEAR(lee_kesler_lnpr(1.0, 0.3), 0.0, 1e-3);
  EXPECT_NEAR(lee_kesler_lnpr(0.7, 0.3) / std::log(10.0), -1.3, 0.01);
}

TEST(WagnerFit, TakesBackItsOwnCoefficients) {
  FitComponent c;
  c.tc = 500.0;
  c.pc = 4e6;
  const std::array<double, 4> w = {-7.0, 1.5, -2.0, -3.5};
  Reference ref;
  for (double T = 200.0; T < 496.0; T += 5.0) ref.sat.push_back({T, wagner_pressure(c, w, T), 0, 0, 0});
  const WagnerFit fit = fit_wagner(c, ref);
  EXPECT_LT(fit.deviation.worst, 0.001);
  for (std::size_t k = 0; k < 4; ++k) EXPECT_NEAR(fit.w.at(k), w.at(k), 0.02);
}

TEST(HeatCapacityFit, MonatomicGasStaysConstantFarOutside) {
  Reference ref;
  for (double T = 150.0; T <= 1500.0; T += 25.0) ref.cp.push_back({T, 2.5 * GAS_CONSTANT, 1.0});
  const HeatCapacityFit fit = fit_heat_capacity(ref);
  EXPECT_LT(fit.deviation.worst, 0.01);
  for (const double T : {60.0, 100.0, 1700.0}) EXPECT_NEAR(ideal_gas_cp(fit.c, T), 2.5 * GAS_CONSTANT, 0.01);
}

TEST(GeneralisedConstants, EndTheACurveAtColumn11) {
  for (const double omega : {0.2, 1.0, 2.2}) {
    Curves c;
    c.p = generalised_constants(omega);
    c.prepare();
    EXPECT_NEAR(c.AAC, c.p[10], 1e-12) << omega;
  }
}

}  // namespace
}  // namespace talix::bank
