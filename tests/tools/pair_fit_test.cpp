#include "bank/fit_pairs.h"

#include <gtest/gtest.h>

#include <cmath>

#include "bank/build.h"
#include "bank/fit_pairs_search.h"
#include "bank/fit_pairs_transfer.h"
#include "support/bank_source.h"

namespace talix::bank {
namespace {

const std::filesystem::path kData = std::filesystem::path(TALIX_TEST_SOURCE) / "data";

PairComponent component(int number) {
  static const Bank bank = compile_bank(kData).bank;
  for (const PureRecord& record : bank.pure) {
    if (is_unused(record)) continue;
    const PairComponent c = pair_component(record);
    if (c.number == number) return c;
  }
  ADD_FAILURE() << "no component " << number;
  return {};
}

constexpr int kCarbonDioxide = 4, kWater = 9, kMethane = 20, kPropane = 22, kPentane = 25, kMethanol = 328;

// Points that the equation itself gives with the parameters, every fourth of them kept out.
std::vector<PairPoint> points_of(const PairComponent& first, const PairComponent& second,
                                 const PairParameters& k, const std::vector<double>& temperatures,
                                 const std::vector<double>& fractions) {
  const PairEquation equation(PairCubic::bank, first, second, k);
  std::vector<PairPoint> points;
  for (const double T : temperatures) {
    for (const double x : fractions) {
      const PairState s = bubble_point(equation, T, x, 1e6);
      EXPECT_TRUE(s.ok) << T << ' ' << x;
      PairPoint p;
      p.T = T;
      p.P = s.P;
      p.x = x;
      p.kept_out = points.size() % 4 == 2;
      points.push_back(p);
    }
  }
  return points;
}

TEST(PairSearch, GoldenSectionFindsTheDeeperOfTwoDips) {
  const auto f = [](double x) { return std::min(std::fabs(x - 0.3) + 0.1, 2.0 * std::fabs(x + 0.2)); };
  EXPECT_NEAR(golden_search(f, -1.0, 1.0, 20), -0.2, 1e-5);
}

TEST(PairSearch, SimplexFollowsACurvedValley) {
  const auto f = [](const std::vector<double>& v) {
    return 10.0 * std::pow(v[1] - v[0] * v[0], 2) + std::pow(1.0 - v[0], 2);
  };
  const std::vector<double> found = simplex_search(f, {-0.5, 0.5}, {0.3, 0.3});
  EXPECT_NEAR(found[0], 1.0, 1e-2);
  EXPECT_NEAR(found[1], 1.0, 2e-2);
}

TEST(PairFit, FindsTheConstantAgainWithoutATemperatureTerm) {
  const PairComponent a = component(kCarbonDioxide), b = component(kPropane);
  const auto points = points_of(a, b, {.t0 = 0.125}, {240, 260, 280, 300}, {0.1, 0.3, 0.5});
  const PairFit fit = fit_points(a, b, points, false);
  ASSERT_TRUE(fit.ok);
  EXPECT_EQ(fit.points, 9);
  EXPECT_NEAR(fit.k.t0, 0.125, 2e-5);
  EXPECT_EQ(fit.k.t0t, 0.0);
  EXPECT_LT(fit.mean, 0.01);
  EXPECT_EQ(fit.tmin, 240.0);
  EXPECT_EQ(fit.tmax, 300.0);
}

TEST(PairFit, FindsTheTemperatureTermAgain) {
  const PairComponent a = component(kMethane), b = component(kPentane);
  const PairParameters k{-0.05, 0.0003, 0.0, 0.0};
  const auto points = points_of(a, b, k, {200, 250, 300, 350}, {0.05, 0.15, 0.3});
  const PairFit fit = fit_points(a, b, points, false);
  ASSERT_TRUE(fit.ok);
  EXPECT_NEAR(fit.k.t0 + 280.0 * fit.k.t0t, k.t0 + 280.0 * k.t0t, 2e-4);
  EXPECT_NEAR(fit.k.t0t, k.t0t, 5e-6);
}

TEST(PairFit, AsymmetricTermOnlyWhereAskedFor) {
  const PairComponent a = component(kPropane), b = component(kMethanol);
  const auto points = points_of(a, b, {.t0 = 0.03, .t1 = 0.08}, {315, 330}, {0.02, 0.1, 0.5, 0.8, 0.9, 0.95});
  const PairFit with = fit_points(a, b, points, true), without = fit_points(a, b, points, false);
  EXPECT_NEAR(with.k.t0, 0.03, 2e-4);
  EXPECT_NEAR(with.k.t1, 0.08, 2e-4);
  EXPECT_EQ(without.k.t1, 0.0);
  EXPECT_GT(without.mean, 10 * with.mean);
}

// What is kept out or in doubt may be anything.
TEST(PairFit, PointsKeptOutAreNotSeen) {
  const PairComponent a = component(kCarbonDioxide), b = component(kPropane);
  auto points = points_of(a, b, {.t0 = 0.125}, {240, 270, 300}, {0.1, 0.3, 0.5});
  const PairFit fit = fit_points(a, b, points, false);
  for (PairPoint& p : points)
    if (p.kept_out) p.P *= 3.0;
  PairPoint doubtful = points.front();
  doubtful.kept_out = false;
  doubtful.doubtful = true;
  doubtful.P *= 5.0;
  points.push_back(doubtful);
  const PairFit again = fit_points(a, b, points, false);
  EXPECT_EQ(again.k.t0, fit.k.t0);
  EXPECT_EQ(again.points, fit.points);
  EXPECT_FALSE(fit_points(a, b, {doubtful}, false).ok);
}

// Computed points count where no measurement is, and nowhere else.
TEST(PairFit, ComputedPointsFillTheRangeOfTemperature) {
  const PairComponent a = component(kCarbonDioxide), b = component(kPropane);
  auto points = points_of(a, b, {.t0 = 0.125}, {270, 290}, {0.1, 0.3});
  for (PairPoint p : points_of(a, b, {.t0 = 0.05}, {230, 280}, {0.1, 0.3})) {
    p.measured = false;
    p.kept_out = false;
    points.push_back(p);
  }
  const PairFit fit = fit_points(a, b, points, false);
  EXPECT_EQ(fit.points, 3 + 2);
  EXPECT_EQ(fit.tmin, 230.0);
}

TEST(PairFit, HenryConstantIsMetAndTheGasPhaseKept) {
  const PairComponent gas = component(kCarbonDioxide), water = component(kWater);
  HenryConstant h;
  h.h1 = 171.39409;
  h.h2 = -8742.426;
  h.h3 = -21.6712;
  h.h4 = 0.0011;
  h.tmin = 280.0;
  h.tmax = 360.0;
  h.gas_phase = 0.19;
  const PairFit fit = fit_henry(gas, water, h, {});
  ASSERT_TRUE(fit.ok);
  EXPECT_LT(fit.worst, 6.0);
  EXPECT_NEAR(fit.k.t0 + fit.k.t1, 0.19, 2e-5);
  EXPECT_NEAR(fit.k.t0t + fit.k.t1t, 0.0, 2e-8);
  // The same with the numbers in the other order: only the sign of the antisymmetric part turns.
  h.gas_first = false;
  const PairFit turned = fit_henry(water, gas, h, {});
  EXPECT_NEAR(turned.k.t0, fit.k.t0, 1e-3);
  EXPECT_NEAR(turned.k.t1, -fit.k.t1, 1e-3);
}

// With the library's own curves in both places nothing would change; the published cubic without interaction has the
// effect that the library's has without one, to a small difference.
TEST(PairTransfer, EffectOfThePublishedParameterIsKept) {
  const PairComponent a = component(kPropane), b = component(kPentane);
  const PairTransfer none = transfer(PairCubic::soave, a, b, 0.0);
  const PairTransfer some = transfer(PairCubic::soave, a, b, 0.05);
  ASSERT_TRUE(none.ok && some.ok);
  EXPECT_NEAR(none.t0, 0.0, 0.02);
  EXPECT_NEAR(some.t0 - none.t0, 0.05, 0.005);
  EXPECT_GE(some.states, 8);
  EXPECT_LT(some.mean, 2.0);
}

TEST(PairTransfer, SameEquationGivesTheSameParameter) {
  const PairTransfer t = transfer(PairCubic::bank, component(kMethane), component(kPentane), 0.04);
  ASSERT_TRUE(t.ok);
  EXPECT_NEAR(t.t0, 0.04, 2e-5);
  EXPECT_LT(t.mean, 0.01);
}

const std::string kHead = "number1,number2,code1,code2,";

// A data folder with the tables of the bank and few pairs of its own.
void write_sources(const testing::Folder& folder) {
  for (const char* file : {"components.csv", "curves.csv", "pairs.csv"})
    std::filesystem::copy(kData / file, folder.path() / file);
  std::string points = kHead + "kind,type,T_K,P_Pa,x1,y1,doubt,citation\n";
  for (const PairPoint& p :
       points_of(component(kMethane), component(kPropane), {.t0 = 0.02}, {230, 260}, {0.05, 0.1, 0.2, 0.3}))
    points += "20,22,\" 1P \",\" 3P \",measured,bubble," + std::to_string(p.T) + ',' + std::to_string(p.P) +
              ',' + std::to_string(*p.x) + ",,,paper\n";
  folder.write("pair_points.csv", points);
  folder.write(
      "pair_henry.csv",
      kHead +
          "gas,h1,h2_K,h3,h4_1_K,tmin_K,tmax_K,gas_phase,gas_origin,source\n"
          "4,9,\"CO2 \",\"H2O \",4,171.39409,-8742.426,-21.6712,0.0011,280,360,0.19,words,a source\n");
  folder.write("pair_published.csv", kHead +
                                         "equation,kij,kij_t_1_K,basis\n"
                                         "20,25,\" 1P \",\" 5P \",soave,0.02,,a collection\n"
                                         "22,25,\" 3P \",\" 5P \",soave,0,,a collection\n"
                                         "8,28,\"H2  \",\" 6P \",soave,-0.08,,a collection\n");
  folder.write("pair_choices.csv", kHead +
                                       "choice,like,value,words\n"
                                       "20,26,\" 1P \",\"5P1\",like,20-22;20-25,,\n"
                                       "3,8,\"HE  \",\"H2  \",value,,0.1,why\n");
}

TEST(PairTableFit, IsTheSameFromOneThreadAndFromTwo) {
  const testing::Folder one, two;
  for (const testing::Folder* folder : {&one, &two}) {
    write_sources(*folder);
    std::string choices = folder->read("pair_choices.csv");
    choices.replace(choices.find("\"5P1\""), 5, "\" 5P1\"");
    folder->write("pair_choices.csv", choices);
  }
  ASSERT_EQ(fit_pairs_main({one.path().string(), 1, true}), 0);
  ASSERT_EQ(fit_pairs_main({two.path().string(), 2, true}), 0);
  const std::string table = one.read("pairs.csv");
  EXPECT_EQ(table, two.read("pairs.csv"));
  // Fitted, from Henry constants, carried over, of no interaction, chosen; hydrogen with hexane is left to the rules.
  for (const char* text :
       {"20,22,\" 1P \",\" 3P \",0.02,0,0,0,1,81110,\"fitted to 6 measured points, 230 to 260 K",
        "4,9,\"CO2 \",\"H2O \",", ",1,843", "\"0.02 of Soave carried over",
        "22,25,\" 3P \",\" 5P \",0,0,0,0,3,71010,\"value of Soave as published",
        "\"mean of methane with propane and methane with n-pentane\"",
        "3,8,\"HE  \",\"H2  \",0.1,0,0,0,1,21010,\"why\""})
    EXPECT_NE(table.find(text), std::string::npos) << text << '\n' << table;
  EXPECT_EQ(table.find("8,28,"), std::string::npos);
  // The build takes what the fit has written.
  EXPECT_EQ(compile_bank(one.path()).bank.pairs.size(), 6U);
}

TEST(PairTableFit, FaultLeavesTheOldTable) {
  const testing::Folder folder;
  write_sources(folder);  // with a code that is too short
  const std::string before = folder.read("pairs.csv");
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(fit_pairs_main({folder.path().string(), 1, true}), 1);
  EXPECT_NE(::testing::internal::GetCapturedStderr().find("pair_choices.csv, line 2, column code2"),
            std::string::npos);
  EXPECT_EQ(folder.read("pairs.csv"), before);
}

}  // namespace
}  // namespace talix::bank
