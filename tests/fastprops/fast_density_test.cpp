#include "fastprops/fast_density.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "fastprops/error_matrix.h"
#include "fastprops/flash_record.h"
#include "fastprops/try_step.h"
#include "support/flash_case.h"

namespace talix {
namespace {

// A component like n-hexane, with constants as VLINIT would store them.
class FastDensity : public testing::Test {
 protected:
  void SetUp() override {
    test::fresh_library();
    MSG.blank();
    fl.NC = 1;
    fl.TC(1) = 507.6F;
    fl.PC(1) = 30.25F;
    fl.VC(1) = 368.0F;
    fl.AMW(1) = 86.18F;
    fl.CDEN(1, 1) = 234.0F;
    fl.CDEN(2, 1) = 2.0F;
    fl.CDEN(3, 1) = 0.5F;
    fl.CDEN(4, 1) = 1.0E6F;
    fl.NAME(1) = "n-hexane";
    // log10 MPa; the third entry would spoil the result if it were read.
    fl.CP0(1, 1) = 8.8F;
    fl.CP0(2, 1) = -2200.0F;
    fl.CP0(3, 1) = 1.0E6F;
    fl.CP0(4, 1) = -1.5F;
    fl.CP0(5, 1) = 0.0F;
  }
  static R8 density(R4 T) {
    FlashVec DEN{};
    RHO(fl.NC, T, fl.VC, fl.TC, fl.AMW, fl.CDEN, DEN);
    return static_cast<R8>(DEN(1));
  }
  R8 pressure(R4 T) {
    FlashVec P0{};
    FKW(fl.NC, T, fl.PC, fl.TC, fl.NAME, fl.CP0, P0, MSG);
    return static_cast<R8>(P0(1));
  }
  // What the set gives without the term of the pressure itself [bar].
  static R8 plain(R8 T) { return 10.0 * std::pow(10.0, 8.8 - 2200.0 / T - 1.5 * std::log10(T)); }
  Message MSG{};
};

TEST_F(FastDensity, BelowTheCriticalTemperatureTheSetCounts) {
  const R8 TR = 1.0 - 400.0 / 507.6;
  EXPECT_NEAR(density(400.0F), 234.0 * (1.0 + 2.0 * std::cbrt(TR) + 0.5 * TR), 1e-3);
}

TEST_F(FastDensity, AtAndAboveTheCriticalTemperatureItIsTheCriticalOne) {
  EXPECT_EQ(density(507.6F), widen(1000.0F * 86.18F / 368.0F));
  EXPECT_EQ(density(800.0F), widen(1000.0F * 86.18F / 368.0F));
}

TEST_F(FastDensity, ComponentWithoutCriticalVolumeHasNone) {
  fl.VC(1) = 0.0F;
  EXPECT_EQ(density(800.0F), 0.0);
}

TEST_F(FastDensity, VapourPressureWithoutPressureTermIsTheFirstEstimate) {
  EXPECT_NEAR(pressure(400.0F) / plain(400.0), 1.0, 1e-5);
  EXPECT_EQ(trimmed(MSG), "");
}

TEST_F(FastDensity, PressureTermIsSolvedForTheVapourPressure) {
  fl.CP0(5, 1) = 5000.0F;
  for (const R4 T : {300.0F, 400.0F, 500.0F}) {
    const R8 p = pressure(T) / 10.0;  // [MPa]
    const R8 t = static_cast<R8>(T);
    EXPECT_NEAR(std::log10(p), 8.8 - 2200.0 / t - 1.5 * std::log10(t) + 5000.0 * p / (t * t), 1e-4) << T;
  }
  EXPECT_EQ(errmat.NERRS, 0);
}

TEST_F(FastDensity, AtTheCriticalTemperatureTheExtensionBegins) {
  EXPECT_NEAR(pressure(507.6F), 30.25 * std::exp(-0.39937) / 0.7, 1e-3);
  EXPECT_NEAR(pressure(std::nextafter(507.6F, 0.0F)) / plain(507.6), 1.0, 1e-4) << "the set just below it";
}

TEST_F(FastDensity, ExtensionIsAPolynomialInTheLogarithmOfReducedTemperature) {
  const R8 L = std::log(2.0);
  const R8 FRA = -0.39937 + 4.95175 * L - 2.5123 * L * L - 0.638496 * std::pow(L, 3) +
                 0.693376 * std::pow(L, 4) - 0.192851 * std::pow(L, 5);
  EXPECT_NEAR(pressure(1015.2F) / (30.25 * std::exp(FRA) / 0.7), 1.0, 1e-5);
}

TEST_F(FastDensity, HydrogenHasScalesOfItsOwnAboveItsCriticalTemperature) {
  fl.NAME(1) = "H2";
  fl.TC(1) = 33.2F;
  fl.PC(1) = 13.0F;
  for (const R4 T : {34.0F, 300.0F}) {
    const R8 L = std::log(static_cast<R8>(T) / 95.93);
    const R8 FRA = -0.39937 + L * (4.95175 + L * (-2.5123 + L * (-0.638496 + L * (0.693376 - 0.192851 * L))));
    EXPECT_NEAR(pressure(T) / (100.0 * std::exp(FRA) / 0.7), 1.0, 2e-5) << T;
  }
}

TEST_F(FastDensity, AnyNameThatBeginsLikeHydrogenCountsAsHydrogen) {
  fl.NAME(1) = "H2 spin";
  const R8 hydrogen = pressure(600.0F);
  fl.NAME(1) = "hydrogen";
  EXPECT_NE(pressure(600.0F), hydrogen);
}

TEST_F(FastDensity, SubstitutionThatDoesNotConvergeLeavesATextAndItsLastValue) {
  // log10 p = a + b p with b so large that no pressure solves it.
  fl.CP0(5, 1) = 1.0E7F;
  const R8 P0 = pressure(400.0F);
  EXPECT_EQ(trimmed(MSG), " Frost-Kalkwarf equation did not converge (FKW)");
  EXPECT_EQ(errmat.ERRMAT(error_row::FKW, 1), 1);
  EXPECT_EQ(errmat.NERRS, 1);
  EXPECT_GT(P0, 0.0);
  EXPECT_TRUE(std::isfinite(static_cast<R4>(P0)));
}

// Just beyond the set that still has a solution: the substitution wanders at moderate pressures, and what counts is its
// twentieth value.
TEST_F(FastDensity, TwentiethValueOfTheSubstitutionIsKept) {
  constexpr R4 kT = 400.0F;
  fl.CP0(5, 1) = 1.1E5F;
  const R8 P0 = pressure(kT);
  EXPECT_EQ(trimmed(MSG), " Frost-Kalkwarf equation did not converge (FKW)");
  const R4 TMP = 8.8F - 2200.0F / kT - 1.5F * std::log10(kT);
  const R4 SLOPE = 1.1E5F / (kT * kT);
  R4 PSUB = std::pow(10.0F, TMP), PNEW = 0.0F, DX = 0.0F, DXOLD = 0.0F, R = 0.0F;
  for (int step = 1; step <= 20; ++step) {
    PNEW = std::pow(10.0F, TMP + SLOPE * PSUB);
    ASSERT_LT(PNEW, 1e30F) << "no bound of the exponent in play";
    TRY(PSUB, PNEW, DX, DXOLD, R);
  }
  EXPECT_NEAR(P0 / (10.0 * static_cast<R8>(PNEW)), 1.0, 1e-3);
}

TEST_F(FastDensity, EachComponentIsSolvedOnItsOwn) {
  fl.NC = 2;
  fl.TC(2) = fl.TC(1);
  fl.PC(2) = fl.PC(1);
  fl.NAME(2) = "other";
  for (int k = 1; k <= 5; ++k) fl.CP0(k, 2) = fl.CP0(k, 1);
  fl.CP0(5, 1) = 1.0E7F;
  FlashVec P0{};
  FKW(fl.NC, 400.0F, fl.PC, fl.TC, fl.NAME, fl.CP0, P0, MSG);
  EXPECT_NEAR(static_cast<R8>(P0(2)) / plain(400.0), 1.0, 1e-5);
}

}  // namespace
}  // namespace talix
