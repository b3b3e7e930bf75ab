// Assembly of derivatives, fugacities and thermal properties, volume translation: SESDD0, SESFC0, SESPP0 to
// SESPP3, SM9VS0.
#include "eos/ses_thermal.h"

#include <gtest/gtest.h>

#include <cmath>

#include "database/component_record.h"
#include "engine/codes.h"
#include "eos/cubic_record.h"
#include "eos/ses_assembly.h"
#include "eos/sm9_translation.h"
#include "support/eos_fixture.h"

namespace talix::test {
namespace {

class Thermal : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_fixture();
    a.T = 300.0;
    a.P = 2E6;
    a.Z = 0.8;
    a.V = 1E-3;
    for (int k = 1; k <= 3; ++k) a.LDTHERM(k) = true;
    f.PV = -0.7;
    f.PVV = 1.3;
    f.F = -0.1;
    composed.PTCN = 1.4;
    composed.PVTC = -1.1;
    composed.FTC = 0.3;
    composed.FTTC = -0.4;
    call.FUG(1) = -0.2;
    call.FUGTL(1) = 0.5;
  }
  void residual() { SESPP0(f, composed, shift, call.FUG, call.FUGTL, 1, 1, a); }

  Call call;
  EosArgs& a = call.args;
  ModelFunction f{};
  ComposedDerivatives composed{};
  VolumeTranslation shift{};
};

TEST_F(Thermal, ResidualPropertiesWithoutTranslation) {
  residual();
  const R8 R = kGasConstant;
  EXPECT_DOUBLE_EQ(a.H, 0.8 - 1.0 - 0.3);
  EXPECT_DOUBLE_EQ(a.DLVTV, 0.3 / 0.8);
  EXPECT_DOUBLE_EQ(a.S, std::log(0.8) + 0.1 - 0.3);
  EXPECT_DOUBLE_EQ(a.DPDTV, 2E6 * 1.4 / 300.0);
  EXPECT_DOUBLE_EQ(a.KAPT, 1.0 / (0.7 * 2E6));
  EXPECT_DOUBLE_EQ(a.BETA, 1.4 / (0.7 * 300.0));
  EXPECT_NEAR(a.DKAPT, (-0.7 * -1.1 - (1.3 - 0.7) * 1.4) / (-0.343 * 300.0 * 2E6), 1E-22);
  const R8 U = -R * (0.6 - 0.4);
  const R8 ratio = 0.8 * 1.4 * 1.4 / -0.7;
  EXPECT_NEAR(a.CP, U - (ratio + 1.0) * R, 1E-13);
  EXPECT_NEAR(a.CV, U, 1E-13);
  EXPECT_DOUBLE_EQ(a.HT, a.CP / R);
  EXPECT_DOUBLE_EQ(a.ST, a.CP / R);
  EXPECT_DOUBLE_EQ(a.SP, 0.8 * 1.4 / -0.7 + 1.0);
  EXPECT_DOUBLE_EQ(a.HP, 0.8 * (1.0 - 1.4 / 0.7));
  EXPECT_DOUBLE_EQ(call.SNR(1), 0.2 - 0.5);
  EXPECT_DOUBLE_EQ(call.HNR(1), -0.5);
}

TEST_F(Thermal, TranslationEntersEnthalpyEntropyAndCoefficients) {
  residual();
  const EosArgs plain = a;
  shift.VSC = 0.05;
  shift.VSCT = 0.02;
  shift.VSCTT = 0.01;
  residual();
  EXPECT_NEAR(a.H - plain.H, 0.05 - 0.02, 1E-15);
  EXPECT_NEAR(a.S - plain.S, -0.02, 1E-15);
  EXPECT_NEAR(a.DLVTV, (0.3 + 0.02) / 0.85, 1E-15);
  EXPECT_NEAR(a.CP - plain.CP, -0.01 * kGasConstant, 1E-13);
  EXPECT_NEAR(a.SP - plain.SP, -0.02, 1E-15);
  EXPECT_NEAR(a.HP - plain.HP, 0.05 - 0.02, 1E-15);
  EXPECT_NEAR(a.BETA, (0.8 * plain.BETA + 0.02 / 300.0) / 0.85, 1E-16);
  EXPECT_NEAR(a.KAPT, plain.KAPT * 0.8 / 0.85, 1E-20);
  EXPECT_NEAR(a.DPDTV, a.BETA / a.KAPT, 1E-9 * a.DPDTV);
  // Cp - Cv = T V beta^2 / kappa with the translated volume.
  const R8 V = 0.85 * kGasConstant * a.T / a.P;
  EXPECT_NEAR(a.CP - a.CV + kGasConstant, a.T * V * a.BETA * a.BETA / a.KAPT, 1E-11);
}

TEST_F(Thermal, FlagsGuardTheDerivatives) {
  a.LDTHERM = {};
  a.HT = a.ST = a.HP = a.SP = 9.0;
  call.HNR(1) = call.SNR(1) = 9.0;
  residual();
  for (const R8 value : {a.HT, a.ST, a.HP, a.SP, call.HNR(1), call.SNR(1)}) EXPECT_EQ(value, 9.0);
  SESPP3(1, 1, a);
  for (const R8 value : {a.HT, a.ST, a.HP, a.SP, call.HNR(1), call.SNR(1)}) EXPECT_EQ(value, 9.0);
}

TEST_F(Thermal, IdealGasResidualsVanish) {
  a.H = a.S = a.CP = a.CV = a.DLVTV = a.DKAPT = a.HT = a.ST = a.HP = a.SP = 9.0;
  SESPP3(1, 1, a);
  for (const R8 value :
       {a.H, a.S, a.CP, a.CV, a.DLVTV, a.DKAPT, a.HT, a.ST, a.HP, a.SP, call.HNR(1), call.SNR(1)})
    EXPECT_EQ(value, 0.0);
  EXPECT_DOUBLE_EQ(a.DPDTV, 2E6 / 300.0);
  EXPECT_DOUBLE_EQ(a.KAPT, 1.0 / 2E6);
  EXPECT_DOUBLE_EQ(a.BETA, 1.0 / 300.0);
}

TEST_F(Thermal, IdealGasPartIsAdded) {
  residual();
  const EosArgs before = a;
  const R8 HNR = call.HNR(1);
  const R8 SNR = call.SNR(1);
  CompVec x{};
  x(1) = 1.0;
  SESPP1(x, 1, 1, a);
  EXPECT_GT(a.CP, before.CP + 30.0);
  EXPECT_NEAR(a.CP - before.CP, a.CV - before.CV + kGasConstant, 1E-12);
  EXPECT_DOUBLE_EQ(a.HT, a.CP / kGasConstant);
  EXPECT_DOUBLE_EQ(a.ST, a.CP / kGasConstant);
  EXPECT_DOUBLE_EQ(a.SP, before.SP - 1.0);
  EXPECT_EQ(a.HP, before.HP);
  EXPECT_NEAR(a.H - before.H, call.HNR(1) - HNR, 1E-14);
  EXPECT_NEAR(a.S - before.S, call.SNR(1) - SNR, 1E-14);
  // The pressure term: 1 bar is the reference.
  EosArgs at_one_bar = before;
  at_one_bar.P = 1E5;
  call.SNR(1) = SNR;
  SESPP1(x, 1, 1, at_one_bar);
  EXPECT_NEAR(a.S - at_one_bar.S, -std::log(20.0), 1E-14);
}

TEST_F(Thermal, DerivedCoefficients) {
  a.BETA = 4E-3;
  a.KAPT = 6E-7;
  a.CP = 50.0;
  a.CV = 38.0;
  CompVec x{};
  x(1) = 1.0;
  SESPP2(x, 1, 1, a);
  EXPECT_DOUBLE_EQ(a.JTC, 1E-3 * (300.0 * 4E-3 - 1.0) / 50.0);
  EXPECT_DOUBLE_EQ(a.KAPS, 6E-7 * 38.0 / 50.0);
  EXPECT_NEAR(a.DPDTS, 4E-3 / (6E-7 * 12.0 / 50.0), 1E-6);
  EXPECT_NEAR(a.WSOUND, std::sqrt(1E-3 / (0.016043 * a.KAPS)), 1E-9);
}

TEST_F(Thermal, NegativeIsentropicCompressibilityGivesNoSpeedOfSound) {
  a.BETA = 4E-3;
  a.KAPT = -6E-7;
  a.CP = 50.0;
  a.CV = 38.0;
  a.WSOUND = 9.0;
  CompVec x{};
  x(1) = 1.0;
  SESPP2(x, 1, 1, a);
  EXPECT_EQ(a.WSOUND, 0.0);
}

TEST_F(Thermal, VanishingDenominatorsGiveLargeNumbersAndNoStop) {
  a.BETA = 4E-3;
  a.KAPT = 0.0;
  a.CP = 0.0;
  a.CV = 0.0;
  CompVec x{};
  SESPP2(x, 1, 1, a);
  EXPECT_GT(std::abs(a.JTC), 1E30);
  EXPECT_GT(a.DPDTS, 1E30);
  EXPECT_TRUE(std::isfinite(a.WSOUND));
  f.PV = 0.0;
  residual();
  EXPECT_TRUE(std::isfinite(a.DKAPT) || std::abs(a.DKAPT) > 1E30);
}

TEST_F(Thermal, TranslationIsLinearInComposition) {
  CompVec x{};
  x(1) = 0.3;
  x(2) = 0.7;
  for (int i = 1; i <= 2; ++i) {
    pures.CRK(i) = 1E-6 * i;
    pures.D1CDT(i) = 2E-7 * i;
    pures.D2CDT(i) = 3E-8 * i;
  }
  const R8 P = 5E6;
  const R8 T = 400.0;
  VolumeTranslation s{};
  SM9VS0(1, 2, x, P, T, s.VSC, s.VSCT, s.VSCN, s.VSCTN, s.VSCTT);
  EXPECT_DOUBLE_EQ(s.VSCN(1), 1E-6 * P / T);
  EXPECT_DOUBLE_EQ(s.VSCN(2), 2E-6 * P / T);
  EXPECT_DOUBLE_EQ(s.VSCTN(2), 4E-7 * P / T);
  EXPECT_NEAR(s.VSC, 1.7E-6 * P / T, 1E-16);
  EXPECT_NEAR(s.VSCT, 3.4E-7 * P / T, 1E-17);
  EXPECT_NEAR(s.VSCTT, 5.1E-8 * P / T, 1E-17);
}

TEST_F(Thermal, WithoutTranslationParametersTheShiftsAreZero) {
  CompVec x{};
  x(1) = 1.0;
  pures.CRK(1) = pures.D1CDT(1) = pures.D2CDT(1) = 0.0;
  VolumeTranslation s{};
  s.VSC = s.VSCT = s.VSCTT = s.VSCN(1) = s.VSCTN(1) = 9.0;
  SM9VS0(1, 1, x, 5E6, 400.0, s.VSC, s.VSCT, s.VSCN, s.VSCTN, s.VSCTT);
  for (const R8 value : {s.VSC, s.VSCT, s.VSCTT, s.VSCN(1), s.VSCTN(1)}) EXPECT_EQ(value, 0.0);
}

TEST_F(Thermal, FugacityTakesTheTranslationOfItsComponent) {
  MixtureVector m{};
  m.NQ = 0;
  m.QN(0)(1) = 1.0;
  f.FQ(0) = 0.4;
  f.PV = -0.9;
  composed.PN(1) = 1.2;
  composed.PTCN = 1.1;
  composed.FQTCN(0) = 0.0;
  CompVec VSN{}, VSTN{};
  VSN(1) = 0.05;
  VSTN(1) = 0.02;
  Vec<bool, 4> options{};
  options.fill(true);
  SESFC0(0.8, f, m, composed, call.FUG, call.FUGTL, &call.FUGPL, &call.FUGN, VSN, VSTN, 1, 1, options);
  EXPECT_NEAR(call.FUG(1), 0.05 + 0.4 - std::log(0.8), 1E-15);
  EXPECT_NEAR(call.FUGTL(1), 0.8 * 1.2 * 1.1 / -0.9 + 0.02 - 0.05 + 1.0, 1E-15);
  EXPECT_NEAR(call.FUGPL(1), 0.8 * 1.2 / 0.9 - 1.0 + 0.05, 1E-15);
  EXPECT_NEAR(call.FUGN(1, 1), 0.8 * 1.2 * 1.2 / -0.9 + 1.0, 1E-15);
}

TEST_F(Thermal, OnlyFugacityEntriesAskedForAreTouched) {
  MixtureVector m{};
  m.NQ = 0;
  Vec<bool, 4> options{};
  options(1) = true;
  call.FUGTL(1) = 9.0;
  SESFC0(0.8, f, m, composed, call.FUG, call.FUGTL, nullptr, nullptr, shift.VSCN, shift.VSCTN, 1, 1, options);
  EXPECT_EQ(call.FUGTL(1), 9.0);
}

TEST_F(Thermal, ChainRuleWithOneEntry) {
  MixtureVector m{};
  m.NQ = 0;
  m.QN(0)(1) = 1.0;
  m.QN(1)(1) = 77.0;  // beyond NQ: not read
  f.PQ(0) = 1.0;
  f.PQ(1) = 5.0;
  f.PT = 1.0;
  Vec<bool, 6> options{};
  options.fill(true);
  SESDD0(f, m, composed, 1, 1, options);
  EXPECT_EQ(composed.PN(1), 1.0);
  EXPECT_EQ(composed.PTCN, 1.0);
  EXPECT_EQ(composed.FTC, 0.0);
  EXPECT_EQ(composed.FTTC, 0.0);
}

}  // namespace
}  // namespace talix::test
