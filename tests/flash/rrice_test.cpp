#include "flash/rrice.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "engine/codes.h"
#include "fastprops/flash_record.h"

namespace talix {
namespace {

struct Answer {
  R8 BETA;
  I4 STATUS;
  bool TRIV_SOL;
};

Answer solve(const std::vector<R4>& F, const std::vector<R4>& K) {
  reset_flash_record();
  fl.NC = static_cast<I4>(F.size());
  for (int i = 1; i <= fl.NC; ++i) {
    fl.F(i) = F[static_cast<std::size_t>(i - 1)];
    fl.VLK(i) = K[static_cast<std::size_t>(i - 1)];
  }
  Answer a{};
  L4 trivial{};
  RRICE(a.BETA, a.STATUS, trivial);
  a.TRIV_SOL = static_cast<bool>(trivial);
  return a;
}

R8 rachford_rice(const std::vector<R4>& F, const std::vector<R4>& K, R8 BETA) {
  R8 total = 0.0, sum = 0.0;
  for (std::size_t i = 0; i < F.size(); ++i) {
    const R8 k = static_cast<R8>(K[i]);
    total += static_cast<R8>(F[i]);
    sum += static_cast<R8>(F[i]) * (k - 1.0) / (1.0 - BETA + BETA * k);
  }
  return sum / total;
}

TEST(VapourFraction, HeavyKValuesGiveLiquid) {
  const Answer a = solve({0.5F, 0.3F, 0.2F}, {0.9F, 0.5F, 0.1F});
  EXPECT_EQ(a.STATUS, phase::liquid);
  EXPECT_EQ(a.BETA, 0.0);
  EXPECT_FALSE(a.TRIV_SOL);
}

TEST(VapourFraction, LightKValuesGiveVapour) {
  const Answer a = solve({0.5F, 0.3F, 0.2F}, {9.0F, 5.0F, 1.5F});
  EXPECT_EQ(a.STATUS, phase::vapour);
  EXPECT_EQ(a.BETA, 1.0);
}

TEST(VapourFraction, NewtonSolvesTheEquation) {
  for (const R4 heavy : {0.5F, 0.05F, 1.0E-6F, 1.0E-12F}) {
    const std::vector<R4> F = {3.0F, 2.0F, 5.0F};
    const std::vector<R4> K = {4.0F, 1.2F, heavy};
    const Answer a = solve(F, K);
    ASSERT_EQ(a.STATUS, kTwoPhases) << heavy;
    EXPECT_NEAR(rachford_rice(F, K, a.BETA), 0.0, 1.0E-5) << heavy;
  }
}

TEST(VapourFraction, StepsOutOfTheBoundsAreHalved) {
  // A root so close to 1 that Newton's step from the middle leaves the range.
  const std::vector<R4> F = {0.999F, 0.0005F, 0.0005F};
  const std::vector<R4> K = {1.0E+6F, 1.0E-6F, 1.0E-6F};
  const Answer a = solve(F, K);
  ASSERT_EQ(a.STATUS, kTwoPhases);
  EXPECT_NEAR(rachford_rice(F, K, a.BETA), 0.0, 1.0E-2);
  EXPECT_NEAR(a.BETA, 1.0 - 0.001, 1.0E-4);
}

TEST(VapourFraction, TwoComponentsHaveAClosedForm) {
  const Answer two = solve({1.0F, 3.0F}, {3.0F, 0.6F});
  const Answer three = solve({1.0F, 3.0F, 0.0F}, {3.0F, 0.6F, 1.0F});
  EXPECT_EQ(two.STATUS, kTwoPhases);
  EXPECT_NEAR(two.BETA, 0.25 / 0.4 - 0.75 / 2.0, 1.0E-7);
  EXPECT_NEAR(two.BETA, three.BETA, 1.0E-6);
}

TEST(VapourFraction, KValueOfOneNeverReachesTheClosedForm) {
  EXPECT_EQ(solve({0.5F, 0.5F}, {1.0F, 2.0F}).STATUS, phase::vapour);
  EXPECT_EQ(solve({0.5F, 0.5F}, {1.0F, 0.5F}).STATUS, phase::liquid);
  const Answer alike = solve({0.5F, 0.5F}, {1.0F, 1.0F});
  EXPECT_TRUE(alike.TRIV_SOL);
  EXPECT_TRUE(std::isfinite(alike.BETA));
}

TEST(VapourFraction, BothSumsZeroGiveHalf) {
  const Answer a = solve({0.25F, 0.25F, 0.5F}, {1.0F, 1.0F, 1.0F});
  EXPECT_TRUE(a.TRIV_SOL);
  EXPECT_EQ(a.STATUS, kTwoPhases);
  EXPECT_EQ(a.BETA, 0.5);
}

TEST(VapourFraction, KValuesNearOneAreTrivial) {
  const Answer a = solve({0.5F, 0.5F}, {1.01F, 0.99005F});
  EXPECT_TRUE(a.TRIV_SOL);
  ASSERT_EQ(a.STATUS, kTwoPhases);
  const R8 k1 = static_cast<R8>(1.01F), k2 = static_cast<R8>(0.99005F);
  const R8 G0 = 0.5 * k1 + 0.5 * k2 - 1.0, G1 = 1.0 - 0.5 / k1 - 0.5 / k2;
  EXPECT_NEAR(a.BETA, G0 / (G0 - G1), 1.0E-12);
  EXPECT_FALSE(solve({0.5F, 0.5F}, {1.01F, 0.9995F}).TRIV_SOL);
}

TEST(VapourFraction, ComponentsWithoutFeedDoNotCount) {
  const Answer with = solve({0.5F, 0.5F, 0.0F, 0.0F}, {3.0F, 0.2F, 0.0F, 1.0E+12F});
  const Answer without = solve({0.5F, 0.5F, 0.0F}, {3.0F, 0.2F, 1.0F});
  EXPECT_EQ(with.STATUS, kTwoPhases);
  EXPECT_EQ(with.BETA, without.BETA);
}

TEST(VapourFraction, KValuesThatAreNoNumbersEndTheSearch) {
  const R4 nan = std::numeric_limits<R4>::quiet_NaN();
  EXPECT_EQ(solve({0.5F, 0.3F, 0.2F}, {nan, 0.5F, 0.1F}).STATUS, kTwoPhases);
}

}  // namespace
}  // namespace talix
