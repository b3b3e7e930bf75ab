#include "flash/fltp.h"

#include <gtest/gtest.h>

#include <cmath>

#include "fastprops/error_matrix.h"
#include "fastprops/flash_record.h"
#include "fastprops/rksf.h"
#include "fastprops/small_arrays.h"
#include "flash/fltp_state.h"
#include "flash/kval.h"
#include "support/flash_case.h"

namespace talix {
namespace {

class IsothermalFlash : public testing::Test {
 protected:
  void SetUp() override {
    test::fresh_flashes_alone();
    load(test::natural_gas());
  }
  static void load(test::FlashCase c) { ASSERT_EQ(c.run(), ""); }
  static std::string flash() {
    Message STR{};
    STR.blank();
    fl.NCAL = flash_status::fresh;
    FLTP(STR);
    return std::string{trimmed(STR)};
  }
};

TEST_F(IsothermalFlash, FlowsAddUpAndFractionFollows) {
  fl.FRV = 1.0F;
  EXPECT_EQ(flash(), "");
  EXPECT_NEAR(TELOP(fl.NC, fl.FV) + TELOP(fl.NC, fl.FL), 1.0F, 1.0E-6F);
  EXPECT_NEAR(fl.FRV, TELOP(fl.NC, fl.FV), 1.0E-5F);
  for (int i = 1; i <= fl.NC; ++i) EXPECT_NEAR(fl.FV(i) + fl.FL(i), fl.F(i), 1.0E-7F);
  EXPECT_EQ(fl.NCAL, flash_status::fresh);
}

TEST_F(IsothermalFlash, StartFractionDoesNotMatter) {
  R4 reference = 0.0F;
  for (const R4 start : {1.0F, 0.0F, 0.3F, 0.7F}) {
    fl.FRV = start;
    ASSERT_EQ(flash(), "");
    if (start == 1.0F) reference = fl.FRV;
    EXPECT_NEAR(fl.FRV, reference, 1.0E-5F) << start;
  }
}

TEST_F(IsothermalFlash, AllVapourKeepsALiquidComposition) {
  fl.T = 400.0F;
  fl.P = 1.0F;
  ASSERT_EQ(flash(), "");
  EXPECT_EQ(fl.FRV, 1.0F);
  const R4 liquid = TELOP(fl.NC, fl.FL);
  EXPECT_GT(liquid, 1.0E-8F);
  EXPECT_LE(liquid, kPhaseLimit);
}

TEST_F(IsothermalFlash, AllLiquidKeepsAVapourComposition) {
  load([] {
    test::FlashCase c;
    c.numbers = {22, 23, 25};
    c.feed = {0.3F, 0.4F, 0.3F};
    c.T = 20.0F;
    c.P = 30.0F;
    return c;
  }());
  fl.FRV = 1.0F;
  ASSERT_EQ(flash(), "");
  EXPECT_EQ(fl.FRV, 0.0F);
  EXPECT_GT(TELOP(fl.NC, fl.FV), 1.0E-8F);
  EXPECT_LE(TELOP(fl.NC, fl.FV), kPhaseLimit);
}

TEST_F(IsothermalFlash, PureComponentDecidesBetweenVapourAndLiquid) {
  test::FlashCase propane;
  propane.numbers = {22};
  propane.feed = {2.0F};
  propane.T = 25.0F;
  propane.P = 5.0F;
  load(propane);
  EXPECT_GT(TELOP(1, fl.FV), 1.9F);
  fl.P = 20.0F;
  fl.FRV = 1.0F;
  ASSERT_EQ(flash(), "");
  EXPECT_EQ(fl.FRV, 0.0F);
}

TEST_F(IsothermalFlash, AtLeastSixteenPassesAreMade) {
  for (const R4 T : {150.0F, 220.0F, 253.15F, 400.0F, 600.0F}) {
    fl.T = T;
    fl.FRV = 1.0F;
    ASSERT_EQ(flash(), "") << T;
    EXPECT_GE(fl.PASSES, 16) << T;
    EXPECT_LE(fl.PASSES, 160) << T;
  }
}

TEST_F(IsothermalFlash, EntryRefusesNegativeAndLargeFeeds) {
  fl.F(2) = -1.0F;
  EXPECT_EQ(flash(), " One feed stream negative or too big, no flash calculation (FLTP)");
  EXPECT_EQ(fl.NCAL, flash_status::failed);
  fl.F(2) = 1.1E+9F;
  EXPECT_EQ(flash(), " One feed stream negative or too big, no flash calculation (FLTP)");
  EXPECT_EQ(errmat.ERRMAT(error_row::FLTP, 1), 2);
  fl.F.fill(0.0F);
  EXPECT_EQ(flash(), " Total feed rate greater than 1.0E+9, no flash calculation (FLTP)");
  fl.F(1) = fl.F(2) = 0.9E+9F;
  EXPECT_EQ(flash(), " Total feed rate greater than 1.0E+9, no flash calculation (FLTP)");
  EXPECT_EQ(errmat.ERRMAT(error_row::FLTP, 2), 4);
}

TEST_F(IsothermalFlash, FlowOfExactlyTheLimitPasses) {
  fl.F.fill(0.0F);
  fl.F(3) = 1.0E+9F;
  EXPECT_EQ(flash(), "");
}

TEST_F(IsothermalFlash, PressureOfZeroIsRefused) {
  fl.P = 0.0F;
  EXPECT_EQ(flash(), " Pressure not above 0, no flash calculation (FLTP)");
  EXPECT_EQ(fl.NCAL, flash_status::failed);
}

TEST_F(IsothermalFlash, NegligibleFeedTakesTheFractionAtEntry) {
  for (int i = 1; i <= fl.NC; ++i) fl.F(i) = 1.0E-9F;
  fl.FRV = 0.25F;
  EXPECT_EQ(flash(), "");
  EXPECT_EQ(fl.FRV, 0.25F);
}

TEST_F(IsothermalFlash, EquationsWithoutSlopeGiveTheFractionAtEntry) {
  // K-values of one: the sums vanish.
  FltpState s{};
  s.equations.count = 2;
  for (int i = 1; i <= 2; ++i) {
    s.equations.ZZ(i) = 0.5F;
    s.equations.KA(i) = 1.0F;
    s.equations.KB(i) = kNoSecondLiquidFactor;
  }
  s.NGO = SplitMode::vapour_liquid_a;
  s.VFF = 0.3F;
  s.FLA = 0.5F;
  fl.KFLAT = false;
  solve_split(s);
  EXPECT_TRUE(static_cast<bool>(fl.KFLAT));
  EXPECT_EQ(s.FLA, 1.0F - 0.3F);
}

TEST_F(IsothermalFlash, WarmStartKeepsTheFlowsItFinds) {
  fl.FRV = 1.0F;
  ASSERT_EQ(flash(), "");
  const R4 cold = fl.FRV;
  Message STR{};
  STR.blank();
  fl.NCAL = flash_status::warm_start;
  FLTP(STR);
  EXPECT_EQ(trimmed(STR), "");
  EXPECT_NEAR(fl.FRV, cold, 1.0E-5F);
}

TEST_F(IsothermalFlash, OldFlowsAreNoWarmStartOfACall) {
  test::FlashCase first = test::natural_gas();
  ASSERT_EQ(first.run(), "");
  fl.FV.fill(1.0E+5F);
  fl.FL.fill(-3.0F);
  fl.VLK.fill(1.0E+9F);
  fl.IDEAL_FLTP = kvalues::ideal;
  fl.PLAST = 1.0F;
  fl.TLAST = 1000.0F;
  test::FlashCase second = test::natural_gas();
  ASSERT_EQ(second.run(), "");
  EXPECT_EQ(first.FRV, second.FRV);
  for (int i = 1; i <= 10; ++i) EXPECT_EQ(first.SCAL(i, 6), second.SCAL(i, 6));
}

// The split equations against their own derivatives.
TEST(SplitEquationsTest, SumsAreDerivativesOfTheEquations) {
  SplitEquations e{};
  e.second_liquid = true;
  e.count = 3;
  const R4 zz[] = {0.5F, 0.3F, 0.2F}, ka[] = {3.0F, 0.4F, 0.2F}, kb[] = {5.0F, 2.0F, 0.05F};
  for (int i = 1; i <= 3; ++i) {
    e.ZZ(i) = zz[i - 1];
    e.KA(i) = ka[i - 1];
    e.KB(i) = kb[i - 1];
  }
  const R4 a = 0.3F, b = 0.2F, h = 1.0E-2F;
  const SplitSums s = split_sums(e, a, b);
  const SplitSums ap = split_sums(e, a + h, b), am = split_sums(e, a - h, b);
  const SplitSums bp = split_sums(e, a, b + h), bm = split_sums(e, a, b - h);
  EXPECT_NEAR((ap.SUMA - am.SUMA) / (2.0F * h), -s.SUMAA, 0.01F * s.SUMAA);
  EXPECT_NEAR((bp.SUMB - bm.SUMB) / (2.0F * h), -s.SUMBB, 0.01F * s.SUMBB);
  EXPECT_NEAR((bp.SUMA - bm.SUMA) / (2.0F * h), -s.SUMAB, 0.01F * std::fabs(s.SUMAB) + 1.0E-3F);
  const SplitSums lp = split_sums(e, a + h, 1.0F - a - h), lm = split_sums(e, a - h, 1.0F - a + h);
  const SplitSums l = split_sums(e, a, 1.0F - a);
  EXPECT_NEAR(((lp.SUMA - lp.SUMB) - (lm.SUMA - lm.SUMB)) / (2.0F * h), -l.SUMLL, 0.01F * l.SUMLL);
}

FltpState damped(I4 LOOP, R4 FLA, R4 A, R4 B, R4 FLAMIN, R4 FLAMAX) {
  FltpState s{};
  s.LOOP = LOOP;
  s.FT = 2.0F;
  s.FLA = FLA;
  s.FTLP = A * s.FT;
  s.FTLPP = B * s.FT;
  s.FLAMIN = FLAMIN;
  s.FLAMAX = FLAMAX;
  damp_split(s);
  return s;
}

TEST(Damping, EveryTenthPassTakesTheMeanWithTheOneBefore) {
  EXPECT_EQ(damped(9, 0.4F, 0.2F, 0.0F, 2.0F, -1.0F).FLA, 0.4F);
  fl.IDEAL_FLTP = kvalues::real;
  EXPECT_NEAR(damped(10, 0.4F, 0.2F, 0.0F, 2.0F, -1.0F).FLA, 0.3F, 1.0E-6F);
  EXPECT_EQ(fl.IDEAL_FLTP, kvalues::provisional);
}

TEST(Damping, PassEightyTakesTheMiddleOfTheRange) {
  EXPECT_NEAR(damped(80, 0.9F, 0.2F, 0.1F, 0.2F, 0.6F).FLA, 0.4F, 1.0E-6F);
  EXPECT_NEAR(damped(80, 0.9F, 0.2F, 0.1F, 0.0F, 0.6F).FLA, 0.3F, 1.0E-6F);
}

TEST(Damping, PassEightyTakesTheMeanOfThreeWhenBothEndsWereTouched) {
  EXPECT_NEAR(damped(80, 0.9F, 0.2F, 0.1F, 0.0F, 1.0F).FLA, 0.4F, 1.0E-6F);
}

TEST(Damping, LatePassesFollowTheFirstRuleThatApplies) {
  const FltpState low = damped(81, 0.1F, 0.4F, 0.5F, 0.2F, 0.8F);
  EXPECT_NEAR(low.FLAMAX, 0.6F, 1.0E-6F);
  EXPECT_NEAR(low.FLA, 0.5F, 1.0E-6F);
  const FltpState high = damped(81, 0.9F, 0.4F, 0.5F, 0.2F, 0.8F);
  EXPECT_NEAR(high.FLAMIN, 0.3F, 1.0E-6F);
  EXPECT_NEAR(high.FLA, 0.35F, 1.0E-6F);
  EXPECT_NEAR(damped(81, 0.3F, 0.4F, 0.5F, 0.2F, 0.8F).FLA, 0.35F, 1.0E-6F);
  EXPECT_NEAR(damped(81, 0.45F, 0.4F, 0.3F, 0.2F, 0.8F).FLA, 0.425F, 1.0E-6F) << "rising and slowing down";
  EXPECT_NEAR(damped(81, 0.7F, 0.4F, 0.3F, 0.2F, 0.8F).FLA, 0.35F, 1.0E-6F) << "rising and speeding up";
}

// The three-phase mode: water in a gas that also drops a hydrocarbon liquid.
class SecondLiquid : public testing::Test {
 protected:
  void SetUp() override {
    test::fresh_flashes_alone();
    test::FlashCase wet;
    wet.numbers = {20, 22, 28, 9};
    wet.feed = {0.50F, 0.15F, 0.20F, 0.15F};
    wet.T = 20.0F;
    wet.P = 30.0F;
    ASSERT_EQ(wet.run(), "");
    fl.FTLS_FLTP = 0.0F;
  }
};

TEST_F(SecondLiquid, ThreePhasesHaveEqualFugacities) {
  fl.NL2KEY = 4;
  fl.NCAL = flash_status::fresh;
  fl.FRV = 0.5F;
  Message STR{};
  STR.blank();
  FLTP(STR);
  ASSERT_EQ(trimmed(STR), "");
  const R4 V = TELOP(4, fl.FV), L = TELOP(4, fl.FL), S = TELOP(4, fl.FLS);
  EXPECT_GT(V, 0.3F);
  EXPECT_GT(L, 0.1F);
  EXPECT_GT(S, 0.1F);
  EXPECT_NEAR(V + L + S, 1.0F, 1.0E-5F);
  EXPECT_NEAR(fl.FRV, V, 1.0E-5F);
  EXPECT_FLOAT_EQ(fl.FTLS_FLTP, S) << "kept for the next call";
  FlashVec phi_v{}, phi_l{}, phi_s{}, x{};
  R4 Z = 0.0F;
  I4 type = 0;
  const auto fugacities = [&](I4 PH, FlashVec& flow, R4 total, FlashVec& phi) {
    MOLFR(4, total, flow, x);
    RKSF(4, PH, fl.T, x, phi, Z, fl.P, type);
    for (int i = 1; i <= 4; ++i) phi(i) *= x(i);
  };
  fugacities(flash_phase::vapour, fl.FV, V, phi_v);
  fugacities(flash_phase::liquid, fl.FL, L, phi_l);
  fugacities(flash_phase::second_liquid, fl.FLS, S, phi_s);
  for (int i = 1; i <= 4; ++i) EXPECT_NEAR(std::log(phi_l(i) / phi_v(i)), 0.0F, 1.0E-3F) << i;
  EXPECT_NEAR(std::log(phi_s(4) / phi_v(4)), 0.0F, 1.0E-3F);
}

TEST_F(SecondLiquid, DryHotGasIsAllVapour) {
  fl.NL2KEY = 4;
  fl.NCAL = flash_status::fresh;
  fl.FRV = 0.5F;
  fl.T = 500.0F;
  fl.P = 2.0F;
  Message STR{};
  STR.blank();
  FLTP(STR);
  ASSERT_EQ(trimmed(STR), "");
  EXPECT_NEAR(fl.FRV, 1.0F, 1.0E-6F);
  EXPECT_LE(TELOP(4, fl.FLS), kPhaseLimit);
}

TEST_F(SecondLiquid, RegionThatCannotBeEnteredIsTold) {
  // K-values that are not numbers fail every region test.
  fl.NL2KEY = 4;
  FltpState s{};
  s.key = true;
  s.FT = 1.0F;
  s.ZKA = s.ZBKA = s.ZKB = s.ZBKB = s.ZKABKB = s.ZKBBKA = std::nanf("");
  Message STR{};
  STR.blank();
  EXPECT_FALSE(search_regions(s, STR));
  EXPECT_EQ(trimmed(STR), " Flash unable to find flash phase region (FLTP)");
  EXPECT_EQ(fl.NCAL, flash_status::failed);
  EXPECT_GT(errmat.ERRMAT(error_row::FLTP, 3), 0);
}

TEST_F(SecondLiquid, ConvergedPassAtAFloorIsRedoneAsThePhaseThatCameUpMoreOften) {
  fl.NL2KEY = 4;
  FltpState s{};
  s.key = true;
  s.FT = 1.0F;
  s.FTV = kFlowFloor;
  s.FTL = s.FTLP = 0.5F;
  s.FTLS = s.FTLSP = 0.5F;
  s.FLA = s.FLB = 0.5F;
  s.NP1 = 1;
  s.NP2 = 2;
  fl.VLKS.fill(2.0F);
  EXPECT_TRUE(second_liquid_converged(s, 1.0E-5F));
  EXPECT_EQ(s.FLA, 0.0F);
  EXPECT_EQ(s.NCONV, AfterFlows::leave_flash);
  EXPECT_NEAR(TELOP(4, fl.FV), 1.0F, 1.0E-5F);

  s.FTL = s.FTLP = kFlowFloor;
  s.FTV = 0.5F;
  s.FTLS = s.FTLSP = 0.5F;
  s.NP1 = 3;
  EXPECT_TRUE(second_liquid_converged(s, 1.0E-5F));
  EXPECT_EQ(s.FLA, 1.0F);
}

TEST_F(SecondLiquid, SwappedLiquidsCountAsConverged) {
  fl.NL2KEY = 4;
  FltpState s{};
  s.key = true;
  s.FTV = 0.1F;
  s.FTLP = s.FTLS = 0.3F;
  s.FTLSP = s.FTL = 0.6F;
  fl.FLS(4) = 0.2F;
  fl.FL(4) = 0.1F;
  EXPECT_TRUE(second_liquid_converged(s, 1.0E-5F));
  fl.FLS(4) = 0.05F;
  EXPECT_FALSE(second_liquid_converged(s, 1.0E-5F));
}

TEST_F(SecondLiquid, SmallStartTotalPutsATraceOfTheKeyThere) {
  fl.NL2KEY = 4;
  fl.NCAL = flash_status::fresh;
  fl.FRV = 1.0F;
  Message STR{};
  STR.blank();
  FLTP(STR);
  ASSERT_EQ(trimmed(STR), "");
  EXPECT_GT(TELOP(4, fl.FLS), 0.1F) << "the water comes out from a trace";
}

}  // namespace
}  // namespace talix
