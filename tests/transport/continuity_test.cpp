// Where viscosity, conductivity and vapour pressure step, and that they do so nowhere else: each run over temperature or
// pressure is searched for jumps, and those found must be the ones that the method states.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "database/component_record.h"
#include "engine/codes.h"
#include "engine/shmix_driver.h"
#include "fastprops/fast_density.h"
#include "fastprops/flash_record.h"
#include "fastprops/surface_tension.h"
#include "support/flash_case.h"
#include "transport/dense_fluid_record.h"
#include "transport/stc_conductivity.h"
#include "transport/svi_liquid.h"
#include "transport/svi_vapour.h"

namespace talix {
namespace {

constexpr R8 kBar = 1e5;

using Function = std::function<R8(R8)>;
using Entry = void (*)(const R8&, const R8&, const CompVec&, const I4&, const Vec<I4, kMaxComponents>&,
                       const I4&, const I4&, R8&, R8&, I4&);

struct Step {
  R8 at, ratio;  // where, and the value behind it over the one before it
};

// Jumps of f on a grid of n intervals: changes that stand out from both neighbours and from rounding.
std::vector<Step> steps_of(const Function& f, R8 low, R8 high, int n, R8 rounding = 2e-5) {
  std::vector<R8> x, y;
  for (int k = 0; k <= n; ++k) {
    x.push_back(low + (high - low) * k / n);
    y.push_back(f(x.back()));
  }
  const auto change = [&y](std::size_t k) { return y[k + 1] - y[k]; };
  std::vector<Step> found;
  for (std::size_t k = 1; k + 2 < x.size(); ++k) {
    const R8 expected = 0.5 * (change(k - 1) + change(k + 1));
    const R8 spread = std::fabs(change(k + 1) - change(k - 1));
    if (std::fabs(change(k) - expected) > 2.0 * spread + rounding * std::fabs(y[k]))
      found.push_back({0.5 * (x[k] + x[k + 1]), y[k + 1] / y[k]});
  }
  return found;
}

std::string words(const std::vector<Step>& steps) {
  std::ostringstream out;
  for (const Step& s : steps) out << s.at << " (" << s.ratio << ") ";
  return out.str();
}

class Continuity : public testing::Test {};

// A mixture of the bank, loaded by a flash.
void load(std::vector<int> numbers, std::vector<R4> feed) {
  test::fresh_library();
  test::FlashCase c;
  c.numbers = std::move(numbers);
  c.feed = std::move(feed);
  c.T = 60.0F;
  c.P = 20.0F;
  c.run();
  ASSERT_EQ(fl.NC, c.nc());
}

// What an entry of the engine gives for the feed of that flash.
R8 value(Entry entry, R8 T, R8 P, I4 METHOD) {
  CompVec x{};
  Vec<I4, kMaxComponents> IC{};
  R8 sum = 0.0;
  for (int i = 1; i <= fl.NC; ++i) sum += static_cast<R8>(fl.SF(i));
  for (int i = 1; i <= fl.NC; ++i) {
    x(i) = static_cast<R8>(fl.SF(i)) / sum;
    IC(i) = 1;
  }
  R8 v = 0.0, derivative = 0.0;
  I4 STATUS = 0;
  entry(T, P, x, fl.NC, IC, transport_request::value, METHOD, v, derivative, STATUS);
  EXPECT_EQ(STATUS, status::ok) << T << " K " << P / kBar << " bar";
  return v;
}

// The seven lightest of a natural gas.
void load_gas() { load({15, 4, 20, 21, 22, 24, 23}, {0.01F, 0.02F, 0.80F, 0.10F, 0.05F, 0.01F, 0.01F}); }
constexpr int kGasComponents = 7;

// Hexane, decane and benzene, all with sets of their own.
void load_oil() { load({28, 116, 277}, {0.4F, 0.5F, 0.1F}); }

// Whether a component of the last mixture is at twice its critical temperature, as the reference sees it.
bool one_at_twice_its_critical_temperature(R8 T) {
  for (int i = 1; i <= kGasComponents; ++i) {
    const R8 Tr = static_cast<R8>(dense_mixture.F(i) / dense_mixture.FMIX) * T / comp.TC(i);
    if (std::fabs(Tr - 2.0) < 5e-3) return true;
  }
  return false;
}

void expect_steps_at(const std::vector<Step>& found, std::vector<R8> places, R8 apart) {
  ASSERT_EQ(found.size(), places.size()) << words(found);
  std::sort(places.begin(), places.end());
  for (std::size_t k = 0; k < places.size(); ++k) EXPECT_NEAR(found[k].at, places[k], apart) << words(found);
}

// The slopes of the shape factors stop there: the one stated step of the corresponding-states vapour.
TEST_F(Continuity, VapourStepsWithTemperatureWhereAComponentReachesTwiceItsCriticalTemperature) {
  load_gas();
  for (const R8 P : {1.0, 30.0, 100.0, 200.0}) {
    int steps = 0;
    for (const Entry entry : {Entry{SVVIM1}, Entry{STCVM1}}) {
      const auto f = [&](R8 T) { return value(entry, T, P * kBar, method::mixture); };
      for (const Step& s : steps_of(f, 200.0, 700.0, 5000, 5e-4)) {
        f(s.at);
        EXPECT_TRUE(one_at_twice_its_critical_temperature(s.at)) << P << " bar, " << s.at << " K";
        EXPECT_NEAR(s.ratio, 1.0, 0.009) << P << " bar, " << s.at << " K";
        ++steps;
      }
    }
    EXPECT_GE(steps, 5) << P << " bar: one for each component from ethane on";
  }
}

TEST_F(Continuity, VapourStepsWithPressureOnlyWhereAComponentReachesTwiceItsCriticalTemperature) {
  load_gas();
  for (const R8 T : {250.0, 300.0, 350.0, 400.0, 450.0, 600.0})
    for (const Entry entry : {Entry{SVVIM1}, Entry{STCVM1}}) {
      const auto f = [&](R8 lnP) { return value(entry, T, std::exp(lnP) * kBar, method::mixture); };
      const auto found = steps_of(f, -3.0, 6.0, 6000, 7e-4);
      for (const Step& s : found) {
        f(s.at);
        EXPECT_TRUE(one_at_twice_its_critical_temperature(T)) << T << " K, " << std::exp(s.at) << " bar";
      }
      if (T < 440.0 || T > 480.0) {
        EXPECT_TRUE(found.empty()) << T << " K: " << words(found);
      }
    }
}

TEST_F(Continuity, DenseGasCorrectionHasNoStep) {
  load_gas();
  for (const Entry entry : {Entry{SVVIM1}, Entry{STCVM1}}) {
    for (const R8 P : {1.0, 30.0, 100.0, 200.0}) {
      const auto f = [&](R8 T) { return value(entry, T, P * kBar, method::thodos_wilke_dean); };
      EXPECT_EQ(words(steps_of(f, 260.0, 700.0, 4000)), "") << P;
    }
    for (const R8 T : {270.0, 350.0, 600.0}) {
      const auto f = [&](R8 lnP) { return value(entry, T, std::exp(lnP) * kBar, method::thodos_wilke_dean); };
      EXPECT_EQ(words(steps_of(f, -3.0, 6.0, 6000)), "") << T;
    }
  }
}

TEST_F(Continuity, LiquidOfLightHydrocarbonsHasNoStep) {
  load({21, 22, 23, 25}, {0.2F, 0.3F, 0.3F, 0.2F});
  for (const Entry entry : {Entry{SLVIM1}, Entry{STCLM1}}) {
    const auto f = [&](R8 T) { return value(entry, T, 60.0 * kBar, method::mixture); };
    EXPECT_EQ(words(steps_of(f, 150.0, 380.0, 4600, 3e-4)), "");
    const auto g = [&](R8 P) { return value(entry, 280.0, P * kBar, method::mixture); };
    EXPECT_EQ(words(steps_of(g, 30.0, 300.0, 5400, 3e-4)), "");
  }
}

// From its critical temperature on a component has no set, and joins the group of the light ones. At 1 bar the liquid
// root ends at 540 K, and the density is that of the vapour.
TEST_F(Continuity, LiquidViscosityStepsAtTheCriticalTemperatureOfAComponent) {
  load_oil();
  const auto at = [](R8 P) { return [P](R8 T) { return value(SLVIM1, T, P * kBar, method::mixture); }; };
  expect_steps_at(steps_of(at(30.0), 240.0, 560.0, 6400), {comp.TC(1)}, 0.06);
  const auto found = steps_of(at(1.0), 240.0, 560.0, 6400);
  // The second is where the equation of state with these curves has no liquid left at 1 bar.
  expect_steps_at(found, {comp.TC(1), 540.275}, 0.06);
  EXPECT_NEAR(found.at(0).ratio, 1.165, 0.02);
  EXPECT_LT(found.at(1).ratio, 0.7);
}

// The factor for the pressure begins at one atmosphere.
TEST_F(Continuity, LiquidViscosityStepsAtOneAtmosphere) {
  load_oil();
  for (const R8 T : {300.0, 450.0}) {
    const auto found =
        steps_of([T](R8 P) { return value(SLVIM1, T, P * kBar, method::mixture); }, 0.513, 60.0, 6000);
    expect_steps_at(found, {1.01325}, 0.006);
    EXPECT_NEAR(found.at(0).ratio, 1.0012, 0.0003);
  }
}

// Lenoir's factor holds between 0.4 and 0.8 of the critical temperature of each component and from 34.5 bar.
TEST_F(Continuity, LiquidConductivityStepsAtTheLimitsOfLenoirsFactor) {
  load_oil();
  const auto at = [](R8 P) { return [P](R8 T) { return value(STCLM1, T, P * kBar, method::mixture); }; };
  expect_steps_at(steps_of(at(50.0), 240.0, 560.0, 6400),
                  {0.4 * comp.TC(2), 0.8 * comp.TC(1), 0.8 * comp.TC(3), 0.8 * comp.TC(2), comp.TC(1)}, 0.06);
  expect_steps_at(steps_of(at(30.0), 240.0, 560.0, 6400), {comp.TC(1)}, 0.06);
  for (const R8 T : {300.0, 450.0}) {
    const auto found =
        steps_of([T](R8 P) { return value(STCLM1, T, P * kBar, method::mixture); }, 0.513, 60.0, 6000);
    expect_steps_at(found, {34.5}, 0.01);
    EXPECT_NEAR(found.at(0).ratio, 1.075, 0.005);
  }
}

// Vapour pressures at and above the critical temperature.

R8 vapour_pressure(R8 T, int i, I4 METHOD) {
  R8 ps = 0.0, dps = 0.0;
  I4 STATUS = 0;
  SPSAT0(T, 1.0, i, logical(true), logical(false), METHOD, ps, dps, STATUS);
  EXPECT_EQ(STATUS, status::ok) << i << ' ' << T;
  return ps;
}

TEST_F(Continuity, WagnerHasNoStepAndFrostKalkwarfThatOfItsFitAtTheCriticalPoint) {
  load({20, 21, 22, 28, 116, 277, 4, 15, 9, 328},
       {0.1F, 0.1F, 0.1F, 0.1F, 0.1F, 0.1F, 0.1F, 0.1F, 0.1F, 0.1F});
  for (int i = 1; i <= fl.NC; ++i) {
    const R8 tc = comp.TC(i);
    const auto wagner = [i](R8 T) { return vapour_pressure(T, i, method::bramm_default); };
    EXPECT_EQ(words(steps_of(wagner, 0.9 * tc, 2.2 * tc, 5000)), "") << i;
    const auto frost = [i](R8 T) { return vapour_pressure(T, i, method::frost_kalkwarf); };
    for (const Step& s : steps_of(frost, 0.9 * tc, 2.2 * tc, 5000)) {
      EXPECT_NEAR(s.at, tc, 3e-4 * tc) << i;
      EXPECT_NEAR(s.ratio, 1.0, 0.006) << i;
    }
  }
}

// The fast layer goes on from the critical point with exp(-0.39937)/0.7 of the critical pressure, and with the density
// of the critical volume.
TEST_F(Continuity, FastVapourPressureAndDensityStepAtTheCriticalTemperature) {
  load({20, 22, 28, 116, 277, 4, 15, 9}, {0.1F, 0.1F, 0.1F, 0.1F, 0.1F, 0.1F, 0.1F, 0.1F});
  for (int i = 1; i <= fl.NC; ++i) {
    const R8 tc = static_cast<R8>(fl.TC(i));
    const auto pressure = [i](R8 T) {
      FlashVec P0{};
      Message MSG{};
      FKW(fl.NC, static_cast<R4>(T), fl.PC, fl.TC, fl.NAME, fl.CP0, P0, MSG);
      return static_cast<R8>(P0(i));
    };
    const auto found = steps_of(pressure, 0.9 * tc, 1.5 * tc, 3000, 1e-3);
    expect_steps_at(found, {tc}, 3e-4 * tc);
    EXPECT_NEAR(found.at(0).ratio, 0.958, 0.006) << i;
    const auto density = [i](R8 T) {
      FlashVec DEN{};
      RHO(fl.NC, static_cast<R4>(T), fl.VC, fl.TC, fl.AMW, fl.CDEN, DEN);
      return static_cast<R8>(DEN(i));
    };
    for (const Step& s : steps_of(density, 0.9 * tc, 1.2 * tc, 3000)) {
      EXPECT_NEAR(s.at, tc, 3e-4 * tc) << i;
      EXPECT_NEAR(s.ratio, 1.0, 0.07) << i;
    }
  }
}

TEST_F(Continuity, SurfaceTensionHasNoStep) {
  load({20, 22, 28, 116}, {0.3F, 0.2F, 0.3F, 0.2F});
  FlashVec Y{}, X{};
  for (int i = 1; i <= 4; ++i) {
    X(i) = fl.SF(i);
    Y(i) = i == 1 ? 0.97F : 0.01F;
  }
  const auto f = [&](R8 T) {
    R4 SIGMA = 0.0F;
    SURTEN1(4, static_cast<R4>(T), 30.0F, Y, X, 0.9F, 0.12F, SIGMA);
    return static_cast<R8>(SIGMA);
  };
  EXPECT_GT(f(200.0), 1.0);
  EXPECT_EQ(words(steps_of(f, 150.0, 700.0, 5500, 1e-4)), "");
}

// Towards a pure component every route gives what it gives for that component alone.
TEST_F(Continuity, TraceOfAnotherComponentLeavesThePureValue) {
  struct Route {
    Entry entry;
    I4 METHOD;
    R8 T, P;
  };
  const Route kRoutes[] = {
      {SVVIM1, method::thodos_wilke_dean, 550.0, 5.0}, {SVVIM1, method::mixture, 550.0, 5.0},
      {STCVM1, method::thodos_wilke_dean, 550.0, 5.0}, {STCVM1, method::mixture, 550.0, 5.0},
      {SLVIM1, method::sternling_samish, 320.0, 5.0},  {SLVIM1, method::livithec, 320.0, 5.0},
      {SLVIM1, method::mixture, 320.0, 20.0},          {SLVIM1, method::old_sternling_samish, 320.0, 20.0},
      {STCLM1, method::livithec, 320.0, 5.0},          {STCLM1, method::mixture, 320.0, 50.0}};
  for (const Route& r : kRoutes) {
    // Components with sets of their own, and one of the light ones as the trace.
    for (const auto& [pure, trace] : {std::pair{28, 33}, std::pair{28, 25}, std::pair{33, 28}}) {
      load({pure}, {1.0F});
      const R8 alone = value(r.entry, r.T, r.P * kBar, r.METHOD);
      EXPECT_GT(alone, 0.0);
      load({pure, trace}, {1.0F, 1e-7F});
      EXPECT_NEAR(value(r.entry, r.T, r.P * kBar, r.METHOD) / alone, 1.0, 2e-6)
          << r.METHOD << ' ' << pure << ' ' << trace;
      load({trace, pure}, {1e-7F, 1.0F});
      EXPECT_NEAR(value(r.entry, r.T, r.P * kBar, r.METHOD) / alone, 1.0, 2e-6)
          << r.METHOD << ' ' << pure << ' ' << trace;
    }
  }
}

}  // namespace
}  // namespace talix
