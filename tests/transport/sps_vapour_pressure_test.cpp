#include "transport/sps_vapour_pressure.h"

#include <gtest/gtest.h>

#include <cmath>

#include "database/component_record.h"
#include "engine/codes.h"
#include "engine/reset.h"

namespace talix {
namespace {

using Correlation = void (*)(const R8&, const I4&, const L4&, const L4&, R8&, R8&, I4&);

struct Point {
  R8 value, derivative;
  I4 nfail;
};

Point evaluate(Correlation correlation, R8 T, I4 component = 1) {
  Point p{-1.0, -1.0, 0};
  correlation(T, component, logical(true), logical(true), p.value, p.derivative, p.nfail);
  return p;
}

void expect_slope(Correlation correlation, R8 T, R8 tolerance = 1e-8) {
  const R8 h = 1e-4 * T;
  const auto value = [correlation](R8 t) { return evaluate(correlation, t).value; };
  const R8 slope = (8.0 * (value(T + h) - value(T - h)) - (value(T + 2 * h) - value(T - 2 * h))) / (12.0 * h);
  EXPECT_NEAR(evaluate(correlation, T).derivative / slope, 1.0, tolerance) << "at " << T << " K";
}

// Component 1 is methane-like throughout.
class VapourPressureTest : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_engine();
    comp.TC(1) = 190.56;
    comp.PC(1) = 45.99;
    comp.TBOIL(1) = 111.7;
  }
  static void set_wagner() {
    comp.IPWA(1) = 1;
    const R8 set[4] = {-6.00435, 1.18850, -0.834082, -1.22833};
    for (int i = 1; i <= 4; ++i) comp.PWAG(1, i) = set[i - 1];
  }
  // ln PS - d PS/T^2 = a + b/T + c ln T in MPa.
  static void set_frost_kalkwarf(R8 a, R8 b, R8 c, R8 d) {
    const R8 ln_ten = static_cast<R8>(2.30258512F);
    comp.IPSA(1) = 1;
    comp.PSAT(1, 1) = a / ln_ten;
    comp.PSAT(1, 2) = b / ln_ten;
    comp.PSAT(1, 4) = c;
    comp.PSAT(1, 5) = d / ln_ten;
  }
};

// ---- Wagner

TEST_F(VapourPressureTest, WagnerGivesTheBoilingPointOfMethane) {
  set_wagner();
  EXPECT_NEAR(evaluate(SPSWG0, 111.67).value, 101325.0, 0.01 * 101325.0);
}

TEST_F(VapourPressureTest, WagnerAtTheCriticalTemperatureIsTheCriticalPressure) {
  set_wagner();
  const Point p = evaluate(SPSWG0, 190.56);
  EXPECT_EQ(p.nfail, status::ok);
  EXPECT_DOUBLE_EQ(p.value, 4.599e6);
  EXPECT_DOUBLE_EQ(p.derivative, 4.599e6 * 6.00435 / 190.56);
}

TEST_F(VapourPressureTest, WagnerSlopeIsThatOfItsValues) {
  set_wagner();
  for (const R8 T : {95.0, 111.7, 150.0, 180.0, 189.0, 200.0, 300.0, 370.0}) expect_slope(SPSWG0, T);
}

TEST_F(VapourPressureTest, WagnerIsContinuousThroughTheCriticalPoint) {
  set_wagner();
  EXPECT_NEAR(evaluate(SPSWG0, 190.56 - 1e-7).value / evaluate(SPSWG0, 190.56 + 1e-7).value, 1.0, 1e-7);
}

TEST_F(VapourPressureTest, WagnerIsHeldFromTwiceTheCriticalTemperatureUp) {
  set_wagner();
  const R8 held = 4.599e6 * std::exp(6.00435);
  for (const R8 T : {381.12, 500.0, 1e4}) {
    const Point p = evaluate(SPSWG0, T);
    EXPECT_DOUBLE_EQ(p.value, held);
    EXPECT_DOUBLE_EQ(p.derivative, held * 6.00435 / 190.56);
  }
}

// ---- Antoine

TEST_F(VapourPressureTest, AntoineIsAPowerOfTenInMegapascal) {
  comp.IPAN(1) = 1;
  comp.PANT(1, 1) = 3.0;
  comp.PANT(1, 2) = -400.0;
  comp.PANT(1, 3) = -8.0;
  EXPECT_DOUBLE_EQ(evaluate(SPSAN1, 108.0).value, 1e6 * std::pow(10.0, -1.0));
  for (const R8 T : {90.0, 150.0, 400.0}) expect_slope(SPSAN1, T, 1e-7);
}

TEST_F(VapourPressureTest, AntoineTakesTheGeneralSetWithoutItsOwn) {
  comp.PSAT(1, 1) = 2.0;
  comp.PSAT(1, 2) = -300.0;
  comp.PSAT(1, 3) = 0.5;
  comp.PANT(1, 1) = 77.0;
  EXPECT_DOUBLE_EQ(evaluate(SPSAN1, 99.5).value, 1e6 * std::pow(10.0, -1.0));
}

TEST_F(VapourPressureTest, AntoineAtItsPoleIsAnInputError) {
  comp.IPAN(1) = 1;
  comp.PANT(1, 2) = -400.0;
  comp.PANT(1, 3) = -150.0;
  const Point p = evaluate(SPSAN1, 150.0);
  EXPECT_EQ(p.nfail, status::input);
  EXPECT_EQ(p.value, 0.0);
  EXPECT_EQ(p.derivative, 0.0);
}

// ---- Frost-Kalkwarf

void expect_frost_kalkwarf_solved(R8 T, R8 a, R8 b, R8 c, R8 d) {
  const Point p = evaluate(SPSFK0, T);
  ASSERT_EQ(p.nfail, status::ok);
  const R8 ps = p.value * 1e-6;
  EXPECT_NEAR(std::log(ps) - d * ps / (T * T), a + b / T + c * std::log(T), 1e-9);
}

TEST_F(VapourPressureTest, FrostKalkwarfSatisfiesItsEquationForEitherSignOfD) {
  comp.TC(1) = 370.0;
  for (const R8 d : {12000.0, 0.0, -12000.0})
    for (const R8 T : {120.0, 200.0, 300.0}) {
      set_frost_kalkwarf(26.4, -2800.0, -3.0, d);
      expect_frost_kalkwarf_solved(T, 26.4, -2800.0, -3.0, d);
      expect_slope(SPSFK0, T, 1e-7);
    }
}

TEST_F(VapourPressureTest, FrostKalkwarfWithoutDIsExplicit) {
  comp.TC(1) = 370.0;
  set_frost_kalkwarf(26.4, -2800.0, -3.0, 0.0);
  EXPECT_NEAR(evaluate(SPSFK0, 300.0).value / (1e6 * std::exp(26.4 - 2800.0 / 300.0 - 3.0 * std::log(300.0))),
              1.0, 1e-13);
}

TEST_F(VapourPressureTest, FrostKalkwarfIsCapped) {
  comp.TC(1) = 370.0;
  set_frost_kalkwarf(150.0, 0.0, 0.0, 0.0);
  EXPECT_DOUBLE_EQ(evaluate(SPSFK0, 300.0).value, 1e26);
}

TEST_F(VapourPressureTest, FrostKalkwarfHasNoRootWhereThePositiveTermIsTooLarge) {
  comp.TC(1) = 370.0;
  // T^2 exp(-Q0 - 1) is the largest D with a root; Q0 is 0 here.
  const R8 limit = 300.0 * 300.0 * std::exp(-1.0);
  set_frost_kalkwarf(0.0, 0.0, 0.0, 1.0001 * limit);
  const Point p = evaluate(SPSFK0, 300.0);
  EXPECT_EQ(p.nfail, status::no_root);
  EXPECT_EQ(p.value, -1.0);
  set_frost_kalkwarf(0.0, 0.0, 0.0, 0.9 * limit);
  expect_frost_kalkwarf_solved(300.0, 0.0, 0.0, 0.0, 0.9 * limit);
}

TEST_F(VapourPressureTest, FrostKalkwarfNextToItsDoubleRootDoesNotConverge) {
  comp.TC(1) = 370.0;
  set_frost_kalkwarf(0.0, 0.0, 0.0, (1.0 - 1e-9) * 300.0 * 300.0 * std::exp(-1.0));
  EXPECT_EQ(evaluate(SPSFK0, 300.0).nfail, status::not_converged);
}

TEST_F(VapourPressureTest, FrostKalkwarfAboveCriticalIsTheLineThroughBoilingAndCriticalPoint) {
  set_frost_kalkwarf(26.4, -2800.0, -3.0, 12000.0);
  EXPECT_NEAR(evaluate(SPSFK0, 190.56 + 1e-9).value, 4.599e6, 1.0);
  // The line meets e^11.513 Pa, one bar, at the boiling point.
  const R8 x = (1.0 / 250.0 - 1.0 / 111.7) / (1.0 / 190.56 - 1.0 / 111.7);
  const R8 ln_bar = static_cast<R8>(11.513F);
  EXPECT_DOUBLE_EQ(evaluate(SPSFK0, 250.0).value, std::exp(ln_bar + x * (std::log(4.599e6) - ln_bar)));
  for (const R8 T : {195.0, 250.0, 400.0}) expect_slope(SPSFK0, T);
}

// ---- extended Antoine

void set_extended(R8 low, R8 high) {
  comp.IPANO(1) = 7;
  const R8 set[9] = {39.205, -1324.4, 2.0, 0.001, -3.4366, 3.1019e-5, 2.0, low, high};
  for (int i = 1; i <= 9; ++i) comp.PANTO(1, i) = set[i - 1];
}

TEST_F(VapourPressureTest, ExtendedAntoineInItsRange) {
  set_extended(90.69, 190.56);
  const R8 T = 150.0;
  const R8 expected = 39.205 - 1324.4 / (T + 2.0) + 0.001 * T - 3.4366 * std::log(T) + 3.1019e-5 * T * T;
  EXPECT_NEAR(std::log(evaluate(SPSAN2, T).value), expected, 1e-12);
  for (const R8 t : {95.0, 150.0, 185.0}) expect_slope(SPSAN2, t);
}

TEST_F(VapourPressureTest, ExtendedAntoineRunsOnAsALineInTheInverseTemperature) {
  set_extended(90.69, 190.56);
  for (const R8 limit : {90.69, 190.56}) {
    const Point end = evaluate(SPSAN2, limit);
    const R8 T = limit < 100.0 ? 70.0 : 250.0;
    const R8 line =
        std::log(end.value) - limit * limit * end.derivative / end.value * (1.0 / T - 1.0 / limit);
    EXPECT_NEAR(std::log(evaluate(SPSAN2, T).value), line, 1e-12);
    expect_slope(SPSAN2, T);
  }
}

TEST_F(VapourPressureTest, ExtendedAntoineWithoutARangeIsNotLimited) {
  set_extended(0.0, 0.0);
  const R8 T = 150.0;
  EXPECT_NEAR(std::log(evaluate(SPSAN2, T).value),
              39.205 - 1324.4 / (T + 2.0) + 0.001 * T - 3.4366 * std::log(T) + 3.1019e-5 * T * T, 1e-12);
}

TEST_F(VapourPressureTest, ExtendedAntoineNeedsItsSet) {
  EXPECT_EQ(evaluate(SPSAN2, 150.0).nfail, status::not_available);
}

TEST_F(VapourPressureTest, ExtendedAntoineAtItsPoleIsAnInputError) {
  set_extended(0.0, 0.0);
  comp.PANTO(1, 3) = -150.0;
  const Point p = evaluate(SPSAN2, 150.0);
  EXPECT_EQ(p.nfail, status::input);
  EXPECT_EQ(p.value, 0.0);
}

// ---- what is wanted

TEST_F(VapourPressureTest, OnlyWhatIsWantedIsSet) {
  set_wagner();
  set_extended(90.69, 190.56);
  set_frost_kalkwarf(26.4, -2800.0, -3.0, 12000.0);
  for (const Correlation correlation : {SPSWG0, SPSAN1, SPSFK0, SPSAN2}) {
    for (const bool value_wanted : {true, false}) {
      R8 value = -1.0;
      R8 derivative = -1.0;
      I4 nfail = 0;
      correlation(150.0, 1, logical(value_wanted), logical(!value_wanted), value, derivative, nfail);
      EXPECT_EQ(nfail, status::ok);
      EXPECT_EQ(value != -1.0, value_wanted);
      EXPECT_EQ(derivative != -1.0, !value_wanted);
    }
  }
}

}  // namespace
}  // namespace talix
