#include "bank/pairs_equation.h"

#include <gtest/gtest.h>

#include <cmath>

#include "bank/build.h"
#include "bank/pair_accuracy_engine.h"
#include "support/bank_source.h"

namespace talix::bank {
namespace {

const std::filesystem::path kData = std::filesystem::path(TALIX_TEST_SOURCE) / "data";

const Bank& bank() {
  static const Bank built = compile_bank(kData).bank;
  return built;
}

PairComponent component(int number) {
  for (const PureRecord& record : bank().pure) {
    if (is_unused(record)) continue;
    const PairComponent c = pair_component(record);
    if (c.number == number) return c;
  }
  ADD_FAILURE() << "no component " << number;
  return {};
}

constexpr int kCarbonDioxide = 4, kWater = 9, kMethane = 20, kEthane = 21, kPropane = 22, kDecane = 116;

// Parameters of a pair as its record holds them.
PairParameters recorded(std::int32_t key) {
  for (const PairRecord& record : bank().pairs) {
    if (record.integer(1) != key) continue;
    const auto real = [&](int i) { return static_cast<double>(pair_real(record, i)); };
    return {real(1), real(2), real(3), real(4)};
  }
  ADD_FAILURE() << "no pair " << key;
  return {};
}

TEST(PairEquation, AgreesWithTheEngine) {
  const testing::Folder folder;
  write_bank(folder.path(), bank());
  const struct {
    int first, second;
    const char *code1, *code2;
  } pairs[] = {{kCarbonDioxide, kWater, "CO2 ", "H2O "}, {kMethane, kDecane, " 1P ", "10P "}};
  for (const auto& p : pairs) {
    const PairEngine engine(folder.path().string(), p.code1, p.code2);
    const PairEquation equation(PairCubic::bank, component(p.first), component(p.second),
                                recorded(10000 * p.first + p.second));
    for (const double T : {290.0, 340.0, 460.0}) {
      for (const double x : {0.02, 0.5, 0.97}) {
        for (const PairRoot root : {PairRoot::liquid, PairRoot::vapour}) {
          const PairPhase own = equation.phase(T, 2e6, x, root), other = engine.phase(T, 2e6, x, root);
          ASSERT_TRUE(own.ok && other.ok);
          EXPECT_NEAR(own.Z, other.Z, 1e-8 * other.Z) << p.code1 << T << ' ' << x;
          EXPECT_NEAR(own.lnphi[0], other.lnphi[0], 1e-7) << p.code1 << T << ' ' << x;
          EXPECT_NEAR(own.lnphi[1], other.lnphi[1], 1e-7) << p.code1 << T << ' ' << x;
        }
      }
    }
  }
}

// x1 d ln phi1 + x2 d ln phi2 = 0 along the composition, whatever the parameters.
TEST(PairEquation, FugacitiesObeyGibbsAndDuhem) {
  const PairParameters k{0.1, 0.0003, 0.2, -0.0002};
  for (const PairCubic cubic : {PairCubic::bank, PairCubic::soave, PairCubic::robinson}) {
    const PairEquation equation(cubic, component(kCarbonDioxide), component(kWater), k);
    for (const double x : {0.2, 0.7}) {
      constexpr double kStep = 1e-5;
      const PairPhase a = equation.phase(350.0, 5e6, x - kStep, PairRoot::vapour);
      const PairPhase b = equation.phase(350.0, 5e6, x + kStep, PairRoot::vapour);
      const double d1 = (b.lnphi[0] - a.lnphi[0]) / (2 * kStep), d2 = (b.lnphi[1] - a.lnphi[1]) / (2 * kStep);
      EXPECT_NEAR(x * d1 + (1.0 - x) * d2, 0.0, 1e-6 * (std::fabs(d1) + std::fabs(d2)));
    }
  }
}

TEST(PairEquation, AsymmetricTermActsBetweenFamiliesAlone) {
  const auto lnphi = [](int first, int second, double t1) {
    const PairEquation e(PairCubic::bank, component(first), component(second), {0.0, 0.0, t1, 0.0});
    return e.phase(350.0, 1e6, 0.3, PairRoot::vapour).lnphi[0];
  };
  EXPECT_EQ(lnphi(kMethane, kDecane, 0.3), lnphi(kMethane, kDecane, 0.0));
  EXPECT_NE(lnphi(kCarbonDioxide, kWater, 0.3), lnphi(kCarbonDioxide, kWater, 0.0));
}

// The acentric factor fixes the vapour pressure of the published cubics at 0.7 Tc, to what their relations are worth.
TEST(PairEquation, PublishedCubicsMeetTheAcentricFactor) {
  const PairComponent propane = component(kPropane);
  for (const PairCubic cubic : {PairCubic::soave, PairCubic::robinson}) {
    const PairEquation equation(cubic, propane, propane, {});
    const PairState s = bubble_point(equation, 0.7 * propane.tc, 1.0, 1e5);
    ASSERT_TRUE(s.ok);
    EXPECT_NEAR(s.P / (propane.pc * std::pow(10.0, -1.0 - propane.omega)), 1.0, 0.01);
  }
}

TEST(PairBubble, BothFugacitiesAgreeAtTheResult) {
  const PairEquation e(PairCubic::bank, component(kMethane), component(kPropane), {.t0 = 0.01});
  for (const double x : {0.05, 0.3, 0.5}) {
    const PairState s = bubble_point(e, 270.0, x, 1e6);
    ASSERT_TRUE(s.ok) << x;
    EXPECT_GT(s.y, x);
    const PairPhase l = e.phase(270.0, s.P, x, PairRoot::liquid),
                    v = e.phase(270.0, s.P, s.y, PairRoot::vapour);
    EXPECT_NEAR(std::log(x) + l.lnphi[0], std::log(s.y) + v.lnphi[0], 1e-8);
    EXPECT_NEAR(std::log1p(-x) + l.lnphi[1], std::log1p(-s.y) + v.lnphi[1], 1e-8);
    const PairState both = two_phases(e, 270.0, s.P, 0.1, 0.9);
    ASSERT_TRUE(both.ok);
    EXPECT_NEAR(both.x, x, 1e-6);
    EXPECT_NEAR(both.y, s.y, 1e-6);
  }
}

TEST(PairBubble, EndsAreTheVapourPressures) {
  const PairComponent ethane = component(kEthane), propane = component(kPropane);
  const PairEquation e(PairCubic::bank, ethane, propane, {});
  for (const double start : {1e2, 1e5, 3e6}) {
    const PairState light = bubble_point(e, 260.0, 1.0, start), heavy = bubble_point(e, 260.0, 0.0, start);
    const double u = 260.0 / propane.tc;
    const Saturation own = saturation(curves_at(propane.curves, u, false), u, 0.1);
    ASSERT_TRUE(light.ok && heavy.ok && own.ok) << start;
    EXPECT_NEAR(heavy.P, own.pr * propane.pc, 1e-6 * heavy.P);
    EXPECT_GT(light.P, 3 * heavy.P);
  }
}

TEST(PairBubble, BadStartDoesNotMatter) {
  const PairEquation e(PairCubic::bank, component(kMethane), component(kDecane), {.t0 = 0.03});
  const PairState good = bubble_point(e, 350.0, 0.4, 1.2e7);
  ASSERT_TRUE(good.ok);
  for (const double start : {1e3, 1e5, 1e8}) {
    const PairState s = bubble_point(e, 350.0, 0.4, start);
    ASSERT_TRUE(s.ok) << start;
    EXPECT_NEAR(s.P, good.P, 1e-6 * good.P) << start;
  }
}

// Gas so dense that its compressibility is below that of the liquid.
TEST(PairBubble, DenseGasIsStillASecondPhase) {
  const PairEquation e(PairCubic::bank, component(kMethane), component(kDecane), {});
  const PairState s = bubble_point(e, 294.12, 0.7, 2e7);
  ASSERT_TRUE(s.ok);
  EXPECT_GT(s.y, 0.98);
  EXPECT_LT(e.phase(294.12, s.P, s.y, PairRoot::vapour).Z, e.phase(294.12, s.P, 0.7, PairRoot::liquid).Z);
}

TEST(PairBubble, NoneBeyondTheCriticalPoint) {
  const PairEquation e(PairCubic::bank, component(kMethane), component(kPropane), {.t0 = 0.01});
  EXPECT_FALSE(bubble_point(e, 300.0, 0.95, 5e6).ok);
  EXPECT_FALSE(bubble_point(e, 500.0, 0.3, 5e6).ok);
  EXPECT_FALSE(two_phases(e, 300.0, 5e7, 0.1, 0.9).ok);
}

}  // namespace
}  // namespace talix::bank
