#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>

#include "fastprops/cubic_newton.h"
#include "fastprops/dcbrt.h"
#include "fastprops/rkscrt.h"
#include "fastprops/ssvcr_a.h"

namespace talix {
namespace {

CubicVector from_roots(R8 a, R8 b, R8 c) {
  CubicVector AN{};
  AN(1) = -(a + b + c);
  AN(2) = a * b + b * c + c * a;
  AN(3) = -a * b * c;
  return AN;
}

// One real root and the pair re +- i im.
CubicVector from_pair(R8 a, R8 re, R8 im) {
  CubicVector AN{};
  const R8 m = re * re + im * im;
  AN(1) = -(a + 2.0 * re);
  AN(2) = 2.0 * a * re + m;
  AN(3) = -a * m;
  return AN;
}

std::array<R8, 3> sorted(const CubicVector& ZZ) {
  std::array<R8, 3> z{ZZ(1), ZZ(2), ZZ(3)};
  std::sort(z.begin(), z.end());
  return z;
}

struct Answer {
  CubicVector ZZ{};
  R8 ZMAX = -9, ZMIN = -9;
  I4 NRT = -9;
};
Answer solver(const CubicVector& AN) {
  Answer a;
  RKSCRT2(AN, a.ZZ, a.ZMAX, a.ZMIN, a.NRT);
  return a;
}
Answer closed(const CubicVector& AN) {
  Answer a;
  RKSCRT(AN, a.ZZ, a.ZMAX, a.ZMIN, a.NRT);
  return a;
}

TEST(DirectRoots, CubeRootKeepsTheSign) {
  EXPECT_NEAR(DCBRT(27.0), 3.0, 1E-8);
  EXPECT_NEAR(DCBRT(-27.0), -3.0, 1E-8);
  EXPECT_NE(DCBRT(1E-9), 1E-3) << "nine digits are no exact third";
  EXPECT_EQ(DCBRT(0.0), 0.0);
  EXPECT_FALSE(std::signbit(DCBRT(0.0)));
  EXPECT_FALSE(std::signbit(DCBRT(-0.0)));
}

TEST(DirectRoots, SolverGivesTheLargestRootFirst) {
  const Answer a = solver(from_roots(0.2, 0.9, 0.05));
  EXPECT_EQ(a.NRT, 3);
  EXPECT_NEAR(a.ZZ(1), 0.9, 1E-12);
  EXPECT_NEAR(a.ZZ(2), 0.2, 1E-12);
  EXPECT_NEAR(a.ZZ(3), 0.05, 1E-12);
}

TEST(DirectRoots, SolverGivesTheOnlyRootThreeTimes) {
  const Answer a = solver(from_pair(0.8, 0.1, 0.05));
  EXPECT_EQ(a.NRT, 1);
  EXPECT_NEAR(a.ZZ(1), 0.8, 1E-12);
  EXPECT_EQ(a.ZZ(2), a.ZZ(1));
  EXPECT_EQ(a.ZZ(3), a.ZZ(1));
  EXPECT_EQ(a.ZMAX, 0.0);
  EXPECT_EQ(a.ZMIN, 0.0);
}

// Seeded cubics with three positive roots, of both signs of the reduced constant.
TEST(DirectRoots, RoutinesAgreeOnThreeRoots) {
  std::mt19937 random(31);
  std::uniform_real_distribution<R8> unit(0.01, 1.2);
  int mirrored = 0;
  int tested = 0;
  for (int n = 0; n < 2000; ++n) {
    std::array<R8, 3> z{unit(random), unit(random), unit(random)};
    std::sort(z.begin(), z.end());
    if (z[1] - z[0] < 0.02 || z[2] - z[1] < 0.02) continue;
    ++tested;
    if (z[2] - z[1] < z[1] - z[0]) ++mirrored;
    const CubicVector AN = from_roots(z[0], z[1], z[2]);
    const Answer a = closed(AN);
    const Answer b = solver(AN);
    CubicVector low{};
    RKS(AN, low);
    ASSERT_EQ(a.NRT, 3);
    ASSERT_EQ(b.NRT, 3);
    for (std::size_t k = 0; k < 3; ++k) {
      EXPECT_NEAR(sorted(a.ZZ)[k], z[k], 5E-6) << n;
      EXPECT_NEAR(sorted(b.ZZ)[k], z[k], 1E-10) << n;
      EXPECT_NEAR(sorted(low)[k], z[k], 5E-6) << n;
    }
    EXPECT_EQ(low(1), sorted(low)[0]);
    EXPECT_EQ(low(2), sorted(low)[2]);
    EXPECT_EQ(a.ZZ(1), sorted(a.ZZ)[2]) << "the largest first";
  }
  EXPECT_GT(tested, 1500);
  EXPECT_GT(mirrored, 500);
}

TEST(DirectRoots, RoutinesAgreeOnOneRoot) {
  std::mt19937 random(32);
  std::uniform_real_distribution<R8> unit(0.05, 1.2);
  for (int n = 0; n < 1000; ++n) {
    const R8 root = unit(random);
    const R8 re = unit(random);
    const R8 im = unit(random);
    const CubicVector AN = from_pair(root, re, im);
    const Answer a = closed(AN);
    CubicVector low{};
    RKS(AN, low);
    EXPECT_EQ(a.NRT, 1);
    EXPECT_EQ(solver(AN).NRT, 1);
    EXPECT_NEAR(a.ZZ(1), root, 3E-6);
    EXPECT_NEAR(solver(AN).ZZ(1), root, 1E-11);
    for (int k = 1; k <= 3; ++k) EXPECT_NEAR(low(k), root, 3E-6);
  }
}

TEST(DirectRoots, TurningPointsOfTheCubicStandBesideItsOnlyRoot) {
  const CubicVector AN = from_pair(0.9, 0.2, 0.05);
  const Answer a = closed(AN);
  ASSERT_EQ(a.NRT, 1);
  for (const R8 z : {a.ZMAX, a.ZMIN}) EXPECT_NEAR((3.0 * z + 2.0 * AN(1)) * z + AN(2), 0.0, 1E-12);
  EXPECT_LT(a.ZMAX, a.ZMIN);
  EXPECT_GT(cubic_value(AN, a.ZMAX), cubic_value(AN, a.ZMIN));
}

TEST(DirectRoots, CubicWithoutTurningPointsGivesNone) {
  const Answer a = closed(from_pair(0.5, 0.5, 0.4));
  ASSERT_EQ(a.NRT, 1);
  EXPECT_EQ(a.ZMAX, 0.0);
  EXPECT_EQ(a.ZMIN, 0.0);
}

TEST(DirectRoots, TurningPointsNotAboveZeroFollowTheRoot) {
  // Derivative (z + 0.2)(z + 0.1) times 3, root at 0.7.
  const Answer negative = closed([] {
    CubicVector AN{};
    AN(1) = 0.45;
    AN(2) = 0.06;
    AN(3) = -(0.7 * 0.7 * 0.7 + 0.45 * 0.49 + 0.06 * 0.7);
    return AN;
  }());
  ASSERT_EQ(negative.NRT, 1);
  EXPECT_NEAR(negative.ZMAX, 0.35, 1E-8);
  EXPECT_NEAR(negative.ZMIN, 1.4, 1E-8);
}

TEST(DirectRoots, TwoRootsNotAboveZeroCountAsOneRoot) {
  const Answer a = closed(from_roots(0.8, -0.1, -0.3));
  EXPECT_EQ(a.NRT, 1);
  EXPECT_NEAR(a.ZZ(1), 0.8, 1E-7);
}

TEST(DirectRoots, SmallerRootsOfOneSignComeInAscendingOrder) {
  const Answer a = closed(from_roots(0.8, 0.3, 0.1));
  EXPECT_NEAR(a.ZZ(2), 0.1, 1E-7);
  EXPECT_NEAR(a.ZZ(3), 0.3, 1E-7);
  const Answer b = closed(from_roots(0.8, 0.1, -0.3));
  EXPECT_NEAR(b.ZZ(2), 0.1, 1E-7);
  EXPECT_NEAR(b.ZZ(3), -0.3, 1E-7);
}

TEST(DirectRoots, TripleRootIsFound) {
  // In powers of two the reduced form is exactly zero but for the nine digits of the constants.
  const CubicVector AN = from_roots(0.25, 0.25, 0.25);
  CubicVector low{};
  RKS(AN, low);
  const Answer a = closed(AN);
  for (int k = 1; k <= 3; ++k) {
    EXPECT_NEAR(low(k), 0.25, 2E-3);
    EXPECT_NEAR(a.ZZ(k), 0.25, 2E-3);
    EXPECT_NEAR(solver(AN).ZZ(k), 0.25, 1E-12);
  }
  const CubicVector nought{};
  RKS(nought, low);
  for (int k = 1; k <= 3; ++k) {
    EXPECT_EQ(low(k), 0.0);
    EXPECT_EQ(closed(nought).ZZ(k), 0.0);
  }
}

// Wide-spread roots, where nine digits of a third are not enough for the smallest.
TEST(DirectRoots, RootsWhoseProductIsOffAreMended) {
  const R8 z[] = {2.0E-7, 0.3, 0.7};
  const CubicVector AN = from_roots(z[0], z[1], z[2]);
  const Answer a = closed(AN);
  EXPECT_EQ(a.NRT, 3);
  EXPECT_NEAR(sorted(a.ZZ)[2], z[2], 1E-6);
  EXPECT_NEAR(sorted(a.ZZ)[1], z[1], 1E-6);
  CubicVector low{};
  RKS(AN, low);
  EXPECT_NEAR(low(1), z[0], 1E-6 * z[0]);
  EXPECT_NEAR(low(2), z[2], 1E-9);
  EXPECT_NEAR(low(3), z[1], 1E-9);
}

TEST(DirectRoots, SmallestNonNegativeRootComesFirstBelowOneBar) {
  CubicVector low{};
  RKS(from_roots(-0.4, 0.2, 0.9), low);
  EXPECT_NEAR(low(1), 0.2, 1E-8);
  EXPECT_NEAR(low(2), 0.9, 1E-8);
  EXPECT_NEAR(low(3), -0.4, 1E-8);
}

TEST(DirectRoots, NewtonStopsWithoutASlope) {
  EXPECT_EQ(polished_root(CubicVector{}, 0.0, -1.0, 0.0), 0.0);
  const CubicVector AN = from_roots(0.1, 0.2, 0.9);
  EXPECT_NEAR(polished_root(AN, 1.1, 1E-14, 1E-12), 0.9, 1E-12);
}

TEST(DirectRoots, CopiesOfTheSolverHaveStatusesOfTheirOwn) {
  RootTable roots{};
  I4 NROOT = -9;
  I4 ICODE = -9;
  SSVCR0_A(2.0, -2.6, 0.68, -0.04, NROOT, roots, ICODE);
  EXPECT_EQ(ICODE, 0);
  ASSERT_EQ(NROOT, 3);
  R8 z = roots(3);
  SSVCR1_A(z, 2.0, -2.6, 0.68, -0.04, 1E-12, 25);
  EXPECT_NEAR(((2.0 * z - 2.6) * z + 0.68) * z - 0.04, 0.0, 1E-14);
  SSVCR0_A(0.0, 0.0, 0.0, 5.0, NROOT, roots, ICODE);
  EXPECT_EQ(ICODE, 1);
  EXPECT_EQ(NROOT, 0);
  R8 a = 2.0;
  R8 b = 1.0;
  SSVCR2_A(a, b);
  EXPECT_EQ(a, 1.0);
  EXPECT_EQ(b, 2.0);
}

}  // namespace
}  // namespace talix
