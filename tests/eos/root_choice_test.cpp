// Physical roots, their types and the choice between them: SCBDS0 to SCBDS3.
#include "eos/scb_root_choice.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "engine/codes.h"
#include "engine/error_ring.h"
#include "eos/cubic_record.h"
#include "support/test_support.h"

namespace talix::test {
namespace {

// Reduced states: T 1 K, so that P is A or B over a or b. a and b give the critical point at T 1, P 1.
class RootChoice : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_error_ring();
    constants(0.0, 1.0, 0.42748023, 0.08664035);
  }
  static void constants(R8 c1, R8 c2, R8 oa, R8 ob) {
    cur = {};
    cur.C1PAR = c1;
    cur.C2PAR = c2;
    cur.OAPAR = oa;
    cur.OBPAR = ob;
  }
  struct Result {
    R8 Z = -1.0, ZOTHER = -1.0, ZGAP = -1.0;
    I4 IPHRTN = 0, ICODE = 0;
  };
  // Reduced temperature Tr (a constant), reduced pressure Pr.
  static Result choose(R8 Tr, R8 Pr, I4 IPHASE, I4 KROOT = root_option::real_only) {
    QVec Q{};
    Q(0) = 1.0;
    Q(1) = cur.OAPAR / Tr;
    Q(2) = cur.OBPAR;
    Result r;
    SCBDS3(fun::cubic, Q, Tr, Pr, IPHASE, r.Z, r.ZOTHER, r.ZGAP, KROOT, r.IPHRTN, r.ICODE);
    return r;
  }
  // Reduced pressure at compressibility z of the state, P/P - 1 of the equation.
  static R8 residual(R8 Tr, R8 Pr, R8 z) {
    const R8 A = cur.OAPAR * Pr / (Tr * Tr);
    const R8 B = cur.OBPAR * Pr / Tr;
    return 1.0 / (z - B) - A / ((z + cur.C1PAR * B) * (z + cur.C2PAR * B)) - 1.0;
  }
};

TEST_F(RootChoice, RootsSolveTheEquationForEveryKindOfCubic) {
  const R8 pairs[3][4] = {{0.0, 1.0, 0.42748023, 0.08664035},
                          {0.0, 0.0, 0.421875, 0.125},
                          {-0.41421354, 2.4142137, 0.45723553, 0.07779607}};
  for (const auto& p : pairs) {
    constants(p[0], p[1], p[2], p[3]);
    for (const R8 Tr : {0.6, 0.8, 0.95, 1.3, 3.0}) {
      for (const R8 Pr : {0.01, 0.2, 0.9, 5.0, 30.0}) {
        for (const I4 type : {phase::vapour, phase::liquid, phase::gibbs}) {
          const Result r = choose(Tr, Pr, type);
          ASSERT_EQ(r.ICODE, status::ok);
          EXPECT_NEAR(residual(Tr, Pr, r.Z), 0.0, 1E-7) << Tr << " " << Pr << " " << type;
        }
      }
    }
  }
}

TEST_F(RootChoice, SingleRootAbovePseudoCriticalHasNoTypeForEveryRequest) {
  for (const I4 type : {phase::vapour, phase::liquid, phase::gibbs, phase::hydrate, phase::solid}) {
    const Result r = choose(1.3, 0.5, type);
    EXPECT_EQ(r.ICODE, status::ok);
    EXPECT_EQ(r.IPHRTN, phase::single);
  }
}

TEST_F(RootChoice, CompressedLiquidBelowPseudoCriticalIsLiquid) {
  const Result r = choose(0.9, 10.0, phase::gibbs);
  EXPECT_EQ(r.IPHRTN, phase::liquid);
}

TEST_F(RootChoice, LiquidOnlyStateAskedForVapourReturnsItsLiquidRootInSilence) {
  const Result r = choose(0.8, 5.0, phase::vapour);
  EXPECT_EQ(r.ICODE, status::ok);
  EXPECT_EQ(r.IPHRTN, phase::liquid);
  EXPECT_EQ(r.ZOTHER, 0.0);
  EXPECT_EQ(ring.count, 0);
}

TEST_F(RootChoice, PseudoVapourRootIsTheLowerStationaryPoint) {
  const R8 Tr = 0.9;
  const R8 Pr = 0.75;
  const Result r = choose(Tr, Pr, phase::vapour, root_option::pseudo);
  ASSERT_EQ(r.ICODE, status::ok);
  ASSERT_EQ(r.IPHRTN, phase::pseudo_root);
  ASSERT_EQ(ring.count, 1);
  EXPECT_EQ(ring.SEVER0(1), severity::warning);
  EXPECT_EQ(trimmed(ring.NAMER0(1)), "SCBDS2");
  EXPECT_EQ(ring_texts().at(0), "Pseudo vapour root used in equation of state");
  // Monic cubic in y for c1 = 0, c2 = 1: y^3 + CB y^2 + CC y + CD.
  const R8 A = cur.OAPAR * Pr / (Tr * Tr);
  const R8 B = cur.OBPAR * Pr / Tr;
  const R8 CB = (-A / B + 1.0 + B) / (A / B);
  const R8 CC = 1.0 / (A / B);
  const R8 y = B / r.Z;
  EXPECT_NEAR(3.0 * y * y + 2.0 * CB * y + CC, 0.0, 1E-14);
  EXPECT_LT(y, -CB / 3.0);  // the lower of the two
  EXPECT_EQ(r.ZOTHER, 0.0);
}

TEST_F(RootChoice, PseudoLiquidRootIsTheUpperStationaryPoint) {
  // A vapour-only state close to the spinodal of the liquid.
  Result r;
  R8 Pr = 0.0;
  for (Pr = 0.36; Pr > 0.01 && r.IPHRTN != phase::pseudo_root; Pr -= 0.01) {
    reset_error_ring();
    r = choose(0.9, Pr, phase::liquid, root_option::pseudo);
  }
  ASSERT_EQ(r.IPHRTN, phase::pseudo_root);
  EXPECT_EQ(r.ICODE, status::ok);
  EXPECT_EQ(ring_texts().at(0), "Pseudo liquid root used in equation of state");
  EXPECT_EQ(ring.SEVER0(1), severity::warning);
}

TEST_F(RootChoice, WithoutStationaryPointTheTrueRootStaysWithItsType) {
  const Result liquid = choose(0.8, 50.0, phase::vapour, root_option::pseudo);
  EXPECT_EQ(liquid.ICODE, status::ok);
  EXPECT_EQ(liquid.IPHRTN, phase::liquid);
  EXPECT_EQ(ring_texts().at(0), "No (pseudo)root of vapour type available");
  EXPECT_EQ(ring.SEVER0(1), severity::warning);

  reset_error_ring();
  R8 y = 0.05;
  I4 code = 0;
  SCBDS2(y, 1.0, 1.0, phase::liquid, phase::vapour, code);  // discriminant below zero
  EXPECT_EQ(code, status::ok);
  EXPECT_EQ(y, 0.05);
  EXPECT_EQ(ring_texts().at(0), "No (pseudo)root of liquid type available");
}

TEST_F(RootChoice, StationaryPointOutsideTheUnitIntervalIsNoPseudoRoot) {
  R8 y = 0.4;
  I4 code = 0;
  SCBDS2(y, -6.0, 3.0, phase::liquid, phase::vapour, code);  // stationary points 0.27 and 3.73
  EXPECT_EQ(code, status::ok);
  EXPECT_EQ(y, 0.4);
  EXPECT_EQ(ring_texts().at(0), "No (pseudo)root of liquid type available");
  reset_error_ring();
  SCBDS2(y, -6.0, 3.0, phase::vapour, phase::liquid, code);
  EXPECT_EQ(code, status::failed);
  EXPECT_NEAR(y, 2.0 - std::sqrt(3.0), 1E-15);
}

TEST_F(RootChoice, PseudoRootLeavesOtherPairsAlone) {
  const I4 types[] = {phase::vapour, phase::liquid, phase::single, phase::middle};
  for (const I4 asked : {phase::vapour, phase::liquid, phase::gibbs}) {
    for (const I4 found : types) {
      if ((asked == phase::vapour && found == phase::liquid) ||
          (asked == phase::liquid && found == phase::vapour))
        continue;
      R8 y = 0.4;
      I4 code = 0;
      SCBDS2(y, -6.0, 3.0, asked, found, code);
      EXPECT_EQ(code, status::ok);
      EXPECT_EQ(y, 0.4);
    }
  }
  EXPECT_EQ(ring.count, 0);
}

TEST_F(RootChoice, GibbsChoiceFollowsTheSaturationPressure) {
  // On a fine ladder of pressures the choice changes from vapour to liquid once, where the fugacities meet.
  bool liquid = false;
  R8 last = 0.0;
  for (R8 Pr = 0.30; Pr < 0.75; Pr += 0.002) {
    const Result r = choose(0.9, Pr, phase::gibbs);
    ASSERT_EQ(r.ICODE, status::ok);
    if (r.IPHRTN == phase::liquid && !liquid) {
      liquid = true;
      last = Pr;
      EXPECT_LT(r.ZGAP, 0.02);
    }
    EXPECT_EQ(r.IPHRTN, liquid ? phase::liquid : phase::vapour);
  }
  ASSERT_TRUE(liquid);
  const Result v = choose(0.9, last, phase::vapour);
  const Result l = choose(0.9, last, phase::liquid);
  EXPECT_EQ(v.IPHRTN, phase::vapour);
  EXPECT_EQ(l.IPHRTN, phase::liquid);
  EXPECT_DOUBLE_EQ(v.ZOTHER, l.Z);
  EXPECT_DOUBLE_EQ(l.ZOTHER, v.Z);
  EXPECT_EQ(v.ZGAP, 0.0);
}

TEST_F(RootChoice, GibbsMeasureIsTheDifferenceOfTheFugacities) {
  for (const R8 c1 : {0.0, -0.41421354}) {
    if (c1 == 0.0) {
      constants(0.0, 0.0, 0.421875, 0.125);
    } else {
      constants(c1, 2.4142137, 0.45723553, 0.07779607);
    }
    const R8 Tr = 0.85;
    const R8 Pr = 0.4;
    const R8 A = cur.OAPAR * Pr / (Tr * Tr);
    const R8 B = cur.OBPAR * Pr / Tr;
    const auto ln_phi = [&](R8 z) {
      const R8 attraction = cur.C1PAR == cur.C2PAR ? -A / z
                                                   : A / ((cur.C2PAR - cur.C1PAR) * B) *
                                                         std::log((z + cur.C1PAR * B) / (z + cur.C2PAR * B));
      return z - 1.0 - std::log(z - B) + attraction;
    };
    const Result r = choose(Tr, Pr, phase::gibbs);
    const R8 other = r.ZOTHER;
    EXPECT_NEAR(r.ZGAP, std::abs(ln_phi(r.Z) - ln_phi(other)), 1E-9);
    EXPECT_LE(ln_phi(r.Z), ln_phi(other));
  }
}

TEST_F(RootChoice, TieInGibbsEnergyGoesToVapour) {
  // The saturation pressure by bisection down to neighbouring numbers; at some temperatures the measure
  // meets 0 exactly.
  int ties = 0;
  for (int k = 0; k < 60; ++k) {
    const R8 Tr = 0.8 + 0.002 * k;
    R8 low = 0.05;
    R8 high = 1.0;
    for (int step = 0; step < 70; ++step) {
      const R8 Pr = (low + high) / 2.0;
      const Result r = choose(Tr, Pr, phase::gibbs);
      if (r.ZGAP == 0.0 && r.Z != r.ZOTHER) {
        ++ties;
        EXPECT_EQ(r.IPHRTN, phase::vapour);
        EXPECT_GT(r.Z, r.ZOTHER);
        break;
      }
      (r.IPHRTN == phase::vapour ? low : high) = Pr;
    }
  }
  EXPECT_GT(ties, 0);
}

TEST_F(RootChoice, OneRootLeavesItselfAsTheOtherAfterAGibbsChoice) {
  const Result gibbs = choose(1.3, 0.5, phase::gibbs);
  EXPECT_EQ(gibbs.ZGAP, 0.0);
  EXPECT_EQ(gibbs.ZOTHER, gibbs.Z);
  EXPECT_EQ(choose(1.3, 0.5, phase::vapour).ZOTHER, 0.0);
}

TEST_F(RootChoice, ZeroScaleDoesNotDivide) {
  // A/B = 1 + B with c1 c2 = -1 makes the leading coefficient exactly 0.
  constants(-0.5, 2.0, 0.45, 0.078);
  QVec Q{};
  Q(0) = 1.0;
  Q(2) = 0.25;
  Q(1) = 0.25 * 1.25;
  for (const I4 option : {root_option::real_only, root_option::pseudo}) {
    R8 Z = 0.0, ZOTHER = 0.0, ZGAP = 0.0;
    I4 type = 0, code = 0;
    SCBDS3(fun::cubic, Q, 1.0, 1.0, phase::vapour, Z, ZOTHER, ZGAP, option, type, code);
    ASSERT_EQ(code, status::ok);
    EXPECT_NEAR(1.0 / (Z - 0.25) - Q(1) / ((Z - 0.125) * (Z + 0.5)), 1.0, 1E-9);
  }
}

TEST_F(RootChoice, NoRootBetweenZeroAndOneFails) {
  QVec Q{};
  Q(0) = 1.0;
  Q(1) = 1.0;
  Q(2) = -1.0;
  R8 Z = 0.0, ZOTHER = 0.0, ZGAP = 0.0;
  I4 type = 0, code = 0;
  SCBDS3(fun::cubic, Q, 1.0, 1.0, phase::gibbs, Z, ZOTHER, ZGAP, root_option::real_only, type, code);
  EXPECT_EQ(code, status::no_root);
  EXPECT_EQ(type, phase::no_root);
  EXPECT_EQ(ring_texts().back(), "Equation of state has no physical root");
  EXPECT_EQ(ring.SEVER0(ring.count), severity::error);
}

TEST_F(RootChoice, TooSmallAFails) {
  QVec Q{};
  Q(2) = 1.0;
  for (const R8 a : {0.0, 1E-37, -1.0, std::numeric_limits<R8>::quiet_NaN()}) {
    reset_error_ring();
    Q(1) = a;
    R8 Z = 0.0, ZOTHER = 1.0, ZGAP = 1.0;
    I4 type = 0, code = 0;
    SCBDS3(fun::cubic, Q, 1.0, 1.0, phase::gibbs, Z, ZOTHER, ZGAP, root_option::real_only, type, code);
    EXPECT_EQ(code, status::numerical);
    EXPECT_EQ(ring_texts().at(0), "Value of VARDO A-parameter too small");
    EXPECT_EQ(ring.SEVER0(1), severity::error);
    EXPECT_EQ(ZOTHER, 0.0);
  }
}

TEST_F(RootChoice, NotANumberInBEndsWithoutRoot) {
  QVec Q{};
  Q(1) = 1.0;
  Q(2) = std::numeric_limits<R8>::quiet_NaN();
  R8 Z = 0.0, ZOTHER = 0.0, ZGAP = 0.0;
  I4 type = 0, code = 0;
  SCBDS3(fun::cubic, Q, 1.0, 1.0, phase::gibbs, Z, ZOTHER, ZGAP, root_option::real_only, type, code);
  EXPECT_EQ(code, status::no_root);
}

TEST_F(RootChoice, IdealGasNeedsNoSearch) {
  const QVec Q{};
  R8 Z = 0.0, ZOTHER = 0.0, ZGAP = 1.0;
  I4 type = 0, code = 0;
  SCBDS3(fun::ideal_gas, Q, 300.0, 1E5, phase::liquid, Z, ZOTHER, ZGAP, root_option::real_only, type, code);
  EXPECT_EQ(code, status::ok);
  EXPECT_EQ(Z, 1.0);
  EXPECT_EQ(ZOTHER, 1.0);
  EXPECT_EQ(type, phase::single);
}

TEST_F(RootChoice, UnknownModelFunctionFails) {
  const QVec Q{};
  R8 Z = 0.0, ZOTHER = 0.0, ZGAP = 0.0;
  I4 type = 0, code = 0;
  SCBDS3(fun::bwrs, Q, 300.0, 1E5, phase::liquid, Z, ZOTHER, ZGAP, root_option::real_only, type, code);
  EXPECT_EQ(code, status::not_available);
  EXPECT_EQ(ring_texts().at(0), "Requested model not available");
}

TEST_F(RootChoice, OneRootOfAnotherModelIsImpossible) {
  I4 code = 0;
  RootTypes types{};
  RootTable roots{};
  const QVec Q{};
  SCBDS1(fun::ideal_gas, Q, 300.0, 1, roots, types, code);
  EXPECT_EQ(code, status::not_available);
  EXPECT_EQ(ring_texts().at(0), "Equation of state  model not of type VARDO (impossible)");
  EXPECT_EQ(ring.SEVER0(1), severity::error);
}

TEST_F(RootChoice, TwoRootsWarnAndGoOn) {
  I4 code = 0;
  RootTypes types{};
  RootTable roots{};
  roots(1) = 0.8;
  roots(2) = 0.1;
  const QVec Q{};
  SCBDS1(fun::cubic, Q, 300.0, 2, roots, types, code);
  EXPECT_EQ(code, status::ok);
  EXPECT_EQ(types(1), phase::liquid);
  EXPECT_EQ(types(2), phase::vapour);
  EXPECT_EQ(ring_texts().at(0), "Exactly two physical equation of state roots (impossible)");
  EXPECT_EQ(ring.SEVER0(1), severity::warning);
}

TEST_F(RootChoice, SingleRootTypeFollowsTemperatureThenPacking) {
  const R8 packing = 3.0 * cur.OBPAR / (1.0 + (1.0 - cur.C1PAR - cur.C2PAR) * cur.OBPAR);
  QVec Q{};
  Q(1) = cur.OAPAR;  // pseudo-critical temperature equals T: not above it
  Q(2) = cur.OBPAR;
  RootTypes types{};
  RootTable roots{};
  I4 code = 0;
  roots(1) = packing;
  SCBDS1(fun::cubic, Q, 1.0, 1, roots, types, code);
  EXPECT_EQ(types(1), phase::vapour);
  roots(1) = std::nextafter(packing, 1.0);
  SCBDS1(fun::cubic, Q, 1.0, 1, roots, types, code);
  EXPECT_EQ(types(1), phase::liquid);
  Q(1) *= 1.0 - 1E-12;
  SCBDS1(fun::cubic, Q, 1.0, 1, roots, types, code);
  EXPECT_EQ(types(1), phase::single);
}

TEST_F(RootChoice, OnlyRootsBetweenZeroAndOneAreKeptDensestFirst) {
  I4 count = 0;
  I4 code = 0;
  RootTable roots{};
  // (y - 0.2)(y - 0.6)(y - 1.5) and the same with a negative root.
  SCBDS0(1.0, -2.3, 1.32, -0.18, 1E-12, 25, count, roots, code);
  ASSERT_EQ(count, 2);
  EXPECT_NEAR(roots(1), 0.6, 1E-13);
  EXPECT_NEAR(roots(2), 0.2, 1E-13);
  SCBDS0(1.0, -0.3, -0.28, 0.06, 1E-12, 25, count, roots, code);
  ASSERT_EQ(count, 2);
  SCBDS0(0.0, 0.0, 0.0, 1.0, 1E-12, 25, count, roots, code);
  EXPECT_EQ(code, status::numerical);
}

TEST_F(RootChoice, CoefficientsTooSmallReachTheCaller) {
  I4 count = 1;
  I4 code = 0;
  RootTable roots{};
  SCBDS0(1E-40, 1E-40, 1E-40, 1.0, 1E-12, 25, count, roots, code);
  EXPECT_EQ(code, status::numerical);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(ring_texts().at(0), "Coefficients A, B and C in cubic equation too small");
}

}  // namespace
}  // namespace talix::test
