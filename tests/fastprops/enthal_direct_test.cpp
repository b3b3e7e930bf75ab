#include <gtest/gtest.h>

#include <cmath>

#include "fastprops/enthal.h"
#include "fastprops/enthal_direct.h"
#include "fastprops/redlab.h"
#include "fastprops/rksf_direct.h"
#include "support/direct_route.h"
#include "support/eos_difference.h"

namespace talix {
namespace {

struct Thermal {
  R4 RHO = -9, Z = -9, MW = -9, HID = -9, SID = -9, CPID = -9, H = -9, S = -9, CV = -9, CP = -9, SONIC = -9,
     JT = -9, KAPPA = -9;

  void ask(I4 PH, R4 T, R4 P, const FlashVec& x) {
    FlashVec PHI{};
    I4 IPH = 0;
    direct_fugacities(true, fl.NC, PH, T, x, PHI, Z, P, IPH);
    direct_properties(fl.NC, fl.RGAS, RHO, T, P, Z, x, MW, HID, SID, CPID, H, S, CV, CP, SONIC, JT, KAPPA);
  }
};

struct State {
  R4 T, P;
  I4 PH;
};
const State kStates[] = {{300.0F, 1.0F, flash_phase::vapour},    {300.0F, 60.0F, flash_phase::vapour},
                         {350.0F, 200.0F, flash_phase::vapour},  {450.0F, 20.0F, flash_phase::vapour},
                         {150.0F, 20.0F, flash_phase::liquid},   {180.0F, 100.0F, flash_phase::liquid},
                         {1000.0F, 500.0F, flash_phase::vapour}, {273.15F, 0.01F, flash_phase::vapour}};

class DirectEnthalpy : public testing::Test {
 protected:
  void SetUp() override {
    test::load_direct_gas();
    z = test::gas_feed();
  }
  FlashVec z{};
};

// Residual Helmholtz energy over RT of one mole at T0 + d in V, with the parameters of the components as
// parabolas around T0.
R8 residual(const FlashVec& z, R8 d, R8 V) {
  R8 A = 0;
  R8 B = 0;
  const auto at = [d](R4 value, R4 first, R4 second) {
    return widen(value) + d * (widen(first) + 0.5 * d * widen(second));
  };
  for (int i = 1; i <= fl.NC; ++i) {
    B += widen(z(i)) * at(fl.B(i), fl.DB1(i), fl.DB2(i));
    for (int j = 1; j <= fl.NC; ++j)
      A += widen(z(i)) * widen(z(j)) *
           std::sqrt(at(fl.A(i), fl.DA1(i), fl.DA2(i)) * at(fl.A(j), fl.DA1(j), fl.DA2(j)));
  }
  return -std::log(1.0 - B / V) - A / B * std::log(1.0 + B / V);
}

TEST_F(DirectEnthalpy, DeparturesAreTemperatureDerivativesOfTheHelmholtzEnergy) {
  constexpr R8 R = 8.31447;
  for (const State& s : kStates) {
    Thermal t;
    t.ask(s.PH, s.T, s.P, z);
    const R8 T = widen(s.T);
    const R8 V = widen(t.Z) * 83.1447 * T / widen(s.P);
    const auto F = [&](R8 d) { return residual(z, d, V); };
    const auto TF = [&](R8 d) { return (T + d) * residual(z, d, V); };
    const R8 first = test::slope(F, 0.0, 0.5);
    const R8 Z = widen(t.Z);
    const R8 h_departure = R * T * (-T * first + Z - 1.0);
    const R8 s_departure = -R * test::slope(TF, 0.0, 0.5) + R * std::log(V * 1.0 / (83.1447 * T));
    const R8 cv_departure = -R * T * test::curvature(TF, 0.0, 2.0);
    EXPECT_NEAR(widen(t.H - t.HID), h_departure, 3E-5 * std::fabs(h_departure) + 0.02) << s.T << ' ' << s.P;
    EXPECT_NEAR(widen(t.S - t.SID), s_departure, 3E-5 * std::fabs(s_departure) + 2E-4) << s.T << ' ' << s.P;
    EXPECT_NEAR(widen(t.CV * t.MW - t.CPID) + R, cv_departure, 2E-4 * std::fabs(cv_departure) + 3E-4)
        << s.T << ' ' << s.P;
  }
}

TEST_F(DirectEnthalpy, HeatCapacityIsTheSlopeOfTheEnthalpyAlongThePressure) {
  for (const State& s : kStates) {
    Thermal t, up, down;
    t.ask(s.PH, s.T, s.P, z);
    const R4 h = 0.004F * s.T;
    up.ask(s.PH, s.T + h, s.P, z);
    down.ask(s.PH, s.T - h, s.P, z);
    const R4 slope = (up.H - down.H) / (2.0F * h);
    EXPECT_NEAR(t.CP * t.MW, slope, 3E-3F * slope) << s.T << ' ' << s.P;
    EXPECT_NEAR((up.S - down.S) / (2.0F * h) * s.T, slope, 5E-3F * slope) << s.T << ' ' << s.P;
    EXPECT_NEAR(t.CPID, (up.HID - down.HID) / (2.0F * h), 1E-3F * t.CPID);
    EXPECT_NEAR(t.CPID, (up.SID - down.SID) / (2.0F * h) * s.T, 2E-3F * t.CPID);
  }
}

TEST_F(DirectEnthalpy, FugacitiesEnthalpyAndEntropyBelongTogether) {
  constexpr R8 R = 8.31447;
  for (const State& s : kStates) {
    const auto mean = [&](R4 T) {
      FlashVec PHI{};
      R4 Z = 0;
      I4 IPH = 0;
      direct_fugacities(true, fl.NC, s.PH, T, z, PHI, Z, s.P, IPH);
      R8 sum = 0;
      for (int i = 1; i <= fl.NC; ++i) sum += widen(z(i)) * std::log(widen(PHI(i)));
      return sum;
    };
    Thermal t;
    t.ask(s.PH, s.T, s.P, z);
    const R8 T = widen(s.T);
    const R8 h = widen(t.H - t.HID) / (R * T);
    // The entropy is that against the ideal gas at 1 bar.
    const R8 g = h - widen(t.S - t.SID) / R - std::log(widen(s.P));
    EXPECT_NEAR(mean(s.T), g, 2E-4 * (std::fabs(g) + std::fabs(h)) + 2E-5) << s.T << ' ' << s.P;
    // Gibbs and Helmholtz: the slope of G over RT with temperature is the enthalpy over RT, turned round.
    const R4 d = 0.004F * s.T;
    const R8 slope = (mean(s.T + d) - mean(s.T - d)) / (2.0 * widen(d));
    EXPECT_NEAR(-T * slope, h, 3E-3 * std::fabs(h) + 2E-4) << s.T << ' ' << s.P;
  }
}

TEST_F(DirectEnthalpy, CompressibilitySoundAndJouleThomsonBelongTogether) {
  for (const State& s : kStates) {
    Thermal t, up, down;
    t.ask(s.PH, s.T, s.P, z);
    const R4 h = (s.PH == flash_phase::liquid ? 0.1F : 0.01F) * s.P;
    up.ask(s.PH, s.T, s.P + h, z);
    down.ask(s.PH, s.T, s.P - h, z);
    EXPECT_NEAR(t.KAPPA, std::log(up.RHO / down.RHO) / (2.0F * h), 5E-3F * t.KAPPA) << s.T << ' ' << s.P;
    // Speed of sound from density, compressibility and the ratio of the heat capacities.
    EXPECT_NEAR(t.SONIC, std::sqrt(t.CP / t.CV / (t.RHO * t.KAPPA * 1.0E-5F)), 2E-4F * t.SONIC);
    if (s.P < 0.5F) continue;  // the enthalpy does not depend on pressure there within 32 bits
    EXPECT_NEAR(t.JT, -(up.H - down.H) / (2.0F * h) / (t.CP * t.MW), 2E-2F * std::fabs(t.JT) + 2E-3F)
        << s.T << ' ' << s.P;
  }
}

TEST_F(DirectEnthalpy, DensityAndMolarMassComeFromTheFlashLayer) {
  Thermal t;
  t.ask(flash_phase::vapour, 300.0F, 60.0F, z);
  R4 MW = 0;
  for (int i = 1; i <= fl.NC; ++i) MW += z(i) * fl.AMW(i);
  EXPECT_FLOAT_EQ(t.MW, MW);
  EXPECT_NEAR(t.RHO, MW * 60.0F / (t.Z * 0.0831447F * 300.0F), 1E-4F * t.RHO);
}

TEST_F(DirectEnthalpy, IdealGasStartsAtTheReferenceTemperature) {
  Thermal t;
  t.ask(flash_phase::vapour, fl.TZERO, 1.0F, test::pure_feed(3));
  EXPECT_EQ(t.HID, 0.0F);
  EXPECT_EQ(t.SID, 0.0F) << "zero fractions take no logarithm";
}

TEST_F(DirectEnthalpy, AgreesWithTheEngineWithoutPairParameters) {
  test::drop_pair_parameters();
  FugacityVector FUG{}, FUGTL{}, FUGPL{};
  static FugacityMatrix FUGN{};
  FlashVec HN{};
  // No component between 0.909 and 1.04 in Tc/T, where the derivatives of the engine are lines.
  for (const State& s : {State{450.0F, 20.0F, flash_phase::vapour}, State{150.0F, 60.0F, flash_phase::liquid},
                         State{330.0F, 150.0F, flash_phase::vapour}}) {
    FlashVec x = test::pure_feed(3);
    x(3) = 0.9F;
    x(10) = 0.1F;
    Thermal d, e;
    d.ask(s.PH, s.T, s.P, x);
    I4 PHOUT = 0;
    R4 DHDT = 0;
    ENTHAL1(0, s.PH, PHOUT, fl.NC, fl.RGAS, e.RHO, s.T, s.P, e.Z, x, e.MW, e.HID, e.SID, e.CPID, e.H, DHDT,
            e.S, e.CV, e.CP, e.SONIC, e.JT, e.KAPPA, FUG, FUGTL, FUGPL, FUGN, HN);
    EXPECT_NEAR(d.Z, e.Z, 2E-4F * e.Z);
    EXPECT_NEAR(d.RHO, e.RHO, 3E-4F * e.RHO) << s.T;
    EXPECT_NEAR(d.HID, e.HID, 1E-4F * std::fabs(e.HID) + 0.1F);
    EXPECT_NEAR(d.H, e.H, 2E-4F * std::fabs(e.H) + 1.0F) << s.T;
    EXPECT_NEAR(d.CPID, e.CPID, 1E-4F * e.CPID);
    EXPECT_NEAR(d.CP, e.CP, 1E-3F * e.CP) << s.T;
    EXPECT_NEAR(d.CV, e.CV, 1E-3F * e.CV) << s.T;
    EXPECT_NEAR(d.SONIC, e.SONIC, 1E-3F * e.SONIC) << s.T;
    EXPECT_NEAR(d.JT, e.JT, 2E-3F * std::fabs(e.JT) + 1E-4F) << s.T;
    EXPECT_NEAR(d.KAPPA, e.KAPPA, 1E-3F * e.KAPPA) << s.T;
    // The engine's ideal entropy stands at P, that of this route at 1 bar.
    EXPECT_NEAR(d.S - d.SID, e.S - e.SID - 8.31447F * std::log(s.P), 2E-2F) << s.T;
  }
}

TEST_F(DirectEnthalpy, EveryPropertyIsFinite) {
  for (const R4 T : {100.0F, 190.56F, 273.15F, 400.0F, 1773.0F}) {
    for (const R4 P : {1.0E-6F, 1.0F, 50.0F, 900.0F}) {
      for (const I4 PH : {flash_phase::liquid, flash_phase::vapour}) {
        Thermal t;
        t.ask(PH, T, P, z);
        for (const R4 value :
             {t.RHO, t.Z, t.MW, t.HID, t.SID, t.CPID, t.H, t.S, t.CV, t.CP, t.SONIC, t.JT, t.KAPPA})
          EXPECT_TRUE(std::isfinite(value)) << T << ' ' << P << ' ' << PH;
      }
    }
  }
}

TEST_F(DirectEnthalpy, NegativeSquareGivesNoSpeedOfSound) {
  // Between the two turning points the mixture is not stable mechanically.
  FlashVec x = test::pure_feed(3);
  I4 IER = 0;
  REDLAB(150.0F, 1, fl.NC, IER);
  Thermal t;
  const R4 Z = 3.0F * fl.B(3) * 5.0F / (fl.RGAS * 150.0F);
  direct_properties(fl.NC, fl.RGAS, t.RHO, 150.0F, 5.0F, Z, x, t.MW, t.HID, t.SID, t.CPID, t.H, t.S, t.CV,
                    t.CP, t.SONIC, t.JT, t.KAPPA);
  EXPECT_LT(t.KAPPA, 0.0F);
  EXPECT_GE(t.SONIC, 0.0F);
}

}  // namespace
}  // namespace talix
