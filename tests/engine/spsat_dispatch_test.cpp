#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "database/component_record.h"
#include "engine/codes.h"
#include "engine/reset.h"
#include "engine/shmix_driver.h"

namespace talix {
namespace {

// Every set gives another constant pressure, so that the value tells which one was taken.
constexpr R8 kT = 200.0;
constexpr R8 kWagner = 50e5;
constexpr R8 kFrostKalkwarf = 1e6;
constexpr R8 kAntoineOwn = 1e7;
constexpr R8 kAntoineGeneral = 1e8;
constexpr R8 kExtended = 1.0;

struct Flags {
  I4 IPWA, IPSA, IPAN, IPANO;
  R8 third;  // third coefficient of the general set
};

struct Case {
  I4 method;
  Flags flags;
  I4 nfail;
  R8 pressure;
};

void set_component(const Flags& flags) {
  reset_engine();
  comp.TC(1) = kT;
  comp.PC(1) = 50.0;
  comp.TBOIL(1) = 100.0;
  comp.IPWA(1) = flags.IPWA;
  comp.IPSA(1) = flags.IPSA;
  comp.IPAN(1) = flags.IPAN;
  comp.IPANO(1) = flags.IPANO;
  comp.PWAG(1, 1) = -6.0;
  comp.PSAT(1, 3) = flags.third;
  // With a third coefficient the set is of the Antoine form: 10^2 MPa.
  comp.PSAT(1, 1) = flags.third != 0.0 ? 2.0 : 0.0;
  comp.PANT(1, 1) = 1.0;
}

constexpr I4 kNone = status::model_error;

const Case kCases[] = {
    // method, {IPWA, IPSA, IPAN, IPANO, third}
    {36, {1, 1, 1, 7, 5.0}, 98, kWagner},        {36, {0, 1, 0, 7, 5.0}, 98, kAntoineGeneral},
    {36, {0, 1, 1, 7, 5.0}, 98, kAntoineOwn},    {36, {0, 1, 1, 7, 0.0}, 98, kFrostKalkwarf},
    {36, {0, 7, 1, 7, 0.0}, 98, kAntoineOwn},    {36, {0, 7, 0, 7, 5.0}, 98, kExtended},
    {36, {0, 7, 0, 0, 5.0}, kNone, -1.0},        {36, {0, 0, 1, 7, 5.0}, 98, kAntoineOwn},
    {36, {0, 0, 0, 7, 5.0}, 98, kExtended},      {36, {0, 0, 0, 0, 5.0}, kNone, -1.0},
    {5, {1, 1, 0, 7, 5.0}, 98, kAntoineGeneral}, {5, {1, 1, 1, 7, 0.0}, 98, kFrostKalkwarf},
    {5, {1, 7, 1, 7, 0.0}, 98, kFrostKalkwarf},  {5, {1, 0, 1, 7, 5.0}, 98, kAntoineOwn},
    {5, {1, 0, 0, 7, 5.0}, kNone, -1.0},         {80, {1, 1, 1, 7, 0.0}, 98, kFrostKalkwarf},
    {80, {1, 7, 1, 7, 0.0}, 98, kFrostKalkwarf}, {80, {1, 0, 1, 7, 0.0}, kNone, -1.0},
    {60, {1, 1, 1, 7, 0.0}, 98, kWagner},        {60, {0, 1, 1, 7, 0.0}, kNone, -1.0},
    {3, {1, 1, 1, 7, 5.0}, 98, kAntoineOwn},     {3, {1, 1, 0, 7, 5.0}, kNone, -1.0},
    {144, {1, 1, 1, 7, 5.0}, 98, kExtended},     {144, {1, 1, 1, 0, 5.0}, kNone, -1.0},
    {85, {0, 0, 0, 0, 0.0}, 98, 777.0},          {0, {1, 1, 1, 7, 0.0}, 102, -1.0},
    {41, {1, 1, 1, 7, 0.0}, 102, -1.0},          {-1, {1, 1, 1, 7, 0.0}, 102, -1.0},
};

TEST(VapourPressureChoice, FollowsTheTableForEveryMethod) {
  for (const Case& c : kCases) {
    SCOPED_TRACE("method " + std::to_string(c.method) + " IPWA " + std::to_string(c.flags.IPWA) + " IPSA " +
                 std::to_string(c.flags.IPSA) + " IPAN " + std::to_string(c.flags.IPAN) + " IPANO " +
                 std::to_string(c.flags.IPANO));
    set_component(c.flags);
    R8 ps = -1.0;
    R8 dps = -1.0;
    I4 nfail = 0;
    SPSAT0(kT, 777.0, 1, logical(true), logical(true), c.method, ps, dps, nfail);
    EXPECT_EQ(nfail, c.nfail);
    EXPECT_DOUBLE_EQ(ps, c.pressure);
  }
}

TEST(VapourPressureChoice, IdealGasReturnsWhatItWasGiven) {
  reset_engine();
  R8 ps = -1.0;
  R8 dps = -1.0;
  I4 nfail = 0;
  SPSAT0(300.0, 12345.0, 1, logical(true), logical(false), method::ideal_gas, ps, dps, nfail);
  EXPECT_EQ(nfail, status::ok);
  EXPECT_EQ(ps, 12345.0);
  EXPECT_EQ(dps, -1.0);
  SPSAT0(300.0, 5.0, 1, logical(false), logical(true), method::ideal_gas, ps, dps, nfail);
  EXPECT_EQ(ps, 12345.0);
  EXPECT_EQ(dps, 0.0);
}

TEST(VapourPressureChoice, TemperatureMustBePositive) {
  reset_engine();
  for (const R8 T : {0.0, -1.0, std::numeric_limits<R8>::quiet_NaN()}) {
    for (const I4 code : {85, 36, 999}) {
      R8 ps = -1.0;
      R8 dps = -1.0;
      I4 nfail = 0;
      SPSAT0(T, 1.0, 1, logical(true), logical(true), code, ps, dps, nfail);
      EXPECT_EQ(nfail, status::input);
      EXPECT_EQ(ps, -1.0);
    }
  }
}

TEST(VapourPressureChoice, StatusOfTheCorrelationIsPassedOn) {
  set_component({0, 1, 0, 0, 0.0});
  comp.PSAT(1, 5) = 1e6;
  R8 ps = -1.0;
  R8 dps = -1.0;
  I4 nfail = 0;
  SPSAT0(150.0, 1.0, 1, logical(true), logical(true), method::frost_kalkwarf, ps, dps, nfail);
  EXPECT_EQ(nfail, status::no_root);
}

}  // namespace
}  // namespace talix
