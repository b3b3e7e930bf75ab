// Pure-component parameters of the variants: SSMPC5, S2DPC0, S2DAO0, SWLPC0, SWLPC1, SM9IN0, SM9PC0, SM9VS0, SP2PC0,
// SAPPC0, and their choice by SESPC0.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "database/component_record.h"
#include "database/pair_record.h"
#include "database/srk_variant_record.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/model_record.h"
#include "engine/setup_record.h"
#include "eos/cubic_record.h"
#include "eos/eos_caches.h"
#include "eos/ses_pure_parameters.h"
#include "eos/sm9_translation.h"
#include "eos/ssm_pure_alpha.h"
#include "eos/ssm_pure_planar.h"
#include "eos/ssm_pure_smooth.h"
#include "eos/ssm_pure_vardo.h"
#include "eos/ssm_pure_variants.h"
#include "eos/two_dimensional_record.h"
#include "eos/vardo95_record.h"
#include "support/cubic_family.h"
#include "support/eos_difference.h"
#include "support/eos_fixture.h"
#include "support/test_support.h"

namespace talix::test {
namespace {

using Routine = void (*)(const R8&, const I4&, const I4&, const I4&, I4&);
using Field = PureTables::Each<R8> PureTables::*;
using PlanarField = TwoDimensionalTables::Each<R8> TwoDimensionalTables::*;

constexpr R8 kOA = 0.42748;
constexpr R8 kOB = 0.08664;

class PureVariants : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_cubic_family();
    cur = {.C1PAR = 0.0,
           .C2PAR = 1.0,
           .OAPAR = kOA,
           .OBPAR = kOB,
           .M1PAR = widen(1.75256F),
           .M2PAR = widen(0.08128F),
           .M3PAR = widen(0.1729F),
           .M4PAR = 0.01};
  }
  static I4 run(Routine routine, int i, R8 T, I4 level = 2) {
    I4 code = 0;
    routine(T, level, i, i, code);
    return code;
  }
  static R8 rtp(int i) { return comp.TC(i) / (comp.PC(i) * 100000.0); }

  // The derivative tables are the slopes of the value tables.
  static void expect_slopes(Routine routine, int i, R8 T, const char* what) {
    const auto check = [&](Field value, Field first, Field second) {
      const auto at = [&](R8 t) {
        EXPECT_EQ(run(routine, i, t, 0), status::ok);
        return (pures.*value)(i);
      };
      const R8 h = 4E-3 * T;
      const R8 slope_here = slope(at, T, h);
      const R8 curvature_here = curvature(at, T, h);
      ASSERT_EQ(run(routine, i, T, 2), status::ok);
      const R8 size = std::fabs((pures.*value)(i)) + std::fabs((pures.*first)(i));
      EXPECT_NEAR((pures.*first)(i), T * slope_here, 1E-8 * size) << what << " " << i << " " << T;
      EXPECT_NEAR((pures.*second)(i), T * T * curvature_here, 1E-6 * size) << what << " " << i << " " << T;
    };
    check(&PureTables::ARK, &PureTables::D1ADT, &PureTables::D2ADT);
    check(&PureTables::BRK, &PureTables::D1BDT, &PureTables::D2BDT);
    check(&PureTables::CRK, &PureTables::D1CDT, &PureTables::D2CDT);
  }
};

// --- the smooth variant of the component curves -------------------------------------------------------------------

TEST_F(PureVariants, SmoothCurvesMeetThoseOfEitherSideInValueAndSlope) {
  for (const R8 TR1 : {1.04, 0.9090909}) {
    const R8 Tc = comp.TC(kPropane);
    const R8 inside = Tc / TR1 * (TR1 > 1.0 ? 1.0 + 1E-9 : 1.0 - 1E-9);
    const R8 outside = Tc / TR1 * (TR1 > 1.0 ? 1.0 - 1E-9 : 1.0 + 1E-9);
    ASSERT_EQ(run(SSMPC5, kPropane, inside), status::ok);
    const PureTables in = pures;
    ASSERT_EQ(run(SSMPC5, kPropane, outside), status::ok);
    EXPECT_NEAR(in.ARK(kPropane), pures.ARK(kPropane), 2E-8 * pures.ARK(kPropane));
    EXPECT_NEAR(in.BRK(kPropane), pures.BRK(kPropane), 2E-8 * pures.BRK(kPropane));
    EXPECT_NEAR(in.D1ADT(kPropane), pures.D1ADT(kPropane), 2E-6 * std::fabs(pures.ARK(kPropane)));
    EXPECT_NEAR(in.D1BDT(kPropane), pures.D1BDT(kPropane), 2E-6 * std::fabs(pures.BRK(kPropane)));
  }
}

TEST_F(PureVariants, SmoothFirstDerivativesAreSlopesEverywhere) {
  for (const int i : {static_cast<int>(kPropane), static_cast<int>(kNitrogen), static_cast<int>(kHydrogen)}) {
    for (const R8 Tr : {0.6, 0.9, 0.97, 1.0, 1.03, 1.08, 1.2, 2.0}) {
      const R8 T = Tr * comp.TC(i);
      const auto a = [&](R8 t) {
        run(SSMPC5, i, t, 0);
        return pures.ARK(i);
      };
      const auto b = [&](R8 t) {
        run(SSMPC5, i, t, 0);
        return pures.BRK(i);
      };
      const R8 da = T * slope(a, T, 1E-3 * T);
      const R8 db = T * slope(b, T, 1E-3 * T);
      run(SSMPC5, i, T, 1);
      EXPECT_NEAR(pures.D1ADT(i), da, 1E-7 * pures.ARK(i)) << i << " " << Tr;
      EXPECT_NEAR(pures.D1BDT(i), db, 1E-7 * pures.BRK(i)) << i << " " << Tr;
      EXPECT_EQ(pures.CRK(i), 0.0);
      EXPECT_EQ(pures.D1CDT(i), 0.0);
    }
  }
}

TEST_F(PureVariants, SmoothSecondDerivativesAreTheLinesOfThePlainVariant) {
  for (const R8 Tr : {0.9, 0.97, 1.0, 1.05, 1.09, 1.3}) {
    const R8 T = Tr * comp.TC(kPropane);
    run(SSMPC5, kPropane, T);
    const R8 a = pures.D2ADT(kPropane);
    const R8 b = pures.D2BDT(kPropane);
    run(SSMPC0, kPropane, T);
    EXPECT_EQ(a, pures.D2ADT(kPropane));
    EXPECT_EQ(b, pures.D2BDT(kPropane));
  }
}

TEST_F(PureVariants, SmoothAIsFlooredBeforeTheScaling) {
  for (int k = 1; k <= 15; ++k) comp.PARABF(kPropane, k) = 0.0;
  run(SSMPC5, kPropane, 300.0, 0);
  EXPECT_EQ(pures.ARK(kPropane), 0.001 * rtp(kPropane));
}

TEST_F(PureVariants, BothEndsOfTheCubicBelongToIt) {
  // At Tc/T exactly 0.9090909 and 1.04 the values are those of the nodes, to rounding.
  for (const R8 TR1 : {0.9090909, 1.04}) {
    comp.TC(kPropane) = TR1 * 400.0;
    run(SSMPC5, kPropane, 400.0, 0);
    const R8 a = pures.ARK(kPropane);
    run(SSMPC0, kPropane, 400.0, 0);
    EXPECT_NEAR(a, pures.ARK(kPropane), 3E-8 * a);
  }
}

// --- the two-dimensional form -------------------------------------------------------------------------------------

TEST_F(PureVariants, PlanarParametersFollowFromThoseOfTheBulk) {
  constexpr R8 I = 2.2754548213704653e17;
  planar.AOB(kPropane) = -1.0;
  planar.AOB(kEthane) = 0.0;
  for (const int i : {static_cast<int>(kPropane), static_cast<int>(kEthane)}) {
    ASSERT_EQ(run(S2DPC0, i, 0.7 * comp.TC(i)), status::ok);
    const R8 tmp = std::cbrt(3.0 * pures.BRK(i) / (2.0 * I));
    EXPECT_NEAR(planar.B2D(i), I / 2.0 * tmp * tmp, 1E-6 * planar.B2D(i));
    EXPECT_EQ(planar.A2D(i), planar.B2D(i) * pures.ARK(i) / (2.0 * pures.BRK(i)));
  }
}

TEST_F(PureVariants, PlanarDerivativesAreSlopes) {
  for (const R8 Tr : {0.6, 0.8, 1.3}) {
    const R8 T = Tr * comp.TC(kPropane);
    const auto check = [&](PlanarField value, PlanarField first, PlanarField second) {
      const auto at = [&](R8 t) {
        run(S2DPC0, kPropane, t, 0);
        return (planar.*value)(kPropane);
      };
      const R8 d1 = T * slope(at, T, 2E-3 * T);
      const R8 d2 = T * T * curvature(at, T, 2E-3 * T);
      run(S2DPC0, kPropane, T);
      const R8 size = std::fabs((planar.*value)(kPropane));
      EXPECT_NEAR((planar.*first)(kPropane), d1, 1E-7 * size);
      EXPECT_NEAR((planar.*second)(kPropane), d2, 2E-6 * size);
    };
    check(&TwoDimensionalTables::A2D, &TwoDimensionalTables::D1A2DT, &TwoDimensionalTables::D2A2DT);
    check(&TwoDimensionalTables::B2D, &TwoDimensionalTables::D1B2DT, &TwoDimensionalTables::D2B2DT);
  }
}

TEST_F(PureVariants, PlanarRatioKeepsBAndSetsA) {
  planar.AOB(kPropane) = 700.0;
  planar.B2D(kPropane) = 2E-5;
  const R8 T = 300.0;
  run(S2DPC0, kPropane, T);
  const R8 a = 700.0 * 2E-5 / T;
  EXPECT_EQ(planar.A2D(kPropane), a);
  EXPECT_EQ(planar.B2D(kPropane), 2E-5);
  EXPECT_EQ(planar.D1A2DT(kPropane), -a);
  EXPECT_DOUBLE_EQ(planar.D2A2DT(kPropane), 2.0 * a);
  EXPECT_EQ(planar.D1B2DT(kPropane), 0.0);
  EXPECT_EQ(planar.D2B2DT(kPropane), 0.0);
}

TEST_F(PureVariants, PlanarTablesOfTheDataStayWithoutSlopes) {
  planar.AOB(kPropane) = -1.5;
  planar.A2D(kPropane) = 0.25;
  planar.B2D(kPropane) = 0.5;
  planar.D1A2DT(kPropane) = planar.D2B2DT(kPropane) = 7.0;
  run(S2DPC0, kPropane, 300.0);
  EXPECT_EQ(planar.A2D(kPropane), 0.25);
  EXPECT_EQ(planar.B2D(kPropane), 0.5);
  for (const PlanarField field : {&TwoDimensionalTables::D1A2DT, &TwoDimensionalTables::D1B2DT,
                                  &TwoDimensionalTables::D2A2DT, &TwoDimensionalTables::D2B2DT})
    EXPECT_EQ((planar.*field)(kPropane), 0.0);
}

TEST_F(PureVariants, PlanarPairDataAreThoseOfTheBulk) {
  planar_pairs = {};
  S2DAO0(1, 8);
  EXPECT_EQ(planar_pairs.NT0, pairs.NT0);
  EXPECT_EQ(planar_pairs.NT1, pairs.NT1);
  ASSERT_GT(pairs.NT1, 0);
  for (int L = 1; L <= pairs.NT1; ++L) {
    EXPECT_EQ(planar_pairs.IT1(L), pairs.IT1(L));
    EXPECT_EQ(planar_pairs.JT1(L), pairs.JT1(L));
  }
  for (int L = 1; L <= pairs.NT0; ++L) {
    EXPECT_EQ(planar_pairs.IT0(L), pairs.IT0(L));
    EXPECT_EQ(planar_pairs.JT0(L), pairs.JT0(L));
  }
  for (int i = 1; i <= 8; ++i) {
    for (int j = 1; j <= 8; ++j) {
      EXPECT_EQ(planar_pairs.TETA0(i, j), pairs.TETA0(i, j));
      EXPECT_EQ(planar_pairs.TETA0T(i, j), pairs.TETA0T(i, j));
      EXPECT_EQ(planar_pairs.TETA1(i, j), pairs.TETA1(i, j));
      EXPECT_EQ(planar_pairs.TETA1T(i, j), pairs.TETA1T(i, j));
      EXPECT_EQ(planar_pairs.IDELTA(i, j), pairs.IDELTA(i, j));
    }
  }
}

// --- the generalised temperature functions ------------------------------------------------------------------------

TEST_F(PureVariants, SoaveSlopeFollowsTheConstantsOfTheModel) {
  const R8 W = comp.OMEGA(kPropane);
  const R8 XM = (0.84509804 + W) * (W * cur.M2PAR + cur.M1PAR) / (1.0 + W * cur.M3PAR) - 1.0 + 0.01 * W * W;
  const R8 Tr = 0.7;
  run(SWLPC0, kPropane, Tr * comp.TC(kPropane), 0);
  const R8 AAC = 1.0 + XM * (1.0 - std::sqrt(Tr));
  EXPECT_NEAR(pures.ARK(kPropane), kOA * AAC * AAC / Tr * rtp(kPropane), 1E-15);
  EXPECT_EQ(pures.BRK(kPropane), kOB * rtp(kPropane));
  // At the critical temperature alpha is 1 whatever the slope.
  run(SWLPC0, kPropane, comp.TC(kPropane), 0);
  EXPECT_DOUBLE_EQ(pures.ARK(kPropane), kOA * rtp(kPropane));
}

TEST_F(PureVariants, PengRobinsonSlopeTakesTheQuadraticUpToAndTheCubicAbove049) {
  const auto slope_of = [&](R8 W) {
    comp.OMEGA(kPropane) = W;
    const R8 T = 0.25 * comp.TC(kPropane);
    run(SWLPC1, kPropane, T, 0);
    // alpha at Tr 1/4 is (1 + m/2)^2.
    return 2.0 * (std::sqrt(pures.ARK(kPropane) / rtp(kPropane) * 0.25 / kOA) - 1.0);
  };
  const auto quadratic = [](R8 W) { return 0.37464 + 1.54226 * W - 0.26992 * W * W; };
  const auto cubic = [](R8 W) { return 0.379642 + 1.48503 * W - 0.164423 * W * W + 0.016666 * W * W * W; };
  EXPECT_NEAR(slope_of(0.49), quadratic(0.49), 1E-13);
  const R8 above = std::nextafter(0.49, 1.0);
  EXPECT_NEAR(slope_of(above), cubic(above), 1E-13);
  EXPECT_GT(std::fabs(quadratic(0.49) - cubic(0.49)), 1E-5);
  EXPECT_NEAR(slope_of(0.2), quadratic(0.2), 1E-13);
}

TEST_F(PureVariants, GeneralisedDerivativesAreSlopesTranslationIncluded) {
  for (const int i : {static_cast<int>(kPropane), static_cast<int>(kDecane), static_cast<int>(kHydrogen)}) {
    vardo95.C95(i, 1) = 1.3E-6;
    vardo95.C95(i, 2) = -2.1E-9;
    for (const R8 Tr : {0.5, 1.0, 1.7}) {
      expect_slopes(SWLPC0, i, Tr * comp.TC(i), "SWLPC0");
      expect_slopes(SWLPC1, i, Tr * comp.TC(i), "SWLPC1");
    }
  }
}

TEST_F(PureVariants, FlooredAContinuesItsDerivativesFromTheFloor) {
  // Where the square root of alpha passes through zero.
  const R8 W = comp.OMEGA(kPropane);
  const R8 XM = (0.84509804 + W) * (W * cur.M2PAR + cur.M1PAR) / (1.0 + W * cur.M3PAR) - 1.0 + 0.01 * W * W;
  const R8 root = 1.01 + 1.0 / XM;
  run(SWLPC0, kPropane, root * root * comp.TC(kPropane));
  EXPECT_EQ(pures.ARK(kPropane), 0.001 * rtp(kPropane));
  const R8 E = kOA * rtp(kPropane) * (-0.01 * XM) * XM / root + pures.ARK(kPropane);
  EXPECT_NEAR(pures.D1ADT(kPropane), -E, 1E-9 * std::fabs(E));
  EXPECT_NEAR(pures.D2ADT(kPropane), 2.0 * E + kOA * rtp(kPropane) * (-0.01 * XM / root + XM) * XM / 2.0,
              1E-14);
}

TEST_F(PureVariants, WithoutTranslationDataTheShiftsAreZero) {
  CompVec x{}, VSCN{}, VSCTN{};
  x(kPropane) = 1.0;
  run(SWLPC0, kPropane, 300.0);
  R8 VSC = 1.0, VSCT = 1.0, VSCTT = 1.0;
  SM9VS0(kPropane, kPropane, x, 1E6, 300.0, VSC, VSCT, VSCN, VSCTN, VSCTT);
  EXPECT_EQ(pures.CRK(kPropane), 0.0);
  EXPECT_EQ(VSC, 0.0);
  EXPECT_EQ(VSCT, 0.0);
  EXPECT_EQ(VSCTT, 0.0);
  EXPECT_EQ(VSCN(kPropane), 0.0);
  EXPECT_EQ(VSCTN(kPropane), 0.0);
}

TEST_F(PureVariants, TranslationShiftsTheVolumeOfTheGeneralisedForm) {
  const I4 slot = load_model(model::srk);
  Call call;
  call.composition({0.0, 0.0, 1.0});
  call.args.MODEL = slot;
  call.args.T = 280.0;
  call.args.P = 2E6;
  call.args.IPHASE = phase::liquid;
  call.args.LVOL = true;
  call.run();
  const R8 plain = call.args.Z;
  vardo95.C95(kPropane, 1) = -7E-7;
  ++setup.generation;
  call.run();
  EXPECT_NEAR(call.args.Z - plain, -7E-7 * 2E6 / 280.0, 1E-12);
}

// --- the log-polynomial form --------------------------------------------------------------------------------------

TEST_F(PureVariants, LogPolynomialWipesTheTranslationOfItsRange) {
  for (int i = 1; i <= 5; ++i)
    for (int k = 1; k <= 3; ++k) vardo95.C95(i, k) = 1.0 + i + k;
  I4 code = 0;
  SM9PC0(300.0, 0, 2, 4, code);
  EXPECT_EQ(code, status::ok);
  for (int k = 1; k <= 3; ++k) {
    EXPECT_NE(vardo95.C95(1, k), 0.0);
    EXPECT_NE(vardo95.C95(5, k), 0.0);
    for (int i = 2; i <= 4; ++i) EXPECT_EQ(vardo95.C95(i, k), 0.0);
  }
  for (int i = 2; i <= 4; ++i) EXPECT_EQ(pures.CRK(i), 0.0);
}

TEST_F(PureVariants, LogPolynomialWithoutCoefficientsIsThatOfTheCriticalPoint) {
  for (const R8 T : {200.0, 369.83, 900.0}) {
    run(SM9PC0, kPropane, T);
    EXPECT_DOUBLE_EQ(pures.ARK(kPropane), kOA * rtp(kPropane));
    EXPECT_DOUBLE_EQ(pures.BRK(kPropane), kOB * rtp(kPropane));
    EXPECT_EQ(pures.D1ADT(kPropane), 0.0);
    EXPECT_EQ(pures.D2ADT(kPropane), 0.0);
  }
}

TEST_F(PureVariants, LogPolynomialDerivativesAreSlopes) {
  const R8 A[3] = {-1.4, 0.3, -0.12};
  const R8 B[2] = {-0.08, 0.05};
  for (int k = 1; k <= 3; ++k) vardo95.A95(kPropane, k) = A[k - 1];
  for (int k = 1; k <= 2; ++k) vardo95.B95(kPropane, k) = B[k - 1];
  for (const R8 Tr : {0.6, 1.0, 1.8}) {
    const R8 T = Tr * comp.TC(kPropane);
    expect_slopes(SM9PC0, kPropane, T, "SM9PC0");
    const R8 L = std::log(Tr);
    EXPECT_NEAR(pures.ARK(kPropane), kOA * rtp(kPropane) * std::exp(L * (-1.4 + L * (0.3 - 0.12 * L))),
                1E-15);
  }
}

// --- variants with parameter files --------------------------------------------------------------------------------

TEST_F(PureVariants, TwuFormHasItsTwoForms) {
  const int i = kPropane;
  const R8 Tr = 0.75;
  const R8 c1 = srk_variants.CSRKP2(i, 1), c2 = srk_variants.CSRKP2(i, 2), c3 = srk_variants.CSRKP2(i, 3);
  srk_variants.P2ALPH(i) = 6;
  run(SP2PC0, i, Tr * comp.TC(i), 0);
  const R8 twu = std::pow(Tr, c3 * (c2 - 1.0)) * std::exp(c1 * (1.0 - std::pow(Tr, c2 * c3)));
  EXPECT_NEAR(pures.ARK(i), kOA * twu / Tr * rtp(i), 1E-16);
  srk_variants.P2ALPH(i) = 1;
  run(SP2PC0, i, Tr * comp.TC(i), 0);
  const R8 soave = 1.0 + c1 * (1.0 - std::sqrt(Tr));
  EXPECT_NEAR(pures.ARK(i), kOA * soave * soave / Tr * rtp(i), 1E-16);
  EXPECT_EQ(pures.BRK(i), kOB * rtp(i));
}

TEST_F(PureVariants, TwuDerivativesAreSlopesAndTheTranslationIsLeftAlone) {
  for (const I4 form : {1, 6}) {
    srk_variants.P2ALPH(kPropane) = form;
    pures.CRK(kPropane) = 4.5;
    for (const R8 Tr : {0.5, 1.0, 2.0}) expect_slopes(SP2PC0, kPropane, Tr * comp.TC(kPropane), "SP2PC0");
    EXPECT_EQ(pures.CRK(kPropane), 4.5);
    EXPECT_EQ(pures.D1CDT(kPropane), 0.0);
  }
}

TEST_F(PureVariants, OtherTwuFormsStopWithTheirMessage) {
  for (const I4 form : {0, 2, 5, 7, -1}) {
    reset_error_ring();
    srk_variants.P2ALPH(kPropane) = form;
    EXPECT_EQ(run(SP2PC0, kPropane, 300.0), status::numerical);
    EXPECT_EQ(ring_texts(), std::vector<std::string>{"ATTEMPT TO USE PRO/II WITH ALPHA NE 1 or 6"});
    EXPECT_EQ(ring.SEVER0(1), severity::error);
  }
}

class OwnCriticalData : public PureVariants {
 protected:
  static R8 alpha(I4 form, R8 Tr) {
    const int i = kPropane;
    srk_variants.APALPH(i) = form;
    EXPECT_EQ(run(SAPPC0, i, Tr * srk_variants.TCASP(i), 0), status::ok);
    const R8 scale = srk_variants.TCASP(i) / (srk_variants.PCASP(i) * 100000.0);
    EXPECT_EQ(pures.BRK(i), kOB * scale);
    return pures.ARK(i) / scale * Tr / kOA;
  }
  static R8 fom() {
    const R8 W = srk_variants.OMASP(kPropane);
    return 0.48 + 1.57 * W - 0.176 * W * W;
  }
};

TEST_F(OwnCriticalData, FormsBelowTheCriticalTemperature) {
  const R8 Tr = 0.64, u = 0.2;
  for (int k = 1; k <= 3; ++k) srk_variants.CSRKAP(kPropane, k) = 0.1 * k;
  EXPECT_NEAR(alpha(1, Tr), 1.0 / 0.8, 1E-14);
  EXPECT_NEAR(alpha(2, Tr), std::pow(1.0 + fom() * u, 2), 1E-14);
  EXPECT_NEAR(alpha(3, Tr), std::pow(1.0 + fom() * u, 2), 1E-14);
  EXPECT_NEAR(alpha(4, Tr), std::pow(1.0 + fom() * u - 0.1 * u * (0.7 - Tr), 2), 1E-14);
  EXPECT_NEAR(alpha(5, Tr), std::pow(1.0 + fom() * u - 0.1 * u * (1.0 + 0.2 * Tr + 0.3 * Tr * Tr), 2), 1E-14);
}

TEST_F(OwnCriticalData, FormsAboveTheCriticalTemperature) {
  const R8 Tr = 1.44;
  for (int k = 1; k <= 3; ++k) srk_variants.CSRKAP(kPropane, k) = 0.1 * k;
  const auto warm = [Tr](R8 DI) { return std::exp(2.0 * (1.0 - 1.0 / DI) * (1.0 - std::pow(Tr, DI))); };
  EXPECT_NEAR(alpha(1, Tr), 1.0 / 1.2, 1E-14);
  EXPECT_NEAR(alpha(2, Tr), std::pow(1.0 - 0.2 * fom(), 2), 1E-14);
  EXPECT_NEAR(alpha(3, Tr), warm(1.0 + fom() / 2.0), 1E-14);
  EXPECT_NEAR(alpha(4, Tr), warm(1.0 + fom() / 2.0 + 0.03), 1E-14);
  // No leading 1 in the exponent of form 5: alpha rises with temperature.
  EXPECT_NEAR(alpha(5, Tr), warm(fom() / 2.0 - 0.1 * (1.0 + 0.2 + 0.3)), 1E-14);
  EXPECT_GT(alpha(5, 1.6), alpha(5, 1.2));
}

TEST_F(OwnCriticalData, TheCriticalTemperatureItselfTakesTheWarmSide) {
  srk_variants.CSRKAP(kPropane, 1) = 0.4;
  for (const I4 form : {3, 4, 5}) EXPECT_DOUBLE_EQ(alpha(form, 1.0), 1.0);
  // The slopes of both sides meet in form 3; in form 4 the exponent takes twice the share of the polar term.
  for (const I4 form : {3, 4}) {
    srk_variants.APALPH(kPropane) = form;
    const R8 Tc = srk_variants.TCASP(kPropane);
    const R8 scale = Tc / (srk_variants.PCASP(kPropane) * 100000.0);
    run(SAPPC0, kPropane, Tc * (1.0 - 1E-9), 1);
    const R8 cold = pures.D1ADT(kPropane);
    run(SAPPC0, kPropane, Tc, 1);
    const R8 step = form == 4 ? -0.3 * 0.4 * kOA * scale : 0.0;
    EXPECT_NEAR(pures.D1ADT(kPropane) - cold, step, 1E-7 * std::fabs(cold)) << form;
  }
}

TEST_F(OwnCriticalData, DerivativesAreSlopesOnBothSides) {
  for (int k = 1; k <= 3; ++k) srk_variants.CSRKAP(kPropane, k) = 0.05 * k;
  for (const I4 form : {1, 2, 3, 4, 5}) {
    srk_variants.APALPH(kPropane) = form;
    for (const R8 Tr : {0.5, 0.9, 1.1, 2.0})
      expect_slopes(SAPPC0, kPropane, Tr * srk_variants.TCASP(kPropane), "SAPPC0");
  }
}

TEST_F(OwnCriticalData, CriticalDataOfTheBankPlayNoPart) {
  run(SAPPC0, kPropane, 300.0);
  const R8 a = pures.ARK(kPropane);
  comp.TC(kPropane) = comp.PC(kPropane) = comp.OMEGA(kPropane) = 1.0;
  run(SAPPC0, kPropane, 300.0);
  EXPECT_EQ(pures.ARK(kPropane), a);
}

TEST_F(OwnCriticalData, OtherFormsStopWithTheirMessage) {
  for (const I4 form : {0, 6, -3}) {
    reset_error_ring();
    srk_variants.APALPH(kPropane) = form;
    EXPECT_EQ(run(SAPPC0, kPropane, 300.0), status::numerical);
    EXPECT_EQ(ring_texts(), std::vector<std::string>{"ATTEMPT TO USE AspenPlus WITH ALPHA NE 1, 2, 3 or 4"});
  }
}

// --- the choice ---------------------------------------------------------------------------------------------------

TEST_F(PureVariants, EveryOriginHasItsRoutine) {
  const struct {
    I4 code;
    Routine routine;
  } rows[] = {{model::vardo1, SSMPC0},     {model::vardo5, SSMPC5},        {model::vd2d1, S2DPC0},
              {model::srk, SWLPC0},        {model::peng_robinson, SWLPC1}, {model::vardo95, SM9PC0},
              {model::srk_simsci, SP2PC0}, {model::srk_aspen, SAPPC0}};
  for (const auto& row : rows) {
    const I4 slot = load_model(row.code);
    use_constants(slot);
    Vec<bool, 6> all{};
    all.fill(true);
    I4 code = 0;
    SESPC0(280.0, slot, all, 1, 6, code);
    ASSERT_EQ(code, status::ok) << row.code;
    const PureTables chosen = pures;
    row.routine(280.0, 2, 1, 6, code);
    for (int i = 1; i <= 6; ++i) {
      EXPECT_EQ(chosen.ARK(i), pures.ARK(i)) << row.code;
      EXPECT_EQ(chosen.D2ADT(i), pures.D2ADT(i)) << row.code;
      EXPECT_EQ(chosen.BRK(i), pures.BRK(i)) << row.code;
    }
  }
}

TEST_F(PureVariants, AMissingFormFailsTheCallAndNothingOfItIsKept) {
  const I4 slot = load_model(model::srk_simsci);
  srk_variants.P2ALPH(kEthane) = 0;
  ++setup.generation;
  Call call;
  call.composition({0.5, 0.5});
  call.args.MODEL = slot;
  call.args.T = 250.0;
  call.args.P = 1E6;
  call.args.LFUG = true;
  call.run();
  EXPECT_EQ(call.args.ICODE, status::numerical);
  call.run();
  EXPECT_EQ(call.args.ICODE, status::numerical);
  srk_variants.P2ALPH(kEthane) = 6;
  ++setup.generation;
  call.run();
  EXPECT_EQ(call.args.ICODE, status::ok);
}

TEST_F(PureVariants, HydrogenHeliumAndNitrogenKeepTheirConstantsOfB) {
  for (const int i : {static_cast<int>(kHydrogen), static_cast<int>(kNitrogen)}) {
    const R8 T = 1.5 * comp.TC(i);
    run(SSMPC5, i, T, 0);
    const R8 b = pures.BRK(i);
    comp.PARABF(i, 11) *= 1.2;
    run(SSMPC5, i, T, 0);
    EXPECT_EQ(pures.BRK(i), b);
  }
  comp.ICS(kPropane) = text<4>("HE");
  run(SSMPC5, kPropane, 2.0 * comp.TC(kPropane), 0);
  EXPECT_NEAR(pures.BRK(kPropane), (0.105 - 0.0284 * 0.5 * std::exp(1.0 / 1.5)) * rtp(kPropane), 1E-15);
}

}  // namespace
}  // namespace talix::test
