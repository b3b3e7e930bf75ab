#include "fastprops/small_arrays.h"

#include <gtest/gtest.h>

#include <cmath>

#include "fastprops/dcbrt.h"

namespace talix {
namespace {

TEST(SmallArrays, SumAndClear) {
  FlashVec a{};
  for (int i = 1; i <= 4; ++i) a(i) = static_cast<R4>(i);
  EXPECT_EQ(TELOP(3, a), 6.0F);
  EXPECT_EQ(TELOP(0, a), 0.0F);
  ZERO(3, a);
  EXPECT_EQ(a(3), 0.0F);
  EXPECT_EQ(a(4), 4.0F) << "nothing beyond N";
}

TEST(SmallArrays, MassFlowsBecomeMoleFlows) {
  FlashVec flow{};
  FlashVec molar_mass{};
  flow(1) = 36.0F;
  molar_mass(1) = 18.0F;
  KGMOL(1, flow, molar_mass);
  EXPECT_EQ(flow(1), 2.0F);
}

TEST(SmallArrays, MeanMolarMassUsesTheRecord) {
  reset_flash_record();
  fl.AMW(1) = 10.0F;
  fl.AMW(2) = 30.0F;
  FlashVec y{};
  y(1) = 0.25F;
  y(2) = 0.75F;
  R4 MW = -1.0F;
  MOL(2, y, MW);
  EXPECT_EQ(MW, 25.0F);
}

TEST(SmallArrays, FractionsClearTinyFlowsInTheirSource) {
  FlashVec a{};
  FlashVec x{};
  a(1) = 1.0E-31F;
  a(2) = 4.0F;
  a(3) = -1.0F;
  MOLFR(3, 4.0F, a, x);
  EXPECT_EQ(a(1), 0.0F);
  EXPECT_EQ(x(1), 0.0F);
  EXPECT_EQ(x(2), 1.0F);
  EXPECT_EQ(a(3), 0.0F);
  a(1) = 1.0E-30F;
  MOLFR(1, 1.0F, a, x);
  EXPECT_EQ(a(1), 0.0F) << "the limit itself counts as none";
}

TEST(SmallArrays, MassFractionsOfNoFlowAreZero) {
  FlashVec molar_mass{};
  FlashVec flow{};
  FlashVec x{};
  FlashVec dummy{};
  molar_mass.fill(20.0F);
  R4 total = 0.0F;
  WFR(2, molar_mass, flow, x, dummy, total);
  EXPECT_EQ(total, 2.0E-8F);
  EXPECT_EQ(x(1), 0.0F);
  flow(1) = 1.0F;
  flow(2) = 3.0F;
  WFR(2, molar_mass, flow, x, dummy, total);
  EXPECT_EQ(total, 80.0F);
  EXPECT_EQ(dummy(2), 60.0F);
  EXPECT_EQ(x(2), 0.75F);
}

TEST(CubeRoot, KeepsTheSignAndItsNineDigitExponent) {
  EXPECT_EQ(DCBRT(0.0), 0.0);
  EXPECT_FALSE(std::signbit(DCBRT(0.0)));
  EXPECT_FALSE(std::signbit(DCBRT(-0.0)));
  EXPECT_EQ(DCBRT(27.0), std::pow(27.0, 0.333333333));
  EXPECT_EQ(DCBRT(-27.0), -std::pow(27.0, 0.333333333));
  EXPECT_NE(DCBRT(27.0), 3.0);
  EXPECT_NEAR(DCBRT(27.0), 3.0, 1.0E-8);
}

}  // namespace
}  // namespace talix
