// Real roots of a cubic: SSVCR0, SSVCR1, SSVCR2.
#include "eos/ssv_cubic_solve.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "engine/codes.h"
#include "engine/error_ring.h"
#include "support/test_support.h"

namespace talix::test {
namespace {

struct Solution {
  I4 NROOT = -1;
  RootTable ROOTS{};
  I4 ICODE = 0;
};

Solution solve(R8 a, R8 b, R8 c, R8 d) {
  reset_error_ring();
  Solution s;
  SSVCR0(a, b, c, d, s.NROOT, s.ROOTS, s.ICODE);
  return s;
}

Solution from_roots(R8 r, R8 s, R8 t) { return solve(1.0, -(r + s + t), r * s + r * t + s * t, -r * s * t); }

TEST(CubicSolve, ThreeRootsComeAscending) {
  const Solution s = from_roots(0.7, 0.1, 0.4);
  ASSERT_EQ(s.NROOT, 3);
  EXPECT_EQ(s.ICODE, status::ok);
  // The cut values of 2 pi and 4 pi leave an error of this order before the polish.
  EXPECT_NEAR(s.ROOTS(1), 0.1, 1E-8);
  EXPECT_NEAR(s.ROOTS(2), 0.4, 1E-8);
  EXPECT_NEAR(s.ROOTS(3), 0.7, 1E-8);
}

TEST(CubicSolve, CutValuesOfTwoPiLeaveTheirErrorInTheUnpolishedRoots) {
  const Solution s = from_roots(0.7, 0.1, 0.4);
  const R8 worst =
      std::max({std::abs(s.ROOTS(1) - 0.1), std::abs(s.ROOTS(2) - 0.4), std::abs(s.ROOTS(3) - 0.7)});
  EXPECT_GT(worst, 1E-11);
}

TEST(CubicSolve, LeadingCoefficientIsDividedOut) {
  const Solution s = solve(-4.0, 4.8, -1.56, 0.112);  // -4 (y - 0.1)(y - 0.4)(y - 0.7)
  ASSERT_EQ(s.NROOT, 3);
  EXPECT_NEAR(s.ROOTS(1), 0.1, 1E-8);
  EXPECT_NEAR(s.ROOTS(3), 0.7, 1E-8);
}

TEST(CubicSolve, OneRealRootOfEitherSign) {
  const Solution up = solve(1.0, -2.0, 1.0, -2.0);  // (y - 2)(y^2 + 1)
  ASSERT_EQ(up.NROOT, 1);
  EXPECT_NEAR(up.ROOTS(1), 2.0, 1E-7);
  const Solution down = solve(1.0, 2.0, 1.0, 2.0);
  ASSERT_EQ(down.NROOT, 1);
  EXPECT_NEAR(down.ROOTS(1), -2.0, 1E-7);
}

TEST(CubicSolve, ExactTripleRootGivesThreeEqualRoots) {
  const Solution s = solve(1.0, -1.5, 0.75, -0.125);  // (y - 1/2)^3
  ASSERT_EQ(s.NROOT, 3);
  for (int i = 1; i <= 3; ++i) EXPECT_DOUBLE_EQ(s.ROOTS(i), 0.5);
}

TEST(CubicSolve, NearlyTripleRootStaysFinite) {
  for (const R8 gap : {1E-3, 1E-5, 1E-7, 1E-9}) {
    const Solution s = from_roots(0.3 - gap, 0.3, 0.3 + gap);
    ASSERT_GE(s.NROOT, 1);
    for (int i = 1; i <= s.NROOT; ++i) EXPECT_NEAR(s.ROOTS(i), 0.3, std::max(1.1 * gap, 1E-4));
  }
}

TEST(CubicSolve, DoubleRootClampsTheAngle) {
  const Solution s = solve(1.0, -1.0, 0.25, 0.0);  // y (y - 1/2)^2
  ASSERT_EQ(s.NROOT, 3);
  EXPECT_NEAR(s.ROOTS(1), 0.0, 1E-7);
  EXPECT_NEAR(s.ROOTS(2), 0.5, 1E-7);
  EXPECT_NEAR(s.ROOTS(3), 0.5, 1E-7);
}

TEST(CubicSolve, VanishingLeadingCoefficientLeavesTheQuadratic) {
  const Solution s = solve(0.0, 2.0, -6.0, 4.0);
  ASSERT_EQ(s.NROOT, 2);
  EXPECT_DOUBLE_EQ(s.ROOTS(1), 1.0);
  EXPECT_DOUBLE_EQ(s.ROOTS(2), 2.0);
  const Solution symmetric = solve(9E-38, 1.0, 0.0, -4.0);
  ASSERT_EQ(symmetric.NROOT, 2);
  EXPECT_DOUBLE_EQ(symmetric.ROOTS(1), -2.0);
  EXPECT_DOUBLE_EQ(symmetric.ROOTS(2), 2.0);
}

TEST(CubicSolve, QuadraticWithoutRootOnlyWarns) {
  const Solution s = solve(0.0, 1.0, 0.0, 1.0);
  EXPECT_EQ(s.NROOT, 0);
  EXPECT_EQ(s.ICODE, status::ok);
  ASSERT_EQ(ring.count, 1);
  EXPECT_EQ(ring.SEVER0(1), severity::warning);
  EXPECT_EQ(trimmed(ring.NAMER0(1)), "SSVCR0");
  EXPECT_EQ(ring_texts().at(0), "Degenerated cubic equation has no solution");
}

TEST(CubicSolve, QuadraticWithDoubleRootCountsAsHavingNone) {
  const Solution s = solve(0.0, 1.0, -2.0, 1.0);
  EXPECT_EQ(s.NROOT, 0);
  EXPECT_EQ(ring_texts().at(0), "Degenerated cubic equation has no solution");
}

TEST(CubicSolve, LinearEquationHasItsRoot) {
  const Solution s = solve(0.0, 0.0, 4.0, -1.0);
  ASSERT_EQ(s.NROOT, 1);
  EXPECT_DOUBLE_EQ(s.ROOTS(1), 0.25);
  EXPECT_EQ(ring.count, 0);
}

TEST(CubicSolve, NoCoefficientLeftFails) {
  const Solution s = solve(9.9E-38, -9.9E-38, 0.0, 1.0);
  EXPECT_EQ(s.NROOT, 0);
  EXPECT_EQ(s.ICODE, status::numerical);
  ASSERT_EQ(ring.count, 1);
  EXPECT_EQ(ring.SEVER0(1), severity::error);
  EXPECT_EQ(ring_texts().at(0), "Coefficients A, B and C in cubic equation too small");
}

TEST(CubicSolve, CoefficientAtTheLimitIsUsed) {
  const Solution s = solve(0.0, 0.0, 1E-37, -5E-38);
  ASSERT_EQ(s.NROOT, 1);
  EXPECT_DOUBLE_EQ(s.ROOTS(1), 0.5);
}

TEST(CubicSolve, NotANumberEnds) {
  const R8 nan = std::numeric_limits<R8>::quiet_NaN();
  const Solution s = solve(1.0, nan, 1.0, 1.0);
  EXPECT_EQ(s.ICODE, status::ok);
  for (int i = 1; i <= s.NROOT; ++i) EXPECT_TRUE(std::isnan(s.ROOTS(i)));
  R8 y = nan;
  SSVCR1(y, 1.0, 1.0, 1.0, 1.0, 1E-12, 25);
  EXPECT_TRUE(std::isnan(y));
}

TEST(CubicPolish, ReturnsTheBestEvaluatedPointAndDiscardsTheLastStep) {
  // Newton for y^3 - 2 from 1.3: replay the steps and keep the best value that was evaluated.
  R8 y = 1.3;
  R8 best = y;
  R8 best_value = std::abs(y * y * y - 2.0);
  R8 last = y;
  R8 step = 2.3;
  while (std::abs(last * 1E-6) < std::abs(step)) {
    const R8 p = last * last * last - 2.0;
    if (std::abs(p) < best_value) {
      best_value = std::abs(p);
      best = last;
    }
    step = -p / (last * (3.0 * last));
    last += step;
  }
  SSVCR1(y, 1.0, 0.0, 0.0, -2.0, 1E-6, 25);
  EXPECT_EQ(y, best);
  EXPECT_NE(y, last);
  EXPECT_LE(std::abs(y - last), std::abs(step));
  EXPECT_NEAR(y, std::cbrt(2.0), 1E-5);
}

TEST(CubicPolish, FlatSlopeStopsWithAWarning) {
  reset_error_ring();
  R8 y = 0.0;
  SSVCR1(y, 1.0, 0.0, 0.0, 1.0, 1E-12, 25);
  EXPECT_EQ(y, 0.0);
  ASSERT_EQ(ring.count, 1);
  EXPECT_EQ(ring.SEVER0(1), severity::warning);
  EXPECT_EQ(trimmed(ring.NAMER0(1)), "SSVCR1");
  EXPECT_EQ(ring_texts().at(0), "Very small dp/dx");
}

TEST(CubicPolish, StepLimitWarnsAndKeepsTheBestPoint) {
  reset_error_ring();
  R8 y = 0.0;  // y^3 - 2 y + 2 cycles between 0 and 1
  SSVCR1(y, 1.0, 0.0, -2.0, 2.0, 1E-12, 25);
  EXPECT_EQ(y, 1.0);
  ASSERT_EQ(ring.count, 1);
  EXPECT_EQ(ring.SEVER0(1), severity::warning);
  EXPECT_EQ(ring_texts().at(0), "Convergence not reached within maximum  number of iterations");
}

TEST(CubicPolish, SwapsOnlyADescendingPair) {
  R8 a = 2.0;
  R8 b = 1.0;
  SSVCR2(a, b);
  EXPECT_EQ(a, 1.0);
  EXPECT_EQ(b, 2.0);
  SSVCR2(a, b);
  EXPECT_EQ(a, 1.0);
  EXPECT_EQ(b, 2.0);
}

}  // namespace
}  // namespace talix::test
