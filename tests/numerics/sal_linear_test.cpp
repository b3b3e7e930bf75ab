#include "numerics/sal_linear.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "engine/codes.h"
#include "engine/error_ring.h"

namespace talix {
namespace {

class LinearTest : public ::testing::Test {
 protected:
  void SetUp() override { reset_error_ring(); }
};

struct Factorised {
  std::vector<R8> lu;
  std::vector<I4> rows;
  R8 parity;
  I4 status;
};

// Factorises the N by N corner of a column-major table.
Factorised factorise(std::vector<R8> m, I4 n, I4 ld) {
  Factorised f{std::move(m), std::vector<I4>(static_cast<std::size_t>(ld), -9), 0.0, 0};
  SALLA1(f.lu.data(), n, ld, f.rows.data(), f.parity, f.status);
  return f;
}

R8 determinant(const Factorised& f, int n, int ld) {
  R8 product = f.parity;
  for (int i = 0; i < n; ++i) product *= f.lu[static_cast<std::size_t>(i + i * ld)];
  return product;
}

TEST_F(LinearTest, SolvesRandomSystemsInTheCornerOfALargerTable) {
  std::mt19937 generator(20260101);
  std::uniform_real_distribution<R8> uniform(-1.0, 1.0);
  constexpr I4 ld = 50;
  for (const I4 n : {1, 2, 3, 7, 20, 50}) {
    std::vector<R8> m(ld * ld, 1e99);
    std::vector<R8> x(static_cast<std::size_t>(n));
    std::vector<R8> rhs(static_cast<std::size_t>(n), 0.0);
    for (auto& entry : x) entry = uniform(generator);
    for (int j = 0; j < n; ++j)
      for (int i = 0; i < n; ++i) {
        const R8 value = uniform(generator) + (i == j ? 2.0 : 0.0);
        m[static_cast<std::size_t>(i + j * ld)] = value;
        rhs[static_cast<std::size_t>(i)] += value * x[static_cast<std::size_t>(j)];
      }
    const Factorised f = factorise(m, n, ld);
    ASSERT_EQ(f.status, status::ok);
    SALLA0(f.lu.data(), n, ld, f.rows.data(), rhs.data());
    for (std::size_t i = 0; i < x.size(); ++i) EXPECT_NEAR(rhs[i], x[i], 1e-11);
    if (n < ld) {
      EXPECT_EQ(f.lu[static_cast<std::size_t>(n)], 1e99);
    }
  }
}

TEST_F(LinearTest, ParityTimesTheDiagonalIsTheDeterminant) {
  // det [[0,2,1],[1,1,0],[3,0,1]] = -5
  const Factorised f = factorise({0, 1, 3, 2, 1, 0, 1, 0, 1}, 3, 3);
  ASSERT_EQ(f.status, status::ok);
  EXPECT_NEAR(determinant(f, 3, 3), -5.0, 1e-14);
}

TEST_F(LinearTest, ZeroRowIsSingularAndLeavesTheMatrix) {
  const std::vector<R8> m{1, 0, 2, 3, 0, 4, 5, 0, 6};
  const Factorised f = factorise(m, 3, 3);
  EXPECT_EQ(f.status, status::failed);
  EXPECT_EQ(f.lu, m);
  ASSERT_EQ(ring.count, 1);
  EXPECT_EQ(ring.SEVER0(1), 3);
  EXPECT_EQ(ring.NAMER0(1).view(), "SALLA1");
  EXPECT_EQ(trimmed(ring.TXTER0(1)), "LU decomposition, singular matrix");
}

TEST_F(LinearTest, ZeroPivotInANonZeroRowBecomesASmallNumber) {
  // The second column vanishes after the first step.
  const Factorised f = factorise({1, 1, 2, 2}, 2, 2);
  EXPECT_EQ(f.status, status::ok);
  EXPECT_EQ(f.lu[3], 1e-20);
  EXPECT_EQ(ring.count, 0);
  // A zero column before the last one.
  const Factorised inner = factorise({0, 0, 0, 1, 2, 3, 4, 5, 6}, 3, 3);
  EXPECT_EQ(inner.status, status::ok);
  EXPECT_EQ(inner.lu[0], 1e-20);
}

TEST_F(LinearTest, OfEqualPivotCandidatesTheLaterRowWins) {
  const Factorised f = factorise({2, 2, 1, 2}, 2, 2);
  ASSERT_EQ(f.status, status::ok);
  EXPECT_EQ(f.rows[0], 2);
  EXPECT_EQ(f.parity, -1.0);
  // Scaling by rows decides: 1 of 1 against 10 of 100.
  const Factorised scaled = factorise({1, 10, 1, 100}, 2, 2);
  EXPECT_EQ(scaled.rows[0], 1);
  EXPECT_EQ(scaled.parity, 1.0);
}

TEST_F(LinearTest, LeadingZerosOfTheRightSideAreHandled) {
  const Factorised f = factorise({4, 1, 0, 1, 3, 1, 0, 1, 2}, 3, 3);
  ASSERT_EQ(f.status, status::ok);
  std::vector<R8> rhs{0, 0, 1};
  SALLA0(f.lu.data(), 3, 3, f.rows.data(), rhs.data());
  // Solution of [[4,1,0],[1,3,1],[0,1,2]] x = (0,0,1): (1,-4,11)/18.
  EXPECT_NEAR(rhs[0], 1.0 / 18.0, 1e-15);
  EXPECT_NEAR(rhs[1], -4.0 / 18.0, 1e-15);
  EXPECT_NEAR(rhs[2], 11.0 / 18.0, 1e-15);
}

TEST_F(LinearTest, OrderOf100IsTheLargest) {
  std::vector<R8> identity(101 * 101, 0.0);
  for (std::size_t i = 0; i < 101; ++i) identity[i * 102] = 1.0;
  EXPECT_EQ(factorise(identity, 100, 101).status, status::ok);
  EXPECT_EQ(factorise(identity, 101, 101).status, status::failed);
  EXPECT_EQ(factorise(identity, 0, 101).status, status::failed);
  EXPECT_EQ(factorise(identity, -3, 101).status, status::failed);
}

TEST_F(LinearTest, NotANumberStaysInBounds) {
  const R8 nan = std::numeric_limits<R8>::quiet_NaN();
  const Factorised f = factorise({nan, 1, 1, nan}, 2, 2);
  for (int i = 0; i < 2; ++i) {
    EXPECT_GE(f.rows[static_cast<std::size_t>(i)], 1);
    EXPECT_LE(f.rows[static_cast<std::size_t>(i)], 2);
  }
}

}  // namespace
}  // namespace talix
