// Vapour viscosity: the entry SVVIM1 and its two methods.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "database/component_record.h"
#include "engine/codes.h"
#include "engine/model_record.h"
#include "support/dense_fluid_cases.h"
#include "support/eos_fixture.h"
#include "transport/phase_state.h"
#include "transport/svi_vapour.h"

namespace talix::test {
namespace {

constexpr R8 kBar = 1E5;
constexpr R8 kUntouched = -7.0;
constexpr R8 kNaN = std::numeric_limits<R8>::quiet_NaN();

class VapourViscosity : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_fixture();
    reset_dense_fluid_record();
    set_dense_fluid_constants();
    for (int i = 1; i <= kMaxComponents; ++i) {
      comp.VC(i) = 0.29 * 0.083145 * comp.TC(i) / comp.PC(i);
      IC(i) = i;
    }
    x(kMethane) = 0.9;
    x(kEthane) = 0.1;
  }
  // Viscosity [mPa s]; the status stays in STATUS.
  R8 viscosity(I4 METHOD, R8 T, R8 P, I4 MODE = transport_request::value) {
    R8 ETA = kUntouched;
    DETA = kUntouched;
    STATUS = 0;
    SVVIM1(T, P, x, NC, IC, MODE, METHOD, ETA, DETA, STATUS);
    return ETA;
  }
  void pure(int i) {
    x = {};
    x(i) = 1.0;
  }
  CompVec x{};
  I4 NC = kNitrogen;
  Vec<I4, kMaxComponents> IC{};
  R8 DETA = 0.0;
  I4 STATUS = 0;
};

constexpr I4 kMethods[] = {method::thodos_wilke_dean, method::mixture};

// Statuses.

TEST_F(VapourViscosity, TemperatureAndPressureMustBePositive) {
  for (const I4 METHOD : kMethods) {
    for (const R8 bad : {0.0, -1.0, kNaN}) {
      EXPECT_EQ(viscosity(METHOD, bad, kBar), kUntouched);
      EXPECT_EQ(STATUS, 87);
      EXPECT_EQ(viscosity(METHOD, 300.0, bad), kUntouched);
      EXPECT_EQ(STATUS, 87);
    }
  }
}

TEST_F(VapourViscosity, OtherMethodsAreNotServed) {
  for (const I4 METHOD : {method::livithec, method::sternling_samish, method::old_sternling_samish, I4{0}}) {
    EXPECT_EQ(viscosity(METHOD, 300.0, kBar), kUntouched);
    EXPECT_EQ(STATUS, 102);
  }
}

TEST_F(VapourViscosity, BothGivesTheValueAndSaysThatThereIsNoDerivative) {
  for (const I4 METHOD : kMethods) {
    const R8 value = viscosity(METHOD, 300.0, kBar);
    EXPECT_EQ(STATUS, 98);
    EXPECT_GT(value, 0.0);
    EXPECT_EQ(viscosity(METHOD, 300.0, kBar, transport_request::both), value);
    EXPECT_EQ(STATUS, 102);
    EXPECT_EQ(DETA, kUntouched);
  }
}

TEST_F(VapourViscosity, DerivativeIsNotAvailable) {
  for (const I4 METHOD : kMethods) {
    EXPECT_EQ(viscosity(METHOD, 300.0, kBar, transport_request::derivative), kUntouched);
    EXPECT_EQ(STATUS, 102);
    EXPECT_EQ(DETA, kUntouched);
  }
}

TEST_F(VapourViscosity, UnknownRequestIsNotServed) {
  for (const I4 MODE : {0, 4, -1}) {
    EXPECT_EQ(viscosity(method::mixture, 300.0, kBar, MODE), kUntouched);
    EXPECT_EQ(STATUS, 102);
  }
}

TEST_F(VapourViscosity, NeedsItsEquationOfState) {
  models = {};
  for (const I4 METHOD : kMethods) {
    EXPECT_EQ(viscosity(METHOD, 300.0, kBar), kUntouched);
    EXPECT_EQ(STATUS, 41);
    viscosity(METHOD, 300.0, kBar, transport_request::both);
    EXPECT_EQ(STATUS, 41);
  }
}

TEST_F(VapourViscosity, PassesAFailureOfItsEquationOfStateOn) {
  for (const I4 METHOD : kMethods) {
    EXPECT_EQ(viscosity(METHOD, 0.5, kBar), kUntouched) << "the property driver begins above 1 K";
    EXPECT_EQ(STATUS, 41);
  }
}

TEST_F(VapourViscosity, LiquidIsNoVapour) {
  pure(kDecane);
  const PhaseState state = transport_phase(phase::vapour, 300.0, 50.0 * kBar, x, NC, IC, false);
  ASSERT_NE(state.IPHRTN, phase::vapour);
  EXPECT_EQ(viscosity(method::thodos_wilke_dean, 300.0, 50.0 * kBar), kUntouched);
  EXPECT_EQ(STATUS, 100);
}

TEST_F(VapourViscosity, CorrespondingStatesTakeTheRootThatTheyGet) {
  pure(kDecane);
  EXPECT_GT(viscosity(method::mixture, 300.0, 50.0 * kBar), 0.1);
  EXPECT_EQ(STATUS, 98);
}

TEST_F(VapourViscosity, MixtureWithoutComponentsIsNoInput) {
  x = {};
  x(kMethane) = 1E-07;
  EXPECT_EQ(viscosity(method::mixture, 300.0, kBar), kUntouched);
  EXPECT_EQ(STATUS, 87);
}

// Low pressure.

TEST_F(VapourViscosity, DiluteValueFollowsItsFormula) {
  CompVec ETAP0{};
  SVITH0(NC, 300.0, ETAP0);
  for (const int i : {kMethane, kDecane, kNitrogen}) {
    const double tr = 300.0 / comp.TC(i);
    const double xi =
        std::pow(comp.TC(i), 0.16667) / (std::sqrt(comp.RMOLW(i)) * std::pow(comp.PC(i), 0.66667));
    const double expected = (4.61 * std::pow(tr, 0.618) - 2.04 * std::exp(-0.449 * tr) +
                             1.94 * std::exp(-std::min(4.508 * tr, 10.0)) + 0.1) /
                            xi / 10.0;
    EXPECT_NEAR(ETAP0(i) / expected, 1.0, 1E-06);
  }
  // Published: 11.1 and 17.9 micro-Pa s.
  EXPECT_NEAR(ETAP0(kMethane), 11.1, 0.2);
  EXPECT_NEAR(ETAP0(kNitrogen), 17.9, 0.4);
}

TEST_F(VapourViscosity, ExponentsOfTheDiluteValueAreLimited) {
  const R8 T = 40.0 * comp.TC(kMethane);
  CompVec ETAP0{};
  SVITH0(1, T, ETAP0);
  const double xi =
      std::pow(comp.TC(1), 0.16667) / (std::sqrt(comp.RMOLW(1)) * std::pow(comp.PC(1), 0.66667));
  const double expected =
      (4.61 * std::pow(40.0, 0.618) - 2.04 * std::exp(-10.0) + 1.94 * std::exp(-10.0) + 0.1) / xi / 10.0;
  EXPECT_NEAR(ETAP0(1) / expected, 1.0, 1E-07);
}

TEST_F(VapourViscosity, MixtureRuleGivesThePureValueForAPureComponent) {
  CompVec ETAP0{};
  SVITH0(NC, 300.0, ETAP0);
  for (const int i : {kMethane, kDecane, kNitrogen}) {
    pure(i);
    R8 ETAMIX = 0.0;
    SVIWK0(NC, x, ETAP0, ETAMIX);
    EXPECT_DOUBLE_EQ(ETAMIX, ETAP0(i));
  }
}

TEST_F(VapourViscosity, MixtureRuleFollowsItsFormula) {
  CompVec ETAP0{};
  SVITH0(2, 300.0, ETAP0);
  const auto phi = [&](int i, int j) {
    const double m = comp.RMOLW(j) / comp.RMOLW(i);
    const double r = 1.0 + std::sqrt(ETAP0(i) / ETAP0(j)) * std::pow(m, 0.25);
    return r * r / std::sqrt(8.0 * (1.0 + 1.0 / m));
  };
  R8 ETAMIX = 0.0;
  SVIWK0(2, x, ETAP0, ETAMIX);
  const double expected = 0.9 * ETAP0(1) / (0.9 + 0.1 * phi(1, 2)) + 0.1 * ETAP0(2) / (0.9 * phi(2, 1) + 0.1);
  EXPECT_NEAR(ETAMIX / expected, 1.0, 1E-12);
}

TEST_F(VapourViscosity, ScaleOfTheDenseGasTakesPascal) {
  pure(kMethane);
  R8 VCMIX = 0.0;
  R8 XI = 0.0;
  SVIDS0(NC, x, VCMIX, XI);
  EXPECT_DOUBLE_EQ(VCMIX, comp.VC(kMethane));
  const double pc = comp.PC(kMethane) * 1E5;
  const double expected = 2.1356E+10 * std::pow(comp.TC(kMethane), 0.16667) /
                          (std::sqrt(comp.RMOLW(kMethane)) * std::pow(pc, 0.666667));
  EXPECT_NEAR(XI / expected, 1.0, 1E-06);
}

// Dense gas.

TEST_F(VapourViscosity, DenseGasFollowsItsFormula) {
  pure(kMethane);
  for (const R8 P : {kBar, 50.0 * kBar, 200.0 * kBar}) {
    const PhaseState state = transport_phase(phase::vapour, 300.0, P, x, NC, IC, false);
    ASSERT_EQ(state.status, status::ok);
    const double rho = 0.001 * comp.VC(kMethane) / state.V;
    CompVec ETAP0{};
    R8 VCMIX = 0.0;
    R8 XI = 0.0;
    SVITH0(NC, 300.0, ETAP0);
    SVIDS0(NC, x, VCMIX, XI);
    const double excess = 1.08 * (std::exp(1.439 * rho) - std::exp(-1.111 * std::pow(rho, 1.858)));
    EXPECT_NEAR(
        viscosity(method::thodos_wilke_dean, 300.0, P) / (0.001 * (ETAP0(kMethane) + 1E6 * excess / XI)), 1.0,
        1E-06);
  }
}

// Published: E. W. Lemmon, R. T Jacobsen, Int. J. Thermophys. 25 (2004) 21 for nitrogen; S. E. Quinones-Cisneros,
// U. K. Deiters, J. Phys. Chem. B 110 (2006) 12820 for methane.
TEST_F(VapourViscosity, BothMethodsAreNearPublishedGases) {
  struct Point {
    int component;
    R8 T, P, eta;  // [K], [Pa], [mPa s]
  };
  for (const Point& p : {Point{kMethane, 300.0, 1E5, 0.01125}, Point{kMethane, 300.0, 1E7, 0.01411},
                         Point{kNitrogen, 300.0, 1E5, 0.01788}, Point{kNitrogen, 300.0, 1E7, 0.02001}}) {
    pure(p.component);
    comp.VC(kMethane) = 0.0986;
    comp.VC(kNitrogen) = 0.0894;
    for (const I4 METHOD : kMethods)
      EXPECT_NEAR(viscosity(METHOD, p.T, p.P) / p.eta, 1.0, 0.05)
          << METHOD << ' ' << p.component << ' ' << p.P;
  }
}

TEST_F(VapourViscosity, TwoAndAHalfTimesTheCriticalDensityIsStillAGas) {
  pure(kMethane);
  const R8 T = 200.0;
  const R8 P = 1000.0 * kBar;
  const PhaseState state = transport_phase(phase::vapour, T, P, x, NC, IC, false);
  ASSERT_EQ(state.status, status::ok);
  ASSERT_EQ(state.IPHRTN, phase::vapour);
  const auto reduced = [&] { return 0.001 * comp.VC(kMethane) / state.V; };
  comp.VC(kMethane) = 2500.0 * state.V;
  while (reduced() < 2.5) comp.VC(kMethane) = std::nextafter(comp.VC(kMethane), 1E9);
  while (reduced() > 2.5) comp.VC(kMethane) = std::nextafter(comp.VC(kMethane), 0.0);
  ASSERT_EQ(reduced(), 2.5);
  comp.ILVT(kMethane) = 0;
  EXPECT_GT(viscosity(method::thodos_wilke_dean, T, P), 0.0);
  EXPECT_EQ(STATUS, 98);
  // One step denser, and the liquid routine answers: without its data with its own status.
  while (reduced() <= 2.5) comp.VC(kMethane) = std::nextafter(comp.VC(kMethane), 1E9);
  viscosity(method::thodos_wilke_dean, T, P);
  EXPECT_EQ(STATUS, 119);
}

// Corresponding states.

TEST_F(VapourViscosity, CorrespondingStatesTakeTheSameStateAsTheDenseFluid) {
  const R8 T = 280.0;
  const R8 P = 60.0 * kBar;
  const PhaseState state = transport_phase(phase::vapour, T, P, x, NC, IC, false);
  DenseCase c;
  c.N = 2;
  c.T = static_cast<R4>(T);
  c.RHO = static_cast<R4>(0.001 / state.V);
  for (int i = 1; i <= 2; ++i) {
    c.X(i) = static_cast<R4>(x(i));
    c.CMW(i) = static_cast<R4>(comp.RMOLW(i));
    c.PC(i) = static_cast<R4>(comp.PC(i) / 1.01325);
    c.TC(i) = static_cast<R4>(comp.TC(i));
    c.VC(i) = static_cast<R4>(comp.VC(i));
    c.W(i) = static_cast<R4>(comp.OMEGA(i));
  }
  EXPECT_NEAR(viscosity(method::mixture, T, P) / (1E-04 * static_cast<R8>(dense_answer(c).viscosity)), 1.0,
              1E-06);
  EXPECT_EQ(dense_call.MODE, 0);
}

TEST_F(VapourViscosity, TracesAreLeftOutAndTheRestIsNormalised) {
  pure(kMethane);
  const R8 alone = viscosity(method::mixture, 300.0, kBar);
  x(kNitrogen) = 9.9E-07;
  EXPECT_NEAR(viscosity(method::mixture, 300.0, kBar) / alone, 1.0, 1E-06);
  EXPECT_EQ(dense_call.N, 1);
  EXPECT_EQ(dense_call.X(1), 1.0F);
  x(kNitrogen) = 1E-06;
  viscosity(method::mixture, 300.0, kBar);
  EXPECT_EQ(dense_call.N, 2);
  x = {};
  x(kMethane) = 1.5;
  x(kEthane) = 0.5;
  viscosity(method::mixture, 300.0, kBar);
  EXPECT_EQ(dense_call.X(1), 0.75F);
  EXPECT_EQ(dense_call.X(2), 0.25F);
}

TEST_F(VapourViscosity, PressureThatIsNotPositiveBecomesOnePascal) {
  R8 one = 0.0;
  SVITR0(x, 1.0, 300.0, IC, NC, one, STATUS);
  ASSERT_EQ(STATUS, status::ok);
  for (const R8 P : {0.0, -5.0, kNaN}) {
    R8 ETA = 0.0;
    SVITR0(x, P, 300.0, IC, NC, ETA, STATUS);
    EXPECT_EQ(STATUS, status::ok);
    EXPECT_EQ(ETA, one);
  }
}

TEST_F(VapourViscosity, ComponentsAreThoseOfTheTablesWhateverTheIndexListSays) {
  for (const I4 METHOD : kMethods) {
    const R8 expected = viscosity(METHOD, 300.0, 20.0 * kBar);
    IC.fill(1);
    EXPECT_EQ(viscosity(METHOD, 300.0, 20.0 * kBar), expected);
    for (int i = 1; i <= kMaxComponents; ++i) IC(i) = i;
  }
}

TEST_F(VapourViscosity, InfiniteDilutionIsThePureVapour) {
  for (const I4 METHOD : kMethods) {
    pure(kMethane);
    const R8 alone = viscosity(METHOD, 300.0, 40.0 * kBar);
    x(kMethane) = 1.0 - 1.5E-06;
    x(kDecane) = 1.5E-06;
    EXPECT_NEAR(viscosity(METHOD, 300.0, 40.0 * kBar) / alone, 1.0, 1E-04);
  }
}

TEST_F(VapourViscosity, IsContinuousInTemperatureAndPressure) {
  for (const I4 METHOD : kMethods) {
    for (R8 T = 250.0; T < 600.0; T += 1.0)
      EXPECT_NEAR(viscosity(METHOD, T + 1.0, 50.0 * kBar) / viscosity(METHOD, T, 50.0 * kBar), 1.0, 0.02)
          << T;
    for (R8 P = kBar; P < 300.0 * kBar; P *= 1.02)
      EXPECT_NEAR(viscosity(METHOD, 300.0, 1.02 * P) / viscosity(METHOD, 300.0, P), 1.0, 0.03) << P;
  }
}

}  // namespace
}  // namespace talix::test
