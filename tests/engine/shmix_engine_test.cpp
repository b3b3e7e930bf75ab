// The driver with the equations of state behind it.
#include <gtest/gtest.h>

#include <cmath>

#include "database/component_record.h"
#include "database/overrides.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/model_table.h"
#include "engine/reset.h"
#include "engine/setup.h"
#include "engine/shmix_driver.h"
#include "support/eos_fixture.h"

namespace talix {
namespace {

struct Phase {
  I4 IPHTYP = phase::vapour;
  R8 T = 300.0, P = 1e5;
  I4 NCOMP = 2;
  CompVec X{};
  I4 LNOV = 1, LNOF = 1, LNOH = 1;
  I4 IHTYPE = thermal::total;
  Flags3 wanted{{{-1}, {-1}, {-1}}};
  ReservedCodes IRESRV{};
  I4 NRESRV = 0;
  I4 IPHRTN = 0;
  L4 AMBIG{};
  R8 ZFUG = 0, ZVOL = 0, DZDT = 0, DZDP = 0, H = 0, DHDT = 0, DHDP = 0, S = 0, DSDT = 0, DSDP = 0;
  CompVec DZDN{}, FUG{}, DFDT{}, DFDP{}, DHDN{}, DSDN{};
  CompMat DFDN{};
  ReservedValues RESRV{};
  I4 NFAIL = -1;

  void run() {
    const Vec<I4, kMaxComponents> IC{};
    SHMIX0(IPHTYP, root_option::real_only, T, P, NCOMP, IC, X, LNOV, wanted, LNOF, wanted, LNOH, IHTYPE,
           wanted, IRESRV, NRESRV, IPHRTN, AMBIG, ZFUG, ZVOL, DZDT, DZDP, DZDN, FUG, DFDT, DFDP, DFDN, H,
           DHDT, DHDP, DHDN, S, DSDT, DSDP, DSDN, RESRV, NFAIL);
  }
};

Phase phase_at(R8 T, R8 P, const Phase& like) {
  Phase p = like;
  p.T = T;
  p.P = P;
  p.run();
  EXPECT_EQ(p.NFAIL, status::ok);
  return p;
}

// Two ideal gases of constant heat capacity.
class DriverIdealGas : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_engine();
    I4 nfail = 0;
    I4 slot = 0;
    SHINI0(2, "A   B   ", 4, nfail);
    SHMLD0(model::ideal_gas, slot, nfail);
    ASSERT_EQ(slot, 1);
    for (int i = 1; i <= 2; ++i) {
      comp.COFHT(i, 1) = 20.0 + 10.0 * i;
      comp.RMOLW(i) = 20.0 * i;
      comp.TC(i) = 100.0;
      comp.PC(i) = 40.0;
    }
    KeyValues values{};
    values(1) = 273.15;
    I4 keys = 0;
    KeyNames names{};
    SURMD0(keys, names, 10, values, action::input, model::ideal_gas, nfail);
    ASSERT_EQ(nfail, status::ok);
    gas.X(1) = 0.5;
    gas.X(2) = 0.5;
  }
  Phase gas;
};

TEST_F(DriverIdealGas, HasUnitCompressibilityAndFugacity) {
  gas.run();
  ASSERT_EQ(gas.NFAIL, status::ok);
  EXPECT_DOUBLE_EQ(gas.ZFUG, 1.0);
  EXPECT_DOUBLE_EQ(gas.ZVOL, 1.0);
  EXPECT_NEAR(gas.FUG(1), 0.0, 1e-14);
  EXPECT_NEAR(gas.FUG(2), 0.0, 1e-14);
}

TEST_F(DriverIdealGas, CannotBeToldApartAndTakesThePhaseAskedFor) {
  gas.run();
  EXPECT_EQ(gas.IPHRTN, phase::vapour);
  EXPECT_TRUE(gas.AMBIG);
  gas.IPHTYP = phase::liquid;
  gas.run();
  EXPECT_EQ(gas.IPHRTN, phase::liquid);
  EXPECT_TRUE(gas.AMBIG);
}

TEST_F(DriverIdealGas, EnthalpyCountsFromTheDatum) {
  gas.T = 273.15;
  gas.run();
  EXPECT_NEAR(gas.H, 0.0, 1e-12);
  gas.T = 373.15;
  gas.run();
  EXPECT_NEAR(gas.H * kGasConstant * 373.15, 35.0 * 100.0, 1e-8);
}

TEST_F(DriverIdealGas, ReservedResultsAreThoseOfTheIdealGas) {
  const I4 codes[] = {reserved::thermal_expansion, reserved::isothermal_compressibility,
                      reserved::heat_capacity_p,   reserved::heat_capacity_v,
                      reserved::joule_thomson,     reserved::speed_of_sound};
  gas.NRESRV = 6;
  for (int i = 1; i <= 6; ++i) gas.IRESRV(i) = codes[i - 1];
  gas.run();
  ASSERT_EQ(gas.NFAIL, status::ok);
  EXPECT_DOUBLE_EQ(gas.RESRV(1), 1.0 / 300.0);
  EXPECT_DOUBLE_EQ(gas.RESRV(2), 1e-5);
  EXPECT_NEAR(gas.RESRV(3), 35.0, 1e-12);
  EXPECT_NEAR(gas.RESRV(4), 35.0 - kGasConstant, 1e-12);
  EXPECT_NEAR(gas.RESRV(5), 0.0, 1e-15);
  const R8 gamma = 35.0 / (35.0 - kGasConstant);
  EXPECT_NEAR(gas.RESRV(6), std::sqrt(gamma * kGasConstant * 300.0 / 0.030), 1e-9);
}

// A methane and propane mixture by the cubic equation; slot 2 is the ideal gas.
class CubicPhaseTest : public ::testing::Test {
 protected:
  void SetUp() override {
    test::reset_fixture();
    p.NCOMP = 3;
    p.X(1) = 0.7;
    p.X(2) = 0.1;
    p.X(3) = 0.2;
    p.T = 450.0;
    p.P = 40e5;
  }
  Phase p;
};

TEST_F(CubicPhaseTest, DerivativesAreScaledSlopesOfTheValues) {
  p.run();
  ASSERT_EQ(p.NFAIL, status::ok);
  const R8 h = 1e-4;
  const Phase warm = phase_at(p.T * (1.0 + h), p.P, p);
  const Phase cold = phase_at(p.T * (1.0 - h), p.P, p);
  const Phase high = phase_at(p.T, p.P * (1.0 + h), p);
  const Phase low = phase_at(p.T, p.P * (1.0 - h), p);
  EXPECT_NEAR(p.DZDT, (warm.ZVOL - cold.ZVOL) / (2.0 * h), 1e-6);
  EXPECT_NEAR(p.DZDP, (high.ZVOL - low.ZVOL) / (2.0 * h), 1e-6);
  for (int i = 1; i <= 3; ++i) {
    EXPECT_NEAR(p.DFDT(i), (warm.FUG(i) - cold.FUG(i)) / (2.0 * h), 1e-6);
    EXPECT_NEAR(p.DFDP(i), (high.FUG(i) - low.FUG(i)) / (2.0 * h), 1e-6);
  }
  EXPECT_NEAR(p.DHDT, (warm.H * warm.T - cold.H * cold.T) / (2.0 * h * p.T), 1e-5);
}

TEST_F(CubicPhaseTest, DistinctModelsServeDistinctRequests) {
  p.run();
  const Phase cubic = p;
  p.LNOH = 2;
  p.run();
  ASSERT_EQ(p.NFAIL, status::ok);
  EXPECT_DOUBLE_EQ(p.FUG(1), cubic.FUG(1));
  EXPECT_DOUBLE_EQ(p.DZDT, cubic.DZDT);
  EXPECT_NE(p.H, cubic.H);
  p.IHTYPE = thermal::residual;
  p.run();
  EXPECT_NEAR(p.H, 0.0, 1e-12);
}

TEST_F(CubicPhaseTest, RequestsDoNotDisturbEachOther) {
  p.run();
  const Phase all = p;
  p.LNOV = 0;
  p.LNOH = 0;
  p.run();
  EXPECT_EQ(p.FUG(3), all.FUG(3));
  p.LNOF = 0;
  p.LNOH = 1;
  p.run();
  EXPECT_EQ(p.H, all.H);
  EXPECT_EQ(p.S, all.S);
}

TEST_F(CubicPhaseTest, PureComponentIsAskedForByItsNegativeNumber) {
  p.NCOMP = -3;
  p.run();
  ASSERT_EQ(p.NFAIL, status::ok);
  const Phase pure = p;
  p.NCOMP = 3;
  p.X(1) = 0.0;
  p.X(2) = 0.0;
  p.X(3) = 1.0;
  p.run();
  EXPECT_NEAR(pure.FUG(3), p.FUG(3), 1e-9);
  EXPECT_NEAR(pure.ZVOL, p.ZVOL, 1e-9);
}

TEST_F(CubicPhaseTest, FailureOfTheEquationLeavesItsStatusAndTheMark) {
  reset_error_ring();
  p.X.fill(0.0);
  p.run();
  EXPECT_EQ(p.NFAIL, status::input);
  EXPECT_EQ(p.ZFUG, 1.23456789e34);
  EXPECT_EQ(p.ZVOL, 1.23456789e34);
  ASSERT_EQ(ring.count, 2);
  EXPECT_EQ(trimmed(ring.TXTER0(1)), "Sum of mole fractions too low");
  EXPECT_EQ(trimmed(ring.TXTER0(2)), "Equation of state calculation failed");
}

}  // namespace
}  // namespace talix
