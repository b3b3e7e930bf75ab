// The tool's own evaluation of the cubic, which the fits run on, against the engine's curves and identities.
#include "bank/fit_equation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "bank/fit_csv.h"
#include "eos/ssm_pure_curves.h"

namespace talix::bank {
namespace {

const std::string kData = std::string(TALIX_TEST_SOURCE) + "/data";

Curves curves_of(int number, Quantum kind = Quantum::none) {
  CsvTable table;
  EXPECT_TRUE(read_csv(kData + "/curves.csv", table));
  Curves c;
  c.kind = kind;
  for (std::size_t row = 0; row < table.rows.size(); ++row) {
    if (static_cast<int>(table.number(row, "number", 0.0)) != number) continue;
    for (int k = 1; k <= 15; ++k)
      c.p.at(static_cast<std::size_t>(k - 1)) = table.number(row, "p" + std::to_string(k), 0.0);
  }
  c.prepare();
  return c;
}

TEST(FitEquation, CurvesAreThoseOfTheEngine) {
  const Curves c = curves_of(22);
  const auto table = std::make_unique<Mat<R8, kMaxComponents, 15>>();
  for (int k = 1; k <= 15; ++k) (*table)(1, k) = c.p.at(static_cast<std::size_t>(k - 1));
  for (const double XI : {3.0, 1.5, 1.1, 1.04}) {
    const AB ab = curves_at(c, 1.0 / XI, true);
    EXPECT_NEAR(ab.A, SSMPC1(*table, kMaxComponents, 1, 0, XI, 1), 1e-12);
    EXPECT_NEAR(ab.A1, SSMPC1(*table, kMaxComponents, 1, 0, XI, 2), 1e-12);
    EXPECT_NEAR(ab.A2, SSMPC1(*table, kMaxComponents, 1, 0, XI, 3), 1e-11);
    EXPECT_NEAR(ab.B, SSMPC1(*table, kMaxComponents, 1, 5, XI, 1), 1e-13);
  }
  for (const double XI : {0.9, 0.5, 0.35}) {
    const AB ab = curves_at(c, 1.0 / XI, true);
    EXPECT_NEAR(ab.A, SSMPC3(*table, kMaxComponents, 1, XI, 1), 1e-12);
    EXPECT_NEAR(ab.A1, SSMPC3(*table, kMaxComponents, 1, XI, 2), 1e-12);
    EXPECT_NEAR(ab.B, SSMPC2(c.hot.C1, c.hot.C2, c.hot.C3, c.hot.C4, XI, 1), 1e-13);
    EXPECT_NEAR(ab.B2, SSMPC2(c.hot.C1, c.hot.C2, c.hot.C3, c.hot.C4, XI, 3), 1e-12);
  }
}

TEST(FitEquation, PointSolutionReturnsTheVapourPressureAndTheLiquidVolume) {
  const double u = 0.75, pr = 0.12, w = 0.12;
  std::array<PointSolution, 8> found{};
  const int n = solve_point(u, pr, w, found);
  ASSERT_GE(n, 1);
  for (int k = 0; k < n; ++k) {
    const PointSolution& p = found.at(static_cast<std::size_t>(k));
    const Saturation s = saturation({p.A, 0, 0, p.B, 0, 0}, u, 0.2);
    ASSERT_TRUE(s.ok);
    EXPECT_NEAR(s.pr, pr, 1e-8);
    EXPECT_NEAR(s.ZL * u / s.pr, w, 1e-7);
  }
}

TEST(FitEquation, SaturationHasEqualFugacitiesAndFindsItFromFarAway) {
  const AB ab = curves_at(curves_of(20), 0.8, false);
  const Saturation near = saturation(ab, 0.8, 0.25), far = saturation(ab, 0.8, 1.5);
  ASSERT_TRUE(near.ok);
  ASSERT_TRUE(far.ok);
  EXPECT_NEAR(near.pr, far.pr, 1e-9);
  Root liquid{}, vapour{};
  ASSERT_EQ(outer_roots(ab.A, ab.B, 0.8, near.pr, liquid, vapour), 2);
  EXPECT_NEAR(liquid.lnphi, vapour.lnphi, 1e-10);
}

TEST(FitEquation, NoSaturationAboveTheCriticalTemperature) {
  EXPECT_FALSE(saturation(curves_at(curves_of(20), 1.1, false), 1.1, 1.2).ok);
}

TEST(FitEquation, ThermalResultsAreTheSlopesOfTheFugacity) {
  const Curves c = curves_of(22);
  const double u = 0.8, pr = 0.1, h = 1e-5;
  const AB ab = curves_at(c, u, true);
  Root l{}, v{};
  ASSERT_EQ(outer_roots(ab.A, ab.B, u, pr, l, v), 2);
  for (const bool liquid : {true, false}) {
    const auto lnphi = [&](double at) {
      const AB x = curves_at(c, at, false);
      Root a{}, b{};
      outer_roots(x.A, x.B, at, pr, a, b);
      return liquid ? a.lnphi : b.lnphi;
    };
    const auto enthalpy = [&](double at) {
      const AB x = curves_at(c, at, true);
      Root a{}, b{};
      outer_roots(x.A, x.B, at, pr, a, b);
      return at * thermal(x, at, pr, liquid ? a.Z : b.Z).H;
    };
    const Thermal th = thermal(ab, u, pr, liquid ? l.Z : v.Z);
    EXPECT_NEAR(th.H, -u * (lnphi(u + h) - lnphi(u - h)) / (2 * h), 1e-6 * std::fabs(th.H));
    EXPECT_NEAR(th.CP, (enthalpy(u + h) - enthalpy(u - h)) / (2 * h), 1e-5 * std::fabs(th.CP));
  }
}

TEST(FitEquation, LightGasesMeetTheirTabulatedB) {
  EXPECT_NEAR(curves_at(curves_of(8, Quantum::hydrogen), 1.0 / 1.04, false).B, 0.083814, 2e-6);
  EXPECT_NEAR(curves_at(curves_of(3, Quantum::helium), 1.0 / 1.04, false).B, 0.108219, 2e-6);
  EXPECT_NEAR(curves_at(curves_of(15, Quantum::nitrogen), 1.0 / 1.04, false).B, 0.080835, 2e-6);
  EXPECT_EQ(quantum_of("H2  "), Quantum::hydrogen);
  EXPECT_EQ(quantum_of("H2O "), Quantum::none);
}

}  // namespace
}  // namespace talix::bank
