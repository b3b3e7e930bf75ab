// The door to the equations of state and the frame of the cubic: SES000, SSM000.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "database/component_record.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/model_record.h"
#include "eos/cubic_record.h"
#include "support/eos_fixture.h"
#include "support/test_support.h"

namespace talix::test {
namespace {

constexpr R8 kBar = 1E5;

class Dispatcher : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_fixture();
    set_pair_parameters();
    call.composition({0.7, 0.2, 0.1});
    call.args.T = 320.0;
    call.args.P = 30.0 * kBar;
    call.args.LFUG = true;
    call.args.LVOL = true;
  }
  Call call;
  EosArgs& a = call.args;
};

TEST_F(Dispatcher, UnknownModelFunctionFails) {
  for (const I4 function : {fun::steam, fun::hydrate, 0}) {
    reset_error_ring();
    models.MODFUN(kCubic) = function;
    call.run();
    EXPECT_EQ(a.ICODE, status::model_error);
    ASSERT_EQ(ring.count, 1);
    EXPECT_EQ(ring.SEVER0(1), severity::error);
    EXPECT_EQ(trimmed(ring.NAMER0(1)), "SES000");
    EXPECT_EQ(ring_texts().at(0), "Requested e.o.s. model not available");
  }
}

TEST_F(Dispatcher, SlotOutsideTheTableFails) {
  for (const I4 slot : {0, -1, 11}) {
    a.MODEL = slot;
    call.run();
    EXPECT_EQ(a.ICODE, status::model_error);
  }
}

TEST_F(Dispatcher, NullModelComputesNothingAndSucceeds) {
  models.MODFUN(kCubic) = fun::saft;
  a.Z = 5.0;
  a.V = 6.0;
  a.CP = 7.0;
  call.FUG(1) = 8.0;
  a.ICODE = 0;
  call.run();
  EXPECT_EQ(a.ICODE, status::ok);
  EXPECT_EQ(a.Z, 5.0);
  EXPECT_EQ(a.V, 6.0);
  EXPECT_EQ(a.CP, 7.0);
  EXPECT_EQ(call.FUG(1), 8.0);
}

TEST_F(Dispatcher, ModelsThatAreNotBuiltAnswerNotAvailable) {
  for (const I4 function : {fun::cpa, fun::hard_sphere_chain}) {
    reset_error_ring();
    models.MODFUN(kCubic) = function;
    call.run();
    EXPECT_EQ(a.ICODE, status::not_available);
    EXPECT_EQ(ring_texts().at(0), "Could not compute basic e.o.s. properties");
    EXPECT_EQ(ring.SEVER0(1), severity::error);
  }
}

TEST_F(Dispatcher, SumOfFractionsTooLow) {
  for (const R8 x : {0.0, 1E-21, std::numeric_limits<R8>::quiet_NaN()}) {
    reset_error_ring();
    call.composition({x, 0.0});
    call.run();
    EXPECT_EQ(a.ICODE, status::input);
    ASSERT_EQ(ring.count, 1);
    EXPECT_EQ(ring_texts().at(0), "Sum of mole fractions too low");
    EXPECT_EQ(ring.SEVER0(1), severity::error);
  }
  call.composition({1.0, -1.0});
  call.run();
  EXPECT_EQ(a.ICODE, status::input);
}

TEST_F(Dispatcher, ComponentCountOutOfBoundsIsRefused) {
  for (const I4 n : {0, 51, -51}) {
    a.NCOMP = n;
    call.run();
    EXPECT_EQ(a.ICODE, status::input);
  }
}

TEST_F(Dispatcher, FractionsNeedNotBeNormalised) {
  call.run();
  const R8 Z = a.Z;
  const R8 ln_phi = call.FUG(2);
  call.composition({2.1, 0.6, 0.3});
  call.run();
  EXPECT_NEAR(a.Z, Z, 1E-15);
  EXPECT_NEAR(call.FUG(2), ln_phi, 1E-14);
}

TEST_F(Dispatcher, NegativeCountIsAPureComponentWhateverTheCompositionHolds) {
  call.composition({0.0, 0.0, 1.0});
  call.run();
  const R8 Z = a.Z;
  const R8 ln_phi = call.FUG(3);
  call.composition({0.3, 0.3, 0.4, 9.0});
  a.NCOMP = -3;
  call.run();
  EXPECT_EQ(a.ICODE, status::ok);
  EXPECT_NEAR(a.Z, Z, 1E-13);
  EXPECT_NEAR(call.FUG(3), ln_phi, 1E-13);
  a.XIN = nullptr;
  call.run();
  EXPECT_EQ(a.ICODE, status::ok);
}

TEST_F(Dispatcher, ZeroFractionRunsAtTheFloorWithoutRenormalising) {
  call.composition({0.7, 0.3, 0.0});
  call.run();
  const R8 Z = a.Z;
  const R8 trace = call.FUG(3);
  EXPECT_TRUE(std::isfinite(trace));
  call.composition({0.7, 0.3, 1E-26});
  call.run();
  EXPECT_EQ(a.Z, Z);
  EXPECT_EQ(call.FUG(3), trace);
  EXPECT_EQ(call.x(3), 1E-26);
  call.composition({0.7, 0.3});
  call.run();
  EXPECT_EQ(a.Z, Z);
}

TEST_F(Dispatcher, IllegalPhaseType) {
  for (const I4 type : {phase::single, phase::condensed, 0}) {
    reset_error_ring();
    a.IPHASE = type;
    call.run();
    EXPECT_EQ(a.ICODE, status::not_available);
    ASSERT_EQ(ring.count, 2);
    EXPECT_EQ(ring_texts().at(0), "Illegal phase type");
    EXPECT_EQ(ring.SEVER0(1), severity::error);
    EXPECT_EQ(trimmed(ring.NAMER0(1)), "SSM000");
    EXPECT_EQ(ring_texts().at(1), "Could not compute basic e.o.s. properties");
  }
}

TEST_F(Dispatcher, FailedRootSearchIsReportedOnTheWayUp) {
  a.P = 0.0;
  call.run();
  EXPECT_EQ(a.ICODE, status::numerical);
  EXPECT_EQ(ring_texts(), (std::vector<std::string>{"Value of VARDO A-parameter too small",
                                                    "Could not solve cubic equation of state",
                                                    "Could not compute basic e.o.s. properties"}));
}

TEST_F(Dispatcher, NotANumberEndsWithAStatus) {
  const R8 nan = std::numeric_limits<R8>::quiet_NaN();
  for (const I4 type : {phase::vapour, phase::liquid, phase::gibbs, phase::given_volume}) {
    for (int field = 0; field < 4; ++field) {
      a.T = field == 0 ? nan : 320.0;
      a.P = field == 1 ? nan : 30.0 * kBar;
      a.V = field == 2 ? nan : 1E-3;
      call.composition({field == 3 ? nan : 0.7, 0.3});
      a.IPHASE = type;
      call.run();
      const bool used = field == 0 || field == 3 || (field == 2) == (type == phase::given_volume);
      if (used) {
        EXPECT_NE(a.ICODE, status::ok) << type << " " << field;
      } else {
        EXPECT_EQ(a.ICODE, status::ok) << type << " " << field;
      }
    }
  }
}

TEST_F(Dispatcher, InfiniteInputEndsWithAStatus) {
  const R8 inf = std::numeric_limits<R8>::infinity();
  for (const I4 type : {phase::vapour, phase::liquid, phase::gibbs}) {
    a.IPHASE = type;
    a.T = inf;
    a.P = 30.0 * kBar;
    call.run();
    EXPECT_NE(a.ICODE, status::ok);
    a.T = 320.0;
    a.P = inf;
    call.run();
    EXPECT_NE(a.ICODE, status::ok);
  }
}

TEST_F(Dispatcher, GivenVolumeReturnsThePressureOfTheRoot) {
  for (const int slot : {kCubic, kEqualC, kNegativeC, kIdealGas}) {
    a.MODEL = slot;
    a.IPHASE = phase::vapour;
    a.P = 30.0 * kBar;
    call.run();
    ASSERT_EQ(a.ICODE, status::ok);
    const R8 ln_phi = call.FUG(1);
    const R8 V = a.V;
    const R8 Z = a.Z;
    a.P = -1.0;
    a.Z = 0.0;
    a.IPHASE = phase::given_volume;
    call.run();
    ASSERT_EQ(a.ICODE, status::ok);
    EXPECT_NEAR(a.P, 30.0 * kBar, 1E-5);
    EXPECT_NEAR(a.V, V, 1E-15 * V);
    EXPECT_NEAR(a.Z, Z, 1E-11);
    EXPECT_NEAR(call.FUG(1), ln_phi, 1E-11);
  }
}

TEST_F(Dispatcher, GivenVolumeAtOrBelowTheCoVolumeFails) {
  a.IPHASE = phase::given_volume;
  a.NCOMP = -kPropane;
  a.V = 1E-3;
  call.run();
  const R8 b = pures.BRK(kPropane);
  // The largest volume whose reduced value is b, and smaller ones.
  for (const R8 factor : {1.0, 0.999999, 0.5, 1E-3, 0.0, -1.0}) {
    reset_error_ring();
    a.V = factor * b * kGasConstant;
    call.run();
    EXPECT_EQ(a.ICODE, status::numerical) << factor;
    ASSERT_EQ(ring.count, 3) << factor;
    EXPECT_EQ(ring_texts().at(0), "Volume below co-volume (v < b) in equation of state");
    EXPECT_EQ(ring_texts().at(1), "Could not evaluate expressions related to e.o.s. model function");
    EXPECT_EQ(ring_texts().at(2), "Could not compute basic e.o.s. properties");
  }
}

TEST_F(Dispatcher, NegativePressureOfAGivenVolumeFailsWithoutAMessageOfTheFrame) {
  // Inside the loop of the isotherm of a cold liquid.
  a.NCOMP = -kDecane;
  a.T = 300.0;
  a.IPHASE = phase::liquid;
  a.P = 1.0 * kBar;
  call.run();
  ASSERT_EQ(a.ICODE, status::ok);
  a.IPHASE = phase::given_volume;
  a.V *= 1.2;
  call.run();
  EXPECT_LT(a.P, 0.0);
  EXPECT_EQ(a.ICODE, status::numerical);
  EXPECT_EQ(ring_texts(), std::vector<std::string>{"Could not compute basic e.o.s. properties"});
}

TEST_F(Dispatcher, IdealGasOfAnyComposition) {
  a.MODEL = kIdealGas;
  call.want_all();
  for (const I4 type : {phase::vapour, phase::liquid, phase::gibbs}) {
    a.IPHASE = type;
    call.run();
    ASSERT_EQ(a.ICODE, status::ok);
    EXPECT_EQ(a.Z, 1.0);
    EXPECT_EQ(a.ZOTHER, 1.0);
    EXPECT_EQ(a.IPHRTN, phase::single);
    EXPECT_NEAR(a.V, kGasConstant * 320.0 / (30.0 * kBar), 1E-18);
    EXPECT_EQ(a.ZT, 0.0);
    EXPECT_EQ(a.ZP, 0.0);
    EXPECT_DOUBLE_EQ(a.KAPT, 1.0 / a.P);
    EXPECT_DOUBLE_EQ(a.BETA, 1.0 / a.T);
    EXPECT_NEAR(a.JTC, 0.0, 1E-20);
    for (int i = 1; i <= 3; ++i) {
      EXPECT_EQ(call.FUG(i), 0.0);
      EXPECT_EQ(call.FUGTL(i), 0.0);
      EXPECT_EQ(call.FUGPL(i), 0.0);
      EXPECT_EQ(call.ZN(i), 0.0);
      for (int j = 1; j <= 3; ++j) EXPECT_EQ(call.FUGN(i, j), 0.0);
    }
  }
}

TEST_F(Dispatcher, SingleRootAbovePseudoCriticalHasNoTypeForEveryRequest) {
  a.T = 600.0;
  for (const I4 type : {phase::vapour, phase::liquid, phase::gibbs, phase::hydrate, phase::solid}) {
    a.IPHASE = type;
    call.run();
    EXPECT_EQ(a.IPHRTN, phase::single);
  }
}

TEST_F(Dispatcher, PseudoRootIsFollowedByTheWarningOfItsPressure) {
  a.NCOMP = -kPropane;
  a.T = 330.0;
  a.P = 29.0 * kBar;
  a.KROOT = root_option::pseudo;
  a.IPHASE = phase::vapour;
  bool met = false;
  for (; a.P < 60.0 * kBar && !met; a.P += kBar / 2.0) {
    reset_error_ring();
    call.run();
    ASSERT_EQ(a.ICODE, status::ok);
    met = a.IPHRTN == phase::pseudo_root;
  }
  ASSERT_TRUE(met);
  EXPECT_EQ(ring_texts(), (std::vector<std::string>{"Pseudo vapour root used in equation of state",
                                                    "Backcalculated pressure not equal to input pressure"}));
}

TEST_F(Dispatcher, ResidualRequestLeavesTheDerivedCoefficientsZero) {
  call.want_all();
  a.IHTYPE = thermal::residual;
  a.KAPS = a.DPDTS = a.JTC = a.WSOUND = 9.0;
  call.run();
  EXPECT_EQ(a.KAPS, 0.0);
  EXPECT_EQ(a.DPDTS, 0.0);
  EXPECT_EQ(a.JTC, 0.0);
  EXPECT_EQ(a.WSOUND, 0.0);
  EXPECT_LT(a.H, 0.0);
  EXPECT_LT(a.S, 0.0);
  EXPECT_GT(a.CP, 0.0);
  EXPECT_NE(a.CV, 0.0);
}

TEST_F(Dispatcher, IdealGasRequestOfACubicKeepsItsVolume) {
  call.want_all();
  a.IHTYPE = thermal::ideal_gas;
  call.run();
  EXPECT_LT(a.Z, 0.95);
  EXPECT_EQ(a.DLVTV, 0.0);
  EXPECT_EQ(a.DKAPT, 0.0);
  EXPECT_DOUBLE_EQ(a.KAPT, 1.0 / a.P);
  EXPECT_DOUBLE_EQ(a.CP - a.CV, kGasConstant);
}

TEST_F(Dispatcher, WithoutThermalRequestItsResultsAreZero) {
  a.BETA = a.KAPS = a.KAPT = a.CP = a.CV = a.DPDTS = a.DPDTV = a.JTC = a.WSOUND = a.DKAPT = a.DLVTV = 9.0;
  call.run();
  for (const R8 result :
       {a.BETA, a.KAPS, a.KAPT, a.CP, a.CV, a.DPDTS, a.DPDTV, a.JTC, a.WSOUND, a.DKAPT, a.DLVTV})
    EXPECT_EQ(result, 0.0);
}

TEST_F(Dispatcher, ThermalRequestNeedsNoRoomForFugacities) {
  call.want_all();
  call.run();
  const R8 H = a.H;
  const R8 partial = call.HNR(2);
  Call other;
  other.composition({0.7, 0.2, 0.1});
  other.args.T = 320.0;
  other.args.P = 30.0 * kBar;
  other.args.LTHERM = true;
  other.args.LDTHERM(3) = true;
  other.args.FUG = nullptr;
  other.args.FUGTL = nullptr;
  other.run();
  EXPECT_EQ(other.args.H, H);
  EXPECT_EQ(other.HNR(2), partial);
}

// An ideal gas with the translation c_i = k_i T of its components, c over R in K/Pa.
class TranslatedIdealGas : public Dispatcher {
 protected:
  void SetUp() override {
    Dispatcher::SetUp();
    models.MODPUR(kIdealGas) = pure::soave;
    a.MODEL = kIdealGas;
    call.want_all();
    a.IHTYPE = thermal::residual;
    set_translation(320.0);
  }
  void set_translation(R8 T) {
    for (int i = 1; i <= 3; ++i) {
      pures.CRK(i) = 1E-9 * i * T;
      pures.D1CDT(i) = 1E-9 * i * T;
      pures.D2CDT(i) = 0.0;
    }
  }
};

TEST_F(TranslatedIdealGas, ResultsCarryTheTranslationAndTheVolumeDoesNot) {
  call.run();
  ASSERT_EQ(a.ICODE, status::ok);
  const R8 mean = 0.7 * 1 + 0.2 * 2 + 0.1 * 3;
  const R8 VSC = 1E-9 * mean * a.P;  // c P/(R T); T dc/dT is c itself
  EXPECT_NEAR(a.Z, 1.0 + VSC, 1E-15);
  EXPECT_NEAR(a.V, kGasConstant * a.T / a.P, 1E-18);
  EXPECT_NEAR(a.ZT, 0.0, 1E-17);
  EXPECT_NEAR(a.ZP, VSC, 1E-15);
  EXPECT_NEAR(a.H, 0.0, 1E-15);
  EXPECT_NEAR(a.S, -VSC, 1E-15);
  EXPECT_NEAR(a.SP, -VSC, 1E-15);
  EXPECT_NEAR(a.BETA, 1.0 / a.T, 1E-15);
  EXPECT_NEAR(a.KAPT * a.P, 1.0 / (1.0 + VSC), 1E-15);
  for (int i = 1; i <= 3; ++i) {
    EXPECT_NEAR(call.FUG(i), 1E-9 * i * a.P, 1E-15);
    EXPECT_NEAR(call.FUGPL(i), 1E-9 * i * a.P, 1E-15);
    EXPECT_NEAR(call.FUGTL(i), 0.0, 1E-15);
    EXPECT_NEAR(call.ZN(i), 1E-9 * (i - mean) * a.P, 1E-15);
  }
}

TEST_F(TranslatedIdealGas, TranslationConstantInTemperatureLowersZWithTemperature) {
  for (int i = 1; i <= 3; ++i) pures.D1CDT(i) = 0.0;
  call.run();
  const R8 VSC = a.Z - 1.0;
  EXPECT_GT(VSC, 1E-4);
  EXPECT_NEAR(a.ZT, -VSC, 1E-15);
  EXPECT_NEAR(a.H, VSC, 1E-15);
  EXPECT_NEAR(a.S, 0.0, 1E-15);
  EXPECT_NEAR(a.HP, VSC, 1E-15);
}

TEST_F(TranslatedIdealGas, WithoutAVolumeRequestZCarriesNoTranslation) {
  a.LVOL = false;
  call.run();
  EXPECT_EQ(a.Z, 1.0);
  EXPECT_GT(call.FUG(1), 0.0);
}

TEST_F(Dispatcher, ConstantsOfTheSlotAreCopied) {
  models.M4PAR(kNegativeC) = 0.25;
  a.MODEL = kNegativeC;
  call.run();
  EXPECT_EQ(cur.C1PAR, models.C1PAR(kNegativeC));
  EXPECT_EQ(cur.C2PAR, models.C2PAR(kNegativeC));
  EXPECT_EQ(cur.OAPAR, models.OAPAR(kNegativeC));
  EXPECT_EQ(cur.OBPAR, models.OBPAR(kNegativeC));
  EXPECT_EQ(cur.M4PAR, 0.25);
}

TEST_F(Dispatcher, ParametersOrRuleWithoutRoutineFail) {
  models.MODPUR(kCubic) = pure::none;
  call.run();
  EXPECT_NE(a.ICODE, status::ok);
  models.MODPUR(kCubic) = pure::vardo;
  models.MODMIX(kCubic) = mixing::none;
  for (const I4 type : {phase::gibbs, phase::given_volume}) {
    a.IPHASE = type;
    call.run();
    EXPECT_NE(a.ICODE, status::ok);
  }
  models.MODMIX(kCubic) = mixing::classical;
  a.P = 30.0 * kBar;
  a.IPHASE = phase::gibbs;
  call.run();
  EXPECT_EQ(a.ICODE, status::ok);
}

}  // namespace
}  // namespace talix::test
