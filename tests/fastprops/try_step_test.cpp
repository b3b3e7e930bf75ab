#include "fastprops/try_step.h"

#include <gtest/gtest.h>

namespace talix {
namespace {

TEST(Acceleration, FirstStepIsPlainSubstitution) {
  R4 X = 1.0F, DX = 0.0F, DXOLD = 5.0F, R = -3.0F;
  TRY(X, 3.0F, DX, DXOLD, R);
  EXPECT_EQ(X, 3.0F);
  EXPECT_EQ(R, 20.0F);
  EXPECT_EQ(DX, 2.0F);
  EXPECT_EQ(DXOLD, 2.0F);
}

TEST(Acceleration, LinearIterationIsSolvedInTheSecondStep) {
  // x' = 0.5 x + 1 has the solution 2.
  R4 X = 0.0F, DX = 0.0F, DXOLD = 0.0F, R = 0.0F;
  TRY(X, 0.5F * X + 1.0F, DX, DXOLD, R);
  TRY(X, 0.5F * X + 1.0F, DX, DXOLD, R);
  EXPECT_EQ(X, 2.0F);
  EXPECT_EQ(R, 11.0F) << "halfway to the accepted factor 2";
}

TEST(Acceleration, FactorAboveTheLimitTakesTheLimitAndItsOwnSign) {
  // The plain difference grows: the factor is negative.
  R4 X = 0.0F, DX = 1.0F, DXOLD = 1.0F, R = 20.0F;
  TRY(X, 1.01F, DX, DXOLD, R);
  EXPECT_EQ(R, 20.0F);
  EXPECT_EQ(DX, -20.0F * 1.01F);
  // The same difference again: the factor is the limit.
  X = 0.0F;
  DX = 1.0F;
  DXOLD = 0.5F;
  R = 4.0F;
  TRY(X, 0.5F, DX, DXOLD, R);
  EXPECT_EQ(DX, 2.0F);
  EXPECT_EQ(R, 4.0F);
}

}  // namespace
}  // namespace talix
