#include "fastprops/surface_tension.h"

#include <gtest/gtest.h>

#include <cmath>

#include "database/component_record.h"
#include "fastprops/surface_tension_tables.h"
#include "support/flash_case.h"

namespace talix {
namespace {

constexpr R8 kCelsius = 273.15;

class SurfaceTension : public testing::Test {
 protected:
  void SetUp() override { test::fresh_library(); }
};

// ---- the relation of each component

struct Simple {
  R4 T = 300.0F;
  FlashVec TC{}, AMW{}, DEN{}, XX{};
  Mat<R4, 2, kMaxComponents> SUR{};
  R4 AMWV = 30.0F, DENV = 3.0F;
  Simple() {
    TC(1) = 500.0F;
    AMW(1) = 86.0F;
    DEN(1) = 650.0F;
    XX(1) = 1.0F;
    SUR(1, 1) = 50.0F;
    SUR(2, 1) = 1.2F;
  }
  [[nodiscard]] R8 sigma(int NC = 1) const {
    R4 SIGMA = -1.0F;
    SURTEN(NC, T, TC, SUR, AMW, AMWV, DEN, DENV, XX, SIGMA);
    return static_cast<R8>(SIGMA);
  }
};

TEST_F(SurfaceTension, SmallExponentIsAPowerOfTheDistanceToTheCriticalPoint) {
  EXPECT_NEAR(Simple().sigma(), 50.0 * std::pow(0.4, 1.2), 1e-4);
}

TEST_F(SurfaceTension, ExponentOfExactlyThreeIsAPowerLaw) {
  Simple s;
  s.SUR(2, 1) = 3.0F;
  EXPECT_NEAR(s.sigma(), 50.0 * 0.4 * 0.4 * 0.4, 1e-4);
}

TEST_F(SurfaceTension, ExponentAboveThreeIsAParachor) {
  Simple s;
  s.SUR(1, 1) = 270.0F;
  s.SUR(2, 1) = 4.0F;
  const R8 D = (650.0 / 86.0 - 0.1) * 0.001;
  EXPECT_NEAR(s.sigma() / std::pow(270.0 * D, 4.0), 1.0, 1e-5);
}

TEST_F(SurfaceTension, ComponentNotDenserThanTheVapourAddsNothing) {
  Simple s;
  s.SUR(2, 1) = 3.7F;
  s.DENV = 300.0F;
  EXPECT_EQ(s.sigma(), 0.0) << "a power of a negative number else";
}

TEST_F(SurfaceTension, ComponentAboveItsCriticalTemperatureAddsNothing) {
  Simple s;
  s.TC(2) = 150.0F;
  s.AMW(2) = 28.0F;
  s.SUR(1, 2) = 60.0F;
  s.SUR(2, 2) = 1.25F;
  s.XX(1) = 0.7F;
  s.XX(2) = 0.3F;
  EXPECT_NEAR(s.sigma(2), 0.7 * 50.0 * std::pow(0.4, 1.2), 1e-4);
  s.T = 500.0F;
  EXPECT_EQ(s.sigma(2), 0.0) << "at the critical temperature";
}

TEST_F(SurfaceTension, WithoutAVapourItsDensityCountsAsNone) {
  Simple s;
  s.SUR(1, 1) = 270.0F;
  s.SUR(2, 1) = 4.0F;
  s.AMWV = 0.0F;
  s.DENV = 0.0F;
  EXPECT_NEAR(s.sigma() / std::pow(270.0 * 0.65 / 86.0, 4.0), 1.0, 1e-5);
}

// ---- the parachor method

void set(int i, const char* code, R8 parachor) {
  comp.ICS(i) = code;
  comp.PACHOR(i) = parachor;
}

struct Phases {
  PhaseCompositions XX{};
  Vec<R8, 3> PHVOL{};
  Vec<R8, 3> SIG{{-1.0, -1.0, -1.0}};
  void column(int k, R8 x1, R8 x2, R8 volume_cm3) {
    XX(1, k) = x1;
    XX(2, k) = x2;
    PHVOL(k) = volume_cm3 * 1e-6;
  }
  void run(I4 KV, I4 KL1, I4 KL2, R8 T = 300.0, int NC = 2) { SSTPW0(NC, T, XX, KV, KL1, KL2, PHVOL, SIG); }
};

R8 fourth(R8 x) { return x * x * x * x; }

TEST_F(SurfaceTension, OnePhaseAloneHasNone) {
  set(1, " 1P ", 72.0);
  set(2, " 6P ", 270.0);
  Phases p;
  p.column(1, 0.5, 0.5, 100.0);
  p.run(0, 1, 0);
  for (int k = 1; k <= 3; ++k) EXPECT_EQ(p.SIG(k), 0.0);
}

TEST_F(SurfaceTension, PureComponentIsItsParachorTimesTheDifferenceOfDensities) {
  set(1, " 6P ", 270.0);
  Phases p;
  p.column(1, 1.0, 0.0, 20000.0);
  p.column(2, 1.0, 0.0, 130.0);
  p.run(1, 2, 0, 300.0, 1);
  EXPECT_NEAR(p.SIG(1) / fourth(270.0 / 130.0 - 270.0 / 20000.0), 1.0, 1e-12);
  EXPECT_EQ(p.SIG(2), 0.0);
  EXPECT_EQ(p.SIG(3), 0.0);
}

TEST_F(SurfaceTension, PairsCountWithTheirCorrection) {
  set(1, " 1P ", 72.0);
  set(2, " 6P ", 270.0);
  Phases p;
  p.column(1, 0.9, 0.1, 5000.0);
  p.column(2, 0.3, 0.7, 100.0);
  p.run(1, 2, 0);
  const R8 correction = widen(0.98F) + widen(0.00097342F) * (300.0 - kCelsius);
  const auto sum = [&](R8 x, R8 y) { return 72.0 * x * x + 270.0 * y * y + 342.0 * correction * x * y; };
  EXPECT_NEAR(p.SIG(1) / fourth(sum(0.3, 0.7) / 100.0 - sum(0.9, 0.1) / 5000.0), 1.0, 1e-12);
}

TEST_F(SurfaceTension, InfiniteDilutionIsThePureComponent) {
  set(1, " 6P ", 270.0);
  set(2, " 1P ", 72.0);
  Phases pure, dilute;
  pure.column(1, 1.0, 0.0, 20000.0);
  pure.column(2, 1.0, 0.0, 130.0);
  pure.run(1, 2, 0, 300.0, 1);
  dilute.column(1, 1.0 - 1e-12, 1e-12, 20000.0);
  dilute.column(2, 1.0 - 1e-12, 1e-12, 130.0);
  dilute.run(1, 2, 0);
  EXPECT_NEAR(dilute.SIG(1) / pure.SIG(1), 1.0, 1e-11);
}

TEST_F(SurfaceTension, LiquidWithoutVapourHasTheFullFourthPower) {
  set(1, " 6P ", 270.0);
  set(2, "H2O ", 52.0);
  Phases p;
  p.column(1, 1.0, 0.0, 130.0);
  p.column(2, 0.0, 1.0, 18.0);
  p.run(0, 1, 2);
  EXPECT_NEAR(p.SIG(1) / fourth(270.0 / 130.0), 1.0, 1e-12);
  EXPECT_NEAR(p.SIG(3) / fourth(52.0 / 18.0), 1.0, 1e-12);
  const R8 a = std::pow(130.0, 2.0 / 3.0), b = std::pow(18.0, 2.0 / 3.0);
  const R8 GAM = 4.0 * a * b / ((a + b) * (a + b));
  EXPECT_NEAR(p.SIG(2), p.SIG(1) + p.SIG(3) - 2.0 * GAM * std::sqrt(p.SIG(1) * p.SIG(3)), 1e-9);
  EXPECT_GT(p.SIG(2), 0.0);
}

TEST_F(SurfaceTension, ThreePhasesGiveThreeInterfaces) {
  set(1, " 6P ", 270.0);
  set(2, "H2O ", 52.0);
  Phases p;
  p.column(1, 0.5, 0.5, 25000.0);
  p.column(2, 1.0, 0.0, 130.0);
  p.column(3, 0.0, 1.0, 18.0);
  p.run(1, 2, 3);
  EXPECT_LT(p.SIG(1), fourth(270.0 / 130.0));
  EXPECT_LT(p.SIG(3), fourth(52.0 / 18.0));
  EXPECT_GT(p.SIG(2), 0.0);
}

TEST_F(SurfaceTension, EqualLiquidsHaveNoTensionBetweenThem) {
  set(1, " 6P ", 270.0);
  Phases p;
  p.column(1, 1.0, 0.0, 25000.0);
  p.column(2, 1.0, 0.0, 130.0);
  p.column(3, 1.0, 0.0, 130.0);
  p.run(1, 2, 3, 300.0, 1);
  EXPECT_NEAR(p.SIG(2), 0.0, 1e-12 * p.SIG(1));
}

TEST_F(SurfaceTension, BeyondEqualDensitiesThereIsNone) {
  set(1, " 6P ", 270.0);
  Phases p;
  p.column(1, 1.0, 0.0, 120.0);
  p.column(2, 1.0, 0.0, 130.0);
  p.run(1, 2, 0, 300.0, 1);
  EXPECT_EQ(p.SIG(1), 0.0) << "the fourth power would hide the sign";
}

R8 of_call(R4 P, const FlashVec& Y, const FlashVec& X, R4 ZV, R4 ZL) {
  R4 SIGMA = -1.0F;
  SURTEN1(1, 300.0F, P, Y, X, ZV, ZL, SIGMA);
  return static_cast<R8>(SIGMA);
}

TEST_F(SurfaceTension, AbsentVapourIsAnIdealGasOfTheLiquidsComposition) {
  set(1, " 6P ", 270.0);
  FlashVec X{}, none{};
  X(1) = 1.0F;
  const R8 alone = of_call(1.0F, none, X, 0.0F, 0.0052F);
  EXPECT_GT(alone, 0.0);
  EXPECT_EQ(alone, of_call(1.0F, X, X, 1.0F, 0.0052F));
  EXPECT_EQ(alone, of_call(1.0F, none, X, -1.0F, 0.0052F));
  const R8 ideal = 8.314471 * 300.0 / 1e5 * 1e6;
  EXPECT_NEAR(alone / fourth(270.0 / (widen(0.0052F) * ideal) - 270.0 / ideal), 1.0, 1e-6);
}

TEST_F(SurfaceTension, CallWithoutDensitiesGivesZeroAndNoNan) {
  set(1, " 6P ", 270.0);
  FlashVec X{};
  X(1) = 1.0F;
  EXPECT_EQ(of_call(0.0F, X, X, 1.0F, 0.005F), 0.0);
  EXPECT_EQ(of_call(0.0F, X, X, 0.0F, 0.0F), 0.0);
  EXPECT_EQ(of_call(1.0F, X, X, 1.0F, 0.0F), 0.0);
  EXPECT_EQ(of_call(1.0F, X, X, 1.0F, std::nanf("")), 0.0);
}

// ---- the corrections

struct Pair {
  R4 ASURT, BSURT;
};

Pair corrections(const char* first, const char* second) {
  Vec<Text<4>, kMaxComponents> ICS{};
  ICS(1) = first;
  ICS(2) = second;
  CompVec A{}, B{};
  SSTPW1(ICS, 1, A, B, 2);
  return {static_cast<R4>(A(2)), static_cast<R4>(B(2))};
}

// In both orders.
void expect_pair(const char* first, const char* second, R4 ASURT, R4 BSURT) {
  for (const Pair& pair : {corrections(first, second), corrections(second, first)}) {
    EXPECT_EQ(pair.ASURT, ASURT) << first << "/" << second;
    EXPECT_EQ(pair.BSURT, BSURT) << first << "/" << second;
  }
}

TEST(SurfaceCorrections, EveryNamedPairHasItsRow) {
  for (const SurfacePair& row : kSurfacePairs) {
    const Text<4> lower = CICS(row.lower), upper = CICS(row.upper);
    Vec<Text<4>, kMaxComponents> ICS{};
    CompVec A{}, B{};
    ICS(1) = upper;
    ICS(2) = lower;
    SSTPW1(ICS, 1, A, B, 2);
    EXPECT_EQ(A(2), widen(row.correction.ASURT)) << lower.view() << "/" << upper.view();
    EXPECT_EQ(B(2), widen(row.correction.BSURT)) << lower.view() << "/" << upper.view();
  }
}

TEST(SurfaceCorrections, RowsOfTheTable) {
  expect_pair(" 1P ", "10P ", 1.1001F, 0.00039529F);
  expect_pair(" 2P ", "11P ", 1.0455F, 0.0F);
  expect_pair("10P ", "16P ", 0.9999F, 0.0F);
  expect_pair("N2  ", " 8P ", 1.4554F, -0.0035396F);
  expect_pair("CO2 ", "10P ", 0.9102F, 0.0022866F);
  expect_pair(" 6A ", " 8A1", 0.998F, 0.0F);
  expect_pair("12P ", " 6A ", 0.987F, 0.00044127F);
}

TEST(SurfaceCorrections, DefaultsOfTheLowerCode) {
  expect_pair("N2  ", "CO2 ", 1.3716F, -0.0035396F);
  expect_pair("N2  ", " 6A ", 1.3716F, -0.0035396F);
  expect_pair("CO2 ", " 1P ", 0.9654F, 0.0022866F);
  expect_pair(" 1P ", "12P ", 1.0605F, 0.00075351F);
  expect_pair(" 2P ", " 7P ", 1.0514F, 0.0F);
  expect_pair(" 3P ", " 4P ", 0.9575F, 0.00053646F);
  expect_pair("14P ", "16P ", 0.9575F, 0.00053646F);
}

TEST(SurfaceCorrections, PairsWithoutARuleNeedNone) {
  expect_pair(" 1P ", " 6A ", 1.0F, 0.0F);
  expect_pair(" 6N ", " 7A ", 1.0F, 0.0F);
  expect_pair("H2S ", "AR  ", 1.0F, 0.0F);
  expect_pair("N2  ", "H2S ", 1.0F, 0.0F);
  expect_pair(" 6A ", " 3O ", 1.0F, 0.0F);
  expect_pair(" 4O ", " 3O ", 1.0F, 0.0F);
  expect_pair(" 6P ", " 6P ", 1.0F, 0.0F);
}

TEST(SurfaceCorrections, ParaffinOutsideTheTable) {
  expect_pair("N2  ", "20P ", 1.3716F, -0.0035396F);
  expect_pair("CO2 ", "20P ", 1.1642F, 0.0034845F);
  expect_pair(" 1P ", "20P ", 1.0605F, 0.00075351F);
  expect_pair(" 2P ", "20P ", 1.0514F, 0.0F);
  expect_pair(" 3P ", "20P ", 0.9645F, 0.00045933F);
  expect_pair(" 6A ", "20P ", 0.9645F, 0.00045933F);
  expect_pair("20P ", "13P ", 0.9645F, 0.00045933F);
}

TEST(SurfaceCorrections, OlefinOutsideTheTable) {
  expect_pair(" 2P ", " 3O ", 0.9287F, 0.0013473F);
  expect_pair("20P ", " 3O ", 0.9287F, 0.0013473F);
  expect_pair(" 1P ", "H2O ", 0.9287F, 0.0013473F);
  expect_pair("N2  ", " 3O ", 1.0F, 0.0F);
}

TEST(SurfaceCorrections, OnlyHigherComponentsAreWritten) {
  Vec<Text<4>, kMaxComponents> ICS{};
  for (int i = 1; i <= 4; ++i) ICS(i) = " 1P ";
  ICS(4) = " 2P ";
  CompVec A{}, B{};
  for (int i = 1; i <= 4; ++i) A(i) = B(i) = -7.0;
  SSTPW1(ICS, 2, A, B, 4);
  EXPECT_EQ(A(1), -7.0);
  EXPECT_EQ(A(2), -7.0);
  EXPECT_EQ(A(3), 1.0);
  EXPECT_EQ(A(4), widen(1.0657F));
}

}  // namespace
}  // namespace talix
