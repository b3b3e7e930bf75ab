#include "flash/robust_symmetric.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

namespace talix {
namespace {

// A with the eigenvalues given, rotated at random; u1 receives the vector of the first.
void rotated(std::mt19937& engine, const std::vector<R8>& eigenvalues, CompMat& A, CompVec& u1) {
  const int n = static_cast<int>(eigenvalues.size());
  std::normal_distribution<R8> normal;
  static CompMat Q;
  for (int k = 1; k <= n; ++k) {
    for (int i = 1; i <= n; ++i) Q(i, k) = normal(engine);
    for (int m = 1; m < k; ++m) {
      R8 product = 0.0;
      for (int i = 1; i <= n; ++i) product += Q(i, k) * Q(i, m);
      for (int i = 1; i <= n; ++i) Q(i, k) -= product * Q(i, m);
    }
    R8 size = 0.0;
    for (int i = 1; i <= n; ++i) size += Q(i, k) * Q(i, k);
    for (int i = 1; i <= n; ++i) Q(i, k) /= std::sqrt(size);
  }
  for (int i = 1; i <= n; ++i) {
    u1(i) = Q(i, 1);
    for (int j = 1; j <= n; ++j) {
      A(i, j) = 0.0;
      for (int k = 1; k <= n; ++k)
        A(i, j) += eigenvalues[static_cast<std::size_t>(k - 1)] * Q(i, k) * Q(j, k);
    }
  }
}

TEST(RobustSymmetric, CholeskySolvesAndRefusesAnIndefiniteMatrix) {
  std::mt19937 engine(1);
  static CompMat A, L;
  CompVec u{}, b{}, y{};
  rotated(engine, {0.2, 1.0, 3.0, 40.0, 1.0}, A, u);
  for (int i = 1; i <= 5; ++i) b(i) = 1.0 + i;
  ASSERT_TRUE(cholesky_factor(5, A, 0.5, L));
  cholesky_solve(5, L, b, y);
  for (int i = 1; i <= 5; ++i) {
    R8 sum = 0.5 * y(i);
    for (int j = 1; j <= 5; ++j) sum += A(i, j) * y(j);
    EXPECT_NEAR(sum, b(i), 1.0E-12);
  }
  EXPECT_FALSE(cholesky_factor(5, A, -0.3, L));
  A(3, 3) = std::nan("");
  EXPECT_FALSE(cholesky_factor(5, A, 0.0, L));
}

TEST(RobustSymmetric, SmallestEigenvalueAndItsVector) {
  std::mt19937 engine(2);
  static CompMat A;
  CompVec expected{}, u{};
  for (const R8 smallest : {0.9, 0.3, 1.0E-3, 1.0E-7, -1.0E-7, -0.02, -7.0, -3000.0}) {
    rotated(engine, {smallest, 1.0, 1.0, 1.7, 25.0, 300.0}, A, expected);
    EXPECT_NEAR(smallest_eigenvalue(6, A, u), smallest, 1.0E-9 * std::max(1.0, std::fabs(smallest)));
    R8 product = 0.0;
    for (int i = 1; i <= 6; ++i) product += u(i) * expected(i);
    EXPECT_NEAR(std::fabs(product), 1.0, 1.0E-6) << smallest;
  }
}

TEST(RobustSymmetric, TrustStepIsNewtonsWhereThatFitsAndStaysWithinTheRadiusElsewhere) {
  std::mt19937 engine(3);
  static CompMat B;
  CompVec u{}, g{}, y{};
  bool curbed = true;
  rotated(engine, {0.5, 2.0, 4.0}, B, u);
  for (int i = 1; i <= 3; ++i) g(i) = 0.1 * i;
  EXPECT_GT(trust_step(3, B, g, 10.0, y, curbed), 0.0);
  EXPECT_FALSE(curbed);
  for (int i = 1; i <= 3; ++i) {
    R8 sum = g(i);
    for (int j = 1; j <= 3; ++j) sum += B(i, j) * y(j);
    EXPECT_NEAR(sum, 0.0, 1.0E-14);
  }
  for (const R8 smallest : {0.5, -2.0}) {
    rotated(engine, {smallest, 2.0, 4.0}, B, u);
    EXPECT_GT(trust_step(3, B, g, 0.01, y, curbed), 0.0);
    EXPECT_TRUE(curbed);
    R8 size = 0.0;
    for (int i = 1; i <= 3; ++i) size += y(i) * y(i);
    EXPECT_LE(std::sqrt(size), 0.01);
    EXPECT_GT(std::sqrt(size), 0.005);
  }
}

}  // namespace
}  // namespace talix
