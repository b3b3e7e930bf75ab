#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "engine/codes.h"
#include "numerics/s0cbrt.h"
#include "numerics/sal_bisection.h"
#include "numerics/sal_quadrature.h"
#include "numerics/ssvla_columns.h"

namespace talix {
namespace {

// ---- quadrature

R8 integral(R8 (*function)(void*, R8), R8 scale, void* context = nullptr) {
  R8 result = 0.0;
  I4 nfail = 0;
  SALNI0({function, context}, scale, result, nfail);
  EXPECT_EQ(nfail, status::ok);
  return result;
}

TEST(Quadrature, GaussianIsIntegratedToTheDigitsOfTheTable) {
  const R8 half_root_pi = 0.5 * std::sqrt(std::acos(-1.0));
  EXPECT_NEAR(integral([](void*, R8 x) { return std::exp(-x * x); }, 1.0), half_root_pi, 2e-7);
  EXPECT_NEAR(integral([](void*, R8 x) { return x * x * std::exp(-x * x); }, 1.0), 0.5 * half_root_pi, 2e-7);
}

TEST(Quadrature, LengthScaleStretchesTheArgument) {
  R8 width = 3.5;
  const auto bell = [](void* w, R8 x) { return std::exp(-std::pow(x / *static_cast<R8*>(w), 2)); };
  EXPECT_NEAR(integral(bell, width, &width), width * 0.5 * std::sqrt(std::acos(-1.0)), 1e-6);
}

TEST(Quadrature, RuleIsTheSumOfItsSixRows) {
  const R4 nodes[6] = {0.3142404F, 0.9477884F, 1.597683F, 2.279507F, 3.020637F, 3.889725F};
  const R4 weights[6] = {0.6293079F, 0.6396212F, 0.6626628F, 0.7052204F, 0.7866439F, 0.989699F};
  std::vector<R8> arguments;
  const R8 total = integral(
      [](void* list, R8 x) {
        static_cast<std::vector<R8>*>(list)->push_back(x);
        return 1.0;
      },
      2.0, &arguments);
  R8 sum = 0.0;
  ASSERT_EQ(arguments.size(), 6U);
  for (std::size_t i = 0; i < 6; ++i) {
    EXPECT_EQ(arguments[i], 2.0 * static_cast<R8>(nodes[i]));
    sum += static_cast<R8>(weights[i]);
  }
  EXPECT_NEAR(total, 2.0 * sum, 1e-14);
}

// ---- bisection

I4 position(I4 key, const std::vector<I4>& table, I4 steps) {
  I4 pos = 0;
  SALBS0(key, table.data(), static_cast<I4>(table.size()), steps, pos);
  return pos;
}

TEST(Bisection, EveryEntryIsFound) {
  std::vector<I4> table;
  for (I4 length = 1; length <= 40; ++length) {
    table.push_back(3 * length);
    for (I4 i = 1; i <= length; ++i) EXPECT_EQ(position(3 * i, table, 7), i);
  }
}

TEST(Bisection, KeysBesideTheEntriesAreNotFound) {
  const std::vector<I4> table{10, 20, 30, 40, 50};
  for (const I4 key : {9, 11, 25, 49, 51, -100, 1000}) EXPECT_EQ(position(key, table, 6), -1000);
}

TEST(Bisection, KeyBeyondTheTableDoesNotReadBehindIt) {
  const std::vector<I4> storage{10, 20, 30, 99};
  I4 pos = 0;
  SALBS0(99, storage.data(), 3, 8, pos);
  EXPECT_EQ(pos, -1000);
}

TEST(Bisection, WithoutStepsOnlyTheEndsAreCompared) {
  const std::vector<I4> table{10, 20, 30, 40, 50};
  EXPECT_EQ(position(10, table, 0), 1);
  EXPECT_EQ(position(50, table, 0), 5);
  EXPECT_EQ(position(30, table, 0), -1000);
}

TEST(Bisection, EmptyTableHoldsNothing) {
  I4 pos = 0;
  SALBS0(1, nullptr, 0, 5, pos);
  EXPECT_EQ(pos, -1000);
}

// ---- columns

TEST(Columns, SumAndDotProductOfAColumn) {
  const R8 one[6] = {1, 2, 3, 4, 5, 6};
  const R8 two[8] = {9, 9, 9, 9, 2, 3, 9, 9};
  R8 result = -1.0;
  SSVLA0(2, one, 3, 2, 2, two, 4, 2, 2, 1, result);
  EXPECT_EQ(result, 9.0);
  SSVLA0(2, one, 3, 2, 2, two, 4, 2, 2, 2, result);
  EXPECT_EQ(result, 4.0 * 2.0 + 5.0 * 3.0);
  SSVLA0(2, one, 3, 2, 2, two, 4, 2, 2, -7, result);
  EXPECT_EQ(result, 23.0);
  SSVLA0(0, one, 3, 2, 2, two, 4, 2, 2, 1, result);
  EXPECT_EQ(result, 0.0);
}

TEST(Columns, ScaledColumnSumsToOne) {
  R8 table[6] = {1, 2, 3, 4, 6, 7};
  SSVLA1(2, table, 3, 2, 2);
  EXPECT_EQ(table[3], 0.4);
  EXPECT_EQ(table[4], 0.6);
  EXPECT_EQ(table[5], 7.0);
  EXPECT_EQ(table[0], 1.0);
}

TEST(Columns, ZeroSumIsNotTestedFor) {
  R8 table[2] = {1, -1};
  SSVLA1(2, table, 2, 1, 1);
  EXPECT_TRUE(std::isinf(table[0]));
}

// ---- cube root

TEST(CubeRoot, CarriesTheSign) {
  EXPECT_NEAR(S0CBRT(-8.0F), -2.0F, 3e-7F);
  EXPECT_NEAR(S0CBRT(27.0F), 3.0F, 5e-7F);
  EXPECT_EQ(S0CBRT(0.0F), 0.0F);
  EXPECT_EQ(S0CBRT(1.0F), 1.0F);
}

TEST(CubeRoot, IsThePowerOfTheExponentNearestToOneThird) {
  for (const R4 x : {0.001F, 0.3F, 5.0F, 1234.5F, 7e20F}) {
    EXPECT_EQ(S0CBRT(x), std::pow(x, 0.333333343F));
    EXPECT_EQ(S0CBRT(-x), -std::pow(x, 0.333333343F));
  }
}

}  // namespace
}  // namespace talix
