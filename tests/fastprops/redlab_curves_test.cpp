#include <gtest/gtest.h>

#include <cmath>

#include "base/array.h"
#include "fastprops/vrdo.h"
#include "support/eos_difference.h"

namespace talix {
namespace {

using Row = Vec<R4, 15>;

// A row like that of a light hydrocarbon.
constexpr Row kRow = {0.35F,   0.62F, 3.885F, 0.3934F, 0.21F, 8.5F, 0.05F, 3.15F,
                      0.9526F, 1.1F,  0.43F,  1.9F,    -2.1F, 4.6F, 3.2F};

R8 wide_sigmoid(const Row& G, int J0, R8 X) {
  const R8 E0 = widen(G(J0 + 3)) * (X - widen(G(J0 + 4)));
  const R8 value = widen(G(J0 + 2)) * std::log1p(std::exp(E0)) + widen(G(J0 + 1)) -
                   widen(G(J0 + 5)) * std::log1p(std::exp(-E0));
  return J0 == 5 ? 0.01 * value : value;
}

R8 wide_light_gas(R8 B1, R8 B2, R8 B3, R8 B4, R8 X) { return B1 + B2 * (1.0 - X) * std::exp(B3 / (B4 - X)); }

R8 wide_rational(const Row& G, R8 X) {
  const R8 U = 1.0 - X;
  return ((widen(G(13)) * U + widen(G(12))) * U + widen(G(11))) /
         (1.0 + (widen(G(15)) * U + widen(G(14))) * U);
}

// The slope of a function of Tc/T with T/Tc, and its curvature.
template <class F>
R8 reduced_slope(F&& f, R8 X) {
  return test::slope([&](R8 tr) { return f(1.0 / tr); }, 1.0 / X, 1.0E-3 / X);
}
template <class F>
R8 reduced_curvature(F&& f, R8 X) {
  return test::curvature([&](R8 tr) { return f(1.0 / tr); }, 1.0 / X, 3.0E-3 / X);
}

TEST(RedlabCurves, SigmoidAndItsTwoDerivativesBelongTogether) {
  for (const int J0 : {0, 5}) {
    for (const R4 X : {0.95F, 1.0F, 1.3F, 2.0F, 4.0F}) {
      const auto f = [&](R8 x) { return wide_sigmoid(kRow, J0, x); };
      const R8 value = f(widen(X));
      EXPECT_NEAR(widen(VRDOE1(kRow.data(), 1, 1, J0, X, 1)), value, 1E-6 * std::fabs(value))
          << J0 << ' ' << X;
      const R8 first = reduced_slope(f, widen(X));
      EXPECT_NEAR(widen(VRDOE1(kRow.data(), 1, 1, J0, X, 2)), first, 3E-6 * std::fabs(first))
          << J0 << ' ' << X;
      const R8 second = reduced_curvature(f, widen(X));
      EXPECT_NEAR(widen(VRDOE1(kRow.data(), 1, 1, J0, X, 3)), second, 1E-5 * std::fabs(second))
          << J0 << ' ' << X;
    }
  }
}

TEST(RedlabCurves, SigmoidOfTheBCurveIsScaled) {
  Row same{};
  for (int k = 1; k <= 5; ++k) same(k) = same(k + 5) = kRow(k);
  for (const I4 ID : {1, 2, 3})
    EXPECT_EQ(VRDOE1(same.data(), 1, 1, 5, 1.3F, ID), 0.01F * VRDOE1(same.data(), 1, 1, 0, 1.3F, ID));
}

TEST(RedlabCurves, ExponentStopsAtTwentyFive) {
  Row steep = kRow;
  steep(3) = 50.0F;
  steep(4) = 1.0F;
  const R4 limit = steep(2) * std::log(1.0F + std::exp(25.0F)) + steep(1);
  EXPECT_FLOAT_EQ(VRDOE1(steep.data(), 1, 1, 0, 1.5F, 1), limit);
  EXPECT_EQ(VRDOE1(steep.data(), 1, 1, 0, 3.0F, 1), VRDOE1(steep.data(), 1, 1, 0, 1.5F, 1))
      << "constant beyond";
  EXPECT_LT(VRDOE1(steep.data(), 1, 1, 0, 1.49F, 1), limit) << "rising before";
}

TEST(RedlabCurves, LightGasFormAndItsTwoDerivativesBelongTogether) {
  const R4 sets[][4] = {{0.084456F, 0.0058822F, 0.9636F, 2.0F},
                        {0.105F, -0.0284F, 1.0F, 2.0F},
                        {0.081516F, 0.092116F, -7.50201F, 5.48383F},
                        {0.0866F, -0.02F, 0.08F, 1.1005F}};
  for (const auto& b : sets) {
    for (const R4 X : {0.1F, 0.5F, 0.9F, 1.0F, 1.03F}) {
      const auto f = [&](R8 x) {
        return wide_light_gas(widen(b[0]), widen(b[1]), widen(b[2]), widen(b[3]), x);
      };
      const R8 value = f(widen(X));
      EXPECT_NEAR(widen(VRDOE2(b[0], b[1], b[2], b[3], X, 1)), value, 1E-6 * std::fabs(value)) << X;
      const R8 first = reduced_slope(f, widen(X));
      EXPECT_NEAR(widen(VRDOE2(b[0], b[1], b[2], b[3], X, 2)), first, 1E-5 * std::fabs(first) + 1E-8) << X;
      const R8 second = reduced_curvature(f, widen(X));
      EXPECT_NEAR(widen(VRDOE2(b[0], b[1], b[2], b[3], X, 3)), second, 1E-4 * std::fabs(second) + 1E-7) << X;
    }
  }
}

TEST(RedlabCurves, RationalFormAndItsTwoDerivativesBelongTogether) {
  for (const R4 X : {0.12F, 0.3F, 0.6F, 0.9F}) {
    const auto f = [&](R8 x) { return wide_rational(kRow, x); };
    const R8 value = f(widen(X));
    EXPECT_NEAR(widen(VRDOE3(kRow.data(), 1, 1, X, 1)), value, 3E-6 * std::fabs(value)) << X;
    const R8 first = reduced_slope(f, widen(X));
    EXPECT_NEAR(widen(VRDOE3(kRow.data(), 1, 1, X, 2)), first, 1E-4 * std::fabs(first)) << X;
    const R8 second = reduced_curvature(f, widen(X));
    EXPECT_NEAR(widen(VRDOE3(kRow.data(), 1, 1, X, 3)), second, 1E-4 * std::fabs(second)) << X;
  }
}

TEST(RedlabCurves, RationalFormEqualsItsFirstConstantAtTheCriticalPoint) {
  EXPECT_EQ(VRDOE3(kRow.data(), 1, 1, 1.0F, 1), kRow(11));
}

TEST(RedlabCurves, TableIsReadByItsRowDimension) {
  Mat<R4, 3, 15> table{};
  for (int k = 1; k <= 15; ++k) table(2, k) = kRow(k);
  EXPECT_EQ(VRDOE1(table.data(), 3, 2, 5, 1.2F, 1), VRDOE1(kRow.data(), 1, 1, 5, 1.2F, 1));
  EXPECT_EQ(VRDOE3(table.data(), 3, 2, 0.7F, 2), VRDOE3(kRow.data(), 1, 1, 0.7F, 2));
}

// The figures that stand in the correlations, at three acentric factors by hand.
TEST(RedlabCurves, ConstantsFollowTheAcentricFactor) {
  Row row{};
  VRDO12(0.5F, row.data(), 1, 1, 0);
  EXPECT_NEAR(row(1), 0.0228785F, 1E-6F);
  EXPECT_NEAR(row(2), 0.880958F, 1E-6F);
  EXPECT_NEAR(row(3), 1.24474575F, 1E-6F);
  EXPECT_EQ(row(4), 0.903474F);
  EXPECT_EQ(row(5), 0.495519F);
  EXPECT_NEAR(row(6), 7.360985F, 1E-5F);
  EXPECT_EQ(row(7), -0.0346255F);
  EXPECT_NEAR(row(8), 9.26181F, 1E-5F);
  EXPECT_EQ(row(9), 1.08955F);
  EXPECT_NEAR(row(10), 1.2766 * std::exp(-1.101485) - 0.221047, 1E-6);
  EXPECT_NEAR(row(12), 10.03702F, 1E-5F);
  EXPECT_NEAR(row(13), -13.22832F, 1E-5F);
  EXPECT_NEAR(row(14), 24.0624F, 1E-5F);
  EXPECT_NEAR(row(15), 16.92085F, 1E-5F);

  VRDO12(1.2F, row.data(), 1, 1, 0);
  const R8 B0 = 1.70756 * (1.2 - 1.2323);
  EXPECT_NEAR(row(6),
              1.78609 - 0.0941935 * std::log(1 + std::exp(B0)) + 3.21834 * std::log(1 + std::exp(-B0)), 1E-5);
  EXPECT_EQ(row(7), -0.0254752F);
  EXPECT_NEAR(row(8), 0.598876 * std::log(0.55) + 1.96935, 1E-5);
  EXPECT_EQ(row(9), 1.51707F);
  EXPECT_NEAR(row(10), 0.099481 * 1.2 * std::exp(17.1357 / 5.81654) - 3.23266, 1E-5);
  const R8 C1 = 11.3468 * (1.2 - 1.64721);
  const R8 C2 = 2.5237 * (1.2 - 2.322121);
  EXPECT_NEAR(row(1),
              0.00112833 * std::log(1 + std::exp(C1)) + 0.105575 + 0.00364675 * std::log(1 + std::exp(-C1)),
              1E-6);
  EXPECT_NEAR(row(2),
              -0.00103717 * std::log(1 + std::exp(C2)) + 0.1939 + 0.043836 * std::log(1 + std::exp(-C2)),
              1E-6);
  EXPECT_EQ(row(3), 3.0F);
  EXPECT_EQ(row(4), 0.9F);
  EXPECT_NEAR(row(5), 0.0467549 * 1.2 + 0.123598, 1E-6);
}

TEST(RedlabCurves, FlagAsksForTheHeavyCurvesBelowTheirLimit) {
  Row light{}, heavy{};
  VRDO12(0.88F, light.data(), 1, 1, 0);
  VRDO12(0.88F, heavy.data(), 1, 1, 1);
  EXPECT_EQ(light(4), 0.903474F);
  EXPECT_EQ(heavy(4), 0.9F);
  for (int k = 6; k <= 10; ++k) EXPECT_EQ(light(k), heavy(k)) << "the b curves take no notice of it";
}

TEST(RedlabCurves, LimitsOfTheFamiliesBelongToTheLightSide) {
  Row row{};
  VRDO12(0.85F, row.data(), 1, 1, 0);
  EXPECT_EQ(row(9), 1.08955F);
  VRDO12(0.9F, row.data(), 1, 1, 0);
  EXPECT_EQ(row(9), 1.51707F);
  EXPECT_EQ(row(4), 0.903474F);
}

TEST(RedlabCurves, ColumnElevenIsTheSigmoidAtTheCriticalPoint) {
  for (const R4 W : {0.2F, 0.7F, 0.95F, 2.0F, 4.0F}) {
    Row row{};
    VRDO12(W, row.data(), 1, 1, 0);
    EXPECT_NEAR(row(11), VRDOE1(row.data(), 1, 1, 0, 1.0F, 1), 1E-6F) << W;
  }
}

struct Heavy {
  R4 A = -9, B = -9, DA1 = -9, DB1 = -9, DA2 = -9, DB2 = -9;
  I4 IER = -9;
  Row row{};
  Heavy(R4 OMEGA, R4 X, I4 MODE) { VRDO11(row.data(), 1, 1, MODE, X, OMEGA, A, B, DA1, DB1, DA2, DB2, IER); }
};

TEST(RedlabCurves, HeavyComponentFarFromTheBandIsLeftToTheGeneralForms) {
  const Heavy light(0.6F, 1.5F, 1), heavy(1.5F, 1.5F, 1);
  EXPECT_EQ(light.IER, vrdo_result::general);
  EXPECT_EQ(heavy.IER, vrdo_result::general);
  EXPECT_EQ(light.A, -9.0F);
  EXPECT_EQ(light.row(4), 0.903474F);
  EXPECT_EQ(heavy.row(4), 0.9F);
}

// At low temperatures the border falls below 0.9.
TEST(RedlabCurves, BorderOfTheFamiliesFallsWithTemperature) {
  const R4 X = 3.0F;  // border at 0.55993 + 0.70357/3 = 0.794
  EXPECT_EQ(Heavy(0.86F, X, 0).row(4), 0.9F);
  EXPECT_EQ(Heavy(0.86F, 1.5F, 0).IER, vrdo_result::done) << "0.04 from 0.9";
  EXPECT_EQ(Heavy(0.73F, X, 0).row(4), 0.903474F);
}

TEST(RedlabCurves, ParametersJoinAtBothEdgesOfTheBand) {
  const R4 X = 1.6F;
  const Heavy lower(0.851F, X, 1), upper(0.949F, X, 1);
  EXPECT_EQ(lower.IER, vrdo_result::done);
  EXPECT_EQ(upper.IER, vrdo_result::done);
  const Heavy below(0.8499F, X, 1), above(0.9501F, X, 1);
  EXPECT_EQ(below.IER, vrdo_result::general);
  EXPECT_EQ(above.IER, vrdo_result::general);
  EXPECT_NEAR(lower.A, VRDOE1(below.row.data(), 1, 1, 0, X, 1), 2E-2F * lower.A);
  EXPECT_NEAR(upper.A, VRDOE1(above.row.data(), 1, 1, 0, X, 1), 2E-2F * upper.A);
  EXPECT_NEAR(upper.B, VRDOE1(above.row.data(), 1, 1, 5, X, 1), 1E-2F * upper.B);
  EXPECT_NEAR(lower.DA1, VRDOE1(below.row.data(), 1, 1, 0, X, 2), 2E-2F * std::fabs(lower.DA1));
  const Heavy middle(0.9F, X, 0);
  const Heavy edge1(0.85F, X, 0), edge2(0.95F, X, 0);
  Row a{}, b{};
  VRDO12(0.9F - 0.05F, a.data(), 1, 1, 0);
  VRDO12(0.9F + 0.05F, b.data(), 1, 1, 1);
  EXPECT_NEAR(middle.A, 0.5F * (VRDOE1(a.data(), 1, 1, 0, X, 1) + VRDOE1(b.data(), 1, 1, 0, X, 1)), 1E-5F);
}

TEST(RedlabCurves, BandAboveTheCriticalRegionIsRefused) {
  const Heavy h(0.88F, 1.0399F, 1);
  EXPECT_EQ(h.IER, vrdo_result::refused);
  EXPECT_EQ(h.A, -9.0F);
  EXPECT_EQ(Heavy(0.88F, 1.04F, 1).IER, vrdo_result::done);
}

TEST(RedlabCurves, VeryHeavyComponentsAreExtrapolatedInTheReciprocal) {
  const R4 X = 1.5F;
  Row r35{}, r40{};
  VRDO12(3.5F, r35.data(), 1, 1, 0);
  VRDO12(4.0F, r40.data(), 1, 1, 0);
  const Heavy h(5.0F, X, 1);
  EXPECT_EQ(h.IER, vrdo_result::done);
  const auto at5 = [&](I4 J0, I4 ID) {
    const R4 lower = VRDOE1(r35.data(), 1, 1, J0, X, ID);
    const R4 upper = VRDOE1(r40.data(), 1, 1, J0, X, ID);
    return 1.0F / (3.0F / upper - 2.0F / lower);
  };
  EXPECT_NEAR(h.A, at5(0, 1), 1E-5F * h.A);
  EXPECT_NEAR(h.B, at5(5, 1), 1E-5F * h.B);
  EXPECT_NEAR(h.DA1, at5(0, 2), 1E-5F * std::fabs(h.DA1));
  EXPECT_NEAR(h.DB1, at5(5, 2), 1E-5F * std::fabs(h.DB1));
  EXPECT_NEAR(h.DA2, at5(0, 3), 1E-4F * std::fabs(h.DA2));
  EXPECT_NEAR(h.DB2, at5(5, 3), 1E-4F * std::fabs(h.DB2));
  EXPECT_EQ(Heavy(4.0F, X, 1).IER, vrdo_result::general) << "4 itself is inside the correlation";
  EXPECT_EQ(Heavy(5.0F, X, 0).DA1, -9.0F) << "mode 0 leaves the derivatives alone";
}

}  // namespace
}  // namespace talix
