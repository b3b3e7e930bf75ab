#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>

#include "database/component_record.h"
#include "engine/codes.h"
#include "eos/cubic_record.h"
#include "eos/ssm_pure_vardo.h"
#include "fastprops/error_matrix.h"
#include "fastprops/redlab.h"
#include "fastprops/vrdo.h"
#include "support/direct_route.h"

namespace talix {
namespace {

// Positions in the list of the natural gas.
constexpr int kNitrogen = 1, kMethane = 3, kDecane = 10;

class Redlab : public testing::Test {
 protected:
  void SetUp() override { test::load_direct_gas(); }
  static R4 rtp(int i) { return fl.TC(i) * fl.RGAS / fl.PC(i); }
  static void ask(R4 T, I4 MODE) {
    I4 IER = -9;
    REDLAB(T, MODE, fl.NC, IER);
    EXPECT_EQ(IER, 0);
  }
  // Sets component 1 up as a heavy pseudo-component.
  static void make_heavy(R4 OMEGA) {
    fl.ISTAT2(1) = 6;
    fl.OMEG(1) = OMEGA;
    fl.TC(1) = 800.0F;
    fl.PC(1) = 10.0F;
    fl.NAME(1) = "Pseudo-20 of the field";
    fl.REDLAB_MODE = kNoParameters;
  }
};

bool within(R8 X, R8 low, R8 high) { return X > low && X < high; }

// Far below the critical temperature a steep b curve runs into the limit of its exponent.
bool b_is_cut(int i, R4 T) { return fl.PARABF(i, 8) * (fl.TC(i) / T - fl.PARABF(i, 9)) > 25.0F; }

TEST_F(Redlab, ParametersAreThoseOfTheEngine) {
  for (const R4 T : {150.0F, 200.0F, 253.15F, 300.0F, 350.0F, 450.0F, 600.0F, 900.0F}) {
    ask(T, 1);
    I4 ICODE = 0;
    SSMPC0(widen(T), 2, 1, fl.NC, ICODE);
    for (int i = 1; i <= fl.NC; ++i) {
      const R8 X = widen(fl.TC(i) / T);
      const R8 unit = 1.0E+5 * widen(fl.RGAS);  // from K/Pa to the unit of the route
      EXPECT_NEAR(widen(fl.A(i)), pures.ARK(i) * unit, 3E-5 * pures.ARK(i) * unit) << i << ' ' << T;
      if (b_is_cut(i, T)) continue;
      EXPECT_NEAR(widen(fl.B(i)), pures.BRK(i) * unit, 3E-6 * pures.BRK(i) * unit) << i << ' ' << T;
      // The derivatives of the engine are lines inside its zones.
      if (within(X, 0.909, 1.04)) continue;
      const R8 scale = pures.ARK(i) * unit;
      EXPECT_NEAR(widen(fl.DA1(i) * T), pures.D1ADT(i) * unit, 3E-5 * scale) << i << ' ' << T;
      EXPECT_NEAR(widen(fl.DA2(i) * T * T), pures.D2ADT(i) * unit, 2E-4 * scale) << i << ' ' << T;
      EXPECT_NEAR(widen(fl.DB1(i) * T), pures.D1BDT(i) * unit, 3E-5 * pures.BRK(i) * unit) << i << ' ' << T;
      EXPECT_NEAR(widen(fl.DB2(i) * T * T), pures.D2BDT(i) * unit, 2E-4 * pures.BRK(i) * unit)
          << i << ' ' << T;
    }
  }
}

TEST_F(Redlab, SteepCurveOfBIsCutWhereTheEngineGoesOn) {
  constexpr int kCarbonDioxide = 2;
  const R4 limit =
      fl.TC(kCarbonDioxide) / (fl.PARABF(kCarbonDioxide, 9) + 25.0F / fl.PARABF(kCarbonDioxide, 8));
  ASSERT_GT(limit, 100.0F);
  ask(limit - 5.0F, 1);
  const R4 first = fl.B(kCarbonDioxide);
  EXPECT_NE(fl.DB1(kCarbonDioxide), 0.0F) << "the slope takes no notice of the limit";
  ask(limit - 50.0F, 0);
  EXPECT_EQ(fl.B(kCarbonDioxide), first);
}

// Five-point differences of the 32-bit values; the branches are not crossed.
TEST_F(Redlab, DerivativesAreTheSlopesOfTheValuesInEveryBranch) {
  for (const R4 X : {0.3F, 0.6F, 0.85F, 0.95F, 1.02F, 1.2F, 1.8F}) {
    for (int i = 1; i <= fl.NC; ++i) {
      if (X > 1.5F && i == kNitrogen) continue;  // below its triple point
      const R4 T = fl.TC(i) / X;
      const R4 h = (X < 0.5F ? 0.012F : 0.006F) * T;  // wide where a is small and its last digit counts
      if (b_is_cut(i, T)) continue;
      R8 A[5], B[5];
      for (int k = 0; k < 5; ++k) {
        ask(T + static_cast<R4>(k - 2) * h, 0);
        A[k] = widen(fl.A(i));
        B[k] = widen(fl.B(i));
      }
      if (A[4] <= 0.0011 * widen(rtp(i))) continue;  // the floor keeps the derivatives of the curve
      ask(T, 1);
      const auto slope = [&](const R8* f) { return (f[0] - 8 * f[1] + 8 * f[3] - f[4]) / 12.0 / widen(h); };
      const auto curvature = [&](const R8* f) {
        return (-f[0] + 16 * f[1] - 30 * f[2] + 16 * f[3] - f[4]) / 12.0 / widen(h * h);
      };
      EXPECT_NEAR(widen(fl.DA1(i)), slope(A), 2E-4 * A[2] / widen(T)) << i << ' ' << X;
      EXPECT_NEAR(widen(fl.DB1(i)), slope(B), 2E-4 * B[2] / widen(T)) << i << ' ' << X;
      EXPECT_NEAR(widen(fl.DA2(i)), curvature(A), 1E-2 * (A[2] / widen(T * T) + std::fabs(widen(fl.DA2(i)))))
          << i << ' ' << X;
      EXPECT_NEAR(widen(fl.DB2(i)), curvature(B), 2E-2 * B[2] / widen(T * T)) << i << ' ' << X;
    }
  }
}

TEST_F(Redlab, CriticalTemperatureTakesTheSigmoidForAAndTheOtherFormForB) {
  fl.TC(kMethane) = 190.0F;
  ask(190.0F, 0);
  EXPECT_EQ(fl.A(kMethane), VRDOE1(fl.PARABF.data(), kMaxComponents, kMethane, 0, 1.0F, 1) * rtp(kMethane));
  // At the critical temperature that form is its first constant.
  EXPECT_FLOAT_EQ(fl.B(kMethane), fl.PARABF(kMethane, 11) / 4.934F * rtp(kMethane));
}

TEST_F(Redlab, LimitOfTheWarmRangeBelongsToTheRationalForm) {
  fl.TC(kMethane) = 0.90909F * 256.0F;  // exact in 32 bits
  ask(256.0F, 1);
  EXPECT_EQ(fl.A(kMethane), VRDOE3(fl.PARABF.data(), kMaxComponents, kMethane, 0.90909F, 1) * rtp(kMethane));
  EXPECT_EQ(fl.DA1(kMethane), VRDOE3(fl.PARABF.data(), kMaxComponents, kMethane, 0.90909F, 2) *
                                  (rtp(kMethane) / fl.TC(kMethane)));
}

TEST_F(Redlab, WarmRangeIsALineInTcOverT) {
  const auto a_at = [&](R4 X) {
    ask(fl.TC(kMethane) / X, 0);
    return fl.A(kMethane) / rtp(kMethane);
  };
  const R4 AC = VRDOE1(fl.PARABF.data(), kMaxComponents, kMethane, 0, 1.0F, 1);
  const R4 ALIM = VRDOE3(fl.PARABF.data(), kMaxComponents, kMethane, 0.90909F, 1);
  EXPECT_NEAR(a_at(0.95F), AC - 11.0F * (ALIM - AC) * (0.95F - 1.0F), 2E-6F);
}

TEST_F(Redlab, SmallestValueOfAIsHeld) {
  fl.PARABF(kMethane, 11) = -1.0F;
  fl.PARABF(kMethane, 12) = fl.PARABF(kMethane, 13) = fl.PARABF(kMethane, 14) = fl.PARABF(kMethane, 15) =
      0.0F;
  ask(400.0F, 0);
  EXPECT_EQ(fl.A(kMethane), 0.001F * rtp(kMethane));
}

TEST_F(Redlab, BothFormsOfBMeet) {
  for (int i = 1; i <= fl.NC; ++i) {
    ask(fl.TC(i) / 1.04001F, 0);
    const R4 below = fl.B(i);
    ask(fl.TC(i) / 1.03999F, 0);
    EXPECT_NEAR(fl.B(i), below, 2E-4F * below) << i;
  }
}

TEST_F(Redlab, LightGasesGoByTheFirstTwoLettersOfTheName) {
  struct Gas {
    const char* name;
    R4 B1, B2, B3, B4;
  };
  for (const Gas& gas :
       {Gas{"H2", 0.084456F, 0.0058822F, 0.9636F, 2.0F}, Gas{"HE", 0.105F, -0.0284F, 1.0F, 2.0F},
        Gas{"N2 something", 0.081516F, 0.092116F, -7.50201F, 5.48383F}}) {
    fl.NAME(kMethane) = gas.name;
    fl.REDLAB_MODE = kNoParameters;
    ask(300.0F, 1);
    const R4 X = fl.TC(kMethane) / 300.0F;
    EXPECT_EQ(fl.B(kMethane), VRDOE2(gas.B1, gas.B2, gas.B3, gas.B4, X, 1) * rtp(kMethane)) << gas.name;
    EXPECT_EQ(fl.DB1(kMethane),
              VRDOE2(gas.B1, gas.B2, gas.B3, gas.B4, X, 2) * (rtp(kMethane) / fl.TC(kMethane)))
        << gas.name;
  }
}

TEST_F(Redlab, ClassesFourToSixHaveTheirBCorrected) {
  const R4 T = 300.0F;
  ask(T, 1);
  const R4 plain = fl.B(kDecane);
  const R4 slope = fl.DB1(kDecane);
  const R4 X = fl.TC(kDecane) / T;
  // The correction by hand, at offset 5 less a hundredth of that at offset 0.
  const R8 high = 0.01 * (-0.0254752 * std::log1p(std::exp(1.0055 * (widen(X) - 1.51707))) + 5.19634 +
                          1.28944 * std::log1p(std::exp(-1.0055 * (widen(X) - 1.51707))));
  const R8 low = -0.0346255 * std::log1p(std::exp(17.3909 * (widen(X) - 1.08955))) + 6.33875 +
                 0.0247886 * std::log1p(std::exp(-17.3909 * (widen(X) - 1.08955)));
  for (const I4 state_class : {4, 5}) {
    fl.ISTAT2(kDecane) = state_class;
    fl.REDLAB_MODE = kNoParameters;
    ask(T, 1);
    EXPECT_NEAR(widen(fl.B(kDecane) - plain), (high - 0.01 * low) * widen(rtp(kDecane)), 2E-5 * widen(plain));
    EXPECT_NE(fl.DB1(kDecane), slope);
  }
  fl.ISTAT2(kDecane) = 3;
  fl.REDLAB_MODE = kNoParameters;
  ask(T, 0);
  EXPECT_EQ(fl.B(kDecane), plain);
  fl.ISTAT2(kDecane) = 5;
  fl.OMEG(kDecane) = 0.85F;
  fl.REDLAB_MODE = kNoParameters;
  ask(T, 0);
  EXPECT_EQ(fl.B(kDecane), plain) << "not from an acentric factor of 0.85 on";
}

TEST_F(Redlab, SecondCallAtTheSameStateTouchesNothing) {
  ask(300.0F, 0);
  fl.A(1) = -1.0F;
  I4 IER = -9;
  REDLAB(300.0F, 0, fl.NC, IER);
  EXPECT_EQ(fl.A(1), -1.0F);
  EXPECT_EQ(IER, -9);
  REDLAB(300.00009F, 0, fl.NC, IER);
  EXPECT_EQ(fl.A(1), -1.0F) << "the next 32-bit temperature is still the same one";
  REDLAB(300.0F, 1, fl.NC, IER);
  EXPECT_GT(fl.A(1), 0.0F) << "another mode computes";
  EXPECT_EQ(IER, 0);
  fl.A(1) = -1.0F;
  REDLAB(300.01F, 1, fl.NC, IER);
  EXPECT_GT(fl.A(1), 0.0F);
}

TEST_F(Redlab, ModeZeroLeavesTheDerivativesAlone) {
  fl.DA1(1) = fl.DA2(1) = fl.DB1(1) = fl.DB2(1) = -7.0F;
  ask(310.0F, 0);
  for (const R4 value : {fl.DA1(1), fl.DA2(1), fl.DB1(1), fl.DB2(1)}) EXPECT_EQ(value, -7.0F);
}

TEST_F(Redlab, AnotherListComputesAtTheSameTemperature) {
  ask(300.0F, 0);
  const R4 first = fl.A(1);
  test::FlashCase other = test::natural_gas();
  other.numbers = {22, 24};
  other.feed = {0.5F, 0.5F};
  other.run();
  fl.RGAS = kVolumeGasConstant;
  ask(300.0F, 0);
  EXPECT_NE(fl.A(1), first);
}

TEST_F(Redlab, FreshRecordAlwaysComputes) {
  ask(300.0F, 0);
  reset_flash_record();
  EXPECT_EQ(fl.REDLAB_MODE, kNoParameters);
}

// --- heavy pseudo-components ---

TEST_F(Redlab, HeavyComponentInTheSuperCriticalBandIsReported) {
  make_heavy(0.88F);
  fl.MSGUNIT = 6;
  const I4 before = errmat.NERRS;
  I4 IER = 0;
  testing::internal::CaptureStdout();
  REDLAB(790.0F, 0, fl.NC, IER);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "\n ----- Warning !!! ----- Warning !!!\n"
            "\n Description of Pseudo-2 KELDAR component in super-critical region not valid\n"
            " Message from subroutine REDLAB\n"
            "\n ----- Warning !!! ----- Warning !!!\n");
  EXPECT_EQ(IER, 10);
  EXPECT_EQ(errmat.ERRMAT(error_row::REDLAB, 1), before + 1);
  EXPECT_GT(fl.A(1), 0.0F) << "the calculation goes on with the general forms";
  EXPECT_GT(fl.B(1), 0.0F);
  EXPECT_GT(fl.A(2), 0.0F);
}

TEST_F(Redlab, HookTakesTheReportInPlaceOfTheUnit) {
  make_heavy(0.88F);
  fl.MSGUNIT = 6;
  fl.MSGHOOK = true;
  I4 IER = 0;
  testing::internal::CaptureStdout();
  REDLAB(790.0F, 0, fl.NC, IER);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(IER, 10);
  EXPECT_GT(errmat.ERRMAT(error_row::REDLAB, 1), 0);
}

TEST_F(Redlab, LargestCodeOfAllComponentsIsReturned) {
  make_heavy(0.88F);
  fl.ISTAT2(2) = 6;
  fl.OMEG(2) = 5.0F;
  I4 IER = 0;
  REDLAB(700.0F, 0, fl.NC, IER);
  EXPECT_EQ(IER, 1);
  REDLAB(790.0F, 0, fl.NC, IER);
  EXPECT_EQ(IER, 10);
}

TEST_F(Redlab, HeavyComponentFollowsItsAcentricFactorWhateverItsRowHeld) {
  make_heavy(1.5F);
  for (int k = 1; k <= 15; ++k) fl.PARABF(1, k) = 99.0F;
  I4 IER = 0;
  REDLAB(500.0F, 1, fl.NC, IER);
  EXPECT_EQ(IER, 0);
  Vec<R4, 15> row{};
  VRDO12(1.5F, row.data(), 1, 1, 1);
  for (int k = 1; k <= 15; ++k) EXPECT_EQ(fl.PARABF(1, k), row(k)) << k;
  EXPECT_EQ(fl.A(1), VRDOE1(row.data(), 1, 1, 0, 1.6F, 1) * rtp(1));
  EXPECT_EQ(fl.B(1), VRDOE1(row.data(), 1, 1, 5, 1.6F, 1) * rtp(1)) << "no correction above 0.85";
}

TEST_F(Redlab, BandBelowTheCriticalRegionCorrectsBOnlyBelowItsLimit) {
  const auto b_of = [&](R4 OMEGA, R4 T) {
    make_heavy(OMEGA);
    I4 IER = 0;
    REDLAB(T, 0, fl.NC, IER);
    EXPECT_EQ(IER, 1);
    Vec<R4, 15> row{};
    VRDO12(OMEGA, row.data(), 1, 1, 0);
    return fl.B(1) / rtp(1) - VRDOE1(row.data(), 1, 1, 5, fl.TC(1) / T, 1);
  };
  EXPECT_EQ(b_of(0.88F, 500.0F), 0.0F);
  EXPECT_GT(std::fabs(b_of(0.80F, 800.0F / 3.0F)), 3E-4F) << "the border stands at 0.79 there";
}

TEST_F(Redlab, CorrectionOfBInTheBandHasNoSlope) {
  make_heavy(0.80F);
  const R4 T = 800.0F / 3.0F;
  I4 IER = 0;
  REDLAB(T, 1, fl.NC, IER);
  ASSERT_EQ(IER, 1);
  Vec<R4, 15> row{};
  VRDO12(0.80F, row.data(), 1, 1, 0);
  EXPECT_FLOAT_EQ(fl.DB1(1), VRDOE1(row.data(), 1, 1, 5, fl.TC(1) / T, 2) * (rtp(1) / fl.TC(1)));
}

}  // namespace
}  // namespace talix
